// Surfaces in space beside CGAL's, on the same points in the same run; and what files of meshes in space take on one
// thread and on two.
//
//   bench_surface [--runs K] --max-side S FILE.las ...     the surface, by faces without a side longer than S metres
//   bench_surface [--runs K] --mesh POINTS                 a mesh of random points: written, read, released
//
// Ours takes the points as they come, puts them in its order, links, and makes a model of the faces; CGAL's alpha shape
// is the fixed one (Fixed_alpha_shape_3) whose balls are the circles around triangles with three sides of S, its
// advancing front has its own two settings. The table gives medians. Memory is what the heap held at most beyond the
// points.
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fmt/format.h>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/CountedHeap.h"
#include "host/LoadedCloud.h"
#include "host/SpaceDrawing.h"
#include "host/SpatialOrder3D.h"
#include "host/Stopwatch.h"
#include "model/terrain/CTIN.h"
#include "support/SpaceFamilies.h"
#include "tetrahedral/CTriangulacion3D.h"

#ifdef URDIMBRE_WITH_CGAL
#include <CGAL/Advancing_front_surface_reconstruction.h>
#include <CGAL/Delaunay_triangulation_3.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Fixed_alpha_shape_3.h>
#include <CGAL/Fixed_alpha_shape_cell_base_3.h>
#include <CGAL/Fixed_alpha_shape_vertex_base_3.h>
#endif

using namespace Meseta47;
using namespace Meseta47::host;

namespace {

struct Made {
  double seconds, megabytes;
  std::size_t faces;
};

Made measured(std::function<std::size_t()> const& make) {
  const std::size_t before = bench::heapBytes();
  bench::resetPeak();
  const Stopwatch watch;
  const std::size_t faces = make();
  return {watch.seconds(), static_cast<double>(bench::peakHeapBytes() - before) / 1e6, faces};
}

void requireDone(int code, char const* what) {
  if (code != kHecho) throw std::runtime_error(what);
}

CDibujo<int> drawingOf(std::vector<CCoor3D<int>> points, CDataSemilla const& seed) {
  applyOrder(points, spaceOrder(points));
  CSetPuntos<int> set(L"CLOUD");
  set.CLinea<int>::Asigna(std::move(points));
  CDibujo<int> drawing(seed);
  drawing.Inserta(std::move(set));
  return drawing;
}

std::size_t ours(std::vector<CCoor3D<int>> const& points, CDataSemilla const& seed, double maxSide) {
  CDibujo<int> drawing = drawingOf(points, seed);
  CTIN tin(0, 0, seed);
  tin.conVecinos = false;
  CTriangulacion3D triangulation(0, seed, everything(), 1);
  triangulation.SetFinura(kFinenessOfScans);
  requireDone(triangulation.Run(drawing, tin, maxSide, true, nullptr, false), "run");
  return tin.Cantidad();
}

#ifdef URDIMBRE_WITH_CGAL
using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;

std::vector<Kernel::Point_3> given(std::vector<CCoor3D<int>> const& points) {
  std::vector<Kernel::Point_3> copies;
  copies.reserve(points.size());
  for (CCoor3D<int> const& p : points) copies.emplace_back(p.x, p.y, p.z);
  return copies;
}

std::size_t alphaShape(std::vector<CCoor3D<int>> const& points, double side) {
  using Vertex = CGAL::Fixed_alpha_shape_vertex_base_3<Kernel>;
  using Cell = CGAL::Fixed_alpha_shape_cell_base_3<Kernel>;
  using Mesh = CGAL::Delaunay_triangulation_3<Kernel, CGAL::Triangulation_data_structure_3<Vertex, Cell>>;
  using Shape = CGAL::Fixed_alpha_shape_3<Mesh>;
  const std::vector<Kernel::Point_3> copies = given(points);
  const Shape shape(copies.begin(), copies.end(), side * side / 3);
  std::vector<Shape::Facet> faces;
  shape.get_alpha_shape_facets(std::back_inserter(faces), Shape::REGULAR);
  shape.get_alpha_shape_facets(std::back_inserter(faces), Shape::SINGULAR);
  return faces.size();
}

std::size_t advancingFront(std::vector<CCoor3D<int>> const& points) {
  const std::vector<Kernel::Point_3> copies = given(points);
  std::vector<std::array<std::size_t, 3>> faces;
  CGAL::advancing_front_surface_reconstruction(copies.begin(), copies.end(), std::back_inserter(faces));
  return faces.size();
}
#endif

void tell(std::string const& cloud, char const* who, unsigned runs, std::function<std::size_t()> const& make) {
  std::vector<Made> all;
  for (unsigned i = 0; i < runs; ++i) all.push_back(measured(make));
  std::sort(all.begin(), all.end(), [](Made const& a, Made const& b) { return a.seconds < b.seconds; });
  Made const& m = all[all.size() / 2];
  fmt::print("{:<18} {:<16} {:>8.2f} {:>8.1f} {:>9}\n", cloud, who, m.seconds, m.megabytes, m.faces);
  std::fflush(stdout);
}

void compare(std::string const& file, double maxSide, unsigned runs) {
  LoadedCloud cloud = [&] {
    CommonOptions quiet;
    quiet.quiet = true;
    HostApp app(quiet);
    return loadCloud({file}, LoadOptions(), app);
  }();
  const CDataSemilla seed = cloud.seed;
  const std::vector<CCoor3D<int>> points = takePoints(cloud, false);
  const std::string name = file.substr(file.rfind('/') + 1);
  tell(name, "urdimbre", runs, [&] { return ours(points, seed, maxSide); });
#ifdef URDIMBRE_WITH_CGAL
  tell(name, "alpha shape", runs, [&] { return alphaShape(points, maxSide * seed.Precision()); });
  tell(name, "advancing front", runs, [&] { return advancingFront(points); });
#endif
}

class Processors : public CWinApp {
 public:
  explicit Processors(unsigned count) { PonProcesadores(count); }
};

/// Medians of one thread and of two, whose runs alternate.
void inTurns(char const* what, unsigned runs, std::function<double()> const& seconds) {
  std::vector<double> one, two;
  for (unsigned i = 0; i < runs; ++i) {
    {
      const Processors app(1);
      one.push_back(seconds());
    }
    const Processors app(2);
    two.push_back(seconds());
  }
  const auto median = [](std::vector<double>& v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
  };
  const double a = median(one), b = median(two);
  fmt::print("{:<22} {:>8.3f} {:>8.3f} {:>6.2f}\n", what, a, b, a / b);
}

void fileOfMesh(std::size_t count, unsigned runs) {
  std::vector<CCoor3D<int>> points;
  for (support::Point const& p : support::spaceFamily(support::SpaceFamily::Random, count, 1)) {
    points.emplace_back(p.x, p.y, p.z, 0);
  }
  const std::string name = (std::filesystem::temp_directory_path() / "bench_surface").string();
  const CDataSemilla seed;
  CDibujo<int> drawing = drawingOf(std::move(points), seed);
  for (const int version : {1, 2}) {
    const CString path = CString::DesdeUtf8(name + std::to_string(version) + ".tin3d");
    if (version == 1) {
      CTriangulacion3D mesh(0, seed, everything(), 1);
      mesh.SetFinura(kFinenessOfScans);
      requireDone(mesh.Run(drawing, true), "run");
      requireDone(mesh.Write(path, 1), "write");
      requireDone(mesh.Write(CString::DesdeUtf8(name + "2.tin3d"), 2), "write");
      fmt::print("{} points, {} tetrahedra\n{:<22} {:>8} {:>8} {:>6}\n", count, mesh.CantidadTetraedros(), "", "one s",
                 "two s", "ratio");
    }
    inTurns(version == 1 ? "read, version 1" : "read, version 2", runs, [&] {
      CTriangulacion3D mesh(0, seed, everything(), 1);
      const Stopwatch watch;
      requireDone(mesh.Read(path, false), "read");
      return watch.seconds();
    });
  }
  inTurns("release", runs, [&] {
    auto mesh = std::make_unique<CTriangulacion3D>(0, seed, everything(), 1);
    requireDone(mesh->Read(CString::DesdeUtf8(name + "1.tin3d"), false), "read");
    const Stopwatch watch;
    mesh.reset();
    return watch.seconds();
  });
  for (const char version : {'1', '2'}) std::filesystem::remove(name + version + ".tin3d");
}

int usage() {
  fmt::print(stderr, "bench_surface [--runs K] --max-side S FILE.las ... | bench_surface [--runs K] --mesh POINTS\n");
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  unsigned runs = 3;
  double maxSide = 0;
  std::size_t mesh = 0;
  std::vector<std::string> files;
  for (int i = 1; i < argc; ++i) {
    const auto is = [&](char const* name) { return std::strcmp(argv[i], name) == 0 && i + 1 < argc; };
    if (is("--runs")) {
      runs = static_cast<unsigned>(std::stoul(argv[++i]));
    } else if (is("--max-side")) {
      maxSide = std::stod(argv[++i]);
    } else if (is("--mesh")) {
      mesh = std::stoul(argv[++i]);
    } else if (argv[i][0] == '-') {
      return usage();
    } else {
      files.emplace_back(argv[i]);
    }
  }
  if (mesh != 0) {
    fileOfMesh(mesh, runs);
  } else if (maxSide > 0 && !files.empty()) {
    fmt::print("{:<18} {:<16} {:>8} {:>8} {:>9}\n", "cloud", "", "s", "MB", "faces");
    for (std::string const& file : files) compare(file, maxSide, runs);
  } else {
    return usage();
  }
}
