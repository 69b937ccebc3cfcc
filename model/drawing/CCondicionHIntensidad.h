#pragma once

#include <cstdint>

#include "platform/Exporta.h"

namespace Meseta47 {

/// What a search by intensity looks for: points whose intensity lies between two limits, limits included, and that
/// stand so high take the class `tipo`.
class URDIMBRE_API CCondicionHIntensidad {
 public:
  std::int32_t minimo = 0;
  std::int32_t maximo = 0;
  float altura = 0;  ///< drawing units
  std::int8_t tipo = -1;

  CCondicionHIntensidad() = default;
  CCondicionHIntensidad(int menor, int mayor, char elTipo, float laAltura)
      : minimo(menor), maximo(mayor), altura(laAltura), tipo(static_cast<std::int8_t>(elTipo)) {}
};

}  // namespace Meseta47
