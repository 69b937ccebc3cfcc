#include "model/geometry/CEsfera.h"

#include <gtest/gtest.h>

#include "support/Random.h"
#include "support/SpaceMesh.h"

using namespace Meseta47;
using support::Random;

namespace {

CCoor3D<int> At(int x, int y, int z) { return {x, y, z, 0}; }

int SignOf(double v) { return v < 0 ? -1 : v > 0 ? 1 : 0; }

int ExactSide(CCoor3D<int> const (&v)[4], CCoor3D<int> const& p) {
  const auto point = [](CCoor3D<int> const& c) { return support::Point{c.x, c.y, c.z}; };
  return -support::inSphere(point(v[0]), point(v[1]), point(v[2]), point(v[3]), point(p));
}

TEST(CEsfera, FourCornersOfACubeHaveTheSphereOfTheCube) {
  CEsfera s;
  ASSERT_TRUE(s.Por4Puntos(At(0, 0, 0), At(10, 0, 0), At(0, 10, 0), At(0, 0, 10)));
  EXPECT_EQ(s.x, 5.0);
  EXPECT_EQ(s.y, 5.0);
  EXPECT_EQ(s.z, 5.0);
  EXPECT_EQ(s.radio2, 75.0);
  EXPECT_EQ(s.Exceso(10, 10, 10), 0.0);
  EXPECT_LT(s.Exceso(9, 9, 9), -s.margen);
  EXPECT_GT(s.Exceso(11, 10, 10), s.margen);
}

TEST(CEsfera, CoplanarPointsHaveNoneAndARadiusOfExactlyZero) {
  CEsfera s;
  ASSERT_TRUE(s.Por4Puntos(At(0, 0, 0), At(10, 0, 0), At(0, 10, 0), At(0, 0, 10)));
  EXPECT_FALSE(s.Por4Puntos(At(0, 0, 0), At(10, 0, 0), At(0, 10, 0), At(10, 10, 0)));
  EXPECT_EQ(s.radio, 0.0);
  EXPECT_FALSE(s.Por4Puntos(At(1, 1, 1), At(2, 2, 2), At(3, 3, 3), At(9, 0, 4)));
  EXPECT_FALSE(s.Por4Puntos(At(1, 1, 1), At(1, 1, 1), At(3, 0, 3), At(9, 0, 4)));
}

TEST(CEsfera, OneUnitOffThePlaneOfAHugeTriangleMakesASphereWithAMargin) {
  constexpr int kFar = 2'000'000'000;
  CCoor3D<int> const v[4] = {At(-kFar, -kFar, 0), At(kFar, -kFar, 0), At(0, kFar, 0), At(7, 9, 1)};
  CEsfera s;
  ASSERT_TRUE(s.Por4Puntos(v[0], v[1], v[2], v[3]));
  EXPECT_GT(s.radio, 1e17);
  EXPECT_LT(s.margen, HUGE_VAL);
  EXPECT_GE(s.margen, std::abs(s.Exceso(v[0].x, v[0].y, v[0].z)));
}

struct Spread {
  char const* name;
  int wide, high;  // of the vertices: as flat as this
};

class Spheres : public testing::TestWithParam<Spread> {};

// The promise that the mesh rests on: beyond the margin the sign of the doubles is that of the determinant.
TEST_P(Spheres, BeyondTheMarginTheSignIsTheExactOne) {
  Random random(7);
  const int wide = GetParam().wide, high = GetParam().high;
  const auto any = [&] {
    const int x = random.between(-wide, wide), y = random.between(-wide, wide);
    return At(x, y, random.between(-high, high));
  };
  unsigned certain = 0, exact = 0;
  for (int k = 0; k < 3000; ++k) {
    CCoor3D<int> const v[4] = {any(), any(), any(), any()};
    CEsfera s;
    if (!s.Por4Puntos(v[0], v[1], v[2], v[3])) continue;
    for (CCoor3D<int> const& p : v) EXPECT_LE(std::abs(s.Exceso(p.x, p.y, p.z)), s.margen);
    for (int n = 0; n < 8; ++n) {
      CCoor3D<int> p = any();
      if (n % 2 == 0) {  // close to a vertex, where it is close
        p = v[n / 2];
        p.x = std::max(p.x, -wide) + random.between(0, 2);
        p.z = std::max(p.z, -high) + random.between(0, 2);
      }
      const int side = ExactSide(v, p);
      EXPECT_EQ(LadoDeEsfera(v[0], v[1], v[2], v[3], p), side);
      const double excess = s.Exceso(p.x, p.y, p.z);
      if (std::abs(excess) > s.margen) {
        ++certain;
        EXPECT_EQ(SignOf(excess), side) << k << ' ' << n;
      } else {
        ++exact;
      }
    }
  }
  EXPECT_GT(certain, 50U);
}

INSTANTIATE_TEST_SUITE_P(OfEveryShape, Spheres,
                         testing::Values(Spread{"Small", 20, 20}, Spread{"Kilometres", 1'000'000, 1'000'000},
                                         Spread{"Huge", 1'000'000'000, 1'000'000'000},
                                         Spread{"NearlyFlat", 1'000'000'000, 3}, Spread{"FlatAndSmall", 5000, 1},
                                         Spread{"AsFlatAsPossible", 2'000'000'000, 1}),
                         [](auto const& test) { return test.param.name; });

TEST(SignoDeVolumen, IsTheExactOneOverTheWholeRange) {
  constexpr int kMost = 2147483647;
  EXPECT_EQ(SignoDeVolumen(At(0, 0, 0), At(1, 0, 0), At(0, 1, 0), At(5, 5, 0)), 0);
  const int up = SignoDeVolumen(At(-kMost, -kMost, 0), At(kMost, -kMost, 0), At(0, kMost, 0), At(3, 4, 1));
  EXPECT_NE(up, 0);
  EXPECT_EQ(SignoDeVolumen(At(-kMost, -kMost, 0), At(kMost, -kMost, 0), At(0, kMost, 0), At(3, 4, -1)), -up);
}

}  // namespace
