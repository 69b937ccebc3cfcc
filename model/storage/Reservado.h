#pragma once

#include <cstddef>
#include <vector>

#include "model/threads/Reparto.h"
#include "platform/Memoria.h"

namespace Meseta47 {

/// An empty vector with room for so many elements, whose memory all processors have laid out: the one thread that then
/// makes the elements need not wait for it page by page. For vectors that are filled whole.
template <class T>
std::vector<T> Reservado(std::size_t elementos) {
  constexpr std::size_t kTrozo = std::size_t{1} << 22;  // bytes: a millisecond's work
  std::vector<T> vacio;
  vacio.reserve(elementos);
  auto* memoria = reinterpret_cast<std::byte*>(vacio.data());
  Reparte(elementos * sizeof(T), kTrozo,
          [memoria](std::size_t desde, std::size_t hasta) { Puebla(memoria + desde, hasta - desde); });
  return vacio;
}

}  // namespace Meseta47
