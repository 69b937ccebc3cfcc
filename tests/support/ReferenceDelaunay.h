#pragma once

#include <vector>

#include "support/Mesh.h"

/// Slow and obviously right Delaunay triangulations, to hold fast ones against.
namespace Meseta47::support {

/// Every clockwise triangle of points at different plan positions whose circle holds no point strictly inside,
/// canonical and sorted. When no four points are cocircular this is the Delaunay triangulation; otherwise it holds
/// every triangle that a Delaunay triangulation of the points may have. O(n^4): for a few dozen points.
[[nodiscard]] std::vector<Triangle> emptyCircleTriangles(std::vector<Point> const& points);

/// The points in a frame of the given four corners, which run clockwise, by inserting one at a time with exact
/// predicates (Bowyer, "Computing Dirichlet tessellations", and Watson, "Computing the n-dimensional Delaunay
/// tessellation", both 1981). Every triangle is tried for every point: O(n^2), a second or so for 2,000 points. The
/// points lie strictly inside the frame; those at a plan position already taken are passed over.
[[nodiscard]] Mesh referenceDelaunay(std::vector<Point> points, std::vector<Point> corners);

/// The same in `frameAround(points)`.
[[nodiscard]] Mesh referenceDelaunay(std::vector<Point> points);

}  // namespace Meseta47::support
