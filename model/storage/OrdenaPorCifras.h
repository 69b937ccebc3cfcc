#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "model/storage/VectorCrudo.h"
#include "model/threads/Reparto.h"

namespace Meseta47 {

namespace cifras {

inline constexpr unsigned kMayorCifra = 11;          ///< bits: the ends of 2048 groups stay in the nearest cache
inline constexpr std::size_t kPartes = 16;           ///< stretches of the input that are counted and moved on their own
inline constexpr std::size_t kMenorParte = 1 << 14;  ///< fewer things are not worth a stretch

/// One pass: moves the things into `otras`, those of equal digit together and in the order in which they came.
template <class T, class Cifra>
void Pasada(VectorCrudo<T> const& cosas, VectorCrudo<T>& otras, Cifra const& cifra) {
  const std::size_t partes = std::clamp<std::size_t>(cosas.size() / kMenorParte, 1, kPartes);
  std::vector<std::array<std::size_t, std::size_t{1} << kMayorCifra>> lugares(partes);
  const auto desde = [&](std::size_t parte) { return cosas.size() * parte / partes; };
  Reparte(partes, 1, [&](std::size_t parte, std::size_t) {
    lugares[parte].fill(0);
    for (std::size_t i = desde(parte); i < desde(parte + 1); ++i) ++lugares[parte][cifra(cosas[i])];
  });
  std::size_t lugar = 0;
  for (std::size_t grupo = 0; grupo < lugares[0].size(); ++grupo) {
    for (auto& cuentas : lugares) lugar += std::exchange(cuentas[grupo], lugar);
  }
  Reparte(partes, 1, [&](std::size_t parte, std::size_t) {
    for (std::size_t i = desde(parte); i < desde(parte + 1); ++i) otras[lugares[parte][cifra(cosas[i])]++] = cosas[i];
  });
}

}  // namespace cifras

/// Sorts the things by the integer `clave(thing)`, of which only the lowest `bits` bits, up to 32, are looked at. Equal
/// ones keep their order, so that a longer key is sorted by its lower part first. `otras` is as long as `cosas` and is
/// worked in; what it holds afterwards is of no use.
///
/// Digit by digit from the lowest, on all processors: O(n) for whatever distribution, two passes over memory for each
/// 11 bits.
template <class T, class Clave>
void OrdenaPorCifras(VectorCrudo<T>& cosas, VectorCrudo<T>& otras, unsigned bits, Clave const& clave) {
  if (bits == 0) return;
  const unsigned pasadas = (bits + cifras::kMayorCifra - 1) / cifras::kMayorCifra;
  const unsigned ancho = (bits + pasadas - 1) / pasadas;
  for (unsigned p = 0; p < pasadas; ++p) {
    const unsigned baja = p * ancho;
    const std::uint32_t mascara = (std::uint32_t{1} << std::min(ancho, bits - baja)) - 1;
    cifras::Pasada(cosas, otras, [&](T const& cosa) { return clave(cosa) >> baja & mascara; });
    cosas.swap(otras);
  }
}

}  // namespace Meseta47
