#include "model/geometry/CTransformacion.h"

#include <cmath>

namespace Meseta47 {

CCoor3D<double> CTransformacion::Aplica(CCoor3D<double> const& p) const {
  const double c = escala * std::cos(giro), s = escala * std::sin(giro);
  CCoor3D<double> r(p);
  r.Actualiza(c * p.x - s * p.y + dx, s * p.x + c * p.y + dy, escalaZ * p.z + dz);
  return r;
}

CCoor3D<double> CTransformacion::AplicaInversa(CCoor3D<double> const& p) const {
  const double c = std::cos(giro) / escala, s = std::sin(giro) / escala;
  const double x = p.x - dx, y = p.y - dy;
  CCoor3D<double> r(p);
  r.Actualiza(c * x + s * y, c * y - s * x, (p.z - dz) / escalaZ);
  return r;
}

bool CTransformacion::TieneInversa() const { return std::isnormal(escala) && std::isnormal(escalaZ); }

}  // namespace Meseta47
