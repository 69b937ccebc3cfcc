#include "support/MeshOracle.h"

#include <algorithm>
#include <array>

#include "support/Predicates.h"
#include "support/SideTable.h"

namespace Meseta47::support {

namespace {

template <typename Explain>
void note(Fault& fault, Explain explain) {
  if (fault.count++ == 0) fault.first = explain();
}

std::string withPositions(Mesh const& mesh, Triangle const& t) {
  return toText(t) + " " + toText(mesh.at(t[0])) + " " + toText(mesh.at(t[1])) + " " + toText(mesh.at(t[2]));
}

bool hasKnownVertices(Mesh const& mesh, Triangle const& t) {
  return std::all_of(t.begin(), t.end(), [&](std::int32_t number) { return mesh.knows(number); });
}

bool hasThreeVertices(Triangle const& t) { return t[0] != t[1] && t[1] != t[2] && t[2] != t[0]; }

/// One inspection; each step fills its part of the report.
class Inspection {
 public:
  Inspection(Mesh const& inspected, Turn expected) : mesh(inspected), upright(expected == Turn::Clockwise ? -1 : 1) {}

  MeshReport run() {
    report.triangles = mesh.triangles.size();
    keepUsable();
    countVertices();
    measure();
    pairSides();
    checkCircles();
    if (report.overusedSides.count + report.sameWaySides.count == 0) traceRings();
    return std::move(report);
  }

 private:
  void keepUsable() {
    usable.reserve(mesh.triangles.size());
    for (Triangle const& t : mesh.triangles) {
      if (!hasKnownVertices(mesh, t)) {
        note(report.unknownVertices, [&] { return "triangle " + toText(t) + " has a vertex that does not exist"; });
      } else if (!hasThreeVertices(t)) {
        note(report.repeatedVertices, [&] { return "triangle " + toText(t) + " has the same vertex twice"; });
      } else {
        usable.push_back(t);
      }
    }
  }

  void countVertices() {
    std::vector<bool> seen(mesh.points.size() + mesh.corners.size());
    for (Triangle const& t : usable) {
      for (const std::int32_t number : t) {
        const auto slot =
            static_cast<std::size_t>(std::int64_t{number} + static_cast<std::int64_t>(mesh.corners.size()));
        seen[number > 0 ? slot - 1 : slot] = true;
      }
    }
    report.vertices = static_cast<std::size_t>(std::count(seen.begin(), seen.end(), true));
  }

  void measure() {
    for (Triangle const& t : usable) {
      const Int128 area = upright * twiceArea(mesh.at(t[0]), mesh.at(t[1]), mesh.at(t[2]));
      report.twiceArea += area;
      if (area < 0) {
        note(report.inverted, [&] { return "triangle " + withPositions(mesh, t) + " turns the wrong way"; });
      }
      if (area == 0) note(report.flat, [&] { return "triangle " + withPositions(mesh, t) + " has no area"; });
    }
  }

  void pairSides() {
    twins.assign(3 * usable.size(), kNoHalfSide);
    forEachSide(sortedSides(usable), [&](auto first, auto last) {
      ++report.sides;
      if (last - first == 1) {
        ++report.boundarySides;
      } else if (last - first > 2) {
        note(report.overusedSides, [&] { return sideText(first->half) + " belongs to " + trianglesText(first, last); });
      } else if (startOf(usable, first->half) == startOf(usable, first[1].half)) {
        note(report.sameWaySides,
             [&] { return sideText(first->half) + " runs the same way in " + trianglesText(first, last); });
      } else {
        twins[first[0].half] = first[1].half;
        twins[first[1].half] = first[0].half;
      }
    });
  }

  void checkCircles() {
    for (HalfSide h = 0; h < twins.size(); ++h) {
      if (twins[h] == kNoHalfSide || twins[h] < h) continue;
      Triangle const& t = usable[h / 3];
      const std::int32_t across = startOf(usable, nextAround(nextAround(twins[h])));
      Point const &a = mesh.at(t[0]), &b = mesh.at(t[1]), &c = mesh.at(t[2]), &d = mesh.at(across);
      if (inCircle(a, b, c, d) <= 0) continue;
      const double depth = depthInCircle(a, b, c, d);
      report.deepest = std::max(report.deepest, depth);
      note(report.notDelaunay, [&] {
        return "vertex " + std::to_string(across) + " " + toText(d) + " lies " + std::to_string(depth) +
               " inside the circle of " + withPositions(mesh, t);
      });
    }
  }

  //        b                      From a-b on the boundary the next boundary side starts at b. Turning around b
  //      / | \                    from triangle to triangle, across each inner side, never leaves the triangles that
  //    a   |   next               this stretch of the boundary belongs to, even where another ring touches b.
  //      \ | /
  //        c
  [[nodiscard]] HalfSide nextOnBoundary(HalfSide h) const {
    HalfSide next = nextAround(h);
    while (twins[next] != kNoHalfSide) next = nextAround(twins[next]);
    return next;
  }

  void traceRings() {
    std::vector<bool> traced(twins.size());
    for (HalfSide start = 0; start < twins.size(); ++start) {
      if (twins[start] != kNoHalfSide || traced[start]) continue;
      auto& ring = report.rings.emplace_back();
      for (HalfSide h = start; !traced[h]; h = nextOnBoundary(h)) {
        traced[h] = true;
        ring.push_back(startOf(usable, h));
      }
    }
  }

  [[nodiscard]] std::string sideText(HalfSide h) const {
    const std::int32_t a = startOf(usable, h);
    const std::int32_t b = endOf(usable, h);
    return "side " + std::to_string(a) + " to " + std::to_string(b) + " " + toText(mesh.at(a)) + " " +
           toText(mesh.at(b));
  }

  template <typename Iterator>
  [[nodiscard]] std::string trianglesText(Iterator first, Iterator last) const {
    std::string text;
    for (; first != last; ++first) text += (text.empty() ? "" : " and ") + toText(usable[first->half / 3]);
    return text;
  }

  Mesh const& mesh;
  const int upright;
  MeshReport report;
  std::vector<Triangle> usable;
  std::vector<HalfSide> twins;
};

void addFault(std::string& faults, char const* what, Fault const& fault) {
  if (fault.count == 0) return;
  faults += std::to_string(fault.count) + " " + what + ", the first: " + fault.first + "\n";
}

template <typename Value>
void addDifference(std::string& faults, char const* what, Value expected, Value found) {
  if (expected == found) return;
  faults += std::string(what) + ": " + toDecimal(static_cast<Int128>(expected)) + " expected, " +
            toDecimal(static_cast<Int128>(found)) + " found\n";
}

Int128 twiceSquareArea(std::vector<Point> const& corners) {
  return 2 * Int128{std::int64_t{corners[2].x} - corners[0].x} * Int128{std::int64_t{corners[2].y} - corners[0].y};
}

bool isTheSquare(std::vector<std::int32_t> ring) {
  std::rotate(ring.begin(), std::max_element(ring.begin(), ring.end()), ring.end());
  return ring == std::vector<std::int32_t>{-1, -2, -3, -4} || ring == std::vector<std::int32_t>{-1, -4, -3, -2};
}

}  // namespace

std::ptrdiff_t MeshReport::euler() const {
  return static_cast<std::ptrdiff_t>(vertices) - static_cast<std::ptrdiff_t>(sides) +
         static_cast<std::ptrdiff_t>(triangles - unknownVertices.count - repeatedVertices.count);
}

MeshReport inspect(Mesh const& mesh, Turn turn) { return Inspection(mesh, turn).run(); }

std::string surfaceFaults(MeshReport const& report) {
  std::string faults;
  addFault(faults, "triangles with unknown vertices", report.unknownVertices);
  addFault(faults, "triangles with a repeated vertex", report.repeatedVertices);
  addFault(faults, "inverted triangles", report.inverted);
  addFault(faults, "flat triangles", report.flat);
  addFault(faults, "sides of more than two triangles", report.overusedSides);
  addFault(faults, "sides that two triangles run the same way", report.sameWaySides);
  return faults;
}

std::string frameTilingFaults(Mesh const& mesh, MeshReport const& report) {
  std::string faults = surfaceFaults(report);
  const std::size_t distinct = distinctPositions(mesh.points);
  addDifference(faults, "triangles", 2 * distinct + 2, report.triangles);
  addDifference(faults, "vertices", distinct + 4, report.vertices);
  addDifference(faults, "twice the area", twiceSquareArea(mesh.corners), report.twiceArea);
  addDifference(faults, "vertices - sides + triangles", std::ptrdiff_t{1}, report.euler());
  if (report.rings.size() != 1 || !isTheSquare(report.rings[0])) {
    faults += std::to_string(report.rings.size()) + " boundary rings, when the four corners should make the only one\n";
  }
  return faults;
}

}  // namespace Meseta47::support
