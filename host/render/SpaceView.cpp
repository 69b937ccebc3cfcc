// A picture of a surface from any side: every triangle onto a grid of pixels, the nearest one of each stays.
#include "host/render/SpaceView.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fmt/format.h>
#include <limits>

#include "host/Failure.h"
#include "host/render/Colour.h"

namespace Meseta47::host {

namespace {

constexpr int kFine = 2;          // samples a pixel on each axis
constexpr double kMargin = 0.03;  // of the picture, on each side
constexpr Colour kStone{0.80F, 0.77F, 0.71F}, kSky{0.97F, 0.98F, 1.0F};
constexpr double kLeast =
    0.25;                       // the light of a face turned away from it; between that and all of it goes by the angle
constexpr double kHaze = 0.25;  // how far the farthest fade into the ground of the picture
constexpr std::size_t kPerStep = 1 << 16;
constexpr double kDegree = 3.14159265358979323846 / 180;

using Vector = std::array<double, 3>;
double dot(Vector const& a, Vector const& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }
Vector cross(Vector const& a, Vector const& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
Vector unit(Vector const& a) {
  const double length = std::sqrt(dot(a, a));
  return length > 0 ? Vector{a[0] / length, a[1] / length, a[2] / length} : a;
}

/// Axes of the picture: to the right, up, and towards the viewer.
struct Axes {
  Vector right, up, near;

  explicit Axes(Direction const& from) : near(towards(from)) {
    const double a = from.azimuth * kDegree;
    right = {-std::cos(a), std::sin(a), 0};
    up = cross(near, right);
  }
};

struct Range {
  double low = std::numeric_limits<double>::max(), high = std::numeric_limits<double>::lowest();
  void include(double v) {
    low = std::min(low, v);
    high = std::max(high, v);
  }
  [[nodiscard]] double width() const { return high - low; }
};

/// A vertex in the grid of samples; `z` grows towards the viewer.
struct Placed {
  double x, y, z;
};

class Painter {
 public:
  Painter(Surface const& surface, Direction const& from, PictureSize size, bool classes)
      : surface_(surface),
        axes_(from),
        classes_(classes),
        light_(unit({axes_.near[0] - 0.7 * axes_.right[0] + 0.9 * axes_.up[0],
                     axes_.near[1] - 0.7 * axes_.right[1] + 0.9 * axes_.up[1],
                     axes_.near[2] - 0.7 * axes_.right[2] + 0.9 * axes_.up[2]})) {
    place(size);
    samples_.resize(std::size_t(width_) * std::size_t(height_), kSky);
    depths_.resize(samples_.size(), std::numeric_limits<float>::lowest());
  }

  void paint(Steps const& step) {
    for (std::size_t i = 0; i < surface_.triangles.size(); ++i) {
      if (i % kPerStep == 0) step(i, surface_.triangles.size());
      paint(surface_.triangles[i]);
    }
  }

  [[nodiscard]] Canvas picture() const {
    Canvas canvas(width_ / kFine, height_ / kFine);
    for (int y = 0; y < canvas.height(); ++y) {
      const auto row = canvas.row(y);
      for (int x = 0; x < canvas.width(); ++x) row[static_cast<std::size_t>(x)] = pixel(x, y);
    }
    canvas.rowsWritten();
    return canvas;
  }

  [[nodiscard]] double unitsPerPixel() const { return kFine / scale_; }

 private:
  void place(PictureSize size) {
    Range x, y;
    Vector const& base = surface_.vertices[surface_.triangles[0][0]];
    placed_.resize(surface_.vertices.size());
    std::vector<bool> used(placed_.size());
    for (auto const& t : surface_.triangles) {
      for (const std::uint32_t v : t) used[v] = true;
    }
    for (std::size_t v = 0; v < placed_.size(); ++v) {
      if (!used[v]) continue;
      Vector const& p = surface_.vertices[v];
      const Vector q{p[0] - base[0], p[1] - base[1], p[2] - base[2]};
      placed_[v] = {dot(q, axes_.right), dot(q, axes_.up), dot(q, axes_.near)};
      x.include(placed_[v].x);
      y.include(placed_[v].y);
      depth_.include(placed_[v].z);
    }
    fit(x, y, size);
    for (Placed& p : placed_) {
      p.x = (p.x - (x.low + x.high) / 2) * scale_ + width_ / 2.0;
      p.y = height_ / 2.0 - (p.y - (y.low + y.high) / 2) * scale_;
    }
  }

  void fit(Range const& x, Range const& y, PictureSize size) {
    const double least = 1e-9 * std::max({x.width(), y.width(), depth_.width(), 1e-9});
    const double w = std::max(x.width(), least), h = std::max(y.width(), least);
    int width = size.width, height = size.height;
    if (height == 0) {  // the longer side is given, the other follows what is seen
      const int longer = size.width, shortest = std::max(1, longer / 8);
      width = w >= h ? longer : std::max(shortest, static_cast<int>(std::lround(longer * w / h)));
      height = w >= h ? std::max(shortest, static_cast<int>(std::lround(longer * h / w))) : longer;
    }
    width_ = kFine * width;
    height_ = kFine * height;
    scale_ = (1 - 2 * kMargin) * std::min(width_ / w, height_ / h);
  }

  [[nodiscard]] Colour colourOf(std::uint32_t v) const {
    if (classes_) return classColour(surface_.classes[v]);
    if (surface_.colours.empty()) return kStone;
    auto const& c = surface_.colours[v];
    return {static_cast<float>(c[0]) / 255, static_cast<float>(c[1]) / 255, static_cast<float>(c[2]) / 255};
  }

  void paint(Surface::Triangle const& t) {
    Vector const &a = surface_.vertices[t[0]], &b = surface_.vertices[t[1]], &c = surface_.vertices[t[2]];
    Vector normal = unit(cross({b[0] - a[0], b[1] - a[1], b[2] - a[2]}, {c[0] - a[0], c[1] - a[1], c[2] - a[2]}));
    if (dot(normal, axes_.near) < 0) normal = {-normal[0], -normal[1], -normal[2]};
    // By half of the cosine and more, so that faces in the shade differ too: a ceiling seen from below is all in it.
    const auto light = static_cast<float>(kLeast + (1 - kLeast) * (1 + dot(normal, light_)) / 2);
    Placed const &p = placed_[t[0]], &q = placed_[t[1]], &r = placed_[t[2]];
    const double area = (q.x - p.x) * (r.y - p.y) - (q.y - p.y) * (r.x - p.x);
    if (area == 0) return;  // seen edge on
    const Colour colours[3] = {colourOf(t[0]), colourOf(t[1]), colourOf(t[2])};
    const int top = std::max(0, static_cast<int>(std::ceil(std::min({p.y, q.y, r.y}) - 0.5)));
    const int bottom = std::min(height_ - 1, static_cast<int>(std::floor(std::max({p.y, q.y, r.y}) - 0.5)));
    const int left = std::max(0, static_cast<int>(std::ceil(std::min({p.x, q.x, r.x}) - 0.5)));
    const int right = std::min(width_ - 1, static_cast<int>(std::floor(std::max({p.x, q.x, r.x}) - 0.5)));
    for (int y = top; y <= bottom; ++y) {
      for (int x = left; x <= right; ++x) {
        const double sx = x + 0.5, sy = y + 0.5;
        const double u = ((q.x - sx) * (r.y - sy) - (q.y - sy) * (r.x - sx)) / area;
        const double v = ((r.x - sx) * (p.y - sy) - (r.y - sy) * (p.x - sx)) / area;
        const double w = 1 - u - v;
        if (u < 0 || v < 0 || w < 0) continue;
        const double z = u * p.z + v * q.z + w * r.z;
        const std::size_t at = std::size_t(y) * std::size_t(width_) + std::size_t(x);
        if (static_cast<float>(z) <= depths_[at]) continue;
        depths_[at] = static_cast<float>(z);
        samples_[at] = seen(colours, u, v, w, light, z);
      }
    }
  }

  [[nodiscard]] Colour seen(Colour const (&of)[3], double u, double v, double w, float light, double z) const {
    const auto blend = [&](float Colour::*part) {
      return light * static_cast<float>(u * of[0].*part + v * of[1].*part + w * of[2].*part);
    };
    const double far = depth_.width() > 0 ? (depth_.high - z) / depth_.width() : 0;
    return mix({blend(&Colour::r), blend(&Colour::g), blend(&Colour::b)}, kSky, static_cast<float>(kHaze * far));
  }

  [[nodiscard]] std::uint32_t pixel(int x, int y) const {
    float r = 0, g = 0, b = 0;
    for (int i = 0; i < kFine * kFine; ++i) {
      const std::size_t row = std::size_t(y * kFine + i / kFine) * std::size_t(width_);
      Colour const& c = samples_[row + std::size_t(x * kFine + i % kFine)];
      r += c.r;
      g += c.g;
      b += c.b;
    }
    const auto byte = [](float sum) {
      return static_cast<std::uint32_t>(std::lround(std::clamp(sum / (kFine * kFine), 0.0F, 1.0F) * 255));
    };
    return byte(r) << 16 | byte(g) << 8 | byte(b);
  }

  Surface const& surface_;
  Axes axes_;
  bool classes_;
  Vector light_;
  std::vector<Placed> placed_;
  Range depth_;
  int width_ = 0, height_ = 0;  // in samples
  double scale_ = 1;            // samples in a unit
  std::vector<Colour> samples_;
  std::vector<float> depths_;
};

}  // namespace

std::array<double, 3> towards(Direction const& from) {
  const double a = from.azimuth * kDegree, e = from.elevation * kDegree;
  return {std::sin(a) * std::cos(e), std::cos(a) * std::cos(e), std::sin(e)};
}

Direction parseDirection(std::string const& text) {
  Direction d;
  char const *at = text.data(), *end = at + text.size();
  const auto first = std::from_chars(at, end, d.azimuth);
  if (first.ec == std::errc() && first.ptr != end && *first.ptr == ',') {
    const auto second = std::from_chars(first.ptr + 1, end, d.elevation);
    const bool whole = second.ec == std::errc() && second.ptr == end;
    if (whole && std::isfinite(d.azimuth) && std::abs(d.elevation) <= 90) return d;
  }
  throw UsageError(
      fmt::format("--view {}: give AZIMUTH,ELEVATION in degrees, elevation from -90 to 90, such as 210,30", text));
}

Canvas paintFrom(Surface const& surface, Direction const& from, PictureSize size, bool classes, Steps const& step,
                 double& unitsPerPixel) {
  Painter painter(surface, from, size, classes);
  painter.paint(step);
  unitsPerPixel = painter.unitsPerPixel();
  return painter.picture();
}

}  // namespace Meseta47::host
