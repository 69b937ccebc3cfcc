#pragma once

#include <string>

#include "host/CloudOptions.h"
#include "host/HostApp.h"
#include "host/mesh/NativeModel.h"
#include "host/mesh/Surface.h"

namespace Meseta47::host {

enum class ModelKind { none, ply, native };

/// What a file is, by its first bytes or, where these are damaged, by its extension; none for clouds and for what
/// cannot be read.
[[nodiscard]] ModelKind modelKindOf(std::string const& path);

/// Reads a PLY file or the native model. Throws FileError, Failure or Cancelled.
[[nodiscard]] Surface readModel(std::string const& path, HostApp& app);

struct MappedSurface {
  Surface surface;
  ReferenceSystem system;  ///< unknown when nobody tells
};

/// Triangulates clouds and survey lines, as `urdimbre tin` does. Throws FileError, Failure, UsageError or Cancelled.
[[nodiscard]] MappedSurface triangulateCloud(CloudOptions const& options, HostApp& app);

/// Takes out the triangles with a side longer than that in plan.
void dropLongTriangles(Surface& surface, double maxSide);

}  // namespace Meseta47::host
