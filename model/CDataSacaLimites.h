#pragma once

#include "platform/Exporta.h"

namespace Meseta47 {

/// How the outline of a drawing is drawn.
class URDIMBRE_API CDataSacaLimites {
 public:
  double distancia = 0;          ///< drawing units: greatest side inside the outline; 0 or below, no limit
  double superficieMinima = -1;  ///< square drawing units: smaller outlines are left out; below 0, none is
};

}  // namespace Meseta47
