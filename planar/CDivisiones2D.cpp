#include "planar/CDivisiones2D.h"

#include <algorithm>

namespace Meseta47 {

void CDivisiones2D::BorraHijos() {
  if (!ajenos) delete[] hijos;
  hijos = nullptr;
  ajenos = false;
  for (CDivisiones2D* c = this; c != nullptr; c = c->padre) c->ultimaHoja = nullptr;
}

void CDivisiones2D::Comparte(CDivisiones2D const& otra) {
  BorraHijos();
  nivel = otra.nivel;
  centro = otra.centro;
  maximas = otra.maximas;
  ultimaLista = otra.ultimaLista;
  ultimaEntidad = otra.ultimaEntidad;
  ultimoPuntoCelda = otra.ultimoPuntoCelda;
  lista.Comparte(otra.lista);
  hijos = otra.hijos;
  ajenos = true;
}

void CDivisiones2D::EstableceDivisiones(unsigned n, CMaximas<int> const& caja) {
  maximas = caja;
  centro = caja.Centro(false);
  ultimaLista = -1;
  ultimaEntidad = ultimoPuntoCelda = -1;
  lista.Clear();
  setAsociado = nullptr;
  BorraHijos();
  if (n < kMinimoDivide || nivel >= kNivelMaximo) return;
  hijos = new CDivisiones2D[4];
  for (const unsigned i : {0U, 1U, 3U, 2U}) {
    CMaximas<int> cuadrante;  // in plan only: its heights stay empty
    const bool derecha = (i & 1U) != 0, arriba = i < 2;
    cuadrante.Minimo.x = derecha ? centro.x : caja.Minimo.x;
    cuadrante.Maximo.x = derecha ? caja.Maximo.x : centro.x;
    cuadrante.Minimo.y = arriba ? centro.y : caja.Minimo.y;
    cuadrante.Maximo.y = arriba ? caja.Maximo.y : centro.y;
    hijos[i].nivel = nivel + 1;
    hijos[i].padre = this;
    hijos[i].EstableceDivisiones(n >> 2, cuadrante);
  }
}

bool CDivisiones2D::ColocaIndices(CCoor3D<int> const& p, std::int16_t suLista, std::int32_t entidad,
                                  std::int32_t punto) {
  if (ultimaHoja == nullptr || ajenos || !ultimaHoja->Encierra(p)) {
    for (ultimaHoja = this; ultimaHoja->hijos != nullptr;) ultimaHoja = ultimaHoja->Hijo(p);
  }
  const bool primera = ultimaHoja->ultimaLista < 0 || ultimaHoja->ultimaEntidad < 0 || ultimaHoja->ultimoPuntoCelda < 0;
  const auto anota = [&](CDivisiones2D& celda) {
    ++celda.lista.cantidad;
    celda.ultimaLista = suLista;
    celda.ultimaEntidad = entidad;
    celda.ultimoPuntoCelda = punto;
  };
  // Up to this cell by the levels: of shared children the parent is the root that owns them.
  for (CDivisiones2D* celda = ultimaHoja; celda->nivel > nivel; celda = celda->padre) anota(*celda);
  anota(*this);
  return primera;
}

bool CDivisiones2D::Inserta(CCoor3D<int> const& p, std::int16_t suLista, std::int32_t entidad, std::int32_t punto,
                            CDivisiones2D*& celda) {
  if (ultimaHoja != nullptr && !ajenos && ultimaHoja->Encierra(p) && !ultimaHoja->EsUltimo(suLista, entidad, punto)) {
    celda = ultimaHoja;
    return false;
  }
  // A point that is the last of a cell is the last of all cells below it on its path: the first one met from above is
  // the largest that it finishes.
  CDivisiones2D* mayor = nullptr;
  CDivisiones2D* c = this;
  for (; c->hijos != nullptr; c = c->Hijo(p)) {
    if (mayor == nullptr && c->EsUltimo(suLista, entidad, punto)) mayor = c;
  }
  ultimaHoja = c;
  const bool esUltimo = c->EsUltimo(suLista, entidad, punto);
  celda = esUltimo && mayor != nullptr ? mayor : c;
  return esUltimo;
}

void CDivisiones2D::Comprimir() {
  lista.cantidad = 0;
  if (hijos == nullptr) return;
  if (std::all_of(hijos, hijos + 4, [](CDivisiones2D const& h) { return h.lista.cantidad == 0; })) {
    BorraHijos();
    return;
  }
  for (unsigned i = 0; i < 4; ++i) hijos[i].Comprimir();
}

void CDivisiones2D::clear() {
  if (hijos == nullptr) {
    lista.Clear();
    return;
  }
  for (unsigned i = 0; i < 4; ++i) hijos[i].clear();
}

unsigned CDivisiones2D::CantidadNiveles() const {
  unsigned mayor = nivel;
  if (hijos != nullptr) {
    for (unsigned i = 0; i < 4; ++i) mayor = std::max(mayor, hijos[i].CantidadNiveles());
  }
  return nivel == 0 ? mayor + 1 : mayor;
}

CListaPuntos* CDivisiones2D::PrimeraLista(std::vector<int>& posicion) {
  std::fill(posicion.begin(), posicion.end(), -1);
  return SiguienteLista(posicion);
}

CListaPuntos* CDivisiones2D::SiguienteLista(std::vector<int>& posicion) {
  if (hijos == nullptr) {
    // A leaf has one list: given once, then its turn is over.
    if (posicion[nivel] >= 0) return nullptr;
    posicion[nivel] = 0;
    return &lista;
  }
  int& turno = posicion[nivel];
  for (turno = std::max(turno, 0); turno < 4; ++turno) {
    if (CListaPuntos* hallada = hijos[turno].SiguienteLista(posicion)) return hallada;
    std::fill(posicion.begin() + nivel + 1, posicion.end(), -1);
  }
  return nullptr;
}

}  // namespace Meseta47
