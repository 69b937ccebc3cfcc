#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "support/Mesh.h"

namespace Meseta47::support {

/// A half side is the side of one triangle, run in the triangle's own sense: half side 3 t + k goes from vertex k of
/// triangle t to the next one.
using HalfSide = std::uint32_t;

inline constexpr HalfSide kNoHalfSide = std::numeric_limits<HalfSide>::max();

[[nodiscard]] inline HalfSide nextAround(HalfSide h) { return h % 3 == 2 ? h - 2 : h + 1; }

[[nodiscard]] inline std::int32_t startOf(std::vector<Triangle> const& triangles, HalfSide h) {
  return triangles[h / 3][h % 3];
}

[[nodiscard]] inline std::int32_t endOf(std::vector<Triangle> const& triangles, HalfSide h) {
  return startOf(triangles, nextAround(h));
}

/// One use of a side. Both directions of a side have the same key.
struct SideUse {
  std::uint64_t key;
  HalfSide half;

  friend auto operator<=>(SideUse const&, SideUse const&) = default;
};

/// A number for the unordered pair of vertex numbers; corners come before points.
[[nodiscard]] std::uint64_t sideKey(std::int32_t a, std::int32_t b);

/// All the sides of the triangles, equal ones together, in the order of the triangles. O(T log T); up to 1.4 thousand
/// million triangles.
[[nodiscard]] std::vector<SideUse> sortedSides(std::vector<Triangle> const& triangles);

/// Calls visit(first, last) for each run of equal sides.
template <typename Visit>
void forEachSide(std::vector<SideUse> const& sides, Visit visit) {
  for (auto first = sides.begin(); first != sides.end();) {
    auto last = first + 1;
    while (last != sides.end() && last->key == first->key) ++last;
    visit(first, last);
    first = last;
  }
}

}  // namespace Meseta47::support
