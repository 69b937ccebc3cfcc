#include "model/geometry/Redondeo.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

using namespace Meseta47;

namespace {

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kGreatest = std::numeric_limits<int>::max();
constexpr double kInfinite = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(Redondea, GoesToTheNearestIntegerAndHalvesToTheEvenOne) {
  EXPECT_EQ(Redondea(2.4), 2);
  EXPECT_EQ(Redondea(2.6), 3);
  EXPECT_EQ(Redondea(-2.6), -3);
  EXPECT_EQ(Redondea(0.5), 0);
  EXPECT_EQ(Redondea(1.5), 2);
  EXPECT_EQ(Redondea(-0.5), 0);
  EXPECT_EQ(Redondea(-1.5), -2);
  EXPECT_EQ(Redondea(std::nextafter(0.5, 0.0)), 0);
  EXPECT_EQ(Redondea(std::nextafter(0.5, 1.0)), 1);
}

TEST(Redondea, StaysAtTheLimitsBeyondThirtyTwoBits) {
  EXPECT_EQ(Redondea(2147483647.0), kGreatest);
  EXPECT_EQ(Redondea(2147483646.6), kGreatest);
  EXPECT_EQ(Redondea(2147483647.5), kGreatest);
  EXPECT_EQ(Redondea(1e300), kGreatest);
  EXPECT_EQ(Redondea(kInfinite), kGreatest);
  EXPECT_EQ(Redondea(-2147483647.6), kLeast);
  EXPECT_EQ(Redondea(-2147483648.0), kLeast);
  EXPECT_EQ(Redondea(-2147483648.5), kLeast);
  EXPECT_EQ(Redondea(-1e300), kLeast);
  EXPECT_EQ(Redondea(-kInfinite), kLeast);
}

TEST(Redondea, TakesWhatIsNoNumberForZero) { EXPECT_EQ(Redondea(kNaN), 0); }

TEST(Redondea, AgreesWithTheStandardLibraryOnEveryMagnitude) {
  std::mt19937_64 random(20240611);
  std::uniform_real_distribution<double> value(-2147483647.0, 2147483647.0), fraction(-3.0, 3.0);
  for (int i = 0; i < 100000; ++i) {
    const double v = i % 2 == 0 ? value(random) : fraction(random);
    ASSERT_EQ(Redondea(v), std::lrint(v)) << v;
  }
}

TEST(Trunca, DropsTheFractionAndStaysAtTheLimits) {
  EXPECT_EQ(Trunca(2.9), 2);
  EXPECT_EQ(Trunca(-2.9), -2);
  EXPECT_EQ(Trunca(2147483647.9), kGreatest);
  EXPECT_EQ(Trunca(kInfinite), kGreatest);
  EXPECT_EQ(Trunca(-2147483648.9), kLeast);
  EXPECT_EQ(Trunca(-kInfinite), kLeast);
  EXPECT_EQ(Trunca(kNaN), 0);
}

}  // namespace
