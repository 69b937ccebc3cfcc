#include "host/classify/GroundSearch.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "classification/CBusquedaSuelo.h"
#include "host/CloudOptions.h"
#include "host/Failure.h"
#include "host/NumberCheck.h"
#include "planar/CMedidasDeRun.h"

namespace Meseta47::host {

namespace {

constexpr double kWidestWindow = 250;      // metres: what is wider is a hill
constexpr std::uint64_t kFewMinima = 100;  // a tenth of the largest disc
constexpr std::uint64_t kDense = 2000;     // points a cell of 1 m: a scan of walls, or one that stood still
constexpr int kRough = 0, kTight = 1;

CInfoClasificacion classOf(unsigned target) { return CInfoClasificacion(static_cast<unsigned char>(target), 0.0, L""); }

}  // namespace

void GroundSearch::addOptions(CLI::App& verb) {
  verb.add_option("--to", to_, "Class of the ground, 0 to 255, or to 31 in point formats 0 to 5 (default: 2)")
      ->check(CLI::Range(0, 255));
  verb.add_option("--low-noise", lowNoise_,
                  "Class of what lies in pits or far below the ground, within the same limits (default: 7)")
      ->check(CLI::Range(0, 255));
  verb.add_option("--window", window_,
                  "Half the width of the largest building, in units of the input; a wider one cuts into hills "
                  "(default: 25 metres)")
      ->check(fromZeroUp());
  verb.add_option("--slope", slope_,
                  "Rise over run that still is terrain while buildings are looked for; steeper ground is found again "
                  "later as far as it is even (default: 0.1)")
      ->check(fromZeroUp());
  verb.add_option("--band", band_,
                  "What counts as ground about the surface: rough takes in low growth, tight is for dense and precise "
                  "clouds (default: rough)")
      ->check(CLI::IsMember({"rough", "tight"}));
}

void GroundSearch::settle(ProfilePlace const* profile) {
  if (profile != nullptr) data_.GetProfile(profile->section, profile->prefix);
  if (slope_) data_.Pendiente = *slope_;
  if (band_) data_.Banda = *band_ == "tight" ? kTight : kRough;
  if (to_) data_.Tipo = classOf(*to_);
  if (lowNoise_) data_.Ruido = classOf(*lowNoise_);
  if (data_.Tipo.GetTipo() == data_.Ruido.GetTipo()) {
    throw UsageError(fmt::format("--to and --low-noise are both {}: give them two classes", data_.Tipo.GetTipo()));
  }
}

bool GroundSearch::keep(ProfilePlace const& profile) const {
  constexpr double kDecimalsKept = 1e-6;
  data_.WriteProfile(profile.section, profile.prefix);
  CDataSuelo kept;
  kept.GetProfile(profile.section, profile.prefix);
  return std::abs(kept.Ventana - data_.Ventana) <= kDecimalsKept &&
         std::abs(kept.Pendiente - data_.Pendiente) <= kDecimalsKept && kept.Banda == data_.Banda &&
         kept.Tipo.GetTipo() == data_.Tipo.GetTipo() && kept.Ruido.GetTipo() == data_.Ruido.GetTipo();
}

void GroundSearch::requireSense(CloudUnits const& units) {
  units_ = units;
  if (window_) data_.Ventana = *window_ * units.metres;
  if (data_.Ventana > 0 && data_.Ventana <= kWidestWindow) return;
  throw UsageError(fmt::format("--window {:g}: give a length above 0 and up to {:.0f}, in units of the input",
                               data_.Ventana / units.metres, std::floor(kWidestWindow / units.metres)));
}

unsigned char GroundSearch::highestTarget() const { return std::max(data_.Tipo.GetTipo(), data_.Ruido.GetTipo()); }

nlohmann::ordered_json GroundSearch::parameters() const {
  return {{"to", data_.Tipo.GetTipo()},
          {"low_noise", data_.Ruido.GetTipo()},
          {"window_metres", data_.Ventana},
          {"slope", data_.Pendiente},
          {"band", data_.Banda == kTight ? "tight" : "rough"},
          {"unit_metres", units_.metres},
          {"height_unit_metres", units_.heightMetres},
          {"unit_known", units_.known}};
}

std::uint64_t GroundSearch::temporaryBytes(std::uint64_t points) const {
  return CMedidasDeRun::BytesDelFichero(points);
}

int GroundSearch::run(CDibujo<int>& drawing, CDataTriangulacion const& filters, bool /*fillsHull*/,
                      SearchOutcome& outcome) {
  CBusquedaSuelo search(drawing.semilla, filters, units_.metres, units_.heightMetres);
  const int code = search.Busca(drawing, data_);
  CResumenSuelo const& r = search.Resumen();
  outcome.accepted = r.aceptados;
  outcome.found = r.suelo;
  if (!units_.known) outcome.notes.emplace_back("the file names no reference system: its unit is taken for the metre");
  if (r.minimos > 0 && (r.minimos < kFewMinima || r.aceptados > kDense * r.minimos)) {
    outcome.notes.push_back(fmt::format(
        "{} points over {} cells of {:g} m: too small in plan, or too steep, for ground to be told from what "
        "stands on it",
        r.aceptados, r.minimos, r.celda));
  }
  outcome.details = {
      {"low_noise_found", r.ruido}, {"minima", r.minimos}, {"cell_metres", r.celda}, {"spacing_metres", r.espaciado}};
  outcome.seconds = {{"minima", r.segundosMinimos},
                     {"openings", r.segundosAberturas},
                     {"pits", r.segundosPozos},
                     {"growth", r.segundosCrece},
                     {"points", r.segundosClasifica}};
  return code;
}

}  // namespace Meseta47::host
