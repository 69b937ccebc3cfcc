#pragma once

#include <cstddef>
#include <cstdint>

#include "model/storage/CNumeros.h"
#include "platform/Exporta.h"

namespace Meseta47 {

/// Pool of slots of one size, for elements that are made and destroyed by the million, one by one. A slot is asked for
/// and given back in a few instructions and may be given back by another thread than the one that took it: it then
/// returns to the thread that took it. Slots start at a multiple of 64 bytes, so that an element can decide what of it
/// shares a cache line.
///
/// One object a class of element, for the whole process. Thread-safe. Built with the address sanitizer it hands
/// each request on to the system, so that a use after destruction is seen.
class URDIMBRE_API CReserva {
 public:
  /// Slots for elements of `bytes` bytes. With `numera` they have numbers as well.
  explicit CReserva(std::size_t bytes, bool numera = false);
  ~CReserva();
  CReserva(CReserva const&) = delete;
  CReserva& operator=(CReserva const&) = delete;

  static constexpr std::size_t kBloque = 256 * 1024;  ///< bytes of a block, and its alignment
  struct CMonton;                                     ///< what one thread holds of the pool
  /// First bytes of each block, which its slots find by masking: whose it is, and its number, 0 without one.
  struct CCabecera {
    CMonton* dueno;
    std::uint32_t numero;
  };

  /// A slot, uninitialised. Throws std::bad_alloc when the system has no memory. `mio` is a thread_local of the caller,
  /// one a thread and pool, null at first.
  [[nodiscard]] void* Pide(CMonton*& mio);
  /// Gives a slot back, from any thread. `mio` as above: the caller's own, maybe null.
  static void Devuelve(void* ranura, CMonton* mio) noexcept;
  /// Whether slots come from blocks of the pool; with the address sanitizer they don't, and have no number.
  [[nodiscard]] static bool HayBloques() noexcept;
  /// The number of a slot of a pool that numbers them, its slots `PASO` bytes apart: what `CNumeros` calls it.
  template <std::size_t PASO>
  [[nodiscard]] static std::uint32_t Numero(void const* ranura) noexcept {
    const auto lugar = reinterpret_cast<std::uintptr_t>(ranura);
    const std::uintptr_t desde = lugar & (kBloque - 1);
    return CNumeros::Numero(reinterpret_cast<CCabecera const*>(lugar - desde)->numero,
                            static_cast<std::uint32_t>(desde / PASO));
  }

  /// Slots given back together, a few dozen in one exchange with the thread that took them. Done when the object dies.
  /// What lies in a slot is left alone: a thread that takes it again does not wait for it to come from another's cache.
  class CLote {
   public:
    explicit CLote(CMonton* suyo) noexcept : mio(suyo) {}
    CLote(CLote const&) = delete;
    CLote& operator=(CLote const&) = delete;
    ~CLote() { Entrega(); }
    void Anade(void* ranura) noexcept;

   private:
    static constexpr unsigned kCabida = 64;
    void Entrega() noexcept;

    CMonton* mio;
    CMonton* dueno = nullptr;
    unsigned cuantas = 0;
    void* ranuras[kCabida];
  };
  /// Returns to the system what the calling thread holds, when none of its slots is in use; else does nothing.
  void Encoge(CMonton*& mio) noexcept;
  /// The calling thread ends: its slots in use stay valid, and whoever comes next takes over the rest.
  void Abandona(CMonton*& mio) noexcept;

 private:
  struct CHuerfanos;
  CMonton* Adopta();
  void* Talla(CMonton& monton);
  std::size_t paso;  ///< bytes from slot to slot
  bool numerada;
  CHuerfanos* huerfanos;  ///< heaps whose thread has ended with slots still in use
};

}  // namespace Meseta47
