#pragma once

#include <cmath>

#include "platform/Exporta.h"

namespace Meseta47 {

/// A closed interval of doubles whose limits can be left open.
class URDIMBRE_API CRango {
 public:
  double ValorMin, ValorMax;

  /// The first two are the values that stand for "no limit" at each end, the last two the limits that hold while none
  /// is set.
  CRango(double sinMin, double sinMax, double menor, double mayor)
      : ValorMin(menor), ValorMax(mayor), marcaMin(sinMin), marcaMax(sinMax), libreMin(menor), libreMax(mayor) {}

  /// Set a limit, or take it off with the value that stands for none.
  void SetValorMin(double v) {
    puestoMin = v != marcaMin;
    ValorMin = puestoMin ? v : libreMin;
  }
  void SetValorMax(double v) {
    puestoMax = v != marcaMax;
    ValorMax = puestoMax ? v : libreMax;
  }

  /// Non-zero when a limit was set.
  [[nodiscard]] int HayRango() const { return puestoMin || puestoMax; }
  /// Non-zero when the value lies between the limits, limits included.
  [[nodiscard]] int EsValido(double v) const { return v >= ValorMin && v <= ValorMax; }
  /// The same for the absolute difference of one quantity at two points.
  [[nodiscard]] int EsValido(double a, double b) const { return EsValido(std::abs(a - b)); }

 private:
  double marcaMin, marcaMax, libreMin, libreMax;
  bool puestoMin = false, puestoMax = false;
};

}  // namespace Meseta47
