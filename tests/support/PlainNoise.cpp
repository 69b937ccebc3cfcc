#include "support/PlainNoise.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "support/Predicates.h"

namespace Meseta47::support {

namespace {

std::size_t indexOf(std::int32_t number) { return static_cast<std::size_t>(number) - 1; }

bool touchesFrame(const Triangle& t) { return t[0] < 1 || t[1] < 1 || t[2] < 1; }

double minus(std::int32_t a, std::int32_t b) { return static_cast<double>(a) - static_cast<double>(b); }

double planSquare(const Point& a, const Point& b) {
  const double dx = minus(a.x, b.x), dy = minus(a.y, b.y);
  return dx * dx + dy * dy;
}

double spaceSquare(const Point& a, const Point& b) {
  const double dz = minus(a.z, b.z);
  return planSquare(a, b) + dz * dz;
}

/// Whether three points lie on one line in space: they do in all three planes of coordinates.
bool onOneLine(const Point& a, const Point& b, const Point& c) {
  const auto yz = [](const Point& p) { return Point{p.y, p.z, 0}; };
  const auto xz = [](const Point& p) { return Point{p.x, p.z, 0}; };
  return orientation(a, b, c) == 0 && orientation(yz(a), yz(b), yz(c)) == 0 && orientation(xz(a), xz(b), xz(c)) == 0;
}

/// Angle of the rise from a point to the middle between two others.
double riseTo(const Point& p, const Point& q, const Point& r) {
  const auto middle = [](std::int32_t a, std::int32_t b) {
    return (static_cast<double>(a) + static_cast<double>(b)) / 2;
  };
  const double dx = middle(q.x, r.x) - p.x, dy = middle(q.y, r.y) - p.y;
  return std::atan2(middle(q.z, r.z) - p.z, std::sqrt(dx * dx + dy * dy));
}

double squared(double v) { return std::pow(v, 2.0); }

/// One sweep: each entry is compared with the next, which goes when it is equal.
void sweep(std::vector<std::int32_t>& sorted) {
  for (std::size_t i = 0; i + 1 < sorted.size();) {
    if (sorted[i] == sorted[i + 1]) {
      sorted.erase(sorted.begin() + static_cast<std::ptrdiff_t>(i) + 1);
    } else {
      ++i;
    }
  }
}

/// A point of the mesh in the order of positions, and what it is called there.
struct Ranked {
  Point point;
  std::size_t index = 0;  ///< in the cloud
  bool found = false;
};

std::vector<Ranked> rankedPoints(const Mesh& mesh) {
  std::vector<bool> isThere(mesh.points.size(), false);
  for (const Triangle& t : mesh.triangles) {
    for (const std::int32_t number : t) {
      if (number > 0) isThere[indexOf(number)] = true;
    }
  }
  std::vector<Ranked> ranked;
  for (std::size_t i = 0; i < mesh.points.size(); ++i) {
    if (isThere[i]) ranked.push_back({mesh.points[i], i});
  }
  std::stable_sort(ranked.begin(), ranked.end(), [](const Ranked& a, const Ranked& b) { return a.point < b.point; });
  return ranked;
}

/// A candidate: a position, and its place among the ranked points.
struct Candidate {
  Point point;
  std::size_t rank = 0;
};

std::vector<Candidate> candidatesOf(const Mesh& mesh, const std::vector<Ranked>& ranked, double factor) {
  std::vector<std::size_t> rankOf(mesh.points.size(), 0);
  for (std::size_t r = 0; r < ranked.size(); ++r) rankOf[ranked[r].index] = r;
  const double threshold = (factor < -1e-7 ? -1 : factor > 1e-7 ? 1 : 0) * 0.5235987755982988;
  std::vector<Candidate> all;
  for (const Triangle& t : mesh.triangles) {
    if (touchesFrame(t) || onOneLine(mesh.at(t[0]), mesh.at(t[1]), mesh.at(t[2]))) continue;
    for (std::size_t v = 0; v < 3; ++v) {
      const double s = riseTo(mesh.at(t[v]), mesh.at(t[(v + 1) % 3]), mesh.at(t[(v + 2) % 3]));
      if (factor < 0.0 ? -s < threshold : -s > threshold) all.push_back({mesh.at(t[v]), rankOf[indexOf(t[v])]});
    }
  }
  std::sort(all.begin(), all.end(), [](const Candidate& a, const Candidate& b) { return a.point < b.point; });
  std::vector<Candidate> kept;
  for (std::size_t i = 0; i + 1 < all.size(); ++i) {
    if (all[i].point != all[i + 1].point) kept.push_back(all[i]);
  }
  if (all.size() >= 3) kept.push_back(all.back());
  return kept;
}

/// The scan over points and candidates in step: for each candidate the ranks of the points around it.
std::vector<std::vector<std::size_t>> around(const std::vector<Ranked>& ranked,
                                             const std::vector<Candidate>& candidates, std::int64_t r) {
  std::vector<std::vector<std::size_t>> neighbours(candidates.size());
  const double r2 = squared(static_cast<double>(r));
  const auto near = [&](const Point& p, const Point& c) {
    if (p.y < c.y - r || p.y > c.y + r) return false;
    const auto dy = static_cast<float>(std::int64_t{c.y} - p.y), dx = static_cast<float>(std::int64_t{c.x} - p.x);
    return squared(dy) + squared(dx) <= r2;
  };
  std::size_t cursor = 0;
  for (std::size_t i = 0; i < ranked.size(); ++i) {
    const Point& p = ranked[i].point;
    const std::size_t start = cursor;
    for (std::size_t j = start; j < candidates.size(); ++j) {
      const Point& c = candidates[j].point;
      if (candidates[j].rank == i || p.x > c.x + r) continue;
      if (p.x < c.x - r) break;
      if (!near(p, c)) continue;
      neighbours[j].push_back(i);
      cursor = j;
    }
    for (std::size_t j = start; j-- > 0;) {
      const Point& c = candidates[j].point;
      if (candidates[j].rank == i) continue;
      if (p.x > c.x + r) break;
      if (p.x < c.x - r || !near(p, c)) continue;
      neighbours[j].push_back(i);
      cursor = j;
    }
  }
  return neighbours;
}

bool standsOut(const std::vector<Ranked>& ranked, const std::vector<std::size_t>& neighbours, std::int32_t z,
               double factor) {
  if (neighbours.size() <= 2) return false;
  const auto n = static_cast<double>(neighbours.size());
  double mean = 0, variance = 0;
  for (const std::size_t k : neighbours) mean += ranked[k].point.z;
  mean /= n;
  for (const std::size_t k : neighbours) variance += squared(static_cast<float>(ranked[k].point.z - mean));
  variance /= n - 1;
  const double limit = std::sqrt(variance) * factor, difference = z - mean;
  return factor < 0.0 ? difference < limit : difference > limit;
}

}  // namespace

Found plainIsolated(const Mesh& mesh, double limit2, unsigned leastNeighbours) {
  std::vector<std::vector<std::int32_t>> lists(mesh.points.size());
  const auto join = [&](std::int32_t first, std::int32_t second) {
    if (!(spaceSquare(mesh.at(first), mesh.at(second)) < limit2)) return;
    for (const auto& [one, other] : {std::pair(first, second), std::pair(second, first)}) {
      auto& list = lists[indexOf(one)];
      if (list.size() <= 2 * std::size_t{leastNeighbours}) list.push_back(other);
    }
  };
  std::vector<bool> isThere(mesh.points.size(), false);
  for (const Triangle& t : mesh.triangles) {
    for (const std::int32_t number : t) {
      if (number > 0) isThere[indexOf(number)] = true;
    }
    if (touchesFrame(t) || onOneLine(mesh.at(t[0]), mesh.at(t[1]), mesh.at(t[2]))) continue;
    join(t[0], t[1]);
    join(t[2], t[1]);
    join(t[0], t[2]);
  }
  Found found(mesh.points.size(), false);
  for (std::size_t i = 0; i < lists.size(); ++i) {
    if (lists[i].size() >= leastNeighbours) {
      std::sort(lists[i].begin(), lists[i].end());
      sweep(lists[i]);
    }
    found[i] = isThere[i] && lists[i].size() < leastNeighbours;
  }
  return found;
}

Found plainAerial(const Mesh& mesh, std::int32_t radius, double factor) {
  std::vector<Ranked> ranked = rankedPoints(mesh);
  const std::vector<Candidate> candidates = candidatesOf(mesh, ranked, factor);
  std::vector<std::vector<std::size_t>> neighbours = around(ranked, candidates, radius);
  for (std::size_t j = 0; j < candidates.size(); ++j) {
    std::erase_if(neighbours[j], [&](std::size_t k) { return ranked[k].found; });
    if (standsOut(ranked, neighbours[j], candidates[j].point.z, factor)) ranked[candidates[j].rank].found = true;
  }
  Found found(mesh.points.size(), false);
  for (const Ranked& r : ranked) found[r.index] = r.found;
  return found;
}

std::vector<PlainHeights> plainHeights(const Mesh& mesh, double limit2, double slope, std::int32_t height) {
  std::vector<PlainHeights> all(mesh.points.size());
  const auto climb = [&](std::int32_t from, std::int32_t to) {
    const Point &a = mesh.at(from), &b = mesh.at(to);
    const double rise = minus(b.z, a.z), run = std::sqrt(planSquare(a, b));
    const double ratio = rise == 0 ? 0 : rise / run;
    if (ratio > slope && rise > 2.0 * height) ++all[indexOf(to)].steep;
  };
  for (const Triangle& t : mesh.triangles) {
    if (touchesFrame(t)) continue;
    for (std::size_t v = 0; slope > 1e-7 && v < 3; ++v) {
      climb(t[v], t[(v + 1) % 3]);
      climb(t[(v + 1) % 3], t[v]);
    }
    const auto side = [&](std::size_t i, std::size_t j) { return planSquare(mesh.at(t[i]), mesh.at(t[j])); };
    if (side(0, 1) > limit2 || side(0, 2) > limit2 || side(1, 2) > limit2) continue;
    for (std::size_t v = 0; v < 3; ++v) {
      PlainHeights& mine = all[indexOf(t[v])];
      const std::int32_t u = mesh.at(t[(v + 1) % 3]).z, w = mesh.at(t[(v + 2) % 3]).z;
      if (mine.neighbours == 0) mine = {u, u, 0, 0, mine.steep};
      mine.least = std::min({mine.least, u, w});
      mine.greatest = std::max({mine.greatest, u, w});
      mine.sum = static_cast<std::int32_t>(static_cast<std::int64_t>(mine.sum) + u + w);  // what fits in 32 bits
      mine.neighbours = static_cast<unsigned char>(mine.neighbours + 2);
    }
  }
  return all;
}

bool plainPeak(const PlainHeights& heights, std::int32_t z, std::int32_t height) {
  if (heights.steep >= 2) return true;
  if (!(heights.neighbours > 4)) return false;
  const std::int64_t mean = heights.sum / static_cast<int>(heights.neighbours);
  const auto above = [&](std::int64_t a, std::int64_t b) { return a - b > height; };
  if (above(z, heights.greatest)) return true;
  if (z > heights.greatest) return above(z, mean);
  if (above(heights.least, z)) return true;
  if (z < heights.least) return above(mean, z);
  return false;
}

Found plainPeaks(const Mesh& mesh, double limit2, double slope, std::int32_t height) {
  const std::vector<PlainHeights> all = plainHeights(mesh, limit2, slope, height);
  Found found(mesh.points.size(), false);
  for (std::size_t i = 0; i < all.size(); ++i) found[i] = plainPeak(all[i], mesh.points[i].z, height);
  return found;
}

}  // namespace Meseta47::support
