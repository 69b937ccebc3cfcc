#include "model/geometry/CirculoExacto.h"

#include <cmath>
#include <cstdint>

namespace Meseta47 {

namespace {

/// An integer modulo 2^128, read as one with a sign.
struct Entero128 {
  std::uint64_t bajo, alto;

  explicit Entero128(std::int64_t v) : bajo(static_cast<std::uint64_t>(v)), alto(v < 0 ? ~std::uint64_t{0} : 0) {}
  Entero128(std::uint64_t elBajo, std::uint64_t elAlto) : bajo(elBajo), alto(elAlto) {}

  Entero128 operator+(Entero128 o) const {
    const std::uint64_t suma = bajo + o.bajo;
    return {suma, alto + o.alto + (suma < bajo ? 1 : 0)};
  }
  Entero128 operator-(Entero128 o) const { return {bajo - o.bajo, alto - o.alto - (bajo < o.bajo ? 1 : 0)}; }
  Entero128 operator*(Entero128 o) const {
    constexpr std::uint64_t kMitad = 0xFFFFFFFF;
    const std::uint64_t a0 = bajo & kMitad, a1 = bajo >> 32, b0 = o.bajo & kMitad, b1 = o.bajo >> 32;
    const std::uint64_t medio = a1 * b0 + (a0 * b0 >> 32), cruce = a0 * b1 + (medio & kMitad);
    return {bajo * o.bajo, a1 * b1 + (medio >> 32) + (cruce >> 32) + bajo * o.alto + alto * o.bajo};
  }
  [[nodiscard]] double Valor() const {
    if (alto >> 63 != 0) return -(Entero128(0) - *this).Valor();
    return static_cast<double>(alto) * 0x1p64 + static_cast<double>(bajo);
  }
};

struct CVector {
  std::int64_t x, y;
};

double Cruz(CVector u, CVector v) {
  return static_cast<double>(u.x) * static_cast<double>(v.y) - static_cast<double>(u.y) * static_cast<double>(v.x);
}
double Cuadrado(CVector u) {
  return static_cast<double>(u.x) * static_cast<double>(u.x) + static_cast<double>(u.y) * static_cast<double>(u.y);
}
Entero128 CruzExacta(CVector u, CVector v) { return Entero128(u.x) * Entero128(v.y) - Entero128(u.y) * Entero128(v.x); }
Entero128 CuadradoExacto(CVector u) { return Entero128(u.x) * Entero128(u.x) + Entero128(u.y) * Entero128(u.y); }

}  // namespace

// The lifted determinant |u|^2 (v x w) + |v|^2 (w x u) + |w|^2 (u x v) of the vectors from p to the three points is the
// excess times twice the area of the triangle, with the other sign. Differences stay below 2^32, so it stays below
// 2^134, and an estimate in doubles is off by less than 2^86. Past twice that the excess is far from 0, and below it
// arithmetic modulo 2^128 holds the true value.
double ExcesoSobreCirculo(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c, CCoor3D<int> const& p) {
  const auto desde = [](CCoor3D<int> const& o, CCoor3D<int> const& q) {
    return CVector{static_cast<std::int64_t>(q.x) - o.x, static_cast<std::int64_t>(q.y) - o.y};
  };
  const CVector ab = desde(a, b), ac = desde(a, c);
  const double area2 = ProductoVectorial(ab.x, ab.y, ac.x, ac.y);
  if (area2 == 0) return 0;
  const CVector u = desde(p, a), v = desde(p, b), w = desde(p, c);
  double determinante = Cuadrado(u) * Cruz(v, w) + Cuadrado(v) * Cruz(w, u) + Cuadrado(w) * Cruz(u, v);
  if (std::abs(determinante) <= 0x1p87) {
    determinante = (CuadradoExacto(u) * CruzExacta(v, w) + CuadradoExacto(v) * CruzExacta(w, u) +
                    CuadradoExacto(w) * CruzExacta(u, v))
                       .Valor();
  }
  return -determinante / area2;
}

}  // namespace Meseta47
