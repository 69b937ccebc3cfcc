#pragma once

#include <array>

#include "model/geometry/CCoor3D.h"
#include "model/geometry/CEsfera.h"
#include "model/geometry/Signo.h"

namespace Meseta47::host {

/// How far a set of points reaches: keeps the first point, the first at another place, the first off their line and the
/// first off their plane. Exact.
class SpaceRank {
 public:
  /// How many of the four there are: 0 for no points, 1 when all lie at one place, 2 on a line, 3 in a plane.
  [[nodiscard]] unsigned points() const { return count_; }
  /// True when the point became one of the four.
  bool add(CCoor3D<int> const& p) {
    const bool goesOn = count_ == 0 || (count_ == 1 && p != first_[0]) || (count_ == 2 && isOffLine(p)) ||
                        (count_ == 3 && SignoDeVolumen(first_[0], first_[1], first_[2], p) != 0);
    if (goesOn) first_[count_++] = p;
    return goesOn;
  }

 private:
  [[nodiscard]] bool isOffLine(CCoor3D<int> const& p) const {
    auto const &a = first_[0], &b = first_[1];
    const auto turns = [&](int CCoor3D<int>::*u, int CCoor3D<int>::*v) {
      return ProductoVectorial(std::int64_t{b.*u} - a.*u, std::int64_t{b.*v} - a.*v, std::int64_t{p.*u} - a.*u,
                               std::int64_t{p.*v} - a.*v) != 0;
    };
    return turns(&CCoor3D<int>::x, &CCoor3D<int>::y) || turns(&CCoor3D<int>::y, &CCoor3D<int>::z) ||
           turns(&CCoor3D<int>::x, &CCoor3D<int>::z);
  }

  std::array<CCoor3D<int>, 4> first_{};
  unsigned count_ = 0;
};

}  // namespace Meseta47::host
