#include "host/mesh/FanOrder.h"

#include <algorithm>
#include <utility>

#include "host/mesh/Pieces.h"
#include "model/geometry/CEsfera.h"

namespace Meseta47::host {

namespace {

using Face = std::array<std::uint32_t, 3>;

/// Which faces belong to one figure.
class Figures {
 public:
  Figures(std::vector<CCoor3D<int>> const& points, std::vector<Face> const& faces)
      : points_(points), faces_(faces), pieces_(faces.size()) {
    struct Side {
      std::uint32_t low, high, face;
    };
    std::vector<Side> sides;
    sides.reserve(3 * faces.size());
    for (std::uint32_t f = 0; f < faces.size(); ++f) {
      sides.push_back({faces[f][0], faces[f][1], f});
      sides.push_back({faces[f][0], faces[f][2], f});
      sides.push_back({faces[f][1], faces[f][2], f});
    }
    std::sort(sides.begin(), sides.end(), [](Side const& a, Side const& b) {
      return a.low != b.low ? a.low < b.low : (a.high != b.high ? a.high < b.high : a.face < b.face);
    });
    for (std::size_t i = 0; i < sides.size(); ++i) {
      for (std::size_t j = i + 1; j < sides.size(); ++j) {
        if (sides[j].low != sides[i].low || sides[j].high != sides[i].high) break;
        if (onOneCircle(sides[i].face, sides[j].face)) pieces_.join(sides[i].face, sides[j].face);
      }
    }
  }
  std::uint32_t of(std::uint32_t face) { return pieces_.of(face); }

 private:
  /// Of two faces that share a side.
  [[nodiscard]] bool onOneCircle(std::uint32_t one, std::uint32_t other) const {
    auto const &a = points_[faces_[one][0]], &b = points_[faces_[one][1]], &c = points_[faces_[one][2]];
    Face const& o = faces_[other];
    const auto isNew = [&](std::uint32_t v) {
      return std::find(faces_[one].begin(), faces_[one].end(), v) == faces_[one].end();
    };
    const auto fourth = std::find_if(o.begin(), o.end(), isNew);
    if (fourth == o.end()) return false;
    CCoor3D<int> const& d = points_[*fourth];
    if (SignoDeVolumen(a, b, c, d) != 0) return false;
    // In the plane of three points of a sphere, it lies on the sphere where it lies on their circle.
    for (unsigned axis = 0; axis < 3; ++axis) {
      const CCoor3D<int> beside = oneUnitAlong(axis, a);
      if (SignoDeVolumen(a, b, c, beside) != 0) return LadoDeEsfera(a, b, c, beside, d) == 0;
    }
    return false;
  }

  /// A neighbour of a point that 32 bits hold.
  static CCoor3D<int> oneUnitAlong(unsigned axis, CCoor3D<int> p) {
    int& c = axis == 0 ? p.x : (axis == 1 ? p.y : p.z);
    c += c > 0 ? -1 : 1;
    return p;
  }

  std::vector<CCoor3D<int>> const& points_;
  std::vector<Face> const& faces_;
  Pieces pieces_;
};

/// A corner of a figure.
struct Corner {
  std::uint32_t figure, point;
  std::uint32_t faces;  // of the figure that meet in it
};

/// The corners of all figures of more than one face, those of one figure together. `facesOf` takes how many it has.
std::vector<Corner> cornersOf(std::vector<CCoor3D<int>> const& points, std::vector<Face> const& faces,
                              std::vector<std::uint32_t>& facesOf) {
  Figures figures(points, faces);
  facesOf.assign(faces.size(), 0);
  for (std::uint32_t f = 0; f < faces.size(); ++f) ++facesOf[figures.of(f)];
  std::vector<std::pair<std::uint32_t, std::uint32_t>> meetings;
  for (std::uint32_t f = 0; f < faces.size(); ++f) {
    const std::uint32_t figure = figures.of(f);
    if (facesOf[figure] < 2) continue;
    for (const std::uint32_t v : faces[f]) meetings.emplace_back(figure, v);
  }
  std::sort(meetings.begin(), meetings.end());
  std::vector<Corner> corners;
  for (auto const& [figure, point] : meetings) {
    if (corners.empty() || corners.back().figure != figure || corners.back().point != point) {
      corners.push_back({figure, point, 0});
    }
    ++corners.back().faces;
  }
  return corners;
}

}  // namespace

std::vector<std::uint32_t> fanOrder(std::vector<CCoor3D<int>> const& points, std::vector<Face> const& faces) {
  std::vector<std::uint32_t> facesOf;
  const std::vector<Corner> corners = cornersOf(points, faces, facesOf);
  const auto forbids = [&facesOf](Corner const& c) { return c.faces != facesOf[c.figure]; };
  std::vector<std::uint32_t> first(faces.size(), 0);  // of a figure's corners
  std::vector<std::uint32_t> by(corners.size());      // corners, those of one point together
  for (std::uint32_t i = 0; i < corners.size(); ++i) {
    by[i] = i;
    if (i == 0 || corners[i].figure != corners[i - 1].figure) first[corners[i].figure] = i;
  }
  std::sort(by.begin(), by.end(), [&corners](std::uint32_t a, std::uint32_t b) {
    return corners[a].point != corners[b].point ? corners[a].point < corners[b].point : a < b;
  });
  std::vector<std::uint32_t> forbidding(points.size(), 0), firstBy(points.size(), 0);
  std::vector<bool> isCorner(points.size()), closed(faces.size());
  for (auto i = static_cast<std::uint32_t>(by.size()); i-- > 0;) {
    Corner const& c = corners[by[i]];
    isCorner[c.point] = true;
    firstBy[c.point] = i;
    forbidding[c.point] += forbids(c) ? 1U : 0U;
  }

  std::vector<std::uint32_t> last;  // from the end
  for (std::uint32_t p = 0; p < points.size(); ++p) {
    if (isCorner[p] && forbidding[p] == 0) last.push_back(p);
  }
  for (std::size_t n = 0; n < last.size(); ++n) {
    for (std::size_t i = firstBy[last[n]]; i < by.size() && corners[by[i]].point == last[n]; ++i) {
      const std::uint32_t figure = corners[by[i]].figure;
      if (closed[figure]) continue;
      closed[figure] = true;
      for (std::size_t k = first[figure]; k < corners.size() && corners[k].figure == figure; ++k) {
        if (forbids(corners[k]) && --forbidding[corners[k].point] == 0) last.push_back(corners[k].point);
      }
    }
  }
  std::vector<bool> taken(points.size());
  for (const std::uint32_t p : last) taken[p] = true;
  std::vector<std::uint32_t> order;
  order.reserve(points.size());
  for (std::uint32_t p = 0; p < points.size(); ++p) {
    if (!taken[p]) order.push_back(p);
  }
  order.insert(order.end(), last.rbegin(), last.rend());
  return order;
}

}  // namespace Meseta47::host
