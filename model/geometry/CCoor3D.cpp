#include "model/geometry/CCoor3D.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "model/geometry/CMatrizCuadrada.h"
#include "model/storage/Binario.h"

namespace Meseta47 {

namespace {

CCoor3D<double> Media(std::vector<CCoor3D<double>> const& puntos) {
  // Relative to the first point, so that coordinates far from the origin lose nothing in the sums.
  CCoor3D<double> const& base = puntos.front();
  double x = 0, y = 0, z = 0;
  for (CCoor3D<double> const& p : puntos) {
    x += p.x - base.x;
    y += p.y - base.y;
    z += p.z - base.z;
  }
  const double n = static_cast<double>(puntos.size());
  return CCoor3D<double>(base.x + x / n, base.y + y / n, base.z + z / n, 0);
}

CMatrizCuadrada Covarianza(std::vector<CCoor3D<double>> const& puntos, CCoor3D<double> const& media) {
  CMatrizCuadrada m(3);
  for (std::size_t i = 0; i < 3; ++i) m(i, i) = 0;
  for (CCoor3D<double> const& p : puntos) {
    const double d[3] = {p.x - media.x, p.y - media.y, p.z - media.z};
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) m(i, j) += d[i] * d[j];
    }
  }
  return m;
}

/// The direction, with the sense that makes its last component other than 0 positive: z as a rule.
CCoor3D<double> HaciaArriba(CMatrizCuadrada const& vectores, std::size_t columna) {
  const CCoor3D<double> v(vectores(0, columna), vectores(1, columna), vectores(2, columna), 0);
  const double sentido = v.z != 0 ? v.z : (v.y != 0 ? v.y : v.x);
  return sentido < 0 ? v * -1.0 : v;
}

}  // namespace

template <class T>
bool CCoor3D<T>::Normaliza() {
  const double largo = Distancia(CCoor3D(), 1);
  if (largo == 0) return false;
  Actualiza(this->x / largo, this->y / largo, z / largo);
  return true;
}

template <class T>
double CCoor3D<T>::Distancia(CCoor3D const& p, int espacio) const {
  return std::sqrt(Distancia2(p, espacio));
}

template <class T>
double CCoor3D<T>::Pendiente(CCoor3D const& p) const {
  const double subida = static_cast<double>(p.z) - static_cast<double>(z);
  if (subida == 0) return 0;
  return subida / Distancia(p, 0);  // IEEE: over a run of 0 it is the infinity of the rise's sign
}

template <class T>
std::int16_t CCoor3D<T>::CalculaLado(CCoor3D const& a, CCoor3D const& b,
                                     int plano) const requires std::is_same_v<T, int> {
  const auto resta = [](T v, T w) { return static_cast<std::int64_t>(v) - static_cast<std::int64_t>(w); };
  const auto lado = [&](T ax, T ay, T bx, T by, T px, T py) {
    const double doble = ProductoVectorial(resta(bx, ax), resta(by, ay), resta(px, ax), resta(py, ay));
    return static_cast<std::int16_t>(doble > 0 ? 1 : (doble < 0 ? -1 : 0));
  };
  if (plano == 1) return lado(a.y, a.z, b.y, b.z, this->y, z);
  if (plano == 2) return lado(a.x, a.z, b.x, b.z, this->x, z);
  return lado(a.x, a.y, b.x, b.y, this->x, this->y);
}

template <class T>
CCoor3D<T> CCoor3D<T>::ProyectaSobrePlano(CCoor3D<double> const& normal, double termino, bool unitaria) const {
  const double norma2 = unitaria ? 1.0 : normal.Distancia2(CCoor3D<double>(), 1);
  if (norma2 == 0) return *this;
  const double paso = (normal.x * this->x + normal.y * this->y + normal.z * z + termino) / norma2;
  CCoor3D r(*this);
  r.Actualiza(this->x - paso * normal.x, this->y - paso * normal.y, z - paso * normal.z);
  return r;
}

template <class T>
double CCoor3D<T>::DistanciaARecta(CCoor3D const& a, CCoor3D const& b, int espacio, double* parametro) const {
  const auto resta = [](T v, T w) { return static_cast<double>(v) - static_cast<double>(w); };
  const double dx = resta(b.x, a.x), dy = resta(b.y, a.y), dz = espacio == 0 ? 0.0 : resta(b.z, a.z);
  const double ex = resta(this->x, a.x), ey = resta(this->y, a.y), ez = espacio == 0 ? 0.0 : resta(z, a.z);
  const double largo2 = dx * dx + dy * dy + dz * dz;
  const double t = largo2 == 0 ? 0.0 : (ex * dx + ey * dy + ez * dz) / largo2;
  if (parametro != nullptr) *parametro = t;
  const double fx = ex - t * dx, fy = ey - t * dy, fz = ez - t * dz;
  return std::sqrt(fx * fx + fy * fy + fz * fz);
}

template <class T>
bool CCoor3D<T>::CalcularPlano(std::vector<CCoor3D<double>> const& puntos, double& termino,
                               std::vector<double>& residuos, double& emc, CCoor3D<double>& media,
                               double& residuoMaximo, int minimo) requires std::is_same_v<T, double> {
  if (puntos.size() < static_cast<std::size_t>(std::max(minimo, 3))) return false;
  const CCoor3D<double> centro = Media(puntos);
  std::vector<double> valores;
  CMatrizCuadrada vectores(3);
  Covarianza(puntos, centro).Autovalores(valores, vectores);
  // The eigenvalues are squared extents, right to some units in the last place of the greatest: a strip narrower than a
  // ten-millionth of its length cannot be told from a line.
  if (!(valores[1] > 1e-14 * valores[2])) return false;

  const CCoor3D<double> normal = HaciaArriba(vectores, 0);
  std::vector<double> distancias;
  distancias.reserve(puntos.size());
  double mayor = 0, suma2 = 0;
  for (CCoor3D<double> const& p : puntos) {
    const double d = normal.x * (p.x - centro.x) + normal.y * (p.y - centro.y) + normal.z * (p.z - centro.z);
    distancias.push_back(d);
    mayor = std::max(mayor, std::abs(d));
    suma2 += d * d;
  }
  this->Actualiza(normal.x, normal.y, normal.z);
  termino = -(normal.x * centro.x + normal.y * centro.y + normal.z * centro.z);
  residuos = std::move(distancias);
  emc = std::sqrt(suma2 / static_cast<double>(puntos.size()));
  media = centro;
  residuoMaximo = mayor;
  return true;
}

template <class T>
bool CCoor3D<T>::Write(CFile* fichero, CDataSemilla const&, int, CTipoFichero, int, short int) const {
  const CCoor3D<int> entera(*this);
  const std::int32_t valores[3] = {entera.x, entera.y, entera.z};
  return Escribe(*fichero, valores);
}

template <class T>
bool CCoor3D<T>::Read(CFile* fichero, double factor, CTipoFichero) {
  std::int32_t valores[3];
  if (!Lee(*fichero, valores)) return false;
  Actualiza(valores[0] * factor, valores[1] * factor, valores[2] * factor);
  return true;
}

template class URDIMBRE_API_INSTANCIA CCoor3D<int>;
template class URDIMBRE_API_INSTANCIA CCoor3D<double>;

}  // namespace Meseta47
