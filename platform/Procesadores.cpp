#include "platform/Procesadores.h"

#include <algorithm>
#include <thread>

#include "platform/CWinApp.h"

unsigned NumeroProcesadores() {
  CWinApp const* const aplicacion = AfxGetApp();
  const unsigned limite = aplicacion == nullptr ? 0 : aplicacion->Procesadores();
  return limite != 0 ? limite : std::max(1u, std::thread::hardware_concurrency());
}

void GetSystemInfo(SYSTEM_INFO* informacion) { informacion->dwNumberOfProcessors = NumeroProcesadores(); }
