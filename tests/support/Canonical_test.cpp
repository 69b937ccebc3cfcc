#include "support/Canonical.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Families.h"
#include "support/ReferenceDelaunay.h"

namespace Meseta47::support {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(Canonical, RotatingATriangleKeepsTheWayItTurns) {
  EXPECT_EQ(canonical({7, 3, 5}), (Triangle{3, 5, 7}));
  EXPECT_EQ(canonical({5, 7, 3}), (Triangle{3, 5, 7}));
  EXPECT_EQ(canonical({5, 3, 7}), (Triangle{3, 7, 5}));
  EXPECT_EQ(canonical({2, -4, -1}), (Triangle{-4, -1, 2}));
}

TEST(Canonical, TheSetForgetsTheOrderAndKeepsCopies) {
  EXPECT_THAT(canonicalSet({{9, 8, 7}, {3, 1, 2}, {7, 9, 8}}),
              ElementsAre(Triangle{1, 2, 3}, Triangle{7, 9, 8}, Triangle{7, 9, 8}));
}

TEST(Canonical, TheHashIsFnv1aOfTheBytes) {
  EXPECT_EQ(goldenHash({}), 0xcbf29ce484222325);
  // By hand, from the twelve bytes 1 0 0 0, 2 0 0 0, 255 255 255 127.
  EXPECT_EQ(goldenHash({{2, 0x7fffffff, 1}}), 0x511a04b0dc93c102);
}

TEST(Canonical, TheHashChangesWithAnyNumberAndWithTheTurnButNotWithTheOrder) {
  const std::uint64_t hash = goldenHash({{1, 2, 3}, {2, 4, 3}});
  EXPECT_EQ(goldenHash({{4, 3, 2}, {3, 1, 2}}), hash);
  EXPECT_NE(goldenHash({{1, 2, 3}, {2, 3, 4}}), hash);
  EXPECT_NE(goldenHash({{1, 2, 3}, {2, 5, 3}}), hash);
  EXPECT_NE(goldenHash({{1, 2, 3}}), hash);
}

TEST(Canonical, RenumberingLeavesCornersAlone) {
  EXPECT_THAT(renumbered({{1, -2, 3}}, {1, 2, 1}), ElementsAre(Triangle{1, -2, 1}));
}

const std::vector<Point> kSquare{{0, 0}, {0, 10}, {10, 10}, {10, 0}};

TEST(Comparison, EqualMeshesHaveNoDifference) {
  const Difference difference = compare({kSquare, {}, {{1, 2, 3}, {1, 3, 4}}}, {{3, 4, 1}, {2, 3, 1}});
  EXPECT_EQ(difference.onlyFirst + difference.onlySecond + difference.regions, 0);
  EXPECT_TRUE(difference.onlyCocircular());
}

TEST(Comparison, TheOtherDiagonalOfASquareIsExcused) {
  const Difference difference = compare({kSquare, {}, {{1, 2, 3}, {1, 3, 4}}}, {{1, 2, 4}, {2, 3, 4}});
  EXPECT_EQ(difference.onlyFirst, 2);
  EXPECT_EQ(difference.onlySecond, 2);
  EXPECT_EQ(difference.regions, 1);
  EXPECT_TRUE(difference.onlyCocircular()) << difference.first;
}

TEST(Comparison, TheOtherDiagonalOfASquareOneUnitOffIsNot) {
  auto points = kSquare;
  points[2].x += 1;
  const Difference difference = compare({points, {}, {{1, 2, 3}, {1, 3, 4}}}, {{1, 2, 4}, {2, 3, 4}});
  EXPECT_EQ(difference.realRegions, 1);
  EXPECT_EQ(difference.first, "the first has [1, 2, 3] [1, 3, 4], the second [1, 2, 4] [2, 3, 4]");
}

TEST(Comparison, NeighbouringSquaresAreJudgedEachByItsOwnCircle) {
  // 2---3---6    Both squares are cut the other way; the side 3-4 stands in both meshes and keeps them apart.
  // | / | / |
  // 1---4---5
  const std::vector<Point> points{{0, 0}, {0, 10}, {10, 10}, {10, 0}, {20, 0}, {20, 10}};
  const Difference difference =
      compare({points, {}, {{1, 2, 3}, {1, 3, 4}, {4, 3, 6}, {4, 6, 5}}}, {{1, 2, 4}, {2, 3, 4}, {4, 3, 5}, {3, 6, 5}});
  EXPECT_EQ(difference.regions, 2);
  EXPECT_TRUE(difference.onlyCocircular()) << difference.first;
}

TEST(Comparison, AMissingTriangleIsNotExcused) {
  const Mesh mesh{kSquare, {}, {{1, 2, 3}, {1, 3, 4}}};
  EXPECT_THAT(compare(mesh, {{1, 2, 3}}).first, HasSubstr("the first has [1, 3, 4], the second nothing"));
  EXPECT_FALSE(compare({kSquare, {}, {{1, 2, 3}}}, mesh.triangles).onlyCocircular());
}

TEST(Comparison, ACocircularPatchThatFillsAnotherOutlineIsNotExcused) {
  EXPECT_EQ(compare({kSquare, {}, {{1, 2, 3}, {1, 3, 4}}}, {{1, 2, 4}}).realRegions, 1);
}

TEST(Comparison, ATriangleTurnedOverIsNotExcused) {
  EXPECT_FALSE(compare({kSquare, {}, {{1, 2, 3}, {1, 3, 4}}}, {{1, 2, 3}, {1, 4, 3}}).onlyCocircular());
}

TEST(Comparison, OneFlipAmongManyCocircularChoicesIsFound) {
  const Mesh grid = referenceDelaunay(family(Family::RegularGrid, 100, 3));
  auto points = grid.points;
  Mesh jagged = grid;
  jagged.points[40].x += 1;  // no longer on its squares' circles
  const Mesh other = referenceDelaunay(jagged.points, grid.corners);
  EXPECT_TRUE(compare(grid, grid.triangles).onlyCocircular());
  jagged.triangles = other.triangles;
  auto flipped = other.triangles;
  const auto hit = [](Triangle const& t) { return std::find(t.begin(), t.end(), 41) != t.end(); };
  ASSERT_TRUE(std::any_of(flipped.begin(), flipped.end(), hit));
  flipped.erase(std::find_if(flipped.begin(), flipped.end(), hit));
  EXPECT_EQ(compare(jagged, flipped).realRegions, 1);
}

TEST(Comparison, InsertionOrderOfAGridOnlyChangesCocircularChoices) {
  const auto points = family(Family::RegularGrid, 144, 0);
  const Mesh forwards = referenceDelaunay(points);
  auto reversed = points;
  std::reverse(reversed.begin(), reversed.end());
  std::vector<std::int32_t> back(points.size());
  for (std::size_t i = 0; i < back.size(); ++i) back[i] = static_cast<std::int32_t>(back.size() - i);
  const Difference difference = compare(forwards, renumbered(referenceDelaunay(reversed).triangles, back));
  EXPECT_GT(difference.regions, 0) << "nothing was compared";
  EXPECT_TRUE(difference.onlyCocircular()) << difference.first;
}

}  // namespace
}  // namespace Meseta47::support
