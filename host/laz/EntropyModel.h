#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "platform/Cuenta.h"

namespace Meseta47::host::laz {

// The models by which an arithmetic coder divides its interval: adaptive frequencies, after Amir Said, "Introduction to
// Arithmetic Coding: Theory and Practice" (2004). Both sides of a file must update them at the same symbols with the
// same integers, so every constant below is a part of the format.

/// Frequency of the zeros among bits.
class BitModel {
 public:
  static constexpr unsigned kShareBits = 13;

  /// Share of the zeros, of 2^13.
  [[nodiscard]] std::uint32_t zeroShare() const { return zeroShare_; }

  void note(unsigned bit) {
    zeros_ += bit ^ 1U;
    if (--untilUpdate_ == 0) update();
  }

 private:
  void update() {
    constexpr std::uint32_t kMostBits = 1U << kShareBits;
    constexpr std::uint32_t kLongestCycle = 64;
    total_ += cycle_;
    if (total_ > kMostBits) {
      total_ = (total_ + 1) / 2;
      zeros_ = (zeros_ + 1) / 2;
      if (zeros_ == total_) ++total_;
    }
    zeroShare_ = zeros_ * (0x80000000U / total_) >> (31 - kShareBits);
    cycle_ = std::min(cycle_ * 5 / 4, kLongestCycle);
    untilUpdate_ = cycle_;
  }

  std::uint32_t zeros_ = 1, total_ = 2;
  std::uint32_t zeroShare_ = 1U << (kShareBits - 1);
  std::uint32_t cycle_ = 4, untilUpdate_ = 4;
};

/// Frequencies of up to `Capacity` symbols; how many there are is said when the model is made or reset.
///
/// The shares are sorted. A table tells for every so many of them, a bucket, the first symbol that reaches into it, and
/// the symbol is found by counting how many of the next sixteen begin below a number. Symbols are unpredictable by
/// their nature, and this takes no branch that depends on them, but where more than sixteen reach into a bucket: those
/// are rare. Shares are kept less 2^15, so that what stands behind the last symbol is larger than any number asked for.
template <unsigned Capacity>
class SymbolModel {
 public:
  static constexpr unsigned kShareBits = 15;

  constexpr explicit SymbolModel(unsigned symbols = Capacity) { reset(symbols); }

  constexpr void reset(unsigned symbols) {
    symbols_ = symbols;
    counts_.fill(0);
    std::fill_n(counts_.begin(), symbols, std::uint16_t{1});
    starts_.fill(kBeyond);
    total_ = symbols;
    share();
    cycle_ = untilUpdate_ = (symbols + 6) / 2;
  }

  [[nodiscard]] constexpr unsigned last() const { return symbols_ - 1; }
  /// Share of all symbols below this one, of 2^15; of a symbol beyond the last one, any number.
  [[nodiscard]] constexpr std::uint32_t start(unsigned symbol) const {
    return static_cast<std::uint32_t>(starts_[symbol] + kShares);
  }

  /// The symbol whose shares hold this one, which is below kBuckets * kBucket, or the last symbol.
  [[nodiscard]] unsigned find(std::uint32_t share) const {
    const auto wanted = static_cast<std::int16_t>(static_cast<std::int32_t>(share) - kShares);
    unsigned first = firsts_[share / kBucket];
    unsigned begun = CuentaHasta(starts_.data() + first, wanted);
    while (begun == kGroup) {
      first += kGroup;
      begun = CuentaHasta(starts_.data() + first, wanted);
    }
    return first + begun - 1;
  }

  void note(unsigned symbol) {
    ++counts_[symbol];
    if (--untilUpdate_ == 0) update();
  }

 private:
  static constexpr unsigned kGroup = 16;
  static constexpr std::int32_t kShares = 1 << kShareBits;
  static constexpr unsigned kBucket = Capacity > 64 ? 128 : 512;
  static constexpr unsigned kBuckets = kShares / kBucket + 1;  // the last: what rounding leaves behind all shares
  static constexpr std::int16_t kBeyond = 0x7fff;
  using Symbol = std::conditional_t<(Capacity > 256), std::uint16_t, std::uint8_t>;

  void update() {
    constexpr std::uint32_t kMostSymbols = 1U << kShareBits;
    total_ += cycle_;
    if (total_ > kMostSymbols) {
      total_ = 0;
      for (unsigned i = 0; i < symbols_; ++i) {
        counts_[i] = static_cast<std::uint16_t>((counts_[i] + 1) / 2);
        total_ += counts_[i];
      }
    }
    share();
    cycle_ = std::min(cycle_ * 5 / 4, (symbols_ + 6) * 8);
    untilUpdate_ = cycle_;
  }

  constexpr void share() {
    const std::uint32_t scale = 0x80000000U / total_;
    std::uint32_t below = 0;
    for (unsigned i = 0; i < symbols_; ++i) {
      starts_[i] = static_cast<std::int16_t>(static_cast<std::int32_t>(scale * below >> (31 - kShareBits)) - kShares);
      below += counts_[i];
    }
    unsigned bucket = 0;
    for (unsigned i = 0; i < last(); ++i) {
      const unsigned behind = (start(i + 1) + kBucket - 1) / kBucket;
      while (bucket < behind) firsts_[bucket++] = static_cast<Symbol>(i);
    }
    while (bucket < kBuckets) firsts_[bucket++] = static_cast<Symbol>(last());
  }

  std::array<std::int16_t, Capacity + kGroup> starts_{};  // so many more, so that sixteen can be read from each on
  std::array<Symbol, kBuckets> firsts_{};
  std::array<std::uint16_t, Capacity> counts_{};
  std::uint32_t symbols_ = 0, total_ = 0, cycle_ = 0, untilUpdate_ = 0;
};

/// Models chosen by a context, as new when first met: most contexts never are.
template <unsigned Symbols, unsigned Contexts>
class ModelsByContext {
 public:
  void reset() { met_.fill(false); }

  [[nodiscard]] SymbolModel<Symbols>& operator[](std::size_t context) {
    if (!met_[context]) {
      static constexpr SymbolModel<Symbols> kNew;
      models_[context] = kNew;
      met_[context] = true;
    }
    return models_[context];
  }

 private:
  std::array<SymbolModel<Symbols>, Contexts> models_;
  std::array<bool, Contexts> met_{};
};

}  // namespace Meseta47::host::laz
