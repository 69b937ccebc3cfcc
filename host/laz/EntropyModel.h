#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

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
/// The shares are sorted, and a symbol is found by counting those that do not exceed a number: first among every
/// sixteenth, then among sixteen. Symbols are unpredictable by their nature, and this takes no branch that depends on
/// them. Shares beyond the last symbol hold the largest number, which only the last symbol's shares can reach.
template <unsigned Capacity>
class SymbolModel {
 public:
  static constexpr unsigned kShareBits = 15;

  constexpr explicit SymbolModel(unsigned symbols = Capacity) { reset(symbols); }

  constexpr void reset(unsigned symbols) {
    symbols_ = symbols;
    counts_.fill(0);
    std::fill_n(counts_.begin(), symbols, std::uint16_t{1});
    starts_.fill(kLargest);
    coarse_.fill(kLargest);
    total_ = symbols;
    share();
    cycle_ = untilUpdate_ = (symbols + 6) / 2;
  }

  [[nodiscard]] unsigned last() const { return symbols_ - 1; }
  /// Share of all symbols below this one, of 2^15; of a symbol beyond the last one, any number.
  [[nodiscard]] std::uint32_t start(unsigned symbol) const { return static_cast<std::uint32_t>(starts_[symbol]); }

  /// The symbol whose shares hold this one, or the last symbol.
  [[nodiscard]] unsigned find(std::uint32_t share) const {
    const auto wanted = static_cast<std::int16_t>(std::min<std::uint32_t>(share, kLargest));
    if constexpr (kGroups <= kGroupsAtOnce) {
      unsigned found = 0;
      for (unsigned i = 0; i < kGroups * kGroup; i += kGroup) found += CuentaHasta(starts_.data() + i, wanted);
      return std::min(found - 1, last());
    } else {
      unsigned group = 0;
      for (unsigned i = 0; i < coarse_.size(); i += kGroup) group += CuentaHasta(coarse_.data() + i, wanted);
      const unsigned first = kGroup * (std::min(group, kGroups) - 1);
      return std::min(first + CuentaHasta(starts_.data() + first, wanted) - 1, last());
    }
  }

  void note(unsigned symbol) {
    ++counts_[symbol];
    if (--untilUpdate_ == 0) update();
  }

 private:
  static constexpr unsigned kGroup = 16;
  static constexpr unsigned kGroupsAtOnce = 4;  // so few are looked through at once faster than one after the other
  static constexpr unsigned kGroups = (Capacity + kGroup - 1) / kGroup;
  static constexpr unsigned kCoarse = (kGroups + kGroup - 1) / kGroup * kGroup;
  static constexpr std::int16_t kLargest = 0x7fff;

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
      starts_[i] = static_cast<std::int16_t>(scale * below >> (31 - kShareBits));
      below += counts_[i];
    }
    for (unsigned i = 0; i < symbols_; i += kGroup) coarse_[i / kGroup] = starts_[i];
  }

  std::array<std::int16_t, kGroups * kGroup + 1> starts_{};  // one more, so that the last symbol has a neighbour too
  std::array<std::int16_t, kCoarse> coarse_{};
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
