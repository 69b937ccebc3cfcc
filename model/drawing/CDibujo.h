#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "model/drawing/CObjetoFichero.h"
#include "model/drawing/CSetPuntos.h"
#include "model/geometry/CDataSemilla.h"

namespace Meseta47 {

class CPosicionEntidad;
class IPorcentaje;

/// A drawing: lines and sets of points in scaled integers, and the seed that says what an integer stands for. It owns
/// its entities; one keeps its place in memory, and so do its points, until it is taken out of the drawing.
template <class T>
class CDibujo : public CObjetoFichero {
 public:
  CDataSemilla semilla;
  std::uint32_t nEntidades = 0;  ///< entities, deleted ones included; only the drawing writes it
  std::uint32_t nPuntos = 0;     ///< their points, as of the last insertion or ActualizaCantidades
  std::int16_t tipoNube = 0;     ///< 1, 2 or 3: a point cloud, in which the codes of a table are classes of points
  std::uint32_t estado = 0;      ///< for the host, which may mark a drawing by it; 0 for a new one

  explicit CDibujo(CDataSemilla const& laSemilla = CDataSemilla())
      : CObjetoFichero(OBJETO_DIBUJO), semilla(laSemilla) {}
  CDibujo(CDibujo const& o);
  CDibujo(CDibujo&& o) noexcept;
  CDibujo& operator=(CDibujo const& o);
  CDibujo& operator=(CDibujo&& o) noexcept;
  ~CDibujo() override = default;

  using CObjetoFichero::operator=;

  /// The entity of an index from 0 to Cantidad() - 1, without a check.
  [[nodiscard]] CLinea<T> const& operator[](unsigned int i) const { return *entidades[i]; }
  [[nodiscard]] CLinea<T>& operator[](unsigned int i) { return *entidades[i]; }
  [[nodiscard]] unsigned int Cantidad() const { return nEntidades; }

  /// Appends an entity: a copy, or its very points when it is moved in. Its box is computed. An entity of a kind that
  /// is no set of points is kept as a line. True, but for a null pointer.
  bool Inserta(CEntidadDigi<T> const* e);
  bool Inserta(CLinea<T> const& e);
  bool Inserta(CSetPuntos<T> const& e);
  bool Inserta(CLinea<T>&& e);
  bool Inserta(CSetPuntos<T>&& e);

  /// Puts the number of every point to 0.
  void PonNumerosACero();

  /// Orders the entities; no point moves within its entity nor in memory, and equals keep their order. Key 7: along a
  /// Hilbert curve of the centres of their boxes. Key 3: by the area that a line encloses in plan, larger before
  /// smaller, sets of points last. Another key changes nothing. With `ascendente` false the order is the contrary one.
  /// `tipo` restricts it to the entities of a kind, the others staying where they are; -1 is all. O(points) for key 3,
  /// O(n log n) on the entities.
  void Sort(int clave, bool ascendente, short int tipo);

  /// The box of all entities, and of the frame. O(entities).
  [[nodiscard]] CMaximas<T> GetMaximasInt() const;
  [[nodiscard]] CMaximas<double> GetMaximasDouble() const override;
  /// Sets a frame, such as the sheet of a plan, that the box takes in whatever the entities; an empty one takes it off.
  void SetMaximasDouble(CMaximas<double> const& m) override;

  /// Deletes what is repeated; of equal things the first one stays. With `puntos`, points of sets at the position of an
  /// earlier one in any set, and points of a line equal to the one before; without, only lines equal to an earlier one.
  /// `enPlano` compares positions in plan, whatever the height. Entities that have lost all their points leave the
  /// drawing. Deleted entities are not looked at. Returns 1. O(n log n).
  int BorraDuplicadas(bool puntos, bool enPlano);

  /// Joins lines end to end into the longest ones that they can make; rings close. What comes out depends on the lines
  /// alone, not on their order nor on their sense: open lines begin at their lower end, rings at their lowest point and
  /// go on to the lower side, and the lines follow each other by their points, behind all other entities. A joint is
  /// one point where its heights agree, two where they differ.
  ///
  /// It looks at `cuantas` entities from `primera` on (0: all), at those that are lines, not deleted and not closed.
  /// `mismoCodigo` joins only lines of one code; otherwise the first of the codes is kept. `mismaAltura` joins ends at
  /// one place in space; otherwise in plan. `cruces` goes on where more than two ends meet, in such a way that lines
  /// touch there and do not cross, as straight as that allows; otherwise lines end there. Of what was joined, and of
  /// nothing else, lines with fewer points than `minimo` or more than `maximo` (0: any number) leave the drawing.
  /// `quitaDobles` first takes out repeated points, lines that are left with a single place, and lines that follow the
  /// points of another of their code in either sense. Returns the number of joints. O(n log n) on the points.
  int Junta(int primera, int cuantas, bool mismoCodigo, bool mismaAltura, bool cruces, int minimo, int maximo,
            bool quitaDobles);

  /// Appends the entities of another drawing: copies, or the entities themselves when it is moved in. With `convierte`
  /// they are brought to the precision and origin of this one; without, the integers are taken as they are. `tipo`
  /// chooses: 0 all, 1 lines, 2 sets of points. Returns how many came.
  unsigned int Suma(CDibujo const& otro, bool convierte, int tipo);
  unsigned int Suma(CDibujo&& otro, bool convierte, int tipo);

  /// Gives the class of `info` to the points inside the outlines of a drawing: its closed lines, a ring in a ring being
  /// a hole and its own line always inside. Larger outlines stand before smaller ones in it, as key 3 sorts them.
  ///
  /// A point takes the class when that of its own matches some of `incluidos` and none of `excluidos`, and when it is
  /// low enough: no higher than `sobreContorno` above the highest vertex of the outline that holds it, and no higher
  /// than `sobreTodos` above the highest of all; 2147483647 is no limit. Nothing is too low. Points of deleted entities
  /// and those that have the class already stay as they are.
  ///
  /// With `seleccion`, only its points are looked at. `cantidad` grows by the points changed, and their places are
  /// added to `clasificados`. `porcentaje` is asked now and then; the last three may be null. Returns 1, or 2 when
  /// cancelled, with nothing changed. For each point, O(outlines around it and sides on its row).
  int ClasificarPuntosSegunLimite(CDibujo const& limites, CInfoClasificacion const& info, unsigned int& cantidad,
                                  std::vector<CInfoClasificacion> const& incluidos,
                                  std::vector<CInfoClasificacion> const& excluidos, int sobreContorno, int sobreTodos,
                                  std::vector<CPosicionEntidad> const* seleccion,
                                  std::vector<CPosicionEntidad>* clasificados, IPorcentaje* porcentaje);

  void Clear() override;
  /// Counts entities, points and deleted entities into the three counts, in this order.
  void ActualizaCantidades() override;
  /// Positions in metres, with the origin, go through the map, which cannot fail.
  bool Transformacion(CDataHelmertNTV2 const& datos) override;

 private:
  using CEntidad = std::unique_ptr<CLinea<T>>;

  void HazSitio(std::size_t cuantas);
  bool Anade(CEntidad e);

  std::vector<CEntidad> entidades;
  CMaximas<T> marco;
};

URDIMBRE_INSTANCIA_DE(CDibujo<int>);

}  // namespace Meseta47
