#include "host/mesh/SpaceCheck.h"

#include <gmock/gmock.h>

#include "host/mesh/ExactHull.h"

namespace Meseta47::host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = SpaceFaultKind;

/// Two tetrahedra, one on either side of the triangle 0-1-2.
ExactSpaceMesh bipyramid(int bottom = -8) {
  ExactSpaceMesh mesh;
  mesh.vertices = {{0, 0, 0, 0}, {10, 0, 0, 0}, {0, 10, 0, 0}, {3, 3, 8, 0}, {3, 3, bottom, 0}};
  mesh.tetrahedra = {{0, 1, 2, 3}, {0, 2, 1, 4}};
  return mesh;
}

std::vector<Kind> kindsIn(ExactSpaceMesh const& mesh, bool whole = true) {
  std::vector<Kind> kinds;
  for (SpaceFault const& fault : checkSpaceMesh(mesh, whole).faults) kinds.push_back(fault.kind);
  return kinds;
}

TEST(SpaceCheck, ASoundMeshHasNoFaultAndAllItsCounts) {
  const SpaceReport report = checkSpaceMesh(bipyramid(), true);
  EXPECT_THAT(report.faults, IsEmpty());
  EXPECT_EQ(report.edges, 9U);
  EXPECT_EQ(report.faces, 7U);
  EXPECT_EQ(report.boundaryFaces, 6U);
  EXPECT_EQ(report.pieces, 1U);
  EXPECT_EQ(report.hullShare, 1.0);
  EXPECT_EQ(report.volume, 1600.0 / 6);
}

TEST(SpaceCheck, TellsItsStepsAndEndsWithWhatTheyThrow) {
  struct Enough {};
  unsigned long long told = 0;
  (void)checkSpaceMesh(bipyramid(), true, [&](auto done, auto all) {
    EXPECT_LE(told, done);
    EXPECT_LT(done, all);
    told = done;
  });
  EXPECT_GT(told, 0U);
  EXPECT_THROW((void)checkSpaceMesh(bipyramid(), true,
                                    [&](auto done, auto) {
                                      if (done == told) throw Enough();
                                    }),
               Enough);
}

TEST(SpaceCheck, ATetrahedronTheWrongWayRoundIsNamed) {
  ExactSpaceMesh mesh = bipyramid();
  std::swap(mesh.tetrahedra[1][0], mesh.tetrahedra[1][1]);
  EXPECT_THAT(kindsIn(mesh), ElementsAre(Kind::inverted));
}

TEST(SpaceCheck, AVertexInTheSphereAcrossAFaceIsNamed) {
  EXPECT_THAT(kindsIn(bipyramid(-2)), ElementsAre(Kind::notDelaunay));
}

TEST(SpaceCheck, AMissingTetrahedronIsAFaultOfAWholeMeshAlone) {
  ExactSpaceMesh mesh = bipyramid();
  mesh.tetrahedra.pop_back();
  EXPECT_THAT(kindsIn(mesh), ElementsAre(Kind::unusedVertex, Kind::noBall, Kind::wrongVolume));
  EXPECT_THAT(kindsIn(mesh, false), ElementsAre(Kind::unusedVertex));
}

TEST(SpaceCheck, ATetrahedronTwiceIsNamedAndItsVolumeIsTooMuchForTheHull) {
  ExactSpaceMesh mesh = bipyramid();
  mesh.tetrahedra.push_back(mesh.tetrahedra[0]);
  const std::vector<Kind> kinds = kindsIn(mesh, false);
  EXPECT_THAT(kinds, testing::Contains(Kind::doubledTetrahedron));
  EXPECT_THAT(kinds, testing::Contains(Kind::crowdedFace));
  EXPECT_THAT(kinds, testing::Contains(Kind::wrongVolume));
}

TEST(SpaceCheck, BothTetrahedraOnOneSideOfAFaceAreNamed) {
  ExactSpaceMesh mesh = bipyramid(4);
  std::swap(mesh.tetrahedra[1][0], mesh.tetrahedra[1][1]);
  EXPECT_THAT(kindsIn(mesh, false), ElementsAre(Kind::sameSideFace, Kind::wrongVolume));
}

TEST(SpaceCheck, FlatTetrahedraRepeatedCornersAndDoubledVerticesAreNamed) {
  EXPECT_THAT(kindsIn(bipyramid(0), false), ElementsAre(Kind::flat));
  ExactSpaceMesh mesh = bipyramid();
  mesh.tetrahedra[1] = {0, 2, 2, 4};
  EXPECT_THAT(kindsIn(mesh, false), ElementsAre(Kind::repeatedCorner));
  mesh = bipyramid();
  mesh.vertices.push_back(mesh.vertices[4]);
  EXPECT_THAT(kindsIn(mesh, false), ElementsAre(Kind::doubledVertex, Kind::unusedVertex));
}

TEST(ExactHull, HoldsItsVolumeToTheLastUnitAndHasNoFacesForAPlane) {
  std::vector<CCoor3D<int>> grid;
  for (int x = -1; x <= 1; ++x) {
    for (int y = -1; y <= 1; ++y) {
      for (int z = -1; z <= 1; ++z) grid.emplace_back(x * 1000000000, y * 1000000000, z * 1000000000, 0);
    }
  }
  const ExactHull hull = exactHull(grid);
  EXPECT_EQ(hull.sixVolumes.Valor(), 48e27);
  EXPECT_THAT(exactHull({{0, 0, 0, 0}, {1, 0, 0, 0}, {0, 1, 0, 0}, {1, 1, 0, 0}}).faces, IsEmpty());
}

}  // namespace
}  // namespace Meseta47::host
