#pragma once

#include <vector>

#include "model/CSetPuntosMdt.h"

namespace Meseta47 {

/// What a search works on: copies of the points that are in the mesh, by position, and the way to them from the numbers
/// that the mesh was spilled with.
///
/// Once renumbered, the number of a point is its own place plus 1. A search marks what it has found by turning the sign
/// of that number.
class CBusquedaPuntos {
 public:
  CSetPuntosMdt puntos{0, 0};
  std::vector<int> tabla;  ///< for each number of the mesh less 1, the place of its point plus 1; 0 for none

  /// Orders the points and gives them their places as numbers. `numeros` is the last number of the mesh. O(n log n).
  void Renumera(std::size_t numeros);

  /// The point of a number of the mesh; null when there is none, as for a corner of the frame.
  [[nodiscard]] CPuntoTIN* Punto(int numero) { return Punto(puntos, tabla, numero); }
  [[nodiscard]] static CPuntoTIN* Punto(CSetPuntosMdt& puntos, std::vector<int> const& tabla, int numero);

  /// Whether the point of a number of the mesh is there and has been found.
  [[nodiscard]] bool EsHallado(int numero);
};

}  // namespace Meseta47
