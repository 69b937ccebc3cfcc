#pragma once

#include <vector>

#include "platform/CCriticalSection.h"
#include "platform/CEvent.h"
#include "platform/CFile.h"
#include "platform/CString.h"
#include "platform/Exporta.h"
#include "platform/Manejador.h"

namespace Meseta47 {

class CSetTetraedros;

/// Reads the tetrahedra of nodes of a file's tree, on a thread of its own and through a handle of its own. Several of
/// them take nodes from one vector until none is left. A plain record.
class URDIMBRE_API CHiloLeerTetraedros {
 public:
  static constexpr int P_CRITICAL = 15, P_NORMAL = 0, P_LOWEST = -2, P_IDLE = -15, P_HIGHEST = 2, P_BELOW_NORMAL = -1,
                       P_ABOVE_NORMAL = 1;  ///< as SetThreadPriority takes them

  CHiloLeerTetraedros() = default;
  CHiloLeerTetraedros(CHiloLeerTetraedros const&) = delete;
  CHiloLeerTetraedros& operator=(CHiloLeerTetraedros const&) = delete;
  /// Waits for the thread.
  ~CHiloLeerTetraedros();

  /// Begins to read. `losSets` are the nodes, of which the workers set those that they take to null under `laSeccion`;
  /// `losLugares` where in the file the head of each stands. `losLeidos` grows under the lock by the tetrahedra of each
  /// node that is done. What is pointed at must outlive the thread. At the end, whatever it is, the event is set. False
  /// when the thread cannot be started, with nothing taken and the event set.
  bool Start(unsigned elIndice, CEvent* elEvento, CString const& ruta, CCriticalSection* laSeccion,
             std::vector<CSetTetraedros*>* losSets, std::vector<unsigned long long>* losLugares,
             unsigned long long* losLeidos);
  /// The thread's whole work; its caller may do it as well, when there is no thread.
  void Run();
  /// Takes no further node.
  static void Para(CCriticalSection& seccion, std::vector<CSetTetraedros*>& sets);

  // To be asked when the event is set.
  /// What went wrong, as `CSetTetraedros::Read` tells it, or kHecho.
  [[nodiscard]] int Codigo() const { return codigo; }
  [[nodiscard]] bool FaltoMemoria() const { return faltoMemoria; }

 private:
  static unsigned long Rutina(void* yo);
  CSetTetraedros* Siguiente(std::size_t& desde);
  void Espera();

  HANDLE hilo = nullptr;
  unsigned indice = 0;
  CEvent* evento = nullptr;
  CFile fichero;
  CCriticalSection* seccion = nullptr;
  std::vector<CSetTetraedros*>* sets = nullptr;
  std::vector<unsigned long long>* lugares = nullptr;
  unsigned long long* leidos = nullptr;
  int codigo = 1;
  bool faltoMemoria = false;
};

}  // namespace Meseta47
