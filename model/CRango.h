#pragma once

#include <cmath>

#include "platform/Exporta.h"

namespace Meseta47 {

/// A closed interval of doubles whose limits can be left open.
class URDIMBRE_API CRango {
 public:
  double ValorMin, ValorMax;

  /// The first two are the values that stand for "no limit set" at each end, the last two the limits that hold while
  /// none is set.
  CRango(double sinMin, double sinMax, double menor, double mayor)
      : ValorMin(menor), ValorMax(mayor), marcaMin(sinMin), marcaMax(sinMax) {}

  void SetValorMin(double v) {
    ValorMin = v;
    puestoMin = v != marcaMin;
  }
  void SetValorMax(double v) {
    ValorMax = v;
    puestoMax = v != marcaMax;
  }

  /// Non-zero when a limit was set.
  [[nodiscard]] int HayRango() const { return puestoMin || puestoMax; }
  /// Non-zero when the value lies between the limits, limits included.
  [[nodiscard]] int EsValido(double v) const { return v >= ValorMin && v <= ValorMax; }
  /// The same for the absolute difference of one quantity at two points.
  [[nodiscard]] int EsValido(double a, double b) const { return EsValido(std::abs(a - b)); }

 private:
  double marcaMin, marcaMax;
  bool puestoMin = false, puestoMax = false;
};

}  // namespace Meseta47
