#pragma once

#include "host/vector/TextVectorWriter.h"

namespace Meseta47::host {

/// The plainest DXF that every reader takes, that of release 12: a polyline a line, flat with an elevation where all
/// its heights are one, else in space; closed ones are marked so. It has no word for units. For builds without GDAL,
/// whose DXF names the unit.
class DxfWriter final : public TextVectorWriter {
 public:
  DxfWriter(VectorTarget const& target, VectorLayer const& layer);

  void addLine(std::span<Place const> places, std::span<double const> values, std::string const& cadLayer) override;
  void addPolygon(std::span<Ring const> rings, std::span<double const> values, std::string const& cadLayer) override;

 private:
  /// A group: its code on a line, its value on the next.
  void putText(char const* code, std::string_view value);
  void putPlace(Place const& place);
  [[nodiscard]] std::string_view tail() const override { return "0\nENDSEC\n0\nEOF\n"; }
};

/// Opens one: an entry of the table of formats.
[[nodiscard]] std::unique_ptr<VectorWriter> openPlainDxf(VectorTarget const& target, ReferenceSystem const& system,
                                                         VectorLayer layer);

}  // namespace Meseta47::host
