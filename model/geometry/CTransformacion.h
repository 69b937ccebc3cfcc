#pragma once

#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// A similarity in plan with a shift and a scale of its own for the heights: how a drawing is laid on a screen or on
/// another survey of the same ground.
class URDIMBRE_API CTransformacion {
 public:
  double escala = 1;   ///< not 0
  double giro = 0;     ///< radians, counter-clockwise
  double escalaZ = 1;  ///< not 0
  double dx = 0;       ///< shift, in units of the result
  double dy = 0;
  double dz = 0;

  [[nodiscard]] CCoor3D<double> Aplica(CCoor3D<double> const& p) const;
  [[nodiscard]] CCoor3D<double> AplicaInversa(CCoor3D<double> const& p) const;
  /// False when a scale is 0 or no number: points cannot come back then.
  [[nodiscard]] bool TieneInversa() const;
};

}  // namespace Meseta47
