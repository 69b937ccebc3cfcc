#include "host/classify/AerialSearch.h"

#include "host/AsprsClasses.h"
#include "host/NumberCheck.h"
#include "host/Parsing.h"
#include "planar/CTriangulacion2D.h"
#include "platform/CWinApp.h"

namespace Meseta47::host {

namespace {

constexpr wchar_t kTargetKey[] = L"Tipo1";

}  // namespace

AerialSearch::AerialSearch() {
  table_.length(
      {"--radius", "DistanciaMax",
       "How far around a point, in plan, the heights are taken that it is held against, in units of the input"},
      data_.DistanciaMax);
  table_.number({"--factor", "DifCotaAereos",
                 "By how many standard deviations of those heights a point must pass their mean; below 0 it looks for "
                 "points below it: --factor -3"},
                data_.DifCotaAereos, anyNumber());
  table_.target({.option = "--to",
                 .key = "Tipo1",
                 .help = "Class of what is found, 0 to 255, or to 31 in point formats 0 to 5",
                 .byDefault = "18, high noise; 7, low noise, with a factor below 0"},
                data_.Tipo1);
}

CInfoClasificacion AerialSearch::usualTarget() const {
  return {data_.DifCotaAereos < 0 ? kLowNoise : kHighNoise, 0.0, L""};
}

void AerialSearch::settle(ProfilePlace const* profile) {
  MeshSearch::settle(profile);
  if (!table_.isSettled("--to")) data_.Tipo1 = usualTarget();
}

bool AerialSearch::keep(ProfilePlace const& profile) const {
  if (!MeshSearch::keep(profile)) return false;
  // The usual class goes with the sign of the factor, also when the profile is used with the other sign.
  if (data_.Tipo1 == usualTarget()) AfxGetApp()->WriteProfileString(profile.section, profile.prefix + kTargetKey, L"");
  return true;
}

int AerialSearch::search(CTriangulacion2D& triangulation, CDibujo<int>& drawing, unsigned& found,
                         SearchOutcome& /*outcome*/) {
  return triangulation.RunPuntosAereos(drawing, asMost(data_.DistanciaMax), data_.DifCotaAereos, data_.Tipo1, found,
                                       nullptr, nullptr);
}

}  // namespace Meseta47::host
