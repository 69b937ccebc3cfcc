#pragma once

#include <cstdint>

#include "platform/Exporta.h"

namespace Meseta47 {

/// A colour and a type: the class wanted for it, or the index of the condition that took the point; -1 is none.
class URDIMBRE_API CRGBTipo {
 public:
  std::uint8_t r = 0;
  std::uint8_t g = 0;
  std::uint8_t b = 0;
  std::int8_t tipo = -1;

  CRGBTipo() = default;
  CRGBTipo(unsigned char rojo, unsigned char verde, unsigned char azul, signed char elTipo)
      : r(rojo), g(verde), b(azul), tipo(elTipo) {}
  CRGBTipo(CRGBTipo const&) = default;
  CRGBTipo& operator=(CRGBTipo const&) = default;
  virtual ~CRGBTipo() = default;
};

}  // namespace Meseta47
