#pragma once

#include <cmath>

#include "platform/Exporta.h"

namespace Meseta47 {

/// How a drawing's integers stand for metres: a coordinate in metres times 10^precision is the scaled integer. The
/// origin was taken off by whoever built the drawing and is put back by whoever writes a file; no computation uses it.
class URDIMBRE_API CDataSemilla {
 public:
  signed char precision = 2;     ///< decimals kept
  double origen[3] = {0, 0, 0};  ///< metres: easting, northing, height

  CDataSemilla() = default;
  CDataSemilla(char decimales, double x, double y, double z)
      : precision(static_cast<signed char>(decimales)), origen{x, y, z} {}

  /// Scaled units in a metre: 10^precision.
  [[nodiscard]] double Precision() const { return std::pow(10.0, precision); }
};

}  // namespace Meseta47
