#pragma once

#include "model/geometry/CCoor3D.h"
#include "platform/Exporta.h"

namespace Meseta47 {

/// Squared distance of `p` from the centre of the circle through `a`, `b` and `c`, less the squared radius, in plan:
/// negative inside. Found from the points alone and rounded once where it is small, however large the circle; 0 when
/// the three are collinear. For the circles so large that a centre kept in doubles cannot tell.
[[nodiscard]] URDIMBRE_API double ExcesoSobreCirculo(CCoor3D<int> const& a, CCoor3D<int> const& b,
                                                     CCoor3D<int> const& c, CCoor3D<int> const& p);

}  // namespace Meseta47
