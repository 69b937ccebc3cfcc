// The triangulation alone, ours beside CGAL's, on the same points in the same run: generated families and real clouds.
//
//   bench_linking [--runs K] [--points N] [--threads N] [--family NAME ...] [FILE.las ...]
//
// Each cloud goes to both in turns; the table gives the median of the runs. Ours puts its points along the Hilbert
// curve that the program uses and fills its cells before it links; CGAL sorts for itself. So the rate of ours and the
// ratio count ordering, filling and linking; each is timed apart too. Without --family all are run;
// --family none leaves only the files, each alone and then all as one cloud. Memory is what the heap held at
// most beyond the points, a point. With two --threads (one by default) both halves of a cloud are inserted at once, in
// the order in which the program's tin gives them, and sorted by both.
#include <algorithm>
#include <cstring>
#include <fmt/format.h>
#include <optional>
#include <string>
#include <vector>

#include "bench/CountedHeap.h"
#include "host/LoadedCloud.h"
#include "host/SpatialOrder.h"
#include "host/Stopwatch.h"
#include "model/terrain/CTIN.h"
#include "planar/CFuentes.h"
#include "planar/CTriangulacion2D.h"
#include "platform/CWinApp.h"
#include "support/Families.h"

#ifdef URDIMBRE_WITH_CGAL
#include <CGAL/Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#endif

using namespace Meseta47;
using namespace Meseta47::host;

namespace {

struct Ours {
  double order, fill, link, generate, bytes, alive;
  std::uint64_t triangles;
};

/// Publishes the phases, so that each can be timed and weighed by itself.
class Phases : public CTriangulacion2D {
 public:
  explicit Phases(CDataSemilla const& seed) : CTriangulacion2D(0, seed, 1) { Mensajes(MENSAJES_NINGUNO); }

  Ours run(CDibujo<int>& drawing, double order) {
    Ours r{};
    r.order = order;
    const std::size_t before = bench::heapBytes();
    bench::resetPeak();
    drawing.PonNumerosACero();
    const CFuentes sources{drawing};
    Stopwatch fill;
    if (Rellena(sources) != kHecho) throw std::runtime_error("fill");
    r.fill = fill.seconds();
    Stopwatch link;
    CEnlace linking;
    if (Enlaza(sources, linking) != kHecho) throw std::runtime_error("link");
    r.link = link.seconds();
    r.bytes = static_cast<double>(bench::peakHeapBytes() - before);
    r.alive = 100.0 * static_cast<double>(Resumen().picoVivos) / static_cast<double>(Resumen().enlazados);
    CTIN tin(0, 0, semilla);
    Stopwatch generate;
    // A cloud on one line but for a far point leaves nothing within the frame.
    const bool surface = Genera({.fuentes = sources}, tin) == kHecho;
    r.generate = generate.seconds();
    r.triangles = surface ? tin.Cantidad() : 0;
    BorraFicheroTemporal();
    return r;
  }
};

Ours runOurs(std::vector<CCoor3D<int>> points, unsigned threads) {
  CWinApp app;
  app.PonProcesadores(threads);
  Stopwatch watch;
  std::vector<std::uint32_t> order = hilbertOrder(points);
  if (threads > 1) alternateHalves(order, points);
  applyOrder(points, order);
  const double ordering = watch.seconds();
  CSetPuntos<int> set(L"CLOUD");
  set.CLinea<int>::Asigna(std::move(points));
  const CDataSemilla seed;
  CDibujo<int> drawing(seed);
  drawing.tipoNube = 1;
  drawing.Inserta(std::move(set));
  Phases phases(seed);
  if (threads > 1) phases.DosDesde(0);
  return phases.run(drawing, ordering);
}

struct Peer {
  double seconds, bytes;
  std::uint64_t triangles;
};

#ifdef URDIMBRE_WITH_CGAL
std::optional<Peer> runPeer(std::vector<CCoor3D<int>> const& points) {
  using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
  std::vector<Kernel::Point_2> given;
  given.reserve(points.size());
  for (CCoor3D<int> const& p : points) given.emplace_back(p.x, p.y);
  const std::size_t before = bench::heapBytes();
  bench::resetPeak();
  Stopwatch watch;
  CGAL::Delaunay_triangulation_2<Kernel> triangulation;
  triangulation.insert(given.begin(), given.end());
  return Peer{watch.seconds(), static_cast<double>(bench::peakHeapBytes() - before), triangulation.number_of_faces()};
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

void compare(std::string const& name, std::vector<CCoor3D<int>> const& points, unsigned threads, unsigned runs) {
  std::vector<Ours> ours;
  std::vector<Peer> peers;
  for (unsigned i = 0; i < runs; ++i) {
    ours.push_back(runOurs(points, threads));
    if (auto peer = runPeer(points)) peers.push_back(*peer);
  }
  const auto n = static_cast<double>(points.size());
  const auto of = [&](double Ours::*field) { return median(ours, [field](Ours const& r) { return r.*field; }); };
  const double whole = median(ours, [](Ours const& r) { return r.order + r.fill + r.link; });
  fmt::print("{:<18} {:>10} {:>9} | {:6.2f} {:6.2f} {:6.2f} {:6.2f} | {:6.3f} {:5.1f} {:5.2f}", name, points.size(),
             ours[0].triangles, of(&Ours::order), of(&Ours::fill), of(&Ours::link), of(&Ours::generate),
             n / whole / 1e6, of(&Ours::bytes) / n, of(&Ours::alive));
  if (!peers.empty()) {
    const double peer = median(peers, [](Peer const& p) { return p.seconds; });
    fmt::print(" | {:6.3f} {:5.1f} | {:5.2f}", n / peer / 1e6, median(peers, [](Peer const& p) { return p.bytes; }) / n,
               peer / whole);
  }
  fmt::print("\n");
  std::fflush(stdout);
}

std::vector<CCoor3D<int>> cloudOf(std::vector<std::string> const& files) {
  CommonOptions quiet;
  quiet.quiet = true;
  HostApp app(quiet);
  return takePoints(loadClouds({files}, LoadOptions(), app)[0], false);
}

}  // namespace

int main(int argc, char** argv) {
  unsigned runs = 5, threads = 1;
  std::size_t count = 1000000;
  std::vector<std::string> files, families;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--runs") == 0 && i + 1 < argc) {
      runs = static_cast<unsigned>(std::stoul(argv[++i]));
    } else if (std::strcmp(argv[i], "--points") == 0 && i + 1 < argc) {
      count = std::stoul(argv[++i]);
    } else if (std::strcmp(argv[i], "--threads") == 0 && i + 1 < argc) {
      threads = static_cast<unsigned>(std::stoul(argv[++i]));
    } else if (std::strcmp(argv[i], "--family") == 0 && i + 1 < argc) {
      families.emplace_back(argv[++i]);
    } else if (argv[i][0] == '-') {
      fmt::print(stderr, "bench_linking [--runs K] [--points N] [--threads N] [--family NAME ...] [FILE.las ...]\n");
      return 2;
    } else {
      files.emplace_back(argv[i]);
    }
  }
  fmt::print("{:<18} {:>10} {:>9} | {:>6} {:>6} {:>6} {:>6} | {:>6} {:>5} {:>5} | {:>6} {:>5} | {}\n", "cloud",
             "points", "triangles", "order", "fill", "link", "gener.", "Mpt/s", "B/pt", "alive", "CGAL", "B/pt",
             "ratio");
  fmt::print("{:<18} {:>10} {:>9} | {:>27} | {:>6} {:>5} {:>5} |\n", "", "", "", "seconds", "o+f+l", "", "%");
  for (const support::Family family : support::kAllFamilies) {
    const bool chosen = std::find(families.begin(), families.end(), support::name(family)) != families.end();
    if (!families.empty() && !chosen) continue;
    std::vector<CCoor3D<int>> points;
    for (support::Point const& p : support::family(family, count, 1)) points.emplace_back(p.x, p.y, p.z, 0);
    compare(support::name(family), points, threads, runs);
  }
  if (files.empty()) return 0;
  for (std::string const& file : files) compare(file.substr(file.rfind('/') + 1), cloudOf({file}), threads, runs);
  if (files.size() > 1) compare("all files as one", cloudOf(files), threads, runs);
}
