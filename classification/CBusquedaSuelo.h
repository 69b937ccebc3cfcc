#pragma once

#include <cstdint>

#include "classification/CConstantesSuelo.h"
#include "classification/CDataSuelo.h"
#include "model/drawing/CDibujo.h"
#include "model/geometry/CDataSemilla.h"
#include "model/terrain/CDataTriangulacion.h"
#include "model/threads/CNivelMensajes.h"
#include "model/threads/Codigos.h"

namespace Meseta47 {

class IPorcentaje;

/// What a ground search counted, and the seconds that its phases took.
struct CResumenSuelo {
  std::uint64_t aceptados = 0;  ///< points that took part
  std::uint64_t suelo = 0, ruido = 0;
  std::uint64_t minimos = 0;
  double celda = 0, espaciado = 0;  ///< metres: side of a cell, spacing of the minima
  double segundosMinimos = 0, segundosAberturas = 0, segundosPozos = 0, segundosCrece = 0;
  double segundosSuperficie = 0, segundosClasifica = 0;
};

/// Finds the ground of an airborne cloud.
///
/// The lowest points of small cells (the minima) are opened by discs of growing size: minima that stand above an
/// opening are objects, the rest is ground. From there the ground grows back over edges that the openings cut off;
/// patches that lie on top of it are given up, and so are pits, echoes from below it. The ground minima are
/// triangulated. A point is ground within a band about that surface which widens with its slope and its roughness.
///
/// After the progressive opening of Zhang and others (2003); growth by the planes of neighbours in place of elevation
/// thresholds, and one set of constants, are this program's own.
///
/// One object does one search at a time, and reports to the application's IPorcentaje. The classes depend on the
/// positions of the points that take part, on nothing else: neither on their order nor on threads. What lies farther
/// than 90 m from a point has never been seen to change its class, so that tiles with that much of their neighbours
/// give what the whole does, provided that both have cells of one size (`Resumen().celda`).
class URDIMBRE_API CBusquedaSuelo {
 public:
  /// `losFiltros` choose the points that take part by class and height, as in a run; `metros` and `metrosAltura` are
  /// the lengths of the drawing's units in plan and in height, 0.3048 for feet.
  CBusquedaSuelo(CDataSemilla const& laSemilla, CDataTriangulacion const& losFiltros, double metros = 1,
                 double metrosAltura = 1);

  /// Gives the ground of `dibujo` the class of `data`, and points far below it that of noise. Points that took part and
  /// had the class of the ground, but are none, go to class 1; all others keep theirs.
  ///
  /// kHecho; otherwise no class has changed: kCancelado, kPocosPuntos (fewer than three take part), kNubeDispersa (so
  /// few points over so wide an extent that most of them must lie astray), and what a triangulation may answer. Beyond
  /// the drawing it takes 1 byte a point, 16 bytes a cell and 150 a minimum, of which there is one a square metre at
  /// most; time grows with the points and the cells.
  int Busca(CDibujo<int>& dibujo, CDataSuelo const& data);

  [[nodiscard]] CResumenSuelo const& Resumen() const { return resumen; }
  /// As CTriangulacion2D::Mensajes.
  CNivelMensajes Mensajes(CNivelMensajes nivel);

  CConstantesSuelo constantes;  ///< for measurements

 private:
  CDataSemilla semilla;
  CDataTriangulacion filtros;
  double metro, metroZ;  ///< metres in a scaled unit, in plan and in height
  CNivelMensajes mensajes = MENSAJES_NORMALES;
  CResumenSuelo resumen;
};

}  // namespace Meseta47
