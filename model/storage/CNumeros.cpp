#include "model/storage/CNumeros.h"

#include <mutex>
#include <new>
#include <vector>

namespace Meseta47 {

std::byte* CNumeros::bloques[kCuantos];

namespace {

struct CLibres {
  std::mutex cerrojo;
  std::vector<std::uint32_t> devueltos;  ///< with room for all that are in use, so that giving back needs no memory
  std::uint32_t siguiente = 1;           ///< the first that was never given
};

/// Never destroyed: elements may outlive whatever else is static.
CLibres& Libres() {
  static auto* libres = new CLibres;
  return *libres;
}

}  // namespace

std::uint32_t CNumeros::Pon(void* bloque) {
  CLibres& libres = Libres();
  const std::lock_guard guarda(libres.cerrojo);
  std::uint32_t numero = libres.siguiente;
  if (!libres.devueltos.empty()) {
    numero = libres.devueltos.back();
    libres.devueltos.pop_back();
  } else {
    if (numero == kCuantos) throw std::bad_alloc();
    if (libres.devueltos.capacity() < numero) libres.devueltos.reserve(std::size_t{2} * numero);
    ++libres.siguiente;
  }
  bloques[numero] = static_cast<std::byte*>(bloque);
  return numero;
}

void CNumeros::Quita(std::uint32_t bloque) noexcept {
  CLibres& libres = Libres();
  const std::lock_guard guarda(libres.cerrojo);
  bloques[bloque] = nullptr;
  libres.devueltos.push_back(bloque);
}

}  // namespace Meseta47
