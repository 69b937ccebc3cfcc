#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "support/Mesh.h"

namespace Meseta47::support {

/// Clouds in space that tetrahedralisations fail on. Each is there for one weakness; coordinates read as millimetres.
enum class SpaceFamily {
  Random,
  CubeGrid,      ///< every cube cospherical, rows collinear, layers coplanar
  JitteredGrid,  ///< nearly cospherical everywhere
  Sphere,        ///< rounded to a sphere: flat tetrahedra inside, all spheres nearly the same
  ExactSphere,   ///< exactly cospherical points, up to 1,000 or so; the rest at random inside
  Cylinder,
  TwoPlanes,      ///< two parallel planes, each exactly coplanar, with points of a grid: cocircular as well
  LineWithNoise,  ///< an exactly straight line along no axis, and points around it
  Clusters,       ///< dense spots in an empty space
  Duplicates,     ///< about half of the points repeat another one
  Terrain,        ///< a surface over the plan
  Huge,           ///< as wide as a frame of 32 bits allows
  Negative,
  Crowd,  ///< within a dozen units: many duplicates, all kinds of flatness
};

inline constexpr std::array kSpaceFamilies{
    SpaceFamily::Random,      SpaceFamily::CubeGrid,   SpaceFamily::JitteredGrid, SpaceFamily::Sphere,
    SpaceFamily::ExactSphere, SpaceFamily::Cylinder,   SpaceFamily::TwoPlanes,    SpaceFamily::LineWithNoise,
    SpaceFamily::Clusters,    SpaceFamily::Duplicates, SpaceFamily::Terrain,      SpaceFamily::Huge,
    SpaceFamily::Negative,    SpaceFamily::Crowd};

[[nodiscard]] char const* name(SpaceFamily family);

/// n points of a family, the same on every machine, in random order.
[[nodiscard]] std::vector<Point> spaceFamily(SpaceFamily kind, std::size_t n, std::uint64_t seed);

/// The points along a curve that fills space (Hilbert's), so that neighbours in the order are neighbours in space.
[[nodiscard]] std::vector<Point> alongACurve(std::vector<Point> points);

}  // namespace Meseta47::support
