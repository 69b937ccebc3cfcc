// Not a timing: linked clouds of every hard family, a million points each, against oracles of exact integer arithmetic.
//
//   bench_properties [POINTS [FAMILY ...]]
//
// Where every circle reaches across the whole cloud, the walk to a new point grows with the cloud, and the family ends
// where the tests end it; the table says how many points it had.
#include <algorithm>
#include <fmt/format.h>
#include <string>
#include <vector>

#include "support/MeshOracle.h"
#include "support/PlanarFeeds.h"
#include "support/PlanarRun.h"

using namespace Meseta47;

int main(int argc, char** argv) {
  constexpr std::size_t kTested = 200000;  // the size to which tests take a family that has no such walks
  const std::size_t wanted = argc > 1 ? std::stoul(argv[1]) : 1000000;
  const test::QuietApp app;
  fmt::print("{:<20} {:>9} {:>9} {:>10} | {:>8} {:>5} {:>13} {:>8}\n", "family", "points", "distinct", "triangles",
             "inverted", "flat", "not Delaunay", "tiling");
  bool good = true;
  const std::vector<std::string> chosen(argv + std::min(argc, 2), argv + argc);
  for (const support::Family family : support::kAllFamilies) {
    if (!chosen.empty() && std::find(chosen.begin(), chosen.end(), support::name(family)) == chosen.end()) continue;
    const std::size_t largest = test::LargestSize(family);
    const std::size_t count = largest < kTested ? std::min(largest, wanted) : wanted;
    const test::Linked linked = test::LinkCloud(test::Feed{family, test::Order::Hilbert, count}.Points());
    const support::MeshReport report = support::inspect(linked.mesh);
    const std::size_t distinct = support::distinctPositions(linked.mesh.points);
    const bool tiles = support::surfaceFaults(report).empty() &&
                       support::frameTilingFaults(linked.mesh, report).empty() &&
                       linked.mesh.triangles.size() == 2 * distinct + 2;
    good = good && tiles && report.notDelaunay.count == 0;
    fmt::print("{:<20} {:>9} {:>9} {:>10} | {:>8} {:>5} {:>13} {:>8}\n", support::name(family), count, distinct,
               linked.mesh.triangles.size(), report.inverted.count, report.flat.count, report.notDelaunay.count,
               tiles ? "exact" : "FAULTY");
    std::fflush(stdout);
  }
  return good ? 0 : 1;
}
