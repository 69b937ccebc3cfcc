#pragma once

#include "model/threads/IPorcentaje.h"

namespace Meseta47 {

/// How far a pass has come, one step at a time, and whom to tell.
///
/// Each call of `Avanza` is a call of the interface, on the caller's thread: the program decides how often it shows
/// one.
class CMarcha {
 public:
  /// `elPorcentaje` may be null: then nobody is told and nothing can be cancelled.
  CMarcha(IPorcentaje* elPorcentaje, int elNivel, unsigned long long elTotal, unsigned long long losHechos = 0)
      : porcentaje(elPorcentaje), nivel(elNivel), total(elTotal), hechos(losHechos) {}

  /// One step more. False cancels.
  [[nodiscard]] bool Avanza() {
    ++hechos;
    return Sigue();
  }
  /// So many steps are done in all. False cancels.
  [[nodiscard]] bool Llega(unsigned long long losHechos) {
    hechos = losHechos;
    return Sigue();
  }
  /// Tells where it stands, as a wait does. False cancels.
  [[nodiscard]] bool Sigue() const {
    return porcentaje == nullptr || porcentaje->Porcentaje(nivel, hechos, total, false) != 0;
  }
  [[nodiscard]] unsigned long long Hechos() const { return hechos; }
  [[nodiscard]] bool HayQuienEscuche() const { return porcentaje != nullptr; }

 private:
  IPorcentaje* porcentaje;
  int nivel;
  unsigned long long total, hechos;
};

}  // namespace Meseta47
