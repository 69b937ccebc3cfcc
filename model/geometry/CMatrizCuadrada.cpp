#include "model/geometry/CMatrizCuadrada.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace Meseta47 {

namespace {

void CambiaFilas(CMatrizCuadrada& m, std::size_t a, std::size_t b) {
  for (std::size_t k = 0; k < m.Orden(); ++k) std::swap(m(a, k), m(b, k));
}

/// Row `destino` less so many times row `origen`.
void RestaFila(CMatrizCuadrada& m, std::size_t destino, std::size_t origen, double veces) {
  for (std::size_t k = 0; k < m.Orden(); ++k) m(destino, k) -= veces * m(origen, k);
}

std::size_t FilaPivote(CMatrizCuadrada const& m, std::size_t columna) {
  std::size_t mejor = columna;
  for (std::size_t i = columna + 1; i < m.Orden(); ++i) {
    if (std::abs(m(i, columna)) > std::abs(m(mejor, columna))) mejor = i;
  }
  return mejor;
}

double MayorFueraDeLaDiagonal(CMatrizCuadrada const& m) {
  double mayor = 0;
  for (std::size_t i = 0; i < m.Orden(); ++i) {
    for (std::size_t j = i + 1; j < m.Orden(); ++j) mayor = std::max(mayor, std::abs(m(i, j)));
  }
  return mayor;
}

/// The rotation in the plane of axes p and q that makes m(p, q) zero, applied to the matrix and gathered in `v`.
void GiroDeJacobi(CMatrizCuadrada& m, CMatrizCuadrada& v, std::size_t p, std::size_t q) {
  if (m(p, q) == 0) return;
  const double tau = (m(q, q) - m(p, p)) / (2 * m(p, q));
  const double t = std::copysign(1.0, tau) / (std::abs(tau) + std::hypot(1.0, tau));  // the smaller of both angles
  const double c = 1 / std::hypot(1.0, t), s = t * c;
  for (std::size_t k = 0; k < m.Orden(); ++k) {
    const double kp = m(k, p), kq = m(k, q);
    m(k, p) = c * kp - s * kq;
    m(k, q) = s * kp + c * kq;
  }
  for (std::size_t k = 0; k < m.Orden(); ++k) {
    const double pk = m(p, k), qk = m(q, k), vp = v(k, p), vq = v(k, q);
    m(p, k) = c * pk - s * qk;
    m(q, k) = s * pk + c * qk;
    v(k, p) = c * vp - s * vq;
    v(k, q) = s * vp + c * vq;
  }
  m(p, q) = m(q, p) = 0;
}

}  // namespace

CMatrizCuadrada::CMatrizCuadrada(std::size_t filas) : orden(filas), v(filas * filas, 0.0) {
  for (std::size_t i = 0; i < orden; ++i) (*this)(i, i) = 1;
}

CMatrizCuadrada CMatrizCuadrada::operator*(CMatrizCuadrada const& m) const {
  CMatrizCuadrada r(orden);
  for (std::size_t i = 0; i < orden; ++i) {
    for (std::size_t j = 0; j < orden; ++j) {
      double suma = 0;
      for (std::size_t k = 0; k < orden; ++k) suma += (*this)(i, k) * m(k, j);
      r(i, j) = suma;
    }
  }
  return r;
}

bool CMatrizCuadrada::Invierte() {
  CMatrizCuadrada a(*this), inversa(orden);
  for (std::size_t c = 0; c < orden; ++c) {
    const std::size_t pivote = FilaPivote(a, c);
    if (a(pivote, c) == 0 || !std::isfinite(a(pivote, c))) return false;
    CambiaFilas(a, pivote, c);
    CambiaFilas(inversa, pivote, c);
    const double valor = a(c, c);
    for (std::size_t k = 0; k < orden; ++k) {
      a(c, k) /= valor;
      inversa(c, k) /= valor;
    }
    for (std::size_t i = 0; i < orden; ++i) {
      const double veces = i == c ? 0 : a(i, c);
      RestaFila(a, i, c, veces);
      RestaFila(inversa, i, c, veces);
    }
  }
  *this = inversa;
  return true;
}

void CMatrizCuadrada::Autovalores(std::vector<double>& valores, CMatrizCuadrada& vectores) const {
  CMatrizCuadrada m(*this), giros(orden);
  // Convergence is quadratic: a handful of sweeps leaves nothing; the limit only guards against numbers that are none.
  for (int barrido = 0; barrido < 50 && MayorFueraDeLaDiagonal(m) > 0; ++barrido) {
    for (std::size_t p = 0; p < orden; ++p) {
      for (std::size_t q = p + 1; q < orden; ++q) GiroDeJacobi(m, giros, p, q);
    }
  }
  std::vector<std::size_t> puesto(orden);
  std::iota(puesto.begin(), puesto.end(), std::size_t{0});
  std::stable_sort(puesto.begin(), puesto.end(), [&](std::size_t a, std::size_t b) { return m(a, a) < m(b, b); });
  valores.clear();
  vectores = CMatrizCuadrada(orden);
  for (std::size_t j = 0; j < orden; ++j) {
    valores.push_back(m(puesto[j], puesto[j]));
    for (std::size_t i = 0; i < orden; ++i) vectores(i, j) = giros(i, puesto[j]);
  }
}

CCoor3D<double> CMatrizCuadrada::Aplica(CCoor3D<double> const& p) const {
  if (orden != 3 && orden != 4) return p;
  CMatrizCuadrada const& m = *this;
  double r[3];
  for (std::size_t i = 0; i < 3; ++i) {
    r[i] = m(i, 0) * p.x + m(i, 1) * p.y + m(i, 2) * p.z + (orden == 4 ? m(i, 3) : 0.0);
  }
  const double divisor = orden == 4 ? m(3, 0) * p.x + m(3, 1) * p.y + m(3, 2) * p.z + m(3, 3) : 1.0;
  CCoor3D<double> q(p);
  q.Actualiza(r[0] / divisor, r[1] / divisor, r[2] / divisor);
  return q;
}

}  // namespace Meseta47
