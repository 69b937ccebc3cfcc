#pragma once

#include <cstdint>

#include "model/geometry/CCoor3D.h"
#include "model/geometry/CMaximas.h"
#include "model/storage/VectorCrudo.h"
#include "platform/Anticipa.h"

namespace Meseta47 {

/// A point where it stands, and its plan position from the lower left corner of some box.
struct CClavePunto {
  std::uint32_t x, y;
  CCoor3D<int> const* punto;

  CClavePunto() = default;
  CClavePunto(CCoor3D<int> const& p, CMaximas<int> const& caja)
      : x(Desde(caja.Minimo.x, p.x)), y(Desde(caja.Minimo.y, p.y)), punto(&p) {}

  /// How far `v` lies from the minimum; 32-bit integers are never further apart than that.
  [[nodiscard]] static std::uint32_t Desde(int minimo, int v) {
    return static_cast<std::uint32_t>(v) - static_cast<std::uint32_t>(minimo);
  }
  [[nodiscard]] bool MismaPlanta(CClavePunto const& o) const { return x == o.x && y == o.y; }
};

/// Orders points by x, then y, then z; those of one position keep the order in which they came. The box holds all of
/// them. O(n) on all processors, with room for a second list; the result does not depend on their number.
void OrdenaPorPosicion(VectorCrudo<CClavePunto>& claves, CMaximas<int> const& caja);

/// For a pass over the points in that order, in which neighbours are far apart in memory: prefetches a point some way
/// ahead of number `i`.
inline void AnticipaPunto(VectorCrudo<CClavePunto> const& claves, std::size_t i) noexcept {
  constexpr std::size_t kAdelanto = 8;  // about as many lines as a core waits for at once
  if (i + kAdelanto < claves.size()) AnticipaLectura(claves[i + kAdelanto].punto);
}

}  // namespace Meseta47
