#include "model/geometry/Arcos.h"

#include <algorithm>
#include <cmath>

namespace Meseta47 {

namespace {

constexpr double kVuelta = 6.283185307179586;

/// How many chords an angle takes: one of angle w on a circle of radius r stands r (1 - cos(w / 2)) off its arc. An
/// ellipse is the image of a circle, and its chords stand off no more than those of its greater circle.
int Cuerdas(double radio, double angulo, double flecha) {
  const double coseno = std::max(0.5, 1 - flecha / radio);  // never less than three chords a turn
  const double cuantas = std::ceil(std::abs(angulo) / (2 * std::acos(coseno)));
  return static_cast<int>(std::clamp(cuantas, 1.0, 1e6));
}

CCoor3D<double> EnElipse(CCoor3D<double> const& centro, double a, double b, double giro, double angulo) {
  const double u = a * std::cos(angulo), v = b * std::sin(angulo);
  const double c = std::cos(giro), s = std::sin(giro);
  return CCoor3D<double>(centro.x + c * u - s * v, centro.y + s * u + c * v, centro.z, 0);
}

/// The turn from one direction to another in the sense of `sentido` (1 or -1), at most one whole turn.
double Giro(double desde, double hasta, double sentido) {
  const double giro = std::fmod(sentido * (hasta - desde), kVuelta);
  return sentido * (giro < 0 ? giro + kVuelta : giro);
}

}  // namespace

std::vector<CCoor3D<double>> ArcoDeElipse(CCoor3D<double> const& centro, double a, double b, double giro, double desde,
                                          double hasta, double flecha) {
  std::vector<CCoor3D<double>> puntos;
  const double angulo = hasta - desde;
  if (!(a > 0) || !(b > 0) || !(flecha > 0) || !std::isfinite(angulo)) return puntos;
  const int n = Cuerdas(std::max(a, b), angulo, flecha);
  for (int i = 0; i <= n; ++i) puntos.push_back(EnElipse(centro, a, b, giro, i == n ? hasta : desde + angulo * i / n));
  return puntos;
}

std::vector<CCoor3D<double>> ArcoPorTresPuntos(CCoor3D<double> const& p1, CCoor3D<double> const& p2,
                                               CCoor3D<double> const& p3, double flecha) {
  if (!(flecha > 0)) return {};
  const double bx = p2.x - p1.x, by = p2.y - p1.y, cx = p3.x - p1.x, cy = p3.y - p1.y;
  const double area2 = bx * cy - by * cx;
  if (area2 == 0) return {p1, p2, p3};
  const double b2 = bx * bx + by * by, c2 = cx * cx + cy * cy;
  const CCoor3D<double> centro(p1.x + (cy * b2 - by * c2) / (2 * area2), p1.y + (bx * c2 - cx * b2) / (2 * area2), 0,
                               0);
  const double radio = centro.Distancia(p1);
  const double sentido = area2 > 0 ? 1 : -1;

  std::vector<CCoor3D<double>> puntos{p1};
  const CCoor3D<double>* extremos[3] = {&p1, &p2, &p3};
  for (int parte = 0; parte < 2; ++parte) {
    CCoor3D<double> const &a = *extremos[parte], &b = *extremos[parte + 1];
    const double desde = std::atan2(a.y - centro.y, a.x - centro.x);
    const double angulo = Giro(desde, std::atan2(b.y - centro.y, b.x - centro.x), sentido);
    const int n = Cuerdas(radio, angulo, flecha);
    for (int i = 1; i < n; ++i) {
      CCoor3D<double> p = EnElipse(centro, radio, radio, 0, desde + angulo * i / n);
      p.z = a.z + (b.z - a.z) * i / n;
      puntos.push_back(p);
    }
    puntos.push_back(b);
  }
  return puntos;
}

}  // namespace Meseta47
