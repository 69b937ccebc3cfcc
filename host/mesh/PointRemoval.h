#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "host/HostApp.h"
#include "tetrahedral/CTriangulacion3D.h"

namespace Meseta47::host {

/// The vertices of a kept mesh that stand where the points of a cloud file do, to its last decimal, as indices. Throws
/// FileError for the file, and Failure when some point of it is no vertex: it names the first.
[[nodiscard]] std::vector<unsigned> verticesAt(CTriangulacion3D& mesh, std::string const& cloud, HostApp& app);
/// Those of the classes whose answer is true.
[[nodiscard]] std::vector<unsigned> verticesOf(CTriangulacion3D& mesh, std::array<bool, 256> const& classes);

/// Takes them out. Throws Failure when the mesh cannot be filled anew, and Cancelled.
void removeVertices(CTriangulacion3D& mesh, std::vector<unsigned>& vertices, std::string const& name);

}  // namespace Meseta47::host
