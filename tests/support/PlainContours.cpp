#include "support/PlainContours.h"

#include <algorithm>
#include <array>

#include "support/ExactInteger.h"
#include "support/SideTable.h"

namespace Meseta47::support {

namespace {

/// A rounded place on a side, and how far rounding has moved it.
struct Cut {
  Point at;
  double movedX = 0, movedY = 0;
};

struct Rounded {
  std::int32_t value;
  double moved;
};

/// The integer nearest to the quotient, of two equally near the even one.
Rounded nearestEven(Int128 numerator, std::int64_t denominator) {
  Int128 quotient = numerator / denominator;
  Int128 rest = numerator % denominator;
  if (rest < 0) {
    rest += denominator;
    quotient -= 1;
  }
  const bool up = 2 * rest > denominator || (2 * rest == denominator && quotient % 2 != 0);
  const double fraction = static_cast<double>(rest) / static_cast<double>(denominator);
  return {static_cast<std::int32_t>(quotient + (up ? 1 : 0)), up ? 1 - fraction : -fraction};
}

/// Where the side from p to q, whose ends have different heights, has a height between theirs.
Cut cutAt(Point const& p, Point const& q, std::int64_t level) {
  const std::int64_t rise = std::int64_t{q.z} - p.z;
  const auto along = [&](std::int64_t from, std::int64_t to) {
    const Int128 numerator = Int128{from} * rise + (Int128{level} - p.z) * (to - from);
    return rise > 0 ? nearestEven(numerator, rise) : nearestEven(-numerator, -rise);
  };
  const Rounded x = along(p.x, q.x), y = along(p.y, q.y);
  return {{x.value, y.value, static_cast<std::int32_t>(level)}, x.moved, y.moved};
}

/// The least multiple of the interval that is not below a height.
std::int64_t firstLevel(std::int64_t height, std::int64_t interval) {
  const std::int64_t below = height % interval;  // has the sign of the height
  return below == 0 ? height : height - below + (height > 0 ? interval : 0);
}

void give(PlainContours& result, Cut const& p, Cut const& q) {
  if (p.at == q.at) return;
  const bool swap = q.at < p.at;
  Cut const &a = swap ? q : p, &b = swap ? p : q;
  result.given.push_back({{a.at, b.at}, a.movedX, a.movedY, b.movedX, b.movedY});
}

/// What one level leaves of a triangle, told by which of its vertices lie above, on and below it.
void contour(PlainContours& result, std::array<Point, 3> const& v, std::int64_t level) {
  std::vector<Point> above, on, below;
  for (Point const& p : v) (p.z > level ? above : p.z < level ? below : on).push_back(p);
  for (std::size_t i = 0; i < on.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) give(result, {on[i]}, {on[j]});
  }
  std::vector<Cut> crossings;
  for (Point const& p : above) {
    for (Point const& q : below) crossings.push_back(cutAt(p, q, level));
  }
  if (crossings.size() == 2) give(result, crossings[0], crossings[1]);
  if (crossings.size() == 1) give(result, crossings[0], {on[0]});
}

/// The border, within a triangle, of what is higher than a level.
void borderOfHigher(PlainContours& result, std::array<Point, 3> const& v, std::int64_t level) {
  std::vector<Cut> border;
  for (std::size_t i = 0; i < 3; ++i) {
    Point const &p = v[i], &q = v[(i + 1) % 3];
    if ((p.z > level) != (q.z > level)) border.push_back(cutAt(p, q, level));
  }
  if (border.size() == 2) give(result, border[0], border[1]);
}

void addOutline(PlainContours& result, Point const& p, Point const& q, ContourRule const& rule) {
  const auto [low, high] = std::minmax(p.z, q.z);
  for (std::int64_t level = firstLevel(low, rule.interval); level <= high; level += rule.interval) {
    if (rule.shore && level == high) return;
    if (low == high) {
      result.onOutline.insert(result.onOutline.end(), {p, q});
    } else {
      result.onOutline.push_back(cutAt(p, q, level).at);
    }
  }
}

bool isLong(Point const& p, Point const& q, std::int64_t longest) {
  const Int128 dx = Int128{p.x} - q.x, dy = Int128{p.y} - q.y;
  return dx * dx + dy * dy > Int128{longest} * longest;
}

}  // namespace

std::vector<ContourPiece> PlainContours::pieces() const {
  std::vector<ContourPiece> all;
  all.reserve(given.size());
  for (GivenPiece const& g : given) all.push_back(g.piece);
  return all;
}

std::vector<ContourPiece> PlainContours::distinctPieces() const {
  std::vector<ContourPiece> distinct;
  const std::vector<ContourPiece> all = pieces();
  for (auto first = all.begin(); first != all.end();) {
    const auto last = std::upper_bound(first, all.end(), *first);
    if (!shore || (last - first) % 2 == 1) distinct.push_back(*first);
    first = last;
  }
  return distinct;
}

std::vector<Triangle> contoured(Mesh const& mesh, ContourRule const& rule) {
  std::vector<Triangle> kept;
  for (Triangle const& t : mesh.triangles) {
    if (t[0] <= 0 || t[1] <= 0 || t[2] <= 0) continue;
    Point const &a = mesh.at(t[0]), &b = mesh.at(t[1]), &c = mesh.at(t[2]);
    const auto exceeds = [&](Point const& p, Point const& q) { return isLong(p, q, rule.longestSide); };
    if (!exceeds(a, b) && !exceeds(b, c) && !exceeds(c, a)) kept.push_back(t);
  }
  return kept;
}

PlainContours plainContours(Mesh const& mesh, ContourRule const& rule) {
  PlainContours result;
  result.shore = rule.shore;
  const std::vector<Triangle> kept = contoured(mesh, rule);
  for (Triangle const& t : kept) {
    const std::array<Point, 3> v{mesh.at(t[0]), mesh.at(t[1]), mesh.at(t[2])};
    const auto [low, high] = std::minmax({v[0].z, v[1].z, v[2].z});
    for (std::int64_t level = firstLevel(low, rule.interval); level <= high; level += rule.interval) {
      rule.shore ? borderOfHigher(result, v, level) : contour(result, v, level);
    }
  }
  const std::vector<SideUse> sides = sortedSides(kept);
  forEachSide(sides, [&](auto first, auto last) {
    if (last - first != 1) return;
    addOutline(result, mesh.at(startOf(kept, first->half)), mesh.at(endOf(kept, first->half)), rule);
  });
  std::sort(result.given.begin(), result.given.end(),
            [](GivenPiece const& a, GivenPiece const& b) { return a.piece < b.piece; });
  std::sort(result.onOutline.begin(), result.onOutline.end());
  result.onOutline.erase(std::unique(result.onOutline.begin(), result.onOutline.end()), result.onOutline.end());
  return result;
}

}  // namespace Meseta47::support
