#include "model/geometry/CCentro.h"

namespace Meseta47 {

namespace {

struct CVector {
  std::int64_t x, y, z;

  CVector(CCoor3D<int> const& desde, CCoor3D<int> const& hasta)
      : x(static_cast<std::int64_t>(hasta.x) - desde.x),
        y(static_cast<std::int64_t>(hasta.y) - desde.y),
        z(static_cast<std::int64_t>(hasta.z) - desde.z) {}

  [[nodiscard]] double Norma2() const {
    const double dx = static_cast<double>(x), dy = static_cast<double>(y), dz = static_cast<double>(z);
    return dx * dx + dy * dy + dz * dz;
  }
};

struct CProducto {
  double x, y, z;

  CProducto(CVector const& a, CVector const& b)
      : x(ProductoVectorial(a.y, a.z, b.y, b.z)),
        y(ProductoVectorial(a.z, a.x, b.z, b.x)),
        z(ProductoVectorial(a.x, a.y, b.x, b.y)) {}
};

/// The determinant of three vectors in arithmetic modulo 2^64: exact where the true value fits 64 bits.
std::int64_t DeterminanteModular(CVector const& a, CVector const& b, CVector const& c) {
  const auto u = [](std::int64_t v) { return static_cast<std::uint64_t>(v); };
  const std::uint64_t x = u(b.y) * u(c.z) - u(b.z) * u(c.y);
  const std::uint64_t y = u(b.z) * u(c.x) - u(b.x) * u(c.z);
  const std::uint64_t z = u(b.x) * u(c.y) - u(b.y) * u(c.x);
  return static_cast<std::int64_t>(u(a.x) * x + u(a.y) * y + u(a.z) * z);
}

/// Six times the signed volume of the tetrahedron (0, a, b, c); `bc` is the product of the last two. Its sign is exact.
double Volumen6(CVector const& a, CVector const& b, CVector const& c, CProducto const& bc) {
  const double estimado =
      static_cast<double>(a.x) * bc.x + static_cast<double>(a.y) * bc.y + static_cast<double>(a.z) * bc.z;
  // Differences stay below 2^32 and each of the three terms below 2^97, so the estimate is off by less than 2^50. Where
  // it is small, the true value fits in 64 bits.
  if (std::abs(estimado) > 0x1p62) return estimado;
  return static_cast<double>(DeterminanteModular(a, b, c));
}

}  // namespace

bool CCentro::Centro4P(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c, CCoor3D<int> const& d) {
  // Relative to the first point, as for the circle.
  const CVector ab(a, b), ac(a, c), ad(a, d);
  const CProducto bc(ab, ac), cd(ac, ad), db(ad, ab);
  const double volumen6 = Volumen6(ab, ac, ad, cd);
  if (volumen6 == 0) {
    Degenera();
    return false;
  }
  const double b2 = ab.Norma2(), c2 = ac.Norma2(), d2 = ad.Norma2();
  const double inverso = 0.5 / volumen6;
  const double ux = (b2 * cd.x + c2 * db.x + d2 * bc.x) * inverso;
  const double uy = (b2 * cd.y + c2 * db.y + d2 * bc.y) * inverso;
  const double uz = (b2 * cd.z + c2 * db.z + d2 * bc.z) * inverso;
  centro.x = a.x + ux;
  centro.y = a.y + uy;
  centro.z = a.z + uz;
  radio2 = ux * ux + uy * uy + uz * uz;
  radio = std::sqrt(radio2);
  return true;
}

}  // namespace Meseta47
