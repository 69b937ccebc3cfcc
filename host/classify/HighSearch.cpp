#include "host/classify/HighSearch.h"

#include "host/Parsing.h"
#include "planar/CTriangulacion2D.h"

namespace Meseta47::host {

HighSearch::HighSearch() {
  table_.length(
      {"--distance", "DistanciaMax",
       "Longest side of the outline drawn around what is found, in units of the input: what lies within is taken too; "
       "0 draws none"},
      data_.DistanciaMax);
  table_.length(
      {"--height", "AlturaMin",
       "How much a point must rise above both other corners of a triangle to be found, in units of the input; the "
       "most that a point within an outline may lie above it"},
      data_.AlturaMin);
  table_.target(
      {"--to", "Tipo1",
       "Class of what is found, 0 to 255, or to 31 in point formats 0 to 5; points that have it already join the "
       "outline, of whatever --class"},
      data_.Tipo1);
  table_.flag({"--single-pass", "Iterar",
               "Do not spread from the points found to those above them; --single-pass=false undoes a profile's"},
              data_.Iterar, 0);
}

int HighSearch::search(CTriangulacion2D& triangulation, CDibujo<int>& drawing, unsigned& found,
                       SearchOutcome& /*outcome*/) {
  return triangulation.RunPuntosAltos(drawing, asMost(data_.DistanciaMax), asMost(data_.AlturaMin), data_.Tipo1,
                                      data_.Iterar == 0 ? 1 : 0, found, nullptr, nullptr);
}

}  // namespace Meseta47::host
