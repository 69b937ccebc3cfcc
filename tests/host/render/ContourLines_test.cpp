#include "host/render/ContourLines.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <numeric>
#include <random>

#include "host/render/RenderScenes.h"

namespace Meseta47::host {
namespace {

double lengthOf(ContourLine const& line) {
  double length = 0;
  for (std::size_t i = 1; i < line.points.size(); ++i) {
    length += std::hypot(line.points[i][0] - line.points[i - 1][0], line.points[i][1] - line.points[i - 1][1]);
  }
  return length;
}

bool isRing(ContourLine const& line) { return line.points.front() == line.points.back(); }

TEST(ContourLines, ASlopeHasOneStraightLineForEachLevel) {
  const Surface s = gridSurface(10, [](int x, int) { return double(x) + 0.5; });  // 0.5 to 10.5
  const auto lines = contoursOf(s, 2);
  ASSERT_EQ(lines.size(), 5U);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    EXPECT_EQ(lines[i].level, static_cast<std::int64_t>(i) + 1);
    EXPECT_NEAR(lengthOf(lines[i]), 10, 1e-6) << "from side to side";
    for (auto const& [x, y] : lines[i].points) EXPECT_NEAR(x, 2.0 * static_cast<double>(i) + 1.5, 1e-6);
  }
}

TEST(ContourLines, AHillHasRings) {
  const Surface s = gridSurface(10, [](int x, int y) { return 5.0 - std::max(std::abs(x - 5), std::abs(y - 5)); });
  const auto lines = contoursOf(s, 1);
  std::vector<std::int64_t> levels;
  for (ContourLine const& line : lines) {
    levels.push_back(line.level);
    EXPECT_TRUE(isRing(line)) << line.level;
  }
  // 0 is the rim, and all within it is higher; nothing is higher than 5, the top.
  EXPECT_THAT(levels, testing::ElementsAre(0, 1, 2, 3, 4));
}

TEST(ContourLines, ALakeAtALevelHasOneShore) {
  const Surface s = gridSurface(9, [](int x, int y) { return x > 2 && x < 7 && y > 2 && y < 7 ? 10.0 : 13.0; });
  const auto lines = contoursOf(s, 10);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_TRUE(isRing(lines[0]));
  EXPECT_NEAR(lengthOf(lines[0]), 12, 1e-6);
}

TEST(ContourLines, APitAtALevelHasNone) {
  const Surface s = gridSurface(9, [](int x, int y) { return x == 4 && y == 4 ? 10.0 : 12.0; });
  EXPECT_TRUE(contoursOf(s, 10).empty());
}

TEST(ContourLines, LevelsBelowZeroAreMultiplesToo) {
  const Surface s = gridSurface(4, [](int x, int) { return -7.0 + x; });  // -7 to -3
  const auto lines = contoursOf(s, 2.5);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].level, -2);
}

TEST(ContourLines, ADecimalIntervalMeetsItsOwnMultiples) {
  const Surface s = gridSurface(10, [](int x, int) { return 0.1 * x; });
  EXPECT_EQ(contoursOf(s, 0.1).size(), 10U) << "0 to 0.9; nothing lies above 1";
}

TEST(ContourLines, TheOrderOfTrianglesMakesNoDifference) {
  Surface s = gridSurface(30, [](int x, int y) { return x * 7 % 11 + y * 5 % 13 + 0.01 * x * y; });
  const auto first = contoursOf(s, 1.5);
  std::shuffle(s.triangles.begin(), s.triangles.end(), std::mt19937(7));
  for (auto& t : s.triangles) std::rotate(t.begin(), t.begin() + 1, t.end());
  const auto second = contoursOf(s, 1.5);
  ASSERT_EQ(first.size(), second.size());
  EXPECT_GT(first.size(), 50U);
  for (std::size_t i = 0; i < first.size(); ++i) {
    EXPECT_EQ(first[i].level, second[i].level);
    EXPECT_EQ(first[i].points, second[i].points) << i;
  }
}

TEST(ContourLines, EveryLineIsARingOrEndsAtTheRim) {
  const Surface s = gridSurface(40, [](int x, int y) { return x * 7 % 11 + y * 5 % 13 + 0.3 * x; });
  const auto isOnRim = [](double v) { return std::abs(v) < 1e-6 || std::abs(v - 40) < 1e-6; };
  for (ContourLine const& line : contoursOf(s, 1.7)) {
    if (isRing(line)) continue;
    for (auto const& end : {line.points.front(), line.points.back()}) {
      EXPECT_TRUE(isOnRim(end[0]) || isOnRim(end[1])) << line.level << ": " << end[0] << ',' << end[1];
    }
  }
}

TEST(ContourLines, LevelsAreCountedBeforeTheyAreMade) {
  EXPECT_EQ(levelsBetween(326.04, 335.84, 2), 4);
  EXPECT_EQ(levelsBetween(-1, 1, 1), 3);
  EXPECT_EQ(levelsBetween(0.2, 0.8, 1), 0);
}

}  // namespace
}  // namespace Meseta47::host
