#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "support/Mesh.h"

namespace Meseta47::support {

/// Clouds that damaged files and careless exports give: each breaks an assumption that spares memory, time or digits
/// elsewhere. Coordinates read as millimetres.
enum class Extreme {
  EqualPoints,  ///< all in one place at different heights, but for five others
  FewPlaces,    ///< a thousand places, whatever the number of points
  OneHeight,
  FarOutlier,      ///< a square kilometre, and a point 2,000 km away
  FarClusters,     ///< two spots of a kilometre, 2,000 km apart
  StraightEast,    ///< all on one line
  StraightAslant,  ///< the same, in no simple direction
};

inline constexpr std::array kAllExtremes{Extreme::EqualPoints,   Extreme::FewPlaces,   Extreme::OneHeight,
                                         Extreme::FarOutlier,    Extreme::FarClusters, Extreme::StraightEast,
                                         Extreme::StraightAslant};

[[nodiscard]] char const* name(Extreme extreme);

/// How many points make it extreme.
[[nodiscard]] std::size_t fullSize(Extreme extreme);

/// n points, the same on every machine, in no order that follows their places.
[[nodiscard]] std::vector<Point> extreme(Extreme kind, std::size_t n);

}  // namespace Meseta47::support
