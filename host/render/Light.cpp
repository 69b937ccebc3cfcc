#include "host/render/Light.h"

#include <algorithm>
#include <cmath>

namespace Meseta47::host {

namespace {

struct Normal {
  double x = 0, y = 0, z = 0;
};

/// Twice the triangle's area long, and upwards.
Normal normalOf(Surface const& s, Surface::Triangle const& t) {
  auto const &a = s.vertices[t[0]], &b = s.vertices[t[1]], &c = s.vertices[t[2]];
  const double ux = b[0] - a[0], uy = b[1] - a[1], uz = b[2] - a[2];
  const double vx = c[0] - a[0], vy = c[1] - a[1], vz = c[2] - a[2];
  const Normal n{uy * vz - uz * vy, uz * vx - ux * vz, ux * vy - uy * vx};
  return n.z < 0 ? Normal{-n.x, -n.y, -n.z} : n;
}

/// Walls are as steep as anything: their squares must stay numbers.
float slope(double rise, double run) {
  constexpr double kWall = 1e6;
  return static_cast<float>(std::clamp(rise / run, -kWall, kWall));
}

}  // namespace

std::vector<Gradient> gradientsOf(Surface const& surface) {
  std::vector<Normal> sums(surface.vertices.size());
  for (Surface::Triangle const& t : surface.triangles) {
    const Normal n = normalOf(surface, t);
    for (const std::uint32_t corner : t) {
      sums[corner].x += n.x;
      sums[corner].y += n.y;
      sums[corner].z += n.z;
    }
  }
  std::vector<Gradient> gradients(sums.size());
  for (std::size_t i = 0; i < sums.size(); ++i) {
    if (sums[i].z <= 0) continue;
    gradients[i] = {slope(-sums[i].x, sums[i].z), slope(-sums[i].y, sums[i].z)};
  }
  return gradients;
}

double reliefScale(std::vector<Gradient> gradients) {
  constexpr double kShare = 0.8;    // of the vertices; what is steeper may saturate
  constexpr double kSlope = 0.6;    // 31 degrees: beyond it the light from 45 degrees soon leaves the far side dark
  constexpr double kLargest = 8.0;  // a plain is a plain: more would make hills of the noise of a scanner
  if (gradients.empty()) return 1;
  const auto squared = [](Gradient const& g) { return g.east * g.east + g.north * g.north; };
  const auto place =
      gradients.begin() + static_cast<std::ptrdiff_t>(kShare * static_cast<double>(gradients.size() - 1));
  std::nth_element(gradients.begin(), place, gradients.end(),
                   [&](Gradient const& a, Gradient const& b) { return squared(a) < squared(b); });
  const double steep = std::sqrt(squared(*place));
  return steep * kLargest <= kSlope ? kLargest : kSlope / steep;
}

float lightOn(Gradient const& slope) {
  constexpr float kHigh = 0.70710678F, kLow = 0.5F;  // 45 degrees above the horizon; from between two directions
  const float up = 1 / std::sqrt(1 + slope.east * slope.east + slope.north * slope.north);
  const float west = std::max(0.0F, (1 + slope.east) * kHigh * up);
  const float north = std::max(0.0F, (1 - slope.north) * kHigh * up);
  const float northWest = std::max(0.0F, (kHigh + kLow * (slope.east - slope.north)) * up);
  return (0.7F * northWest + 0.15F * west + 0.15F * north) / kHigh;
}

}  // namespace Meseta47::host
