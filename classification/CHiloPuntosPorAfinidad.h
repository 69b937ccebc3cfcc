#pragma once

#include <vector>

#include "model/drawing/CDibujo.h"
#include "model/drawing/CInfoClasificacion.h"
#include "model/drawing/CPosicionEntidad.h"
#include "model/geometry/CRango.h"
#include "model/terrain/CDataTriangulacion.h"
#include "model/threads/CHilo.h"
#include "platform/CCriticalSection.h"
#include "platform/CEvent.h"
#include "platform/CString.h"

/// One growth by affinity on a thread of its own (CTriangulacion2D::RunPuntosPorAfinidad), so that a program can have
/// several go on side by side. Each needs a drawing of its own, further drawings included: a run writes the numbers and
/// the classes of its points. The rest of what they are given may be shared.
///
/// Each run reports its progress and its message to the program on its own thread, so that the program's IPorcentaje is
/// called from several at once. What all share is changed in one step: whoever looks at it while threads run does so
/// through std::atomic_ref, or under the lock.
class URDIMBRE_API CHiloPuntosPorAfinidad : public Meseta47::CHilo {
 public:
  CHiloPuntosPorAfinidad() = default;
  CHiloPuntosPorAfinidad(CHiloPuntosPorAfinidad const&) = delete;
  CHiloPuntosPorAfinidad& operator=(CHiloPuntosPorAfinidad const&) = delete;
  /// Waits for the run to end. It is not cancelled: the flag is shared, and belongs to the others too.
  ~CHiloPuntosPorAfinidad() override { CHilo::Stop(); }

  /// Takes what the run is to work on, which outlives the thread, and starts it at normal priority unless there is one;
  /// not for a thread at work. `k`, its number among its fellows, goes into the name of the temporary file.
  /// `terminados` grows by one under `seccion` when the run has ended; `cancelar` becomes 1 when it was cancelled; the
  /// event is kept and not signalled. The other arguments are those of the run and of its CTriangulacion2D. When the
  /// system gives no thread, none of this happens, and Codigo() tells.
  void Start(unsigned int k, CEvent* elEvento, Meseta47::CDibujo<int>* elDibujo, Meseta47::CRango const* elRangoZ,
             Meseta47::CRango const* elRangoIntensidad, Meseta47::CRango const* elRangoDistancia,
             Meseta47::CRango const* elRangoPendiente, Meseta47::CInfoClasificacion const* elTipo1,
             Meseta47::CInfoClasificacion const* elTipo2, int elArgumento, Meseta47::CDataTriangulacion const* losDatos,
             CCriticalSection* laSeccion, int* elCancelar, unsigned int* losTerminados,
             std::vector<Meseta47::CDibujo<int>*>* losOtros, std::vector<Meseta47::CPosicionEntidad> const* laSeleccion,
             int siMostrar);
  /// The run, on the caller's thread.
  void Run();
  /// Sets `cancelar` and waits for the run to end. The run doesn't look at it: it ends sooner if the program answers
  /// its progress with 0 when the flag is up. Nothing happens before the first start.
  void Stop() override;

  /// What the run answered. 0 before it has; kFicheroInconsistente when there was no thread, lock or memory for it.
  [[nodiscard]] int Codigo() const { return codigo; }

  CEvent* evento = nullptr;
  CCriticalSection* seccion = nullptr;
  int* cancelar = nullptr;
  unsigned int* terminados = nullptr;
  unsigned int iteracion = 0;  ///< runs told by a message
  unsigned int cantidad = 0;   ///< points that took the class
  int progreso = 0;            ///< points that went in
  CString texto;               ///< once it has ended: thread, identifier and temporary file
  Meseta47::CDibujo<int>* dibujo = nullptr;
  Meseta47::CRango const *rangoZ = nullptr, *rangoIntensidad = nullptr, *rangoDistancia = nullptr,
                         *rangoPendiente = nullptr;
  Meseta47::CInfoClasificacion const *tipo1 = nullptr, *tipo2 = nullptr;
  std::vector<Meseta47::CDibujo<int>*>* otros = nullptr;
  std::vector<Meseta47::CPosicionEntidad> const* seleccion = nullptr;
  int mostrar = 0;
  int argumento = 0;
  Meseta47::CDataTriangulacion const* datos = nullptr;

 private:
  static unsigned long Rutina(void* yo);
  void Corre();

  int codigo = 0;
};
