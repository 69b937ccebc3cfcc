#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace Meseta47::host {

/// Red, green and blue of a screen (sRGB), from 0 to 1.
struct Colour {
  float r = 0, g = 0, b = 0;

  [[nodiscard]] static constexpr Colour ofBytes(unsigned rgb) {
    return {static_cast<float>(rgb >> 16 & 255) / 255, static_cast<float>(rgb >> 8 & 255) / 255,
            static_cast<float>(rgb & 255) / 255};
  }
};

[[nodiscard]] constexpr Colour mix(Colour const& a, Colour const& b, float share) {
  return {a.r + (b.r - a.r) * share, a.g + (b.g - a.g) * share, a.b + (b.b - a.b) * share};
}

/// The lightness that an eye sees, from 0 for black to 1 for white: the L of B. Ottosson's Oklab (2020).
[[nodiscard]] float lightness(Colour const& colour);

/// Tints of heights: from the dark green of low ground over ochre to pale stone. Lightness grows evenly with height, so
/// that the tint reads in grey and with any colour vision too.
class HeightTint {
 public:
  HeightTint();
  /// The tint at a share of the range of heights; shares outside 0 to 1 count as the nearer end.
  [[nodiscard]] Colour const& at(float share) const {
    const float place = share * (kSteps - 1) + 0.5F;
    return steps_[place > 0 ? (place < kSteps ? static_cast<std::size_t>(place) : kSteps - 1) : 0];
  }

 private:
  static constexpr std::size_t kSteps = 1024;  // four for each of the 256 that a screen can show
  std::array<Colour, kSteps> steps_;
};

/// The colour of a class of points of ASPRS LAS 1.4: what it stands for, as maps paint it.
[[nodiscard]] Colour classColour(std::uint8_t code);

/// A colour as light falls on it: 1 is level ground, 0 full shadow, more than 1 a slope towards the light.
[[nodiscard]] Colour lit(Colour const& colour, float light);

}  // namespace Meseta47::host
