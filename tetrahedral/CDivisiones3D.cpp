#include "tetrahedral/CDivisiones3D.h"

#include <algorithm>

namespace Meseta47 {

CDivisiones3D::CDivisiones3D(CDivisiones3D const& o) {
  Copia(o);
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) hijos[i].padre = o.hijos[i].padre;
}

CDivisiones3D& CDivisiones3D::operator=(CDivisiones3D const& o) {
  if (this != &o) Copia(o);
  return *this;
}

void CDivisiones3D::Copia(CDivisiones3D const& o) {
  nivel = o.nivel;
  centro = o.centro;
  maximas = o.maximas;
  padre = o.padre;
  ultimaEntidad = o.ultimaEntidad;
  ultimoPuntoCelda = o.ultimoPuntoCelda;
  lista.Comparte(o.lista);
  setAsociado = o.setAsociado;
  esperados = o.esperados;
  delete[] hijos;
  hijos = nullptr;
  if (o.hijos == nullptr) return;
  hijos = new CDivisiones3D[kHijos];
  for (unsigned i = 0; i < kHijos; ++i) {
    hijos[i].Copia(o.hijos[i]);
    hijos[i].padre = this;
  }
}

void CDivisiones3D::Empieza(std::uint64_t n, CMaximas<int> const& caja) {
  maximas = caja;
  centro = caja.Centro(true);
  ultimaEntidad = ultimoPuntoCelda = -1;
  lista.Clear();
  setAsociado = nullptr;
  delete[] hijos;
  hijos = nullptr;
  esperados = n >= kMinimoDivide && nivel < kNivelMaximo ? n : 0;
}

void CDivisiones3D::HazHijos() {
  hijos = new CDivisiones3D[kHijos];
  for (unsigned i = 0; i < kHijos; ++i) {
    CMaximas<int> octante(maximas);
    ((i & 1U) != 0 ? octante.Minimo.x : octante.Maximo.x) = centro.x;
    ((i & 2U) != 0 ? octante.Maximo.y : octante.Minimo.y) = centro.y;
    ((i & 4U) != 0 ? octante.Minimo.z : octante.Maximo.z) = centro.z;
    hijos[i].nivel = nivel + 1;
    hijos[i].padre = this;
    hijos[i].Empieza(esperados >> 3, octante);
  }
  esperados = 0;
}

void CDivisiones3D::EstableceDivisiones(unsigned n, CMaximas<int> const& caja) {
  Empieza(n, caja);
  if (esperados == 0) return;
  HazHijos();
  for (unsigned i = 0; i < kHijos; ++i) {
    hijos[i].EstableceDivisiones(n >> 3, CMaximas<int>(hijos[i].maximas));
  }
}

void CDivisiones3D::PreparaDivisiones(std::uint64_t n, CMaximas<int> const& caja) { Empieza(n, caja); }

bool CDivisiones3D::ColocaIndices(CCoor3D<int> const& p, int entidad, int punto) {
  for (CDivisiones3D* celda = this;; celda = celda->Hijo(p)) {
    const bool primera = celda->ultimaEntidad < 0 || celda->ultimoPuntoCelda < 0;
    ++celda->lista.cantidad;
    celda->ultimaEntidad = entidad;
    celda->ultimoPuntoCelda = punto;
    if (celda->esperados != 0) celda->HazHijos();
    if (celda->hijos == nullptr) return primera;
  }
}

bool CDivisiones3D::Inserta(CCoor3D<int> const& p, CCoor3DIntLista**, int entidad, int punto, CDivisiones3D** celda) {
  const auto esUltimo = [=](CDivisiones3D const& c) {
    return c.ultimoPuntoCelda == punto && c.ultimaEntidad == entidad;
  };
  // A point that is the last of a cell is the last of all cells below it on its path: the first one met from above is
  // the largest that it finishes.
  CDivisiones3D *mayor = nullptr, *c = this;
  for (; c->hijos != nullptr; c = c->Hijo(p)) {
    if (mayor == nullptr && esUltimo(*c)) mayor = c;
  }
  const bool ultimo = esUltimo(*c);
  *celda = ultimo && mayor != nullptr ? mayor : c;
  return ultimo;
}

void CDivisiones3D::Comprimir() {
  lista.cantidad = 0;
  esperados = 0;
  if (hijos == nullptr) return;
  if (std::all_of(hijos, hijos + kHijos, [](CDivisiones3D const& h) { return h.lista.cantidad == 0; })) {
    delete[] hijos;
    hijos = nullptr;
    return;
  }
  for (unsigned i = 0; i < kHijos; ++i) hijos[i].Comprimir();
}

void CDivisiones3D::clear() {
  if (hijos == nullptr) lista.Clear();
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) hijos[i].clear();
}

bool CDivisiones3D::Salva(CFile* fichero) {
  bool bien = lista.Salva(fichero);
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) bien = hijos[i].Salva(fichero) && bien;
  return bien;
}

unsigned CDivisiones3D::CantidadNiveles() const {
  unsigned mayor = nivel;
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) mayor = std::max(mayor, hijos[i].CantidadNiveles());
  return nivel == 0 ? mayor + 1 : mayor;
}

int CDivisiones3D::Cantidad() const {
  if (hijos == nullptr) return lista.cantidad;
  int suma = 0;
  for (unsigned i = 0; i < kHijos; ++i) suma += hijos[i].Cantidad();
  return suma;
}

CListaPuntos* CDivisiones3D::PrimeraLista(std::vector<int>& camino) {
  if (nivel == 0) std::fill(camino.begin(), camino.end(), -1);
  camino[nivel] = 0;
  return hijos == nullptr ? &lista : hijos[0].PrimeraLista(camino);
}

// The entry of a level tells, of the cell above it, which child's turn it is: a leaf that was handed out last, or an
// inner cell that may have more.
CListaPuntos* CDivisiones3D::SiguienteLista(std::vector<int>& camino) {
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
    CDivisiones3D& hijo = hijos[turno];
    if (hijo.hijos == nullptr) return &hijo.lista;
    if (CListaPuntos* hallada = hijo.SiguienteLista(camino)) return hallada;
    std::fill(camino.begin() + nivel + 2, camino.end(), -1);
  }
  return nullptr;
}

}  // namespace Meseta47
