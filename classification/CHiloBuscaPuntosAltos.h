#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <vector>

#include "model/geometry/CCoor3D.h"
#include "model/threads/CHilo.h"
#include "model/threads/Codigos.h"
#include "platform/CCriticalSection.h"
#include "run/CFicheroTriples.h"

class CSingleLock;

namespace Meseta47 {

class CBusquedaPuntos;
class CTrianguloBuscado;
class IPorcentaje;

/// Looks for high points in its slice of the temporary file, pass after pass; one of several that share the points.
///
/// A pass begins when the caller has called Start and sets `eventoSigue`, and has ended when the thread has added 1 to
/// `terminados` and set `eventoFin`, in this order. Between passes the thread sleeps.
///
/// A point is found by the sign of its number, which turns under the lock, once. Within a pass the threads see each
/// other's marks sooner or later, as it happens. The outcome is the same: a mark only ever adds to what the tests let
/// pass, and a pass is run again until a run of it, which then has seen all there is, marks nothing. So what is found
/// is the least set that holds the points found before it and, with any two (or one) that support a point, that point.
class URDIMBRE_API CHiloBuscaPuntosAltos : public CHilo {
 public:
  CHiloBuscaPuntosAltos() = default;
  CHiloBuscaPuntosAltos(CHiloBuscaPuntosAltos const&) = delete;
  CHiloBuscaPuntosAltos& operator=(CHiloBuscaPuntosAltos const&) = delete;
  ~CHiloBuscaPuntosAltos() override { Stop(); }

  /// Makes the thread ready for a pass over the records `k * porHilo` to `(k + 1) * porHilo - 1` of the file: opens it
  /// on the first call, seeks, resets `eventoFin` and, where there is no thread yet, starts it. Codigo() tells whether
  /// that went well. The thread must be asleep. Everything pointed at is the caller's and outlives the thread; the lock
  /// may be another one in each pass, at the same place.
  ///
  /// Heights and lengths are in scaled units, `pendiente` is rise over run, `pasada` 0, 1 or 2. `elAltos` receives
  /// copies of the points found, `laCantidad` and `elTotal` grow by the points and, with the first mark of a pass other
  /// than 0, by the length of the file; `losLeidos` by the bytes read, a block at a time. The progress interface, its
  /// level and the bytes of finished passes are kept for whoever looks at a thread.
  void Start(unsigned int k, HANDLE* elEventoFin, HANDLE* elEventoSigue, IPorcentaje* elPorcentaje,
             unsigned int elIdPorcentaje, std::uint64_t elAcumulado, CString const& ruta,
             CBusquedaPuntos const* losPuntos, unsigned int* laPasada, unsigned int* laCantidad, int laAlturaMin,
             int laDistanciaMax, double laPendiente, std::vector<CCoor3D<int>>* losAltos, bool* elCambio,
             std::uint64_t* elTotal, unsigned int porHilo, CCriticalSection* laSeccion, long* losTerminados,
             unsigned int* losLeidos, bool* elCancelado);
  /// Sets the shared `cancelado`, wakes the thread and waits for its end. Nothing happens when there is no thread.
  void Stop() override;

  /// kHecho; kFicheroInaccesible when the file could not be opened; kFicheroInconsistente when there was no thread to
  /// be had, the disk refused a record or memory ran out. To be asked after Start and after the end of a pass.
  [[nodiscard]] int Codigo() const { return codigo; }
  /// Where the thread's file stands and its slice ends, in bytes; the thread asleep.
  [[nodiscard]] std::uint64_t Posicion() const { return lector.Posicion(); }
  [[nodiscard]] std::uint64_t Limite() const { return lector.Limite(); }

 private:
  static unsigned long Rutina(void* yo);
  void Run();
  void LeeTrozo(CSingleLock& cerrojo);
  void Procesa(CTriple const& numeros, CSingleLock& cerrojo);
  void BuscaSemilla(CTrianguloBuscado const& t, CSingleLock& cerrojo);
  void Extiende(CTrianguloBuscado const& t, std::array<int, 3> const& nums, CSingleLock& cerrojo);
  void Marca(CCoor3D<int>& punto, CSingleLock& cerrojo);
  [[nodiscard]] bool Cancelado() const;

  CBusquedaPuntos const* puntos = nullptr;
  unsigned int* pasada = nullptr;
  unsigned int* cantidad = nullptr;
  int alturaMin = 0, distanciaMax = 0;
  double pendiente = 0;
  std::vector<CCoor3D<int>>* altos = nullptr;
  bool* cambio = nullptr;
  std::uint64_t* total = nullptr;
  IPorcentaje* porcentaje = nullptr;
  unsigned int idPorcentaje = 0;
  std::uint64_t acumulado = 0;
  CCriticalSection* seccion = nullptr;
  long* terminados = nullptr;
  unsigned int* leido = nullptr;
  bool* cancelado = nullptr;
  HANDLE *eventoFin = nullptr, *eventoSigue = nullptr;

  std::uint64_t longitud = 0;  ///< of the file
  CLectorTriples lector;
  int codigo = kHecho;
  std::atomic<bool> acaba{false};  ///< the thread is to leave, also when it was not asleep
};

}  // namespace Meseta47
