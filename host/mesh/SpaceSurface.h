#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "host/OutputFile.h"
#include "host/Steps.h"
#include "host/mesh/RealCoordinate.h"
#include "model/terrain/CTIN.h"
#include "tetrahedral/CTriangulacion3D.h"

namespace Meseta47::host {

/// A surface in space: faces of tetrahedra that no long side bounds. Faces may meet three and more at a side, as where
/// a wall stands on a floor.
struct SpaceSurface {
  using Face = std::array<std::uint32_t, 3>;

  CDataSemilla seed;
  std::vector<CCoor3D<int>> vertices;  ///< those of faces alone, ascending, in scaled units
  std::vector<Face> faces;             ///< run alike on both sides of every side of two faces, where that can be
  std::vector<std::array<std::uint8_t, 3>> colours;  ///< red, green, blue of each vertex; empty where no point has one

  [[nodiscard]] std::array<double, 3> place(std::uint32_t vertex) const {
    CCoor3D<int> const& p = vertices[vertex];
    const double units = seed.Precision();
    return {realCoordinate(p.x, seed.origen[0], units), realCoordinate(p.y, seed.origen[1], units),
            realCoordinate(p.z, seed.origen[2], units)};
  }
};

/// What a surface comes to.
struct SurfaceCounts {
  std::uint64_t faces = 0, vertices = 0;
  std::uint64_t components = 0;   ///< that hang together by sides
  std::uint64_t borderSides = 0;  ///< of one face
  std::uint64_t borders = 0;      ///< that these sides form, each in one piece
  std::uint64_t branchSides = 0;  ///< of three faces and more
  double area = 0;                ///< in squared units of the input
};

/// The faces of a sorted model, over the vertices that they use. They come to run alike wherever two meet: a closed
/// piece is seen counter-clockwise from outside, another one from above.
[[nodiscard]] SpaceSurface surfaceInSpace(CTIN const& tin);
/// The same of a kept mesh: the faces that a run with this longest side, in units of the input, gives of its points. A
/// tetrahedron gives those of its faces that no longer side bounds, if it has a longer side elsewhere; sides to the
/// frame count as longer. Throws Cancelled.
[[nodiscard]] SpaceSurface surfaceInSpace(CTriangulacion3D& mesh, double maxSide, Steps const& step);
[[nodiscard]] SurfaceCounts countsOf(SpaceSurface const& surface);

/// Writes .ply, .obj, .stl or .gltf; what stands in them is told in docs/formats.md. The first throws UsageError for
/// another extension; the second FileError when the disk refuses.
void requireSurfaceFormat(std::string const& output);
void writeSurface(SpaceSurface const& surface, std::string const& output);

}  // namespace Meseta47::host
