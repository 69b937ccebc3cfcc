#pragma once

#include "host/vector/VectorInput.h"
#include "host/vector/VectorOutput.h"
#include "tests/host/HostScenes.h"

namespace Meseta47::host {

inline constexpr std::array<char const*, 5> kVectorExtensions{"gpkg", "geojson", "fgb", "shp", "dxf"};

/// A layer of lines whose one field is a height.
inline VectorLayer someLines(int decimals = 2) { return {"contour", false, decimals, {{"ELEV", false}}}; }

inline Ring square(double x, double y, double side, double z) {
  return {{x, y, z}, {x + side, y, z}, {x + side, y + side, z}, {x, y + side, z}, {x, y, z}};
}

/// The places of a file's entities, in an order of their own: formats with an index put them in another one.
inline std::vector<std::vector<Place>> sortedPlaces(VectorContent const& content) {
  std::vector<std::vector<Place>> all;
  for (VectorEntity const& entity : content.entities) all.push_back(entity.places);
  std::sort(all.begin(), all.end());
  return all;
}

}  // namespace Meseta47::host
