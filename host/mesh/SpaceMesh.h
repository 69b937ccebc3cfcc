#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "host/SpatialOrder.h"
#include "host/mesh/RealCoordinate.h"
#include "model/geometry/CDataSemilla.h"

namespace Meseta47::host {

/// Indices of the four vertices of a tetrahedron; the fourth sees the others run counter-clockwise. That is the order
/// of VTK, Gmsh and Medit.
using Tetrahedron = std::array<std::uint32_t, 4>;

/// Indices of three vertices, counter-clockwise seen from outside.
using HullFace = std::array<std::uint32_t, 3>;

/// A mesh in space on its way to a file. Its tetrahedra may be more than memory holds, so they are handed out in
/// blocks, in the same order each time.
struct SpaceMesh {
  using Blocks = std::function<void(std::span<Tetrahedron const>)>;

  CDataSemilla seed;                  ///< brings the vertices back to real coordinates
  std::vector<ScaledPoint> vertices;  ///< in scaled units
  std::uint64_t tetrahedra = 0;
  std::function<void(Blocks const&)> forEachBlock;
  std::vector<HullFace> hull;  ///< the boundary: all faces of one tetrahedron

  [[nodiscard]] std::array<double, 3> place(ScaledPoint const& p) const {
    const double units = seed.Precision();
    return {realCoordinate(p.x, seed.origen[0], units), realCoordinate(p.y, seed.origen[1], units),
            realCoordinate(p.z, seed.origen[2], units)};
  }
};

}  // namespace Meseta47::host
