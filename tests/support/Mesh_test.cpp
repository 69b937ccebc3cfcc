#include "support/Mesh.h"

#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Meseta47::support {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Mesh, PointsCountUpFromOneAndCornersDownFromMinusOne) {
  const Mesh mesh{{{1, 1}, {2, 2}}, {{-1, -1}, {-2, -2}}, {}};
  EXPECT_EQ(mesh.at(1), (Point{1, 1}));
  EXPECT_EQ(mesh.at(2), (Point{2, 2}));
  EXPECT_EQ(mesh.at(-1), (Point{-1, -1}));
  EXPECT_EQ(mesh.at(-2), (Point{-2, -2}));
}

TEST(Mesh, NumbersWithoutAPointAreNotKnown) {
  const Mesh mesh{{{1, 1}, {2, 2}}, {{-1, -1}}, {}};
  EXPECT_TRUE(mesh.knows(2) && mesh.knows(-1));
  EXPECT_FALSE(mesh.knows(0));
  EXPECT_FALSE(mesh.knows(3));
  EXPECT_FALSE(mesh.knows(-2));
  EXPECT_FALSE(mesh.knows(INT32_MIN));
}

TEST(Mesh, IndicesFromZeroBecomeNumbersFromOne) {
  EXPECT_THAT(numberedFromOne({{0, 1, 2}, {7, 0, 3}}), ElementsAre(Triangle{1, 2, 3}, Triangle{8, 1, 4}));
}

TEST(Mesh, PointsAtOnePlanPositionAreRepresentedByTheFirst) {
  const std::vector<Point> points{{5, 5, 1}, {0, 0, 0}, {5, 5, 9}, {5, 6, 1}, {5, 5, 1}};
  EXPECT_THAT(representatives(points), ElementsAre(1, 2, 1, 4, 1));
  EXPECT_EQ(distinctPositions(points), 3);
  EXPECT_THAT(representatives({}), IsEmpty());
}

TEST(Mesh, TheFrameIsASquareWithATenthOfTheExtentAsMargin) {
  EXPECT_THAT(frameAround({{0, 0}, {100, 40}}),
              ElementsAre(Point{-10, -40}, Point{-10, 80}, Point{110, 80}, Point{110, -40}));
}

TEST(Mesh, TheFrameOfOddExtentsRoundsItsCornersToNearest) {
  // The centre is (-2, -2), halves going down; 0.6 * 3 = 1.8 rounds to 2.
  EXPECT_THAT(frameAround({{-3, -3}, {0, 0}}), ElementsAre(Point{-4, -4}, Point{-4, 0}, Point{0, 0}, Point{0, -4}));
}

}  // namespace
}  // namespace Meseta47::support
