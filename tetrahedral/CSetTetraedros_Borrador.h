#pragma once

#include "tetrahedral/CEstrella.h"
#include "tetrahedral/CSetTetraedros.h"

namespace Meseta47 {

/// Working lists of an insertion, kept by the root from point to point, so that none allocates once the largest cavity
/// has been seen.
class CSetTetraedros::CBorrador {
 public:
  /// The sets from the root down to an open leaf near a point. The sphere of a tetrahedron that has the point as a
  /// vertex belongs to one of them: it reaches the point, and so no cell beside their way.
  class CCamino {
   public:
    void Pon(CSetTetraedros& cerca);
    /// A set was divided or closed: what is remembered does not hold.
    void Olvida() { hoja = nullptr; }
    /// The deepest of them that holds the box of a new tetrahedron's sphere.
    [[nodiscard]] CSetTetraedros& SetPara(CEstrella const& suya, unsigned cual) const {
      return *sets[suya.Marco(cual, marcos, niveles)];
    }

   private:
    CSetTetraedros* hoja = nullptr;
    unsigned niveles = 0;
    CSetTetraedros* sets[kNivelMaximo + 2] = {};  ///< from the root
    CEstrella::CMarco marcos[kNivelMaximo + 2];   ///< what a box must keep to, to lie in each
  };

  CCamino camino;
  CEstrella estrella;
  CTetraedro* ultimoHecho = nullptr;  ///< the last tetrahedron made; null once its set is closed
  std::uint32_t inserciones = 0;
  CSetCaras caras;
  std::vector<CTetraedro*> implicados;
};

}  // namespace Meseta47
