#include "model/geometry/Hilbert.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <utility>
#include <vector>

using namespace Meseta47;

namespace {

/// The place on the curve a bit at a time, turning the coordinates instead of an orientation.
std::uint64_t SlowHilbert(std::uint32_t x, std::uint32_t y) {
  std::uint64_t place = 0;
  for (std::uint32_t side = 1u << 31; side > 0; side /= 2) {
    const std::uint32_t rx = (x & side) != 0 ? 1 : 0, ry = (y & side) != 0 ? 1 : 0;
    place = place * 4 + ((3 * rx) ^ ry);
    if (ry == 0) {
      if (rx == 1) {
        x = ~x;
        y = ~y;
      }
      std::swap(x, y);
    }
  }
  return place;
}

TEST(Hilbert, AgreesWithTheCurveTakenABitAtATime) {
  std::mt19937 random(20240615);
  for (int i = 0; i < 100000; ++i) {
    const auto x = static_cast<std::uint32_t>(random()), y = static_cast<std::uint32_t>(random() >> (i % 32));
    ASSERT_EQ(Hilbert(x, y), SlowHilbert(x, y)) << x << ' ' << y;
  }
}

TEST(Hilbert, OfSixteenBitsIsTheUpperHalfOfThePlace) {
  std::mt19937 random(20240616);
  for (int i = 0; i < 10000; ++i) {
    const auto x = static_cast<std::uint32_t>(random() >> 16), y = static_cast<std::uint32_t>(random() >> 16);
    ASSERT_EQ(Hilbert16(x, y), SlowHilbert(x << 16, y << 16) >> 32) << x << ' ' << y;
  }
}

TEST(Hilbert, FillsASquareAtTheOriginFirstAndStepsToANeighbourEachTime) {
  constexpr std::uint32_t kSide = 256;
  std::vector<int> cellAt(kSide * kSide, -1);
  for (std::uint32_t x = 0; x < kSide; ++x) {
    for (std::uint32_t y = 0; y < kSide; ++y) {
      const std::uint64_t place = Hilbert(x, y);
      ASSERT_LT(place, kSide * kSide);
      ASSERT_EQ(cellAt[place], -1) << "two cells have the place " << place;
      cellAt[place] = static_cast<int>(x * kSide + y);
    }
  }
  for (std::size_t i = 1; i < cellAt.size(); ++i) {
    const int side = static_cast<int>(kSide);
    const int dx = cellAt[i] / side - cellAt[i - 1] / side, dy = cellAt[i] % side - cellAt[i - 1] % side;
    ASSERT_EQ(std::abs(dx) + std::abs(dy), 1) << "at place " << i;
  }
}

TEST(Hilbert, TheWholeRangeBeginsAndEndsAtItsLowerCorners) {
  EXPECT_EQ(Hilbert(0, 0), 0u);
  EXPECT_EQ(Hilbert(0xFFFFFFFF, 0), 0xFFFFFFFFFFFFFFFF);
}

}  // namespace
