#include "host/classify/JumpSearch.h"

#include "host/Failure.h"
#include "host/Parsing.h"
#include "host/classify/ConditionSearch.h"
#include "planar/CTriangulacion2D.h"

namespace Meseta47::host {

JumpSearch::JumpSearch() {
  constexpr int kMost = 65535;
  table_.whole({.option = "--difference",
                .key = "Difference",
                .help = "By how much the intensity of a point must pass those of both other corners of a triangle; "
                        "below 0 for points that are darker. The scale is the scanner's: urdimbre info tells the range",
                .byDefault = ""},
               difference_, -kMost, kMost);
  table_.length({"--distance", "DistanciaMax",
                 "Longest side of the outline drawn around what is found, in units of the input: what lies within is "
                 "taken too; 0 draws none"},
                data_.DistanciaMax);
  table_.target({.option = "--to",
                 .key = "Tipo1",
                 .help = "Class of what is found, 0 to 255, or to 31 in point formats 0 to 5",
                 .byDefault = ""},
                data_.Tipo1);
}

void JumpSearch::settle(ProfilePlace const* profile) {
  CloudSearch::settle(profile);
  if (difference_ == 0) {
    throw UsageError("--difference: give by how much points are brighter than their surroundings, or below 0 darker");
  }
  if (!table_.isSettled("--to")) throw UsageError("--to: give the class that the points found are to have");
}

void JumpSearch::requireSeen(LoadedCloud const& cloud, std::string const& input) const {
  requireVaryingIntensity(cloud, input);
}

int JumpSearch::search(CTriangulacion2D& triangulation, CDibujo<int>& drawing, unsigned& found,
                       SearchOutcome& /*outcome*/) {
  return triangulation.RunPuntosDifIntensidad(drawing, asMost(data_.DistanciaMax), difference_, data_.Tipo1, found,
                                              nullptr, nullptr);
}

}  // namespace Meseta47::host
