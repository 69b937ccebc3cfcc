// How much of a ground comes back when of its points one in fifty keeps its label: bench_accuracy --affinity.
#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include "bench/Labelled.h"
#include "planar/CTriangulacion2D.h"

namespace Meseta47::bench {

namespace {

constexpr std::size_t kKept = 50;  // one point in so many keeps its label
constexpr std::uint8_t kNever = 0, kObject = 1;

struct Limits {
  double height, side, slope;  // metres, and rise over run
};

std::vector<Limits> grid() {
  std::vector<Limits> sets;
  for (const double height : {0.2, 0.3, 0.5, 0.75, 1.0}) {
    for (const double side : {2.0, 3.0, 5.0, 10.0}) {
      for (const double slope : {0.1, 0.15, 0.2, 0.3, 0.5, 1.0}) sets.push_back({height, side, slope});
    }
  }
  return sets;
}

CRango upTo(double most, bool bothSigns) {
  constexpr double kNone = 2147483647.0;
  CRango range(kNone, kNone, -2147483648.0, kNone);
  range.SetValorMin(bothSigns ? -most : 0);
  range.SetValorMax(most);
  return range;
}

/// Which points are no ground once it has grown back.
std::vector<bool> regrow(Cloud const& cloud, Limits const& limits, bool withObjects) {
  CDibujo<int> drawing = drawingOf(cloud);
  for (std::size_t i = 0; i < cloud.points.size(); ++i) {
    const bool ground = cloud.truth[i] == kGround, kept = i % kKept == 0 && (ground || withObjects);
    drawing[0].PunteroAPunto(static_cast<int>(i))->clasificacion = !kept ? kNever : ground ? kGround : kObject;
  }
  const double metre = cloud.seed.Precision() / cloud.metres, side = limits.side * metre;
  const CRango heights = upTo(std::round(limits.height * metre), false), squares = upTo(side * side, false),
               slopes = upTo(limits.slope, true);
  unsigned changed = 0, rounds = 0;
  CTriangulacion2D triangulation(0, cloud.seed, 1);
  host::requireDone(
      triangulation.RunAfinidadCompleta(
          drawing,
          {.crece = kGround, .barrera = kObject, .alturas = &heights, .distancias = &squares, .pendientes = &slopes},
          changed, rounds, nullptr, nullptr),
      "growth");
  std::vector<bool> object;
  for (CCoor3D<int> const& p : drawing[0].Puntos()) object.push_back(p.clasificacion != kGround);
  return object;
}

void print(std::string const& name, Limits const& l, Confusion const& c) {
  fmt::print("{:<9} {:>6.2f} {:>5.1f} {:>5.2f} {:>8.2f} {:>8.2f} {:>8.2f} {:>8.4f}\n", name, l.height, l.side, l.slope,
             100 * c.typeOne(), 100 * c.typeTwo(), 100 * c.total(), c.kappa());
}

void table(std::vector<Cloud> const& clouds, std::filesystem::path const& pictures, bool withObjects) {
  const std::vector<Limits> sets = grid();
  std::vector<std::vector<Confusion>> results(clouds.size());
  std::vector<double> kappa(sets.size());
  for (std::size_t c = 0; c < clouds.size(); ++c) {
    for (std::size_t s = 0; s < sets.size(); ++s) {
      results[c].push_back(compare(clouds[c].truth, regrow(clouds[c], sets[s], withObjects)));
      kappa[s] += results[c][s].kappa();
    }
  }
  const auto common = static_cast<std::size_t>(std::max_element(kappa.begin(), kappa.end()) - kappa.begin());
  fmt::print("\n{}\n{:<9} {:>6} {:>5} {:>5} {:>8} {:>8} {:>8} {:>8}\n",
             withObjects ? "the label of one point in fifty is kept; those of objects stop the growth"
                         : "the label of one ground point in fifty is kept, and no other",
             "sample", "height", "side", "slope", "type I", "type II", "total", "kappa");
  for (std::size_t c = 0; c < clouds.size(); ++c) print(clouds[c].name, sets[common], results[c][common]);
  fmt::print("mean kappa {:.4f}; the best set of each sample:\n", kappa[common] / static_cast<double>(clouds.size()));
  for (std::size_t c = 0; c < clouds.size(); ++c) {
    const auto best = std::max_element(results[c].begin(), results[c].end(),
                                       [](Confusion const& a, Confusion const& b) { return a.kappa() < b.kappa(); });
    print(clouds[c].name, sets[static_cast<std::size_t>(best - results[c].begin())], *best);
  }
  for (Cloud const& cloud : clouds) {
    if (pictures.empty()) break;
    paint(cloud, regrow(cloud, sets[common], withObjects),
          pictures / (cloud.name + (withObjects ? "_both.ppm" : "_ground.ppm")));
  }
}

}  // namespace

void affinityTables(std::filesystem::path const& folder, std::filesystem::path const& pictures, host::HostApp& app) {
  std::vector<Cloud> clouds;
  for (auto const& file : lasFilesIn(folder / "isprs")) clouds.push_back(load(file, std::nullopt, app));
  for (const bool withObjects : {false, true}) table(clouds, pictures, withObjects);
}

}  // namespace Meseta47::bench
