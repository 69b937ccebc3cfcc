#include "support/ReferenceDelaunay.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Canonical.h"
#include "support/Families.h"
#include "support/MeshOracle.h"

namespace Meseta47::support {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(ReferenceDelaunay, OneTriangleIsItsOwnTriangulation) {
  EXPECT_THAT(emptyCircleTriangles({{0, 0}, {9, 0}, {0, 9}}), ElementsAre(Triangle{1, 3, 2}));
}

TEST(ReferenceDelaunay, PointsOnALineHaveNoTriangle) {
  EXPECT_THAT(emptyCircleTriangles({{0, 0}, {1, 1}, {2, 2}, {7, 7}}), IsEmpty());
}

TEST(ReferenceDelaunay, ASquareMayBeCutEitherWaySoAllFourTrianglesAreEmpty) {
  EXPECT_THAT(emptyCircleTriangles({{0, 0}, {0, 1}, {1, 1}, {1, 0}}), SizeIs(4));
}

TEST(ReferenceDelaunay, DuplicatesAreLeftToTheFirstOfThem) {
  EXPECT_THAT(emptyCircleTriangles({{0, 0}, {0, 9}, {0, 9, 5}, {9, 0}}), ElementsAre(Triangle{1, 2, 4}));
}

TEST(ReferenceDelaunay, APointOnTheDiagonalOfTheFrameSplitsBothItsTriangles) {
  const Mesh mesh = referenceDelaunay({{5, 5}}, {{0, 0}, {0, 10}, {10, 10}, {10, 0}});
  EXPECT_THAT(frameTilingFaults(mesh, inspect(mesh)), IsEmpty());
  EXPECT_THAT(mesh.triangles, SizeIs(4));
}

/// The frame's corners as ordinary points, after the others.
Mesh withOrdinaryCorners(Mesh const& mesh) {
  Mesh plain{mesh.points, {}, mesh.triangles};
  plain.points.insert(plain.points.end(), mesh.corners.begin(), mesh.corners.end());
  const auto count = static_cast<std::int32_t>(mesh.points.size());
  for (Triangle& t : plain.triangles) {
    for (auto& number : t) number = number < 0 ? count - number : number;
  }
  return plain;
}

TEST(ReferenceDelaunay, BothMethodsAgreeOnScatteredPoints) {
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE(HardCloud(Family::Uniform, 24, seed).recipe);
    const Mesh grown = withOrdinaryCorners(referenceDelaunay(family(Family::Uniform, 24, seed)));
    EXPECT_EQ(canonicalSet(grown.triangles), emptyCircleTriangles(grown.points));
  }
}

class GrownReference : public testing::TestWithParam<HardCloud> {};

TEST_P(GrownReference, TilesItsFrameAndIsDelaunay) {
  SCOPED_TRACE(GetParam().recipe);
  const Mesh mesh = referenceDelaunay(GetParam().points());
  const MeshReport report = inspect(mesh);
  EXPECT_THAT(frameTilingFaults(mesh, report), IsEmpty());
  EXPECT_EQ(report.notDelaunay.count, 0) << report.notDelaunay.first;
}

TEST_P(GrownReference, GrowsTheSameFromTheOtherEndUpToCocircularPoints) {
  SCOPED_TRACE(GetParam().recipe);
  const Mesh forwards = referenceDelaunay(GetParam().points());
  std::vector<Point> reversed = forwards.points;
  std::reverse(reversed.begin(), reversed.end());
  const Mesh backwards = referenceDelaunay(reversed);
  auto triangles = backwards.triangles;
  for (Triangle& t : triangles) {
    for (auto& number : t) {
      if (number > 0) number = static_cast<std::int32_t>(reversed.size()) + 1 - number;
    }
  }
  const Difference difference = compare(forwards, renumbered(triangles, representatives(forwards.points)));
  EXPECT_TRUE(difference.onlyCocircular()) << difference.realRegions << " real differences, " << difference.first;
}

INSTANTIATE_TEST_SUITE_P(HardClouds, GrownReference, testing::ValuesIn(hardClouds({3, 20, 600}, 5)),
                         [](auto const& tested) { return tested.param.testName(); });

class SmallReference : public testing::TestWithParam<HardCloud> {};

TEST_P(SmallReference, HasOnlyTrianglesWithEmptyCircles) {
  SCOPED_TRACE(GetParam().recipe);
  const Mesh mesh = withOrdinaryCorners(referenceDelaunay(GetParam().points()));
  const auto triangles = canonicalSet(mesh.triangles);
  const auto allowed = emptyCircleTriangles(mesh.points);
  EXPECT_TRUE(std::includes(allowed.begin(), allowed.end(), triangles.begin(), triangles.end()));
}

INSTANTIATE_TEST_SUITE_P(HardClouds, SmallReference, testing::ValuesIn(hardClouds({3, 20}, 5)),
                         [](auto const& tested) { return tested.param.testName(); });

}  // namespace
}  // namespace Meseta47::support
