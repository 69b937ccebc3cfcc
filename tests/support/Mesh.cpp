#include "support/Mesh.h"

#include <algorithm>
#include <numeric>
#include <tuple>

namespace Meseta47::support {

std::vector<Triangle> numberedFromOne(std::vector<Triangle> triangles) {
  for (auto& triangle : triangles) {
    for (auto& number : triangle) ++number;
  }
  return triangles;
}

std::vector<std::int32_t> representatives(std::vector<Point> const& points) {
  std::vector<std::int32_t> order(points.size());
  std::iota(order.begin(), order.end(), 0);
  const auto at = [&](std::int32_t i) -> Point const& { return points[static_cast<std::size_t>(i)]; };
  std::sort(order.begin(), order.end(), [&](std::int32_t a, std::int32_t b) {
    return std::tie(at(a).x, at(a).y, a) < std::tie(at(b).x, at(b).y, b);
  });
  std::vector<std::int32_t> first(points.size());
  std::int32_t leader = 0;
  for (std::size_t i = 0; i < order.size(); ++i) {
    if (i == 0 || !samePlanPosition(at(order[i]), at(leader))) leader = order[i];
    first[static_cast<std::size_t>(order[i])] = leader + 1;
  }
  return first;
}

std::size_t distinctPositions(std::vector<Point> const& points) {
  const auto first = representatives(points);
  std::size_t distinct = 0;
  for (std::size_t i = 0; i < first.size(); ++i) {
    if (first[i] == static_cast<std::int32_t>(i) + 1) ++distinct;
  }
  return distinct;
}

std::vector<Point> frameAround(std::vector<Point> const& points) {
  const auto [west, east] =
      std::minmax_element(points.begin(), points.end(), [](auto& a, auto& b) { return a.x < b.x; });
  const auto [south, north] =
      std::minmax_element(points.begin(), points.end(), [](auto& a, auto& b) { return a.y < b.y; });
  const std::int64_t extent = std::max(std::int64_t{east->x} - west->x, std::int64_t{north->y} - south->y);
  const std::int64_t reach = (6 * extent + 5) / 10;  // 0.6 times an integer is never halfway between two
  const std::int64_t x = (std::int64_t{west->x} + east->x) >> 1;
  const std::int64_t y = (std::int64_t{south->y} + north->y) >> 1;
  const auto corner = [](std::int64_t cx, std::int64_t cy) {
    return Point{static_cast<std::int32_t>(cx), static_cast<std::int32_t>(cy), 0};
  };
  return {corner(x - reach, y - reach), corner(x - reach, y + reach), corner(x + reach, y + reach),
          corner(x + reach, y - reach)};
}

}  // namespace Meseta47::support
