#include "model/CReserva.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <new>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#define URDIMBRE_SIN_RESERVA 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define URDIMBRE_SIN_RESERVA 1
#endif
#endif
#ifndef URDIMBRE_SIN_RESERVA
#define URDIMBRE_SIN_RESERVA 0
#endif

namespace Meseta47 {

namespace {

constexpr std::size_t kLinea = 64;           // bytes of a cache line
constexpr std::size_t kBloque = 256 * 1024;  // bytes of a block, and its alignment: a slot finds its block by masking

struct CRanura {
  CRanura* sig;
};

}  // namespace

struct CReserva::CMonton {
  CRanura* libres = nullptr;       ///< slots given back, ready to be taken
  std::byte* siguiente = nullptr;  ///< first slot of the newest block that was never taken
  std::byte* fin = nullptr;
  std::size_t repartidas = 0;  ///< slots ever carved out of the blocks
  std::vector<void*> bloques;
  alignas(kLinea) std::atomic<CRanura*> devueltas{nullptr};  ///< given back by other threads

  ~CMonton() {
    for (void* bloque : bloques) ::operator delete (bloque, std::align_val_t{kBloque});
  }
  void Recoge() {
    CRanura* lista = devueltas.exchange(nullptr, std::memory_order_acquire);
    if (lista == nullptr) return;
    CRanura* ultima = lista;
    while (ultima->sig != nullptr) ultima = ultima->sig;
    ultima->sig = libres;
    libres = lista;
  }
  [[nodiscard]] bool TodasEnCasa() {
    Recoge();
    std::size_t cuenta = 0;
    for (CRanura* r = libres; r != nullptr; r = r->sig) ++cuenta;
    return cuenta == repartidas;
  }
};

namespace {

/// First bytes of each block: whose it is.
struct CCabecera {
  CReserva::CMonton* dueno;
};

[[maybe_unused]] CReserva::CMonton* Dueno(void* ranura) {
  const auto bloque = reinterpret_cast<std::uintptr_t>(ranura) & ~(static_cast<std::uintptr_t>(kBloque) - 1);
  return reinterpret_cast<CCabecera*>(bloque)->dueno;
}

}  // namespace

struct CReserva::CHuerfanos {
  std::mutex cerrojo;
  std::vector<CMonton*> lista;
};

CReserva::CReserva(std::size_t bytes, std::size_t desfaseInicial)
    : paso((bytes + desfaseInicial + kLinea - 1) / kLinea * kLinea),
      desfase(desfaseInicial),
      huerfanos(new CHuerfanos) {}

CReserva::~CReserva() {
  for (CMonton* monton : huerfanos->lista) {
    if (monton->TodasEnCasa()) delete monton;
  }
  delete huerfanos;
}

void* CReserva::Pide(CMonton*& mio) {
#if URDIMBRE_SIN_RESERVA
  (void)mio;
  return static_cast<std::byte*>(::operator new (paso, std::align_val_t{kLinea})) + desfase;
#else
  if (mio == nullptr) {
    const std::lock_guard guarda(huerfanos->cerrojo);
    if (huerfanos->lista.empty()) {
      mio = new CMonton;
    } else {
      mio = huerfanos->lista.back();
      huerfanos->lista.pop_back();
    }
  }
  if (mio->libres == nullptr) mio->libres = mio->devueltas.exchange(nullptr, std::memory_order_acquire);
  if (CRanura* ranura = mio->libres; ranura != nullptr) {
    mio->libres = ranura->sig;
    return ranura;
  }
  if (mio->siguiente == mio->fin) {
    mio->bloques.reserve(mio->bloques.size() + 1);
    auto* bloque = static_cast<std::byte*>(::operator new (kBloque, std::align_val_t{kBloque}));
    mio->bloques.push_back(bloque);
    new (bloque) CCabecera{mio};
    mio->siguiente = bloque + kLinea;
    mio->fin = mio->siguiente + (kBloque - kLinea) / paso * paso;
  }
  std::byte* ranura = mio->siguiente + desfase;
  mio->siguiente += paso;
  ++mio->repartidas;
  return ranura;
#endif
}

void CReserva::Devuelve(void* ranura, CMonton* mio) noexcept {
#if URDIMBRE_SIN_RESERVA
  (void)mio;
  const auto inicio = reinterpret_cast<std::uintptr_t>(ranura) & ~(static_cast<std::uintptr_t>(kLinea) - 1);
  ::operator delete (reinterpret_cast<void*>(inicio), std::align_val_t{kLinea});
#else
  auto* libre = new (ranura) CRanura{nullptr};
  CMonton* dueno = Dueno(ranura);
  if (dueno == mio) {
    libre->sig = mio->libres;
    mio->libres = libre;
    return;
  }
  CRanura* cabeza = dueno->devueltas.load(std::memory_order_relaxed);
  do {
    libre->sig = cabeza;
  } while (
      !dueno->devueltas.compare_exchange_weak(cabeza, libre, std::memory_order_release, std::memory_order_relaxed));
#endif
}

void CReserva::Encoge(CMonton*& mio) noexcept {
  if (mio == nullptr || !mio->TodasEnCasa()) return;
  delete mio;
  mio = nullptr;
}

void CReserva::Abandona(CMonton*& mio) noexcept {
  Encoge(mio);
  if (mio == nullptr) return;
  const std::lock_guard guarda(huerfanos->cerrojo);
  huerfanos->lista.push_back(mio);
  mio = nullptr;
}

}  // namespace Meseta47
