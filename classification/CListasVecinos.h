#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

namespace Meseta47 {

/// The neighbours of each point as far as it takes to say whether they are enough: of `minVecinos` that are asked for,
/// twice as many and one are kept, since two triangles tell of each. What comes later is dropped.
///
/// 32 bytes a point, which hold 7 neighbours; the few lists that are longer go on elsewhere.
class CListasVecinos {
 public:
  /// `puntos` is the highest number of a point.
  CListasVecinos(std::size_t puntos, unsigned minVecinos)
      : minimo(minVecinos), tope(std::uint64_t{2} * minVecinos + 1), primeros(puntos) {}

  /// Tells the point of that number of a neighbour. Throws std::bad_alloc.
  void Anade(int numero, int vecino);

  /// By number less 1: whether the point has fewer different neighbours than are asked for, of those kept. Throws
  /// std::bad_alloc.
  [[nodiscard]] std::vector<bool> Aislados() const;

 private:
  /// A piece of a list; 0 stands for no neighbour, and behind it there is none.
  struct CTrozo {
    std::array<std::int32_t, 7> vecinos{};
    std::uint32_t sigue = 0;  ///< place of the next piece among the others, from 1
  };
  static_assert(sizeof(CTrozo) == 32);

  [[nodiscard]] bool EsAislado(CTrozo const& lista, std::vector<std::int32_t>& distintos) const;

  unsigned minimo;
  std::uint64_t tope;
  std::vector<CTrozo> primeros;
  std::deque<CTrozo> otros;
};

}  // namespace Meseta47
