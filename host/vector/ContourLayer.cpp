#include "host/vector/ContourLayer.h"

#include <cmath>

namespace Meseta47::host {

namespace {

constexpr char kLayer[] = "contour", kIndexLayer[] = "contour_index";

double planLength(Ring const& places) {
  double length = 0;
  for (std::size_t i = 1; i < places.size(); ++i) {
    length += std::hypot(places[i][0] - places[i - 1][0], places[i][1] - places[i - 1][1]);
  }
  return length;
}

void placesOf(CLinea<int> const& line, CDataSemilla const& seed, Ring& places) {
  const double unit = seed.Precision();
  places.clear();
  for (CCoor3D<int> const& p : line.Puntos()) {
    places.push_back({p.x / unit + seed.origen[0], p.y / unit + seed.origen[1], p.z / unit + seed.origen[2]});
  }
}

}  // namespace

VectorLayer contourLayer(int decimals) {
  return {kLayer, false, decimals, {{"ELEV", false}, {"INDEX", true}, {"CLOSED", true}, {"LENGTH", false}}};
}

ContourWriter::ContourWriter(CDataSemilla const& seed, ContourLevels const& levels, ContourChoice const& choice,
                             VectorOutput& output)
    : seed_(seed), levels_(levels), choice_(choice), output_(output) {}

void ContourWriter::add(CLinea<int> const& line) {
  placesOf(line, seed_, places_);
  const double length = planLength(places_);
  if (length < choice_.minLength) {
    ++counts_.tooShort;
    return;
  }
  const int z = line.Punto(0).z;
  const bool isIndex = choice_.indexEvery != 0 && levels_.number(z) % choice_.indexEvery == 0;
  const bool isClosed = line.EsCerrada();
  const std::array<double, 4> values{places_.front()[2], isIndex ? 1.0 : 0.0, isClosed ? 1.0 : 0.0, length};
  output_.addLine(places_, values, isIndex ? kIndexLayer : kLayer);
  count(z, isIndex, isClosed, length);
}

void ContourWriter::count(int z, bool isIndex, bool isClosed, double length) {
  const double height = places_.front()[2];
  if (counts_.contours++ == 0) counts_.lowest = height;
  counts_.highest = height;
  if (level_ != z) ++counts_.levels;
  level_ = z;
  if (isClosed) ++counts_.closed;
  if (isIndex) ++counts_.index;
  counts_.vertices += places_.size();
  counts_.length += length;
}

}  // namespace Meseta47::host
