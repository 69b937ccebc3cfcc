#include "model/geometry/CCirculo.h"

namespace Meseta47 {

namespace {

/// A quotient of integers as a whole number and the rest. The numerator comes modulo 2^64: with a denominator below
/// 2^61 and a good estimate of the quotient, what is left over fits 64 bits, and its residue tells it exactly.
struct CCociente {
  double entero, resto = 0;

  CCociente(double estimado, std::uint64_t numerador, std::int64_t denominador) : entero(estimado) {
    constexpr double kMayor = 0x1p52;  // from here on doubles are whole numbers, and good enough
    if (std::abs(estimado) >= kMayor) return;
    entero = std::nearbyint(estimado);
    const auto cociente = static_cast<std::uint64_t>(static_cast<std::int64_t>(entero));
    const std::uint64_t sobra = numerador - cociente * static_cast<std::uint64_t>(denominador);
    resto = static_cast<double>(static_cast<std::int64_t>(sobra)) / static_cast<double>(denominador);
  }
};

}  // namespace

void CCirculo::Afina(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c) {
  const auto u = [](std::int64_t v) { return static_cast<std::uint64_t>(v); };
  const std::int64_t bx = static_cast<std::int64_t>(b.x) - a.x, by = static_cast<std::int64_t>(b.y) - a.y;
  const std::int64_t cx = static_cast<std::int64_t>(c.x) - a.x, cy = static_cast<std::int64_t>(c.y) - a.y;
  const std::uint64_t b2 = u(bx) * u(bx) + u(by) * u(by), c2 = u(cx) * u(cx) + u(cy) * u(cy);
  const auto area4 = static_cast<std::int64_t>(2 * (u(bx) * u(cy) - u(by) * u(cx)));
  const CCociente ux(x - a.x, u(cy) * b2 - u(by) * c2, area4);
  const CCociente uy(y - a.y, u(bx) * c2 - u(cx) * b2, area4);
  x = (a.x + ux.entero) + ux.resto;
  y = (a.y + uy.entero) + uy.resto;
  PonRadio(ux.entero + ux.resto, uy.entero + uy.resto);
}

}  // namespace Meseta47
