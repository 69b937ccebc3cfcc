#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <limits>
#include <memory>
#include <vector>

#include "model/drawing/CDibujo.h"
#include "model/drawing/CInfoClasificacion.h"
#include "model/drawing/CPosicionEntidad.h"
#include "model/terrain/CDataTriangulacion.h"
#include "model/threads/CNivelMensajes.h"
#include "model/threads/Codigos.h"
#include "planar/CAfinidad.h"
#include "planar/CAlturasVecinas.h"
#include "planar/CBordeDelMarco.h"
#include "planar/CDivisiones2D.h"
#include "planar/CEncargo.h"
#include "planar/CHiloSalvaTriangulosEnlazados.h"
#include "planar/CMedidasDeTriangulos.h"
#include "planar/CReparto2D.h"
#include "planar/CResumenPlano.h"
#include "planar/CSegmentos.h"
#include "planar/CSetTriangulos2D.h"
#include "platform/CString.h"
#include "platform/Manejador.h"
#include "run/CFicheroTriples.h"
#include "run/CFiltroPuntos.h"
#include "run/CPosicion.h"

class CHiloPuntosPorAfinidad;
class CStdioFile;

namespace Meseta47 {

class CAvance;
class CBusquedaPuntos;
class CCondicionHIntensidad;
class CCondicionHRGB;
class CDataPicos;
class CDosMitades;
struct CFase;
struct CFuentes;
struct CGeneracion;
class CIntensidadTipo;
class CMarcha;
class CMitad;
class CNivelDeCurvas;
class CRango;
class CRGBTipo;
class CPuntoTIN;
class CSetPuntosMdt;
class CTIN;
class IPorcentaje;

/// Planar Delaunay triangulation of the points of drawings, or of a model, turned into a filtered terrain model.
///
/// Every graphic entity and point set contributes its vertices and nothing else: the edges of lines are not enforced.
/// Space is divided in advance so that the last point of each cell is known; as soon as that point is in, the cell's
/// triangles are final, leave the mesh and are written to a temporary file, or go to a worker. Only the unfinished part
/// of the mesh is in memory, below 40 bytes a point beyond the drawing for a cloud that comes in a spatial order.
///
/// A run works on the stored points themselves: it writes their numbers and keeps pointers to them, so a drawing must
/// not move its points while one is on. Runs answer the codes of model/threads/Codigos.h and report to the
/// application's IPorcentaje. One object does one run at a time, for one thread; several objects may run side by side
/// on their own drawings.
class URDIMBRE_API CTriangulacion2D {
 public:
  using CDivisiones = CDivisiones2D;  ///< a cell of the division tree
  /// Receives the contours of a level. What it throws ends the run and reaches whoever asked for it.
  using CRecibeNivel = std::function<void(CNivelDeCurvas const&)>;
  /// Gives an open file to be written, null where there is none. It is closed by whoever gives it.
  using CAbreFichero = std::function<CFile*()>;

  // --- life ---
  /// The first argument selects nothing. `identificador` goes into the name of the temporary file.
  CTriangulacion2D(int, CDataSemilla const& laSemilla, CDataTriangulacion const& losDatos, unsigned elIdentificador);
  CTriangulacion2D(int, CDataSemilla const& laSemilla, unsigned elIdentificador);
  /// Takes the seed, the parameters, the counters and the division tree of another object. The tree is shared: this
  /// object must not outlive the other, nor be used once the other has been filled anew. The mesh, the queue, the
  /// worker and the file start empty.
  CTriangulacion2D(CTriangulacion2D& otra, unsigned elIdentificador);
  CTriangulacion2D& operator=(CTriangulacion2D const&) = delete;
  virtual ~CTriangulacion2D();
  /// Message level back to 3, counted points and extents to nothing. The divisions and the mesh stay until the next
  /// run, which begins by dropping them.
  void Clear();

  // --- queries ---
  /// Scaled units in a metre.
  [[nodiscard]] double Precision() const { return semilla.Precision(); }
  [[nodiscard]] CDataSemilla const& Semilla() const { return semilla; }
  [[nodiscard]] CDataTriangulacion const& Data() const { return datos; }
  /// What the last run counted.
  [[nodiscard]] CResumenPlano const& Resumen() const { return resumen; }
  [[nodiscard]] CNivelMensajes Mensajes() const { return mensajes; }
  /// Sets the message level and returns the old one; 4 and above are stored as 0. At 0 a run asks for no progress
  /// interface and cannot be cancelled.
  CNivelMensajes Mensajes(CNivelMensajes nivel);
  /// From now on runs report to `otro`, from their own thread, and ask it whether to go on; null: to the application's
  /// interface, as at first. It must outlive the runs. For runs that are a step of something larger.
  void Avisa(IPorcentaje* otro) { aviso = otro; }

  /// Whether the surfaces of this object's runs are those of the points alone, as if the four corners of the frame had
  /// been taken out of the finished mesh. By default they are not: the frame stands a tenth of the extent off the data,
  /// and a triangle at the rim is missing when its circle reaches a corner of it: 1 % of the area of a thousand
  /// scattered points, all of it where few points lie nearly on a line.
  [[nodiscard]] bool SinMarco() const { return sinMarco; }
  /// With true the surface fills the convex hull of the points, before filters, and its triangles are Delaunay,
  /// exactly. Where several points at the rim lie on one circle, the least one, by x, then y, is joined to the others.
  /// It costs O(n log n) on the n points that have a corner for a neighbour: few, but on a circle all. No point may
  /// have 2^31 - 1 or -2^31 for a coordinate: the frame needs the room. Stays until it is changed. In a search it holds
  /// for the outline of what is found; the mesh that is searched has its frame.
  void SinMarco(bool asi) { sinMarco = asi; }

  /// From how many points on a linking of drawings that does nothing but write takes two threads; by default none does.
  /// It takes two processors (NumeroProcesadores) and points that allow it: no extra drawing, at most ten million, at
  /// least a quarter of them in the lesser half of their extents, in x or in y, and extents up to 2^28 scaled units.
  /// Results and counts are those of one thread, byte for byte; progress is told at fewer steps. It pays for points
  /// that come from either half in turns, some dozens of each (CReparto2D, and 50,000 of them at least): where one half
  /// comes after the other, each thread waits for the other. Stays until it is changed.
  void DosDesde(std::uint32_t puntos) { minimoDeDos = puntos; }

  // --- runs ---
  /// Triangulates the drawings of a job (see CEncargo) into `tin`, whose points and triangles are replaced. All of the
  /// drawing and of the further ones belongs to the surface; of an extra one, the points that lie no more than the
  /// tolerance above the surface found so far: the others are left out and counted as refused. An added point at the
  /// plan position of an earlier one is a duplicate, whatever its height, and one beyond the border, where there is no
  /// surface to be above of, goes in. Cells that added points touch stay open to the end.
  ///
  /// kHecho, kCancelado, kPocosPuntos, kFicheroInaccesible, kFicheroInconsistente. Whatever the answer no temporary
  /// file stays, but for kFicheroInconsistente when the system had no event left.
  int Run(CEncargo const& encargo, CTIN& tin);
  /// Writes the surface of such a job to a PLY file (docs/formats.md) for which `abre` gives an open file, to be
  /// written from where it stands: once, when the surface is known, and not at all when it has no triangle. Where no
  /// filter of triangles is asked for and the surface reaches its hull (SinMarco), no model is made, which spares half
  /// of the memory and a fifth of the time: vertices come in the order of the drawings and their points, faces in that
  /// in which they were finished. Else both come in the order of a model. The bytes depend on the points and their
  /// order alone, not on the number of threads.
  ///
  /// Codes as above; kFicheroInaccesible also when `abre` gives null or its file refuses, which then holds the cause.
  /// The summary counts what was written.
  int RunPLY(CEncargo const& encargo, CAbreFichero const& abre);
  /// The first of these by a row of arguments, without an extra drawing, and with a rule that those who know it rely
  /// on: the last of the further drawings loses the points that come first in their cells, so that an empty place is
  /// put behind it. `registro` is not read, here and wherever it is taken: a run tells nothing but its progress.
  int Run(CDibujo<int>& dibujo, CTIN& tin, double ladoMaximo, std::vector<CDibujo<int>*>* otros, bool vaciar,
          CString* registro, CRango const* alturas, CRango const* intensidades);
  /// The same in the order in which the entities stand, with the points of `extra` added at the end: those that lie
  /// more than `tolerancia` metres above the surface found so far are left out; 0 leaves out none. The first points of
  /// cells, which go in while there is hardly a surface, are tested like added ones: part of `dibujo` may be left out.
  int RunActualiza(CDibujo<int>& dibujo, CTIN& tin, double ladoMaximo, CDibujo<int>& extra, double tolerancia,
                   std::vector<CDibujo<int>*>* otros, bool vaciar, CString* registro);
  /// Makes the triangles of `tin` anew from its own points, under its own maximum length. A maximum length whose square
  /// passes 2147483647 scaled units leaves no triangle, and so does 0.
  int Run(CTIN& tin, CString* registro);
  /// Adds to `curvas` the contour lines of the surface of `dibujo` and the further drawings: lines "nuevo" at the
  /// multiples of `equidistancia`, lowest level first, rings closed, the lines of a level as CDibujo::Junta puts them.
  /// Both lengths are in the unit of the drawing. `equidistancia` must come to a scaled unit at least; triangles with a
  /// side longer in plan than `ladoMaximo` take no part, so with 0 there is no line. Points go in as they stand,
  /// without sorting and without resetting their numbers; the lines have the scaled units of `dibujo`, whatever the
  /// seed of `curvas`.
  ///
  /// No triangle is kept: beyond the drawings and the segments, of 16 bytes each, a run needs no more than its
  /// unfinished mesh. kHecho, kCancelado, kPocosPuntos, kFicheroInconsistente. Cancelled among the levels, or out of
  /// memory there, it leaves those that are done in `curvas`; after any other code `curvas` is as it was. Joining takes
  /// O(n log n) on the segments.
  int Curvado(CDibujo<int>& dibujo, CDibujo<int>& curvas, double ladoMaximo, double equidistancia,
              std::vector<CDibujo<int>*>* otros);
  /// The same for contours that need not be held all at once: `recibe` is called with each level that has any, from the
  /// lowest to the highest, as soon as it is joined. With `vaciar` the drawing is cleared once it is cut, so that
  /// joining has its memory. In a file `piezas`, open for reading and writing and empty, the segments wait for their
  /// level, but for 64 KB of each at most; when it fails, no further level is told and the code is kFicheroInaccesible.
  /// `llanos` says what contours are where the surface lies flat on a level.
  int Curvado(CDibujo<int>& dibujo, CRecibeNivel const& recibe, double ladoMaximo, double equidistancia,
              std::vector<CDibujo<int>*>* otros, bool vaciar, CFile* piezas = nullptr, CLlanos llanos = CLlanos::LADOS);

  // --- searches: runs that give points of the drawing a class, and make no model ---
  /// Finds the points that stand above the ground, such as trees and buildings, and gives them the class of `info`.
  /// Both lengths are in drawing units.
  ///
  /// A point is high when in one triangle it rises by more than `alturaMin` above each of the other two vertices, at
  /// more than 0.785 of rise to run. Unless `unaPasada` is other than 0, a point is also high that lies above a high
  /// neighbour across a side whose squared length in plan, in scaled units, is no greater than `distanciaMax` in scaled
  /// units: first by two neighbours of one triangle, then by one. At last the points inside the outline of the high
  /// ones and of those that had the class before, drawn with sides up to `distanciaMax`, take the class as well, when
  /// they are no higher than `alturaMin` above it.
  ///
  /// Only points whose class the parameters include and do not exclude are changed, and only those of `dibujo`: the
  /// points of `otros`, which may be null, are found and spread from, no more. `seleccion`, null for all, names the
  /// points of `dibujo` that take part, ascending; the outline regards all. Points go in as they stand, without
  /// sorting. `cantidad` receives how many were given the class. The classes depend on the mesh alone, not on the
  /// number of threads.
  ///
  /// kHecho, kCancelado, kPocosPuntos, kFicheroInaccesible, kFicheroInconsistente. Cancelled, no point has changed;
  /// when the outline fails, the points found have their class all the same. No temporary file stays. Beyond the
  /// drawing it takes about 70 bytes a point, and for the outline about 150 a point found. Passes take one thread a
  /// processor, and read the triangles from disk.
  int RunPuntosAltos(CDibujo<int>& dibujo, double distanciaMax, double alturaMin, CInfoClasificacion const& info,
                     int unaPasada, unsigned int& cantidad, std::vector<CDibujo<int>*>* otros,
                     std::vector<CPosicionEntidad> const* seleccion);
  /// Finds the points that stand above the ground and have a colour that a condition wants, and gives them the class of
  /// that condition. `distanciaMax` is in drawing units; points that are in no set of points are black.
  ///
  /// A point is found when in one triangle it rises by more than the height of a condition above one of the other two
  /// vertices, and at more than 0.785 of rise to run above both, and all three channels of its colour are nearer than
  /// the tolerance to that of the condition: the first that takes it. It spreads as that of high points does, to points
  /// with a colour within the tolerance, limits included, of some condition, whose class they get. At last each run of
  /// neighbouring conditions with one class, together with the points that have it already, is outlined, and what lies
  /// inside, no higher than the height of the first of them, takes the class as well.
  ///
  /// What may change, further drawings, selection, codes and memory are those of RunPuntosAltos, with 4 bytes a point
  /// more; one thread reads the passes. The classes depend on the mesh alone where no colour suits two conditions;
  /// where one does, on the order of triangles in the file, which follows that of the points. A class above 127 can be
  /// given, but points that have it already join no outline. At most 128 conditions: what further ones find is outlined
  /// and not given a class itself, or is that of an earlier one. Without a condition nothing is found.
  int RunPuntosAltosRGB(CDibujo<int>& dibujo, double distanciaMax, std::vector<CCondicionHRGB> const& condiciones,
                        unsigned int& cantidad, std::vector<CDibujo<int>*>* otros,
                        std::vector<CPosicionEntidad> const* seleccion);
  /// The same by intensity: a condition wants those between two limits, limits included. Points that are in no set of
  /// points have intensity 0.
  int RunPuntosAltosIntensidad(CDibujo<int>& dibujo, double distanciaMax,
                               std::vector<CCondicionHIntensidad> const& condiciones, unsigned int& cantidad,
                               std::vector<CDibujo<int>*>* otros, std::vector<CPosicionEntidad> const* seleccion);
  /// Appends to `lista` what rises: for each triangle and each of its vertices that rises by more than `alturaMin`
  /// (drawing units) above another, and steeply above both, a condition with the colour of the point, or of the first
  /// vertex where it is the third, tolerance 1, class -1, and for height the greater of both rises. A point is told
  /// once for each of its triangles. Nothing changes. Codes as above; what was appended before another than kHecho
  /// stays.
  int RunListarPuntosAltosRGB(CDibujo<int>& dibujo, double alturaMin, std::vector<CCondicionHRGB>& lista,
                              std::vector<CDibujo<int>*>* otros, std::vector<CPosicionEntidad> const* seleccion);
  /// The same with intensities: both limits are that of the point.
  int RunListarPuntosAltosIntensidad(CDibujo<int>& dibujo, double alturaMin, std::vector<CCondicionHIntensidad>& lista,
                                     std::vector<CDibujo<int>*>* otros, std::vector<CPosicionEntidad> const* seleccion);
  /// Finds jumps of intensity: points brighter than their surroundings for a `diferencia` above 0, darker for one below
  /// 0, none for 0. They get the class of `info`.
  ///
  /// A point is found when in one triangle its intensity passes that of both other vertices by more than the
  /// difference. It spreads to brighter (darker) neighbours of points found, whatever the distance, first by two
  /// neighbours of one triangle, then by one. At last the points inside the outline of what was found, drawn with sides
  /// up to `distancia` (drawing units), take the class as well, whatever their height or intensity.
  ///
  /// In a drawing whose `tipoNube` is none of 1, 2 and 3 heights take the place of intensities, in scaled units; so
  /// they do in the further drawings, whose points are compared with the intensities of `dibujo` as they are. The
  /// window of heights of the parameters holds for heights. What may change, selection, codes and memory are those of
  /// RunPuntosAltos, with 4 bytes a point more; one thread reads the passes. The classes depend on the mesh alone.
  int RunPuntosDifIntensidad(CDibujo<int>& dibujo, double distancia, int diferencia, CInfoClasificacion const& info,
                             unsigned int& cantidad, std::vector<CDibujo<int>*>* otros,
                             std::vector<CPosicionEntidad> const* seleccion);

  /// Finds the points with too few neighbours, such as echoes of birds and dust, and gives them the class of `info`.
  ///
  /// Neighbours are points joined by a side of the mesh that is shorter in space than `distancia` (drawing units): a
  /// point is isolated that has fewer than `minVecinos` of them. Its nearest point in plan is always joined to it, its
  /// nearest in space not always. With a distance of 46341 scaled units or more, whose square has no 32 bits, every
  /// point is isolated: hosts refuse it.
  ///
  /// Arguments, codes and what may change as RunPuntosAltos. Cancelled while classes are written, which is the last
  /// phase and takes no time, those written stay and `cantidad` counts them. About 40 bytes a point beyond the drawing
  /// for up to 3 neighbours, up to 75 for many; the triangles are read once, by the calling thread.
  int RunPuntosAislados(CDibujo<int>& dibujo, double distancia, unsigned int minVecinos, CInfoClasificacion const& info,
                        unsigned int& cantidad, std::vector<CDibujo<int>*>* otros,
                        std::vector<CPosicionEntidad> const* seleccion);

  /// Finds the points that hang above what is around them, or lie below it, and gives them the class of `info`.
  ///
  /// A point is looked at when the mesh falls away from it (rises, for a factor below 0) by more than 30 degrees on
  /// some triangle, measured to the middle of the opposite side; with a factor between -1e-7 and 1e-7, when it falls or
  /// rises at all. It is found when it has at least three points around it in plan, no farther than `radio` (drawing
  /// units), and its height passes their mean by more than `factor` of their standard deviations. Points go in
  /// ascending order of x, then y, and one that has been found doesn't count any more among those around the next.
  /// Looked at are, of candidates, none of one and at most the first of two.
  ///
  /// Arguments, codes and what may change as RunPuntosAltos, cancellation as RunPuntosAislados. About 25 bytes a point
  /// beyond the drawing; time is that of ordering the points, and of looking at a rectangle of 6 square radii for each
  /// candidate. One thread.
  int RunPuntosAereos(CDibujo<int>& dibujo, double radio, double factor, CInfoClasificacion const& info,
                      unsigned int& cantidad, std::vector<CDibujo<int>*>* otros,
                      std::vector<CPosicionEntidad> const* seleccion);

  /// Finds peaks and pits, points that stand out against those that the mesh joins them to, and gives them the class of
  /// `parametros`. CAlturasVecinas says what a peak is; its longest side, its height and its slope are those of
  /// `parametros`, a distance of 0 meaning any. There is no file to read: heights are gathered while the mesh grows.
  ///
  /// The points of the drawing must come with their numbers at 0, or those of a run of the same points; of others,
  /// which may be null, none has its class changed. `seleccion` as in RunPuntosAltos. `cantidad` grows by the points
  /// that get the class, `encontrados`, if given, by their places; `progreso`, if given, by each point that goes in.
  ///
  /// The codes of RunPuntosAltos; with any but kHecho no class has changed. 14 bytes a point beyond a run.
  int BuscaPicos(CDibujo<int>& dibujo, CDataPicos const& parametros, unsigned int& cantidad,
                 std::vector<CDibujo<int>*>* otros, std::vector<CPosicionEntidad> const* seleccion, int* progreso,
                 std::vector<CPosicionEntidad>* encontrados);

  /// Grows the class `tipo1` over the mesh: a point of neither class takes it from a neighbour that has it, where the
  /// ranges let the side between them pass; points of `tipo2` never change, and so stop it. CSetTriangulos2D::
  /// ClasificaPorAfinidad says what each range judges; heights are in scaled units, distances in their square, and a
  /// null range lets all pass. Classes are told apart by their number.
  ///
  /// Triangles are looked at once, as their cells close, so that one run takes the class forward, in the order of the
  /// points, and back no farther than within a cell: where it ends depends on that order. Runs that are repeated until
  /// one changes nothing reach all there is, whatever the order; RunAfinidadCompleta does so at the price of one.
  ///
  /// `cantidad` grows by the points that took the class, of any drawing. Of `dibujo` those whose class the parameters
  /// include and do not exclude have it at the end; points of `otros`, which may be null, hand it on and keep theirs.
  /// `seleccion` as in RunPuntosAltos. With `mostrar` other than 0 and an `iteracion`, the program is told both numbers
  /// by a message, and `iteracion` grows by one; `progreso`, if given, grows by each point that goes in. Points go in
  /// as they stand.
  ///
  /// kHecho, kCancelado, kPocosPuntos, kFicheroInaccesible, kFicheroInconsistente; with any but kHecho no class has
  /// changed. No temporary file stays. Beyond a run one byte a point, three with a range of intensities.
  int RunPuntosPorAfinidad(CDibujo<int>& dibujo, unsigned int& cantidad, CRango const* rangoZ,
                           CRango const* rangoIntensidad, CRango const* rangoDistancia, CRango const* rangoPendiente,
                           CInfoClasificacion const& tipo1, CInfoClasificacion const& tipo2,
                           std::vector<CDibujo<int>*>* otros, std::vector<CPosicionEntidad> const* seleccion,
                           unsigned int* iteracion, int mostrar, int* progreso);
  /// Grows the class until nothing changes: the points that are reached from those that have it along sides that the
  /// rules let pass. What that is the mesh alone tells, not the order of the points. The mesh is made once; triangles
  /// in which something may change later wait in the temporary file, and of those the ones that growth may go through
  /// are then gone over, there and back, until nothing changes. `rondas` receives how often: once while the mesh is
  /// made, once while the file is read, and then. The rest as RunPuntosPorAfinidad, with 8 bytes a point more and 12
  /// for each triangle that is gone over, two a point at most.
  int RunAfinidadCompleta(CDibujo<int>& dibujo, CReglasAfinidad const& reglas, unsigned& cantidad, unsigned& rondas,
                          std::vector<CDibujo<int>*>* otros, std::vector<CPosicionEntidad> const* seleccion);

 protected:
  // --- a run's work as values ---
  using CTolerancia = CSetTriangulos2D::CTolerancia;
  /// A linking pass over drawings. The worker's jobs of classes take from here what they are asked for.
  struct CEnlace {
    unsigned modo = CHiloSalvaTriangulosEnlazados::SALVA;  ///< the worker's job
    CTolerancia tolerancia{};           ///< of the points of the extra drawing, and of seeds, but for soloSuperficie
    int* contador = nullptr;            ///< told each step of progress as well; may begin above 0
    CDibujo<int>* clasifica = nullptr;  ///< whose points get the classes that the job has found
    CInfoClasificacion const *tipoA = nullptr, *tipoB = nullptr;
    CRango const *alturas = nullptr, *intensidades = nullptr, *distancias = nullptr, *pendientes = nullptr;
    unsigned* cuenta = nullptr;                         ///< points found
    std::vector<CPosicionEntidad>* hallados = nullptr;  ///< and where they are
    CAlturasVecinas alturasVecinas{};                   ///< for the job of peaks
    bool guarda = false;  ///< triangles that growth may still go through are written, and classes wait for their reader

    [[nodiscard]] CTolerancia DeSemillas() const { return tolerancia.soloSuperficie ? CTolerancia{} : tolerancia; }
  };
  /// How a point is put into the mesh.
  struct CInsercion {
    bool cierra = true;                                ///< the sets that it finishes are closed and queued
    CTolerancia tolerancia{};                          ///< how far it may stand above the surface
    int* contador = nullptr;                           ///< told each step of progress as well
    std::function<void(CCoor3D<int> const&)> anota{};  ///< called once it has its number, before it goes in
  };
  /// The stored point of a seed; null to leave it out.
  using CPuntoDeSemilla = std::function<CCoor3D<int>*(CPosicion const&)>;

  // --- phases; each answers a run's code, kHecho to go on ---
  int Rellena(CFuentes const& fuentes);
  int Enlaza(CFuentes const& fuentes, CEnlace& enlace);
  int Enlaza(CTIN& tin, int contador);
  /// The file that linking has left becomes a model.
  int Genera(CGeneracion const& como, CTIN& tin);
  /// Numbers a stored point and inserts it into the mesh. Answers as TriangulaPunto.
  bool Triangula(CCoor3D<int>* p, CPosicion const& lugar, CInsercion const& como);

  // --- the same in the form in which derived classes know them ---
  /// Counts and measures the points that pass the filter, divides space, and records the last point of every cell and
  /// the first of every leaf. The points of `extra` give no seeds.
  int Rellena(CDibujo<int> const& dibujo, std::vector<CDibujo<int>*>* otros,
              std::vector<CPosicionEntidad> const* seleccion, CDibujo<int>* extra);
  int Rellena(CTIN& tin);
  /// One pass over one drawing: with `contar` it counts and measures, without it records, with seeds if `registra` says
  /// so.
  int Rellena(short lista, CDibujo<int> const& dibujo, CMaximas<int>& caja, unsigned& cuenta, unsigned& progreso,
              unsigned total, bool contar, std::vector<CPosicionEntidad> const* seleccion, bool registra);
  int Rellena(short lista, CTIN& tin, CMaximas<int>& caja, unsigned& cuenta, unsigned& progreso, unsigned total,
              bool contar);
  void EstableceDivisiones(unsigned n, CMaximas<int> const& caja);
  void EstableceDivisiones(CDivisiones& celda, CSetTriangulos2D& set);
  void ColocaIndices(CCoor3D<int> const& p, short lista, unsigned entidad, unsigned punto, bool registra);
  /// Number a point and locate it in the divisions; true when it is the last of its leaf.
  bool Inserta(CCoor3D<int> const& p, CCoor3DIntLista** nodo, short lista, unsigned entidad, unsigned punto,
               CDivisiones** celda);
  bool Inserta(CCoor3D<int>* p, short lista, unsigned entidad, unsigned punto, CDivisiones** celda);

  /// Inserts one stored point into the mesh. True: go on, the point is in or was left out, its number 0 where it was a
  /// duplicate or above the tolerance. False: the mesh can't take this point.
  bool TriangulaPunto(CCoor3D<int>* p, short lista, unsigned entidad, unsigned punto, unsigned& a, unsigned& b,
                      bool salvar, bool curvar, int tolerancia, CInfoClasificacion* info,
                      std::vector<CInfoClasificacion>* infos, unsigned short* intensidad,
                      std::vector<unsigned short>* intensidades, CStdioFile* registro);
  int InsertaRestoPuntos(short lista, CDibujo<int> const& dibujo, int& contador, unsigned total, unsigned& a,
                         unsigned& b, unsigned modo, std::vector<CPosicionEntidad> const* seleccion,
                         std::vector<CInfoClasificacion>* infos, std::vector<unsigned short>* intensidades,
                         int tolerancia, CStdioFile* registro);
  int InsertaRestoPuntos(CTIN& tin, int& contador, unsigned total, unsigned& a, unsigned& b, CStdioFile* registro);

  /// Builds the frame, opens the temporary file, gives the worker its job, inserts all points and sees the worker
  /// through. `modo` is that job; mere writing has no thread of its own. After kHecho the file of modes that have one
  /// is open and whole; after anything else it is gone.
  int EnlazaLista(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, int* contador, CString* registro,
                  unsigned modo, std::vector<CPosicionEntidad> const* seleccion, CInfoClasificacion const* infoA,
                  CInfoClasificacion const* infoB, unsigned* cuenta, CDibujo<int>* extra, int tolerancia,
                  CRango const* rango1, CRango const* rango2, CRango const* rango3, CRango const* rango4,
                  std::vector<CPosicionEntidad>* salida);
  int EnlazaLista(CTIN& tin, int contador, CString* registro);
  /// Closes the set of a cell and queues it.
  void Salva(CDivisiones* celda);
  /// Copies the points of a drawing that are in the mesh, numbers included, to a point set; with the colours or the
  /// intensities of their numbers.
  int RegistraPuntos(CSetPuntosMdt& puntos, CDibujo<int> const& dibujo, unsigned long long& contador,
                     unsigned long long total, std::vector<CPosicionEntidad> const* seleccion,
                     std::vector<CRGBTipo>* colores, std::vector<CIntensidadTipo>* intensidades);

  /// Turns the temporary file into a model, from the points of the drawings or from those that the model has.
  int GenerarMDT(CDibujo<int> const& dibujo, std::vector<CDibujo<int>*>* otros, CTIN& tin, double ladoMaximo,
                 bool vaciar, CString* registro, CDibujo<int> const* sinUso, CDibujo<int> const* anadido,
                 CRango const* alturas, CRango const* intensidades);
  int GenerarMDT(CTIN& tin, double ladoMaximo, CString* registro, CDibujo<int> const* sinUso);

  /// The search of RunPuntosAltos in a mesh that EnlazaLista has left in the file.
  int BuscaPuntosAltos(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, double distanciaMax, double alturaMin,
                       CInfoClasificacion const& info, int unaPasada, unsigned int& cantidad,
                       std::vector<CPosicionEntidad> const* seleccion);
  /// The same of RunPuntosAislados and RunPuntosAereos.
  int BuscaPuntosAislados(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, double distancia,
                          unsigned int minVecinos, CInfoClasificacion const& info, unsigned int& cantidad,
                          std::vector<CPosicionEntidad> const* seleccion);
  int BuscaPuntosAereos(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, double radio, double factor,
                        CInfoClasificacion const& info, unsigned int& cantidad,
                        std::vector<CPosicionEntidad> const* seleccion);
  /// Those of the other runs, in the same way.
  int BuscaPuntosAltosRGB(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, double distanciaMax,
                          std::vector<CCondicionHRGB> const& condiciones, unsigned int& cantidad,
                          std::vector<CPosicionEntidad> const* seleccion);
  int BuscaPuntosAltosIntensidad(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, double distanciaMax,
                                 std::vector<CCondicionHIntensidad> const& condiciones, unsigned int& cantidad,
                                 std::vector<CPosicionEntidad> const* seleccion);
  int ListaPuntosAltosRGB(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, double alturaMin,
                          std::vector<CCondicionHRGB>& lista, std::vector<CPosicionEntidad> const* seleccion);
  int ListaPuntosAltosIntensidad(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, double alturaMin,
                                 std::vector<CCondicionHIntensidad>& lista,
                                 std::vector<CPosicionEntidad> const* seleccion);
  int BuscaPuntosDifIntensidad(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, double distancia,
                               int diferencia, CInfoClasificacion const& info, unsigned int& cantidad,
                               std::vector<CPosicionEntidad> const* seleccion);

  /// Walks the division tree.
  void ImprimeLista(CDivisiones const& celda) const;
  /// Whether no point of the cells' lists lies in the circle of `t`, its vertices and `p` apart. The first that does is
  /// shown in a message box.
  bool CompruebaTrianguloNuevo(CTriangulo2D& t, CCoor3D<int> const* p);

  /// Closes the temporary file, if any, and deletes it.
  void BorraFicheroTemporal();

  CArbolDivisiones2D divisiones;
  CNivelMensajes mensajes = MENSAJES_NORMALES;  ///< progress is reported from 1 up
  IPorcentaje* aviso = nullptr;                 ///< in place of the application's
  std::uint32_t cantidadPuntos = 0;  ///< points accepted by the filling; while linking, the last number given
  std::uint32_t duplicados = 0;      ///< points that fell exactly on a vertex in plan
  CDataSemilla semilla;
  CSetTriangulos2D setRaiz{0};
  CCoor3D<int> esquinas[4];                                       ///< corners of the frame, numbered -1 to -4
  CFicheroTriples ficheroTemporal;                                ///< finished triangles
  std::vector<CPosicion> primerosPuntos;                          ///< first point of each leaf, in the order of filling
  CSegmentos dibujoCurvas;                                        ///< where the contouring job leaves them
  std::int32_t paramCurvaA = 0, paramCurvaB = 0, paramPicoA = 0;  ///< arguments left here for the worker's job
  double paramPicoB = 0;
  CMaximas<int> maximas;  ///< extents of the accepted points
  CDataTriangulacion datos;
  CAfinidad afinidad;                            ///< of the job of affinity
  CColaCerrados<CSetTriangulos2D> setsCerrados;  ///< from the inserting thread to the worker
  CHiloSalvaTriangulosEnlazados hiloSalva;       ///< after what it works on
  /// Of the last linking pass: whether two threads have made it, what it has cost them, and whether it had to be done
  /// anew by one. Not the same from run to run.
  struct CPorDos {
    bool hecho = false, tarde = false;
    std::uint64_t enTurno = 0;  ///< points for which both threads had to meet
    std::uint64_t aSolas = 0;   ///< points that one thread inserted alone, as the other was too long in coming
  };
  CPorDos porDos;
  std::int32_t reservado = 0;  ///< 0: kept for the hosts that copy it
  std::uint32_t identificador;

 private:
  friend class ::CHiloPuntosPorAfinidad;  // which reports the name of the temporary file
  /// Triangles that insertions have looked at, as `Implicados` counts them.
  struct CVisitados {
    unsigned aceptados = 0, rechazados = 0;
  };

  [[nodiscard]] IPorcentaje* Progreso() const;
  [[nodiscard]] CFiltroPuntos Filtro(CDibujo<int> const& dibujo) const { return {datos, Precision(), dibujo}; }
  void EmpiezaRelleno();
  int TerminaRelleno();
  int ColocaPuntos(short lista, CDibujo<int> const& dibujo, std::vector<CPosicionEntidad> const* seleccion,
                   CMarcha& marcha, bool daSemillas);

  void PreparaEnlace();
  int EmpiezaEnlace(CEnlace& enlace, bool conEvento);
  int InsertaSemillas(CMarcha& marcha, CInsercion const& como, CPuntoDeSemilla const& punto);
  int InsertaResto(short lista, CDibujo<int> const& dibujo, std::vector<CPosicionEntidad> const* seleccion,
                   CMarcha& marcha, CInsercion const& como);
  int InsertaResto(CTIN& tin, CMarcha& marcha, CInsercion const& como);
  static constexpr int kTarde = -1;  ///< no code of a run: linking is to be done anew, by one thread
  int InsertaTodo(CFuentes const& fuentes, CEnlace& enlace, CMarcha& marcha, bool conDos);
  [[nodiscard]] bool CabenDosMitades(CFuentes const& fuentes, CEnlace const& enlace) const;
  struct CAlimento;
  int InsertaEnMitades(CFuentes const& fuentes, CEnlace const& enlace, CMarcha& marcha, CInsercion const& como,
                       std::unique_ptr<CDosMitades>& mitades);
  template <class F>
  int RecorreResto(CFuentes const& fuentes, int ultimaSemilla, F&& visita) const;
  void SumaMitad(CMitad& mitad);
  bool InsertaUno(CCoor3D<int>* p, CPosicion const& lugar, CMarcha& marcha, CInsercion const& como, int& codigo);
  static bool Avanza(CMarcha& marcha, CInsercion const& como);
  [[nodiscard]] static CSetTriangulos2D& SetCercano(CCoor3D<int> const& p, CDivisiones const& celda);
  [[nodiscard]] static CTriangulo2D* TrianguloInicial(CSetTriangulos2D const& set);
  bool NoEntra(CCoor3D<int> const& p, unsigned mensaje, int tolerancia) const;
  void ConstruyeMarco(bool holgado);
  void PreparaCola();
  int ArrancaHilo(CEnlace& enlace);
  bool ArrancaTarea(CEnlace& enlace);
  /// Lets the worker catch up; without a worker at once. False cancels.
  bool EsperaAlHilo(CMarcha const& marcha);
  int Abandona(int codigo);
  int ConcluyeFichero();
  /// Whether a linking of this mode leaves its frame out.
  [[nodiscard]] bool Completa(unsigned modo) const;
  int CompletaSuperficie(unsigned modo);
  /// Calls `registra` with the entity and the index of each point of the drawing that is in the mesh, and reports each.
  int RecorreMalla(CDibujo<int> const& dibujo, unsigned long long& contador, unsigned long long total,
                   std::vector<CPosicionEntidad> const* seleccion,
                   std::function<void(CLinea<int> const&, unsigned)> const& registra) const;
  static CPuntoTIN PuntoDeModelo(CLinea<int> const& e, unsigned k);
  void PreparaAfinidad(CEnlace const& enlace);
  void PonClases(CFuentes const& fuentes, CEnlace const& enlace);
  void PonClasesDePicos(CFuentes const& fuentes, CEnlace const& enlace);
  void RecorreNumerados(CFuentes const& fuentes, CEnlace const& enlace,
                        std::function<void(CPosicionEntidad const&, CCoor3D<int> const&, std::size_t)> const& visita);
  int ReunePuntos(CFuentes const& fuentes, CSetPuntosMdt& puntos, std::vector<int>& mapa) const;
  int ReunePuntosBorrando(CGeneracion const& como, CSetPuntosMdt& puntos, std::vector<int>& mapa);
  /// `enOrden`: the points of the model ascend by x, then y, then z.
  int GeneraDesdeFichero(CTIN& tin, std::vector<int> const& mapa, double lado2, CRango const* alturas,
                         CRango const* intensidades, bool enOrden);
  /// How a job's drawings go in: with the tolerance in scaled units; `porOrden` puts the entities in a spatial order
  /// first.
  struct CEntrada {
    CTolerancia tolerancia{};
    bool porOrden = true;
    bool todasLasSemillas = true;
  };
  [[nodiscard]] CEntrada EntradaDe(CEncargo const& encargo) const;
  int Corre(CEncargo const& encargo, CTIN& tin, CEntrada const& entrada);
  /// The run of a job up to the temporary file, and what `termina` makes of that.
  int Corre(CEncargo const& encargo, CEntrada const& entrada, std::function<int(CGeneracion const&)> const& termina);
  /// What RunPLY does with the temporary file.
  int EscribeSuperficie(CGeneracion const& como, CAbreFichero const& abre);
  int EscribeModelo(CGeneracion const& como, CAbreFichero const& abre);
  int EscribeEn(CAbreFichero const& abre, std::function<int(CFile&, CAvance&)> const& escribe);
  [[nodiscard]] bool FiltraPendientes() const;
  /// A run: the phases in order, each timed. Its counts begin anew; no temporary file is left once the last phase has
  /// begun, nor when an exception passes through.
  int Corre(std::initializer_list<CFase> fases);
  /// A search from its beginning to its end: `busca` is called once the mesh is in the file.
  int RunBusqueda(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros,
                  std::vector<CPosicionEntidad> const* seleccion, std::function<int()> const& busca);
  /// Told of a point of the mesh: the drawing's place among the sources, the entity and the index of the point in it.
  using CRegistra = std::function<void(short lista, CLinea<int> const&, unsigned)>;
  /// Collects the points of the mesh for a search. `registra` is told of each, where a search keeps more of a point, by
  /// its number, than the drawing does.
  int PreparaBusqueda(CBusquedaPuntos& busqueda, CFuentes const& fuentes, CRegistra const& registra = {});
  void BorraNumeros(std::vector<CDibujo<int>*> const& otros) const;
  /// Searches by a form of condition (CTriangulacion2D_Condiciones.cpp).
  template <class Forma>
  int BuscaPorCondiciones(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, double distanciaMax,
                          std::vector<typename Forma::CCondicion> const& condiciones, unsigned& cantidad,
                          std::vector<CPosicionEntidad> const* seleccion);
  template <class Forma>
  int ListaAltos(CDibujo<int>& dibujo, std::vector<CDibujo<int>*>* otros, double alturaMin,
                 std::vector<typename Forma::CCondicion>& lista, std::vector<CPosicionEntidad> const* seleccion);
  int TerminaAfinidad(CFuentes const& fuentes, unsigned& rondas);
  int JuntaNiveles(CRecibeNivel const& recibe, CFile const* piezas);

  HANDLE evento = nullptr;             ///< signalled while the worker runs
  CSetTriangulos2D::CBalance balance;  ///< triangles ever made, and destroyed by a later point
  CVisitados visitados;
  CResumenPlano resumen;
  CBordeDelMarco borde;           ///< of the mesh that is being linked, in a run without its frame
  CMedidasDeTriangulos medidas;   ///< of the triangles of such a run
  std::size_t ladosDelCasco = 0;  ///< sides of its hull
  bool sinMarco = false;
  std::uint64_t porCuadrante[4] = {};  ///< points of the filling, by quadrants of the root
  std::uint32_t minimoDeDos = std::numeric_limits<std::uint32_t>::max();
};

}  // namespace Meseta47
