#include <algorithm>
#include <cerrno>
#include <climits>
#include <memory>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/CAviso.h"
#include "platform/Sistema.h"

namespace {

struct Arranque {
  void (*rutina)(void*);
  void* argumento;
};

void* Empieza(void* dato) {
  const std::unique_ptr<Arranque> arranque(static_cast<Arranque*>(dato));
  arranque->rutina(arranque->argumento);
  return nullptr;
}

struct Final {
  void (*rutina)(void*) = nullptr;
  void* argumento = nullptr;

  Final() = default;
  Final(Final const&) = delete;
  Final& operator=(Final const&) = delete;
  ~Final() {
    if (rutina != nullptr) {
      rutina(argumento);
    }
  }
};

/// The system's niceness runs the other way, from 19 to -20.
int Cortesia(int prioridad) { return -std::clamp(prioridad, -15, 15); }

}  // namespace

namespace sistema {

int LanzaHilo(std::size_t pila, void (*rutina)(void*), void* argumento) {
  ::pthread_attr_t atributos;
  if (const int codigo = ::pthread_attr_init(&atributos); codigo != 0) {
    return codigo;
  }
  ::pthread_attr_setdetachstate(&atributos, PTHREAD_CREATE_DETACHED);
  int codigo = 0;
  if (pila != 0) {
    codigo = ::pthread_attr_setstacksize(&atributos, std::max(pila, static_cast<std::size_t>(PTHREAD_STACK_MIN)));
  }
  std::unique_ptr<Arranque> arranque(new (std::nothrow) Arranque{rutina, argumento});
  ::pthread_t hilo;
  codigo = codigo != 0           ? codigo
           : arranque == nullptr ? ENOMEM
                                 : ::pthread_create(&hilo, &atributos, Empieza, arranque.get());
  ::pthread_attr_destroy(&atributos);
  if (codigo == 0) {
    static_cast<void>(arranque.release());  // the thread's from here on
  }
  return codigo;
}

// The C library ends the process where there is no memory for this.
bool AlAcabarHilo(void (*rutina)(void*), void* argumento) {
  thread_local Final final;
  final.rutina = rutina;
  final.argumento = argumento;
  return true;
}

long NumeroHilo() { return ::syscall(SYS_gettid); }

bool PonPrioridad(long hilo, int prioridad) {
  // The process itself may have been started at another niceness; normal is whatever that is.
  static const int normal = [] {
    errno = 0;
    const int cortesia = ::getpriority(PRIO_PROCESS, static_cast<::id_t>(::getpid()));
    return errno == 0 ? cortesia : 0;
  }();
  const int cortesia = std::clamp(normal + Cortesia(prioridad), -20, 19);
  errno = 0;
  if (::getpriority(PRIO_PROCESS, static_cast<::id_t>(hilo)) == cortesia && errno == 0) {
    return true;
  }
  return ::setpriority(PRIO_PROCESS, static_cast<::id_t>(hilo), cortesia) == 0;
}

}  // namespace sistema

void CAviso::Duerme(std::unique_lock<std::mutex>& cerrojo, unsigned long milisegundos) {
  if (milisegundos == kSinLimite) {
    aviso_.wait(cerrojo);
  } else {
    aviso_.wait_for(cerrojo, std::chrono::milliseconds(milisegundos));
  }
}

void CAviso::Avisa() { aviso_.notify_one(); }
