#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "classification/CMallaSuelo.h"
#include "model/geometry/CDataSemilla.h"
#include "model/terrain/CTIN.h"

namespace Meseta47 {

/// The triangulation of the ground minima of a grid, with neighbours.
class CTinSuelo {
 public:
  explicit CTinSuelo(CDataSemilla const& semilla) : tin(0, 0, semilla) {}

  /// A run's code. kHecho and no triangle where fewer than three minima are ground, or all in line. `sigue` is asked
  /// now and then, on the calling thread, and cancels when it answers false.
  int Construye(CMallaSuelo const& malla, std::function<bool()> const& sigue);

  CTIN tin;
  std::vector<std::uint32_t> vertices;  ///< of each vertex of `tin`, its minimum
};

}  // namespace Meseta47
