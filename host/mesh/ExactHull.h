#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "model/geometry/CCoor3D.h"
#include "model/geometry/Entero128.h"

namespace Meseta47::host {

/// Convex hull of points in space, in exact arithmetic (Barber, Dobkin and Huhdanpaa, "The Quickhull Algorithm for
/// Convex Hulls", ACM Transactions on Mathematical Software 22, 1996). Points on a face, and on an edge, are left out.
struct ExactHull {
  std::vector<std::array<std::uint32_t, 3>> faces;  ///< places of points, counter-clockwise seen from outside
  Entero128 sixVolumes{0};
};

/// No faces when all points lie in one plane. O(n log n) as a rule.
[[nodiscard]] ExactHull exactHull(std::vector<CCoor3D<int>> const& points);

}  // namespace Meseta47::host
