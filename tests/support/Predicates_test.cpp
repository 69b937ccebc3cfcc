#include "support/Predicates.h"

#include <gtest/gtest.h>
#include <limits>
#include <utility>

namespace Meseta47::support {
namespace {

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();

TEST(Predicates, CounterClockwiseIsPositiveWithYUpwards) {
  EXPECT_EQ(orientation({0, 0}, {1, 0}, {0, 1}), 1);
  EXPECT_EQ(orientation({0, 0}, {0, 1}, {1, 0}), -1);
  EXPECT_EQ(orientation({0, 0}, {2, 2}, {-5, -5}), 0);
  EXPECT_EQ(twiceArea({0, 0}, {4, 0}, {0, 3}), 12);
}

TEST(Predicates, HeightsPlayNoPart) { EXPECT_EQ(twiceArea({0, 0, 7}, {4, 0, kMin}, {0, 3, kMax}), 12); }

TEST(Predicates, AreaIsExactAcrossTheWhole32BitRange) {
  const Int128 side = (Int128{1} << 32) - 1;
  EXPECT_EQ(twiceArea({kMin, kMin}, {kMax, kMin}, {kMax, kMax}), side * side);
  EXPECT_EQ(twiceArea({kMin, kMax}, {kMax, kMin}, {kMin, kMin}), -side * side);
}

TEST(Predicates, OneUnitOffADiagonalOfTheWholeRangeIsSeen) {
  // Doubles lose this one: the two products differ in their 64th bit.
  EXPECT_EQ(orientation({kMin, kMin}, {kMax, kMax}, {kMax - 1, kMax - 1}), 0);
  EXPECT_EQ(orientation({kMin, kMin}, {kMax, kMax}, {kMax - 2, kMax - 1}), 1);
  EXPECT_EQ(orientation({kMin, kMin}, {kMax, kMax}, {kMax - 1, kMax - 2}), -1);
}

TEST(Predicates, TheCircleTellsInsideOnAndOutsideWhicheverWayTheTriangleTurns) {
  for (auto const& [d, side] : {std::pair{Point{0, 0}, 1}, {Point{-3, 4}, 0}, {Point{-4, 4}, -1}, {Point{-3, 3}, 1}}) {
    EXPECT_EQ(inCircle({5, 0}, {0, 5}, {-5, 0}, d), side) << toText(d);
    EXPECT_EQ(inCircle({0, 5}, {5, 0}, {-5, 0}, d), side) << toText(d);
  }
}

TEST(Predicates, TheDeterminantIsMinusTwiceTheAreaTimesThePower) {
  // Radius 5, twice the area 50; the centre has power -25.
  EXPECT_EQ(inCircleDeterminant({5, 0}, {0, 5}, {-5, 0}, {0, 0}), product(50, 25));
}

TEST(Predicates, TheCornersOfTheWholeRangeAreCocircularAndOneUnitDecides) {
  const Point a{kMin, kMin};
  const Point b{kMax, kMin};
  const Point c{kMax, kMax};
  EXPECT_EQ(inCircle(a, b, c, {kMin, kMax}), 0);
  EXPECT_EQ(inCircle(a, b, c, {kMin + 1, kMax}), 1);
  EXPECT_EQ(inCircle(a, b, {kMax, kMax - 1}, {kMin, kMax}), -1);
}

TEST(Predicates, ACircleFarFromTheOriginIsJudgedAsNearIt) {
  const auto moved = [](std::int32_t x, std::int32_t y) { return Point{kMax - 100 + x, kMin + 100 + y}; };
  EXPECT_EQ(inCircle(moved(5, 0), moved(0, 5), moved(-5, 0), moved(3, -4)), 0);
  EXPECT_EQ(inCircle(moved(5, 0), moved(0, 5), moved(-5, 0), moved(3, -3)), 1);
  EXPECT_EQ(inCircle(moved(5, 0), moved(0, 5), moved(-5, 0), moved(4, -4)), -1);
}

TEST(Predicates, CollinearPointsHaveNoCircle) { EXPECT_EQ(inCircle({0, 0}, {1, 1}, {5, 5}, {2, 2}), 0); }

TEST(Predicates, DepthIsTheDistanceToTheCircleForPointsNearIt) {
  const Point a{1'000'000, 0};
  const Point b{0, 1'000'000};
  const Point c{-1'000'000, 0};
  EXPECT_NEAR(depthInCircle(a, b, c, {0, -999'997}), 3, 1e-4);
  EXPECT_NEAR(depthInCircle(b, a, c, {0, -999'997}), 3, 1e-4);
  EXPECT_NEAR(depthInCircle(a, b, c, {0, -1'000'002}), -2, 1e-4);
}

}  // namespace
}  // namespace Meseta47::support
