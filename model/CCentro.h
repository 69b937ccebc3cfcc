#pragma once

#include "model/CCoor3D.h"

namespace Meseta47 {

/// A circle in plan or a sphere, in scaled units. A radius of exactly 0.0 marks a degenerate figure.
class URDIMBRE_API CCentro {
 public:
  CCoor3D<double> centro;  ///< its number field is free for the owner: meshes keep there the last point tested
  double radio = 0;
  double radio2 = 0;  ///< the square of the radius

  CCentro() = default;
  CCentro(CCentro const&) = default;
  CCentro& operator=(CCentro const&) = default;
  virtual ~CCentro() = default;

  /// The circle through three points in plan. False, with the radius left at 0.0, when they are exactly collinear.
  /// The number field of the centre is kept; its z is 0.
  bool Centro3P(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c) {
    // Relative to the first point: the products of absolute coordinates would lose the low bits that the tests need.
    const std::int64_t bx = static_cast<std::int64_t>(b.x) - a.x, by = static_cast<std::int64_t>(b.y) - a.y;
    const std::int64_t cx = static_cast<std::int64_t>(c.x) - a.x, cy = static_cast<std::int64_t>(c.y) - a.y;
    const double area2 = ProductoVectorial(bx, by, cx, cy);
    if (area2 == 0) {
      Degenera();
      return false;
    }
    const double dbx = static_cast<double>(bx), dby = static_cast<double>(by);
    const double dcx = static_cast<double>(cx), dcy = static_cast<double>(cy);
    const double b2 = dbx * dbx + dby * dby, c2 = dcx * dcx + dcy * dcy;
    const double ux = (dcy * b2 - dby * c2) / (2 * area2), uy = (dbx * c2 - dcx * b2) / (2 * area2);
    centro.x = a.x + ux;
    centro.y = a.y + uy;
    PonRadio(ux, uy);
    // Below this the numerators are exact. Above it they lose the low bits, and with them what tells the points of one
    // circle from others: triangles with a short side would each have a centre of their own.
    // The areas of figures as wide as the range do not fit the arithmetic that mends this.
    constexpr double kExacto = 0x1p34, kCabe = 0x1p60;
    if ((b2 > kExacto || c2 > kExacto) && std::abs(area2) < kCabe) Afina(a, b, c);
    return true;
  }

  /// The sphere through four points. False, with the radius left at 0.0, when they are exactly coplanar. The number
  /// field of the centre is kept; no height is changed.
  bool Centro4P(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c, CCoor3D<int> const& d);

 private:
  void PonRadio(double x, double y) {
    radio2 = x * x + y * y;
    radio = std::sqrt(radio2);
  }
  /// Takes the rounding of the numerators out of the circle through three points.
  void Afina(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c);
  void Degenera() {
    centro.x = centro.y = centro.z = 0;
    radio = radio2 = 0;
  }
};

}  // namespace Meseta47
