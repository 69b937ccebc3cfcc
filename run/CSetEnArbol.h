#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "run/CCeldas.h"

namespace Meseta47 {

/// What a cell of a tree of element lists is, whatever the elements: a box with its children, and the list of those
/// elements that belong to the cell itself, in the order in which they were filed. The list is threaded through the
/// elements, which keep its links as members `sig` and `ant` (an address or a number, whatever `SetSig` makes of one)
/// and let this class at them; so filing and removal cost a few stores and no memory.
///
/// A base for the cell `TSet` of a tree of `TElemento` with `kEjes` axes. It owns nothing: the cell does.
template <class TSet, class TElemento, unsigned kEjes>
class CSetEnArbol {
 public:
  using CCuentas = CCeldas<kEjes>;  ///< by which children are numbered
  static constexpr unsigned kHijos = CCuentas::kHijos;
  static constexpr unsigned kCapacidad = 150;     ///< a leaf splits when it holds exactly this many elements
  static constexpr unsigned kNivelMaximo = 12;    ///< depth at which nothing is divided any more
  static constexpr int kSegundaMarca = 10000000;  ///< added to a point's number for the stamp of the second phase

  // Close to a plain record; the tree's own invariants are kept by the operations.
  std::uint32_t nivel = 0;
  bool cerrado = false;
  CCoor3D<int> centro;
  CMaximas<int> maximas;
  TSet* padre = nullptr;
  TSet* hijos = nullptr;                            ///< array of kHijos, owned; null on a leaf
  TElemento *primero = nullptr, *ultimo = nullptr;  ///< the cell's own list
  TElemento* actual = nullptr;                      ///< added or touched last
  TElemento* inicio = nullptr;                      ///< where a walk starts
  std::uint32_t cantidad = 0;                       ///< elements in the own list

  /// Greatest level of the subtree, plus 1 when called at level 0.
  [[nodiscard]] unsigned CantidadNiveles() const {
    unsigned mayor = nivel;
    for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) mayor = std::max(mayor, hijos[i].CantidadNiveles());
    return nivel == 0 ? mayor + 1 : mayor;
  }
  /// Elements of the subtree; of the own list alone once closed.
  [[nodiscard]] unsigned CantidadTotal() const {
    unsigned suma = cantidad;
    for (unsigned i = 0; !cerrado && hijos != nullptr && i < kHijos; ++i) suma += hijos[i].CantidadTotal();
    return suma;
  }
  /// Child that the point falls in, -1 on a leaf. What lies on the centre belongs to the high side.
  [[nodiscard]] int BuscaHijo(CCoor3D<int> const& p) const {
    return hijos == nullptr ? -1 : static_cast<int>(CCuentas::Hijo(p, centro));
  }
  /// Child that wholly holds the box, -1 on a leaf or when the box touches a line or plane through the centre.
  [[nodiscard]] int BuscaHijo(CMaximas<int> const& caja) const {
    return hijos == nullptr ? -1 : CCuentas::HijoDeCaja(caja, centro);
  }

 protected:
  CSetEnArbol() = default;
  CSetEnArbol(CSetEnArbol const&) = default;
  CSetEnArbol& operator=(CSetEnArbol const&) = default;
  ~CSetEnArbol() = default;

  [[nodiscard]] TSet* Raiz() {
    TSet* raiz = static_cast<TSet*>(this);
    while (raiz->padre != nullptr) raiz = raiz->padre;
    return raiz;
  }

  /// The centre, and where a box that is not rounded lies low and high of it.
  void PonCentro() {
    centro = CCuentas::Centro(maximas);
    PonCortes();
  }
  /// For a centre that is given.
  void PonCortes() {
    const int medio[] = {centro.x, centro.y, centro.z};
    for (unsigned eje = 0; eje < kEjes; ++eje) cortes[eje] = CCorte::En(medio[eje]);
  }
  /// Children with their level and box.
  void CreaHijos() {
    hijos = new TSet[kHijos];
    for (unsigned i = 0; i < kHijos; ++i) {
      hijos[i].nivel = nivel + 1;
      hijos[i].padre = static_cast<TSet*>(this);
      hijos[i].maximas = CCuentas::Caja(i, maximas, centro);
    }
  }

  /// Appends at the tail.
  void AnexaALista(TElemento* t) {
    t->SetAnt(ultimo);  // a link may want memory, so both are made before anything else changes
    if (ultimo != nullptr) {
      ultimo->SetSig(t);
    } else {
      primero = t;
    }
    t->SetSig(nullptr);
    t->set = static_cast<TSet*>(this);
    ++cantidad;
    ultimo = actual = inicio = t;
  }
  /// Takes an element out without destroying it; a walk that would have started there starts nearby. `inicioDeRaiz` is
  /// where one starts that nothing nearer gives a start.
  void QuitaDeLista(TElemento* t, TElemento*& inicioDeRaiz) {
    TElemento *antes = t->Ant(), *despues = t->Sig();
    if (antes != nullptr) {
      antes->sig = t->sig;
    } else {
      primero = despues;
    }
    if (despues != nullptr) {
      despues->ant = t->ant;
    } else {
      ultimo = antes;
    }
    if (actual == t) actual = antes != nullptr ? antes : despues;
    if (inicio == t) inicio = actual;
    if (inicioDeRaiz == t) {
      inicioDeRaiz = actual;
      for (TSet* s = padre; inicioDeRaiz == nullptr && s != nullptr; s = s->padre) inicioDeRaiz = s->actual;
    }
    --cantidad;
  }
  /// No walk starts in this cell any more: it is about to be closed or emptied.
  void SueltaInicio(TElemento*& inicioDeRaiz) {
    actual = inicio = nullptr;
    if (inicioDeRaiz == nullptr || inicioDeRaiz->GetSet() != this) return;
    inicioDeRaiz = nullptr;
    for (TSet* s = padre; s != nullptr; s = s->padre) {
      if (s->actual == nullptr || s->cerrado) continue;
      inicioDeRaiz = s->actual;
      break;
    }
  }
  /// Parts the elements of the own list from their neighbours.
  void SueltaVecinosDeLista() {
    // From both ends: where the next element lies is known only once this one has come from memory.
    TElemento *t = primero, *u = ultimo;
    for (unsigned pares = cantidad / 2; pares != 0; --pares) {
      TElemento *siguiente = t->Sig(), *anterior = u->Ant();
      t->BorraMisVecinos();
      u->BorraMisVecinos();
      t = siguiente;
      u = anterior;
    }
    if (cantidad % 2 != 0) t->BorraMisVecinos();
  }
  /// The first element that `vale` takes, from the one touched last on: that one, then by turns the next behind it and
  /// the next before it. Without one touched last, from the end on whose side `x` lies.
  template <class F>
  [[nodiscard]] TElemento* BuscaDesdeActual(std::int64_t x, F&& vale) {
    TElemento* desde = actual;
    if (desde == nullptr) desde = x < centro.x ? primero : ultimo;
    if (desde == nullptr || vale(desde)) return desde;
    TElemento *adelante = desde->Sig(), *atras = desde->Ant();
    while (adelante != nullptr || atras != nullptr) {
      if (adelante != nullptr) {
        if (vale(adelante)) return adelante;
        adelante = adelante->Sig();
      }
      if (atras != nullptr) {
        if (vale(atras)) return atras;
        atras = atras->Ant();
      }
    }
    return nullptr;
  }

  /// Limits on one axis for a box in doubles. Integers are what a box is compared with once rounded, so it is left as
  /// it is and the limits are set where rounding, halves to even, turns over.
  struct CCorte {
    double bajo = 0;  ///< a box is low up to here: the greatest double that rounds to less than the centre
    double alto = 0;  ///< and high from here: the least that rounds to more

    [[nodiscard]] static CCorte En(int medio) {
      const double menos = medio - 0.5, mas = medio + 0.5;
      if (medio % 2 != 0) return {menos, mas};
      return {std::nextafter(menos, -HUGE_VAL), std::nextafter(mas, HUGE_VAL)};
    }
  };
  CCorte cortes[kEjes];  ///< x, y, z
};

}  // namespace Meseta47
