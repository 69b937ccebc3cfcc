#pragma once

#include <cmath>

#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// A sphere in scaled units: plain numbers, for elements that keep one by the million. A radius of exactly 0.0 marks a
/// degenerate one.
struct URDIMBRE_API CEsfera {
  double x = 0, y = 0, z = 0;
  double radio2 = 0;  ///< the square of the radius
  double margen = 0;  ///< see `Exceso`
  double radio = 0;

  /// The sphere through four points, relative to the last. False, with all at 0, when they are exactly coplanar.
  bool Por4Puntos(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c, CCoor3D<int> const& d);

  /// Squared distance of a point to the centre, less the squared radius. Its sign is certain as long as its size passes
  /// `margen`; else `LadoDeEsfera` tells.
  [[nodiscard]] double Exceso(double px, double py, double pz) const {
    const double dx = x - px, dy = y - py, dz = z - pz;
    return dx * dx + dy * dy + dz * dz - radio2;
  }

  /// Three points relative to a fourth, which lies at `px`, `py`, `pz`.
  struct CVectores {
    double ax, ay, az, bx, by, bz, cx, cy, cz;
  };
  /// What the plain formula makes of them. It holds where `EsBuena` says so of the last three.
  struct CCalculo {
    double x, y, z, radio2, margen, radio;
    double volumen6;  ///< six times the signed volume
    double tamano;    ///< product of the sizes of the three vectors: what `volumen6` is rounded in proportion to
    double error;     ///< greatest error of the centre
  };
  [[nodiscard]] static bool EsBuena(double volumen6, double tamano, double error) {
    return std::abs(volumen6) >= kRedondeo * tamano && error <= kMayorError;
  }
  [[nodiscard]] static CCalculo Calcula(CVectores const& v, double px, double py, double pz);
  /// The same sphere with exact numerators and denominator, for those that are nearly flat. False when they are flat.
  bool Afina(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c, CCoor3D<int> const& d);

  /// How far an excess must be from 0 for its sign to be certain, when the centre is off by `error` at most.
  [[nodiscard]] static double Margen(double radio, double error) {
    // Up to twice the radius away from the centre, the error moves an excess by 2 error (3 radio), and the sums round
    // it by less than 64 u radio2, u = 2^-53; farther away the excess grows faster than its error.
    return radio * (6 * error + 0x1p-47 * radio);
  }

 private:
  // With u = 2^-53 and la, lb, lc the greatest coordinates of the vectors, the volume below is off by less than
  // 28 u la lb lc, and each numerator by less than 48 u la lb lc (la + lb + lc). The quotient, where the first is at
  // most half of the volume, by less than 48 u la lb lc (la + lb + lc + 2 |centre|) / |volume|. All is rounded up to a
  // power of two, with a factor of 2 for the three axes together.
  static constexpr double kRedondeo = 0x1p-46;
  /// Scaled units. A box rounded to integers is half a unit away from whatever it is compared with, so filing by it
  /// stays right up to that.
  static constexpr double kMayorError = 0.125;
};

/// Side of `p` with respect to the sphere through four points: -1 inside, 0 on it, +1 outside. Exact over the whole
/// 32-bit range; 0 for coplanar points.
[[nodiscard]] URDIMBRE_API int LadoDeEsfera(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c,
                                            CCoor3D<int> const& d, CCoor3D<int> const& p);

/// Sign of the volume of (a, b, c, d): +1 when d sees a, b, c turn clockwise, 0 when the four are coplanar. Exact.
[[nodiscard]] URDIMBRE_API int SignoDeVolumen(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c,
                                              CCoor3D<int> const& d);

// Numerators and denominator of the centre, by Cramer's rule: o = (|a|^2 (b x c) + |b|^2 (c x a) + |c|^2 (a x b)) /
// (2 a . (b x c)). Written so that a loop over columns of points does several spheres in an instruction.
inline CEsfera::CCalculo CEsfera::Calcula(CVectores const& v, double px, double py, double pz) {
  const auto tamano = [](double a, double b, double c) {
    const double p = std::abs(a), q = std::abs(b), r = std::abs(c);
    const double mayor = p < q ? q : p;
    return mayor < r ? r : mayor;
  };
  const double la = tamano(v.ax, v.ay, v.az), lb = tamano(v.bx, v.by, v.bz), lc = tamano(v.cx, v.cy, v.cz);
  const double a2 = v.ax * v.ax + v.ay * v.ay + v.az * v.az;
  const double b2 = v.bx * v.bx + v.by * v.by + v.bz * v.bz;
  const double c2 = v.cx * v.cx + v.cy * v.cy + v.cz * v.cz;
  const double bcx = v.by * v.cz - v.bz * v.cy, bcy = v.bz * v.cx - v.bx * v.cz, bcz = v.bx * v.cy - v.by * v.cx;
  const double cax = v.cy * v.az - v.cz * v.ay, cay = v.cz * v.ax - v.cx * v.az, caz = v.cx * v.ay - v.cy * v.ax;
  const double abx = v.ay * v.bz - v.az * v.by, aby = v.az * v.bx - v.ax * v.bz, abz = v.ax * v.by - v.ay * v.bx;
  CCalculo r;
  r.volumen6 = v.ax * bcx + v.ay * bcy + v.az * bcz;
  const double mitad = 0.5 / r.volumen6;
  const double ox = (a2 * bcx + b2 * cax + c2 * abx) * mitad;
  const double oy = (a2 * bcy + b2 * cay + c2 * aby) * mitad;
  const double oz = (a2 * bcz + b2 * caz + c2 * abz) * mitad;
  r.x = px + ox;
  r.y = py + oy;
  r.z = pz + oz;
  // From the centre as it was rounded, so that the error of the radius goes with that of the centre.
  const double rx = r.x - px, ry = r.y - py, rz = r.z - pz;
  r.radio2 = rx * rx + ry * ry + rz * rz;
  r.radio = std::sqrt(r.radio2);
  r.tamano = la * lb * lc;
  const double relativo = kRedondeo * r.tamano * std::abs(mitad) * 2;
  r.error = relativo * (la + lb + lc + 2 * r.radio) + 0x1p-52 * (std::abs(r.x) + std::abs(r.y) + std::abs(r.z));
  r.margen = Margen(r.radio, r.error);
  return r;
}

}  // namespace Meseta47
