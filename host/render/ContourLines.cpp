#include "host/render/ContourLines.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "model/drawing/CDibujo.h"

namespace Meseta47::host {

namespace {

using Level = std::int64_t;

/// The surface's plan in integers that drawings hold: fine enough that places which differ stay apart.
class IntegerPlan {
 public:
  explicit IntegerPlan(Surface const& surface) {
    constexpr double kUnits = 1 << 30;
    std::array<double, 2> high{};
    for (std::size_t axis = 0; axis < 2; ++axis) {
      low_[axis] = std::numeric_limits<double>::infinity();
      high[axis] = -low_[axis];
      for (Surface::Triangle const& t : surface.triangles) {
        for (const std::uint32_t corner : t) {
          low_[axis] = std::min(low_[axis], surface.vertices[corner][axis]);
          high[axis] = std::max(high[axis], surface.vertices[corner][axis]);
        }
      }
    }
    unit_ = std::max({high[0] - low_[0], high[1] - low_[1], std::numeric_limits<double>::min()}) / kUnits;
  }
  [[nodiscard]] CCoor3D<int> whole(double x, double y) const {
    return {static_cast<int>(std::lround((x - low_[0]) / unit_)), static_cast<int>(std::lround((y - low_[1]) / unit_)),
            0, 0};
  }
  [[nodiscard]] std::array<double, 2> real(CCoor3D<int> const& p) const {
    return {low_[0] + p.x * unit_, low_[1] + p.y * unit_};
  }

 private:
  std::array<double, 2> low_{};
  double unit_ = 1;
};

struct Piece {
  Level level;
  CCoor3D<int> from, to;
};

/// Where a side crosses a height. The same from both triangles, as its ends are taken in an order of their own.
CCoor3D<int> crossing(IntegerPlan const& plan, Surface::Vertex const* a, Surface::Vertex const* b, double height) {
  if (*b < *a) std::swap(a, b);
  const double share = (height - (*a)[2]) / ((*b)[2] - (*a)[2]);
  return plan.whole((*a)[0] + ((*b)[0] - (*a)[0]) * share, (*a)[1] + ((*b)[1] - (*a)[1]) * share);
}

/// The lowest level not below a height, in multiples of the interval.
Level levelFrom(double height, double interval) {
  auto level = static_cast<Level>(std::ceil(height / interval));
  while (static_cast<double>(level - 1) * interval >= height) --level;  // what rounding of the quotient may have done
  while (static_cast<double>(level) * interval < height) ++level;
  return level;
}

void addPieces(Surface const& surface, Surface::Triangle const& t, double interval, IntegerPlan const& plan,
               std::vector<Piece>& pieces) {
  std::array<Surface::Vertex const*, 3> v{&surface.vertices[t[0]], &surface.vertices[t[1]], &surface.vertices[t[2]]};
  std::sort(v.begin(), v.end(), [](auto* a, auto* b) { return (*a)[2] < (*b)[2]; });
  const double low = (*v[0])[2], middle = (*v[1])[2], high = (*v[2])[2];
  for (Level level = levelFrom(low, interval); static_cast<double>(level) * interval <= high; ++level) {
    const double height = static_cast<double>(level) * interval;
    if (height <= low) continue;  // all of it is above
    const CCoor3D<int> from = crossing(plan, v[0], v[2], height);
    const CCoor3D<int> to = middle < height ? crossing(plan, v[1], v[2], height) : crossing(plan, v[0], v[1], height);
    if (from != to) pieces.push_back({level, from, to});
  }
}

/// The pieces of one level as lines.
void joinPieces(std::vector<Piece>::const_iterator begin, std::vector<Piece>::const_iterator end,
                IntegerPlan const& plan, std::vector<ContourLine>& lines) {
  CDibujo<int> drawing;
  for (auto piece = begin; piece != end; ++piece) {
    CLinea<int> line;
    line.Reserva(2);
    line << piece->from << piece->to;
    drawing.Inserta(std::move(line));
  }
  drawing.Junta(0, 0, false, true, true, 0, 0, false);
  for (unsigned i = 0; i < drawing.Cantidad(); ++i) {
    ContourLine& line = lines.emplace_back();
    line.level = begin->level;
    line.points.reserve(drawing[i].Puntos().size());
    for (CCoor3D<int> const& p : drawing[i].Puntos()) line.points.push_back(plan.real(p));
  }
}

}  // namespace

double levelsBetween(double low, double high, double interval) {
  return std::floor(high / interval) - std::ceil(low / interval) + 1;
}

std::vector<ContourLine> contoursOf(Surface const& surface, double interval) {
  const IntegerPlan plan(surface);
  std::vector<Piece> pieces;
  for (Surface::Triangle const& t : surface.triangles) addPieces(surface, t, interval, plan, pieces);
  std::stable_sort(pieces.begin(), pieces.end(), [](Piece const& a, Piece const& b) { return a.level < b.level; });
  std::vector<ContourLine> lines;
  for (auto begin = pieces.cbegin(); begin != pieces.cend();) {
    const auto end = std::find_if(begin, pieces.cend(), [&](Piece const& p) { return p.level != begin->level; });
    joinPieces(begin, end, plan, lines);
    begin = end;
  }
  return lines;
}

}  // namespace Meseta47::host
