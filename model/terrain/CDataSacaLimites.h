#pragma once

#include "platform/Exporta.h"

namespace Meseta47 {

/// How the outline of a drawing is drawn. A new record sets no limit.
class URDIMBRE_API CDataSacaLimites {
 public:
  double distancia = -1;         ///< drawing units: greatest side inside the outline; 0 lets none pass; below 0, any
  double superficieMinima = -1;  ///< square drawing units: rings around less are left out; below 0, none is
};

}  // namespace Meseta47
