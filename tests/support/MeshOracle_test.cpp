#include "support/MeshOracle.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>

#include "support/Families.h"
#include "support/ReferenceDelaunay.h"

namespace Meseta47::support {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// A sound mesh to damage: 30 scattered points in their frame.
Mesh soundMesh() { return referenceDelaunay(family(Family::Uniform, 30, 11)); }

std::string faultsOf(Mesh const& mesh) { return frameTilingFaults(mesh, inspect(mesh)); }

/// The first triangle away from the frame.
Triangle& innerTriangle(Mesh& mesh) {
  return *std::find_if(mesh.triangles.begin(), mesh.triangles.end(),
                       [](Triangle const& t) { return t[0] > 0 && t[1] > 0 && t[2] > 0; });
}

TEST(MeshOracle, ASoundMeshHasNoFault) {
  const Mesh mesh = soundMesh();
  const MeshReport report = inspect(mesh);
  EXPECT_THAT(surfaceFaults(report), IsEmpty());
  EXPECT_THAT(frameTilingFaults(mesh, report), IsEmpty());
  EXPECT_EQ(report.notDelaunay.count, 0);
  EXPECT_EQ(report.triangles, 62);
  EXPECT_EQ(report.vertices, 34);
  EXPECT_EQ(report.sides, (3 * 62 + 4) / 2);
  EXPECT_EQ(report.boundarySides, 4);
  EXPECT_EQ(report.euler(), 1);
  EXPECT_THAT(report.rings, ElementsAre(testing::UnorderedElementsAre(-1, -2, -3, -4)));
}

TEST(MeshOracle, AnInvertedTriangleIsReportedWithItsPositions) {
  Mesh mesh{{{0, 0}, {0, 9}, {9, 0}}, {}, {{1, 3, 2}}};
  const MeshReport report = inspect(mesh);
  EXPECT_EQ(report.inverted.count, 1);
  EXPECT_THAT(report.inverted.first, HasSubstr("[1, 3, 2] (0, 0) (9, 0) (0, 9)"));
  EXPECT_EQ(report.twiceArea, -81);
  EXPECT_EQ(inspect(mesh, Turn::CounterClockwise).inverted.count, 0);
  EXPECT_EQ(inspect(mesh, Turn::CounterClockwise).twiceArea, 81);
}

TEST(MeshOracle, ATriangleTurnedOverInAMeshAlsoBreaksItsSides) {
  Mesh mesh = soundMesh();
  std::swap(innerTriangle(mesh)[0], innerTriangle(mesh)[1]);
  const MeshReport report = inspect(mesh);
  EXPECT_EQ(report.inverted.count, 1);
  EXPECT_EQ(report.sameWaySides.count, 3);
  EXPECT_THAT(report.rings, IsEmpty());
  EXPECT_THAT(faultsOf(mesh), HasSubstr("twice the area"));
}

TEST(MeshOracle, AFlatTriangleIsReported) {
  const MeshReport report = inspect({{{0, 0}, {5, 5}, {9, 9}}, {}, {{1, 2, 3}}});
  EXPECT_EQ(report.flat.count, 1);
  EXPECT_THAT(surfaceFaults(report), HasSubstr("1 flat triangles, the first: triangle [1, 2, 3]"));
}

TEST(MeshOracle, AMissingTriangleLeavesAHole) {
  Mesh mesh = soundMesh();
  innerTriangle(mesh) = mesh.triangles.back();
  mesh.triangles.pop_back();
  const MeshReport report = inspect(mesh);
  EXPECT_THAT(surfaceFaults(report), IsEmpty());
  EXPECT_EQ(report.boundarySides, 7);
  EXPECT_EQ(report.euler(), 0);
  EXPECT_THAT(report.rings, SizeIs(2));
  const std::string faults = faultsOf(mesh);
  EXPECT_THAT(faults, HasSubstr("triangles: 62 expected, 61 found"));
  EXPECT_THAT(faults, HasSubstr("twice the area"));
  EXPECT_THAT(faults, HasSubstr("vertices - sides + triangles: 1 expected, 0 found"));
  EXPECT_THAT(faults, HasSubstr("2 boundary rings"));
}

TEST(MeshOracle, ATriangleTwiceOverIsReported) {
  Mesh mesh = soundMesh();
  mesh.triangles.push_back(innerTriangle(mesh));
  EXPECT_EQ(inspect(mesh).overusedSides.count, 3);
  EXPECT_THAT(faultsOf(mesh), HasSubstr("3 sides of more than two triangles, the first: side "));
}

TEST(MeshOracle, TwoTrianglesOverEachOtherOnOneSideAreReported) {
  const MeshReport report = inspect({{{0, 0}, {0, 9}, {9, 0}, {8, 1}}, {}, {{1, 2, 3}, {1, 2, 4}}});
  EXPECT_EQ(report.sameWaySides.count, 1);
  EXPECT_THAT(surfaceFaults(report),
              HasSubstr("side 1 to 2 (0, 0) (0, 9) runs the same way in [1, 2, 3] and [1, 2, 4]"));
}

TEST(MeshOracle, VerticesThatDoNotExistAreReportedAndLeftOut) {
  const MeshReport report = inspect({{{0, 0}, {0, 9}, {9, 0}}, {}, {{1, 2, 3}, {1, 0, 2}, {1, 2, 4}, {-1, 2, 3}}});
  EXPECT_EQ(report.unknownVertices.count, 3);
  EXPECT_THAT(report.unknownVertices.first, HasSubstr("[1, 0, 2]"));
  EXPECT_EQ(report.twiceArea, 81);
  EXPECT_EQ(report.euler(), 1);
}

TEST(MeshOracle, ARepeatedVertexIsReportedAndLeftOut) {
  const MeshReport report = inspect({{{0, 0}, {0, 9}, {9, 0}}, {}, {{1, 2, 3}, {2, 2, 3}}});
  EXPECT_EQ(report.repeatedVertices.count, 1);
  EXPECT_EQ(report.sides, 3);
  EXPECT_THAT(surfaceFaults(report), HasSubstr("[2, 2, 3] has the same vertex twice"));
}

TEST(MeshOracle, ACornerThatMovesByOneUnitChangesTheAreaOfTheWhole32BitRange) {
  Mesh mesh{{}, {{INT32_MIN, INT32_MIN}, {INT32_MIN, INT32_MAX}, {INT32_MAX, INT32_MAX}, {INT32_MAX, INT32_MIN}}, {}};
  mesh.triangles = {{-1, -2, -3}, {-1, -3, -4}};
  EXPECT_THAT(faultsOf(mesh), IsEmpty());
  mesh.corners[1].x += 1;
  EXPECT_THAT(faultsOf(mesh), HasSubstr("twice the area: 36893488130239234050 expected, 36893488125944266755 found"));
}

TEST(MeshOracle, APointLeftOutIsSeenThoughTheMeshTiles) {
  Mesh mesh = soundMesh();
  mesh.points.push_back({3, 3});
  EXPECT_THAT(faultsOf(mesh), HasSubstr("vertices: 35 expected, 34 found"));
}

TEST(MeshOracle, DuplicatesOfAPointAreNotExpectedAsVertices) {
  Mesh mesh = soundMesh();
  mesh.points.push_back(mesh.points.front());
  mesh.points.back().z += 5;
  EXPECT_THAT(faultsOf(mesh), IsEmpty());
}

TEST(MeshOracle, AFlippedDiagonalIsNotDelaunayAndItsDepthIsTold) {
  //   1---2      The circle of 1, 2, 4 has radius 7.07; 3 lies 1.36 inside of it. 1-3 is the right diagonal.
  //   | \  \     .
  //   4----3
  Mesh mesh{{{0, 10}, {10, 10}, {8, 0}, {0, 0}}, {}, {{1, 2, 3}, {1, 3, 4}}};
  const MeshReport with13 = inspect(mesh);
  mesh.triangles = {{1, 2, 4}, {2, 3, 4}};
  const MeshReport with24 = inspect(mesh);
  EXPECT_EQ(with13.notDelaunay.count, 0);
  EXPECT_EQ(with24.notDelaunay.count, 1);
  EXPECT_THAT(surfaceFaults(with24), IsEmpty());
  EXPECT_THAT(with24.notDelaunay.first, HasSubstr("vertex 3 (8, 0) lies"));
  EXPECT_NEAR(with24.deepest, 16 / (2 * 7.071), 0.3);  // power -16 over twice the radius, for a point near the circle
}

TEST(MeshOracle, CocircularDiagonalsAreBothDelaunay) {
  const std::vector<Point> square{{0, 10}, {10, 10}, {10, 0}, {0, 0}};
  EXPECT_EQ(inspect({square, {}, {{1, 2, 3}, {1, 3, 4}}}).notDelaunay.count, 0);
  EXPECT_EQ(inspect({square, {}, {{1, 2, 4}, {2, 3, 4}}}).notDelaunay.count, 0);
}

TEST(MeshOracle, ASideFlippedIntoAnOverlapChangesNoCountButInvertsATriangle) {
  //        2        The side 1-3 of a dart cannot be flipped: 2-4 would run outside.
  //       / \       .
  //      / 3 \      .
  //     / / \ \     .
  //    1       4
  const std::vector<Point> dart{{0, 0}, {5, 10}, {5, 5}, {10, 0}};
  const MeshReport report = inspect({dart, {}, {{1, 2, 4}, {1, 4, 3}}});
  EXPECT_EQ(report.inverted.count, 1);
  EXPECT_EQ(report.sameWaySides.count + report.overusedSides.count, 0);
}

TEST(MeshOracle, RingsThatTouchInAVertexStayWithTheirOwnTriangles) {
  //  1    5
  //  | \/ |         Two triangles that share vertex 2 alone: two rings, although four boundary sides meet there.
  //  3 /\ 4
  const MeshReport report = inspect({{{0, 10}, {5, 5}, {0, 0}, {10, 0}, {10, 10}}, {}, {{1, 2, 3}, {2, 5, 4}}});
  EXPECT_THAT(report.rings, ElementsAre(ElementsAre(1, 2, 3), ElementsAre(2, 5, 4)));
}

TEST(MeshOracle, OuterRingsRunWithTheTrianglesAndHolesAgainst) {
  const Mesh whole{{{0, 0}, {0, 90}, {90, 0}, {20, 20}, {20, 40}, {40, 20}},
                   {},
                   {{1, 2, 5}, {1, 5, 4}, {2, 3, 6}, {2, 6, 5}, {3, 1, 4}, {3, 4, 6}}};
  EXPECT_THAT(inspect(whole).rings, testing::UnorderedElementsAre(ElementsAre(1, 2, 3), ElementsAre(5, 4, 6)));
}

TEST(MeshOracle, AnEmptyMeshIsNoTilingOfItsFrame) {
  const Mesh mesh{{}, frameAround({{0, 0}, {10, 10}}), {}};
  EXPECT_THAT(surfaceFaults(inspect(mesh)), IsEmpty());
  EXPECT_THAT(faultsOf(mesh), HasSubstr("triangles: 2 expected, 0 found"));
}

}  // namespace
}  // namespace Meseta47::support
