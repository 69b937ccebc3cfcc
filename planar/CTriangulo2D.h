#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/geometry/CCentro.h"
#include "model/geometry/CCirculo.h"
#include "model/geometry/CMaximas.h"
#include "model/storage/CDeReserva.h"
#include "planar/CLado2D.h"

namespace Meseta47 {

class CMitad;
class CSegmentos;
class CSetTriangulos2D;
template <class T>
class CDibujo;
template <class TSet, class TElemento, unsigned kEjes>
class CSetEnArbol;

/// Element of the planar triangulation: three borrowed points, their circumcircle in plan, the links of its set's list
/// and the neighbours across its sides. All its geometry is plan geometry, in doubles, on integer coordinates.
///
/// A plain record of fixed size without a virtual table. Elements come from a pool: any thread may destroy what another
/// made. One thread at a time may touch a triangle and its neighbours.
class URDIMBRE_API CTriangulo2D : public CDeReserva<CTriangulo2D> {
 public:
  // --- life ---
  CTriangulo2D() = default;
  /// Stores the points and computes the circle and the index bits. Collinear points make an invalid triangle.
  CTriangulo2D(CCoor3D<int>* a, CCoor3D<int>* b, CCoor3D<int>* c) : p1(a), p2(b), p3(c) { Recalcula(); }
  /// Member by member, links and set included.
  CTriangulo2D(CTriangulo2D const&) = default;
  CTriangulo2D& operator=(CTriangulo2D const&) = default;
  /// Unhooks the triangle from its neighbours; the links of its list are left as they are.
  ~CTriangulo2D() {
    p1 = p2 = p3 = nullptr;
    BorraMisVecinos();
  }

  // --- queries ---
  /// True when the two have the same three point objects, in any order.
  [[nodiscard]] bool operator==(CTriangulo2D const& o) const;

  [[nodiscard]] CCoor3D<int>* P1() const { return p1; }
  [[nodiscard]] CCoor3D<int>* P2() const { return p2; }
  [[nodiscard]] CCoor3D<int>* P3() const { return p3; }
  /// Numbers of the points, which must be set.
  [[nodiscard]] int N1() const { return p1->num; }
  [[nodiscard]] int N2() const { return p2->num; }
  [[nodiscard]] int N3() const { return p3->num; }
  [[nodiscard]] CTriangulo2D* Sig() const { return sig; }
  [[nodiscard]] CTriangulo2D* Ant() const { return ant; }
  [[nodiscard]] CTriangulo2D* GetVecino12() const { return vecino12; }
  [[nodiscard]] CTriangulo2D* GetVecino23() const { return vecino23; }
  [[nodiscard]] CTriangulo2D* GetVecino31() const { return vecino31; }
  [[nodiscard]] CSetTriangulos2D* GetSet() const { return set; }

  [[nodiscard]] CCentro Centro() const;
  /// Lengths of the sides in plan, in scaled units.
  [[nodiscard]] double Distancia12() const { return p1->Distancia(*p2, 0); }
  [[nodiscard]] double Distancia23() const { return p2->Distancia(*p3, 0); }
  [[nodiscard]] double Distancia31() const { return p3->Distancia(*p1, 0); }

  /// Extremes of the vertices; 0 on an invalid triangle.
  [[nodiscard]] int GetMinX() const { return EsValido() ? Vertice(0)->x : 0; }
  [[nodiscard]] int GetMinY() const { return EsValido() ? Vertice(2)->y : 0; }
  [[nodiscard]] int GetMinZ() const { return EsValido() ? Vertice(4)->z : 0; }
  [[nodiscard]] int GetMaxX() const { return EsValido() ? Vertice(6)->x : 0; }
  [[nodiscard]] int GetMaxY() const { return EsValido() ? Vertice(8)->y : 0; }
  [[nodiscard]] int GetMaxZ() const { return EsValido() ? Vertice(10)->z : 0; }
  /// Box of those six values; empty on an invalid triangle.
  [[nodiscard]] CMaximas<int> GetMaximas() const;
  /// Corners and box of the circle, rounded to integers; z 0.
  [[nodiscard]] CCoor3D<int> GetMinCir() const;
  [[nodiscard]] CCoor3D<int> GetMaxCir() const;
  [[nodiscard]] CMaximas<int> GetMaximasCir() const;

  /// Three points, a circle with a radius, no two vertices equal in x, y and z.
  [[nodiscard]] bool EsValido() const {
    return p1 != nullptr && p2 != nullptr && p3 != nullptr && Signo(circulo.radio) != 0 && *p1 != *p2 && *p2 != *p3 &&
           *p3 != *p1;
  }
  /// Condemned: the triangle lies in the cavity of the point being inserted.
  [[nodiscard]] bool Borrado() const { return (flags & kMascaraMarca) == kMarcaBorrado; }
  /// Number of the last point tested against the circle.
  [[nodiscard]] int GetUltimoPuntoProyectado() const { return ultimoPunto; }
  /// Fills P1P2, P2P3, P3P1. Always true.
  bool GetLados(CLado2D (&lados)[3]) const;
  /// Which side runs from number `a` to number `b`: 1 for P1P2, 2 for P2P3, 3 for P3P1, 0 for none.
  [[nodiscard]] int ContieneLado(int a, int b) const {
    if (N1() == a && N2() == b) return 1;
    if (N2() == a && N3() == b) return 2;
    return N3() == a && N1() == b ? 3 : 0;
  }
  /// How many sides have no neighbour.
  [[nodiscard]] int LadosLimite() const {
    return (vecino12 == nullptr ? 1 : 0) + (vecino23 == nullptr ? 1 : 0) + (vecino31 == nullptr ? 1 : 0);
  }

  // --- changes ---
  void SetSig(CTriangulo2D* t) { sig = t; }
  void SetAnt(CTriangulo2D* t) { ant = t; }
  void SetVecino12(CTriangulo2D* t) { vecino12 = t; }
  void SetVecino23(CTriangulo2D* t) { vecino23 = t; }
  void SetVecino31(CTriangulo2D* t) { vecino31 = t; }
  void SetSet(CSetTriangulos2D* s) { set = s; }
  /// The links of the list, whatever the name says: neighbours in it, not across sides.
  void SetVecinos(CTriangulo2D* anterior, CTriangulo2D* siguiente) {
    ant = anterior;
    sig = siguiente;
  }
  void BorraVecinos() { ant = sig = nullptr; }
  /// Stores the points; with `recalcula` the circle and the index bits follow. Mark and links stay.
  void SetPuntos(CCoor3D<int>* a, CCoor3D<int>* b, CCoor3D<int>* c, bool recalcula);
  /// Replace one vertex and recompute. False, with nothing changed, for a point equal in x, y and z to another vertex.
  bool SetPunto1(CCoor3D<int>* p);
  bool SetPunto2(CCoor3D<int>* p);
  bool SetPunto3(CCoor3D<int>* p);
  /// Recomputes the circle, and the index bits of all axes for 0, of X, Y or Z for 1, 2 or 3, of none otherwise.
  void ActualizaMaxMin(int eje);
  void SetBorrado(bool b) { flags = static_cast<std::uint16_t>((flags & ~kMascaraMarca) | (b ? kMarcaBorrado : 0)); }
  /// Clears the first neighbour link that equals `t`.
  void BorraVecino(CTriangulo2D const* t) {
    // Chosen without a branch: which of the three it is, is unpredictable.
    CTriangulo2D*& suyo = this->*CLados::kVecino[LadoHacia(t)];
    suyo = suyo == t ? nullptr : suyo;
  }
  /// Clears the links between this triangle and its neighbours, on both sides.
  void BorraMisVecinos() {
    Desengancha(vecino12);
    Desengancha(vecino23);
    Desengancha(vecino31);
  }
  /// Brings the triangle to its canonical order: the smallest vertex first and clockwise in plan. With `soloRota` the
  /// vertices are only rotated and nothing is recomputed. Triangles that are upright in plan are turned by their view
  /// along X or Y.
  void ColocaPuntos(bool soloRota);

  // --- checks against a point ---
  /// Whether the point lies inside the circumcircle or on it, within 1e-7. Leaves the point's number as the last one
  /// tested.
  bool Dentro(CCoor3D<int> const& p) {
    ultimoPunto = p.num;
    return EnCirculo(p.x, p.y);
  }
  /// The same question without a trace.
  [[nodiscard]] bool EnCirculo(double x, double y) const {
    const double cx = circulo.x, cy = circulo.y, r = circulo.radio;
    if (r > kRadioDudoso) [[unlikely]] {
      return EnCirculoEnorme(static_cast<int>(x), static_cast<int>(y));
    }
    const double dx = cx - x, dy = cy - y, exceso = dx * dx + dy * dy - circulo.radio2;
    // The box of the circle has no tolerance; only on the circle's edge can it tell otherwise.
    if (!(std::abs(exceso) > MargenCuadrado(r))) [[unlikely]] {
      return cx - r <= x && x <= cx + r && cy - r <= y && y <= cy + r;
    }
    return exceso < 0;
  }
  /// Projects the point vertically on the triangle's plane. 0: not on the triangle; 1: on a side, to one scaled unit;
  /// 2: inside or on a vertex. Without `comprueba` any point within the circle gives 2. With `actualizaZ` the point
  /// takes the height found.
  int Proyecta(CCoor3D<double>& p, bool comprueba, bool actualizaZ);
  int Proyecta(CCoor3D<int>& p, bool actualizaZ);

  // --- contours ---
  /// Cuts the triangle with the heights that are multiples of `equidistancia` (scaled units, above 0) and adds each
  /// piece of contour to `curvas` as a line "nuevo" of two points. Triangles that are degenerate, touch the frame, or
  /// have a side whose squared plan length passes `lado2` give nothing.
  void Curva(CDibujo<int>& curvas, int equidistancia, double lado2) const;
  void Curva(CSegmentos& curvas, int equidistancia, double lado2) const;

 protected:
  /// Appends the points where a side (0: P1P2, 1: P2P3, 2: P3P1) meets the levels, numbered in their order; both ends
  /// of a side that lies on a level.
  void CortaLado(std::vector<CCoor3D<int>>& puntosCorte, short lado, int equidistancia) const;

 private:
  friend class CSetTriangulos2D;
  friend class CMitad;
  friend class CSetEnArbol<CSetTriangulos2D, CTriangulo2D, 2>;
  friend class CDeReserva<CTriangulo2D>;

  template <class Destino>
  void Corta(Destino& curvas, int equidistancia, double lado2) const;

  /// The triangle of a fan: all that there is to compute comes ready.
  struct CVecinos {
    CTriangulo2D *por12, *por23, *por31;
  };
  CTriangulo2D(CCoor3D<int>* a, CCoor3D<int>* b, CCoor3D<int>* c, CCirculo const& suCirculo, std::uint16_t indices,
               CVecinos const& v)
      : circulo(suCirculo),
        flags(indices),
        vecino12(v.por12),
        vecino31(v.por31),
        vecino23(v.por23),
        p1(a),
        p2(b),
        p3(c) {}

  /// Scaled units: from here on the squared distances to a centre are rounded more coarsely than the tolerance of their
  /// comparison (2 r 1e-7 against r^2 2^-53), and the tolerance itself spans whole triangles: the vertices tell,
  /// exactly.
  static constexpr double kRadioDudoso = 0x1p27;

  static constexpr unsigned kMascaraMarca = 0x3000;
  static constexpr unsigned kMarcaBorrado = 0x1000;
  static constexpr unsigned kMascaraIndices = 0x0FFF;
  static constexpr unsigned kCompartido = 0x4000;

  /// Two threads insert, and the triangle belongs to neither alone.
  [[nodiscard]] bool EsCompartido() const { return (flags & kCompartido) != 0; }
  void Comparte(bool si = true) { flags = static_cast<std::uint16_t>((flags & ~kCompartido) | (si ? kCompartido : 0)); }

  [[nodiscard]] bool TieneVerticeEn(CCoor3D<int> const& p) const {
    const auto coincide = [&p](CCoor3D<int> const* v) { return v->x == p.x && v->y == p.y; };
    return coincide(p1) || coincide(p2) || coincide(p3);
  }
  [[nodiscard]] bool EnCirculoEnorme(int px, int py) const;
  void Recalcula();
  void CalculaIndices(int eje);
  bool SetPunto(CCoor3D<int>*& mio, CCoor3D<int> const* otro1, CCoor3D<int> const* otro2, CCoor3D<int>* p);
  [[nodiscard]] bool AlturaEnPlano(CCoor3D<double> const& p, double& z) const;
  /// The vertex whose index stands in the two flag bits from `bit` on.
  [[nodiscard]] CCoor3D<int>* Vertice(unsigned bit) const {
    const unsigned i = (static_cast<unsigned>(flags) >> bit) & 3U;
    return i == 0 ? p1 : (i == 1 ? p2 : p3);
  }
  /// Which side is shared with the neighbour `t`: 0 for P1P2, 1 for P2P3, 2 for P3P1.
  [[nodiscard]] unsigned LadoHacia(CTriangulo2D const* t) const {
    const auto no12 = static_cast<unsigned>(vecino12 != t), no23 = static_cast<unsigned>(vecino23 != t);
    return no12 + (no12 & no23);
  }
  /// Which side begins at the vertex `p`.
  [[nodiscard]] unsigned LadoDesde(CCoor3D<int> const* p) const {
    const auto no1 = static_cast<unsigned>(p1 != p), no2 = static_cast<unsigned>(p2 != p);
    return no1 + (no1 & no2);
  }
  /// Forgets the neighbours without telling them: they are about to be linked anew, or die as well.
  void SueltaVecinos() { vecino12 = vecino23 = vecino31 = nullptr; }
  void Desengancha(CTriangulo2D*& vecino) {
    if (vecino == nullptr) return;
    vecino->BorraVecino(this);
    vecino = nullptr;
  }

  /// First vertex of a side and neighbour across it, by the side's index: no branch chooses. In a class of their own,
  /// as what an exported one holds is taken from the library instead of being known to callers.
  struct CLados {
    static CCoor3D<int>* CTriangulo2D::*const kPunto[3];
    static CTriangulo2D* CTriangulo2D::*const kVecino[3];
  };

  // What a walk reads comes first and fills one cache line: the pool starts each triangle on a line.
  CCirculo circulo;
  std::int32_t ultimoPunto = 0;  ///< number of the last point tested: the visited mark of every walk
  // Bits 0-1, 2-3, 4-5: index (0 to 2) of the vertex with least X, Y, Z; 6-7, 8-9, 10-11: greatest; 12-13: mark;
  // 14: shared.
  std::uint16_t flags = 0;
  CTriangulo2D *vecino12 = nullptr, *vecino31 = nullptr, *vecino23 = nullptr;
  CSetTriangulos2D* set = nullptr;  ///< holder, not owned
  CCoor3D<int>*p1 = nullptr, *p2 = nullptr, *p3 = nullptr;
  CTriangulo2D *sig = nullptr, *ant = nullptr;
};

inline constexpr CCoor3D<int>* CTriangulo2D::*const CTriangulo2D::CLados::kPunto[3] = {
    &CTriangulo2D::p1, &CTriangulo2D::p2, &CTriangulo2D::p3};
inline constexpr CTriangulo2D* CTriangulo2D::*const CTriangulo2D::CLados::kVecino[3] = {
    &CTriangulo2D::vecino12, &CTriangulo2D::vecino23, &CTriangulo2D::vecino31};

}  // namespace Meseta47
