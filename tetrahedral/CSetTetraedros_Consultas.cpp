// Queries on the tree, and the removal of tetrahedra by an edge.
#include <algorithm>

#include "platform/Anticipa.h"
#include "tetrahedral/CSetTetraedros.h"

namespace Meseta47 {

void CSetTetraedros::GetCaras(CSetCaras& caras) const {
  if (cerrado) return;
  for (CTetraedro const* t = primero; t != nullptr; t = t->Sig()) {
    if (t->Borrado()) continue;
    CCara suyas[4];
    t->GetCaras(suyas);
    caras.insert(caras.end(), std::begin(suyas), std::end(suyas));
  }
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) hijos[i].GetCaras(caras);
}

void CSetTetraedros::CompruebaCarasExteriores(CSetCaras& caras) const {
  for (CTetraedro* t = primero; t != nullptr; t = t->Sig()) {
    CCara suyas[4];
    t->GetCaras(suyas);
    for (CCara& cara : suyas) {
      if (cara.Tetra() != nullptr) continue;
      cara.SetTetra(t);
      caras.push_back(cara);
    }
  }
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) hijos[i].CompruebaCarasExteriores(caras);
}

CTetraedro* CSetTetraedros::Tetraedro(unsigned i) const {
  for (unsigned k = 0; hijos != nullptr && k < kHijos; ++k) {
    if (CTetraedro* t = hijos[k].Tetraedro(i)) return t;
    i -= hijos[k].CantidadTotal();
  }
  if (i >= cantidad) return nullptr;
  CTetraedro* t = primero;
  for (; i != 0; --i) t = t->Sig();
  return t;
}

CTetraedro* CSetTetraedros::GetTetraedroSegunID(int i) const {
  if (i < 0) return nullptr;
  if (static_cast<unsigned>(i) < cantidad) {
    CTetraedro* t = primero;
    for (; i != 0; --i) t = t->Sig();
    return t;
  }
  i -= static_cast<int>(cantidad);
  for (unsigned k = 0; hijos != nullptr && k < kHijos; ++k) {
    if (CTetraedro* t = hijos[k].GetTetraedroSegunID(i)) return t;
  }
  return nullptr;
}

CTetraedro* CSetTetraedros::BuscaTetraedro(CTetraedro const& buscado) const {
  for (CTetraedro* t = primero; t != nullptr; t = t->Sig()) {
    if (std::equal(std::begin(t->puntos), std::end(t->puntos), std::begin(buscado.puntos))) return t;
  }
  return nullptr;
}

void CSetTetraedros::BuscaTetraedros(CCara const& cara, std::vector<CTetraedro*>& salida) const {
  for (CTetraedro* t = primero; t != nullptr; t = t->Sig()) {
    if (t->ContieneCara(cara.N1(), cara.N2(), cara.N3()) != 0) salida.push_back(t);
  }
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) hijos[i].BuscaTetraedros(cara, salida);
}

bool CSetTetraedros::GetTetraedrosDePunto(CCoor3D<int> const* p, std::vector<CTetraedro*>& salida) {
  if (!maximas.Dentro(*p, 0)) return false;
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) {
    if (hijos[i].GetTetraedrosDePunto(p, salida)) return true;
  }
  if (primero == nullptr) return false;
  const auto tiene = [p](CTetraedro const* t) {
    return std::find(std::begin(t->puntos), std::end(t->puntos), p) != std::end(t->puntos);
  };

  // To any tetrahedron that holds the point.
  CTetraedro* hallado = nullptr;
  std::vector<CTetraedro*> cola{inicio != nullptr ? inicio : primero};
  for (std::size_t i = 0; i < cola.size() && hallado == nullptr; ++i) {
    CTetraedro* t = cola[i];
    if (t->Borrado() || t->identificador == -p->num) continue;
    t->identificador = -p->num;
    for (unsigned cara = 0; cara < 4 && hallado == nullptr; ++cara) {
      CTetraedro* v = t->Vecino(cara);
      if (v == nullptr || v->identificador == -p->num) continue;
      if (tiene(v)) {
        hallado = v;
      } else {
        cola.push_back(v);
      }
    }
  }
  if (hallado == nullptr) return false;

  // And around it.
  salida.push_back(hallado);
  cola.assign(1, hallado);
  for (std::size_t i = 0; i < cola.size(); ++i) {
    CTetraedro* t = cola[i];
    if (t->Borrado() || t->identificador == p->num) continue;
    t->identificador = p->num;
    const bool suyo = tiene(t);
    for (unsigned cara = 0; cara < 4; ++cara) {
      CTetraedro* v = t->Vecino(cara);
      if (v == nullptr || v->identificador == p->num || !(suyo || tiene(v))) continue;
      salida.push_back(v);
      cola.push_back(v);
    }
  }
  return true;
}

void CSetTetraedros::CopiaTetraedros(std::vector<CTetraedro>& salida, std::vector<CCoor3D<int>*> const& puntos) const {
  for (CTetraedro const* t = primero; t != nullptr; t = t->Sig()) {
    CCoor3D<int>* suyos[4] = {};
    unsigned hallados = 0;
    for (CCoor3D<int>* p : puntos) {
      for (unsigned i = 0; i < 4; ++i) {
        if (suyos[i] != nullptr || !(*t->puntos[i] == *p)) continue;
        suyos[i] = p;
        ++hallados;
        break;
      }
      if (hallados == 4) break;
    }
    if (hallados == 4) salida.emplace_back(suyos[0], suyos[1], suyos[2], suyos[3]);
  }
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) hijos[i].CopiaTetraedros(salida, puntos);
}

/// The set after `s` in the order of files: a set before its children. Null after the last of this subtree.
CSetTetraedros const* CSetTetraedros::SiguienteDeRama(CSetTetraedros const* s) const {
  if (s->hijos != nullptr) return s->hijos;
  while (s != this && s == &s->padre->hijos[kHijos - 1]) s = s->padre;
  return s != this ? s + 1 : nullptr;
}

/// Calls `f` with each tetrahedron of the subtree and its place in the order of files. In no order: where the next one
/// of a list lies is known only once this one has come from memory, so several lists are walked at once.
template <class F>
void CSetTetraedros::RecorreRama(F const& f) const {
  constexpr unsigned kListas = 8;
  struct CCursor {
    CTetraedro* t;
    std::uint32_t lugar;
  };
  CCursor cursores[kListas];
  CSetTetraedros const* set = this;
  std::uint32_t lugar = 0;
  const auto toma = [&](CCursor& cursor) {
    while (set != nullptr && set->primero == nullptr) set = SiguienteDeRama(set);
    if (set == nullptr) return false;
    cursor = {set->primero, lugar};
    lugar += set->cantidad;
    set = SiguienteDeRama(set);
    return true;
  };
  unsigned abiertos = 0;
  while (abiertos < kListas && toma(cursores[abiertos])) ++abiertos;
  while (abiertos != 0) {
    for (unsigned i = 0; i < abiertos; ++i) {
      CCursor& cursor = cursores[i];
      CTetraedro* t = cursor.t;
      cursor.t = t->Sig();
      if (cursor.t != nullptr) {
        Anticipa(cursor.t);
        AnticipaLectura(&cursor.t->sig);
      }
      f(t, cursor.lugar++);
      if (cursor.t == nullptr && !toma(cursor)) cursor = cursores[--abiertos];
    }
  }
}

void CSetTetraedros::SetIdentificadores(int& siguiente) {
  int cuantos = 0;
  RecorreRama([&](CTetraedro* t, std::uint32_t lugar) {
    t->identificador = siguiente + static_cast<int>(lugar);
    ++cuantos;
  });
  siguiente += cuantos;
}

void CSetTetraedros::RellenaVectorPunteros(std::vector<CTetraedro*>& salida) const {
  std::size_t cuantos = 0;
  for (CSetTetraedros const* s = this; s != nullptr; s = SiguienteDeRama(s)) cuantos += s->cantidad;
  const std::size_t desde = salida.size();
  salida.resize(desde + cuantos);
  RecorreRama([&](CTetraedro* t, std::uint32_t lugar) { salida[desde + lugar] = t; });
}

void CSetTetraedros::RellenaVectorHijos(std::vector<CSetTetraedros*>& salida, bool soloLlenos) {
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) hijos[i].RellenaVectorHijos(salida, soloLlenos);
  if (!soloLlenos || cantidad != 0) salida.push_back(this);
}

void CSetTetraedros::BorraContieneLado(CCoor3D<int> const& a, CCoor3D<int> const& b) {
  if (!maximas.Dentro(a, 0) || !maximas.Dentro(b, 0)) return;
  const bool adelante = (static_cast<std::int64_t>(a.x) + b.x) / 2 < centro.x;
  for (CTetraedro* t = adelante ? primero : ultimo; t != nullptr;) {
    CTetraedro* siguiente = adelante ? t->Sig() : t->Ant();
    if (t->ContieneLado(a.num, b.num)) {
      Borra(t, false);
      delete t;
    }
    t = siguiente;
  }
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) hijos[i].BorraContieneLado(a, b);
}

void CSetTetraedros::ComprobarPuntoNuevo(CCoor3D<int> const& p) {
  for (CTetraedro* t = primero; t != nullptr; t = t->Sig()) t->identificador = p.num;
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) hijos[i].ComprobarPuntoNuevo(p);
}

void CSetTetraedros::ComprobarVecinos() const {
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) hijos[i].ComprobarVecinos();
}

}  // namespace Meseta47
