#include "support/PlainSearches.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

namespace Meseta47::support {

namespace {

constexpr double kSteep = 0.7853981633974483;

std::size_t at(Triangle const& t, std::size_t i) { return static_cast<std::size_t>(t[i]); }

/// A vertex of a triangle and its two companions.
struct Corner {
  std::size_t self, one, other;
};

std::array<Corner, 3> corners(Triangle const& t) {
  return {Corner{at(t, 0), at(t, 1), at(t, 2)}, Corner{at(t, 1), at(t, 0), at(t, 2)},
          Corner{at(t, 2), at(t, 0), at(t, 1)}};
}

double squared(Point const& p, Point const& q) {
  const double dx = double(p.x) - double(q.x), dy = double(p.y) - double(q.y);
  return dx * dx + dy * dy;
}

/// The two rises of a corner that is steep above both companions; neither is above any height otherwise.
struct Rises {
  Rises(std::vector<Point> const& points, Corner const& c)
      : first(std::int64_t{points[c.self].z} - points[c.one].z),
        second(std::int64_t{points[c.self].z} - points[c.other].z),
        steep(static_cast<double>(first) / std::sqrt(squared(points[c.self], points[c.one])) > kSteep &&
              static_cast<double>(second) / std::sqrt(squared(points[c.self], points[c.other])) > kSteep) {}
  std::int64_t first, second;
  bool steep;
};

/// Passes that are run again for as long as one of them finds something. `carries(corner, companion)`: the companion
/// bears the corner, if it has been found; `take(point)` answers whether the point is found now.
template <class Found, class Carries, class Take>
void spread(std::vector<Triangle> const& triangles, Found found, Carries carries, Take take) {
  for (const int needed : {2, 1}) {
    for (bool changed = true; changed;) {
      changed = false;
      for (Triangle const& t : triangles) {
        const std::array<bool, 3> before{found(at(t, 0)), found(at(t, 1)), found(at(t, 2))};
        if (before[0] && before[1] && before[2]) continue;
        const auto wasFound = [&](std::size_t p) {
          return (p == at(t, 0) && before[0]) || (p == at(t, 1) && before[1]) || (p == at(t, 2) && before[2]);
        };
        for (Corner const& c : corners(t)) {
          if (wasFound(c.self)) continue;
          const int bearers = (wasFound(c.one) && carries(c.self, c.one) ? 1 : 0) +
                              (wasFound(c.other) && carries(c.self, c.other) ? 1 : 0);
          if (bearers >= needed && take(c.self)) changed = true;
        }
      }
    }
  }
}

}  // namespace

std::vector<int> plainConditions(std::vector<Point> const& points, std::vector<Triangle> const& triangles,
                                 std::vector<PlainCondition> const& conditions, double distance) {
  std::vector<int> takers(points.size(), kNotFound);
  for (Triangle const& t : triangles) {
    for (std::size_t i = 0; i < conditions.size(); ++i) {
      PlainCondition const& condition = conditions[i];
      for (Corner const& c : corners(t)) {
        const Rises rises(points, c);
        const bool high = rises.first > condition.height || rises.second > condition.height;
        if (takers[c.self] == kNotFound && condition.seeds(c.self) && high && rises.steep) {
          takers[c.self] = static_cast<int>(i);
        }
      }
    }
  }
  const auto take = [&](std::size_t p) {
    for (std::size_t i = 0; i < conditions.size(); ++i) {
      if (!conditions[i].reaches(p)) continue;
      takers[p] = static_cast<int>(i);
      return true;
    }
    return false;
  };
  spread(
      triangles, [&](std::size_t p) { return takers[p] != kNotFound; },
      [&](std::size_t p, std::size_t q) {
        return points[q].z < points[p].z && squared(points[p], points[q]) <= distance;
      },
      take);
  return takers;
}

std::vector<PlainRise> plainRises(std::vector<Point> const& points, std::vector<Triangle> const& triangles,
                                  std::int64_t height) {
  std::vector<PlainRise> rises;
  for (Triangle const& t : triangles) {
    const std::array<Corner, 3> all = corners(t);
    for (std::size_t i = 0; i < 3; ++i) {
      const Rises r(points, all[i]);
      if (!r.steep || (r.first <= height && r.second <= height)) continue;
      rises.push_back({all[i == 2 ? 0 : i].self, r.first > height ? std::max(r.first, r.second) : r.second});
    }
  }
  return rises;
}

std::vector<bool> plainJumps(std::vector<std::int64_t> const& values, std::vector<Triangle> const& triangles,
                             std::int64_t difference) {
  std::vector<bool> found(values.size(), false);
  const auto jumps = [&](std::int64_t by) { return difference > 0 ? by > difference : by < difference; };
  const auto carries = [&](std::size_t p, std::size_t q) {
    return difference > 0 ? values[q] < values[p] : values[q] > values[p];
  };
  if (difference == 0) return found;
  for (Triangle const& t : triangles) {
    for (Corner const& c : corners(t)) {
      if (jumps(values[c.self] - values[c.one]) && jumps(values[c.self] - values[c.other])) found[c.self] = true;
    }
  }
  spread(
      triangles, [&](std::size_t p) { return bool{found[p]}; }, carries,
      [&](std::size_t p) {
        found[p] = true;
        return true;
      });
  return found;
}

}  // namespace Meseta47::support
