#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/MeshOracle.h"

/// Exact convex hulls, to hold surfaces against that have to fill them.
namespace Meseta47::support {

/// The numbers of the points on the boundary of the convex hull, counter-clockwise from the least one by x, then y;
/// points in the middle of a side are among them, and one stands for each plan position. Points on one line are walked
/// there and back; fewer than two positions have no hull. By Andrew's monotone chains (1979). O(n log n).
[[nodiscard]] std::vector<std::int32_t> hullRing(std::vector<Point> const& points);

/// Everything that keeps the triangles of a mesh from filling the convex hull of its points with every plan position as
/// a vertex, one line a fault: area equal to the hull's to the last unit, as many triangles as Euler asks for, the hull
/// with every point on it as the only ring. Points on one line have no triangle. Together with the absence of
/// `surfaceFaults` that leaves no gap and no overlap.
[[nodiscard]] std::string hullFillingFaults(Mesh const& mesh, MeshReport const& report);

}  // namespace Meseta47::support
