#include "host/vector/ContourLevels.h"

#include <cmath>
#include <fmt/format.h>
#include <limits>

#include "host/Failure.h"
#include "host/FileError.h"

namespace Meseta47::host {

namespace {

constexpr std::int64_t kMostLevels = 100000;
constexpr double kWhole = 1e-6;  // of a scaled unit: what a decimal number may lose as a double times the scale

/// Rounded down, whatever the sign; the divisor is positive.
std::int64_t divideDown(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

std::int64_t wholeUnits(char const* option, double value, int precision) {
  const double units = value * std::pow(10.0, precision);
  const double whole = std::round(units);
  if (std::abs(whole) > std::numeric_limits<std::int32_t>::max()) {
    throw Failure(fmt::format("{} {}: does not fit 32 bits at precision {}: give less", option, value, precision));
  }
  if (std::abs(units - whole) > kWhole) {
    throw Failure(
        fmt::format("{} {}: heights have {} decimals here, and it has more: round it, or give a higher "
                    "--precision",
                    option, value, precision));
  }
  return static_cast<std::int64_t>(whole);
}

}  // namespace

ContourLevels::ContourLevels(double interval, double base, int precision) : precision_(precision) {
  const double unit = std::pow(10.0, -precision);
  if (!(interval * (1 + kWhole) >= unit)) {
    throw Failure(
        fmt::format("--interval {}: heights are told apart by {} here: give that at least, or a higher "
                    "--precision",
                    interval, unit));
  }
  interval_ = static_cast<int>(wholeUnits("--interval", interval, precision));
  base_ = wholeUnits("--base", base, precision);
  shift_ = static_cast<int>(base_ - divideDown(base_, interval_) * interval_);
}

double ContourLevels::safeInterval() const {
  constexpr double kPartOfAUnit = 0.25;
  return (interval_ + kPartOfAUnit) * std::pow(10.0, -precision_);
}

std::int64_t ContourLevels::between(int low, int high) const {
  return divideDown(high - base_, interval_) - divideDown(low - base_ - 1, interval_);
}

void ContourLevels::requireFew(int low, int high, char const* what) const {
  const std::int64_t levels = between(low, high);
  if (levels <= kMostLevels) return;
  const double unit = std::pow(10.0, precision_);
  const double enough = std::ceil((static_cast<double>(high) - low) / static_cast<double>(kMostLevels)) / unit;
  throw Failure(fmt::format("--interval {}: {} from {} to {} have {} levels, more than {}: give {} or more",
                            interval_ / unit, what, low / unit, high / unit,
                            withThousands(static_cast<std::uint64_t>(levels)),
                            withThousands(static_cast<std::uint64_t>(kMostLevels)), enough));
}

}  // namespace Meseta47::host
