#include "host/render/ContourPainter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fmt/format.h>
#include <numbers>

namespace Meseta47::host {

namespace {

constexpr double kStraight = 0.85;            // chord of a piece of a line that a text follows well enough
constexpr Colour kLine{0.29F, 0.18F, 0.09F};  // the brown of contours on printed maps

struct Pixel {
  double x = 0, y = 0;
};

double distance(Pixel const& a, Pixel const& b) { return std::hypot(b.x - a.x, b.y - a.y); }

bool isIndex(ContourLine const& line) { return line.level % kIndexEvery == 0; }

/// A line on the picture, without the bends that nobody can see.
struct Track {
  std::int64_t level = 0;
  std::vector<Pixel> points;
  double length = 0;  // pixels
};

Track trackOf(ContourLine const& line, Layout const& layout, View const& view) {
  constexpr double kUnseen = 0.3;  // pixels
  Track track{line.level, {}, 0};
  for (auto const& p : line.points) {
    const Pixel pixel{layout.column(view, p[0]), layout.row(view, p[1])};
    const bool last = &p == &line.points.back();
    if (!track.points.empty()) {
      const double step = distance(track.points.back(), pixel);
      if (step < kUnseen && !last) continue;
      track.length += step;
    }
    track.points.push_back(pixel);
  }
  return track;
}

void stroke(cairo_t* pen, Track const& track) {
  cairo_move_to(pen, track.points[0].x, track.points[0].y);
  for (std::size_t i = 1; i < track.points.size(); ++i) cairo_line_to(pen, track.points[i].x, track.points[i].y);
  cairo_stroke(pen);
}

void clipToMap(cairo_t* pen, Layout const& l) {
  cairo_rectangle(pen, l.mapX, l.mapY, l.mapWidth, l.mapHeight);
  cairo_clip(pen);
}

/// Writes heights along index contours, one after another, each clear of the others.
class Labels {
 public:
  Labels(Canvas& canvas, Layout const& layout, double interval)
      : canvas_(canvas), layout_(layout), interval_(interval), size_(std::max(8.5, layout.font * 0.72)) {}

  /// Tries some places along the line, the middle first.
  void add(Track const& track) {
    const std::string text = textOf(track.level);
    const double width = canvas_.textWidth(text, size_) + size_;
    if (track.length < 4 * width) return;
    for (const double share : {0.5, 0.35, 0.65, 0.2, 0.8}) {
      const auto [from, to] = chord(track, share * track.length - width / 2, width);
      if (distance(from, to) > kStraight * width && isFree(from, to)) return write(text, from, to);
    }
  }

 private:
  [[nodiscard]] std::string textOf(std::int64_t level) const {
    // What the interval's own decimals ask for, and no more.
    const std::string interval = fmt::format("{:g}", interval_);
    const std::size_t point = interval.find('.');
    const auto decimals = point == std::string::npos ? 0 : static_cast<int>(interval.size() - point) - 1;
    return fmt::format("{:.{}f}", static_cast<double>(level) * interval_ + 0.0, decimals);
  }

  /// The ends of a piece of the line.
  static std::pair<Pixel, Pixel> chord(Track const& track, double start, double length) {
    return {along(track, start), along(track, start + length)};
  }

  static Pixel along(Track const& track, double place) {
    for (std::size_t i = 1; i < track.points.size(); ++i) {
      Pixel const &a = track.points[i - 1], &b = track.points[i];
      const double step = distance(a, b);
      if (place <= step && step > 0) return {a.x + (b.x - a.x) * place / step, a.y + (b.y - a.y) * place / step};
      place -= step;
    }
    return track.points.back();
  }

  [[nodiscard]] bool isFree(Pixel const& from, Pixel const& to) const {
    const Pixel middle{(from.x + to.x) / 2, (from.y + to.y) / 2};
    const double margin = distance(from, to) / 2;
    Layout const& l = layout_;
    const bool inside = middle.x > l.mapX + margin && middle.x < l.mapX + l.mapWidth - margin &&
                        middle.y > l.mapY + margin && middle.y < l.mapY + l.mapHeight - margin;
    return inside && std::none_of(placed_.begin(), placed_.end(),
                                  [&](Pixel const& other) { return distance(middle, other) < 7 * size_; });
  }

  void write(std::string const& text, Pixel const& from, Pixel const& to) {
    const Pixel middle{(from.x + to.x) / 2, (from.y + to.y) / 2};
    double angle = std::atan2(to.y - from.y, to.x - from.x);
    if (std::abs(angle) > std::numbers::pi / 2) angle += std::numbers::pi;
    cairo_t* pen = canvas_.pen();
    cairo_save(pen);
    cairo_translate(pen, middle.x, middle.y);
    cairo_rotate(pen, angle);
    canvas_.text(text, 0, 0, size_, Align::centre, true);
    cairo_restore(pen);
    placed_.push_back(middle);
  }

  Canvas& canvas_;
  Layout const& layout_;
  double interval_, size_;
  std::vector<Pixel> placed_;
};

}  // namespace

void paintContours(Canvas& canvas, Layout const& layout, View const& view, std::vector<ContourLine> const& lines,
                   double interval, Steps const& step) {
  const double thin = std::max(0.6, layout.font / 18);
  const double shortest = 2 * layout.font;  // a ring of that length is a speck
  cairo_t* pen = canvas.pen();
  cairo_save(pen);
  clipToMap(pen, layout);
  cairo_set_line_join(pen, CAIRO_LINE_JOIN_ROUND);
  Labels labels(canvas, layout, interval);
  std::vector<Track> indexTracks;
  for (ContourLine const& line : lines) {
    step(1, 1);
    Track track = trackOf(line, layout, view);
    if (track.points.size() < 2 || track.length < shortest) continue;
    canvas.setColour(kLine, isIndex(line) ? 0.95 : 0.7);
    cairo_set_line_width(pen, isIndex(line) ? 2.2 * thin : thin);
    stroke(pen, track);
    if (isIndex(line)) indexTracks.push_back(std::move(track));
  }
  if (!layout.bare) {
    std::stable_sort(indexTracks.begin(), indexTracks.end(), [](auto& a, auto& b) { return a.length > b.length; });
    for (Track const& track : indexTracks) labels.add(track);
  }
  cairo_restore(pen);
}

}  // namespace Meseta47::host
