#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/laz/EntropyModel.h"

namespace Meseta47::host::laz {

/// Arithmetic encoder: appends to bytes of its own. Each operation returns the value that it was given, so that one
/// description of a record serves this and EntropyDecoder.
class EntropyEncoder {
 public:
  static constexpr bool kEncodes = true;

  /// Begins anew, with no bytes.
  void restart() {
    bytes_.clear();
    base_ = 0;
    length_ = 0xffffffffU;
  }

  template <unsigned Capacity>
  unsigned symbol(SymbolModel<Capacity>& model, unsigned symbol) {
    const std::uint32_t unit = length_ >> model.kShareBits;
    const std::uint32_t low = model.start(symbol) * unit;
    const std::uint32_t high = symbol == model.last() ? length_ : model.start(symbol + 1) * unit;
    advance(low, high - low);
    model.note(symbol);
    return symbol;
  }

  unsigned bit(BitModel& model, unsigned bit) {
    const std::uint32_t zeros = model.zeroShare() * (length_ >> model.kShareBits);
    advance(bit != 0 ? zeros : 0, bit != 0 ? length_ - zeros : zeros);
    model.note(bit);
    return bit;
  }

  /// Bits without a model, 1 to 32 of them; `value` has no others.
  std::uint32_t bits(unsigned count, std::uint32_t value) {
    constexpr unsigned kMostAtOnce = 19;
    if (count <= kMostAtOnce) {
      fewBits(count, value);
    } else {
      fewBits(16, value & 0xffffU);
      fewBits(count - 16, value >> 16U);
    }
    return value;
  }

  std::uint64_t bits64(std::uint64_t value) {
    bits(32, static_cast<std::uint32_t>(value));
    bits(32, static_cast<std::uint32_t>(value >> 32U));
    return value;
  }

  /// Ends what was begun and gives all its bytes, the four included that a decoder looks ahead: it has read exactly
  /// these bytes after the last symbol. They stay until the next restart().
  std::vector<std::uint8_t> const& finish() {
    constexpr std::uint32_t kLeast = 1U << 24U;
    if (length_ > 2 * kLeast) {
      advance(kLeast, kLeast / 2);
      bytes_.push_back(0);
    } else {
      advance(kLeast / 2, kLeast >> 9U);
    }
    bytes_.insert(bytes_.end(), 2, 0);
    return bytes_;
  }

 private:
  void fewBits(unsigned count, std::uint32_t value) {
    const std::uint32_t unit = length_ >> count;
    advance(value * unit, unit);
  }

  void advance(std::uint32_t by, std::uint32_t length) {
    base_ += by;
    if (base_ < by) carry();
    length_ = length;
    while (length_ < 1U << 24U) {
      bytes_.push_back(static_cast<std::uint8_t>(base_ >> 24U));
      base_ <<= 8U;
      length_ <<= 8U;
    }
  }

  void carry() {
    std::size_t place = bytes_.size();
    while (bytes_[--place] == 0xff) bytes_[place] = 0;
    ++bytes_[place];
  }

  std::vector<std::uint8_t> bytes_;
  std::uint32_t base_ = 0, length_ = 0xffffffffU;
};

}  // namespace Meseta47::host::laz
