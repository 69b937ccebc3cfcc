#pragma once

#include <array>
#include <string>
#include <vector>

#include "host/mesh/SpaceMesh.h"
#include "model/geometry/CCoor3D.h"

namespace Meseta47::host {

/// Tetrahedra in whole units: what exact arithmetic can be done on.
struct ExactSpaceMesh {
  std::vector<CCoor3D<int>> vertices;
  std::vector<Tetrahedron> tetrahedra;  ///< as they stand in the file
  int precision = 0;                    ///< decimals of a coordinate
  std::array<double, 3> origin{};       ///< of the whole units, in those of the file

  /// Where a vertex lies, in the file's coordinates.
  [[nodiscard]] std::string place(std::uint32_t vertex) const;
};

/// Whether a name is that of a mesh in space: .vtu, .mesh or .msh.
[[nodiscard]] bool isSpaceMesh(std::string const& path);

/// Reads a file as `urdimbre tetra` writes it; of meshes by others, VTU with raw appended arrays, Medit's text with
/// vertices and tetrahedra, and Gmsh's text of version 2, whose nodes are numbered from 1 up, are understood. Throws
/// FileError with the cause when it is damaged, cut, or holds other cells.
[[nodiscard]] ExactSpaceMesh readSpaceMesh(std::string const& path);

}  // namespace Meseta47::host
