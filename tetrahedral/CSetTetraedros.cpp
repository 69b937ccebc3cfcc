#include "tetrahedral/CSetTetraedros.h"

#include <algorithm>

#include "tetrahedral/CSetTetraedros_Borrador.h"

namespace Meseta47 {

CSetTetraedros::CSetTetraedros(unsigned nivelInicial) { nivel = nivelInicial; }

CSetTetraedros::CSetTetraedros(CSetTetraedros const& o) : CSetTetraedros(o.nivel) { *this = o; }

CSetTetraedros& CSetTetraedros::operator=(CSetTetraedros const& o) {
  if (this == &o) return *this;
  Vacia();
  nivel = o.nivel;
  centro = o.centro;
  maximas = o.maximas;
  padre = o.padre;
  cantidad = o.cantidad;
  posiblesVecinos = o.posiblesVecinos;
  numLista = o.numLista;
  modificado = o.modificado;
  std::copy(std::begin(o.cortes), std::end(o.cortes), cortes);
  if (o.hijos == nullptr) return *this;
  hijos = new CSetTetraedros[kHijos];
  for (unsigned i = 0; i < kHijos; ++i) {
    hijos[i] = o.hijos[i];
    hijos[i].padre = this;
  }
  return *this;
}

CSetTetraedros::~CSetTetraedros() {
  clear();
  delete[] hijos;
}

void CSetTetraedros::Vacia() {
  clear();
  borrador.reset();  // it remembers children that now go
  delete[] hijos;
  hijos = nullptr;
  cerrado = false;
  posiblesVecinos.clear();
}

void CSetTetraedros::EstableceDivisiones(CMaximas<int> const& caja, bool crea) {
  maximas = caja;
  PonCentro();
  if (crea) CreaHijos();
}

void CSetTetraedros::EstableceDivisiones(unsigned n, CMaximas<int> const& caja) {
  EstableceDivisiones(caja, n > kCapacidad && nivel < kNivelMaximo);
  if (hijos == nullptr) return;
  for (unsigned i = 0; i < kHijos; ++i) hijos[i].EstableceDivisiones(n / kHijos, CCuentas::Caja(i, maximas, centro));
}

CSetTetraedros* CSetTetraedros::DameHijo(CCoor3D<int> const& p) {
  CSetTetraedros* s = this;
  while (s->hijos != nullptr) s = &s->hijos[s->BuscaHijo(p)];
  return s;
}

bool CSetTetraedros::ComparaXMax(CMaximas<int> const& a, CMaximas<int> const& b) {
  const int deA[] = {a.Maximo.x, a.Maximo.y, a.Maximo.z, a.Minimo.x, a.Minimo.y, a.Minimo.z};
  const int deB[] = {b.Maximo.x, b.Maximo.y, b.Maximo.z, b.Minimo.x, b.Minimo.y, b.Minimo.z};
  return !std::lexicographical_compare(std::begin(deA), std::end(deA), std::begin(deB), std::end(deB));
}

CTetraedro* CSetTetraedros::GetActual(bool exige) const {
  for (CSetTetraedros const* s = this; s != nullptr; s = s->padre) {
    if (s->cerrado) continue;
    if ((!exige || s->inicio != nullptr) && !s->inicio->Borrado()) return s->inicio;
    for (unsigned i = 0; s->hijos != nullptr && i < kHijos; ++i) {
      // Of a closed child only the mark may be read: the rest is the worker's.
      CSetTetraedros const& hijo = s->hijos[i];
      if (!hijo.cerrado && hijo.inicio != nullptr && !hijo.inicio->Borrado()) return hijo.inicio;
    }
  }
  return nullptr;
}

}  // namespace Meseta47
