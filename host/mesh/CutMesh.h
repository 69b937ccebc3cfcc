#pragma once

#include <optional>
#include <string>

#include "host/Steps.h"
#include "host/mesh/SpaceReader.h"
#include "host/mesh/Surface.h"

namespace Meseta47::host {

/// Where a mesh in space is cut open to show its inside: a plane at right angles to an axis.
struct Cut {
  unsigned axis = 0;         ///< x, y, z
  double at = 0;             ///< in coordinates of the input
  bool greaterGoes = false;  ///< what lies beyond it goes; else what lies before it

  /// Whether a tetrahedron goes: all of it, by the side on which its centre lies.
  [[nodiscard]] bool takes(ExactSpaceMesh const& mesh, Tetrahedron const& t) const;
};

/// Reads AXIS=VALUE, such as x=12.5. Throws UsageError.
[[nodiscard]] Cut parseCut(std::string const& text);

/// The outer faces of what a cut leaves of a mesh, or of all of it: grey where they are those of the mesh, and in
/// another colour where the cut has bared them. None when it leaves no tetrahedron. 64 bytes a tetrahedron while it
/// works. Throws what `step` throws.
[[nodiscard]] Surface outerFaces(ExactSpaceMesh const& mesh, std::optional<Cut> const& cut, Steps const& step);

}  // namespace Meseta47::host
