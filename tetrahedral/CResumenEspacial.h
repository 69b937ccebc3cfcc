#pragma once

#include <cstdint>
#include <vector>

namespace Meseta47 {

/// What the last run of a spatial triangulation counted.
struct CResumenEspacial {
  std::uint64_t aceptados = 0;    ///< points that the filters let through
  std::uint64_t duplicados = 0;   ///< of those, points at the very place of an earlier one
  std::uint64_t coplanarios = 0;  ///< points that lie in the plane of a face of their cavity: on the frame's own faces
  std::vector<int> perdidos;      ///< numbers of the points that are not in the mesh and no duplicates
  std::uint64_t enlazados = 0;    ///< tetrahedra of the finished mesh, those with corners of the frame among them
  std::uint64_t picoVivos = 0;    ///< most tetrahedra that were in memory at once
  std::uint64_t creados = 0;      ///< tetrahedra ever made
  std::uint64_t pasos = 0;        ///< steps of the descents to the cavities
  std::uint64_t visitados = 0;    ///< tetrahedra looked at where a descent had ended too early
  std::uint64_t esferas = 0;      ///< spheres that a point was tested against
  std::uint64_t exactas = 0;      ///< of those tests, the ones that doubles could not decide
  std::uint64_t porBusqueda = 0;  ///< points whose cavity did not close by itself
  std::uint64_t huecos = 0;       ///< removals of points whose small run failed: each left a room without tetrahedra
  double segundosRellena = 0, segundosEnlaza = 0;
};

}  // namespace Meseta47
