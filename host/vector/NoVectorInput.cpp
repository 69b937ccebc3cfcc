// A build without GDAL reads no vector files, and says so of those that it knows by name.
#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <string_view>

#include "host/FileError.h"
#include "host/Parsing.h"
#include "host/vector/VectorInput.h"

namespace Meseta47::host {

bool isVectorFile(std::string const& path) {
  constexpr std::array<std::string_view, 13> kKnown{".gpkg", ".geojson", ".json", ".fgb", ".shp", ".dxf", ".dgn",
                                                    ".gml",  ".kml",     ".gdb",  ".tab", ".mif", ".dbf"};
  return std::ranges::find(kKnown, extensionOf(path)) != kKnown.end();
}

VectorContent readVectorFile(std::string const& path, VectorOptions const&) {
  throw FileError(path, fmt::format("GDAL reads {}, and this urdimbre was built without it: give points as text, or "
                                    "take a build with GDAL",
                                    extensionOf(path)));
}

}  // namespace Meseta47::host
