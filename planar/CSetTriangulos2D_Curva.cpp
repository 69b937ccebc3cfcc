// Contouring: each triangle of a closed set is cut with the levels, and what it gives is a heap of two-point segments.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

#include "model/drawing/CDibujo.h"
#include "model/geometry/COrdenaPunto.h"
#include "planar/CBordeDelMarco.h"
#include "planar/CSegmentos.h"
#include "planar/CSetTriangulos2D_Consume.h"
#include "planar/CorteDeLado.h"

namespace Meseta47 {

namespace {

void Anade(CDibujo<int>& curvas, CCoor3D<int> const& a, CCoor3D<int> const& b) {
  CLinea<int> linea(L"nuevo");
  linea.Reserva(2);
  linea << a;
  linea << b;
  curvas.Inserta(std::move(linea));
}

void Anade(CSegmentos& curvas, CCoor3D<int> const& a, CCoor3D<int> const& b) { curvas.Anade(a, b); }

/// Cuts the triangle where its level sides are no contours; false where they are.
bool CortaOrilla(CDibujo<int>&, CCoor3D<int> const&, CCoor3D<int> const&, CCoor3D<int> const&, int) { return false; }
bool CortaOrilla(CSegmentos& curvas, CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c,
                 int equidistancia) {
  if (curvas.Llanos() != CLlanos::ORILLA) return false;
  curvas.Corta(a, b, c, equidistancia);
  return true;
}

/// By height, those of one height in a row; of equal ones the first cut comes first.
bool VaAntes(CCoor3D<int> const& a, CCoor3D<int> const& b) {
  static const COrdenaPunto<int> orden(3);
  if (orden(a, b) != 0) return true;
  return orden(b, a) == 0 && a.num < b.num;
}

}  // namespace

void CSetTriangulos2D::Curva(CDibujo<int>& curvas, int equidistancia, double lado2) {
  CortaTodo(curvas, equidistancia, lado2, nullptr);
}

void CSetTriangulos2D::Curva(CSegmentos& curvas, int equidistancia, double lado2, CBordeDelMarco* borde) {
  CortaTodo(curvas, equidistancia, lado2, borde);
}

template <class Destino>
void CSetTriangulos2D::CortaTodo(Destino& curvas, int equidistancia, double lado2, CBordeDelMarco* borde) {
  Consume([&](CTriangulo2D const& t) {
    if (borde != nullptr && CBordeDelMarco::Toca(t)) borde->Anota(t);
    t.Corta(curvas, equidistancia, lado2);
  });
}

void CTriangulo2D::Curva(CDibujo<int>& curvas, int equidistancia, double lado2) const {
  Corta(curvas, equidistancia, lado2);
}

void CTriangulo2D::Curva(CSegmentos& curvas, int equidistancia, double lado2) const {
  Corta(curvas, equidistancia, lado2);
}

template <class Destino>
void CTriangulo2D::Corta(Destino& curvas, int equidistancia, double lado2) const {
  if (equidistancia <= 0 || p1 == nullptr || p2 == nullptr || p3 == nullptr) return;
  if (p1->num < 0 || p2->num < 0 || p3->num < 0) return;
  if (PrimerNivel(GetMinZ(), equidistancia) > GetMaxZ()) return;
  if (p1->Distancia2(*p2, 0) > lado2 || p2->Distancia2(*p3, 0) > lado2 || p3->Distancia2(*p1, 0) > lado2) return;

  // Contours would break at a triangle that lies on a line, were it left out.
  if (CortaOrilla(curvas, *p1, *p2, *p3, equidistancia) || !EsValido()) return;
  std::vector<CCoor3D<int>> puntosCorte;
  for (short lado = 0; lado < 3; ++lado) CortaLado(puntosCorte, lado, equidistancia);
  std::sort(puntosCorte.begin(), puntosCorte.end(), VaAntes);

  // A side that runs along a level is a piece of contour as it stands; its ends are then spent as cuts.
  const std::array<CCoor3D<int> const*, 3> v{p1, p2, p3};
  std::array<bool, 3> libre{true, true, true};
  for (auto const& [i, j] : {std::pair<std::size_t, std::size_t>{0, 1}, {0, 2}, {1, 2}}) {
    if (v[i]->z != v[j]->z || v[i]->z % equidistancia != 0) continue;
    Anade(curvas, *v[i], *v[j]);
    libre[i] = libre[j] = false;
  }
  if (!libre[0] && !libre[1] && !libre[2]) return;

  for (std::size_t i = 0; i < puntosCorte.size(); ++i) {
    CCoor3D<int>& p = puntosCorte[i];
    const bool gastado = (!libre[0] && p == *v[0]) || (!libre[1] && p == *v[1]) || (!libre[2] && p == *v[2]);
    if (gastado || (i > 0 && p == puntosCorte[i - 1])) p.SetBorrado(true);
  }
  for (std::size_t i = 0; i < puntosCorte.size(); ++i) {
    if (puntosCorte[i].EsBorrado()) continue;
    for (std::size_t j = i + 1; j < puntosCorte.size() && puntosCorte[j].z == puntosCorte[i].z; ++j) {
      if (puntosCorte[j].EsBorrado()) continue;
      Anade(curvas, puntosCorte[i], puntosCorte[j]);
      puntosCorte[j].SetBorrado(true);
      break;
    }
  }
}

void CTriangulo2D::CortaLado(std::vector<CCoor3D<int>>& puntosCorte, short lado, int equidistancia) const {
  if (equidistancia <= 0 || !EsValido()) return;
  CCoor3D<int> const& a = lado == 0 ? *p1 : (lado == 1 ? *p2 : *p3);
  CCoor3D<int> const& b = lado == 0 ? *p2 : (lado == 1 ? *p3 : *p1);
  const auto anade = [&puntosCorte](CCoor3D<int> p) {
    p.num = static_cast<int>(puntosCorte.size()) + 1;
    puntosCorte.push_back(p);
  };
  CCoor3D<int> const& bajo = b.z < a.z ? b : a;
  CCoor3D<int> const& alto = b.z < a.z ? a : b;
  std::int64_t nivel = PrimerNivel(bajo.z, equidistancia);
  if (nivel == bajo.z && alto.z == bajo.z) {
    anade(a);
    anade(b);
    return;
  }
  for (; nivel <= alto.z; nivel += equidistancia) anade(CorteDeLado(bajo, alto, nivel));
}

}  // namespace Meseta47
