// Pits: echoes from below the ground, seen as small basins of the triangulation of the ground.
#include <algorithm>
#include <atomic>
#include <limits>
#include <tuple>

#include "classification/CTinSuelo.h"
#include "classification/FasesSuelo.h"
#include "model/threads/Reparto.h"

namespace Meseta47 {

namespace {

/// Vertices joined by a side to each vertex, all vertices' after another.
struct CVecindad {
  std::vector<std::uint32_t> desde, otros;
};

CVecindad VecindadDe(CTIN const& tin, std::size_t vertices) {
  CVecindad v;
  v.desde.assign(vertices + 2, 0);
  const auto cantidad = static_cast<std::uint32_t>(tin.Cantidad());
  for (std::uint32_t t = 0; t < cantidad; ++t) {
    for (const std::uint32_t a : tin.Vertices(t)) v.desde[a + 2] += 2;
  }
  for (std::size_t i = 2; i < v.desde.size(); ++i) v.desde[i] += v.desde[i - 1];
  v.otros.resize(v.desde.back());
  for (std::uint32_t t = 0; t < cantidad; ++t) {
    auto const& [a, b, c] = tin.Vertices(t);
    for (auto const& [p, q, r] : {std::tuple(a, b, c), std::tuple(b, c, a), std::tuple(c, a, b)}) {
      v.otros[v.desde[p + 1]++] = q;
      v.otros[v.desde[p + 1]++] = r;
    }
  }
  return v;
}

/// Finds the basins of a surface, one flood at a time.
class CPozos {
 public:
  CPozos(CMallaSuelo& laMalla, CConstantesSuelo const& lasK, CTinSuelo const& elTin)
      : malla(laMalla),
        k(lasK),
        tin(elTin),
        vecindad(VecindadDe(elTin.tin, elTin.vertices.size())),
        orilla(elTin.vertices.size()) {
    for (std::uint32_t t = 0; t < static_cast<std::uint32_t>(tin.tin.Cantidad()); ++t) {
      for (unsigned lado = 0; lado < 3; ++lado) {
        if (tin.tin.Vecinos(t)[lado] != kSinTriangulo) continue;
        orilla[tin.tin.Vertices(t)[lado]] = orilla[tin.tin.Vertices(t)[(lado + 1) % 3]] = true;
      }
    }
  }

  unsigned Quita() {
    std::vector<std::uint32_t> pozos;
    const auto hondo = static_cast<std::int64_t>(k.alturaPozo / malla.metroZ);
    for (std::uint32_t v = 0; v < tin.vertices.size(); ++v) {
      if (EsMinimo(v) && Inunda(v, Z(v) + hondo)) pozos.insert(pozos.end(), cuenca.begin(), cuenca.end());
    }
    for (const std::uint32_t v : pozos) malla.estados[tin.vertices[v]] = CEstadoSuelo::Ruido;
    return static_cast<unsigned>(pozos.size());
  }

 private:
  [[nodiscard]] std::int64_t Z(std::uint32_t v) const { return malla.minimos[tin.vertices[v]].z; }

  template <class F>
  bool Ninguno(std::uint32_t v, F const& f) const {
    for (std::uint32_t i = vecindad.desde[v]; i < vecindad.desde[v + 1]; ++i) {
      if (f(vecindad.otros[i])) return false;
    }
    return true;
  }

  /// No neighbour is lower. Of equal ones each is looked at: the floods agree.
  [[nodiscard]] bool EsMinimo(std::uint32_t v) const {
    return vecindad.desde[v] < vecindad.desde[v + 1] && Ninguno(v, [&](std::uint32_t o) { return Z(o) < Z(v); });
  }

  /// Whether the water that rises to `nivel` from `v` stays within few vertices, and off the rim of the surface, beyond
  /// which nobody knows.
  bool Inunda(std::uint32_t v, std::int64_t nivel) {
    cuenca.assign(1, v);
    for (std::size_t i = 0; i < cuenca.size(); ++i) {
      if (orilla[cuenca[i]]) return false;
      const bool cabe = Ninguno(cuenca[i], [&](std::uint32_t o) {
        if (Z(o) >= nivel || std::find(cuenca.begin(), cuenca.end(), o) != cuenca.end()) return false;
        cuenca.push_back(o);
        return cuenca.size() > k.verticesPozo;
      });
      if (!cabe) return false;
    }
    return true;
  }

  CMallaSuelo& malla;
  CConstantesSuelo const& k;
  CTinSuelo const& tin;
  CVecindad vecindad;
  std::vector<bool> orilla;  ///< of each vertex, whether it lies on the rim
  std::vector<std::uint32_t> cuenca;
};

constexpr std::size_t kBloque = 2048;  // minima that a thread takes at a time

/// Whether a ground minimum may be the bottom of a small basin. In a Delaunay triangulation every vertex but `i` has a
/// neighbour nearer to `i` than itself (P. Bose and P. Morin, "Online routing in triangulations", 1999). So the nearest
/// minimum is joined to `i`, and water from `i` reaches all minima that are nearer than the first one above its level:
/// where these are more than a basin holds, there is none.
bool PuedeSerFondo(CMallaSuelo const& malla, CConstantesSuelo const& k, std::size_t i, double espacios) {
  constexpr double kLejos = std::numeric_limits<double>::infinity();
  double cerca = kLejos, cercaZ = 0, dique = kLejos;
  malla.Vecinos(i, espacios, [&](std::size_t j, double, double, double dz, double d2) {
    if (!malla.EsSuelo(j)) return;
    if (d2 < cerca || (d2 == cerca && dz < cercaZ)) {
      cerca = d2;
      cercaZ = dz;
    }
    if (dz >= k.alturaPozo - malla.metroZ) dique = std::min(dique, d2);  // a unit less: levels are whole units
  });
  if (cerca < kLejos && cercaZ < 0) return false;
  unsigned bajos = 1;
  malla.Vecinos(i, espacios, [&](std::size_t j, double, double, double, double d2) {
    bajos += malla.EsSuelo(j) && d2 < dique ? 1U : 0U;
  });
  return bajos <= k.verticesPozo;
}

}  // namespace

bool PuedeHaberPozos(CMallaSuelo const& malla, CConstantesSuelo const& k) {
  constexpr double kCerca = 2.5, kLejos = 6;  // spacings: the first holds some twenty minima, where they are complete
  std::atomic<bool> puede{false};
  Reparte(malla.Minimos(), kBloque, [&](std::size_t desde, std::size_t hasta) {
    for (std::size_t i = desde; i < hasta && !puede.load(std::memory_order_relaxed); ++i) {
      if (malla.EsSuelo(i) && PuedeSerFondo(malla, k, i, kCerca) && PuedeSerFondo(malla, k, i, kLejos)) puede = true;
    }
  });
  return puede;
}

unsigned QuitaPozos(CMallaSuelo& malla, CConstantesSuelo const& k, CTinSuelo const& tin) {
  return tin.tin.Cantidad() == 0 ? 0 : CPozos(malla, k, tin).Quita();
}

}  // namespace Meseta47
