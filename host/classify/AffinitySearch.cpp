#include "host/classify/AffinitySearch.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include "host/AsprsClasses.h"
#include "host/Failure.h"
#include "host/FileError.h"
#include "host/NumberCheck.h"
#include "planar/CTriangulacion2D.h"

namespace Meseta47::host {

namespace {

constexpr double kMostIntensity = 65535;

/// From 0, or from the same below it, to `most`.
CRango upTo(double most, bool bothSigns = false) {
  constexpr double kNone = 2147483647.0;
  CRango range(kNone, kNone, -2147483648.0, kNone);
  range.SetValorMin(bothSigns ? -most : 0);
  range.SetValorMax(most);
  return range;
}

/// A length in scaled units. What people mean by 0.29 at two decimals is 29, and not a hair less.
double scaled(double length, double aMetre) {
  const double units = length * aMetre, whole = std::round(units);
  return std::abs(units - whole) <= 1e-9 * std::max(1.0, whole) ? whole : units;
}

std::vector<CCoor3D<int>> const& pointsOf(CDibujo<int> const& drawing) { return drawing[0].Puntos(); }

}  // namespace

AffinitySearch::AffinitySearch() {
  table_.target({"--grow", "Tipo1", "The class that grows, 0 to 255, or to 31 in point formats 0 to 5"}, grow_);
  table_.optionalClass(
      {"--barrier", "Tipo2", "A class whose points stop it and never change; others are overrun (default: none)"},
      barrier_);
  table_.optionalLength(
      {"--height-difference", "DifCota",
       "Most that two neighbours may differ in height, in units of the input (default: any; one limit must be given)"},
      height_);
  table_.optionalNumber({"--intensity-difference", "DifIntensidad",
                         "Most that they may differ in intensity, as the file has it (default: any)"},
                        intensity_,
                        numberCheck(" from 0 to 65535", [](double v) { return v >= 0 && v <= kMostIntensity; }));
  table_.optionalLength(
      {"--side", "LadoMax", "Longest side in plan from one to the other, in units of the input (default: any)"}, side_);
  table_.optionalNumber(
      {"--slope", "PendienteMax", "Steepest rise over run from one to the other, up or down (default: any)"}, slope_,
      fromZeroUp());
  table_.flag({"--once", "Iterar",
               "Look at each triangle once only, as it is made, in place of going on until nothing changes: what is "
               "reached then depends on the order of the points; --once=false undoes a profile's"},
              once_);
}

void AffinitySearch::settle(ProfilePlace const* profile) {
  MeshSearch::settle(profile);
  if (height_ || intensity_ || side_ || slope_) return;
  throw UsageError(
      "nothing would stop the growth: give --height-difference, --intensity-difference, --side or --slope, or several");
}

void AffinitySearch::requireSense(CloudUnits const& units) {
  MeshSearch::requireSense(units);
  aMetre_ = units.aMetre;
}

AffinitySearch::Ranges AffinitySearch::ranges() const {
  Ranges ranges;
  if (height_) ranges.heights = upTo(scaled(*height_, aMetre_));
  if (intensity_) ranges.intensities = upTo(*intensity_);
  if (side_) ranges.squares = upTo(scaled(*side_, aMetre_) * scaled(*side_, aMetre_));
  if (slope_) ranges.slopes = upTo(*slope_, true);
  return ranges;
}

/// Refuses what can tell nothing apart, and says what a person should know.
void AffinitySearch::requireTold(CDibujo<int> const& drawing, SearchOutcome& outcome) const {
  std::vector<CCoor3D<int>> const& points = pointsOf(drawing);
  if (points.empty()) return;
  const auto same = [&](CCoor3D<int> const& p) { return p.intensidad == points[0].intensidad; };
  if (intensity_ && std::all_of(points.begin(), points.end(), same)) {
    throw Failure(
        fmt::format("every point has the intensity {}: leave --intensity-difference out", points[0].intensidad));
  }
  const unsigned char grow = grow_.GetTipo();
  if (std::none_of(points.begin(), points.end(), [&](CCoor3D<int> const& p) { return p.clasificacion == grow; })) {
    outcome.notes.push_back(
        fmt::format("no point has class {}, {}: there is nothing to grow from", grow, className(grow)));
  }
}

int AffinitySearch::search(CTriangulacion2D& triangulation, CDibujo<int>& drawing, unsigned& found,
                           SearchOutcome& outcome) {
  requireTold(drawing, outcome);
  const Ranges limits = ranges();
  const auto given = [](std::optional<CRango> const& range) { return range ? &*range : nullptr; };
  const CReglasAfinidad rules{.crece = grow_.GetTipo(),
                              .barrera = barrier_.value_or(grow_).GetTipo(),
                              .alturas = given(limits.heights),
                              .intensidades = given(limits.intensities),
                              .distancias = given(limits.squares),
                              .pendientes = given(limits.slopes)};
  unsigned rounds = 1;
  const int code =
      once_ != 0 ? triangulation.RunPuntosPorAfinidad(drawing, found, rules.alturas, rules.intensidades,
                                                      rules.distancias, rules.pendientes, grow_,
                                                      barrier_.value_or(grow_), nullptr, nullptr, nullptr, 0, nullptr)
                 : triangulation.RunAfinidadCompleta(drawing, rules, found, rounds, nullptr, nullptr);
  outcome.details = {{"rounds", rounds}};
  outcome.lines.emplace_back("rounds", withThousands(rounds));
  return code;
}

}  // namespace Meseta47::host
