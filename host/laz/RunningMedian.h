#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

namespace Meseta47::host::laz {

/// What the format takes for the median of the last five numbers: five sorted numbers, of which a new one pushes out
/// the largest or the smallest. The side changes when a number comes to lie on it.
class RunningMedian {
 public:
  [[nodiscard]] std::int32_t get() const { return sorted_[2]; }

  void add(std::int32_t v) {
    const unsigned keepsFrom = 1 - dropsLargest_;
    const unsigned changesSide =
        (static_cast<unsigned>(v >= sorted_[2]) & dropsLargest_) | (static_cast<unsigned>(v <= sorted_[2]) & keepsFrom);
    std::int32_t const* const kept = sorted_.data() + keepsFrom;
    const std::int32_t a = kept[0], b = kept[1], c = kept[2], d = kept[3];
    sorted_ = {std::min(a, v), std::max(a, std::min(b, v)), std::max(b, std::min(c, v)), std::max(c, std::min(d, v)),
               std::max(d, v)};
    dropsLargest_ ^= changesSide;
  }

 private:
  std::array<std::int32_t, 5> sorted_{};
  unsigned dropsLargest_ = 1;  // or 0: a number, as a branch on it or on where a number falls would be unpredictable
};

}  // namespace Meseta47::host::laz
