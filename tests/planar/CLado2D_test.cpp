#include "planar/CLado2D.h"

#include <gtest/gtest.h>

#include "support/PlanarScene.h"

namespace Meseta47 {
namespace {

using test::Numbered;

TEST(CLado2D, TheDirectionHasNoPartInEqualityNorInOrder) {
  auto p = Numbered({{0, 0}, {10, 0}});
  const CLado2D there(&p[0], &p[1]), back(&p[1], &p[0]);
  EXPECT_TRUE(there == back);
  EXPECT_FALSE(there != back);
  EXPECT_FALSE(there < back);
  EXPECT_FALSE(back < there);
  EXPECT_EQ(there.Clave(), back.Clave());
}

TEST(CLado2D, KeepsTheDirectionThatItWasGiven) {
  auto p = Numbered({{0, 0}, {10, 0}, {0, 10}});
  CLado2D side(&p[1], &p[0]);
  EXPECT_EQ(side.N1(), 2);
  EXPECT_EQ(side.N2(), 1);
  side.SetPuntos(&p[2], &p[0]);
  EXPECT_EQ(side.P1(), &p[2]);
  EXPECT_EQ(side.P2(), &p[0]);
}

TEST(CLado2D, HasNoPointsAtFirst) {
  const CLado2D side;
  EXPECT_EQ(side.P1(), nullptr);
  EXPECT_EQ(side.P2(), nullptr);
}

TEST(CLado2D, DistinctObjectsWithEqualCoordinatesMakeDistinctSides) {
  auto p = Numbered({{0, 0}, {10, 0}, {10, 0}});
  const CLado2D one(&p[0], &p[1]), other(&p[0], &p[2]);
  EXPECT_FALSE(one == other);
  EXPECT_TRUE(one != other);
}

TEST(CLado2D, DistinctObjectsWithEqualCoordinatesGoByNumberInTheOrder) {
  auto p = Numbered({{0, 0}, {10, 0}, {10, 0}});
  const CLado2D one(&p[0], &p[1]), other(&p[0], &p[2]);
  EXPECT_TRUE(one < other);
  EXPECT_FALSE(other < one);
}

TEST(CLado2D, SidesThatShareNoPointAreUnequal) {
  auto p = Numbered({{0, 0}, {10, 0}, {0, 10}, {10, 10}});
  EXPECT_TRUE(CLado2D(&p[0], &p[1]) != CLado2D(&p[2], &p[3]));
  EXPECT_TRUE(CLado2D(&p[0], &p[1]) != CLado2D(&p[1], &p[2]));
}

TEST(CLado2D, TheLowerNumberDecidesBeforeTheHigherOne) {
  auto p = Numbered({{0, 0}, {1, 0}, {2, 0}, {3, 0}});
  const CLado2D oneFour(&p[3], &p[0]), twoThree(&p[1], &p[2]), oneThree(&p[0], &p[2]);
  EXPECT_TRUE(oneFour < twoThree);
  EXPECT_TRUE(oneThree < oneFour);
  EXPECT_FALSE(twoThree < oneThree);
}

TEST(CLado2D, FrameCornersSortBeforeEveryPoint) {
  auto p = Numbered({{0, 0}, {1, 0}, {2, 0}, {3, 0}});
  p[0].num = -4;
  p[1].num = -1;
  const CLado2D corners(&p[1], &p[0]), toPoint(&p[2], &p[1]), points(&p[2], &p[3]);
  EXPECT_TRUE(corners < toPoint);
  EXPECT_TRUE(toPoint < points);
  EXPECT_FALSE(points < corners);
}

}  // namespace
}  // namespace Meseta47
