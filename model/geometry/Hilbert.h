#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace Meseta47 {

namespace hilbert {

/// How the curve lies in a square: coordinates complemented, and then exchanged, before its basic form applies. The two
/// commute, so that four orientations are enough.
struct COrientacion {
  unsigned complemento;  ///< 0 or 1
  unsigned cambio;       ///< 0 or 1
};

/// Goes one level down: takes a bit of each axis, gives the place of that quadrant on the curve (0 to 3) and turns the
/// orientation into that of the quadrant. The basic form goes up, right and down; its first quadrant is transposed and
/// its last one transposed the other way.
constexpr unsigned Baja(unsigned x, unsigned y, COrientacion& o) {
  x ^= o.complemento;
  y ^= o.complemento;
  const unsigned rx = o.cambio != 0 ? y : x, ry = o.cambio != 0 ? x : y;
  if (ry == 0) {
    o.complemento ^= rx;
    o.cambio ^= 1;
  }
  return (3 * rx) ^ ry;
}

/// Four levels at once. The index is orientation, four bits of x and four of y; the entry, the orientation below and
/// eight bits of place.
constexpr std::array<std::uint16_t, 1024> Tabla() {
  std::array<std::uint16_t, 1024> tabla{};
  for (unsigned i = 0; i < 1024; ++i) {
    COrientacion o{i >> 9, (i >> 8) & 1};
    unsigned lugar = 0;
    for (unsigned bit = 4; bit-- > 0;) lugar = lugar << 2 | Baja(i >> (4 + bit) & 1, i >> bit & 1, o);
    tabla[i] = static_cast<std::uint16_t>((o.complemento << 9 | o.cambio << 8) | lugar);
  }
  return tabla;
}
inline constexpr std::array<std::uint16_t, 1024> kTabla = Tabla();

/// Place of the coordinates of so many bits, four at a time.
template <int kBits>
constexpr std::uint64_t Lugar(std::uint32_t x, std::uint32_t y) noexcept {
  std::uint64_t lugar = 0;
  unsigned orientacion = 0;
  for (int bit = kBits - 4; bit >= 0; bit -= 4) {
    const unsigned entrada = kTabla[orientacion | (x >> bit & 15) << 4 | (y >> bit & 15)];
    lugar = lugar << 8 | (entrada & 0xFF);
    orientacion = entrada & 0x300;
  }
  return lugar;
}

}  // namespace hilbert

/// Place of (x, y) on the Hilbert curve that fills the square of 2^32 by 2^32: a number of its own for each pair, and
/// numbers in a row are neighbours. The curve of a smaller square at the origin is the beginning of it, transposed for
/// every odd power of two. Eight look-ups in a table of 2 KB.
[[nodiscard]] constexpr std::uint64_t Hilbert(std::uint32_t x, std::uint32_t y) noexcept {
  return hilbert::Lugar<32>(x, y);
}

/// The same of two numbers below 2^16, on the curve over their square: the upper half of Hilbert(x << 16, y << 16).
[[nodiscard]] constexpr std::uint32_t Hilbert16(std::uint32_t x, std::uint32_t y) noexcept {
  return static_cast<std::uint32_t>(hilbert::Lugar<16>(x, y));
}

}  // namespace Meseta47
