#include "planar/CDosMitades.h"

#include <chrono>
#include <limits>
#include <thread>

namespace Meseta47 {

CDosMitades::CDosMitades(CSetTriangulos2D& laRaiz, CArbolDivisiones2D& divisiones, CReparto2D reparto, bool conBorde,
                         CColaCerrados<CSetTriangulos2D>& cola, CFile* fichero, std::int64_t vivos, int numero)
    : raiz(laRaiz),
      mezcla(cola, fichero, vivos),
      comun{laRaiz, divisiones, reparto, conBorde, mezcla, turnos},
      primera(0, comun, numero),
      segunda(1, comun, numero) {
  CMitad::Comparte(raiz);
}

CDosMitades::~CDosMitades() {
  if (hilo == nullptr) return;
  turnos.Para();
  {
    const std::lock_guard guarda(cerrojo);
    puedeIrse = true;
  }
  aviso.notify_one();
  WaitForSingleObject(hilo, INFINITE);
  CloseHandle(hilo);
}

unsigned long CDosMitades::Rutina(void* yo) {
  auto* mio = static_cast<CDosMitades*>(yo);
  try {
    mio->Trabaja(1);
  } catch (...) {
    mio->fallo = std::current_exception();
    mio->turnos.Para();
  }
  mio->hecha = true;
  // Triangles of this thread's memory are still in use. Once they have been given back, all of it goes to the system.
  std::unique_lock guarda(mio->cerrojo);
  mio->aviso.wait(guarda, [mio] { return mio->puedeIrse; });
  return 0;
}

void CDosMitades::Trabaja(unsigned cual) {
  CMitad& suya = Mitad(cual);
  (*alimenta)(suya, Mitad(1 - cual));
  if (!turnos.HaParado()) suya.Acaba();
}

CDosMitades::CFinal CDosMitades::Corre(CAlimenta const& laAlimenta, std::function<bool()> const& sigue) {
  alimenta = &laAlimenta;
  hilo = CreateThread(nullptr, 0, Rutina, this, 0, nullptr);
  if (hilo == nullptr) return SIN_HILO;
  try {
    Trabaja(0);
  } catch (...) {
    turnos.Para();
    EsperaALaSegunda({});
    throw;
  }
  EsperaALaSegunda(sigue);
  raiz.inicio = nullptr;  // it may be gone, and nothing starts there any more
  if (fallo != nullptr) std::rethrow_exception(fallo);
  if (mezcla.FaltoMemoria()) return SIN_MEMORIA;
  if (primera.LlegaTarde() || segunda.LlegaTarde()) return TARDE;
  if (turnos.HaParado()) return PARADO;
  mezcla.Vierte(std::numeric_limits<int>::max());
  return mezcla.FaltoMemoria() ? SIN_MEMORIA : HECHO;
}

void CDosMitades::EsperaALaSegunda(std::function<bool()> const& sigue) {
  constexpr auto kUnRato = std::chrono::milliseconds(1);
  while (!hecha) {
    if (sigue && !turnos.HaParado() && !sigue()) turnos.Para();
    std::this_thread::sleep_for(kUnRato);
  }
}

}  // namespace Meseta47
