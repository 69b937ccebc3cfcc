#include "model/geometry/OrdenDePuntos.h"

#include <algorithm>
#include <bit>

#include "model/storage/OrdenaPorCifras.h"

namespace Meseta47 {

void OrdenaPorPosicion(VectorCrudo<CClavePunto>& claves, CMaximas<int> const& caja) {
  const auto bits = [](int minimo, int maximo) {
    return static_cast<unsigned>(std::bit_width(CClavePunto::Desde(minimo, maximo)));
  };
  VectorCrudo<CClavePunto> otras(claves.size());
  OrdenaPorCifras(claves, otras, bits(caja.Minimo.y, caja.Maximo.y), [](CClavePunto const& c) { return c.y; });
  OrdenaPorCifras(claves, otras, bits(caja.Minimo.x, caja.Maximo.x), [](CClavePunto const& c) { return c.x; });
  // Points of one plan position are few as a rule: heights are looked at there alone.
  for (auto i = claves.begin(), j = i; i != claves.end(); i = j) {
    for (j = i + 1; j != claves.end() && j->MismaPlanta(*i);) ++j;
    if (j - i == 1) continue;
    std::stable_sort(i, j, [](CClavePunto const& a, CClavePunto const& b) { return a.punto->z < b.punto->z; });
  }
}

}  // namespace Meseta47
