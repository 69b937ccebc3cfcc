#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <vector>

namespace Meseta47 {

/// The neighbours of each point as far as it takes to say whether they are enough: of `minVecinos` that are asked for,
/// twice as many and one are kept, since two triangles tell of each. What comes later is dropped.
///
/// 4 bytes a point for each neighbour that is kept, 12 for a single one asked for. From four asked for on a point has
/// 32 bytes, which hold 7 neighbours, and the few lists that are longer go on elsewhere.
class CListasVecinos {
 public:
  /// `puntos` is the highest number of a point.
  CListasVecinos(std::size_t puntos, unsigned minVecinos)
      : minimo(minVecinos),
        tope(std::uint64_t{2} * minVecinos + 1),
        ancho(static_cast<std::size_t>(std::min(tope, kAncho))),
        cuantos(puntos),
        primeros(puntos * ancho),
        siguen(tope > kAncho ? puntos : 0) {}

  /// Tells the point of that number of a neighbour. Throws std::bad_alloc.
  void Anade(int numero, int vecino);

  /// By number less 1: whether the point has fewer different neighbours than are asked for, of those kept. Throws
  /// std::bad_alloc.
  [[nodiscard]] std::vector<bool> Aislados() const;

 private:
  static constexpr std::uint64_t kAncho = 7;

  /// A piece of a list behind the first; 0 stands for no neighbour, and behind it there is none.
  struct CTrozo {
    std::array<std::int32_t, kAncho> vecinos{};
    std::uint32_t sigue = 0;  ///< place of the next piece among the others, from 1
  };
  static_assert(sizeof(CTrozo) == 32);

  [[nodiscard]] std::span<std::int32_t> Primero(std::size_t i) { return {primeros.data() + i * ancho, ancho}; }
  [[nodiscard]] std::span<std::int32_t const> Primero(std::size_t i) const {
    return {primeros.data() + i * ancho, ancho};
  }
  [[nodiscard]] bool EsAislado(std::size_t i, std::vector<std::int32_t>& distintos) const;

  unsigned minimo;
  std::uint64_t tope;
  std::size_t ancho;  ///< neighbours in a first piece
  std::size_t cuantos;
  std::vector<std::int32_t> primeros;  ///< a piece for each point
  std::vector<std::uint32_t> siguen;   ///< and the place of its second; empty when all lists end before
  std::deque<CTrozo> otros;
};

}  // namespace Meseta47
