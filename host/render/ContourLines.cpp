#include "host/render/ContourLines.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "planar/CNivelDeCurvas.h"
#include "planar/CSegmentos.h"

namespace Meseta47::host {

namespace {

constexpr double kUnits = 1 << 30;  // in the longest extent: fine enough that places which differ stay apart

/// The surface in the integers that contours are cut in. The library cuts at the multiples of a whole number: so
/// heights are counted in parts of an interval, from a level below them all.
class IntegerSurface {
 public:
  IntegerSurface(Surface const& surface, double interval) : interval_(interval) {
    std::array<double, 3> low{}, high{};
    low.fill(std::numeric_limits<double>::infinity());
    high.fill(-std::numeric_limits<double>::infinity());
    for (Surface::Triangle const& t : surface.triangles) {
      for (const std::uint32_t corner : t) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
          low[axis] = std::min(low[axis], surface.vertices[corner][axis]);
          high[axis] = std::max(high[axis], surface.vertices[corner][axis]);
        }
      }
    }
    low_ = {low[0], low[1]};
    unit_ = std::max({high[0] - low[0], high[1] - low[1], std::numeric_limits<double>::min()}) / kUnits;
    lowest_ = std::floor(low[2] / interval);
    const double levels = std::ceil(high[2] / interval) - lowest_ + 1;
    parts_ = static_cast<int>(std::exp2(std::floor(std::log2(std::clamp(kUnits / levels, 1.0, kUnits)))));
  }

  [[nodiscard]] CCoor3D<int> whole(Surface::Vertex const& v) const {
    const double height = std::clamp((v[2] / interval_ - lowest_) * parts_, 0.0, 2 * kUnits - 1);
    return {static_cast<int>(std::lround((v[0] - low_[0]) / unit_)),
            static_cast<int>(std::lround((v[1] - low_[1]) / unit_)), static_cast<int>(std::lround(height)), 0};
  }
  [[nodiscard]] std::array<double, 2> real(CCoor3D<int> const& p) const {
    return {low_[0] + p.x * unit_, low_[1] + p.y * unit_};
  }
  /// Parts of an interval.
  [[nodiscard]] int parts() const { return parts_; }
  [[nodiscard]] std::int64_t level(int height) const { return static_cast<std::int64_t>(lowest_) + height / parts_; }

 private:
  double interval_, lowest_ = 0, unit_ = 1;
  std::array<double, 2> low_{};
  int parts_ = 1;
};

void addLines(CNivelDeCurvas const& found, IntegerSurface const& whole, std::vector<ContourLine>& lines) {
  for (std::size_t i = 0; i < found.Cantidad(); ++i) {
    ContourLine& line = lines.emplace_back();
    line.level = whole.level(found.Altura());
    const CLinea<int> joined = found.Linea(i);
    line.points.reserve(joined.Puntos().size());
    for (CCoor3D<int> const& p : joined.Puntos()) line.points.push_back(whole.real(p));
  }
}

}  // namespace

double levelsBetween(double low, double high, double interval) {
  return std::floor(high / interval) - std::ceil(low / interval) + 1;
}

std::vector<ContourLine> contoursOf(Surface const& surface, double interval, Steps const& step) {
  auto tick = [&step, count = 0U]() mutable {
    if (step && (++count & 0xffffU) == 0) step(0, 1);
  };
  const IntegerSurface whole(surface, interval);
  std::vector<CCoor3D<int>> vertices;
  vertices.reserve(surface.vertices.size());
  for (Surface::Vertex const& v : surface.vertices) vertices.push_back(whole.whole(v));
  CSegmentos pieces;
  for (Surface::Triangle const& t : surface.triangles) {
    tick();
    pieces.Corta(vertices[t[0]], vertices[t[1]], vertices[t[2]], whole.parts());
  }
  vertices = {};
  std::vector<ContourLine> lines;
  while (pieces.Cantidad() != 0) {
    if (step) step(0, 1);
    const int height = pieces.MinimoZ();
    addLines(CNivelDeCurvas(height, pieces.Saca(height), CLlanos::ORILLA), whole, lines);
  }
  return lines;
}

}  // namespace Meseta47::host
