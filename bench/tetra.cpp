// The tetrahedralisation alone, ours beside CGAL's, on the same points in the same run: generated families and real
// clouds.
//
//   bench_tetra [--runs K] [--points N] [--fineness F] [--alone] [--keep-heap] [--family NAME ...] [FILE.las ...]
//
// Each cloud goes to both in turns; the table gives the median of the runs. Both are given the points in the order of
// the file or of the generator, and both times include putting them in a spatial order: ours along a Hilbert curve in
// space, every 32nd point first; CGAL's with its own spatial sort. Ours spills to a temporary file all tetrahedra as
// four numbers. Without --family all are run; --family none leaves only the files. Memory is what the heap held at most
// beyond the points, a point. --alone leaves the peer out, for a profiler. --keep-heap has the heap hand out what was
// freed before to both: else it depends on how its blocks lie which of the two gets new pages from the system, which
// are dear on virtual machines.
#include <algorithm>
#include <cstring>
#include <fmt/format.h>
#include <optional>
#include <string>
#include <vector>

#include "bench/CountedHeap.h"
#include "host/LoadedCloud.h"
#include "host/SpatialOrder3D.h"
#include "host/Stopwatch.h"
#include "platform/Proceso.h"
#include "support/SpaceFamilies.h"
#include "tetrahedral/CTriangulacion3D.h"

#ifdef URDIMBRE_WITH_CGAL
#include <CGAL/Delaunay_triangulation_3.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#endif

using namespace Meseta47;
using namespace Meseta47::host;

namespace {

struct Ours {
  double order, fill, link, total, bytes;
  CResumenEspacial counted;
};

Ours runOurs(std::vector<CCoor3D<int>> points, unsigned fineness) {
  Ours r{};
  Stopwatch watch;
  applyOrder(points, spaceOrder(points));
  r.order = watch.seconds();
  CSetPuntos<int> set(L"CLOUD");
  set.CLinea<int>::Asigna(std::move(points));
  const CDataSemilla seed;
  CDibujo<int> drawing(seed);
  drawing.Inserta(std::move(set));
  CDataTriangulacion data;
  data.incluidos.Inserta(CElementoDigiTab(CTipoEntidad{}, L"*", 70, 70, 70, 0, 0, CString(), 1), false);
  CTriangulacion3D triangulation(0, seed, data, 1);
  triangulation.Mensajes(MENSAJES_NINGUNO);
  triangulation.SetFinura(fineness);
  const std::size_t before = bench::heapBytes();
  bench::resetPeak();
  if (triangulation.RunTetraedros(drawing) != kHecho) throw std::runtime_error("run");
  r.bytes = static_cast<double>(bench::peakHeapBytes() - before);
  r.counted = triangulation.Resumen();
  r.fill = r.counted.segundosRellena;
  r.link = r.counted.segundosEnlaza;
  r.total = r.order + r.fill + r.link;
  triangulation.BorraTetraedrosEscritos();
  return r;
}

struct Peer {
  double seconds, bytes;
};

#ifdef URDIMBRE_WITH_CGAL
std::optional<Peer> runPeer(std::vector<CCoor3D<int>> const& points) {
  using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
  std::vector<Kernel::Point_3> given;
  given.reserve(points.size());
  for (CCoor3D<int> const& p : points) given.emplace_back(p.x, p.y, p.z);
  const std::size_t before = bench::heapBytes();
  bench::resetPeak();
  Stopwatch watch;
  CGAL::Delaunay_triangulation_3<Kernel> triangulation(given.begin(), given.end());
  return Peer{watch.seconds(), static_cast<double>(bench::peakHeapBytes() - before)};
}
#else
std::optional<Peer> runPeer(std::vector<CCoor3D<int>> const&) { return std::nullopt; }
#endif

template <class T, class F>
double median(std::vector<T> const& runs, F&& value) {
  std::vector<double> values;
  for (T const& run : runs) values.push_back(value(run));
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
  return values[values.size() / 2];
}

void compare(std::string const& name, std::vector<CCoor3D<int>> const& points, unsigned runs, unsigned fineness,
             bool alone) {
  std::vector<Ours> ours;
  std::vector<Peer> peers;
  for (unsigned i = 0; i < runs; ++i) {
    ours.push_back(runOurs(points, fineness));
    if (alone) continue;
    if (auto peer = runPeer(points)) peers.push_back(*peer);
  }
  const auto n = static_cast<double>(points.size());
  const auto of = [&](double Ours::*field) { return median(ours, [field](Ours const& r) { return r.*field; }); };
  CResumenEspacial const& c = ours[0].counted;
  fmt::print("{:<16} {:>8} {:>8} | {:5.2f} {:5.2f} {:6.2f} | {:6.3f} {:6.1f} {:5.1f} {:5.2f} {:5.2f} {:6.3f}", name,
             points.size(), c.enlazados, of(&Ours::order), of(&Ours::fill), of(&Ours::link), n / of(&Ours::total) / 1e6,
             of(&Ours::bytes) / n, 100.0 * static_cast<double>(c.picoVivos) / static_cast<double>(c.enlazados),
             static_cast<double>(c.pasos) / n, static_cast<double>(c.visitados) / n,
             100.0 * static_cast<double>(c.exactas) / static_cast<double>(c.esferas));
  if (!peers.empty()) {
    const double peer = median(peers, [](Peer const& p) { return p.seconds; });
    fmt::print(" | {:6.3f} {:6.1f} | {:5.2f}", n / peer / 1e6, median(peers, [](Peer const& p) { return p.bytes; }) / n,
               peer / of(&Ours::total));
  }
  fmt::print("\n");
  std::fflush(stdout);
}

std::vector<CCoor3D<int>> cloudOf(std::string const& file) {
  CommonOptions quiet;
  quiet.quiet = true;
  HostApp app(quiet);
  return takePoints(loadClouds({{file}}, LoadOptions(), app)[0], false);
}

}  // namespace

int main(int argc, char** argv) {
  bool alone = false;
  unsigned runs = 3, fineness = 27;
  std::size_t count = 500000;
  std::vector<std::string> files, families;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--runs") == 0 && i + 1 < argc) {
      runs = static_cast<unsigned>(std::stoul(argv[++i]));
    } else if (std::strcmp(argv[i], "--points") == 0 && i + 1 < argc) {
      count = std::stoul(argv[++i]);
    } else if (std::strcmp(argv[i], "--fineness") == 0 && i + 1 < argc) {
      fineness = static_cast<unsigned>(std::stoul(argv[++i]));
    } else if (std::strcmp(argv[i], "--family") == 0 && i + 1 < argc) {
      families.emplace_back(argv[++i]);
    } else if (std::strcmp(argv[i], "--alone") == 0) {
      alone = true;
    } else if (std::strcmp(argv[i], "--keep-heap") == 0) {
      GuardaMemoriaLibre();
    } else if (argv[i][0] == '-') {
      fmt::print(stderr,
                 "bench_tetra [--runs K] [--points N] [--fineness F] [--alone] [--keep-heap] [--family NAME ...] "
                 "[FILE.las ...]\n");
      return 2;
    } else {
      files.emplace_back(argv[i]);
    }
  }
  fmt::print("{:<16} {:>8} {:>8} | {:>5} {:>5} {:>6} | {:>6} {:>6} {:>5} {:>5} {:>5} {:>6} | {:>6} {:>6} | {}\n",
             "cloud", "points", "tetra", "order", "fill", "link", "Mpt/s", "B/pt", "alive", "steps", "vis.", "exact%",
             "CGAL", "B/pt", "ratio");
  for (const support::SpaceFamily family : support::kSpaceFamilies) {
    const bool chosen = std::find(families.begin(), families.end(), support::name(family)) != families.end();
    if (!families.empty() && !chosen) continue;
    std::vector<CCoor3D<int>> points;
    for (support::Point const& p : support::spaceFamily(family, count, 1)) points.emplace_back(p.x, p.y, p.z, 0);
    compare(support::name(family), points, runs, fineness, alone);
  }
  for (std::string const& file : files) compare(file.substr(file.rfind('/') + 1), cloudOf(file), runs, fineness, alone);
}
