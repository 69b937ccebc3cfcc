#include "planar/CDosMitades.h"

#include <algorithm>
#include <limits>

#include "platform/Manejadores.h"

namespace Meseta47 {

CDosMitades::CDosMitades(CSetTriangulos2D& laRaiz, CArbolDivisiones2D& divisiones, CReparto2D reparto, bool conBorde,
                         CColaCerrados<CSetTriangulos2D>& cola, CFile* fichero, std::int64_t vivos, int numero)
    : raiz(laRaiz),
      mezcla(cola, fichero, vivos),
      comun{laRaiz, divisiones, reparto, conBorde, mezcla, turnos},
      primera(0, comun, numero),
      segunda(1, comun, numero),
      primero(numero + 1) {}

CDosMitades::~CDosMitades() {
  if (hilo == nullptr) return;
  turnos.Para();
  EsperaALaSegunda({});
  Manda(VETE);
  WaitForSingleObject(hilo, INFINITE);
  CloseHandle(hilo);
}

unsigned long CDosMitades::Rutina(void* yo) {
  static_cast<CDosMitades*>(yo)->AtiendeOrdenes();
  return 0;
}

/// The second thread. Between two stretches triangles of its memory are still in use: it leaves once they have been
/// given back, and all of it goes to the system.
void CDosMitades::AtiendeOrdenes() {
  for (;;) {
    {
      std::unique_lock guarda(cerrojo);
      mandada.Espera(guarda, CAviso::kSinLimite, [this] { return orden != NADA; });
      if (orden == VETE) return;
    }
    try {
      Trabaja({desdeDonde, CTurnos::kAcabada, false, true});
    } catch (...) {
      fallo = std::current_exception();
      turnos.Para();
    }
    Manda(NADA);
  }
}

void CDosMitades::Manda(COrden laOrden) {
  const std::lock_guard guarda(cerrojo);
  orden = laOrden;
  (laOrden == NADA ? hecha : mandada).Avisa();
}

/// One half's part of what two threads do.
void CDosMitades::Trabaja(CTramo const& tramo) {
  if ((*alimenta)(tramo)) Mitad(tramo.Tiene(0) ? 0 : 1).Acaba();
}

CDosMitades::CFinal CDosMitades::Corre(CAlimenta const& laAlimenta, std::function<bool()> const& sigue) {
  alimenta = &laAlimenta;
  hilo = CreateThread(nullptr, 0, Rutina, this, 0, nullptr);
  if (hilo == nullptr) return SIN_HILO;
  // Where two go on for less than one did before, one goes on for eight times as long.
  constexpr int kCrece = 8, kMayor = 1 << 28;
  int solo = 0;
  for (int desde = primero;;) {
    TrabajanLasDos(desde, sigue);
    const int encuentro = turnos.Encuentro();
    if (turnos.HaParado() || encuentro == CTurnos::kAcabada) break;
    solo = encuentro - desde > solo ? CTurnos::TramoSolo() : std::min(kMayor, kCrece * solo);
    desde = encuentro + solo;
    if (TrabajaUna(encuentro, desde)) break;
  }
  CMitad::Une(primera, segunda);
  raiz.inicio = nullptr;  // it may be gone, and nothing starts there any more
  if (mezcla.FaltoMemoria()) return SIN_MEMORIA;
  if (primera.LlegaTarde() || segunda.LlegaTarde()) return TARDE;
  if (turnos.HaParado()) return PARADO;
  mezcla.Vierte(std::numeric_limits<int>::max());
  return mezcla.FaltoMemoria() ? SIN_MEMORIA : HECHO;
}

/// From that number on, until there are no more points or the halves meet.
void CDosMitades::TrabajanLasDos(int desde, std::function<bool()> const& sigue) {
  CMitad::Comparte(primera, segunda);
  turnos.VanLosDos(desde);
  desdeDonde = desde;
  Manda(TRABAJA);
  try {
    Trabaja({desde, CTurnos::kAcabada, true, false});
  } catch (...) {
    turnos.Para();
    EsperaALaSegunda({});
    throw;
  }
  EsperaALaSegunda(sigue);
  if (fallo != nullptr) std::rethrow_exception(fallo);
}

/// True when the work has come to its end.
bool CDosMitades::TrabajaUna(int desde, int hasta) {
  CMitad::Une(primera, segunda);
  turnos.VaUno();
  ultima = 2;
  primera.Descansa();
  segunda.Descansa();
  const bool acaba = (*alimenta)({desde, hasta, true, true});
  if (acaba) {
    primera.Acaba();
    segunda.Acaba();
  }
  return acaba || turnos.HaParado();
}

void CDosMitades::EsperaALaSegunda(std::function<bool()> const& sigue) {
  constexpr unsigned long kMilisegundos = 40;  // no longer than a person takes to miss an answer to Ctrl-C
  std::unique_lock guarda(cerrojo);
  while (!hecha.Espera(guarda, kMilisegundos, [this] { return orden == NADA; })) {
    guarda.unlock();
    if (sigue && !turnos.HaParado() && !sigue()) turnos.Para();
    guarda.lock();
  }
}

}  // namespace Meseta47
