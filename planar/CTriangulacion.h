#pragma once

#include <vector>

#include "model/drawing/CDibujo.h"
#include "model/drawing/CObjetoFichero.h"
#include "model/geometry/CDataSemilla.h"
#include "model/terrain/CDataSacaLimites.h"
#include "model/terrain/CDataTriangulacion.h"

namespace Meseta47 {

/// What a host calls a triangulation: the seed of its drawings, what of them takes part, and the outlines they have.
///
/// Not thread-safe; several objects may work side by side, on one drawing too.
class URDIMBRE_API CTriangulacion : public CObjetoFichero {
 public:
  CTriangulacion(CDataSemilla const& laSemilla, CDataTriangulacion const& losDatos);

  using CObjetoFichero::operator=;

  /// Adds to `limites` the outline of the points of `dibujo`: the rim of their triangulation in plan, without the
  /// triangles that have a side longer than `data` allows. What hangs together by such sides is one piece; pieces in
  /// the holes of others are outlined as well. A point or a row of points without a triangle is no piece, and a drawing
  /// without pieces has no outline, which is no failure.
  ///
  /// Each ring is a closed line with the code "Limite", of points of the drawing, numbered 0; of several at one plan
  /// position the highest. No ring meets a point twice; rings touch where pieces do. `sentido` 1 runs outer rings
  /// counter-clockwise, seen from above, and holes clockwise; any other value the reverse. `soloExteriores` other than
  /// 0 leaves the holes out. A null `data` limits nothing. The rings and their order depend on the positions of the
  /// points alone, not on their order nor on the number of threads.
  ///
  /// Neither the drawing nor the numbers of its points change. Points are chosen by the height window and the codes of
  /// the parameters, triangles by their slopes. Progress goes to the application's IPorcentaje from a message level of
  /// 1 up, as three phases of the caller's work, which is left open. kHecho, kCancelado, or another code of a run; but
  /// for kHecho, `limites` stays as it was and so does the box, and no temporary file stays in any case. The cost of a
  /// planar run: O(n log n), about 170 bytes a point at the peak.
  int LimiteDibujo(CDibujo<int>& dibujo, CDibujo<int>& limites, CDataSacaLimites const* data, int sentido,
                   int soloExteriores);
  /// The same for points, all of which count. Whoever moves them in spares the room for a second list.
  int LimitePuntos(std::vector<CCoor3D<int>> puntos, CDibujo<int>& limites, CDataSacaLimites const* data, int sentido,
                   int soloExteriores);

  [[nodiscard]] CDataSemilla const& Semilla() const { return semilla; }
  [[nodiscard]] CDataTriangulacion const& Data() const { return datos; }

  /// Whether outlines are those of the points alone: without a limit, the convex hull. By default they are not, as in
  /// CTriangulacion2D, whose conditions hold here too.
  [[nodiscard]] bool SinMarco() const { return sinMarco; }
  void SinMarco(bool asi) { sinMarco = asi; }

  /// Drops counts and box.
  void Clear() override;
  /// The box of the points outlined last, or the one that was set.
  [[nodiscard]] CMaximas<double> GetMaximasDouble() const override { return caja; }
  void SetMaximasDouble(CMaximas<double> const& m) override { caja = m; }

 private:
  [[nodiscard]] std::vector<CCoor3D<int>> PuntosDe(CDibujo<int> const& dibujo) const;

  CDataSemilla semilla;
  CDataTriangulacion datos;
  CMaximas<double> caja;
  bool sinMarco = false;
};

}  // namespace Meseta47
