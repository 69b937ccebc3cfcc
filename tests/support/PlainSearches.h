#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "support/Mesh.h"

namespace Meseta47::support {

// The rules of the searches once more, one triangle after another in the order of the file, with a map of what has been
// found and nothing clever. Vertices are places in the vector of points; triangles with a corner of the frame are not
// among them.

/// A condition: which points it may take by the first rule and by the second, and how high they must rise.
struct PlainCondition {
  std::function<bool(std::size_t)> seeds, reaches;
  std::int64_t height;
};

constexpr int kNotFound = -1;

/// Of each point the place of the condition that took it, or kNotFound. `distance` is held against squared sides.
[[nodiscard]] std::vector<int> plainConditions(std::vector<Point> const& points, std::vector<Triangle> const& triangles,
                                               std::vector<PlainCondition> const& conditions, double distance);

/// A rise that a listing tells: of which point it shows what it looks like, and how high it was.
struct PlainRise {
  std::size_t shown;
  std::int64_t height;
};
[[nodiscard]] std::vector<PlainRise> plainRises(std::vector<Point> const& points,
                                                std::vector<Triangle> const& triangles, std::int64_t height);

/// Of each point whether its value jumps by more than the difference.
[[nodiscard]] std::vector<bool> plainJumps(std::vector<std::int64_t> const& values,
                                           std::vector<Triangle> const& triangles, std::int64_t difference);

}  // namespace Meseta47::support
