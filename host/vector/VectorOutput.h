#pragma once

#include <array>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "host/vector/DxfHeader.h"
#include "host/vector/GdalFiles.h"
#include "host/vector/ReferenceSystem.h"

class GDALDataset;
class OGRGeometry;
class OGRLayer;

namespace Meseta47::host {

using Place = std::array<double, 3>;  ///< easting, northing, height
using Ring = std::vector<Place>;      ///< closed: the last place repeats the first

/// A column of numbers of the one layer that an output holds.
struct VectorField {
  std::string name;  ///< ten letters at most: shapefiles have no more
  bool whole;        ///< whole numbers, else real ones with the decimals of the layer
};

struct VectorLayer {
  std::string name;
  bool polygons;  ///< else lines
  int decimals;   ///< of coordinates and lengths, where a format writes text
  std::vector<VectorField> fields;
};

/// A vector file in the making, of the format that its extension names: .gpkg, .geojson, .fgb, .shp or .dxf. GDAL
/// writes it as NAME.part, through GdalFiles, and it takes its name in the end: all the files of a shapefile or none,
/// and nothing under their names before. Two runs that write one shapefile leave the files of one of them. What is
/// added goes to the disk as it comes; of a FlatGeobuf and a DXF a second copy stands there for a while.
///
/// Geometries have heights. A DXF knows no fields: there the name that each geometry is given is its layer, and rings
/// of polygons are closed lines, since CAD has no polygons with holes. Throws FileError. Used by one thread at a time.
class VectorOutput {
 public:
  /// Throws UsageError unless the extension names a format. Cheap: to be called before any work.
  static void requireFormat(std::string const& name);
  /// Throws a FileError for a GeoPackage that is there and holds more than a layer of that name, all of which a new one
  /// would take the place of.
  static void requireNoOtherLayers(std::string const& name, std::string const& layer);
  /// The names of the files that may stand beside one of its format, and belong to it.
  static std::vector<std::string> companionsOf(std::string const& name);

  /// Opens the files that the format begins with. Throws UsageError as requireFormat does, FileError for a folder that
  /// cannot be written, a format that this GDAL lacks, or a reference system that the format cannot hold.
  VectorOutput(std::string const& name, ReferenceSystem const& system, VectorLayer layer);
  VectorOutput(VectorOutput const&) = delete;
  VectorOutput& operator=(VectorOutput const&) = delete;
  ~VectorOutput();

  /// Adds a line of two places or more. `values` follow the fields of the layer.
  void addLine(std::span<Place const> places, std::span<double const> values, std::string const& cadLayer);
  /// Adds a polygon: its outer ring first, then its holes, which in a DXF go to a layer of their own.
  void addPolygon(std::span<Ring const> rings, std::span<double const> values, std::string const& cadLayer);

  /// Brings all to the disk, still as NAME.part: what a full disk refuses, it refuses by here. Nothing may be added
  /// afterwards.
  void finish();
  /// Gives everything its name; finishes first when that was not done. Files that belong to what is replaced, and would
  /// say something wrong about the new one, go.
  void commit();

 private:
  struct Format;

  static Format const* findFormat(std::string const& name);
  static Format const& formatOf(std::string const& name);
  static std::string targetOf(std::string const& name, Format const& format);
  void createLayer(ReferenceSystem const& system);
  void createFields();
  void add(std::unique_ptr<OGRGeometry> geometry, std::span<double const> values, std::string const& cadLayer);
  void closeDataset();
  void abandon();
  [[nodiscard]] bool isCad() const;
  [[noreturn]] void fail(std::string const& why) const;

  std::string name_;  // as the user gave it
  Format const& format_;
  std::string target_;  // beside which the files of a format of several stand: there, where a link leads
  VectorLayer plan_;
  GdalFiles files_;
  std::unique_ptr<DxfHeader> dxfHeader_;  // GDAL reads it when it closes the file
  GDALDataset* dataset_ = nullptr;
  OGRLayer* layer_ = nullptr;
  bool finished_ = false;
};

}  // namespace Meseta47::host
