#include "model/geometry/CTransformacion.h"

#include <gtest/gtest.h>
#include <numbers>

#include "model/Fixtures.h"

using namespace Meseta47;

namespace {

using Real = CCoor3D<double>;

CTransformacion QuarterTurn() {
  CTransformacion t;
  t.giro = std::numbers::pi / 2;
  t.escala = 2;
  t.escalaZ = 10;
  t.dx = 100;
  t.dy = 200;
  t.dz = 300;
  return t;
}

TEST(CTransformacion, TheDefaultMovesNothing) {
  EXPECT_EQ(CTransformacion().Aplica(Real(1, 2, 3, 0)), Real(1, 2, 3, 0));
}

TEST(CTransformacion, TurnsCounterClockwiseScalesAndShifts) {
  const Real p = QuarterTurn().Aplica(Real(3, 1, 5, 8));
  EXPECT_NEAR(p.x, 98, 1e-12);
  EXPECT_NEAR(p.y, 206, 1e-12);
  EXPECT_NEAR(p.z, 350, 1e-12);
  EXPECT_EQ(p.num, 8);
}

TEST(CTransformacion, TheInverseBringsAPointBack) {
  const CTransformacion t = QuarterTurn();
  ASSERT_TRUE(t.TieneInversa());
  const Real p = t.AplicaInversa(t.Aplica(Real(3, 1, 5, 8)));
  EXPECT_NEAR(p.x, 3, 1e-12);
  EXPECT_NEAR(p.y, 1, 1e-12);
  EXPECT_NEAR(p.z, 5, 1e-12);
}

TEST(CTransformacion, AScaleOfZeroHasNoInverse) {
  CTransformacion plan, heights;
  plan.escala = 0;
  heights.escalaZ = 0;
  EXPECT_FALSE(plan.TieneInversa());
  EXPECT_FALSE(heights.TieneInversa());
}

}  // namespace
