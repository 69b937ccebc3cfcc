#include "bench/Labelled.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <stdexcept>

#include "host/LoadedCloud.h"

namespace Meseta47::bench {

using namespace Meseta47::host;

double Confusion::kappa() const {
  const double agreed = 1 - total();
  const double byChance = ((groundKept + groundLost) * (groundKept + objectsMissed) +
                           (objectsFound + objectsMissed) * (objectsFound + groundLost)) /
                          (all() * all());
  return byChance == 1 ? 0 : (agreed - byChance) / (1 - byChance);
}

Cloud load(std::filesystem::path const& file, std::optional<int> decimals, HostApp& app) {
  LoadOptions options;
  options.precision = decimals;
  options.map.emplace();
  LoadedCloud loaded = std::move(loadClouds({{file.string()}}, options, app)[0]);
  Cloud cloud{file.stem().string(), loaded.seed, 1, takePoints(loaded, true), {}};
  if (loaded.system.isKnown() && !loaded.system.isGeographic()) cloud.metres = loaded.system.unit().metres;
  for (CCoor3D<int>& p : cloud.points) {
    cloud.truth.push_back(p.clasificacion);
    p.clasificacion = kUnclassified;
  }
  return cloud;
}

std::vector<std::filesystem::path> lasFilesIn(std::filesystem::path const& folder) {
  std::vector<std::filesystem::path> files;
  for (auto const& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".las") files.push_back(entry.path());
  }
  if (files.empty()) throw std::runtime_error(folder.string() + " has no .las files");
  std::sort(files.begin(), files.end());
  return files;
}

CDibujo<int> drawingOf(Cloud const& cloud) {
  CSetPuntos<int> set(L"CLOUD");
  set.CLinea<int>::Asigna(std::vector<CCoor3D<int>>(cloud.points));
  CDibujo<int> drawing(cloud.seed);
  drawing.tipoNube = 1;
  drawing.Inserta(std::move(set));
  return drawing;
}

Confusion compare(std::vector<std::uint8_t> const& truth, std::vector<bool> const& found) {
  Confusion c;
  for (std::size_t i = 0; i < truth.size(); ++i) {
    const bool ground = truth[i] == kGround;
    (ground ? (found[i] ? c.groundLost : c.groundKept) : (found[i] ? c.objectsFound : c.objectsMissed)) += 1;
  }
  return c;
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

}  // namespace Meseta47::bench
