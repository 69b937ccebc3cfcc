#pragma once

#include <cstdint>
#include <vector>

#include "support/Mesh.h"

/// Contour lines the plain way, in exact arithmetic: each triangle of a finished mesh is told apart by where its
/// vertices lie with respect to a level. The only rounding is that of a cut to whole units: to nearest, halves to even.
namespace Meseta47::support {

/// Two ends at one height, the smaller one first.
struct ContourPiece {
  Point a, b;

  friend auto operator<=>(ContourPiece const&, ContourPiece const&) = default;
};

[[nodiscard]] inline ContourPiece pieceBetween(Point const& p, Point const& q) {
  return p < q ? ContourPiece{p, q} : ContourPiece{q, p};
}

/// How a surface is contoured: the heights that are multiples of `interval` (above 0), over the triangles none of whose
/// sides is longer in plan than `longestSide`.
struct ContourRule {
  std::int32_t interval = 1;
  std::int64_t longestSide = std::int64_t{1} << 40;
  bool shore =
      false;  ///< contours part what is higher than a level from what is not; else level sides are contours too
};

/// A piece as a triangle gives it, and how far rounding has moved each coordinate of its ends: where it truly runs is
/// `piece` less that.
struct GivenPiece {
  ContourPiece piece;
  double movedAx = 0, movedAy = 0, movedBx = 0, movedBy = 0;
};

struct PlainContours {
  /// What each triangle gives, sorted by the pieces: one that two triangles give stands twice.
  std::vector<GivenPiece> given;
  /// Where a side that bounds a single triangle meets a level, its ends included: sorted, without copies.
  std::vector<Point> onOutline;
  bool shore = false;  ///< as the rule had it

  /// Every piece, with copies.
  [[nodiscard]] std::vector<ContourPiece> pieces() const;
  /// Every piece once; of a shore, those that come an odd number of times: between two there is nothing to be parted.
  [[nodiscard]] std::vector<ContourPiece> distinctPieces() const;
};

/// The triangles that take part: no corner of the frame, no side too long.
[[nodiscard]] std::vector<Triangle> contoured(Mesh const& mesh, ContourRule const& rule);

/// O(n log n) on the pieces and the triangles.
[[nodiscard]] PlainContours plainContours(Mesh const& mesh, ContourRule const& rule);

}  // namespace Meseta47::support
