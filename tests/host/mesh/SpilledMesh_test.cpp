#include "host/mesh/SpilledMesh.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

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

CDibujo<int> drawingOf(std::vector<support::Point> const& points) {
  CSetPuntos<int> set(L"CLOUD");
  std::vector<CCoor3D<int>> places;
  for (support::Point const& p : points) places.emplace_back(p.x, p.y, p.z, 0);
  set.CLinea<int>::Asigna(std::move(places));
  CDibujo<int> drawing;
  drawing.tipoNube = 1;
  drawing.Inserta(std::move(set));
  return drawing;
}

Meshed meshOf(SpilledMesh const& spilled) {
  Meshed meshed;
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

Meshed meshOf(std::vector<support::Point> const& points, unsigned fineness = 27) {
  HostApp app({.quiet = true, .json = false, .threads = 1, .tempDir = {}});
  CDibujo<int> drawing = drawingOf(points);
  CTriangulacion3D triangulation(0, drawing.semilla, everything(), 1);
  triangulation.SetFinura(fineness);
  EXPECT_EQ(triangulation.RunTetraedros(drawing), kHecho);
  return meshOf(SpilledMesh(*triangulation.TetraedrosEscritos(), drawing, triangulation.CantidadPuntos(), app));
}

void expectFullHull(Meshed const& meshed, std::size_t vertices) {
  const support::SpaceReport report = inspect(meshed.mesh);
  EXPECT_EQ(report.flat.count, 0U) << report.flat.first;
  EXPECT_EQ(report.overusedFaces.count, 0U) << report.overusedFaces.first;
  EXPECT_EQ(report.sameSide.count, 0U) << report.sameSide.first;
  EXPECT_EQ(report.notDelaunay.count, 0U) << report.notDelaunay.first;
  EXPECT_EQ(report.vertices, vertices);
  EXPECT_EQ(report.euler(), 1);
  EXPECT_EQ(report.boundaryFaces, meshed.hull.size());
}

class HardHulls : public testing::TestWithParam<SpaceFamily> {};

TEST_P(HardHulls, TheMeshFillsTheConvexHullAndIsDelaunay) {
  for (const std::size_t n : {20U, 300U, 3000U}) {
    SCOPED_TRACE(n);
    const std::vector<support::Point> points = alongACurve(spaceFamily(GetParam(), n, 11));
    const Meshed meshed = meshOf(points);
    auto const& mesh = meshed.mesh;
    expectFullHull(meshed, distinctPlaces(points));
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

// Its numbers are places in ascending order: whose turn came last on a circle is not to be seen from them.
TEST_P(HardHulls, AKeptMeshIsCompletedAsTheOneThatWasSpilled) {
  HostApp app({.quiet = true, .json = false, .threads = 1, .tempDir = {}});
  for (const std::size_t n : {20U, 300U, 3000U}) {
    SCOPED_TRACE(n);
    const std::vector<support::Point> points = alongACurve(spaceFamily(GetParam(), n, 11));
    CDibujo<int> drawing = drawingOf(points);
    CTriangulacion3D triangulation(0, drawing.semilla, everything(), 1);
    ASSERT_EQ(triangulation.Run(drawing, true), kHecho);
    const SpilledMesh kept(triangulation, "kept", app);
    const Meshed meshed = meshOf(kept);
    expectFullHull(meshed, distinctPlaces(points));
    EXPECT_EQ(meshed.hull.size(), meshOf(points).hull.size());
  }
}

// The small runs of removals cut figures by turns of their own: no one order explains them all.
TEST_P(HardHulls, AMeshThatPointsWereTakenOutOfIsCompletedToo) {
  HostApp app({.quiet = true, .json = false, .threads = 1, .tempDir = {}});
  CDibujo<int> drawing = drawingOf(alongACurve(spaceFamily(GetParam(), 600, 12)));
  CTriangulacion3D triangulation(0, drawing.semilla, everything(), 1);
  ASSERT_EQ(triangulation.Run(drawing, true), kHecho);
  for (int round = 0; round < 4; ++round) {
    std::set<std::int32_t> vertices;
    triangulation.RecorreMalla([&](CTriangulacion3D::CCuatro const& t) { vertices.insert(t.begin(), t.end()); });
    std::vector<unsigned> out;
    for (const std::int32_t v : vertices) {
      if (v > 0 && v % 9 == round) out.push_back(static_cast<unsigned>(v) - 1);
    }
    if (vertices.size() < out.size() + 8 + 5) return;  // the frame's corners, and too few points
    ASSERT_TRUE(triangulation.BorraPunto(out));
    const SpilledMesh kept(triangulation, "kept", app);
    expectFullHull(meshOf(kept), vertices.size() - 8 - out.size());
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

TEST(SpilledMesh, AGridIsCompletedWhosePointsHaveBeenTakenOutOneByOneAndTogether) {
  HostApp app({.quiet = true, .json = false, .threads = 1, .tempDir = {}});
  std::vector<support::Point> grid;
  for (int x = 0; x < 9; ++x) {
    for (int y = 0; y < 9; ++y) {
      for (int z = 0; z < 3; ++z) grid.push_back({x * 100, y * 100, z * 100});
    }
  }
  CDibujo<int> drawing = drawingOf(grid);
  CTriangulacion3D triangulation(0, drawing.semilla, everything(), 1);
  ASSERT_EQ(triangulation.Run(drawing, true), kHecho);
  std::size_t left = grid.size();
  const auto requireWhole = [&] { expectFullHull(meshOf(SpilledMesh(triangulation, "kept", app)), left); };
  requireWhole();
  for (unsigned i = 0; i < 200; i += 40) {
    ASSERT_TRUE(triangulation.BorraPunto(i));
    --left;
    requireWhole();
  }
  std::vector<unsigned> some;
  for (unsigned i = 7; i < 240; i += 11) {
    if (i % 40 != 0) some.push_back(i);
  }
  ASSERT_TRUE(triangulation.BorraPunto(some));
  left -= some.size();
  requireWhole();
}

}  // namespace
}  // namespace Meseta47::host
