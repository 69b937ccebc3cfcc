#pragma once

#if defined(_WIN32)
#include <atomic>
#include <cstdint>
#else
#include <condition_variable>
#endif
#include <chrono>
#include <mutex>

/// What one thread sleeps on until another tells it to look again. Both hold the same lock when they call. Every wait
/// with a time limit sleeps here. Internal.
class CAviso {
 public:
  static constexpr unsigned long kSinLimite = 0xFFFFFFFF;

  /// Sleeps, with the lock given up, until `acaba()`, which is called with the lock held. False when so many
  /// milliseconds have passed before.
  template <class F>
  bool Espera(std::unique_lock<std::mutex>& cerrojo, unsigned long milisegundos, F&& acaba) {
    using Reloj = std::chrono::steady_clock;
    const auto fin = Reloj::now() + std::chrono::milliseconds(milisegundos);
    while (!acaba()) {
      if (milisegundos >= kSinLimite) {
        Duerme(cerrojo, kSinLimite);
        continue;
      }
      const auto queda = std::chrono::ceil<std::chrono::milliseconds>(fin - Reloj::now()).count();
      if (queda <= 0) {
        return false;
      }
      Duerme(cerrojo, static_cast<unsigned long>(queda));
    }
    return true;
  }

  /// Wakes the thread that sleeps here, if there is one.
  void Avisa();

 private:
  /// May return for nothing.
  void Duerme(std::unique_lock<std::mutex>& cerrojo, unsigned long milisegundos);

#if defined(_WIN32)
  // The condition variables of the threads' library lose a wake-up when a wait's time is over as it comes: whoever
  // touches one of them afterwards sleeps for ever. The system's own words don't.
  std::atomic<std::uint32_t> avisos_{0};
#else
  std::condition_variable aviso_;
#endif
};
