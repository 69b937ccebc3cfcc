#include "model/storage/CReserva.h"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

#include "platform/Anticipa.h"
#include "platform/Memoria.h"

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

constexpr std::size_t kLinea = 64;                     // bytes of a cache line
[[maybe_unused]] constexpr std::size_t kAnticipo = 6;  // slots looked ahead: those of a new point's triangles
constexpr std::size_t kTrozo = 2 << 20;                // bytes of several blocks at once: a large page of most systems
constexpr std::size_t kSueltos = 64;  // blocks from which on a heap grows by such pieces: by an eighth at most

}  // namespace

struct CReserva::CMonton {
  // Addresses, not a chain through the slots: to follow one would mean to read each slot before it is used. Both lists
  // have room for every slot of the heap, so that giving back needs no memory.
  std::vector<void*> libres;       ///< slots given back, ready to be taken
  std::byte* siguiente = nullptr;  ///< first slot of the newest block that was never taken
  std::byte* fin = nullptr;
  std::size_t repartidas = 0;  ///< slots ever carved out of the blocks
  std::vector<void*> bloques;
  std::byte* bloqueSiguiente = nullptr;  ///< first block of the newest piece that is not in use yet
  std::byte* bloqueFin = nullptr;
  std::vector<std::pair<void*, std::size_t>> trozos;  ///< what the system gave, of one block or several; with its bytes
  alignas(kLinea) std::mutex cerrojo;
  std::vector<void*> devueltas;  ///< given back by other threads, under the lock
  std::atomic<bool> hayDevueltas{false};
  CMonton* siguienteHuerfano = nullptr;

  ~CMonton();
  /// Only when there are no free slots left.
  void Recoge() {
    const std::lock_guard guarda(cerrojo);
    libres.swap(devueltas);
    hayDevueltas.store(false, std::memory_order_relaxed);
  }
  void Devuelve(void* const* ranuras, std::size_t n) {
    const std::lock_guard guarda(cerrojo);
    devueltas.insert(devueltas.end(), ranuras, ranuras + n);
    hayDevueltas.store(true, std::memory_order_relaxed);
  }
  void Crece(std::size_t ranuras) {
    libres.reserve(libres.capacity() + ranuras);
    const std::lock_guard guarda(cerrojo);
    devueltas.reserve(libres.capacity());
  }
  /// One large page instead of hundreds: fewer faults, and fewer misses in the processor's table of pages when elements
  /// are visited that lie far apart.
  void PideTrozo() {
    const std::size_t bytes = bloques.size() < kSueltos ? kBloque : kTrozo;
    trozos.reserve(trozos.size() + 1);
    bloqueSiguiente = static_cast<std::byte*>(::operator new (bytes, std::align_val_t{bytes}));
    bloqueFin = bloqueSiguiente + bytes;
    trozos.emplace_back(bloqueSiguiente, bytes);
    if (bytes == kTrozo) EnPaginasGrandes(bloqueSiguiente, bytes);
  }
  [[nodiscard]] bool TodasEnCasa() {
    const std::lock_guard guarda(cerrojo);
    return libres.size() + devueltas.size() == repartidas;
  }
};

namespace {

CReserva::CCabecera* Cabecera(void const* ranura) {
  constexpr std::uintptr_t kDentro = CReserva::kBloque - 1;
  return reinterpret_cast<CReserva::CCabecera*>(reinterpret_cast<std::uintptr_t>(ranura) & ~kDentro);
}
[[maybe_unused]] CReserva::CMonton* Dueno(void const* ranura) { return Cabecera(ranura)->dueno; }

}  // namespace

CReserva::CMonton::~CMonton() {
  for (void* bloque : bloques) {
    if (const std::uint32_t numero = Cabecera(bloque)->numero; numero != 0) CNumeros::Quita(numero);
  }
  for (auto const& [trozo, bytes] : trozos) ::operator delete (trozo, std::align_val_t{bytes});
}

struct CReserva::CHuerfanos {
  std::mutex cerrojo;
  CMonton* primero = nullptr;  // they string themselves, so that giving one up needs no memory
};

CReserva::CReserva(std::size_t bytes, bool numera)
    : paso((bytes + kLinea - 1) / kLinea * kLinea), numerada(numera), huerfanos(new CHuerfanos) {}

CReserva::~CReserva() {
  while (CMonton* monton = huerfanos->primero) {
    huerfanos->primero = monton->siguienteHuerfano;
    if (monton->TodasEnCasa()) delete monton;
  }
  delete huerfanos;
}

void* CReserva::Pide(CMonton*& mio) {
#if URDIMBRE_SIN_RESERVA
  (void)mio;
  return static_cast<std::byte*>(::operator new (paso, std::align_val_t{kLinea}));
#else
  if (mio == nullptr) [[unlikely]] {
    mio = Adopta();
  }
  std::vector<void*>& libres = mio->libres;
  if (libres.empty()) {
    if (!mio->hayDevueltas.load(std::memory_order_relaxed)) return Talla(*mio);
    mio->Recoge();
  }
  void* ranura = libres.back();
  libres.pop_back();
  // What another thread gave back lies in its cache. Called for some requests ahead, it is here in time.
  if (const std::size_t quedan = libres.size(); quedan >= kAnticipo) {
    auto* venidera = static_cast<std::byte*>(libres[quedan - kAnticipo]);
    for (std::size_t i = 0; i < paso; i += kLinea) Anticipa(venidera + i);
  }
  return ranura;
#endif
}

/// A heap whose thread has ended, or a new one.
CReserva::CMonton* CReserva::Adopta() {
  const std::lock_guard guarda(huerfanos->cerrojo);
  if (huerfanos->primero == nullptr) return new CMonton;
  CMonton* monton = huerfanos->primero;
  huerfanos->primero = std::exchange(monton->siguienteHuerfano, nullptr);
  return monton;
}

/// A slot that was never taken, of a new block when the last one is used up.
void* CReserva::Talla(CMonton& monton) {
  if (monton.siguiente == monton.fin) {
    const std::size_t ranuras = kBloque / paso - 1;  // the first place is the header's
    monton.Crece(ranuras);
    monton.bloques.reserve(monton.bloques.size() + 1);
    if (monton.bloqueSiguiente == monton.bloqueFin) monton.PideTrozo();
    std::byte* bloque = monton.bloqueSiguiente;
    new (bloque) CCabecera{&monton, numerada ? CNumeros::Pon(bloque) : 0};
    monton.bloques.push_back(bloque);
    monton.bloqueSiguiente += kBloque;
    monton.siguiente = bloque + paso;
    monton.fin = monton.siguiente + ranuras * paso;
  }
  std::byte* ranura = monton.siguiente;
  monton.siguiente += paso;
  ++monton.repartidas;
  return ranura;
}

void CReserva::Devuelve(void* ranura, CMonton* mio) noexcept {
#if URDIMBRE_SIN_RESERVA
  (void)mio;
  ::operator delete (ranura, std::align_val_t{kLinea});
#else
  if (CMonton* dueno = Dueno(ranura); dueno == mio) {
    dueno->libres.push_back(ranura);
  } else {
    dueno->Devuelve(&ranura, 1);
  }
#endif
}

void CReserva::CLote::Anade(void* ranura) noexcept {
#if URDIMBRE_SIN_RESERVA
  Devuelve(ranura, mio);
#else
  CMonton* suyo = Dueno(ranura);
  if (suyo != dueno || cuantas == kCabida) Entrega();
  dueno = suyo;
  ranuras[cuantas++] = ranura;
#endif
}

void CReserva::CLote::Entrega() noexcept {
  if (cuantas == 0) return;
  if (dueno == mio) {
    mio->libres.insert(mio->libres.end(), ranuras, ranuras + cuantas);
  } else {
    dueno->Devuelve(ranuras, cuantas);
  }
  cuantas = 0;
}

bool CReserva::HayBloques() noexcept { return URDIMBRE_SIN_RESERVA == 0; }

void CReserva::Encoge(CMonton*& mio) noexcept {
  if (mio == nullptr || !mio->TodasEnCasa()) return;
  delete mio;
  mio = nullptr;
}

void CReserva::Abandona(CMonton*& mio) noexcept {
  Encoge(mio);
  if (mio == nullptr) return;
  const std::lock_guard guarda(huerfanos->cerrojo);
  mio->siguienteHuerfano = huerfanos->primero;
  huerfanos->primero = std::exchange(mio, nullptr);
}

}  // namespace Meseta47
