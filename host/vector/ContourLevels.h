#pragma once

#include <cstdint>

namespace Meseta47::host {

/// The heights of contours: base + k * interval, in the scaled units of a drawing. The library cuts at the multiples of
/// an interval; so heights are lowered by shift() before it is called and contours are raised by as much afterwards.
class ContourLevels {
 public:
  /// Both in units of the input, which have `precision` decimals. Throws Failure when the interval is below one scaled
  /// unit, or when either is no whole number of them: the contours would not lie where they were asked for.
  ContourLevels(double interval, double base, int precision);

  /// Scaled units between levels.
  [[nodiscard]] int interval() const { return interval_; }
  /// From 0 to the interval: the base less as many intervals as it holds.
  [[nodiscard]] int shift() const { return shift_; }
  /// The interval as the library wants it, in units of the input: it cuts off what its own product with the scale may
  /// have fallen short of.
  [[nodiscard]] double safeInterval() const;
  /// Which level a height is: 0 at the base.
  [[nodiscard]] std::int64_t number(int z) const { return (z - base_) / interval_; }
  /// How many levels lie from one height to another, limits included.
  [[nodiscard]] std::int64_t between(int low, int high) const;
  /// Throws Failure, with the numbers, when more than 100,000 do. `what` is what has these heights.
  void requireFew(int low, int high, char const* what) const;

 private:
  int precision_;
  int interval_;
  std::int64_t base_;
  int shift_;
};

}  // namespace Meseta47::host
