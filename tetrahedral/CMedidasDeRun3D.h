#pragma once

#include <cstdint>

#include "platform/Exporta.h"

namespace Meseta47 {

/// What a run in space will take, for whoever plans one.
struct URDIMBRE_API CMedidasDeRun3D {
  /// Half the side of the frame around points whose greatest extent this is, in any unit: a cube with a tenth of the
  /// extent to spare on each side, around the middle of their box. Its corners must fit 32 bits once scaled.
  [[nodiscard]] static constexpr double SemiladoDelMarco(double extension) { return extension * 1.2 * 0.5; }

  /// Bytes of the file of tetrahedra: four numbers of 4 bytes each, about seven tetrahedra a point and those of the
  /// frame. An estimate: surfaces of hard shape have more.
  [[nodiscard]] static constexpr std::uint64_t BytesDelFichero(std::uint64_t puntos) { return 16 * (7 * puntos + 6); }
};

}  // namespace Meseta47
