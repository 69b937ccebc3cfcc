#pragma once

#include <vector>

#include "model/drawing/CDibujo.h"
#include "model/drawing/CPosicionEntidad.h"
#include "model/threads/CMarcha.h"
#include "model/threads/Codigos.h"
#include "run/CListasClases.h"

namespace Meseta47 {

/// A point of a drawing and the class that it is to have.
struct CClaseHallada {
  CPosicionEntidad lugar;
  unsigned char clase = 0;
};

/// Visits every point of a drawing once a search is over: `visita(punto, lugar, elegible)`. A point is eligible when it
/// has a number, whatever its sign, and its class may be changed. That a point has a number doesn't mean that the
/// search knows it: a selection that ends on a duplicate leaves numbered points behind it.
template <class F>
void RecorreElegibles(CDibujo<int> const& dibujo, CListasClases const& clases, F&& visita) {
  for (unsigned e = 0; e < dibujo.Cantidad(); ++e) {
    CLinea<int> const& linea = dibujo[e];
    for (int j = 0; j < linea.NPuntos(); ++j) {
      CCoor3D<int> const& p = *linea.PunteroAPunto(j);
      visita(p, CPosicionEntidad(static_cast<int>(e), j), p.num != 0 && clases.Admite(p.clasificacion));
    }
  }
}

/// Gives the class to every point that has a number, whose own class may be changed and of which `hallado(punto)` says
/// that it was found, with a step of progress before each point of the drawing. `cantidad` counts them. kHecho; on
/// kCancelado those given their class so far keep it.
template <class F>
int EscribeHallados(CDibujo<int>& dibujo, CListasClases const& clases, CInfoClasificacion const& info, CMarcha marcha,
                    unsigned& cantidad, F&& hallado) {
  const CInfoClasificacion clase(info.GetTipo(), 0.0, CString());
  cantidad = 0;
  for (unsigned e = 0; e < dibujo.Cantidad(); ++e) {
    CLinea<int>& linea = dibujo[e];
    for (int j = 0; j < linea.NPuntos(); ++j) {
      if (!marcha.Avanza()) return kCancelado;
      CCoor3D<int> const& p = *linea.PunteroAPunto(j);
      if (p.num == 0 || !hallado(p) || !clases.Admite(p.clasificacion)) continue;
      linea.SetClasificacion(clase, j);
      ++cantidad;
    }
  }
  return kHecho;
}

/// Gives the points their classes. Nothing here fails: what could is done before the first class changes.
void EscribeClases(CDibujo<int>& dibujo, std::vector<CClaseHallada> const& halladas);

}  // namespace Meseta47
