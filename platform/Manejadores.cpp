#include "platform/Manejadores.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/CAviso.h"
#include "platform/Sistema.h"

namespace {

struct Objeto;
using Puntero = std::shared_ptr<Objeto>;

/// A thread that waits for one of several objects to be set.
struct Espera {
  CAviso aviso;
};

enum class EClase { Evento, Hilo };

struct Objeto {
  EClase clase = EClase::Evento;
  bool senalado = false;
  bool manual = true;                // a thread, once it has ended, stays ended for all who wait
  struct Apunte* esperan = nullptr;  // first of those that wait for it

  // Of threads alone.
  LPTHREAD_START_ROUTINE rutina = nullptr;
  void* argumento = nullptr;
  long numero = 0;  // in the system; 0 before the thread has begun
  int prioridad = 0;
  std::atomic<unsigned> suspensiones{0};  // changed with the table locked; the thread itself looks without
  CAviso reanuda;                         // the thread itself alone sleeps on it
};

/// One object that a thread waits for. The waiting thread owns it, and the object strings it with those of others: so a
/// wait asks for no memory, and cannot fail for the lack of it.
struct Apunte {
  Puntero objeto;
  Espera* espera = nullptr;
  Apunte* siguiente = nullptr;
};

/// All handles, and the one lock of everything here. Handles are few and waits are long, so there is nothing to gain
/// from finer locks; and with a single one, waiting for all of several objects is one look at them.
struct Tabla {
  std::mutex cerrojo;
  std::unordered_map<std::uintptr_t, Puntero> objetos;
  std::uintptr_t ultimo = 0;
};

/// Never destroyed: threads that nobody waits for may outlive the program's static objects. It needs no memory, so that
/// only what registers a handle can fail for the lack of it.
Tabla& LaTabla() {
  alignas(Tabla) static std::byte sitio[sizeof(Tabla)];
  static Tabla& tabla = *new (sitio) Tabla;
  return tabla;
}

// The functions below are called with the table locked.

HANDLE Registra(Puntero objeto) {
  Tabla& tabla = LaTabla();
  tabla.ultimo += 4;  // never a number twice, and never one that an array's index could be taken for
  tabla.objetos.emplace(tabla.ultimo, std::move(objeto));
  return reinterpret_cast<HANDLE>(tabla.ultimo);
}

Puntero Busca(HANDLE manejador) {
  const auto lugar = LaTabla().objetos.find(reinterpret_cast<std::uintptr_t>(manejador));
  return lugar == LaTabla().objetos.end() ? nullptr : lugar->second;
}

Puntero Busca(HANDLE manejador, EClase clase) {
  Puntero objeto = Busca(manejador);
  return objeto != nullptr && objeto->clase == clase ? objeto : nullptr;
}

void Senala(Objeto& objeto) {
  objeto.senalado = true;
  for (Apunte const* a = objeto.esperan; a != nullptr; a = a->siguiente) {
    a->espera->aviso.Avisa();
  }
}

void Consume(Objeto& objeto) { objeto.senalado = objeto.senalado && objeto.manual; }

/// What a wait for these objects returns now, or nothing when it has to go on.
std::optional<unsigned long> Resultado(std::span<const Apunte> apuntes, bool todos) {
  const auto senalado = [](Apunte const& apunte) { return apunte.objeto->senalado; };
  if (todos) {
    if (!std::ranges::all_of(apuntes, senalado)) {
      return std::nullopt;
    }
    for (Apunte const& apunte : apuntes) {
      Consume(*apunte.objeto);
    }
    return WAIT_OBJECT_0;
  }
  const auto primero = std::ranges::find_if(apuntes, senalado);
  if (primero == apuntes.end()) {
    return std::nullopt;
  }
  Consume(*primero->objeto);
  return WAIT_OBJECT_0 + static_cast<unsigned long>(primero - apuntes.begin());
}

/// Stands still until every request has been taken back.
void QuedaQuieto(Objeto& hilo, std::unique_lock<std::mutex>& cerrojo) {
  hilo.reanuda.Espera(cerrojo, CAviso::kSinLimite,
                      [&] { return hilo.suspensiones.load(std::memory_order_relaxed) == 0; });
}

/// Takes a thread that waits off the objects it waited for, on every way out.
class Apuntada {
 public:
  Apuntada(std::span<Apunte> apuntes, Espera& espera) : apuntes_(apuntes) {
    for (Apunte& apunte : apuntes_) {
      apunte.espera = &espera;
      apunte.siguiente = std::exchange(apunte.objeto->esperan, &apunte);
    }
  }
  Apuntada(Apuntada const&) = delete;
  Apuntada& operator=(Apuntada const&) = delete;
  ~Apuntada() {
    for (Apunte const& apunte : apuntes_) {
      Apunte** lugar = &apunte.objeto->esperan;
      while (*lugar != &apunte) {
        lugar = &(*lugar)->siguiente;
      }
      *lugar = apunte.siguiente;
    }
  }

 private:
  std::span<Apunte> apuntes_;
};

// The functions above are called with the table locked.

HANDLE RegistraConCerrojo(Puntero objeto) {
  const std::scoped_lock cerrojo(LaTabla().cerrojo);
  return Registra(std::move(objeto));
}

/// The object of the thread that runs, null in threads not made here.
thread_local Objeto* esteHilo = nullptr;

/// Sets the handle of the thread that runs, which holds it as long as that by what it was given.
void AcabaHilo(void* dato) {
  const std::unique_ptr<Puntero> recado(static_cast<Puntero*>(dato));
  Objeto& hilo = **recado;
  esteHilo = nullptr;
  const std::scoped_lock cerrojo(LaTabla().cerrojo);
  suspension::peticiones.fetch_sub(hilo.suspensiones.exchange(0), std::memory_order_relaxed);
  hilo.numero = 0;
  Senala(hilo);
}

void EmpiezaHilo(Objeto& hilo) {
  std::unique_lock cerrojo(LaTabla().cerrojo);
  hilo.numero = sistema::NumeroHilo();
  if (hilo.prioridad != 0) {
    sistema::PonPrioridad(hilo.numero, hilo.prioridad);
  }
  QuedaQuieto(hilo, cerrojo);
}

/// The handle is set once the thread's own objects are gone; before that where there is no memory to ask for so much,
/// as a thread that nobody is told of would be waited for without end.
void CorreHilo(void* dato) {
  esteHilo = static_cast<Puntero*>(dato)->get();
  const bool avisado = sistema::AlAcabarHilo(AcabaHilo, dato);
  EmpiezaHilo(*esteHilo);
  esteHilo->rutina(esteHilo->argumento);
  if (!avisado) {
    AcabaHilo(dato);
  }
}

Puntero BuscaHiloVivo(HANDLE manejador) {
  Puntero hilo = Busca(manejador, EClase::Hilo);
  return hilo != nullptr && !hilo->senalado ? hilo : nullptr;
}

bool PonEvento(HANDLE manejador, bool senalado) {
  const std::scoped_lock cerrojo(LaTabla().cerrojo);
  const Puntero evento = Busca(manejador, EClase::Evento);
  if (evento == nullptr) {
    return false;
  }
  if (senalado) {
    Senala(*evento);
  } else {
    evento->senalado = false;
  }
  return true;
}

constexpr unsigned long kFallo = 0xFFFFFFFF;

}  // namespace

std::atomic<unsigned> suspension::peticiones{0};

void suspension::Espera() {
  Objeto* const hilo = esteHilo;
  if (hilo != nullptr && hilo->suspensiones.load(std::memory_order_relaxed) != 0) {
    std::unique_lock cerrojo(LaTabla().cerrojo);
    QuedaQuieto(*hilo, cerrojo);
  }
}

HANDLE CreateThread(SECURITY_ATTRIBUTES*, std::size_t pila, LPTHREAD_START_ROUTINE rutina, void* argumento,
                    unsigned long opciones, unsigned long* id) try {
  if (rutina == nullptr || sistema::Consulta(EOperacion::CreaHilo, L"") != 0) {
    return nullptr;
  }
  const auto hilo = std::make_shared<Objeto>();
  hilo->clase = EClase::Hilo;
  hilo->rutina = rutina;
  hilo->argumento = argumento;
  hilo->suspensiones = (opciones & CREATE_SUSPENDED) != 0 ? 1 : 0;
  const unsigned peticiones = hilo->suspensiones;
  auto recado = std::make_unique<Puntero>(hilo);
  HANDLE const manejador = RegistraConCerrojo(hilo);  // now: a thread that runs must not be lost for want of memory
  suspension::peticiones.fetch_add(peticiones, std::memory_order_relaxed);
  if (sistema::LanzaHilo(pila, CorreHilo, recado.get()) != 0) {
    suspension::peticiones.fetch_sub(peticiones, std::memory_order_relaxed);
    CloseHandle(manejador);
    return nullptr;
  }
  static_cast<void>(recado.release());  // the thread's from here on
  if (id != nullptr) {
    *id = static_cast<unsigned long>(reinterpret_cast<std::uintptr_t>(manejador));
  }
  return manejador;
} catch (std::bad_alloc const&) {
  return nullptr;
}

bool SetThreadPriority(HANDLE manejador, int prioridad) {
  const std::scoped_lock cerrojo(LaTabla().cerrojo);
  const Puntero hilo = BuscaHiloVivo(manejador);
  if (hilo == nullptr) {
    return false;
  }
  hilo->prioridad = prioridad;  // a thread that has not begun takes it up when it does
  return hilo->numero == 0 || sistema::PonPrioridad(hilo->numero, prioridad);
}

unsigned long SuspendThread(HANDLE manejador) {
  const std::scoped_lock cerrojo(LaTabla().cerrojo);
  const Puntero hilo = BuscaHiloVivo(manejador);
  if (hilo == nullptr) {
    return kFallo;
  }
  suspension::peticiones.fetch_add(1, std::memory_order_relaxed);
  return hilo->suspensiones.fetch_add(1, std::memory_order_relaxed);
}

unsigned long ResumeThread(HANDLE manejador) {
  const std::scoped_lock cerrojo(LaTabla().cerrojo);
  const Puntero hilo = BuscaHiloVivo(manejador);
  if (hilo == nullptr) {
    return kFallo;
  }
  const unsigned habia = hilo->suspensiones.load(std::memory_order_relaxed);
  if (habia != 0) {
    suspension::peticiones.fetch_sub(1, std::memory_order_relaxed);
    hilo->suspensiones.store(habia - 1, std::memory_order_relaxed);
    hilo->reanuda.Avisa();
  }
  return habia;
}

HANDLE CreateEventW(SECURITY_ATTRIBUTES*, bool manual, bool senalado, wchar_t const* nombre) try {
  if (nombre != nullptr || sistema::Consulta(EOperacion::CreaEvento, L"") != 0) {
    return nullptr;
  }
  auto evento = std::make_shared<Objeto>();
  evento->senalado = senalado;
  evento->manual = manual;
  return RegistraConCerrojo(std::move(evento));
} catch (std::bad_alloc const&) {
  return nullptr;
}

bool SetEvent(HANDLE evento) { return PonEvento(evento, true); }

bool ResetEvent(HANDLE evento) { return PonEvento(evento, false); }

unsigned long WaitForSingleObject(HANDLE manejador, unsigned long milisegundos) {
  return WaitForMultipleObjects(1, &manejador, false, milisegundos);
}

unsigned long WaitForMultipleObjects(unsigned long cuantos, HANDLE const* manejadores, bool todos,
                                     unsigned long milisegundos) try {
  if (cuantos == 0 || manejadores == nullptr) {
    return WAIT_FAILED;
  }
  constexpr std::size_t kPocos = 64;
  std::array<Apunte, kPocos> pocos;
  std::vector<Apunte> muchos(cuantos > kPocos ? cuantos : 0);
  const std::span<Apunte> apuntes = muchos.empty() ? std::span(pocos).first(cuantos) : std::span(muchos);
  std::unique_lock cerrojo(LaTabla().cerrojo);
  for (std::size_t i = 0; i < apuntes.size(); ++i) {
    apuntes[i].objeto = Busca(manejadores[i]);
    if (apuntes[i].objeto == nullptr) {
      return WAIT_FAILED;
    }
  }
  Espera espera;
  const Apuntada apuntada(apuntes, espera);
  std::optional<unsigned long> resultado;
  const auto acaba = [&] { return (resultado = Resultado(apuntes, todos)).has_value(); };
  espera.aviso.Espera(cerrojo, milisegundos, acaba);
  return resultado.value_or(WAIT_TIMEOUT);
} catch (std::bad_alloc const&) {
  return WAIT_FAILED;
}

bool CloseHandle(HANDLE manejador) {
  const std::scoped_lock cerrojo(LaTabla().cerrojo);
  return LaTabla().objetos.erase(reinterpret_cast<std::uintptr_t>(manejador)) != 0;
}
