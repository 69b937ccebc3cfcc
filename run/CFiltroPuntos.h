#pragma once

#include <array>

#include "model/drawing/CDibujo.h"
#include "model/terrain/CDataTriangulacion.h"

namespace Meseta47 {

/// Which entities and points of one drawing take part in a run: by height window, and by entity code, or by point class
/// where the drawing is a cloud. Built once a pass; answers in a few instructions.
class URDIMBRE_API CFiltroPuntos {
 public:
  /// What the codes of the parameters are held against.
  enum class CPor {
    Dibujo,          ///< the classes of points where the drawing is a cloud, else the codes of entities
    DibujoYClases,   ///< the same, and the classes of points in any case
    CodigosSiempre,  ///< the codes of entities, in a cloud too
  };

  /// `escala` is scaled units in a metre. The parameters must outlive the filter.
  CFiltroPuntos(CDataTriangulacion const& losDatos, double escala, CDibujo<int> const& dibujo, CPor por = CPor::Dibujo);

  /// Graphic or point set, not deleted, not wholly outside the window, and of a code that counts.
  [[nodiscard]] bool AdmiteEntidad(CLinea<int> const& e) const;
  /// The entity's box lies wholly within the window.
  [[nodiscard]] bool TodaEnVentana(CLinea<int> const& e) const {
    return e.maximas.Minimo.z >= zMin && e.maximas.Maximo.z <= zMax;
  }
  [[nodiscard]] bool AdmitePunto(CCoor3D<int> const& p) const {
    return p.z >= zMin && p.z <= zMax && (!porClases || AdmiteClase(p.clasificacion));
  }
  [[nodiscard]] bool AdmiteClase(unsigned char clase) const { return clases[clase]; }

 private:
  void PreparaClases();

  CDataTriangulacion const& datos;
  double zMin, zMax;  ///< scaled units
  bool nube;          ///< codes are classes of points, and not of entities
  bool porClases;     ///< the class of a point is looked at
  std::array<bool, 256> clases{};
};

}  // namespace Meseta47
