#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "run/CCeldas.h"
#include "run/CListaPuntos.h"

class CFile;

namespace Meseta47 {

/// A cell of the tree that a run divides space into before its mesh exists. It stores no points: it records which point
/// is the last one that falls in it. When that point has been inserted nothing more can happen in the cell, and its set
/// of the mesh can be closed.
///
/// `TRasgos` tells what differs between a mesh in plan and one in space:
///   kEjes, kNivelMaximo       axes by which a cell is divided, and the level at which none is
///   CSet                      the set of the mesh that mirrors a cell
///   CLugar                    what names a point of the run: a plain record that compares, with EstaVacio()
///
/// A cell owns its children.
template <class TRasgos>
class CCeldaDivision : public TRasgos::CLugar {
 public:
  using CCuentas = CCeldas<TRasgos::kEjes>;
  using CLugar = typename TRasgos::CLugar;
  using CSet = typename TRasgos::CSet;
  static constexpr unsigned kHijos = CCuentas::kHijos;
  static constexpr unsigned kMinimoDivide = 201;  ///< a cell is divided when it is to hold at least this many points
  static constexpr unsigned kNivelMaximo = TRasgos::kNivelMaximo;

  // Close to a plain record. The base holds the last point recorded in the cell, or none.
  std::uint32_t nivel = 0;
  CCoor3D<int> centro;
  CMaximas<int> maximas;
  CCeldaDivision* hijos = nullptr;  ///< array of kHijos, numbered as CCeldas does; null on a leaf
  CCeldaDivision* padre = nullptr;
  CListaPuntos lista;           ///< its counter: points recorded in the cell
  CSet* setAsociado = nullptr;  ///< the set that mirrors the cell, not owned

  explicit CCeldaDivision(unsigned suNivel = 0) : nivel(suNivel) {}
  CCeldaDivision(CCeldaDivision const&) = delete;
  CCeldaDivision& operator=(CCeldaDivision const&) = delete;
  ~CCeldaDivision() { delete[] hijos; }

  // --- queries ---
  /// Deepest level, plus 1 when called on the root.
  [[nodiscard]] unsigned CantidadNiveles() const {
    unsigned mayor = nivel;
    for (CCeldaDivision const& h : Hijos()) mayor = std::max(mayor, h.CantidadNiveles());
    return nivel == 0 ? mayor + 1 : mayor;
  }
  /// Points recorded in the leaves.
  [[nodiscard]] int Cantidad() const {
    if (hijos == nullptr) return lista.cantidad;
    int suma = 0;
    for (CCeldaDivision const& h : Hijos()) suma += h.Cantidad();
    return suma;
  }
  /// Child that the point falls in; only on a cell that has children.
  [[nodiscard]] CCeldaDivision* Hijo(CCoor3D<int> const& p) const { return &hijos[CCuentas::Hijo(p, centro)]; }
  /// Iterate over the lists of the leaves, depth first, called on the root. `camino` has one entry a level
  /// (`CantidadNiveles` or more), -1 for a level not begun. `SiguienteLista` gives null after the last leaf.
  CListaPuntos* PrimeraLista(std::vector<int>& camino);
  CListaPuntos* SiguienteLista(std::vector<int>& camino);

  // --- changes ---
  /// Makes the set and its children mirror this cell and its own, and tells each cell its set.
  void Empareja(CSet& set) {
    set.EstableceDivisiones(maximas, hijos != nullptr);
    setAsociado = &set;
    for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) hijos[i].Empareja(set.hijos[i]);
  }
  /// Destroys the point lists of the leaves and zeroes their counters.
  void clear() {
    if (hijos == nullptr) lista.Clear();
    for (CCeldaDivision& h : Hijos()) h.clear();
  }
  /// Writes the lists of the subtree, this cell's first. False when the disk refused.
  bool Salva(CFile* fichero) {
    bool bien = lista.Salva(fichero);
    for (CCeldaDivision& h : Hijos()) bien = h.Salva(fichero) && bien;
    return bien;
  }

 protected:
  [[nodiscard]] std::span<CCeldaDivision> Hijos() { return {hijos, hijos != nullptr ? kHijos : 0}; }
  [[nodiscard]] std::span<CCeldaDivision const> Hijos() const { return {hijos, hijos != nullptr ? kHijos : 0}; }
  [[nodiscard]] CLugar& Ultimo() { return *this; }
  [[nodiscard]] bool EsUltimo(CLugar const& lugar) const { return static_cast<CLugar const&>(*this) == lugar; }
  void BorraHijos() {
    delete[] hijos;
    hijos = nullptr;
  }
  void Copia(CCeldaDivision const& o);

  /// An empty leaf for `n` points, to be divided or not.
  void Empieza(std::uint64_t n, CMaximas<int> const& caja) {
    maximas = caja;
    centro = CCuentas::Centro(caja);
    Ultimo() = CLugar();
    lista.Clear();
    setAsociado = nullptr;
    BorraHijos();
    esperados = n >= kMinimoDivide && nivel < kNivelMaximo ? n : 0;
  }
  /// Gives the cell its children, as leaves.
  void Divide() {
    hijos = new CCeldaDivision[kHijos];
    for (unsigned i = 0; i < kHijos; ++i) {
      hijos[i].nivel = nivel + 1;
      hijos[i].padre = this;
      hijos[i].Empieza(esperados >> TRasgos::kEjes, CCuentas::Caja(i, maximas, centro));
    }
    esperados = 0;
  }
  void DivideDelTodo() {
    if (esperados == 0) return;
    Divide();
    for (CCeldaDivision& h : Hijos()) h.DivideDelTodo();
  }
  void Anota(CLugar const& lugar, int cuantos = 1) {
    lista.cantidad += cuantos;
    Ultimo() = lugar;
  }
  void Poda() {
    lista.cantidad = 0;
    esperados = 0;
    if (std::ranges::all_of(Hijos(), [](CCeldaDivision const& h) { return h.lista.cantidad == 0; })) BorraHijos();
    for (CCeldaDivision& h : Hijos()) h.Poda();
  }
  /// Whether `Hijo` leads every point of this place down to here, whatever the limits of the root: false on a limit.
  [[nodiscard]] bool Encierra(CCoor3D<int> const& p) const {
    const auto dentro = [&](int CCoor3D<int>::*eje) {
      return p.*eje >= maximas.Minimo.*eje && p.*eje < maximas.Maximo.*eje;
    };
    return dentro(&CCoor3D<int>::x) && dentro(&CCoor3D<int>::y) && (!CCuentas::kEnEspacio || dentro(&CCoor3D<int>::z));
  }

  template <class>
  friend class CArbolDivisiones;

 private:
  std::uint64_t esperados = 0;  ///< points that a leaf is to hold which is to be divided by its first one; else 0
};

/// The root of such a tree: divided once, told every point in the order in which the points will go in, pruned, and
/// then asked for each point as it goes in. A point outside the box falls in the nearest cell.
///
/// For one thread. Points that come one near the other cost a few instructions each, as the last leaf is looked at
/// first.
template <class TRasgos>
class CArbolDivisiones : public CCeldaDivision<TRasgos> {
 public:
  using CCelda = CCeldaDivision<TRasgos>;
  using CLugar = typename TRasgos::CLugar;

  CArbolDivisiones() = default;
  ~CArbolDivisiones() {
    if (ajenos) this->hijos = nullptr;
  }
  /// Shows the cells and lists of another tree, which stays their owner.
  void Comparte(CArbolDivisiones const& otro);
  /// A tree of its own with the same cells; it shows the other's lists.
  void CopiaDe(CArbolDivisiones const& otro) {
    Suelta();
    this->Copia(otro);
  }

  /// Divides for `n` points spread evenly over the box: the tree is as deep as the count demands, whatever the real
  /// spread; `Comprimir` takes away later what stayed empty. What was there goes.
  void EstableceDivisiones(unsigned n, CMaximas<int> const& caja) {
    PreparaDivisiones(n, caja);
    this->DivideDelTodo();
  }
  /// The same tree, whose cells get their children only when a first point falls in: after `ColocaIndices` of all
  /// points and `Comprimir` nothing tells the two apart but the memory in between.
  void PreparaDivisiones(std::uint64_t n, CMaximas<int> const& caja) {
    Suelta();
    this->Empieza(n, caja);
  }
  /// Records the point as the last one of all cells down its path. True if it is the first of its leaf.
  bool ColocaIndices(CCoor3D<int> const& p, CLugar const& lugar);
  class CSeguidos;
  /// `celda` takes the largest cell of which this is the last point, or its leaf. True if it is the last of its leaf.
  bool Inserta(CCoor3D<int> const& p, CLugar const& lugar, CCelda*& celda) {
    return Inserta(p, lugar, celda, ultimaHoja);
  }
  /// The same for one of several threads that ask at once: `suHoja` is its own leaf of the last point, null at first.
  bool Inserta(CCoor3D<int> const& p, CLugar const& lugar, CCelda*& celda, CCelda*& suHoja);
  /// Prunes children that are all empty, and zeroes the counters.
  void Comprimir() {
    ultimaHoja = nullptr;
    this->Poda();
  }

 private:
  void Suelta() {
    if (ajenos) this->hijos = nullptr;
    ajenos = false;
    ultimaHoja = nullptr;
  }
  /// Goes down to the leaf of the point, which is then the last one; cells on the way are divided as they are to be.
  void BajaA(CCoor3D<int> const& p) {
    for (ultimaHoja = this;; ultimaHoja = ultimaHoja->Hijo(p)) {
      if (ultimaHoja->esperados != 0) ultimaHoja->Divide();
      if (ultimaHoja->hijos == nullptr) break;
    }
  }
  /// So many points have fallen in the leaf, this one last. Upward by levels: the cells of a shared tree lead to its
  /// owner's root, and not to this one.
  void Anota(CCelda* hoja, CLugar const& lugar, int cuantos) {
    for (CCelda* celda = hoja; celda->nivel != this->nivel; celda = celda->padre) celda->Anota(lugar, cuantos);
    CCelda::Anota(lugar, cuantos);
  }

  bool ajenos = false;           ///< the children belong to another tree
  CCelda* ultimaHoja = nullptr;  ///< where the last point fell; the next one is near as a rule
};

template <class TRasgos>
void CCeldaDivision<TRasgos>::Copia(CCeldaDivision const& o) {
  nivel = o.nivel;
  centro = o.centro;
  maximas = o.maximas;
  padre = o.padre;
  Ultimo() = o;
  lista.Comparte(o.lista);
  setAsociado = o.setAsociado;
  esperados = o.esperados;
  BorraHijos();
  if (o.hijos == nullptr) return;
  hijos = new CCeldaDivision[kHijos];
  for (unsigned i = 0; i < kHijos; ++i) {
    hijos[i].Copia(o.hijos[i]);
    hijos[i].padre = this;
  }
}

template <class TRasgos>
CListaPuntos* CCeldaDivision<TRasgos>::PrimeraLista(std::vector<int>& camino) {
  if (nivel == 0) std::fill(camino.begin(), camino.end(), -1);
  camino[nivel] = 0;
  return hijos == nullptr ? &lista : hijos[0].PrimeraLista(camino);
}

// The entry of a level tells, of the cell above it, which child's turn it is: a leaf that was handed out last, or an
// inner cell that may have more.
template <class TRasgos>
CListaPuntos* CCeldaDivision<TRasgos>::SiguienteLista(std::vector<int>& camino) {
  if (hijos == nullptr) {
    if (camino[nivel] >= 0) return nullptr;
    ++camino[nivel];
    return &lista;
  }
  if (camino[nivel] < 0) camino[nivel] = 0;
  int& turno = camino[nivel + 1];
  if (turno < 0) {
    turno = 0;
  } else if (turno < static_cast<int>(kHijos) && hijos[turno].hijos == nullptr) {
    ++turno;
  }
  for (; turno < static_cast<int>(kHijos); ++turno) {
    CCeldaDivision& hijo = hijos[turno];
    if (hijo.hijos == nullptr) return &hijo.lista;
    if (CListaPuntos* hallada = hijo.SiguienteLista(camino)) return hallada;
    std::fill(camino.begin() + nivel + 2, camino.end(), -1);
  }
  return nullptr;
}

template <class TRasgos>
void CArbolDivisiones<TRasgos>::Comparte(CArbolDivisiones const& otro) {
  Suelta();
  this->BorraHijos();
  this->nivel = otro.nivel;
  this->centro = otro.centro;
  this->maximas = otro.maximas;
  this->Ultimo() = otro;
  this->lista.Comparte(otro.lista);
  this->hijos = otro.hijos;
  ajenos = true;
}

template <class TRasgos>
bool CArbolDivisiones<TRasgos>::ColocaIndices(CCoor3D<int> const& p, CLugar const& lugar) {
  if (ultimaHoja == nullptr || !ultimaHoja->Encierra(p)) BajaA(p);
  const bool primera = ultimaHoja->EstaVacio();
  Anota(ultimaHoja, lugar, 1);
  return primera;
}

/// ColocaIndices for points of which many in a row fall in one leaf: its cells are told once points leave it, and at
/// the end of this object. In between nobody else may look at the tree.
template <class TRasgos>
class CArbolDivisiones<TRasgos>::CSeguidos {
 public:
  explicit CSeguidos(CArbolDivisiones& elArbol) : arbol(elArbol) {}
  CSeguidos(CSeguidos const&) = delete;
  CSeguidos& operator=(CSeguidos const&) = delete;
  ~CSeguidos() { Anota(); }

  bool Coloca(CCoor3D<int> const& p, CLugar const& lugar) {
    if (hoja == nullptr || !hoja->Encierra(p)) {
      Anota();
      arbol.BajaA(p);
      hoja = arbol.ultimaHoja;
      esPrimera = hoja->EstaVacio();
    }
    ultimo = lugar;
    ++cuantos;
    return std::exchange(esPrimera, false);
  }

 private:
  void Anota() {
    if (cuantos != 0) arbol.Anota(hoja, ultimo, std::exchange(cuantos, 0));
  }

  CArbolDivisiones& arbol;
  CCelda* hoja = nullptr;
  CLugar ultimo;    ///< of those that have fallen in it in a row
  int cuantos = 0;  ///< how many
  bool esPrimera = false;
};

template <class TRasgos>
bool CArbolDivisiones<TRasgos>::Inserta(CCoor3D<int> const& p, CLugar const& lugar, CCelda*& celda, CCelda*& suHoja) {
  if (suHoja != nullptr && suHoja->Encierra(p) && !suHoja->EsUltimo(lugar)) {
    celda = suHoja;
    return false;
  }
  // A point that is the last of a cell is the last of all cells below it on its path: the first one met from above is
  // the largest that it finishes.
  CCelda *mayor = nullptr, *c = this;
  for (; c->hijos != nullptr; c = c->Hijo(p)) {
    if (mayor == nullptr && c->EsUltimo(lugar)) mayor = c;
  }
  suHoja = c;
  const bool esUltimo = c->EsUltimo(lugar);
  celda = esUltimo && mayor != nullptr ? mayor : c;
  return esUltimo;
}

}  // namespace Meseta47
