#pragma once

namespace Meseta47 {

/// Where a point stands in a drawing: the index of its entity and its own in that entity, both from 0.
class CPosicionEntidad {
 public:
  int entidad = 0;
  int punto = 0;

  CPosicionEntidad() = default;
  CPosicionEntidad(int laEntidad, int elPunto) : entidad(laEntidad), punto(elPunto) {}

  [[nodiscard]] bool operator==(CPosicionEntidad const&) const = default;
  /// By entity, then by point: the order in which a drawing is walked.
  [[nodiscard]] bool operator<(CPosicionEntidad const& p) const {
    return entidad != p.entidad ? entidad < p.entidad : punto < p.punto;
  }
};

}  // namespace Meseta47
