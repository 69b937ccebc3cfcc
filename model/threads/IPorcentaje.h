#pragma once

#include "platform/Exporta.h"

class CString;

namespace Meseta47 {

/// Progress, as the program's application object takes it. Every call comes from the thread that called the run, and
/// so from several threads at once where a program has runs side by side (CHiloPuntosPorAfinidad). The level is the
/// message level of the object that reports. Slots stand in this order in the virtual table.
class URDIMBRE_API IPorcentaje {
 public:
  /// So many steps of so many are done. An answer of 0 cancels: the run winds up and returns kCancelado. The bool is
  /// always false.
  virtual int Porcentaje(int nivel, unsigned long long valor, unsigned long long total, bool) = 0;
  /// A phase begins; `mensaje` identifies its text.
  virtual void Fase(int nivel, unsigned mensaje) = 0;
  /// The run is over. The second argument is always 0.
  virtual void Cierra(int nivel, int) = 0;
  /// The run will take so many phases more than it announced.
  virtual void Amplia(int nivel, int pasos) = 0;
  /// A run of so many phases begins. The last argument is always 0.
  virtual void Abre(int nivel, int fases, int) = 0;
  /// A text for the person at the program. The last argument is always 1.
  virtual void Mensaje(int nivel, CString* texto, int) = 0;

 protected:
  ~IPorcentaje() = default;  // never destroyed through the interface, and so without a slot
};

/// Progress interface of the current application object; null when there is none or it takes no progress.
[[nodiscard]] URDIMBRE_API IPorcentaje* BuscaPorcentaje();

}  // namespace Meseta47
