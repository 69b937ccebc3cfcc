// The exact triangulation of places, against oracles of exact arithmetic that know nothing of it.
#include "planar/TriangulaExacto.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <random>

#include "support/Canonical.h"
#include "support/Extremes.h"
#include "support/Families.h"
#include "support/HullOracle.h"
#include "support/PlanarSizes.h"
#include "support/Predicates.h"
#include "support/ReferenceDelaunay.h"

namespace Meseta47 {
namespace {

using support::Family;
using support::Mesh;
using support::Point;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSubsetOf;
using Sides = std::vector<std::array<std::uint32_t, 2>>;

/// Distinct plan positions, ascending.
std::vector<Point> Positions(std::vector<Point> points) {
  for (Point& p : points) p.z = 0;
  std::sort(points.begin(), points.end());
  points.erase(std::unique(points.begin(), points.end()), points.end());
  return points;
}

CSuperficieExacta Triangulated(std::vector<Point> const& positions, Sides const& sides = {}) {
  std::vector<CLugarPlano> places;
  for (Point const& p : positions) places.push_back({p.x, p.y});
  return TriangulaExacto(places, sides);
}

Mesh MeshOf(std::vector<Point> const& positions, CSuperficieExacta const& surface) {
  Mesh mesh{positions, {}, {}};
  for (auto const& [a, b, c] : surface.triangulos) {
    mesh.triangles.push_back({static_cast<int>(a) + 1, static_cast<int>(b) + 1, static_cast<int>(c) + 1});
  }
  return mesh;
}

/// The sides of the hull as the oracle has them, in the direction in which the outside is on the right.
Sides HullSides(std::vector<Point> const& positions) {
  const std::vector<std::int32_t> ring = support::hullRing(positions);
  Sides sides;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    sides.push_back(
        {static_cast<std::uint32_t>(ring[i] - 1), static_cast<std::uint32_t>(ring[(i + 1) % ring.size()] - 1)});
  }
  std::sort(sides.begin(), sides.end());
  return sides;
}

void ExpectExact(std::vector<Point> const& positions) {
  const CSuperficieExacta surface = Triangulated(positions);
  const Mesh mesh = MeshOf(positions, surface);
  const support::MeshReport report = support::inspect(mesh);
  EXPECT_EQ(support::surfaceFaults(report), "");
  EXPECT_EQ(support::hullFillingFaults(mesh, report), "");
  EXPECT_EQ(report.notDelaunay.count, 0U) << report.notDelaunay.first;
  EXPECT_EQ(surface.contorno, HullSides(positions));
}

class ExactFamilies : public testing::TestWithParam<Family> {};
INSTANTIATE_TEST_SUITE_P(Every, ExactFamilies, testing::ValuesIn(support::kAllFamilies),
                         [](testing::TestParamInfo<Family> const& family) { return support::name(family.param); });

TEST_P(ExactFamilies, FillTheirHullWithDelaunayTriangles) {
  for (const std::size_t n : {2U, 3U, 4U, 5U, 6U, 7U, 8U, 13U, 50U, 200U, 1'001U, 5'000U}) {
    SCOPED_TRACE(n);
    ExpectExact(Positions(support::family(GetParam(), n, 1)));
  }
}

TEST_P(ExactFamilies, HaveTrianglesWithEmptyCirclesAlone) {
  for (const std::size_t n : {4U, 9U, 25U}) {
    const auto positions = Positions(support::family(GetParam(), n, 3));
    EXPECT_THAT(support::canonicalSet(MeshOf(positions, Triangulated(positions)).triangles),
                IsSubsetOf(support::emptyCircleTriangles(positions)));
  }
}

TEST(Exact, LargeClouds) {
  if (!test::kFullSize) GTEST_SKIP() << "in builds with checks the smaller ones do";
  for (const Family family : {Family::Uniform, Family::RegularGrid, Family::Circle, Family::DenseLineAndOutlier}) {
    SCOPED_TRACE(support::name(family));
    ExpectExact(Positions(support::family(family, 200'000, 1)));
  }
}

TEST(Exact, ExtremeClouds) {
  for (const auto extreme : support::kAllExtremes) {
    SCOPED_TRACE(support::name(extreme));
    ExpectExact(Positions(support::extreme(extreme, 2'000)));
  }
}

TEST(Exact, CornersOfThe32BitRange) {
  constexpr std::int32_t low = std::numeric_limits<std::int32_t>::min(),
                         high = std::numeric_limits<std::int32_t>::max();
  std::vector<Point> positions = support::family(Family::HugeSpread, 500, 1);
  for (Point const& p :
       {Point{low, low, 0}, {low, high, 0}, {high, low, 0}, {high, high, 0}, {0, low, 0}, {1, low, 0}}) {
    positions.push_back(p);
  }
  ExpectExact(Positions(positions));
}

TEST(Exact, NoPlaceOneOrTwoHaveNoTriangle) {
  EXPECT_THAT(Triangulated({}).triangulos, IsEmpty());
  EXPECT_THAT(Triangulated({}).contorno, IsEmpty());
  EXPECT_THAT(Triangulated({{4, 4, 0}}).contorno, IsEmpty());
  EXPECT_THAT(Triangulated({{0, 0, 0}, {4, 4, 0}}).triangulos, IsEmpty());
}

TEST(Exact, OnOneCircleTheLeastPlaceIsJoinedToAllOthers) {
  // Twelve places on the circle of radius 25 about the origin.
  std::vector<Point> positions;
  for (auto const& [x, y] : {std::pair{0, 25}, {7, 24}, {15, 20}, {20, 15}, {24, 7}, {25, 0}}) {
    positions.push_back({x, y, 0});
    positions.push_back({-x, -y, 0});
  }
  positions = Positions(positions);
  ASSERT_EQ(positions.size(), 12U);
  for (auto const& triangle : Triangulated(positions).triangulos) EXPECT_EQ(triangle[0], 0U);
  EXPECT_EQ(Triangulated(positions).triangulos.size(), 10U);
}

TEST(Exact, ASquareIsCutFromItsLeastCornerWhereverItLies) {
  for (const int dx : {0, -2'000'000'000, 1'999'999'990}) {
    EXPECT_THAT(Triangulated({{dx, 0, 0}, {dx, 10, 0}, {dx + 10, 0, 0}, {dx + 10, 10, 0}}).triangulos,
                ElementsAre(std::array{0U, 1U, 3U}, std::array{0U, 3U, 2U}));
  }
}

// A side that ties have left out: the square is cut from its least corner, and the other diagonal is asked for.
TEST(ImposedSides, AreTakenThoughTiesHaveChosenOtherwise) {
  const std::vector<Point> square{{0, 0, 0}, {0, 10, 0}, {10, 0, 0}, {10, 10, 0}};
  EXPECT_THAT(Triangulated(square, {{1, 2}}).triangulos, ElementsAre(std::array{0U, 1U, 2U}));
  EXPECT_THAT(Triangulated(square, {{2, 1}}).triangulos, ElementsAre(std::array{1U, 3U, 2U}));
}

TEST(ImposedSides, AcrossManyTrianglesLeaveTheRestDelaunayAmongWhatCanSeeOneAnother) {
  // A row of places on each hand of a side that no circle would have.
  std::vector<Point> positions{{0, 0, 0}, {1'000, 0, 0}};
  for (int i = 1; i < 40; ++i) {
    positions.push_back({25 * i, 3 + i % 4, 0});
    positions.push_back({25 * i - 7, -4 - i % 3, 0});
  }
  positions = Positions(positions);
  const auto from =
      static_cast<std::uint32_t>(std::find(positions.begin(), positions.end(), Point{0, 0, 0}) - positions.begin());
  const auto to =
      static_cast<std::uint32_t>(std::find(positions.begin(), positions.end(), Point{1'000, 0, 0}) - positions.begin());
  // The region on each hand: together they are the hull, and each is a surface.
  Mesh both{positions, {}, {}};
  for (Sides const& side : {Sides{{from, to}}, Sides{{to, from}}}) {
    const Mesh half = MeshOf(positions, Triangulated(positions, side));
    const support::MeshReport report = support::inspect(half);
    EXPECT_EQ(support::surfaceFaults(report), "");
    EXPECT_EQ(report.notDelaunay.count, 0U) << report.notDelaunay.first;
    const int hand = side[0][0] == from ? -1 : 1;
    for (support::Triangle const& t : half.triangles) {
      for (const std::int32_t v : t) EXPECT_GE(half.at(v).y * hand, 0) << v;
    }
    both.triangles.insert(both.triangles.end(), half.triangles.begin(), half.triangles.end());
  }
  const support::MeshReport report = support::inspect(both);
  EXPECT_EQ(support::surfaceFaults(report), "");
  EXPECT_EQ(support::hullFillingFaults(both, report), "");
  EXPECT_GT(report.notDelaunay.count, 0U) << "the side should not have been Delaunay";
}

TEST(ImposedSides, ThroughAPlaceAreTwo) {
  const std::vector<Point> positions{{0, 0, 0}, {5, 0, 0}, {5, 6, 0}, {10, 0, 0}};
  EXPECT_THAT(Triangulated(positions, {{3, 0}}).triangulos,
              ElementsAre(std::array{0U, 2U, 1U}, std::array{1U, 2U, 3U}));
  EXPECT_THAT(Triangulated(positions, {{0, 3}}).triangulos, IsEmpty());
}

/// Any triangulation's own sides around a part of it give back the rest.
TEST(ImposedSides, AroundAPartLeaveTheRestWhicheverWayTiesWereCutThere) {
  std::mt19937_64 random(20'261'121);
  for (int round = 0; round < 200; ++round) {
    SCOPED_TRACE(round);
    std::vector<Point> positions;
    for (int i = 0; i < 60; ++i) {
      positions.push_back({static_cast<int>(random() % 9), static_cast<int>(random() % 9), 0});
    }
    positions = Positions(positions);
    // A mesh that cuts its squares as the order of its points has it, and a random part that is kept.
    std::vector<Point> shuffled = positions;
    std::shuffle(shuffled.begin(), shuffled.end(), random);
    std::vector<support::Triangle> kept;
    const Mesh mesh = support::referenceDelaunay(shuffled, {{-90, -90, 0}, {-90, 99, 0}, {99, 99, 0}, {99, -90, 0}});
    for (support::Triangle t : mesh.triangles) {
      bool real = true;
      for (std::int32_t& v : t) {
        real = real && v > 0;
        if (real) {
          v = static_cast<int>(std::lower_bound(positions.begin(), positions.end(), mesh.at(v)) - positions.begin()) +
              1;
        }
      }
      if (real && random() % 3 != 0) kept.push_back(t);
    }
    // Sides that only one kept triangle has, turned round: the rest is on their right.
    Sides sides;
    for (support::Triangle const& t : kept) {
      for (std::size_t k = 0; k < 3; ++k) {
        sides.push_back({static_cast<std::uint32_t>(t[(k + 1) % 3] - 1), static_cast<std::uint32_t>(t[k] - 1)});
      }
    }
    std::sort(sides.begin(), sides.end());
    Sides bounding;
    for (auto const& [a, b] : sides) {
      if (!std::binary_search(sides.begin(), sides.end(), std::array{b, a})) bounding.push_back({a, b});
    }
    if (bounding.empty()) continue;
    Mesh whole = MeshOf(positions, Triangulated(positions, bounding));
    whole.triangles.insert(whole.triangles.end(), kept.begin(), kept.end());
    const support::MeshReport report = support::inspect(whole);
    EXPECT_EQ(support::surfaceFaults(report), "");
    EXPECT_EQ(support::hullFillingFaults(whole, report), "");
    EXPECT_EQ(report.notDelaunay.count, 0U) << report.notDelaunay.first;
  }
}

}  // namespace
}  // namespace Meseta47
