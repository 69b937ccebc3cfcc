#pragma once

#include "model/geometry/CCoor3D.h"

namespace Meseta47 {

/// Comparison object that orders points by a key chosen at construction: 3 gathers equal heights (z, then x, then y),
/// any other value is the order of positions (x, then y, then z).
template <class T>
class COrdenaPunto {
 public:
  explicit COrdenaPunto(unsigned int clave) : porAltura(clave == 3) {}

  int operator()(CCoor3D<T> const& a, CCoor3D<T> const& b) const {
    if (!porAltura) return a < b;
    if (a.z != b.z) return a.z < b.z;
    if (a.x != b.x) return a.x < b.x;
    return a.y < b.y;
  }

 private:
  bool porAltura;
};

}  // namespace Meseta47
