#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

#include "host/las/LasBytes.h"
#include "host/laz/EntropyModel.h"
#include "platform/Exporta.h"

namespace Meseta47::host::laz {

/// Bytes that must be readable after those of a chunk: the decoder looks four ahead, and may stand four beyond the end.
inline constexpr std::size_t kDecoderSlack = 8;

/// Arithmetic decoder. It shares the interface of EntropyEncoder, so that one description of a record serves both: each
/// operation takes the value that an encoder would write, which is ignored here, and returns the one that was read.
///
/// Any bytes decode to something, and nothing is read beyond the slack: whether they ran out is asked afterwards.
class EntropyDecoder {
 public:
  static constexpr bool kEncodes = false;

  EntropyDecoder() = default;

  /// Takes up at the first byte.
  explicit EntropyDecoder(std::span<std::uint8_t const> bytes)
      : next_(bytes.data()), end_(bytes.data() + bytes.size()), length_(0xffffffffU) {
    value_ = std::min(ahead(), length_ - 1);  // less than the length, as it stays: it bounds what models are asked
    next_ += 4;
  }

  /// True once more bytes were asked for than there are: what was decoded since is worth nothing.
  [[nodiscard]] bool ranOut() const { return next_ > end_; }
  /// The first byte that is no part of what has been decoded.
  [[nodiscard]] std::uint8_t const* position() const { return next_; }

  template <unsigned Capacity>
  unsigned symbol(SymbolModel<Capacity>& model, unsigned = 0) {
    const std::uint32_t unit = length_ >> model.kShareBits;
    const unsigned symbol = model.find(value_ / unit);
    const std::uint32_t low = model.start(symbol) * unit;
    const std::uint32_t high = model.start(symbol + 1) * unit;
    const std::uint32_t isLast = 0U - static_cast<std::uint32_t>(symbol == model.last());  // a mask, not a branch
    value_ -= low;
    length_ = (high ^ ((high ^ length_) & isLast)) - low;
    renew();
    model.note(symbol);
    return symbol;
  }

  unsigned bit(BitModel& model, unsigned = 0) {
    const std::uint32_t zeros = model.zeroShare() * (length_ >> model.kShareBits);
    const unsigned bit = value_ >= zeros ? 1 : 0;
    value_ -= bit != 0 ? zeros : 0;
    length_ = bit != 0 ? length_ - zeros : zeros;
    renew();
    model.note(bit);
    return bit;
  }

  /// Bits without a model, 1 to 32 of them.
  std::uint32_t bits(unsigned count, std::uint32_t = 0) {
    constexpr unsigned kMostAtOnce = 19;
    if (count <= kMostAtOnce) return fewBits(count);
    const std::uint32_t low = fewBits(16);
    return low | fewBits(count - 16) << 16U;
  }

  std::uint64_t bits64(std::uint64_t = 0) {
    const std::uint64_t low = bits(32);
    return low | std::uint64_t{bits(32)} << 32U;
  }

 private:
  [[nodiscard]] std::uint32_t ahead() const {
    std::uint8_t const* const b = next_;
    return std::uint32_t{b[0]} << 24U | std::uint32_t{b[1]} << 16U | std::uint32_t{b[2]} << 8U | b[3];
  }

  std::uint32_t fewBits(unsigned count) {
    length_ >>= count;
    const std::uint32_t found = value_ / length_;
    value_ -= found * length_;
    renew();
    return found;
  }

  // Whole bytes move in until the length has its highest byte again. How many is unpredictable, so there is no loop.
  URDIMBRE_EN_LINEA void renew() {
    const auto shift = static_cast<unsigned>(std::countl_zero(length_ | 1U)) & 24U;
    length_ <<= shift;
    value_ = static_cast<std::uint32_t>(((std::uint64_t{value_} << 32U | ahead()) << shift) >> 32U);
    next_ = std::min(next_ + shift / 8, end_ + 4);
  }

  std::uint8_t const* next_ = nullptr;
  std::uint8_t const* end_ = nullptr;
  std::uint32_t value_ = 0, length_ = 0;
};

}  // namespace Meseta47::host::laz
