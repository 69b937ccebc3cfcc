#pragma once

#include <string>

#include "host/vector/ReferenceSystem.h"

namespace Meseta47::host {

/// The header that a DXF is to begin with: that of the GDAL at hand, but for the unit of its coordinates, which it says
/// are inches. Lives in memory, under a name that GDAL can open, and goes with the object.
class DxfHeader {
 public:
  /// Names the system's unit in plan; none for an unknown system, for angles, and for units that a DXF has no number
  /// for. The path is empty where GDAL's own header cannot be found or says nothing of units.
  explicit DxfHeader(ReferenceSystem const& system);
  DxfHeader(DxfHeader const&) = delete;
  DxfHeader& operator=(DxfHeader const&) = delete;
  ~DxfHeader();

  [[nodiscard]] std::string const& path() const { return path_; }

 private:
  std::string path_, text_;
};

/// The number that a DXF has for a unit in plan: 6 metres, 2 feet, 21 US survey feet ...; 0 for none.
[[nodiscard]] int dxfUnitOf(ReferenceSystem const& system);

}  // namespace Meseta47::host
