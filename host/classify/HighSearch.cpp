#include "host/classify/HighSearch.h"

#include <cmath>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "host/CloudOptions.h"
#include "host/Failure.h"
#include "host/NumberCheck.h"
#include "planar/CMedidasDeRun.h"
#include "planar/CTriangulacion2D.h"

namespace Meseta47::host {

namespace {

constexpr double kInt32 = 2147483647.0;

/// The search works on whole scaled units of 32 bits.
void requireLength(char const* option, double value, double unitsAMetre) {
  if (value >= 0 && value * unitsAMetre <= kInt32) return;
  throw UsageError(fmt::format("{} {:g}: give a length from 0 to {:.0f}, in units of the input", option, value,
                               std::floor(kInt32 / unitsAMetre)));
}

}  // namespace

void HighSearch::addOptions(CLI::App& verb) {
  verb.add_option("--distance", distance_,
                  "Longest side of the outline drawn around what is found, in units of the input: what lies within is "
                  "taken too; 0 draws none (default: 5)")
      ->check(fromZeroUp());
  verb.add_option("--height", height_,
                  "How much a point must rise above both other corners of a triangle to be found, in units of the "
                  "input; the most that a point within an outline may lie above it (default: 5)")
      ->check(fromZeroUp());
  verb.add_option(
          "--to", to_,
          "Class of what is found, 0 to 255, or to 31 in point formats 0 to 5; points that have it already join the "
          "outline, of whatever --class (default: 6, building)")
      ->check(CLI::Range(0, 255));
  verb.add_flag_function(
      "--single-pass", [this](std::int64_t count) { singlePass_ = count > 0; },
      "Do not spread from the points found to those above them; --single-pass=false undoes a profile's");
}

void HighSearch::settle(ProfilePlace const* profile) {
  if (profile != nullptr) data_.GetProfile(profile->section, profile->prefix);
  if (distance_) data_.DistanciaMax = *distance_;
  if (height_) data_.AlturaMin = *height_;
  if (to_) data_.Tipo1 = CInfoClasificacion(static_cast<unsigned char>(*to_), 0.0, L"");
  if (singlePass_) data_.Iterar = *singlePass_ ? 0 : 1;
}

bool HighSearch::keep(ProfilePlace const& profile) const {
  constexpr double kDecimalsKept = 1e-6;
  data_.WriteProfile(profile.section, profile.prefix);
  CDataBuscarPuntos kept;
  kept.GetProfile(profile.section, profile.prefix);
  return std::abs(kept.DistanciaMax - data_.DistanciaMax) <= kDecimalsKept &&
         std::abs(kept.AlturaMin - data_.AlturaMin) <= kDecimalsKept && kept.Tipo1.GetTipo() == data_.Tipo1.GetTipo() &&
         kept.Iterar == data_.Iterar;
}

void HighSearch::requireSense(CloudUnits const& units) {
  requireLength("--distance", data_.DistanciaMax, units.aMetre);
  requireLength("--height", data_.AlturaMin, units.aMetre);
}

nlohmann::ordered_json HighSearch::parameters() const {
  return {{"distance", data_.DistanciaMax},
          {"height", data_.AlturaMin},
          {"to", data_.Tipo1.GetTipo()},
          {"single_pass", singlePass()}};
}

std::uint64_t HighSearch::temporaryBytes(std::uint64_t points) const {
  // The file of the outline comes beside that of the cloud: as large at the worst, much smaller as a rule.
  return 2 * CMedidasDeRun::BytesDelFichero(points);
}

int HighSearch::run(CDibujo<int>& drawing, CDataTriangulacion const& filters, bool fillsHull, SearchOutcome& outcome) {
  CTriangulacion2D triangulation(0, drawing.semilla, filters, 1);
  triangulation.SinMarco(fillsHull);
  unsigned found = 0;
  const int code = triangulation.RunPuntosAltos(drawing, data_.DistanciaMax, data_.AlturaMin, data_.Tipo1,
                                                singlePass() ? 1 : 0, found, nullptr, nullptr);
  CResumenPlano const& run = triangulation.Resumen();
  outcome.mesh = run;
  outcome.accepted = run.aceptados;
  outcome.found = found;
  outcome.seconds = {{"fill", run.segundosRellena},
                     {"link", run.segundosEnlaza},
                     {"search", run.segundosBusca - run.segundosContorno},
                     {"outline", run.segundosContorno}};
  return code;
}

}  // namespace Meseta47::host
