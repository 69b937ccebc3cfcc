#include "model/threads/CHilo.h"

namespace Meseta47 {

CHilo& CHilo::operator=(CHilo const& otro) {
  indice = otro.indice;
  return *this;
}

CHilo::~CHilo() { Espera(); }

void CHilo::Stop() { Espera(); }

void CHilo::SetPriority(int prioridad) {
  if (hilo != nullptr) SetThreadPriority(hilo, prioridad);
}

bool CHilo::Arranca(LPTHREAD_START_ROUTINE rutina, void* argumento) {
  if (hilo != nullptr) return false;
  hilo = CreateThread(nullptr, 0, rutina, argumento, 0, nullptr);
  return hilo != nullptr;
}

void CHilo::Espera() {
  if (hilo == nullptr) return;
  WaitForSingleObject(hilo, INFINITE);
  CloseHandle(hilo);
  hilo = nullptr;
}

}  // namespace Meseta47
