#pragma once

#include <vector>

#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// Points of an arc of ellipse: semi-axes `a` and `b`, the first turned by `giro`, from one parameter angle to another
/// (radians), both ends included. The chords stay within `flecha` of the curve; at most a million of them are made. The
/// height is that of the centre. Empty when a semi-axis or `flecha` is not positive or an angle is no number.
[[nodiscard]] std::vector<CCoor3D<double>> ArcoDeElipse(CCoor3D<double> const& centro, double a, double b, double giro,
                                                        double desde, double hasta, double flecha);

/// Points of the arc of circle from p1 over p2 to p3, which are among them. Heights grow evenly with the angle on each
/// of its two parts. Three collinear points are their own arc. Empty when `flecha` is not positive.
[[nodiscard]] std::vector<CCoor3D<double>> ArcoPorTresPuntos(CCoor3D<double> const& p1, CCoor3D<double> const& p2,
                                                             CCoor3D<double> const& p3, double flecha);

}  // namespace Meseta47
