#pragma once

#include <cstddef>
#include <vector>

#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// What a search works on: the points that are in the mesh, where they stand in the drawings, by the numbers that the
/// mesh was spilled with. A search marks what it has found by turning the sign of a point's number; whatever way it
/// ends, the numbers are as before when this object goes.
class CBusquedaPuntos {
 public:
  /// `numeros` is the last number of the mesh.
  explicit CBusquedaPuntos(std::size_t numeros) : puntos(numeros) {}
  CBusquedaPuntos(CBusquedaPuntos const&) = delete;
  CBusquedaPuntos& operator=(CBusquedaPuntos const&) = delete;
  ~CBusquedaPuntos() {
    for (CCoor3D<int>* p : puntos) {
      if (p != nullptr && p->num < 0) p->num = -p->num;
    }
  }

  /// A point of the mesh, which must stay where it is; its number is not above the last one.
  void Anade(CCoor3D<int>* p) { puntos[static_cast<std::size_t>(p->num) - 1] = p; }

  /// The point of a number of the mesh; null when there is none, as for a corner of the frame.
  [[nodiscard]] CCoor3D<int>* Punto(int numero) const {
    const auto indice = static_cast<std::size_t>(numero) - 1;  // numbers below 1 come out beyond any table
    return indice < puntos.size() ? puntos[indice] : nullptr;
  }

 private:
  std::vector<CCoor3D<int>*> puntos;
};

}  // namespace Meseta47
