#include "support/ReferenceDelaunay.h"

#include <algorithm>
#include <utility>

#include "support/Canonical.h"
#include "support/Predicates.h"
#include "support/SideTable.h"

namespace Meseta47::support {

namespace {

/// The numbers of the points that stand for their plan position.
std::vector<std::int32_t> leaders(std::vector<Point> const& points) {
  std::vector<std::int32_t> numbers = representatives(points);
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  return numbers;
}

bool sees(Mesh const& mesh, Triangle const& t, Point const& p) {
  return inCircle(mesh.at(t[0]), mesh.at(t[1]), mesh.at(t[2]), p) > 0;
}

//        A                       P lies strictly inside the circles of the condemned triangles. Their union is a
//        polygon
//      / | \                     that P sees whole, so a fan from P over its sides, each in the direction of the
//     P  |  fuera                condemned triangle it bounded, fills it again with triangles that turn the same way.
//      \ | /
//        B
void insert(Mesh& mesh, std::int32_t number) {
  auto& all = mesh.triangles;
  const auto condemned =
      std::partition(all.begin(), all.end(), [&](Triangle const& t) { return !sees(mesh, t, mesh.at(number)); });
  const std::vector<Triangle> cavity(condemned, all.end());
  all.erase(condemned, all.end());
  forEachSide(sortedSides(cavity), [&](auto first, auto last) {
    if (last - first > 1) return;
    all.push_back({number, startOf(cavity, first->half), endOf(cavity, first->half)});
  });
}

}  // namespace

std::vector<Triangle> emptyCircleTriangles(std::vector<Point> const& points) {
  const Mesh mesh{points, {}, {}};
  const auto numbers = leaders(points);
  const auto isEmpty = [&](Triangle const& t) {
    return std::none_of(points.begin(), points.end(), [&](Point const& p) { return sees(mesh, t, p); });
  };
  std::vector<Triangle> triangles;
  for (auto a = numbers.begin(); a != numbers.end(); ++a) {
    for (auto b = a + 1; b != numbers.end(); ++b) {
      for (auto c = b + 1; c != numbers.end(); ++c) {
        const int turn = orientation(mesh.at(*a), mesh.at(*b), mesh.at(*c));
        const Triangle t = turn < 0 ? Triangle{*a, *b, *c} : Triangle{*a, *c, *b};
        if (turn != 0 && isEmpty(t)) triangles.push_back(t);
      }
    }
  }
  return canonicalSet(std::move(triangles));
}

Mesh referenceDelaunay(std::vector<Point> points, std::vector<Point> corners) {
  Mesh mesh{std::move(points), std::move(corners), {{-1, -2, -3}, {-1, -3, -4}}};
  for (const std::int32_t number : leaders(mesh.points)) insert(mesh, number);
  return mesh;
}

Mesh referenceDelaunay(std::vector<Point> points) {
  std::vector<Point> corners = frameAround(points);
  return referenceDelaunay(std::move(points), std::move(corners));
}

}  // namespace Meseta47::support
