#include "platform/Proceso.h"

#include <atomic>
#include <cstdlib>
#include <fcntl.h>
#include <io.h>

#include "platform/Sistema.h"
#include "platform/windows/Win32.h"

// after the header that they are written for
#include <psapi.h>
#include <shellapi.h>

namespace {

std::atomic<bool> interrumpido{false};

/// The first request is taken note of; the second is left to the system, which ends the process. When its window closes
/// or the session ends, the system ends the process as soon as this returns, or some seconds later: those are left to
/// the program, which cleans up and ends by itself.
BOOL WINAPI AnotaInterrupcion(DWORD peticion) {
  const bool segunda = interrumpido.exchange(true);
  if (!segunda && peticion != CTRL_C_EVENT && peticion != CTRL_BREAK_EVENT) {
    ::Sleep(INFINITE);
  }
  return segunda ? FALSE : TRUE;
}

UINT paginaAnterior = 0;

void DevuelvePagina() { ::SetConsoleOutputCP(paginaAnterior); }

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

std::vector<std::string> Argumentos(int cuantos, char const* const* argumentos) {
  int anchos = 0;
  wchar_t** const todos = ::CommandLineToArgvW(::GetCommandLineW(), &anchos);
  if (todos == nullptr) {
    return {argumentos, argumentos + cuantos};
  }
  std::vector<std::string> utf8;
  for (int i = 0; i < anchos; ++i) {
    utf8.push_back(sistema::AUtf8(todos[i]));
  }
  ::LocalFree(todos);
  return utf8;
}

// The page belongs to the console, which outlives the process: it gets back what it had.
void PonSalidaUtf8() {
  static_cast<void>(::_setmode(::_fileno(stdout), _O_BINARY));
  static_cast<void>(::_setmode(::_fileno(stderr), _O_BINARY));
  if (paginaAnterior != 0 || (!EsTerminal(stdout) && !EsTerminal(stderr))) {
    return;
  }
  paginaAnterior = ::GetConsoleOutputCP();
  if (paginaAnterior != 0 && ::SetConsoleOutputCP(CP_UTF8) != 0) {
    std::atexit(DevuelvePagina);
  }
}

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
