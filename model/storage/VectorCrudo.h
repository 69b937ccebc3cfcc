#pragma once

#include <memory>
#include <utility>
#include <vector>

namespace Meseta47 {

/// Leaves new plain elements without a value: big buffers are filled at once, by several threads, and writing zeros
/// into them first costs as much as the filling.
template <class T>
class AsignadorCrudo : public std::allocator<T> {
 public:
  /// The allocator of another type, as containers ask for it.
  template <class U>
  struct rebind {
    using other = AsignadorCrudo<U>;
  };

  AsignadorCrudo() = default;
  template <class U>
  AsignadorCrudo(AsignadorCrudo<U> const&) noexcept {}

  template <class U>
  void construct(U* lugar) noexcept {
    ::new (static_cast<void*>(lugar)) U;
  }
  template <class U, class... Args>
  void construct(U* lugar, Args&&... args) {
    ::new (static_cast<void*>(lugar)) U(std::forward<Args>(args)...);
  }
};

/// A vector whose resize() leaves plain elements without a value.
template <class T>
using VectorCrudo = std::vector<T, AsignadorCrudo<T>>;

}  // namespace Meseta47
