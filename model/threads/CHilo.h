#pragma once

#include "platform/Exporta.h"
#include "platform/Manejador.h"

namespace Meseta47 {

/// Base of the workers: one thread and its number among its fellows. A derived class starts the thread with Arranca()
/// and calls Stop() in its own destructor, before its members go: the thread uses them.
///
/// The owner's operations belong to one thread at a time.
class URDIMBRE_API CHilo {
 public:
  static constexpr int P_NORMAL = 0;  ///< normal priority, as SetThreadPriority takes it

  CHilo() = default;
  /// A copy has the index and no thread: a thread belongs to one object.
  CHilo(CHilo const& otro) : indice(otro.indice) {}
  CHilo& operator=(CHilo const& otro);
  virtual ~CHilo();

  /// Waits for the thread to end, without limit, and gives its handle back. A derived class that has a way to hurry its
  /// thread asks for it first. Nothing happens when there is no thread.
  virtual void Stop();

  /// From -15 to 15. Nothing happens when there is no thread, here and below.
  void SetPriority(int prioridad);
  /// Asks the thread to stand still at its next CompruebaSuspension(), and takes one such request back.
  void Suspender();
  void Reanudar();

 protected:
  /// Starts the thread at normal priority. False when the system refuses or a thread is there already.
  bool Arranca(LPTHREAD_START_ROUTINE rutina, void* argumento);
  void Espera();
  /// Takes all requests to stand still back: a thread that is to end must see that it is.
  void LevantaSuspension();
  /// Unsets an event.
  static void Apaga(HANDLE evento);

  HANDLE hilo = nullptr;  ///< null when there is no thread
  unsigned indice = 0;
};

}  // namespace Meseta47
