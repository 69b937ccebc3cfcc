#pragma once

#include "model/drawing/CRGBTipo.h"

namespace Meseta47 {

/// What a search by colour looks for: points of a colour, up to a tolerance, that stand so high take the class `tipo`.
class URDIMBRE_API CCondicionHRGB : public CRGBTipo {
 public:
  float altura = 0;             ///< drawing units
  std::uint8_t tolerancia = 0;  ///< greatest difference in each of the three colours

  CCondicionHRGB() = default;
  CCondicionHRGB(unsigned char rojo, unsigned char verde, unsigned char azul, char elTipo, float laAltura,
                 unsigned char laTolerancia)
      : CRGBTipo(rojo, verde, azul, static_cast<signed char>(elTipo)), altura(laAltura), tolerancia(laTolerancia) {}
};

}  // namespace Meseta47
