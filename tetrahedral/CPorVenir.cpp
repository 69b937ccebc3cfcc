#include "tetrahedral/CPorVenir.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <utility>

#include "platform/Vectores.h"

namespace Meseta47 {

namespace {

using CPunto = CPorVenir::CPunto;

unsigned Octante(CPunto const& p, std::array<std::int32_t, 3> const& corte) {
  return static_cast<unsigned>(p.eje[0] >= corte[0]) + 2 * static_cast<unsigned>(p.eje[1] >= corte[1]) +
         4 * static_cast<unsigned>(p.eje[2] >= corte[2]);
}

/// What a point of the box may lack to lie outside the sphere for certain; below 0 none lacks anything. The squared
/// distance to a box is rounded in the same steps as that to a point, and each step keeps the order of what it is
/// given: it is never more than that to a point of the box, rounding included. So it is with the distance to a plane.
inline double Falta(CPorVenir::CCajas const& cajas, unsigned i, CPorVenir::CBola const& b) {
  const auto hasta = [&](unsigned eje, double centro) {
    const double bajo = cajas.minimo[eje][i] - centro, alto = centro - cajas.maximo[eje][i];
    const double mayor = bajo > 0 ? bajo : 0;
    return mayor > alto ? mayor : alto;
  };
  const double dx = hasta(0, b.x), dy = hasta(1, b.y), dz = hasta(2, b.z);
  return b.margen - (dx * dx + dy * dy + dz * dz - b.radio2);
}

/// Which of the boxes with points to come the sphere may hold a point of, a bit each; of the others it holds none, for
/// certain.
inline unsigned Alcanzadas(CPorVenir::CCajas const& cajas, CPorVenir::CBola const& b) {
  double falta[8];
  for (unsigned i = 0; i < 8; ++i) falta[i] = Falta(cajas, i, b);
  return ~BajoCero(falta) & cajas.abiertas;
}

}  // namespace

/// Points of a node.
struct CPorVenir::CGrupo {
  CPunto *desde = nullptr, *hasta = nullptr;
  unsigned octante = 0;
  std::uint32_t turno = 0;  // the last of its points
  std::int32_t minimo[3] = {}, maximo[3] = {};

  void Mide() {
    for (unsigned eje = 0; eje < 3; ++eje) minimo[eje] = maximo[eje] = desde->eje[eje];
    for (CPunto const* p = desde; p != hasta; ++p) {
      turno = std::max(turno, p->turno);
      for (unsigned eje = 0; eje < 3; ++eje) {
        minimo[eje] = std::min(minimo[eje], p->eje[eje]);
        maximo[eje] = std::max(maximo[eje], p->eje[eje]);
      }
    }
  }
  [[nodiscard]] double Lado2() const {
    double mayor = 0;
    for (unsigned eje = 0; eje < 3; ++eje) mayor = std::max(mayor, double{1} * maximo[eje] - minimo[eje]);
    return mayor * mayor;
  }
  /// Whether it is not to be divided.
  [[nodiscard]] bool EsHoja() const { return static_cast<std::size_t>(hasta - desde) <= kPorHoja || Lado2() == 0; }
};

/// Gathers the points octant by octant, in place: each goes to the next free place of its own until its place holds one
/// of its own.
std::array<CPorVenir::CGrupo, 8> CPorVenir::Reparte(CGrupo const& grupo, std::array<std::int32_t, 3> const& corte) {
  std::array<CGrupo, 8> grupos;
  std::array<std::size_t, 8> cuenta{};
  for (CPunto const* p = grupo.desde; p != grupo.hasta; ++p) ++cuenta[Octante(*p, corte)];
  CPunto *libre[8], *desde = grupo.desde;
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
    if (grupos[i].desde != grupos[i].hasta) grupos[i].Mide();
  }
  return grupos;
}

void CPorVenir::Prepara(std::vector<CPunto> puntos) {
  nodos.clear();
  tablas.clear();
  nodoDeHoja.clear();
  hojas = 0;
  if (puntos.empty()) return;
  nodos.reserve(puntos.size() / 16 + 64);
  nodos.emplace_back();
  CGrupo todos{.desde = puntos.data(), .hasta = puntos.data() + puntos.size()};
  todos.Mide();
  constexpr double kParte2 = 1.0 / 64;
  mayor2 = kParte2 * todos.Lado2();
  Divide(0, todos);
  nodos.shrink_to_fit();
  tablas.shrink_to_fit();
}

void CPorVenir::Divide(std::uint32_t nodo, CGrupo const& grupo) {
  CNodo n = nodos[nodo];
  if (grupo.EsHoja()) {
    n.abiertos = static_cast<std::uint32_t>(grupo.hasta - grupo.desde);
    n.cuantos = hojas++;
    nodos[nodo] = n;
    nodoDeHoja.push_back(nodo);
    return;
  }
  // Above the least of them, or nothing would be divided.
  for (unsigned eje = 0; eje < 3; ++eje) {
    n.corte[eje] = static_cast<std::int32_t>((std::int64_t{grupo.minimo[eje]} + grupo.maximo[eje] + 1) >> 1);
  }
  std::array<CGrupo, 8> grupos = Reparte(grupo, n.corte);
  CGrupo* const primero = grupos.data();
  CGrupo* const fin =
      std::remove_if(primero, primero + grupos.size(), [](CGrupo const& g) { return g.desde == g.hasta; });
  std::stable_sort(primero, fin, [](CGrupo const& a, CGrupo const& b) { return a.turno > b.turno; });
  n.hijos = static_cast<std::uint32_t>(nodos.size());
  n.cuantos = static_cast<std::uint32_t>(fin - primero);
  n.tabla = static_cast<std::uint32_t>(tablas.size());
  CHijos& tabla = tablas.emplace_back();
  tabla.cajas.abiertas = (1U << n.cuantos) - 1;
  for (std::uint32_t i = 0; i < n.cuantos; ++i) {
    CGrupo const& g = grupos[i];
    n.cual[g.octante] = static_cast<std::uint8_t>(i);
    tabla.cajas.Pon(i, g.minimo, g.maximo);
    tabla.lado2[i] = g.EsHoja() ? -1 : g.Lado2();
  }
  nodos[nodo] = n;
  nodos.resize(nodos.size() + n.cuantos);
  for (std::uint32_t i = 0; i < n.cuantos; ++i) {
    nodos[n.hijos + i].padre = nodo;
    Divide(n.hijos + i, grupos[i]);
  }
}

std::uint32_t CPorVenir::Hoja(CCoor3D<int> const& p) const {
  const CPunto punto{{p.x, p.y, p.z}, 0};
  CNodo const* n = nodos.data();
  while (n->hijos != 0) n = &nodos[n->hijos + n->cual[Octante(punto, n->corte)]];
  return n->cuantos;
}

bool CPorVenir::Llega(std::uint32_t hoja) {
  std::uint32_t nodo = nodoDeHoja[hoja];
  if (--nodos[nodo].abiertos != 0) return false;
  for (; nodos[nodo].padre != kNinguna; nodo = nodos[nodo].padre) {
    CNodo const& padre = nodos[nodos[nodo].padre];
    unsigned& abiertas = tablas[padre.tabla].cajas.abiertas;
    abiertas &= ~(1U << (nodo - padre.hijos));
    if (abiertas != 0) break;
  }
  return true;
}

bool CPorVenir::Quedan() const {
  if (nodos.empty()) return false;
  CNodo const& raiz = nodos[0];
  return raiz.hijos != 0 ? tablas[raiz.tabla].cajas.abiertas != 0 : raiz.abiertos != 0;
}

std::uint32_t CPorVenir::UltimaAbierta(std::uint32_t nodo) const {
  while (nodos[nodo].hijos != 0) {
    nodo = nodos[nodo].hijos + static_cast<unsigned>(std::countr_zero(tablas[nodos[nodo].tabla].cajas.abiertas));
  }
  return nodos[nodo].cuantos;
}

inline std::uint32_t CPorVenir::Alcanza(CBola const& bola, double fino2) const {
  if (nodos[0].hijos == 0) return kNinguna;  // the only leaf, which has ended
  unsigned quedan[kNiveles];                 // of the boxes that it reaches, a level each, those not looked into yet
  unsigned nivel = 0;
  std::uint32_t nodo = 0;
  quedan[0] = Alcanzadas(tablas[nodos[0].tabla].cajas, bola);
  for (;;) {
    for (; quedan[nivel] == 0; --nivel) {
      if (nivel == 0) return kNinguna;
      nodo = nodos[nodo].padre;
    }
    const auto i = static_cast<unsigned>(std::countr_zero(quedan[nivel]));
    quedan[nivel] &= quedan[nivel] - 1;
    const double lado2 = tablas[nodos[nodo].tabla].lado2[i];
    nodo = nodos[nodo].hijos + i;
    if (lado2 < fino2) return nodo;
    quedan[++nivel] = Alcanzadas(tablas[nodos[nodo].tabla].cajas, bola);
  }
}

void CPorVenir::CVecindad::Pon(CPorVenir const& elArbol, std::uint32_t hoja) {
  arbol = &elArbol;
  for (auto* limite : {&celdaBaja, &cercaBaja}) std::fill(std::begin(*limite), std::end(*limite), -HUGE_VAL);
  for (auto* limite : {&celdaAlta, &cercaAlta}) std::fill(std::begin(*limite), std::end(*limite), HUGE_VAL);
  abiertas.clear();
  hechas = 0;
  ancha2 = HUGE_VAL;
  std::uint32_t nodo = arbol->nodoDeHoja[hoja];
  primeras = nullptr;
  if (nodo == 0) return;
  Acota(nodo);
  BuscaPrimera();
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
  // Twice as wide as what would fit into either: rounding is no matter.
  const auto estrecho = [](double const(&bajo)[3], double const(&alto)[3]) {
    return std::min({alto[0] - bajo[0], alto[1] - bajo[1], alto[2] - bajo[2]});
  };
  const double ancho = std::max(estrecho(celdaBaja, celdaAlta), estrecho(cercaBaja, cercaAlta));
  ancha2 = std::max(arbol->mayor2, ancho * ancho);
  Reune(0);
}

/// What is near: as far from the leaf's points as they reach.
void CPorVenir::CVecindad::Acota(std::uint32_t nodo) {
  CNodo const& padre = arbol->nodos[arbol->nodos[nodo].padre];
  CCajas const& cajas = arbol->tablas[padre.tabla].cajas;
  const std::uint32_t i = nodo - padre.hijos;
  double lado = 0;
  for (unsigned eje = 0; eje < 3; ++eje) {
    lado = std::max(lado, cajas.maximo[eje][i] - cajas.minimo[eje][i]);
  }
  for (unsigned eje = 0; eje < 3; ++eje) {
    cercaBaja[eje] = cajas.minimo[eje][i] - lado;
    cercaAlta[eje] = cajas.maximo[eje][i] + lado;
  }
}

/// The first box that is fine beside large spheres, in the order in which the tree is searched.
void CPorVenir::CVecindad::BuscaPrimera() {
  for (std::uint32_t nodo = 0;;) {
    CNodo const& n = arbol->nodos[nodo];
    CHijos const& hijos = arbol->tablas[n.tabla];
    if (hijos.cajas.abiertas == 0) return;
    const auto i = static_cast<unsigned>(std::countr_zero(hijos.cajas.abiertas));
    nodo = n.hijos + i;
    if (hijos.lado2[i] >= arbol->mayor2) continue;
    primeras = &hijos.cajas;
    primera = i;
    hojaPrimera = arbol->UltimaAbierta(nodo);
    return;
  }
}

void CPorVenir::CVecindad::Reune(std::uint32_t nodo) {
  CNodo const& n = arbol->nodos[nodo];
  CHijos const& hijos = arbol->tablas[n.tabla];
  for (unsigned quedan = hijos.cajas.abiertas; quedan != 0; quedan &= quedan - 1) {
    const auto i = static_cast<unsigned>(std::countr_zero(quedan));
    CCaja caja;
    bool cerca = true;
    for (unsigned eje = 0; eje < 3; ++eje) {
      const double minimo = hijos.cajas.minimo[eje][i], maximo = hijos.cajas.maximo[eje][i];
      caja.minimo[eje] = static_cast<std::int32_t>(minimo);
      caja.maximo[eje] = static_cast<std::int32_t>(maximo);
      cerca = cerca && maximo >= cercaBaja[eje] && minimo <= cercaAlta[eje];
      caja.tras |= static_cast<unsigned>(maximo <= celdaBaja[eje]) << eje;
      caja.tras |= static_cast<unsigned>(minimo >= celdaAlta[eje]) << (eje + 3);
    }
    if (!cerca) continue;
    CNodo const& hijo = arbol->nodos[n.hijos + i];
    if (hijo.hijos != 0) {
      Reune(n.hijos + i);
    } else {
      caja.hoja = hijo.cuantos;
      abiertas.push_back(caja);
    }
  }
}

/// Those that a sphere can reach which crosses these limits alone.
std::vector<CPorVenir::CVecindad::CTanda> const& CPorVenir::CVecindad::Tras(unsigned cruza) {
  std::vector<CTanda>& tandas = porCruce[cruza];
  if ((hechas >> cruza & 1U) != 0) return tandas;
  hechas |= std::uint64_t{1} << cruza;
  tandas.clear();
  unsigned i = 8;
  for (CCaja const& caja : abiertas) {
    if ((caja.tras & ~cruza) != 0) continue;
    if (i == 8) {
      tandas.emplace_back();
      i = 0;
    }
    tandas.back().cajas.Pon(i, caja.minimo, caja.maximo);
    tandas.back().cajas.abiertas |= 1U << i;
    tandas.back().hojas[i++] = caja.hoja;
  }
  return tandas;
}

/// Whether the sphere keeps within six planes, for certain: the nearest of them tells, as rounding keeps the order.
bool CPorVenir::CVecindad::Cabe(CBola const& b, double const (&bajo)[3], double const (&alto)[3]) {
  const double c[3] = {b.x, b.y, b.z};
  double menor = HUGE_VAL;
  for (unsigned eje = 0; eje < 3; ++eje) menor = std::min(menor, std::min(c[eje] - bajo[eje], alto[eje] - c[eje]));
  return menor > 0 && menor * menor - b.radio2 > b.margen;
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

/// A search of the tree. Who reaches a box reaches those around it, so that for a large sphere it would end at the
/// first.
inline std::uint32_t CPorVenir::CVecindad::AlcanzaLejos(CBola const& bola) const {
  const bool grande = bola.radio2 >= arbol->mayor2;
  if (grande && primeras != nullptr && !(Falta(*primeras, primera, bola) < 0)) return hojaPrimera;
  const std::uint32_t nodo = arbol->Alcanza(bola, std::min(bola.radio2, arbol->mayor2));
  return nodo != kNinguna ? arbol->UltimaAbierta(nodo) : kNinguna;
}

inline std::uint32_t CPorVenir::CVecindad::AlcanzaDe(CBola const& bola) {
  if (bola.radio2 >= ancha2) return AlcanzaLejos(bola);
  if (Cabe(bola, celdaBaja, celdaAlta)) return kNinguna;  // within the cell, all points of which have come
  if (!Cabe(bola, cercaBaja, cercaAlta)) return AlcanzaLejos(bola);
  for (CTanda const& tanda : Tras(Cruza(bola, celdaBaja, celdaAlta))) {
    const unsigned alcanzadas = Alcanzadas(tanda.cajas, bola);
    if (alcanzadas != 0) return tanda.hojas[std::countr_zero(alcanzadas)];
  }
  return kNinguna;
}

URDIMBRE_DE_UNA_PIEZA std::uint32_t CPorVenir::CVecindad::AlcanzaEstrecho(CBola const& bola) { return AlcanzaDe(bola); }
URDIMBRE_ANCHO std::uint32_t CPorVenir::CVecindad::AlcanzaAncho(CBola const& bola) { return AlcanzaDe(bola); }

std::uint32_t CPorVenir::CVecindad::Alcanza(CBola const& bola) {
  static const bool ancho = HayVectoresAnchos();
  return ancho ? AlcanzaAncho(bola) : AlcanzaEstrecho(bola);
}

}  // namespace Meseta47
