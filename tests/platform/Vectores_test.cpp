#include "platform/Vectores.h"

#include <gmock/gmock.h>
#include <limits>

namespace {

using testing::ElementsAre;

TEST(BajoCero, EachNegativeNumberHasItsBit) {
  constexpr double kLeast = std::numeric_limits<double>::denorm_min();
  EXPECT_EQ(BajoCero({1, -1, 0, -kLeast, kLeast, -1e300, 1e300, -0.5}), 0b10101010U);
  EXPECT_EQ(BajoCero({-1, 1, -2, 0, -3, 2, -4, 3}), 0b01010101U);
}

TEST(LugarEntreCuatro, TheFirstOfEqualNumbersCounts) {
  constexpr std::uint32_t kFour[4] = {0x80000007, 7, 0xFFFFFFFF, 7};
  EXPECT_EQ(LugarEntreCuatro(kFour, 0x80000007), 0U);
  EXPECT_EQ(LugarEntreCuatro(kFour, 7), 1U);
  EXPECT_EQ(LugarEntreCuatro(kFour, 0xFFFFFFFF), 2U);
  EXPECT_EQ(LugarEntreCuatro(kFour, 0), 4U);
}

TEST(BorraDeCuatro, OnlyEqualNumbersAreErased) {
  std::uint32_t four[4] = {7, 0xFFFFFFFF, 0x80000007, 7};
  BorraDeCuatro(four, 7);
  EXPECT_THAT(four, ElementsAre(0, 0xFFFFFFFF, 0x80000007, 0));
  BorraDeCuatro(four, 0xFFFFFFFF);
  EXPECT_THAT(four, ElementsAre(0, 0, 0x80000007, 0));
  BorraDeCuatro(four, 1);
  EXPECT_THAT(four, ElementsAre(0, 0, 0x80000007, 0));
}

}  // namespace
