// Filing: where in the tree a triangle goes, how a full leaf splits, how a new triangle finds its neighbours, how a set
// is closed.
#include <algorithm>

#include "planar/CSetTriangulos2D_Obra.h"

namespace Meseta47 {

void CSetTriangulos2D::Inserta(CTriangulo2D const& t) {
  SetPara(CajaDe(t), Raiz()->inicio).InsertaOrdenado(t, CMaximas<int>());
}
void CSetTriangulos2D::Inserta(CTriangulo2D const& t, CMaximas<int> const& caja) {
  SetPara(CajaDe(caja), Raiz()->inicio).InsertaOrdenado(t, caja);
}

/// Child that wholly holds the box, -1 when the box touches a centre line, when that child is closed, or on a leaf.
int CSetTriangulos2D::HijoAbiertoPara(CCaja const& caja) const {
  if (hijos == nullptr) return -1;
  int hijo = 0;
  if (caja.minX >= cortes[0].alto) {
    hijo = 1;
  } else if (!(caja.maxX <= cortes[0].bajo)) {
    return -1;
  }
  if (caja.maxY <= cortes[1].bajo) {
    hijo += 2;
  } else if (!(caja.minY >= cortes[1].alto)) {
    return -1;
  }
  return hijos[hijo].cerrado ? -1 : hijo;
}

CSetTriangulos2D& CSetTriangulos2D::SetPara(CCaja const& caja, CTriangulo2D*& inicioDeRaiz) {
  for (CSetTriangulos2D* s = this;;) {
    const int hijo = s->HijoAbiertoPara(caja);
    if (hijo >= 0) {
      s = &s->hijos[hijo];
    } else if (s->hijos != nullptr || s->cantidad != kCapacidad || s->nivel >= kNivelMaximo) {
      return *s;
    } else {
      s->Divide(inicioDeRaiz);
    }
  }
}

void CSetTriangulos2D::CObra::CCamino::Pon(CSetTriangulos2D& cerca) {
  if (sets[0] == &cerca) return;
  using CMarcos = CAbanico::CMarcos;
  const auto limite = [](CMarcos::CCota cota, double minimo) { return CMarcos::CLimite{cota, {minimo, minimo}}; };
  CSetTriangulos2D* s = &cerca;
  for (std::size_t k = 0; k < kNiveles; ++k) {
    sets[k] = s;
    CMarco const& m = s->paso;
    const CMarcos::CLimite minX = limite(CMarcos::MIN_X, m.minX), maxX = limite(CMarcos::MENOS_MAX_X, -m.maxX);
    const CMarcos::CLimite minY = limite(CMarcos::MIN_Y, m.minY), maxY = limite(CMarcos::MENOS_MAX_Y, -m.maxY);
    if (k + 1 == kNiveles) {
      const CMarcos::CLimite todos[] = {minX, maxX, minY, maxY};
      std::ranges::copy(todos, marcos.ultimo);
    } else {
      const auto hijo = s->padre != nullptr ? s - s->padre->hijos : 0;
      marcos.propios[k][0] = (hijo & 1) != 0 ? minX : maxX;
      marcos.propios[k][1] = hijo < 2 ? minY : maxY;
    }
    if (s->padre != nullptr) s = s->padre;
  }
  sets[kNiveles] = s;
}

/// Gives a full leaf its children and moves down what fits in them. Nothing is linked anew, and a child that is filled
/// past its capacity in this way stays a leaf.
void CSetTriangulos2D::Divide(CTriangulo2D*& inicioDeRaiz) {
  HazHijos();
  for (CTriangulo2D* t = primero; t != nullptr;) {
    CTriangulo2D* siguiente = t->sig;
    if (const int hijo = HijoAbiertoPara(CajaDe(*t)); hijo >= 0) {
      QuitaDeLista(t, inicioDeRaiz);
      t->BorraVecinos();
      hijos[hijo].AnexaALista(t);
    }
    t = siguiente;
  }
}

void CSetTriangulos2D::InsertaOrdenado(CTriangulo2D const& t, CMaximas<int> const& caja) {
  InsertaOrdenado(new CTriangulo2D(t), caja, true);
}

void CSetTriangulos2D::InsertaOrdenado(CTriangulo2D* t, CMaximas<int> const&, bool enlaza) {
  t->set = this;
  CSetTriangulos2D* raiz = GetNivel0();
  if (enlaza) raiz->EnlazaVecinos(t);
  AnexaALista(t);  // first: should memory give out, the set owns it
  if (nivel == 0) t->Comparte();
  if (t->LadosLimite() != 0) raiz->Obra().abiertos.push_back(t);
}

//       P3                 A side runs one way in this triangle and the other way in its neighbour. `lado` tells which
//      /  \                side of the neighbour that is, so that the link is made on both.
//    P1 -> P2
//     b <- a   vecino12
void CSetTriangulos2D::EnlazaVecinos(CTriangulo2D* t) {
  const auto enlaza = [this, t](CCoor3D<int> const& a, CCoor3D<int> const& b) {
    int lado = 0;
    CTriangulo2D* vecino = GetContieneLado(a, b, lado);
    if (vecino == nullptr) return vecino;
    CTriangulo2D*& suyo = lado == 1 ? vecino->vecino12 : (lado == 2 ? vecino->vecino23 : vecino->vecino31);
    // Taken already where rounding has made a cavity that the point does not see whole: links stay mutual all the same.
    if (suyo != nullptr) suyo->BorraVecino(vecino);
    suyo = t;
    return vecino;
  };
  if (CTriangulo2D* v = enlaza(*t->p1, *t->p2)) t->vecino12 = v;
  if (CTriangulo2D* v = enlaza(*t->p2, *t->p3)) t->vecino23 = v;
  if (CTriangulo2D* v = enlaza(*t->p3, *t->p1)) t->vecino31 = v;
}

CTriangulo2D* CSetTriangulos2D::GetContieneLado(CCoor3D<int> const& a, CCoor3D<int> const& b, int& lado) {
  if (cerrado) return nullptr;
  CSetTriangulos2D* raiz = GetNivel0();
  if (CObra* suya = raiz->obra.get(); suya != nullptr) {
    if (!suya->abiertos.empty()) return suya->BuscaEnAbiertos(a.num, b.num, lado);
    suya->BuscaEnTodo();
  }
  return BuscaEnLista(a, b, lado);
}

/// No triangle of a closed set is in the list: closing takes them out.
CTriangulo2D* CSetTriangulos2D::CObra::BuscaEnAbiertos(int a, int b, int& lado) {
  for (auto it = abiertos.begin(); it != abiertos.end(); ++it) {
    CTriangulo2D* t = *it;
    lado = t->ContieneLado(b, a);
    if (lado == 0) continue;
    if (t->LadosLimite() < 2) abiertos.erase(it);  // the side about to be linked is its last free one
    return t;
  }
  return nullptr;
}

CTriangulo2D* CSetTriangulos2D::BuscaEnLista(CCoor3D<int> const& a, CCoor3D<int> const& b, int& lado) {
  if (cerrado || !maximas.Dentro(a, 0) || !maximas.Dentro(b, 0) || a.num == b.num) return nullptr;
  // A third of the sum, not the mean: it only chooses the end to start from, and hosts rely on the order that follows.
  const std::int64_t x = (static_cast<std::int64_t>(a.x) + b.x) / 3;
  CTriangulo2D* hallado = BuscaDesdeActual(x, [&](CTriangulo2D const* t) {
    lado = t->ContieneLado(b.num, a.num);
    return lado != 0;
  });
  if (hallado != nullptr) return hallado;
  if (hijos == nullptr) return nullptr;
  for (unsigned i = 0; i < 4; ++i) {
    if (CTriangulo2D* t = hijos[i].BuscaEnLista(a, b, lado)) return t;
  }
  return nullptr;
}

void CSetTriangulos2D::Borra(CTriangulo2D* t) { QuitaDeLista(t, Raiz()->inicio); }

/// Leaves nothing in the living mesh that points at a triangle of the own list.
void CSetTriangulos2D::Desengancha(CObra* suObra, CTriangulo2D*& inicioDeRaiz) {
  SueltaInicio(inicioDeRaiz);
  if (suObra != nullptr) {
    suObra->OlvidaCamino();
    std::erase_if(suObra->abiertos, [this](CTriangulo2D const* t) { return t->set == this; });
  }
  SueltaVecinosDeLista();
}

void CSetTriangulos2D::Desengancha() {
  CSetTriangulos2D* raiz = Raiz();
  Desengancha(raiz->obra.get(), raiz->inicio);
}

void CSetTriangulos2D::DesenganchaTodo() {
  if (!cerrado) Desengancha();
  for (unsigned i = 0; hijos != nullptr && i < 4; ++i) hijos[i].DesenganchaTodo();
}

unsigned CSetTriangulos2D::QuitaTrianguloActual() {
  CSetTriangulos2D* raiz = Raiz();
  return Cierra(raiz->obra.get(), raiz->inicio);
}

unsigned CSetTriangulos2D::Cierra(CObra* suObra, CTriangulo2D*& inicioDeRaiz) {
  if (cerrado) return 0;
  cerrado = true;
  Desengancha(suObra, inicioDeRaiz);
  unsigned cortados = cantidad;
  if (hijos != nullptr) {
    for (unsigned i = 0; i < 4; ++i) cortados += hijos[i].Cierra(suObra, inicioDeRaiz);
  }
  return cortados;
}

}  // namespace Meseta47
