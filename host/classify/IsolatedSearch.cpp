#include "host/classify/IsolatedSearch.h"

#include "host/AsprsClasses.h"
#include "host/Parsing.h"
#include "planar/CTriangulacion2D.h"

namespace Meseta47::host {

namespace {

constexpr int kUsualNeighbours = 1;    // two spare fewer corners of what stands alone
constexpr int kMostNeighbours = 1000;  // no point of a cloud has so many

}  // namespace

IsolatedSearch::IsolatedSearch() {
  data_.VecinosAislados = kUsualNeighbours;
  data_.Tipo1 = CInfoClasificacion(kLowNoise, 0.0, L"");
  table_.squaredLength({"--distance", "DistanciaMax",
                        "How near a neighbour must be, in space, in units of the input; only points that the "
                        "triangulation joins are neighbours"},
                       data_.DistanciaMax);
  table_.whole({"--neighbours", "VecinosAislados", "A point with fewer neighbours is isolated"}, data_.VecinosAislados,
               1, kMostNeighbours);
  table_.target({"--to", "Tipo1", "Class of what is found, 0 to 255, or to 31 in point formats 0 to 5"}, data_.Tipo1);
}

int IsolatedSearch::search(CTriangulacion2D& triangulation, CDibujo<int>& drawing, unsigned& found,
                           SearchOutcome& /*outcome*/) {
  return triangulation.RunPuntosAislados(drawing, asMost(data_.DistanciaMax),
                                         static_cast<unsigned>(data_.VecinosAislados), data_.Tipo1, found, nullptr,
                                         nullptr);
}

}  // namespace Meseta47::host
