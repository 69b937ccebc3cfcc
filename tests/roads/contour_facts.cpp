// Facts of a file of contours, beside the outline and the mesh of the surface that they were drawn on:
//   contour_facts CONTOURS OUTLINE MESH.ply Y
// Y is the northing where two tiles meet. A line that does not close has two open ends; each belongs on the outline,
// within one unit of a hundredth, or on a vertex of the level's own height, where a ridge or the edge of a plateau
// ends.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <set>

#include "host/mesh/PlyReader.h"
#include "host/vector/VectorInput.h"

using namespace Meseta47::host;

namespace {

using Place = std::array<double, 3>;

constexpr double kUnit = 0.0101;
constexpr double kNearTheBorder = 2;

double distance(Place const& p, Place const& a, Place const& b) {
  const double dx = b[0] - a[0], dy = b[1] - a[1], length2 = dx * dx + dy * dy;
  const double along = length2 == 0 ? 0 : std::clamp(((p[0] - a[0]) * dx + (p[1] - a[1]) * dy) / length2, 0.0, 1.0);
  return std::hypot(p[0] - a[0] - along * dx, p[1] - a[1] - along * dy);
}

bool isOn(VectorContent const& outline, Place const& p) {
  for (VectorEntity const& ring : outline.entities) {
    for (std::size_t i = 1; i < ring.places.size(); ++i) {
      if (distance(p, ring.places[i - 1], ring.places[i]) <= kUnit) return true;
    }
  }
  return false;
}

/// The vertices of a mesh, by units of a hundredth.
class Vertices {
 public:
  explicit Vertices(char const* ply) {
    for (Place const& v : readPly(ply).vertices) places_.insert(key(v));
  }
  [[nodiscard]] bool hold(Place const& p) const { return places_.count(key(p)) != 0; }

 private:
  static std::array<long long, 3> key(Place const& p) {
    return {std::llround(p[0] * 100), std::llround(p[1] * 100), std::llround(p[2] * 100)};
  }
  std::set<std::array<long long, 3>> places_;
};

bool crosses(VectorEntity const& line, double y) {
  const auto [low, high] = std::minmax_element(line.places.begin(), line.places.end(),
                                               [](Place const& a, Place const& b) { return a[1] < b[1]; });
  return (*low)[1] < y && (*high)[1] > y;
}

void tell(VectorContent const& contours, VectorContent const& outline, Vertices const& mesh, double y) {
  std::size_t closed = 0, openEnds = 0, offOutline = 0, broken = 0, atBorder = 0, crossing = 0, sloping = 0;
  std::set<double> levels;
  for (VectorEntity const& line : contours.entities) {
    if (crosses(line, y)) ++crossing;
    for (Place const& p : line.places) {
      if (p[2] != line.places[0][2]) ++sloping;
    }
    levels.insert(line.places[0][2]);
    if (line.places.front() == line.places.back()) {
      ++closed;
      continue;
    }
    for (Place const& end : {line.places.front(), line.places.back()}) {
      ++openEnds;
      if (isOn(outline, end)) continue;
      ++offOutline;
      if (std::abs(end[1] - y) <= kNearTheBorder) ++atBorder;
      if (!mesh.hold(end)) ++broken;
    }
  }
  std::printf("contours %zu\nclosed %zu\nlevels %zu\nvertices %llu\nsloping %zu\ncrossing %zu\nopen_ends %zu\n",
              contours.entities.size(), closed, levels.size(), static_cast<unsigned long long>(contours.places),
              sloping, crossing, openEnds);
  std::printf("ends_off_outline %zu\noff_outline_at_border %zu\nbroken %zu\n", offOutline, atBorder, broken);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) {
    std::fprintf(stderr, "usage: contour_facts CONTOURS OUTLINE MESH.ply Y\n");
    return 2;
  }
  try {
    tell(readVectorFile(argv[1], {}), readVectorFile(argv[2], {}), Vertices(argv[3]), std::atof(argv[4]));
    return 0;
  } catch (std::exception const& error) {
    std::fprintf(stderr, "contour_facts: %s\n", error.what());
    return 1;
  }
}
