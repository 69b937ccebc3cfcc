#pragma once

#include <array>
#include <bit>
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
  static constexpr std::size_t kPorHoja = 512;  ///< points of a leaf, unless more stand at one place
  static constexpr std::uint32_t kNinguna = 0xFFFFFFFF;
  static constexpr unsigned kNiveles = 33;  ///< at most: each halves the extents, of 32 bits

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
  /// Whether points are to come.
  [[nodiscard]] bool Quedan() const;

  /// Eight boxes at most, in columns: one loop compares a sphere with all of them. As doubles, which takes more room,
  /// but they are compared far more often than made.
  struct CCajas {
    double minimo[3][8] = {}, maximo[3][8] = {};
    unsigned abiertas = 0;  ///< a bit for each that has points to come

    void Pon(unsigned i, std::int32_t const (&menor)[3], std::int32_t const (&mayor)[3]) {
      for (unsigned eje = 0; eje < 3; ++eje) {
        minimo[eje][i] = menor[eje];
        maximo[eje][i] = mayor[eje];
      }
    }
  };
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
    /// A leaf that reaches into the vicinity.
    struct CCaja {
      std::int32_t minimo[3], maximo[3];
      unsigned tras = 0;  ///< limits of the cell that it lies beyond
      std::uint32_t hoja;
    };
    struct CTanda {
      CCajas cajas;
      std::uint32_t hojas[8];
    };
    void Acota(std::uint32_t nodo);
    void BuscaPrimera();
    void Reune(std::uint32_t nodo);
    [[nodiscard]] std::uint32_t AlcanzaDe(CBola const& bola);
    [[nodiscard]] std::uint32_t AlcanzaLejos(CBola const& bola) const;
    [[nodiscard]] std::uint32_t AlcanzaEstrecho(CBola const& bola);
    [[nodiscard]] std::uint32_t AlcanzaAncho(CBola const& bola);
    [[nodiscard]] std::vector<CTanda> const& Tras(unsigned cruza);
    [[nodiscard]] static bool Cabe(CBola const& bola, double const (&bajo)[3], double const (&alto)[3]);
    [[nodiscard]] static unsigned Cruza(CBola const& bola, double const (&bajo)[3], double const (&alto)[3]);

    CPorVenir const* arbol = nullptr;
    double celdaBaja[3], celdaAlta[3];  ///< where only points of the leaf lie: from the one, below the other
    double cercaBaja[3], cercaAlta[3];  ///< of all leaves that reach into this box the list tells
    double ancha2 = 0;                  ///< square radius of a sphere that is too large for either, for certain
    CCajas const* primeras = nullptr;   ///< hold the box that a large sphere is compared with first; null without one
    unsigned primera = 0;               ///< which of them it is
    std::uint32_t hojaPrimera = kNinguna;
    std::vector<CCaja> abiertas;
    std::array<std::vector<CTanda>, 64> porCruce;  ///< those behind no other limits than a sphere crosses
    std::uint64_t hechas = 0;                      ///< which of them have been made
  };

 private:
  /// Children with points stand together, the one that ends last first. Their boxes stand with their parent.
  struct CNodo {
    std::array<std::int32_t, 3> corte{};  ///< what of the points is high on each axis begins here
    std::array<std::uint8_t, 8> cual{};   ///< which child an octant is
    std::uint32_t hijos = 0;              ///< the first of them, 0 on a leaf
    std::uint32_t cuantos = 0;            ///< children; on a leaf, its number
    std::uint32_t abiertos = 0;           ///< points of a leaf that are to come
    std::uint32_t padre = kNinguna;
    std::uint32_t tabla = 0;  ///< where the boxes of the children stand
  };
  struct CHijos {
    CCajas cajas;
    double lado2[8] = {};  ///< squares of the greatest extents; below 0 of a leaf
  };

  struct CGrupo;
  [[nodiscard]] static std::array<CGrupo, 8> Reparte(CGrupo const& grupo, std::array<std::int32_t, 3> const& corte);
  void Divide(std::uint32_t nodo, CGrupo const& grupo);
  /// The first node that a sphere reaches and that is fine enough for it; kNinguna without one. A large sphere grazes
  /// many small boxes: from a certain size on what it reaches is taken for reached by its points.
  [[nodiscard]] std::uint32_t Alcanza(CBola const& bola, double fino2) const;
  [[nodiscard]] std::uint32_t UltimaAbierta(std::uint32_t nodo) const;
  template <class F>
  bool Visita(std::uint32_t nodo, std::uint32_t menos, F const& f) const;

  std::vector<CNodo> nodos;
  std::vector<CHijos> tablas;
  std::vector<std::uint32_t> nodoDeHoja;
  std::uint32_t hojas = 0;
  double mayor2 = 0;  ///< the greatest square extent of a box that is fine beside any sphere
};

template <class F>
bool CPorVenir::Visita(std::uint32_t nodo, std::uint32_t menos, F const& f) const {
  CNodo const& n = nodos[nodo];
  if (nodo == menos) return false;
  if (n.hijos == 0) return n.abiertos != 0 && f(n.cuantos);
  for (unsigned quedan = tablas[n.tabla].cajas.abiertas; quedan != 0; quedan &= quedan - 1) {
    if (Visita(n.hijos + static_cast<unsigned>(std::countr_zero(quedan)), menos, f)) return true;
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
