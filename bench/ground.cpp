// How right the ground search is.
//
//   bench_accuracy --ground [--ablation] FOLDER [PICTURES]
//
// FOLDER/isprs holds clouds whose every point was labelled by hand: one table, with the defaults for all, and with
// --ablation a line for each step left out or constant changed. The clouds of FOLDER itself carry the classes of
// vendors, who mark a thinned lower envelope; of these the table gives the share of their ground that is found, and the
// difference of the two terrain models in the middles of cells of a metre: median and root mean square. Made-up scans
// follow, whose classes are the truth: bare earth, roads and water against all else.
#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <map>

#include "bench/Labelled.h"
#include "classification/CBusquedaSuelo.h"
#include "host/HostApp.h"
#include "host/generate/Scan.h"
#include "model/terrain/CTIN.h"
#include "planar/CTriangulacion2D.h"

namespace Meseta47::bench {

using namespace Meseta47::host;

namespace {

constexpr double kNoLimit = 2147483647;

/// The search as it is, or with one thing changed.
struct Variant {
  std::string name;
  std::function<void(CConstantesSuelo&, CDataSuelo&)> change;
};

std::vector<Variant> variants() {
  using K = CConstantesSuelo;
  using D = CDataSuelo;
  return {
      {"as it is", [](K&, D&) {}},
      {"no growth", [](K& k, D&) { k.rondas = 0; }},
      {"growth of 3 rounds", [](K& k, D&) { k.rondas = 3; }},
      {"growth of 12 rounds", [](K& k, D&) { k.rondas = 12; }},
      {"no pits", [](K& k, D&) { k.pozos = false; }},
      {"no pruning", [](K& k, D&) { k.poda = false; }},
      {"no components", [](K& k, D&) { k.componentes = false; }},
      {"growth downhill 0.25 d, not 2.00", [](K& k, D&) { k.abajoPendiente = 0.25; }},
      {"votes of 0.20, not 0.15", [](K& k, D&) { k.parteVotos = 0.20; }},
      {"planes of 2.4 sp, not 2.7", [](K& k, D&) { k.radioPlano = 2.4; }},
      {"planes of 3.0 sp", [](K& k, D&) { k.radioPlano = 3.0; }},
      {"cells of 1.25 m at least, not 1", [](K& k, D&) { k.celdaMinima = 1.25; }},
      {"cells of one spacing, not 0.54", [](K& k, D&) { k.celdaEspaciado = 1; }},
      {"no canopies", [](K& k, D&) { k.dosel = 0xFFFFFFFF; }},
      {"canopies of 24 points, not 40", [](K& k, D&) { k.dosel = 24; }},
      {"slope 0.08, not 0.10", [](K&, D& d) { d.Pendiente = 0.08; }},
      {"slope 0.12", [](K&, D& d) { d.Pendiente = 0.12; }},
      {"window 20 m, not 25", [](K&, D& d) { d.Ventana = 20; }},
      {"window 33 m", [](K&, D& d) { d.Ventana = 33; }},
      {"band of 0.08 m and the roughness", [](K& k, D&) { k.lugarBase = 0.08; }},
      {"band of 0.12 m", [](K& k, D&) { k.lugarBase = 0.12; }},
      {"roughness 1.5 times, not 2", [](K& k, D&) { k.lugarRugosidad = 1.5; }},
      {"roughness 2.5 times", [](K& k, D&) { k.lugarRugosidad = 2.5; }},
      {"rough band", [](K&, D& d) { d.Banda = D::kBandaAncha; }},
      {"tight band", [](K&, D& d) { d.Banda = D::kBandaEstrecha; }},
  };
}

/// The classes that the search gives.
std::vector<std::uint8_t> search(Cloud const& cloud, Variant const& variant) {
  CDibujo<int> drawing = drawingOf(cloud);
  CBusquedaSuelo ground(cloud.seed, CDataTriangulacion(), cloud.metres, cloud.metres);
  CDataSuelo data;
  variant.change(ground.constantes, data);
  requireDone(ground.Busca(drawing, data), cloud.name);
  std::vector<std::uint8_t> classes;
  classes.reserve(cloud.points.size());
  for (CCoor3D<int> const& p : drawing[0].Puntos()) classes.push_back(p.clasificacion);
  return classes;
}

std::vector<bool> objects(std::vector<std::uint8_t> const& classes) {
  std::vector<bool> found;
  for (const std::uint8_t c : classes) found.push_back(c != kGround);
  return found;
}

struct Means {
  double typeOne = 0, typeTwo = 0, total = 0, kappa = 0;

  void add(Confusion const& c, double share) {
    typeOne += share * c.typeOne();
    typeTwo += share * c.typeTwo();
    total += share * c.total();
    kappa += share * c.kappa();
  }
  void print(std::string const& name) const {
    fmt::print("{:<34} {:>7.2f} {:>7.2f} {:>7.2f} {:>7.2f}\n", name, 100 * typeOne, 100 * typeTwo, 100 * total,
               100 * kappa);
  }
};

/// The scan that `urdimbre generate --seed 7 --land LAND` makes, of so many points.
Cloud madeUp(std::string const& land, double density) {
  constexpr std::uint64_t kPoints = 600000, kSeed = 7;
  constexpr std::uint8_t kWater = 9, kRoad = 11;
  Scan scan({kPoints, kSeed, density, *landStyle(land)});
  Cloud cloud{
      fmt::format("{}, {:g} a m2", land, density), CDataSemilla{2, scan.offset()[0], scan.offset()[1], 0}, 1, {}, {}};
  std::vector<LasPoint> batch;
  while (scan.next(batch)) {
    for (LasPoint const& p : batch) {
      cloud.points.emplace_back(p.x, p.y, p.z, 0);
      cloud.points.back().clasificacion = kUnclassified;
      const bool ground = p.classification == kGround || p.classification == kWater || p.classification == kRoad;
      cloud.truth.push_back(ground ? kGround : kUnclassified);
    }
  }
  return cloud;
}

Means measure(std::vector<Cloud> const& clouds, Variant const& variant, bool tell,
              std::filesystem::path const& pictures) {
  Means all;
  for (Cloud const& cloud : clouds) {
    const std::vector<bool> found = objects(search(cloud, variant));
    const Confusion c = compare(cloud.truth, found);
    all.add(c, 1.0 / static_cast<double>(clouds.size()));
    if (!tell) continue;
    Means one;
    one.add(c, 1);
    one.print(cloud.name);
    if (!pictures.empty()) paint(cloud, found, pictures / (cloud.name + ".ppm"));
  }
  return all;
}

/// Heights of the surface through some points of a cloud, in the middles of cells of a metre.
using Model = std::map<std::pair<int, int>, double>;

void addTriangle(CTIN const& tin, std::uint32_t t, double cell, Model& model) {
  auto const& [i, j, k] = tin.Vertices(t);
  CPuntoTIN const &a = tin.puntos[i], &b = tin.puntos[j], &c = tin.puntos[k];
  const auto span = [cell](int u, int v, int w) {
    return std::pair(static_cast<int>(std::ceil(std::min({u, v, w}) / cell - 0.5)),
                     static_cast<int>(std::floor(std::max({u, v, w}) / cell - 0.5)));
  };
  const double bx = b.x - a.x, by = b.y - a.y, cx = c.x - a.x, cy = c.y - a.y, area = bx * cy - by * cx;
  const auto [left, right] = span(a.x, b.x, c.x);
  const auto [bottom, top] = span(a.y, b.y, c.y);
  for (int row = bottom; row <= top; ++row) {
    for (int column = left; column <= right; ++column) {
      const double px = (column + 0.5) * cell - a.x, py = (row + 0.5) * cell - a.y;
      const double u = (px * cy - py * cx) / area, v = (bx * py - by * px) / area;
      if (u >= 0 && v >= 0 && u + v <= 1) model[{column, row}] = a.z + u * (b.z - a.z) + v * (c.z - a.z);
    }
  }
}

Model modelOf(Cloud const& cloud, std::vector<std::uint8_t> const& classes) {
  std::vector<CCoor3D<int>> ground;
  for (std::size_t i = 0; i < classes.size(); ++i) {
    if (classes[i] == kGround) ground.push_back(cloud.points[i]);
  }
  CSetPuntos<int> set(L"GROUND");
  set.CLinea<int>::Asigna(std::move(ground));
  CDibujo<int> drawing(cloud.seed);
  drawing.Inserta(std::move(set));
  CTIN tin(0, 0, cloud.seed);
  CTriangulacion2D triangulation(0, cloud.seed, 1);
  requireDone(
      triangulation.Run({.dibujo = drawing, .ladoMaximo = kNoLimit / cloud.seed.Precision(), .vaciar = true}, tin),
      cloud.name);
  Model model;
  for (std::uint32_t t = 0; t < tin.Cantidad(); ++t) addTriangle(tin, t, cloud.seed.Precision() / cloud.metres, model);
  return model;
}

void printVendor(Cloud const& cloud) {
  const std::vector<std::uint8_t> classes = search(cloud, variants().front());
  double theirs = 0, kept = 0;
  for (std::size_t i = 0; i < classes.size(); ++i) {
    if (cloud.truth[i] != kGround) continue;
    theirs += 1;
    kept += classes[i] == kGround ? 1 : 0;
  }
  const Model ours = modelOf(cloud, classes), vendor = modelOf(cloud, cloud.truth);
  std::vector<double> differences;
  double squares = 0;
  for (auto const& [place, z] : vendor) {
    const auto found = ours.find(place);
    if (found == ours.end()) continue;
    differences.push_back((found->second - z) * cloud.metres / cloud.seed.Precision());
    squares += differences.back() * differences.back();
  }
  std::nth_element(differences.begin(), differences.begin() + static_cast<std::ptrdiff_t>(differences.size() / 2),
                   differences.end());
  fmt::print("{:<14} {:>8.2f} {:>8.2f} {:>8.2f}\n", cloud.name, 100 * kept / theirs,
             differences[differences.size() / 2], std::sqrt(squares / static_cast<double>(differences.size())));
}

}  // namespace

void groundTables(std::filesystem::path const& folder, std::filesystem::path const& pictures, bool ablation,
                  HostApp& app) {
  std::vector<Cloud> samples;
  for (auto const& file : lasFilesIn(folder / "isprs")) samples.push_back(load(file, std::nullopt, app));
  const std::vector<Variant> all = variants();
  fmt::print("{:<34} {:>7} {:>7} {:>7} {:>7}\n", "sample", "type I", "type II", "total", "kappa");
  measure(samples, all.front(), true, pictures).print("mean");
  if (ablation) {
    fmt::print("\n{:<34} {:>7} {:>7} {:>7} {:>7}\n", "mean of all samples", "type I", "type II", "total", "kappa");
    for (Variant const& variant : all) measure(samples, variant, false, {}).print(variant.name);
    return;
  }
  fmt::print("\n{:<14} {:>8} {:>8} {:>8}\n", "vendor's", "kept %", "median m", "rms m");
  for (auto const& file : lasFilesIn(folder)) {
    const Cloud cloud = load(file, std::nullopt, app);
    if (std::count(cloud.truth.begin(), cloud.truth.end(), kGround) > 3) printVendor(cloud);
  }
  std::vector<Cloud> scans;
  for (char const* land : {"mixed", "forest", "town", "river", "steep"}) scans.push_back(madeUp(land, 8));
  for (const double density : {2.0, 30.0}) scans.push_back(madeUp("mixed", density));
  fmt::print("\n{:<34} {:>7} {:>7} {:>7} {:>7}\n", "made up", "type I", "type II", "total", "kappa");
  measure(scans, all.front(), true, pictures);
}

}  // namespace Meseta47::bench
