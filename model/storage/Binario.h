#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "platform/CFile.h"

namespace Meseta47 {

// Binary files are little-endian, and so is every machine that this is built for: records go out as they lie in memory.
static_assert(std::endian::native == std::endian::little);

/// A plain value to or from a file. False when the disk refuses, or on a short read.
template <class T>
[[nodiscard]] bool Escribe(CFile& fichero, T const& valor) {
  static_assert(std::is_trivially_copyable_v<T>);
  return fichero.Write(&valor, sizeof(T));
}
template <class T>
[[nodiscard]] bool Lee(CFile& fichero, T& valor) {
  static_assert(std::is_trivially_copyable_v<T>);
  return fichero.Read(&valor, sizeof(T)) == sizeof(T);
}

/// Reads so many values. Memory is asked for as they come, so that a false count in a damaged file costs nothing.
template <class T>
[[nodiscard]] bool LeeVector(CFile& fichero, std::uint32_t cuantos, std::vector<T>& valores) {
  constexpr std::size_t kBloque = (1u << 16) / sizeof(T);
  valores.clear();
  while (valores.size() < cuantos) {
    const std::size_t desde = valores.size();
    valores.resize(std::min<std::size_t>(cuantos, desde + kBloque));
    const auto bytes = static_cast<unsigned>((valores.size() - desde) * sizeof(T));
    if (fichero.Read(valores.data() + desde, bytes) != bytes) return false;
  }
  return true;
}

}  // namespace Meseta47
