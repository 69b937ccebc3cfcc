#include "tetrahedral/CHiloLiberarTetraedros.h"

#include <algorithm>
#include <utility>

#include "platform/CCriticalSection.h"
#include "platform/CEvent.h"
#include "platform/CSingleLock.h"
#include "platform/Manejadores.h"
#include "platform/Procesadores.h"
#include "tetrahedral/CSetTetraedros.h"

namespace Meseta47 {

CHiloLiberarTetraedros::~CHiloLiberarTetraedros() {
  if (hilo == nullptr) return;
  WaitForSingleObject(hilo, INFINITE);
  CloseHandle(hilo);
}

bool CHiloLiberarTetraedros::Start(unsigned elIndice, CEvent* elEvento, CCriticalSection* laSeccion,
                                   std::vector<CSetTetraedros*>* losConjuntos) {
  indice = elIndice;
  evento = elEvento;
  seccion = laSeccion;
  conjuntos = losConjuntos;
  hilo = CreateThread(nullptr, 0, &Rutina, this, 0, nullptr);
  return hilo != nullptr;
}

unsigned long CHiloLiberarTetraedros::Rutina(void* yo) {
  static_cast<CHiloLiberarTetraedros*>(yo)->Run();
  return 0;
}

void CHiloLiberarTetraedros::Run() {
  std::size_t desde = indice;
  for (;;) {
    CSetTetraedros* set = nullptr;
    {
      CSingleLock cerrojo(seccion, true);
      while (desde < conjuntos->size() && (*conjuntos)[desde] == nullptr) ++desde;
      if (desde < conjuntos->size()) set = std::exchange((*conjuntos)[desde], nullptr);
    }
    if (set == nullptr) break;
    set->clear();
  }
  evento->SetEvent();
}

void CHiloLiberarTetraedros::Libera(std::vector<CSetTetraedros*>& conjuntos) {
  if (conjuntos.empty()) return;
  CCriticalSection seccion;
  const std::size_t cuantos = std::max<std::size_t>(NumeroProcesadores(), 1);
  std::vector<CEvent> eventos(cuantos);
  std::vector<CHiloLiberarTetraedros> hilos(cuantos);  // destroyed first: that is what waits for them
  for (std::size_t i = 1; i < cuantos; ++i) {
    hilos[i].Start(static_cast<unsigned>(i), &eventos[i], &seccion, &conjuntos);
  }
  hilos[0].indice = 0;
  hilos[0].evento = &eventos[0];
  hilos[0].seccion = &seccion;
  hilos[0].conjuntos = &conjuntos;
  hilos[0].Run();
}

}  // namespace Meseta47
