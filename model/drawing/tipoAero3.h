#pragma once

#include <cstdint>

namespace Meseta47 {

/// Survey data of a point beside its coordinate. All zeros is "nothing known", and black.
struct tipoAero3 {
  double gps = 0;         ///< time of the pulse, as the file gives it
  std::uint8_t rojo = 0;  ///< colour; 16-bit colours are cut to their high byte
  std::uint8_t verde = 0;
  std::uint8_t azul = 0;
  std::uint8_t retorno = 0;    ///< number of this return, from 1
  std::uint8_t nRetornos = 0;  ///< returns of the pulse
  std::int8_t angulo = 0;      ///< scan angle, whole degrees, negative on the left of the flight
  std::uint16_t fuente = 0;    ///< number of the flight line or source file

  [[nodiscard]] bool operator==(tipoAero3 const&) const = default;
};

// Models copy the record as a block and files store it so.
static_assert(sizeof(tipoAero3) == 16);

}  // namespace Meseta47
