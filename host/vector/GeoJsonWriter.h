#pragma once

#include "host/vector/TextVectorWriter.h"

namespace Meseta47::host {

/// GeoJSON, a feature a line. It names its reference system by the EPSG code, as readers of the format take it (GeoJSON
/// of 2008); without one they take it for longitudes and latitudes.
class GeoJsonWriter final : public TextVectorWriter {
 public:
  /// Throws a FileError for a system without a code.
  GeoJsonWriter(VectorTarget const& target, ReferenceSystem const& system, VectorLayer layer);

  void addLine(std::span<Place const> places, std::span<double const> values, std::string const& cadLayer) override;
  void addPolygon(std::span<Ring const> rings, std::span<double const> values, std::string const& cadLayer) override;

 private:
  void begin(std::span<double const> values, char const* kind);
  void end();
  void putPlaces(std::span<Place const> places);
  [[nodiscard]] std::string_view tail() const override { return "\n]\n}\n"; }

  VectorLayer layer_;
  bool any_ = false;
};

/// Opens one: an entry of the table of formats.
[[nodiscard]] std::unique_ptr<VectorWriter> openGeoJson(VectorTarget const& target, ReferenceSystem const& system,
                                                        VectorLayer layer);

}  // namespace Meseta47::host
