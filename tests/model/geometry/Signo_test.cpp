#include "model/geometry/Signo.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

using namespace Meseta47;

namespace {

__extension__ typedef __int128 Int128;

TEST(Signo, IsZeroUpToTheToleranceAndNoFarther) {
  EXPECT_EQ(Signo(0.0), 0);
  EXPECT_EQ(Signo(1e-07), 0);
  EXPECT_EQ(Signo(-1e-07), 0);
  EXPECT_EQ(Signo(std::nextafter(1e-07, 1.0)), 1);
  EXPECT_EQ(Signo(std::nextafter(-1e-07, -1.0)), -1);
  EXPECT_EQ(Signo(1e300), 1);
  EXPECT_EQ(Signo(-1e300), -1);
}

TEST(SignoCuadrado, GivesTheRadiusATolerance) {
  for (const double r : {0.0, 1.0, 12345.678, 3e9}) {
    SCOPED_TRACE(r);
    const double margin = 2 * r * 1e-07 + 1e-07 * 1e-07;
    EXPECT_EQ(SignoCuadrado(0.0, r), 0);
    EXPECT_EQ(SignoCuadrado(margin, r), 0);
    EXPECT_EQ(SignoCuadrado(-margin, r), 0);
    EXPECT_EQ(SignoCuadrado(std::nextafter(margin, 1e30), r), 1);
    EXPECT_EQ(SignoCuadrado(std::nextafter(-margin, -1e30), r), -1);
  }
}

/// A difference of two 32-bit coordinates: extreme, small, or anything between.
std::int64_t Difference(std::mt19937_64& random) {
  constexpr std::int64_t kLargest = 4294967295;
  const std::int64_t sign = random() % 2 == 0 ? 1 : -1;
  switch (random() % 3) {
    case 0:
      return sign * (kLargest - static_cast<std::int64_t>(random() % 4));
    case 1:
      return sign * static_cast<std::int64_t>(random() % 4);
    default:
      return sign * static_cast<std::int64_t>(random() % (kLargest + 1));
  }
}

void ExpectSameProduct(std::int64_t ax, std::int64_t ay, std::int64_t bx, std::int64_t by) {
  const Int128 exact = static_cast<Int128>(ax) * by - static_cast<Int128>(ay) * bx;
  const double found = ProductoVectorial(ax, ay, bx, by);
  const int sign = exact > 0 ? 1 : (exact < 0 ? -1 : 0);
  ASSERT_EQ(found > 0 ? 1 : (found < 0 ? -1 : 0), sign) << ax << ' ' << ay << ' ' << bx << ' ' << by;
  const double expected = static_cast<double>(exact);
  if (std::abs(expected) <= 0x1p53) {
    ASSERT_EQ(found, expected) << ax << ' ' << ay << ' ' << bx << ' ' << by;
  } else {
    ASSERT_NEAR(found / expected, 1.0, 0x1p-49) << ax << ' ' << ay << ' ' << bx << ' ' << by;
  }
}

TEST(ProductoVectorial, AgreesWithWideIntegersOnTheLargestDifferences) {
  std::mt19937_64 random(20240612);
  for (int i = 0; i < 200000 && !testing::Test::HasFatalFailure(); ++i) {
    ExpectSameProduct(Difference(random), Difference(random), Difference(random), Difference(random));
  }
}

TEST(ProductoVectorial, TellsTheLargestAlmostParallelVectorsApart) {
  // Consecutive convergents of a fraction have a cross product of 1: no double product could see it.
  std::int64_t ax = 1, ay = 1, bx = 2, by = 1;
  while (bx <= 4294967295 - ax) {
    const std::int64_t cx = ax + bx, cy = ay + by;
    ax = bx;
    ay = by;
    bx = cx;
    by = cy;
    ExpectSameProduct(ax, ay, bx, by);
    ExpectSameProduct(-bx, -by, ax, ay);
    ASSERT_EQ(std::abs(ProductoVectorial(ax, ay, bx, by)), 1.0);
  }
  EXPECT_EQ(ProductoVectorial(ax, ay, ax, ay), 0.0);
  EXPECT_EQ(ProductoVectorial(4294967295, -4294967295, -4294967295, 4294967295), 0.0);
}

}  // namespace
