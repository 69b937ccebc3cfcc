#pragma once

#include "model/terrain/CSetPuntosMdt.h"
#include "model/threads/CHilo.h"
#include "platform/CCriticalSection.h"
#include "platform/CEvent.h"
#include "platform/CFile.h"
#include "platform/CString.h"

namespace Meseta47 {

/// Reads a range of bare points, 12 bytes each, from a file into a point set, on a thread of its own. Several of them
/// read one file, each through its own handle and into its own part of the set.
class URDIMBRE_API CHiloLeerPuntos : public CHilo {
 public:
  CHiloLeerPuntos() = default;
  CHiloLeerPuntos(CHiloLeerPuntos const&) = delete;
  CHiloLeerPuntos& operator=(CHiloLeerPuntos const&) = delete;
  /// Waits for the thread.
  ~CHiloLeerPuntos() override;

  /// Begins to read `cantidad` points from the byte `posicion` on. The first becomes the point `primero` of the set,
  /// which must have room for all; each gets its index plus 1 as its number. What is pointed at must outlive the
  /// thread.
  ///
  /// `contador` grows under the lock, in steps, by the number of points asked for in all, also when they cannot be
  /// read: whoever waits for it goes on and asks EsCompleto(). At the end the thread sets its event. False when the
  /// thread cannot be started; the counter has grown and the event is set then too.
  bool Start(unsigned int elIndice, CEvent* elEvento, long* elContador, CString const& ruta,
             unsigned long long laPosicion, unsigned int laCantidad, unsigned int elPrimero, CSetPuntosMdt* elDestino,
             CCriticalSection* laSeccion);

  /// Whether every point was read. To be asked when the counter has grown to its end, or the thread has ended.
  [[nodiscard]] bool EsCompleto() const { return completo; }

 private:
  static unsigned long Rutina(void* hilo);
  void Run();
  bool Lee(unsigned desde, unsigned hasta);
  void Suma(unsigned cuantos);

  CEvent* evento = nullptr;
  long* contador = nullptr;
  CFile fichero;
  unsigned long long posicion = 0;
  unsigned cantidad = 0, primero = 0;
  CSetPuntosMdt* puntos = nullptr;
  CCriticalSection* seccion = nullptr;
  bool completo = false;
};

}  // namespace Meseta47
