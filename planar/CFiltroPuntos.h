#pragma once

#include <array>
#include <vector>

#include "model/drawing/CDibujo.h"
#include "model/drawing/CPosicionEntidad.h"
#include "model/terrain/CDataTriangulacion.h"

namespace Meseta47 {

/// Which entities and points of one drawing take part in a run: by height window, and by entity code, or by point class
/// where the drawing is a cloud. Built once a pass; answers in a few instructions.
class URDIMBRE_API CFiltroPuntos {
 public:
  /// `escala` is scaled units in a metre. With `clasesSiempre` classes are looked at whatever the kind of drawing.
  CFiltroPuntos(CDataTriangulacion const& losDatos, double escala, CDibujo<int> const& dibujo,
                bool clasesSiempre = false);

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

/// What the visit of a point tells the walk.
enum class CPaso {
  Sigue,
  SinAvanzar,  ///< go on, but leave the selection where it stands
  Termina,
};

/// Walks the points of a drawing that pass the filter, in step with a selection when there is one. The selection is
/// sorted by entity and point, and the walk ends when it runs out; an entity or a point other than the one under its
/// cursor is passed over. `visita` offers
///   bool Entidad(CLinea<int> const&)  - before anything is asked of an entity; false ends the walk
///   bool Entera(CLinea<int> const&)   - an admitted entity without a selection; true if it is dealt with as a whole
///   CPaso Punto(CLinea<int> const&, unsigned entidad, unsigned punto)
template <class V>
void RecorrePuntos(CDibujo<int> const& dibujo, CFiltroPuntos const& filtro,
                   std::vector<CPosicionEntidad> const* seleccion, V&& visita) {
  std::size_t cursor = 0;
  const auto elegido = [&](unsigned entidad) {
    return cursor < seleccion->size() && static_cast<unsigned>((*seleccion)[cursor].entidad) == entidad;
  };
  for (unsigned e = 0; e < dibujo.Cantidad(); ++e) {
    CLinea<int> const& linea = dibujo[e];
    if (seleccion != nullptr && cursor >= seleccion->size()) return;
    if (!visita.Entidad(linea)) return;
    if (seleccion != nullptr && !elegido(e)) continue;
    if (!filtro.AdmiteEntidad(linea)) {
      while (seleccion != nullptr && elegido(e)) ++cursor;
      continue;
    }
    if (seleccion == nullptr && visita.Entera(linea)) continue;
    const auto n = static_cast<unsigned>(linea.NPuntos());
    for (unsigned k = 0; k < n; ++k) {
      if (seleccion != nullptr) {
        if (!elegido(e)) break;
        if (static_cast<unsigned>((*seleccion)[cursor].punto) != k) continue;
      }
      CPaso paso = CPaso::Sigue;
      if (filtro.AdmitePunto(*linea.PunteroAPunto(static_cast<int>(k)))) paso = visita.Punto(linea, e, k);
      if (paso == CPaso::Termina) return;
      if (seleccion == nullptr || paso == CPaso::SinAvanzar) continue;
      // A point named twice in the selection is dealt with once.
      const CPosicionEntidad hecho = (*seleccion)[cursor];
      while (cursor < seleccion->size() && (*seleccion)[cursor] == hecho) ++cursor;
    }
  }
}

}  // namespace Meseta47
