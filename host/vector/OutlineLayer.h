#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/vector/VectorOutput.h"
#include "model/terrain/CTIN.h"

namespace Meseta47::host {

/// A polygon of an outline: an outer ring and the holes in it, as indices into CTIN::Limite().
struct OutlinePolygon {
  std::size_t outer;
  std::vector<std::size_t> holes;
};

/// Which hole lies in which outer ring, exactly: each in the smallest that surrounds it. Polygons stand in the order of
/// their outer rings. Close to O(n log n) on the vertices of the outline. Throws Failure for an outline with a hole
/// that no ring surrounds.
[[nodiscard]] std::vector<OutlinePolygon> nestRings(CTIN const& tin);

/// The layer `outline`: polygons with heights, outer rings counter-clockwise and holes clockwise seen from above where
/// a format leaves the choice, and in fields what each is: AREA in plan, without its holes, and HOLES, their number.
[[nodiscard]] VectorLayer outlineLayer(int decimals);

/// Adds the outline of a model to an output with that layer. Returns the number of polygons.
std::size_t addOutline(CTIN const& tin, VectorOutput& output);

}  // namespace Meseta47::host
