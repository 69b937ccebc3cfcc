#include "support/OutlineOracle.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "support/Predicates.h"

namespace Meseta47::support {

namespace {

/// A place in plan, whatever its height.
using Place = std::pair<std::int32_t, std::int32_t>;
using Step = std::pair<Place, Place>;

Place placeOf(Point const& p) { return {p.x, p.y}; }

Int128 side2(Point const& a, Point const& b) {
  const Int128 dx = static_cast<Int128>(a.x) - b.x, dy = static_cast<Int128>(a.y) - b.y;
  return dx * dx + dy * dy;
}

std::string toText(Step const& s) {
  return "(" + std::to_string(s.first.first) + ", " + std::to_string(s.first.second) + ") - (" +
         std::to_string(s.second.first) + ", " + std::to_string(s.second.second) + ")";
}

/// The sides of exactly one triangle, run with the triangle on the left, and the area of them all.
struct Rim {
  std::set<Step> steps;
  Int128 twiceArea = 0;
};

Rim rimOf(Mesh const& mesh, std::vector<Triangle> const& triangles) {
  std::map<Step, int> uses;  // by the ends in ascending order
  std::map<Step, Step> directed;
  Rim rim;
  for (Triangle t : triangles) {
    const Int128 area = twiceArea(mesh.at(t[0]), mesh.at(t[1]), mesh.at(t[2]));
    if (area < 0) std::swap(t[1], t[2]);
    rim.twiceArea += area < 0 ? -area : area;
    for (std::size_t k = 0; k < 3; ++k) {
      const Step step{placeOf(mesh.at(t[k])), placeOf(mesh.at(t[(k + 1) % 3]))};
      const Step ends{std::min(step.first, step.second), std::max(step.first, step.second)};
      ++uses[ends];
      directed[ends] = step;
    }
  }
  for (auto const& [ends, count] : uses) {
    if (count == 1) rim.steps.insert(directed[ends]);
  }
  return rim;
}

Int128 twiceAreaOf(Ring const& ring) {
  Int128 sum = 0;
  for (std::size_t i = 1; i + 1 < ring.size(); ++i) sum += twiceArea(ring[0], ring[i], ring[i + 1]);
  return sum;
}

}  // namespace

std::vector<Triangle> withShortSides(Mesh const& mesh, Int128 greatestSide2) {
  std::vector<Triangle> kept;
  for (Triangle const& t : mesh.triangles) {
    if (t[0] <= 0 || t[1] <= 0 || t[2] <= 0) continue;
    Point const &a = mesh.at(t[0]), &b = mesh.at(t[1]), &c = mesh.at(t[2]);
    if (std::max({side2(a, b), side2(b, c), side2(c, a)}) <= greatestSide2) kept.push_back(t);
  }
  return kept;
}

std::string outlineFaults(std::vector<Ring> const& rings, Mesh const& mesh, Int128 greatestSide2) {
  Rim rim = rimOf(mesh, withShortSides(mesh, greatestSide2));
  Int128 area = 0;
  for (std::size_t r = 0; r < rings.size(); ++r) {
    const std::string here = "ring " + std::to_string(r);
    Ring const& ring = rings[r];
    if (ring.size() < 4 || ring.front() != ring.back()) return here + " is not closed";
    std::set<Place> met;
    for (std::size_t i = 1; i < ring.size(); ++i) {
      const Step step{placeOf(ring[i - 1]), placeOf(ring[i])};
      if (!met.insert(step.second).second) return here + " meets a position twice, at the end of " + toText(step);
      if (rim.steps.erase(step) == 0) return here + " has a side that is no rim: " + toText(step);
    }
    area += twiceAreaOf(ring);
  }
  if (!rim.steps.empty()) {
    return std::to_string(rim.steps.size()) + " sides of the rim are missing, one is " + toText(*rim.steps.begin());
  }
  if (area != rim.twiceArea) {
    return "the rings enclose " + toDecimal(area) + " and the triangles cover " + toDecimal(rim.twiceArea);
  }
  return "";
}

}  // namespace Meseta47::support
