#include "host/vector/GdalWriter.h"

#include <cpl_conv.h>
#include <fmt/format.h>
#include <ogrsf_frmts.h>
#include <utility>

#include "host/FileError.h"
#include "host/Paths.h"
#include "host/vector/Gdal.h"

namespace Meseta47::host {

namespace {

std::string fileName(std::string const& path) { return textOf(pathOf(path).filename()); }

OGRLineString lineOf(std::span<Place const> places) {
  OGRLineString line;
  line.setNumPoints(static_cast<int>(places.size()), FALSE);
  int i = 0;
  for (Place const& p : places) line.setPoint(i++, p[0], p[1], p[2]);
  return line;
}

}  // namespace

void requireNoOtherGpkgLayers(std::string const& name, std::string const& layer) {
  if (lookAt(name).clase == CDatosFichero::Nada) return;
  startGdalFormat(RegisterOGRGeoPackage);
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

GdalWriter::GdalWriter(VectorTarget target, char const* driver, void (*registers)(), ReferenceSystem const& system,
                       VectorLayer layer)
    : target_(std::move(target)),
      driver_(driver),
      plan_(std::move(layer)),
      files_(textOf(pathOf(target_.path).parent_path()), target_.name) {
  startGdalFormat(registers);
  try {
    createLayer(system);
  } catch (...) {
    abandon();
    throw;
  }
}

GdalWriter::~GdalWriter() { abandon(); }

void GdalWriter::createLayer(ReferenceSystem const& system) {
  const GdalReport report;
  GDALDriver* const driver = GetGDALDriverManager()->GetDriverByName(driver_);
  if (driver == nullptr) fail(fmt::format("the GDAL of this machine has no {} driver", driver_));
  // A database that is not finished is thrown away: nothing would ever be played back.
  const CPLConfigOptionSetter journal("OGR_SQLITE_JOURNAL", "OFF", false);
  CPLStringList how;
  if (isCad()) {
    dxfHeader_ = std::make_unique<DxfHeader>(system);
    if (!dxfHeader_->path().empty()) how.SetNameValue("HEADER", dxfHeader_->path().c_str());
  }
  dataset_ = driver->Create(files_.path(fileName(target_.path)).c_str(), 0, 0, 0, GDT_Unknown, how.List());
  if (dataset_ == nullptr) fail(report.failure());

  CPLStringList options;
  if (driver_ == std::string_view("ESRI Shapefile")) {
    options.SetNameValue("ENCODING", "UTF-8");
    options.SetNameValue("DBF_DATE_LAST_UPDATE", "2000-01-01");  // equal runs give equal bytes
  }
  if (driver_ == std::string_view("FlatGeobuf")) {
    options.SetNameValue("TEMPORARY_DIR", files_.path().c_str());  // else it is one of the system's, past this output
  }
  OGRSpatialReference spatial;
  spatial.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  const bool tell = system.isKnown() && !isCad();
  if (tell) spatial.importFromWkt(system.wkt().c_str());
  layer_ = dataset_->CreateLayer(plan_.name.c_str(), tell ? &spatial : nullptr,
                                 plan_.polygons ? wkbPolygon25D : wkbLineString25D, options.List());
  if (layer_ == nullptr) fail(report.failure());
  createFields();
  if (dataset_->TestCapability(ODsCTransactions) != 0) dataset_->StartTransaction();
  files_.check();
}

void GdalWriter::createFields() {
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

void GdalWriter::addLine(std::span<Place const> places, std::span<double const> values, std::string const& cadLayer) {
  add(std::make_unique<OGRLineString>(lineOf(places)), values, cadLayer);
}

void GdalWriter::addPolygon(std::span<Ring const> rings, std::span<double const> values, std::string const& cadLayer) {
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

void GdalWriter::add(std::unique_ptr<OGRGeometry> geometry, std::span<double const> values,
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

bool GdalWriter::isCad() const { return driver_ == std::string_view("DXF"); }

void GdalWriter::closeDataset() {
  if (dataset_ != nullptr) GDALClose(std::exchange(dataset_, nullptr));
  layer_ = nullptr;
}

void GdalWriter::abandon() {
  files_.abandon();
  closeDataset();
}

void GdalWriter::finish() {
  const GdalReport report;
  if (dataset_->TestCapability(ODsCTransactions) != 0) dataset_->CommitTransaction();
  closeDataset();
  if (report.failed()) fail(report.failure());
  files_.close();
}

void GdalWriter::commit() { files_.commit(fileName(target_.path)); }

void GdalWriter::fail(std::string const& why) const {
  files_.check();  // what the disk said tells more than what GDAL made of it
  throw FileError(target_.name, fmt::format("cannot be written: {}: write another format or less at a time", why));
}

}  // namespace Meseta47::host
