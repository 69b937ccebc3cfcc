#pragma once

#include <deque>
#include <vector>

#include "platform/CEvent.h"

namespace Meseta47 {

/// The events of threads that work side by side, one a thread, and the wait for all of them.
///
/// The owner's, on whose thread all is called; the threads set or reset the event of their own.
class URDIMBRE_API CEquipo {
 public:
  /// Between two looks at progress while the threads work: no longer than a person takes to miss an answer to Ctrl-C.
  static constexpr unsigned long kMilisegundos = 40;
  static constexpr unsigned long kSinLimite = 0xFFFFFFFF;

  /// Events that stay set until they are reset, and are set to begin with or not.
  CEquipo(unsigned cuantos, bool senalados) {
    for (unsigned k = 0; k < cuantos; ++k) eventos.emplace_back(senalados, true);
    for (CEvent& evento : eventos) manejadores.push_back(evento.m_hObject);
  }
  CEquipo(CEquipo const&) = delete;
  CEquipo& operator=(CEquipo const&) = delete;

  [[nodiscard]] CEvent& operator[](unsigned k) { return eventos[k]; }
  [[nodiscard]] HANDLE* Manejador(unsigned k) { return &manejadores[k]; }
  /// False when the system had not enough of them.
  [[nodiscard]] bool Estan() const;
  /// True when all are set; false when one is waited for longer than that. They are waited for one after another: a
  /// wait for many at once takes memory.
  bool EsperaTodos(unsigned long milisegundos = kSinLimite);
  /// Waits until `acabado()`, asking `sigue()` before each wait of up to kMilisegundos. False once `sigue` answered
  /// false.
  template <class A, class S>
  bool EsperaHasta(A&& acabado, S&& sigue) {
    while (!acabado()) {
      if (!sigue()) return false;
      EsperaTodos(kMilisegundos);
    }
    return true;
  }

 private:
  std::deque<CEvent> eventos;  // which don't move
  std::vector<HANDLE> manejadores;
};

}  // namespace Meseta47
