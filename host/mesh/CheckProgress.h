#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <utility>

#include "host/Steps.h"

namespace Meseta47::host {

/// Tells the steps of a check that has a given number of parts. Sorting is most of the time that a check takes, so that
/// it tells while it sorts, too.
class CheckProgress {
 public:
  CheckProgress(Steps steps, unsigned long long parts) : steps_(std::move(steps)), parts_(parts) {}

  /// A part begins.
  void part() {
    tell();
    ++begun_;
  }
  /// Something small was done; cheap enough for each element of a loop.
  void tick() {
    if ((++ticks_ & kOften) == 0) tell();
  }

  template <class Iterator, class Less = std::less<>>
  void sort(Iterator begin, Iterator end, Less less = {}) {
    std::sort(begin, end, [&](auto const& a, auto const& b) {
      tick();
      return less(a, b);
    });
  }

 private:
  void tell() const {
    if (steps_) steps_(begun_, parts_);
  }

  static constexpr std::uint32_t kOften = (1U << 18) - 1;  // a few milliseconds of comparisons

  Steps steps_;
  unsigned long long parts_, begun_ = 0;
  std::uint32_t ticks_ = 0;
};

}  // namespace Meseta47::host
