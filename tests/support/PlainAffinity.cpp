#include "support/PlainAffinity.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <deque>
#include <limits>

namespace Meseta47::support {

namespace {

bool within(AffinityRule::Limits const& limits, double value) {
  return !limits || (value >= (*limits)[0] && value <= (*limits)[1]);
}

double slope(AffinityPoint const& from, AffinityPoint const& to) {
  const double rise = static_cast<double>(to.z) - from.z;
  const double run = std::hypot(static_cast<double>(to.x) - from.x, static_cast<double>(to.y) - from.y);
  if (run > 0) return rise / run;
  return rise == 0 ? 0 : rise > 0 ? std::numeric_limits<double>::infinity() : -std::numeric_limits<double>::infinity();
}

class Run {
 public:
  Run(std::vector<AffinityPoint>& points, AffinityRule const& rule) : points_(points), rule_(rule) {}

  void settle(AffinityCell& cell) {
    bool changed = true;
    while (changed) {
      changed = false;
      std::vector<Triangle> kept;
      for (Triangle const& t : cell.own) {
        if (keep(t, changed)) kept.push_back(t);
      }
      cell.own = kept;
      for (AffinityCell& child : cell.children) settle(child);
    }
  }
  [[nodiscard]] unsigned changes() const { return changes_; }

 private:
  AffinityPoint& at(int number) { return points_[static_cast<std::size_t>(number) - 1]; }

  bool keep(Triangle const& t, bool& changed) {
    if (t[0] < 1 || t[1] < 1 || t[2] < 1) return false;
    const auto done = [&] {
      return std::all_of(t.begin(), t.end(), [&](int number) { return rule_.isFixed(at(number).cls); });
    };
    if (done()) return false;
    constexpr std::array<std::array<std::size_t, 2>, 6> kPairs{{{0, 1}, {0, 2}, {1, 0}, {1, 2}, {2, 0}, {2, 1}}};
    for (auto const& [p, n] : kPairs) {
      AffinityPoint& point = at(t[p]);
      AffinityPoint const& neighbour = at(t[n]);
      if (rule_.isFixed(point.cls) || neighbour.cls != rule_.grow || !rule_.passes(neighbour, point)) continue;
      point.cls = rule_.grow;
      changed = true;
      ++changes_;
    }
    return !done();
  }

  std::vector<AffinityPoint>& points_;
  AffinityRule const& rule_;
  unsigned changes_ = 0;
};

}  // namespace

bool AffinityRule::passes(AffinityPoint const& from, AffinityPoint const& to) const {
  const double dx = static_cast<double>(from.x) - to.x, dy = static_cast<double>(from.y) - to.y;
  return within(heights, std::abs(static_cast<double>(from.z) - to.z)) &&
         within(intensities, std::abs(from.intensity - to.intensity)) && within(squares, dx * dx + dy * dy) &&
         within(slopes, slope(from, to));
}

unsigned growOnce(std::vector<AffinityCell> cells, std::vector<AffinityPoint>& points, AffinityRule const& rule) {
  Run run(points, rule);
  for (AffinityCell& cell : cells) run.settle(cell);
  return run.changes();
}

unsigned growToRest(std::vector<Triangle> const& triangles, std::vector<AffinityPoint>& points,
                    AffinityRule const& rule) {
  std::vector<std::vector<std::size_t>> neighbours(points.size());
  for (Triangle const& t : triangles) {
    if (t[0] < 1 || t[1] < 1 || t[2] < 1) continue;
    for (std::size_t i = 0; i < 3; ++i) {
      const auto a = static_cast<std::size_t>(t[i]) - 1, b = static_cast<std::size_t>(t[(i + 1) % 3]) - 1;
      neighbours[a].push_back(b);
      neighbours[b].push_back(a);
    }
  }
  std::deque<std::size_t> queue;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (points[i].cls == rule.grow) queue.push_back(i);
  }
  unsigned changes = 0;
  for (; !queue.empty(); queue.pop_front()) {
    for (const std::size_t p : neighbours[queue.front()]) {
      if (rule.isFixed(points[p].cls) || !rule.passes(points[queue.front()], points[p])) continue;
      points[p].cls = rule.grow;
      queue.push_back(p);
      ++changes;
    }
  }
  return changes;
}

}  // namespace Meseta47::support
