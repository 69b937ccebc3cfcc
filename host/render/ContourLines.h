#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "host/Steps.h"
#include "host/mesh/Surface.h"

namespace Meseta47::host {

struct ContourLine {
  std::int64_t level = 0;                     ///< times the interval: its height
  std::vector<std::array<double, 2>> points;  ///< x and y, in the units of the surface; a ring repeats its first point
};

/// The contours of a surface at the multiples of an interval, joined into the longest lines; lowest first. They are cut
/// and joined as `urdimbre contour` does by default: a vertex at a level counts as below it, so that each triangle has
/// at most one piece of it and a lake has one shore. They depend on the triangles alone, not on their order. O(n log n)
/// on the pieces. `step` hears of it before anything is painted, so that 0 is done.
[[nodiscard]] std::vector<ContourLine> contoursOf(Surface const& surface, double interval, Steps const& step = {});

/// How many multiples of the interval lie from `low` to `high`.
[[nodiscard]] double levelsBetween(double low, double high, double interval);

}  // namespace Meseta47::host
