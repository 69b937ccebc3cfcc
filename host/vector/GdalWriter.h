#pragma once

#include <memory>
#include <string>

#include "host/vector/DxfHeader.h"
#include "host/vector/GdalFiles.h"
#include "host/vector/VectorWriter.h"

class GDALDataset;
class OGRGeometry;
class OGRLayer;

namespace Meseta47::host {

/// Has GDAL write a file, through GdalFiles.
class GdalWriter final : public VectorWriter {
 public:
  /// `driver` is GDAL's name of the format, and `registers` its function that makes the format known.
  GdalWriter(VectorTarget target, char const* driver, void (*registers)(), ReferenceSystem const& system,
             VectorLayer layer);
  ~GdalWriter() override;

  void addLine(std::span<Place const> places, std::span<double const> values, std::string const& cadLayer) override;
  void addPolygon(std::span<Ring const> rings, std::span<double const> values, std::string const& cadLayer) override;
  void finish() override;
  [[nodiscard]] bool makes(std::string const& fileName) const override { return files_.has(fileName); }
  void commit() override;

 private:
  void createLayer(ReferenceSystem const& system);
  void createFields();
  void add(std::unique_ptr<OGRGeometry> geometry, std::span<double const> values, std::string const& cadLayer);
  void closeDataset();
  void abandon();
  [[nodiscard]] bool isCad() const;
  [[noreturn]] void fail(std::string const& why) const;

  VectorTarget target_;
  char const* driver_;
  VectorLayer plan_;
  GdalFiles files_;
  std::unique_ptr<DxfHeader> dxfHeader_;  // GDAL reads it when it closes the file
  GDALDataset* dataset_ = nullptr;
  OGRLayer* layer_ = nullptr;
};

/// Throws a FileError for a GeoPackage that is there and holds more than a layer of that name.
void requireNoOtherGpkgLayers(std::string const& name, std::string const& layer);

}  // namespace Meseta47::host
