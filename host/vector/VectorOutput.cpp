#include "host/vector/VectorOutput.h"

#include <algorithm>
#include <cpl_conv.h>
#include <filesystem>
#include <fmt/format.h>
#include <ogrsf_frmts.h>
#include <utility>

#include "host/Failure.h"
#include "host/FileError.h"
#include "host/Parsing.h"
#include "host/vector/DxfHeader.h"
#include "host/vector/Gdal.h"
#include "platform/CFicheroParcial.h"

namespace Meseta47::host {

namespace fs = std::filesystem;

/// What differs between the formats.
struct VectorOutput::Format {
  char const* extension;
  char const* driver;
  void (*registers)();
  bool holdsSystem;
  bool bySystemCode;               // names a system by its EPSG code alone
  std::vector<char const*> sides;  // endings of files beside the main one, of ours or of programs that used the old one
};

VectorOutput::Format const* VectorOutput::findFormat(std::string const& name) {
  static const std::array<Format, 5> kFormats{{
      // A journal left beside an older database would be played back into the new one.
      {".gpkg", "GPKG", RegisterOGRGeoPackage, true, false, {".gpkg-wal", ".gpkg-shm", ".gpkg-journal"}},
      {".geojson", "GeoJSON", RegisterOGRGeoJSON, true, true, {}},
      {".fgb", "FlatGeobuf", RegisterOGRFlatGeobuf, true, false, {}},
      {".shp",
       "ESRI Shapefile",
       RegisterOGRShape,
       true,
       false,
       {".shx", ".dbf", ".prj", ".cpg", ".qix", ".sbn", ".sbx", ".shp.xml"}},
      {".dxf", "DXF", RegisterOGRDXF, false, false, {}},
  }};
  const std::string extension = extensionOf(name);
  const auto found = std::find_if(kFormats.begin(), kFormats.end(),
                                  [&](Format const& format) { return extension == format.extension; });
  return found == kFormats.end() ? nullptr : &*found;
}

VectorOutput::Format const& VectorOutput::formatOf(std::string const& name) {
  if (Format const* const format = findFormat(name)) {
    if (format->extension != std::string_view(".shp") || fs::path(name).extension() == ".shp") return *format;
    throw UsageError(fmt::format("{}: write .shp in small letters: the files beside it have theirs so", name));
  }
  throw UsageError(fmt::format("{}: no vector format has the extension \"{}\": use .gpkg, .geojson, .fgb, .shp or .dxf",
                               name, fs::path(name).extension().string()));
}

namespace {

std::string fileName(std::string const& path) { return fs::path(path).filename().string(); }

OGRLineString lineOf(std::span<Place const> places) {
  OGRLineString line;
  line.setNumPoints(static_cast<int>(places.size()), FALSE);
  int i = 0;
  for (Place const& p : places) line.setPoint(i++, p[0], p[1], p[2]);
  return line;
}

/// GeoJSON names a system by a code of the register, or else its reader takes it for longitudes and latitudes.
ReferenceSystem byCode(ReferenceSystem const& system, std::string const& file) {
  const int code = system.epsg();
  if (code != 0) return ReferenceSystem::fromUser(fmt::format("EPSG:{}", code));
  throw FileError(file, fmt::format("GeoJSON can hold no reference system without an EPSG code, such as {}: write "
                                    ".gpkg or .fgb, or name the system with --a-srs",
                                    system.label()));
}

}  // namespace

void VectorOutput::requireFormat(std::string const& name) {
  const std::string target = targetOf(name, formatOf(name));
  if (&formatOf(name) == findFormat(target)) return;
  throw FileError(name, fmt::format("leads to {}, which is no name for a shapefile: give that one .shp", target));
}

std::string VectorOutput::targetOf(std::string const& name, Format const& format) {
  return format.driver == std::string_view("ESRI Shapefile") ? replacedBy(name) : name;
}

std::vector<std::string> VectorOutput::companionsOf(std::string const& name) {
  std::vector<std::string> companions;
  if (Format const* const format = findFormat(name)) {
    const std::string stem = fs::path(name).replace_extension().string();
    for (char const* const ending : format->sides) companions.push_back(stem + ending);
  }
  return companions;
}

void VectorOutput::requireNoOtherLayers(std::string const& name, std::string const& layer) {
  if (formatOf(name).driver != std::string_view("GPKG")) return;
  std::error_code error;
  if (!fs::exists(name, error)) return;
  startGdalFormat(formatOf(name).registers);
  const GdalReport report;
  char const* const drivers[] = {"GPKG", nullptr};
  char const* const options[] = {"LIST_ALL_TABLES=YES", nullptr};
  constexpr unsigned kWhatever = GDAL_OF_VECTOR | GDAL_OF_RASTER | GDAL_OF_READONLY;
  const GDALDatasetUniquePtr old(GDALDataset::Open(name.c_str(), kWhatever, drivers, options, nullptr));
  if (!old) return;  // no database: a file like any other
  const bool pictures = old->GetRasterCount() != 0 || old->GetMetadata("SUBDATASETS") != nullptr;
  for (OGRLayer* const found : old->GetLayers()) {
    if (found->GetName() == layer) continue;
    throw FileError(name, fmt::format("holds the layer \"{}\" too, which a new file would not: write to another file, "
                                      "or give --overwrite",
                                      found->GetName()));
  }
  if (pictures) {
    throw FileError(name, "holds pictures, which a new file would not: write to another file, or give --overwrite");
  }
}

VectorOutput::VectorOutput(std::string const& name, ReferenceSystem const& system, VectorLayer layer)
    : name_(name),
      format_(formatOf(name)),
      target_(targetOf(name, format_)),
      plan_(std::move(layer)),
      files_(fs::path(target_).parent_path().string(), name) {
  startGdalFormat(format_.registers);
  try {
    createLayer(format_.bySystemCode && system.isKnown() ? byCode(system, name_) : system);
  } catch (...) {
    abandon();
    throw;
  }
}

VectorOutput::~VectorOutput() { abandon(); }

void VectorOutput::createLayer(ReferenceSystem const& system) {
  const GdalReport report;
  GDALDriver* const driver = GetGDALDriverManager()->GetDriverByName(format_.driver);
  if (driver == nullptr) fail(fmt::format("the GDAL of this machine has no {} driver", format_.driver));
  // A database that is not finished is thrown away: nothing would ever be played back.
  const CPLConfigOptionSetter journal("OGR_SQLITE_JOURNAL", "OFF", false);
  CPLStringList how;
  if (isCad()) {
    dxfHeader_ = std::make_unique<DxfHeader>(system);
    if (!dxfHeader_->path().empty()) how.SetNameValue("HEADER", dxfHeader_->path().c_str());
  }
  dataset_ = driver->Create(files_.path(fileName(target_)).c_str(), 0, 0, 0, GDT_Unknown, how.List());
  if (dataset_ == nullptr) fail(report.failure());

  CPLStringList options;
  if (format_.driver == std::string_view("GeoJSON")) {
    options.SetNameValue("COORDINATE_PRECISION", std::to_string(std::max(plan_.decimals, 0)).c_str());
  }
  if (format_.driver == std::string_view("ESRI Shapefile")) {
    options.SetNameValue("ENCODING", "UTF-8");
    options.SetNameValue("DBF_DATE_LAST_UPDATE", "2000-01-01");  // equal runs give equal bytes
  }
  if (format_.driver == std::string_view("FlatGeobuf")) {
    options.SetNameValue("TEMPORARY_DIR", files_.path().c_str());  // else it is one of the system's, past this output
  }
  OGRSpatialReference spatial;
  spatial.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  const bool tell = system.isKnown() && format_.holdsSystem;
  if (tell) spatial.importFromWkt(system.wkt().c_str());
  layer_ = dataset_->CreateLayer(plan_.name.c_str(), tell ? &spatial : nullptr,
                                 plan_.polygons ? wkbPolygon25D : wkbLineString25D, options.List());
  if (layer_ == nullptr) fail(report.failure());
  createFields();
  if (dataset_->TestCapability(ODsCTransactions) != 0) dataset_->StartTransaction();
  files_.check();
}

void VectorOutput::createFields() {
  if (isCad()) return;
  const GdalReport report;
  for (VectorField const& field : plan_.fields) {
    OGRFieldDefn definition(field.name.c_str(), field.whole ? OFTInteger : OFTReal);
    if (!field.whole && plan_.decimals >= 0) {
      constexpr int kDigits = 18;  // of a double and a shapefile's column
      definition.SetWidth(kDigits);
      definition.SetPrecision(plan_.decimals);
    }
    if (layer_->CreateField(&definition) != OGRERR_NONE) fail(report.failure());
  }
}

void VectorOutput::addLine(std::span<Place const> places, std::span<double const> values, std::string const& cadLayer) {
  add(std::make_unique<OGRLineString>(lineOf(places)), values, cadLayer);
}

void VectorOutput::addPolygon(std::span<Ring const> rings, std::span<double const> values,
                              std::string const& cadLayer) {
  if (isCad()) {
    for (std::size_t i = 0; i < rings.size(); ++i) addLine(rings[i], values, i == 0 ? cadLayer : cadLayer + "_hole");
    return;
  }
  auto polygon = std::make_unique<OGRPolygon>();
  for (Ring const& ring : rings) {
    auto closed = std::make_unique<OGRLinearRing>();
    const OGRLineString line = lineOf(ring);
    closed->addSubLineString(&line);
    polygon->addRingDirectly(closed.release());
  }
  add(std::move(polygon), values, cadLayer);
}

void VectorOutput::add(std::unique_ptr<OGRGeometry> geometry, std::span<double const> values,
                       std::string const& cadLayer) {
  const GdalReport report;
  OGRFeature feature(layer_->GetLayerDefn());
  feature.SetGeometryDirectly(geometry.release());
  if (isCad()) {
    feature.SetField("Layer", cadLayer.c_str());
  } else {
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (plan_.fields[i].whole) {
        feature.SetField(static_cast<int>(i), static_cast<int>(values[i]));
      } else {
        feature.SetField(static_cast<int>(i), values[i]);
      }
    }
  }
  if (layer_->CreateFeature(&feature) != OGRERR_NONE) fail(report.failure());
  files_.check();
}

bool VectorOutput::isCad() const { return format_.driver == std::string_view("DXF"); }

void VectorOutput::closeDataset() {
  if (dataset_ != nullptr) GDALClose(std::exchange(dataset_, nullptr));
  layer_ = nullptr;
}

void VectorOutput::abandon() {
  files_.abandon();
  closeDataset();
}

void VectorOutput::finish() {
  if (std::exchange(finished_, true)) return;
  const GdalReport report;
  if (dataset_->TestCapability(ODsCTransactions) != 0) dataset_->CommitTransaction();
  closeDataset();
  if (report.failed()) fail(report.failure());
  files_.close();
}

void VectorOutput::commit() {
  finish();
  const CCerrojoCarpeta lock(CarpetaDe(CString::DesdeUtf8(replacedBy(target_))));
  for (std::string const& side : companionsOf(replacedBy(target_))) {
    std::error_code ignored;
    if (!files_.has(fileName(side))) fs::remove(side, ignored);
  }
  files_.commit(fileName(target_));
}

void VectorOutput::fail(std::string const& why) const {
  files_.check();  // what the disk said tells more than what GDAL made of it
  throw FileError(name_, fmt::format("cannot be written: {}: write another format or less at a time", why));
}

}  // namespace Meseta47::host
