#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "model/drawing/CObjetoFichero.h"
#include "model/geometry/CDataSemilla.h"
#include "model/storage/VectorCrudo.h"
#include "model/terrain/CLado.h"
#include "model/terrain/CRellenoTIN.h"
#include "model/terrain/CSetPuntosMdt.h"
#include "model/terrain/CTriangulo.h"

namespace Meseta47 {

class CAvance;
class IPorcentaje;

/// Index of no triangle.
inline constexpr std::uint32_t kSinTriangulo = 0xFFFFFFFF;

/// A surface of triangles over a set of points: 12 bytes a triangle, 24 once linked.
///
/// It is filled with Inserta(), from any number of threads; gets its outline from GenerarLimiteAPartirLados(); and is
/// finished by Sort(), which brings the triangles into an order that depends on them alone and links each to its three
/// neighbours. Triangles are in canonical order (CTriangulo::ColocaPuntos): smallest position first, clockwise seen
/// from above.
///
/// But for Inserta(), an object belongs to one thread while it is changed; reading it is safe from any number.
class URDIMBRE_API CTIN : public CObjetoFichero {
 public:
  CSetPuntosMdt puntos;
  unsigned char estado = 0;  ///< 0 in the making; 1 sorted; 3 and above, its points have the richer form in files
  int longitudMaxima = 0;    ///< scaled units: greatest side in plan
  CDataSemilla semilla;
  bool conVecinos = true;  ///< false: Sort() links nothing, even where asked to, for an owner that reads no neighbours

  /// An empty model. The first integer selects nothing; a `forma` of 3 or above becomes the state and selects the
  /// richer form of the points.
  CTIN(int, int forma, CDataSemilla const& laSemilla);
  CTIN(CTIN const& otro);
  CTIN& operator=(CTIN const& otro);
  ~CTIN() override;

  // --- filling

  /// Takes over the points and leaves the argument empty. Triangles and outline go: they spoke of other points.
  void SetPuntosMdt(CSetPuntosMdt& nuevos);

  /// Adds a triangle of points of this model, in canonical order. `unico` has Sort() drop all but one of the faces that
  /// have the same three points. The first and the last bool select nothing. From any number of threads at once, while
  /// the set of points stands still. False, with nothing added, when a point is null or not of this model.
  bool Inserta(CTriangulo& triangulo, bool, bool unico, bool);

  /// Builds the outline from sides, to be called before Sort(). They are pairs of point indices, the first point being
  /// `base`; equal indices are skipped. They must hold every side that bounds exactly one triangle of the model and may
  /// hold others, which are recognised and dropped.
  ///
  /// `sentido` 1 runs outer rings counter-clockwise, seen from above, and holes clockwise; any other value the reverse.
  /// No ring meets a point twice: where the surface touches itself in a point, rings touch there. Each begins at its
  /// lowest index, and they stand in ascending order of their first two indices. kHecho, or kFicheroInconsistente with
  /// no outline when the sides do not close. O(t + s log s) for t triangles and s sides.
  int GenerarLimiteAPartirLados(std::vector<CLado>& lados, int sentido, int base);

  /// Orders the triangles by their first, second and third point, and gives back the memory of the filling; with
  /// `enlaza`, links them too, unless `conVecinos` is false. Reports to the interface, which may be null. The integer
  /// selects nothing. O(t) on all processors, 12 bytes a triangle and 4 a point above the result. kHecho, or
  /// kCancelado, which leaves the triangles as they were.
  int Sort(IPorcentaje* progreso, int, bool enlaza);

  /// Drops triangles and outline; the points stay.
  void LiberaTriangulos();

  // --- reading

  /// Null when the index is out of range.
  [[nodiscard]] CPuntoTIN* Punto(unsigned int i) { return puntos.at(i); }
  [[nodiscard]] CPuntoTIN const* Punto(unsigned int i) const { return puntos.at(i); }

  /// Triangles, those not sorted yet included.
  [[nodiscard]] std::uint64_t Cantidad() const;

  /// Whether no triangle was inserted after the last Sort().
  [[nodiscard]] bool EstaOrdenado() const;

  // The following speak of sorted triangles: EstaOrdenado(), and `i` is below Cantidad().

  /// Point indices of a triangle.
  [[nodiscard]] Terna const& Vertices(std::uint32_t i) const { return triangulos[i]; }
  [[nodiscard]] bool EstaEnlazado() const { return enlazado; }
  /// The triangles across the sides 1-2, 2-3 and 3-1; kSinTriangulo where there is none, or where more than two
  /// triangles meet in the side. Asks for a linked model.
  [[nodiscard]] Terna const& Vecinos(std::uint32_t i) const { return vecinos[i]; }
  /// The triangle by value, its points being those of this model, and the sides by which its neighbours meet it; these
  /// are -1 in a model that is not linked.
  [[nodiscard]] CTriangulo Triangulo(std::uint32_t i);

  /// Closed rings of point indices; the last point joins the first.
  [[nodiscard]] std::vector<std::vector<std::uint32_t>> const& Limite() const { return limite; }
  /// Whether a ring of the outline surrounds what does not belong to the surface.
  [[nodiscard]] bool EsHueco(std::size_t anillo) const { return huecos[anillo]; }

  // --- as a file object

  // A model is not taken to another reference system: its triangles would no longer be those of its points there.

  using CObjetoFichero::operator=;
  /// Points, triangles, rings of the outline.
  void ActualizaCantidades() override;
  void Clear() override;
  /// The box of the points. O(n).
  [[nodiscard]] CMaximas<double> GetMaximasDouble() const override;
  /// Nothing happens: the box is that of the points.
  void SetMaximasDouble(CMaximas<double> const&) override {}

 private:
  friend class CModeloDigital;  // reads and writes triangles and outline as they stand

  [[nodiscard]] std::vector<std::span<Terna const>> Trozos() const;
  bool Ordena(CAvance& avance);
  bool Enlaza(CAvance& avance);

  CRellenoTIN relleno;
  VectorCrudo<Terna> triangulos, vecinos;
  bool quitaRepetidos = false, enlazado = false;
  std::vector<std::vector<std::uint32_t>> limite;
  std::vector<bool> huecos;
};

}  // namespace Meseta47
