#include "classification/CVecindario.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace Meseta47 {

namespace {

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

/// Takes the least point of all, and forgets the stretch that it leaves empty.
CVecindario::CPunto const& CVecindario::CTramos::SacaMenor() {
  unsigned menor = 0;
  for (unsigned k = 1; k < cuantos; ++k) {
    if (tramos[k].p->clave < tramos[menor].p->clave) menor = k;
  }
  CPunto const& p = *tramos[menor].p++;
  if (tramos[menor].p == tramos[menor].fin) tramos[menor] = tramos[--cuantos];
  return p;
}

CVecindario::CTramos CVecindario::Tramos(CIndice i) {
  CTramos donde;
  if (radio < 0) return donde;
  const std::int64_t cx = puntos[i].X(), cy = puntos[i].Y();
  std::size_t todos = 0;
  const std::size_t primera = Banda(std::max(minY, cy - radio)), ultima = Banda(std::min(maxY, cy + radio));
  for (std::size_t b = primera; b <= ultima; ++b) {
    CPunto const *const inicio = puntos.data() + bandas[b], *const fin = puntos.data() + bandas[b + 1];
    CPunto const* const desde = std::partition_point(inicio, fin, [&](CPunto const& p) { return p.X() < cx - radio; });
    CPunto const* const hasta = std::partition_point(desde, fin, [&](CPunto const& p) { return p.X() <= cx + radio; });
    if (desde == hasta) continue;
    donde.tramos[donde.cuantos++] = {desde, hasta};
    todos += static_cast<std::size_t>(hasta - desde);
  }
  if (alturas.size() < todos) alturas.resize(todos);
  return donde;
}

bool CVecindario::EstaCerca(CPunto const& centro, CPunto const& p) const {
  const std::int64_t dx = std::int64_t{centro.X()} - p.X(), dy = std::int64_t{centro.Y()} - p.Y();
  const bool enCirculo = Cuadrado(dy) + Cuadrado(dx) <= static_cast<double>(radio) * static_cast<double>(radio);
  // All looked at: which of them it is can't be foretold, and to guess wrong costs more.
  return static_cast<int>(enCirculo) & static_cast<int>(std::abs(dy) <= radio) & static_cast<int>(p.num != 0) &
         static_cast<int>(&p != &centro);
}

std::span<std::int32_t const> CVecindario::Alturas(CIndice i) {
  const CTramos donde = Tramos(i);
  std::size_t n = 0;
  for (unsigned k = 0; k < donde.cuantos; ++k) {
    for (CPunto const* p = donde.tramos[k].p; p != donde.tramos[k].fin; ++p) {
      alturas[n] = p->z;
      n += EstaCerca(puntos[i], *p) ? 1U : 0U;
    }
  }
  return {alturas.data(), n};
}

std::span<std::int32_t const> CVecindario::AlturasEnOrden(CIndice i) {
  CTramos donde = Tramos(i);
  std::size_t n = 0;
  while (donde.cuantos != 0) {
    CPunto const& p = donde.SacaMenor();
    if (EstaCerca(puntos[i], p)) alturas[n++] = p.z;
  }
  return {alturas.data(), n};
}

}  // namespace Meseta47
