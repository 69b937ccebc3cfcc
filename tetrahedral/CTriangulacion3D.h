#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "model/drawing/CDibujo.h"
#include "model/drawing/CObjetoFichero.h"
#include "model/terrain/CDataTriangulacion.h"
#include "model/terrain/CSetPuntosMdt.h"
#include "model/threads/Codigos.h"
#include "platform/Manejadores.h"
#include "run/CFicheroTriples.h"
#include "run/CPosicion.h"
#include "tetrahedral/CCascoCompleto.h"
#include "tetrahedral/CDivisiones3D.h"
#include "tetrahedral/CHiloSalvaTetraedrosEnlazados.h"
#include "tetrahedral/CResumenEspacial.h"
#include "tetrahedral/CSetTetraedros.h"

class CStdioFile;

namespace Meseta47 {

class CMarcha;
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
  [[nodiscard]] CTetraedro* TetraedroInicial(CSetTetraedros& cerca) const;

  HANDLE evento = nullptr;  ///< signalled while the worker lives
  unsigned finura = 0;
  CSetTetraedros::CBalance balance;
  CResumenEspacial resumen;
};

}  // namespace Meseta47
