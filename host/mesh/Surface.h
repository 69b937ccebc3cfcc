#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace Meseta47::host {

/// A triangulated surface as a file or a cloud gives it, in real coordinates: nothing that a whole-number model needs,
/// and so whatever a file holds fits.
struct Surface {
  using Vertex = std::array<double, 3>;
  using Triangle = std::array<std::uint32_t, 3>;

  std::vector<Vertex> vertices;                      ///< x, y and height, in the units of the source; finite
  std::vector<Triangle> triangles;                   ///< indices of vertices, as they stand in the source
  std::vector<std::uint8_t> classes;                 ///< of each vertex; empty when the source knows none
  std::vector<std::array<std::uint8_t, 3>> colours;  ///< red, green, blue of each vertex; empty when it knows none
};

}  // namespace Meseta47::host
