// One point into the mesh: its cavity gives way to a fan of new triangles, linked by construction.
#include <algorithm>
#include <bit>
#include <numeric>

#include "planar/CSetTriangulos2D.h"

namespace Meseta47 {

namespace {

/// Up to here, comparing all with all beats sorting and searching: no jump depends on the data. Boundaries have 6 sides
/// as a rule.
constexpr std::size_t kPocos = 16;

}  // namespace

int CSetTriangulos2D::InsertaPunto(CCoor3D<int>* p, CSetTriangulos2D& cerca, CTriangulo2D* desde, int tolerancia,
                                   unsigned& aceptados, unsigned& rechazados, CBalance& balance) {
  const int respuesta = BuscaCavidad(p, aceptados, rechazados, desde, tolerancia);
  if (respuesta != 0) return respuesta;
  balance.condenados += borrador->cavidad.size();
  if (RecogeContorno()) {
    SustituyeCavidad(p, cerca);
    balance.creados += borrador->contorno.size();
  } else {
    SustituyePorBusqueda(p, balance);
  }
  return 0;
}

/// Lists the sides with no condemned neighbour. True when they are one polygon without a vertex inside it, as a cavity
/// that its point sees whole has: n triangles joined by n - 1 sides leave n + 2, no two of which begin in one vertex.
/// Only then, and when no open triangle lies unlinked across a side, does the boundary alone tell all that a search
/// through the open list would find.
bool CSetTriangulos2D::RecogeContorno() {
  auto& contorno = borrador->contorno;
  contorno.clear();
  bool enlazado = true;
  for (CTriangulo2D* t : borrador->cavidad) {
    const auto recoge = [&](CTriangulo2D* fuera, CCoor3D<int>* a, CCoor3D<int>* b) {
      if (fuera != nullptr && fuera->Borrado()) return;
      CTriangulo2D** enlace = fuera != nullptr ? fuera->EnlaceA(t) : nullptr;
      if (fuera == nullptr && EstaAbierto(b->num, a->num)) enlazado = false;
      contorno.push_back({CLado2D(a, b).Clave(), a, b, fuera, enlace, nullptr});
    };
    recoge(t->vecino12, t->p1, t->p2);
    recoge(t->vecino23, t->p2, t->p3);
    recoge(t->vecino31, t->p3, t->p1);
  }
  return enlazado && contorno.size() == borrador->cavidad.size() + 2 && EncadenaContorno();
}

/// Whether an open triangle has the side from number `a` to number `b`.
bool CSetTriangulos2D::EstaAbierto(int a, int b) const {
  return std::any_of(abiertos.begin(), abiertos.end(),
                     [=](CTriangulo2D const* t) { return t->ContieneLado(a, b) != 0; });
}

/// Finds for each side the one that begins where it ends. False when that is not one to one.
bool CSetTriangulos2D::EncadenaContorno() {
  auto const& contorno = borrador->contorno;
  auto& despues = borrador->despues;
  const std::size_t n = contorno.size();
  despues.resize(n);
  if (n <= kPocos) {
    std::uint32_t hallados = 0, repetidos = 0;
    for (std::size_t i = 0; i < n; ++i) {
      std::uint32_t iguales = 0;
      for (std::size_t j = 0; j < n; ++j) iguales |= static_cast<std::uint32_t>(contorno[j].a == contorno[i].b) << j;
      despues[i] = static_cast<unsigned>(std::countr_zero(iguales));
      hallados |= iguales;
      repetidos |= iguales & (iguales - 1);
    }
    return repetidos == 0 && hallados == (std::uint32_t{1} << n) - 1;
  }
  auto& principios = borrador->principios;
  principios.clear();
  for (std::size_t i = 0; i < n; ++i) principios.emplace_back(contorno[i].a->num, static_cast<unsigned>(i));
  std::sort(principios.begin(), principios.end());
  const auto igual = [](auto const& u, auto const& v) { return u.first == v.first; };
  if (std::adjacent_find(principios.begin(), principios.end(), igual) != principios.end()) return false;
  for (std::size_t i = 0; i < n; ++i) {
    const auto hallado = std::lower_bound(principios.begin(), principios.end(), std::pair(contorno[i].b->num, 0U));
    if (hallado == principios.end() || hallado->first != contorno[i].b->num) return false;
    despues[i] = hallado->second;
  }
  return true;
}

/// The order of the sides fixes that of the new triangles. No two keys are equal on a polygon.
void CSetTriangulos2D::OrdenaContorno() {
  auto const& contorno = borrador->contorno;
  auto& orden = borrador->orden;
  const std::size_t n = contorno.size();
  orden.resize(n);
  if (n <= kPocos) {
    for (std::size_t i = 0; i < n; ++i) {
      std::size_t menores = 0;
      for (std::size_t j = 0; j < n; ++j) menores += contorno[j].clave < contorno[i].clave ? 1U : 0U;
      orden[menores] = static_cast<unsigned>(i);
    }
    return;
  }
  std::iota(orden.begin(), orden.end(), 0U);
  std::sort(orden.begin(), orden.end(), [&](unsigned i, unsigned j) { return contorno[i].clave < contorno[j].clave; });
}

//            A                 P sees the side A-B of its cavity. The new triangle (P, A, B) turns the same way as the
//          / | \               condemned one that it replaces; across A-B it takes over that one's neighbour. Across
//          P-A
//     P  <   |   > fuera       lies the new triangle whose side ends in A, across B-P the one whose side begins in B.
//          \ | /
//            B
void CSetTriangulos2D::SustituyeCavidad(CCoor3D<int>* p, CSetTriangulos2D& cerca) {
  auto& contorno = borrador->contorno;
  for (CTriangulo2D* t : borrador->cavidad) t->set->Quita(t, *this);
  for (std::size_t i = 0; i < contorno.size(); ++i) {
    CLadoContorno& lado = contorno[i];
    // A condemned triangle gives its place to a new one.
    lado.nuevo = i < borrador->cavidad.size() ? new (borrador->cavidad[i]) CTriangulo2D(p, lado.a, lado.b)
                                              : new CTriangulo2D(p, lado.a, lado.b);
    lado.nuevo->vecino23 = lado.fuera;
    if (lado.enlace != nullptr) *lado.enlace = lado.nuevo;
  }
  for (std::size_t i = 0; i < contorno.size(); ++i) {
    CTriangulo2D* t = contorno[i].nuevo;
    CTriangulo2D* siguiente = contorno[borrador->despues[i]].nuevo;
    t->vecino31 = siguiente;
    siguiente->vecino12 = t;
  }
  OrdenaContorno();
  for (const unsigned i : borrador->orden) {
    CTriangulo2D* t = contorno[i].nuevo;
    const CCaja caja = CajaDe(*t);
    CSetTriangulos2D* desde = &cerca;
    while (!desde->paso.Contiene(caja)) desde = desde->padre;
    desde->SetPara(caja).Anexa(t);
  }
  abiertos.clear();
}

void CSetTriangulos2D::SustituyePorBusqueda(CCoor3D<int>* p, CBalance& balance) {
  CSetLados2D& lados = borrador->lados;
  lados.lados.clear();
  RecogeLados(lados);
  BorraCavidad();
  lados.BorraDuplicados();
  for (CLado2D const& lado : lados.lados) Inserta(CTriangulo2D(p, lado.P1(), lado.P2()));
  balance.creados += lados.lados.size();
}

}  // namespace Meseta47
