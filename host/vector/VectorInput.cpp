#include "host/vector/VectorInput.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <memory>
#include <ogrsf_frmts.h>
#include <set>

#include "host/FileError.h"
#include "host/Parsing.h"
#include "host/Paths.h"
#include "host/las/ByteSource.h"
#include "host/vector/Gdal.h"

namespace Meseta47::host {

namespace {

constexpr int kMillimetres = 3;
constexpr double kFullTurn = 360;  // degrees; farther from zero a longitude is none

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; });
  return text;
}

/// Extensions of all vector formats of this GDAL, without dots.
std::set<std::string> const& vectorExtensions() {
  static const std::set<std::string> kFound = [] {
    startGdalFormats();
    std::set<std::string> found;
    GDALDriverManager* const drivers = GetGDALDriverManager();
    for (int i = 0; i < drivers->GetDriverCount(); ++i) {
      GDALDriver* const driver = drivers->GetDriver(i);
      if (driver->GetMetadataItem(GDAL_DCAP_VECTOR) == nullptr) continue;
      char const* const listed = driver->GetMetadataItem(GDAL_DMD_EXTENSIONS);
      const CPLStringList extensions(CSLTokenizeString(listed != nullptr ? listed : ""));
      for (int e = 0; e < extensions.Count(); ++e) found.insert(lower(extensions[e]));
    }
    return found;
  }();
  return kFound;
}

class Reader {
 public:
  Reader(std::string const& path, VectorOptions const& options) : path_(path), options_(options) {}

  VectorContent read() {
    requireOrdinaryFile(path_);
    const GdalReport report;
    const GDALDatasetUniquePtr dataset(
        GDALDataset::Open(path_.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY, nullptr, nullptr, nullptr));
    if (!dataset) {
      fail(fmt::format("cannot be read as a vector file: {}", report.failed() ? report.failure()
                                                                              : "its format is "
                                                                                "not known"));
    }
    const bool isDxf = EQUAL(dataset->GetDriverName(), "DXF");
    for (OGRLayer* layer : dataset->GetLayers()) {
      if (layer->GetGeomType() != wkbNone) readLayer(*layer, isDxf);
      if (report.failed()) fail(fmt::format("cannot be read to its end: {}", report.failure()));
    }
    conclude();
    return std::move(content_);
  }

 private:
  void readLayer(OGRLayer& layer, bool isDxf) {
    layerName_ = layer.GetName();
    const std::string field = options_.codeField.empty() && isDxf ? "Layer" : options_.codeField;
    const int index = field.empty() ? -1 : layer.GetLayerDefn()->GetFieldIndex(field.c_str());
    if (!field.empty() && index < 0) failOnField(layer);
    bool any = false;
    for (auto const& feature : layer) {
      feature_ = feature->GetFID();
      code_ = index >= 0 && feature->IsFieldSetAndNotNull(index) ? feature->GetFieldAsString(index) : layerName_;
      if (OGRGeometry const* const geometry = feature->GetGeometryRef(); geometry != nullptr && !geometry->IsEmpty()) {
        any = true;
        take(*geometry);
      }
    }
    if (any) meetSystem(layer.GetSpatialRef());
  }

  void take(OGRGeometry const& geometry) {
    const OGRwkbGeometryType type = wkbFlatten(geometry.getGeometryType());
    if (OGR_GT_IsNonLinear(type) != 0) {
      const std::unique_ptr<OGRGeometry> chords(geometry.getLinearGeometry());
      take(*chords);
    } else if (type == wkbPoint) {
      takePoint(*geometry.toPoint());
    } else if (type == wkbLineString) {
      takeLine(*geometry.toLineString());
    } else if (OGR_GT_IsSubClassOf(type, wkbCurvePolygon) != 0) {
      for (OGRLinearRing const* ring : *geometry.toPolygon()) takeLine(*ring);
    } else if (OGR_GT_IsSubClassOf(type, wkbGeometryCollection) != 0) {
      for (OGRGeometry const* part : *geometry.toGeometryCollection()) take(*part);
    } else if (OGR_GT_IsSubClassOf(type, wkbPolyhedralSurface) != 0) {
      for (OGRPolygon const* part : *geometry.toPolyhedralSurface()) take(*part);
    }
  }

  void takePoint(OGRPoint const& point) {
    if (!isWanted() || !hasHeights(point.Is3D() != 0, point.getZ())) return;
    auto& all = content_.entities;
    if (all.empty() || all.back().isLine || all.back().code != code_) all.push_back({code_, false, {}});
    add(point.getX(), point.getY(), point.getZ());
  }

  void takeLine(OGRLineString const& line) {
    if (line.IsEmpty() || !isWanted()) return;
    bool is3D = line.Is3D() != 0;
    for (int i = 0; is3D && i < line.getNumPoints(); ++i) is3D = std::isfinite(line.getZ(i));
    if (!hasHeights(is3D, 0)) return;
    content_.entities.push_back({code_, true, {}});
    content_.entities.back().places.reserve(static_cast<std::size_t>(line.getNumPoints()));
    for (int i = 0; i < line.getNumPoints(); ++i) add(line.getX(i), line.getY(i), line.getZ(i));
  }

  bool isWanted() {
    auto const& codes = options_.codes;
    if (codes.empty() || std::find(codes.begin(), codes.end(), code_) != codes.end()) return true;
    ++content_.otherCodes;
    return false;
  }

  bool hasHeights(bool is3D, double z) {
    if (is3D && std::isfinite(z)) return true;
    if (!options_.skipWithoutZ) {
      fail(
          fmt::format("feature {} of layer {} has no heights: give it some, or leave such geometries out with "
                      "--without-z skip",
                      feature_, layerName_));
    }
    ++content_.withoutZ;
    return false;
  }

  void add(double x, double y, double z) {
    const double farthest = std::max({std::abs(x), std::abs(y), std::abs(z)});
    if (!std::isfinite(x) || !std::isfinite(y) || farthest > kFarthestPlace) {
      fail(
          fmt::format("feature {} of layer {} has the coordinates {:g}, {:g}, {:g}, which lead to no place on Earth: "
                      "mend it",
                      feature_, layerName_, x, y, z));
    }
    content_.entities.back().places.push_back({x, y, z});
    content_.extent.include(x, y, z);
    ++content_.places;
  }

  void meetSystem(OGRSpatialReference const* found) {
    if (found == nullptr || contradictory_) return;
    char* text = nullptr;
    constexpr char const* kForm[] = {"FORMAT=WKT2_2019", nullptr};
    found->exportToWkt(&text, kForm);
    const std::string wkt(text != nullptr ? text : "");
    CPLFree(text);
    if (wkt.empty()) return;
    const ReferenceSystem system = understood(wkt);
    const auto common = ReferenceSystem::common(content_.system, system);
    if (!common && options_.anySystem) {
      contradictory_ = true;
      content_.system = {};
      return;
    }
    if (!common) {
      fail(
          fmt::format("its layers have different reference systems, {} and {}: transform one, or name the right one "
                      "with --a-srs",
                      content_.system.label(), system.label()));
    }
    content_.system = *common;
  }

  [[nodiscard]] ReferenceSystem understood(std::string const& wkt) const {
    try {
      return ReferenceSystem::fromWkt(wkt, path_);
    } catch (FileError const&) {
      if (!options_.anySystem) throw;
      return {};
    }
  }

  void conclude() {
    if (content_.places == 0) {
      const auto left = content_.withoutZ + content_.otherCodes;
      fail(left == 0 ? "holds no lines, polygons or points"
                     : fmt::format("holds nothing of use: {} geometries have no heights, {} have other codes",
                                   withThousands(content_.withoutZ), withThousands(content_.otherCodes)));
    }
    dropImpossibleDegrees();
    const int most = content_.system.isGeographic() ? kMostDecimals : kMillimetres;
    for (VectorEntity const& entity : content_.entities) {
      for (auto const& place : entity.places) raiseDecimals(place, most);
    }
  }

  /// GeoJSON without a word about its system is said to hold longitudes and latitudes. Many a file holds metres.
  void dropImpossibleDegrees() {
    Extent const& e = content_.extent;
    const double farthest = std::max({std::abs(e.min[0]), std::abs(e.max[0]), std::abs(e.min[1]), std::abs(e.max[1])});
    if (content_.system.isGeographic() && farthest > kFullTurn) content_.system = {};
  }

  void raiseDecimals(std::array<double, 3> const& place, int most) {
    for (const double value : place) {
      for (; content_.decimals < most; ++content_.decimals) {
        const double units = value * std::pow(10.0, content_.decimals);
        if (std::abs(units - std::round(units)) < 1e-9 * std::max(1.0, std::abs(units))) break;
      }
    }
  }

  [[noreturn]] void failOnField(OGRLayer& layer) const {
    std::string names;
    OGRFeatureDefn const& fields = *layer.GetLayerDefn();
    for (int i = 0; i < fields.GetFieldCount(); ++i) {
      names += (i == 0 ? "" : ", ") + std::string(fields.GetFieldDefn(i)->GetNameRef());
    }
    fail(fmt::format("layer {} has no field {}: it has {}", layerName_, options_.codeField,
                     names.empty() ? "none" : names));
  }

  [[noreturn]] void fail(std::string const& why) const { throw FileError(path_, why); }

  std::string const& path_;
  VectorOptions const& options_;
  VectorContent content_;
  std::string layerName_, code_;
  GIntBig feature_ = 0;
  bool contradictory_ = false;  // its layers have several systems
};

}  // namespace

bool isVectorFile(std::string const& path) {
  static const std::set<std::string> kCloudsToo{"", "las", "laz", "txt", "xyz", "csv", "tsv", "asc", "pts", "dat"};
  const std::string extension = extensionOf(path);
  const std::string name = extension.empty() ? "" : extension.substr(1);
  return kCloudsToo.count(name) == 0 && vectorExtensions().count(name) != 0;
}

VectorContent readVectorFile(std::string const& path, VectorOptions const& options) {
  if (lookAt(path).clase == CDatosFichero::Nada) throw FileError(path, "cannot be read: No such file or directory");
  startGdalFormats();
  return Reader(path, options).read();
}

}  // namespace Meseta47::host
