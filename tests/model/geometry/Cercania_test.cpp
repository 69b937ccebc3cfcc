#include "model/geometry/Cercania.h"

#include <gtest/gtest.h>

#include "model/Fixtures.h"

using namespace Meseta47;

namespace {

using Real = CCoor3D<double>;

Real R(double x, double y) { return Real(x, y, 0, 0); }

CMaximas<double> UnitBox() { return test::BoxOf<double>({R(0, 0), R(10, 10)}); }

TEST(DistanciaASegmento, IsToTheNearerEndBeyondTheSegment) {
  EXPECT_DOUBLE_EQ(DistanciaASegmento(R(5, 3), R(0, 0), R(10, 0)), 3);
  EXPECT_DOUBLE_EQ(DistanciaASegmento(R(-3, 4), R(0, 0), R(10, 0)), 5);
  EXPECT_DOUBLE_EQ(DistanciaASegmento(R(13, -4), R(0, 0), R(10, 0)), 5);
  EXPECT_DOUBLE_EQ(DistanciaASegmento(R(3, 4), R(0, 0), R(0, 0)), 5);
}

TEST(SegmentoTocaCaja, WhenItCrossesLiesInsideOrTouchesACorner) {
  EXPECT_TRUE(SegmentoTocaCaja(R(-5, 5), R(15, 5), UnitBox()));
  EXPECT_TRUE(SegmentoTocaCaja(R(2, 2), R(3, 3), UnitBox()));
  EXPECT_TRUE(SegmentoTocaCaja(R(-5, 5), R(5, 15), UnitBox()));
  EXPECT_TRUE(SegmentoTocaCaja(R(10, 10), R(20, 20), UnitBox()));
  EXPECT_TRUE(SegmentoTocaCaja(R(10, -5), R(10, 20), UnitBox()));
  EXPECT_TRUE(SegmentoTocaCaja(R(4, 4), R(4, 4), UnitBox()));
}

TEST(SegmentoTocaCaja, NotWhenItPassesBeside) {
  EXPECT_FALSE(SegmentoTocaCaja(R(-5, 6), R(4, 15), UnitBox()));
  EXPECT_FALSE(SegmentoTocaCaja(R(-5, 5), R(-1, 5), UnitBox()));
  EXPECT_FALSE(SegmentoTocaCaja(R(11, -5), R(11, 20), UnitBox()));
  EXPECT_FALSE(SegmentoTocaCaja(R(11, 11), R(11, 11), UnitBox()));
  EXPECT_FALSE(SegmentoTocaCaja(R(0, 0), R(10, 10), CMaximas<double>()));
}

}  // namespace
