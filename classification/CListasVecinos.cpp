#include "classification/CListasVecinos.h"

#include <algorithm>

namespace Meseta47 {

void CListasVecinos::Anade(int numero, int vecino) {
  std::uint64_t sitios = tope;
  for (CTrozo* t = &primeros[static_cast<std::size_t>(numero) - 1];; t = &otros[t->sigue - 1]) {
    for (std::int32_t& v : t->vecinos) {
      if (sitios-- == 0) return;
      if (v != 0) continue;
      v = vecino;
      return;
    }
    if (sitios == 0) return;
    if (t->sigue == 0) {
      otros.emplace_back();  // the pieces that are there stay where they are
      t->sigue = static_cast<std::uint32_t>(otros.size());
    }
  }
}

std::vector<bool> CListasVecinos::Aislados() const {
  std::vector<bool> aislados(primeros.size());
  std::vector<std::int32_t> distintos;
  for (std::size_t i = 0; i < primeros.size(); ++i) aislados[i] = EsAislado(primeros[i], distintos);
  return aislados;
}

/// `distintos` is worked in.
bool CListasVecinos::EsAislado(CTrozo const& lista, std::vector<std::int32_t>& distintos) const {
  if (minimo == 0) return false;
  distintos.clear();
  for (CTrozo const* t = &lista;; t = &otros[t->sigue - 1]) {
    for (const std::int32_t v : t->vecinos) {
      if (v == 0) return true;
      if (std::find(distintos.begin(), distintos.end(), v) == distintos.end()) distintos.push_back(v);
      if (distintos.size() >= minimo) return false;
    }
    if (t->sigue == 0) return true;
  }
}

}  // namespace Meseta47
