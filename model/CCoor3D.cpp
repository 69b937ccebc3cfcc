#include "model/CCoor3D.h"

#include <cmath>

namespace Meseta47 {

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
  const auto lado = [](std::int64_t ax, std::int64_t ay, std::int64_t bx, std::int64_t by, std::int64_t px,
                       std::int64_t py) {
    const double doble = ProductoVectorial(bx - ax, by - ay, px - ax, py - ay);
    return static_cast<std::int16_t>(doble > 0 ? 1 : (doble < 0 ? -1 : 0));
  };
  if (plano == 1) return lado(a.y, a.z, b.y, b.z, this->y, z);
  if (plano == 2) return lado(a.x, a.z, b.x, b.z, this->x, z);
  return lado(a.x, a.y, b.x, b.y, this->x, this->y);
}

template <class T>
CCoor3D<T> CCoor3D<T>::ProyectaSobrePlano(CCoor3D<double> const& normal, double termino,
                                          bool unitaria) const requires std::is_same_v<T, int> {
  const double norma2 = unitaria ? 1.0 : normal.Distancia2(CCoor3D<double>(), 1);
  if (norma2 == 0) return *this;
  const double paso = (normal.x * this->x + normal.y * this->y + normal.z * z + termino) / norma2;
  CCoor3D r(*this);
  r.Actualiza(this->x - paso * normal.x, this->y - paso * normal.y, z - paso * normal.z);
  return r;
}

template <class T>
double CCoor3D<T>::DistanciaARecta(CCoor3D const& a, CCoor3D const& b, int espacio,
                                   double* parametro) const requires std::is_same_v<T, double> {
  const double dx = b.x - a.x, dy = b.y - a.y, dz = espacio == 0 ? 0.0 : b.z - a.z;
  const double ex = this->x - a.x, ey = this->y - a.y, ez = espacio == 0 ? 0.0 : z - a.z;
  const double largo2 = dx * dx + dy * dy + dz * dz;
  const double t = largo2 == 0 ? 0.0 : (ex * dx + ey * dy + ez * dz) / largo2;
  if (parametro != nullptr) *parametro = t;
  const double fx = ex - t * dx, fy = ey - t * dy, fz = ez - t * dz;
  return std::sqrt(fx * fx + fy * fy + fz * fz);
}

template class CCoor3D<int>;
template class CCoor3D<double>;

}  // namespace Meseta47
