#include "model/geometry/CirculoExacto.h"

#include <cmath>
#include <cstdint>

#include "model/geometry/Entero128.h"

namespace Meseta47 {

namespace {

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
