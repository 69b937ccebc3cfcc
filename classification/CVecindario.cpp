#include "classification/CVecindario.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <utility>

namespace Meseta47 {

namespace {

/// A stretch of a band.
struct CTramo {
  CVecindario::CPunto const *p, *fin;
};

/// Takes the least point of up to three stretches, none of them empty, and forgets the stretch that it leaves so.
CVecindario::CPunto const& SacaMenor(std::array<CTramo, 3>& tramos, unsigned& cuantos) {
  unsigned menor = 0;
  for (unsigned k = 1; k < cuantos; ++k) {
    if (tramos[k].p->clave < tramos[menor].p->clave) menor = k;
  }
  CVecindario::CPunto const& p = *tramos[menor].p++;
  if (tramos[menor].p == tramos[menor].fin) tramos[menor] = tramos[--cuantos];
  return p;
}

double Cuadrado(std::int64_t diferencia) {
  const double d = static_cast<float>(diferencia);
  return d * d;
}

}  // namespace

CVecindario::CVecindario(CMaximas<int> const& caja, std::size_t cuantos, int elRadio)
    : radio(elRadio), minY(caja.Minimo.y), maxY(caja.Maximo.y) {
  // As many bands as a square cloud has points on a side are enough, however small the radius.
  const auto bandasComoMucho = static_cast<std::int64_t>(std::sqrt(static_cast<double>(cuantos))) + 1;
  altoDeBanda = std::max({std::int64_t{1}, radio, (maxY - minY) / bandasComoMucho + 1});
  bandas.resize(Banda(maxY) + 2);
}

void CVecindario::Reserva() {
  std::partial_sum(bandas.begin(), bandas.end(), bandas.begin());
  cursores.assign(bandas.begin(), bandas.end() - 1);
  puntos.resize(bandas.back());
}

void CVecindario::Ordena(std::size_t banda) {
  std::sort(puntos.begin() + bandas[banda], puntos.begin() + bandas[banda + 1],
            [](CPunto const& a, CPunto const& b) { return a.clave < b.clave; });
}

std::vector<std::int32_t> const& CVecindario::Alturas(CIndice i) {
  alturas.clear();
  const std::int64_t cx = puntos[i].X(), cy = puntos[i].Y();
  std::array<CTramo, 3> tramos{};
  unsigned cuantos = 0;
  const std::size_t primera = Banda(std::max(minY, cy - radio)), ultima = Banda(std::min(maxY, cy + radio));
  for (std::size_t b = primera; b <= ultima && radio >= 0; ++b) {
    CPunto const *const inicio = puntos.data() + bandas[b], *const fin = puntos.data() + bandas[b + 1];
    CPunto const* const desde = std::partition_point(inicio, fin, [&](CPunto const& p) { return p.X() < cx - radio; });
    CPunto const* const hasta = std::partition_point(desde, fin, [&](CPunto const& p) { return p.X() <= cx + radio; });
    if (desde != hasta) tramos[cuantos++] = {desde, hasta};
  }
  const double radio2 = static_cast<double>(radio) * static_cast<double>(radio);
  while (cuantos != 0) {
    CPunto const& p = SacaMenor(tramos, cuantos);
    if (p.num == 0 || &p == &puntos[i] || std::abs(cy - p.Y()) > radio) continue;
    if (Cuadrado(cy - p.Y()) + Cuadrado(cx - p.X()) <= radio2) alturas.push_back(p.z);
  }
  return alturas;
}

}  // namespace Meseta47
