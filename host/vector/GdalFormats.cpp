#include <array>
#include <ogrsf_frmts.h>

#include "host/vector/GdalWriter.h"
#include "host/vector/GeoJsonWriter.h"

namespace Meseta47::host {

namespace {

constexpr char kGpkg[] = "GPKG", kFgb[] = "FlatGeobuf", kShp[] = "ESRI Shapefile", kDxf[] = "DXF";

template <auto& driver, void (*registers)()>
std::unique_ptr<VectorWriter> open(VectorTarget const& target, ReferenceSystem const& system, VectorLayer layer) {
  return std::make_unique<GdalWriter>(target, driver, registers, system, std::move(layer));
}

}  // namespace

std::span<VectorFormat const> vectorFormats() {
  static const std::array<VectorFormat, 5> kFormats{{
      // A journal left beside an older database would be played back into the new one.
      {".gpkg",
       {".gpkg-wal", ".gpkg-shm", ".gpkg-journal"},
       false,
       open<kGpkg, RegisterOGRGeoPackage>,
       requireNoOtherGpkgLayers},
      {".geojson", {}, false, openGeoJson},
      {".fgb", {}, false, open<kFgb, RegisterOGRFlatGeobuf>},
      {".shp",
       {".shx", ".dbf", ".prj", ".cpg", ".qix", ".sbn", ".sbx", ".shp.xml"},
       true,
       open<kShp, RegisterOGRShape>},
      {".dxf", {}, false, open<kDxf, RegisterOGRDXF>},
  }};
  return kFormats;
}

}  // namespace Meseta47::host
