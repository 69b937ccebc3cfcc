#include "planar/CAbanico.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "planar/CLado2D.h"
#include "platform/Parejas.h"

namespace Meseta47 {

namespace {

// Boundaries have 6 sides as a rule; where points lie in dense lines, twenty are not rare.
constexpr std::size_t kMasComparados = 32;

/// All bits set where `a` is below `b`.
int SiMenor(int a, int b) { return -static_cast<int>(a < b); }

/// Index of the least number in bits 0 and 1, of the greatest in 6 and 7. Of equal numbers the first counts. All in
/// masks, as the comparisons of several numbers at once answer.
int IndicesDe(int v1, int v2, int v3) {
  const int tercero = SiMenor(v3, v1) & SiMenor(v3, v2), terceroMayor = SiMenor(v1, v3) & SiMenor(v2, v3);
  const int menor = (tercero & 2) | (~tercero & SiMenor(v2, v1) & 1);
  const int mayor = (terceroMayor & 2 << 6) | (~terceroMayor & SiMenor(v1, v2) & 1 << 6);
  return menor | mayor;
}

/// N places in use, then N that are not: all their bits are set.
template <std::size_t N>
constexpr std::array<std::int64_t, 2 * N> kVacios = [] {
  std::array<std::int64_t, 2 * N> marcas{};
  std::fill(marcas.begin() + N, marcas.end(), -1);
  return marcas;
}();

}  // namespace

void CAbanico::Amplia(std::size_t n) {
  lados.resize(n);
  tandas.resize(std::max(n, kMasComparados) / kTanda + 1);
  const std::size_t sitio = tandas.size() * kTanda + 1;
  vuelta.resize(sitio);
  orden.resize(sitio);
  esquinas.resize(sitio);
  num.resize(sitio);
}

bool CAbanico::Dispone(CCoor3D<int> const& p, std::size_t n) {
  cantidad = n;
  return (ancho ? ReparteAncho(p) : ReparteEstrecho(p)) && (n <= kMasComparados || OrdenaMuchos());
}

/// Lays the ring out, and orders its sides unless they are many.
inline bool CAbanico::Reparte(CCoor3D<int> const& p) {
  const std::size_t n = cantidad;
  unsigned coincide = 0;
  unsigned lado = 0;
  for (std::size_t i = 0; i < n; i += kTanda) {
    CTanda& tanda = tandas[i / kTanda];
    // Beyond its end the ring is gone round again: batches are always full, and their loops of fixed length.
    for (std::size_t k = 0; k <= kTanda; ++k) {
      CCoor3D<int>& a = *lados[lado].a;
      vuelta[i + k] = lado;
      esquinas[i + k] = &a;
      num[i + k] = a.num;
      tanda.x[k] = a.x;
      tanda.y[k] = a.y;
      tanda.z[k] = a.z;
      coincide |= static_cast<unsigned>(a.x == p.x) & static_cast<unsigned>(a.y == p.y);
      if (k < kTanda) lado = lados[lado].siguiente;
    }
  }
  if (coincide != 0) return false;
  if (n <= 8) return OrdenaPocos<8>();
  if (n <= 12) return OrdenaPocos<12>();
  return n > kMasComparados || OrdenaAlgunos();
}

/// The sides by the numbers of their points, which fixes the order of the new triangles. False when a number comes
/// twice. Comparing all with all, in loops of fixed length, costs less than the mispredicted branches of a sort.
template <std::size_t N>
bool CAbanico::OrdenaPocos() {
  std::uint64_t claves[N];
  int principios[N];
  // Behind the last side stand keys beyond all others and numbers that no point has.
  auto const* vacio = &kVacios<N>[N - cantidad];
  for (std::size_t i = 0; i < N; ++i) {
    claves[i] = CLado2D::Clave(num[i], num[i + 1]) | static_cast<std::uint64_t>(vacio[i]);
    principios[i] = (num[i] & ~static_cast<int>(vacio[i])) |
                    (static_cast<int>(vacio[i]) & (std::numeric_limits<int>::min() + static_cast<int>(i)));
  }
  for (unsigned i = 0; i < N; ++i) {
    std::size_t rango = 0;
    for (std::size_t j = 0; j < N; ++j) rango += static_cast<std::size_t>(claves[j] < claves[i]);
    orden[rango] = i;
  }
  int iguales = 0;
  for (std::size_t i = 0; i < N; ++i) {
    for (std::size_t j = 0; j < N; ++j) iguales += static_cast<int>(principios[j] == principios[i]);
  }
  return iguales == static_cast<int>(N);
}

/// The same in loops over as many sides as there are.
bool CAbanico::OrdenaAlgunos() {
  constexpr std::size_t N = kMasComparados;
  int menores[N], mayores[N];
  for (std::size_t i = 0; i < cantidad; ++i) {
    menores[i] = std::min(num[i], num[i + 1]);
    mayores[i] = std::max(num[i], num[i + 1]);
  }
  int const* principios = num.data();
  int iguales = 0;
  for (unsigned i = 0; i < cantidad; ++i) {
    const int menor = menores[i], mayor = mayores[i], principio = principios[i];
    int rango = 0;
    for (std::size_t j = 0; j < cantidad; ++j) {
      rango -= SiMenor(menores[j], menor) | (-static_cast<int>(menores[j] == menor) & SiMenor(mayores[j], mayor));
      iguales += static_cast<int>(principios[j] == principio);
    }
    orden[static_cast<std::size_t>(rango)] = i;
  }
  return iguales == static_cast<int>(cantidad);
}

bool CAbanico::OrdenaMuchos() {
  std::vector<int> numeros(num.begin(), num.begin() + static_cast<std::ptrdiff_t>(cantidad));
  std::sort(numeros.begin(), numeros.end());
  if (std::adjacent_find(numeros.begin(), numeros.end()) != numeros.end()) return false;
  std::vector<std::pair<std::uint64_t, unsigned>> claves;
  for (unsigned i = 0; i < cantidad; ++i) claves.emplace_back(CLado2D(A(i), B(i)).Clave(), i);
  std::sort(claves.begin(), claves.end());
  for (unsigned i = 0; i < cantidad; ++i) orden[i] = claves[i].second;
  return true;
}

void CAbanico::Calcula(CCoor3D<int> const& p) {
  for (std::size_t i = 0; i < cantidad; i += kTanda) {
    CTanda& tanda = tandas[i / kTanda];
    ancho ? LlenaAncho(tanda, p) : LlenaEstrecho(tanda, p);
    CorrigeCirculos(tanda, p);
  }
}

void CAbanico::Situa(CMarcos const& m) {
  constexpr std::size_t kParejas = kTanda / 2;
  for (std::size_t i = 0; i < cantidad; i += kTanda) {
    CTanda& t = tandas[i / kTanda];
    CPareja cotas[4][kParejas];
    for (std::size_t k = 0; k < kParejas; ++k) {
      const CPareja cx = CPareja::De(t.cx + 2 * k), cy = CPareja::De(t.cy + 2 * k), r = CPareja::De(t.radio + 2 * k);
      cotas[CMarcos::MIN_X][k] = cx - r;
      cotas[CMarcos::MIN_Y][k] = cy - r;
      cotas[CMarcos::MENOS_MAX_X][k] = -(cx + r);
      cotas[CMarcos::MENOS_MAX_Y][k] = -(cy + r);
    }
    CMarcas salen[kParejas] = {}, fuera[kParejas] = {};
    const auto prueba = [&](CMarcos::CLimite const& limite) {
      const CPareja minimo = CPareja::De(limite.minimo);
      CPareja const* cota = cotas[limite.cota];
      for (std::size_t k = 0; k < kParejas; ++k) salen[k] = salen[k] | (cota[k] < minimo);
    };
    const auto cuenta = [&] {
      for (std::size_t k = 0; k < kParejas; ++k) fuera[k] = fuera[k] - salen[k];
    };
    for (CMarcos::CLimite const& limite : m.ultimo) prueba(limite);
    cuenta();
    for (std::size_t j = CMarcos::kCuantos - 1; j-- != 0;) {
      for (CMarcos::CLimite const& limite : m.propios[j]) prueba(limite);
      cuenta();
    }
    for (std::size_t k = 0; k < kParejas; ++k) fuera[k].Deja(t.fuera + 2 * k);
  }
}

/// A batch that is not full repeats the ring, so that all of it can be looked at.
bool CAbanico::DejanMenosDe(std::size_t marcos) const {
  const auto limite = static_cast<std::int64_t>(marcos);
  std::int64_t menos = -1;  // below 0 while all differences are
  bool nulo = false;
  for (std::size_t i = 0; i < cantidad; i += kTanda) {
    CTanda const& t = tandas[i / kTanda];
    for (const std::int64_t deja : t.fuera) menos &= deja - limite;
    for (const double r2 : t.radio2) nulo |= r2 == 0;
  }
  return menos < 0 && !nulo;
}

/// What `CCirculo::Por3Puntos` does, several at once, where all that it divides is exact.
inline void CAbanico::PonCirculos(CTanda& t, CCoor3D<int> const& p) {
  const double px = p.x, py = p.y;
  for (std::size_t k = 0; k < kTanda; ++k) {
    const double ax = t.x[k] - px, ay = t.y[k] - py, bx = t.x[k + 1] - px, by = t.y[k + 1] - py;
    const double a2 = ax * ax + ay * ay, b2 = bx * bx + by * by;
    const double doble = ax * by - ay * bx;
    const double ux = (by * a2 - ay * b2) / (2 * doble), uy = (ax * b2 - bx * a2) / (2 * doble);
    const double r2 = ux * ux + uy * uy;
    t.area2[k] = doble;
    t.alcance2[k] = a2 > b2 ? a2 : b2;
    t.cx[k] = px + ux;
    t.cy[k] = py + uy;
    t.radio2[k] = r2;
    t.radio[k] = std::sqrt(r2);
  }
}

inline void CAbanico::PonIndices(CTanda& t, CCoor3D<int> const& p) {
  const int px = p.x, py = p.y, pz = p.z;
  for (std::size_t k = 0; k < kTanda; ++k) {
    t.indices[k] = IndicesDe(px, t.x[k], t.x[k + 1]) | IndicesDe(py, t.y[k], t.y[k + 1]) << 2 |
                   IndicesDe(pz, t.z[k], t.z[k + 1]) << 4;
  }
}

URDIMBRE_DE_UNA_PIEZA void CAbanico::LlenaEstrecho(CTanda& t, CCoor3D<int> const& p) {
  PonCirculos(t, p);
  PonIndices(t, p);
}
URDIMBRE_ANCHO void CAbanico::LlenaAncho(CTanda& t, CCoor3D<int> const& p) {
  PonCirculos(t, p);
  PonIndices(t, p);
}
URDIMBRE_DE_UNA_PIEZA bool CAbanico::ReparteEstrecho(CCoor3D<int> const& p) { return Reparte(p); }
URDIMBRE_ANCHO bool CAbanico::ReparteAncho(CCoor3D<int> const& p) { return Reparte(p); }

/// Circles of wide triangles and of points on a line.
void CAbanico::CorrigeCirculos(CTanda& t, CCoor3D<int> const& p) {
  int dudosos = 0;
  for (std::size_t k = 0; k < kTanda; ++k) {
    dudosos |= (t.alcance2[k] > CCirculo::kExacto ? 1 : 0) | (t.area2[k] == 0 ? 1 : 0);
  }
  if (dudosos == 0) return;
  for (std::size_t k = 0; k < kTanda; ++k) {
    if (t.alcance2[k] <= CCirculo::kExacto && t.area2[k] != 0) continue;
    CCirculo c;
    const CCoor3D<int> a(t.x[k], t.y[k], 0, 0), b(t.x[k + 1], t.y[k + 1], 0, 0);
    if (!c.Por3Puntos(p, a, b)) t.indices[k] = 0;
    t.cx[k] = c.x;
    t.cy[k] = c.y;
    t.radio[k] = c.radio;
    t.radio2[k] = c.radio2;
  }
}

}  // namespace Meseta47
