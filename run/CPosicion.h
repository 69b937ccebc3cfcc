#pragma once

#include <cstdint>

#include "platform/Exporta.h"

namespace Meseta47 {

/// A point of a run, without a pointer to it: which drawing, which entity, which point.
class URDIMBRE_API CPosicion {
 public:
  std::uint32_t lista = 0;
  std::uint32_t entidad = 0;
  std::uint32_t punto = 0;

  CPosicion() = default;
  CPosicion(std::uint32_t suLista, std::uint32_t suEntidad, std::uint32_t suPunto)
      : lista(suLista), entidad(suEntidad), punto(suPunto) {}
  [[nodiscard]] bool operator==(CPosicion const&) const = default;
};

}  // namespace Meseta47
