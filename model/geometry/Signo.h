#pragma once

#include <cmath>
#include <cstdint>

namespace Meseta47 {

/// Half the width of zero, in scaled units: ten times the rounding of a centre at the edge of the 32-bit range.
inline constexpr double kTolerancia = 1e-07;

/// -1, 0 or +1: the sign of `v`, which counts as zero up to `kTolerancia` on either side.
[[nodiscard]] constexpr int Signo(double v) noexcept { return v < -kTolerancia ? -1 : (v > kTolerancia ? 1 : 0); }

/// Half the width of zero for a difference of squared distances, as though the radius `r` had a tolerance of
/// `kTolerancia`: (r + e)^2 - r^2 = 2 r e + e^2.
[[nodiscard]] constexpr double MargenCuadrado(double r) noexcept {
  return 2 * r * kTolerancia + kTolerancia * kTolerancia;
}

/// Sign of a difference `d` of squared distances with that margin.
[[nodiscard]] constexpr int SignoCuadrado(double d, double r) noexcept {
  const double margen = MargenCuadrado(r);
  return d < -margen ? -1 : (d > margen ? 1 : 0);
}

/// Twice the signed area of the triangle (0, a, b): ax * by - ay * bx, for differences of 32-bit coordinates. Its sign
/// is exact, and so is every value up to 2^53; greater ones are right to one part in 2^49.
[[nodiscard]] inline double ProductoVectorial(std::int64_t ax, std::int64_t ay, std::int64_t bx,
                                              std::int64_t by) noexcept {
  const double estimado =
      static_cast<double>(ax) * static_cast<double>(by) - static_cast<double>(ay) * static_cast<double>(bx);
  // Differences stay below 2^32 and products below 2^64, so the estimate is off by at most 2^12. Past 2^62 that is
  // nothing; below it the true value fits in 64 bits, where arithmetic modulo 2^64 gives it exactly although the
  // products overflow.
  if (std::abs(estimado) > 0x1p62) return estimado;
  const auto exacto = static_cast<std::uint64_t>(ax) * static_cast<std::uint64_t>(by) -
                      static_cast<std::uint64_t>(ay) * static_cast<std::uint64_t>(bx);
  return static_cast<double>(static_cast<std::int64_t>(exacto));
}

}  // namespace Meseta47
