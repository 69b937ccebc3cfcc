#include "support/HullOracle.h"

#include <algorithm>

#include "support/Predicates.h"

namespace Meseta47::support {

namespace {

/// Adds the points in this order, each time dropping those that the way to the new one leaves on its left.
void chain(std::vector<Point> const& points, std::vector<std::int32_t> const& numbers,
           std::vector<std::int32_t>& ring) {
  const std::size_t start = ring.size();
  const auto at = [&points](std::int32_t number) { return points[static_cast<std::size_t>(number) - 1]; };
  for (const std::int32_t number : numbers) {
    while (ring.size() >= start + 2 && orientation(at(ring.end()[-2]), at(ring.back()), at(number)) < 0) {
      ring.pop_back();
    }
    ring.push_back(number);
  }
  ring.pop_back();  // the next chain begins with it
}

Int128 twiceAreaOf(std::vector<Point> const& points, std::vector<std::int32_t> const& ring) {
  const auto at = [&points](std::int32_t number) { return points[static_cast<std::size_t>(number) - 1]; };
  Int128 area = 0;
  for (std::size_t i = 1; i + 1 < ring.size(); ++i) area += twiceArea(at(ring[0]), at(ring[i]), at(ring[i + 1]));
  return area;
}

/// Turned so that the least number comes first, in the direction in which the second one is less than the last.
std::vector<std::int32_t> canonicalRing(std::vector<std::int32_t> ring) {
  std::rotate(ring.begin(), std::min_element(ring.begin(), ring.end()), ring.end());
  if (ring.size() > 2 && ring[1] > ring.back()) std::reverse(ring.begin() + 1, ring.end());
  return ring;
}

}  // namespace

std::vector<std::int32_t> hullRing(std::vector<Point> const& points) {
  std::vector<std::int32_t> numbers = representatives(points);
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  const auto place = [&points](std::int32_t number) {
    Point const& p = points[static_cast<std::size_t>(number) - 1];
    return std::pair(p.x, p.y);
  };
  std::sort(numbers.begin(), numbers.end(), [&](auto a, auto b) { return place(a) < place(b); });
  std::vector<std::int32_t> ring;
  if (numbers.size() < 2) return ring;
  chain(points, numbers, ring);
  std::reverse(numbers.begin(), numbers.end());
  chain(points, numbers, ring);
  return ring;
}

std::string hullFillingFaults(Mesh const& mesh, MeshReport const& report) {
  const std::vector<std::int32_t> hull = hullRing(mesh.points);
  const Int128 area = twiceAreaOf(mesh.points, hull);
  std::string faults;
  const auto fault = [&faults](std::string const& text) { faults += text + "\n"; };
  if (report.twiceArea != area) {
    fault("twice the area is " + toDecimal(report.twiceArea) + ", that of the hull " + toDecimal(area));
  }
  const std::size_t distinct = distinctPositions(mesh.points);
  const std::size_t expected = area == 0 ? 0 : 2 * distinct - 2 - hull.size();
  if (report.triangles != expected) {
    fault(std::to_string(report.triangles) + " triangles, Euler asks for " + std::to_string(expected));
  }
  if (area == 0) return faults;
  if (report.vertices != distinct) fault(std::to_string(report.vertices) + " of " + std::to_string(distinct) + " used");
  if (report.rings.size() != 1) {
    fault(std::to_string(report.rings.size()) + " rings");
  } else {
    const std::vector<std::int32_t> names = representatives(mesh.points);
    std::vector<std::int32_t> ring = report.rings[0];
    for (std::int32_t& number : ring) number = number > 0 ? names[static_cast<std::size_t>(number) - 1] : number;
    if (canonicalRing(ring) != canonicalRing(hull)) fault("the ring is not the boundary of the hull");
  }
  return faults;
}

}  // namespace Meseta47::support
