// The statistics of peaks: each triangle of a closed set tells its vertices how high the other two are.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "model/geometry/Signo.h"
#include "planar/CAlturasVecinas.h"
#include "planar/CSetTriangulos2D_Consume.h"

namespace Meseta47 {

namespace {

std::size_t Indice(CCoor3D<int> const& p) { return static_cast<std::size_t>(p.num) - 1; }

/// The sum modulo 2^32, two's complement.
int SumaSinDesborde(int a, int b) {
  return static_cast<int>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

/// Counts the rise to `p` where it is steep from that side: its slope above `pendiente`, its height above `minimo`.
void AnotaRepecho(CCoor3D<int> const& desde, CCoor3D<int> const& p, double subida, double pendiente,
                  std::int64_t minimo, std::vector<unsigned char>& empinados) {
  if (subida > pendiente && std::int64_t{p.z} - desde.z > minimo) ++empinados[Indice(p)];
}

/// A vertex learns the heights of its two companions.
void AnotaVecinos(CAlturasVecinas& alturas, std::size_t i, int u, int v) {
  const auto [menor, mayor] = std::minmax(u, v);
  const bool primeros = alturas.vecinos[i] == 0;  // or as many that their count has wrapped
  alturas.maximos[i] = primeros ? mayor : std::max(alturas.maximos[i], mayor);
  alturas.minimos[i] = primeros ? menor : std::min(alturas.minimos[i], menor);
  alturas.sumas[i] = SumaSinDesborde(primeros ? 0 : alturas.sumas[i], SumaSinDesborde(u, v));
  alturas.vecinos[i] = static_cast<unsigned char>(alturas.vecinos[i] + 2);
}

}  // namespace

void CSetTriangulos2D::BuscaPicos(CAlturasVecinas& alturas, double lado2, double pendiente, int altura) {
  const bool conPendientes = Signo(pendiente) > 0;
  const std::int64_t minimo = std::int64_t{2} * altura;
  ConsumeLista([&](CTriangulo2D const& t) {
    CCoor3D<int> const *const a = t.P1(), *const b = t.P2(), *const c = t.P3();
    for (CCoor3D<int> const* p : {a, b, c}) {
      if (p == nullptr || p->num < 1) return;
    }
    const auto mira = [&](CCoor3D<int> const& p, CCoor3D<int> const& q) {
      const double subida = p.Pendiente(q);
      AnotaRepecho(p, q, subida, pendiente, minimo, alturas.empinados);
      AnotaRepecho(q, p, -subida, pendiente, minimo, alturas.empinados);
    };
    if (conPendientes) {
      mira(*a, *b);
      mira(*b, *c);
      mira(*c, *a);
    }
    if (a->Distancia2(*b, 0) > lado2 || a->Distancia2(*c, 0) > lado2 || b->Distancia2(*c, 0) > lado2) return;
    AnotaVecinos(alturas, Indice(*a), b->z, c->z);
    AnotaVecinos(alturas, Indice(*b), c->z, a->z);
    AnotaVecinos(alturas, Indice(*c), a->z, b->z);
  });
  for (unsigned i = 0; hijos != nullptr && i < kHijos; ++i) hijos[i].BuscaPicos(alturas, lado2, pendiente, altura);
}

void CSetTriangulos2D::BuscaPicos(std::vector<int>& minimos, std::vector<int>& maximos, std::vector<int>& sumas,
                                  std::vector<unsigned char>& vecinos, double lado2,
                                  std::vector<unsigned char>& empinados, double pendiente, int altura) {
  CAlturasVecinas alturas;
  const auto cambia = [&] {
    std::swap(alturas.minimos, minimos);
    std::swap(alturas.maximos, maximos);
    std::swap(alturas.sumas, sumas);
    std::swap(alturas.vecinos, vecinos);
    std::swap(alturas.empinados, empinados);
  };
  cambia();
  BuscaPicos(alturas, lado2, pendiente, altura);
  cambia();
}

}  // namespace Meseta47
