#pragma once

#include <array>
#include <optional>
#include <vector>

#include "support/Mesh.h"

namespace Meseta47::support {

/// A point as growth by affinity sees it.
struct AffinityPoint {
  int x = 0, y = 0, z = 0;
  int intensity = 0;
  int cls = 0;
};

/// Which class grows, which one stops it, and across which sides: limits of the absolute difference of heights and of
/// intensities, of the squared length in plan, and of rise over run from the point that has the class to the other.
struct AffinityRule {
  using Limits = std::optional<std::array<double, 2>>;

  int grow = 2, barrier = 6;
  Limits heights{}, intensities{}, squares{}, slopes{};

  [[nodiscard]] bool isFixed(int cls) const { return cls == grow || cls == barrier; }
  [[nodiscard]] bool passes(AffinityPoint const& from, AffinityPoint const& to) const;
};

/// A closed cell: its own triangles in their order, and those of the cells in it. Numbers count points from 1.
struct AffinityCell {
  std::vector<Triangle> own;
  std::vector<AffinityCell> children;
};

/// One run, step by step: cells in the order of their closing, each swept until a sweep changes nothing in its own
/// triangles. Returns how many points changed.
unsigned growOnce(std::vector<AffinityCell> cells, std::vector<AffinityPoint>& points, AffinityRule const& rule);

/// All that can be reached, breadth first along the sides of the triangles that don't touch the frame. Returns how many
/// points changed.
unsigned growToRest(std::vector<Triangle> const& triangles, std::vector<AffinityPoint>& points,
                    AffinityRule const& rule);

}  // namespace Meseta47::support
