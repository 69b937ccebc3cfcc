#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace Meseta47::host {

static_assert(std::endian::native == std::endian::little, "LAS records are little-endian and are copied as they stand");

template <typename T>
[[nodiscard]] T load(std::uint8_t const* from) {
  T value;
  std::memcpy(&value, from, sizeof value);
  return value;
}

template <typename T>
void store(std::uint8_t* to, T value) {
  std::memcpy(to, &value, sizeof value);
}

/// Text of a field of fixed length, which ends at the first zero.
[[nodiscard]] inline std::string loadText(std::uint8_t const* from, std::size_t length) {
  const std::string_view field(reinterpret_cast<char const*>(from), length);
  return std::string(field.substr(0, field.find('\0')));
}

/// Text into a field of fixed length that holds zeros; what does not fit is cut.
inline void storeText(std::uint8_t* to, std::size_t length, std::string_view text) {
  const std::string_view fits = text.substr(0, length);
  std::memcpy(to, fits.data(), fits.size());
}

}  // namespace Meseta47::host
