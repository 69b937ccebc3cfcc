#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "support/PlainContours.h"

/// What is wrong with the contour lines that a run came up with: each check answers a sentence, empty when all is well.
namespace Meseta47::support {

using ContourLine = std::vector<Point>;

/// What the lines are made of, in ascending order, with copies.
[[nodiscard]] std::vector<ContourPiece> piecesOf(std::vector<ContourLine> const& lines);

/// Each line has one height, a multiple of the interval, and two points or more, no two in a row equal.
[[nodiscard]] std::string levelFaults(std::vector<ContourLine> const& lines, std::int32_t interval);

/// Two sorted lists of pieces are the same.
[[nodiscard]] std::string pieceFaults(std::vector<ContourPiece> const& found,
                                      std::vector<ContourPiece> const& expected);

/// Each line is closed, or ends where no other does, at a place where an odd number of pieces meet. That is on the
/// outline of what was contoured, or at the end of a piece that two triangles gave.
///
/// There is no other such place: around a vertex that is not on a level the surface crosses it an even number of times,
/// and so it does around one on a level unless a side that lies on the level ends there, a ridge for one. Such a side
/// belongs to two triangles, and so does a sliver's piece that rounding has laid upon its neighbour's.
[[nodiscard]] std::string openEndFaults(std::vector<ContourLine> const& lines, PlainContours const& plain);

/// Each point of a line lies no farther than a unit from a side of a triangle that takes part.
[[nodiscard]] std::string strayFaults(std::vector<ContourLine> const& lines, Mesh const& mesh, ContourRule const& rule);

/// Pairs of pieces at different heights that have a point in common in plan, by exact arithmetic.
///
/// On the surface itself contours never meet. Rounding moves each cut by up to half a unit along each axis, and so it
/// can bring two pieces together, or across each other, that lie within the square root of 2 of each other before it,
/// and no others: where the surface climbs a whole interval in less than a unit and a half, as on a wall.
struct Meetings {
  std::size_t pairs = 0;
  std::size_t tooFar = 0;  ///< of those, pairs that lie farther apart than rounding can explain
  std::string first;       ///< a sentence about the first of these
};
/// The lines must be made of the plain pieces.
[[nodiscard]] Meetings meetings(std::vector<ContourLine> const& lines, PlainContours const& plain);

}  // namespace Meseta47::support
