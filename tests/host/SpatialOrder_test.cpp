#include "host/SpatialOrder.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>
#include <random>

#include "model/geometry/CMaximas.h"
#include "model/geometry/Hilbert.h"

namespace Meseta47::host {
namespace {

/// The column of a value as a run finds its cell: by halving the interval, the mean going up.
std::uint32_t halved(int value, int low, int high) {
  std::int64_t lo = low, hi = high;
  std::uint32_t column = 0;
  for (int level = 0; level < 16; ++level) {
    const std::int64_t middle = (lo + hi) >> 1;
    column = column << 1 | (value >= middle ? 1U : 0U);
    (value >= middle ? lo : hi) = middle;
  }
  return column;
}

std::vector<std::uint32_t> plainOrder(std::vector<CCoor3D<int>> const& points) {
  CMaximas<int> box;
  for (auto const& p : points) box.Nuevo(p);
  const auto key = [&](std::uint32_t i) {
    return Hilbert(halved(points[i].x, box.Minimo.x, box.Maximo.x) << 16,
                   halved(points[i].y, box.Minimo.y, box.Maximo.y) << 16);
  };
  std::vector<std::uint32_t> order(points.size());
  std::iota(order.begin(), order.end(), 0U);
  std::stable_sort(order.begin(), order.end(), [&](auto a, auto b) { return key(a) < key(b); });
  return order;
}

struct Box {
  int minX, maxX, minY, maxY;
};

class Boxes : public testing::TestWithParam<Box> {};

TEST_P(Boxes, PointsFollowTheCurveOverTheHalvedCells) {
  const Box b = GetParam();
  std::mt19937 random(4);
  std::uniform_int_distribution<int> x(b.minX, b.maxX), y(b.minY, b.maxY);
  std::vector<CCoor3D<int>> points{{b.minX, b.minY, 0, 0}, {b.maxX, b.maxY, 0, 0}};
  for (int i = 0; i < 40000; ++i) points.emplace_back(x(random), y(random), 0, 0);
  const std::vector<std::uint32_t> order = plainOrder(points);
  EXPECT_EQ(hilbertOrder(points), order);
  std::vector<ScaledPoint> scaled;
  for (auto const& p : points) scaled.push_back({p.x, p.y, 7, 0, 0});
  EXPECT_EQ(hilbertOrder(scaled), order);
}

constexpr int kMin = std::numeric_limits<int>::min(), kMax = std::numeric_limits<int>::max();

// Cells of less than a unit, of hardly more, of many.
INSTANTIATE_TEST_SUITE_P(OfAnyWidth, Boxes,
                         testing::Values(Box{0, 0, 0, 0}, Box{5, 6, -7, -5}, Box{-3, 100, 0, 1000},
                                         Box{-1, 65533, 7, 65543}, Box{-40000, 25537, 1, 65537},
                                         Box{-50001, 50002, -99999, 3}, Box{0, 1 << 20, 0, (1 << 22) - 1},
                                         Box{kMin, kMax, kMin, kMax}, Box{kMin, kMin + 70000, kMax - 70001, kMax}));

TEST(SpatialOrder, ThePointsOfAFlightDoNotJumpAboutAndShuffledOnesDo) {
  std::vector<ScaledPoint> points;
  for (int line = 0; line < 100; ++line) {
    for (int i = 0; i < 100; ++i) points.push_back({10 * (line % 2 == 0 ? i : 99 - i), 10 * line, 0, 0, 0});
  }
  EXPECT_FALSE(jumpsAbout(points));
  std::shuffle(points.begin(), points.end(), std::mt19937(5));
  EXPECT_TRUE(jumpsAbout(points));
  EXPECT_FALSE(jumpsAbout({}));
  EXPECT_FALSE(jumpsAbout({{7, 7, 7, 0, 0}}));
}

TEST(SpatialOrder, WithTiesByPositionHowPointsAreSortedShowsAtOnePlaceAlone) {
  std::mt19937 random(8);
  std::uniform_int_distribution<int> wide(0, 1'000'000), narrow(0, 3);
  std::vector<CCoor3D<int>> points;
  for (int i = 0; i < 3'000; ++i) points.emplace_back(wide(random), wide(random), 0, 0);
  for (int i = 0; i < 3'000; ++i) points.emplace_back(narrow(random), narrow(random), 0, 0);
  const auto inThatOrder = [](std::vector<CCoor3D<int>>& cloud, Ties ties) {
    for (std::size_t i = 0; i < cloud.size(); ++i) cloud[i].z = static_cast<int>(i);
    return inOrder<CCoor3D<int>>(cloud, hilbertOrder(cloud, ties));
  };
  const auto places = [](std::vector<CCoor3D<int>> const& cloud) {
    std::vector<std::array<int, 2>> all;
    for (CCoor3D<int> const& p : cloud) all.push_back({p.x, p.y});
    return all;
  };
  const auto settled = places(inThatOrder(points, Ties::byPosition));
  const auto asTheyCome = places(inThatOrder(points, Ties::asTheyCome));
  EXPECT_NE(settled, asTheyCome);
  std::shuffle(points.begin(), points.end(), random);
  EXPECT_NE(places(inThatOrder(points, Ties::asTheyCome)), asTheyCome);
  const std::vector<CCoor3D<int>> again = inThatOrder(points, Ties::byPosition);
  EXPECT_EQ(places(again), settled);
  for (std::size_t i = 1; i < again.size(); ++i) {
    const bool samePlace = again[i].x == again[i - 1].x && again[i].y == again[i - 1].y;
    EXPECT_TRUE(!samePlace || again[i].z > again[i - 1].z) << "of one place, as they come";
  }
}

TEST(SpatialOrder, TakesTheHalvesOfManyPointsInTurnsEachInItsOrder) {
  std::mt19937 random(9);
  std::uniform_int_distribution<int> wide(0, 1'000'000);
  std::vector<ScaledPoint> points{{0, 0, 0, 0, 0}, {1'000'000, 1'000'000, 0, 0, 0}};  // their middle is known
  for (int i = 0; i < 60'000; ++i) points.push_back({wide(random), wide(random), 0, 0, 0});
  const std::vector<std::uint32_t> curve = hilbertOrder(points, Ties::byPosition);
  std::vector<std::uint32_t> inTurns = curve;
  alternateHalves(inTurns, points);
  const auto left = [&](std::uint32_t i) { return points[i].x < 500'000; };
  const auto upper = [&](std::uint32_t i) { return points[i].y < 500'000; };
  const auto changes = [&](auto const& side) {
    int count = 0;
    for (std::size_t i = 1; i < inTurns.size(); ++i) count += side(inTurns[i]) != side(inTurns[i - 1]) ? 1 : 0;
    return count;
  };
  EXPECT_GT(std::max(changes(left), changes(upper)), 60'000 / 64 * 9 / 10) << "of one axis";
  for (const bool side : {false, true}) {
    const bool inX = changes(left) > changes(upper);
    std::vector<std::uint32_t> before, after;
    const auto ofSide = [&](std::uint32_t i) { return (inX ? left(i) : upper(i)) == side; };
    std::copy_if(curve.begin(), curve.end(), std::back_inserter(before), ofSide);
    std::copy_if(inTurns.begin(), inTurns.end(), std::back_inserter(after), ofSide);
    EXPECT_EQ(before, after);
  }
}

TEST(SpatialOrder, LeavesTheOrderOfFewPointsAndOfThoseOnOneSide) {
  std::mt19937 random(10);
  std::uniform_int_distribution<int> wide(0, 1'000'000), narrow(0, 1'000);
  std::vector<ScaledPoint> few, onOneSide{{1'000'000, 1'000'000, 0, 0, 0}};
  for (int i = 0; i < 40'000; ++i) few.push_back({wide(random), wide(random), 0, 0, 0});
  for (int i = 0; i < 60'000; ++i) onOneSide.push_back({narrow(random), narrow(random), 0, 0, 0});
  for (auto const& points : {few, onOneSide}) {
    const std::vector<std::uint32_t> curve = hilbertOrder(points);
    std::vector<std::uint32_t> same = curve;
    alternateHalves(same, points);
    EXPECT_EQ(same, curve);
  }
}

TEST(SpatialOrder, OfNoPointsIsEmpty) { EXPECT_TRUE(hilbertOrder(std::vector<ScaledPoint>()).empty()); }

TEST(SpatialOrder, IsAppliedToWhatIsKeptBesideThePoints) {
  std::vector<std::uint32_t> places{10, 11, 12, 13};
  applyOrder(places, {2, 0, 3, 1});
  EXPECT_EQ(places, (std::vector<std::uint32_t>{12, 10, 13, 11}));
}

TEST(SpatialOrder, MakesPointsOfADrawingWithAllThatTheyHave) {
  const std::vector<ScaledPoint> points{{1, 2, 3, 60000, 9}, {4, 5, 6, 7, 255}};
  const std::vector<CCoor3D<int>> taken = inOrder<CCoor3D<int>>(points, {1, 0});
  ASSERT_EQ(taken.size(), 2U);
  CCoor3D<int> const& p = taken[1];
  EXPECT_EQ((std::array{p.x, p.y, p.z, p.num, int{p.intensidad}, int{p.clasificacion}}),
            (std::array{1, 2, 3, 0, 60000, 9}));
  EXPECT_EQ(taken[0].x, 4);
}

}  // namespace
}  // namespace Meseta47::host
