#pragma once

#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>

#include "model/geometry/CMaximas.h"
#include "planar/CSetLados2D.h"
#include "planar/CTriangulo2D.h"
#include "run/CSetEnArbol.h"

class CFile;
class CStdioFile;

namespace Meseta47 {

class CTIN;
template <class T>
class CDibujo;
class CAfinidad;
class CBordeDelMarco;
class CInfoClasificacion;
class CMitad;
class CRango;
class CSegmentos;
struct CAlturasVecinas;
struct CMedidasDeTriangulos;

/// A cell of the quadtree of triangle lists. A triangle sits in the deepest set whose quadrant wholly holds the box of
/// its circle, so what a set and its subtree hold can only be disturbed by a new point inside that quadrant: once the
/// quadrant's last point is in, the set can be closed, cut off from the living mesh and written while the rest grows.
///
/// The set at level 0 also holds the open list, through which new triangles find their neighbours, and the start of the
/// point location walk. A set owns its triangles. Only the inserting thread touches a set that is not closed; a closed
/// set belongs to the worker that empties it.
class URDIMBRE_API CSetTriangulos2D : public CSetEnArbol<CSetTriangulos2D, CTriangulo2D, 2> {
 public:
  /// What becomes of a point. After any but HECHA the mesh is as it was.
  enum CRespuesta : int {
    HECHA = 0,
    FUERA = 1,        ///< it lies outside the set; never at level 0
    SIN_INICIO = 2,   ///< no start triangle, or its set is closed
    REPETIDO = 3,     ///< it falls on a vertex of its cavity
    SIN_CIRCULO = 4,  ///< no circle holds it
    POR_ALTURA = 5,   ///< refused by the tolerance
  };

  /// Triangles that an insertion made and destroyed.
  struct CBalance {
    std::uint64_t creados = 0, condenados = 0;
  };

  /// How far a point may stand above the surface.
  struct CTolerancia {
    int unidades = 0;             ///< scaled units; 0 for any height
    bool soloSuperficie = false;  ///< duplicates are told as such whatever their height, and beyond the border of the
                                  ///< surface, where only the frame is, any height will do
  };

  // --- life ---
  explicit CSetTriangulos2D(unsigned nivelInicial = 0);
  /// Member by member: the copy shares the tree and the lists with the original, only the open list is its own. Whoever
  /// copies must see to it that one of the two lets go of them before it is destroyed.
  CSetTriangulos2D(CSetTriangulos2D const& o);
  CSetTriangulos2D& operator=(CSetTriangulos2D const& o);
  ~CSetTriangulos2D();
  /// Destroys all triangles of the subtree and empties the lists; the children stay.
  void clear();
  /// Back to a root or leaf without triangles, children and closure, its level kept.
  void Vacia();

  // --- the tree ---
  /// Sets the box and its centre; with `conHijos` makes the four children.
  void EstableceDivisiones(CMaximas<int> const& caja, bool conHijos);
  /// Divides in advance for `n` evenly spread triangles.
  void EstableceDivisiones(unsigned n, CMaximas<int> const& caja);
  /// Triangles of the subtree; of the own list alone once closed.
  [[nodiscard]] unsigned Cantidad() const { return CantidadTotal(); }
  [[nodiscard]] CSetTriangulos2D* GetNivel0() { return Raiz(); }
  [[nodiscard]] CSetTriangulos2D const* GetNivel0() const;
  /// Triangles with a free side: the root's list, on whichever set it is asked for.
  [[nodiscard]] std::vector<CTriangulo2D*>& Abiertos();
  [[nodiscard]] std::vector<CTriangulo2D*> const& Abiertos() const;

  // --- filing ---
  /// Files a copy of the triangle by the box of its circle, or by the box given, and links it to its neighbours.
  void Inserta(CTriangulo2D const& t);
  void Inserta(CTriangulo2D const& t, CMaximas<int> const& caja);
  /// Appends to this set's list, whatever the name says, a copy of the triangle, linked; or the triangle itself, linked
  /// on demand. The box is not used.
  void InsertaOrdenado(CTriangulo2D const& t, CMaximas<int> const& caja);
  void InsertaOrdenado(CTriangulo2D* t, CMaximas<int> const& caja, bool enlaza);
  /// Takes the triangle out of the list without destroying it.
  void Borra(CTriangulo2D* t);

  // --- searches ---
  /// The triangle that has the side from `b` to `a` (against the direction given); `lado` takes which of its sides it
  /// is (1, 2 or 3). While the open list holds anything it alone is searched, and a triangle whose last free side this
  /// is leaves it. Null when there is none.
  CTriangulo2D* GetContieneLado(CCoor3D<int> const& a, CCoor3D<int> const& b, int& lado);
  /// Finds and condemns the cavity of `p`: the triangles whose circles hold it. Their sides go to `lados`, the
  /// triangles are destroyed and the rim is left in the open list. Called on the root. A CRespuesta; `tolerancia` is
  /// the greatest height above the surface in scaled units, 0 for any, and after POR_ALTURA the point's number is not
  /// what it was. `aceptados` counts the triangles taken by the walk and those of the cavity, `rechazados` those that
  /// don't hold `p`. Costs about 20 circle tests when `desde` is near `p`.
  int Implicados(CCoor3D<int>* p, CSetLados2D& lados, unsigned& aceptados, unsigned& rechazados, CTriangulo2D* desde,
                 int tolerancia);
  /// Inserts a point into the mesh: the cavity that `Implicados` finds gives way to one triangle from the point to each
  /// side of its boundary, filed and linked, in the order of the sides. What `Implicados`,
  /// `CSetLados2D::BorraDuplicados` and `Inserta` do one after another, with the same outcome, several times as fast:
  /// the boundary grows with the cavity, and it tells the neighbours. Called on the root; `cerca` is an open set near
  /// the point, where filing begins. Answers and arguments as those of `Implicados`; `balance` takes what was made and
  /// destroyed.
  int InsertaPunto(CCoor3D<int>* p, CSetTriangulos2D& cerca, CTriangulo2D* desde, CTolerancia tolerancia,
                   unsigned& aceptados, unsigned& rechazados, CBalance& balance);
  /// Sides of all triangles of the subtree that are not in a closed set.
  void GetLados(CSetLados2D& lados) const;
  /// A triangle to start a walk from: the own one, a child's, an ancestor's; null at the end.
  [[nodiscard]] CTriangulo2D* GetActual(bool conHijos) const;
  /// Collects triangles of the subtree that have the point object as a vertex. The walk of a list stops at the first
  /// triangle that lies wholly to the right of the point, although the list is not sorted by x: callers need triangles
  /// near the point, not all of them, and stopping early is what makes this cheap.
  void GetTriangulosDePunto(CCoor3D<int> const* p, std::vector<CTriangulo2D*>& triangulos) const;

  // --- closing and emptying ---
  /// Closes the set and its subtree and cuts their triangles off from the living mesh. Returns how many those are; 0
  /// for a set closed already.
  unsigned QuitaTrianguloActual();
  /// Writes the triangles of the set as records of three point numbers, its own list first, then each child in order;
  /// frees them and the children. Those of an open set are cut off from the living mesh before. False when the disk
  /// refused any of it: the rest is freed all the same. Those that touch the frame go to `borde` instead, if there is
  /// one; with it, `medidas` notes what is written.
  bool Salva(CFile* fichero, CBordeDelMarco* borde = nullptr, CMedidasDeTriangulos* medidas = nullptr);
  /// Cuts the triangles of the set with the levels at multiples of `equidistancia`, leaving out those with a side whose
  /// squared plan length passes `lado2`; frees them and the children, as `Salva` does. An interval below 1 has no
  /// level. `borde`, if any, remembers those that touch the frame, which give no contour.
  void Curva(CDibujo<int>& curvas, int equidistancia, double lado2);
  void Curva(CSegmentos& curvas, int equidistancia, double lado2, CBordeDelMarco* borde = nullptr);
  /// Grows the class `tipo1` in the triangles of the set, among points whose classes and intensities stand at their
  /// number less 1, until a sweep over its own list changes nothing: a point of neither class takes `tipo1` from a
  /// neighbour of it, across a side that all four ranges let pass. Each sweep is followed by the same in each child, in
  /// order. `rangoZ` and `rangoIntensidad` judge the differences along the side, `rangoDistancia` its squared length in
  /// plan, `rangoPendiente` rise over run from the neighbour to the point; null ones let all pass, and of the last two
  /// those without a limit. Intensities are looked at when there are both they and a range of them. Triangles at the
  /// frame, and those whose points have all one of the two classes, are freed. With `salvar` the others are written as
  /// by `Salva`, else they stay. Those of an open set are cut off from the living mesh before. Adds the points changed
  /// to `cambiados`; always false.
  bool ClasificaPorAfinidad(CFile* fichero, std::vector<CInfoClasificacion>& infos,
                            std::vector<unsigned short>* intensidades, CInfoClasificacion const& tipo1,
                            CInfoClasificacion const& tipo2, CRango const* rangoZ, CRango const* rangoIntensidad,
                            CRango const* rangoDistancia, CRango const* rangoPendiente, unsigned& cambiados,
                            bool salvar);
  /// The same for a run, and no triangle stays: they are freed, and written before if they are asked for. False when
  /// the disk refused any.
  bool ClasificaPorAfinidad(CFile* fichero, CAfinidad& afinidad);
  /// Tells each vertex of the set's triangles how high its companions are, and frees the triangles; the same with the
  /// children, which stay, emptied. Triangles that touch the frame tell nothing.
  ///
  /// A side steeper than `pendiente` (rise over run; up to 1e-7 slopes are not looked at) that rises by more than twice
  /// `altura` (scaled units) counts as a steep rise to its upper end, once a triangle. Heights are told by triangles
  /// without a side whose squared plan length passes `lado2`. The arrays have an entry for each point number. Nothing
  /// is allocated.
  void BuscaPicos(CAlturasVecinas& alturas, double lado2, double pendiente, int altura);
  void BuscaPicos(std::vector<int>& minimos, std::vector<int>& maximos, std::vector<int>& sumas,
                  std::vector<unsigned char>& vecinos, double lado2, std::vector<unsigned char>& empinados,
                  double pendiente, int altura);
  /// Empties the set into a model whose points carry these numbers: a triangle goes in when no vertex belongs to the
  /// frame and no side is longer in plan than `ladoMaximo` scaled units.
  void RellenaMDT(CTIN& tin, int ladoMaximo, CStdioFile* fichero);

  // --- diagnostics ---
  /// Stamps every triangle of the subtree with the point's number.
  void ComprobarPuntoNuevo(CCoor3D<int> const& p);
  /// Appends the free sides of the own triangles and, deliberately less tidy, all sides of the children.
  void CompruebaLadosExteriores(CSetLados2D& lados) const;
  /// Walks the subtree.
  void Lista() const;
  /// Draws the tree: a ring with the code "LIMITE" around each set and, with `triangulos`, a ring around the box of
  /// each own triangle, its code the level. Children always draw theirs.
  void GraficoMaxMin(CDibujo<int>& dibujo, bool triangulos) const;

 private:
  template <class Destino>
  void CortaTodo(Destino& curvas, int equidistancia, double lado2, CBordeDelMarco* borde);
  template <class T>
  bool BarreAfines(T& tabla, bool adelante);
  template <class T>
  void AsientaAfines(T& tabla);
  // What becomes of the triangles of a set that is done with: planar/CSetTriangulos2D_Consume.h.
  template <class F>
  void ConsumeLista(F&& trabajo);
  template <class F>
  void Consume(F&& trabajo);
  /// Box of a circle, not rounded.
  struct CCaja {
    double minX, minY, maxX, maxY;
  };
  /// Limits that a box keeps to if it lies strictly on one side of some centre lines.
  struct CMarco {
    double minX, minY, maxX, maxY;
    [[nodiscard]] bool Contiene(CCaja const& c) const {
      const bool enX = static_cast<int>(c.minX >= minX) & static_cast<int>(c.maxX <= maxX);
      const bool enY = static_cast<int>(c.minY >= minY) & static_cast<int>(c.maxY <= maxY);
      return static_cast<int>(enX) & static_cast<int>(enY);
    }
  };
  /// What the mesh needs while it grows: the open list and the working lists of an insertion. The root's.
  class CObra;
  friend class CMitad;

  static CCaja CajaDe(CTriangulo2D const& t);
  static CCaja CajaDe(CMaximas<int> const& m) {
    return {static_cast<double>(m.Minimo.x), static_cast<double>(m.Minimo.y), static_cast<double>(m.Maximo.x),
            static_cast<double>(m.Maximo.y)};
  }
  /// The set for the box, at or below this one. A full leaf on the way is divided. `inicioDeRaiz` here and below: where
  /// a walk starts that nothing nearer gives a start, the root's `inicio` unless two threads insert.
  CSetTriangulos2D& SetPara(CCaja const& caja, CTriangulo2D*& inicioDeRaiz);
  void HazHijos();
  void Divide(CTriangulo2D*& inicioDeRaiz);
  [[nodiscard]] int HijoAbiertoPara(CCaja const& caja) const;
  void EnlazaVecinos(CTriangulo2D* t);
  void Libera();
  void Desengancha(CObra* suObra, CTriangulo2D*& inicioDeRaiz);
  void Desengancha();
  void DesenganchaTodo();
  /// QuitaTrianguloActual for the thread whose work on the mesh that is.
  unsigned Cierra(CObra* suObra, CTriangulo2D*& inicioDeRaiz);
  void RecogeNumeros(std::vector<std::int32_t>& numeros, CBordeDelMarco* borde, CMedidasDeTriangulos* medidas);
  CTriangulo2D* BuscaEnLista(CCoor3D<int> const& a, CCoor3D<int> const& b, int& lado);

  CObra& Obra();

  /// What a box must keep to, to be sent here from the root when all sets on the way are open.
  CMarco paso{-HUGE_VAL, -HUGE_VAL, HUGE_VAL, HUGE_VAL};
  std::unique_ptr<CObra> obra;  ///< level 0 only, from the first need on
};

// What every new triangle goes through.

inline CSetTriangulos2D::CCaja CSetTriangulos2D::CajaDe(CTriangulo2D const& t) {
  const double cx = t.circulo.x, cy = t.circulo.y, r = t.circulo.radio;
  return {cx - r, cy - r, cx + r, cy + r};
}

}  // namespace Meseta47
