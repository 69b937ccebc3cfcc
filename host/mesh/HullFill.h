#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "host/mesh/SpaceMesh.h"
#include "model/geometry/CCoor3D.h"
#include "model/geometry/Entero128.h"

namespace Meseta47::host {

/// What a near frame keeps from a mesh: the tetrahedra of the points alone whose spheres hold a corner of the frame.
///
/// A vertex of such a tetrahedron has a neighbour among the corners, so those neighbours on their own have the same
/// tetrahedra there. They are linked without a frame, and what lies between the hull and the faces that the mesh turns
/// to the frame is what was missing.
class HullFill {
 public:
  /// A tetrahedron of the run with a corner of the frame, as it spills it: numbers from 1 are points, corners are below
  /// 0. All of them are wanted.
  void addFramed(std::array<std::int32_t, 4> const& t);

  /// A tetrahedron of the mesh that is to be filled anew: four numbers from 1, ascending.
  void addKept(std::array<std::int32_t, 4> const& t);

  /// Fills the gap. `vertexOf` gives the point with a number; points that came later in the run have greater ones. Of
  /// the cost of linking the points that see the frame.
  template <class VertexOf>
  void fill(VertexOf const& vertexOf) {
    sortNumbers();
    dropInnerWalls();
    fill(pointsOf(vertexOf));
  }
  /// The same where numbers tell nothing of turns, as in a mesh that is kept: an order is found in which the points
  /// would have cut the figures on circles between the mesh and the frame as they are cut. Where there is none, or a
  /// corner of the frame lies on a sphere of points, the filling may disagree with the mesh: `unmetWalls`. May be done
  /// again once tetrahedra behind those have been added.
  template <class VertexOf>
  void fillInAnyOrder(VertexOf const& vertexOf) {
    sortNumbers();
    dropInnerWalls();
    orderByWalls(pointsOf(vertexOf));
    fill(pointsOf(vertexOf));
  }

  /// The missing tetrahedra and the faces of the convex hull, by the numbers of their points, the right way round.
  [[nodiscard]] std::vector<std::array<std::int32_t, 4>> const& tetrahedra() const { return tetrahedra_; }
  [[nodiscard]] std::vector<std::array<std::int32_t, 3>> const& hull() const { return hull_; }
  /// Faces of the mesh towards the frame that the filling has not, ascending. None where it fits.
  [[nodiscard]] std::vector<std::array<std::int32_t, 3>> unmetWalls() const;
  /// Six times the volumes of the convex hull and of the missing tetrahedra.
  [[nodiscard]] Entero128 hullVolume() const { return hullVolume_; }
  [[nodiscard]] Entero128 filledVolume() const { return filledVolume_; }

 private:
  using Face = std::array<std::int32_t, 3>;

  template <class VertexOf>
  [[nodiscard]] std::vector<CCoor3D<int>> pointsOf(VertexOf const& vertexOf) const {
    std::vector<CCoor3D<int>> points;
    points.reserve(numbers_.size());
    for (const std::int32_t n : numbers_) points.push_back(vertexOf(n));
    return points;
  }
  void sortNumbers();
  void orderByWalls(std::vector<CCoor3D<int>> const& points);
  void fill(std::vector<CCoor3D<int>> points);
  void dropInnerWalls();
  [[nodiscard]] bool meetsWall(Face face);

  std::vector<std::int32_t> numbers_;  // of points that see the frame, in the end by their turns
  std::vector<Face> walls_;            // of the mesh towards the frame, ascending, each with ascending numbers
  std::vector<bool> met_;              // of each wall
  std::vector<std::array<std::int32_t, 4>> tetrahedra_;
  std::vector<Face> hull_;
  Entero128 hullVolume_{0}, filledVolume_{0};
};

}  // namespace Meseta47::host
