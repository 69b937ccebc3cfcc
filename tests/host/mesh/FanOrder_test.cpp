#include "host/mesh/FanOrder.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace Meseta47::host {
namespace {

using testing::ElementsAre;
using Faces = std::vector<std::array<std::uint32_t, 3>>;

std::vector<CCoor3D<int>> at(std::vector<std::array<int, 3>> const& places) {
  std::vector<CCoor3D<int>> points;
  for (auto const& p : places) points.emplace_back(p[0], p[1], p[2], 0);
  return points;
}

std::size_t turnOf(std::uint32_t point, std::vector<std::uint32_t> const& order) {
  return static_cast<std::size_t>(std::find(order.begin(), order.end(), point) - order.begin());
}

TEST(FanOrder, OfASquareOneEndOfItsDiagonalIsLast) {
  const auto square = at({{0, 0, 5}, {10, 0, 5}, {0, 10, 5}, {10, 10, 5}});
  const auto order = fanOrder(square, {{0, 1, 2}, {1, 2, 3}});
  EXPECT_GT(std::max(turnOf(1, order), turnOf(2, order)), std::max(turnOf(0, order), turnOf(3, order)));
  const auto other = fanOrder(square, {{0, 1, 3}, {0, 2, 3}});
  EXPECT_GT(std::max(turnOf(0, other), turnOf(3, other)), std::max(turnOf(1, other), turnOf(2, other)));
}

TEST(FanOrder, WhatLiesOnNoCircleKeepsItsTurn) {
  // Off the plane, in the plane and off the circle, and alone.
  EXPECT_THAT(fanOrder(at({{0, 0, 0}, {10, 0, 0}, {0, 10, 0}, {10, 10, 1}}), {{0, 1, 2}, {1, 2, 3}}),
              ElementsAre(0, 1, 2, 3));
  EXPECT_THAT(fanOrder(at({{0, 0, 0}, {10, 0, 0}, {0, 10, 0}, {11, 10, 0}}), {{0, 1, 2}, {1, 2, 3}}),
              ElementsAre(0, 1, 2, 3));
  EXPECT_THAT(fanOrder(at({{0, 0, 0}, {10, 0, 0}, {0, 10, 0}}), {{0, 1, 2}}), ElementsAre(0, 1, 2));
  EXPECT_THAT(fanOrder({}, {}), ElementsAre());
}

TEST(FanOrder, AFigureOfMoreSidesEndsWhereAllItsTrianglesMeet) {
  const auto hexagon = at({{-4, -3, 0}, {-4, 3, 0}, {3, -4, 0}, {3, 4, 0}, {5, 0, 0}, {-5, 0, 0}});  // on a circle of 5
  const auto order = fanOrder(hexagon, {{2, 3, 4}, {0, 2, 3}, {0, 3, 5}, {1, 3, 5}});
  EXPECT_EQ(order.back(), 3U);
}

TEST(FanOrder, ChoicesOfNeighboursAgree) {
  // A strip of squares with its diagonals this way and that: every diagonal has the later end.
  std::vector<std::array<int, 3>> places;
  for (int x = 0; x < 30; ++x) {
    places.push_back({x * 10, 0, 0});
    places.push_back({x * 10, 10, 0});
  }
  Faces faces;
  for (std::uint32_t x = 0; x + 1 < 30; ++x) {
    const std::uint32_t a = 2 * x, b = a + 1, c = a + 2, d = a + 3;
    if (x * x % 3 == 1) {
      faces.insert(faces.end(), {{a, b, d}, {a, c, d}});
    } else {
      faces.insert(faces.end(), {{a, b, c}, {b, c, d}});
    }
  }
  const auto order = fanOrder(at(places), faces);
  ASSERT_EQ(order.size(), 60U);
  for (std::uint32_t x = 0; x + 1 < 30; ++x) {
    const std::uint32_t a = 2 * x, b = a + 1, c = a + 2, d = a + 3;
    const bool rising = std::max(turnOf(a, order), turnOf(d, order)) > std::max(turnOf(b, order), turnOf(c, order));
    EXPECT_EQ(rising, x * x % 3 == 1) << x;
  }
}

TEST(FanOrder, WhereNoneIsLastEveryPointHasATurnAllTheSame) {
  // A hexagon cut along three of its diagonals, none of which share an end with all others.
  const auto hexagon = at({{-4, -3, 0}, {-4, 3, 0}, {3, -4, 0}, {3, 4, 0}, {5, 0, 0}, {-5, 0, 0}});
  auto order = fanOrder(hexagon, {{1, 3, 5}, {2, 3, 4}, {0, 2, 5}, {2, 3, 5}});
  EXPECT_THAT(order, ElementsAre(0, 1, 2, 3, 4, 5));
}

TEST(FanOrder, PointsAtTheEndsOf32BitsAreTold) {
  constexpr int kMost = 2147483647, kLeast = -kMost - 1;
  const auto square =
      at({{kLeast, kLeast, kMost}, {kMost, kLeast, kMost}, {kLeast, kMost, kMost}, {kMost, kMost, kMost}});
  const auto order = fanOrder(square, {{0, 1, 3}, {0, 2, 3}});
  EXPECT_GT(std::max(turnOf(0, order), turnOf(3, order)), std::max(turnOf(1, order), turnOf(2, order)));
}

}  // namespace
}  // namespace Meseta47::host
