#include "model/storage/OrdenaPorCifras.h"

#include <gtest/gtest.h>
#include <random>

#include "model/TinScenes.h"

using namespace Meseta47;
using namespace scenes;

namespace {

struct Thing {
  std::uint32_t key, arrival;
};

VectorCrudo<Thing> things(std::size_t count, std::uint32_t mask) {
  std::mt19937 random(9);
  VectorCrudo<Thing> all(count);
  for (std::size_t i = 0; i < count; ++i) {
    all[i] = {static_cast<std::uint32_t>(random()) & mask, static_cast<std::uint32_t>(i)};
  }
  return all;
}

std::vector<std::uint32_t> arrivals(VectorCrudo<Thing> const& all) {
  std::vector<std::uint32_t> numbers;
  for (Thing const& t : all) numbers.push_back(t.arrival);
  return numbers;
}

class Keys : public testing::TestWithParam<std::tuple<unsigned, std::size_t, unsigned>> {};

TEST_P(Keys, SortLikeAStableSort) {
  const auto [bits, count, threads] = GetParam();
  const Processors processors(threads);
  VectorCrudo<Thing> sorted = things(count, bits == 0 ? 0 : 0xFFFFFFFF >> (32 - bits)), other(count);
  VectorCrudo<Thing> expected = sorted;
  std::stable_sort(expected.begin(), expected.end(), [](auto const& a, auto const& b) { return a.key < b.key; });
  OrdenaPorCifras(sorted, other, bits, [](Thing const& t) { return t.key; });
  EXPECT_EQ(arrivals(sorted), arrivals(expected));
}

INSTANTIATE_TEST_SUITE_P(OfAnyWidth, Keys,
                         testing::Combine(testing::Values(0u, 1u, 11u, 12u, 22u, 23u, 31u, 32u),
                                          testing::Values(0u, 1u, 1000u, 100000u), testing::Values(1u, 2u, 4u)));

TEST(OrdenaPorCifras, BitsAboveThoseNamedAreNotLookedAt) {
  VectorCrudo<Thing> few{{0x105, 0}, {0x004, 1}, {0x203, 2}}, other(3);
  OrdenaPorCifras(few, other, 8, [](Thing const& t) { return t.key; });
  EXPECT_EQ(arrivals(few), (std::vector<std::uint32_t>{2, 1, 0}));
}

}  // namespace
