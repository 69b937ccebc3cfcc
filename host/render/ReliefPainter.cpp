#include "host/render/ReliefPainter.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>

#include "host/render/Light.h"
#include "host/render/SurfaceRaster.h"

namespace Meseta47::host {

namespace {

constexpr int kFine = 2;                                // samples of a pixel on each axis
constexpr std::size_t kSamples = std::size_t{8} << 20;  // of one band of rows: 64 MB
constexpr std::uint16_t kNoClass = 256;

bool isIn(View const& view, Surface::Vertex const& v) {
  return v[0] >= view.minX && v[0] <= view.maxX && v[1] >= view.minY && v[1] <= view.maxY;
}

/// Vertices over the samples of the map.
std::vector<Corner> cornersOf(Surface const& surface, Layout const& layout, View const& view) {
  const std::vector<Gradient> gradients = gradientsOf(surface);
  const auto relief = static_cast<float>(reliefScale(gradients));
  const double perUnit = kFine / layout.unit;
  std::vector<Corner> corners(surface.vertices.size());
  for (std::size_t i = 0; i < corners.size(); ++i) {
    Surface::Vertex const& v = surface.vertices[i];
    corners[i] = {(v[0] - view.minX) * perUnit, (view.maxY - v[1]) * perUnit, static_cast<float>(v[2]),
                  lightOn({gradients[i].east * relief, gradients[i].north * relief})};
  }
  return corners;
}

/// Points as dots over some rows of samples, each of its class; of dots in one place the highest is seen.
class Dots {
 public:
  Dots(Surface const& surface, std::vector<Corner> const& corners, Layout const& layout)
      : columns_(layout.mapWidth * kFine), order_(corners.size()), classes_(surface.classes), corners_(corners) {
    for (std::size_t i = 0; i < order_.size(); ++i) order_[i] = static_cast<std::uint32_t>(i);
    std::stable_sort(order_.begin(), order_.end(),
                     [&](auto a, auto b) { return corners[a].height < corners[b].height; });
    // Dots of an even scan touch; they are never too small to see, nor so large that they hide what is between.
    const double samples = static_cast<double>(columns_) * layout.mapHeight * kFine;
    const double spacing = std::sqrt(samples / static_cast<double>(std::max<std::size_t>(1, corners.size())));
    radius_ = std::clamp(0.8 * spacing, 1.2, layout.font / 4 * kFine);
  }

  void paint(int firstRow, int endRow) {
    firstRow_ = firstRow;
    seen_.assign(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(endRow - firstRow), kNoClass);
    for (const std::uint32_t i : order_) paintOne(corners_[i], classes_[i], endRow);
  }
  [[nodiscard]] std::uint16_t at(int column, int row) const {
    return seen_[static_cast<std::size_t>(row - firstRow_) * static_cast<std::size_t>(columns_) +
                 static_cast<std::size_t>(column)];
  }

 private:
  void paintOne(Corner const& dot, std::uint8_t code, int endRow) {
    const auto first = [](double place, int low, int high) {
      return static_cast<int>(std::clamp(std::ceil(place - 0.5), static_cast<double>(low), static_cast<double>(high)));
    };
    const int end = first(dot.row + radius_, firstRow_, endRow);
    for (int row = first(dot.row - radius_, firstRow_, endRow); row < end; ++row) {
      const double away = row + 0.5 - dot.row;
      const double half = std::sqrt(std::max(0.0, radius_ * radius_ - away * away));
      const auto begin = seen_.begin() + static_cast<std::ptrdiff_t>(row - firstRow_) * columns_;
      std::fill(begin + first(dot.column - half, 0, columns_), begin + first(dot.column + half, 0, columns_), code);
    }
  }

  int columns_, firstRow_ = 0;
  double radius_ = 1;
  std::vector<std::uint32_t> order_;
  std::vector<std::uint8_t> const& classes_;
  std::vector<Corner> const& corners_;
  std::vector<std::uint16_t> seen_;
};

/// The colours of samples, summed over a pixel.
class Mixer {
 public:
  Mixer(ReliefStyle const& style, Dots const* dots) : style_(style), dots_(dots) {
    for (unsigned code = 0; code < classes_.size(); ++code) {
      classes_[code] = classColour(static_cast<std::uint8_t>(code));
    }
    perUnit_ = 1 / (style.range.high - style.range.low);
  }

  [[nodiscard]] std::uint32_t pixel(SurfaceRaster const& raster, int column, int row) const {
    Colour sum;
    for (int i = 0; i < kFine * kFine; ++i) {
      const Colour sample = at(raster, column * kFine + i % kFine, row * kFine + i / kFine);
      sum = {sum.r + sample.r, sum.g + sample.g, sum.b + sample.b};
    }
    const auto byte = [](float v) { return static_cast<std::uint32_t>(v * (255.0F / (kFine * kFine)) + 0.5F); };
    return byte(sum.r) << 16 | byte(sum.g) << 8 | byte(sum.b);
  }

 private:
  [[nodiscard]] Colour at(SurfaceRaster const& raster, int column, int row) const {
    constexpr Colour kGround{0.80F, 0.80F, 0.80F};
    const std::uint16_t code = dots_ == nullptr ? kNoClass : dots_->at(column, row);
    if (!raster.has(column, row)) return code == kNoClass ? Colour{1, 1, 1} : classes_[code];
    const float light = raster.light(column, row);
    if (code != kNoClass) return lit(classes_[code], soft(light));
    if (dots_ != nullptr) return lit(kGround, soft(light));
    return lit(tint_.at(static_cast<float>((raster.height(column, row) - style_.range.low) * perUnit_)), light);
  }

  /// Light that leaves a colour such that it is found again in the legend.
  static float soft(float light) { return 1 + 0.4F * (light - 1); }

  ReliefStyle const& style_;
  Dots const* dots_;
  HeightTint tint_;
  std::array<Colour, 256> classes_;
  double perUnit_ = 1;
};

SurfaceRaster rasterOf(Surface const& surface, std::vector<Corner> const& corners, int columns, int firstRow,
                       int endRow, std::function<void()> const& tick) {
  constexpr std::size_t kOften = std::size_t{1} << 16;  // triangles; some milliseconds
  SurfaceRaster raster(columns, firstRow, endRow - firstRow);
  for (std::size_t i = 0; i < surface.triangles.size(); ++i) {
    if (i % kOften == 0) tick();
    Surface::Triangle const& t = surface.triangles[i];
    Corner const &a = corners[t[0]], &b = corners[t[1]], &c = corners[t[2]];
    if (std::max({a.row, b.row, c.row}) < firstRow || std::min({a.row, b.row, c.row}) > endRow) continue;
    raster.add(a, b, c);
  }
  return raster;
}

}  // namespace

HeightRange heightRangeOf(Surface const& surface, View const& view) {
  std::vector<double> heights;
  for (Surface::Vertex const& v : surface.vertices) {
    if (isIn(view, v)) heights.push_back(v[2]);
  }
  if (heights.empty()) {  // a view inside one triangle
    for (Surface::Vertex const& v : surface.vertices) heights.push_back(v[2]);
  }
  const auto atShare = [&heights](double share) {
    const auto place = heights.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(heights.size() - 1));
    std::nth_element(heights.begin(), place, heights.end());
    return *place;
  };
  constexpr double kFew = 0.002, kStretch = 1.5;
  const double lowest = atShare(0), highest = atShare(1), low = atShare(kFew), high = atShare(1 - kFew);
  HeightRange range{lowest, highest, false, false};
  if (highest - lowest > kStretch * (high - low) && high > low) range = {low, high, lowest<low, highest> high};
  if (!(range.low < range.high)) range = {lowest - 0.5, highest + 0.5, false, false};
  return range;
}

void paintRelief(Canvas& canvas, Layout const& layout, View const& view, Surface const& surface,
                 ReliefStyle const& style, Steps const& step) {
  const std::vector<Corner> corners = cornersOf(surface, layout, view);
  const int columns = layout.mapWidth * kFine;
  const int band = static_cast<int>(std::clamp<std::size_t>(kSamples / (static_cast<std::size_t>(columns) * kFine), 1,
                                                            static_cast<std::size_t>(layout.mapHeight)));
  std::optional<Dots> dots;
  if (style.classes) dots.emplace(surface, corners, layout);
  const Mixer mixer(style, dots ? &*dots : nullptr);
  for (int first = 0; first < layout.mapHeight; first += band) {
    const int end = std::min(first + band, layout.mapHeight);
    const auto done = [&](int row) {
      step(static_cast<unsigned long long>(row), static_cast<unsigned long long>(layout.mapHeight));
    };
    const SurfaceRaster raster = rasterOf(surface, corners, columns, first * kFine, end * kFine, [&] { done(first); });
    if (dots) dots->paint(first * kFine, end * kFine);
    for (int y = first; y < end; ++y) {
      const auto row = canvas.row(layout.mapY + y).subspan(static_cast<std::size_t>(layout.mapX));
      for (int x = 0; x < layout.mapWidth; ++x) row[static_cast<std::size_t>(x)] = mixer.pixel(raster, x, y);
      done(y + 1);
    }
  }
  canvas.rowsWritten();
}

}  // namespace Meseta47::host
