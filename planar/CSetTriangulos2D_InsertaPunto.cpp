// One point into the mesh: its cavity gives way to a fan of new triangles, linked by construction.
#include <algorithm>
#include <bit>
#include <limits>
#include <numeric>

#include "planar/CSetTriangulos2D.h"

namespace Meseta47 {

namespace {

// Comparing all with all, in loops of fixed length, no jump depends on the data; a search among a few would mostly wait
// for jumps that went wrong. Boundaries have 6 sides as a rule, more than 8 now and then, and more than 16 hardly ever.
constexpr std::size_t kPocos = 8, kAlgunos = 16;

/// Index of the one element that equals `valor`; `bien` is lowered when there is none, or more.
template <std::size_t N>
unsigned IndiceDe(int valor, int const (&numeros)[N], bool& bien) {
  unsigned iguales = 0;
  for (std::size_t j = 0; j < N; ++j) iguales |= static_cast<unsigned>(numeros[j] == valor) << j;
  bien &= std::has_single_bit(iguales);
  return static_cast<unsigned>(std::countr_zero(iguales));
}

/// How many elements are below `valor`.
template <std::size_t N>
std::size_t Menores(std::uint64_t valor, std::uint64_t const (&claves)[N]) {
  std::size_t cuenta = 0;
  for (std::size_t j = 0; j < N; ++j) cuenta += static_cast<std::size_t>(claves[j] < valor);
  return cuenta;
}

}  // namespace

int CSetTriangulos2D::InsertaPunto(CCoor3D<int>* p, CSetTriangulos2D& cerca, CTriangulo2D* desde, int tolerancia,
                                   unsigned& aceptados, unsigned& rechazados, CBalance& balance) {
  const int respuesta = BuscaCavidad(p, aceptados, rechazados, desde, tolerancia);
  if (respuesta != 0) return respuesta;
  balance.condenados += borrador->cavidad.size();
  if (RecogeContorno()) {
    SustituyeCavidad(p, cerca);
    balance.creados += borrador->lados;
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
  const std::size_t n = borrador->cavidad.size() + 2;
  contorno.resize(std::max(contorno.size(), 3 * borrador->cavidad.size()));
  CLadoContorno* lado = contorno.data();
  bool enlazado = true;
  for (CTriangulo2D* t : borrador->cavidad) {
    const auto recoge = [&](CTriangulo2D* fuera, CCoor3D<int>* a, CCoor3D<int>* b) {
      if (fuera == nullptr) {
        *lado++ = {a, b, nullptr, nullptr, nullptr};
        if (EstaAbierto(b->num, a->num)) enlazado = false;
        return;
      }
      *lado = {a, b, fuera, fuera->EnlaceA(t), nullptr};
      lado += fuera->Borrado() ? 0 : 1;  // a side inside the cavity gives its place to the next one
    };
    recoge(t->vecino12, t->p1, t->p2);
    recoge(t->vecino23, t->p2, t->p3);
    recoge(t->vecino31, t->p3, t->p1);
  }
  borrador->lados = static_cast<std::size_t>(lado - contorno.data());
  return enlazado && borrador->lados == n && EncadenaContorno();
}

/// Whether an open triangle has the side from number `a` to number `b`.
bool CSetTriangulos2D::EstaAbierto(int a, int b) const {
  return std::any_of(abiertos.begin(), abiertos.end(),
                     [=](CTriangulo2D const* t) { return t->ContieneLado(a, b) != 0; });
}

/// Finds for each side the one that begins where it ends, and the order of the sides, which fixes that of the new
/// triangles. False when ends and beginnings are not one to one.
bool CSetTriangulos2D::EncadenaContorno() {
  const std::size_t n = borrador->lados;
  borrador->despues.resize(std::max(n, kAlgunos));
  borrador->orden.resize(std::max(n, kAlgunos));
  if (n <= kPocos) return EncadenaCorto<kPocos>();
  return n <= kAlgunos ? EncadenaCorto<kAlgunos>() : EncadenaLargo();
}

template <std::size_t N>
bool CSetTriangulos2D::EncadenaCorto() {
  auto const& contorno = borrador->contorno;
  const std::size_t n = borrador->lados;
  int principios[N];
  std::uint64_t claves[N];
  std::fill_n(principios, N, std::numeric_limits<int>::min());  // no point's number, and keys behind all others
  std::fill_n(claves, N, std::numeric_limits<std::uint64_t>::max());
  for (std::size_t i = 0; i < n; ++i) {
    principios[i] = contorno[i].a->num;
    claves[i] = CLado2D(contorno[i].a, contorno[i].b).Clave();
  }
  bool bien = true;
  for (std::size_t i = 0; i < n; ++i) {
    borrador->despues[i] = IndiceDe(contorno[i].b->num, principios, bien);
    borrador->orden[Menores(claves[i], claves)] = static_cast<unsigned>(i);
  }
  return bien;
}

bool CSetTriangulos2D::EncadenaLargo() {
  auto const& contorno = borrador->contorno;
  const std::size_t n = borrador->lados;
  auto& despues = borrador->despues;
  auto& orden = borrador->orden;
  orden.resize(n);
  std::iota(orden.begin(), orden.end(), 0U);
  const auto principio = [&](unsigned i) { return contorno[i].a->num; };
  std::sort(orden.begin(), orden.end(), [&](unsigned i, unsigned j) { return principio(i) < principio(j); });
  for (std::size_t i = 0; i < n; ++i) {
    const int fin = contorno[i].b->num;
    const auto hallado =
        std::lower_bound(orden.begin(), orden.end(), fin, [&](unsigned j, int num) { return principio(j) < num; });
    if (hallado == orden.end() || principio(*hallado) != fin) return false;
    if (hallado + 1 != orden.end() && principio(hallado[1]) == fin) return false;
    despues[i] = *hallado;
  }
  std::vector<std::uint64_t> claves;
  for (std::size_t i = 0; i < n; ++i) claves.push_back(CLado2D(contorno[i].a, contorno[i].b).Clave());
  std::sort(orden.begin(), orden.end(), [&](unsigned i, unsigned j) { return claves[i] < claves[j]; });
  return true;
}

//            A
//          / | \               P sees the side A-B of its cavity. The new triangle (P, A, B) turns the same way as the
//     P  <   |   > fuera       condemned one that it replaces and takes over its neighbour. Across P-A lies the new
//          \ | /               triangle whose side ends in A, across B-P the one whose side begins in B.
//            B
void CSetTriangulos2D::SustituyeCavidad(CCoor3D<int>* p, CSetTriangulos2D& cerca) {
  auto& [cola, cavidad, contorno, despues, orden, n, pares] = *borrador;
  for (CTriangulo2D* t : cavidad) t->set->Quita(t, *this);
  for (std::size_t i = 0; i < n; ++i) {
    CLadoContorno& lado = contorno[i];
    // A condemned triangle gives its place to a new one.
    lado.nuevo =
        i < cavidad.size() ? new (cavidad[i]) CTriangulo2D(p, lado.a, lado.b) : new CTriangulo2D(p, lado.a, lado.b);
    lado.nuevo->vecino23 = lado.fuera;
    if (lado.enlace != nullptr) *lado.enlace = lado.nuevo;
  }
  for (std::size_t i = 0; i < n; ++i) {
    CTriangulo2D* t = contorno[i].nuevo;
    CTriangulo2D* siguiente = contorno[despues[i]].nuevo;
    t->vecino31 = siguiente;
    siguiente->vecino12 = t;
  }
  for (std::size_t i = 0; i < n; ++i) {
    CTriangulo2D* t = contorno[orden[i]].nuevo;
    const CCaja caja = CajaDe(*t);
    CSetTriangulos2D* desde = &cerca;
    while (!desde->paso.Contiene(caja)) desde = desde->padre;
    desde->SetPara(caja).Anexa(t);
  }
  abiertos.clear();
}

void CSetTriangulos2D::SustituyePorBusqueda(CCoor3D<int>* p, CBalance& balance) {
  CSetLados2D& lados = borrador->pares;
  lados.lados.clear();
  RecogeLados(lados);
  BorraCavidad();
  lados.BorraDuplicados();
  for (CLado2D const& lado : lados.lados) Inserta(CTriangulo2D(p, lado.P1(), lado.P2()));
  balance.creados += lados.lados.size();
}

}  // namespace Meseta47
