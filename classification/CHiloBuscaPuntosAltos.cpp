#include "classification/CHiloBuscaPuntosAltos.h"

#include <cstdlib>
#include <new>
#include <system_error>

#include "classification/CBusquedaPasadas.h"
#include "classification/CBusquedaPuntos.h"
#include "classification/CTrianguloBuscado.h"
#include "platform/CSingleLock.h"
#include "platform/Manejadores.h"

namespace Meseta47 {

namespace {

/// A worker that can neither announce its end nor wait would leave its caller waiting for ever: better no process than
/// a dead one.
void Exige(bool hecho) {
  if (!hecho) std::_Exit(static_cast<int>(std::errc::invalid_argument));
}

}  // namespace

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
  if (!lector.EstaAbierto() && !lector.Abre(ruta)) {
    codigo = kFicheroInaccesible;
    return;
  }
  longitud = lector.Longitud();
  if (!lector.Situa(k, porHilo, longitud) || !ResetEvent(*eventoFin) || (hilo == nullptr && !Arranca(&Rutina, this))) {
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
      const auto triples = lector.Siguiente();
      if (triples.empty()) break;
      std::atomic_ref<unsigned int>(*leido).fetch_add(static_cast<unsigned int>(triples.size_bytes()),
                                                      std::memory_order_relaxed);
      for (CTriple const& t : triples) {
        if (!TocaElMarco(t)) Procesa(t, cerrojo);
      }
    }
    if (!Cancelado() && lector.Posicion() < lector.Limite()) codigo = kFicheroInconsistente;
  } catch (std::bad_alloc const&) {
    cerrojo.Unlock();
    codigo = kFicheroInconsistente;
  }
}

void CHiloBuscaPuntosAltos::Procesa(CTriple const& numeros, CSingleLock& cerrojo) {
  CCoor3D<int>*const a = puntos->Punto(numeros[0]), *const b = puntos->Punto(numeros[1]);
  CCoor3D<int>* const c = puntos->Punto(numeros[2]);
  if (!CTrianguloBuscado::Es(a, b, c)) return;
  const std::array<int, 3> nums{NumeroBuscado(*a), NumeroBuscado(*b), NumeroBuscado(*c)};
  if (nums[0] < 0 && nums[1] < 0 && nums[2] < 0) return;
  if (*pasada == 0) {
    BuscaSemilla(CTrianguloBuscado(a, b, c), cerrojo);
  } else if (nums[0] < 0 || nums[1] < 0 || nums[2] < 0) {
    Extiende(CTrianguloBuscado(a, b, c), nums, cerrojo);
  }
}

/// A vertex that rises above both others, by more than the height and steeply.
void CHiloBuscaPuntosAltos::BuscaSemilla(CTrianguloBuscado const& t, CSingleLock& cerrojo) {
  for (unsigned i = 0; i < 3; ++i) {
    const auto sube = [&](unsigned j) { return t.Sube(i, j, alturaMin, pendiente); };
    if (sube(CTrianguloBuscado::Siguiente(i)) && sube(CTrianguloBuscado::Anterior(i))) Marca(t.Vertice(i), cerrojo);
  }
}

/// A vertex above neighbours that have been found, across short sides: both of them, or in the last pass one.
void CHiloBuscaPuntosAltos::Extiende(CTrianguloBuscado const& t, std::array<int, 3> const& nums, CSingleLock& cerrojo) {
  for (unsigned i = 0; i < 3; ++i) {
    if (nums[i] < 0) continue;
    // The distance is held against the squared length as it is, so that only short sides carry a spread: it climbs the
    // points of one tree or wall, and does not run on from one to the next.
    const unsigned apoyos = t.Apoyos(i, nums, distanciaMax);
    if (apoyos == 2 || (*pasada == kUltimaPasada && apoyos != 0)) Marca(t.Vertice(i), cerrojo);
  }
}

/// Another slice may have found the point in the meantime; a sign that turned twice would lose it.
void CHiloBuscaPuntosAltos::Marca(CCoor3D<int>& punto, CSingleLock& cerrojo) {
  cerrojo.Lock();
  const int num = NumeroBuscado(punto);
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
