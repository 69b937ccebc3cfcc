#include "model/geometry/CDataHelmertNTV2.h"

#include <gtest/gtest.h>
#include <numbers>

#include "model/Fixtures.h"

using namespace Meseta47;

namespace {

using Real = CCoor3D<double>;

TEST(CDataHelmertNTV2, TheDefaultMovesNothing) {
  EXPECT_EQ(CDataHelmertNTV2().Aplica(Real(1, 2, 3, 0)), Real(1, 2, 3, 0));
}

TEST(CDataHelmertNTV2, EachQuarterTurnIsCounterClockwiseAboutItsAxis) {
  const Real expected[3] = {Real(1, -3, 2, 0), Real(3, 2, -1, 0), Real(-2, 1, 3, 0)};
  for (int axis = 0; axis < 3; ++axis) {
    CDataHelmertNTV2 data;
    data.rotacion[axis] = std::numbers::pi / 2;
    EXPECT_NEAR(data.Aplica(Real(1, 2, 3, 0)).Distancia(expected[axis], 1), 0, 1e-12) << "axis " << axis;
  }
}

TEST(CDataHelmertNTV2, ScaleCountsInPartsOfOneAndShiftComesLast) {
  CDataHelmertNTV2 data;
  data.escala = 1;
  data.traslacion[0] = 10;
  data.traslacion[1] = 20;
  data.traslacion[2] = 30;
  EXPECT_EQ(data.Aplica(Real(1, 2, 3, 5)), Real(12, 24, 36, 0));
  EXPECT_EQ(data.Aplica(Real(1, 2, 3, 5)).num, 5);
}

}  // namespace
