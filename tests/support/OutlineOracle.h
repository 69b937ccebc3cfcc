#pragma once

#include <string>
#include <vector>

#include "support/ExactInteger.h"
#include "support/Mesh.h"

namespace Meseta47::support {

/// A closed line: its last point is the first one again.
using Ring = std::vector<Point>;

/// What keeps the rings from being the outline of a mesh without its triangles at the frame and those that have a side
/// with a square above `greatestSide2` in plan; empty when nothing does. Each side of exactly one triangle that stays
/// has to be a side of exactly one ring, the triangle on its left, and no ring may meet a plan position twice. That the
/// signed areas of the rings add up to the area of the triangles follows and is looked at as well. Exact; O(t log t).
[[nodiscard]] std::string outlineFaults(std::vector<Ring> const& rings, Mesh const& mesh, Int128 greatestSide2);

/// Triangles of the mesh that stay.
[[nodiscard]] std::vector<Triangle> withShortSides(Mesh const& mesh, Int128 greatestSide2);

}  // namespace Meseta47::support
