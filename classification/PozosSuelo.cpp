// Pits: echoes from below the ground, seen as small basins of the Delaunay triangulation of the ground minima.
#include <algorithm>
#include <limits>
#include <mutex>
#include <vector>

#include "classification/CEstrellaSuelo.h"
#include "classification/FasesSuelo.h"
#include "model/threads/CAvance.h"
#include "model/threads/Reparto.h"

namespace Meseta47 {

namespace {

constexpr std::size_t kBloque = 512;  // minima that a thread takes at a time
constexpr double kJunto = 1.5;        // spacings: within them lies the nearest minimum nearly always ...
constexpr double kCerca = 2.5;        // ... and within these some twenty, where they are complete

/// Looks for the basin of one minimum at a time.
class CCuenca {
 public:
  CCuenca(CMallaSuelo const& laMalla, CConstantesSuelo const& lasK)
      : malla(laMalla), k(lasK), estrella(laMalla), hondo(static_cast<std::int64_t>(k.alturaPozo / malla.metroZ)) {}

  /// Whether the water that rises from `i` stays within few minima, and off the rim of the ground, beyond which nobody
  /// knows.
  bool EsPozo(std::uint32_t i) {
    // Of equally low ones each is looked at: the floods agree.
    if (!PuedeSerFondo(i) || !estrella.Halla(i, [&](std::size_t o) { return Z(o) >= Z(i); })) return false;
    const std::int64_t nivel = Z(i) + hondo;
    minimos.assign(1, i);
    for (std::size_t n = 0; n < minimos.size(); ++n) {
      if (n > 0 && !estrella.Halla(minimos[n], [](std::size_t) { return true; })) return false;
      for (const std::size_t o : estrella.Vecinos()) {
        if (Z(o) >= nivel || std::find(minimos.begin(), minimos.end(), o) != minimos.end()) continue;
        minimos.push_back(static_cast<std::uint32_t>(o));
      }
      if (minimos.size() > k.verticesPozo) return false;
    }
    return true;
  }

  /// Of the last pit.
  [[nodiscard]] std::vector<std::uint32_t> const& Minimos() const { return minimos; }

 private:
  [[nodiscard]] std::int64_t Z(std::size_t i) const { return malla.minimos[i].z; }

  /// False for nearly all, at little cost. In a Delaunay triangulation every vertex but `i` has a neighbour nearer to
  /// `i` than itself (P. Bose and P. Morin, "Online routing in triangulations", 1999). So the nearest minimum is joined
  /// to `i`, and water from `i` reaches all minima that are nearer than the first one above its level.
  [[nodiscard]] bool PuedeSerFondo(std::size_t i) {
    constexpr double kLejos = std::numeric_limits<double>::infinity();
    double cerca = kLejos, cercaZ = 0, dique = kLejos;
    malla.Vecinos(i, kJunto, [&](std::size_t j, double, double, double dz, double d2) {
      if (!malla.EsSuelo(j) || d2 > cerca || (d2 == cerca && dz > cercaZ)) return;
      cerca = d2;
      cercaZ = dz;
    });
    if (cercaZ < 0) return false;
    distancias.clear();
    malla.Vecinos(i, kCerca, [&](std::size_t j, double, double, double dz, double d2) {
      if (!malla.EsSuelo(j)) return;
      distancias.push_back(d2);
      if (dz >= k.alturaPozo - malla.metroZ) dique = std::min(dique, d2);  // a unit less: levels are whole units
    });
    const auto bajos = std::count_if(distancias.begin(), distancias.end(), [dique](double d2) { return d2 < dique; });
    return bajos < k.verticesPozo;
  }

  CMallaSuelo const& malla;
  CConstantesSuelo const& k;
  CEstrellaSuelo estrella;
  std::int64_t hondo;  ///< scaled units
  std::vector<std::uint32_t> minimos;
  std::vector<double> distancias;  ///< squared
};

}  // namespace

bool QuitaPozos(CMallaSuelo& malla, CConstantesSuelo const& k, CAvance& avance, std::vector<std::uint32_t>& pozos) {
  std::mutex cerrojo;
  pozos.clear();
  const auto busca = [&](std::size_t desde, std::size_t hasta) {
    CCuenca cuenca(malla, k);
    for (auto i = static_cast<std::uint32_t>(desde); i < hasta; ++i) {
      if (!malla.EsSuelo(i) || !cuenca.EsPozo(i)) continue;
      const std::lock_guard guarda(cerrojo);
      pozos.insert(pozos.end(), cuenca.Minimos().begin(), cuenca.Minimos().end());
    }
  };
  avance.Pasada(malla.Minimos());
  if (!Reparte(malla.Minimos(), kBloque, busca, [&](std::size_t hechos) { return avance(hechos); })) return false;
  for (const std::uint32_t i : pozos) malla.estados[i] = CEstadoSuelo::Ruido;
  return true;
}

}  // namespace Meseta47
