#pragma once

#include <cstdint>
#include <vector>

#include "classification/CConstantesSuelo.h"
#include "classification/CMallaSuelo.h"
#include "classification/CTinSuelo.h"
#include "classification/FasesSuelo.h"

namespace Meseta47 {

class CAvance;

/// The surface through the ground minima, with what the final band needs to know of it. Reading is safe from any number
/// of threads.
class CSuperficieSuelo {
 public:
  /// The surface at a place.
  struct CLugar {
    double z = 0;          ///< scaled units
    double pendiente = 0;  ///< rise over run
    double rugosidad = 0;  ///< metres: how far the minima around lie off their planes
    bool hay = false;      ///< false: far from all ground, and the rest says nothing
  };

  /// All must outlive the object.
  CSuperficieSuelo(CMallaSuelo const& laMalla, CConstantesSuelo const& lasK, CTinSuelo const& elTin)
      : malla(laMalla), k(lasK), tin(elTin) {}

  /// Measures the vertices by their planes, for which the triangles need not be there yet; so many processors are busy
  /// with something else. False when cancelled.
  bool MideVertices(CPlanosSuelo&& losPlanos, CAvance& avance, unsigned ocupados);
  /// Measures the triangles.
  void MideFacetas();

  [[nodiscard]] CLugar En(CCoor3D<int> const& p) const;

 private:
  /// A triangle as the points above it need it: its plane, from its first corner on. Single precision tells heights
  /// within a triangle to a hundredth of a millimetre.
  struct CFaceta {
    static constexpr float kNoHay = -1;  ///< as a slope: too large a circle, as at a rim, where triangles depend on
                                         ///< what lies far away

    float pendiente = 0, rugosidad = 0;
    float dx = 0, dy = 0;  ///< rise over run, scaled units
  };

  [[nodiscard]] double Rugosidad(std::size_t i) const;
  [[nodiscard]] double Pendiente(std::size_t i) const;
  [[nodiscard]] CFaceta Faceta(std::uint32_t triangulo) const;
  void EligeInicios();
  [[nodiscard]] bool Busca(CCoor3D<int> const& p, std::uint32_t& triangulo) const;
  [[nodiscard]] CLugar Fuera(CCoor3D<int> const& p) const;

  CMallaSuelo const& malla;
  CConstantesSuelo const& k;
  CTinSuelo const& tin;
  CPlanosSuelo planos;                 ///< of each minimum
  std::vector<float> rugosidad;        ///< of each minimum, metres
  std::vector<CFaceta> facetas;        ///< of each triangle
  std::vector<std::uint32_t> primero;  ///< of each minimum, a triangle at it
  std::vector<std::uint32_t> inicios;  ///< of each square of the grid, a triangle in it or near it
};

}  // namespace Meseta47
