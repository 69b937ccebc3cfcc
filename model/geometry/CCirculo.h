#pragma once

#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// A circle in plan, in scaled units: four numbers and nothing else, for elements that keep one by the million. A
/// radius of exactly 0.0 marks a degenerate circle.
struct URDIMBRE_API CCirculo {
  /// Greatest squared distance of two points from the third for which the plain formula divides exact numbers.
  static constexpr double kExacto = 0x1p34;

  double x = 0, y = 0;
  double radio = 0;
  double radio2 = 0;  ///< the square of the radius

  /// The circle through three points. False, with all four at 0, when they are exactly collinear.
  bool Por3Puntos(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c) {
    // Relative to the first point: the products of absolute coordinates would lose the low bits that the tests need.
    const std::int64_t bx = static_cast<std::int64_t>(b.x) - a.x, by = static_cast<std::int64_t>(b.y) - a.y;
    const std::int64_t cx = static_cast<std::int64_t>(c.x) - a.x, cy = static_cast<std::int64_t>(c.y) - a.y;
    const double area2 = ProductoVectorial(bx, by, cx, cy);
    if (area2 == 0) {
      *this = {};
      return false;
    }
    const double dbx = static_cast<double>(bx), dby = static_cast<double>(by);
    const double dcx = static_cast<double>(cx), dcy = static_cast<double>(cy);
    const double b2 = dbx * dbx + dby * dby, c2 = dcx * dcx + dcy * dcy;
    const double ux = (dcy * b2 - dby * c2) / (2 * area2), uy = (dbx * c2 - dcx * b2) / (2 * area2);
    x = a.x + ux;
    y = a.y + uy;
    PonRadio(ux, uy);
    // Below this the numerators are exact. Above it they lose the low bits, and with them what tells the points of one
    // circle from others: triangles with a short side would each have a centre of their own.
    // The areas of figures as wide as the range do not fit the arithmetic that mends this.
    constexpr double kCabe = 0x1p60;
    if ((b2 > kExacto || c2 > kExacto) && std::abs(area2) < kCabe) Afina(a, b, c);
    return true;
  }

 private:
  void PonRadio(double dx, double dy) {
    radio2 = dx * dx + dy * dy;
    radio = std::sqrt(radio2);
  }
  /// Takes the rounding of the numerators out.
  void Afina(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c);
};

}  // namespace Meseta47
