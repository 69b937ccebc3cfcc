#pragma once

#include <vector>

#include "classification/BusquedaClases.h"
#include "model/drawing/CDibujo.h"
#include "model/threads/CNivelMensajes.h"
#include "run/CListasClases.h"

namespace Meseta47 {

/// Points that a search has found, or that have their class already: an outline is drawn around them, and what lies
/// inside takes the class as well when it is no higher than `altura` (scaled units) above it.
struct CGrupoHallado {
  CDibujo<int> puntos;
  CInfoClasificacion info;
  int altura;
};

/// How outlines are drawn: with sides up to `distancia` (drawing units), told and cancelled at a message level.
/// `sinMarco` is that of CTriangulacion.
struct CComoContorno {
  double distancia;
  CNivelMensajes nivel;
  bool sinMarco;
};

/// A drawing with the points alone, which it takes over.
[[nodiscard]] CDibujo<int> DibujoDeHallados(CDataSemilla const& semilla, std::vector<CCoor3D<int>>& puntos);

/// Puts into `limites` the outlines of what a search has found, the points of all sets, larger ones first. It takes the
/// points over and leaves `nuevo` empty; without points there is no outline. A code of CTriangulacion::LimiteDibujo.
int ContornoDeHallados(CDibujo<int>& nuevo, CComoContorno const& como, CDibujo<int>& limites);

/// The end of a search: outlines the groups in their order, gives the points found their classes, and then what lies
/// inside the outlines theirs. `cantidad` becomes the number of classes given. The points of the groups are taken over.
///
/// All outlines are drawn before the first class is written: they depend on the points found alone. kCancelado, with no
/// class changed; when another code ends the outlines, the points found and what lies inside the outlines drawn until
/// then have their class all the same.
int ClasificaHallados(CDibujo<int>& dibujo, std::vector<CClaseHallada> const& hallados,
                      std::vector<CGrupoHallado>& grupos, CComoContorno const& como, CListasClases const& clases,
                      unsigned& cantidad);

}  // namespace Meseta47
