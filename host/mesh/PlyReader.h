#pragma once

#include <string>

#include "host/las/ByteSource.h"
#include "host/mesh/Surface.h"

namespace Meseta47::host {

/// Reads the triangles of a PLY file, ascii or binary little-endian: an element `vertex` with x, y and z of any type,
/// and an element `face` with a list vertex_indices or vertex_index of any types, three each. What else the file holds
/// is passed over.
///
/// Throws FileError with the cause when the file is damaged, cut, no PLY, or no surface: no faces, a face that is no
/// triangle or names a vertex that is not there, a coordinate that no place on Earth has, bytes behind the last
/// element. It takes no more memory than the file can fill. O(bytes), one block of the file at a time.
[[nodiscard]] Surface readPly(ByteSource& source);
[[nodiscard]] Surface readPly(std::string const& path);

}  // namespace Meseta47::host
