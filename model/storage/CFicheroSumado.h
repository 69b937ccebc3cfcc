#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "model/storage/VectorCrudo.h"

class CFile;

namespace Meseta47 {

// Files are little-endian, and records go to them as they stand in memory.
static_assert(std::endian::native == std::endian::little);

/// Running sum of a section of a file: for every 8 bytes, taken as a little-endian integer, the sum is exclusive-ored
/// with it and multiplied by 1099511628211; it starts at 14695981039346656037, and zeros fill up the last 8 bytes.
/// (Fowler, Noll and Vo's 64-bit hash 1a, a word instead of a byte at a time: each step is reversible, so that one
/// changed word never goes unseen.)
class CSuma {
 public:
  void Suma(char const* bytes, std::size_t cuantos);  ///< a multiple of 8, but for the last piece
  [[nodiscard]] std::uint64_t Valor() const { return valor; }

 private:
  std::uint64_t valor = 14695981039346656037u;
};

/// Writes a section and behind it its sum, a block at a time. A refused write is remembered to the end.
class CSeccionSalida {
 public:
  explicit CSeccionSalida(CFile& elFichero) : fichero(elFichero), bloque(kBloque) {}

  void Pon(void const* datos, std::size_t cuantos);
  template <class T>
  void Pon(T const& valor) requires std::is_trivially_copyable_v<T> {
    Pon(&valor, sizeof valor);
  }
  /// Writes what is left, and the sum. False when this or an earlier write was refused.
  [[nodiscard]] bool Cierra();
  [[nodiscard]] bool Va() const { return va; }

 private:
  static constexpr std::size_t kBloque = 1 << 18;
  void Vuelca();

  CFile& fichero;
  VectorCrudo<char> bloque;
  std::size_t lleno = 0;
  CSuma suma;
  bool va = true;
};

/// Reads a section and compares its sum.
class CSeccionEntrada {
 public:
  explicit CSeccionEntrada(CFile& elFichero);

  /// False when the file ends before.
  [[nodiscard]] bool Toma(void* destino, std::size_t cuantos);
  template <class T>
  [[nodiscard]] bool Toma(T& valor) requires std::is_trivially_copyable_v<T> {
    return Toma(static_cast<void*>(&valor), sizeof valor);
  }
  /// Whether so many records of that size, and the sum, can still follow. Asked before memory is taken for them: the
  /// count of a damaged file may be anything.
  [[nodiscard]] bool Caben(std::uint64_t cuantos, std::size_t tamano) const;
  /// Reads the sum. kHecho, kFicheroCortado, or kFicheroInconsistente when it is another.
  [[nodiscard]] int Cierra();

 private:
  CFile& fichero;
  std::uint64_t restante;  // bytes of the file from the start of the section that have not been taken
  char resto[8] = {};      // taken, not yet summed
  std::size_t enResto = 0;
  CSuma suma;
};

}  // namespace Meseta47
