// Patches of minima that grew: those that lie on top of the ground around them, as roofs and bridges do, are given up.
#include <algorithm>
#include <atomic>
#include <cmath>
#include <numeric>

#include "classification/FasesSuelo.h"
#include "model/threads/Reparto.h"

namespace Meseta47 {

namespace {

constexpr std::size_t kBloque = 256;  // minima that a thread takes at a time

/// Disjoint sets of minima. The lowest member stands for its set, whatever the order of the unions.
class CConjuntos {
 public:
  explicit CConjuntos(std::size_t n) : padres(n) { std::iota(padres.begin(), padres.end(), 0U); }

  std::uint32_t Raiz(std::uint32_t i) {
    while (padres[i] != i) i = padres[i] = padres[padres[i]];
    return i;
  }
  void Une(std::size_t a, std::size_t b) {
    const std::uint32_t ra = Raiz(static_cast<std::uint32_t>(a)), rb = Raiz(static_cast<std::uint32_t>(b));
    if (ra != rb) padres[std::max(ra, rb)] = std::min(ra, rb);
  }
  /// Of every minimum, the lowest member of its set.
  std::vector<std::uint32_t> Raices() && {
    for (std::uint32_t& padre : padres) padre = padres[padre];  // which is lower, and has been here
    return std::move(padres);
  }

 private:
  std::vector<std::uint32_t> padres;
};

/// A patch: its members, the pairs of a member and ground that did not grow, and those of them that step down.
struct CCuentas {
  unsigned miembros = 0, pares = 0, escalones = 0;

  /// Adds from one of several threads.
  void Suma(CCuentas const& o) {
    std::atomic_ref(miembros).fetch_add(o.miembros, std::memory_order_relaxed);
    std::atomic_ref(pares).fetch_add(o.pares, std::memory_order_relaxed);
    std::atomic_ref(escalones).fetch_add(o.escalones, std::memory_order_relaxed);
  }
};

}  // namespace

void RechazaComponentes(CMallaSuelo& malla, CConstantesSuelo const& k, CPlanosSuelo& planos,
                        std::vector<std::uint8_t> const& crecidos) {
  std::vector<std::uint32_t> miembros;
  for (std::uint32_t i = 0; i < malla.Minimos(); ++i) {
    if (crecidos[i] != 0 && malla.EsSuelo(i)) miembros.push_back(i);
  }
  const auto crecido = [&](std::size_t i) { return crecidos[i] != 0 && malla.EsSuelo(i); };
  CConjuntos conjuntos(malla.Minimos());
  for (const std::uint32_t i : miembros) {
    malla.Vecinos(i, k.enlaceComponentes, [&](std::size_t j, double, double, double, double) {
      if (j < i && crecido(j)) conjuntos.Une(i, j);
    });
  }
  const std::vector<std::uint32_t> raices = std::move(conjuntos).Raices();
  std::vector<CCuentas> cuentas(malla.Minimos());
  Reparte(miembros.size(), kBloque, [&](std::size_t desde, std::size_t hasta) {
    for (std::size_t n = desde; n < hasta; ++n) {
      const std::uint32_t i = miembros[n];
      CCuentas suyas{1, 0, 0};
      malla.Vecinos(i, k.radioVecinos, [&](std::size_t j, double dx, double dy, double dz, double d2) {
        if (!malla.EsSuelo(j) || crecidos[j] != 0) return;
        ++suyas.pares;
        if (planos.Sobre(i, dx, dy) - dz > k.escalonBase + k.escalonPendiente * std::sqrt(d2)) ++suyas.escalones;
      });
      cuentas[raices[i]].Suma(suyas);
    }
  });
  std::vector<std::uint32_t> rechazados;
  for (const std::uint32_t i : miembros) {
    CCuentas const& suyas = cuentas[raices[i]];
    if (suyas.miembros < k.miembrosComponente || suyas.escalones <= k.parteEscalones * suyas.pares) continue;
    malla.estados[i] = CEstadoSuelo::Objeto;
    rechazados.push_back(i);
  }
  RenuevaPlanos(malla, k, rechazados, planos);
}

}  // namespace Meseta47
