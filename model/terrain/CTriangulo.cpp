#include "model/terrain/CTriangulo.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "model/geometry/OrdenCanonico.h"
#include "model/geometry/Subida.h"

namespace Meseta47 {

namespace {

std::int64_t Resta(int a, int b) { return static_cast<std::int64_t>(a) - b; }

/// The part of the normal that stands upright: twice the signed area in plan.
double NormalZ(CTriangulo const& t) {
  return ProductoVectorial(Resta(t.P2->x, t.P1->x), Resta(t.P2->y, t.P1->y), Resta(t.P3->x, t.P1->x),
                           Resta(t.P3->y, t.P1->y));
}

/// Cross product of the sides from P1, on each axis rounded once: a component is 0.0 only when it is exactly 0.
CCoor3D<double> Normal(CTriangulo const& t) {
  const std::int64_t ax = Resta(t.P2->x, t.P1->x), ay = Resta(t.P2->y, t.P1->y), az = Resta(t.P2->z, t.P1->z);
  const std::int64_t bx = Resta(t.P3->x, t.P1->x), by = Resta(t.P3->y, t.P1->y), bz = Resta(t.P3->z, t.P1->z);
  return {ProductoVectorial(ay, az, by, bz), ProductoVectorial(az, ax, bz, bx), NormalZ(t), 0};
}

}  // namespace

bool CTriangulo::EsValido() const {
  if (P1 == nullptr || P2 == nullptr || P3 == nullptr) return false;
  if (NormalZ(*this) != 0) return true;  // as good as always
  const CCoor3D<double> n = Normal(*this);
  return n.x != 0 || n.y != 0;
}

void CTriangulo::ColocaPuntos(bool plano) { ColocaEnOrden(P1, P2, P3, plano ? 0 : PlanoDeGiro(*P1, *P2, *P3)); }

double CTriangulo::Pendiente() const {
  const CCoor3D<double> n = Normal(*this);
  return std::atan2(std::sqrt(n.x * n.x + n.y * n.y), std::abs(n.z)) * 180 / std::numbers::pi;
}

double CTriangulo::Pendiente(int num) const {
  if (P1->num == num) return Subida(HaciaElMedio(*P1, *P2, *P3));
  if (P2->num == num) return Subida(HaciaElMedio(*P2, *P3, *P1));
  if (P3->num == num) return Subida(HaciaElMedio(*P3, *P1, *P2));
  return 0;
}

int CTriangulo::GetMinZ() const { return std::min({P1->z, P2->z, P3->z}); }

int CTriangulo::GetMaxZ() const { return std::max({P1->z, P2->z, P3->z}); }

double CTriangulo::CalculaSuperficie(double escala) const {
  const CCoor3D<double> n = Normal(*this);
  return std::sqrt(n.x * n.x + n.y * n.y + n.z * n.z) / 2 / (escala * escala);
}

}  // namespace Meseta47
