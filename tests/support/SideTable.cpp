#include "support/SideTable.h"

#include <algorithm>

namespace Meseta47::support {

std::uint64_t sideKey(std::int32_t a, std::int32_t b) {
  constexpr std::uint32_t bias = std::uint32_t{1} << 31;  // makes unsigned numbers sort like the signed ones
  const auto [lower, higher] = std::minmax(a, b);
  return std::uint64_t{static_cast<std::uint32_t>(lower) ^ bias} << 32 | (static_cast<std::uint32_t>(higher) ^ bias);
}

std::vector<SideUse> sortedSides(std::vector<Triangle> const& triangles) {
  std::vector<SideUse> sides;
  sides.reserve(3 * triangles.size());
  for (HalfSide h = 0; h < 3 * triangles.size(); ++h) {
    sides.push_back({sideKey(startOf(triangles, h), endOf(triangles, h)), h});
  }
  std::sort(sides.begin(), sides.end());
  return sides;
}

}  // namespace Meseta47::support
