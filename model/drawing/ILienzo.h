#pragma once

#include <vector>

#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// What entities paint themselves on. Coordinates come as the view's transformation left them.
class URDIMBRE_API ILienzo {
 public:
  virtual ~ILienzo() = default;
  virtual void Linea(std::vector<CCoor3D<double>> const& puntos) = 0;
  virtual void Punto(CCoor3D<double> const& punto) = 0;
};

}  // namespace Meseta47
