#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// Where points are still to come: a tree of boxes over all points of a run, told as each of them comes. It answers
/// whether any to come may lie in a sphere; once none may, a tetrahedron is final.
///
/// Boxes are those of the points themselves, so on a surface they are as flat as it is, and a sphere that rests on the
/// surface meets few of them. A leaf ends with its last point. About 6 bytes a point; for one thread.
class CPorVenir {
 public:
  static constexpr std::size_t kPorHoja = 128;  ///< points of a leaf, unless more stand at one place
  static constexpr std::uint32_t kNinguna = 0xFFFFFFFF;

  struct CPunto {
    std::int32_t eje[3];
    std::uint32_t turno;  ///< when it comes, about: it only guides
  };

  /// All points that will come, in any order. O(n log n).
  void Prepara(std::vector<CPunto> puntos);
  [[nodiscard]] std::size_t Hojas() const { return hojas; }
  /// The leaf of one of them.
  [[nodiscard]] std::uint32_t Hoja(CCoor3D<int> const& p) const;
  /// Calls `f` with the leaves, those of smaller subtrees around the given one first, until it answers true.
  template <class F>
  bool PorCercania(std::uint32_t hoja, F const& f) const;
  /// A point of the leaf has come. True when it was the last.
  bool Llega(std::uint32_t hoja);

  /// A sphere, and how far outside it a point must lie, in squares, to do so for certain.
  struct CBola {
    double x, y, z, radio2, margen;
  };
  /// What lies around a leaf. For many questions about spheres near it.
  class CVecindad {
   public:
    /// Around a leaf that has just ended.
    void Pon(CPorVenir const& elArbol, std::uint32_t hoja);
    /// A leaf with points to come that may lie in the sphere or on it: of those the one that ends last, about. kNinguna
    /// when there is none.
    [[nodiscard]] std::uint32_t Alcanza(CBola const& bola);

   private:
    struct CCaja {
      double minimo[3], maximo[3];
      unsigned tras;  ///< limits of the cell that it lies beyond
      std::uint32_t hoja;
    };
    void Reune(std::uint32_t nodo);
    [[nodiscard]] static unsigned Cruza(CBola const& bola, double const (&bajo)[3], double const (&alto)[3]);

    CPorVenir const* arbol = nullptr;
    double celdaBaja[3], celdaAlta[3];  ///< where only points of the leaf lie: from the one, below the other
    double cercaBaja[3], cercaAlta[3];  ///< of all leaves that reach into this box the list tells
    std::vector<CCaja> abiertas;
    std::uint32_t hallado = 0;  ///< node that the last large sphere has reached: the next one is near as a rule
  };

 private:
  /// Children with points stand together, the one that ends last first.
  struct CNodo {
    std::array<std::int32_t, 3> minimo, maximo;
    std::array<std::int32_t, 3> corte;   ///< what of the points is high on each axis begins here
    std::array<std::uint8_t, 8> cual{};  ///< which child an octant is
    std::uint32_t hijos = 0;             ///< the first of them, 0 on a leaf
    std::uint32_t cuantos = 0;           ///< children; on a leaf, its number
    std::uint32_t abiertos = 0;          ///< children, or points of a leaf, that are to come
    std::uint32_t padre = kNinguna;
    double lado2 = 0;  ///< square of the greatest extent
  };

  void Divide(std::uint32_t nodo, CPunto* desde, CPunto* hasta);
  /// The first node that a sphere reaches, from `nodo` on, and that is fine enough for it; kNinguna without one.
  [[nodiscard]] std::uint32_t Alcanza(std::uint32_t nodo, CBola const& bola) const;
  [[nodiscard]] bool EsFino(CNodo const& nodo, CBola const& bola) const;
  [[nodiscard]] bool Toca(CNodo const& nodo, CBola const& bola) const;
  [[nodiscard]] std::uint32_t UltimaAbierta(std::uint32_t nodo) const;
  template <class F>
  bool Visita(std::uint32_t nodo, std::uint32_t menos, F const& f) const;

  std::vector<CNodo> nodos;
  std::vector<std::uint32_t> nodoDeHoja;
  std::uint32_t hojas = 0;
};

template <class F>
bool CPorVenir::Visita(std::uint32_t nodo, std::uint32_t menos, F const& f) const {
  CNodo const& n = nodos[nodo];
  if (n.abiertos == 0 || nodo == menos) return false;
  if (n.hijos == 0) return f(n.cuantos);
  for (std::uint32_t i = 0; i < n.cuantos; ++i) {
    if (Visita(n.hijos + i, menos, f)) return true;
  }
  return false;
}

template <class F>
bool CPorVenir::PorCercania(std::uint32_t hoja, F const& f) const {
  std::uint32_t menos = kNinguna;
  for (std::uint32_t nodo = nodoDeHoja[hoja]; nodo != kNinguna; menos = nodo, nodo = nodos[nodo].padre) {
    if (Visita(nodo, menos, f)) return true;
  }
  return false;
}

}  // namespace Meseta47
