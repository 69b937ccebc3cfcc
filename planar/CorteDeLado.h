#pragma once

#include <cstdint>

#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// The lowest multiple of the interval that is not below a height.
[[nodiscard]] inline std::int64_t PrimerNivel(int z, int equidistancia) {
  const std::int64_t nivel = std::int64_t{z} / equidistancia * equidistancia;  // towards zero
  return nivel < z ? nivel + equidistancia : nivel;
}

/// Where a side has a height between those of its ends. It is measured from the lower end, whichever way a triangle
/// runs the side, so that the two triangles of a side cut it at the very same point and no contour breaks there.
[[nodiscard]] inline CCoor3D<int> CorteDeLado(CCoor3D<int> const& bajo, CCoor3D<int> const& alto, std::int64_t nivel) {
  const double dx = static_cast<double>(alto.x) - bajo.x, dy = static_cast<double>(alto.y) - bajo.y;
  const double dz = static_cast<double>(alto.z) - bajo.z, t = static_cast<double>(nivel) - bajo.z;
  CCoor3D<int> corte;
  corte.ActualizaXY(t * dx / dz + bajo.x, t * dy / dz + bajo.y);
  corte.z = static_cast<int>(nivel);
  return corte;
}

}  // namespace Meseta47
