#include <cmath>

#include "fuzz/Fuzz.h"
#include "host/mesh/PlyReader.h"

using namespace Meseta47;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  fuzz::reading([&] {
    const host::Surface surface = host::readPly(*fuzz::sourceOf(data, size));
    fuzz::require(!surface.triangles.empty());
    for (auto const& triangle : surface.triangles) {
      for (const std::uint32_t corner : triangle) fuzz::require(corner < surface.vertices.size());
    }
    for (auto const& vertex : surface.vertices) {
      for (const double value : vertex) fuzz::require(std::isfinite(value));
    }
  });
  return 0;
}
