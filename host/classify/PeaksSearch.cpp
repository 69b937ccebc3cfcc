#include "host/classify/PeaksSearch.h"

#include "host/AsprsClasses.h"
#include "host/NumberCheck.h"
#include "planar/CTriangulacion2D.h"

namespace Meseta47::host {

PeaksSearch::PeaksSearch() {
  data_.Tipo = CInfoClasificacion(kLowNoise, 0.0, L"");
  table_.length(
      {"--distance", "DistanciaMax",
       "Longest side, in plan, of the triangles that tell a point of its neighbours, in units of the input; 0 "
       "takes all"},
      data_.DistanciaMax);
  table_.length({"--height", "AlturaMin",
                 "How much a point must rise above its highest neighbour, or above their mean when it rises above all, "
                 "in units of the input; the same downwards"},
                data_.AlturaMin);
  table_.number({"--slope", "pendienteMax",
                 "A point is a spike as well that rises from two triangle sides by more than twice the height and more "
                 "steeply than this, rise over run; 0 leaves it at the heights"},
                data_.pendienteMax, fromZeroUp());
  table_.target({"--to", "Tipo", "Class of what is found, 0 to 255, or to 31 in point formats 0 to 5"}, data_.Tipo);
}

int PeaksSearch::search(CTriangulacion2D& triangulation, CDibujo<int>& drawing, unsigned& found,
                        SearchOutcome& /*outcome*/) {
  return triangulation.BuscaPicos(drawing, data_, found, nullptr, nullptr, nullptr, nullptr);
}

}  // namespace Meseta47::host
