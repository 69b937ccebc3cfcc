#include "host/render/Colour.h"

#include <algorithm>
#include <cmath>

namespace Meseta47::host {

namespace {

/// Oklab: distances between its values are about those that an eye sees.
struct Lab {
  float l = 0, a = 0, b = 0;
};

float toLinear(float v) { return v <= 0.04045F ? v / 12.92F : std::pow((v + 0.055F) / 1.055F, 2.4F); }
float toScreen(float v) {
  const float s = v <= 0.0031308F ? v * 12.92F : 1.055F * std::pow(v, 1 / 2.4F) - 0.055F;
  return std::clamp(s, 0.0F, 1.0F);
}

Lab toLab(Colour const& c) {
  const float r = toLinear(c.r), g = toLinear(c.g), b = toLinear(c.b);
  const float l = std::cbrt(0.4122214708F * r + 0.5363325363F * g + 0.0514459929F * b);
  const float m = std::cbrt(0.2119034982F * r + 0.6806995451F * g + 0.1073969566F * b);
  const float s = std::cbrt(0.0883024619F * r + 0.2817188376F * g + 0.6299787005F * b);
  return {0.2104542553F * l + 0.7936177850F * m - 0.0040720468F * s,
          1.9779984951F * l - 2.4285922050F * m + 0.4505937099F * s,
          0.0259040371F * l + 0.7827717662F * m - 0.8086757660F * s};
}

float cube(float v) { return v * v * v; }

Colour toColour(Lab const& c) {
  const float l = cube(c.l + 0.3963377774F * c.a + 0.2158037573F * c.b);
  const float m = cube(c.l - 0.1055613458F * c.a - 0.0638541728F * c.b);
  const float s = cube(c.l - 0.0894841775F * c.a - 1.2914855480F * c.b);
  return {toScreen(4.0767416621F * l - 3.3077115913F * m + 0.2309699292F * s),
          toScreen(-1.2684380046F * l + 2.6097574011F * m - 0.3413193965F * s),
          toScreen(-0.0041960863F * l - 0.7034186147F * m + 1.7076147010F * s)};
}

// Hues at even distances in height; their lightness is set by the law of the class, from the first to the last.
constexpr std::array<unsigned, 6> kHues{0x1F6B5C, 0x4F8F4A, 0xA3AE5B, 0xD9BC74, 0xDDB8A0, 0xF4EEE8};
constexpr float kDarkest = 0.50F, kLightest = 0.95F;

Lab hueAt(float share) {
  const float place = share * (kHues.size() - 1);
  const auto piece = std::min(static_cast<std::size_t>(place), kHues.size() - 2);
  const Lab from = toLab(Colour::ofBytes(kHues[piece])), to = toLab(Colour::ofBytes(kHues[piece + 1]));
  const float part = place - static_cast<float>(piece);
  return {0, from.a + (to.a - from.a) * part, from.b + (to.b - from.b) * part};
}

}  // namespace

float lightness(Colour const& colour) { return toLab(colour).l; }

HeightTint::HeightTint() {
  for (std::size_t i = 0; i < kSteps; ++i) {
    const float share = static_cast<float>(i) / (kSteps - 1);
    Lab tint = hueAt(share);
    tint.l = kDarkest + (kLightest - kDarkest) * share;
    steps_[i] = toColour(tint);
  }
}

Colour classColour(std::uint8_t code) {
  static constexpr std::array<unsigned, 19> kColours{
      0xB8B8B8,  // never classified
      0xD2CEC6,  // unclassified
      0xB98A4E,  // ground
      0xB7D77A,  // low vegetation
      0x6DB55A,  // medium vegetation
      0x2F7D3B,  // high vegetation
      0xD9483B,  // building
      0xE23BC4,  // low noise
      0x8A5A2B,  // key point
      0x3E86D0,  // water
      0x5B4E7A,  // rail
      0x6E6E76,  // road
      0xF0D24A,  // overlap
      0xF2933A,  // wire, guard
      0xF26B1D,  // wire, conductor
      0x8C2F6B,  // tower
      0xC2673A,  // wire joint
      0x9C7CC4,  // bridge deck
      0xFF5FA8   // high noise
  };
  constexpr unsigned kOther = 0x49B3B3;
  return Colour::ofBytes(code < kColours.size() ? kColours[code] : kOther);
}

Colour lit(Colour const& colour, float light) {
  constexpr Colour kShadow{0.10F, 0.11F, 0.20F}, kSun{1.0F, 0.99F, 0.95F};  // shadows take the blue of the sky
  constexpr float kDeepest = 0.82F, kBrightest = 0.55F;  // how far a colour goes towards them: never all the way
  if (light < 1) return mix(colour, kShadow, kDeepest * (1 - std::max(light, 0.0F)));
  return mix(colour, kSun, kBrightest * std::min((light - 1) / 0.42F, 1.0F));  // 1.42: a slope that faces the light
}

}  // namespace Meseta47::host
