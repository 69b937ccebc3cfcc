#pragma once

#include <cstdint>

#include "run/CDivisiones.h"

namespace Meseta47 {

class CSetTetraedros;

/// What names a point of a run in space: the entity and the point. -1 in both, or in either, is none.
struct CLugarEnDibujo {
  std::int32_t ultimaEntidad = -1;
  std::int32_t ultimoPuntoCelda = -1;

  [[nodiscard]] bool EstaVacio() const { return ultimaEntidad < 0 || ultimoPuntoCelda < 0; }
  [[nodiscard]] bool operator==(CLugarEnDibujo const&) const = default;
};

/// What the division tree takes from space: axes, deepest level, the sets that mirror it, and what names a place.
struct CRasgos3D {
  static constexpr unsigned kEjes = 3;
  static constexpr unsigned kNivelMaximo = 10;
  using CSet = CSetTetraedros;
  using CLugar = CLugarEnDibujo;
};

/// A cell of the octree in space, and the tree.
using CDivisiones3D = CCeldaDivision<CRasgos3D>;
using CArbolDivisiones3D = CArbolDivisiones<CRasgos3D>;

}  // namespace Meseta47
