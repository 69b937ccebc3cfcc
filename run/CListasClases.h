#pragma once

#include <vector>

#include "model/drawing/CInfoClasificacion.h"
#include "model/terrain/CDataTriangulacion.h"

namespace Meseta47 {

/// The tables of codes of a run, read as classes of points: a number each, and for an included code that begins with
/// "*" the class that matches every one.
class URDIMBRE_API CListasClases {
 public:
  explicit CListasClases(CDataTriangulacion const& datos);

  /// Included and not excluded. O(rows).
  [[nodiscard]] bool Admite(unsigned char clase) const;

  std::vector<CInfoClasificacion> incluidos, excluidos;  ///< in the order of the rows
};

}  // namespace Meseta47
