#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "support/ExactInteger.h"
#include "support/MeshOracle.h"

/// Meshes in space and what exact arithmetic says about them, over the whole 32-bit range. Differences take 33 bits,
/// volumes 101, in-sphere determinants 172.
namespace Meseta47::support {

/// Four vertex numbers: k > 0 is the k-th point, -k the k-th frame corner.
using Tetrahedron = std::array<std::int32_t, 4>;

struct SpaceMesh {
  std::vector<Point> points;
  std::vector<Point> corners;
  std::vector<Tetrahedron> tetrahedra;

  [[nodiscard]] bool knows(std::int32_t number) const {
    if (number > 0) return static_cast<std::size_t>(number) <= points.size();
    return number < 0 && static_cast<std::size_t>(-static_cast<std::int64_t>(number)) <= corners.size();
  }
  [[nodiscard]] Point const& at(std::int32_t number) const {
    return number > 0 ? points[static_cast<std::size_t>(number) - 1] : corners[static_cast<std::size_t>(-(number + 1))];
  }
};

/// Six times the signed volume: positive when d sees a, b, c turn clockwise.
[[nodiscard]] Int128 sixVolumes(Point const& a, Point const& b, Point const& c, Point const& d);

/// +1 when e lies strictly inside the sphere through a, b, c, d, 0 on it, -1 outside, whichever way the four turn.
/// Coplanar points have no sphere: 0.
[[nodiscard]] int inSphere(Point const& a, Point const& b, Point const& c, Point const& d, Point const& e);

/// The eight corners of the cube that a tetrahedralisation of these points is grown in: 1.2 times their greatest
/// extent, around the centre of their box, each coordinate rounded to nearest. Numbers -1 to -8.
[[nodiscard]] std::vector<Point> cubeAround(std::vector<Point> const& points);

/// How many different positions there are.
[[nodiscard]] std::size_t distinctPlaces(std::vector<Point> points);

struct SpaceReport {
  std::size_t tetrahedra = 0;
  std::size_t vertices = 0;  ///< different numbers in use, corners included
  std::size_t edges = 0;
  std::size_t faces = 0;
  std::size_t boundaryFaces = 0;
  std::vector<std::array<std::int32_t, 4>> boundary;  ///< faces, and the vertex behind each
  Int128 sixVolumes = 0;

  Fault unknownVertices;   ///< tetrahedra with a number that no point or corner has; left out of all that follows
  Fault repeatedVertices;  ///< tetrahedra with the same number twice; left out of all that follows
  Fault flat;
  Fault overusedFaces;  ///< faces of three tetrahedra or more
  Fault sameSide;       ///< faces whose two tetrahedra lie on the same side: one of them is inverted
  Fault notDelaunay;    ///< inner faces with an opposite vertex strictly inside the sphere across

  /// Vertices - edges + faces - tetrahedra: 1 for one piece without holes.
  [[nodiscard]] std::ptrdiff_t euler() const;
};

/// O(T log T), some seconds for a million tetrahedra.
[[nodiscard]] SpaceReport inspect(SpaceMesh const& mesh);

/// Everything that keeps these tetrahedra from being a Delaunay tiling of the cube of the mesh's eight corners with
/// every distinct point as a vertex, one line a fault; empty when there is nothing. Tetrahedra over paired faces, each
/// pair on either side of its face, whose boundary is the cube's and whose volumes add up to it, can neither overlap
/// nor leave a gap.
[[nodiscard]] std::string cubeTilingFaults(SpaceMesh const& mesh, SpaceReport const& report);

/// The same for a mesh of the points alone, which has to fill their convex hull: no point lies strictly beyond a face
/// of the boundary. O(n F): for small clouds. Points on one plane have no such mesh.
[[nodiscard]] std::string hullTilingFaults(SpaceMesh const& mesh, SpaceReport const& report);

}  // namespace Meseta47::support
