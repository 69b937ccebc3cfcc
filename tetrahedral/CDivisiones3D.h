#pragma once

#include <cstdint>
#include <vector>

#include "run/CListaPuntos.h"

class CFile;

namespace Meseta47 {

class CSetTetraedros;

/// A cell of the octree that a run divides space into before any tetrahedron exists. It stores no points: it records
/// which point is the last one that falls in it. When that point has been inserted nothing more can happen in the cell,
/// and its set of tetrahedra can be closed.
class URDIMBRE_API CDivisiones3D {
 public:
  static constexpr unsigned kMinimoDivide = 201;  ///< a cell is divided when it is to hold at least this many points
  static constexpr unsigned kNivelMaximo = 10;
  static constexpr unsigned kHijos = 8;

  std::uint32_t nivel = 0;
  CCoor3D<int> centro;
  CMaximas<int> maximas;
  CDivisiones3D* hijos = nullptr;  ///< array of 8, owned; null on a leaf. 1 is added for +x, 2 for -y, 4 for +z
  CDivisiones3D* padre = nullptr;
  std::int32_t ultimaEntidad = -1;  ///< the last point recorded in the cell; -1 in both while it is empty
  std::int32_t ultimoPuntoCelda = -1;
  CListaPuntos lista;                     ///< its counter: points recorded in the cell
  CSetTetraedros* setAsociado = nullptr;  ///< the set that mirrors the cell, not owned

  explicit CDivisiones3D(unsigned suNivel = 0) : nivel(suNivel) {}
  /// Copy the subtree; point lists are shown, and stay the other's. A copy constructed this way leaves the parents of
  /// its children as they were.
  CDivisiones3D(CDivisiones3D const& o);
  CDivisiones3D& operator=(CDivisiones3D const& o);
  ~CDivisiones3D() { delete[] hijos; }

  /// Divides for `n` points spread evenly over the box: the tree is as deep as the count demands, whatever the real
  /// spread; `Comprimir` takes away later what stayed empty. A cell that has children already loses them.
  void EstableceDivisiones(unsigned n, CMaximas<int> const& caja);
  /// The same tree, whose cells get their children only when a first point falls in: after `ColocaIndices` of all
  /// points and `Comprimir` nothing tells the two apart but the memory in between.
  void PreparaDivisiones(std::uint64_t n, CMaximas<int> const& caja);
  /// Records the point as the last one of all cells down its path. True if it is the first of its leaf.
  bool ColocaIndices(CCoor3D<int> const& p, int entidad, int punto);
  /// `celda` takes the largest cell of which this is the last point, or its leaf. True if it is the last of its leaf.
  /// `nodo` is not used.
  bool Inserta(CCoor3D<int> const& p, CCoor3DIntLista** nodo, int entidad, int punto, CDivisiones3D** celda);
  /// Prunes children that are all empty, and zeroes the counters.
  void Comprimir();
  /// Destroys the point lists of the leaves and zeroes their counters.
  void clear();
  /// Writes the lists of the subtree, this cell's first. False when the disk refused.
  bool Salva(CFile* fichero);
  /// Deepest level, plus 1 when called on the root.
  [[nodiscard]] unsigned CantidadNiveles() const;
  /// Points recorded in the leaves.
  [[nodiscard]] int Cantidad() const;
  /// Iterate over the lists of the leaves, depth first, called on the root. `camino` has one entry a level
  /// (`CantidadNiveles` or more), -1 for a level not begun. `SiguienteLista` gives null after the last leaf.
  CListaPuntos* PrimeraLista(std::vector<int>& camino);
  CListaPuntos* SiguienteLista(std::vector<int>& camino);

  /// Child that the point falls in; only on a cell that has children. A point on a centre plane goes to the high side.
  [[nodiscard]] CDivisiones3D* Hijo(CCoor3D<int> const& p) const {
    return &hijos[(p.x < centro.x ? 0 : 1) + (p.y < centro.y ? 2 : 0) + (p.z < centro.z ? 0 : 4)];
  }

 private:
  void Empieza(std::uint64_t n, CMaximas<int> const& caja);
  void HazHijos();
  void Copia(CDivisiones3D const& o);

  std::uint64_t esperados = 0;  ///< points that the cell is to hold, while it waits for the first to be divided
};

}  // namespace Meseta47
