#pragma once

#include <functional>

#include "host/mesh/Surface.h"

namespace Meseta47::host {

/// A surface over the whole points of a square, two triangles for each of its cells.
inline Surface gridSurface(int cells, std::function<double(int, int)> const& height) {
  Surface s;
  const int side = cells + 1;
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) {
      s.vertices.push_back({static_cast<double>(x), static_cast<double>(y), height(x, y)});
    }
  }
  for (int y = 0; y < cells; ++y) {
    for (int x = 0; x < cells; ++x) {
      const auto a = static_cast<std::uint32_t>(y * side + x), up = static_cast<std::uint32_t>(side);
      s.triangles.push_back({a, a + 1, a + up});
      s.triangles.push_back({a + 1, a + up + 1, a + up});
    }
  }
  return s;
}

}  // namespace Meseta47::host
