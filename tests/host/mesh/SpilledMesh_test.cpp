#include "host/mesh/SpilledMesh.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "host/SpaceDrawing.h"
#include "support/SpaceFamilies.h"
#include "support/SpaceMesh.h"
#include "tetrahedral/CTriangulacion3D.h"

namespace Meseta47::host {
namespace {

using support::SpaceFamily;

/// The mesh of a cloud, as the oracle reads it: vertices are numbered from 1.
struct Meshed {
  support::SpaceMesh mesh;
  std::vector<HullFace> hull;
  std::vector<Tetrahedron> tetrahedra;  // the way round that the file has
  std::uint64_t filled = 0;
};

support::Point pointOf(ScaledPoint const& p) { return {p.x, p.y, p.z}; }

Meshed meshOf(std::vector<support::Point> const& points, unsigned fineness = 27) {
  HostApp app({.quiet = true, .json = false, .threads = 1, .tempDir = {}});
  CSetPuntos<int> set(L"CLOUD");
  std::vector<CCoor3D<int>> places;
  for (support::Point const& p : points) places.emplace_back(p.x, p.y, p.z, 0);
  set.CLinea<int>::Asigna(std::move(places));
  CDibujo<int> drawing;
  drawing.tipoNube = 1;
  drawing.Inserta(std::move(set));
  CTriangulacion3D triangulation(0, drawing.semilla, everything(), 1);
  triangulation.SetFinura(fineness);
  Meshed meshed;
  EXPECT_EQ(triangulation.RunTetraedros(drawing), kHecho);
  const SpilledMesh spilled(*triangulation.TetraedrosEscritos(), drawing, triangulation.CantidadPuntos(), app);
  for (ScaledPoint const& p : spilled.mesh().vertices) meshed.mesh.points.push_back(pointOf(p));
  spilled.mesh().forEachBlock([&](std::span<Tetrahedron const> block) {
    for (Tetrahedron const& t : block) {
      meshed.tetrahedra.push_back(t);
      const auto number = [&t](std::size_t i) { return static_cast<std::int32_t>(t[i]) + 1; };
      meshed.mesh.tetrahedra.push_back({number(0), number(1), number(2), number(3)});
    }
  });
  EXPECT_EQ(meshed.tetrahedra.size(), spilled.mesh().tetrahedra);
  meshed.hull = spilled.mesh().hull;
  meshed.filled = spilled.filled();
  return meshed;
}

class HardHulls : public testing::TestWithParam<SpaceFamily> {};

TEST_P(HardHulls, TheMeshFillsTheConvexHullAndIsDelaunay) {
  for (const std::size_t n : {20U, 300U, 3000U}) {
    SCOPED_TRACE(n);
    const std::vector<support::Point> points = alongACurve(spaceFamily(GetParam(), n, 11));
    const Meshed meshed = meshOf(points);
    auto const& mesh = meshed.mesh;
    const support::SpaceReport report = inspect(mesh);
    EXPECT_EQ(report.flat.count, 0U) << report.flat.first;
    EXPECT_EQ(report.repeatedVertices.count, 0U) << report.repeatedVertices.first;
    EXPECT_EQ(report.overusedFaces.count, 0U) << report.overusedFaces.first;
    EXPECT_EQ(report.sameSide.count, 0U) << report.sameSide.first;
    EXPECT_EQ(report.notDelaunay.count, 0U) << report.notDelaunay.first;
    EXPECT_EQ(report.vertices, distinctPlaces(points));
    EXPECT_EQ(report.euler(), 1);
    EXPECT_EQ(report.boundaryFaces, meshed.hull.size());
    EXPECT_TRUE(std::all_of(meshed.tetrahedra.begin(), meshed.tetrahedra.end(), [&](Tetrahedron const& t) {
      auto const& at = mesh.points;
      return sixVolumes(at[t[0]], at[t[1]], at[t[2]], at[t[3]]) < 0;  // which counts the other way round
    }));
    if (n > 300) continue;
    for (auto const& face : meshed.hull) {
      auto const& at = mesh.points;
      EXPECT_TRUE(std::all_of(at.begin(), at.end(), [&](support::Point const& p) {
        return sixVolumes(at[face[0]], at[face[1]], at[face[2]], p) >= 0;  // none beyond the face
      }));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, HardHulls, testing::ValuesIn(support::kSpaceFamilies),
                         [](auto const& test) { return std::string(name(test.param)); });

TEST(SpilledMesh, ATetrahedronOfFourPointsIsItsOwnHull) {
  const Meshed meshed = meshOf({{0, 0, 0}, {100, 0, 0}, {0, 100, 0}, {0, 0, 100}});
  EXPECT_EQ(meshed.tetrahedra.size(), 1U);
  EXPECT_EQ(meshed.hull.size(), 4U);
}

TEST(SpilledMesh, TheNearFrameKeepsMostOfAThinSheetFromTheMeshAndTheHullBringsItBack) {
  std::vector<support::Point> sheet;
  for (int x = 0; x < 30; ++x) {
    for (int y = 0; y < 30; ++y) sheet.push_back({x * 1000, y * 1000, (x * 7 + y * 13) % 11});
  }
  const Meshed meshed = meshOf(sheet);
  EXPECT_GT(meshed.filled, 0U);
  EXPECT_EQ(inspect(meshed.mesh).vertices, sheet.size());
}

}  // namespace
}  // namespace Meseta47::host
