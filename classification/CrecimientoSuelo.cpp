// Growth and pruning: the ground takes in what its planes predict, and gives up what they do not.
#include <algorithm>
#include <atomic>
#include <cmath>

#include "classification/FasesSuelo.h"
#include "model/threads/CAvance.h"
#include "model/threads/Reparto.h"

namespace Meseta47 {

namespace {

constexpr std::size_t kBloque = 512;        // minima that a thread takes at a time
constexpr std::size_t kBloqueMarcas = 128;  // of those whose surroundings are marked
constexpr double kHolgura = 1.001;          // for what sums and products round off
constexpr std::uint8_t kSi = 1;             // bytes, not bits: threads write side by side

/// The slope of the plane through a ground minimum that fits the ground around it best, far heights counting little.
void Plano(CMallaSuelo const& malla, CConstantesSuelo const& k, std::size_t i, CPlanosSuelo& planos) {
  double xx = k.cresta * static_cast<double>(malla.sp[i] * malla.sp[i]), yy = xx, xy = 0, xz = 0, yz = 0;
  unsigned n = 0;
  malla.Vecinos(i, k.radioPlano, [&](std::size_t j, double dx, double dy, double dz, double d2) {
    if (!malla.EsSuelo(j)) return;
    const double w = 1 / (1 + dz * dz / (0.25 * d2 + 0.05));
    xx += w * dx * dx;
    xy += w * dx * dy;
    yy += w * dy * dy;
    xz += w * dx * dz;
    yz += w * dy * dz;
    ++n;
  });
  const double det = xx * yy - xy * xy;
  const bool hay = n >= 4 && det > 0;
  planos.gx[i] = hay ? static_cast<float>((xz * yy - yz * xy) / det) : 0;
  planos.gy[i] = hay ? static_cast<float>((yz * xx - xz * xy) / det) : 0;
}

/// Enough of the ground minima around predict minimum i.
bool Concuerda(CMallaSuelo const& malla, CConstantesSuelo const& k, CPlanosSuelo const& planos, std::size_t i) {
  unsigned n = 0, votos = 0;
  malla.Vecinos(i, k.radioVecinos, [&](std::size_t j, double dx, double dy, double dz, double d2) {
    if (!malla.EsSuelo(j)) return;
    const double d = std::sqrt(d2);
    if (std::abs(dz) >= k.pendienteVecinos * d) return;
    ++n;
    const double u = -dz - planos.Sobre(j, -dx, -dy);
    if (u > -(k.abajoBase + k.abajoPendiente * d) && u < k.arribaBase + k.arribaPendiente * d) ++votos;
  });
  return votos >= k.votosMinimos && votos >= k.parteVotos * n;
}

/// f(i) for all minima, on all processors. False when cancelled.
template <class F>
bool ParaTodos(CMallaSuelo const& malla, CAvance& avance, F const& f) {
  avance.Pasada(malla.Minimos());
  const auto bloque = [&](std::size_t desde, std::size_t hasta) {
    for (std::size_t i = desde; i < hasta; ++i) f(i);
  };
  return Reparte(malla.Minimos(), kBloque, bloque, [&](std::size_t hechos) { return avance(hechos); });
}

/// How far a minimum sees: so many of its own spacings, and so many of those of whom it sees.
struct CVista {
  double propios, ajenos;
};

/// Marks those minima and all that see them, and hardly anything else. What counts is the spacing of the one that
/// looks, which may be several times that of the one that is looked at.
void MarcaQuienesVen(CMallaSuelo const& malla, CConstantesSuelo const& k, std::vector<std::uint32_t> const& vistos,
                     CVista vista, std::vector<std::uint8_t>& marcas) {
  if (!k.atajos) {
    std::fill(marcas.begin(), marcas.end(), kSi);
    return;
  }
  std::fill(marcas.begin(), marcas.end(), std::uint8_t{0});
  Reparte(vistos.size(), kBloqueMarcas, [&](std::size_t desde, std::size_t hasta) {
    for (std::size_t n = desde; n < hasta; ++n) {
      const std::uint32_t i = vistos[n];
      std::atomic_ref(marcas[i]).store(kSi, std::memory_order_relaxed);
      const double mayor = kHolgura * static_cast<double>(malla.alcances[malla.Parte(malla.celdas[i])]);
      malla.Cercanos(i, (vista.propios + vista.ajenos) * mayor, [&](std::size_t j, double, double, double, double d2) {
        const double alcance = vista.propios * kHolgura * static_cast<double>(malla.sp[j]) + vista.ajenos * mayor;
        if (d2 <= alcance * alcance) std::atomic_ref(marcas[j]).store(kSi, std::memory_order_relaxed);
      });
    }
  });
}

}  // namespace

void RenuevaPlanos(CMallaSuelo const& malla, CConstantesSuelo const& k, std::vector<std::uint32_t> const& cambiados,
                   CPlanosSuelo& planos) {
  if (cambiados.empty()) return;
  std::vector<std::uint8_t> cambia(malla.Minimos());
  MarcaQuienesVen(malla, k, cambiados, {k.radioPlano, 0}, cambia);
  Reparte(malla.Minimos(), kBloque, [&](std::size_t desde, std::size_t hasta) {
    for (std::size_t i = desde; i < hasta; ++i) {
      if (cambia[i] != 0 && malla.EsSuelo(i)) Plano(malla, k, i, planos);
    }
  });
}

bool CreceSuelo(CMallaSuelo& malla, CConstantesSuelo const& k, CPlanosSuelo& planos,
                std::vector<std::uint8_t>& crecidos, CAvance& avance) {
  crecidos.assign(malla.Minimos(), 0);
  planos.gx.assign(malla.Minimos(), 0);
  planos.gy.assign(malla.Minimos(), 0);
  const auto mide = [&](std::size_t i) {
    if (malla.EsSuelo(i)) Plano(malla, k, i, planos);
  };
  if (!ParaTodos(malla, avance, mide)) return false;
  // From the second round on only what lies near the newcomers can come out otherwise.
  std::vector<std::uint8_t> mira(malla.Minimos(), kSi), acepta(malla.Minimos());
  std::vector<std::uint32_t> nuevos;
  for (unsigned ronda = 0; ronda < k.rondas; ++ronda) {
    const bool sigue = ParaTodos(malla, avance, [&](std::size_t i) {
      const bool candidato = mira[i] != 0 && malla.estados[i] == CEstadoSuelo::Objeto;
      acepta[i] = candidato && Concuerda(malla, k, planos, i) ? kSi : std::uint8_t{0};
    });
    if (!sigue) return false;
    nuevos.clear();
    for (std::uint32_t i = 0; i < malla.Minimos(); ++i) {
      if (acepta[i] == 0) continue;
      nuevos.push_back(i);
      malla.estados[i] = CEstadoSuelo::Suelo;
      crecidos[i] = kSi;
    }
    if (nuevos.empty()) return true;
    RenuevaPlanos(malla, k, nuevos, planos);
    MarcaQuienesVen(malla, k, nuevos, {k.radioVecinos, k.radioPlano}, mira);
  }
  return true;
}

bool PodaSuelo(CMallaSuelo& malla, CConstantesSuelo const& k, CPlanosSuelo& planos, CAvance& avance) {
  std::vector<std::uint8_t> sobra(malla.Minimos());
  const bool sigue = ParaTodos(malla, avance, [&](std::size_t i) {
    if (!malla.EsSuelo(i)) return;
    unsigned n = 0, alcanzan = 0;
    malla.Vecinos(i, k.radioVecinos, [&](std::size_t j, double dx, double dy, double dz, double d2) {
      if (!malla.EsSuelo(j)) return;
      ++n;
      if (-dz - planos.Sobre(j, -dx, -dy) < k.podaBase + k.podaPendiente * std::sqrt(d2)) ++alcanzan;
    });
    sobra[i] = n >= k.vecinosPoda && alcanzan < k.partePoda * n ? kSi : std::uint8_t{0};
  });
  if (!sigue) return false;
  std::vector<std::uint32_t> podados;
  for (std::uint32_t i = 0; i < malla.Minimos(); ++i) {
    if (sobra[i] == 0) continue;
    malla.estados[i] = CEstadoSuelo::Objeto;
    podados.push_back(i);
  }
  RenuevaPlanos(malla, k, podados, planos);
  return true;
}

}  // namespace Meseta47
