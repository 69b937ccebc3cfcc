#include <cstdlib>

#include "fuzz/Fuzz.h"
#include "host/mesh/SpaceReader.h"

using namespace Meseta47;

namespace {

/// The reader goes by the extension; the formats begin in different ways.
std::string extensionOf(std::uint8_t const* data, std::size_t size) {
  const char first = size != 0 ? static_cast<char>(data[0]) : '<';
  return first == '$' ? ".msh" : first == 'M' ? ".mesh" : ".vtu";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  fuzz::reading([&] {
    const host::ExactSpaceMesh mesh = host::readSpaceMesh(fuzz::fileOf(data, size, extensionOf(data, size)));
    fuzz::require(!mesh.tetrahedra.empty());
    for (auto const& tetrahedron : mesh.tetrahedra) {
      for (const std::uint32_t corner : tetrahedron) fuzz::require(corner < mesh.vertices.size());
    }
    // Counted from the middle of each axis, so that differences fit 32 bits.
    for (auto const& vertex : mesh.vertices) {
      for (const int value : {vertex.x, vertex.y, vertex.z}) fuzz::require(std::abs(std::int64_t{value}) <= 1LL << 31);
    }
  });
  return 0;
}
