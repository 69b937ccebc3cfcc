#pragma once

#include <cstdint>
#include <vector>

#include "classification/CBusquedaSuelo.h"
#include "classification/CMallaSuelo.h"

namespace Meseta47 {

class CAvance;
class CPuntosSuelo;
class CSuperficieSuelo;

// The phases of the ground search, in the order in which CBusquedaSuelo calls them. Each reads the states of all minima
// as they were and writes what it finds at its end, or at the end of a round, so that the outcome depends neither on
// threads nor on the order of the points. Those that return a bool return false when they were cancelled.

/// Grid, minima and their spacing; all minima begin as ground. Units and origin of `malla` stand. kHecho,
/// kCancelado, kPocosPuntos, kNubeDispersa.
int ReuneMinimos(CPuntosSuelo const& puntos, CConstantesSuelo const& k, CAvance& avance, CMallaSuelo& malla);

/// Marks single minima far below all around them as noise.
void QuitaRuidoBajo(CMallaSuelo& malla, CConstantesSuelo const& k);

/// How many openings the next phase makes.
unsigned Aberturas(CMallaSuelo const& malla, CDataSuelo const& data);

/// Openings by growing discs, up to the window of `data`: minima above one become objects, all others ground; noise
/// stays noise.
bool SeparaPorAberturas(CMallaSuelo& malla, CConstantesSuelo const& k, CDataSuelo const& data, CAvance& avance);

/// Marks basins of few vertices of the triangulated ground as noise, and tells which minima that were.
bool QuitaPozos(CMallaSuelo& malla, CConstantesSuelo const& k, CAvance& avance, std::vector<std::uint32_t>& pozos);

/// Slopes of the planes through ground minima, as rise over run; of other minima they say nothing.
struct CPlanosSuelo {
  std::vector<float> gx, gy;

  /// Height over the minimum at (dx, dy) from it, metres.
  [[nodiscard]] double Sobre(std::size_t i, double dx, double dy) const {
    return static_cast<double>(gx[i]) * dx + static_cast<double>(gy[i]) * dy;
  }
};
/// Those around minima that have just become ground, or are it no longer.
void RenuevaPlanos(CMallaSuelo const& malla, CConstantesSuelo const& k, std::vector<std::uint32_t> const& cambiados,
                   CPlanosSuelo& planos);

/// The ground takes in objects that its planes predict, round by round. `planos` are made, and kept up to date;
/// `crecidos` tells which came so.
bool CreceSuelo(CMallaSuelo& malla, CConstantesSuelo const& k, CPlanosSuelo& planos,
                std::vector<std::uint8_t>& crecidos, CAvance& avance);

/// The ground gives up minima that hardly any of their neighbours' planes reach.
bool PodaSuelo(CMallaSuelo& malla, CConstantesSuelo const& k, CPlanosSuelo& planos, CAvance& avance);

/// The ground gives up patches that grew and lie on top of what was ground before, such as roofs and bridges.
void RechazaComponentes(CMallaSuelo& malla, CConstantesSuelo const& k, CPlanosSuelo& planos,
                        std::vector<std::uint8_t> const& crecidos);

/// Gives the points their classes by their height about the surface, whose vertices are measured, and counts them.
/// kHecho, kCancelado.
int ClasificaPuntos(CPuntosSuelo const& puntos, CMallaSuelo const& malla, CConstantesSuelo const& k,
                    CSuperficieSuelo& superficie, CDataSuelo const& data, CAvance& avance, CResumenSuelo& resumen);

}  // namespace Meseta47
