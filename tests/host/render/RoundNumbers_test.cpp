#include "host/render/RoundNumbers.h"

#include <cmath>
#include <gmock/gmock.h>

namespace Meseta47::host {
namespace {

using testing::ElementsAre;

std::vector<std::string> textsOf(std::vector<Tick> const& ticks) {
  std::vector<std::string> texts;
  for (Tick const& tick : ticks) texts.push_back(tick.text);
  return texts;
}

TEST(RoundNumbers, TheGreatestRoundNumberUpToAValue) {
  for (auto const& [value, round] : {std::pair{1.0, 1.0},
                                     {1.99, 1.0},
                                     {2.0, 2.0},
                                     {4.999, 2.0},
                                     {5.0, 5.0},
                                     {9.99, 5.0},
                                     {1000.0, 1000.0},
                                     {999.999, 500.0},
                                     {0.001, 0.001},
                                     {0.0299, 0.02},
                                     {3e12, 2e12}}) {
    EXPECT_DOUBLE_EQ(roundDown(value).value(), round) << value;
  }
}

TEST(RoundNumbers, EveryPowerOfTenIsItsOwn) {
  for (int exponent = -12; exponent <= 12; ++exponent) {
    const double value = RoundNumber{1, exponent}.value();
    EXPECT_EQ(roundDown(value).value(), value) << exponent;
  }
}

TEST(RoundNumbers, AStepIsTheSmallestThatNeedsNoMorePieces) {
  EXPECT_EQ(roundStep(10, 5).value(), 2);
  EXPECT_EQ(roundStep(10.1, 5).value(), 5);
  EXPECT_EQ(roundStep(26, 5).value(), 10);
  EXPECT_EQ(roundStep(0.3, 3).value(), 0.1);
}

TEST(RoundNumbers, TicksAreMultiplesOfARoundStepWithinTheInterval) {
  EXPECT_THAT(textsOf(ticksBetween(406.26, 520.51, 6)), ElementsAre("420", "440", "460", "480", "500", "520"));
  EXPECT_THAT(textsOf(ticksBetween(-0.25, 0.25, 5)), ElementsAre("-0.2", "-0.1", "0.0", "0.1", "0.2"));
  EXPECT_THAT(textsOf(ticksBetween(2, 12, 5)), ElementsAre("2", "4", "6", "8", "10", "12")) << "the ends are in it";
}

TEST(RoundNumbers, TicksOfAnyIntervalAreFewRoundAndInside) {
  for (const double low : {-8848.0, -3.7, 0.0, 1e-4, 99.9, 4e6}) {
    for (double length = 1e-3; length < 1e6; length *= 3.7) {
      for (const int most : {2, 5, 10}) {
        SCOPED_TRACE(testing::Message() << low << " + " << length << ", " << most);
        const double high = low + length;
        const auto ticks = ticksBetween(low, high, most);
        ASSERT_LE(ticks.size(), static_cast<std::size_t>(most) + 1);
        const double step = roundStep(high - low, most).value();
        for (std::size_t i = 0; i < ticks.size(); ++i) {
          EXPECT_GE(ticks[i].value, low);
          EXPECT_LE(ticks[i].value, high);
          EXPECT_NEAR(std::remainder(ticks[i].value, step), 0, 1e-9 * std::max(1.0, std::abs(low)));
          EXPECT_NEAR(std::stod(ticks[i].text), ticks[i].value, 1e-9) << "the text says what is drawn";
          if (i > 0) {
            EXPECT_NEAR(ticks[i].value - ticks[i - 1].value, step, 1e-6 * step + 1e-9);
          }
        }
      }
    }
  }
}

TEST(RoundNumbers, AnIntervalWithoutLengthHasNoTicks) { EXPECT_TRUE(ticksBetween(5, 5, 4).empty()); }

TEST(RoundNumbers, NoTickReadsMinusZero) { EXPECT_THAT(textsOf(ticksBetween(-1, 1, 2)), ElementsAre("-1", "0", "1")); }

}  // namespace
}  // namespace Meseta47::host
