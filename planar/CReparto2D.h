#pragma once

#include <cstdint>

#include "model/geometry/CMaximas.h"
#include "platform/Exporta.h"

namespace Meseta47 {

/// How the quadrants of a mesh are shared by two threads: those on either side of the middle of the root, in x or in y.
/// What the points alone tell, so that whoever feeds a run can put them in an order that suits it.
struct URDIMBRE_API CReparto2D {
  /// From how many points on two threads pay.
  static constexpr std::uint32_t kMinimo = 50'000;

  int CCoor3D<int>::*eje = nullptr;
  int medio = 0;

  /// The half that a point falls in.
  [[nodiscard]] unsigned Mitad(CCoor3D<int> const& p) const { return p.*eje >= medio ? 1 : 0; }

  /// By the axis that shares these numbers of points, of the four quadrants, more evenly.
  [[nodiscard]] static CReparto2D Para(std::uint64_t const (&porCuadrante)[4], CCoor3D<int> const& centro);
  /// Whether two threads can insert so many points, and it pays: no more than have a stamp of their own, no extents in
  /// which a circle can be too wide to be judged by itself, and neither half nearly empty.
  [[nodiscard]] static bool VaPorDos(std::uint64_t puntos, std::uint64_t const (&porCuadrante)[4],
                                     CMaximas<int> const& caja, std::uint32_t minimo = kMinimo);
};

}  // namespace Meseta47
