#pragma once

#include "model/drawing/CLinea.h"

namespace Meseta47 {

/// The stored point of an entity, to be numbered and pointed at. Drawings reach the phases of a run as constant, since
/// none of their positions changes; the number of a point belongs to the run.
inline CCoor3D<int>* PunteroDeRun(CLinea<int> const& e, unsigned punto) {
  return const_cast<CCoor3D<int>*>(e.PunteroAPunto(static_cast<int>(punto)));
}

}  // namespace Meseta47
