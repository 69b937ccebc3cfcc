#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <string>
#include <vector>

namespace Meseta47::support {

struct Point {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t z = 0;

  friend auto operator<=>(Point const&, Point const&) = default;
};

[[nodiscard]] inline bool samePlanPosition(Point const& a, Point const& b) { return a.x == b.x && a.y == b.y; }

[[nodiscard]] inline std::string toText(Point const& p) {
  return "(" + std::to_string(p.x) + ", " + std::to_string(p.y) + ")";
}

/// Three vertex numbers: k > 0 is the k-th point, -k the k-th frame corner, 0 nothing.
using Triangle = std::array<std::int32_t, 3>;

[[nodiscard]] inline std::string toText(Triangle const& t) {
  return "[" + std::to_string(t[0]) + ", " + std::to_string(t[1]) + ", " + std::to_string(t[2]) + "]";
}

struct Mesh {
  std::vector<Point> points;
  std::vector<Point> corners;
  std::vector<Triangle> triangles;

  [[nodiscard]] bool knows(std::int32_t number) const {
    if (number > 0) return static_cast<std::size_t>(number) <= points.size();
    return number < 0 && static_cast<std::size_t>(-static_cast<std::int64_t>(number)) <= corners.size();
  }

  /// The point of a number that the mesh knows.
  [[nodiscard]] Point const& at(std::int32_t number) const {
    return number > 0 ? points[static_cast<std::size_t>(number) - 1] : corners[static_cast<std::size_t>(-(number + 1))];
  }
};

/// Which way triangles turn, seen from above with y upwards.
enum class Turn { Clockwise, CounterClockwise };

/// A mesh whose triangles index their vertices from 0, in the numbering of `Mesh`.
[[nodiscard]] std::vector<Triangle> numberedFromOne(std::vector<Triangle> triangles);

/// For each point the number of the first one with its plan position: representatives(p)[k - 1] stands for number k.
[[nodiscard]] std::vector<std::int32_t> representatives(std::vector<Point> const& points);

/// How many different plan positions there are.
[[nodiscard]] std::size_t distinctPositions(std::vector<Point> const& points);

/// The square that a triangulation of these points is grown in: 1.2 times their greatest extent, around the centre of
/// their box, each corner rounded to nearest. Corner -1 is the lower left one and the rest follow clockwise. The caller
/// sees to it that the square fits 32 bits, and that there is a point.
[[nodiscard]] std::vector<Point> frameAround(std::vector<Point> const& points);

}  // namespace Meseta47::support
