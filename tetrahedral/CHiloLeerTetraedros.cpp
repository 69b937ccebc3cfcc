#include "tetrahedral/CHiloLeerTetraedros.h"

#include <algorithm>
#include <new>
#include <utility>

#include "model/threads/Codigos.h"
#include "platform/CSingleLock.h"
#include "platform/Manejadores.h"
#include "tetrahedral/CSetTetraedros.h"

namespace Meseta47 {

CHiloLeerTetraedros::~CHiloLeerTetraedros() { Espera(); }

void CHiloLeerTetraedros::Espera() {
  if (hilo == nullptr) return;
  WaitForSingleObject(hilo, INFINITE);
  CloseHandle(std::exchange(hilo, nullptr));
}

bool CHiloLeerTetraedros::Start(unsigned elIndice, CEvent* elEvento, CString const& ruta, CCriticalSection* laSeccion,
                                std::vector<CSetTetraedros*>* losSets, std::vector<unsigned long long>* losLugares,
                                unsigned long long* losLeidos) {
  Espera();
  indice = elIndice;
  evento = elEvento;
  seccion = laSeccion;
  sets = losSets;
  lugares = losLugares;
  leidos = losLeidos;
  codigo = kHecho;
  faltoMemoria = false;
  fichero.Open(ruta, CFile::modeRead | CFile::shareDenyNone);
  hilo = CreateThread(nullptr, 0, &Rutina, this, 0, nullptr);
  if (hilo != nullptr) return true;
  evento->SetEvent();
  return false;
}

unsigned long CHiloLeerTetraedros::Rutina(void* yo) {
  static_cast<CHiloLeerTetraedros*>(yo)->Run();
  return 0;
}

/// Each begins at its own number: what stands before that is for the first of them.
CSetTetraedros* CHiloLeerTetraedros::Siguiente(std::size_t& desde) {
  CSingleLock cerrojo(seccion, true);
  while (desde < sets->size() && (*sets)[desde] == nullptr) ++desde;
  return desde < sets->size() ? std::exchange((*sets)[desde], nullptr) : nullptr;
}

void CHiloLeerTetraedros::Run() {
  try {
    std::size_t i = indice;
    while (CSetTetraedros* set = Siguiente(i)) {
      const bool va = fichero.IsOpen() && fichero.Seek(static_cast<long long>((*lugares)[i]), CFile::begin) >= 0;
      codigo = va ? set->Read(&fichero) : kFicheroInaccesible;
      if (codigo != kHecho) break;
      CSingleLock cerrojo(seccion, true);
      *leidos += set->Cantidad();
    }
  } catch (std::bad_alloc const&) {
    faltoMemoria = true;
  }
  evento->SetEvent();
}

void CHiloLeerTetraedros::Para(CCriticalSection& seccion, std::vector<CSetTetraedros*>& sets) {
  CSingleLock cerrojo(&seccion, true);
  std::fill(sets.begin(), sets.end(), nullptr);
}

}  // namespace Meseta47
