#pragma once

#include <cstdint>

namespace Meseta47::host {

// Chance and noise that give the same bits on every machine: integer hashes, and doubles touched by + - * / alone. The
// standard's distributions and transcendental functions are left out on purpose, for each library has its own.

/// Largest integer not above `value`, which must fit 63 bits. Inline and free of library calls, for it is in every
/// lattice look-up.
inline std::int64_t floorOf(double value) {
  const auto cut = static_cast<std::int64_t>(value);
  return cut - (value < static_cast<double>(cut) ? 1 : 0);
}

/// Scrambles 64 bits so that any change of the input flips half of the output (finaliser of SplitMix64; Steele, Lea and
/// Flood, "Fast splittable pseudorandom number generators", 2014).
constexpr std::uint64_t mix(std::uint64_t bits) {
  bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9U;
  bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBU;
  return bits ^ (bits >> 31);
}

/// A number that depends on a lattice cell and a seed alone.
constexpr std::uint64_t cellHash(std::uint64_t seed, std::int64_t i, std::int64_t j = 0) {
  return mix(seed + static_cast<std::uint64_t>(i) * 0x9E3779B97F4A7C15U +
             static_cast<std::uint64_t>(j) * 0xD1B54A32D192ED03U);
}

/// The hash as a number in [0, 1), from its 53 high bits.
constexpr double unitOf(std::uint64_t hash) { return static_cast<double>(hash >> 11) * 0x1p-53; }

constexpr double between(double low, double high, double fraction) { return low + (high - low) * fraction; }

constexpr double clampTo(double value, double low, double high) {
  return value < low ? low : (value > high ? high : value);
}

/// 0 below `low`, 1 above `high`, with a smooth cubic in between.
constexpr double smoothStep(double low, double high, double value) {
  const double t = clampTo((value - low) / (high - low), 0.0, 1.0);
  return t * t * (3.0 - 2.0 * t);
}

/// SplitMix64: a stream of random numbers. Every draw is a statement of its own in the callers: two draws in one
/// expression would be taken in an order that each compiler picks for itself.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t bits() { return mix(state_ += 0x9E3779B97F4A7C15U); }
  double unit() { return unitOf(bits()); }
  bool chance(double probability) { return unit() < probability; }

  /// Mean 0, standard deviation 1, at most 3.46 away: the sum of four uniform numbers cut out of one draw, whose
  /// variance is 4/12.
  double bell();

 private:
  std::uint64_t state_;
};

/// A value with its slope along the line.
struct Value1 {
  double value = 0, slope = 0;
};

/// A value with its slopes in plan.
struct Value2 {
  double value = 0, dx = 0, dy = 0;
};

/// Smooth noise along a line, in [-1, 1], with wave length 1 and continuous second derivative.
Value1 noise1(std::uint64_t seed, double t);

/// Gradient noise in the plane, about in [-0.8, 0.8], with wave length 1 and exact slopes (Perlin, "Improving noise",
/// 2002, for the quintic fade).
Value2 noise2(std::uint64_t seed, double x, double y);

}  // namespace Meseta47::host
