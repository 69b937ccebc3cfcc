#include "support/Families.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <ostream>

#include "support/Random.h"

namespace Meseta47::support {

namespace {

using Points = std::vector<Point>;

constexpr std::int64_t kKilometre = 1'000'000;

std::int32_t height(Random& random) { return random.between(0, 300'000); }

std::int64_t squareRootUp(std::size_t n) {
  return static_cast<std::int64_t>(std::ceil(std::sqrt(static_cast<double>(n))));
}

std::int32_t rounded(double value) { return static_cast<std::int32_t>(std::floor(value + 0.5)); }

/// n points uniformly within a box.
Points scatter(Random& random, std::size_t n, Point lowest, Point highest) {
  Points points(n);
  for (Point& p : points) {
    p.x = random.between(lowest.x, highest.x);
    p.y = random.between(lowest.y, highest.y);
    p.z = random.between(lowest.z, highest.z);
  }
  return points;
}

/// Side of a square that gives each of n points a square metre, or as many square millimetres as the pitch says.
std::int32_t sideFor(std::size_t n, std::int64_t pitch) { return static_cast<std::int32_t>(pitch * squareRootUp(n)); }

Points uniform(Random& random, std::size_t n) {
  const std::int32_t side = sideFor(n, 1'000);
  return scatter(random, n, {0, 0, 0}, {side, side, 300'000});
}

Points grid(Random& random, std::size_t n, std::int32_t jitter) {
  const std::int64_t columns = squareRootUp(n);
  Points points(n);
  for (std::size_t i = 0; i < n; ++i) {
    const auto at = static_cast<std::int64_t>(i);
    points[i] = {random.between(-jitter, jitter) + static_cast<std::int32_t>(at % columns * 1'000),
                 random.between(-jitter, jitter) + static_cast<std::int32_t>(at / columns * 1'000), height(random)};
  }
  return points;
}

/// x + y i in integers.
struct Gaussian {
  std::int32_t x;
  std::int32_t y;
};

Gaussian operator*(Gaussian u, Gaussian v) { return {u.x * v.x - u.y * v.y, u.x * v.y + u.y * v.x}; }

/// All the integer points of the circle around the origin whose radius is the product of these primes, each of which is
/// a sum of two squares a^2 + b^2. A Gaussian integer of norm radius^2 is a unit times, for each prime, two of the
/// factors a + bi and a - bi: three choices, so that k primes give 4 * 3^k points.
Points latticeCircle(std::vector<Gaussian> const& primes) {
  std::vector<Gaussian> values{{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
  for (const Gaussian prime : primes) {
    const Gaussian mirrored{prime.x, -prime.y};
    std::vector<Gaussian> longer;
    for (const Gaussian value : values) {
      longer.push_back(value * prime * prime);
      longer.push_back(value * prime * mirrored);
      longer.push_back(value * mirrored * mirrored);
    }
    values = std::move(longer);
  }
  Points points;
  for (const Gaussian value : values) points.push_back({value.x, value.y, 0});
  return points;
}

/// A point of the unit circle from t in [0, 4), a quarter a unit, through the rational parametrisation: sines of the
/// standard library may differ in their last bit from one machine to the next, quotients do not.
std::complex<double> onUnitCircle(double t) {
  const double quarter = std::floor(t);
  const double u = t - quarter;
  const double x = (1 - u * u) / (1 + u * u);
  const double y = 2 * u / (1 + u * u);
  switch (static_cast<int>(quarter)) {
    case 0:
      return {x, y};
    case 1:
      return {-y, x};
    case 2:
      return {-x, -y};
    default:
      return {y, -x};
  }
}

Points circle(Random& random, std::size_t n) {
  Points points = latticeCircle({{2, 1}, {3, 2}, {4, 1}, {5, 2}, {6, 1}});
  constexpr double radius = 5 * 13 * 17 * 29 * 37;
  random.shuffle(points);
  points.resize(std::min(n, points.size()));
  while (points.size() < n) {
    const std::complex<double> at = onUnitCircle(4 * random.unit());
    points.push_back({rounded(radius * at.real()), rounded(radius * at.imag()), 0});
  }
  for (Point& p : points) p.z = height(random);
  return points;
}

Points concentricCircles(Random& random, std::size_t n) {
  const Points ring = latticeCircle({{2, 1}, {3, 2}, {4, 1}, {5, 2}});
  const std::size_t perRing = std::min(ring.size(), std::max<std::size_t>(n / 4, 4));
  Points points(n);
  for (std::size_t i = 0; i < n; ++i) {
    const auto scale = static_cast<std::int32_t>(i / perRing + 1);
    Point const& p = ring[i % perRing];
    points[i] = {scale * p.x, scale * p.y, height(random)};
  }
  return points;
}

Points line(Random& random, std::size_t n, std::int32_t stepX, std::int32_t stepY) {
  Points points(n);
  for (std::size_t i = 0; i < n; ++i) {
    const auto at = static_cast<std::int32_t>(i);
    points[i] = {at * stepX, at * stepY, height(random)};
  }
  if (n > 2) {
    Point& off = points[n / 2];
    off.x += 100 * stepY + stepX / 3;
    off.y += stepY / 3 - 100 * stepX;
  }
  return points;
}

/// The sum of a few uniform numbers, narrower than their range: a bell without logarithms.
std::int32_t bell(Random& random, std::int32_t reach) {
  std::int64_t sum = 0;
  for (int i = 0; i < 4; ++i) sum += random.between(-reach, reach);
  return static_cast<std::int32_t>(sum / 4);
}

Points around(Random& random, std::size_t n, Points const& centres, std::int32_t reach) {
  Points points(n);
  for (Point& p : points) {
    Point const& centre = centres[random.bits() % centres.size()];
    p = {centre.x + bell(random, reach), centre.y + bell(random, reach), height(random)};
  }
  return points;
}

Points clusters(Random& random, std::size_t n) {
  constexpr auto area = static_cast<std::int32_t>(20 * kKilometre);
  const Points centres = scatter(random, 12, {0, 0, 0}, {area, area, 0});
  return around(random, n, centres, sideFor(n, 100));
}

Points twoFarClusters(Random& random, std::size_t n) {
  constexpr std::int32_t far = 750'000'000;
  Points points = around(random, n, {{-far, -far / 2, 0}, {far, far / 2, 0}}, sideFor(n, 1'000));
  if (n > 1) {
    points[0] = {-far, -far / 2, 0};
    points[1] = {far, far / 2, 0};
  }
  return points;
}

Points duplicates(Random& random, std::size_t n) {
  const Points places = uniform(random, n / 4 + 2);
  Points points(n);
  for (std::size_t i = 0; i < n; ++i) {
    points[i] = i < 2 ? places[i] : places[random.bits() % places.size()];
    if (random.between(0, 3) != 0) points[i].z = height(random);
  }
  return points;
}

Points slivers(Random& random, std::size_t n) {
  Points points(n);
  for (std::size_t i = 0; i < n; ++i) {
    const auto at = static_cast<std::int32_t>(i / 2);
    const bool upper = i % 2 == 1;
    points[i] = {at * 1'000 + (upper ? 337 : 0), upper ? 1 + at / 1'000 : 0, height(random)};
  }
  return points;
}

Points hugeSpread(Random& random, std::size_t n) {
  // A frame reaches 0.6 times the width to each side of the centre: 0.6 * 3.56e9 = 2.136e9, just below 2^31 = 2.147e9.
  constexpr std::int32_t reach = 1'780'000'000;
  Points points = scatter(random, n, {-reach, -reach, -2'000'000'000}, {reach, reach, 2'000'000'000});
  if (n > 1) {
    points[0] = {-reach, -reach, 0};
    points[1] = {reach, reach, 0};
  }
  return points;
}

/// A cloud 100 km wide whose frame ends ten units before the last 32-bit number, on the upper side or on the lower one.
Points atTheLimit(Random& random, std::size_t n, std::int32_t side) {
  constexpr std::int32_t reach = 50'000'000;
  constexpr std::int32_t centre = 2'147'483'637 - 60'000'000;  // the frame reaches 0.6 * 2 * reach from here
  Points points = scatter(random, n, {-reach, -reach, 0}, {reach, reach, 147'483'647});
  if (n > 1) {
    points[0] = {-reach, -reach, 0};
    points[1] = {reach, reach, 147'483'647};
  }
  for (Point& p : points) p = {side * centre + p.x, side * centre + p.y, side * (2'000'000'000 + p.z)};
  return points;
}

Points negative(Random& random, std::size_t n) {
  const std::int32_t side = sideFor(n, 1'000);
  return scatter(random, n, {-3'000'000 - side, -7'000'000 - side, -400'000}, {-3'000'000, -7'000'000, -100});
}

Points spiral(Random& random, std::size_t n) {
  const std::complex<double> turn = onUnitCircle(0.2468);
  std::complex<double> direction{1, 0};
  Points points(n);
  for (std::size_t i = 0; i < n; ++i) {
    const double radius = 1'000 * std::sqrt(static_cast<double>(i));
    points[i] = {rounded(radius * direction.real()), rounded(radius * direction.imag()), height(random)};
    direction = {direction.real() * turn.real() - direction.imag() * turn.imag(),
                 direction.real() * turn.imag() + direction.imag() * turn.real()};
  }
  return points;
}

Points scanLines(Random& random, std::size_t n) {
  const std::int64_t perLine = std::max<std::int64_t>(2, 4 * squareRootUp(n));
  Points points(n);
  for (std::size_t i = 0; i < n; ++i) {
    const std::int64_t scan = static_cast<std::int64_t>(i) / perLine;
    const std::int64_t step = static_cast<std::int64_t>(i) % perLine;
    const std::int64_t across = scan % 2 == 0 ? step : perLine - 1 - step;
    const std::int64_t along = scan * 3'200 + step * 3'200 / perLine / 8;
    points[i] = {static_cast<std::int32_t>(across * 200 + 10 * random.between(-2, 2)),
                 static_cast<std::int32_t>(along / 10 * 10 + 10 * random.between(-1, 1)), height(random)};
  }
  return points;
}

Points denseLineAndOutlier(Random& random, std::size_t n) {
  Points points(n);
  for (std::size_t i = 0; i < n; ++i) points[i] = {static_cast<std::int32_t>(i), random.between(0, 2), height(random)};
  if (n > 1) points[n - 1] = {1'000'000'000, 0, 0};
  return points;
}

Points inNaturalOrder(Family kind, std::size_t n, Random& random) {
  switch (kind) {
    case Family::Uniform:
      return uniform(random, n);
    case Family::RegularGrid:
      return grid(random, n, 0);
    case Family::JitteredGrid:
      return grid(random, n, 30);
    case Family::Circle:
      return circle(random, n);
    case Family::ConcentricCircles:
      return concentricCircles(random, n);
    case Family::HorizontalLine:
      return line(random, n, 90, 0);
    case Family::VerticalLine:
      return line(random, n, 0, 90);
    case Family::DiagonalLine:
      return line(random, n, 90, 90);
    case Family::GeneralLine:
      return line(random, n, 77, -31);
    case Family::Clusters:
      return clusters(random, n);
    case Family::Duplicates:
      return duplicates(random, n);
    case Family::Slivers:
      return slivers(random, n);
    case Family::HugeSpread:
      return hugeSpread(random, n);
    case Family::UpperLimit:
      return atTheLimit(random, n, 1);
    case Family::LowerLimit:
      return atTheLimit(random, n, -1);
    case Family::Negative:
      return negative(random, n);
    case Family::Spiral:
      return spiral(random, n);
    case Family::ScanLines:
      return scanLines(random, n);
    case Family::DenseLineAndOutlier:
      return denseLineAndOutlier(random, n);
    case Family::TwoFarClusters:
      return twoFarClusters(random, n);
  }
  return {};
}

}  // namespace

char const* name(Family family) {
  constexpr std::array names{"Uniform",
                             "RegularGrid",
                             "JitteredGrid",
                             "Circle",
                             "ConcentricCircles",
                             "HorizontalLine",
                             "VerticalLine",
                             "DiagonalLine",
                             "GeneralLine",
                             "Clusters",
                             "Duplicates",
                             "Slivers",
                             "HugeSpread",
                             "UpperLimit",
                             "LowerLimit",
                             "Negative",
                             "Spiral",
                             "ScanLines",
                             "DenseLineAndOutlier",
                             "TwoFarClusters"};
  static_assert(names.size() == kAllFamilies.size());
  return names[static_cast<std::size_t>(family)];
}

bool hasOrdinarySpread(Family family) {
  switch (family) {
    case Family::Slivers:
    case Family::HugeSpread:
    case Family::UpperLimit:
    case Family::LowerLimit:
    case Family::DenseLineAndOutlier:
    case Family::TwoFarClusters:
      return false;
    default:
      return true;
  }
}

std::vector<Point> family(Family kind, std::size_t n, std::uint64_t seed) {
  Random random(seed);
  Points points = inNaturalOrder(kind, n, random);
  if (seed != 0) random.shuffle(points);
  return points;
}

HardCloud::HardCloud(Family kindUsed, std::size_t n, std::uint64_t seedUsed)
    : kind(kindUsed),
      size(n),
      seed(seedUsed),
      recipe(std::string(name(kind)) + ", " + std::to_string(size) + " points, seed " + std::to_string(seed)) {}

std::string HardCloud::testName() const {
  return std::string(name(kind)) + "_" + std::to_string(size) + "_" + std::to_string(seed);
}

std::ostream& operator<<(std::ostream& out, HardCloud const& cloud) { return out << cloud.recipe; }

std::vector<HardCloud> hardClouds(std::vector<std::size_t> const& sizes, std::uint64_t seed) {
  std::vector<HardCloud> clouds;
  for (const Family kind : kAllFamilies) {
    for (const std::size_t size : sizes) clouds.emplace_back(kind, size, seed);
  }
  return clouds;
}

}  // namespace Meseta47::support
