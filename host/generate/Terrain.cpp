#include "host/generate/Terrain.h"

#include <cmath>

#include "host/generate/Noise.h"

namespace Meseta47::host {
namespace {

/// Streams of chance, so that no two features share their lattice.
enum Stream : std::uint64_t {
  kRelief = 11,
  kRough = 31,
  kRiver = 41,
  kMain = 51,
  kCross = 61,
  kWood = 71,
  kParcel = 81
};

constexpr double kWaterLevel = 612.0;   // metres above the sea, as on a high plain
constexpr double kRiverSlope = 0.0012;  // a fall of 1.2 m a kilometre: a river of the plain
constexpr double kBankHeight = 1.8;
constexpr double kValley = 190.0;    // from here on, metres from a river, the hills have their full height
constexpr double kEmbankment = 9.0;  // width of the strip where a road's level goes over into the land's
constexpr double kBridgeClearance = 4.4;
constexpr double kAbutment = 4.0;  // a bridge begins this far from the water

/// A family of winding lines, one every `period` metres, that all run along the same axis.
struct Family {
  std::uint64_t stream;
  double first, period, jitter;  ///< metres: place of line 0, spacing, and how far each may stray from it
  double wideSwing, wideWave;    ///< amplitude and wave length of the slow bends
  double closeSwing, closeWave;  ///< and of the close ones
};

// The first river, road and crossing pass near the centre, so that even a small block shows them.
constexpr Family kRivers{kRiver, 42, 1500, 4, 30, 230, 6, 75};
constexpr Family kMainRoads{kMain, -46, 750, 4, 10, 260, 0, 1};
constexpr Family kCrossRoads{kCross, 30, 360, 14, 20, 240, 0, 1};

/// The family with its lines closer, or farther, than usual.
Family spaced(Family family, double factor) {
  family.period *= factor;
  return family;
}

Value1 lineAt(Family const& family, std::uint64_t seed, std::int64_t index, double along) {
  const std::uint64_t own = cellHash(seed + family.stream, index);
  const Value1 wide = noise1(own, along / family.wideWave);
  const double base =
      family.first + static_cast<double>(index) * family.period + family.jitter * (2.0 * unitOf(mix(own)) - 1.0);
  Value1 line{base + family.wideSwing * wide.value, family.wideSwing / family.wideWave * wide.slope};
  if (family.closeSwing > 0) {
    const Value1 close = noise1(own + 1, along / family.closeWave);
    line.value += family.closeSwing * close.value;
    line.slope += family.closeSwing / family.closeWave * close.slope;
  }
  return line;
}

/// One Newton step towards the foot of the perpendicular: the bends are so wide that a second one would not show.
LineFoot footOn(Family const& family, std::uint64_t seed, double along, double across) {
  LineFoot foot;
  foot.index = floorOf((across - family.first) / family.period + 0.5);
  const Value1 line = lineAt(family, seed, foot.index, along);
  const double miss = across - line.value;
  const double stretch = 1.0 + line.slope * line.slope;
  foot.along = along + miss * line.slope / stretch;
  foot.side = miss / std::sqrt(stretch);
  foot.slope = line.slope;
  return foot;
}

/// Sum of octaves in which the steep places get less of the finer ones, which leaves smooth crests above worn slopes.
Value2 wornRelief(std::uint64_t seed, double x, double y, int octaves) {
  constexpr double kLongest = 640.0, kHighest = 72.0, kShrink = 0.47, kWear = 4.0;
  Value2 sum;
  double wave = kLongest, height = kHighest, slopeX = 0, slopeY = 0;
  for (int octave = 0; octave < octaves; ++octave) {
    const Value2 part = noise2(seed + kRelief + static_cast<std::uint64_t>(octave), x / wave, y / wave);
    slopeX += height / wave * part.dx;
    slopeY += height / wave * part.dy;
    const double kept = height / (1.0 + kWear * (slopeX * slopeX + slopeY * slopeY));
    sum.value += kept * part.value;
    sum.dx += kept / wave * part.dx;
    sum.dy += kept / wave * part.dy;
    wave *= 0.5;
    height *= kShrink;
  }
  return sum;
}

Value2 roughness(std::uint64_t seed, double x, double y) {
  const Value2 wide = noise2(seed + kRough, x / 19.0, y / 19.0);
  const Value2 fine = noise2(seed + kRough + 1, x / 5.3, y / 5.3);
  return {0.35 * wide.value + 0.07 * fine.value, 0.35 / 19.0 * wide.dx + 0.07 / 5.3 * fine.dx,
          0.35 / 19.0 * wide.dy + 0.07 / 5.3 * fine.dy};
}

/// Height of the hills over their valleys: the relief with its lowest part bent smoothly to stay above 0.
double overValley(double relief) {
  const double raised = relief + 22.0;
  return 0.5 * (raised + std::sqrt(raised * raised + 90.0));
}

}  // namespace

Terrain::Terrain(std::uint64_t seed, LandStyle const& style) : seed_(mix(seed + 0x5EED)), kind_(style) {}

RiverFoot Terrain::river(double x, double y) const {
  const LineFoot foot = footOn(spaced(kRivers, kind_.riverSpacing), seed_, y, x);
  const double width = noise1(seed_ + kRiver + 5 + static_cast<std::uint64_t>(foot.index), y / 120.0).value;
  return {foot.distance(), kind_.riverWidth * (7.0 + 2.2 * width), kWaterLevel + kRiverSlope * y};
}

LineFoot Terrain::mainRoad(double x, double y) const {
  LineFoot foot = footOn(spaced(kMainRoads, kind_.roadSpacing), seed_, y, x);
  foot.alongY = true;
  return foot;
}

LineFoot Terrain::crossRoad(double x, double y) const {
  return footOn(spaced(kCrossRoads, kind_.roadSpacing), seed_, x, y);
}

double Terrain::roadDistance(double x, double y) const {
  const double main = mainRoad(x, y).distance(), cross = crossRoad(x, y).distance();
  return main < cross ? main : cross;
}

double Terrain::roadAcross(LineFoot const& foot, double along) const {
  return lineAt(spaced(foot.alongY ? kMainRoads : kCrossRoads, kind_.roadSpacing), seed_, foot.index, along).value;
}

bool Terrain::isWood(double x, double y) const {
  const double patches = noise2(seed_ + kWood, x / 150.0, y / 150.0).value + kind_.wood;
  if (patches < -0.15 || patches > 0.45) return patches > 0;
  return patches + 0.45 * noise2(seed_ + kWood + 1, x / 37.0, y / 37.0).value > 0.13;
}

/// A road keeps to the long waves of the relief and climbs to the bridges.
double Terrain::roadHeight(double x, double y) const {
  const RiverFoot water = river(x, y);
  const double hills = smoothStep(water.halfWidth + 8.0, kValley, water.distance);
  const double land =
      kBankHeight + (hills > 0 ? hills * overValley(kind_.relief * wornRelief(seed_, x, y, 3).value) : 0.0);
  const double onBridge = 1.0 - smoothStep(water.halfWidth + kAbutment, water.halfWidth + 55.0, water.distance);
  return water.level + between(land, kBridgeClearance, onBridge);
}

double Terrain::flattenFor(LineFoot const& road, double x, double y, double z) const {
  const double distance = road.distance();
  if (distance >= kRoadHalfWidth + kEmbankment) return z;
  const double across = roadAcross(road, road.along);
  const double axisX = road.alongY ? across : road.along, axisY = road.alongY ? road.along : across;
  const RiverFoot water = river(x, y);
  const double ashore =
      smoothStep(water.halfWidth + kAbutment - 1.0, water.halfWidth + kAbutment + 1.0, water.distance);
  const double weight = 1.0 - smoothStep(kRoadHalfWidth, kRoadHalfWidth + kEmbankment, distance);
  return between(z, roadHeight(axisX, axisY), weight * ashore);
}

Ground Terrain::at(double x, double y) const {
  const RiverFoot water = river(x, y);
  if (water.distance < water.halfWidth) return {water.level, 0, 0, Cover::Water, 0};

  const double bank = smoothStep(water.halfWidth, water.halfWidth + 6.0, water.distance);
  const double hills = smoothStep(water.halfWidth + 8.0, kValley, water.distance);
  const Value2 rough = roughness(seed_, x, y);
  Ground ground{water.level + bank * (kBankHeight + rough.value), bank * rough.dx, bank * rough.dy};
  if (hills > 0) {
    const Value2 relief = wornRelief(seed_, x, y, 6);
    ground.z += hills * overValley(kind_.relief * relief.value);
    ground.slopeX += hills * kind_.relief * relief.dx;
    ground.slopeY += hills * kind_.relief * relief.dy;
  }

  const LineFoot cross = crossRoad(x, y), main = mainRoad(x, y);
  ground.z = flattenFor(main, x, y, flattenFor(cross, x, y, ground.z));
  const bool shore = water.distance < water.halfWidth + kAbutment;
  if (!shore && (main.distance() < kRoadHalfWidth || cross.distance() < kRoadHalfWidth)) {
    ground.cover = Cover::Road;
  } else if (shore) {
    ground.cover = Cover::Gravel;
  } else if (isWood(x, y)) {
    ground.cover = Cover::WoodFloor;
  } else if (main.distance() > 45 && cross.distance() > 45) {
    ground.cover = Cover::Field;
    ground.parcel = parcelAt(x, y);
  }
  return ground;
}

bool Terrain::bridge(double x, double y, double& z) const {
  const LineFoot road = crossRoad(x, y);
  if (road.distance() >= kRoadHalfWidth + 0.6) return false;
  const RiverFoot water = river(x, y);
  if (water.distance >= water.halfWidth + kAbutment) return false;
  z = roadHeight(road.along, roadAcross(road, road.along));
  return true;
}

/// Long fields side by side, askew to the axes as fields are, with ends that do not meet those of the next column.
std::uint64_t Terrain::parcelAt(double x, double y) const {
  const double u = 0.8 * x + 0.6 * y, v = 0.8 * y - 0.6 * x;
  const std::int64_t column = floorOf(u / 64.0);
  const double shift = 90.0 * unitOf(cellHash(seed_ + kParcel, column));
  return cellHash(seed_ + kParcel, column, floorOf((v + shift) / 130.0));
}

}  // namespace Meseta47::host
