#include "host/render/Layout.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fmt/format.h>
#include <string_view>

#include "host/Failure.h"

namespace Meseta47::host {

namespace {

// In letters' heights.
constexpr double kMargin = 1.5;  // around everything
constexpr double kGap = 1.5;     // between map and legend
constexpr double kFoot = 3.0;    // for the scale bar

bool parseNumber(std::string_view text, int& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size();
}

/// What stands around the map, in pixels.
struct Frame {
  double margin = 0, right = 0, bottom = 0;

  [[nodiscard]] double width() const { return 2 * margin + right; }
  [[nodiscard]] double height() const { return 2 * margin + bottom; }
};

int pixels(double length, double unit) { return std::max(1, static_cast<int>(std::ceil(length / unit - 1e-9))); }

}  // namespace

PictureSize parseSize(std::string const& text) {
  const std::size_t cross = text.find('x');
  PictureSize size;
  const bool good = parseNumber(std::string_view(text).substr(0, cross), size.width) &&
                    (cross == std::string::npos || parseNumber(std::string_view(text).substr(cross + 1), size.height));
  if (!good) {
    throw UsageError(fmt::format("--size {}: give pixels as WIDTHxHEIGHT, or one number for the longer", text));
  }
  const bool inside =
      size.width >= 1 && size.longest() <= PictureSize::kLargest && (cross == std::string::npos || size.height >= 1);
  if (!inside) {
    throw UsageError(
        fmt::format("--size {}: a picture has from 1 to {} pixels on each side", text, PictureSize::kLargest));
  }
  return size;
}

double fontFor(PictureSize const& size) { return std::max(10.0, std::round(size.longest() / 85.0)); }

Layout layOut(View const& view, PictureSize const& size, double legendWidth, double legendHeight) {
  Layout l;
  l.font = fontFor(size);
  const int tallest = size.height == 0 ? size.width : size.height;
  Frame frame{std::round(kMargin * l.font), kGap * l.font + legendWidth, kFoot * l.font};
  l.bare = frame.width() > size.width / 2.0 || frame.height() > tallest / 2.0;
  if (l.bare) frame = {};
  l.unit = std::max(view.width() / (size.width - frame.width()), view.height() / (tallest - frame.height()));
  l.mapWidth = pixels(view.width(), l.unit);
  l.mapHeight = pixels(view.height(), l.unit);
  l.width = size.width;
  l.height = size.height;
  if (size.height == 0) {
    const double beside = std::max<double>(l.mapHeight, l.bare ? 0 : legendHeight - frame.bottom);
    l.width = std::min(size.width, static_cast<int>(std::ceil(l.mapWidth + frame.width())));
    l.height = std::min(size.width, static_cast<int>(std::ceil(beside + frame.height())));
  }
  l.mapX = std::max(0, static_cast<int>((l.width - l.mapWidth - frame.right) / 2));
  l.mapY = std::max(0, static_cast<int>((l.height - l.mapHeight - frame.bottom) / 2));
  l.mapWidth = std::min(l.mapWidth, l.width - l.mapX);
  l.mapHeight = std::min(l.mapHeight, l.height - l.mapY);
  const double mapRight = l.mapX + l.mapWidth;
  l.legend = {mapRight + kGap * l.font, static_cast<double>(l.mapY), legendWidth, static_cast<double>(l.mapHeight)};
  l.foot = {static_cast<double>(l.mapX), static_cast<double>(l.mapY + l.mapHeight), static_cast<double>(l.mapWidth),
            frame.bottom};
  return l;
}

}  // namespace Meseta47::host
