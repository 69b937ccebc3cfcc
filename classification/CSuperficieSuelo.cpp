#include "classification/CSuperficieSuelo.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "model/threads/CAvance.h"
#include "model/threads/Reparto.h"

namespace Meseta47 {

namespace {

constexpr std::size_t kBloque = 512;   // minima that a thread takes at a time
constexpr std::int64_t kAnillos = 64;  // cells: how far ground is looked for outside the triangles

/// Twice the area of (a, b, p), positive where p lies on the right of a-b, as inside a clockwise triangle. Exact where
/// they lie within 2^26 units of each other.
template <class A, class B, class P>
double Derecha(A const& a, B const& b, P const& p) {
  return Resta(b.y, a.y) * Resta(p.x, a.x) - Resta(b.x, a.x) * Resta(p.y, a.y);
}

}  // namespace

bool CSuperficieSuelo::MideVertices(CPlanosSuelo&& losPlanos, CAvance& avance, unsigned ocupados) {
  planos = std::move(losPlanos);
  rugosidad.assign(malla.Minimos(), 0);
  const auto mide = [&](std::size_t desde, std::size_t hasta) {
    for (std::size_t i = desde; i < hasta; ++i) {
      if (malla.EsSuelo(i)) rugosidad[i] = static_cast<float>(Rugosidad(i));
    }
  };
  avance.Pasada(malla.Minimos());
  return Reparte(
      malla.Minimos(), kBloque, mide, [&](std::size_t hechos) { return avance(hechos); }, ocupados);
}

void CSuperficieSuelo::MideFacetas() {
  facetas.resize(tin.tin.Cantidad());
  Reparte(facetas.size(), kBloque, [&](std::size_t desde, std::size_t hasta) {
    for (std::size_t t = desde; t < hasta; ++t) facetas[t] = Faceta(static_cast<std::uint32_t>(t));
  });
  primero.assign(malla.Minimos(), kSinTriangulo);
  for (auto t = static_cast<std::uint32_t>(tin.tin.Cantidad()); t-- > 0;) {
    for (const std::uint32_t v : tin.tin.Vertices(t)) primero[tin.vertices[v]] = t;
  }
  EligeInicios();
}

/// That of the first minimum of the square that has one, or of a square nearby.
void CSuperficieSuelo::EligeInicios() {
  const auto ancho = static_cast<std::size_t>(malla.columnas / CMallaSuelo::kParte);
  inicios.assign(ancho * static_cast<std::size_t>(malla.filas / CMallaSuelo::kParte), kSinTriangulo);
  for (std::size_t i = malla.Minimos(); i-- > 0;) {
    CMinimoSuelo const& m = malla.minimos[i];
    if (primero[i] == kSinTriangulo) continue;
    inicios[malla.Parte((m.x - malla.x0) / malla.lado, (m.y - malla.y0) / malla.lado)] = primero[i];
  }
  const auto toma = [this](std::size_t parte, bool hay, std::size_t otra) {
    if (hay && inicios[parte] == kSinTriangulo) inicios[parte] = inicios[otra];
  };
  for (std::size_t p = 0; p < inicios.size(); ++p) {
    toma(p, p % ancho > 0, p - 1);
    toma(p, p >= ancho, p - ancho);
  }
  for (std::size_t p = inicios.size(); p-- > 0;) {
    toma(p, p % ancho + 1 < ancho, p + 1);
    toma(p, p + ancho < inicios.size(), p + ancho);
  }
}

double CSuperficieSuelo::Rugosidad(std::size_t i) const {
  double suma = 0;
  unsigned n = 0;
  malla.Vecinos(i, k.radioPlano, [&](std::size_t j, double dx, double dy, double dz, double) {
    if (!malla.EsSuelo(j)) return;
    suma += std::abs(dz - planos.Sobre(i, dx, dy));
    ++n;
  });
  return n == 0 ? 0 : std::min(k.mayorRugosidad, suma / n);
}

double CSuperficieSuelo::Pendiente(std::size_t i) const {
  const double gx = static_cast<double>(planos.gx[i]), gy = static_cast<double>(planos.gy[i]);
  return std::min(k.mayorPendiente, std::sqrt(gx * gx + gy * gy));
}

/// Walks over the sides that have the point on their outer side. False at the rim of the surface, which need not be
/// convex: another walk may find a point there. So a walk begins where the place of the point says, and nowhere else.
bool CSuperficieSuelo::Busca(CCoor3D<int> const& p, std::uint32_t& triangulo) const {
  for (std::size_t pasos = 0; pasos <= tin.tin.Cantidad(); ++pasos) {
    auto const& v = tin.tin.Vertices(triangulo);
    auto const& vecinos = tin.tin.Vecinos(triangulo);
    std::uint32_t siguiente = triangulo;
    for (unsigned lado = 0; lado < 3; ++lado) {
      const double area = Derecha(tin.tin.puntos[v[lado]], tin.tin.puntos[v[(lado + 1) % 3]], p);
      // A point on a side lies in both its triangles, and is given to the lower index, whichever way the walk came.
      if (area > 0 || (area == 0 && vecinos[lado] > triangulo)) continue;
      siguiente = vecinos[lado];
      if (area < 0) break;
    }
    if (siguiente == triangulo) return true;
    if (siguiente == kSinTriangulo) return false;
    triangulo = siguiente;
  }
  return false;
}

CSuperficieSuelo::CFaceta CSuperficieSuelo::Faceta(std::uint32_t triangulo) const {
  auto const& v = tin.tin.Vertices(triangulo);
  CPuntoTIN const &a = tin.tin.puntos[v[0]], &b = tin.tin.puntos[v[1]], &c = tin.tin.puntos[v[2]];
  const double bx = Resta(b.x, a.x), by = Resta(b.y, a.y), bz = Resta(b.z, a.z);
  const double cx = Resta(c.x, a.x), cy = Resta(c.y, a.y), cz = Resta(c.z, a.z);
  const double area = bx * cy - by * cx;
  const double dx = (bz * cy - by * cz) / area, dy = (bx * cz - bz * cx) / area;
  CFaceta f{0, 0, static_cast<float>(dx), static_cast<float>(dy)};
  // The product of the sides by four times the area.
  const double radio = std::sqrt(bx * bx + by * by) * std::sqrt(cx * cx + cy * cy) *
                       std::sqrt((bx - cx) * (bx - cx) + (by - cy) * (by - cy)) / (2 * std::abs(area));
  double pendiente = 0, rugosa = 0;
  for (const std::uint32_t i : v) {
    const std::uint32_t minimo = tin.vertices[i];
    pendiente += Pendiente(minimo) / 3;
    rugosa += static_cast<double>(rugosidad[minimo]) / 3;
  }
  const double empinada = std::sqrt(dx * dx + dy * dy) * malla.metroZ / malla.metro;
  f.pendiente =
      static_cast<float>((1 - k.parteFaceta) * pendiente + k.parteFaceta * std::min(k.mayorPendiente, empinada));
  f.rugosidad = static_cast<float>(rugosa);
  if (radio * malla.metro > k.mayorRadio) f.pendiente = CFaceta::kNoHay;
  return f;
}

/// On the plane of the nearest ground minimum; of equally near ones, the first.
CSuperficieSuelo::CLugar CSuperficieSuelo::Fuera(CCoor3D<int> const& p) const {
  const std::int64_t columna = (p.x - malla.x0) / malla.lado, fila = (p.y - malla.y0) / malla.lado;
  double cerca = -1;
  std::uint32_t minimo = CMallaSuelo::kNinguno;
  const auto mira = [&](std::int64_t q, std::int64_t f) {
    if (q < 0 || q >= malla.columnas || f < 0 || f >= malla.filas) return;
    const std::uint32_t m = malla.indice[malla.Celda(q, f)];
    if (m == CMallaSuelo::kNinguno || !malla.EsSuelo(m)) return;
    const double dx = Resta(p.x, malla.minimos[m].x), dy = Resta(p.y, malla.minimos[m].y), d2 = dx * dx + dy * dy;
    if (cerca >= 0 && (d2 > cerca || (d2 == cerca && m > minimo))) return;
    cerca = d2;
    minimo = m;
  };
  for (std::int64_t anillo = 0; anillo <= kAnillos; ++anillo) {
    const double lejos = static_cast<double>((anillo - 1) * malla.lado);
    if (cerca >= 0 && anillo > 0 && lejos * lejos > cerca) break;
    for (std::int64_t f = fila - anillo; f <= fila + anillo; ++f) {
      const bool orilla = anillo == 0 || f == fila - anillo || f == fila + anillo;
      for (std::int64_t q = columna - anillo; q <= columna + anillo; q += orilla ? 1 : 2 * anillo) mira(q, f);
    }
  }
  if (cerca < 0) return {};
  CMinimoSuelo const& m = malla.minimos[minimo];
  const double sube = planos.Sobre(minimo, Resta(p.x, m.x), Resta(p.y, m.y));
  return {m.z + sube * malla.metro / malla.metroZ, Pendiente(minimo), static_cast<double>(rugosidad[minimo]), true};
}

CSuperficieSuelo::CLugar CSuperficieSuelo::En(CCoor3D<int> const& p) const {
  const std::int64_t columna = (p.x - malla.x0) / malla.lado, fila = (p.y - malla.y0) / malla.lado;
  const std::uint32_t i = malla.indice[malla.Celda(columna, fila)];
  std::uint32_t triangulo = kSinTriangulo;
  if (i != CMallaSuelo::kNinguno && malla.EsSuelo(i)) {
    CMinimoSuelo const& m = malla.minimos[i];
    // Several triangles hold a vertex; what is asked of it must not depend on which of them is found.
    if (m.x == p.x && m.y == p.y) {
      return {static_cast<double>(m.z), Pendiente(i), static_cast<double>(rugosidad[i]), true};
    }
    triangulo = primero[i];
  }
  if (triangulo == kSinTriangulo) triangulo = inicios[malla.Parte(columna, fila)];
  if (triangulo == kSinTriangulo || !Busca(p, triangulo)) return Fuera(p);
  CFaceta const& f = facetas[triangulo];
  if (f.pendiente == CFaceta::kNoHay) return Fuera(p);
  CPuntoTIN const& a = tin.tin.puntos[tin.tin.Vertices(triangulo)[0]];
  const double z = a.z + static_cast<double>(f.dx) * Resta(p.x, a.x) + static_cast<double>(f.dy) * Resta(p.y, a.y);
  return {z, static_cast<double>(f.pendiente), static_cast<double>(f.rugosidad), true};
}

}  // namespace Meseta47
