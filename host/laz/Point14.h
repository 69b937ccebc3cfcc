#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>

#include "host/las/LasBytes.h"
#include "host/laz/GpsTime.h"
#include "host/laz/IntegerModel.h"
#include "host/laz/RunningMedian.h"

namespace Meseta47::host::laz {

/// The first 30 bytes of a record of formats 6 to 10.
struct Point14 {
  static constexpr std::size_t kBytes = 30;

  std::int32_t x = 0, y = 0, z = 0;
  std::uint16_t intensity = 0;
  std::uint8_t returnNumber = 0, returns = 0;
  std::uint8_t flags = 0;  ///< bits 0 to 3 of the class, 4 scan direction, 5 edge of flight line
  std::uint8_t channel = 0;
  std::uint8_t classification = 0, userData = 0;
  std::int16_t scanAngle = 0;
  std::uint16_t sourceId = 0;
  std::uint64_t time = 0;  ///< the bits of the double

  static Point14 from(std::uint8_t const* bytes) {
    Point14 p;
    p.x = load<std::int32_t>(bytes);
    p.y = load<std::int32_t>(bytes + 4);
    p.z = load<std::int32_t>(bytes + 8);
    p.intensity = load<std::uint16_t>(bytes + 12);
    p.returnNumber = bytes[14] & 15U;
    p.returns = static_cast<std::uint8_t>(bytes[14] >> 4U);
    p.flags = static_cast<std::uint8_t>((bytes[15] & 15U) | (bytes[15] >> 2U & 0x30U));
    p.channel = bytes[15] >> 4U & 3U;
    p.classification = bytes[16];
    p.userData = bytes[17];
    p.scanAngle = load<std::int16_t>(bytes + 18);
    p.sourceId = load<std::uint16_t>(bytes + 20);
    p.time = load<std::uint64_t>(bytes + 22);
    return p;
  }
  void to(std::uint8_t* bytes) const {
    store(bytes, x);
    store(bytes + 4, y);
    store(bytes + 8, z);
    store(bytes + 12, intensity);
    bytes[14] = static_cast<std::uint8_t>(returnNumber | returns << 4U);
    bytes[15] = static_cast<std::uint8_t>((flags & 15U) | unsigned{channel} << 4U | (flags & 0x30U) << 2U);
    bytes[16] = classification;
    bytes[17] = userData;
    store(bytes + 18, scanAngle);
    store(bytes + 20, sourceId);
    store(bytes + 22, time);
  }

  [[nodiscard]] bool isFirst() const { return returnNumber == 1; }
  [[nodiscard]] bool isLast() const { return returnNumber >= returns; }
};

/// The layers of these bytes, in their order in a chunk. All but the first may be empty: then the field is that of the
/// last point everywhere.
enum Layer : unsigned {
  kPlaceLayer,  ///< x and y, channel, returns, and which of the seldom changed fields change
  kHeightLayer,
  kClassLayer,
  kFlagsLayer,
  kIntensityLayer,
  kAngleLayer,
  kUserDataLayer,
  kSourceLayer,
  kTimeLayer,
  kPoint14Layers
};

/// Codes these bytes in layers. The four scanner channels have models of their own, and predict from their own last
/// points.
class Point14Codec {
 public:
  void restart(std::uint8_t const* first);

  /// The channel of the last point, and whether it is another than that of the point before it.
  [[nodiscard]] unsigned channel() const { return channel_; }
  [[nodiscard]] bool changedChannel() const { return changedChannel_; }

  /// Codes a record. `Layers` has the coder of each layer in operator[], and tells in has() whether there is one.
  template <class Layers>
  void code(Layers& layers, std::uint8_t* record) {
    Point14 now;
    if constexpr (Layers::kEncodes) now = Point14::from(record);
    auto& coder = layers[kPlaceLayer];
    const unsigned changes = codeChanges(coder, now);
    Channel& c = *channels_[channel_];
    const bool timeChanged = (changes & kTimeChanged) != 0;
    const Point14 last = c.last;
    if constexpr (!Layers::kEncodes) now = last;
    now.channel = static_cast<std::uint8_t>(channel_);
    codeReturns(coder, c, changes, now);
    codePlace(layers, c, timeChanged, now);
    codeKind(layers, c, now);
    const unsigned kind = (now.isFirst() ? 2U : 0U) + (now.isLast() ? 1U : 0U);
    if (layers.has(kIntensityLayer)) {
      std::uint16_t& intensity = c.intensities[2 * kind + (timeChanged ? 1 : 0)];
      intensity = now.intensity =
          static_cast<std::uint16_t>(c.intensity.code(layers[kIntensityLayer], intensity, now.intensity, kind));
    }
    codeSeldomChanged(layers, c, changes, now);
    c.last = now;
    c.lastTimeChanged = timeChanged;
    if constexpr (!Layers::kEncodes) now.to(record);
  }

 private:
  enum Change : unsigned {
    kReturnNumberChange = 3,  // of two bits: same, one more, one less, another
    kReturnsChanged = 4,
    kAngleChanged = 8,
    kTimeChanged = 16,
    kSourceChanged = 32,
    kChannelChanged = 64,
  };
  static constexpr unsigned kOneMore = 1, kOneLess = 2, kAnother = 3;

  /// What is known of one scanner channel.
  struct Channel {
    Point14 last;
    bool lastTimeChanged = false;
    std::array<RunningMedian, 12> diffsX, diffsY;  // by kind of return, twice: same time, another time
    std::array<std::int32_t, 8> heights{};         // the last of each level
    std::array<std::uint16_t, 8> intensities{};

    std::array<SymbolModel<128>, 8> changes;
    SymbolModel<16> channelStep;
    ModelsByContext<16, 16> returns, returnNumber;
    SymbolModel<16> returnStep;
    IntegerModel<32, 2> dx;
    IntegerModel<32, 22> dy;
    IntegerModel<32, 20> z;
    ModelsByContext<256, 64> classification, userData;
    ModelsByContext<64, 64> flags;
    IntegerModel<16, 4> intensity;
    IntegerModel<16, 2> angle;
    IntegerModel<16> sourceId;
    GpsTimeSeries<false> times;

    void restart(Point14 const& first);
  };

  void begin(unsigned channel, Point14 const& first);

  /// Kind of a return among those of its pulse, 0 to 5, and how many more there are, 0 to 7.
  static unsigned kindOf(Point14 const& point);
  static unsigned levelOf(Point14 const& point) {
    const int left = int{point.returns} - int{point.returnNumber};
    return static_cast<unsigned>(std::min(left < 0 ? -left : left, 7));
  }

  /// What changes, under a context of the last point whatever its channel; a new channel is the current one afterwards.
  template <class Coder>
  unsigned codeChanges(Coder& coder, Point14 const& now) {
    Channel& before = *channels_[channel_];
    const unsigned context =
        (before.last.isFirst() ? 1U : 0U) + (before.last.isLast() ? 2U : 0U) + (before.lastTimeChanged ? 4U : 0U);
    unsigned changes = 0;
    if constexpr (Coder::kEncodes) {
      changes = changesOf(now, met_[now.channel] ? channels_[now.channel]->last : before.last);
      if (now.channel != channel_) changes |= kChannelChanged;
    }
    changes = coder.symbol(before.changes[context], changes);
    changedChannel_ = (changes & kChannelChanged) != 0;
    if (changedChannel_) {
      const unsigned step = coder.symbol(before.channelStep, (now.channel - channel_ - 1U) & 3U);
      channel_ = (channel_ + step + 1) & 3U;
      if (!met_[channel_]) begin(channel_, before.last);
    }
    return changes;
  }

  static unsigned changesOf(Point14 const& now, Point14 const& last) {
    const unsigned step = (now.returnNumber - last.returnNumber) & 15U;
    const unsigned number = step == 0 ? 0 : step == 1 ? kOneMore : step == 15 ? kOneLess : kAnother;
    return number | (now.returns != last.returns ? kReturnsChanged : 0U) |
           (now.scanAngle != last.scanAngle ? kAngleChanged : 0U) | (now.time != last.time ? kTimeChanged : 0U) |
           (now.sourceId != last.sourceId ? kSourceChanged : 0U);
  }

  template <class Coder>
  static void codeReturns(Coder& coder, Channel& c, unsigned changes, Point14& now) {
    Point14 const& last = c.last;
    unsigned returns = last.returns, number = last.returnNumber;
    if ((changes & kReturnsChanged) != 0) returns = coder.symbol(c.returns[last.returns], now.returns);
    const unsigned change = changes & kReturnNumberChange;
    if (change == kOneMore) {
      number += 1;
    } else if (change == kOneLess) {
      number += 15;
    } else if (change == kAnother && (changes & kTimeChanged) != 0) {
      number = coder.symbol(c.returnNumber[last.returnNumber], now.returnNumber);
    } else if (change == kAnother) {
      number += 2 + coder.symbol(c.returnStep, (now.returnNumber - last.returnNumber - 2U) & 15U);
    }
    now.returns = static_cast<std::uint8_t>(returns);
    now.returnNumber = number & 15U;
  }

  template <class Layers>
  static void codePlace(Layers& layers, Channel& c, bool timeChanged, Point14& now) {
    auto& coder = layers[kPlaceLayer];
    const unsigned single = now.returns == 1 ? 1 : 0;
    const unsigned diff = 2 * kindOf(now) + (timeChanged ? 1 : 0);
    const std::int32_t dx = c.dx.code(coder, c.diffsX[diff].get(), minus(now.x, c.last.x), single);
    c.diffsX[diff].add(dx);
    now.x = plus(c.last.x, dx);
    const unsigned bitsX = c.dx.lastBits();
    const std::int32_t dy =
        c.dy.code(coder, c.diffsY[diff].get(), minus(now.y, c.last.y), single + std::min(bitsX & ~1U, 20U));
    c.diffsY[diff].add(dy);
    now.y = plus(c.last.y, dy);
    if (!layers.has(kHeightLayer)) return;
    const unsigned bits = (bitsX + c.dy.lastBits()) / 2;
    std::int32_t& height = c.heights[levelOf(now)];
    height = now.z = c.z.code(layers[kHeightLayer], height, now.z, single + std::min(bits & ~1U, 18U));
  }

  template <class Layers>
  static void codeKind(Layers& layers, Channel& c, Point14& now) {
    if (layers.has(kClassLayer)) {
      const unsigned context = 2 * (c.last.classification & 31U) + (now.isFirst() && now.isLast() ? 1 : 0);
      now.classification =
          static_cast<std::uint8_t>(layers[kClassLayer].symbol(c.classification[context], now.classification));
    }
    if (layers.has(kFlagsLayer)) {
      now.flags = static_cast<std::uint8_t>(layers[kFlagsLayer].symbol(c.flags[c.last.flags], now.flags));
    }
  }

  template <class Layers>
  static void codeSeldomChanged(Layers& layers, Channel& c, unsigned changes, Point14& now) {
    if ((changes & kAngleChanged) != 0 && layers.has(kAngleLayer)) {
      now.scanAngle = static_cast<std::int16_t>(
          c.angle.code(layers[kAngleLayer], c.last.scanAngle, now.scanAngle, (changes & kTimeChanged) != 0 ? 1 : 0));
    }
    if (layers.has(kUserDataLayer)) {
      now.userData =
          static_cast<std::uint8_t>(layers[kUserDataLayer].symbol(c.userData[c.last.userData / 4], now.userData));
    }
    if ((changes & kSourceChanged) != 0 && layers.has(kSourceLayer)) {
      now.sourceId = static_cast<std::uint16_t>(c.sourceId.code(layers[kSourceLayer], c.last.sourceId, now.sourceId));
    }
    if ((changes & kTimeChanged) != 0 && layers.has(kTimeLayer)) now.time = c.times.code(layers[kTimeLayer], now.time);
  }

  std::array<std::unique_ptr<Channel>, 4> channels_;
  std::array<bool, 4> met_{};
  unsigned channel_ = 0;
  bool changedChannel_ = false;
};

}  // namespace Meseta47::host::laz
