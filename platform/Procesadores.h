#pragma once

#include "platform/Exporta.h"

/// Processors that a pool of threads may take: what the current application has settled, or else all that the system
/// lets this process use. At least 1.
[[nodiscard]] URDIMBRE_API unsigned NumeroProcesadores();

/// What this library wants to know of the machine.
struct SYSTEM_INFO {
  unsigned long dwNumberOfProcessors =
      1;  ///< The same as NumeroProcesadores(), so that every pool obeys the settled one.
};

URDIMBRE_API void GetSystemInfo(SYSTEM_INFO* informacion);
