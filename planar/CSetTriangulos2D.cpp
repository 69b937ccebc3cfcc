#include "planar/CSetTriangulos2D.h"

#include <algorithm>
#include <utility>

#include "planar/CSetTriangulos2D_Obra.h"

namespace Meseta47 {

namespace {

/// The least double that rounds, halves to even, to an integer above `n`.
double MenorSobre(int n) {
  const double medio = n + 0.5;
  return n % 2 != 0 ? medio : std::nextafter(medio, HUGE_VAL);
}
/// The greatest double that rounds, halves to even, to an integer below `n`.
double MayorBajo(int n) {
  const double medio = n - 0.5;
  return n % 2 != 0 ? medio : std::nextafter(medio, -HUGE_VAL);
}

}  // namespace

CSetTriangulos2D::CSetTriangulos2D(unsigned nivelInicial) : nivel(nivelInicial) {}

CSetTriangulos2D::CSetTriangulos2D(CSetTriangulos2D const& o) { *this = o; }

CSetTriangulos2D& CSetTriangulos2D::operator=(CSetTriangulos2D const& o) {
  nivel = o.nivel;
  centro = o.centro;
  maximas = o.maximas;
  padre = o.padre;
  hijos = o.hijos;
  cerrado = o.cerrado;
  primero = o.primero;
  ultimo = o.ultimo;
  actual = o.actual;
  inicio = o.inicio;
  cantidad = o.cantidad;
  obra.reset();
  if (o.obra != nullptr) Obra().abiertos = o.obra->abiertos;
  paso = o.paso;
  aIzquierda = o.aIzquierda;
  aDerecha = o.aDerecha;
  aAbajo = o.aAbajo;
  aArriba = o.aArriba;
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

void CSetTriangulos2D::PonCentro() {
  centro = CCuentas::Centro(maximas);
  aIzquierda = MayorBajo(centro.x);
  aDerecha = MenorSobre(centro.x);
  aAbajo = MayorBajo(centro.y);
  aArriba = MenorSobre(centro.y);
}

void CSetTriangulos2D::HazHijos() {
  hijos = new CSetTriangulos2D[4];
  for (unsigned i = 0; i < 4; ++i) {
    hijos[i].nivel = nivel + 1;
    hijos[i].padre = this;
    CMarco& suyo = hijos[i].paso = paso;
    if ((i & 1U) != 0) {
      suyo.minX = std::max(suyo.minX, aDerecha);
    } else {
      suyo.maxX = std::min(suyo.maxX, aIzquierda);
    }
    if (i < 2) {
      suyo.minY = std::max(suyo.minY, aArriba);
    } else {
      suyo.maxY = std::min(suyo.maxY, aAbajo);
    }
    hijos[i].maximas = CCuentas::Caja(i, maximas, centro);
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

unsigned CSetTriangulos2D::CantidadNiveles() const {
  unsigned mayor = nivel;
  if (hijos != nullptr) {
    for (unsigned i = 0; i < 4; ++i) mayor = std::max(mayor, hijos[i].CantidadNiveles());
  }
  return nivel == 0 ? mayor + 1 : mayor;
}

unsigned CSetTriangulos2D::Cantidad() const {
  unsigned suma = cantidad;
  if (cerrado || hijos == nullptr) return suma;
  for (unsigned i = 0; i < 4; ++i) suma += hijos[i].Cantidad();
  return suma;
}

CSetTriangulos2D* CSetTriangulos2D::GetNivel0() {
  CSetTriangulos2D* raiz = this;
  while (raiz->padre != nullptr) raiz = raiz->padre;
  return raiz;
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

int CSetTriangulos2D::BuscaHijo(CCoor3D<int> const& p) const {
  return hijos == nullptr ? -1 : static_cast<int>(CCuentas::Hijo(p, centro));
}

int CSetTriangulos2D::BuscaHijo(CMaximas<int> const& caja) const {
  return hijos == nullptr ? -1 : CCuentas::HijoDeCaja(caja, centro);
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
