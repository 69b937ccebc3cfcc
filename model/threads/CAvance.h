#pragma once

#include <cstddef>

#include "model/threads/IPorcentaje.h"

namespace Meseta47 {

/// Reports a number of passes, one after another and each over things of its own, as one bar of a thousand steps a
/// pass.
class CAvance {
 public:
  /// `porcentaje` may be null.
  CAvance(IPorcentaje* porcentaje, int nivel, unsigned pasadas)
      : porcentaje_(porcentaje), nivel_(nivel), total_(pasadas * kPasos) {}

  /// The next pass begins, over so many things.
  CAvance& Pasada(std::size_t cosas) {
    anteriores_ += empezada_ ? kPasos : 0;
    empezada_ = true;
    cosas_ = cosas;
    return *this;
  }
  /// So many things of the pass are done. False cancels.
  bool operator()(std::size_t hechas) const {
    return porcentaje_ == nullptr ||
           porcentaje_->Porcentaje(nivel_, anteriores_ + (cosas_ == 0 ? kPasos : hechas * kPasos / cosas_), total_,
                                   false) != 0;
  }

 private:
  static constexpr unsigned kPasos = 1000;

  IPorcentaje* porcentaje_;
  int nivel_;
  unsigned long long total_, anteriores_ = 0;
  std::size_t cosas_ = 0;
  bool empezada_ = false;
};

}  // namespace Meseta47
