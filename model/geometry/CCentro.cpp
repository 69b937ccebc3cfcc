#include "model/geometry/CCentro.h"

#include "model/geometry/CEsfera.h"

namespace Meseta47 {

bool CCentro::Centro4P(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c, CCoor3D<int> const& d) {
  CEsfera esfera;
  const bool hay = esfera.Por4Puntos(a, b, c, d);
  centro.x = esfera.x;
  centro.y = esfera.y;
  centro.z = esfera.z;
  radio = esfera.radio;
  radio2 = esfera.radio2;
  return hay;
}

}  // namespace Meseta47
