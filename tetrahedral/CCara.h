#pragma once

#include <cstdint>

#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// A face of a tetrahedron as the search of a cavity sees it: three borrowed points, the tetrahedron on its far side,
/// and what is known of its edges. Faces of the mesh have their points in ascending order of number.
class URDIMBRE_API CCara {
 public:
  CCara() = default;
  /// States of the edges P1P2, P1P3, P2P3: 0 short, 1 long, 2 not known; the low two bits count. `grabado`: the face
  /// needs no writing.
  CCara(CCoor3D<int>* a, CCoor3D<int>* b, CCoor3D<int>* c, void* suTetra, short d12, short d13, short d23,
        bool grabado) {
    SetPuntos(a, b, c, suTetra, d12, d13, d23, grabado);
  }
  void SetPuntos(CCoor3D<int>* a, CCoor3D<int>* b, CCoor3D<int>* c, void* suTetra, short d12, short d13, short d23,
                 bool grabado) {
    p1 = a;
    p2 = b;
    p3 = c;
    tetra = suTetra;
    const auto estado = [](short d, unsigned bit) { return (static_cast<unsigned>(d) & 3U) << bit; };
    flags = static_cast<std::uint8_t>((flags & kAjeno) | estado(d12, 0) | estado(d13, 2) | estado(d23, 4) |
                                      (grabado ? kGrabado : 0));
  }

  [[nodiscard]] CCoor3D<int>* P1() const { return p1; }
  [[nodiscard]] CCoor3D<int>* P2() const { return p2; }
  [[nodiscard]] CCoor3D<int>* P3() const { return p3; }
  /// Numbers of the points, which must be set.
  [[nodiscard]] int N1() const { return p1->num; }
  [[nodiscard]] int N2() const { return p2->num; }
  [[nodiscard]] int N3() const { return p3->num; }
  /// The CTetraedro on the far side, not owned; null when there is none.
  [[nodiscard]] void* Tetra() const { return tetra; }
  void SetTetra(void* t) { tetra = t; }
  [[nodiscard]] short D12() const { return Estado(0); }
  [[nodiscard]] short D13() const { return Estado(2); }
  [[nodiscard]] short D23() const { return Estado(4); }
  [[nodiscard]] bool Grabado() const { return (flags & kGrabado) != 0; }

  /// The same point objects in the same positions; nothing else counts.
  [[nodiscard]] bool operator==(CCara const& o) const { return p1 == o.p1 && p2 == o.p2 && p3 == o.p3; }
  /// By the numbers of the first position in which the points differ; of equal faces neither is less.
  [[nodiscard]] bool operator<(CCara const& o) const {
    if (p1 != o.p1) return N1() < o.N1();
    if (p2 != o.p2) return N2() < o.N2();
    return N3() < o.N3();
  }

 private:
  static constexpr unsigned kGrabado = 0x40, kAjeno = 0x80;
  static constexpr std::uint8_t kDesconocidos = 0x2A;  // 2 in each of the three

  [[nodiscard]] short Estado(unsigned bit) const {
    return static_cast<short>((static_cast<unsigned>(flags) >> bit) & 3U);
  }

  // Bits 0-1, 2-3, 4-5: states of the edges; 6: needs no writing; 7: kept as it is.
  std::uint8_t flags = kDesconocidos;
  CCoor3D<int>*p1 = nullptr, *p2 = nullptr, *p3 = nullptr;
  void* tetra = nullptr;
};

}  // namespace Meseta47
