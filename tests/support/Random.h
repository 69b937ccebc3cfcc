#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace Meseta47::support {

/// SplitMix64 (Steele, Lea and Flood, "Fast splittable pseudorandom number generators", 2014). The standard engines
/// would do, but not the standard distributions: those differ from one library to the next.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state(seed) {}

  std::uint64_t bits() {
    std::uint64_t value = state += 0x9e3779b97f4a7c15;
    value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9;
    value = (value ^ (value >> 27)) * 0x94d049bb133111eb;
    return value ^ (value >> 31);
  }

  /// An integer from lowest to highest, both included. The modulo's bias is below 2^-31 for 32-bit spans.
  std::int32_t between(std::int64_t lowest, std::int64_t highest) {
    const auto span = static_cast<std::uint64_t>(highest - lowest) + 1;
    return static_cast<std::int32_t>(lowest + static_cast<std::int64_t>(bits() % span));
  }

  /// A double in [0, 1), of 53 random bits.
  double unit() { return static_cast<double>(bits() >> 11) * 0x1p-53; }

  template <typename Value>
  void shuffle(std::vector<Value>& values) {
    for (std::size_t i = values.size(); i > 1; --i) std::swap(values[i - 1], values[bits() % i]);
  }

 private:
  std::uint64_t state;
};

}  // namespace Meseta47::support
