#pragma once

#include "model/drawing/CDibujo.h"
#include "run/CListasClases.h"

namespace Meseta47 {

/// A drawing with the points alone, which it takes over.
[[nodiscard]] CDibujo<int> DibujoDeHallados(CDataSemilla const& semilla, std::vector<CCoor3D<int>>& puntos);

/// Puts into `limites` the outlines of what a search has found, the points of all sets, with sides up to `distancia`
/// (drawing units), larger ones first. It takes the points over and leaves `nuevo` empty; without points there is no
/// outline. They are told and can be cancelled at message level `nivel`; `sinMarco` is that of CTriangulacion. A code
/// of CTriangulacion::LimiteDibujo.
int ContornoDeHallados(CDibujo<int>& nuevo, double distancia, CNivelMensajes nivel, CDibujo<int>& limites,
                       bool sinMarco);

/// Gives the class to the points of `dibujo` inside the outlines that are no higher than `altura` (scaled units) above
/// them and whose own class may be changed; `cantidad` grows by those. A code of
/// CDibujo::ClasificarPuntosSegunLimite.
int ClasificaDentro(CDibujo<int>& dibujo, CDibujo<int>& limites, CInfoClasificacion const& info,
                    CListasClases const& clases, int altura, unsigned& cantidad);

}  // namespace Meseta47
