#include "planar/CSetTriangulos2D.h"

#include <algorithm>
#include <utility>

#include "planar/CSetTriangulos2D_Obra.h"

namespace Meseta47 {

CSetTriangulos2D::CSetTriangulos2D(unsigned nivelInicial) { nivel = nivelInicial; }

CSetTriangulos2D::CSetTriangulos2D(CSetTriangulos2D const& o) : CSetTriangulos2D(o.nivel) { *this = o; }

CSetTriangulos2D& CSetTriangulos2D::operator=(CSetTriangulos2D const& o) {
  CSetEnArbol::operator=(o);
  obra.reset();
  if (o.obra != nullptr) Obra().abiertos = o.obra->abiertos;
  paso = o.paso;
  return *this;
}

CSetTriangulos2D::~CSetTriangulos2D() {
  Libera();
  delete[] hijos;
}

void CSetTriangulos2D::clear() {
  if (padre != nullptr) DesenganchaTodo();
  Libera();
}

void CSetTriangulos2D::Libera() {
  for (CTriangulo2D* t = primero; t != nullptr;) {
    CTriangulo2D* siguiente = t->Sig();
    delete t;
    t = siguiente;
  }
  primero = ultimo = actual = inicio = nullptr;
  cantidad = 0;
  if (obra != nullptr) obra->abiertos.clear();
  if (hijos == nullptr) return;
  for (unsigned i = 0; i < 4; ++i) hijos[i].Libera();
}

void CSetTriangulos2D::Vacia() {
  clear();
  obra.reset();  // it remembers children that now go
  delete[] hijos;
  hijos = nullptr;
  cerrado = false;
}

void CSetTriangulos2D::HazHijos() {
  CreaHijos();
  for (unsigned i = 0; i < kHijos; ++i) {
    CMarco& suyo = hijos[i].paso = paso;
    if ((i & 1U) != 0) {
      suyo.minX = std::max(suyo.minX, cortes[0].alto);
    } else {
      suyo.maxX = std::min(suyo.maxX, cortes[0].bajo);
    }
    if (i < 2) {
      suyo.minY = std::max(suyo.minY, cortes[1].alto);
    } else {
      suyo.maxY = std::min(suyo.maxY, cortes[1].bajo);
    }
    hijos[i].PonCentro();
  }
}

void CSetTriangulos2D::EstableceDivisiones(CMaximas<int> const& caja, bool conHijos) {
  maximas = caja;
  PonCentro();
  if (conHijos) HazHijos();
}

void CSetTriangulos2D::EstableceDivisiones(unsigned n, CMaximas<int> const& caja) {
  EstableceDivisiones(caja, n > kCapacidad && nivel < kNivelMaximo);
  if (hijos == nullptr) return;
  for (const unsigned i : {0U, 1U, 3U, 2U}) hijos[i].EstableceDivisiones(n / 4, CCuentas::Caja(i, maximas, centro));
}

CSetTriangulos2D const* CSetTriangulos2D::GetNivel0() const {
  return padre != nullptr ? std::as_const(*padre).GetNivel0() : this;
}

CSetTriangulos2D::CObra& CSetTriangulos2D::Obra() {
  if (obra == nullptr) obra = std::make_unique<CObra>(*this);
  return *obra;
}

std::vector<CTriangulo2D*>& CSetTriangulos2D::Abiertos() { return GetNivel0()->Obra().abiertos; }

std::vector<CTriangulo2D*> const& CSetTriangulos2D::Abiertos() const {
  static const std::vector<CTriangulo2D*> kNinguno;
  CObra const* suya = GetNivel0()->obra.get();
  return suya != nullptr ? suya->abiertos : kNinguno;
}

CTriangulo2D* CSetTriangulos2D::GetActual(bool conHijos) const {
  for (CSetTriangulos2D const* s = this; s != nullptr; s = s->padre) {
    if (s->cerrado) continue;
    if (!conHijos || s->inicio != nullptr) return s->inicio;
    if (s->hijos == nullptr) continue;
    for (unsigned i = 0; i < 4; ++i) {
      // Of a closed child only the mark may be read: the rest is the worker's.
      if (!s->hijos[i].cerrado && s->hijos[i].inicio != nullptr) return s->hijos[i].inicio;
    }
  }
  return nullptr;
}

void CSetTriangulos2D::GetLados(CSetLados2D& lados) const {
  if (!cerrado) {
    for (CTriangulo2D const* t = primero; t != nullptr; t = t->Sig()) {
      CLado2D suyos[3];
      t->GetLados(suyos);
      lados.lados.insert(lados.lados.end(), std::begin(suyos), std::end(suyos));
    }
  }
  if (hijos == nullptr) return;
  for (unsigned i = 0; i < 4; ++i) hijos[i].GetLados(lados);
}

void CSetTriangulos2D::GetTriangulosDePunto(CCoor3D<int> const* p, std::vector<CTriangulo2D*>& triangulos) const {
  if (nivel != 0 && !maximas.Dentro(*p, 0)) return;
  for (CTriangulo2D* t = primero; t != nullptr && t->GetMinX() <= p->x; t = t->Sig()) {
    if (t->P1() == p || t->P2() == p || t->P3() == p) triangulos.push_back(t);
  }
  if (hijos == nullptr) return;
  for (unsigned i = 0; i < 4; ++i) hijos[i].GetTriangulosDePunto(p, triangulos);
}

void CSetTriangulos2D::ComprobarPuntoNuevo(CCoor3D<int> const& p) {
  for (CTriangulo2D* t = primero; t != nullptr; t = t->Sig()) t->Dentro(p);
  if (hijos == nullptr) return;
  for (unsigned i = 0; i < 4; ++i) hijos[i].ComprobarPuntoNuevo(p);
}

void CSetTriangulos2D::CompruebaLadosExteriores(CSetLados2D& lados) const {
  for (CTriangulo2D const* t = primero; t != nullptr; t = t->Sig()) {
    if (t->GetVecino12() == nullptr) lados.lados.emplace_back(t->P1(), t->P2());
    if (t->GetVecino23() == nullptr) lados.lados.emplace_back(t->P2(), t->P3());
    if (t->GetVecino31() == nullptr) lados.lados.emplace_back(t->P3(), t->P1());
  }
  if (hijos == nullptr) return;
  for (unsigned i = 0; i < 4; ++i) hijos[i].GetLados(lados);
}

void CSetTriangulos2D::Lista() const {
  if (hijos == nullptr) return;
  for (unsigned i = 0; i < 4; ++i) hijos[i].Lista();
}

}  // namespace Meseta47
