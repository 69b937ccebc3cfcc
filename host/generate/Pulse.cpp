#include "host/generate/Pulse.h"

#include <cmath>

namespace Meseta47::host {
namespace {

constexpr double kRangeNoise = 0.022;    // metres, one standard deviation: a common figure for a topographic scanner
constexpr double kDeadRange = 0.7;       // metres between two returns that the receiver can still tell apart
constexpr double kWallBand = 0.22;       // pulses this near to the edge of a roof may slide down the wall
constexpr double kNoiseChance = 1.2e-4;  // of each kind of noise, for a pulse

Echo groundEcho(Ground const& ground, Random& random) {
  const PointClass kind = ground.cover == Cover::Water  ? PointClass::Water
                          : ground.cover == Cover::Road ? PointClass::Road
                                                        : PointClass::Ground;
  return {ground.z + kRangeNoise * random.bell(), kind, materialOf(ground), shadeOf(ground.slopeX, ground.slopeY)};
}

Echo roofEcho(Roof const& roof, double groundZ, Random& random) {
  const double noise = kRangeNoise * random.bell();
  if (roof.edge < kWallBand && random.chance(0.35)) {
    const double z = between(groundZ + 0.5, roof.eave, random.unit());
    return {z, PointClass::Building, wallMaterial(), 0.7};
  }
  return {roof.z + noise, PointClass::Building, materialOf(roof), shadeOf(roof.slopeX, roof.slopeY)};
}

PointClass vegetationAt(double height) {
  if (height < 1.0) return PointClass::LowVegetation;
  return height < 4.0 ? PointClass::MediumVegetation : PointClass::HighVegetation;
}

/// What lies under the open sky or under the trees: the highest of bridge, roof and ground.
Echo floorEcho(Scene& scene, Ground const& ground, double x, double y, Random& random) {
  double deck = 0;
  if (scene.terrain.bridge(x, y, deck)) {
    return {deck + kRangeNoise * random.bell(), PointClass::BridgeDeck, deckMaterial(), 0.95};
  }
  Roof roof;
  if (scene.buildings.at(x, y, roof)) return roofEcho(roof, ground.z, random);
  return groundEcho(ground, random);
}

/// Still water throws a pulse away like a mirror: the more, the more askew it falls.
bool isSwallowed(Echo const& floor, double lean, Random& random) {
  if (floor.kind != PointClass::Water) return false;
  return random.chance(clampTo(0.25 + 2.2 * std::abs(lean), 0.0, 0.9));
}

/// Chance that herbs stop the pulse just above such a ground.
double herbChance(Ground const& ground) {
  switch (ground.cover) {
    case Cover::Field:
      return ground.parcel % 5 == 2 ? 0.35 : 0.02;
    case Cover::Meadow:
      return 0.06;
    case Cover::WoodFloor:
      return 0.12;
    default:
      return 0.0;
  }
}

/// Down through a crown: a return at its outside, some among the branches, and what is left for the floor. True when
/// something is left.
bool passCrown(Crown const& crown, double floorZ, double groundZ, Random& random, Echoes& echoes) {
  if (random.chance(0.10)) return true;  // a gap between the leaves
  const bool shrub = crown.species == Species::Shrub;
  const double through = shrub ? 0.45 : (crown.species == Species::Conifer ? 0.62 : 0.68);
  const double dip = random.unit();
  double z = crown.top - 0.7 * dip * dip * (shrub ? 0.3 : 1.0);
  while (z > floorZ + (echoes.empty() ? 0.15 : kDeadRange) && echoes.size() + 1 < Echoes::kMost) {
    const double shade = 0.5 + 0.35 * crown.light + (echoes.empty() ? 0.2 : -0.1);
    echoes.add({z, vegetationAt(z - groundZ), materialOf(crown), shade});
    if (!random.chance(through)) return false;
    const double step = random.unit();
    z -= kDeadRange + 4.5 * step * step;
    if (z < crown.bottom && !random.chance(0.15)) return true;  // below the crown only now and then a lower branch
  }
  return true;
}

/// Birds and dust above, echoes that took a detour below.
void addNoise(double groundZ, Random& random, Echoes& echoes) {
  const double draw = random.unit();
  if (draw >= 2 * kNoiseChance) return;
  const bool high = draw < kNoiseChance;
  const double reach = random.unit();
  echoes.clear();
  if (high) {
    echoes.add({groundZ + between(30.0, 110.0, reach), PointClass::HighNoise, airMaterial(), 1.0});
  } else {
    echoes.add({groundZ - between(1.5, 25.0, reach * reach), PointClass::LowNoise, airMaterial(), 0.6});
  }
}

}  // namespace

void echoesOf(Scene& scene, double x, double y, double lean, Random& random, Echoes& echoes) {
  echoes.clear();
  const Ground ground = scene.terrain.at(x, y);
  Echo floor = floorEcho(scene, ground, x, y, random);
  Crown crown;
  bool left = true;
  if (scene.trees.at(x, y, crown)) left = passCrown(crown, floor.z, ground.z, random, echoes);
  if (left && !isSwallowed(floor, lean, random)) {
    const bool herbs = floor.kind == PointClass::Ground && random.chance(herbChance(ground));
    if (herbs) {
      floor = {floor.z + between(0.12, 0.7, random.unit()), PointClass::LowVegetation, herbMaterial(), floor.shade};
    }
    if (echoes.empty() || echoes[echoes.size() - 1].z > floor.z + kDeadRange) echoes.add(floor);
  }
  addNoise(ground.z, random, echoes);
}

}  // namespace Meseta47::host
