#include "model/geometry/Cercania.h"

#include <algorithm>

namespace Meseta47 {

namespace {

/// Narrows the stretch [desde, hasta] of a segment's parameter to where its coordinate, which runs from `a` by `d`,
/// lies between two limits.
void Recorta(double a, double d, double menor, double mayor, double& desde, double& hasta) {
  if (d == 0) {
    if (a < menor || a > mayor) hasta = -1;
    return;
  }
  const double t1 = (menor - a) / d, t2 = (mayor - a) / d;
  desde = std::max(desde, std::min(t1, t2));
  hasta = std::min(hasta, std::max(t1, t2));
}

}  // namespace

double DistanciaASegmento(CCoor3D<double> const& p, CCoor3D<double> const& a, CCoor3D<double> const& b) {
  double parametro = 0;
  const double aRecta = p.DistanciaARecta(a, b, 0, &parametro);
  if (parametro <= 0) return p.Distancia(a);
  return parametro >= 1 ? p.Distancia(b) : aRecta;
}

bool SegmentoTocaCaja(CCoor3D<double> const& a, CCoor3D<double> const& b, CMaximas<double> const& caja) {
  if (caja.EstanVacias(true)) return false;
  double desde = 0, hasta = 1;
  Recorta(a.x, b.x - a.x, caja.Minimo.x, caja.Maximo.x, desde, hasta);
  Recorta(a.y, b.y - a.y, caja.Minimo.y, caja.Maximo.y, desde, hasta);
  return desde <= hasta;
}

}  // namespace Meseta47
