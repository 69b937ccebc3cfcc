#pragma once

#include <cstdint>
#include <vector>

#include "host/SpatialOrder.h"

namespace Meseta47::host {

/// The order in which a run in space links points fastest: along a Hilbert curve through the cells that it divides
/// space into, so that cells are finished one after another; but first every 32nd point of the curve, so that the rest
/// falls into a mesh that has the shape of the cloud already, and condemns less of it. Element i of the result is the
/// index of the i-th point. O(n), on all processors; the result does not depend on their number.
template <class Point>
std::vector<std::uint32_t> spaceOrder(std::vector<Point> const& points);

extern template std::vector<std::uint32_t> spaceOrder(std::vector<CCoor3D<int>> const&);
extern template std::vector<std::uint32_t> spaceOrder(std::vector<ScaledPoint> const&);

}  // namespace Meseta47::host
