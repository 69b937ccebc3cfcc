#pragma once

#include <cmath>

namespace Meseta47::host {

/// The real coordinate of scaled units, `units` of them in one. The double nearest to that decimal number wherever the
/// origin is a whole number of units, as whole metres are: beside 0 a sum with the origin would lose its last digits.
[[nodiscard]] inline double realCoordinate(int value, double origin, double units) {
  constexpr double kExact = 0x1p52;
  const double shift = origin * units;
  return std::nearbyint(shift) == shift && std::abs(shift) < kExact ? (shift + value) / units : value / units + origin;
}

}  // namespace Meseta47::host
