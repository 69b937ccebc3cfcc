#pragma once

#include <cstdint>

#include "platform/Exporta.h"

namespace Meseta47 {

/// What a planar run counted and how long its phases took, for whoever reports on it.
struct URDIMBRE_API CResumenPlano {
  std::uint64_t aceptados = 0;       ///< points that passed the filter
  std::uint64_t duplicados = 0;      ///< of these, points that fell exactly on another one in plan
  std::uint64_t rechazados = 0;      ///< of these, points left out by the tolerance or for want of a place in the mesh
  std::uint64_t ofrecidos = 0;       ///< points of an extra drawing that passed the filter
  std::uint64_t anadidos = 0;        ///< of these, points that are in the mesh in the end
  std::int64_t ancho = 0, alto = 0;  ///< extents in plan of the points that passed the filter, scaled units
  std::uint64_t picoVivos = 0;       ///< greatest number of triangles in memory at once while linking
  std::uint64_t enlazados = 0;       ///< triangles of the finished mesh, those at the frame included
  std::uint64_t completados = 0;     ///< triangles that took the place of the frame's, in a run without it
  std::uint64_t examinados = 0;      ///< circles tested while linking

  std::uint64_t porPendiente = 0;   ///< triangles that the slope filter left out
  std::uint64_t porAltura = 0;      ///< ... the filter of height differences
  std::uint64_t porIntensidad = 0;  ///< ... the filter of intensity differences
  std::uint64_t porLongitud = 0;    ///< ... the maximum length
  std::uint64_t delMarco = 0;       ///< triangles with a corner of the frame; without it, sides of the convex hull

  std::uint64_t vertices = 0, triangulos = 0, anillos = 0;  ///< of the surface that a run has written to a file

  double segundosRellena = 0, segundosEnlaza = 0, segundosGenera = 0;
  double segundosEscribe = 0;   ///< of a run that writes its surface to a file
  double segundosBusca = 0;     ///< a search, from the registering of its points to the last class
  double segundosContorno = 0;  ///< of these, the outline of what was found and the points inside it
};

}  // namespace Meseta47
