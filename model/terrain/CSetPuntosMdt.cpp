#include "model/terrain/CSetPuntosMdt.h"

#include <algorithm>

#include "model/geometry/OrdenDePuntos.h"
#include "model/threads/Reparto.h"

namespace Meseta47 {

namespace {

constexpr std::size_t kTanda = 1 << 14;  // points that a thread takes at a time

bool VaAntes(CPuntoTIN const& a, CPuntoTIN const& b) { return (a < b) != 0; }

}  // namespace

void CSetPuntosMdt::resize(unsigned long long cuantos) {
  const std::size_t habia = puntos.size();
  puntos.resize(cuantos);
  for (std::size_t i = habia; i < puntos.size(); ++i) std::construct_at(&puntos[i]);
}

void CSetPuntosMdt::Genera(std::size_t cuantos, std::function<CPuntoTIN(std::size_t)> const& hace) {
  puntos.clear();
  puntos.resize(cuantos);
  Reparte(cuantos, kTanda, [&](std::size_t desde, std::size_t hasta) {
    for (std::size_t i = desde; i < hasta; ++i) std::construct_at(&puntos[i], hace(i));
  });
}

void CSetPuntosMdt::sort(short int, bool) {
  constexpr std::size_t kPocos = 1 << 12;  // the digits of fewer take longer to count than they to sort
  if (std::is_sorted(puntos.begin(), puntos.end(), VaAntes)) return;
  if (puntos.size() < kPocos) {
    std::stable_sort(puntos.begin(), puntos.end(), VaAntes);
    return;
  }
  CMaximas<int> caja;
  for (CPuntoTIN const& p : puntos) caja.Nuevo(p);
  VectorCrudo<CClavePunto> orden(puntos.size());
  Reparte(puntos.size(), kTanda, [&](std::size_t desde, std::size_t hasta) {
    for (std::size_t i = desde; i < hasta; ++i) orden[i] = CClavePunto(puntos[i], caja);
  });
  OrdenaPorPosicion(orden, caja);
  CSetPuntosMdt ordenados(0, rica);
  ordenados.puntos.reserve(puntos.capacity());
  ordenados.Genera(orden.size(), [&orden](std::size_t i) {
    AnticipaPunto(orden, i);
    return CPuntoTIN(static_cast<CPuntoTIN const&>(*orden[i].punto));
  });
  puntos.swap(ordenados.puntos);
}

}  // namespace Meseta47
