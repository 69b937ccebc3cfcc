#include "support/Extremes.h"

#include <algorithm>

#include "support/Random.h"

namespace Meseta47::support {

namespace {

using Points = std::vector<Point>;

constexpr std::int32_t kKilometre = 1'000'000;
constexpr std::uint64_t kSeed = 47;

Point within(Random& random, Point centre, std::int32_t reach) {
  return {centre.x + random.between(-reach, reach), centre.y + random.between(-reach, reach),
          random.between(0, 300'000)};
}

Points equalPoints(Random& random, std::size_t n) {
  constexpr std::array<Point, 5> others{
      {{-50'000, -49'000, 0}, {51'000, -50'000, 10}, {49'500, 50'000, 20}, {-50'000, 52'000, 30}, {7'000, 3'000, 40}}};
  Points points(n, Point{1'000, 2'000, 0});
  for (Point& p : points) p.z = random.between(0, 3) == 0 ? p.z : random.between(0, 30'000);
  for (std::size_t i = 0; i < std::min(n, others.size()); ++i) points[i] = others[i];
  return points;
}

Points fewPlaces(Random& random, std::size_t n) {
  constexpr std::size_t kPlaces = 1'000;
  Points points(n);
  for (Point& p : points) p = within(random, {}, kKilometre / 2);
  for (std::size_t i = kPlaces; i < n; ++i) {
    Point const& place = points[random.bits() % kPlaces];
    points[i] = {place.x, place.y, points[i].z};
  }
  return points;
}

Points oneHeight(Random& random, std::size_t n) {
  Points points(n);
  for (Point& p : points) p = within(random, {}, kKilometre / 2);
  for (Point& p : points) p.z = 712'000;
  return points;
}

/// Within half a kilometre of two places 2,000 km apart, so many of them in the second.
Points farApart(Random& random, std::size_t n, std::size_t inSecond) {
  constexpr std::int32_t kFar = 1'000 * kKilometre;
  Points points(n);
  for (std::size_t i = 0; i < n; ++i) {
    points[i] = within(random, {i < inSecond ? kFar : -kFar, 0, 0}, kKilometre / 2);
  }
  return points;
}

Points straight(std::size_t n, std::int32_t stepX, std::int32_t stepY) {
  Points points(n);
  for (std::size_t i = 0; i < n; ++i) {
    const auto at = static_cast<std::int32_t>(i);
    points[i] = {at * stepX, at * stepY, at % 1'000};
  }
  return points;
}

Points inSomeOrder(Extreme kind, Random& random, std::size_t n) {
  switch (kind) {
    case Extreme::EqualPoints:
      return equalPoints(random, n);
    case Extreme::FewPlaces:
      return fewPlaces(random, n);
    case Extreme::OneHeight:
      return oneHeight(random, n);
    case Extreme::FarOutlier:
      return farApart(random, n, 1);
    case Extreme::FarClusters:
      return farApart(random, n, n / 2);
    case Extreme::StraightEast:
      return straight(n, 90, 0);
    case Extreme::StraightAslant:
      return straight(n, 77, -31);
  }
  return {};
}

}  // namespace

char const* name(Extreme extreme) {
  constexpr std::array names{"EqualPoints", "FewPlaces",    "OneHeight",     "FarOutlier",
                             "FarClusters", "StraightEast", "StraightAslant"};
  static_assert(names.size() == kAllExtremes.size());
  return names[static_cast<std::size_t>(extreme)];
}

std::size_t fullSize(Extreme extreme) {
  switch (extreme) {
    case Extreme::EqualPoints:
      return 65'536 + 5;
    case Extreme::FewPlaces:
      return 10'000'000;
    default:
      return 1'000'000;
  }
}

std::vector<Point> extreme(Extreme kind, std::size_t n) {
  Random random(kSeed);
  Points points = inSomeOrder(kind, random, n);
  random.shuffle(points);
  return points;
}

}  // namespace Meseta47::support
