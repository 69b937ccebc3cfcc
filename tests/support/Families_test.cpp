#include "support/Families.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

#include "support/Predicates.h"
#include "support/Random.h"

namespace Meseta47::support {
namespace {

using testing::AllOf;
using testing::Ge;
using testing::Le;

TEST(Random, TheSequenceIsThePublishedOne) {
  Random random(1234567);
  EXPECT_EQ(random.bits(), 6457827717110365317U);
  EXPECT_EQ(random.bits(), 3203168211198807973U);
}

TEST(Random, NumbersKeepBetweenTheirLimitsAndReachThem) {
  Random random(1);
  std::set<std::int32_t> seen;
  for (int i = 0; i < 200; ++i) seen.insert(random.between(-2, 2));
  EXPECT_EQ(seen, (std::set{-2, -1, 0, 1, 2}));
  for (int i = 0; i < 200; ++i) EXPECT_THAT(random.unit(), AllOf(Ge(0.0), testing::Lt(1.0)));
}

class EveryFamily : public testing::TestWithParam<Family> {};

TEST_P(EveryFamily, HasTheNumberOfPointsAskedFor) {
  for (const std::size_t n : {0U, 1U, 2U, 3U, 7U, 1'000U, 5'000U}) EXPECT_EQ(family(GetParam(), n, 1).size(), n);
}

TEST_P(EveryFamily, IsTheSameForTheSameSeedAndAnotherForAnother) {
  EXPECT_EQ(family(GetParam(), 500, 7), family(GetParam(), 500, 7));
  EXPECT_NE(family(GetParam(), 500, 7), family(GetParam(), 500, 8));
}

TEST_P(EveryFamily, HasAFrameThatHoldsItInThe32BitRange) {
  for (const std::size_t n : {2U, 3U, 4U, 50U, 20'000U, 1'000'000U}) {
    const auto points = family(GetParam(), n, 3);
    const auto frame = frameAround(points);
    const Point lower = frame[0];
    const Point upper = frame[2];
    ASSERT_LT(lower.x, upper.x) << n;
    const bool inside = std::all_of(points.begin(), points.end(), [&](Point const& p) {
      return lower.x < p.x && p.x < upper.x && lower.y < p.y && p.y < upper.y;
    });
    EXPECT_TRUE(inside) << n << " points, frame " << toText(lower) << " to " << toText(upper);
  }
}

TEST_P(EveryFamily, HasThreePointsThatAreNotCollinear) {
  for (const std::size_t n : {10U, 1'000U}) {
    const auto points = family(GetParam(), n, 3);
    const auto other =
        std::find_if(points.begin(), points.end(), [&](auto& p) { return !samePlanPosition(p, points[0]); });
    ASSERT_NE(other, points.end());
    EXPECT_TRUE(
        std::any_of(points.begin(), points.end(), [&](auto& p) { return orientation(points[0], *other, p) != 0; }));
  }
}

INSTANTIATE_TEST_SUITE_P(Families, EveryFamily, testing::ValuesIn(kAllFamilies),
                         [](auto const& tested) { return std::string(name(tested.param)); });

/// How many points lie exactly on the circle of radius r around the origin.
std::size_t onCircle(std::vector<Point> const& points, std::int64_t r) {
  return static_cast<std::size_t>(std::count_if(points.begin(), points.end(), [&](Point const& p) {
    return std::int64_t{p.x} * p.x + std::int64_t{p.y} * p.y == r * r;
  }));
}

TEST(Families, ACircleIsExactUpToAllTheIntegerPointsItHas) {
  EXPECT_EQ(onCircle(family(Family::Circle, 972, 1), 1'185'665), 972);
  EXPECT_EQ(distinctPositions(family(Family::Circle, 972, 1)), 972);
  EXPECT_EQ(onCircle(family(Family::Circle, 60, 1), 1'185'665), 60);
}

TEST(Families, LargerCirclesAreFilledUpWithRoundedPoints) {
  const auto points = family(Family::Circle, 4'000, 1);
  EXPECT_THAT(onCircle(points, 1'185'665), AllOf(Ge(972U), Le(1'100U)));
  for (Point const& p : points) {
    EXPECT_NEAR(std::hypot(p.x, p.y), 1'185'665, 0.75);  // at most half a diagonal of the unit square
  }
}

TEST(Families, ConcentricCirclesAreExact) {
  const auto points = family(Family::ConcentricCircles, 3 * 324 * 4, 1);
  for (std::int64_t ring = 1; ring <= 12; ++ring) EXPECT_EQ(onCircle(points, ring * 32'045), 324) << ring;
}

TEST(Families, ALineIsStraightButForOnePoint) {
  for (const Family kind : {Family::HorizontalLine, Family::VerticalLine, Family::DiagonalLine, Family::GeneralLine}) {
    const auto points = family(kind, 300, 0);
    const auto off = std::count_if(points.begin(), points.end(),
                                   [&](Point const& p) { return orientation(points[0], points[1], p) != 0; });
    EXPECT_EQ(off, 1) << name(kind);
  }
}

TEST(Families, GridSquaresAreCocircular) {
  const auto p = family(Family::RegularGrid, 100, 0);
  EXPECT_EQ(inCircle(p[0], p[1], p[10], p[11]), 0);
  EXPECT_NE(orientation(p[0], p[1], p[10]), 0);
}

TEST(Families, DuplicatesShareTheirPlanPositionWithOtherHeights) {
  const auto points = family(Family::Duplicates, 4'000, 1);
  EXPECT_THAT(distinctPositions(points), AllOf(Ge(800U), Le(1'002U)));
  const std::set<Point> different(points.begin(), points.end());
  EXPECT_THAT(different.size(), AllOf(Ge(3'500U), Le(3'750U))) << "a few are equal in height too";
}

TEST(Families, LimitsAndSpreadAreAsWideAsTheFrameAllows) {
  EXPECT_EQ(frameAround(family(Family::UpperLimit, 100, 1))[2], (Point{2'147'483'637, 2'147'483'637}));
  EXPECT_EQ(frameAround(family(Family::LowerLimit, 100, 1))[0], (Point{-2'147'483'637, -2'147'483'637}));
  EXPECT_EQ(frameAround(family(Family::HugeSpread, 100, 1))[2], (Point{2'136'000'000, 2'136'000'000}));
}

TEST(Families, ARecipeTellsFamilySizeAndSeed) {
  const HardCloud cloud(Family::Slivers, 40, 9);
  EXPECT_EQ(cloud.recipe, "Slivers, 40 points, seed 9");
  EXPECT_EQ(cloud.testName(), "Slivers_40_9");
  EXPECT_EQ(cloud.points(), family(Family::Slivers, 40, 9));
}

TEST(Families, EveryFamilyComesInEverySize) {
  const auto clouds = hardClouds({3, 10}, 1);
  EXPECT_EQ(clouds.size(), 2 * kAllFamilies.size());
  std::set<std::string> names;
  for (auto const& cloud : clouds) names.insert(cloud.testName());
  EXPECT_EQ(names.size(), clouds.size());
}

/// FNV-1a over the coordinates, little-endian.
std::uint64_t fingerprint(std::vector<Point> const& points) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (Point const& p : points) {
    for (const std::int32_t value : {p.x, p.y, p.z}) {
      for (int shift = 0; shift < 32; shift += 8) {
        hash = (hash ^ (static_cast<std::uint32_t>(value) >> shift & 0xff)) * 0x100000001b3;
      }
    }
  }
  return hash;
}

TEST(Families, PointsAreTheSameOnEveryMachine) {
  // Families that go through floating point; the values come from the first machine that made them.
  EXPECT_EQ(fingerprint(family(Family::Circle, 5'000, 1)), 4976614439857709240U);
  EXPECT_EQ(fingerprint(family(Family::Spiral, 5'000, 1)), 13136246705344494579U);
  EXPECT_EQ(fingerprint(family(Family::ScanLines, 5'000, 1)), 5797244979616216852U);
}

}  // namespace
}  // namespace Meseta47::support
