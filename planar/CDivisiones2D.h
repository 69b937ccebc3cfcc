#pragma once

#include <cstdint>

#include "run/CDivisiones.h"

namespace Meseta47 {

class CSetTriangulos2D;

/// What names a point of a run in plan: the drawing, the entity, the point. -1 in all three, or in any, is none.
struct CLugarEnLista {
  std::int16_t ultimaLista = -1;
  std::int32_t ultimaEntidad = -1;
  std::int32_t ultimoPuntoCelda = -1;

  [[nodiscard]] bool EstaVacio() const { return ultimaLista < 0 || ultimaEntidad < 0 || ultimoPuntoCelda < 0; }
  [[nodiscard]] bool operator==(CLugarEnLista const&) const = default;
};

/// What the division tree takes from the plan: axes, deepest level, the sets that mirror it, and what names a place.
struct CRasgos2D {
  static constexpr unsigned kEjes = 2;
  static constexpr unsigned kNivelMaximo = 12;
  using CSet = CSetTriangulos2D;
  using CLugar = CLugarEnLista;
};

/// A cell of the quadtree in plan, and the tree.
using CDivisiones2D = CCeldaDivision<CRasgos2D>;
using CArbolDivisiones2D = CArbolDivisiones<CRasgos2D>;

}  // namespace Meseta47
