#pragma once

#include "support/ExactInteger.h"
#include "support/Mesh.h"

/// Exact predicates in plan over the whole 32-bit range. Differences take 33 bits, areas 66, in-circle determinants
/// 133.
namespace Meseta47::support {

/// Twice the signed area of the triangle, positive when a, b, c turn counter-clockwise.
[[nodiscard]] Int128 twiceArea(Point const& a, Point const& b, Point const& c);

/// The sign of that: +1 counter-clockwise, -1 clockwise, 0 collinear.
[[nodiscard]] int orientation(Point const& a, Point const& b, Point const& c);

/// The in-circle determinant: for a, b, c counter-clockwise it is positive when d lies strictly inside their circle,
/// and its value is minus twice the area of a, b, c times the power of d. Another turn changes its sign.
[[nodiscard]] Int256 inCircleDeterminant(Point const& a, Point const& b, Point const& c, Point const& d);

/// +1 when d lies strictly inside the circle through a, b, c, 0 on it, -1 outside, whichever way a, b, c turn.
/// Collinear a, b, c have no circle: 0.
[[nodiscard]] int inCircle(Point const& a, Point const& b, Point const& c, Point const& d);

/// How far d lies inside the circle through a, b, c, in coordinate units, negative outside. Good near the circle, where
/// the power of a point is twice the radius times its depth; meant for messages and for bounds on tolerant code.
[[nodiscard]] double depthInCircle(Point const& a, Point const& b, Point const& c, Point const& d);

}  // namespace Meseta47::support
