#pragma once

#include "run/CHiloCerrados.h"

class CFile;

namespace Meseta47 {

class CAfinidad;
class CBordeDelMarco;
class CSegmentos;
class CSetTriangulos2D;
struct CAlturasVecinas;
struct CMedidasDeTriangulos;

/// The worker of a linking pass in plan, with a job for each mode of the run.
class URDIMBRE_API CHiloSalvaTriangulosEnlazados : public CHiloCerrados<CSetTriangulos2D> {
 public:
  /// The worker's jobs. Modes without a job of their own below write the set's triangles to the file; in the last one
  /// those at the frame as well, whatever the run is asked for: searches look at them.
  enum CModo : unsigned { SALVA = 0, CURVA = 1, AFINIDAD = 2, PICOS = 3, SALVA_TAMBIEN = 4 };
  using CCola = CColaCerrados<CSetTriangulos2D>;

  CHiloSalvaTriangulosEnlazados() = default;
  ~CHiloSalvaTriangulosEnlazados() override { Stop(); }

  /// Starts the thread, unless there is one, with the job of writing records. `elEvento` is reset when the thread
  /// leaves. False when the system gives no thread. Takes what it is given in either case: not for a thread at work.
  bool Start(unsigned elIndice, HANDLE* elEvento, CCola& laCola, CFile* elFichero, unsigned elModo = SALVA);
  /// Takes the job of writing records without a thread: `Atiende` does it. Twelve bytes of a triangle that has just
  /// been cut off, still in the cache, are written in less time than it takes to hand it over.
  void SinHilo(CCola& laCola, CFile* elFichero, unsigned elModo = SALVA);
  /// As the first, with the job of cutting triangles with contour levels: the interval and the longest side, in scaled
  /// units.
  bool Start(unsigned elIndice, HANDLE* elEvento, CCola& laCola, CSegmentos* lasCurvas, int laEquidistancia,
             double elLado2);
  /// The same with the job of growing a class, by rules and over tables that outlive the thread. The file takes what
  /// is written of the triangles, if anything is.
  bool Start(unsigned elIndice, HANDLE* elEvento, CCola& laCola, CFile* elFichero, CAfinidad& laAfinidad);
  /// The same with the job of gathering heights for the search of peaks, as CSetTriangulos2D::BuscaPicos takes them.
  bool Start(unsigned elIndice, HANDLE* elEvento, CCola& laCola, CAlturasVecinas* lasAlturas, double elLado2,
             double laPendiente, int laAltura);
  /// From the next start on, triangles that touch the frame are left in `elBorde` and not written; null for none.
  void Borde(CBordeDelMarco* elBorde) { borde = elBorde; }
  /// And what is written without them is noted there.
  void Mide(CMedidasDeTriangulos* lasMedidas) { medidas = lasMedidas; }

 private:
  void Trabaja(CSetTriangulos2D& set) override;

  CBordeDelMarco* borde = nullptr;
  CMedidasDeTriangulos* medidas = nullptr;
  unsigned modo = SALVA;
  CFile* fichero = nullptr;
  CSegmentos* curvas = nullptr;        ///< mode 1
  int equidistancia = 0;               ///< mode 1, scaled units
  double lado2 = 0;                    ///< modes 1 and 3, squared scaled units
  CAlturasVecinas* alturas = nullptr;  ///< mode 3
  double pendiente = 0;                ///< mode 3, rise over run
  int altura = 0;                      ///< mode 3, scaled units
  CAfinidad* afinidad = nullptr;       ///< mode 2
};

}  // namespace Meseta47
