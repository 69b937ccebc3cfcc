#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "support/ExactInteger.h"
#include "support/Mesh.h"

namespace Meseta47::support {

/// How often something was wrong, and a sentence about the first time.
struct Fault {
  std::size_t count = 0;
  std::string first;
};

/// What exact arithmetic says about a mesh.
struct MeshReport {
  std::size_t triangles = 0;
  std::size_t vertices = 0;  ///< different numbers in use, corners included
  std::size_t sides = 0;     ///< undirected
  std::size_t boundarySides = 0;
  Int128 twiceArea = 0;  ///< positive when the triangles turn the expected way

  Fault unknownVertices;   ///< triangles with a number that no point or corner has; left out of all that follows
  Fault repeatedVertices;  ///< triangles with the same number twice; left out of all that follows
  Fault inverted;
  Fault flat;
  Fault overusedSides;  ///< sides of three triangles or more
  Fault sameWaySides;   ///< sides that two triangles run in the same direction: one of them lies over the other
  Fault notDelaunay;    ///< inner sides with an opposite vertex strictly inside the circle across
  double deepest = 0;   ///< how far the worst such vertex lies inside, in coordinate units

  /// The boundary as closed rings of vertex numbers, the triangles' inside on the same hand all along. At a vertex
  /// where rings touch, each stays with the triangles it bounds. Empty when sides are overused or run the same way.
  std::vector<std::vector<std::int32_t>> rings;

  /// Vertices - sides + triangles: 1 for one piece without holes.
  [[nodiscard]] std::ptrdiff_t euler() const;
};

/// O(T log T), about a second for a million triangles.
[[nodiscard]] MeshReport inspect(Mesh const& mesh, Turn turn = Turn::Clockwise);

/// Everything that keeps these triangles from being a tiling, one line a fault; empty when each is upright, has a
/// positive area, and sides are paired. Says nothing about Delaunay.
[[nodiscard]] std::string surfaceFaults(MeshReport const& report);

/// The same, for a mesh that has to cover the square of its four corners with every distinct plan position of its
/// points as a vertex: area equal to the last unit, two triangles a position and two more, the corners as its only
/// ring. Upright triangles over paired sides whose boundary is the square, and whose areas add up to it, can neither
/// overlap nor leave a gap.
[[nodiscard]] std::string frameTilingFaults(Mesh const& mesh, MeshReport const& report);

}  // namespace Meseta47::support
