#pragma once

#include "model/drawing/CDigiTab.h"
#include "platform/Exporta.h"

namespace Meseta47 {

/// What takes part in a triangulation and what is kept of it. A new record filters nothing.
class URDIMBRE_API CDataTriangulacion {
 public:
  double zMin;               ///< metres: lower limit of the height window, included
  double zMax;               ///< metres: upper limit, included
  double pendienteMin = -1;  ///< degrees; below 0 together with a maximum of 90, slopes are not looked at
  double pendienteMax = 90;  ///< degrees
  int entero = 0;            ///< selects nothing; the searches hand the record on with 0
  CDigiTab incluidos;        ///< codes that take part: an entity's, or a point's class in a cloud; "*" is every one
  CDigiTab excluidos;        ///< codes that do not, whatever the table above says

  CDataTriangulacion();
  CDataTriangulacion(CDataTriangulacion const&) = default;
  CDataTriangulacion& operator=(CDataTriangulacion const&) = default;
  virtual ~CDataTriangulacion() = default;
};

}  // namespace Meseta47
