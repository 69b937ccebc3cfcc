#include "model/terrain/CSetPuntosMdt.h"

#include <algorithm>
#include <utility>

#include "model/geometry/OrdenDePuntos.h"
#include "model/threads/Reparto.h"

namespace Meseta47 {

namespace {

constexpr std::size_t kTanda = 1 << 14;  // points that a thread takes at a time

constexpr std::size_t kPocos = 1 << 12;  // the digits of fewer take longer to count than they to sort

bool VaAntes(CPuntoTIN const& a, CPuntoTIN const& b) { return (a < b) != 0; }

/// The points of a set where they stand, in ascending order.
VectorCrudo<CClavePunto> EnOrden(CSetPuntosMdt const& puntos) {
  CMaximas<int> caja;
  for (CPuntoTIN const& p : puntos) caja.Nuevo(p);
  VectorCrudo<CClavePunto> orden(puntos.size());
  Reparte(puntos.size(), kTanda, [&](std::size_t desde, std::size_t hasta) {
    for (std::size_t i = desde; i < hasta; ++i) orden[i] = CClavePunto(puntos[static_cast<unsigned>(i)], caja);
  });
  OrdenaPorPosicion(orden, caja);
  return orden;
}

}  // namespace

CSetPuntosMdt::CSetPuntosMdt(CSetPuntosMdt const& o) : modificado(o.modificado), reserva(o.reserva), rica(o.rica) {
  puntos.reserve(o.size());
  puntos.insert(puntos.end(), o.puntos.begin(), o.puntos.end());
  for (Bloque const& anexo : o.anexos) puntos.insert(puntos.end(), anexo.begin(), anexo.end());
}

unsigned CSetPuntosMdt::Indice(CPuntoTIN const* punto) const {
  constexpr std::less<CPuntoTIN const*> antes;
  const auto esDe = [&](Bloque const& b) { return !antes(punto, b.data()) && antes(punto, b.data() + b.size()); };
  if (esDe(puntos)) return static_cast<unsigned>(punto - puntos.data());
  for (std::size_t i = 0; i < anexos.size(); ++i) {
    if (esDe(anexos[i])) {
      return static_cast<unsigned>(puntos.size() + i * kAnexo + static_cast<std::size_t>(punto - anexos[i].data()));
    }
  }
  return kSinIndice;
}

void CSetPuntosMdt::push_back(CPuntoTIN const& punto, bool orden) {
  if (anexos.empty() && (!orden || puntos.size() < puntos.capacity())) {
    puntos.push_back(punto);
    return;
  }
  if (anexos.empty() || anexos.back().size() == kAnexo) {
    Bloque nuevo;
    nuevo.reserve(kAnexo);
    anexos.push_back(std::move(nuevo));
  }
  anexos.back().push_back(punto);
}

void CSetPuntosMdt::resize(unsigned long long cuantos) {
  if (!anexos.empty()) *this = CSetPuntosMdt(std::as_const(*this));
  const std::size_t habia = puntos.size();
  puntos.resize(cuantos);
  for (std::size_t i = habia; i < puntos.size(); ++i) std::construct_at(&puntos[i]);
}

void CSetPuntosMdt::Genera(std::size_t cuantos, std::function<CPuntoTIN(std::size_t)> const& hace) {
  puntos.clear();
  anexos.clear();
  puntos.resize(cuantos);
  Reparte(cuantos, kTanda, [&](std::size_t desde, std::size_t hasta) {
    for (std::size_t i = desde; i < hasta; ++i) std::construct_at(&puntos[i], hace(i));
  });
}

void CSetPuntosMdt::sort(short int, bool) {
  if (std::is_sorted(begin(), end(), VaAntes)) return;
  if (size() < kPocos) {
    std::stable_sort(begin(), end(), VaAntes);
    return;
  }
  const VectorCrudo<CClavePunto> orden = EnOrden(*this);
  CSetPuntosMdt ordenados(0, rica);
  ordenados.puntos.reserve(std::max(puntos.capacity(), size()));
  ordenados.Genera(orden.size(), [&orden](std::size_t i) {
    AnticipaPunto(orden, i);
    return CPuntoTIN(static_cast<CPuntoTIN const&>(*orden[i].punto));
  });
  puntos.swap(ordenados.puntos);
  anexos.clear();
}

void CSetPuntosMdt::OrdenaEnSitio() {
  if (size() < kPocos || !anexos.empty() || std::is_sorted(begin(), end(), VaAntes)) return sort(0, true);
  VectorCrudo<CClavePunto> orden = EnOrden(*this);
  CPuntoTIN* const base = puntos.data();
  const auto origen = [&](std::size_t i) {
    return static_cast<std::size_t>(static_cast<CPuntoTIN const*>(orden[i].punto) - base);
  };
  const auto pon = [&](std::size_t i, CPuntoTIN const& punto) {
    base[i] = punto;
    orden[i].punto = &base[i];  // it stands where it belongs
  };
  for (std::size_t i = 0; i < puntos.size(); ++i) {
    if (origen(i) == i) continue;
    // A chain of places, each of whose points comes from the next one; the last takes the point of the first.
    const CPuntoTIN primero(base[i]);
    std::size_t lugar = i;
    for (std::size_t de = origen(i); de != i; de = origen(lugar)) {
      pon(lugar, base[de]);
      lugar = de;
    }
    pon(lugar, primero);
  }
}

}  // namespace Meseta47
