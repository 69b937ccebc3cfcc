#pragma once

#include <array>
#include <cmath>
#include <cstdint>

#include "host/las/LasBytes.h"
#include "host/laz/IntegerModel.h"

namespace Meseta47::host::laz {

/// GPS times as compressors of version 1 do: the 64 bits of the double as an integer, by the difference from the last
/// time, which is told as a multiple of the last difference. Times within a strip stand a constant distance apart.
class GpsTimeV1 {
 public:
  static constexpr std::size_t kBytes = 8;

  void restart(std::uint8_t const* first) {
    time_ = load<std::uint64_t>(first);
    diff_ = 0;
    extremes_ = 0;
    multiple_.reset(kMultiples);
    firstDiff_.reset(3);
    diffs_.reset();
  }

  template <class Coder>
  void code(Coder& coder, std::uint8_t* record) {
    if constexpr (Coder::kEncodes) {
      encode(coder, load<std::uint64_t>(record));
    } else {
      decode(coder);
      store(record, time_);
    }
  }

 private:
  static constexpr int kMultiples = 512;
  static constexpr int kLargestMultiple = kMultiples - 3;
  static constexpr unsigned kWhole = kMultiples - 2, kSame = kMultiples - 1;

  static unsigned contextOf(int multiple) {
    return multiple == 1 ? 1 : multiple == 0 ? 2 : multiple < 10 ? 3 : multiple < 50 ? 4 : 5;
  }

  [[nodiscard]] std::int32_t predicted(int multiple) const {
    if (multiple == 0) return diff_ / 4;
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(multiple) * static_cast<std::uint32_t>(diff_));
  }

  // A difference beyond the multiples is the new measure once four have been met one after the other.
  void note(int multiple, std::int32_t diff) {
    if (multiple == 1) {
      diff_ = diff;
      extremes_ = 0;
    } else if ((multiple == 0 || multiple == kLargestMultiple) && ++extremes_ > 3) {
      diff_ = diff;
      extremes_ = 0;
    }
    time_ += static_cast<std::uint64_t>(std::int64_t{diff});
  }

  template <class Coder>
  void decode(Coder& coder) {
    if (diff_ == 0) {
      const unsigned how = coder.symbol(firstDiff_);
      if (how == 1) {
        diff_ = diffs_.code(coder, 0, 0, 0);
        time_ += static_cast<std::uint64_t>(std::int64_t{diff_});
      } else if (how == 2) {
        time_ = coder.bits64();
      }
      return;
    }
    const unsigned how = coder.symbol(multiple_);
    if (how < kWhole) {
      const int multiple = static_cast<int>(how);
      note(multiple, diffs_.code(coder, predicted(multiple), 0, contextOf(multiple)));
    } else if (how == kWhole) {
      time_ = coder.bits64();
    }
  }

  template <class Coder>
  void encode(Coder& coder, std::uint64_t time) {
    const auto wide = static_cast<std::int64_t>(time - time_);
    const auto diff = static_cast<std::int32_t>(wide);
    const bool fits = wide == diff;
    if (diff_ == 0) {
      coder.symbol(firstDiff_, wide == 0 ? 0 : fits ? 1 : 2);
      if (wide != 0 && fits) diff_ = diffs_.code(coder, 0, diff, 0);
      if (!fits) coder.bits64(time);
      time_ = time;
    } else if (wide == 0) {
      coder.symbol(multiple_, kSame);
    } else if (!fits) {
      coder.symbol(multiple_, kWhole);
      time_ = coder.bits64(time);
    } else {
      const double ratio = std::round(static_cast<double>(diff) / diff_);
      const int multiple = ratio < 0 ? 0 : ratio > kLargestMultiple ? kLargestMultiple : static_cast<int>(ratio);
      coder.symbol(multiple_, static_cast<unsigned>(multiple));
      note(multiple, diffs_.code(coder, predicted(multiple), diff, contextOf(multiple)));
    }
  }

  std::uint64_t time_ = 0;
  std::int32_t diff_ = 0;
  unsigned extremes_ = 0;
  SymbolModel<kMultiples> multiple_;
  SymbolModel<16> firstDiff_;
  IntegerModel<32, 6> diffs_;
};

/// GPS times as compressors of versions 2 and 3 do: up to four series of times that take turns, as those of strips do
/// where they overlap. Version 3 tells elsewhere that a time is the same as the last one, and has no symbol for it.
template <bool kTellsSame>
class GpsTimeSeries {
 public:
  static constexpr std::size_t kBytes = 8;

  void restart(std::uint8_t const* first) { restart(load<std::uint64_t>(first)); }

  void restart(std::uint64_t first) {
    series_ = {};
    series_[0].time = first;
    current_ = newest_ = 0;
    multiple_.reset(kOther + 4);
    firstDiff_.reset(kFirstOther + 4);
    diffs_.reset();
  }

  template <class Coder>
  std::uint64_t code(Coder& coder, std::uint64_t time) {
    if constexpr (Coder::kEncodes) {
      encode(coder, time);
      return time;
    } else {
      decode(coder);
      return this->time();
    }
  }

  template <class Coder>
  void code(Coder& coder, std::uint8_t* record) {
    if constexpr (Coder::kEncodes) {
      encode(coder, load<std::uint64_t>(record));
    } else {
      decode(coder);
      store(record, time());
    }
  }

 private:
  static constexpr unsigned kSeries = 4;
  static constexpr int kMostMultiple = 500, kLeastMultiple = -10;
  // Symbols: multiples from 0 on, negative ones behind them; the same time; a whole time; one of the other series.
  static constexpr unsigned kSame = kMostMultiple - kLeastMultiple + 1;
  static constexpr unsigned kWhole = kSame + (kTellsSame ? 1 : 0);
  static constexpr unsigned kOther = kWhole;  // and 1, 2 or 3 series on
  // The symbols where a series has no difference yet.
  static constexpr unsigned kFirstDiff = kTellsSame ? 1 : 0;
  static constexpr unsigned kFirstWhole = kFirstDiff + 1;
  static constexpr unsigned kFirstOther = kFirstWhole;

  struct Series {
    std::uint64_t time = 0;
    std::int32_t diff = 0;
    unsigned extremes = 0;
  };

  /// The last time.
  [[nodiscard]] std::uint64_t time() const { return series_[current_].time; }

  static unsigned contextOf(int multiple) {
    if (multiple == 1) return 1;
    if (multiple == 0) return 7;
    if (multiple > 0) return multiple < 10 ? 2 : multiple < kMostMultiple ? 3 : 4;
    return multiple > kLeastMultiple ? 5 : 6;
  }

  static unsigned symbolOf(int multiple) {
    return static_cast<unsigned>(multiple >= 0 ? multiple : kMostMultiple - multiple);
  }
  static int multipleOf(unsigned symbol) {
    const int multiple = static_cast<int>(symbol);
    return multiple <= kMostMultiple ? multiple : kMostMultiple - multiple;
  }

  template <class Coder>
  void codeDiff(Coder& coder, int multiple, std::int32_t wanted) {
    Series& series = series_[current_];
    const auto predicted =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(multiple) * static_cast<std::uint32_t>(series.diff));
    const std::int32_t diff = diffs_.code(coder, predicted, wanted, contextOf(multiple));
    series.time += static_cast<std::uint64_t>(std::int64_t{diff});
    if (multiple == 1) {
      series.extremes = 0;
    } else if (multiple == 0 || multiple == kMostMultiple || multiple == kLeastMultiple) {
      if (++series.extremes <= 3) return;
      series.diff = diff;  // four extremes one after the other: the measure has changed
      series.extremes = 0;
    }
  }

  template <class Coder>
  void codeFirstDiff(Coder& coder, std::int32_t wanted) {
    Series& series = series_[current_];
    series.diff = diffs_.code(coder, 0, wanted, 0);
    series.time += static_cast<std::uint64_t>(std::int64_t{series.diff});
    series.extremes = 0;
  }

  // A time too far from all the others begins a series in the place of the oldest.
  template <class Coder>
  void codeWhole(Coder& coder, std::uint64_t wanted) {
    const auto high = static_cast<std::uint32_t>(
        diffs_.code(coder, static_cast<std::int32_t>(time() >> 32U), static_cast<std::int32_t>(wanted >> 32U), 8));
    const std::uint32_t low = coder.bits(32, static_cast<std::uint32_t>(wanted));
    current_ = newest_ = (newest_ + 1) % kSeries;
    series_[current_] = {std::uint64_t{high} << 32U | low, 0, 0};
  }

  template <class Coder>
  void decode(Coder& coder) {
    // No encoder changes the series twice for a time; damaged bytes could make it go on for ever.
    for (unsigned changes = 0; changes < kSeries; ++changes) {
      const bool first = series_[current_].diff == 0;
      const unsigned how = first ? coder.symbol(firstDiff_) : coder.symbol(multiple_);
      const unsigned other = first ? kFirstOther : kOther;
      if (how > other) {
        current_ = (current_ + how - other) % kSeries;
        continue;
      }
      if (how == other) {
        codeWhole(coder, 0);
      } else if (first && how == kFirstDiff) {
        codeFirstDiff(coder, 0);
      } else if (!first && how < kSame) {
        codeDiff(coder, multipleOf(how), 0);
      }
      return;
    }
  }

  /// How many series on the first one stands that is near enough to a time; 4 for none.
  [[nodiscard]] unsigned seriesNear(std::uint64_t time) const {
    unsigned on = 0;
    while (on < kSeries) {
      const auto wide = static_cast<std::int64_t>(time - series_[(current_ + on) % kSeries].time);
      if (wide == static_cast<std::int32_t>(wide)) break;
      ++on;
    }
    return on;
  }

  template <class Coder>
  void tell(Coder& coder, unsigned first, unsigned later) {
    if (series_[current_].diff == 0) {
      coder.symbol(firstDiff_, first);
    } else {
      coder.symbol(multiple_, later);
    }
  }

  template <class Coder>
  void encode(Coder& coder, std::uint64_t time) {
    if (kTellsSame && time == this->time()) return tell(coder, 0, kSame);
    const unsigned on = seriesNear(time);
    if (on == kSeries) {
      tell(coder, kFirstWhole, kWhole);
      return codeWhole(coder, time);
    }
    if (on > 0) {
      tell(coder, kFirstOther + on, kOther + on);
      current_ = (current_ + on) % kSeries;
      if (kTellsSame && time == this->time()) return tell(coder, 0, kSame);
    }
    const auto diff = static_cast<std::int32_t>(time - this->time());
    if (series_[current_].diff == 0) {
      coder.symbol(firstDiff_, kFirstDiff);
      return codeFirstDiff(coder, diff);
    }
    const double ratio = std::round(static_cast<double>(diff) / series_[current_].diff);
    const int multiple = ratio > kMostMultiple    ? kMostMultiple
                         : ratio < kLeastMultiple ? kLeastMultiple
                                                  : static_cast<int>(ratio);
    coder.symbol(multiple_, symbolOf(multiple));
    codeDiff(coder, multiple, diff);
  }

  std::array<Series, kSeries> series_{};
  unsigned current_ = 0, newest_ = 0;
  SymbolModel<kOther + 4> multiple_;
  SymbolModel<16> firstDiff_;
  IntegerModel<32, 9> diffs_;
};

}  // namespace Meseta47::host::laz
