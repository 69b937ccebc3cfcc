#pragma once

#include "model/geometry/CCoor3D.h"
#include "model/geometry/Entero128.h"

namespace Meseta47::host {

/// Six times the volume of a tetrahedron, exactly: positive when (b - a, c - a, d - a) is a right-handed system.
/// Differences of 32-bit coordinates take 33 bits, so it takes 102, and sums of tetrahedra within one cube no more.
[[nodiscard]] inline Entero128 sixVolumes(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c,
                                          CCoor3D<int> const& d) {
  const auto between = [](int from, int to) { return Entero128(std::int64_t{to} - from); };
  const Entero128 bx = between(a.x, b.x), by = between(a.y, b.y), bz = between(a.z, b.z);
  const Entero128 cx = between(a.x, c.x), cy = between(a.y, c.y), cz = between(a.z, c.z);
  const Entero128 dx = between(a.x, d.x), dy = between(a.y, d.y), dz = between(a.z, d.z);
  return dx * (by * cz - bz * cy) + dy * (bz * cx - bx * cz) + dz * (bx * cy - by * cx);
}

}  // namespace Meseta47::host
