// The formats of a build without GDAL: those that the program writes by itself.
#include <array>

#include "host/vector/DxfWriter.h"
#include "host/vector/GeoJsonWriter.h"

namespace Meseta47::host {

std::span<VectorFormat const> vectorFormats() {
  static const std::array<VectorFormat, 5> kFormats{{
      {".gpkg", {}, false, nullptr},
      {".geojson", {}, false, openGeoJson},
      {".fgb", {}, false, nullptr},
      {".shp", {}, false, nullptr},
      {".dxf", {}, false, openPlainDxf},
  }};
  return kFormats;
}

}  // namespace Meseta47::host
