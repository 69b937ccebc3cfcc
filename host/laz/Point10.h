#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>

#include "host/las/LasBytes.h"
#include "host/laz/IntegerModel.h"
#include "host/laz/RunningMedian.h"

namespace Meseta47::host::laz {

/// The first 20 bytes of a record of formats 0 to 5.
struct Point10 {
  static constexpr std::size_t kBytes = 20;

  std::int32_t x = 0, y = 0, z = 0;
  std::uint16_t intensity = 0;
  std::uint8_t returns = 0;  ///< bits 0 to 2 return number, 3 to 5 number of returns, 6 scan direction, 7 edge of line
  std::uint8_t classification = 0, scanAngle = 0, userData = 0;
  std::uint16_t sourceId = 0;

  static Point10 from(std::uint8_t const* bytes) {
    return {load<std::int32_t>(bytes),
            load<std::int32_t>(bytes + 4),
            load<std::int32_t>(bytes + 8),
            load<std::uint16_t>(bytes + 12),
            bytes[14],
            bytes[15],
            bytes[16],
            bytes[17],
            load<std::uint16_t>(bytes + 18)};
  }
  void to(std::uint8_t* bytes) const {
    store(bytes, x);
    store(bytes + 4, y);
    store(bytes + 8, z);
    store(bytes + 12, intensity);
    bytes[14] = returns;
    bytes[15] = classification;
    bytes[16] = scanAngle;
    bytes[17] = userData;
    store(bytes + 18, sourceId);
  }
};

/// Which fields of a point differ from those of the one before it: the symbol that comes first.
enum Point10Change : unsigned {
  kSourceIdChanged = 1,
  kUserDataChanged = 2,
  kScanAngleChanged = 4,
  kClassificationChanged = 8,
};

/// Codes these bytes as compressors of version 1 do.
class Point10V1 {
 public:
  void restart(std::uint8_t const* first) {
    last_ = Point10::from(first);
    diffs_ = {};
    oldest_ = 0;
    changes_.reset(64);
    dx_.reset();
    dy_.reset();
    z_.reset();
    intensity_.reset();
    scanAngle_.reset();
    sourceId_.reset();
    returns_.reset();
    classification_.reset();
    userData_.reset();
  }

  template <class Coder>
  void code(Coder& coder, std::uint8_t* record) {
    Point10 now = last_;
    if constexpr (Coder::kEncodes) now = Point10::from(record);
    const unsigned bits = codePlace(coder, now);
    const unsigned changes = coder.symbol(changes_, Coder::kEncodes ? changesTo(now) : 0);
    if ((changes & kIntensityChanged) != 0) {
      now.intensity = static_cast<std::uint16_t>(intensity_.code(coder, last_.intensity, now.intensity));
    }
    if ((changes & kReturnsChanged) != 0) now.returns = codeByte(coder, returns_[last_.returns], now.returns);
    if ((changes & kClassificationChanged) != 0) {
      now.classification = codeByte(coder, classification_[last_.classification], now.classification);
    }
    if ((changes & kScanAngleChanged) != 0) {
      now.scanAngle =
          static_cast<std::uint8_t>(scanAngle_.code(coder, last_.scanAngle, now.scanAngle, bits < 3 ? 1 : 0));
    }
    if ((changes & kUserDataChanged) != 0) now.userData = codeByte(coder, userData_[last_.userData], now.userData);
    if ((changes & kSourceIdChanged) != 0) {
      now.sourceId = static_cast<std::uint16_t>(sourceId_.code(coder, last_.sourceId, now.sourceId));
    }
    last_ = now;
    if constexpr (!Coder::kEncodes) now.to(record);
  }

 private:
  enum : unsigned { kReturnsChanged = 16, kIntensityChanged = 32 };

  [[nodiscard]] unsigned changesTo(Point10 const& now) const {
    return (now.intensity != last_.intensity ? kIntensityChanged : 0U) |
           (now.returns != last_.returns ? kReturnsChanged : 0U) |
           (now.classification != last_.classification ? kClassificationChanged : 0U) |
           (now.scanAngle != last_.scanAngle ? kScanAngleChanged : 0U) |
           (now.userData != last_.userData ? kUserDataChanged : 0U) |
           (now.sourceId != last_.sourceId ? kSourceIdChanged : 0U);
  }

  template <class Coder>
  static std::uint8_t codeByte(Coder& coder, SymbolModel<256>& model, std::uint8_t byte) {
    return static_cast<std::uint8_t>(coder.symbol(model, byte));
  }

  static std::int32_t median(std::int32_t a, std::int32_t b, std::int32_t c) {
    return std::max(std::min(a, b), std::min(std::max(a, b), c));
  }

  // Gives the mean of the bits that x and y took.
  template <class Coder>
  unsigned codePlace(Coder& coder, Point10& now) {
    constexpr unsigned kLastContext = 19;
    auto const& [a, b, c] = diffs_;
    const std::int32_t dx = dx_.code(coder, median(a.x, b.x, c.x), minus(now.x, last_.x));
    const unsigned bitsX = dx_.lastBits();
    const std::int32_t dy =
        dy_.code(coder, median(a.y, b.y, c.y), minus(now.y, last_.y), std::min(bitsX, kLastContext));
    const unsigned bits = (bitsX + dy_.lastBits()) / 2;
    now.x = plus(last_.x, dx);
    now.y = plus(last_.y, dy);
    now.z = z_.code(coder, last_.z, now.z, std::min(bits, kLastContext));
    diffs_[oldest_] = {dx, dy};
    oldest_ = (oldest_ + 1) % 3;
    return bits;
  }

  struct Diff {
    std::int32_t x, y;
  };
  Point10 last_;
  std::array<Diff, 3> diffs_{};
  unsigned oldest_ = 0;
  SymbolModel<64> changes_;
  IntegerModel<32> dx_;
  IntegerModel<32, 20> dy_, z_;
  IntegerModel<16> intensity_, sourceId_;
  IntegerModel<8, 2> scanAngle_;
  ModelsByContext<256, 256> returns_, classification_, userData_;
};

/// Codes these bytes as compressors of version 2 do.
class Point10V2 {
 public:
  void restart(std::uint8_t const* first) {
    last_ = Point10::from(first);
    last_.intensity = 0;  // as the intensities below, which predict it
    intensities_ = {};
    heights_ = {};
    diffsX_ = diffsY_ = {};
    changes_.reset(64);
    dx_.reset();
    dy_.reset();
    z_.reset();
    intensity_.reset();
    sourceId_.reset();
    scanAngle_.reset();
    returns_.reset();
    classification_.reset();
    userData_.reset();
  }

  template <class Coder>
  void code(Coder& coder, std::uint8_t* record) {
    Point10 now = last_;
    if constexpr (Coder::kEncodes) now = Point10::from(record);
    const unsigned changes = coder.symbol(changes_, Coder::kEncodes ? changesTo(now) : 0);
    if ((changes & kReturnsChanged) != 0) {
      now.returns = static_cast<std::uint8_t>(coder.symbol(returns_[last_.returns], now.returns));
    }
    const unsigned kind = kindOf(now.returns);
    if ((changes & kIntensityChanged) != 0) {
      now.intensity =
          static_cast<std::uint16_t>(intensity_.code(coder, intensities_[kind], now.intensity, std::min(kind, 3U)));
      intensities_[kind] = now.intensity;
    } else {
      now.intensity = intensities_[kind];
    }
    if (changes % kIntensityChanged != 0) codeSeldomChanged(coder, changes, now);
    codePlace(coder, kind, now);
    last_ = now;
    if constexpr (!Coder::kEncodes) now.to(record);
  }

 private:
  enum : unsigned { kIntensityChanged = 16, kReturnsChanged = 32 };

  static unsigned returnNumber(std::uint8_t returns) { return returns & 7U; }
  static unsigned returnsOf(std::uint8_t returns) { return (returns >> 3U) & 7U; }

  /// Number of the pair of return number and number of returns, 0 to 15. The valid pairs of up to five returns have the
  /// first ones; others share.
  static unsigned kindOf(std::uint8_t returns) {
    static constexpr std::uint8_t kKinds[8][8] = {{15, 14, 13, 12, 11, 10, 9, 8},  {14, 0, 1, 3, 6, 10, 10, 9},
                                                  {13, 1, 2, 4, 7, 11, 11, 10},    {12, 3, 4, 5, 8, 12, 12, 11},
                                                  {11, 6, 7, 8, 9, 13, 13, 12},    {10, 10, 11, 12, 13, 14, 14, 13},
                                                  {9, 10, 11, 12, 13, 14, 15, 14}, {8, 9, 10, 11, 12, 13, 14, 15}};
    return kKinds[returnsOf(returns)][returnNumber(returns)];
  }

  /// Returns left after this one, whichever of the two numbers is the larger.
  static unsigned levelOf(std::uint8_t returns) {
    const unsigned n = returnsOf(returns), r = returnNumber(returns);
    return n > r ? n - r : r - n;
  }

  [[nodiscard]] unsigned changesTo(Point10 const& now) const {
    return (now.returns != last_.returns ? kReturnsChanged : 0U) |
           (now.intensity != intensities_[kindOf(now.returns)] ? kIntensityChanged : 0U) |
           (now.classification != last_.classification ? kClassificationChanged : 0U) |
           (now.scanAngle != last_.scanAngle ? kScanAngleChanged : 0U) |
           (now.userData != last_.userData ? kUserDataChanged : 0U) |
           (now.sourceId != last_.sourceId ? kSourceIdChanged : 0U);
  }

  template <class Coder>
  void codeSeldomChanged(Coder& coder, unsigned changes, Point10& now) {
    if ((changes & kClassificationChanged) != 0) {
      now.classification =
          static_cast<std::uint8_t>(coder.symbol(classification_[last_.classification], now.classification));
    }
    if ((changes & kScanAngleChanged) != 0) {
      const auto change = static_cast<std::uint8_t>(now.scanAngle - last_.scanAngle);
      const unsigned direction = (now.returns >> 6U) & 1U;
      now.scanAngle = static_cast<std::uint8_t>(last_.scanAngle + coder.symbol(scanAngle_[direction], change));
    }
    if ((changes & kUserDataChanged) != 0) {
      now.userData = static_cast<std::uint8_t>(coder.symbol(userData_[last_.userData], now.userData));
    }
    if ((changes & kSourceIdChanged) != 0) {
      now.sourceId = static_cast<std::uint16_t>(sourceId_.code(coder, last_.sourceId, now.sourceId));
    }
  }

  template <class Coder>
  void codePlace(Coder& coder, unsigned kind, Point10& now) {
    const unsigned single = returnsOf(now.returns) == 1 ? 1 : 0;
    const std::int32_t dx = dx_.code(coder, diffsX_[kind].get(), minus(now.x, last_.x), single);
    diffsX_[kind].add(dx);
    now.x = plus(last_.x, dx);
    const unsigned bitsX = dx_.lastBits();
    const std::int32_t dy =
        dy_.code(coder, diffsY_[kind].get(), minus(now.y, last_.y), single + std::min(bitsX & ~1U, 20U));
    diffsY_[kind].add(dy);
    now.y = plus(last_.y, dy);
    const unsigned bits = (bitsX + dy_.lastBits()) / 2;
    std::int32_t& height = heights_[levelOf(now.returns)];
    height = now.z = z_.code(coder, height, now.z, single + std::min(bits & ~1U, 18U));
  }

  Point10 last_;
  std::array<std::uint16_t, 16> intensities_{};  // the last of each kind
  std::array<std::int32_t, 8> heights_{};        // the last of each level
  std::array<RunningMedian, 16> diffsX_, diffsY_;
  SymbolModel<64> changes_;
  IntegerModel<32, 2> dx_;
  IntegerModel<32, 22> dy_;
  IntegerModel<32, 20> z_;
  IntegerModel<16, 4> intensity_;
  IntegerModel<16> sourceId_;
  ModelsByContext<256, 2> scanAngle_;
  ModelsByContext<256, 256> returns_, classification_, userData_;
};

}  // namespace Meseta47::host::laz
