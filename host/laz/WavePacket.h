#pragma once

#include <array>
#include <cstdint>

#include "host/las/LasBytes.h"
#include "host/laz/IntegerModel.h"

namespace Meseta47::host::laz {

/// Where a point's waveform stands. Numbers in single precision are kept as the integers of their bits.
struct WavePacket {
  static constexpr std::size_t kBytes = 29;

  std::uint8_t descriptor = 0;
  std::uint64_t offset = 0;
  std::int32_t size = 0, place = 0;
  std::array<std::int32_t, 3> direction{};

  static WavePacket from(std::uint8_t const* b) {
    return {b[0],
            load<std::uint64_t>(b + 1),
            load<std::int32_t>(b + 9),
            load<std::int32_t>(b + 13),
            {load<std::int32_t>(b + 17), load<std::int32_t>(b + 21), load<std::int32_t>(b + 25)}};
  }
  void to(std::uint8_t* b) const {
    b[0] = descriptor;
    store(b + 1, offset);
    store(b + 9, size);
    store(b + 13, place);
    for (std::size_t i = 0; i < 3; ++i) store(b + 17 + 4 * i, direction[i]);
  }

  /// Where the packet begins that stands straight behind this one.
  [[nodiscard]] std::uint64_t behind() const { return offset + static_cast<std::uint32_t>(size); }

  bool operator==(WavePacket const&) const = default;
};

/// Codes wave packets as every version does; the waveforms themselves are not compressed.
class WavePacketModel {
 public:
  void reset() {
    lastStep_ = 0;
    lastHow_ = 0;
    descriptor_.reset(256);
    for (auto& model : how_) model.reset(4);
    step_.reset();
    size_.reset();
    place_.reset();
    direction_.reset();
  }

  /// Codes a packet after another one.
  template <class Coder>
  void code(Coder& coder, WavePacket const& last, WavePacket& now) {
    now.descriptor = static_cast<std::uint8_t>(coder.symbol(descriptor_, now.descriptor));
    codeOffset(coder, last, now);
    now.size = size_.code(coder, last.size, now.size);
    now.place = place_.code(coder, last.place, now.place);
    for (unsigned i = 0; i < 3; ++i) now.direction[i] = direction_.code(coder, last.direction[i], now.direction[i], i);
  }

 private:
  enum How : unsigned { kSame, kBehind, kStep, kWhole };

  static How howTo(std::uint64_t offset, WavePacket const& last) {
    const auto wide = static_cast<std::int64_t>(offset - last.offset);
    if (wide == 0) return kSame;
    if (offset == last.behind()) return kBehind;
    return wide == static_cast<std::int32_t>(wide) ? kStep : kWhole;
  }

  template <class Coder>
  void codeOffset(Coder& coder, WavePacket const& last, WavePacket& now) {
    lastHow_ = coder.symbol(how_[lastHow_], Coder::kEncodes ? howTo(now.offset, last) : kSame);
    if (lastHow_ == kSame) {
      now.offset = last.offset;
    } else if (lastHow_ == kBehind) {
      now.offset = last.behind();
    } else if (lastHow_ == kStep) {
      lastStep_ = step_.code(coder, lastStep_, static_cast<std::int32_t>(now.offset - last.offset));
      now.offset = last.offset + static_cast<std::uint64_t>(std::int64_t{lastStep_});
    } else {
      now.offset = coder.bits64(now.offset);
    }
  }

  std::int32_t lastStep_ = 0;
  unsigned lastHow_ = 0;
  SymbolModel<256> descriptor_;
  std::array<SymbolModel<16>, 4> how_;
  IntegerModel<32> step_, size_, place_;
  IntegerModel<32, 3> direction_;
};

/// Wave packets of records without layers.
class WavePackets {
 public:
  static constexpr std::size_t kBytes = WavePacket::kBytes;

  void restart(std::uint8_t const* first) {
    last_ = WavePacket::from(first);
    model_.reset();
  }

  template <class Coder>
  void code(Coder& coder, std::uint8_t* record) {
    WavePacket now = Coder::kEncodes ? WavePacket::from(record) : last_;
    model_.code(coder, last_, now);
    last_ = now;
    if constexpr (!Coder::kEncodes) now.to(record);
  }

 private:
  WavePacket last_;
  WavePacketModel model_;
};

}  // namespace Meseta47::host::laz
