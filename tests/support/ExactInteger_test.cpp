#include "support/ExactInteger.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace Meseta47::support {
namespace {

constexpr Int128 kLargest = static_cast<Int128>(~UInt128{0} >> 1);
constexpr Int128 kSmallest = -kLargest - 1;

/// high * 2^128 + low.
Int256 parts(Int128 high, UInt128 low) { return {low, high}; }

TEST(ExactInteger, SmallProductsAreThoseOfTheSchool) {
  EXPECT_EQ(product(6, 7), parts(0, 42));
  EXPECT_EQ(product(-6, 7), -product(6, 7));
  EXPECT_EQ(product(-6, -7), parts(0, 42));
  EXPECT_EQ(product(0, -7), parts(0, 0));
}

TEST(ExactInteger, ProductsCarryFromEveryHalfIntoTheNext) {
  // (2^127 - 1)^2 = 2^254 - 2^128 + 1
  EXPECT_EQ(product(kLargest, kLargest), parts((Int128{1} << 126) - 1, 1));
  // (2^64 - 1)(2^64 + 1) = 2^128 - 1
  EXPECT_EQ(product((Int128{1} << 64) - 1, (Int128{1} << 64) + 1), parts(0, ~UInt128{0}));
}

TEST(ExactInteger, TheSmallestIntegerHasAMagnitudeToo) {
  EXPECT_EQ(product(kSmallest, kSmallest), parts(Int128{1} << 126, 0));
  EXPECT_EQ(product(kSmallest, 1), parts(-1, UInt128{1} << 127));
}

TEST(ExactInteger, SumsCarryAndBorrowAcrossTheMiddle) {
  EXPECT_EQ(parts(0, ~UInt128{0}) + parts(0, 1), parts(1, 0));
  EXPECT_EQ(parts(1, 0) + -parts(0, 1), parts(0, ~UInt128{0}));
  EXPECT_EQ(parts(1, 5) + -parts(1, 5), parts(0, 0));
}

TEST(ExactInteger, TheSignSeesWhatOnlyTheLowHalfHolds) {
  EXPECT_EQ(sign(parts(0, 0)), 0);
  EXPECT_EQ(sign(parts(0, UInt128{1} << 127)), 1);
  EXPECT_EQ(sign(-parts(0, 1)), -1);
  EXPECT_EQ(sign(parts(1, 0)), 1);
  EXPECT_EQ(sign(kSmallest), -1);
  EXPECT_EQ(sign(Int128{0}), 0);
}

TEST(ExactInteger, ADoubleComesCloseAtEveryMagnitude) {
  EXPECT_EQ(approximate(product(-3, 5)), -15.0);
  EXPECT_DOUBLE_EQ(approximate(product(kLargest, kLargest)), std::ldexp(1.0, 254));
}

TEST(ExactInteger, DecimalsReachBothEnds) {
  EXPECT_EQ(toDecimal(0), "0");
  EXPECT_EQ(toDecimal(-120), "-120");
  EXPECT_EQ(toDecimal(kLargest), "170141183460469231731687303715884105727");
  EXPECT_EQ(toDecimal(kSmallest), "-170141183460469231731687303715884105728");
}

}  // namespace
}  // namespace Meseta47::support
