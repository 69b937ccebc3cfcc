#pragma once

#include <array>
#include <bit>
#include <cstdint>

#include "host/laz/EntropyModel.h"

namespace Meseta47::host::laz {

/// Sum and difference modulo 2^32: coordinates of damaged files may be anything.
[[nodiscard]] inline std::int32_t plus(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
[[nodiscard]] inline std::int32_t minus(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

/// Numbers of `Bits` bits, 8 to 32, coded as what corrects a prediction: first how many bits the correction has, under
/// a model of the context's own, then which of the numbers of so many bits it is. All arithmetic is modulo 2^Bits.
template <unsigned Bits, unsigned Contexts = 1>
class IntegerModel {
  static constexpr unsigned kModelled = 8;  // bits of a correction whose frequencies are worth keeping
  static constexpr unsigned kClasses = 48;  // room for 33 lengths

 public:
  using Length = SymbolModel<kClasses>;  ///< of corrections under one context: 0 to `Bits`

  IntegerModel() { reset(); }

  void reset() {
    static constexpr Length kNewLength(Bits + 1);
    lengths_.fill(kNewLength);
    single_ = BitModel();
    for (unsigned k = 1; k <= Bits; ++k) corrections_[k - 1].reset(1U << (k < kModelled ? k : kModelled));
  }

  /// Codes a number whose prediction both sides know; what is returned of numbers below 32 bits is not negative.
  template <class Coder>
  std::int32_t code(Coder& coder, std::int32_t predicted, std::int32_t number, unsigned context = 0) {
    return code(coder, lengths_[context], predicted, number);
  }

  /// The same under a context that the caller keeps.
  template <class Coder>
  std::int32_t code(Coder& coder, Length& length, std::int32_t predicted, std::int32_t number) {
    const auto from = static_cast<std::uint32_t>(predicted);
    const std::uint32_t by = correction(coder, folded(static_cast<std::uint32_t>(number) - from), length);
    return static_cast<std::int32_t>((from + by) & kMask);
  }

  /// Bits of the last correction, which are a context for what follows: 0 for corrections of 0 and 1.
  [[nodiscard]] unsigned lastBits() const { return lastBits_; }

 private:
  static constexpr std::uint32_t kMask = Bits < 32 ? (1U << (Bits % 32)) - 1 : 0xffffffffU;

  /// The correction of least magnitude that is the same modulo 2^Bits, as a number of 32 bits in two's complement.
  static std::uint32_t folded(std::uint32_t difference) {
    constexpr std::uint32_t kSign = 1U << (Bits - 1);
    return ((difference & kMask) ^ kSign) - kSign;
  }

  // Corrections of k bits are those from 1 - 2^k to -2^(k-1), and from 2^(k-1) + 1 to 2^k: without the gap between them
  // they are numbered from 0 to 2^k - 1. The most negative of 32 bits is alone in having 32.
  template <class Coder>
  std::uint32_t correction(Coder& coder, std::uint32_t wanted, Length& length) {
    unsigned k = 0;
    if constexpr (Coder::kEncodes) {
      k = static_cast<unsigned>(std::bit_width(static_cast<std::int32_t>(wanted) <= 0 ? 0 - wanted : wanted - 1));
    }
    k = lastBits_ = coder.symbol(length, k);
    if (k == 0) return coder.bit(single_, wanted);
    if (k >= 32) return 0x80000000U;
    const std::uint32_t lowest = 1U - (1U << k);
    std::uint32_t place = static_cast<std::int32_t>(wanted) < 0 ? wanted - lowest : wanted - 1;
    if (k <= kModelled) {
      place = coder.symbol(corrections_[k - 1], place);
    } else {
      const unsigned plain = k - kModelled;
      const std::uint32_t high = coder.symbol(corrections_[k - 1], place >> plain);
      place = high << plain | coder.bits(plain, place & ((1U << plain) - 1));
    }
    return place + lowest + (place >> (k - 1) << k);  // below the gap or behind it, which is unpredictable: no branch
  }

  std::array<Length, Contexts> lengths_;
  BitModel single_;
  std::array<SymbolModel<1U << kModelled>, Bits> corrections_;  // by number of bits, from 1
  unsigned lastBits_ = 0;
};

}  // namespace Meseta47::host::laz
