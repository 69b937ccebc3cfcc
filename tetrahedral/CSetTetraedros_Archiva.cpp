// Filing: where in the tree a tetrahedron goes, how a full leaf splits, how a new tetrahedron finds its neighbours, how
// a set is closed.
#include <algorithm>
#include <memory>

#include "tetrahedral/CSetTetraedros.h"
#include "tetrahedral/CSetTetraedros_Borrador.h"

namespace Meseta47 {

bool CSetTetraedros::Inserta(CTetraedro& t, bool busca123, bool busca124, bool busca134, bool busca234, bool buscaLista,
                             bool sinRepetir) {
  return Inserta(t, t.GetMaximasEsfera(), busca123, busca124, busca134, busca234, buscaLista, sinRepetir);
}

bool CSetTetraedros::Inserta(CTetraedro& t, CMaximas<int> const& caja, bool busca123, bool busca124, bool busca134,
                             bool busca234, bool buscaLista, bool sinRepetir) {
  for (CSetTetraedros* s = this;;) {
    if (const int hijo = s->BuscaHijo(caja); hijo >= 0) {
      s = &s->hijos[hijo];
      if (s->cerrado) return false;
      continue;
    }
    if (sinRepetir && s->BuscaTetraedro(t) != nullptr) return false;
    if (s->hijos == nullptr && s->cantidad == kCapacidad && s->nivel < kNivelMaximo) {
      s->Divide();
      s->modificado = true;
      sinRepetir = false;  // asked already, before the list was dealt out
      continue;
    }
    s->InsertaOrdenado(t, caja, busca123, busca124, busca134, busca234, buscaLista);
    return true;
  }
}

/// Gives a full leaf its children and moves down what fits in them. Nothing is linked anew, and a child that is filled
/// past its capacity in this way stays a leaf.
void CSetTetraedros::Divide() {
  CreaHijos();
  for (unsigned i = 0; i < kHijos; ++i) hijos[i].PonCentro();
  CSetTetraedros& raiz = *GetNivel0();
  if (raiz.borrador != nullptr) raiz.borrador->camino.Olvida();
  for (CTetraedro* t = primero; t != nullptr;) {
    CTetraedro* siguiente = t->Sig();
    if (const int hijo = BuscaHijo(t->GetMaximasEsfera()); hijo >= 0) {
      Quita(t, raiz);
      hijos[hijo].modificado = true;
      hijos[hijo].AnexaALista(t);
    }
    t = siguiente;
  }
}

void CSetTetraedros::InsertaOrdenado(CTetraedro const& t, CMaximas<int> const& caja, bool busca123, bool busca124,
                                     bool busca134, bool busca234, bool buscaLista) {
  std::unique_ptr<CTetraedro> copia(CTetraedro::Nuevo(t));
  const bool busca[4] = {busca123, busca124, busca134, busca234};
  for (unsigned cara = 0; cara < 4; ++cara) {
    CTetraedro* vecino = copia->Vecino(cara);
    if (busca[cara] || vecino == nullptr) continue;
    unsigned const* v = CTetraedro::kVertice[cara];
    const int suya = vecino->ContieneCara(copia->Num(v[0]), copia->Num(v[1]), copia->Num(v[2]));
    if (suya != 0) {
      vecino->SetVecino(static_cast<unsigned>(suya - 1), copia.get(), CTetraedro::DESCONOCIDO, CTetraedro::DESCONOCIDO,
                        CTetraedro::DESCONOCIDO, false);
    }
  }
  InsertaOrdenado(copia.get(), caja, busca123, busca124, busca134, busca234, buscaLista);
  static_cast<void>(copia.release());  // the list has it
}

void CSetTetraedros::InsertaOrdenado(CTetraedro* t, CMaximas<int> const&, bool busca123, bool busca124, bool busca134,
                                     bool busca234, bool buscaLista) {
  modificado = true;
  EnlazaPorPuntos(t, {busca123, busca124, busca134, busca234}, buscaLista);
  AnexaALista(t);
}

//  The face with the numbers (a, b, c) has them in the same ascending order in both of its tetrahedra, so its code
//  there tells which link is to be made.
void CSetTetraedros::EnlazaPorPuntos(CTetraedro* t, bool const (&busca)[4], bool buscaLista) {
  t->set = this;
  CSetTetraedros* raiz = GetNivel0();
  bool faltan = false;
  constexpr short kNoSabe = CTetraedro::DESCONOCIDO;
  for (unsigned cara = 0; cara < 4; ++cara) {
    if (!busca[cara]) continue;
    unsigned const* v = CTetraedro::kVertice[cara];
    unsigned codigo = 0;
    CTetraedro* vecino =
        raiz->GetContieneCara(*t->puntos[v[0]], *t->puntos[v[1]], *t->puntos[v[2]], codigo, buscaLista);
    if (vecino == nullptr) {
      faltan = true;
      continue;
    }
    t->SetVecino(cara, vecino, kNoSabe, kNoSabe, kNoSabe, false);
    vecino->SetVecino(codigo - 1, t, kNoSabe, kNoSabe, kNoSabe, false);
  }
  if (faltan) raiz->posiblesVecinos.push_back(t);
}

CTetraedro* CSetTetraedros::GetContieneCara(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c,
                                            unsigned& codigo, bool buscaLista) {
  if (cerrado) return nullptr;
  CSetTetraedros* raiz = GetNivel0();
  if (!raiz->posiblesVecinos.empty()) return raiz->BuscaEnPosibles(a.num, b.num, c.num, codigo);
  // Children would be asked as well, without `buscaLista`: with no free face noted none of them can answer.
  return buscaLista ? BuscaEnLista(a, b, c, codigo) : nullptr;
}

CTetraedro* CSetTetraedros::BuscaEnPosibles(int a, int b, int c, unsigned& codigo) {
  for (auto it = posiblesVecinos.begin(); it != posiblesVecinos.end();) {
    CTetraedro* t = *it;
    if (t->set->cerrado) {
      ++it;
      continue;
    }
    if (t->Borrado()) {
      it = posiblesVecinos.erase(it);
      continue;
    }
    codigo = static_cast<unsigned>(t->ContieneCara(a, b, c));
    if (codigo != 0) {
      if (t->CarasLimite() < 2) posiblesVecinos.erase(it);  // the face about to be linked is its last free one
      return t;
    }
    ++it;
  }
  return nullptr;
}

CTetraedro* CSetTetraedros::BuscaEnLista(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c,
                                         unsigned& codigo) {
  if (!maximas.Dentro(a, 0) || !maximas.Dentro(b, 0) || !maximas.Dentro(c, 0)) return nullptr;
  if (a.num == b.num || a.num == c.num || b.num == c.num) return nullptr;
  // It only chooses the end to start from.
  const std::int64_t x = (static_cast<std::int64_t>(a.x) + b.x + c.x) / 3;
  return BuscaDesdeActual(x, [&](CTetraedro const* t) {
    codigo = static_cast<unsigned>(t->ContieneCara(a.num, b.num, c.num));
    return codigo != 0;
  });
}

void CSetTetraedros::Borra(CTetraedro* t, bool anota) {
  CSetTetraedros* raiz = GetNivel0();
  Quita(t, *raiz);
  if (!anota) return;
  for (unsigned cara = 0; cara < 4; ++cara) {
    CTetraedro* vecino = t->Vecino(cara);
    if (vecino != nullptr && !vecino->Borrado()) raiz->posiblesVecinos.push_back(vecino);
  }
}

void CSetTetraedros::Quita(CTetraedro* t, CSetTetraedros& raiz) {
  if (t->set != nullptr) t->set->modificado = true;
  QuitaDeLista(t, raiz.inicio);
}

bool CSetTetraedros::EsAncestroDe(CSetTetraedros const* s) const {
  while (s != nullptr && s != this) s = s->padre;
  return s == this;
}

unsigned CSetTetraedros::QuitaTetraedroActual() {
  if (cerrado) return 0;
  CSetTetraedros* raiz = GetNivel0();
  if (raiz->borrador != nullptr) {
    raiz->borrador->camino.Olvida();
    CTetraedro*& ultimoHecho = raiz->borrador->ultimoHecho;
    if (ultimoHecho != nullptr && EsAncestroDe(ultimoHecho->set)) ultimoHecho = nullptr;
  }
  cerrado = true;
  SueltaInicio(raiz->inicio);
  std::erase_if(raiz->posiblesVecinos, [this](CTetraedro const* t) { return t->set == this; });
  SueltaVecinosDeLista();
  unsigned cortados = cantidad;
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) cortados += hijos[i].QuitaTetraedroActual();
  return cortados;
}

}  // namespace Meseta47
