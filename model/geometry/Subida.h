#pragma once

#include <cmath>

#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// From a vertex of a triangle to the middle of the opposite side.
[[nodiscard]] inline CCoor3D<double> HaciaElMedio(CCoor3D<int> const& vertice, CCoor3D<int> const& b,
                                                  CCoor3D<int> const& c) {
  return {(static_cast<double>(b.x) + c.x) / 2 - vertice.x, (static_cast<double>(b.y) + c.y) / 2 - vertice.y,
          (static_cast<double>(b.z) + c.z) / 2 - vertice.z, 0};
}

/// Angle at which a way rises: radians, negative when it falls.
[[nodiscard]] inline double Subida(CCoor3D<double> const& camino) {
  return std::atan2(camino.z, std::sqrt(camino.x * camino.x + camino.y * camino.y));
}

}  // namespace Meseta47
