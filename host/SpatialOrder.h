#pragma once

#include <cstdint>
#include <vector>

#include "model/CCoor3D.h"

namespace Meseta47::host {

/// The order of the points along a Hilbert curve over the cells that a run divides their extents into, so that cells
/// are finished one after another and hardly anything of the mesh is unfinished at a time. Points of one finest cell
/// keep the order in which they came. Element i of the result is the index of the i-th point. O(n), on all processors;
/// the result does not depend on their number.
std::vector<std::uint32_t> hilbertOrder(std::vector<CCoor3D<int>> const& points);

/// Puts the points, or what is kept beside them, in that order: `items[i]` becomes the one that stood at `order[i]`.
template <class T>
void applyOrder(std::vector<T>& items, std::vector<std::uint32_t> const& order);

extern template void applyOrder(std::vector<CCoor3D<int>>& items, std::vector<std::uint32_t> const& order);
extern template void applyOrder(std::vector<std::uint32_t>& items, std::vector<std::uint32_t> const& order);

}  // namespace Meseta47::host
