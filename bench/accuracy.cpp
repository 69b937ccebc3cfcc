// How right the search for high points is, on clouds whose every point was labelled by hand.
//
//   bench_accuracy FOLDER [PICTURES]
//
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

#include "host/LoadedCloud.h"
#include "planar/CTriangulacion2D.h"

using namespace Meseta47;
using namespace Meseta47::host;

namespace {

constexpr std::uint8_t kUnclassified = 1, kGround = 2, kBuilding = 6;
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

struct Confusion {
  double groundKept = 0, groundLost = 0, objectsFound = 0, objectsMissed = 0;

  [[nodiscard]] double all() const { return groundKept + groundLost + objectsFound + objectsMissed; }
  [[nodiscard]] double typeOne() const { return groundLost / (groundKept + groundLost); }
  [[nodiscard]] double typeTwo() const { return objectsMissed / (objectsFound + objectsMissed); }
  [[nodiscard]] double total() const { return (groundLost + objectsMissed) / all(); }
  [[nodiscard]] double kappa() const {
    const double agreed = 1 - total();
    const double byChance = ((groundKept + groundLost) * (groundKept + objectsMissed) +
                             (objectsFound + objectsMissed) * (objectsFound + groundLost)) /
                            (all() * all());
    return byChance == 1 ? 0 : (agreed - byChance) / (1 - byChance);
  }
};

struct Cloud {
  CDataSemilla seed;
  std::vector<CCoor3D<int>> points;  // in class 1
  std::vector<std::uint8_t> truth;
};

struct Sample {
  std::string name;
  std::map<int, Cloud> clouds;  // by decimals

  [[nodiscard]] Cloud const& finest() const { return clouds.rbegin()->second; }
};

Sample load(std::filesystem::path const& file, HostApp& app) {
  Sample sample{file.stem().string(), {}};
  for (const int decimals : kDecimals) {
    LoadOptions options;
    options.precision = decimals;
    LoadedCloud loaded = std::move(loadClouds({{file.string()}}, options, app)[0]);
    Cloud& cloud = sample.clouds[decimals];
    cloud = {loaded.seed, takePoints(loaded, true), {}};
    for (CCoor3D<int>& p : cloud.points) {
      cloud.truth.push_back(p.clasificacion);
      p.clasificacion = kUnclassified;
    }
  }
  return sample;
}

/// Which points the search takes for objects.
std::vector<bool> search(Cloud const& cloud, Parameters const& with) {
  CSetPuntos<int> set(L"CLOUD");
  set.CLinea<int>::Asigna(std::vector<CCoor3D<int>>(cloud.points));
  CDibujo<int> drawing(cloud.seed);
  drawing.tipoNube = 1;
  drawing.Inserta(std::move(set));
  unsigned changed = 0;
  CTriangulacion2D triangulation(0, cloud.seed, 1);
  requireDone(triangulation.RunPuntosAltos(drawing, with.distance, with.height, CInfoClasificacion(kBuilding, 0.0, L""),
                                           with.singlePass ? 1 : 0, changed, nullptr, nullptr),
              "search");
  std::vector<bool> found;
  for (CCoor3D<int> const& p : drawing[0].Puntos()) found.push_back(p.clasificacion == kBuilding);
  return found;
}

Confusion compare(std::vector<std::uint8_t> const& truth, std::vector<bool> const& found) {
  Confusion c;
  for (std::size_t i = 0; i < truth.size(); ++i) {
    const bool ground = truth[i] == kGround;
    (ground ? (found[i] ? c.groundLost : c.groundKept) : (found[i] ? c.objectsFound : c.objectsMissed)) += 1;
  }
  return c;
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

/// One pixel a mean spacing, wrong points over right ones.
void paint(Cloud const& cloud, std::vector<bool> const& found, std::filesystem::path const& file) {
  CMaximas<int> box;
  for (CCoor3D<int> const& p : cloud.points) box.Nuevo(p);
  const double pixel = std::sqrt(box.Ancho() * box.Alto() / static_cast<double>(cloud.points.size()));
  const auto width = static_cast<std::size_t>(box.Ancho() / pixel) + 1;
  const auto height = static_cast<std::size_t>(box.Alto() / pixel) + 1;
  enum Ink : std::uint8_t { kBlank, kKept, kFound, kLost, kMissed };
  constexpr std::uint8_t kColours[5][3] = {
      {255, 255, 255}, {170, 170, 170}, {60, 160, 60}, {220, 40, 40}, {50, 90, 220}};
  std::vector<std::uint8_t> inks(width * height, kBlank);
  for (std::size_t i = 0; i < found.size(); ++i) {
    CCoor3D<int> const& p = cloud.points[i];
    const auto column = static_cast<std::size_t>((static_cast<double>(p.x) - box.Minimo.x) / pixel);
    const auto row = static_cast<std::size_t>((static_cast<double>(box.Maximo.y) - p.y) / pixel);
    const bool ground = cloud.truth[i] == kGround;
    const Ink ink = ground ? (found[i] ? kLost : kKept) : (found[i] ? kFound : kMissed);
    inks[row * width + column] = std::max<std::uint8_t>(inks[row * width + column], ink);
  }
  std::ofstream out(file, std::ios::binary);
  out << "P6 " << width << ' ' << height << " 255\n";
  for (const std::uint8_t ink : inks) out.write(reinterpret_cast<char const*>(kColours[ink]), 3);
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

std::vector<std::filesystem::path> samplesIn(std::filesystem::path const& folder) {
  std::vector<std::filesystem::path> files;
  for (auto const& entry : std::filesystem::directory_iterator(folder / "isprs")) {
    if (entry.path().extension() == ".las") files.push_back(entry.path());
  }
  if (files.empty()) throw std::runtime_error((folder / "isprs").string() + " has no .las files");
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    fmt::print(stderr, "bench_accuracy FOLDER [PICTURES]: FOLDER has isprs/ and sample_c.las\n");
    return 2;
  }
  CommonOptions quiet;
  quiet.quiet = true;
  HostApp app(quiet);
  try {
    const std::filesystem::path folder(argv[1]);
    std::vector<Sample> samples;
    for (auto const& file : samplesIn(folder)) samples.push_back(load(file, app));
    const Parameters common = tables(samples, argc == 3 ? argv[2] : "");
    buildings(load(folder / "sample_c.las", app), common);
  } catch (std::exception const& failure) {
    fmt::print(stderr, "bench_accuracy: {}\n", failure.what());
    return 1;
  }
  return 0;
}
