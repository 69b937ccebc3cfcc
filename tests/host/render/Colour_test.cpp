#include "host/render/Colour.h"

#include <gmock/gmock.h>

namespace Meseta47::host {
namespace {

std::array<float, 3> valuesOf(Colour const& c) { return {c.r, c.g, c.b}; }

TEST(Colour, LightnessRunsFromBlackToWhite) {
  EXPECT_NEAR(lightness({0, 0, 0}), 0, 1e-4);
  EXPECT_NEAR(lightness({1, 1, 1}), 1, 1e-4);
  EXPECT_GT(lightness({0, 1, 0}), lightness({0, 0, 1})) << "green looks lighter than blue";
}

TEST(HeightTint, LightnessGrowsEvenlyWithHeight) {
  const HeightTint tint;
  const float low = lightness(tint.at(0)), high = lightness(tint.at(1));
  EXPECT_GT(high - low, 0.35F) << "tints that differ enough to be told apart in grey";
  float before = 0;
  for (int i = 0; i <= 100; ++i) {
    const float share = static_cast<float>(i) / 100, found = lightness(tint.at(share));
    EXPECT_GT(found, before) << share;
    EXPECT_NEAR(found, low + (high - low) * share, 0.02) << share << ": no tint lies outside what a screen can show";
    before = found;
  }
}

TEST(HeightTint, HeightsBeyondTheRangeTakeTheEnds) {
  const HeightTint tint;
  EXPECT_EQ(valuesOf(tint.at(-7)), valuesOf(tint.at(0)));
  EXPECT_EQ(valuesOf(tint.at(7)), valuesOf(tint.at(1)));
}

TEST(ClassColour, TheClassesOfAsprsDiffer) {
  for (unsigned a = 0; a <= 18; ++a) {
    for (unsigned b = 0; b < a; ++b) {
      const auto one = valuesOf(classColour(static_cast<std::uint8_t>(a)));
      const auto other = valuesOf(classColour(static_cast<std::uint8_t>(b)));
      float apart = 0;
      for (std::size_t i = 0; i < 3; ++i) apart = std::max(apart, std::abs(one[i] - other[i]));
      EXPECT_GT(apart, 0.08F) << a << " and " << b;
    }
  }
}

TEST(ClassColour, ClassesOfUsersShareOne) { EXPECT_EQ(valuesOf(classColour(64)), valuesOf(classColour(255))); }

TEST(Lit, LevelGroundKeepsItsColour) {
  const Colour colour{0.3F, 0.5F, 0.2F};
  EXPECT_EQ(valuesOf(lit(colour, 1)), valuesOf(colour));
}

TEST(Lit, MoreLightIsNeverDarker) {
  const Colour colour{0.3F, 0.5F, 0.2F};
  for (int i = 0; i < 15; ++i) {
    const float light = static_cast<float>(i) / 10;
    EXPECT_LE(lightness(lit(colour, light)), lightness(lit(colour, light + 0.1F))) << light;
  }
  EXPECT_GT(lightness(lit(colour, 0)), 0.1F) << "the deepest shadow still shows what is there";
}

}  // namespace
}  // namespace Meseta47::host
