#include "model/geometry/CEsfera.h"

#include <cstdint>

#include "model/geometry/Entero128.h"

namespace Meseta47 {

namespace {

struct CVector {
  std::int64_t x, y, z;

  CVector(CCoor3D<int> const& desde, CCoor3D<int> const& hasta)
      : x(static_cast<std::int64_t>(hasta.x) - desde.x),
        y(static_cast<std::int64_t>(hasta.y) - desde.y),
        z(static_cast<std::int64_t>(hasta.z) - desde.z) {}
  /// Bits that some coordinate has set, its sign apart.
  [[nodiscard]] std::uint64_t Bits() const { return Magnitud(x) | Magnitud(y) | Magnitud(z); }

 private:
  static std::uint64_t Magnitud(std::int64_t v) { return static_cast<std::uint64_t>(v < 0 ? -v : v); }
};

// T: double for an estimate, std::int64_t for coordinates of 20 bits, Entero128 for any.
template <class T>
T Convierte(std::int64_t v) {
  return static_cast<T>(v);
}
template <class T>
T Menor(std::int64_t a, std::int64_t b, std::int64_t c, std::int64_t d) {
  return Convierte<T>(a) * Convierte<T>(d) - Convierte<T>(b) * Convierte<T>(c);
}
template <class T>
T Volumen6(CVector const& a, CVector const& b, CVector const& c) {
  return Convierte<T>(a.x) * Menor<T>(b.y, b.z, c.y, c.z) + Convierte<T>(a.y) * Menor<T>(b.z, b.x, c.z, c.x) +
         Convierte<T>(a.z) * Menor<T>(b.x, b.y, c.x, c.y);
}
template <class T>
T Norma2(CVector const& v) {
  return Convierte<T>(v.x) * Convierte<T>(v.x) + Convierte<T>(v.y) * Convierte<T>(v.y) +
         Convierte<T>(v.z) * Convierte<T>(v.z);
}
template <class T>
int SignoDe(T v) {
  return v < 0 ? -1 : (v > 0 ? 1 : 0);
}
int SignoDe(Entero128 v) { return v.Signo(); }

constexpr std::uint64_t kCorto = (1U << 20) - 1;

// With the vectors from p to the four points and k the power of p, |v|^2 = 2 o . v - k holds for each, so the lifted
// determinant |a|^2 [b c d] - |b|^2 [a c d] + |c|^2 [a b d] - |d|^2 [a b c] is -k times the volume, which in turn is
// [b c d] - [a c d] + [a b d] - [a b c].
template <class T, class TAlto>
int SignoDePotencia(CVector const& a, CVector const& b, CVector const& c, CVector const& d) {
  const T bcd = Volumen6<T>(b, c, d), acd = Volumen6<T>(a, c, d);
  const T abd = Volumen6<T>(a, b, d), abc = Volumen6<T>(a, b, c);
  const auto alto = [](T v) { return static_cast<TAlto>(v); };
  const TAlto elevado = alto(Norma2<T>(a)) * alto(bcd) - alto(Norma2<T>(b)) * alto(acd) +
                        alto(Norma2<T>(c)) * alto(abd) - alto(Norma2<T>(d)) * alto(abc);
  return -SignoDe(elevado) * SignoDe(bcd - acd + (abd - abc));
}

/// Whether the lifted determinant is so far from 0 that an estimate tells its sign, and does not fit 128 bits perhaps.
/// Differences stay below 2^32 and the determinant below 2^167, so the estimate is off by less than 2^119.
double Elevado(CVector const& a, CVector const& b, CVector const& c, CVector const& d) {
  return Norma2<double>(a) * Volumen6<double>(b, c, d) - Norma2<double>(b) * Volumen6<double>(a, c, d) +
         Norma2<double>(c) * Volumen6<double>(a, b, d) - Norma2<double>(d) * Volumen6<double>(a, b, c);
}

int SignoDeVolumen(CVector const& a, CVector const& b, CVector const& c) {
  if ((a.Bits() | b.Bits() | c.Bits()) <= kCorto) return SignoDe(Volumen6<std::int64_t>(a, b, c));
  return Volumen6<Entero128>(a, b, c).Signo();
}

/// A numerator of the centre. Past 2^126 an estimate is good to one part in 2^43, and the sphere so large that this is
/// nothing; below it arithmetic modulo 2^128 holds the true value.
bool CabeEn128(double estimado) { return std::abs(estimado) <= 0x1p126; }
template <class T>
T NumeradorDe(T a2, T b2, T c2, T bc, T ca, T ab) {
  return a2 * bc + b2 * ca + c2 * ab;
}

}  // namespace

int LadoDeEsfera(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c, CCoor3D<int> const& d,
                 CCoor3D<int> const& p) {
  const CVector va(p, a), vb(p, b), vc(p, c), vd(p, d);
  if ((va.Bits() | vb.Bits() | vc.Bits() | vd.Bits()) <= kCorto) {
    return SignoDePotencia<std::int64_t, Entero128>(va, vb, vc, vd);
  }
  if (const double elevado = Elevado(va, vb, vc, vd); std::abs(elevado) > 0x1p120) {
    return -SignoDe(elevado) * SignoDeVolumen(CVector(a, b), CVector(a, c), CVector(a, d));
  }
  return SignoDePotencia<Entero128, Entero128>(va, vb, vc, vd);
}

int SignoDeVolumen(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c, CCoor3D<int> const& d) {
  return SignoDeVolumen(CVector(d, a), CVector(d, b), CVector(d, c));
}

bool CEsfera::Por4Puntos(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c, CCoor3D<int> const& d) {
  const auto entre = [](int p, int q) { return static_cast<double>(p) - static_cast<double>(q); };
  const CVectores v{entre(a.x, d.x), entre(a.y, d.y), entre(a.z, d.z), entre(b.x, d.x), entre(b.y, d.y),
                    entre(b.z, d.z), entre(c.x, d.x), entre(c.y, d.y), entre(c.z, d.z)};
  const CCalculo r = Calcula(v, d.x, d.y, d.z);
  if (!EsBuena(r.volumen6, r.tamano, r.error)) return Afina(a, b, c, d);
  *this = {r.x, r.y, r.z, r.radio2, r.margen, r.radio};
  return true;
}

bool CEsfera::Afina(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c, CCoor3D<int> const& d) {
  const CVector va(d, a), vb(d, b), vc(d, c);
  const Entero128 volumen6 = Volumen6<Entero128>(va, vb, vc);
  if (volumen6.Signo() == 0) {
    *this = {};
    return false;
  }
  const double mitad = 0.5 / volumen6.Valor();
  // Conversions and quotient are good to 2^-51 of an exact numerator, on three axes together.
  double relativo = 0x1p-49;
  const auto coordenada = [&](std::int64_t CVector::*p, std::int64_t CVector::*q) {
    const auto numerador = [&]<class T>(T) {
      const auto menor = [&](CVector const& u, CVector const& w) { return Menor<T>(u.*p, u.*q, w.*p, w.*q); };
      return NumeradorDe<T>(Norma2<T>(va), Norma2<T>(vb), Norma2<T>(vc), menor(vb, vc), menor(vc, va), menor(va, vb));
    };
    const double estimado = numerador(double{});
    if (CabeEn128(estimado)) return numerador(Entero128(0)).Valor() * mitad;
    relativo = 0x1p-41;
    return estimado * mitad;
  };
  x = d.x + coordenada(&CVector::y, &CVector::z);
  y = d.y + coordenada(&CVector::z, &CVector::x);
  z = d.z + coordenada(&CVector::x, &CVector::y);
  const double rx = x - d.x, ry = y - d.y, rz = z - d.z;
  radio2 = rx * rx + ry * ry + rz * rz;
  radio = std::sqrt(radio2);
  margen = Margen(radio, relativo * radio + 0x1p-52 * (std::abs(x) + std::abs(y) + std::abs(z)));
  return true;
}

}  // namespace Meseta47
