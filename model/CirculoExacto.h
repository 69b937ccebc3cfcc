#pragma once

#include "model/CCoor3D.h"
#include "platform/Exporta.h"

namespace Meseta47 {

/// Where `p` lies with respect to the circle through `a`, `b` and `c` in plan: 1 inside, 0 on it, -1 outside; 0 too
/// when the three are collinear. Exact for all 32-bit coordinates, whichever way the three turn. Some 100 ns: for
/// circles so large that doubles cannot tell.
[[nodiscard]] URDIMBRE_API int LadoDelCirculo(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c,
                                              CCoor3D<int> const& p);

}  // namespace Meseta47
