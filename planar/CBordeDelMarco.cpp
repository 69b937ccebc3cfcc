#include "planar/CBordeDelMarco.h"

#include <algorithm>
#include <iterator>

#include "planar/TriangulaExacto.h"

namespace Meseta47 {

namespace {

using CPunto = CCoor3D<int>;
using CPuntos3 = CBordeDelMarco::CPuntos3;

CLugarPlano Lugar(CPunto const* p) { return {p->x, p->y}; }

/// The real points of the triangles, by their places. No two have one: a mesh takes each place once.
std::vector<CPunto*> PuntosDe(std::vector<CPuntos3> const& triangulos) {
  std::vector<CPunto*> puntos;
  for (CPuntos3 const& t : triangulos) {
    std::copy_if(t.begin(), t.end(), std::back_inserter(puntos), [](CPunto const* p) { return p->num > 0; });
  }
  std::sort(puntos.begin(), puntos.end(), [](CPunto const* a, CPunto const* b) { return Lugar(a) < Lugar(b); });
  puntos.erase(std::unique(puntos.begin(), puntos.end()), puntos.end());
  return puntos;
}

/// Two indices, in the direction of the triangle that they come from.
struct CLado {
  std::array<std::uint32_t, 2> dirigido;

  [[nodiscard]] std::array<std::uint32_t, 2> Clave() const {
    return {std::min(dirigido[0], dirigido[1]), std::max(dirigido[0], dirigido[1])};
  }
};

/// Sides of real points that only one of the triangles has: on the other hand of each lies the surface that is there.
std::vector<std::array<std::uint32_t, 2>> BordesDe(std::vector<CPuntos3> const& triangulos,
                                                   std::vector<CLugarPlano> const& lugares) {
  const auto indice = [&lugares](CPunto const* p) {
    return static_cast<std::uint32_t>(std::lower_bound(lugares.begin(), lugares.end(), Lugar(p)) - lugares.begin());
  };
  std::vector<CLado> lados;
  for (CPuntos3 const& t : triangulos) {
    for (std::size_t k = 0; k < 3; ++k) {
      CPunto const *a = t[k], *b = t[(k + 1) % 3];
      if (a->num > 0 && b->num > 0) lados.push_back({{indice(a), indice(b)}});
    }
  }
  std::sort(lados.begin(), lados.end(), [](CLado const& a, CLado const& b) { return a.Clave() < b.Clave(); });
  std::vector<std::array<std::uint32_t, 2>> bordes;
  for (std::size_t i = 0; i < lados.size(); ++i) {
    if (i + 1 < lados.size() && lados[i].Clave() == lados[i + 1].Clave()) {
      ++i;
    } else {
      bordes.push_back(lados[i].dirigido);
    }
  }
  return bordes;
}

}  // namespace

CBordeDelMarco::CCierre CBordeDelMarco::Cierra() {
  const std::vector<CPunto*> puntos = PuntosDe(triangulos);
  std::vector<CLugarPlano> lugares(puntos.size());
  std::transform(puntos.begin(), puntos.end(), lugares.begin(), Lugar);
  const auto bordes = BordesDe(triangulos, lugares);
  Vacia();
  const CSuperficieExacta exacta = TriangulaExacto(lugares, bordes);
  CCierre cierre;
  cierre.triangulos.reserve(exacta.triangulos.size());
  for (auto const& [a, b, c] : exacta.triangulos) cierre.triangulos.push_back({puntos[a], puntos[b], puntos[c]});
  cierre.contorno.reserve(exacta.contorno.size());
  for (auto const& [a, b] : exacta.contorno) cierre.contorno.push_back({puntos[a], puntos[b]});
  return cierre;
}

}  // namespace Meseta47
