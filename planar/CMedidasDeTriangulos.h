#pragma once

#include <algorithm>
#include <cstdint>

#include "model/geometry/CCoor3D.h"
#include "model/geometry/Signo.h"

namespace Meseta47 {

/// What is noted of triangles as they are written, while their points are in the cache: it spares whoever reads the
/// file a look at the points.
struct CMedidasDeTriangulos {
  double ladoMasLargo2 = 0;   ///< greatest squared side in plan, squared scaled units
  std::uint64_t dudosos = 0;  ///< triangles that are not strictly clockwise, or with a vertex that has lost its number
  std::uint64_t triangulos = 0;  ///< all of them

  /// A triangle of real points.
  void Anota(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c) {
    const auto resta = [](int v, int w) { return static_cast<std::int64_t>(v) - w; };
    const bool gira = ProductoVectorial(resta(b.x, a.x), resta(b.y, a.y), resta(c.x, a.x), resta(c.y, a.y)) < 0;
    const bool numerado = a.num > 0 && b.num > 0 && c.num > 0;
    dudosos += gira && numerado ? 0 : 1;
    ladoMasLargo2 = std::max({ladoMasLargo2, a.Distancia2(b), b.Distancia2(c), c.Distancia2(a)});
    ++triangulos;
  }
  void Suma(CMedidasDeTriangulos const& o) {
    ladoMasLargo2 = std::max(ladoMasLargo2, o.ladoMasLargo2);
    dudosos += o.dudosos;
    triangulos += o.triangulos;
  }
};

}  // namespace Meseta47
