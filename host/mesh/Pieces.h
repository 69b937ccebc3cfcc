#pragma once

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

namespace Meseta47::host {

/// Sets of things that hang together, each named by one of them. Nearly O(1) an operation.
class Pieces {
 public:
  explicit Pieces(std::size_t count) : above_(count) { std::iota(above_.begin(), above_.end(), 0U); }
  std::uint32_t of(std::uint32_t i) {
    while (above_[i] != i) i = above_[i] = above_[above_[i]];
    return i;
  }
  void join(std::uint32_t a, std::uint32_t b) { above_[of(a)] = of(b); }

 private:
  std::vector<std::uint32_t> above_;
};

}  // namespace Meseta47::host
