#pragma once

#include <cstdint>

#include "model/terrain/CPuntoTIN.h"

namespace Meseta47 {

/// A triangle of a terrain model, by value: three points that it borrows and where its neighbours meet it. Side 0 runs
/// from P1 to P2, side 1 from P2 to P3, side 2 from P3 to P1.
class URDIMBRE_API CTriangulo {
 public:
  CPuntoTIN *P1 = nullptr, *P2 = nullptr, *P3 = nullptr;
  /// For each side, which side (0 to 2) the neighbour across it turns to this triangle; -1 when there is none. Which
  /// triangle that is, CTIN::Vecinos tells.
  std::int16_t vecino12 = -1, vecino23 = -1, vecino31 = -1;
  std::uint16_t marcas = 0;  ///< free for the owner

  CTriangulo() = default;
  CTriangulo(CPuntoTIN* a, CPuntoTIN* b, CPuntoTIN* c, short int v12, short int v23, short int v31)
      : P1(a), P2(b), P3(c), vecino12(v12), vecino23(v23), vecino31(v31) {}

  /// The last argument selects nothing: a triangle keeps no figures that could be out of date.
  void SetPuntos(CPuntoTIN* a, CPuntoTIN* b, CPuntoTIN* c, short int v12, short int v23, short int v31, bool) {
    *this = CTriangulo(a, b, c, v12, v23, v31);
  }

  /// False when a point is null or the three lie on one line in space; exact. An upright triangle is valid. Every other
  /// operation asks for a valid triangle.
  [[nodiscard]] bool EsValido() const;

  /// Puts the points in canonical order: smallest position first, clockwise seen from above. Upright triangles, which
  /// have no turn in plan, keep whatever way they run in a plan model (`plano`), and get their way round from the first
  /// upright plane that shows one in a surface in space. The neighbour slots are not touched.
  void ColocaPuntos(bool plano);

  /// Squared length of a side, in scaled units: in plan, or in space.
  [[nodiscard]] double Distancia2_12(bool espacio) const { return P1->Distancia2(*P2, espacio); }
  [[nodiscard]] double Distancia2_23(bool espacio) const { return P2->Distancia2(*P3, espacio); }
  [[nodiscard]] double Distancia2_31(bool espacio) const { return P3->Distancia2(*P1, espacio); }

  /// Slope of the triangle's plane: degrees, 0 to 90.
  [[nodiscard]] double Pendiente() const;

  /// Slope at the vertex with that number: of the line from it to the middle of the opposite side. Radians; negative
  /// when the triangle falls away from the vertex. 0 when no vertex has the number.
  [[nodiscard]] double Pendiente(int num) const;

  /// Least and greatest height of the vertices.
  [[nodiscard]] int GetMinZ() const;
  [[nodiscard]] int GetMaxZ() const;

  /// Area in space, in squares of the unit of which `escala` scaled units make one.
  [[nodiscard]] double CalculaSuperficie(double escala) const;
};

static_assert(sizeof(CTriangulo) == 32);

}  // namespace Meseta47
