#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "host/vector/ReferenceSystem.h"
#include "host/vector/VectorLayer.h"
#include "host/vector/VectorWriter.h"

namespace Meseta47::host {

/// A vector file in the making, of the format that its extension names: .gpkg, .geojson, .fgb, .shp or .dxf. It is
/// written as NAME.part and takes its name in the end: all the files of a shapefile or none, and nothing under their
/// names before. Two runs that write one shapefile leave the files of one of them. What is added goes to the disk as it
/// comes; of a FlatGeobuf and a DXF a second copy may stand there for a while.
///
/// Geometries have heights. A DXF knows no fields: there the name that each geometry is given is its layer, and rings
/// of polygons are closed lines, since CAD has no polygons with holes. Throws FileError. Used by one thread at a time.
class VectorOutput {
 public:
  /// Throws UsageError unless the extension names a format that this build writes. Cheap: to be called before any work.
  static void requireFormat(std::string const& name);
  /// Throws a FileError for a GeoPackage that is there and holds more than a layer of that name, all of which a new one
  /// would take the place of.
  static void requireNoOtherLayers(std::string const& name, std::string const& layer);
  /// The names of the files that may stand beside one of its format, and belong to it.
  static std::vector<std::string> companionsOf(std::string const& name);

  /// Opens the files that the format begins with. Throws UsageError as requireFormat does, FileError for a folder that
  /// cannot be written, a format that this GDAL lacks, or a reference system that the format cannot hold.
  VectorOutput(std::string const& name, ReferenceSystem const& system, VectorLayer layer);

  /// Adds a line of two places or more. `values` follow the fields of the layer.
  void addLine(std::span<Place const> places, std::span<double const> values, std::string const& cadLayer) {
    writer_->addLine(places, values, cadLayer);
  }
  /// Adds a polygon: its outer ring first, then its holes, which in a DXF go to a layer of their own.
  void addPolygon(std::span<Ring const> rings, std::span<double const> values, std::string const& cadLayer) {
    writer_->addPolygon(rings, values, cadLayer);
  }

  /// Brings all to the disk, still as NAME.part: what a full disk refuses, it refuses by here. Nothing may be added
  /// afterwards.
  void finish();
  /// Gives everything its name; finishes first when that was not done. Files that belong to what is replaced, and would
  /// say something wrong about the new one, go.
  void commit();

 private:
  VectorTarget target_;
  std::unique_ptr<VectorWriter> writer_;
  bool finished_ = false;
};

}  // namespace Meseta47::host
