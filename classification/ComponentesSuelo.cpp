// Patches of minima that grew: those that lie on top of the ground around them, as roofs and bridges do, are given up.
#include <algorithm>
#include <cmath>
#include <numeric>

#include "classification/FasesSuelo.h"

namespace Meseta47 {

namespace {

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

 private:
  std::vector<std::uint32_t> padres;
};

/// A patch: its members, the pairs of a member and ground that did not grow, and those of them that step down.
struct CCuentas {
  unsigned miembros = 0, pares = 0, escalones = 0;
};

}  // namespace

bool RechazaComponentes(CMallaSuelo& malla, CConstantesSuelo const& k, std::vector<std::uint8_t> const& crecidos,
                        CAvance& avance) {
  CPlanosSuelo planos;
  if (!CalculaPlanos(malla, k, avance, planos)) return false;
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
  std::vector<CCuentas> cuentas(malla.Minimos());
  for (const std::uint32_t i : miembros) {
    CCuentas& suyas = cuentas[conjuntos.Raiz(i)];
    ++suyas.miembros;
    malla.Vecinos(i, k.radioVecinos, [&](std::size_t j, double dx, double dy, double dz, double d2) {
      if (!malla.EsSuelo(j) || crecidos[j] != 0) return;
      ++suyas.pares;
      if (planos.Sobre(i, dx, dy) - dz > k.escalonBase + k.escalonPendiente * std::sqrt(d2)) ++suyas.escalones;
    });
  }
  for (const std::uint32_t i : miembros) {
    CCuentas const& suyas = cuentas[conjuntos.Raiz(i)];
    if (suyas.miembros >= k.miembrosComponente && suyas.escalones > k.parteEscalones * suyas.pares) {
      malla.estados[i] = CEstadoSuelo::Objeto;
    }
  }
  return true;
}

}  // namespace Meseta47
