#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/Steps.h"
#include "host/mesh/SpaceReader.h"

namespace Meseta47::host {

enum class SpaceFaultKind {
  repeatedCorner,      ///< a tetrahedron with a vertex twice
  inverted,            ///< a tetrahedron that runs the wrong way round
  flat,                ///< a tetrahedron without volume
  doubledTetrahedron,  ///< tetrahedra of the same four vertices, but for the first
  doubledVertex,       ///< vertices at one place, but for the first
  unusedVertex,        ///< a vertex without a tetrahedron
  crowdedFace,         ///< a face of more than two tetrahedra
  sameSideFace,        ///< a face with both its tetrahedra on one side
  notDelaunay,         ///< an inner face across which a vertex lies strictly inside the sphere of the tetrahedron
  separatePiece,       ///< a piece that a whole mesh would not have
  noBall,              ///< vertices, edges, faces and tetrahedra of a whole mesh are not those of a ball
  wrongVolume,         ///< a whole mesh whose volumes do not add up to that of the convex hull
};

/// A kind of fault: how often it was met, and where first.
struct SpaceFault {
  SpaceFaultKind kind;
  std::uint64_t count = 0;
  std::string first;

  [[nodiscard]] char const* name() const;  ///< for programs
  [[nodiscard]] std::string text() const;  ///< for a person
};

struct SpaceReport {
  std::uint64_t vertices = 0, tetrahedra = 0, edges = 0, faces = 0;
  std::uint64_t boundaryFaces = 0;  ///< those of one tetrahedron
  std::uint64_t pieces = 0;         ///< what hangs together across faces
  double volume = 0;                ///< of all tetrahedra, in cubic units of the file
  double hullShare = 0;             ///< of the convex hull's volume that the tetrahedra have
  std::vector<SpaceFault> faults;   ///< one a kind, in the order of the kinds; none when the mesh is sound
};

/// Proves a mesh in space with exact integer arithmetic: each kind of fault is looked for, and all are counted. With
/// `whole` the mesh must be that of all its vertices: one piece, a ball by Euler's count, and of the volume of their
/// convex hull to the last unit. Upright tetrahedra over paired faces that fill the hull can neither overlap nor leave
/// a gap. Tetrahedra with a fault of their own are left out of what would only repeat it. O(t log t), about 200 bytes a
/// tetrahedron. What `steps` throws ends the check.
[[nodiscard]] SpaceReport checkSpaceMesh(ExactSpaceMesh const& mesh, bool whole, Steps const& steps = {});

}  // namespace Meseta47::host
