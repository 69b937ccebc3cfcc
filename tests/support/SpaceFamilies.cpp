#include "support/SpaceFamilies.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "support/Random.h"

namespace Meseta47::support {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr std::int32_t kWide = 1'000'000;

Point rounded(double x, double y, double z) {
  return {static_cast<std::int32_t>(std::lround(x)), static_cast<std::int32_t>(std::lround(y)),
          static_cast<std::int32_t>(std::lround(z))};
}

Point inCube(Random& random, std::int64_t low, std::int64_t high) {
  const std::int32_t x = random.between(low, high), y = random.between(low, high);
  return {x, y, random.between(low, high)};
}

/// A direction, evenly spread.
Point onSphere(Random& random, double radius) {
  const double z = 2 * random.unit() - 1, angle = 2 * kPi * random.unit(), r = std::sqrt(std::max(0.0, 1 - z * z));
  return rounded(radius * r * std::cos(angle), radius * r * std::sin(angle), radius * z);
}

/// Integer points of x^2 + y^2 + z^2 = 5^2 13^2 17^2 : many, as its factors are sums of squares in many ways.
std::vector<Point> onExactSphere() {
  constexpr std::int32_t r = 1105;
  std::vector<Point> points;
  for (std::int32_t x = -r; x <= r; ++x) {
    for (std::int32_t y = 0; y * y <= r * r - x * x; ++y) {
      const std::int32_t rest = r * r - x * x - y * y;
      const auto z = static_cast<std::int32_t>(std::lround(std::sqrt(static_cast<double>(rest))));
      if (z * z != rest) continue;
      points.push_back({x, y, z});
      if (y != 0) points.push_back({x, -y, z});
      if (z != 0) points.push_back({x, y, -z});
      if (y != 0 && z != 0) points.push_back({x, -y, -z});
    }
  }
  return points;
}

std::vector<Point> grid(std::size_t n, std::int32_t step, std::int32_t jitter, Random& random) {
  const auto side = static_cast<std::int32_t>(std::ceil(std::cbrt(static_cast<double>(n))));
  std::vector<Point> points;
  for (std::int32_t z = 0; z < side; ++z) {
    for (std::int32_t y = 0; y < side; ++y) {
      for (std::int32_t x = 0; x < side && points.size() < n; ++x) {
        const auto shift = [&] { return jitter == 0 ? 0 : random.between(-jitter, jitter); };
        const std::int32_t dx = shift(), dy = shift();
        points.push_back({x * step + dx, y * step + dy, z * step + shift()});
      }
    }
  }
  return points;
}

}  // namespace

char const* name(SpaceFamily family) {
  switch (family) {
    case SpaceFamily::Random:
      return "Random";
    case SpaceFamily::CubeGrid:
      return "CubeGrid";
    case SpaceFamily::JitteredGrid:
      return "JitteredGrid";
    case SpaceFamily::Sphere:
      return "Sphere";
    case SpaceFamily::ExactSphere:
      return "ExactSphere";
    case SpaceFamily::Cylinder:
      return "Cylinder";
    case SpaceFamily::TwoPlanes:
      return "TwoPlanes";
    case SpaceFamily::LineWithNoise:
      return "LineWithNoise";
    case SpaceFamily::Clusters:
      return "Clusters";
    case SpaceFamily::Duplicates:
      return "Duplicates";
    case SpaceFamily::Terrain:
      return "Terrain";
    case SpaceFamily::Huge:
      return "Huge";
    case SpaceFamily::Negative:
      return "Negative";
    case SpaceFamily::Crowd:
      return "Crowd";
  }
  return "?";
}

std::vector<Point> spaceFamily(SpaceFamily kind, std::size_t n, std::uint64_t seed) {
  Random random(seed * 1000 + static_cast<std::uint64_t>(kind));
  std::vector<Point> points;
  const auto each = [&](auto&& make) {
    for (std::size_t i = points.size(); i < n; ++i) points.push_back(make(i));
  };
  switch (kind) {
    case SpaceFamily::Random:
      each([&](std::size_t) { return inCube(random, 0, kWide); });
      break;
    case SpaceFamily::CubeGrid:
      points = grid(n, 1000, 0, random);
      break;
    case SpaceFamily::JitteredGrid:
      points = grid(n, 1000, 1, random);
      break;
    case SpaceFamily::Sphere:
      each([&](std::size_t) { return onSphere(random, kWide); });
      break;
    case SpaceFamily::ExactSphere: {
      points = onExactSphere();
      random.shuffle(points);
      points.resize(std::min<std::size_t>({points.size(), n, 1000}));
      each([&](std::size_t) { return onSphere(random, 1000 * random.unit()); });
      break;
    }
    case SpaceFamily::Cylinder:
      each([&](std::size_t) {
        const double angle = 2 * kPi * random.unit();
        return rounded(100'000 * std::cos(angle), 100'000 * std::sin(angle), kWide * random.unit());
      });
      break;
    case SpaceFamily::TwoPlanes:
      each([&](std::size_t i) {
        const std::int32_t x = random.between(0, 1000), y = random.between(0, 1000);
        return Point{x * 100, y * 100, i % 2 == 0 ? 0 : 5000};
      });
      break;
    case SpaceFamily::LineWithNoise:
      each([&](std::size_t i) {
        const std::int32_t t = random.between(0, 100'000);
        if (i % 4 != 0) return Point{3 * t, 5 * t, 7 * t};
        return Point{3 * t + random.between(-50, 50), 5 * t + random.between(-50, 50), 7 * t + random.between(-50, 50)};
      });
      break;
    case SpaceFamily::Clusters: {
      std::vector<Point> spots;
      for (int i = 0; i < 20; ++i) spots.push_back(inCube(random, -kWide, kWide));
      each([&](std::size_t) {
        Point const& spot = spots[static_cast<std::size_t>(random.between(0, 19))];
        const Point p = inCube(random, -300, 300);
        return Point{spot.x + p.x, spot.y + p.y, spot.z + p.z};
      });
      break;
    }
    case SpaceFamily::Duplicates:
      each([&](std::size_t i) {
        if (i % 2 == 0 || i < 2) return inCube(random, 0, kWide);
        return points[random.bits() % i];
      });
      break;
    case SpaceFamily::Terrain:
      each([&](std::size_t) {
        const double x = kWide * random.unit(), y = kWide * random.unit();
        return rounded(x, y, 40'000 * std::sin(x / 90'000) * std::cos(y / 130'000) + 300 * random.unit());
      });
      break;
    case SpaceFamily::Huge:
      each([&](std::size_t) { return inCube(random, -1'789'000'000, 1'789'000'000); });
      break;
    case SpaceFamily::Negative:
      each([&](std::size_t) { return inCube(random, -2'000'000'000, -1'999'000'000); });
      break;
    case SpaceFamily::Crowd:
      points = {{0, 0, 0}, {12, 12, 12}};  // the frame of a narrower cloud is rounded onto it
      each([&](std::size_t) { return inCube(random, 0, 12); });
      break;
  }
  random.shuffle(points);
  return points;
}

// Skilling, "Programming the Hilbert curve", AIP Conference Proceedings 707 (2004).
std::vector<Point> alongACurve(std::vector<Point> points) {
  constexpr unsigned bits = 20;
  std::int64_t low[3] = {INT32_MAX, INT32_MAX, INT32_MAX};
  std::int64_t width = 1;
  for (Point const& p : points) {
    low[0] = std::min<std::int64_t>(low[0], p.x);
    low[1] = std::min<std::int64_t>(low[1], p.y);
    low[2] = std::min<std::int64_t>(low[2], p.z);
  }
  for (Point const& p : points) width = std::max({width, p.x - low[0] + 1, p.y - low[1] + 1, p.z - low[2] + 1});
  std::vector<std::pair<std::uint64_t, Point>> keyed;
  for (Point const& p : points) {
    const std::int64_t c[3] = {p.x - low[0], p.y - low[1], p.z - low[2]};
    std::uint32_t x[3];
    for (int i = 0; i < 3; ++i) x[i] = static_cast<std::uint32_t>((c[i] << bits) / width);
    for (std::uint32_t q = 1U << (bits - 1); q > 1; q >>= 1) {
      const std::uint32_t mask = q - 1;
      for (int i = 0; i < 3; ++i) {
        if ((x[i] & q) != 0) {
          x[0] ^= mask;
        } else {
          const std::uint32_t t = (x[0] ^ x[i]) & mask;
          x[0] ^= t;
          x[i] ^= t;
        }
      }
    }
    for (int i = 1; i < 3; ++i) x[i] ^= x[i - 1];
    std::uint32_t t = 0;
    for (std::uint32_t q = 1U << (bits - 1); q > 1; q >>= 1) {
      if ((x[2] & q) != 0) t ^= q - 1;
    }
    std::uint64_t key = 0;
    for (unsigned b = bits; b-- > 0;) {
      for (int i = 0; i < 3; ++i) key = key << 1 | (((x[i] ^ t) >> b) & 1);
    }
    keyed.emplace_back(key, p);
  }
  std::stable_sort(keyed.begin(), keyed.end(), [](auto const& a, auto const& b) { return a.first < b.first; });
  for (std::size_t i = 0; i < points.size(); ++i) points[i] = keyed[i].second;
  return points;
}

}  // namespace Meseta47::support
