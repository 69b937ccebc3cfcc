#pragma once

#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// Passage from one reference system to another by seven parameters: p' = t + (1 + k) R p, with the small rotations of
/// R taken one after another about x, y and z.
class URDIMBRE_API CDataHelmertNTV2 {
 public:
  double traslacion[3] = {0, 0, 0};  ///< metres
  double rotacion[3] = {0, 0, 0};    ///< radians, counter-clockwise seen from the positive end of each axis
  double escala = 0;                 ///< parts of one: 1e-6 is one part in a million

  /// The point in the other system, metres.
  [[nodiscard]] CCoor3D<double> Aplica(CCoor3D<double> const& p) const;
};

}  // namespace Meseta47
