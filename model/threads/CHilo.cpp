#include "model/threads/CHilo.h"

#include "platform/Manejadores.h"

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

void CHilo::Suspender() {
  if (hilo != nullptr) SuspendThread(hilo);
}

void CHilo::Reanudar() {
  if (hilo != nullptr) ResumeThread(hilo);
}

void CHilo::LevantaSuspension() {
  constexpr unsigned long kHaTerminado = 0xFFFFFFFF;
  for (unsigned long habia = 2; hilo != nullptr && habia > 1 && habia != kHaTerminado;) habia = ResumeThread(hilo);
}

void CHilo::Apaga(HANDLE evento) { ResetEvent(evento); }

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
