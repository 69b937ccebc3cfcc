#include "host/vector/ContourLayer.h"

#include <cmath>
#include <optional>

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

ContourCounts addContours(CDibujo<int> const& contours, ContourLevels const& levels, ContourChoice const& choice,
                          VectorOutput& output, std::function<void(std::uint64_t)> const& progress) {
  ContourCounts counts;
  std::optional<int> level;
  Ring places;
  for (unsigned i = 0; i < contours.Cantidad(); ++i) {
    progress(i + 1);
    CLinea<int> const& line = contours[i];
    placesOf(line, contours.semilla, places);
    const double length = planLength(places);
    if (length < choice.minLength) {
      ++counts.tooShort;
      continue;
    }
    const int z = line.Punto(0).z;
    const double height = places.front()[2];
    const bool isIndex = choice.indexEvery != 0 && levels.number(z) % choice.indexEvery == 0;
    const bool isClosed = line.EsCerrada();
    const std::array<double, 4> values{height, isIndex ? 1.0 : 0.0, isClosed ? 1.0 : 0.0, length};
    output.addLine(places, values, isIndex ? kIndexLayer : kLayer);

    if (counts.contours++ == 0) counts.lowest = height;
    counts.highest = height;
    if (level != z) ++counts.levels;
    level = z;
    if (isClosed) ++counts.closed;
    if (isIndex) ++counts.index;
    counts.vertices += places.size();
    counts.length += length;
  }
  return counts;
}

}  // namespace Meseta47::host
