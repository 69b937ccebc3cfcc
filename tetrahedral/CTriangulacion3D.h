#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "model/drawing/CDibujo.h"
#include "model/drawing/CObjetoFichero.h"
#include "model/terrain/CDataTriangulacion.h"
#include "model/terrain/CSetPuntosMdt.h"
#include "model/threads/Codigos.h"
#include "platform/Manejador.h"
#include "run/CFicheroTriples.h"
#include "run/CPosicion.h"
#include "tetrahedral/CCascoCompleto.h"
#include "tetrahedral/CDivisiones3D.h"
#include "tetrahedral/CHiloSalvaTetraedrosEnlazados.h"
#include "tetrahedral/CResumenEspacial.h"
#include "tetrahedral/CSetTetraedros.h"

class CFile;
class CStdioFile;

namespace Meseta47 {

class CDataExportarMDT;
class CMarcha;
class CPosicionEntidad;
class CTIN;
class IPorcentaje;

/// Delaunay tetrahedralisation of the points of a drawing.
///
/// Every graphic entity and point set whose code takes part contributes its vertices. Space is divided in advance so
/// that the last point of each cell is known; as soon as that point is in, the cell's tetrahedra are final, leave the
/// mesh and are written to a temporary file by a worker, unless the run is to keep them.
///
/// Spheres are judged exactly wherever doubles cannot tell, so no tetrahedron is flat or inverted whatever the points,
/// as long as the frame around them (a fifth wider than their greatest extent) fits 32 bits. Points on one sphere all
/// condemn nearly the whole mesh of one another: clouds of that kind cost as the square of their number.
///
/// A run works on the stored points themselves: it writes their numbers and keeps pointers to them, so a drawing must
/// not move its points while one is on, nor while tetrahedra are kept. Runs answer the codes of
/// model/threads/Codigos.h and report to the application's IPorcentaje. One object does one run at a time, for one
/// thread; several objects may run side by side on their own drawings.
class URDIMBRE_API CTriangulacion3D : public CObjetoFichero {
 public:
  using CDivisiones = CDivisiones3D;  ///< a cell of the division tree
  using CObjetoFichero::operator=;
  using CCuatro = CCascoCompleto::CCuatro;
  /// Receives the numbers of a tetrahedron's points. What it throws ends the walk and reaches whoever asked for it.
  using CRecibeTetraedro = std::function<void(CCuatro const&)>;

  // --- life ---
  /// The first argument selects nothing. `elIdentificador` goes into the name of the temporary file.
  CTriangulacion3D(int, CDataSemilla const& laSemilla, CDataTriangulacion const& losDatos, unsigned elIdentificador);
  CTriangulacion3D(int, CDataSemilla const& laSemilla, unsigned elIdentificador);
  /// Takes divisions, parameters, seed, extents, counters and the point set of another object, not its tetrahedra.
  CTriangulacion3D(CTriangulacion3D& otra, unsigned elIdentificador);
  CTriangulacion3D& operator=(CTriangulacion3D const&) = delete;
  ~CTriangulacion3D() override;
  /// Counted points and extents back to nothing. The divisions and the mesh stay until the next run, which begins by
  /// dropping them.
  void Clear() override;

  // --- queries ---
  /// Scaled units in a metre.
  [[nodiscard]] double Precision() const { return semilla.Precision(); }
  [[nodiscard]] CDataSemilla const& Semilla() const { return semilla; }
  [[nodiscard]] CDataTriangulacion const& Data() const { return datos; }
  [[nodiscard]] unsigned CantidadPuntos() const { return cantidadPuntos; }
  [[nodiscard]] unsigned CantidadTetraedros() const { return setRaiz.CantidadTotal(); }
  /// Extents of the points that take part, in scaled units.
  [[nodiscard]] CMaximas<int> const& GetMaximasInt() const { return maximas; }
  [[nodiscard]] CMaximas<double> GetMaximasDouble() const override;
  void SetMaximasDouble(CMaximas<double> const& m) override;
  [[nodiscard]] bool EsModificadoPuntos() const { return puntos.modificado != 0; }
  /// Of the point set; the first point for an index out of range, null when the set is empty.
  [[nodiscard]] CPuntoTIN* Punto(unsigned i);
  [[nodiscard]] CTetraedro* Tetraedro(unsigned i) const { return setRaiz.Tetraedro(i); }
  /// Calls `recibe` with each tetrahedron in memory, those with corners of the frame too, in the order of files.
  void RecorreMalla(CRecibeTetraedro const& recibe) const;
  /// Corner -1 to -8 of the frame, from 0.
  [[nodiscard]] CPuntoTIN const& Esquina(unsigned i) const { return esquinas[i]; }
  void CopiaTetraedros(std::vector<CTetraedro>& salida, std::vector<CCoor3D<int>*> const& losPuntos) const {
    setRaiz.CopiaTetraedros(salida, losPuntos);
  }
  /// Tetrahedra, points and 0.
  void ActualizaCantidades() override;
  /// What the last run counted.
  [[nodiscard]] CResumenEspacial const& Resumen() const { return resumen; }

  /// How many times finer than usual the next runs divide space; 0 leaves it to them. Cells are usually sized as though
  /// points filled a cube of three times their extent, which is coarse: with 27 the cells of an evenly filled cloud
  /// hold about 200 points. Finer cells let go of tetrahedra earlier, and more points, the first of each, go in before
  /// the rest; the mesh is the same, the order of what is spilled is not.
  void SetFinura(unsigned veces) { finura = veces; }

  // --- runs ---
  /// Triangulates `dibujo` and keeps all tetrahedra in memory, over copies of its points in the order of models: the
  /// number of each is its place, from 1. The drawing may then go; `vaciar` has it emptied. The codes of runs.
  int Run(CDibujo<int>& dibujo, bool vaciar);
  /// Triangulates `dibujo` and makes `tin` of the faces none of whose edges is longer than `longitudMaxima` metres, in
  /// space (0 and less: none is too long), and whose tetrahedra are not wholly made of such edges, unless `todas` is
  /// set; those towards the frame always count as long. Tetrahedra leave memory as the run goes on. `posiciones`, when
  /// given, tells of each point of the model which point of the drawing it was. The codes of runs.
  int Run(CDibujo<int>& dibujo, CTIN& tin, double longitudMaxima, bool vaciar,
          std::vector<CPosicionEntidad>* posiciones, bool todas);

  /// Triangulates `dibujo` and writes all tetrahedra, in the order in which they are finished, to the temporary file:
  /// four numbers of 32 bits each, ascending, those of its points as the run leaves them in the drawing, below 0 a
  /// corner of the frame. Each leaves memory as soon as no point to come can lie in its sphere, whatever the cells.
  /// `TetraedrosEscritos` is that file until the next run. The codes of runs; after any but kHecho there is no file.
  int RunTetraedros(CDibujo<int>& dibujo);
  [[nodiscard]] CFile* TetraedrosEscritos() const { return ficheroTemporal.Fichero(); }
  [[nodiscard]] CString const& RutaTetraedros() const { return ficheroTemporal.Ruta(); }
  void BorraTetraedrosEscritos() { ficheroTemporal.Borra(); }
  /// Calls `recibe` with each tetrahedron of that file that has no corner of the frame, its numbers ascending. With
  /// `completa` those follow that the frame has eaten of the convex hull (CCascoCompleto): together they are the mesh
  /// of the points alone, exactly. `dibujo` is the run's, unchanged. kHecho, kCancelado, or kFicheroInaccesible when
  /// the file cannot be read, or is not there.
  int RecorreTetraedros(CDibujo<int> const& dibujo, bool completa, CRecibeTetraedro const& recibe);

  // --- surface of a mesh that is kept ---
  /// Fills `tin`, by the points of this mesh in their places, with the faces whose three edges are all shorter than
  /// `limite` scaled units, of tetrahedra that also have a longer one. kHecho or kCancelado.
  int GenerarMDT(CTIN& tin, int limite);
  /// Writes that surface, for the limit that the object has of its file, as CModeloDigital does. Codes as there.
  int Exportar(CString const& ruta, CDataExportarMDT const& como);

  // --- file (docs/formats.md) ---
  /// Write the finished mesh, in version 1 (bare points, no seed) or 2 (all that the points carry). By path it takes
  /// its name when it is whole. kHecho, kCancelado or kFicheroInaccesible.
  int Write(CFile* elFichero, int version);
  int Write(CString const& ruta, int version);
  /// Read either version, with one reader a processor, each by a handle of its own on the path of the file. What was in
  /// the object goes. The bool selects nothing. kHecho; kCancelado; kFicheroInaccesible when the file cannot be opened,
  /// its extents are cut short or the mark of a node is neither 0 nor 1; kFicheroCortado when it ends before what it
  /// announces; kFicheroInconsistente when it is no such file or contradicts itself. After any but kHecho the object
  /// has neither points nor tetrahedra. No more memory is taken than ten times what the file holds.
  int Read(CFile* elFichero, bool);
  int Read(CString const& ruta, bool todo);
  /// Which version a file is, 0 for none. Leaves the file behind the 16 bytes that tell.
  [[nodiscard]] static int VersionMDT(CFile* elFichero);
  [[nodiscard]] static bool EsFormatoMDT3D(CFile* elFichero);

  // --- changes of a mesh that is kept ---
  /// Take points out, by their indices: one that is in no tetrahedron (it repeats another, or was taken out before), or
  /// is not there, ends it with false and nothing changed; a list passes over indices that are not there. What is left
  /// is a Delaunay mesh of the other points; where no five lie on a sphere, the one that they would have had alone.
  /// Points keep their indices; the number of one that is taken out becomes negative. O(k log k) on the k tetrahedra
  /// around all of them, and a small run with a thread and a temporary file of its own: take many at once.
  ///
  /// Should that run fail, or be cancelled, their place stays without tetrahedra, and the answer is true all the same:
  /// `Resumen().huecos` tells.
  bool BorraPunto(unsigned indice);
  bool BorraPunto(std::vector<unsigned>& indices);
  /// Adds a point to a finished mesh that is in memory. False when it lies outside the frame or at the place of another
  /// point, or when the set of points has no room left: meshes point at its points, so it does not move them.
  bool PuntoNuevo(CCoor3D<int> const& p, CStdioFile* registro);

 protected:
  // --- phases; each answers a run's code, kHecho to go on ---
  /// Counts and measures the points that pass the filter, divides space, and records the last point of every cell and
  /// the first of every leaf.
  int Rellena(CDibujo<int>& dibujo);
  /// One pass: with `contar` it counts and measures, without it records.
  int Rellena(CDibujo<int>& dibujo, CMaximas<int>& caja, unsigned& progreso, unsigned& cuenta, unsigned total,
              bool contar);
  void EstableceDivisiones(unsigned n, CMaximas<int> const& caja);
  void EstableceDivisiones(CDivisiones& celda, CSetTetraedros& set);
  /// The corners of a cube around the extents, with a tenth of the greatest width to spare on each side.
  void GeneraEsquinas();

  /// Inserts one stored point. 0: it is in. 1: outside the set. 2: no tetrahedron to start from. 3: it falls on another
  /// point. 4: no sphere holds it. 5: it lies in the plane of a face of its cavity. The point is numbered in any case.
  /// The three references take the tetrahedra implied and the counters of the search. With `salvar` the cell that the
  /// point finishes is closed and queued.
  int TriangulaPunto(CCoor3D<int>* p, unsigned entidad, unsigned punto, unsigned& implicados, unsigned& visitados,
                     unsigned& rechazados, bool salvar, bool todas, unsigned short* intensidad,
                     std::vector<unsigned short>* intensidades, CStdioFile* registro);
  /// The same in a finished mesh: no number is given, no cell is looked at, and nothing is spilled.
  int TriangulaPunto(CCoor3D<int>* p, unsigned& implicados, unsigned& visitados, unsigned& rechazados,
                     CStdioFile* registro);

  /// Builds the frame, opens the temporary file, starts the worker, inserts all points and sees the worker through.
  /// With `salvar` the mesh is spilled: after kHecho the file is open and whole, and no tetrahedron is left. Without it
  /// all of them are kept, and no file is. After anything but kHecho there is no file either. `todas` is handed to the
  /// spill. `progresoInicial` is where the bar begins.
  int EnlazaLista(CDibujo<int>& dibujo, int progresoInicial, bool salvar, bool todas);
  /// What both ways of taking points out come to. Those that come twice are dropped from the list; the others become
  /// how many tetrahedra went, how many were looked at, and 0.
  bool BorraPunto(std::vector<CPuntoTIN*>& quitados, unsigned& implicados, unsigned& visitados, unsigned& rechazados);
  /// What closes a run that kept its mesh, and one that spilled it.
  int GenerarMDT(CDibujo<int> const& dibujo);
  int GenerarMDT(CDibujo<int> const& dibujo, CTIN& tin, std::vector<CPosicionEntidad>* posiciones);
  /// Closes the set of a cell and queues it.
  void Salva(CDivisiones* celda);

  CSetTetraedros setRaiz{0};
  std::int32_t longitudLimite = 0;
  std::int32_t segundoEntero = 1;
  CArbolDivisiones3D divisiones;
  std::uint32_t cantidadPuntos = 0;  ///< points accepted by the filling; while linking, the last number given
  CDataSemilla semilla;
  CPuntoTIN esquinas[8];  ///< corners of the frame, numbered -1 to -8
  CFicheroTriples ficheroTemporal;
  std::vector<CPosicion> primerosPuntos;  ///< first point of each leaf, in the order of filling
  double longitudLimite2 = 2147483647.0;  ///< squared length above which an edge is long, in scaled units
  CSetPuntosMdt puntos{0, 0};             ///< numbered points of a finished run
  CMaximas<int> maximas;                  ///< extents of the accepted points
  CDataTriangulacion datos;
  CColaCerrados<CSetTetraedros> setsCerrados;  ///< from the inserting thread to the worker
  CHiloSalvaTetraedrosEnlazados hiloSalva;     ///< after what it works on
  std::int32_t reservado = 0;                  ///< 0: kept for the hosts that copy it
  std::uint32_t identificador;

 private:
  using CInserta = std::function<void(CCoor3D<int>*, unsigned entidad, unsigned punto)>;

  [[nodiscard]] IPorcentaje* Progreso() const;
  void PreparaEnlace();
  [[nodiscard]] std::vector<CTetraedro> Marco();
  void SueltaMalla();
  void RegistraPuntos(CDibujo<int> const& dibujo, CSetPuntosMdt& destino, std::vector<int>& mapa,
                      std::vector<CPosicionEntidad>* posiciones);
  [[nodiscard]] static bool TieneInfos(CDibujo<int> const& dibujo);
  int LlevaCaras(CTIN& tin, std::vector<int> const& mapa);
  [[nodiscard]] bool EscribeCabecera(CFile& elFichero, int version) const;
  int EscribePuntos(CFile& elFichero, int version);
  int Lee(CFile& elFichero);
  int LeeCabecera(CFile& elFichero, int version);
  int LeePuntos(CFile& elFichero);
  int LeeBloquePuntos(CFile& elFichero);
  int LeeArbol(CFile& elFichero);
  int LeeTetraedros(CString const& ruta, std::vector<CSetTetraedros*>& sets, std::vector<unsigned long long>& lugares,
                    std::uint64_t total);
  void ConstruyeMarco();
  int Enlaza(CDibujo<int>& dibujo, int progresoInicial, bool salvar, bool todas);
  int EnlazaEnFlujo(CDibujo<int>& dibujo);
  int InsertaSemillas(CDibujo<int>& dibujo, CMarcha& marcha, CInserta const& inserta);
  int InsertaResto(CDibujo<int>& dibujo, CMarcha& marcha, CInserta const& inserta);
  bool EsperaAlHilo(CMarcha const& marcha);
  int Abandona(int codigo);
  int Concluye(bool salvar);
  void ResumeBalance();
  void Apunta(int respuesta, CCoor3D<int> const& p, unsigned visitados, CStdioFile* registro);
  [[nodiscard]] CSetTetraedros& SetCercano(CCoor3D<int> const& p, CDivisiones const* celda);
  bool BuscaCavidad(std::vector<CPuntoTIN*> const& quitados, std::vector<CTetraedro*>& cavidad, unsigned& visitados);
  /// `faltan` takes the faces of the cavity's border that the small run has not.
  int RellenaCavidad(std::vector<CPuntoTIN*> const& quitados, std::vector<CTetraedro*> const& cavidad,
                     std::vector<CTetraedro*>& nuevos, std::vector<CSetTetraedros::CFaz>& faltan, unsigned& visitados);
  [[nodiscard]] static std::vector<CPuntoTIN*> PuntosAlrededor(std::vector<CTetraedro*> const& cavidad,
                                                               std::vector<CPuntoTIN*> const& quitados);
  static bool EnsanchaCavidad(std::vector<CSetTetraedros::CFaz> const& faltan, std::vector<CTetraedro*>& cavidad);
  int Cavidad(CDibujo<int>& dibujo, CTriangulacion3D const& madre);
  [[nodiscard]] CTetraedro* Inicial(CCoor3D<int> const& p);
  [[nodiscard]] CTetraedro* TetraedroInicial(CSetTetraedros& cerca) const;

  HANDLE evento = nullptr;  ///< signalled while the worker lives
  unsigned finura = 0;
  CSetTetraedros::CBalance balance;
  CResumenEspacial resumen;
};

}  // namespace Meseta47
