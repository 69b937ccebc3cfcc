#pragma once

#include <vector>

#include "platform/Exporta.h"
#include "platform/Manejador.h"

class CCriticalSection;
class CEvent;

namespace Meseta47 {

class CSetTetraedros;

/// A worker of the release of a tree: takes sets from a common vector, one at a time, and empties each. A plain record.
class URDIMBRE_API CHiloLiberarTetraedros {
 public:
  static constexpr int P_CRITICAL = 15, P_NORMAL = 0, P_LOWEST = -2, P_IDLE = -15, P_HIGHEST = 2, P_BELOW_NORMAL = -1,
                       P_ABOVE_NORMAL = 1;

  CHiloLiberarTetraedros() = default;
  CHiloLiberarTetraedros(CHiloLiberarTetraedros const&) = delete;
  CHiloLiberarTetraedros& operator=(CHiloLiberarTetraedros const&) = delete;
  /// Waits for the thread.
  ~CHiloLiberarTetraedros();

  /// Starts the thread. `elEvento` is signalled when the vector, whose entries the workers set to null under
  /// `laSeccion`, has no more set for it. False when the system gives no thread.
  bool Start(unsigned elIndice, CEvent* elEvento, CCriticalSection* laSeccion,
             std::vector<CSetTetraedros*>* losConjuntos);
  /// The thread's whole work; a caller may do it as well.
  void Run();

  /// Empties the sets with one worker a processor, the caller among them. Where the system gives no thread, the others
  /// do its share.
  static void Libera(std::vector<CSetTetraedros*>& conjuntos);

 private:
  static unsigned long Rutina(void* yo);

  HANDLE hilo = nullptr;
  unsigned indice = 0;
  CEvent* evento = nullptr;
  CCriticalSection* seccion = nullptr;
  std::vector<CSetTetraedros*>* conjuntos = nullptr;
};

}  // namespace Meseta47
