#pragma once

#include <atomic>
#include <new>

#include "model/threads/CHilo.h"
#include "platform/Suspension.h"
#include "run/CColaCerrados.h"

namespace Meseta47 {

/// The worker of a linking pass: takes closed sets from the queue, in order, and does the run's job on each. What a
/// closed set holds is touched by nobody else.
///
/// It leaves by itself once no more work will come and all is done, or before the next set when it is told to stop. A
/// derived class says what the job is, and calls Stop() in its destructor, before its members go. A job so short that
/// bringing the elements from another processor's cache would cost more than the job goes without a thread: then
/// Atiende() does it, right after a set has been closed.
template <class TSet>
class URDIMBRE_API CHiloCerrados : public CHilo {
 public:
  CHiloCerrados() = default;
  CHiloCerrados(CHiloCerrados const&) = delete;
  CHiloCerrados& operator=(CHiloCerrados const&) = delete;

  /// Has the thread leave, also when the host has suspended it, and waits for it. Nothing happens when there is none.
  void Stop() override {
    if (hilo != nullptr) {
      cola->Para();
      LevantaSuspension();
      CHilo::Stop();
    }
    cola = nullptr;
  }

  /// Does what is queued on the calling thread, the inserting one. Nothing happens unless the job was taken without a
  /// thread, nor once no more work was to come.
  void Atiende() {
    if (hilo != nullptr || cola == nullptr || cola->HaAcabado()) return;
    while (TSet* set = cola->SiguienteSinEsperar()) Hace(*set);
  }

  [[nodiscard]] bool EstaEnMarcha() const { return hilo != nullptr; }
  /// Whether some set could not be worked on for want of memory: the run has failed then. Certain once all is done.
  [[nodiscard]] bool FaltoMemoria() const { return faltoMemoria; }

 protected:
  /// Starts the thread, unless there is one. `elEvento` is reset when it leaves. Both outlive the thread. False when
  /// the system gives no thread.
  bool Empieza(unsigned elIndice, HANDLE* elEvento, CColaCerrados<TSet>& laCola) {
    if (hilo != nullptr) return true;
    indice = elIndice;
    eventoSalida = elEvento;
    cola = &laCola;
    faltoMemoria = false;
    return Arranca(&Rutina, this);
  }

  /// Takes the job without a thread, until Stop(). Nothing happens when there is one.
  void SinHilo(CColaCerrados<TSet>& laCola) {
    if (hilo != nullptr) return;
    cola = &laCola;
    faltoMemoria = false;
  }

  /// The job, on the worker's thread. Of what it throws only std::bad_alloc: the set is then given up as it is.
  virtual void Trabaja(TSet& set) = 0;

 private:
  static unsigned long Rutina(void* yo) {
    static_cast<CHiloCerrados*>(yo)->Run();
    return 0;
  }

  void Run() {
    for (CompruebaSuspension(); TSet* set = cola->Siguiente(); CompruebaSuspension()) Hace(*set);
    Apaga(*eventoSalida);
  }

  void Hace(TSet& set) {
    try {
      Trabaja(set);
    } catch (std::bad_alloc const&) {
      faltoMemoria = true;
    }
    cola->PonHecho();
  }

  CColaCerrados<TSet>* cola = nullptr;
  HANDLE* eventoSalida = nullptr;
  std::atomic<bool> faltoMemoria{false};
};

}  // namespace Meseta47
