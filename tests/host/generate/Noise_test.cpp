#include "host/generate/Noise.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>

namespace Meseta47::host {
namespace {

TEST(Noise, FloorGoesDownOnBothSidesOfZero) {
  EXPECT_EQ(floorOf(2.75), 2);
  EXPECT_EQ(floorOf(-2.75), -3);
  EXPECT_EQ(floorOf(-3.0), -3);
  EXPECT_EQ(floorOf(-0.0), 0);
}

TEST(Noise, BellHasTheMeanAndDeviationThatItClaims) {
  Random random(9);
  constexpr int kDraws = 100000;
  double sum = 0, squares = 0, farthest = 0;
  for (int i = 0; i < kDraws; ++i) {
    const double draw = random.bell();
    sum += draw;
    squares += draw * draw;
    farthest = std::max(farthest, std::abs(draw));
  }
  EXPECT_NEAR(sum / kDraws, 0.0, 0.02);
  EXPECT_NEAR(squares / kDraws, 1.0, 0.02);
  EXPECT_LT(farthest, 3.47);
  EXPECT_GT(farthest, 2.8);
}

TEST(Noise, UnitFillsItsRangeEvenly) {
  Random random(10);
  int counts[10] = {};
  for (int i = 0; i < 100000; ++i) {
    const double draw = random.unit();
    ASSERT_GE(draw, 0.0);
    ASSERT_LT(draw, 1.0);
    ++counts[static_cast<int>(draw * 10)];
  }
  for (const int count : counts) EXPECT_NEAR(count, 10000, 500);
}

TEST(Noise, SlopesInPlanAreTheDerivativesOfTheValue) {
  constexpr double kStep = 1e-6;
  Random random(11);
  for (int i = 0; i < 1000; ++i) {
    const double x = 40.0 * random.unit() - 20.0;
    const double y = 40.0 * random.unit() - 20.0;
    const Value2 here = noise2(3, x, y);
    EXPECT_NEAR((noise2(3, x + kStep, y).value - here.value) / kStep, here.dx, 1e-4);
    EXPECT_NEAR((noise2(3, x, y + kStep).value - here.value) / kStep, here.dy, 1e-4);
    EXPECT_LT(std::abs(here.value), 1.0);
  }
}

TEST(Noise, SlopeAlongALineIsTheDerivativeOfTheValue) {
  constexpr double kStep = 1e-6;
  for (double t = -20; t < 20; t += 0.0371) {
    EXPECT_NEAR((noise1(3, t + kStep).value - noise1(3, t).value) / kStep, noise1(3, t).slope, 1e-4) << "at " << t;
  }
}

TEST(Noise, AnotherSeedIsAnotherLattice) {
  EXPECT_NE(noise2(1, 0.5, 0.5).value, noise2(2, 0.5, 0.5).value);
  EXPECT_NE(cellHash(1, 2, 3), cellHash(1, 3, 2));
}

}  // namespace
}  // namespace Meseta47::host
