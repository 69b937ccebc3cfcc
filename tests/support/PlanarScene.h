#pragma once

#include <cstdint>
#include <ostream>
#include <tuple>
#include <vector>

#include "model/geometry/CMaximas.h"
#include "planar/CLado2D.h"
#include "planar/CTriangulo2D.h"

namespace Meseta47 {

/// Positions and sides in test failures.
template <class T>
void PrintTo(CCoor3D<T> const& p, std::ostream* out) {
  *out << '(' << p.x << ", " << p.y << ", " << p.z << ") number " << p.num;
}
inline void PrintTo(CLado2D const& side, std::ostream* out) {
  if (side.P1() == nullptr || side.P2() == nullptr) {
    *out << "no side";
  } else {
    *out << side.N1() << " -> " << side.N2();
  }
}

namespace test {

struct At {
  int x = 0;
  int y = 0;
  int z = 0;
};

/// Points numbered 1, 2, 3... They must not be moved while triangles point at them.
inline std::vector<CCoor3D<int>> Numbered(std::vector<At> const& places) {
  std::vector<CCoor3D<int>> points;
  for (At const& p : places) points.emplace_back(p.x, p.y, p.z, static_cast<int>(points.size()) + 1);
  return points;
}

inline CMaximas<int> Box(int minX, int minY, int maxX, int maxY) {
  CMaximas<int> box;
  box.Minimo.x = minX;
  box.Minimo.y = minY;
  box.Maximo.x = maxX;
  box.Maximo.y = maxY;
  return box;
}

/// minX, minY, maxX, maxY.
inline std::tuple<int, int, int, int> PlanOf(CMaximas<int> const& box) {
  return {box.Minimo.x, box.Minimo.y, box.Maximo.x, box.Maximo.y};
}

/// Numbers of the vertices, in the triangle's order; 0 for none.
inline std::tuple<int, int, int> NumbersOf(CTriangulo2D const& t) {
  const auto number = [](CCoor3D<int> const* p) { return p == nullptr ? 0 : p->num; };
  return {number(t.P1()), number(t.P2()), number(t.P3())};
}

/// The open side numbers as they run: for comparisons in which the direction matters.
inline std::vector<std::pair<int, int>> DirectedNumbers(std::vector<CLado2D> const& sides) {
  std::vector<std::pair<int, int>> numbers;
  for (CLado2D const& side : sides) numbers.emplace_back(side.N1(), side.N2());
  return numbers;
}

}  // namespace test
}  // namespace Meseta47
