#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <span>
#include <utility>
#include <vector>

#include "model/geometry/CCentro.h"
#include "model/geometry/CEsfera.h"
#include "model/geometry/CMaximas.h"
#include "model/storage/CDeReserva.h"
#include "platform/Vectores.h"
#include "tetrahedral/CCara.h"

class CFile;

namespace Meseta47 {

class CPuntoTIN;
class CSetPuntosMdt;
class CSetTetraedros;
template <class TSet, class TElemento, unsigned kEjes>
class CSetEnArbol;
class CTIN;

/// Element of the spatial triangulation: four borrowed points in ascending order of number, their circumsphere, the
/// links of its set's list, the neighbours across its faces, and what the spill knows of its edges and faces. A face is
/// named by the vertices that it holds, so two tetrahedra that share one name it alike.
///
/// A plain record of two cache lines without a virtual table; the first line holds all that a walk reads. Neighbours
/// and list links are kept as numbers of 32 bits. The elements of a mesh come from a pool: any thread may destroy what
/// another made. One that lives elsewhere, and is linked to, takes a number of its own, which costs a lock; 2 million
/// of them can have one. One thread at a time may touch a tetrahedron and its neighbours.
class URDIMBRE_API CTetraedro : public CDeReserva<CTetraedro, true> {
 public:
  /// What is known of an edge against the limit of the spill.
  enum CEstado : short { CORTO = 0, LARGO = 1, DESCONOCIDO = 2 };
  /// Faces, in the order of every list of them; and the edges P1P2, P1P3, P1P4, P2P3, P2P4, P3P4 of each.
  static constexpr unsigned kVertice[4][3] = {{0, 1, 2}, {0, 1, 3}, {0, 2, 3}, {1, 2, 3}};
  static constexpr unsigned kArista[4][3] = {{0, 1, 3}, {0, 2, 4}, {1, 2, 5}, {3, 4, 5}};
  static constexpr unsigned kBytes = 47;  ///< of a tetrahedron in a file

  // --- life ---
  CTetraedro() = default;
  /// Stores the points, sorts them by number and computes the sphere. Coplanar points make an invalid tetrahedron.
  CTetraedro(CCoor3D<int>* a, CCoor3D<int>* b, CCoor3D<int>* c, CCoor3D<int>* d) : puntos{a, b, c, d} {
    OrdenaPorNumero();
    ActualizaMaxMin();
  }
  /// Member by member, links, neighbours and set included.
  CTetraedro(CTetraedro const& o) { Copia(o); }
  CTetraedro& operator=(CTetraedro const& o) {
    if (this != &o) Copia(o);
    return *this;
  }
  /// Unhooks the tetrahedron from its neighbours, whose faces are left as not written; the links of its list stay.
  ~CTetraedro() {
    BorraMisVecinos();
    if ((marcas & kMascaraSitio) == kConNumero) OlvidaNumero();
  }
  /// A copy that knows its number, as the elements of a set do. Throws std::bad_alloc.
  [[nodiscard]] static CTetraedro* Nuevo(CTetraedro const& t);

  // --- queries ---
  /// True when each point object of this tetrahedron is one of the other's, in any order.
  [[nodiscard]] bool operator==(CTetraedro const& o) const;

  [[nodiscard]] CCoor3D<int>* P1() const { return puntos[0]; }
  [[nodiscard]] CCoor3D<int>* P2() const { return puntos[1]; }
  [[nodiscard]] CCoor3D<int>* P3() const { return puntos[2]; }
  [[nodiscard]] CCoor3D<int>* P4() const { return puntos[3]; }
  /// The four of them.
  [[nodiscard]] CCoor3D<int>** Puntos() { return puntos; }
  [[nodiscard]] CCoor3D<int>* const* Puntos() const { return puntos; }
  /// Numbers of the points; 0 for one that is not set.
  [[nodiscard]] int N1() const { return Num(0); }
  [[nodiscard]] int N2() const { return Num(1); }
  [[nodiscard]] int N3() const { return Num(2); }
  [[nodiscard]] int N4() const { return Num(3); }
  [[nodiscard]] CTetraedro* Sig() const { return De(sig); }
  [[nodiscard]] CTetraedro* Ant() const { return De(ant); }
  [[nodiscard]] CTetraedro* GetVecino123() const { return De(vecinos[0]); }
  [[nodiscard]] CTetraedro* GetVecino124() const { return De(vecinos[1]); }
  [[nodiscard]] CTetraedro* GetVecino134() const { return De(vecinos[2]); }
  [[nodiscard]] CTetraedro* GetVecino234() const { return De(vecinos[3]); }
  [[nodiscard]] CSetTetraedros* GetSet() const { return set; }

  /// The circumsphere; the centre's number is `GetIdentificador`.
  [[nodiscard]] CCentro Centro() const;
  /// The mark of every walk: the number of the last point tested. When a file is written, the place in it.
  [[nodiscard]] int GetIdentificador() const { return identificador; }
  [[nodiscard]] int GetUltimoPuntoProyectado() const { return identificador; }
  /// Condemned: the tetrahedron lies in the cavity of the point being inserted.
  [[nodiscard]] bool Borrado() const { return (marcas & kBorrado) != 0; }

  /// Lengths of the edges in space, in scaled units.
  [[nodiscard]] double Distancia12() const { return Distancia(0, 1); }
  [[nodiscard]] double Distancia23() const { return Distancia(1, 2); }
  [[nodiscard]] double Distancia34() const { return Distancia(2, 3); }
  [[nodiscard]] double Distancia41() const { return Distancia(3, 0); }
  [[nodiscard]] double Distancia24() const { return Distancia(1, 3); }
  [[nodiscard]] double Distancia31() const { return Distancia(2, 0); }
  /// The longest edge, computed once: a vertex that is replaced later by itself does not change it.
  double DistanciaMaxima();
  /// The shortest edge.
  [[nodiscard]] double DistanciaMinima() const;
  /// Sum of the areas of the faces, as CTriangulo::CalculaSuperficie gives them.
  [[nodiscard]] double Area(double precision) const;
  /// A third of the area of the face 123, as CTriangulo::CalculaSuperficie gives it, times the height of P4 above it in
  /// scaled units: the units are mixed, and callers print them so. 0 when the face has no plane.
  [[nodiscard]] double Volumen(double precision) const;

  /// Corners and box of the sphere, rounded to integers.
  [[nodiscard]] CCoor3D<int> GetMinEsfera() const;
  [[nodiscard]] CCoor3D<int> GetMaxEsfera() const;
  [[nodiscard]] CMaximas<int> GetMaximasEsfera() const;
  /// Always empty: a tetrahedron has no box but that of its sphere, and drawings of boxes show none for it.
  [[nodiscard]] CMaximas<int> GetMaximas() const { return {}; }

  /// Four points, a sphere with a radius, no two vertices at one position.
  [[nodiscard]] bool EsValido() const;
  /// Whether at least two of the vertices have one of these two numbers; false when the numbers are equal.
  [[nodiscard]] bool ContieneLado(int a, int b) const;
  /// Which face has these three numbers, in ascending order: 1 for 123, 2 for 124, 3 for 134, 4 for 234, 0 for none.
  [[nodiscard]] int ContieneCara(int a, int b, int c) const;
  /// How many faces have no neighbour.
  [[nodiscard]] int CarasLimite() const;
  /// Fills the faces 123, 124, 134, 234. A neighbour without a set, or in a closed one, is none. Always true.
  bool GetCaras(CCara* caras) const;

  // --- changes ---
  void SetSig(CTetraedro* t) { sig = NumeroDe(t); }
  void SetAnt(CTetraedro* t) { ant = NumeroDe(t); }
  /// The links of the list, whatever the name says: neighbours in it, not across faces.
  void SetVecinos(CTetraedro* anterior, CTetraedro* siguiente) {
    SetAnt(anterior);
    SetSig(siguiente);
  }
  void BorraVecinos() { ant = sig = 0; }
  /// Store the neighbour across a face, the states of its three edges, and whether it needs no writing.
  void SetVecino123(CTetraedro* t, short a, short b, short c, bool grabado) { SetVecino(0, t, a, b, c, grabado); }
  void SetVecino124(CTetraedro* t, short a, short b, short c, bool grabado) { SetVecino(1, t, a, b, c, grabado); }
  void SetVecino134(CTetraedro* t, short a, short b, short c, bool grabado) { SetVecino(2, t, a, b, c, grabado); }
  void SetVecino234(CTetraedro* t, short a, short b, short c, bool grabado) { SetVecino(3, t, a, b, c, grabado); }
  /// Clears the first neighbour link that equals `t`, and tells of its face whether it needs no writing.
  void BorraVecino(CTetraedro const* t, bool grabado);
  /// Clears the links between this tetrahedron and its neighbours, on both sides.
  void BorraMisVecinos() { SueltaDeVecinos(false); }
  /// Clears the own neighbour links; the neighbours keep theirs.
  void clear() { vecinos[0] = vecinos[1] = vecinos[2] = vecinos[3] = 0; }
  void SetIdentificador(int n) { identificador = n; }
  void SetUltimoPuntoProyectado(int n) { identificador = n; }
  void SetBorrado(bool b) { marcas = (marcas & ~kBorrado) | (b ? kBorrado : 0); }
  /// Replace one vertex and recompute the sphere, without sorting. False, with nothing changed, for a point equal in x,
  /// y and z to another vertex.
  bool SetPunto1(CCoor3D<int>* p) { return SetPunto(0, p); }
  bool SetPunto2(CCoor3D<int>* p) { return SetPunto(1, p); }
  bool SetPunto3(CCoor3D<int>* p) { return SetPunto(2, p); }
  bool SetPunto4(CCoor3D<int>* p) { return SetPunto(3, p); }
  /// Store and sort the points; with `recalcula` the sphere follows and the mark is cleared.
  void SetPuntos(CCoor3D<int>* a, CCoor3D<int>* b, CCoor3D<int>* c, CCoor3D<int>* d, bool recalcula);
  void SetPuntos(CCoor3D<int>** p, bool recalcula) { SetPuntos(p[0], p[1], p[2], p[3], recalcula); }
  /// Recomputes the sphere of the points as they stand and clears the mark.
  void ActualizaMaxMin();
  /// Sorts the vertices of a tetrahedron that has neighbours, and takes those and the states along.
  void OrdenaPuntos();

  // --- a point against the sphere ---
  /// Whether the point lies inside the sphere or on it, within 1e-7. Leaves the point's number as the mark.
  bool Dentro(CCoor3D<int> const& p);

  // --- spill ---
  /// Writes the faces that may belong to the surface, as three numbers each, and parts from the neighbours. An edge is
  /// long when its squared length passes `limite`, or when it touches the frame; a face goes out when none of its edges
  /// is long, unless it has been dealt with from its other side. A tetrahedron without a long edge lies inside the
  /// solid and writes nothing, unless `todas` is set; one with two frame vertices does nothing at all. With
  /// `intensidades`, by number less 1, ends that differ by more than 10000 make an edge long as well. False when the
  /// disk refuses.
  bool Salva(CFile* fichero, double limite, bool todas, std::vector<unsigned short>* intensidades);
  /// The same into a buffer.
  void Salva(std::vector<std::int32_t>& registros, double limite, bool todas,
             std::vector<unsigned short> const* intensidades);

  // --- file (docs/formats.md)
  /// Writes the numbers of its points, and of the neighbours the mark, which must be their place in the file. False
  /// when the disk refuses.
  bool Write(CFile* fichero) const;
  /// Reads them; until a set resolves them, points and neighbours are those numbers and no addresses. Always 1: a
  /// record that is cut short counts as zeros from there on.
  int Read(CFile* fichero);

 protected:
  /// Raise `a`, `b`, `c` to what is known here of the edges of the face shared with `otro`: a 1 stays a 1. Nothing
  /// happens when no face is shared.
  void DameDistancias(CTetraedro const* otro, short& a, short& b, short& c) const;
  /// The inverse: long or short is written to the edges of that face; one that is long stays long.
  void EstableceDistancias(CTetraedro const* otro, bool a, bool b, bool c);
  /// Heron's formula on a face (0 to 3), its sides measured to P2, P3 and P1 whatever the face: right for the first
  /// face only. Kept for hosts that know it so.
  [[nodiscard]] double GetArea(short cara) const;

 private:
  friend class CSetTetraedros;
  friend class CSetEnArbol<CSetTetraedros, CTetraedro, 3>;
  friend class CDeReserva<CTetraedro, true>;
  friend class CEstrella;
  friend class CMallaEnFlujo;

  // Bit 0: condemned; 1 to 4: faces 123, 124, 134, 234 need no writing; 5 to 14: states of the first five edges; 16 and
  // 17: of the last; 24 and 25: where the element lives. The rest is kept as it is.
  static constexpr std::uint32_t kBorrado = 1;
  static constexpr unsigned kBitGrabado = 1;
  static constexpr unsigned kBitArista[6] = {5, 7, 9, 11, 13, 16};
  static constexpr std::uint32_t kDesconocidas = 2U << 5 | 2U << 7 | 2U << 9 | 2U << 11 | 2U << 13 | 2U << 16;
  static constexpr std::uint32_t kConNumero = 1U << 24, kEnReserva = 2U << 24, kMascaraSitio = 3U << 24;
  /// Scaled units: from here on the distances to a centre are rounded more coarsely than the tolerance of their
  /// comparison (2 r 1e-7 against r^2 2^-53): the vertices tell, exactly.
  static constexpr double kRadioDudoso = 0x1p27;

  [[nodiscard]] static CTetraedro* De(std::uint32_t numero) {
    return numero == 0 ? nullptr : reinterpret_cast<CTetraedro*>(CNumeros::Direccion<128>(numero));
  }
  [[nodiscard]] static std::uint32_t NumeroDe(CTetraedro* t) { return t == nullptr ? 0 : t->Numero(); }
  /// The number that others link to this one by.
  [[nodiscard]] std::uint32_t Numero() { return EsDeReserva() ? CReserva::Numero<128>(this) : NumeroPropio(); }
  [[nodiscard]] bool EsDeReserva() const { return (marcas & kMascaraSitio) == kEnReserva; }
  [[nodiscard]] std::uint32_t NumeroPropio();
  void OlvidaNumero() noexcept;
  static void Deja(CTetraedro* t, CReserva::CLote& lote) noexcept;
  static constexpr unsigned kBytesMarcas = 3;
  static constexpr std::intptr_t kEsquinas = 8;
  void PonRegistro(char (&registro)[kBytes]) const;
  void TomaRegistro(char const* registro);
  void OlvidaEstados();
  bool ResuelvePuntos(CSetPuntosMdt& deLaMalla, CPuntoTIN* marco);
  /// Numbers of points become points, in ascending order; those of neighbours are compared with how many there are.
  bool ResuelvePrimero(CSetPuntosMdt& deLaMalla, CPuntoTIN* marco, std::size_t total);
  /// Whether each neighbour has the face, and points back to this place.
  [[nodiscard]] bool ConcuerdaConVecinos(std::span<CTetraedro* const> todos, std::size_t lugar) const;
  void EnlazaPorLugar(std::span<CTetraedro* const> todos);
  void CambiaPuntos(CSetPuntosMdt& nuevos, std::vector<int> const& mapa);
  void LlevaCaras(CTIN& tin, int limite) const;
  [[nodiscard]] static CTetraedro* PideSitio();
  void Copia(CTetraedro const& o);

  [[nodiscard]] int Num(unsigned i) const { return puntos[i] != nullptr ? puntos[i]->num : 0; }
  [[nodiscard]] double Distancia(unsigned i, unsigned j) const { return puntos[i]->Distancia(*puntos[j], 1); }
  [[nodiscard]] CTetraedro* Vecino(unsigned cara) const { return De(vecinos[cara]); }
  [[nodiscard]] short Arista(unsigned i) const { return static_cast<short>((marcas >> kBitArista[i]) & 3U); }
  void SetArista(unsigned i, short estado) {
    marcas = (marcas & ~(3U << kBitArista[i])) | (static_cast<std::uint32_t>(estado) & 3U) << kBitArista[i];
  }
  [[nodiscard]] bool Grabado(unsigned cara) const { return ((marcas >> (kBitGrabado + cara)) & 1U) != 0; }
  void SetGrabado(unsigned cara, bool grabado) {
    marcas = (marcas & ~(1U << (kBitGrabado + cara))) | static_cast<std::uint32_t>(grabado) << (kBitGrabado + cara);
  }
  void SetVecino(unsigned cara, CTetraedro* t, short a, short b, short c, bool grabado);
  void SueltaDeVecinos(bool grabado);
  /// Clears the links of its neighbours to it; its own, and what they know of the faces, stay.
  void DejaDeSerVecino();
  /// Which face is shared with the tetrahedron of that number; 4 for none.
  [[nodiscard]] unsigned CaraHacia(std::uint32_t numero) const { return LugarEntreCuatro(vecinos, numero); }
  bool SetPunto(unsigned i, CCoor3D<int>* p);
  void OrdenaPorNumero();
  void CambiaVertices(unsigned i, unsigned j);
  void PonEsfera(CEsfera const& e);
  [[nodiscard]] bool TieneVerticeEn(CCoor3D<int> const& p) const {
    return *puntos[0] == p || *puntos[1] == p || *puntos[2] == p || *puntos[3] == p;
  }
  [[nodiscard]] double Exceso(double x, double y, double z) const {
    const double dx = cx - x, dy = cy - y, dz = cz - z;
    return dx * dx + dy * dy + dz * dz - radio2;
  }
  /// Whether the point lies inside the sphere or on it, exactly, whatever its size.
  [[nodiscard]] bool EnEsfera(CCoor3D<int> const& p) const {
    const double exceso = Exceso(p.x, p.y, p.z);
    return std::abs(exceso) > margen ? exceso < 0
                                     : LadoDeEsfera(*puntos[0], *puntos[1], *puntos[2], *puntos[3], p) <= 0;
  }

  // What a walk reads.
  alignas(64) double cx = 0;
  double cy = 0, cz = 0, radio2 = 0;
  double margen = 0;  ///< how far from 0 an excess must be for its sign to be certain
  std::int32_t identificador = 0;
  std::uint32_t marcas = kDesconocidas;
  std::uint32_t vecinos[4] = {};
  // The rest.
  CCoor3D<int>* puntos[4] = {};
  double radio = 0;
  double distanciaMaxima = 0;     ///< longest edge, once asked for; 0: not computed
  CSetTetraedros* set = nullptr;  ///< holder, not owned
  std::uint32_t sig = 0, ant = 0;
};
static_assert(sizeof(CTetraedro) == 128, "two cache lines");

}  // namespace Meseta47
