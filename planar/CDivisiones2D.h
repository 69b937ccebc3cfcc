#pragma once

#include <cstdint>
#include <vector>

#include "run/CListaPuntos.h"

namespace Meseta47 {

class CSetTriangulos2D;

/// A cell of the plan quadtree that a run divides space into before any triangle exists. It stores no points: it
/// records which point is the last one that falls in it. When that point has been inserted nothing more can happen in
/// the cell, and its set of triangles can be closed.
class URDIMBRE_API CDivisiones2D {
 public:
  static constexpr unsigned kMinimoDivide = 201;  ///< a cell is divided when it is to hold at least this many points
  static constexpr unsigned kNivelMaximo = 12;

  std::uint32_t nivel = 0;
  CCoor3D<int> centro;
  CMaximas<int> maximas;
  CDivisiones2D* hijos = nullptr;  ///< array of 4, owned; null on a leaf. 0: -x +y, 1: +x +y, 2: -x -y, 3: +x -y
  CDivisiones2D* padre = nullptr;
  std::int16_t ultimaLista = -1;  ///< the last point recorded in the cell; -1 in all three while it is empty
  std::int32_t ultimaEntidad = -1;
  std::int32_t ultimoPuntoCelda = -1;
  CListaPuntos lista;                       ///< its counter: points recorded in the cell
  CSetTriangulos2D* setAsociado = nullptr;  ///< the set that mirrors the cell, not owned

  CDivisiones2D() = default;
  CDivisiones2D(CDivisiones2D const&) = delete;
  CDivisiones2D& operator=(CDivisiones2D const&) = delete;
  ~CDivisiones2D() { BorraHijos(); }
  /// Shows the cells and lists of another root, which stays their owner.
  void Comparte(CDivisiones2D const& otra);

  /// Divides for `n` points spread evenly over the box: the tree is as deep as the count demands, whatever the real
  /// spread; `Comprimir` takes away later what stayed empty. A cell that has children already loses them.
  void EstableceDivisiones(unsigned n, CMaximas<int> const& caja);
  /// Records the point as the last one of all cells down its path. True if it is the first of its leaf.
  bool ColocaIndices(CCoor3D<int> const& p, std::int16_t suLista, std::int32_t entidad, std::int32_t punto);
  /// `celda` takes the largest cell of which this is the last point, or its leaf. True if it is the last of its leaf.
  bool Inserta(CCoor3D<int> const& p, std::int16_t suLista, std::int32_t entidad, std::int32_t punto,
               CDivisiones2D*& celda);
  /// Prunes subtrees whose four children are all empty, and zeroes the counters.
  void Comprimir();
  /// Destroys the point lists of the leaves and zeroes their counters.
  void clear();
  /// Deepest level, plus 1 when called on the root.
  [[nodiscard]] unsigned CantidadNiveles() const;
  /// Iterate over the lists of the leaves, depth first. `posicion` has one entry a level (`CantidadNiveles`), -1 for a
  /// level not begun. `SiguienteLista` gives null after the last leaf.
  CListaPuntos* PrimeraLista(std::vector<int>& posicion);
  CListaPuntos* SiguienteLista(std::vector<int>& posicion);

  /// Child that the point falls in; only on a cell that has children. A point on a centre line goes right or up.
  [[nodiscard]] CDivisiones2D* Hijo(CCoor3D<int> const& p) const {
    return &hijos[(p.x < centro.x ? 0 : 1) + (p.y < centro.y ? 2 : 0)];
  }

 private:
  void BorraHijos();
  /// Whether `Hijo` leads every point of this place down to here, whatever the limits of the root: false on a limit.
  [[nodiscard]] bool Encierra(CCoor3D<int> const& p) const {
    return p.x >= maximas.Minimo.x && p.x < maximas.Maximo.x && p.y >= maximas.Minimo.y && p.y < maximas.Maximo.y;
  }
  [[nodiscard]] bool EsUltimo(std::int16_t suLista, std::int32_t entidad, std::int32_t punto) const {
    return ultimoPuntoCelda == punto && ultimaEntidad == entidad && ultimaLista == suLista;
  }

  bool ajenos = false;                  ///< the children belong to another root
  CDivisiones2D* ultimaHoja = nullptr;  ///< where the last point fell; the next one is near as a rule. Not looked at
                                        ///< with children of another root, which prunes them without telling
};

}  // namespace Meseta47
