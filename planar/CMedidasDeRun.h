#pragma once

#include <cstdint>

#include "run/CFicheroTriples.h"

namespace Meseta47 {

/// What a run in plan will take, for whoever plans one.
struct URDIMBRE_API CMedidasDeRun {
  /// Half the side of the frame around points whose greater extent this is, in any unit: a square with a tenth of the
  /// extent to spare on each side. Its corners must fit 32 bits once scaled.
  [[nodiscard]] static constexpr double SemiladoDelMarco(double extension) { return extension * 1.2 * 0.5; }

  /// Bytes of the temporary file: two triangles a point, those at the frame included.
  [[nodiscard]] static constexpr std::uint64_t BytesDelFichero(std::uint64_t puntos) {
    return CFicheroTriples::kBytes * (2 * puntos + 2);
  }
};

}  // namespace Meseta47
