#include "support/HullOracle.h"

#include <gmock/gmock.h>

namespace Meseta47::support {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string faultsOf(std::vector<Point> points, std::vector<Triangle> triangles) {
  const Mesh mesh{std::move(points), {}, std::move(triangles)};
  return hullFillingFaults(mesh, inspect(mesh));
}

const std::vector<Point> kSquare{{0, 0, 0}, {0, 10, 0}, {10, 10, 0}, {10, 0, 0}, {5, 10, 0}};

TEST(HullRing, RunsCounterClockwiseThroughThePointsInTheMiddleOfItsSides) {
  EXPECT_THAT(hullRing(kSquare), ElementsAre(1, 4, 3, 5, 2));
}

TEST(HullRing, PassesOverPointsInsideAndNamesThePlaceOfSeveralOnce) {
  EXPECT_THAT(hullRing({{0, 0, 0}, {9, 0, 0}, {3, 3, 0}, {0, 9, 0}, {9, 0, 7}}), ElementsAre(1, 2, 4));
}

TEST(HullRing, OfPointsOnOneLineGoesThereAndBack) {
  EXPECT_THAT(hullRing({{0, 0, 0}, {2, 2, 0}, {1, 1, 0}}), ElementsAre(1, 3, 2, 3));
  EXPECT_THAT(hullRing({{4, 4, 0}, {4, 4, 1}}), IsEmpty());
}

TEST(HullRing, IsExactAtTheEndsOf32Bits) {
  constexpr int low = -2147483647 - 1, high = 2147483647;
  EXPECT_THAT(hullRing({{low, low, 0}, {high, high, 0}, {high - 1, high - 2, 0}, {0, 0, 0}}), ElementsAre(1, 3, 2, 4));
}

TEST(HullFilling, IsWithoutFaultWhenTheTrianglesFillTheHull) {
  EXPECT_EQ(faultsOf(kSquare, {{1, 2, 5}, {1, 5, 4}, {5, 3, 4}}), "");
}

TEST(HullFilling, OfPointsOnOneLineIsNoTriangle) { EXPECT_EQ(faultsOf({{0, 0, 0}, {1, 1, 0}, {2, 2, 0}}, {}), ""); }

TEST(HullFilling, TellsOfADentOfAMissingPointAndOfAHullPointLeftAside) {
  EXPECT_THAT(faultsOf(kSquare, {{1, 2, 5}, {1, 5, 4}}), HasSubstr("twice the area is 150, that of the hull 200"));
  EXPECT_THAT(faultsOf(kSquare, {{1, 2, 3}, {1, 3, 4}}), HasSubstr("4 of 5 used"));
  EXPECT_THAT(faultsOf(kSquare, {{1, 2, 3}, {1, 3, 4}}), HasSubstr("not the boundary"));
  EXPECT_THAT(faultsOf(kSquare, {{1, 2, 3}, {1, 3, 4}}), HasSubstr("Euler asks for 3"));
}

}  // namespace
}  // namespace Meseta47::support
