// Linked clouds of every hard family and every extreme, a million points each, against oracles of exact integer
// arithmetic, and what they took.
//
//   bench_properties [POINTS [NAME ...]]
//
// Where every circle reaches across the whole cloud, the walk to a new point grows with the cloud, and the family ends
// where the tests end it; the table says how many points it had. POINTS 0 leaves each at its own size. Seconds and
// memory are those of filling and linking; MB counts the points themselves, B/pt what comes on top of them.
#include <algorithm>
#include <fmt/format.h>
#include <functional>
#include <string>
#include <vector>

#include "bench/CountedHeap.h"
#include "host/Stopwatch.h"
#include "support/Extremes.h"
#include "support/MeshOracle.h"
#include "support/PlanarFeeds.h"
#include "support/PlanarRun.h"

using namespace Meseta47;

namespace {

struct Scene {
  std::string name;
  std::size_t size;
  std::function<std::vector<support::Point>(std::size_t)> points;
};

std::size_t sizeOf(support::Family family, std::size_t wanted) {
  constexpr std::size_t kTested = 200000;  // the size to which tests take a family that has no such walks
  const std::size_t largest = test::LargestSize(family);
  return largest < kTested ? std::min(largest, wanted) : wanted;
}

std::vector<Scene> scenes(std::size_t wanted) {
  std::vector<Scene> all;
  for (const support::Family family : support::kAllFamilies) {
    all.push_back({support::name(family), sizeOf(family, wanted == 0 ? 1000000 : wanted), [family](std::size_t n) {
                     return test::Feed{family, test::Order::Hilbert, n}.Points();
                   }});
  }
  for (const support::Extreme extreme : support::kAllExtremes) {
    all.push_back({support::name(extreme), wanted == 0 ? support::fullSize(extreme) : wanted, [extreme](std::size_t n) {
                     std::vector<support::Point> points = support::extreme(extreme, n);
                     test::SortAlongHilbert(points);
                     return points;
                   }});
  }
  return all;
}

/// A linked cloud, and what that took.
struct Run {
  test::Linked linked;
  double seconds = 0, bytes = 0, bytesAPoint = 0;
};

Run link(std::vector<support::Point> points) {
  Run run;
  const std::size_t outside = bench::heapBytes();
  CDibujo<int> drawing = test::DrawingOf(points);
  const std::size_t before = bench::heapBytes();
  bench::resetPeak();
  test::OpenTriangulation triangulation;
  const host::Stopwatch watch;
  const int code = triangulation.Link(drawing);
  run.seconds = watch.seconds();
  run.bytes = static_cast<double>(bench::peakHeapBytes() - outside);
  run.bytesAPoint = static_cast<double>(bench::peakHeapBytes() - before) /
                    static_cast<double>(std::max<std::size_t>(points.size(), 1));
  if (code == kHecho) {
    run.linked = test::Collected(triangulation, drawing[0], std::move(points));
  } else {
    run.linked = {code, {}, {std::move(points), {}, {}}, triangulation.Resumen()};
  }
  return run;
}

/// One line of the table; false when anything is wrong with the mesh.
bool prove(Scene const& scene) {
  const Run run = link(scene.points(scene.size));
  support::Mesh const& mesh = run.linked.mesh;
  const support::MeshReport report = support::inspect(mesh);
  const std::size_t distinct = support::distinctPositions(mesh.points);
  const bool tiles = run.linked.code == kHecho && support::surfaceFaults(report).empty() &&
                     support::frameTilingFaults(mesh, report).empty() && mesh.triangles.size() == 2 * distinct + 2;
  fmt::print("{:<20} {:>9} {:>9} {:>10} | {:>8} {:>5} {:>13} {:>8} | {:>7.2f} {:>6.1f} {:>6.0f}\n", scene.name,
             scene.size, distinct, mesh.triangles.size(), report.inverted.count, report.flat.count,
             report.notDelaunay.count, tiles ? "exact" : fmt::format("FAULTY {}", run.linked.code), run.seconds,
             run.bytesAPoint, run.bytes / 1e6);
  std::fflush(stdout);
  return tiles && report.notDelaunay.count == 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::size_t wanted = argc > 1 ? std::stoul(argv[1]) : 0;
  const std::vector<std::string> chosen(argv + std::min(argc, 2), argv + argc);
  const test::QuietApp app;
  fmt::print("{:<20} {:>9} {:>9} {:>10} | {:>8} {:>5} {:>13} {:>8} | {:>7} {:>6} {:>6}\n", "cloud", "points",
             "distinct", "triangles", "inverted", "flat", "not Delaunay", "tiling", "seconds", "B/pt", "MB");
  bool good = true;
  for (Scene const& scene : scenes(wanted)) {
    if (chosen.empty() || std::find(chosen.begin(), chosen.end(), scene.name) != chosen.end()) good &= prove(scene);
  }
  return good ? 0 : 1;
}
