#include "host/generate/Buildings.h"

#include <algorithm>
#include <cmath>

#include "host/generate/Noise.h"

namespace Meseta47::host {
namespace {

constexpr double kFrontage = 23.0;  // metres of road for a lot
constexpr double kReach = 34.0;     // no wall stands farther from the road's axis than this
constexpr double kSetBack = 5.0;    // from the road's edge to the nearest wall
constexpr double kMargin = 3.0;
constexpr double kMaxHalfLength = 10.0, kMaxHalfDepth = 8.0;

/// Chance of a house on a lot: a village at the centre of the land, so that a small block has one, and others by
/// chance.
double settled(std::uint64_t seed, double x, double y) {
  const double centre = 1.0 - smoothStep(60.0, 260.0, std::sqrt(x * x + y * y));
  const double others = smoothStep(0.1, 0.35, noise2(seed, x / 420.0, y / 420.0).value);
  return 0.04 + 0.8 * std::max(centre, others);
}

/// The place in the building's own axes: along its length and across.
struct Local {
  double u, v;
};

Local localOf(Building const& building, double x, double y) {
  const double dx = x - building.x, dy = y - building.y;
  return {dx * building.ux + dy * building.uy, dy * building.ux - dx * building.uy};
}

void chooseShape(Building& building, Random& random) {
  const double kind = random.unit();
  building.shape = kind < 0.30 ? RoofShape::Flat : (kind < 0.72 ? RoofShape::Gable : RoofShape::Hip);
  const double pitch = between(0.35, 0.6, random.unit());
  building.rise = building.shape == RoofShape::Flat ? 0.0 : pitch * building.halfDepth;
}

void slopeAlong(Building const& building, double slopeU, double slopeV, Roof& roof) {
  roof.slopeX = slopeU * building.ux - slopeV * building.uy;
  roof.slopeY = slopeU * building.uy + slopeV * building.ux;
}

Roof roofOver(Building const& building, double x, double y) {
  const Local p = localOf(building, x, y);
  const double toSide = building.halfDepth - std::abs(p.v), toEnd = building.halfLength - std::abs(p.u);
  Roof roof{building.eave, 0, 0, std::min(toSide, toEnd), building.eave, building.shape == RoofShape::Flat,
            building.paint};
  if (roof.flat) return roof;
  const double pitch = building.rise / building.halfDepth;
  const bool endFace = building.shape == RoofShape::Hip && toEnd < toSide;
  roof.z += pitch * (endFace ? toEnd : toSide);
  slopeAlong(building, endFace ? (p.u > 0 ? -pitch : pitch) : 0.0, endFace ? 0.0 : (p.v > 0 ? -pitch : pitch), roof);
  return roof;
}

}  // namespace

Buildings::Buildings(Terrain const& terrain, std::uint64_t seed) : terrain_(terrain), seed_(mix(seed + 0xB11D)) {}

bool Buildings::at(double x, double y, Roof& roof) {
  Building const* building = find(x, y, 0.0);
  if (building != nullptr) roof = roofOver(*building, x, y);
  return building != nullptr;
}

bool Buildings::isNear(double x, double y, double margin) { return find(x, y, margin) != nullptr; }

Building const* Buildings::find(double x, double y, double margin) {
  Building const* building = findAlong(terrain_.mainRoad(x, y), x, y, margin);
  return building != nullptr ? building : findAlong(terrain_.crossRoad(x, y), x, y, margin);
}

Building const* Buildings::findAlong(LineFoot const& road, double x, double y, double margin) {
  if (road.distance() > kReach + margin) return nullptr;
  const std::int64_t nearest = floorOf(road.along / kFrontage);
  for (std::int64_t number = nearest - 1; number <= nearest + 1; ++number) {
    Building const& building = onLot({road.alongY, road.index, number, road.side < 0 ? -1 : 1});
    if (!building.stands) continue;
    const Local p = localOf(building, x, y);
    if (std::abs(p.u) < building.halfLength + margin && std::abs(p.v) < building.halfDepth + margin) return &building;
  }
  return nullptr;
}

Building const& Buildings::onLot(Lot const& lot) {
  const std::uint64_t key =
      cellHash(static_cast<std::uint64_t>(lot.side + 1) * 2 + (lot.alongY ? 1 : 0), lot.road, lot.number);
  Slot& slot = slots_[key % slots_.size()];
  if (!(slot.lot == lot)) slot = {lot, build(lot)};
  return slot.building;
}

Building Buildings::build(Lot const& lot) const {
  Random random(cellHash(seed_ + (lot.alongY ? 1 : 0), lot.number * 2 + (lot.side > 0 ? 1 : 0), lot.road));
  LineFoot road;
  road.alongY = lot.alongY;
  road.index = lot.road;
  const double along = (static_cast<double>(lot.number) + between(0.44, 0.56, random.unit())) * kFrontage;
  const double across = terrain_.roadAcross(road, along);
  const double step = terrain_.roadAcross(road, along + 1.0) - across;
  const double length = std::sqrt(1.0 + step * step);

  Building building;
  building.ux = (lot.alongY ? step : 1.0) / length;
  building.uy = (lot.alongY ? 1.0 : step) / length;
  building.halfLength = between(4.5, kMaxHalfLength, random.unit());
  building.halfDepth = between(3.6, std::min(kMaxHalfDepth, building.halfLength), random.unit());
  const double back = Terrain::kRoadHalfWidth + kSetBack + building.halfDepth + 5.0 * random.unit();
  const double normalX = lot.alongY ? building.uy : -building.uy, normalY = lot.alongY ? -building.ux : building.ux;
  building.x = (lot.alongY ? across : along) + lot.side * back * normalX;
  building.y = (lot.alongY ? along : across) + lot.side * back * normalY;
  building.paint = random.bits();
  chooseShape(building, random);
  const double storeys = 1.0 + static_cast<double>(floorOf(random.unit() * 3.0));

  building.stands = random.chance(std::max(terrain_.style().settled, settled(seed_, building.x, building.y))) &&
                    isFree(lot, building);
  if (building.stands) building.eave = highestGround(building) + 0.4 + 2.9 * storeys;
  return building;
}

/// Houses keep off the water, and off the other road with its own houses.
bool Buildings::isFree(Lot const& lot, Building const& building) const {
  const RiverFoot water = terrain_.river(building.x, building.y);
  if (water.distance < water.halfWidth + 18.0) return false;
  if (lot.alongY) return terrain_.crossRoad(building.x, building.y).distance() > 20.0;
  return terrain_.mainRoad(building.x, building.y).distance() > kReach + kMaxHalfLength + kMargin;
}

double Buildings::highestGround(Building const& building) const {
  double highest = terrain_.height(building.x, building.y);
  for (int u = -1; u <= 1; ++u) {
    for (int v = -1; v <= 1; ++v) {
      const double du = u * building.halfLength, dv = v * building.halfDepth;
      highest = std::max(highest, terrain_.height(building.x + du * building.ux - dv * building.uy,
                                                  building.y + du * building.uy + dv * building.ux));
    }
  }
  return highest;
}

}  // namespace Meseta47::host
