#pragma once

#include <array>
#include <string>
#include <vector>

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

}  // namespace Meseta47::host
