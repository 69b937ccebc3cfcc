#pragma once

#include "model/geometry/CMaximas.h"

namespace Meseta47 {

/// How a cell of a quadtree (two axes) or of an octree (three) is divided among its children. Of the number of a child
/// 1 is added for x high, 2 for y low, 4 for z high; high begins with the centre itself.
///
///        minX      cx      maxX
///   maxY  +---------+---------+
///         |    0    |    1    |
///     cy  +---------+---------+       and 4 to 7 above them, where there are three axes
///         |    2    |    3    |
///   minY  +---------+---------+
///
/// All of it is arithmetic on integers: nothing fails, nothing is rounded.
template <unsigned kEjes>
struct CCeldas {
  static_assert(kEjes == 2 || kEjes == 3);
  static constexpr unsigned kHijos = 1U << kEjes;
  static constexpr bool kEnEspacio = kEjes == 3;

  /// The child that the point falls in.
  [[nodiscard]] static unsigned Hijo(CCoor3D<int> const& p, CCoor3D<int> const& centro) {
    unsigned i = (p.x < centro.x ? 0U : 1U) + (p.y < centro.y ? 2U : 0U);
    if constexpr (kEnEspacio) i += p.z < centro.z ? 0U : 4U;
    return i;
  }

  /// The child that wholly holds the box; -1 when the box touches or crosses a line or plane through the centre.
  [[nodiscard]] static int HijoDeCaja(CMaximas<int> const& caja, CCoor3D<int> const& centro) {
    int hijo = 0;
    const auto situa = [&hijo](int minimo, int maximo, int medio, int siBajo, int siAlto) {
      const bool bajo = maximo < medio;
      hijo += bajo ? siBajo : siAlto;
      return bajo || minimo > medio;
    };
    if (!situa(caja.Minimo.x, caja.Maximo.x, centro.x, 0, 1)) return -1;
    if (!situa(caja.Minimo.y, caja.Maximo.y, centro.y, 2, 0)) return -1;
    if constexpr (kEnEspacio) {
      if (!situa(caja.Minimo.z, caja.Maximo.z, centro.z, 0, 4)) return -1;
    }
    return hijo;
  }

  /// The box of a child. On two axes its heights stay empty.
  [[nodiscard]] static CMaximas<int> Caja(unsigned hijo, CMaximas<int> const& caja, CCoor3D<int> const& centro) {
    CMaximas<int> suya;
    const auto pon = [&](int CCoor3D<int>::*eje, bool alto) {
      suya.Minimo.*eje = alto ? centro.*eje : caja.Minimo.*eje;
      suya.Maximo.*eje = alto ? caja.Maximo.*eje : centro.*eje;
    };
    pon(&CCoor3D<int>::x, (hijo & 1U) != 0);
    pon(&CCoor3D<int>::y, (hijo & 2U) == 0);
    if constexpr (kEnEspacio) pon(&CCoor3D<int>::z, (hijo & 4U) != 0);
    return suya;
  }

  /// The centre of a box, by which it is divided.
  [[nodiscard]] static CCoor3D<int> Centro(CMaximas<int> const& caja) { return caja.Centro(kEnEspacio); }
};

}  // namespace Meseta47
