#pragma once

#include "model/geometry/CCirculo.h"

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
    CCirculo circulo;
    const bool hay = circulo.Por3Puntos(a, b, c);
    if (!hay) Degenera();
    centro.x = circulo.x;
    centro.y = circulo.y;
    radio = circulo.radio;
    radio2 = circulo.radio2;
    return hay;
  }

  /// The sphere through four points. False, with the radius left at 0.0, when they are exactly coplanar. The number
  /// field of the centre is kept; no height is changed.
  bool Centro4P(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c, CCoor3D<int> const& d);

 private:
  void Degenera() {
    centro.x = centro.y = centro.z = 0;
    radio = radio2 = 0;
  }
};

}  // namespace Meseta47
