#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/Exporta.h"

namespace Meseta47 {

/// Numbers of 32 bits for elements that link to one another by the million, where a pointer would take twice the room.
/// A number is that of a block and the place in it; a block is what a pool takes from the system, or a single element
/// that lives elsewhere. 0 is nobody's number.
///
/// Blocks are numbered and forgotten under a lock. Whoever has a number reads the block's address without one.
class URDIMBRE_API CNumeros {
 public:
  static constexpr unsigned kBitsDeSitio = 11;  ///< 2048 places a block: 256 KB of elements of 128 bytes

  /// Gives the block a number. Throws std::bad_alloc when there are none left: 2 million are in use then.
  [[nodiscard]] static std::uint32_t Pon(void* bloque);
  static void Quita(std::uint32_t bloque) noexcept;

  [[nodiscard]] static constexpr std::uint32_t Numero(std::uint32_t bloque, std::uint32_t sitio) {
    return bloque << kBitsDeSitio | sitio;
  }
  [[nodiscard]] static constexpr std::uint32_t Bloque(std::uint32_t numero) { return numero >> kBitsDeSitio; }
  /// Where the element with that number lives, in a pool whose slots are `PASO` bytes apart.
  template <std::size_t PASO>
  [[nodiscard]] static std::byte* Direccion(std::uint32_t numero) {
    constexpr std::uint32_t kSitio = (1U << kBitsDeSitio) - 1;
    return bloques[Bloque(numero)] + (numero & kSitio) * PASO;
  }

 private:
  static constexpr std::size_t kCuantos = std::size_t{1} << (32 - kBitsDeSitio);
  static std::byte* bloques[kCuantos];  ///< by number; pages of it that no block needs take no memory
};

}  // namespace Meseta47
