#include "model/Reparto.h"

#include <algorithm>
#include <atomic>
#include <vector>

#include "platform/Manejadores.h"
#include "platform/Procesadores.h"

namespace Meseta47 {

namespace {

struct Reparto {
  std::size_t total, bloque;
  std::function<void(std::size_t, std::size_t)> const& trabajo;
  std::atomic<std::size_t> siguiente{0};
  std::atomic<bool> cancelado{false};

  /// Does one more block. False when there is none left.
  bool Bloque() {
    if (cancelado.load(std::memory_order_relaxed)) return false;
    const std::size_t desde = siguiente.fetch_add(bloque, std::memory_order_relaxed);
    if (desde >= total) return false;
    trabajo(desde, desde + std::min(bloque, total - desde));
    return true;
  }
};

unsigned long Ayuda(void* reparto) {
  while (static_cast<Reparto*>(reparto)->Bloque()) {
  }
  return 0;
}

}  // namespace

bool Reparte(std::size_t total, std::size_t bloque, std::function<void(std::size_t, std::size_t)> const& trabajo,
             std::function<bool(std::size_t)> const& avisa) {
  Reparto reparto{total, bloque, trabajo};
  const std::size_t bloques = (total + bloque - 1) / bloque;
  std::vector<HANDLE> ayudantes(std::min<std::size_t>(NumeroProcesadores(), std::max<std::size_t>(bloques, 1)) - 1);
  for (HANDLE& hilo : ayudantes) hilo = CreateThread(nullptr, 0, Ayuda, &reparto, 0, nullptr);
  while (reparto.Bloque()) {
    if (avisa && !avisa(std::min(reparto.siguiente.load(std::memory_order_relaxed), total))) reparto.cancelado = true;
  }
  for (HANDLE hilo : ayudantes) {
    if (hilo == nullptr) continue;
    WaitForSingleObject(hilo, INFINITE);
    CloseHandle(hilo);
  }
  return !reparto.cancelado;
}

}  // namespace Meseta47
