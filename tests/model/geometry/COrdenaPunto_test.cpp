#include "model/geometry/COrdenaPunto.h"

#include <algorithm>
#include <gmock/gmock.h>

#include "model/Fixtures.h"

using namespace Meseta47;
using namespace Meseta47::test;

namespace {

TEST(COrdenaPunto, KeyThreeGathersEqualHeights) {
  std::vector<Point> points{P(1, 1, 9), P(5, 5, 2), P(0, 0, 9), P(5, 4, 2), P(2, 2, -1)};
  std::sort(points.begin(), points.end(), COrdenaPunto<int>(3));
  EXPECT_THAT(points, testing::ElementsAre(P(2, 2, -1), P(5, 4, 2), P(5, 5, 2), P(0, 0, 9), P(1, 1, 9)));
}

TEST(COrdenaPunto, AnyOtherKeyIsTheOrderOfPositions) {
  const COrdenaPunto<int> before(0);
  EXPECT_EQ(before(P(1, 1, 9), P(2, 0, 0)), 1);
  EXPECT_EQ(before(P(1, 1, 1), P(1, 1, 2)), 1);
  EXPECT_EQ(before(P(2, 0, 0), P(1, 1, 9)), 0);
}

TEST(COrdenaPunto, NoPointComesBeforeItself) {
  EXPECT_EQ(COrdenaPunto<int>(3)(Point(1, 2, 3, 4), Point(1, 2, 3, 5)), 0);
  EXPECT_EQ(COrdenaPunto<double>(3)(CCoor3D<double>(1, 2, 2.5, 0), CCoor3D<double>(1, 2, 2.75, 0)), 1);
}

}  // namespace
