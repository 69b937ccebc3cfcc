#include "classification/CHiloBuscaPuntosAltos.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <new>
#include <system_error>

#include "classification/CBusquedaPuntos.h"
#include "platform/CSingleLock.h"

namespace Meseta47 {

namespace {

constexpr unsigned kAbrirCompartido = 64;  // read, deny nothing
constexpr unsigned kUltimaPasada = 2;      // in which one neighbour is enough

/// A worker that can neither announce its end nor wait would leave its caller waiting for ever: better no process than
/// a dead one.
void Exige(bool hecho) {
  if (!hecho) std::_Exit(static_cast<int>(std::errc::invalid_argument));
}

/// The number of a point, whose sign other threads may turn meanwhile.
int Numero(CCoor3D<int>& p) { return std::atomic_ref<int>(p.num).load(std::memory_order_relaxed); }

/// Three points that do not lie on one line in space.
bool EsTriangulo(CCoor3D<int> const* a, CCoor3D<int> const* b, CCoor3D<int> const* c) {
  if (a == nullptr || b == nullptr || c == nullptr) return false;
  return c->CalculaLado(*a, *b, 0) != 0 || c->CalculaLado(*a, *b, 1) != 0 || c->CalculaLado(*a, *b, 2) != 0;
}

}  // namespace

/// A triangle as its vertices see it: the side of index i runs from vertex i to the next one.
struct CHiloBuscaPuntosAltos::CLados {
  CLados(CCoor3D<int>* a, CCoor3D<int>* b, CCoor3D<int>* c)
      : vertices{a, b, c}, d2{a->Distancia2(*b, 0), b->Distancia2(*c, 0), c->Distancia2(*a, 0)} {}

  [[nodiscard]] static unsigned Siguiente(unsigned i) { return (i + 1) % 3; }
  [[nodiscard]] static unsigned Anterior(unsigned i) { return (i + 2) % 3; }
  /// How much vertex i rises above vertex j.
  [[nodiscard]] std::int64_t Desnivel(unsigned i, unsigned j) const {
    return static_cast<std::int64_t>(vertices[i]->z) - vertices[j]->z;
  }

  CCoor3D<int>* vertices[3];
  double d2[3];  ///< squared lengths in plan
};

void CHiloBuscaPuntosAltos::Start(unsigned int k, HANDLE* elEventoFin, HANDLE* elEventoSigue, IPorcentaje* elPorcentaje,
                                  unsigned int elIdPorcentaje, std::uint64_t elAcumulado, CString const& ruta,
                                  CBusquedaPuntos const* losPuntos, unsigned int* laPasada, unsigned int* laCantidad,
                                  int laAlturaMin, int laDistanciaMax, double laPendiente,
                                  std::vector<CCoor3D<int>>* losAltos, bool* elCambio, std::uint64_t* elTotal,
                                  unsigned int porHilo, CCriticalSection* laSeccion, long* losTerminados,
                                  unsigned int* losLeidos, bool* elCancelado) {
  indice = k;
  eventoFin = elEventoFin;
  eventoSigue = elEventoSigue;
  porcentaje = elPorcentaje;
  idPorcentaje = elIdPorcentaje;
  acumulado = elAcumulado;
  puntos = losPuntos;
  pasada = laPasada;
  cantidad = laCantidad;
  alturaMin = laAlturaMin;
  distanciaMax = laDistanciaMax;
  pendiente = laPendiente;
  altos = losAltos;
  cambio = elCambio;
  total = elTotal;
  seccion = laSeccion;
  terminados = losTerminados;
  leido = losLeidos;
  cancelado = elCancelado;
  codigo = kHecho;
  if (fichero == nullptr) fichero = std::make_unique<CFile>();
  if (!fichero->IsOpen() && !fichero->Open(ruta, kAbrirCompartido)) {
    codigo = kFicheroInaccesible;
    return;
  }
  const std::uint64_t trozo = std::uint64_t{porHilo} * CBusquedaFichero::kBytes;
  const std::uint64_t desde = k * trozo;
  fichero->Seek(static_cast<long long>(desde), CFile::begin);
  longitud = fichero->GetLength();
  limite = std::min((k + std::uint64_t{1}) * trozo, longitud);
  if (fichero->HayError() || !ResetEvent(*eventoFin) || (hilo == nullptr && !Arranca(&Rutina, this))) {
    codigo = kFicheroInconsistente;
  }
}

void CHiloBuscaPuntosAltos::Stop() {
  if (hilo == nullptr) return;
  acaba = true;
  std::atomic_ref<bool>(*cancelado).store(true);
  Exige(SetEvent(*eventoSigue));
  CHilo::Stop();
}

unsigned long CHiloBuscaPuntosAltos::Rutina(void* yo) {
  static_cast<CHiloBuscaPuntosAltos*>(yo)->Run();
  return 0;
}

bool CHiloBuscaPuntosAltos::Cancelado() const { return std::atomic_ref<bool>(*cancelado).load(); }

void CHiloBuscaPuntosAltos::Run() {
  CSingleLock cerrojo(seccion);
  // Once the end is announced the members are the caller's, who may set them for the next pass at once.
  const HANDLE fin = *eventoFin, sigue = *eventoSigue;
  for (;;) {
    Exige(WaitForSingleObject(sigue, INFINITE) == WAIT_OBJECT_0);
    if (acaba) return;
    LeeTrozo(cerrojo);
    Exige(ResetEvent(sigue));
    std::atomic_ref<long>(*terminados).fetch_add(1);
    Exige(SetEvent(fin));
    if (acaba) return;  // asked while the slice was read: the reset may have undone the call to wake up
  }
}

void CHiloBuscaPuntosAltos::LeeTrozo(CSingleLock& cerrojo) {
  try {
    while (!Cancelado()) {
      const auto registros = lector.Siguiente(*fichero, limite);
      if (registros.empty()) break;
      std::atomic_ref<unsigned int>(*leido).fetch_add(static_cast<unsigned int>(registros.size_bytes()),
                                                      std::memory_order_relaxed);
      for (CBusquedaFichero::CRegistro const& registro : registros) {
        if (!CBusquedaFichero::TocaElMarco(registro)) Procesa(registro, cerrojo);
      }
    }
    if (!Cancelado() && fichero->GetPosition() < limite) codigo = kFicheroInconsistente;
  } catch (std::bad_alloc const&) {
    cerrojo.Unlock();
    codigo = kFicheroInconsistente;
  }
}

void CHiloBuscaPuntosAltos::Procesa(CBusquedaFichero::CRegistro const& numeros, CSingleLock& cerrojo) {
  CCoor3D<int>*const a = puntos->Punto(numeros[0]), *const b = puntos->Punto(numeros[1]);
  CCoor3D<int>* const c = puntos->Punto(numeros[2]);
  if (!EsTriangulo(a, b, c)) return;
  const int nums[3] = {Numero(*a), Numero(*b), Numero(*c)};
  if (nums[0] < 0 && nums[1] < 0 && nums[2] < 0) return;
  if (*pasada == 0) {
    BuscaSemilla(CLados(a, b, c), cerrojo);
  } else if (nums[0] < 0 || nums[1] < 0 || nums[2] < 0) {
    Extiende(CLados(a, b, c), nums, cerrojo);
  }
}

/// A vertex that rises above both others, by more than the height and steeply.
void CHiloBuscaPuntosAltos::BuscaSemilla(CLados const& lados, CSingleLock& cerrojo) {
  const auto sube = [&](unsigned i, unsigned j, double d2) {
    const std::int64_t desnivel = lados.Desnivel(i, j);
    return desnivel > alturaMin && static_cast<double>(desnivel) / std::sqrt(d2) > pendiente;
  };
  for (unsigned i = 0; i < 3; ++i) {
    const unsigned sig = CLados::Siguiente(i), ant = CLados::Anterior(i);
    if (sube(i, sig, lados.d2[i]) && sube(i, ant, lados.d2[ant])) Marca(*lados.vertices[i], cerrojo);
  }
}

/// A vertex above neighbours that have been found, across short sides: both of them, or in the last pass one.
void CHiloBuscaPuntosAltos::Extiende(CLados const& lados, int const (&nums)[3], CSingleLock& cerrojo) {
  // The distance is held against the squared length as it is, so that only short sides carry a spread: it climbs the
  // points of one tree or wall, and does not run on from one to the next.
  const double limite2 = distanciaMax;
  const auto apoya = [&](unsigned i, unsigned j, double d2) {
    return nums[j] < 0 && lados.Desnivel(i, j) > 0 && d2 <= limite2 ? 1 : 0;
  };
  for (unsigned i = 0; i < 3; ++i) {
    if (nums[i] < 0) continue;
    const unsigned sig = CLados::Siguiente(i), ant = CLados::Anterior(i);
    const int apoyos = apoya(i, sig, lados.d2[i]) + apoya(i, ant, lados.d2[ant]);
    if (apoyos == 2 || (*pasada == kUltimaPasada && apoyos != 0)) Marca(*lados.vertices[i], cerrojo);
  }
}

/// Another slice may have found the point in the meantime; a sign that turned twice would lose it.
void CHiloBuscaPuntosAltos::Marca(CCoor3D<int>& punto, CSingleLock& cerrojo) {
  cerrojo.Lock();
  const int num = Numero(punto);
  if (num > 0) {
    altos->push_back(punto);
    std::atomic_ref<int>(punto.num).store(-num, std::memory_order_relaxed);
    ++*cantidad;
    if (*pasada != 0 && !*cambio) {
      std::atomic_ref<std::uint64_t>(*total).fetch_add(longitud, std::memory_order_relaxed);
      *cambio = true;
    }
  }
  cerrojo.Unlock();
}

}  // namespace Meseta47
