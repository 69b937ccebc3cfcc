#pragma once

#include "model/geometry/CMaximas.h"

namespace Meseta47 {

/// Distance in plan from a place to the segment between two points.
[[nodiscard]] double DistanciaASegmento(CCoor3D<double> const& p, CCoor3D<double> const& a, CCoor3D<double> const& b);

/// Whether the segment between two points touches a rectangle, limits included, in plan.
[[nodiscard]] bool SegmentoTocaCaja(CCoor3D<double> const& a, CCoor3D<double> const& b, CMaximas<double> const& caja);

}  // namespace Meseta47
