#pragma once

#include <string>

namespace Meseta47::host {

/// The size of a picture: a width and a height, or one number for the longer of them, the other following the land.
struct PictureSize {
  static constexpr int kLargest = 20000;
  int width = 1600;
  int height = 0;  ///< 0: `width` is the longer side

  [[nodiscard]] int longest() const { return width > height ? width : height; }
};

/// Reads WIDTHxHEIGHT or one number. Throws UsageError.
[[nodiscard]] PictureSize parseSize(std::string const& text);

/// A part of the land, in its own units.
struct View {
  double minX = 0, minY = 0, maxX = 0, maxY = 0;

  [[nodiscard]] double width() const { return maxX - minX; }
  [[nodiscard]] double height() const { return maxY - minY; }
};

/// A box of a picture in pixels, y down.
struct Box {
  double x = 0, y = 0, width = 0, height = 0;
};

/// Where things stand in a picture, in pixels. North is up, and a unit is as long on both axes.
struct Layout {
  int width = 0, height = 0;
  double font = 0;    ///< size of the letters; what surrounds the map is measured in it
  bool bare = false;  ///< nothing but the map: the rest would take more room than it
  double unit = 0;    ///< units of the land in a pixel
  int mapX = 0, mapY = 0, mapWidth = 0, mapHeight = 0;
  Box legend;  ///< beside the map
  Box foot;    ///< below the map, for the scale bar

  [[nodiscard]] double column(View const& view, double x) const { return mapX + (x - view.minX) / unit; }
  [[nodiscard]] double row(View const& view, double y) const { return mapY + (view.maxY - y) / unit; }
};

/// The size of letters in a picture.
[[nodiscard]] double fontFor(PictureSize const& size);

/// Finds the greatest scale at which the view fits beside a legend of that width and height, and centres the whole. The
/// view has an extent on both axes.
[[nodiscard]] Layout layOut(View const& view, PictureSize const& size, double legendWidth, double legendHeight);

}  // namespace Meseta47::host
