#pragma once

#include <array>
#include <atomic>
#include <cmath>
#include <cstdint>

#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// The number of a point that a search works on, whose sign other threads may turn meanwhile: below 0 it has been
/// found.
[[nodiscard]] inline int NumeroBuscado(CCoor3D<int>& p) {
  return std::atomic_ref<int>(p.num).load(std::memory_order_relaxed);
}

/// A triangle of the temporary file as a search looks at it: three points of the mesh, the squares of its sides in
/// plan, and of each vertex what it is held against the others by: its height, or another quantity such as its
/// intensity.
///
/// The side of index i runs from vertex i to the next one.
class CTrianguloBuscado {
 public:
  using CNumeros = std::array<int, 3>;
  using CValores = std::array<std::int64_t, 3>;

  /// Rise over run above which a side is steep: a plain ratio, so 0.785 passes where 45 degrees would ask for 1.
  /// Searches have been tuned with it.
  static constexpr double kEmpinado = 0.7853981633974483;

  /// Three points that do not lie on one line in space.
  [[nodiscard]] static bool Es(CCoor3D<int> const* a, CCoor3D<int> const* b, CCoor3D<int> const* c) {
    if (a == nullptr || b == nullptr || c == nullptr) return false;
    return c->CalculaLado(*a, *b, 0) != 0 || c->CalculaLado(*a, *b, 1) != 0 || c->CalculaLado(*a, *b, 2) != 0;
  }
  /// The same with other quantities, of 32 bits, in the place of heights. The points are there.
  [[nodiscard]] static bool Es(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c,
                               CValores const& valores) {
    if (c.CalculaLado(a, b, 0) != 0) return true;
    const auto con = [](CCoor3D<int> const& p, std::int64_t z) {
      return CCoor3D<int>(p.x, p.y, static_cast<int>(z), p.num);
    };
    const CCoor3D<int> pa = con(a, valores[0]), pb = con(b, valores[1]), pc = con(c, valores[2]);
    return pc.CalculaLado(pa, pb, 1) != 0 || pc.CalculaLado(pa, pb, 2) != 0;
  }

  /// By heights.
  CTrianguloBuscado(CCoor3D<int>* a, CCoor3D<int>* b, CCoor3D<int>* c)
      : CTrianguloBuscado(a, b, c, {a->z, b->z, c->z}) {}
  /// By other quantities. The points are those of a triangle.
  CTrianguloBuscado(CCoor3D<int>* a, CCoor3D<int>* b, CCoor3D<int>* c, CValores const& susValores)
      : vertices{a, b, c},
        valores(susValores),
        lados2{a->Distancia2(*b, 0), b->Distancia2(*c, 0), c->Distancia2(*a, 0)} {}

  [[nodiscard]] static unsigned Siguiente(unsigned i) { return (i + 1) % 3; }
  [[nodiscard]] static unsigned Anterior(unsigned i) { return (i + 2) % 3; }

  [[nodiscard]] CCoor3D<int>& Vertice(unsigned i) const { return *vertices[i]; }
  /// How much vertex i rises above vertex j.
  [[nodiscard]] std::int64_t Desnivel(unsigned i, unsigned j) const { return valores[i] - valores[j]; }
  /// Squared length in plan of the side between vertices i and j.
  [[nodiscard]] double Lado2(unsigned i, unsigned j) const { return lados2[j == Siguiente(i) ? i : j]; }
  /// Rise over run from vertex j to vertex i: a plain ratio.
  [[nodiscard]] double Pendiente(unsigned i, unsigned j) const {
    return static_cast<double>(Desnivel(i, j)) / std::sqrt(Lado2(i, j));
  }
  /// Whether vertex i rises above vertex j by more than `minimo`, and more steeply than `pendiente`.
  [[nodiscard]] bool Sube(unsigned i, unsigned j, std::int64_t minimo, double pendiente) const {
    return Desnivel(i, j) > minimo && Pendiente(i, j) > pendiente;
  }
  /// Of the other two vertices, those that vertex i leans on: found, as `numeros` tell, lower than it, and not farther
  /// away than the root of `lado2`.
  [[nodiscard]] unsigned Apoyos(unsigned i, CNumeros const& numeros, double lado2) const {
    const auto apoya = [&](unsigned j) { return numeros[j] < 0 && Desnivel(i, j) > 0 && Lado2(i, j) <= lado2; };
    return (apoya(Siguiente(i)) ? 1U : 0U) + (apoya(Anterior(i)) ? 1U : 0U);
  }

 private:
  std::array<CCoor3D<int>*, 3> vertices;
  CValores valores;
  std::array<double, 3> lados2;
};

}  // namespace Meseta47
