#include "tetrahedral/CTriangulacion3D.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/terrain/CTIN.h"
#include "support/FaultGuard.h"
#include "support/SpaceFamilies.h"
#include "support/SpaceRun.h"

using namespace Meseta47;
using namespace Meseta47::support;
using namespace Meseta47::test;
using testing::AnyOf;
using testing::ElementsAre;

namespace {

const std::vector<Point> kCube{{0, 0, 0},   {100, 0, 0},   {0, 100, 0},   {100, 100, 0},
                               {0, 0, 100}, {100, 0, 100}, {0, 100, 100}, {100, 100, 100}};

std::vector<Point> Cloud(std::size_t n) { return alongACurve(spaceFamily(SpaceFamily::Random, n, 9)); }

TEST(CTriangulacion3D, AFreshObjectIsEmptyAndKnowsItsKind) {
  const QuietApp app;
  CTriangulacion3D t(0, CDataSemilla(2, 1, 2, 3), 5);
  EXPECT_EQ(t.GetTipoObjeto(), OBJETO_TRIANGULACION3D);
  EXPECT_EQ(t.CantidadPuntos(), 0U);
  EXPECT_EQ(t.CantidadTetraedros(), 0U);
  EXPECT_EQ(t.Precision(), 100.0);
  EXPECT_FALSE(t.EsModificadoPuntos());
  EXPECT_EQ(t.Punto(0), nullptr);
  t.ActualizaCantidades();
  EXPECT_EQ(t.cantidades[0] + t.cantidades[1] + t.cantidades[2], 0U);
}

TEST(CTriangulacion3D, WithoutAChosenPointTheFillingAnswersTooFew) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(kCube), none{CDataSemilla()};
  CDataTriangulacion empty;
  empty.incluidos.clear();
  OpenTriangulation3D nothingIncluded{empty}, all;
  EXPECT_EQ(nothingIncluded.Rellena(drawing), kPocosPuntos);  // an empty table chooses nothing
  EXPECT_EQ(all.Rellena(none), kPocosPuntos);
  EXPECT_EQ(all.EnlazaLista(none, 0, true, false), kPocosPuntos);
  CDataTriangulacion high = EverythingIn();
  high.zMin = 500;
  high.zMax = 900;
  EXPECT_EQ(OpenTriangulation3D(high).Rellena(drawing), kPocosPuntos);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(CTriangulacion3D, TheHeightWindowHasItsLimitsInsideAndMayCutAnEntity) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(kCube);
  CDataTriangulacion low = EverythingIn();
  low.zMin = -1;
  low.zMax = 0;
  OpenTriangulation3D t(low);
  EXPECT_EQ(t.Rellena(drawing), kHecho);
  EXPECT_EQ(t.CantidadPuntos(), 4U);
  EXPECT_EQ(t.GetMaximasInt().Maximo.z, 0);
}

TEST(CTriangulacion3D, TheFrameIsACubeATenthWiderOnEachSideWithItsCornersInOrder) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf({{0, 0, 0}, {100, 40, 10}});
  OpenTriangulation3D t;
  EXPECT_EQ(t.Rellena(drawing), kHecho);
  const Point expected[] = {{-10, -40, -55}, {-10, 80, -55}, {-10, 80, 65},  {-10, -40, 65},
                            {110, -40, 65},  {110, 80, 65},  {110, 80, -55}, {110, -40, -55}};
  for (int i = 0; i < 8; ++i) {
    CPuntoTIN const& p = t.esquinas[i];
    EXPECT_EQ((Point{p.x, p.y, p.z}), expected[i]) << i;
    EXPECT_EQ(p.num, -1 - i);
  }
  EXPECT_EQ(t.divisiones.maximas.Minimo, CCoor3D<int>(-100, -100, -100, 0));
  EXPECT_EQ(t.divisiones.maximas.Maximo, CCoor3D<int>(200, 140, 110, 0));
}

TEST(CTriangulacion3D, APointEqualToAnEarlierOneIsLeftOutKeepsItsNumberAndIsCounted) {
  const QuietApp app;
  std::vector<Point> points = kCube;
  points.push_back(kCube[2]);
  CDibujo<int> drawing = DrawingOf(points);
  OpenTriangulation3D t;
  EXPECT_EQ(t.Link(drawing, false), kHecho);
  EXPECT_EQ(t.Resumen().duplicados, 1U);
  EXPECT_EQ(t.CantidadPuntos(), 9U);
  EXPECT_EQ(drawing[0].PunteroAPunto(8)->num, 9);
  unsigned a = 0, b = 0, c = 0;
  CCoor3D<int> again(*drawing[0].PunteroAPunto(4));
  EXPECT_EQ(t.TriangulaPunto(&again, a, b, c, nullptr), 3);
}

TEST(CTriangulacion3D, AllPointsOnOnePlaneGoInBetweenTheCornersOfTheFrame) {
  const QuietApp app;
  std::vector<Point> plane;
  for (int i = 0; i < 400; ++i) plane.push_back({i % 20 * 10, i / 20 * 10, 7});
  const LinkedInSpace linked = LinkInSpace(plane, false);
  EXPECT_EQ(linked.code, kHecho);
  EXPECT_TRUE(linked.summary.perdidos.empty());
  EXPECT_EQ(cubeTilingFaults(linked.mesh, inspect(linked.mesh)), "");
  EXPECT_TRUE(LinkHull(plane).mesh.tetrahedra.empty());
}

TEST(CTriangulacion3D, EqualPointsAndASingleOneHaveNoFrameAndTheRunIsStillDone) {
  for (const std::size_t n : {std::size_t{1}, std::size_t{5}}) {
    const LinkedInSpace linked = LinkInSpace(std::vector<Point>(n, {50, 60, 70}), true);
    EXPECT_EQ(linked.code, kHecho);
    EXPECT_EQ(linked.summary.perdidos.size() + linked.summary.duplicados, n);
    EXPECT_TRUE(LinkHull(std::vector<Point>(n, {50, 60, 70})).mesh.tetrahedra.empty());
  }
}

TEST(CTriangulacion3D, APointOnTheFramesOwnFaceIsNamedAsLost) {
  // Three units wide, the frame's corner is rounded onto the greater of the two.
  const LinkedInSpace linked = LinkInSpace({{0, 0, 0}, {3, 3, 3}}, false);
  EXPECT_EQ(linked.code, kHecho);
  EXPECT_EQ(linked.summary.duplicados + linked.summary.perdidos.size(), 1U);
}

TEST(CTriangulacion3D, WithoutALongEdgeTheSpillIsEmptyAndWithTodasItIsNot) {
  const QuietApp app;
  // Between the points and the frame every tetrahedron has a long edge: their faces of short ones are the outer hull.
  std::size_t records[2];
  for (const bool all : {false, true}) {
    CDibujo<int> drawing = DrawingOf(kCube);
    OpenTriangulation3D t;
    EXPECT_EQ(t.Link(drawing, true, all), kHecho);
    records[all ? 1 : 0] = t.SpilledBytes().size() / 12;
    EXPECT_EQ(t.CantidadTetraedros(), 0U);
  }
  EXPECT_EQ(records[0], 12U);
  EXPECT_GT(records[1], records[0]);
  CDibujo<int> drawing = DrawingOf(kCube);
  OpenTriangulation3D far;
  far.longitudLimite2 = 1;  // every edge is long
  EXPECT_EQ(far.Link(drawing, true, false), kHecho);
  EXPECT_EQ(far.SpilledBytes(), "");
}

TEST(CTriangulacion3D, ALongestEdgeOfZeroOrLessIsNoLimit) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(kCube);
  OpenTriangulation3D t(EverythingIn(), CDataSemilla(1, 0, 0, 0));
  for (const auto& [metres, expected] : {std::pair(12.5, 125.0 * 125.0), std::pair(0.0, 2147483647.0),
                                         std::pair(12.5, 125.0 * 125.0), std::pair(-3.0, 2147483647.0)}) {
    CTIN tin(0, 0, t.Semilla());
    EXPECT_EQ(t.Run(drawing, tin, metres, false, nullptr, true), kHecho);
    EXPECT_EQ(t.longitudLimite2, expected) << metres;
  }
}

TEST(CTriangulacion3D, ADrawingIsEmptiedByARunOnlyWhenAsked) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Cloud(300));
  const std::vector<CCoor3D<int>> before = drawing[0].Puntos();
  OpenTriangulation3D t;
  CTIN tin(0, 0, t.Semilla());
  EXPECT_EQ(t.Run(drawing, false), kHecho);
  EXPECT_EQ(t.Run(drawing, tin, 0, false, nullptr, false), kHecho);
  ASSERT_EQ(drawing.Cantidad(), 1U);
  EXPECT_TRUE(drawing[0].Puntos() == before);
  EXPECT_EQ(t.Run(drawing, tin, 0, true, nullptr, false), kHecho);
  EXPECT_EQ(drawing.Cantidad(), 0U);
  drawing = DrawingOf(kCube);
  EXPECT_EQ(t.Run(drawing, true), kHecho);
  EXPECT_EQ(drawing.Cantidad(), 0U);
}

TEST(CTriangulacion3D, TheOrderOfTheSpillDependsNeitherOnThreadsNorOnTheRun) {
  std::string first;
  for (const unsigned processors : {1U, 2U, 4U}) {
    const QuietApp app(processors);
    CDibujo<int> drawing = DrawingOf(Cloud(20'000));
    OpenTriangulation3D t;
    EXPECT_EQ(t.Link(drawing, true), kHecho);
    EXPECT_EQ(t.Link(drawing, true), kHecho);  // the same object again
    const std::string bytes = t.SpilledBytes();
    if (first.empty()) first = bytes;
    EXPECT_GT(bytes.size(), 1'000'000U);
    EXPECT_TRUE(bytes == first);
  }
  EXPECT_EQ(HashOf(first), 16349110131256120229U);  // what it has always been
}

TEST(CTriangulacion3D, FinishedCellsLeaveMemoryWhileTheRestGrows) {
  const LinkedInSpace linked = LinkInSpace(Cloud(50'000), true);
  EXPECT_EQ(linked.code, kHecho);
  EXPECT_LT(9 * linked.summary.picoVivos, linked.summary.enlazados);
  EXPECT_LT(linked.summary.pasos, 3 * 50'000U);
  EXPECT_LT(linked.summary.visitados, 50'000U);
  // Over a surface nearly all spheres are larger than any cell.
  const LinkedInSpace terrain = LinkInSpace(alongACurve(spaceFamily(SpaceFamily::Terrain, 50'000, 9)), true);
  EXPECT_LT(4 * terrain.summary.picoVivos, terrain.summary.enlazados);
  EXPECT_LT(terrain.summary.visitados, 50'000U);
}

TEST(CTriangulacion3D, AMeshInMemoryLeavesNoFile) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Cloud(500));
  OpenTriangulation3D t;
  EXPECT_EQ(t.Link(drawing, false), kHecho);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
  EXPECT_GT(t.CantidadTetraedros(), 2000U);
  t.ActualizaCantidades();
  EXPECT_THAT(t.cantidades, ElementsAre(t.CantidadTetraedros(), 500U, 0U));
  EXPECT_NE(t.Tetraedro(t.CantidadTetraedros() - 1), nullptr);
  EXPECT_EQ(t.Tetraedro(t.CantidadTetraedros()), nullptr);
  OpenTriangulation3D copy(t, 3);
  EXPECT_EQ(copy.CantidadPuntos(), 500U);
  EXPECT_EQ(copy.CantidadTetraedros(), 0U);
  EXPECT_EQ(copy.GetMaximasInt(), t.GetMaximasInt());
  t.Clear();
  EXPECT_EQ(t.CantidadPuntos(), 0U);
  EXPECT_TRUE(t.GetMaximasInt().EstanVacias(true));
}

TEST(CTriangulacion3D, APointIsAddedToAFinishedMeshAsLongAsItsSetHasRoom) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Cloud(200));
  OpenTriangulation3D t;
  EXPECT_EQ(t.Link(drawing, false), kHecho);
  EXPECT_FALSE(t.PuntoNuevo(CCoor3D<int>(5, 5, 5, 0), nullptr));  // no room
  t.puntos.reserve(3, 0, 0);
  const unsigned before = t.CantidadTetraedros();
  EXPECT_TRUE(t.PuntoNuevo(CCoor3D<int>(500'000, 500'000, 500'000, 0), nullptr));
  EXPECT_GT(t.CantidadTetraedros(), before);
  EXPECT_EQ(t.puntos[0].num, 201);
  EXPECT_FALSE(t.PuntoNuevo(CCoor3D<int>(500'000, 500'000, 500'000, 0), nullptr));
  EXPECT_EQ(t.Punto(99), t.Punto(0));
}

TEST(CTriangulacion3D, ExtentsAreToldInMetres) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(kCube);
  OpenTriangulation3D t(EverythingIn(), CDataSemilla(1, 0, 0, 0));
  EXPECT_EQ(t.Rellena(drawing), kHecho);
  EXPECT_EQ(t.GetMaximasDouble().Maximo.z, 10.0);
  CMaximas<double> m;
  m.Nuevo(CCoor3D<double>(1, 2, 3, 0));
  t.SetMaximasDouble(m);
  EXPECT_EQ(t.GetMaximasInt().Minimo, CCoor3D<int>(10, 20, 30, 0));
}

TEST(CTriangulacion3D, EveryPhaseIsAnnouncedAndClosed) {
  ListeningApp app;
  CDibujo<int> drawing = DrawingOf(Cloud(300));
  OpenTriangulation3D t;
  EXPECT_EQ(t.RunTetraedros(drawing), kHecho);
  EXPECT_THAT(app.PhaseMessages(), ElementsAre(19020U, 19021U));
  EXPECT_EQ(app.closed.size(), 1U);
  EXPECT_EQ(app.steps.front().total, 2U);  // one entity, twice
  EXPECT_EQ(t.RecorreTetraedros(drawing, true, [](CTriangulacion3D::CCuatro const&) {}), kHecho);
  EXPECT_THAT(app.PhaseMessages(), ElementsAre(19020U, 19021U, 19018U));
}

TEST(CTriangulacion3D, CancelledAtAnyStepItLeavesNoFileAndTheDrawingCanBeUsedAgain) {
  ListeningApp app;
  const std::vector<Point> points = Cloud(1500);
  CDibujo<int> drawing = DrawingOf(points);
  OpenTriangulation3D t;
  EXPECT_EQ(t.RunTetraedros(drawing), kHecho);
  const std::string expected = t.SpilledBytes();
  const int steps = static_cast<int>(app.steps.size());
  ASSERT_GT(steps, 3000);
  for (int at = 1; at <= steps; at += at < 4 || at > steps - 4 ? 1 : 211) {
    app.steps.clear();
    app.cancelAt = at;
    const int code = t.RunTetraedros(drawing);
    EXPECT_EQ(app.TemporaryFiles(), 0U) << at;
    if (static_cast<int>(app.steps.size()) < at) continue;  // waiting for the worker took fewer reports this time
    EXPECT_EQ(code, kCancelado) << at;
  }
  app.steps.clear();
  app.cancelAt = 0;
  EXPECT_EQ(t.RunTetraedros(drawing), kHecho);
  EXPECT_TRUE(t.SpilledBytes() == expected);
}

TEST(CTriangulacion3D, EveryRefusalOfTheSystemIsACodeAndLeavesNothingBehind) {
  const QuietApp app(2);
  const std::vector<Point> points = Cloud(3000);
  CDibujo<int> drawing = DrawingOf(points);
  OpenTriangulation3D t;
  EXPECT_EQ(t.RunTetraedros(drawing), kHecho);
  const std::string expected = t.SpilledBytes();
  int failures = 0;
  for (const EOperacion operation :
       {EOperacion::Abre, EOperacion::Escribe, EOperacion::CreaEvento, EOperacion::CreaHilo}) {
    for (int nth = 1; nth < 40; ++nth) {
      int code = 0;
      bool met = false;
      {
        FaultGuard guard;
        guard.RefuseOnce(operation, nth);
        code = t.RunTetraedros(drawing);
        met = guard.Asked(operation) >= nth;
      }
      if (!met) break;
      if (code == kHecho) continue;  // done in another way
      ++failures;
      EXPECT_THAT(code, AnyOf(kFicheroInaccesible, kFicheroInconsistente));
      EXPECT_EQ(app.TemporaryFiles(), 0U);
    }
  }
  EXPECT_GT(failures, 3);
  EXPECT_EQ(t.RunTetraedros(drawing), kHecho);
  EXPECT_TRUE(t.SpilledBytes() == expected);
}

TEST(CTriangulacion3D, WithoutAFileThereIsNothingToWalk) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(kCube);
  OpenTriangulation3D t;
  EXPECT_EQ(t.RecorreTetraedros(drawing, true, [](CTriangulacion3D::CCuatro const&) {}), kFicheroInaccesible);
}

TEST(CTriangulacion3D, TheHullOfACubeIsItsSixVolumes) {
  const LinkedInSpace linked = LinkHull(kCube);
  EXPECT_EQ(inspect(linked.mesh).sixVolumes, 6 * 100 * 100 * 100);
}

}  // namespace
