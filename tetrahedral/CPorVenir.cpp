#include "tetrahedral/CPorVenir.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace Meseta47 {

namespace {

using CPunto = CPorVenir::CPunto;

unsigned Octante(CPunto const& p, std::array<std::int32_t, 3> const& corte) {
  return static_cast<unsigned>(p.eje[0] >= corte[0]) + 2 * static_cast<unsigned>(p.eje[1] >= corte[1]) +
         4 * static_cast<unsigned>(p.eje[2] >= corte[2]);
}

/// Whether the sphere holds no point of the box, for certain. The squared distance to the box is rounded in the same
/// steps as that to a point, and each step keeps the order of what it is given: it is never more than that to a point
/// of the box, rounding included. So it is with the distance to a plane.
bool QuedaFuera(CPorVenir::CBola const& b, double const (&minimo)[3], double const (&maximo)[3]) {
  const double c[3] = {b.x, b.y, b.z};
  double d[3];
  for (unsigned eje = 0; eje < 3; ++eje) {
    const double bajo = minimo[eje] - c[eje], alto = c[eje] - maximo[eje];
    const double mayor = bajo > alto ? bajo : alto;
    d[eje] = mayor > 0 ? mayor : 0;
  }
  return d[0] * d[0] + d[1] * d[1] + d[2] * d[2] - b.radio2 > b.margen;
}

struct CGrupo {
  CPunto *desde = nullptr, *hasta = nullptr;
  std::uint32_t turno = 0;  // the last of its points
  unsigned octante = 0;
};

/// Gathers the points octant by octant, in place: each goes to the next free place of its own until its place holds one
/// of its own.
std::array<CGrupo, 8> Reparte(CPunto* desde, CPunto* hasta, std::array<std::int32_t, 3> const& corte) {
  std::array<CGrupo, 8> grupos;
  std::array<std::size_t, 8> cuenta{};
  for (CPunto const* p = desde; p != hasta; ++p) {
    const unsigned octante = Octante(*p, corte);
    ++cuenta[octante];
    grupos[octante].turno = std::max(grupos[octante].turno, p->turno);
  }
  CPunto* libre[8];
  for (unsigned i = 0; i < 8; ++i) {
    grupos[i].octante = i;
    grupos[i].desde = libre[i] = desde;
    desde += cuenta[i];
    grupos[i].hasta = desde;
  }
  for (unsigned i = 0; i < 8; ++i) {
    while (libre[i] != grupos[i].hasta) {
      const unsigned octante = Octante(*libre[i], corte);
      if (octante == i) {
        ++libre[i];
      } else {
        std::swap(*libre[i], *libre[octante]++);
      }
    }
  }
  return grupos;
}

}  // namespace

void CPorVenir::Prepara(std::vector<CPunto> puntos) {
  nodos.clear();
  nodoDeHoja.clear();
  hojas = 0;
  if (puntos.empty()) return;
  nodos.reserve(puntos.size() / 16 + 64);
  nodos.emplace_back();
  Divide(0, puntos.data(), puntos.data() + puntos.size());
  nodos.shrink_to_fit();
}

void CPorVenir::Divide(std::uint32_t nodo, CPunto* desde, CPunto* hasta) {
  CNodo n = nodos[nodo];
  bool junto = true;
  for (unsigned eje = 0; eje < 3; ++eje) {
    std::int32_t menor = desde->eje[eje], mayor = menor;
    for (CPunto const* p = desde; p != hasta; ++p) {
      menor = std::min(menor, p->eje[eje]);
      mayor = std::max(mayor, p->eje[eje]);
    }
    n.minimo[eje] = menor;
    n.maximo[eje] = mayor;
    // Above the least of them, or nothing would be divided.
    n.corte[eje] = static_cast<std::int32_t>((std::int64_t{menor} + mayor + 1) >> 1);
    junto = junto && menor == mayor;
    const double lado = double{1} * mayor - menor;
    n.lado2 = std::max(n.lado2, lado * lado);
  }
  const auto cuantos = static_cast<std::size_t>(hasta - desde);
  if (junto || cuantos <= kPorHoja) {
    n.abiertos = static_cast<std::uint32_t>(cuantos);
    n.cuantos = hojas++;
    nodos[nodo] = n;
    nodoDeHoja.push_back(nodo);
    return;
  }
  std::array<CGrupo, 8> grupos = Reparte(desde, hasta, n.corte);
  auto* fin = std::remove_if(grupos.begin(), grupos.end(), [](CGrupo const& g) { return g.desde == g.hasta; });
  std::stable_sort(grupos.begin(), fin, [](CGrupo const& a, CGrupo const& b) { return a.turno > b.turno; });
  n.hijos = static_cast<std::uint32_t>(nodos.size());
  n.cuantos = n.abiertos = static_cast<std::uint32_t>(fin - grupos.begin());
  for (std::uint32_t i = 0; i < n.cuantos; ++i) n.cual[grupos[i].octante] = static_cast<std::uint8_t>(i);
  nodos[nodo] = n;
  nodos.resize(nodos.size() + n.cuantos);
  for (std::uint32_t i = 0; i < n.cuantos; ++i) {
    nodos[n.hijos + i].padre = nodo;
    Divide(n.hijos + i, grupos[i].desde, grupos[i].hasta);
  }
}

std::uint32_t CPorVenir::Hoja(CCoor3D<int> const& p) const {
  const CPunto punto{{p.x, p.y, p.z}, 0};
  CNodo const* n = nodos.data();
  while (n->hijos != 0) n = &nodos[n->hijos + n->cual[Octante(punto, n->corte)]];
  return n->cuantos;
}

bool CPorVenir::Llega(std::uint32_t hoja) {
  CNodo* n = &nodos[nodoDeHoja[hoja]];
  if (--n->abiertos != 0) return false;
  while (n->padre != kNinguna) {
    n = &nodos[n->padre];
    if (--n->abiertos != 0) break;
  }
  return true;
}

std::uint32_t CPorVenir::UltimaAbierta(std::uint32_t nodo) const {
  while (nodos[nodo].hijos != 0) {
    nodo = nodos[nodo].hijos;
    while (nodos[nodo].abiertos == 0) ++nodo;
  }
  return nodos[nodo].cuantos;
}

bool CPorVenir::Toca(CNodo const& nodo, CBola const& bola) const {
  if (nodo.abiertos == 0) return false;
  double bajo[3], alto[3];
  for (unsigned eje = 0; eje < 3; ++eje) {
    bajo[eje] = nodo.minimo[eje];
    alto[eje] = nodo.maximo[eje];
  }
  return !QuedaFuera(bola, bajo, alto);
}

/// A large sphere grazes many small boxes: from a certain size on what it reaches is taken for reached by its points.
bool CPorVenir::EsFino(CNodo const& nodo, CBola const& bola) const {
  constexpr double kParte2 = 1.0 / 64;  // a box of an eighth of all is small enough beside any sphere
  return nodo.hijos == 0 || nodo.lado2 < std::min(bola.radio2, kParte2 * nodos[0].lado2);
}

std::uint32_t CPorVenir::Alcanza(std::uint32_t nodo, CBola const& bola) const {
  CNodo const& n = nodos[nodo];
  if (!Toca(n, bola)) return kNinguna;
  if (EsFino(n, bola)) return nodo;
  for (std::uint32_t i = 0; i < n.cuantos; ++i) {
    const std::uint32_t hallado = Alcanza(n.hijos + i, bola);
    if (hallado != kNinguna) return hallado;
  }
  return kNinguna;
}

void CPorVenir::CVecindad::Pon(CPorVenir const& elArbol, std::uint32_t hoja) {
  arbol = &elArbol;
  std::fill(std::begin(celdaBaja), std::end(celdaBaja), -HUGE_VAL);
  std::fill(std::begin(celdaAlta), std::end(celdaAlta), HUGE_VAL);
  std::uint32_t nodo = arbol->nodoDeHoja[hoja];
  CNodo const& suyo = arbol->nodos[nodo];
  double lado = 0;
  for (unsigned eje = 0; eje < 3; ++eje) lado = std::max(lado, double{1} * suyo.maximo[eje] - suyo.minimo[eje]);
  for (unsigned eje = 0; eje < 3; ++eje) {
    cercaBaja[eje] = suyo.minimo[eje] - lado;
    cercaAlta[eje] = suyo.maximo[eje] + lado;
  }
  for (; arbol->nodos[nodo].padre != kNinguna; nodo = arbol->nodos[nodo].padre) {
    CNodo const& padre = arbol->nodos[arbol->nodos[nodo].padre];
    const auto octante = static_cast<unsigned>(
        std::find_if(padre.cual.begin(), padre.cual.end(), [&](std::uint8_t c) { return padre.hijos + c == nodo; }) -
        padre.cual.begin());
    for (unsigned eje = 0; eje < 3; ++eje) {
      const double corte = padre.corte[eje];
      if ((octante >> eje & 1U) != 0) {
        celdaBaja[eje] = std::max(celdaBaja[eje], corte - 1);
      } else {
        celdaAlta[eje] = std::min(celdaAlta[eje], corte);
      }
    }
  }
  abiertas.clear();
  Reune(0);
}

void CPorVenir::CVecindad::Reune(std::uint32_t nodo) {
  CNodo const& n = arbol->nodos[nodo];
  if (n.abiertos == 0) return;
  CCaja caja;
  caja.tras = 0;
  for (unsigned eje = 0; eje < 3; ++eje) {
    caja.minimo[eje] = n.minimo[eje];
    caja.maximo[eje] = n.maximo[eje];
    if (caja.maximo[eje] < cercaBaja[eje] || caja.minimo[eje] > cercaAlta[eje]) return;
    caja.tras |= static_cast<unsigned>(caja.maximo[eje] <= celdaBaja[eje]) << eje;
    caja.tras |= static_cast<unsigned>(caja.minimo[eje] >= celdaAlta[eje]) << (eje + 3);
  }
  if (n.hijos == 0) {
    caja.hoja = n.cuantos;
    abiertas.push_back(caja);
  }
  for (std::uint32_t i = 0; n.hijos != 0 && i < n.cuantos; ++i) Reune(n.hijos + i);
}

/// Which of six planes the sphere may reach: those of the lower limits, then of the upper ones.
unsigned CPorVenir::CVecindad::Cruza(CBola const& b, double const (&bajo)[3], double const (&alto)[3]) {
  const double c[3] = {b.x, b.y, b.z};
  unsigned cruza = 0;
  for (unsigned eje = 0; eje < 3; ++eje) {
    const double a = c[eje] - bajo[eje], d = alto[eje] - c[eje];
    const unsigned libreA = static_cast<unsigned>(a > 0) & static_cast<unsigned>(a * a - b.radio2 > b.margen);
    const unsigned libreD = static_cast<unsigned>(d > 0) & static_cast<unsigned>(d * d - b.radio2 > b.margen);
    cruza |= (libreA ^ 1U) << eje | (libreD ^ 1U) << (eje + 3);
  }
  return cruza;
}

std::uint32_t CPorVenir::CVecindad::Alcanza(CBola const& bola) {
  const unsigned cruza = Cruza(bola, celdaBaja, celdaAlta);
  if (cruza == 0) return kNinguna;  // within the cell, all points of which have come
  if (Cruza(bola, cercaBaja, cercaAlta) != 0) {
    CNodo const& antes = arbol->nodos[hallado];
    if (!arbol->EsFino(antes, bola) || !arbol->Toca(antes, bola)) {
      const std::uint32_t nodo = arbol->Alcanza(0, bola);
      if (nodo == kNinguna) return kNinguna;
      hallado = nodo;
    }
    return arbol->UltimaAbierta(hallado);
  }
  for (CCaja const& caja : abiertas) {
    if ((caja.tras & ~cruza) == 0 && !QuedaFuera(bola, caja.minimo, caja.maximo)) return caja.hoja;
  }
  return kNinguna;
}

}  // namespace Meseta47
