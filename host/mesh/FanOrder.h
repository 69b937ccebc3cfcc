#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "model/geometry/CCoor3D.h"

namespace Meseta47::host {

/// An order of points that explains how a surface cuts its figures on circles.
///
/// Four points and more that lie in one plane and on one circle there form a figure that a Delaunay mesh cuts into
/// triangles in one of many ways. Where points go in one after another, the last of a figure cuts it: all triangles
/// meet in it. This finds an order of the points in which, for every figure of the surface, the last one is where its
/// triangles meet: from the end, always a point at which no figure that is still open forbids it. Such a choice never
/// closes another one's way, so that an order is found where there is one. Where there is none, the points that are
/// left come first, as they stood.
///
/// Element i of the result is the place in `points` of the one whose turn is the i-th. `faces` are triangles by places,
/// each with ascending ones. Exact. O(n log n).
[[nodiscard]] std::vector<std::uint32_t> fanOrder(std::vector<CCoor3D<int>> const& points,
                                                  std::vector<std::array<std::uint32_t, 3>> const& faces);

}  // namespace Meseta47::host
