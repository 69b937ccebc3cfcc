#include <algorithm>
#include <cerrno>
#include <memory>
#include <new>
#include <process.h>

#include "platform/CAviso.h"
#include "platform/Sistema.h"
#include "platform/windows/Win32.h"

namespace {

struct Arranque {
  void (*rutina)(void*);
  void* argumento;
};

#if defined(__GNUC__)
extern "C" int __cxa_thread_atexit(void (*destructor)(void*), void* objeto, void* modulo);

/// GCC keeps thread-local objects in memory that it frees at a thread's end by one hook of the threads' library, and
/// destroys them by another; hooks are called in the order in which they were first asked for. Asked for here, before
/// anything else of the module runs, the destructors come while their objects are still there.
__attribute__((constructor(101))) void PideDestructores() {
  __cxa_thread_atexit([](void*) {}, nullptr, nullptr);
}
#endif

unsigned __stdcall Empieza(void* dato) {
  const std::unique_ptr<Arranque> arranque(static_cast<Arranque*>(dato));
  arranque->rutina(arranque->argumento);
  return 0;
}

}  // namespace

namespace sistema {

// By way of the C library, which has things of its own for each thread.
int LanzaHilo(std::size_t pila, void (*rutina)(void*), void* argumento) {
  constexpr std::size_t kMayorPila = 0x7fff0000;  // the C library takes it as a number of 32 bits
  if (pila > kMayorPila) {
    return ENOMEM;
  }
  std::unique_ptr<Arranque> arranque(new (std::nothrow) Arranque{rutina, argumento});
  if (arranque == nullptr) {
    return ENOMEM;
  }
  const auto bytes = static_cast<unsigned>(pila);
  const unsigned opciones = pila == 0 ? 0 : STACK_SIZE_PARAM_IS_A_RESERVATION;
  const auto hilo = ::_beginthreadex(nullptr, bytes, Empieza, arranque.get(), opciones, nullptr);
  if (hilo == 0) {
    return errno != 0 ? errno : EAGAIN;
  }
  static_cast<void>(arranque.release());  // the thread's from here on
  ::CloseHandle(reinterpret_cast<HANDLE>(hilo));
  return 0;
}

#if defined(__GNUC__)
// What GCC makes of a thread-local object forgets its destructor, and says nothing, where this finds no memory.
bool AlAcabarHilo(void (*rutina)(void*), void* argumento) {
  return __cxa_thread_atexit(rutina, argumento, nullptr) == 0;
}
#else
bool AlAcabarHilo(void (*rutina)(void*), void* argumento) {
  struct Final {
    void (*rutina)(void*) = nullptr;
    void* argumento = nullptr;
    ~Final() {
      if (rutina != nullptr) rutina(argumento);
    }
  };
  thread_local Final final;
  final.rutina = rutina;
  final.argumento = argumento;
  return true;
}
#endif

long NumeroHilo() { return static_cast<long>(::GetCurrentThreadId()); }

// The system knows seven steps: two extremes, and five in the middle.
bool PonPrioridad(long hilo, int prioridad) {
  const int escalon = prioridad <= THREAD_PRIORITY_IDLE ? THREAD_PRIORITY_IDLE
                      : prioridad >= THREAD_PRIORITY_TIME_CRITICAL
                          ? THREAD_PRIORITY_TIME_CRITICAL
                          : std::clamp(prioridad, THREAD_PRIORITY_LOWEST, THREAD_PRIORITY_HIGHEST);
  const win32::Manejador manejador(::OpenThread(THREAD_SET_INFORMATION, FALSE, static_cast<DWORD>(hilo)));
  return manejador != nullptr && ::SetThreadPriority(manejador.get(), escalon) != 0;
}

}  // namespace sistema

void CAviso::Duerme(std::unique_lock<std::mutex>& cerrojo, unsigned long milisegundos) {
  std::uint32_t vistos = avisos_;
  cerrojo.unlock();
  ::WaitOnAddress(&avisos_, &vistos, sizeof vistos, milisegundos);
  cerrojo.lock();
}

void CAviso::Avisa() {
  ++avisos_;
  ::WakeByAddressSingle(&avisos_);
}
