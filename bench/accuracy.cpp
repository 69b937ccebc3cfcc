// How right the search for high points is, on clouds whose every point was labelled by hand.
//
//   bench_accuracy FOLDER [PICTURES]
//   bench_accuracy --ground [--ablation] FOLDER [PICTURES]
//   bench_accuracy --affinity FOLDER [PICTURES]
//
// The second form is for the ground search: bench/ground.cpp; the third for growth by affinity: bench/affinity.cpp.
// FOLDER holds isprs/sampNN.las (class 2 ground, all others objects) and sample_c.las. Each cloud is searched with all
// its points in class 1: the labels are looked at when the search is over. The parameters come from one small grid; a
// table gives the set that does best over all samples (greatest mean kappa), and another the best set of each.
//
// type I: ground points taken as objects, of the ground points; type II: objects left as ground, of the objects; total:
// all that are wrong, of all points; kappa: Cohen's.
//
// PICTURES is a folder for one PPM a sample, of the set that does best over all: ground grey, objects found green, type
// I red, type II blue.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/Labelled.h"
#include "planar/CTriangulacion2D.h"

using namespace Meseta47;
using namespace Meseta47::host;
using namespace Meseta47::bench;
using bench::drawingOf;

namespace {

constexpr std::uint8_t kBuilding = 6;
constexpr std::size_t kRowsShown = 5;
constexpr int kDecimals[] = {2, 1};  // that of the files, and a coarser one

constexpr char kParameterHeading[] = " dec dist  hgt  pass";

struct Parameters {
  int decimals;             // of the drawing: a search spreads over sides up to the root of distance / 10^decimals
  double distance, height;  // metres
  bool singlePass;

  [[nodiscard]] std::string text() const {
    return fmt::format("{:>4} {:4.0f} {:4.1f} {:>5}", decimals, distance, height, singlePass ? "one" : "all");
  }
};

std::vector<Parameters> grid() {
  std::vector<Parameters> sets;
  for (const int decimals : kDecimals) {
    for (const double distance : {1.0, 2.0, 5.0, 10.0, 20.0, 50.0}) {
      for (const double height : {0.1, 0.3, 0.5, 1.0, 2.0}) {
        for (const bool single : {true, false}) sets.push_back({decimals, distance, height, single});
      }
    }
  }
  return sets;
}

struct Sample {
  std::string name;
  std::map<int, Cloud> clouds;  // by decimals

  [[nodiscard]] Cloud const& finest() const { return clouds.rbegin()->second; }
};

Sample load(std::filesystem::path const& file, HostApp& app) {
  Sample sample{file.stem().string(), {}};
  for (const int decimals : kDecimals) sample.clouds[decimals] = bench::load(file, decimals, app);
  return sample;
}

/// Which points the search takes for objects.
std::vector<bool> search(Cloud const& cloud, Parameters const& with) {
  CDibujo<int> drawing = drawingOf(cloud);
  unsigned changed = 0;
  CTriangulacion2D triangulation(0, cloud.seed, 1);
  requireDone(triangulation.RunPuntosAltos(drawing, with.distance, with.height, CInfoClasificacion(kBuilding, 0.0, L""),
                                           with.singlePass ? 1 : 0, changed, nullptr, nullptr),
              "search");
  std::vector<bool> found;
  for (CCoor3D<int> const& p : drawing[0].Puntos()) found.push_back(p.clasificacion == kBuilding);
  return found;
}

/// The mean step between the different values that an axis takes, in metres.
double step(Cloud const& cloud, int CCoor3D<int>::*axis) {
  std::set<int> values;
  for (CCoor3D<int> const& p : cloud.points) values.insert(p.*axis);
  return (*values.rbegin() - *values.begin()) / (static_cast<double>(values.size()) - 1) / cloud.seed.Precision();
}

void describe(Sample const& sample) {
  Cloud const& cloud = sample.finest();
  std::set<std::pair<int, int>> places;
  CMaximas<int> box;
  for (CCoor3D<int> const& p : cloud.points) {
    places.emplace(p.x, p.y);
    box.Nuevo(p);
  }
  const auto n = static_cast<double>(cloud.points.size());
  const auto ground = static_cast<double>(std::count(cloud.truth.begin(), cloud.truth.end(), kGround));
  fmt::print("{:<9} {:>7} {:>8.1f} {:>8.3f} {:>8.3f} {:>8.1f} {:>9.2f}\n", sample.name, n, 100 * ground / n,
             step(cloud, &CCoor3D<int>::x), step(cloud, &CCoor3D<int>::y),
             100 * (1 - static_cast<double>(places.size()) / n),
             std::sqrt(box.Ancho() * box.Alto() / n) / cloud.seed.Precision());
}

void printRow(std::string const& name, Parameters const& with, Confusion const& c) {
  fmt::print("{:<9} {} {:>8.2f} {:>8.2f} {:>8.2f} {:>8.4f}\n", name, with.text(), 100 * c.typeOne(), 100 * c.typeTwo(),
             100 * c.total(), c.kappa());
}

/// Results of one sample over the grid.
std::vector<Confusion> overGrid(Sample const& sample, std::vector<Parameters> const& sets) {
  std::vector<Confusion> results;
  for (Parameters const& with : sets) {
    Cloud const& cloud = sample.clouds.at(with.decimals);
    results.push_back(compare(cloud.truth, search(cloud, with)));
  }
  return results;
}

double mean(std::vector<std::vector<Confusion>> const& results, std::size_t set, double (Confusion::*of)() const) {
  double sum = 0;
  for (auto const& sample : results) sum += (sample[set].*of)();
  return sum / static_cast<double>(results.size());
}

template <class F>
std::size_t greatest(std::size_t n, F const& value) {
  std::size_t best = 0;
  for (std::size_t i = 1; i < n; ++i) best = value(i) > value(best) ? i : best;
  return best;
}

/// Returns the set that does best over all.
Parameters tables(std::vector<Sample> const& samples, std::filesystem::path const& pictures) {
  fmt::print("{:<9} {:>7} {:>8} {:>8} {:>8} {:>8} {:>9}\n", "sample", "points", "ground %", "x step", "y step",
             "shared %", "spacing");
  for (Sample const& sample : samples) describe(sample);
  fmt::print(
      "(metres; the files are copies kept in single precision, so x and y fall on these steps, and that many\n"
      "points stand at a plan position that is taken already)\n");

  const auto sets = grid();
  std::vector<std::vector<Confusion>> results;
  for (Sample const& sample : samples) results.push_back(overGrid(sample, sets));
  const auto heading = [](std::string const& title) {
    fmt::print("\n{}\n{:<9} {} {:>8} {:>8} {:>8} {:>8}\n", title, "sample", kParameterHeading, "type I", "type II",
               "total", "kappa");
  };
  heading(fmt::format("one set over all samples, the best of {} by mean kappa", sets.size()));
  const std::size_t common = greatest(sets.size(), [&](std::size_t i) { return mean(results, i, &Confusion::kappa); });
  for (std::size_t s = 0; s < samples.size(); ++s) {
    printRow(samples[s].name, sets[common], results[s][common]);
    if (!pictures.empty()) {
      Cloud const& cloud = samples[s].clouds.at(sets[common].decimals);
      paint(cloud, search(cloud, sets[common]), pictures / (samples[s].name + ".ppm"));
    }
  }
  fmt::print("{:<9} {} {:>8.2f} {:>8.2f} {:>8.2f} {:>8.4f}\n", "mean", sets[common].text(),
             100 * mean(results, common, &Confusion::typeOne), 100 * mean(results, common, &Confusion::typeTwo),
             100 * mean(results, common, &Confusion::total), mean(results, common, &Confusion::kappa));
  heading("the best set of each sample, by kappa");
  for (std::size_t s = 0; s < samples.size(); ++s) {
    const std::size_t best = greatest(sets.size(), [&](std::size_t i) { return results[s][i].kappa(); });
    printRow(samples[s].name, sets[best], results[s][best]);
  }
  return sets[common];
}

/// A cloud with buildings among other classes: what of them is found, and what of the ground is lost.
void buildings(Sample const& sample, Parameters const& common) {
  struct Row {
    Parameters with;
    double found, lost;
  };
  /// Per cent of the points of a class.
  const auto share = [](std::vector<std::uint8_t> const& truth, std::uint8_t which, std::vector<bool> const& found) {
    double all = 0, hit = 0;
    for (std::size_t i = 0; i < found.size(); ++i) {
      if (truth[i] != which) continue;
      all += 1;
      hit += found[i] ? 1 : 0;
    }
    return 100 * hit / all;
  };
  const auto row = [&](Parameters const& with) {
    Cloud const& cloud = sample.clouds.at(with.decimals);
    const auto found = search(cloud, with);
    return Row{with, share(cloud.truth, kBuilding, found), share(cloud.truth, kGround, found)};
  };
  const auto print = [](Row const& r) { fmt::print("{} {:>8.2f} {:>8.2f}\n", r.with.text(), r.found, r.lost); };
  std::vector<Row> rows;
  for (Parameters const& with : grid()) rows.push_back(row(with));
  std::stable_sort(rows.begin(), rows.end(),
                   [](Row const& a, Row const& b) { return a.found - a.lost > b.found - b.lost; });
  rows.resize(kRowsShown);
  fmt::print(
      "\n{}: class 6 found and class 2 lost, per cent: the set above, and the best by their difference\n{} {:>8} "
      "{:>8}\n",
      sample.name, kParameterHeading, "found", "lost");
  print(row(common));
  for (Row const& r : rows) print(r);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> words(argv + 1, argv + argc);
  const auto given = [&words](char const* option) { return std::erase(words, option) > 0; };
  const bool ground = given("--ground"), ablation = given("--ablation"), affinity = given("--affinity");
  if (words.empty() || words.size() > 2) {
    fmt::print(
        stderr,
        "bench_accuracy [--ground [--ablation] | --affinity] FOLDER [PICTURES]: FOLDER has isprs/ and sample_c.las\n");
    return 2;
  }
  CommonOptions quiet;
  quiet.quiet = true;
  HostApp app(quiet);
  try {
    const std::filesystem::path folder(words[0]), pictures(words.size() == 2 ? words[1] : "");
    if (ground) {
      groundTables(folder, pictures, ablation, app);
      return 0;
    }
    if (affinity) {
      affinityTables(folder, pictures, app);
      return 0;
    }
    std::vector<Sample> samples;
    for (auto const& file : lasFilesIn(folder / "isprs")) samples.push_back(load(file, app));
    const Parameters common = tables(samples, pictures);
    buildings(load(folder / "sample_c.las", app), common);
  } catch (std::exception const& failure) {
    fmt::print(stderr, "bench_accuracy: {}\n", failure.what());
    return 1;
  }
  return 0;
}
