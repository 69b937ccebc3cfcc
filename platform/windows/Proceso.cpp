#include "platform/Proceso.h"

#include <atomic>
#include <io.h>

#include "platform/windows/Win32.h"

// after the header that it is written for
#include <psapi.h>

namespace {

std::atomic<bool> interrumpido{false};

/// The first request is taken note of; the second is left to the system, which ends the process.
BOOL WINAPI AnotaInterrupcion(DWORD) { return interrumpido.exchange(true) ? FALSE : TRUE; }

HANDLE Salida(std::FILE* salida) {
  return salida == nullptr ? INVALID_HANDLE_VALUE : reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(salida)));
}

PROCESS_MEMORY_COUNTERS Memoria() {
  PROCESS_MEMORY_COUNTERS memoria{};
  memoria.cb = sizeof memoria;
  ::GetProcessMemoryInfo(::GetCurrentProcess(), &memoria, sizeof memoria);
  return memoria;
}

}  // namespace

// The system's heap gives large blocks back at once, and keeps small ones for all threads: there is nothing to settle.
void DevuelveMemoriaLibre() {}

void GuardaMemoriaLibre() {}

unsigned long long MemoriaResidente() { return Memoria().WorkingSetSize; }

unsigned long long MemoriaResidenteMaxima() { return Memoria().PeakWorkingSetSize; }

bool EsTerminal(std::FILE* salida) {
  DWORD modo = 0;
  return ::GetConsoleMode(Salida(salida), &modo) != 0;
}

unsigned ColumnasTerminal(std::FILE* salida) {
  CONSOLE_SCREEN_BUFFER_INFO datos{};
  const bool sabe = ::GetConsoleScreenBufferInfo(Salida(salida), &datos) != 0;
  const int columnas = sabe ? datos.srWindow.Right - datos.srWindow.Left + 1 : 0;
  return columnas > 0 ? static_cast<unsigned>(columnas) : 80;
}

void PonManejadorInterrupcion() { ::SetConsoleCtrlHandler(AnotaInterrupcion, TRUE); }

bool Interrumpido() { return interrumpido.load(std::memory_order_relaxed); }

void OlvidaInterrupcion() { interrumpido.store(false); }
