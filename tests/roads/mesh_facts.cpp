// Facts of PLY meshes, found with exact arithmetic on their coordinates.
//
//   mesh_facts FILE           one "name value" a line
//   mesh_facts --same A B     "same" when both are one triangulation up to cocircular points and the order of vertices
//   and
//                             faces, else what differs
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <exception>
#include <numeric>
#include <string>
#include <vector>

#include "support/Canonical.h"
#include "support/MeshOracle.h"
#include "support/PlyReader.h"

using namespace Meseta47::support;

namespace {

/// The fewest decimals with which every coordinate of the mesh is a whole number of units.
double unitsOf(PlyMesh const& ply) {
  double units = 1;
  for (auto const& vertex : ply.vertices) {
    for (const double value : vertex) {
      // a double near 5 million metres is true to a billionth
      while (std::abs(value * units - std::round(value * units)) > 2e-9 * units && units < 1e7) units *= 10;
    }
  }
  return units;
}

Mesh exact(PlyMesh const& ply, double units) {
  std::array<double, 3> origin{};
  if (!ply.vertices.empty()) origin = ply.vertices[ply.vertices.size() / 2];
  for (double& value : origin) value = std::floor(value);
  return scaled(ply, units, origin);
}

void printFacts(std::string const& file) {
  const PlyMesh ply = readPly(file);
  const double units = unitsOf(ply);
  const Mesh mesh = exact(ply, units);
  const MeshReport report = inspect(mesh, Turn::CounterClockwise);
  double longest = 0;
  for (Triangle const& t : mesh.triangles) {
    for (std::size_t i = 0; i < 3; ++i) {
      Point const &a = mesh.at(t[i]), &b = mesh.at(t[(i + 1) % 3]);
      longest = std::max(longest, std::hypot(static_cast<double>(a.x) - b.x, static_cast<double>(a.y) - b.y));
    }
  }
  std::printf("vertices %zu\n", ply.vertices.size());
  std::printf("triangles %zu\n", report.triangles);
  std::printf("unused %zu\n", ply.vertices.size() - report.vertices);
  std::printf("rings %zu\n", report.rings.size());
  std::printf("boundary_sides %zu\n", report.boundarySides);
  std::printf("inverted %zu\n", report.inverted.count);
  std::printf("flat %zu\n", report.flat.count);
  std::printf("crowded_sides %zu\n", report.overusedSides.count + report.sameWaySides.count);
  std::printf("not_delaunay %zu\n", report.notDelaunay.count);
  std::printf("longest_side %.9f\n", longest / units);
}

/// The mesh with its vertices by x, then y, then z.
PlyMesh inOrder(PlyMesh const& ply) {
  std::vector<std::size_t> order(ply.vertices.size());
  std::iota(order.begin(), order.end(), 0U);
  std::sort(order.begin(), order.end(),
            [&ply](std::size_t i, std::size_t j) { return ply.vertices[i] < ply.vertices[j]; });
  PlyMesh ordered = ply;
  std::vector<int> place(order.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    ordered.vertices[i] = ply.vertices[order[i]];
    place[order[i]] = static_cast<int>(i);
  }
  for (auto& face : ordered.faces) {
    for (auto& vertex : face) vertex = place.at(static_cast<std::size_t>(vertex));
  }
  return ordered;
}

int compareFiles(std::string const& a, std::string const& b) {
  const PlyMesh first = inOrder(readPly(a)), second = inOrder(readPly(b));
  if (first.vertices != second.vertices) {
    std::printf("the vertices differ\n");
    return 1;
  }
  const double units = unitsOf(first);
  const Mesh mesh = exact(first, units);
  const Difference difference = compare(mesh, exact(second, units).triangles);
  std::printf("%s\n", difference.onlyCocircular() ? "same" : difference.first.c_str());
  return difference.onlyCocircular() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc == 4 && std::string(argv[1]) == "--same") return compareFiles(argv[2], argv[3]);
    if (argc != 2) return 2;
    printFacts(argv[1]);
    return 0;
  } catch (std::exception const& error) {
    std::fprintf(stderr, "mesh_facts: %s\n", error.what());
    return 1;
  }
}
