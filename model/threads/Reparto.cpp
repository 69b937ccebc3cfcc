#include "model/threads/Reparto.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <new>
#include <vector>

#include "platform/Manejadores.h"
#include "platform/Procesadores.h"

namespace Meseta47 {

namespace {

struct Reparto {
  std::size_t total, bloque;
  std::function<void(std::size_t, std::size_t)> const& trabajo;
  std::atomic<std::size_t> siguiente{0};
  std::atomic<bool> cancelado{false}, faltoMemoria{false};

  /// Does one more block. False when there is none left. Whoever takes a block sees all that others did before
  /// they took their last ones: memory may go round between blocks.
  bool Bloque() {
    if (cancelado.load(std::memory_order_relaxed)) return false;
    const std::size_t desde = siguiente.fetch_add(bloque, std::memory_order_acq_rel);
    if (desde >= total) return false;
    trabajo(desde, desde + std::min(bloque, total - desde));
    return true;
  }
};

unsigned long Ayuda(void* suyo) {
  auto* reparto = static_cast<Reparto*>(suyo);
  try {
    while (reparto->Bloque()) {
    }
  } catch (std::bad_alloc const&) {
    reparto->faltoMemoria = reparto->cancelado = true;
  }
  return 0;
}

/// The threads that help. Whatever ends the work, they are waited for: it lies on the stack of who shared it out.
class CAyudantes {
 public:
  CAyudantes(Reparto& reparto, std::size_t cuantos) : suyo(reparto), hilos(cuantos) {
    for (HANDLE& hilo : hilos) hilo = CreateThread(nullptr, 0, Ayuda, &suyo, 0, nullptr);
  }
  CAyudantes(CAyudantes const&) = delete;
  CAyudantes& operator=(CAyudantes const&) = delete;
  ~CAyudantes() {
    if (std::uncaught_exceptions() > antes) suyo.cancelado = true;
    for (HANDLE hilo : hilos) {
      if (hilo == nullptr) continue;
      WaitForSingleObject(hilo, INFINITE);
      CloseHandle(hilo);
    }
  }

 private:
  Reparto& suyo;
  std::vector<HANDLE> hilos;
  int antes = std::uncaught_exceptions();
};

}  // namespace

bool Reparte(std::size_t total, std::size_t bloque, std::function<void(std::size_t, std::size_t)> const& trabajo,
             std::function<bool(std::size_t)> const& avisa, unsigned ocupados) {
  Reparto reparto{total, bloque, trabajo};
  const std::size_t bloques = std::max<std::size_t>((total + bloque - 1) / bloque, 1);
  const unsigned procesadores = NumeroProcesadores(), libres = procesadores - std::min(procesadores - 1, ocupados);
  {
    const CAyudantes ayudantes(reparto, std::min<std::size_t>(libres, bloques) - 1);
    while (reparto.Bloque()) {
      if (avisa && !avisa(std::min(reparto.siguiente.load(std::memory_order_relaxed), total))) reparto.cancelado = true;
    }
  }
  if (reparto.faltoMemoria) throw std::bad_alloc();
  return !reparto.cancelado;
}

}  // namespace Meseta47
