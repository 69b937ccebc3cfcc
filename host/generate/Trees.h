#pragma once

#include <array>
#include <cstdint>

#include "host/generate/Buildings.h"
#include "host/generate/Terrain.h"

namespace Meseta47::host {

enum class Species : std::uint8_t { Conifer, Broadleaf, Poplar, Shrub };

/// A tree or a shrub. Its crown is a cone, a ball drawn tall, a narrow column or a low dome.
struct Tree {
  bool stands = false;  ///< false: nothing grows in the cell
  double x = 0, y = 0;
  double foot = 0;    ///< height of the ground at the stem
  double height = 0;  ///< of the top over the foot, metres
  double radius = 0;  ///< of the crown, metres; less than a cell
  Species species = Species::Shrub;
  double tint = 0;  ///< 0 to 1, for the colour
};

/// The highest crown above a place.
struct Crown {
  double top = 0, bottom = 0;  ///< where it begins and ends above the place
  double light = 0;            ///< 1 at the middle of the crown, 0 at its rim
  Species species = Species::Shrub;
  double tint = 0;
};

/// Woods, trees along rivers and roads, and scattered ones. A pure function of place and seed; the cells looked at last
/// are remembered, so an object serves one thread.
class Trees {
 public:
  /// Both must outlive the object.
  Trees(Terrain const& terrain, Buildings& buildings, std::uint64_t seed);

  /// The crown above a place in `crown`, or false under the open sky.
  bool at(double x, double y, Crown& crown);

 private:
  struct Slot {
    bool used = false;
    std::int64_t i = 0, j = 0;
    Tree tree;
  };

  Tree const& inCell(std::int64_t i, std::int64_t j);
  Tree grow(std::int64_t i, std::int64_t j);
  double chanceAt(double x, double y);

  Terrain const& terrain_;
  Buildings& buildings_;
  std::uint64_t seed_;
  std::array<Slot, 4096> slots_;  // 128 x 32 cells: the width of a strip, and the rows that a scan line touches
};

}  // namespace Meseta47::host
