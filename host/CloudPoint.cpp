#include "host/CloudPoint.h"

#include <algorithm>
#include <cmath>

namespace Meseta47::host {

namespace {

// Scales and offsets come from decimal text: they carry its rounding to a double, and that of the product with a power
// of ten. Yet an offset of millions, where 1e-9 of it is many units, must still lie on a unit to a hundredth.
constexpr double kRelativeTolerance = 1e-9;
constexpr double kUnitTolerance = 0.01;

// Scales are seen that went through single precision: 0.01 is then 0.0099999998.
constexpr double kSinglePrecision = 1e-6;

bool isWhole(double units) {
  const double away = std::abs(units - std::round(units));
  return away <= std::min(kRelativeTolerance * std::abs(units), kUnitTolerance);
}

}  // namespace

void Extent::include(double x, double y, double z) {
  const std::array<double, 3> place{x, y, z};
  const bool first = isEmpty();
  for (std::size_t axis = 0; axis < 3; ++axis) {
    min[axis] = first ? place[axis] : std::min(min[axis], place[axis]);
    max[axis] = first ? place[axis] : std::max(max[axis], place[axis]);
  }
}

void Extent::include(Extent const& other) {
  if (!other.isEmpty()) {
    include(other.min[0], other.min[1], other.min[2]);
    include(other.max[0], other.max[1], other.max[2]);
  }
}

int defaultPrecision(std::span<double const, 3> scale, std::span<double const, 3> offset) {
  double unit = 1;
  for (int decimals = 0; decimals <= kMostDecimals; ++decimals, unit *= 10) {
    const auto whole = [unit](double length) { return isWhole(length * unit); };
    if (std::all_of(scale.begin(), scale.end(), whole) && std::all_of(offset.begin(), offset.end(), whole)) {
      return decimals;
    }
  }
  const double finest = *std::min_element(scale.begin(), scale.end());
  return std::clamp(static_cast<int>(std::ceil(-std::log10(finest) - kSinglePrecision)), 0, kMostDecimals);
}

}  // namespace Meseta47::host
