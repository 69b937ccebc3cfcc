#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/drawing/CDibujo.h"
#include "run/CFicheroTriples.h"

class CFile;

namespace Meseta47 {

class CAvance;
class CDataSemilla;

/// The surface of a run as linking leaves it, on its way to a file without a model in between: its vertices are the
/// points of the mesh where they stand in the drawings, in that order, and its faces the first triangles of the
/// temporary file, in theirs. All of them must turn clockwise, and every point of the mesh must have one.
///
/// Takes four bytes a point. The drawings are borrowed, and stand still.
class CSuperficieDeRun {
 public:
  /// Behind the drawings so far.
  void Anade(CDibujo<int> const& dibujo);
  /// Counts the points that have a number: the vertices. On all processors.
  void Cuenta();
  [[nodiscard]] std::size_t Vertices() const { return vertices; }

  /// Writes the surface as a PLY file: vertices in real coordinates, faces counter-clockwise. `numeros` is the greatest
  /// number of a point, `ruta` the temporary file, of which the first `caras` triangles are the faces. Reports two
  /// passes. kHecho, kCancelado; kFicheroInaccesible when `destino` refuses; kFicheroInconsistente when the other does.
  [[nodiscard]] int EscribePLY(CFile& destino, CDataSemilla const& semilla, std::size_t numeros, CString const& ruta,
                               std::size_t caras, CAvance& avance) const;

 private:
  static constexpr std::size_t kPorTramo = 1 << 14;

  /// Points side by side, and the place of its first vertex among all.
  struct CTramo {
    CCoor3D<int> const *desde, *hasta;
    std::size_t vertice;
  };

  std::vector<CTramo> tramos;
  std::size_t vertices = 0;
};

}  // namespace Meseta47
