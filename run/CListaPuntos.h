#pragma once

#include "model/geometry/CMaximas.h"

class CFile;

namespace Meseta47 {

/// A coordinate in a doubly linked list; compared and copied as a coordinate.
class URDIMBRE_API CCoor3DIntLista : public CCoor3D<int> {
 public:
  CCoor3DIntLista(CCoor3D<int> const& p, CCoor3DIntLista* anterior) : CCoor3D<int>(p), ant(anterior) {}
  CCoor3DIntLista(CCoor3DIntLista const&) = default;
  /// Takes over the coordinate; the links stay.
  CCoor3DIntLista& operator=(CCoor3DIntLista const& o) {
    CCoor3D<int>::operator=(o);
    return *this;
  }
  CCoor3DIntLista& operator=(CCoor3D<int> const& p) {
    CCoor3D<int>::operator=(p);
    return *this;
  }
  ~CCoor3DIntLista() override = default;

  [[nodiscard]] CCoor3DIntLista* Sig() const { return sig; }
  [[nodiscard]] CCoor3DIntLista* Ant() const { return ant; }
  void SetSig(CCoor3DIntLista* p) { sig = p; }
  void SetAnt(CCoor3DIntLista* p) { ant = p; }

 private:
  CCoor3DIntLista* sig = nullptr;
  CCoor3DIntLista* ant = nullptr;
};

/// Linked list of points that knows their extents. Runs use its counter only; the list itself is at the host's service.
/// It owns its nodes.
class URDIMBRE_API CListaPuntos : public CMaximas<int> {
 public:
  std::int32_t cantidad = 0;
  CCoor3DIntLista* primero = nullptr;
  CCoor3DIntLista* ultimo = nullptr;
  CCoor3DIntLista* actual = nullptr;

  CListaPuntos() = default;
  CListaPuntos(CListaPuntos const&) = delete;
  CListaPuntos& operator=(CListaPuntos const&) = delete;
  ~CListaPuntos() override { Clear(); }
  /// Shows the nodes of another list, which stays their owner.
  void Comparte(CListaPuntos const& otra);

  /// Appends a copy of the point and widens the extents. O(1).
  CCoor3DIntLista* Inserta(CCoor3D<int> const& p);
  /// Takes the node out and destroys it. The extents don't shrink.
  void Elimina(CCoor3DIntLista* nodo);
  /// Destroys all nodes. `ultimo` keeps its old value: only `primero` tells whether the list is empty.
  void Clear();
  /// Writes x, y and z of each point at the place that its number gives it, 12 bytes a point, destroying the nodes.
  /// False when the disk refused; the list is empty all the same.
  bool Salva(CFile* fichero);
  [[nodiscard]] int Cantidad() const { return cantidad; }

 private:
  bool ajena = false;  ///< the nodes belong to another list
};

}  // namespace Meseta47
