#pragma once

#include <new>

#include "model/storage/CDeReserva.h"

// For the one source of each class of elements that instantiates CDeReserva.
namespace Meseta47 {

template <class T, bool kNumera>
CReserva& CDeReserva<T, kNumera>::Reserva() {
  static CReserva reserva(sizeof(T), kNumera);
  return reserva;
}

/// The calling thread's share of the pool, given up when the thread ends.
template <class T, bool kNumera>
struct CDeReserva<T, kNumera>::CParte {
  CReserva::CMonton* monton = nullptr;
  ~CParte() {
    if (monton != nullptr) Reserva().Abandona(monton);
  }
};

template <class T, bool kNumera>
inline CReserva::CMonton*& CDeReserva<T, kNumera>::MiMonton() {
  thread_local CParte parte;
  return parte.monton;
}

template <class T, bool kNumera>
void* CDeReserva<T, kNumera>::operator new(std::size_t bytes) {
  return bytes == sizeof(T) ? Reserva().Pide(MiMonton()) : ::operator new (bytes, std::align_val_t{alignof(T)});
}

template <class T, bool kNumera>
void CDeReserva<T, kNumera>::operator delete(void* sitio, std::size_t bytes) noexcept {
  if (bytes != sizeof(T)) {
    ::operator delete (sitio, std::align_val_t{alignof(T)});
  } else if (sitio != nullptr) {
    CReserva::Devuelve(sitio, MiMonton());
  }
}

template <class T, bool kNumera>
void CDeReserva<T, kNumera>::DestruyeLista(T* primero) noexcept {
  CReserva::CLote lote(MiMonton());
  while (primero != nullptr) {
    T* siguiente = primero->Sig();
    T::Deja(primero, lote);
    primero = siguiente;
  }
}

template <class T, bool kNumera>
void CDeReserva<T, kNumera>::Destruye(std::span<T* const> cuales) noexcept {
  CReserva::CLote lote(MiMonton());
  for (T* t : cuales) T::Deja(t, lote);
}

template <class T, bool kNumera>
void CDeReserva<T, kNumera>::EncogeReserva() noexcept {
  // Without a share there may be no pool either, and making one takes memory.
  if (CReserva::CMonton*& mio = MiMonton(); mio != nullptr) Reserva().Encoge(mio);
}

}  // namespace Meseta47
