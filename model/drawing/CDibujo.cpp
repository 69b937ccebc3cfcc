#include "model/drawing/CDibujo.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "model/geometry/Hilbert.h"

namespace Meseta47 {

namespace {

/// A copy of its own kind.
template <class T>
std::unique_ptr<CLinea<T>> Copia(CLinea<T> const& e) {
  if (CSetPuntos<T> const* set = CSetPuntos<T>::De(e)) return std::make_unique<CSetPuntos<T>>(*set);
  return std::make_unique<CLinea<T>>(e);
}

/// A new entity that takes over the points of another one of its kind.
template <class T>
std::unique_ptr<CLinea<T>> Traspaso(CLinea<T>&& e) {
  if (CSetPuntos<T>* set = CSetPuntos<T>::De(e)) return std::make_unique<CSetPuntos<T>>(std::move(*set));
  return std::make_unique<CLinea<T>>(std::move(e));
}

/// Takes integers of one seed to another.
CTransformacion EntreSemillas(CDataSemilla const& desde, CDataSemilla const& hasta) {
  CTransformacion mapa;
  const double escala = hasta.Precision();
  mapa.escala = mapa.escalaZ = escala / desde.Precision();
  mapa.dx = (desde.origen[0] - hasta.origen[0]) * escala;
  mapa.dy = (desde.origen[1] - hasta.origen[1]) * escala;
  mapa.dz = (desde.origen[2] - hasta.origen[2]) * escala;
  return mapa;
}

template <class T>
bool Elige(CLinea<T> const& e, int tipo) {
  return tipo == 0 || (tipo == 1 && !e.EsSetPuntos()) || (tipo == 2 && e.EsSetPuntos());
}

/// Place of a box on the Hilbert curve that begins at the lower left corner of the whole. Empty boxes, marked first,
/// come behind every place.
template <class T>
std::pair<bool, std::uint64_t> LugarEnHilbert(CMaximas<T> const& caja, CMaximas<T> const& todo) {
  if (caja.EstanVacias(true)) return {true, 0};
  const CCoor3D<T> centro = caja.Centro(false);
  return {false, Hilbert(static_cast<std::uint32_t>(static_cast<std::int64_t>(centro.x) - todo.Minimo.x),
                         static_cast<std::uint32_t>(static_cast<std::int64_t>(centro.y) - todo.Minimo.y))};
}

/// Sorts some of the entities by their keys, within the places that these entities hold.
template <class Entidad, class Clave>
void OrdenaPuestos(std::vector<Entidad>& entidades, std::vector<std::size_t> const& puestos,
                   std::vector<Clave> const& claves, bool ascendente) {
  std::vector<std::size_t> orden(puestos.size());
  for (std::size_t i = 0; i < orden.size(); ++i) orden[i] = i;
  std::stable_sort(orden.begin(), orden.end(), [&](std::size_t a, std::size_t b) {
    return ascendente ? claves[a] < claves[b] : claves[b] < claves[a];
  });
  std::vector<Entidad> ordenadas;
  ordenadas.reserve(orden.size());
  for (const std::size_t i : orden) ordenadas.push_back(std::move(entidades[puestos[i]]));
  for (std::size_t i = 0; i < puestos.size(); ++i) entidades[puestos[i]] = std::move(ordenadas[i]);
}

}  // namespace

// ---- Life ----

template <class T>
CDibujo<T>::CDibujo(CDibujo const& o)
    : CObjetoFichero(o), semilla(o.semilla), tipoNube(o.tipoNube), estado(o.estado), marco(o.marco) {
  entidades.reserve(o.entidades.size());
  for (CEntidad const& e : o.entidades) Anade(Copia(*e));
}

template <class T>
CDibujo<T>::CDibujo(CDibujo&& o) noexcept
    : CObjetoFichero(static_cast<CObjetoFichero&&>(o)),
      semilla(o.semilla),
      nEntidades(std::exchange(o.nEntidades, 0u)),
      nPuntos(std::exchange(o.nPuntos, 0u)),
      tipoNube(o.tipoNube),
      estado(o.estado),
      entidades(std::move(o.entidades)),
      marco(o.marco) {
  o.entidades.clear();
}

template <class T>
CDibujo<T>& CDibujo<T>::operator=(CDibujo const& o) {
  return *this = CDibujo(o);
}

template <class T>
CDibujo<T>& CDibujo<T>::operator=(CDibujo&& o) noexcept {
  CObjetoFichero::operator=(static_cast<CObjetoFichero&&>(o));
  semilla = o.semilla;
  tipoNube = o.tipoNube;
  estado = o.estado;
  marco = o.marco;
  entidades.swap(o.entidades);
  std::swap(nEntidades, o.nEntidades);
  std::swap(nPuntos, o.nPuntos);
  return *this;
}

template <class T>
void CDibujo<T>::Clear() {
  CObjetoFichero::Clear();
  std::vector<CEntidad>().swap(entidades);
  nEntidades = nPuntos = 0;
  marco.Borra();
}

// ---- Entities ----

/// Room for so many entities more, to be had before anything is taken away from whoever gives them.
template <class T>
void CDibujo<T>::HazSitio(std::size_t cuantas) {
  const std::size_t hacen = entidades.size() + cuantas;
  if (hacen > entidades.capacity()) entidades.reserve(std::max(hacen, 2 * entidades.size()));
}

template <class T>
bool CDibujo<T>::Anade(CEntidad e) {
  e->CalculaMaximas();
  const int suyos = e->NPuntos();
  entidades.push_back(std::move(e));
  nPuntos += static_cast<std::uint32_t>(suyos);
  ++nEntidades;
  return true;
}

template <class T>
bool CDibujo<T>::Inserta(CEntidadDigi<T> const* e) {
  if (e == nullptr) return false;
  if (auto const* linea = dynamic_cast<CLinea<T> const*>(e)) return Inserta(*linea);
  auto nueva = std::make_unique<CLinea<T>>(*e);
  nueva->Asigna(*e);
  return Anade(std::move(nueva));
}

template <class T>
bool CDibujo<T>::Inserta(CLinea<T> const& e) {
  return Anade(Copia(e));
}

template <class T>
bool CDibujo<T>::Inserta(CSetPuntos<T> const& e) {
  return Anade(std::make_unique<CSetPuntos<T>>(e));
}

template <class T>
bool CDibujo<T>::Inserta(CLinea<T>&& e) {
  HazSitio(1);
  return Anade(Traspaso(std::move(e)));
}

template <class T>
bool CDibujo<T>::Inserta(CSetPuntos<T>&& e) {
  HazSitio(1);
  return Anade(std::make_unique<CSetPuntos<T>>(std::move(e)));
}

template <class T>
void CDibujo<T>::PonNumerosACero() {
  for (CEntidad const& e : entidades) e->PonNumerosACero();
}

template <class T>
unsigned int CDibujo<T>::Suma(CDibujo const& otro, bool convierte, int tipo) {
  return Suma(CDibujo(otro), convierte, tipo);
}

template <class T>
unsigned int CDibujo<T>::Suma(CDibujo&& otro, bool convierte, int tipo) {
  const CTransformacion mapa = EntreSemillas(otro.semilla, semilla);
  std::vector<CEntidad> quedan;
  quedan.reserve(otro.entidades.size());
  HazSitio(otro.entidades.size());
  const unsigned int habia = nEntidades;
  for (CEntidad& e : otro.entidades) {
    if (!Elige(*e, tipo)) {
      quedan.push_back(std::move(e));
      continue;
    }
    if (convierte) e->Helmert(mapa);
    Anade(std::move(e));
  }
  otro.entidades = std::move(quedan);
  otro.ActualizaCantidades();
  return nEntidades - habia;
}

// ---- Order ----

template <class T>
void CDibujo<T>::Sort(int clave, bool ascendente, short int tipo) {
  std::vector<std::size_t> puestos;
  for (std::size_t i = 0; i < entidades.size(); ++i) {
    if (tipo == -1 || entidades[i]->GetTipo() == tipo) puestos.push_back(i);
  }
  if (clave == 7) {
    CMaximas<T> todo;
    for (CEntidad const& e : entidades) todo.Nuevo(e->maximas);
    std::vector<std::pair<bool, std::uint64_t>> lugares;
    lugares.reserve(puestos.size());
    for (const std::size_t i : puestos) lugares.push_back(LugarEnHilbert(entidades[i]->maximas, todo));
    OrdenaPuestos(entidades, puestos, lugares, ascendente);
  } else if (clave == 3) {
    std::vector<double> areas;  // negative, so that the greatest comes first; sets enclose nothing and come last
    areas.reserve(puestos.size());
    for (const std::size_t i : puestos) {
      areas.push_back(entidades[i]->EsSetPuntos() ? 1.0 : -std::abs(entidades[i]->DobleArea()));
    }
    OrdenaPuestos(entidades, puestos, areas, ascendente);
  }
}

// ---- Extent, counts, reference system ----

template <class T>
CMaximas<T> CDibujo<T>::GetMaximasInt() const {
  CMaximas<T> m(marco);
  for (CEntidad const& e : entidades) m.Nuevo(e->maximas);
  return m;
}

template <class T>
CMaximas<double> CDibujo<T>::GetMaximasDouble() const {
  const CMaximas<T> m = GetMaximasInt();
  CMaximas<double> real;
  if (m.EstanVacias(true)) return real;
  real.Nuevo(CCoor3D<double>(m.Maximo) / semilla.Precision());
  real.Nuevo(CCoor3D<double>(m.Minimo) / semilla.Precision());
  return real;
}

template <class T>
void CDibujo<T>::SetMaximasDouble(CMaximas<double> const& m) {
  marco = CMaximas<T>(m * semilla.Precision());
}

template <class T>
void CDibujo<T>::ActualizaCantidades() {
  nEntidades = static_cast<std::uint32_t>(entidades.size());
  nPuntos = 0;
  std::uint32_t borradas = 0;
  for (CEntidad const& e : entidades) {
    nPuntos += static_cast<std::uint32_t>(e->NPuntos());
    borradas += e->EsBorrado() ? 1u : 0u;
  }
  cantidades[0] = nEntidades;
  cantidades[1] = nPuntos;
  cantidades[2] = borradas;
}

template <class T>
bool CDibujo<T>::Transformacion(CDataHelmertNTV2 const& datos) {
  const double escala = semilla.Precision();
  double const* origen = semilla.origen;
  for (CEntidad const& e : entidades) {
    for (int i = 0; i < e->NPuntos(); ++i) {
      CCoor3D<T>& p = *e->PunteroAPunto(i);
      const CCoor3D<double> real(p.x / escala + origen[0], p.y / escala + origen[1], p.z / escala + origen[2], 0);
      const CCoor3D<double> nuevo = datos.Aplica(real);
      p.Actualiza((nuevo.x - origen[0]) * escala, (nuevo.y - origen[1]) * escala, (nuevo.z - origen[2]) * escala);
    }
    e->CalculaMaximas();
  }
  return true;
}

template class URDIMBRE_API_INSTANCIA CDibujo<int>;

}  // namespace Meseta47
