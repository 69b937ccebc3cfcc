#include "support/SpaceMesh.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace Meseta47::support {

namespace {

struct Offset {
  Int128 x, y, z;
};

Offset offset(Point const& from, Point const& to) {
  return {std::int64_t{to.x} - from.x, std::int64_t{to.y} - from.y, std::int64_t{to.z} - from.z};
}

Int128 determinant(Offset const& a, Offset const& b, Offset const& c) {
  return a.x * (b.y * c.z - b.z * c.y) + a.y * (b.z * c.x - b.x * c.z) + a.z * (b.x * c.y - b.y * c.x);
}

Int128 squaredLength(Offset const& a) { return a.x * a.x + a.y * a.y + a.z * a.z; }

std::string toText(Tetrahedron const& t) {
  std::string text;
  for (const std::int32_t n : t) text += (text.empty() ? "[" : ", ") + std::to_string(n);
  return text + "]";
}

void note(Fault& fault, std::string const& sentence) {
  if (fault.count++ == 0) fault.first = sentence;
}

struct Face {
  std::array<std::int32_t, 3> v;
  std::int32_t apex;
  std::uint32_t of;

  bool operator<(Face const& o) const { return v != o.v ? v < o.v : of < o.of; }
};

void line(std::string& text, std::string const& what, Fault const& fault) {
  if (fault.count != 0) text += std::to_string(fault.count) + " " + what + ", the first: " + fault.first + "\n";
}

std::string commonFaults(SpaceReport const& report) {
  std::string text;
  line(text, "tetrahedra with unknown vertices", report.unknownVertices);
  line(text, "tetrahedra with a vertex twice", report.repeatedVertices);
  line(text, "flat tetrahedra", report.flat);
  line(text, "faces of more than two tetrahedra", report.overusedFaces);
  line(text, "faces with both tetrahedra on one side", report.sameSide);
  line(text, "inner faces that are not Delaunay", report.notDelaunay);
  return text;
}

}  // namespace

Int128 sixVolumes(Point const& a, Point const& b, Point const& c, Point const& d) {
  return determinant(offset(d, a), offset(d, b), offset(d, c));
}

int inSphere(Point const& a, Point const& b, Point const& c, Point const& d, Point const& e) {
  const Offset u[4] = {offset(e, a), offset(e, b), offset(e, c), offset(e, d)};
  const Int256 lifted = product(squaredLength(u[0]), determinant(u[1], u[2], u[3])) +
                        -product(squaredLength(u[1]), determinant(u[0], u[2], u[3])) +
                        product(squaredLength(u[2]), determinant(u[0], u[1], u[3])) +
                        -product(squaredLength(u[3]), determinant(u[0], u[1], u[2]));
  // The lifted determinant is minus the power of e times the volume (b - a, c - a, d - a), which is minus the one
  // below.
  return -sign(lifted) * sign(sixVolumes(a, b, c, d));
}

std::vector<Point> cubeAround(std::vector<Point> const& points) {
  std::int64_t least[3], greatest[3], centre[3];
  double width = 0;
  for (int axis = 0; axis < 3; ++axis) {
    const auto of = [axis](Point const& p) { return std::int64_t{axis == 0 ? p.x : (axis == 1 ? p.y : p.z)}; };
    least[axis] = greatest[axis] = of(points.front());
    for (Point const& p : points) {
      least[axis] = std::min(least[axis], of(p));
      greatest[axis] = std::max(greatest[axis], of(p));
    }
    centre[axis] = (least[axis] + greatest[axis]) >> 1;
    width = std::max(width, static_cast<double>(greatest[axis] - least[axis]));
  }
  const double r = width * 1.2 * 0.5;
  std::vector<Point> corners;
  const int sides[8][3] = {{-1, -1, -1}, {-1, 1, -1}, {-1, 1, 1}, {-1, -1, 1},
                           {1, -1, 1},   {1, 1, 1},   {1, 1, -1}, {1, -1, -1}};
  for (auto const& side : sides) {
    const auto at = [&](int axis) {
      const double v = std::nearbyint(static_cast<double>(centre[axis]) + side[axis] * r);
      return static_cast<std::int32_t>(std::clamp(v, -2147483648.0, 2147483647.0));
    };
    corners.push_back({at(0), at(1), at(2)});
  }
  return corners;
}

std::size_t distinctPlaces(std::vector<Point> points) {
  std::sort(points.begin(), points.end());
  return static_cast<std::size_t>(std::unique(points.begin(), points.end()) - points.begin());
}

std::ptrdiff_t SpaceReport::euler() const {
  return static_cast<std::ptrdiff_t>(vertices) - static_cast<std::ptrdiff_t>(edges) +
         static_cast<std::ptrdiff_t>(faces) - static_cast<std::ptrdiff_t>(tetrahedra);
}

SpaceReport inspect(SpaceMesh const& mesh) {
  SpaceReport report;
  std::vector<Face> faces;
  std::vector<std::int32_t> vertices;
  std::vector<std::pair<std::int32_t, std::int32_t>> edges;
  faces.reserve(4 * mesh.tetrahedra.size());
  for (std::uint32_t i = 0; i < mesh.tetrahedra.size(); ++i) {
    Tetrahedron t = mesh.tetrahedra[i];
    if (!std::all_of(t.begin(), t.end(), [&](std::int32_t n) { return mesh.knows(n); })) {
      note(report.unknownVertices, toText(t));
      continue;
    }
    std::sort(t.begin(), t.end());
    if (std::adjacent_find(t.begin(), t.end()) != t.end()) {
      note(report.repeatedVertices, toText(t));
      continue;
    }
    ++report.tetrahedra;
    const Int128 volume = sixVolumes(mesh.at(t[0]), mesh.at(t[1]), mesh.at(t[2]), mesh.at(t[3]));
    if (volume == 0) note(report.flat, toText(t));
    report.sixVolumes += volume < 0 ? -volume : volume;
    for (std::size_t k = 0; k < 4; ++k) {
      Face f{{}, t[k], i};
      for (std::size_t j = 0, n = 0; j < 4; ++j) {
        if (j != k) f.v[n++] = t[j];
        if (j > k) edges.emplace_back(t[k], t[j]);
      }
      faces.push_back(f);
      vertices.push_back(t[k]);
    }
  }
  std::sort(vertices.begin(), vertices.end());
  report.vertices = static_cast<std::size_t>(std::unique(vertices.begin(), vertices.end()) - vertices.begin());
  std::sort(edges.begin(), edges.end());
  report.edges = static_cast<std::size_t>(std::unique(edges.begin(), edges.end()) - edges.begin());
  std::sort(faces.begin(), faces.end());
  for (std::size_t i = 0; i < faces.size();) {
    std::size_t j = i + 1;
    while (j < faces.size() && faces[j].v == faces[i].v) ++j;
    ++report.faces;
    Face const& f = faces[i];
    Point const &a = mesh.at(f.v[0]), &b = mesh.at(f.v[1]), &c = mesh.at(f.v[2]);
    if (j - i == 1) {
      ++report.boundaryFaces;
      report.boundary.push_back({f.v[0], f.v[1], f.v[2], f.apex});
    } else if (j - i > 2) {
      note(report.overusedFaces, toText(mesh.tetrahedra[f.of]));
    } else {
      Face const& g = faces[i + 1];
      Point const &d = mesh.at(f.apex), &e = mesh.at(g.apex);
      if (sign(sixVolumes(a, b, c, d)) * sign(sixVolumes(a, b, c, e)) >= 0) {
        note(report.sameSide, toText(mesh.tetrahedra[f.of]) + " and " + toText(mesh.tetrahedra[g.of]));
      }
      if (inSphere(a, b, c, d, e) > 0) note(report.notDelaunay, toText(mesh.tetrahedra[f.of]));
    }
    i = j;
  }
  return report;
}

std::string hullTilingFaults(SpaceMesh const& mesh, SpaceReport const& report) {
  std::string text = commonFaults(report);
  const std::size_t expected = distinctPlaces(mesh.points);
  if (report.vertices != expected) {
    text += std::to_string(report.vertices) + " vertices, " + std::to_string(expected) + " expected\n";
  }
  Fault beyond;
  for (auto const& face : report.boundary) {
    Point const &a = mesh.at(face[0]), &b = mesh.at(face[1]), &c = mesh.at(face[2]);
    const int inside = sign(sixVolumes(a, b, c, mesh.at(face[3])));
    for (Point const& p : mesh.points) {
      if (sign(sixVolumes(a, b, c, p)) * inside < 0) note(beyond, toText(face));
    }
  }
  line(text, "points beyond a face of the boundary", beyond);
  if (report.euler() != 1) text += "Euler's number is " + std::to_string(report.euler()) + "\n";
  return text;
}

std::string cubeTilingFaults(SpaceMesh const& mesh, SpaceReport const& report) {
  std::string text = commonFaults(report);
  const std::size_t expected = distinctPlaces(mesh.points) + 8;
  if (report.vertices != expected) {
    text += std::to_string(report.vertices) + " vertices, " + std::to_string(expected) + " expected\n";
  }
  if (report.boundaryFaces != 12) text += std::to_string(report.boundaryFaces) + " faces on the boundary, not 12\n";
  if (report.euler() != 1) text += "Euler's number is " + std::to_string(report.euler()) + "\n";
  Point const &low = mesh.corners[0], &high = mesh.corners[5];
  const Offset cube = offset(low, high);
  if (report.sixVolumes != 6 * cube.x * cube.y * cube.z) {
    text += "six volumes are " + toDecimal(report.sixVolumes) + ", those of the cube " +
            toDecimal(6 * cube.x * cube.y * cube.z) + "\n";
  }
  return text;
}

}  // namespace Meseta47::support
