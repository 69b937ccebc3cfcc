#pragma once

#include "platform/Exporta.h"

namespace Meseta47 {

/// A side of a triangle as a pair of point indices, the lower first. A side whose two indices are equal is a blank.
class URDIMBRE_API CLado {
 public:
  unsigned P1 = 0, P2 = 0;
  int triangulo = -1;  ///< a triangle that has this side; -1 when not known
  int lado = 0;        ///< which of that triangle's sides it is

  CLado() = default;
  CLado(unsigned menor, unsigned mayor, int elTriangulo, int elLado)
      : P1(menor), P2(mayor), triangulo(elTriangulo), lado(elLado) {}

  /// By the lower index, then the higher one; the rest does not count.
  [[nodiscard]] bool operator<(CLado const& o) const { return P1 != o.P1 ? P1 < o.P1 : P2 < o.P2; }
  [[nodiscard]] bool operator==(CLado const& o) const { return P1 == o.P1 && P2 == o.P2; }
};

static_assert(sizeof(CLado) == 16);

}  // namespace Meseta47
