#include "classification/CListasVecinos.h"

#include <algorithm>

namespace Meseta47 {

void CListasVecinos::Anade(int numero, int vecino) {
  const std::size_t i = static_cast<std::size_t>(numero) - 1;
  std::uint64_t sitios = tope;
  std::span<std::int32_t> trozo = Primero(i);
  for (std::uint32_t* sigue = siguen.empty() ? nullptr : &siguen[i];;) {
    for (std::int32_t& v : trozo) {
      if (sitios-- == 0) return;
      if (v != 0) continue;
      v = vecino;
      return;
    }
    if (sitios == 0) return;
    if (*sigue == 0) {
      otros.emplace_back();  // the pieces that are there stay where they are
      *sigue = static_cast<std::uint32_t>(otros.size());
    }
    CTrozo& otro = otros[*sigue - 1];
    trozo = otro.vecinos;
    sigue = &otro.sigue;
  }
}

std::vector<bool> CListasVecinos::Aislados() const {
  std::vector<bool> aislados(cuantos);
  std::vector<std::int32_t> distintos;
  for (std::size_t i = 0; i < cuantos; ++i) aislados[i] = EsAislado(i, distintos);
  return aislados;
}

/// `distintos` is worked in.
bool CListasVecinos::EsAislado(std::size_t i, std::vector<std::int32_t>& distintos) const {
  if (minimo == 0) return false;
  distintos.clear();
  std::span<std::int32_t const> trozo = Primero(i);
  for (std::uint32_t sigue = siguen.empty() ? 0 : siguen[i];;) {
    for (const std::int32_t v : trozo) {
      if (v == 0) return true;
      if (std::find(distintos.begin(), distintos.end(), v) == distintos.end()) distintos.push_back(v);
      if (distintos.size() >= minimo) return false;
    }
    if (sigue == 0) return true;
    CTrozo const& otro = otros[sigue - 1];
    trozo = otro.vecinos;
    sigue = otro.sigue;
  }
}

}  // namespace Meseta47
