#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/Steps.h"
#include "host/mesh/ExactModel.h"

namespace Meseta47::host {

enum class ModelFaultKind {
  repeatedCorner,    ///< a triangle with a vertex twice
  clockwise,         ///< a triangle that runs the wrong way round
  flat,              ///< a triangle without area in plan
  doubledTriangle,   ///< triangles of the same three vertices, but for the first
  doubledVertex,     ///< vertices at one position, but for the first
  unusedVertex,      ///< a vertex without a triangle, in a whole surface or a format that leaves such out
  crowdedSide,       ///< a side of more than two triangles
  sameWaySide,       ///< a side that two triangles run in the same direction: one lies over the other
  notDelaunay,       ///< a side across which a vertex lies strictly inside the circle of the triangle
  overlappingFan,    ///< a vertex around which the triangles go round more than once
  noSheet,           ///< a piece whose vertices, sides, triangles and rings are not those of a sheet with holes
  dent,              ///< a turn of the rim to the outside: there a whole surface does not fill its convex hull
  hole,              ///< a ring that a whole surface would not have
  separatePiece,     ///< a piece that a whole surface would not have
  outlineNotClosed,  ///< a ring of the outline that is no ring: fewer than three points, or one of them twice
  outlineAside,      ///< a side of the outline that does not bound one triangle, or that the outline has twice
  outlineMissing,    ///< a side of one triangle that the outline lacks
  wrongHole,         ///< a ring of the outline called a hole that is none, or the reverse
};

/// A kind of fault: how often it was met, and where first.
struct ModelFault {
  ModelFaultKind kind;
  std::uint64_t count = 0;
  std::string first;

  [[nodiscard]] char const* name() const;  ///< for programs
  [[nodiscard]] std::string text() const;  ///< for a person
};

struct ModelReport {
  std::uint64_t vertices = 0, unused = 0, triangles = 0;
  std::uint64_t sides = 0;          ///< undirected
  std::uint64_t boundarySides = 0;  ///< those of one triangle
  std::uint64_t pieces = 0;         ///< what hangs together across sides
  std::uint64_t rings = 0;          ///< of the boundary; two holes that meet in a vertex have one
  std::vector<ModelFault> faults;   ///< one a kind, in the order of the kinds; none when the model is sound
};

/// Proves a model in plan, with exact integer arithmetic: each kind of fault is looked for, and all are counted.
///
/// Local Delaunay is proved across the sides that two triangles share: where a filter took a triangle out there is
/// nothing to prove. Euler is proved piece by piece, a vertex counting once for each fan of triangles around it: then
/// vertices - sides + triangles is 2 less the piece's rings. With `whole` the surface must be one piece with one ring
/// besides, use every vertex and fill their convex hull, so that no triangle can be missing: its rim never turns to the
/// outside, and goes round once as a sheet's must. Triangles with a fault of their own are left out of what
/// would only repeat it. O(t log t), about 80 bytes a triangle.
///
/// What `steps` throws ends the check.
[[nodiscard]] ModelReport checkModel(ExactModel const& model, bool whole, Steps const& steps = {});

}  // namespace Meseta47::host
