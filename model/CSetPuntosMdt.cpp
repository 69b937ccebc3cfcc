#include "model/CSetPuntosMdt.h"

#include <algorithm>
#include <array>
#include <tuple>

#include "model/Reparto.h"
#include "model/VectorCrudo.h"

namespace Meseta47 {

namespace {

constexpr std::size_t kTrozos = 64;    // parts of the input that are counted and moved on their own
constexpr std::size_t kCubetas = 512;  // a cloud of 25 million leaves 50,000 keys, 800 kB, to sort at a time
constexpr std::size_t kMuestras = 16 * kCubetas;

/// A position that compares as two integers, and where its point stands.
struct Clave {
  std::uint64_t xy;
  std::int32_t z;
  std::uint32_t indice;

  Clave() = default;
  Clave(CPuntoTIN const& p, std::size_t suIndice)
      : xy(static_cast<std::uint64_t>(SinSigno(p.x)) << 32 | SinSigno(p.y)),
        z(p.z),
        indice(static_cast<std::uint32_t>(suIndice)) {}

  bool operator<(Clave const& o) const { return std::tie(xy, z, indice) < std::tie(o.xy, o.z, o.indice); }

 private:
  static std::uint32_t SinSigno(int v) { return static_cast<std::uint32_t>(v) ^ 0x80000000u; }
};

/// The keys, shared out in buckets of about the same size, each holding greater keys than those before it. Limits come
/// from a sample, so that a few points far away do not gather all others in one bucket.
class Cubetas {
 public:
  explicit Cubetas(std::vector<CPuntoTIN> const& losPuntos)
      : puntos(losPuntos),
        trozo((losPuntos.size() + kTrozos - 1) / kTrozos),
        cubeta(losPuntos.size()),
        claves(losPuntos.size()) {
    Muestrea();
    Reparte(kTrozos, 1, [this](std::size_t i, std::size_t) { Cuenta(i); });
    Situa();
    Reparte(kTrozos, 1, [this](std::size_t i, std::size_t) { Mueve(i); });
    Reparte(kCubetas, 1, [this](std::size_t i, std::size_t) {
      std::sort(claves.begin() + Desde(i), claves.begin() + Desde(i + 1));
    });
  }

  Clave const& operator[](std::size_t i) const { return claves[i]; }

 private:
  void Muestrea() {
    std::vector<Clave> muestra;
    for (std::size_t i = 0; i < kMuestras; ++i) {
      const std::size_t k = i * puntos.size() / kMuestras;
      muestra.emplace_back(puntos[k], k);
    }
    std::sort(muestra.begin(), muestra.end());
    for (std::size_t i = 0; i < limites.size(); ++i) limites[i] = muestra[(i + 1) * kMuestras / kCubetas];
  }

  void Cuenta(std::size_t i) {
    cuenta[i].fill(0);
    for (std::size_t k = i * trozo; k < Fin(i); ++k) {
      const auto donde = std::upper_bound(limites.begin(), limites.end(), Clave(puntos[k], k));
      cubeta[k] = static_cast<std::uint16_t>(donde - limites.begin());
      ++cuenta[i][cubeta[k]];
    }
  }

  /// Turns the counts into the place of the first key of each part in each bucket.
  void Situa() {
    std::size_t lugar = 0;
    for (std::size_t c = 0; c < kCubetas; ++c) {
      comienzo[c] = lugar;
      for (auto& delTrozo : cuenta) lugar += std::exchange(delTrozo[c], lugar);
    }
    comienzo[kCubetas] = lugar;
  }

  void Mueve(std::size_t i) {
    for (std::size_t k = i * trozo; k < Fin(i); ++k) claves[cuenta[i][cubeta[k]]++] = Clave(puntos[k], k);
  }

  std::size_t Fin(std::size_t i) const { return std::min((i + 1) * trozo, puntos.size()); }
  std::ptrdiff_t Desde(std::size_t c) const { return static_cast<std::ptrdiff_t>(comienzo[c]); }

  std::vector<CPuntoTIN> const& puntos;
  std::size_t trozo;
  VectorCrudo<std::uint16_t> cubeta;
  VectorCrudo<Clave> claves;
  std::array<Clave, kCubetas - 1> limites{};
  std::vector<std::array<std::size_t, kCubetas>> cuenta{kTrozos};
  std::array<std::size_t, kCubetas + 1> comienzo{};
};

}  // namespace

void CSetPuntosMdt::sort(short int, bool) {
  const auto antes = [](CPuntoTIN const& a, CPuntoTIN const& b) { return (a < b) != 0; };
  if (std::is_sorted(puntos.begin(), puntos.end(), antes)) return;
  if (puntos.size() < kMuestras) {
    std::stable_sort(puntos.begin(), puntos.end(), antes);
    return;
  }
  std::vector<CPuntoTIN> ordenados;
  ordenados.reserve(puntos.capacity());
  const Cubetas claves(puntos);
  ordenados.resize(puntos.size());
  Reparte(puntos.size(), 1 << 16, [&](std::size_t desde, std::size_t hasta) {
    for (std::size_t i = desde; i < hasta; ++i) ordenados[i] = puntos[claves[i].indice];
  });
  puntos.swap(ordenados);
}

}  // namespace Meseta47
