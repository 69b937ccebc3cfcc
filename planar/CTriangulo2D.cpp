#include "planar/CTriangulo2D.h"

#include <array>

#include "model/geometry/CirculoExacto.h"
#include "model/storage/CDeReserva_Define.h"

namespace Meseta47 {

template class CDeReserva<CTriangulo2D>;

namespace {

double Determinante(double a1, double b1, double c1, double a2, double b2, double c2, double a3, double b3, double c3) {
  return a1 * (b2 * c3 - b3 * c2) - b1 * (a2 * c3 - a3 * c2) + c1 * (a2 * b3 - a3 * b2);
}

}  // namespace

void CTriangulo2D::Recalcula() {
  ultimoPunto = 0;
  flags = static_cast<std::uint16_t>(flags & ~kMascaraIndices);
  if (p1 == nullptr || p2 == nullptr || p3 == nullptr) {
    circulo.radio = circulo.radio2 = 0;
    return;
  }
  circulo.Por3Puntos(*p1, *p2, *p3);
  if (Signo(circulo.radio) != 0) CalculaIndices(0);  // points that make a circle are three different ones
}

CCentro CTriangulo2D::Centro() const {
  CCentro copia;
  copia.centro.x = circulo.x;
  copia.centro.y = circulo.y;
  copia.centro.num = ultimoPunto;
  copia.radio = circulo.radio;
  copia.radio2 = circulo.radio2;
  return copia;
}

bool CTriangulo2D::EnCirculoEnorme(int px, int py) const {
  return ExcesoSobreCirculo(*p1, *p2, *p3, CCoor3D<int>(px, py, 0, 0)) <= 0;
}

/// Among equal values the earliest vertex keeps the index. The outcome is unpredictable, so the loop is branch-free,
/// of fixed length, and takes the axes side by side.
void CTriangulo2D::CalculaIndices(int eje) {
  const int v1[4] = {p1->x, p1->y, p1->z, 0}, v2[4] = {p2->x, p2->y, p2->z, 0}, v3[4] = {p3->x, p3->y, p3->z, 0};
  int menor[4], mayor[4];
  for (int i = 0; i < 4; ++i) {
    const int tercero = static_cast<int>(v3[i] < v1[i]) & static_cast<int>(v3[i] < v2[i]);
    menor[i] = tercero << 1 | (static_cast<int>(v2[i] < v1[i]) & ~tercero);
    const int terceroMayor = static_cast<int>(v3[i] > v1[i]) & static_cast<int>(v3[i] > v2[i]);
    mayor[i] = terceroMayor << 1 | (static_cast<int>(v2[i] > v1[i]) & ~terceroMayor);
  }
  const auto bits =
      static_cast<unsigned>(menor[0] | menor[1] << 2 | menor[2] << 4 | mayor[0] << 6 | mayor[1] << 8 | mayor[2] << 10);
  constexpr unsigned kDeUnEje = 3U | 3U << 6;
  const unsigned cambian = eje == 0 ? kMascaraIndices : (eje >= 1 && eje <= 3 ? kDeUnEje << (2 * (eje - 1)) : 0U);
  flags = static_cast<std::uint16_t>((static_cast<unsigned>(flags) & ~cambian) | (bits & cambian));
}

bool CTriangulo2D::operator==(CTriangulo2D const& o) const {
  const auto esta = [&o](CCoor3D<int> const* p) { return p == o.p1 || p == o.p2 || p == o.p3; };
  return esta(p1) && esta(p2) && esta(p3);
}

CMaximas<int> CTriangulo2D::GetMaximas() const {
  CMaximas<int> caja;
  if (!EsValido()) return caja;
  caja.Maximo = CCoor3D<int>(GetMaxX(), GetMaxY(), GetMaxZ(), 0);
  caja.Minimo = CCoor3D<int>(GetMinX(), GetMinY(), GetMinZ(), 0);
  return caja;
}

CCoor3D<int> CTriangulo2D::GetMinCir() const {
  CCoor3D<int> p;
  p.ActualizaXY(circulo.x - circulo.radio, circulo.y - circulo.radio);
  return p;
}

CCoor3D<int> CTriangulo2D::GetMaxCir() const {
  CCoor3D<int> p;
  p.ActualizaXY(circulo.x + circulo.radio, circulo.y + circulo.radio);
  return p;
}

CMaximas<int> CTriangulo2D::GetMaximasCir() const {
  CMaximas<int> caja;
  caja.Maximo = GetMaxCir();
  caja.Minimo = GetMinCir();
  return caja;
}

bool CTriangulo2D::GetLados(CLado2D (&lados)[3]) const {
  lados[0].SetPuntos(p1, p2);
  lados[1].SetPuntos(p2, p3);
  lados[2].SetPuntos(p3, p1);
  return true;
}

void CTriangulo2D::SetPuntos(CCoor3D<int>* a, CCoor3D<int>* b, CCoor3D<int>* c, bool recalcula) {
  p1 = a;
  p2 = b;
  p3 = c;
  if (recalcula) Recalcula();
}

bool CTriangulo2D::SetPunto(CCoor3D<int>*& mio, CCoor3D<int> const* otro1, CCoor3D<int> const* otro2, CCoor3D<int>* p) {
  if (p != nullptr && ((otro1 != nullptr && *p == *otro1) || (otro2 != nullptr && *p == *otro2))) return false;
  mio = p;
  Recalcula();
  return true;
}
bool CTriangulo2D::SetPunto1(CCoor3D<int>* p) { return SetPunto(p1, p2, p3, p); }
bool CTriangulo2D::SetPunto2(CCoor3D<int>* p) { return SetPunto(p2, p1, p3, p); }
bool CTriangulo2D::SetPunto3(CCoor3D<int>* p) { return SetPunto(p3, p1, p2, p); }

void CTriangulo2D::ActualizaMaxMin(int eje) {
  ultimoPunto = 0;
  if (p1 != nullptr && p2 != nullptr && p3 != nullptr) {
    circulo.Por3Puntos(*p1, *p2, *p3);
  } else {
    circulo.radio = circulo.radio2 = 0;
  }
  if (EsValido()) {
    CalculaIndices(eje);
  } else {
    flags = static_cast<std::uint16_t>(flags & ~kMascaraIndices);
  }
}

void CTriangulo2D::ColocaPuntos(bool soloRota) {
  const int menor = (*p1 > *p2) ? ((*p2 > *p3) ? 3 : 2) : ((*p1 > *p3) ? 3 : 1);
  if (soloRota) {
    if (menor == 2) SetPuntos(p2, p3, p1, false);
    if (menor == 3) SetPuntos(p3, p1, p2, false);
    return;
  }
  int plano = p1->CalculaLado(*p2, *p3, 0) == 0 ? 1 : 0;
  if (p1->x == p2->x && p1->x == p3->x) {
    plano = 1;
  } else if (p1->y == p2->y && p1->y == p3->y) {
    plano = 2;
  }
  // Clockwise: the third vertex must not lie to the left of the way from the first to the second.
  if (menor == 1) {
    if (p3->CalculaLado(*p1, *p2, plano) != 1) return;
    SetPuntos(p1, p3, p2, true);
  } else if (menor == 2) {
    const bool gira = p1->CalculaLado(*p2, *p3, plano) == 1;
    SetPuntos(p2, gira ? p1 : p3, gira ? p3 : p1, true);
  } else {
    const bool gira = p1->CalculaLado(*p3, *p2, plano) == 1;
    SetPuntos(p3, gira ? p1 : p2, gira ? p2 : p1, true);
  }
}

bool CTriangulo2D::AlturaEnPlano(CCoor3D<double> const& p, double& z) const {
  // Relative to the least corner, so that the products stay small.
  const double x0 = GetMinX(), y0 = GetMinY(), z0 = GetMinZ();
  const double a1 = p1->x - x0, b1 = p1->y - y0, c1 = p1->z - z0;
  const double a2 = p2->x - x0, b2 = p2->y - y0, c2 = p2->z - z0;
  const double a3 = p3->x - x0, b3 = p3->y - y0, c3 = p3->z - z0;
  const double det = Determinante(a1, b1, 1, a2, b2, 1, a3, b3, 1);
  if (Signo(det) == 0) return false;
  const double d = Determinante(a1, b1, c1, a2, b2, c2, a3, b3, c3);
  const double a = Determinante(1, b1, c1, 1, b2, c2, 1, b3, c3);
  const double b = Determinante(a1, 1, c1, a2, 1, c2, a3, 1, c3);
  z = z0 + (d - a * (p.x - x0) - b * (p.y - y0)) / det;
  return true;
}

int CTriangulo2D::Proyecta(CCoor3D<double>& p, bool comprueba, bool actualizaZ) {
  if (!Dentro(CCoor3D<int>(p))) return 0;
  for (CCoor3D<int> const* v : {p1, p2, p3}) {
    if (p.x == v->x && p.y == v->y) {
      if (actualizaZ) p.ActualizaZ(v->z);
      return 2;
    }
  }
  const CCoor3D<double> v[3] = {CCoor3D<double>(*p1), CCoor3D<double>(*p2), CCoor3D<double>(*p3)};
  int lado[3];  // sides 12, 23, 31
  for (int i = 0; i < 3; ++i) {
    CCoor3D<double> const &a = v[i], &b = v[(i + 1) % 3];
    lado[i] = Signo((a.y - p.y) * (b.x - a.x) - (a.x - p.x) * (b.y - a.y));
  }
  int resultado = 2;
  if (comprueba) {
    constexpr double kCerca = 1.0;  // scaled units: a point this near to a side counts as on it
    for (auto const& [i, j] : {std::array{0, 1}, std::array{2, 0}, std::array{2, 1}}) {
      if (lado[i] * lado[j] >= 0) continue;
      for (const int k : {i, j}) {
        if (p.DistanciaARecta(v[k], v[(k + 1) % 3], 0, nullptr) <= kCerca) {
          lado[k] = 0;
          resultado = 1;
        }
      }
      if (lado[i] * lado[j] < 0) return 0;
    }
  }
  double z = 0;
  if (!AlturaEnPlano(p, z)) return 0;
  if (actualizaZ) p.ActualizaZ(z);
  return resultado;
}

int CTriangulo2D::Proyecta(CCoor3D<int>& p, bool actualizaZ) {
  CCoor3D<double> copia(p);
  const int resultado = Proyecta(copia, true, actualizaZ);
  if (resultado != 0 && actualizaZ) p.ActualizaZ(copia.z);
  return resultado;
}

}  // namespace Meseta47
