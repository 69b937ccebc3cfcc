#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <unordered_set>
#include <vector>

#include "model/geometry/CMaximas.h"
#include "run/CSetEnArbol.h"
#include "tetrahedral/CSetCaras.h"
#include "tetrahedral/CTetraedro.h"

class CFile;

namespace Meseta47 {

template <class T>
class CDibujo;
class CEstrella;
class CMarcha;
class CPuntoTIN;
class CSetPuntosMdt;
class CTIN;

/// A cell of the octree of tetrahedron lists. A tetrahedron sits in the deepest set whose octant wholly holds the box
/// of its sphere, so what a set and its subtree hold can only be disturbed by a new point inside that octant: once the
/// octant's last point is in, the set can be closed, cut off from the living mesh and written while the rest grows.
///
/// The set at level 0 also holds the list of tetrahedra with a free face, through which new ones find their neighbours,
/// and the start of the point location walk. A set owns its tetrahedra. Only the inserting thread touches a set that is
/// not closed; a closed set belongs to the worker that empties it.
class URDIMBRE_API CSetTetraedros : public CSetEnArbol<CSetTetraedros, CTetraedro, 3> {
 public:
  static constexpr unsigned kBytesCabecera = 48;  ///< of a node in a file, before its tetrahedra

  /// Tetrahedra that insertions made and destroyed, and what it took.
  struct CBalance {
    std::uint64_t creados = 0, condenados = 0;
    std::uint64_t esferas = 0;      ///< spheres that a point was tested against
    std::uint64_t exactas = 0;      ///< tests that doubles could not decide
    std::uint64_t pasos = 0;        ///< steps of the descents to a first tetrahedron of the cavity
    std::uint64_t porBusqueda = 0;  ///< points whose cavity was filled through the list of free faces
  };

  std::vector<CTetraedro*> posiblesVecinos;  ///< tetrahedra with a free face; level 0 only
  std::uint32_t numLista = 0;                ///< the caller's
  bool modificado = true;                    ///< something changed since `SetModificado(false)`

  // --- life ---
  explicit CSetTetraedros(unsigned nivelInicial = 0);
  /// Copy the tree, its boxes and counters, and none of the tetrahedra: the lists of the copy are empty.
  CSetTetraedros(CSetTetraedros const& o);
  CSetTetraedros& operator=(CSetTetraedros const& o);
  ~CSetTetraedros();
  /// Destroys the tetrahedra of the own list; at a root with children those of the tree, on a pool of threads. The
  /// children stay.
  void clear();
  /// Back to a root without tetrahedra, children and closure, its level kept.
  void Vacia();

  // --- the tree ---
  /// Sets the box and its centre; with `crea` makes the eight children.
  void EstableceDivisiones(CMaximas<int> const& caja, bool crea);
  /// Divides in advance for `n` evenly spread tetrahedra.
  void EstableceDivisiones(unsigned n, CMaximas<int> const& caja);
  [[nodiscard]] bool TieneHijos() const { return hijos != nullptr; }
  /// Child `i`; null for 8 and more. Only on a set that has children.
  [[nodiscard]] CSetTetraedros* Hijo(unsigned i) { return i < kHijos ? &hijos[i] : nullptr; }
  /// The leaf that the point falls in.
  [[nodiscard]] CSetTetraedros* DameHijo(CCoor3D<int> const& p);
  [[nodiscard]] unsigned Cantidad() const { return cantidad; }
  [[nodiscard]] CTetraedro* Primero() const { return primero; }
  [[nodiscard]] unsigned GetNumLista() const { return numLista; }
  void SetNumLista(unsigned n) { numLista = n; }
  [[nodiscard]] bool EsModificado() const { return modificado; }
  void SetModificado(bool b) { modificado = b; }
  void VaciaPosiblesVecinos() { posiblesVecinos.clear(); }

  // --- filing ---
  /// Files a copy of the tetrahedron by the box of its sphere. For a face with `busca...` set a neighbour is searched
  /// by the face's points, in the list of free faces and, with `buscaLista`, while that is empty, in the root's own
  /// list; for a face without, the neighbour that the tetrahedron has is told. With `sinRepetir` a tetrahedron of the
  /// same four points is not filed twice. False when it was not filed: for that reason, or because its octant is
  /// closed.
  bool Inserta(CTetraedro& t, bool busca123, bool busca124, bool busca134, bool busca234, bool buscaLista,
               bool sinRepetir);
  /// Takes the tetrahedron out of the list without destroying it. With `anota` its neighbours join the list of free
  /// faces.
  void Borra(CTetraedro* t, bool anota);

  // --- searches ---
  /// The tetrahedron that has the face; `codigo` takes which of its faces it is, as `ContieneCara` tells. While the
  /// list of free faces holds anything it alone is searched, and a tetrahedron whose last free face this is leaves it;
  /// else, with `buscaLista`, this set's own list. Null when there is none, or for a closed set.
  CTetraedro* GetContieneCara(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c, unsigned& codigo,
                              bool buscaLista);
  /// Finds and marks the cavity of `p`: the tetrahedra whose spheres hold it. Their faces go to `caras`, they
  /// themselves to `implicados`; the mesh stays as it is but for the marks. Called on the root. 0: done, and the caller
  /// destroys them. 1: `p` lies outside this set (never at level 0). 2: no start, or its set is closed. 3: `p` falls on
  /// a vertex of the cavity; the caller clears the marks. 4: no sphere holds `p`. `visitados` counts the tetrahedra of
  /// the walk, `rechazados` those around the cavity that don't hold `p`.
  int Implicados(CCoor3D<int>& p, CSetCaras& caras, std::vector<CTetraedro*>& implicados, unsigned& visitados,
                 unsigned& rechazados, CTetraedro* inicial);
  /// Inserts a point into the mesh: its cavity gives way to one tetrahedron from the point to each face of its
  /// boundary, filed and linked, in the order of the faces. What `Implicados`, `CSetCaras::BorraDuplicadas` and
  /// `Inserta` do one after another, with the same outcome, several times as fast. Called on the root; `cerca` is an
  /// open set on the point's path down the tree. Answers and counters as those of `Implicados`, but that the start is
  /// first brought close to the point, and 5 for a point coplanar with a face of its cavity; `implicados` is the size
  /// of the cavity. After 1 to 5 the mesh is as it was.
  int InsertaPunto(CCoor3D<int>* p, CSetTetraedros& cerca, CTetraedro* desde, unsigned& implicados, unsigned& visitados,
                   unsigned& rechazados, CBalance& balance);
  /// A living tetrahedron near this set: its own start, a child's, an ancestor's. Without `exige` the caller knows that
  /// this set has a start.
  [[nodiscard]] CTetraedro* GetActual(bool exige) const;

  // --- queries on the tree ---
  /// The four faces of every unmarked tetrahedron of the subtree that is not in a closed set.
  void GetCaras(CSetCaras& caras) const;
  /// Faces of the subtree without a neighbour, each with its own tetrahedron in the neighbour's place.
  void CompruebaCarasExteriores(CSetCaras& caras) const;
  /// The `i`th tetrahedron of the subtree, the children's before the own; null past the end.
  [[nodiscard]] CTetraedro* Tetraedro(unsigned i) const;
  /// The `i`th, the own ones before the children's. Beyond the own list each child is asked for the same number, what
  /// its elder brothers hold not taken off: kept for the hosts that know it so.
  [[nodiscard]] CTetraedro* GetTetraedroSegunID(int i) const;
  /// The tetrahedron of the own list with the same point objects in the same positions.
  [[nodiscard]] CTetraedro* BuscaTetraedro(CTetraedro const& t) const;
  /// Appends the tetrahedra of the subtree that have the face's three numbers.
  void BuscaTetraedros(CCara const& cara, std::vector<CTetraedro*>& salida) const;
  /// Appends the tetrahedra around a point object of the mesh, with a ring around them; some come twice. False, with
  /// nothing appended, when none is found.
  bool GetTetraedrosDePunto(CCoor3D<int> const* p, std::vector<CTetraedro*>& salida);
  /// Appends copies, without links, of the tetrahedra of the subtree whose vertices all have an equal among `puntos`;
  /// the copies refer to those.
  void CopiaTetraedros(std::vector<CTetraedro>& salida, std::vector<CCoor3D<int>*> const& puntos) const;
  /// Appends the tetrahedra in the order of files: own list, then each child.
  void RellenaVectorPunteros(std::vector<CTetraedro*>& salida) const;
  /// Appends the sets of the subtree, each after its own subtree; with `soloLlenos` only those that hold tetrahedra.
  void RellenaVectorHijos(std::vector<CSetTetraedros*>& salida, bool soloLlenos);

  // --- removal, closing and emptying ---
  /// Removes and destroys the tetrahedra with an edge of these two numbers, in the sets whose box holds both points.
  void BorraContieneLado(CCoor3D<int> const& a, CCoor3D<int> const& b);
  /// Closes the set and its subtree and cuts their tetrahedra off from one another and from the living mesh. Returns
  /// how many those are; 0 for a set closed already.
  unsigned QuitaTetraedroActual();
  /// Spills the tetrahedra of a closed set, its own list first, then each child in order, as `CTetraedro::Salva` does;
  /// frees them and the children. False when the disk refused any of it: the rest is freed all the same.
  bool Salva(CFile* fichero, double limite, bool todas, std::vector<unsigned short>* intensidades);

  // --- another part for a part ---
  /// Appends the tetrahedra whose spheres hold the point, those that have it on them included: what inserting it would
  /// condemn. Called on the root. `desde` is where to begin, as in `Implicados`. False when there is none.
  bool BuscaEsferas(CCoor3D<int> const& p, CTetraedro* desde, std::vector<CTetraedro*>& salida, unsigned& visitados,
                    CBalance& balance);
  /// Whether both have the same faces of one tetrahedron alone, and no face of three. O(n log n).
  [[nodiscard]] static bool LlenanLoMismo(std::vector<CTetraedro*> const& unos, std::vector<CTetraedro*> const& otros);
  /// Destroys tetrahedra of the tree and files and links others in their place, which are in no set and fill the same
  /// room, or are none: then the room stays empty. Called on the root, which owns them from then on. O(n log n).
  void Sustituye(std::vector<CTetraedro*> const& viejos, std::vector<CTetraedro*> const& nuevos);

  // --- file (docs/formats.md) ---
  /// Writes the node and its subtree; the root numbers the tetrahedra first, in the order of the file, and writes how
  /// many there are. `valor` of `total` is reported before each record. kHecho, kCancelado or kFicheroInaccesible.
  int Write(CFile* fichero, unsigned& valor, unsigned total);
  /// Reads an empty node and its subtree, and appends the tetrahedra to `leidos`. Codes as those of CTriangulacion3D's
  /// `Read`; after a failure the set is to be emptied.
  int Read(CFile* fichero, std::vector<CTetraedro*>& leidos, unsigned& valor, unsigned total);
  /// Reads the head and the tetrahedra of one node and does not go down. From any thread, a node each.
  int Read(CFile* fichero);
  /// Makes the tree of an empty node from the heads alone, and notes of each set where its head stands. No more memory
  /// is taken than the file is long, ten times over.
  int ReadCabeceras(CFile* fichero, std::vector<CSetTetraedros*>& sets, std::vector<unsigned long long>& lugares);
  /// Makes points and neighbours of the numbers that all tetrahedra of a file, in its order, were read with. `marco`
  /// are the eight corners of the frame. The sphere is that of the points, no edge is known and no face written. On all
  /// processors. kHecho, kCancelado, or kFicheroInconsistente for a mesh that contradicts itself; after a failure the
  /// set is to be emptied.
  int AsignarVecinos(std::vector<CTetraedro*> const& todos, CSetPuntosMdt& puntos, CPuntoTIN* marco, unsigned& valor,
                     unsigned total);

  // --- the end of a run ---
  /// Exchanges every vertex with a number above 0 for the point `mapa[number - 1] - 1` of the set, and sorts the
  /// vertices again. With both counters each tetrahedron is reported. kHecho, or kCancelado for a set whose own list
  /// was cut short; its children's answers are not looked at.
  int CambiaPunteros(CSetPuntosMdt& puntos, std::vector<int> const& mapa, int* hechos, int* total);
  /// Gives the model, which has the points of this mesh in their places, the faces of three edges shorter than `limite`
  /// (scaled units) of all tetrahedra that also have a longer edge. A face of two such tetrahedra is given twice: the
  /// model keeps one. kHecho or kCancelado.
  int GenerarMDT(CTIN& tin, int limite, int& contador, int total);

  // --- diagnostics ---
  /// Stamps every tetrahedron of the subtree with the point's number.
  void ComprobarPuntoNuevo(CCoor3D<int> const& p);
  /// Walks the subtree.
  void ComprobarVecinos() const;
  /// Draws the tree: six lines "LIMITE" around each set. Tetrahedra have no boxes, so `tetraedros` adds nothing.
  void GraficoMaxMin(CDibujo<int>& dibujo, bool tetraedros) const;

 protected:
  [[nodiscard]] bool EstaDentro(CMaximas<int> const& caja) const { return maximas.Dentro(caja, 1); }
  [[nodiscard]] static bool ComparaXMin(CMaximas<int> const& a, CMaximas<int> const& b) { return a < b; }
  /// Greatest corners, then least ones: whether b is the lesser, or both are equal.
  [[nodiscard]] static bool ComparaXMax(CMaximas<int> const& a, CMaximas<int> const& b);
  [[nodiscard]] CSetTetraedros* GetNivel0() { return Raiz(); }
  bool Inserta(CTetraedro& t, CMaximas<int> const& caja, bool busca123, bool busca124, bool busca134, bool busca234,
               bool buscaLista, bool sinRepetir);
  /// Append to this set's list, whatever the name says, a copy of the tetrahedron, or the tetrahedron itself. The box
  /// is not used.
  void InsertaOrdenado(CTetraedro const& t, CMaximas<int> const& caja, bool busca123, bool busca124, bool busca134,
                       bool busca234, bool buscaLista);
  void InsertaOrdenado(CTetraedro* t, CMaximas<int> const& caja, bool busca123, bool busca124, bool busca134,
                       bool busca234, bool buscaLista);
  /// Numbers the tetrahedra of the subtree in the order of files.
  void SetIdentificadores(int& siguiente);

 private:
  friend class CEstrella;
  friend class CTriangulacion3D;
  class CBorrador;

  using CNumeros3 = std::array<int, 3>;
  /// A face of some tetrahedron, by the numbers of its points, which ascend in both of those that share it.
  struct CFaz {
    CNumeros3 numeros;
    CTetraedro* tetraedro;
    unsigned cara;

    bool operator<(CFaz const& o) const { return numeros < o.numeros; }
  };
  /// All faces, ascending; and of ascending ones those of one tetrahedron alone: false when some face has three.
  [[nodiscard]] static std::vector<CFaz> Fazes(std::vector<CTetraedro*> const& tetraedros);
  [[nodiscard]] static bool Borde(std::vector<CFaz> const& fazes, std::vector<CFaz>& borde);
  [[nodiscard]] static bool EstaEn(std::vector<CFaz> const& fazes, CNumeros3 const& numeros);
  /// Adds to tetrahedra what can be reached from them without crossing a face of `borde`, where `numero` tells what
  /// number a vertex has there.
  static void Inunda(std::vector<CTetraedro*>& tetraedros, std::vector<CFaz> const& borde,
                     std::function<int(CTetraedro const&, unsigned)> const& numero);
  /// Adds the tetrahedron across a face, and those of the same sphere around it.
  static void AnadeEsfera(CFaz const& desde, std::unordered_set<CTetraedro const*>& vistos,
                          std::vector<CTetraedro*>& salida);

  int LlevaCaras(CTIN& tin, int limite, CMarcha& marcha);
  int EscribeNodo(CFile& fichero, CMarcha& marcha) const;
  int LeeCabecera(CFile& fichero, unsigned& cuantos, bool& conHijos);
  int LeeTetraedros(CFile& fichero, unsigned cuantos, CMarcha* marcha);
  int LeeNodo(CFile& fichero, std::vector<CTetraedro*>& leidos, CMarcha& marcha, std::uint64_t fin);
  int LeeCabeceras(CFile& fichero, std::uint64_t fin, std::vector<CSetTetraedros*>& sets,
                   std::vector<unsigned long long>& lugares, std::uint64_t& total);
  static int Resuelve(std::vector<CTetraedro*> const& todos, CSetPuntosMdt& puntos, CPuntoTIN* marco, CMarcha& marcha);
  void Divide();
  void Quita(CTetraedro* t, CSetTetraedros& raiz);
  void EnlazaPorPuntos(CTetraedro* t, bool const (&busca)[4], bool buscaLista);
  CTetraedro* BuscaEnPosibles(int a, int b, int c, unsigned& codigo);
  CTetraedro* BuscaEnLista(CCoor3D<int> const& a, CCoor3D<int> const& b, CCoor3D<int> const& c, unsigned& codigo);
  [[nodiscard]] bool EsAncestroDe(CSetTetraedros const* s) const;
  CTetraedro* PrimeroQueContiene(CCoor3D<int> const& p, std::int32_t marca, unsigned& visitados);
  bool CreceCavidad(CCoor3D<int> const& p, CSetCaras& caras, std::vector<CTetraedro*>& implicados,
                    unsigned& rechazados);
  int BuscaSemilla(CCoor3D<int> const& p, CTetraedro* desde, CTetraedro*& semilla, unsigned& visitados,
                   CBalance& balance);
  int SustituyePorBusqueda(CCoor3D<int>* p, CTetraedro* semilla, unsigned& implicados, unsigned& rechazados,
                           CBalance& balance);
  void SustituyeCavidad(CCoor3D<int>* p, CSetTetraedros& cerca);
  [[nodiscard]] static CSetTetraedros* SetParaCaja(CTetraedro const* t, CSetTetraedros& desde);
  void VaciaLista() noexcept;
  void VaciaRama() noexcept;
  [[nodiscard]] CSetTetraedros const* SiguienteDeRama(CSetTetraedros const* s) const;
  template <class F>
  void RecorreRama(F const& f) const;
  template <class F>
  bool VaciaEn(CFile* fichero, F const& registra);

  std::unique_ptr<CBorrador> borrador;  ///< level 0 only
};

}  // namespace Meseta47
