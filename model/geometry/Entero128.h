#pragma once

#include <cstdint>

namespace Meseta47 {

/// An integer modulo 2^128, read as one with a sign: for determinants of coordinates, whose partial results may
/// overflow as long as the final one fits.
class Entero128 {
 public:
#ifdef __SIZEOF_INT128__
  explicit Entero128(std::int64_t v) : valor(static_cast<Palabra>(static_cast<PalabraConSigno>(v))) {}
  [[nodiscard]] std::uint64_t Alto() const { return static_cast<std::uint64_t>(valor >> 64); }
  [[nodiscard]] std::uint64_t Bajo() const { return static_cast<std::uint64_t>(valor); }
  Entero128 operator+(Entero128 o) const { return De(valor + o.valor); }
  Entero128 operator-(Entero128 o) const { return De(valor - o.valor); }
  Entero128 operator*(Entero128 o) const { return De(valor * o.valor); }

 private:
  __extension__ using Palabra = unsigned __int128;
  __extension__ using PalabraConSigno = __int128;
  static Entero128 De(Palabra v) {
    Entero128 r(0);
    r.valor = v;
    return r;
  }
  Palabra valor;

 public:
#else
  explicit Entero128(std::int64_t v) : bajo(static_cast<std::uint64_t>(v)), alto(v < 0 ? ~std::uint64_t{0} : 0) {}
  [[nodiscard]] std::uint64_t Alto() const { return alto; }
  [[nodiscard]] std::uint64_t Bajo() const { return bajo; }
  Entero128 operator+(Entero128 o) const {
    const std::uint64_t suma = bajo + o.bajo;
    return {suma, alto + o.alto + (suma < bajo ? 1 : 0)};
  }
  Entero128 operator-(Entero128 o) const { return {bajo - o.bajo, alto - o.alto - (bajo < o.bajo ? 1 : 0)}; }
  Entero128 operator*(Entero128 o) const {
    constexpr std::uint64_t kMitad = 0xFFFFFFFF;
    const std::uint64_t a0 = bajo & kMitad, a1 = bajo >> 32, b0 = o.bajo & kMitad, b1 = o.bajo >> 32;
    const std::uint64_t medio = a1 * b0 + (a0 * b0 >> 32), cruce = a0 * b1 + (medio & kMitad);
    return {bajo * o.bajo, a1 * b1 + (medio >> 32) + (cruce >> 32) + bajo * o.alto + alto * o.bajo};
  }

 private:
  Entero128(std::uint64_t elBajo, std::uint64_t elAlto) : bajo(elBajo), alto(elAlto) {}
  std::uint64_t bajo, alto;

 public:
#endif
  /// -1, 0 or +1.
  [[nodiscard]] int Signo() const {
    if (Alto() >> 63 != 0) return -1;
    return (Alto() | Bajo()) != 0 ? 1 : 0;
  }
  /// The value, to one part in 2^52.
  [[nodiscard]] double Valor() const {
    if (Alto() >> 63 != 0) return -(Entero128(0) - *this).Valor();
    return static_cast<double>(Alto()) * 0x1p64 + static_cast<double>(Bajo());
  }
};

}  // namespace Meseta47
