#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>

#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// A side of a triangle: two borrowed points, in the direction in which the triangle runs through them.
class URDIMBRE_API CLado2D {
 public:
  CLado2D() = default;
  CLado2D(CCoor3D<int>* a, CCoor3D<int>* b) : p1(a), p2(b) {}

  [[nodiscard]] CCoor3D<int>* P1() const { return p1; }
  [[nodiscard]] CCoor3D<int>* P2() const { return p2; }
  /// Numbers of the points. Both points must be set.
  [[nodiscard]] int N1() const { return p1->num; }
  [[nodiscard]] int N2() const { return p2->num; }
  void SetPuntos(CCoor3D<int>* a, CCoor3D<int>* b) {
    p1 = a;
    p2 = b;
  }

  /// Same two point objects, in either direction. Equal coordinates in distinct objects make distinct sides.
  [[nodiscard]] bool operator==(CLado2D const& o) const {
    return (p1 == o.p1 && p2 == o.p2) || (p1 == o.p2 && p2 == o.p1);
  }
  [[nodiscard]] bool operator!=(CLado2D const& o) const { return !(*this == o); }
  /// Order by (lower number, higher number); the direction has no part in it. Frame corners are negative and come
  /// first.
  [[nodiscard]] bool operator<(CLado2D const& o) const { return Clave() < o.Clave(); }

  /// One integer that sorts as the pair (lower number, higher number).
  [[nodiscard]] std::uint64_t Clave() const { return Clave(N1(), N2()); }
  [[nodiscard]] static std::uint64_t Clave(int a, int b) {
    const std::uint32_t menor = ConSigno(std::min(a, b)), mayor = ConSigno(a) + ConSigno(b) - menor;
    return static_cast<std::uint64_t>(menor) << 32 | mayor;
  }

 private:
  static std::uint32_t ConSigno(int n) { return static_cast<std::uint32_t>(n) ^ 0x80000000U; }

  CCoor3D<int>* p1 = nullptr;
  CCoor3D<int>* p2 = nullptr;
};

}  // namespace Meseta47
