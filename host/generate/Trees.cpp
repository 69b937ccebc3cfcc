#include "host/generate/Trees.h"

#include <cmath>

#include "host/generate/Noise.h"

namespace Meseta47::host {
namespace {

constexpr double kCell = 5.0;  // a crown may not be wider than a cell to each side

struct Habit {
  double lowest, highest;  ///< height of a grown tree
  double narrow, wide;     ///< radius of the crown
  double bare;             ///< part of the height under the crown
};

constexpr Habit habitOf(Species species) {
  switch (species) {
    case Species::Conifer:
      return {9, 21, 1.7, 3.0, 0.12};
    case Species::Broadleaf:
      return {6, 15, 2.4, 4.6, 0.28};
    case Species::Poplar:
      return {14, 25, 1.4, 2.2, 0.10};
    case Species::Shrub:
      break;
  }
  return {0.7, 2.6, 0.7, 1.6, 0.0};
}

/// Poplars like water, conifers gather in stands of their own.
Species speciesAt(std::uint64_t seed, double x, double y, bool byWater, Random& random) {
  if (random.chance(0.22)) return Species::Shrub;
  if (byWater) return random.chance(0.6) ? Species::Poplar : Species::Broadleaf;
  const double stand = noise2(seed, x / 110.0, y / 110.0).value;
  return random.chance(clampTo(0.4 + 2.0 * stand, 0.05, 0.95)) ? Species::Conifer : Species::Broadleaf;
}

/// Height of the crown's outside over the foot, at a part `t` (0 to 1) of its radius.
double outline(Tree const& tree, Habit const& habit, double t) {
  const double bare = habit.bare * tree.height, crown = tree.height - bare;
  if (tree.species == Species::Conifer) return bare + crown * (1.0 - 0.92 * t);
  return bare + crown * (0.45 + 0.55 * std::sqrt(1.0 - t * t));
}

}  // namespace

Trees::Trees(Terrain const& terrain, Buildings& buildings, std::uint64_t seed)
    : terrain_(terrain), buildings_(buildings), seed_(mix(seed + 0x7EEE)) {}

bool Trees::at(double x, double y, Crown& crown) {
  const std::int64_t i = floorOf(x / kCell), j = floorOf(y / kCell);
  bool found = false;
  for (std::int64_t cj = j - 1; cj <= j + 1; ++cj) {
    for (std::int64_t ci = i - 1; ci <= i + 1; ++ci) {
      Tree const& tree = inCell(ci, cj);
      if (!tree.stands) continue;
      const double dx = x - tree.x, dy = y - tree.y;
      const double square = (dx * dx + dy * dy) / (tree.radius * tree.radius);
      if (square >= 1.0) continue;
      const double t = std::sqrt(square);
      const Habit habit = habitOf(tree.species);
      const double top = tree.foot + outline(tree, habit, t);
      if (found && top <= crown.top) continue;
      crown = {top, tree.foot + habit.bare * tree.height, 1.0 - t, tree.species, tree.tint};
      found = true;
    }
  }
  return found;
}

Tree const& Trees::inCell(std::int64_t i, std::int64_t j) {
  Slot& slot = slots_[static_cast<std::size_t>((i & 127) | ((j & 31) << 7))];
  if (!slot.used || slot.i != i || slot.j != j) slot = {true, i, j, grow(i, j)};
  return slot.tree;
}

Tree Trees::grow(std::int64_t i, std::int64_t j) {
  Random random(cellHash(seed_, i, j));
  Tree tree;
  tree.x = (static_cast<double>(i) + random.unit()) * kCell;
  tree.y = (static_cast<double>(j) + random.unit()) * kCell;
  if (!random.chance(chanceAt(tree.x, tree.y))) return tree;

  const RiverFoot water = terrain_.river(tree.x, tree.y);
  tree.species = speciesAt(seed_ + 1, tree.x, tree.y, water.distance < water.halfWidth + 18.0, random);
  const Habit habit = habitOf(tree.species);
  const double age = random.unit();
  tree.height = between(habit.lowest, habit.highest, age);
  tree.radius = between(habit.narrow, habit.wide, 0.6 * age + 0.4 * random.unit());
  tree.tint = random.unit();
  tree.foot = terrain_.height(tree.x, tree.y);
  tree.stands = true;
  return tree;
}

double Trees::chanceAt(double x, double y) {
  const RiverFoot water = terrain_.river(x, y);
  if (water.distance < water.halfWidth + 2.0) return 0.0;
  const double road = terrain_.roadDistance(x, y);
  if (road < Terrain::kRoadHalfWidth + 2.5 || buildings_.isNear(x, y, 2.5)) return 0.0;
  if (water.distance < water.halfWidth + 14.0) return 0.35;
  if (terrain_.isWood(x, y)) return 0.85;
  return road < 45.0 ? 0.08 : 0.008;
}

}  // namespace Meseta47::host
