#include "platform/Proceso.h"

#include <atomic>
#include <cstring>
#include <limits>
#include <malloc.h>
#include <memory>
#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

std::atomic<bool> interrumpido{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may only touch what takes no lock");

extern "C" void AnotaInterrupcion(int senal) {
  if (interrumpido.exchange(true)) {
    ::signal(senal, SIG_DFL);
    ::raise(senal);
  }
}

void PonManejador(int senal, void (*manejador)(int)) {
  struct sigaction accion {};
  accion.sa_handler = manejador;
  accion.sa_flags = SA_RESTART;
  ::sigemptyset(&accion.sa_mask);
  ::sigaction(senal, &accion, nullptr);
}

bool EstaIgnorada(int senal) {
  struct sigaction accion {};
  return ::sigaction(senal, nullptr, &accion) == 0 && accion.sa_handler == SIG_IGN;
}

/// The number of kilobytes on the line of /proc/self/status that begins with `clave`, in bytes.
unsigned long long LineaDeEstado(char const* clave) {
  struct Cierra {
    void operator()(std::FILE* fichero) const { std::fclose(fichero); }
  };
  const std::unique_ptr<std::FILE, Cierra> estado(std::fopen("/proc/self/status", "re"));
  char linea[256];
  while (estado != nullptr && std::fgets(linea, sizeof linea, estado.get()) != nullptr) {
    unsigned long long kilobytes = 0;
    const std::size_t largo = std::strlen(clave);
    if (std::strncmp(linea, clave, largo) == 0 && std::sscanf(linea + largo, "%llu", &kilobytes) == 1) {
      return kilobytes * 1024;
    }
  }
  return 0;
}

}  // namespace

// A fixed limit: one that grows with what is freed, as by default, soon keeps blocks of 32 MB.
void DevuelveMemoriaLibre() {
  constexpr int kGrande = 1 << 20;
  ::mallopt(M_MMAP_THRESHOLD, kGrande);
  ::mallopt(M_TRIM_THRESHOLD, kGrande);
}

void GuardaMemoriaLibre() {
  constexpr int kTodo = std::numeric_limits<int>::max();
  ::mallopt(M_MMAP_THRESHOLD, kTodo);
  ::mallopt(M_TRIM_THRESHOLD, kTodo);
  ::mallopt(M_ARENA_MAX, 1);  // what one thread frees serves the others
}

unsigned long long MemoriaResidente() { return LineaDeEstado("VmRSS:"); }

// Not from getrusage: the figure there also counts the program that this one was started from.
unsigned long long MemoriaResidenteMaxima() { return LineaDeEstado("VmHWM:"); }

std::vector<std::string> Argumentos(int cuantos, char const* const* argumentos) {
  return {argumentos, argumentos + cuantos};
}

void PonSalidaUtf8() {}  // it is so already

bool EsTerminal(std::FILE* salida) { return salida != nullptr && ::isatty(::fileno(salida)) == 1; }

unsigned ColumnasTerminal(std::FILE* salida) {
  struct winsize tamano {};
  const bool sabe = salida != nullptr && ::ioctl(::fileno(salida), TIOCGWINSZ, &tamano) == 0 && tamano.ws_col > 0;
  return sabe ? tamano.ws_col : 80;
}

void PonManejadorInterrupcion() {
  PonManejador(SIGINT, AnotaInterrupcion);
  PonManejador(SIGTERM, AnotaInterrupcion);
  PonManejador(SIGQUIT, AnotaInterrupcion);
  if (!EstaIgnorada(SIGHUP)) {  // whoever started the program may have asked that it outlive its terminal
    PonManejador(SIGHUP, AnotaInterrupcion);
  }
  PonManejador(SIGPIPE, SIG_IGN);
  PonManejador(SIGXFSZ, SIG_IGN);
}

bool Interrumpido() { return interrumpido.load(std::memory_order_relaxed); }

void OlvidaInterrupcion() { interrumpido.store(false); }
