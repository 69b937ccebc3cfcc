#include "model/terrain/CDataTriangulacion.h"

#include <limits>

namespace Meseta47 {

namespace {

// Infinite, so that a window without limits stays without them at any scale.
constexpr double kSinLimite = std::numeric_limits<double>::infinity();

}  // namespace

CDataTriangulacion::CDataTriangulacion() : zMin(-kSinLimite), zMax(kSinLimite) {
  incluidos.Inserta(CElementoDigiTab(ENTIDAD_LINEA, kCodigoTodos, 70, 70, 70, 0, 0, L"", 1), false);
}

}  // namespace Meseta47
