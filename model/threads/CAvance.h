#pragma once

#include <cstddef>

#include "model/threads/IPorcentaje.h"

namespace Meseta47 {

/// Reports a number of passes, one after another and each over things of its own, as one bar of a thousand steps a
/// pass.
class CAvance {
 public:
  /// `elPorcentaje` may be null.
  CAvance(IPorcentaje* elPorcentaje, int elNivel, unsigned pasadas)
      : porcentaje(elPorcentaje), nivel(elNivel), total(pasadas * kPasos) {}

  /// The next pass begins, over so many things.
  CAvance& Pasada(std::size_t lasCosas) {
    anteriores += empezada ? kPasos : 0;
    empezada = true;
    cosas = lasCosas;
    return *this;
  }
  /// So many things of the pass are done. False cancels.
  bool operator()(std::size_t hechas) const {
    return porcentaje == nullptr ||
           porcentaje->Porcentaje(nivel, anteriores + (cosas == 0 ? kPasos : hechas * kPasos / cosas), total, false) !=
               0;
  }
  /// The pass goes on, with nothing new to tell. False cancels.
  [[nodiscard]] bool Sigue() const { return (*this)(cosas); }

 private:
  static constexpr unsigned kPasos = 1000;

  IPorcentaje* porcentaje;
  int nivel;
  unsigned long long total, anteriores = 0;
  std::size_t cosas = 0;
  bool empezada = false;
};

}  // namespace Meseta47
