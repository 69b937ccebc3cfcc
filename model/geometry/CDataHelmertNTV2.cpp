#include "model/geometry/CDataHelmertNTV2.h"

#include <cmath>

namespace Meseta47 {

namespace {

void Gira(double& a, double& b, double angulo) {
  const double c = std::cos(angulo), s = std::sin(angulo), a0 = a;
  a = c * a0 - s * b;
  b = s * a0 + c * b;
}

}  // namespace

CCoor3D<double> CDataHelmertNTV2::Aplica(CCoor3D<double> const& p) const {
  double x = p.x, y = p.y, z = p.z;
  Gira(y, z, rotacion[0]);
  Gira(z, x, rotacion[1]);
  Gira(x, y, rotacion[2]);
  const double k = 1 + escala;
  CCoor3D<double> r(p);
  r.Actualiza(traslacion[0] + k * x, traslacion[1] + k * y, traslacion[2] + k * z);
  return r;
}

}  // namespace Meseta47
