#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "host/HostApp.h"
#include "host/mesh/Surface.h"
#include "model/geometry/CCoor3D.h"

namespace Meseta47::host {

/// A model in whole units, in plan: what exact arithmetic can be done on.
struct ExactModel {
  struct Ring {
    std::vector<std::uint32_t> vertices;  ///< the last joins the first
    bool hole = false;
  };

  std::vector<CCoor3D<int>> vertices;        ///< heights are left out
  std::vector<Surface::Triangle> triangles;  ///< counter-clockwise when all is well; indices of vertices
  std::vector<Ring> outline;                 ///< as the file gives it
  bool hasOutline = false;                   ///< a PLY has none
  bool usesAllVertices = true;               ///< a vertex without a triangle is a fault; native models keep such points
  int precision = 0;                         ///< decimals of a coordinate
  std::array<double, 2> origin{};            ///< of the whole units, in those of the file

  /// Where a vertex lies, in the file's coordinates.
  [[nodiscard]] std::string place(std::uint32_t vertex) const;
};

/// Brings the coordinates of a surface back to whole units: those of the fewest decimals, up to nine, with which each x
/// and y is the nearest number of its kind, double or float, to a decimal number. Throws FileError, naming `file`, when
/// there are no such units or the extent has more of them than 32 bits count. O(n).
[[nodiscard]] ExactModel exactModel(Surface surface, std::string const& file);

/// Reads a PLY file or the native model. Throws FileError, Failure or Cancelled.
[[nodiscard]] ExactModel readExactModel(std::string const& path, HostApp& app);

}  // namespace Meseta47::host
