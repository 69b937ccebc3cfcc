#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "planar/CSegmentos.h"
#include "platform/Exporta.h"

namespace Meseta47 {

/// Part of an exact Delaunay triangulation, in terms of the indices of its places.
struct CSuperficieExacta {
  /// Clockwise in plan, the least index first, ascending.
  std::vector<std::array<std::uint32_t, 3>> triangulos;
  /// Sides of the convex hull of all places, each place on it a corner, with the outside on the right; ascending.
  std::vector<std::array<std::uint32_t, 2>> contorno;
};

/// The Delaunay triangulation of `lugares` to the right of the directed sides `bordes`: the region that they and the
/// convex hull enclose; all of it when there are none. The places are distinct and ascend. The sides do not cross one
/// another, have the region on one hand only, and are sides of the result even where they are not Delaunay: then each
/// triangle's circle holds no place that it can see.
///
/// Exact over the whole range of 32 bits. Of several places on one circle the least one is joined to all others, so
/// that the result depends on the places and the sides alone. Places on one line give no triangle. O(n log n); 110
/// bytes a place. By divide and conquer after Guibas and Stolfi (1985), sides by flips after Sloan (1993).
[[nodiscard]] URDIMBRE_API CSuperficieExacta TriangulaExacto(std::vector<CLugarPlano> const& lugares,
                                                             std::vector<std::array<std::uint32_t, 2>> const& bordes);

}  // namespace Meseta47
