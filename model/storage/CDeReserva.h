#pragma once

#include <cstddef>
#include <span>

#include "model/storage/CReserva.h"
#include "platform/Exporta.h"

namespace Meseta47 {

/// Gives the elements of a class a pool of their own, as its base: `class CTriangulo2D : public
/// CDeReserva<CTriangulo2D>`. They are made with `new` and die with `delete` as any other, from any thread; what
/// derives from the class and is larger comes from the usual heap. With `kNumera` the slots have numbers (see
/// CReserva).
///
/// The pool is the library's: one source of it includes CDeReserva_Define.h and instantiates the base for its class.
template <class T, bool kNumera = false>
class CDeReserva {
 public:
  URDIMBRE_API static void* operator new(std::size_t bytes);
  static void* operator new(std::size_t, void* sitio) noexcept { return sitio; }
  URDIMBRE_API static void operator delete(void* sitio, std::size_t bytes) noexcept;
  static void operator delete(void*, void*) noexcept {}
  /// Destroys the elements of a list that starts with `primero`, none of which may be linked to one that lives on. One
  /// exchange with the thread that made them, whatever their number.
  URDIMBRE_API static void DestruyeLista(T* primero) noexcept;
  /// The same of those in `cuales`, which are in no list.
  URDIMBRE_API static void Destruye(std::span<T* const> cuales) noexcept;
  /// Returns to the system the calling thread's share of the pool, if nothing of it is in use.
  URDIMBRE_API static void EncogeReserva() noexcept;

 protected:
  /// How these end one element. A class whose elements may live elsewhere, or whose destructor has something to do even
  /// then, has its own.
  static void Deja(T* t, CReserva::CLote& lote) noexcept { lote.Anade(t); }

 private:
  struct CParte;
  static CReserva& Reserva();
  static CReserva::CMonton*& MiMonton();
};

}  // namespace Meseta47
