#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/HostApp.h"
#include "host/mesh/SpaceReader.h"
#include "tetrahedral/CTriangulacion3D.h"

namespace Meseta47::host {

/// Whether a file is a TIN3D mesh, by its first bytes or, where these are damaged, by its extension.
[[nodiscard]] bool isTin3d(std::string const& path);
/// The same by the name alone, for one that is yet to be written.
[[nodiscard]] bool isNamedTin3d(std::string const& path);
/// Whether the inputs of a verb are one such mesh. Throws UsageError for a mesh among other inputs.
[[nodiscard]] bool isMeshAlone(std::vector<std::string> const& inputs);

/// A mesh as its file has it, frame included.
struct Tin3d {
  std::unique_ptr<CTriangulacion3D> mesh;
  int version = 0;
};

/// Reads a mesh. `precision` is for the first version, which has none of its own; without it two decimals are taken,
/// and a warning says so. Throws FileError with the cause, or Cancelled.
[[nodiscard]] Tin3d readTin3d(std::string const& path, std::optional<int> precision, HostApp& app);

/// Writes it, under its name once it is whole. Throws FileError or Cancelled.
void writeTin3d(CTriangulacion3D& mesh, std::string const& output, int version);

/// The mesh as it stands, as one whose vertices are the corners of the frame and the points that it uses: it fills its
/// frame, unless it has a hole.
[[nodiscard]] ExactSpaceMesh framedMesh(CTriangulacion3D& mesh);

}  // namespace Meseta47::host
