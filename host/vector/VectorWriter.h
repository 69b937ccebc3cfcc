#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/vector/ReferenceSystem.h"
#include "host/vector/VectorLayer.h"

namespace Meseta47::host {

/// A vector file in the making, of one format: what VectorOutput promises, a class a format. Without a commit() nothing
/// is left behind. Throws FileError.
class VectorWriter {
 public:
  VectorWriter() = default;
  VectorWriter(VectorWriter const&) = delete;
  VectorWriter& operator=(VectorWriter const&) = delete;
  virtual ~VectorWriter() = default;

  virtual void addLine(std::span<Place const> places, std::span<double const> values, std::string const& cadLayer) = 0;
  virtual void addPolygon(std::span<Ring const> rings, std::span<double const> values, std::string const& cadLayer) = 0;

  /// Brings all to the disk, still as NAME.part.
  virtual void finish() = 0;
  /// Whether a file of that name belongs to what was written.
  [[nodiscard]] virtual bool makes(std::string const& fileName) const = 0;
  /// Gives everything its name; after finish().
  virtual void commit() = 0;
};

/// Where an output goes.
struct VectorTarget {
  std::string name;  ///< as the user gave it
  std::string path;  ///< beside which the files of a format of several stand: there, where a link leads
};

/// A format of vector files.
struct VectorFormat {
  char const* extension;
  std::vector<char const*>
      sides;  ///< endings of files beside the main one, of ours or of programs that used the old one
  bool isShapefile = false;
  /// Opens a writer; null for a format that this build knows by name alone.
  std::unique_ptr<VectorWriter> (*open)(VectorTarget const& target, ReferenceSystem const& system, VectorLayer layer);
  /// Throws a FileError for a file that holds more than the layer; null where none can.
  void (*requireNoOtherLayers)(std::string const& name, std::string const& layer) = nullptr;
};

/// The formats of this build; those that only a build with GDAL writes are among them in any.
[[nodiscard]] std::span<VectorFormat const> vectorFormats();

}  // namespace Meseta47::host
