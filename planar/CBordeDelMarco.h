#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "planar/CTriangulo2D.h"

namespace Meseta47 {

/// What of a finished mesh touches the corners of its frame, and what lies there instead once they are taken out.
///
/// The frame stands near the data, so a triangle of the convex hull whose circle reaches a corner is not in the mesh.
/// Its vertices are neighbours of corners: to take a point out of a Delaunay triangulation makes triangles of its
/// neighbours alone. So the missing ones are triangles of the exact Delaunay triangulation of the neighbours, those
/// between the hull and the sides where triangles without a corner end. As a rule the neighbours are few, in the order
/// of the root of all points; on a circle they are all.
///
/// One thread at a time; it borrows the points.
class URDIMBRE_API CBordeDelMarco {
 public:
  using CPuntos3 = std::array<CCoor3D<int>*, 3>;

  /// The triangles that complete the surface, and its rim.
  struct CCierre {
    std::vector<CPuntos3> triangulos;                    ///< clockwise, by the position of their least vertex
    std::vector<std::array<CCoor3D<int>*, 2>> contorno;  ///< sides of the convex hull, the outside on the right
  };

  void Vacia() { std::vector<CPuntos3>().swap(triangulos); }
  [[nodiscard]] static bool Toca(CTriangulo2D const& t) { return t.N1() < 0 || t.N2() < 0 || t.N3() < 0; }
  /// Remembers a triangle that touches the frame; 24 bytes.
  void Anota(CTriangulo2D const& t) { triangulos.push_back({t.P1(), t.P2(), t.P3()}); }

  /// Takes over what another one remembers.
  void Toma(CBordeDelMarco& otro) {
    triangulos.insert(triangulos.end(), otro.triangulos.begin(), otro.triangulos.end());
    otro.Vacia();
  }

  /// What is there without the corners. Exact, and the same for any order of the triangles; where points lie on one
  /// circle the least one, by x, then y, is joined to the others. The triangles remembered are forgotten. O(n log n).
  [[nodiscard]] CCierre Cierra();

 private:
  std::vector<CPuntos3> triangulos;
};

}  // namespace Meseta47
