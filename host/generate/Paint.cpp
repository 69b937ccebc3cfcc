#include "host/generate/Paint.h"

#include <array>
#include <cmath>

namespace Meseta47::host {
namespace {

constexpr std::array<Material, 5> kCrops{{{198, 178, 112, 150, 0.10},    // ripe wheat
                                          {146, 112, 80, 96, 0.10},      // ploughed
                                          {112, 146, 70, 178, 0.10},     // young corn
                                          {134, 150, 88, 170, 0.10},     // pasture
                                          {170, 150, 104, 130, 0.10}}};  // stubble
constexpr std::array<Material, 3> kTiles{
    {{176, 92, 66, 120, 0.06}, {158, 106, 82, 112, 0.06}, {122, 78, 68, 100, 0.06}}};
constexpr std::array<Material, 3> kFlatRoofs{
    {{176, 174, 170, 140, 0.05}, {128, 128, 132, 84, 0.05}, {206, 202, 194, 176, 0.05}}};

std::uint16_t wide(double eightBits) { return static_cast<std::uint16_t>(clampTo(eightBits * 256.0, 0.0, 65535.0)); }

Material tinted(Material material, double factor) {
  const auto times = [factor](std::uint8_t value) {
    return static_cast<std::uint8_t>(clampTo(value * factor, 0.0, 255.0));
  };
  return {times(material.red), times(material.green), times(material.blue), material.intensity, material.spread};
}

}  // namespace

Material materialOf(Ground const& ground) {
  switch (ground.cover) {
    case Cover::Field:
      return kCrops[ground.parcel % kCrops.size()];
    case Cover::WoodFloor:
      return {104, 92, 66, 118, 0.16};
    case Cover::Gravel:
      return {186, 178, 160, 148, 0.12};
    case Cover::Road:
      return {112, 112, 116, 44, 0.06};
    case Cover::Water:
      return {62, 88, 92, 14, 0.30};
    case Cover::Meadow:
      break;
  }
  return {126, 144, 82, 164, 0.12};
}

Material materialOf(Roof const& roof) {
  return roof.flat ? kFlatRoofs[roof.paint % kFlatRoofs.size()] : kTiles[roof.paint % kTiles.size()];
}

Material materialOf(Crown const& crown) {
  const double factor = 0.85 + 0.3 * crown.tint;
  switch (crown.species) {
    case Species::Conifer:
      return tinted({52, 84, 52, 92, 0.20}, factor);
    case Species::Poplar:
      return tinted({104, 136, 70, 124, 0.20}, factor);
    case Species::Broadleaf:
      return tinted({80, 118, 56, 132, 0.20}, factor);
    case Species::Shrub:
      break;
  }
  return tinted({112, 124, 76, 110, 0.20}, factor);
}

Material herbMaterial() { return {138, 152, 84, 140, 0.18}; }
Material wallMaterial() { return {204, 194, 176, 96, 0.10}; }
Material deckMaterial() { return {150, 148, 144, 78, 0.06}; }
Material airMaterial() { return {150, 160, 170, 10, 0.60}; }

double shadeOf(double slopeX, double slopeY) {
  constexpr double kSunX = -0.5, kSunY = -0.5, kSunZ = 0.70710678118654752;
  const double facing = (kSunZ - kSunX * slopeX - kSunY * slopeY) / std::sqrt(1.0 + slopeX * slopeX + slopeY * slopeY);
  return clampTo(0.35 + 0.85 * facing, 0.35, 1.15);
}

void paint(Material const& material, double shade, double share, Random& random, LasPoint& point) {
  const double grain = 1.0 + 0.5 * material.spread * random.bell();
  const double light = shade * grain;
  point.red = wide(material.red * light);
  point.green = wide(material.green * light);
  point.blue = wide(material.blue * light);
  const double echo = 1.0 + material.spread * random.bell();
  point.intensity = wide(material.intensity * share * clampTo(echo, 0.05, 1.6));
}

}  // namespace Meseta47::host
