#pragma once

#include <cstdint>
#include <limits>

namespace Meseta47 {

/// The integer nearest to `v`, halves to the even one, saturating at the 32-bit limits; 0 for a NaN. The circle of
/// three nearly collinear points is enormous, and a conversion that overflows is undefined behaviour.
[[nodiscard]] constexpr std::int32_t Redondea(double v) noexcept {
  constexpr double kMenor = std::numeric_limits<std::int32_t>::min();
  constexpr double kMayor = std::numeric_limits<std::int32_t>::max();
  constexpr double kUnidad = 6755399441055744.0;  // 1.5 * 2^52: adding it leaves no bit behind the point
  if (v != v) return 0;
  const double dentro = v < kMenor ? kMenor : (v > kMayor ? kMayor : v);
  return static_cast<std::int32_t>((dentro + kUnidad) - kUnidad);
}

/// `v` without its fraction, saturating at the 32-bit limits; 0 for a NaN.
[[nodiscard]] constexpr std::int32_t Trunca(double v) noexcept {
  if (v >= 2147483647.0) return std::numeric_limits<std::int32_t>::max();
  if (v <= -2147483648.0) return std::numeric_limits<std::int32_t>::min();
  return v == v ? static_cast<std::int32_t>(v) : 0;
}

}  // namespace Meseta47
