#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "host/las/LasBytes.h"
#include "host/laz/IntegerModel.h"

namespace Meseta47::host::laz {

/// Red, green and blue, 16 bits each, of which many files use but one byte: bytes are coded one by one.
struct Rgb {
  static constexpr std::size_t kBytes = 6;

  std::array<std::uint16_t, 3> channel{};

  static Rgb from(std::uint8_t const* bytes) {
    return {{load<std::uint16_t>(bytes), load<std::uint16_t>(bytes + 2), load<std::uint16_t>(bytes + 4)}};
  }
  void to(std::uint8_t* bytes) const {
    for (std::size_t i = 0; i < channel.size(); ++i) store(bytes + 2 * i, channel[i]);
  }

  [[nodiscard]] int byte(unsigned channelIndex, unsigned high) const {
    return (channel[channelIndex] >> (8 * high)) & 0xff;
  }
  void setByte(unsigned channelIndex, unsigned high, unsigned value) {
    const unsigned kept = high != 0 ? 0x00ffU : 0xff00U;
    channel[channelIndex] = static_cast<std::uint16_t>((channel[channelIndex] & kept) | value << (8 * high));
  }

  /// Bit 2 c + h for each byte that differs, h = 1 for the high byte of channel c.
  [[nodiscard]] unsigned changesFrom(Rgb const& last) const {
    unsigned changes = 0;
    for (unsigned i = 0; i < 6; ++i) changes |= byte(i / 2, i % 2) != last.byte(i / 2, i % 2) ? 1U << i : 0U;
    return changes;
  }
};

/// Colours as compressors of version 1 do.
class RgbV1 {
 public:
  static constexpr std::size_t kBytes = Rgb::kBytes;

  void restart(std::uint8_t const* first) {
    last_ = Rgb::from(first);
    changes_.reset(64);
    bytes_.reset();
  }

  template <class Coder>
  void code(Coder& coder, std::uint8_t* record) {
    Rgb now = Coder::kEncodes ? Rgb::from(record) : last_;
    const unsigned changes = coder.symbol(changes_, now.changesFrom(last_));
    for (unsigned i = 0; i < 6; ++i) {
      if ((changes >> i & 1U) == 0) continue;
      const std::int32_t byte = bytes_.code(coder, last_.byte(i / 2, i % 2), now.byte(i / 2, i % 2), i);
      now.setByte(i / 2, i % 2, static_cast<unsigned>(byte));
    }
    last_ = now;
    if constexpr (!Coder::kEncodes) now.to(record);
  }

 private:
  Rgb last_;
  SymbolModel<64> changes_;
  IntegerModel<8, 6> bytes_;
};

/// Codes colours as compressors of versions 2 and 3 do: green is predicted by the change of red, blue by that of both,
/// and grey takes a third.
class RgbModel {
 public:
  void reset() {
    changes_.reset(128);
    for (auto& model : corrections_) model.reset(256);
  }

  /// Codes a colour after another one. When decoding begins, `now` is what `last` is.
  template <class Coder>
  void code(Coder& coder, Rgb const& last, Rgb& now) {
    const unsigned changes = coder.symbol(changes_, changesOf(last, now));
    const auto changed = [&](unsigned i) { return (changes >> i & 1U) != 0; };
    for (unsigned high = 0; high < 2; ++high) {
      if (changed(high)) codeByte(coder, high, last.byte(0, high), now);
    }
    if (!changed(kColoured)) {
      now.channel[1] = now.channel[2] = now.channel[0];
      return;
    }
    for (unsigned high = 0; high < 2; ++high) {
      const int red = now.byte(0, high) - last.byte(0, high);
      if (changed(2 + high)) codeByte(coder, 2 + high, clamped(red + last.byte(1, high)), now);
      if (!changed(4 + high)) continue;
      const int both = (red + now.byte(1, high) - last.byte(1, high)) / 2;
      codeByte(coder, 4 + high, clamped(both + last.byte(2, high)), now);
    }
  }

 private:
  static constexpr unsigned kColoured = 6;

  static int clamped(int byte) { return std::clamp(byte, 0, 255); }

  static unsigned changesOf(Rgb const& last, Rgb const& now) {
    const bool grey = now.channel[0] == now.channel[1] && now.channel[0] == now.channel[2];
    return now.changesFrom(last) | (grey ? 0U : 1U << kColoured);
  }

  template <class Coder>
  void codeByte(Coder& coder, unsigned i, int predicted, Rgb& now) {
    const auto correction = static_cast<std::uint8_t>(now.byte(i / 2, i % 2) - predicted);
    const unsigned byte = static_cast<unsigned>(predicted) + coder.symbol(corrections_[i], correction);
    now.setByte(i / 2, i % 2, byte & 0xffU);
  }

  SymbolModel<128> changes_;
  std::array<SymbolModel<256>, 6> corrections_;
};

/// Colours of records without layers under version 2.
class RgbV2 {
 public:
  static constexpr std::size_t kBytes = Rgb::kBytes;

  void restart(std::uint8_t const* first) {
    last_ = Rgb::from(first);
    model_.reset();
  }

  template <class Coder>
  void code(Coder& coder, std::uint8_t* record) {
    Rgb now = Coder::kEncodes ? Rgb::from(record) : last_;
    model_.code(coder, last_, now);
    last_ = now;
    if constexpr (!Coder::kEncodes) now.to(record);
  }

 private:
  Rgb last_;
  RgbModel model_;
};

/// Near infrared, byte by byte, in the layers of version 3.
class InfraredModel {
 public:
  void reset() {
    changes_.reset(4);
    for (auto& model : corrections_) model.reset(256);
  }

  /// Codes a value after another one.
  template <class Coder>
  void code(Coder& coder, std::uint16_t last, std::uint16_t& now) {
    const unsigned differing = static_cast<unsigned>(now ^ last);
    const unsigned changes =
        coder.symbol(changes_, ((differing & 0xffU) != 0 ? 1U : 0U) | (differing > 0xffU ? 2U : 0U));
    unsigned value = 0;
    for (unsigned high = 0; high < 2; ++high) {
      const unsigned old = last >> (8 * high) & 0xffU, wanted = now >> (8 * high) & 0xffU;
      const bool changed = (changes >> high & 1U) != 0;
      const unsigned by = changed ? coder.symbol(corrections_[high], (wanted - old) & 0xffU) : 0;
      value |= ((old + by) & 0xffU) << (8 * high);
    }
    now = static_cast<std::uint16_t>(value);
  }

 private:
  SymbolModel<16> changes_;
  std::array<SymbolModel<256>, 2> corrections_;
};

}  // namespace Meseta47::host::laz
