#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <vector>

#include "support/Mesh.h"

namespace Meseta47::support {

/// A triangle mesh as it stands in a file: vertices from 0, in the file's own coordinates.
struct PlyMesh {
  std::vector<std::array<double, 3>> vertices;
  std::vector<Triangle> faces;
};

/// Reads a PLY of the form the program writes: binary little-endian, an element `vertex` with the doubles x, y, z and
/// perhaps other numbers, then an element `face` with the single property `list uchar int vertex_indices`, three each.
/// Throws std::runtime_error that says what is wrong, bytes after the last face and indices beyond the vertices
/// included.
[[nodiscard]] PlyMesh readPly(std::istream& in);
[[nodiscard]] PlyMesh readPly(std::filesystem::path const& file);

/// The mesh in integers, rounded to nearest: vertex 0 is point 1, `unitsPerMetre` is 1000 for millimetres, and `origin`
/// is taken off first. Throws std::runtime_error when a coordinate does not fit.
[[nodiscard]] Mesh scaled(PlyMesh const& ply, double unitsPerMetre, std::array<double, 3> const& origin = {0, 0, 0});

}  // namespace Meseta47::support
