#pragma once

#include <atomic>

#include "platform/Exporta.h"

namespace suspension {
/// Requests to stand still (SuspendThread) that are in force, over all threads.
URDIMBRE_API extern std::atomic<unsigned> peticiones;
URDIMBRE_API void Espera();
}  // namespace suspension

/// Stands still here as long as SuspendThread() wants it of this thread. Workers call it once a record, with nothing
/// locked; it costs one relaxed load while no thread is suspended.
inline void CompruebaSuspension() {
  if (suspension::peticiones.load(std::memory_order_relaxed) != 0) {
    suspension::Espera();
  }
}
