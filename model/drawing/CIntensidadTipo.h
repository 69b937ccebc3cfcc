#pragma once

#include <cstdint>

#include "platform/Exporta.h"

namespace Meseta47 {

/// The intensity of a return and a type: the index of the condition that took the point; -1 is none.
class URDIMBRE_API CIntensidadTipo {
 public:
  std::uint16_t intensidad = 0;
  std::int8_t tipo = -1;

  CIntensidadTipo() = default;
  CIntensidadTipo(unsigned short valor, signed char elTipo) : intensidad(valor), tipo(elTipo) {}
  CIntensidadTipo(CIntensidadTipo const&) = default;
  CIntensidadTipo& operator=(CIntensidadTipo const&) = default;
  virtual ~CIntensidadTipo() = default;
};

}  // namespace Meseta47
