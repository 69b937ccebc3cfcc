#include "model/terrain/CHiloLeerPuntos.h"

#include <algorithm>
#include <atomic>

#include "platform/CSingleLock.h"

namespace Meseta47 {

namespace {

constexpr unsigned kPorPaso = 4096;  // points between two visits to the lock

}  // namespace

CHiloLeerPuntos::~CHiloLeerPuntos() { Stop(); }

bool CHiloLeerPuntos::Start(unsigned int elIndice, CEvent* elEvento, long* elContador, CString const& ruta,
                            unsigned long long laPosicion, unsigned int laCantidad, unsigned int elPrimero,
                            CSetPuntosMdt* elDestino, CCriticalSection* laSeccion) {
  Stop();
  indice = elIndice;
  evento = elEvento;
  contador = elContador;
  posicion = laPosicion;
  cantidad = laCantidad;
  primero = elPrimero;
  puntos = elDestino;
  seccion = laSeccion;
  completo = false;
  fichero.Open(ruta, CFile::modeRead | CFile::shareDenyNone);
  if (Arranca(Rutina, this)) return true;
  Suma(cantidad);
  evento->SetEvent();
  return false;
}

unsigned long CHiloLeerPuntos::Rutina(void* hilo) {
  static_cast<CHiloLeerPuntos*>(hilo)->Run();
  return 0;
}

void CHiloLeerPuntos::Run() {
  bool va = fichero.IsOpen() && fichero.Seek(static_cast<long long>(posicion), CFile::begin) >= 0;
  unsigned leidos = 0;
  while (va && leidos < cantidad) {
    const unsigned hasta = std::min(cantidad, leidos + kPorPaso);
    va = Lee(leidos, hasta);
    if (!va) break;
    completo = hasta == cantidad;  // before the last step is counted: who waits for the counter may ask at once
    Suma(hasta - leidos);
    leidos = hasta;
  }
  if (!va) Suma(cantidad - leidos);
  if (cantidad == 0) completo = va;
  evento->SetEvent();
}

bool CHiloLeerPuntos::Lee(unsigned desde, unsigned hasta) {
  for (unsigned i = primero + desde; i < primero + hasta; ++i) {
    CPuntoTIN& punto = (*puntos)[i];
    if (!punto.Read(&fichero, 1.0, FICHERO_NATIVO)) return false;
    punto.num = static_cast<int>(i + 1);
  }
  return true;
}

void CHiloLeerPuntos::Suma(unsigned cuantos) {
  CSingleLock cerrojo(seccion, false);
  cerrojo.Lock(-1);
  std::atomic_ref<long>(*contador).fetch_add(
      static_cast<long>(cuantos));  // so that it may be looked at without the lock
  cerrojo.Unlock();
}

}  // namespace Meseta47
