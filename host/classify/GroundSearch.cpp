#include "host/classify/GroundSearch.h"

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

}  // namespace

GroundSearch::GroundSearch() {
  table_.target({"--to", "Tipo", "Class of the ground, 0 to 255, or to 31 in point formats 0 to 5"}, data_.Tipo);
  table_.target({"--low-noise", "Ruido", "Class of what lies in pits or far below the ground, within the same limits"},
                data_.Ruido);
  table_.metres({.option = "--window",
                 .key = "Ventana",
                 .help = "Half the width of the largest building, in units of the input; a wider one cuts into hills",
                 .json = "window_metres",
                 .byDefault = "25 metres"},
                data_.Ventana, kWidestWindow);
  table_.number({"--slope", "Pendiente",
                 "Rise over run that still is terrain while buildings are looked for; steeper ground is found again "
                 "later as far as it is even"},
                data_.Pendiente, fromZeroUp());
  table_.choice({"--band", "Banda",
                 "How far above the surface is still ground: as the lowest points around each place are scattered "
                 "(auto), a quarter of a metre and more, low growth included (rough), or a decimetre and more (tight)"},
                data_.Banda, {"rough", "tight", "auto"});
}

void GroundSearch::settle(ProfilePlace const* profile) {
  CloudSearch::settle(profile);
  if (data_.Tipo.GetTipo() == data_.Ruido.GetTipo()) {
    throw UsageError(fmt::format("--to and --low-noise are both {}: give them two classes", data_.Tipo.GetTipo()));
  }
}

void GroundSearch::requireSense(CloudUnits const& units) {
  CloudSearch::requireSense(units);
  units_ = units;
}

nlohmann::ordered_json GroundSearch::parameters() const {
  nlohmann::ordered_json all = CloudSearch::parameters();
  all["unit_metres"] = units_.metres;
  all["height_unit_metres"] = units_.heightMetres;
  all["unit_known"] = units_.known;
  return all;
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
  outcome.seconds = {{"minima", r.segundosMinimos}, {"openings", r.segundosAberturas}, {"pits", r.segundosPozos},
                     {"growth", r.segundosCrece},   {"surface", r.segundosSuperficie}, {"points", r.segundosClasifica}};
  return code;
}

}  // namespace Meseta47::host
