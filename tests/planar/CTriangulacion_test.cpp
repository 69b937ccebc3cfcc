#include "planar/CTriangulacion.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "model/threads/Codigos.h"
#include "support/Families.h"
#include "support/FaultGuard.h"
#include "support/OutlineOracle.h"
#include "support/PlanarRun.h"
#include "support/Predicates.h"
#include "support/Random.h"
#include "support/ReferenceDelaunay.h"
#include "support/Threads.h"

namespace Meseta47 {
namespace {

using support::outlineFaults;
using support::Point;
using support::Ring;
using test::CloudOf;
using test::DrawingOf;
using test::ListeningApp;
using test::QuietApp;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const CDataSemilla kMetres(0, 0, 0, 0);  // one scaled unit is one metre

CDataSacaLimites Within(double distance, double leastArea = -1) {
  CDataSacaLimites how;
  how.distancia = distance;
  how.superficieMinima = leastArea;
  return how;
}

std::vector<Ring> RingsOf(CDibujo<int> const& outlines) {
  std::vector<Ring> rings;
  for (unsigned i = 0; i < outlines.Cantidad(); ++i) {
    rings.emplace_back();
    for (CCoor3D<int> const& p : outlines[i].Puntos()) rings.back().push_back({p.x, p.y, p.z});
  }
  return rings;
}

/// The outline of a drawing that is expected to have one.
std::vector<Ring> Outline(CDibujo<int>& drawing, CDataSacaLimites const& how, int sense = 1, int outerOnly = 0,
                          CDataSemilla const& seed = kMetres, CDataTriangulacion const& data = {}) {
  CDibujo<int> outlines(seed);
  EXPECT_EQ(CTriangulacion(seed, data).LimiteDibujo(drawing, outlines, &how, sense, outerOnly), kHecho);
  return RingsOf(outlines);
}
std::vector<Ring> Outline(std::vector<Point> const& points, double distance) {
  CDibujo<int> drawing = DrawingOf(points);
  return Outline(drawing, Within(distance));
}

/// Points of a lattice ten metres apart, from its lower left corner to the upper right one, both included.
std::vector<Point> Lattice(int x0, int y0, int x1, int y1) {
  std::vector<Point> points;
  for (int x = x0; x <= x1; x += 10) {
    for (int y = y0; y <= y1; y += 10) points.push_back({x, y, 0});
  }
  return points;
}
std::vector<Point> operator+(std::vector<Point> a, std::vector<Point> const& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}
std::vector<Point> Without(std::vector<Point> points, int x0, int y0, int x1, int y1) {
  std::erase_if(points, [=](Point const& p) { return p.x >= x0 && p.x <= x1 && p.y >= y0 && p.y <= y1; });
  return points;
}

support::Int128 TwiceArea(Ring const& ring) {
  support::Int128 sum = 0;
  for (std::size_t i = 1; i < ring.size(); ++i) {
    sum += static_cast<support::Int128>(ring[i - 1].x) * ring[i].y -
           static_cast<support::Int128>(ring[i].x) * ring[i - 1].y;
  }
  return sum;
}
std::vector<std::int64_t> TwiceAreas(std::vector<Ring> const& rings) {
  std::vector<std::int64_t> areas;
  for (Ring const& ring : rings) areas.push_back(static_cast<std::int64_t>(TwiceArea(ring)));
  std::sort(areas.begin(), areas.end());
  return areas;
}

// ---- Pieces ----

TEST(LimiteDibujo, TheOutlineIsAClosedLineThatRunsCounterClockwise) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf({{0, 0, 5}, {10, 0, 6}, {10, 10, 7}, {0, 10, 8}, {5, 5, 9}});
  CDibujo<int> outlines(kMetres);
  const CDataSacaLimites how = Within(10);
  ASSERT_EQ(CTriangulacion(kMetres, {}).LimiteDibujo(drawing, outlines, &how, 1, 0), kHecho);
  ASSERT_EQ(outlines.Cantidad(), 1U);
  EXPECT_TRUE(outlines[0].EsCerrada());
  EXPECT_TRUE(outlines[0].EsGrafico());
  EXPECT_EQ(outlines[0].GetCodigo(), CString(L"Limite"));
  EXPECT_THAT(RingsOf(outlines), ElementsAre(ElementsAre(Point{0, 0, 5}, Point{10, 0, 6}, Point{10, 10, 7},
                                                         Point{0, 10, 8}, Point{0, 0, 5})));
  for (CCoor3D<int> const& p : outlines[0].Puntos()) EXPECT_EQ(p.num, 0);
}

TEST(LimiteDibujo, WhatLiesFartherApartThanTheDistanceIsTwoIslands) {
  const QuietApp app;
  const auto points = Lattice(0, 0, 30, 30) + Lattice(50, 0, 80, 30);
  EXPECT_THAT(TwiceAreas(Outline(points, 15)), ElementsAre(1800, 1800));
  EXPECT_THAT(TwiceAreas(Outline(points, 25)), ElementsAre(4800)) << "wide enough to reach across";
}

TEST(LimiteDibujo, AHoleIsARingOfItsOwnThatRunsClockwise) {
  const QuietApp app;
  const auto points = Without(Lattice(0, 0, 60, 60), 20, 20, 40, 40);
  // The corners of the hole are cut by sides of 14 m, which join points ten metres apart in both axes.
  EXPECT_THAT(TwiceAreas(Outline(points, 15)), ElementsAre(-2 * (40 * 40 - 2 * 100), 2 * 60 * 60));
}

TEST(LimiteDibujo, AnIslandInAHoleIsOutlinedToo) {
  const QuietApp app;
  const auto points = Without(Lattice(0, 0, 100, 100), 20, 20, 80, 80) + Lattice(40, 40, 60, 60);
  EXPECT_THAT(TwiceAreas(Outline(points, 15)), ElementsAre(-2 * (80 * 80 - 2 * 100), 2 * 20 * 20, 2 * 100 * 100));
}

TEST(LimiteDibujo, PointsThatEndAloneAreNoOutline) {
  const QuietApp app;
  const auto block = Lattice(0, 0, 20, 20);
  EXPECT_EQ(Outline(block + std::vector<Point>{{100, 10, 0}}, 15), Outline(block, 15)) << "one point";
  EXPECT_EQ(Outline(block + std::vector<Point>{{100, 10, 0}, {105, 10, 0}}, 15), Outline(block, 15)) << "two";
  EXPECT_EQ(Outline(block + std::vector<Point>{{100, 10, 0}, {105, 10, 0}, {110, 10, 0}}, 15), Outline(block, 15))
      << "a row";
}

TEST(LimiteDibujo, WithoutATriangleThereIsNoOutlineAndNoFailure) {
  const QuietApp app;
  EXPECT_THAT(Outline(std::vector<Point>{}, 15), IsEmpty());
  EXPECT_THAT(Outline({{1, 1, 0}}, 15), IsEmpty());
  EXPECT_THAT(Outline({{1, 1, 0}, {2, 3, 0}}, 15), IsEmpty());
  EXPECT_THAT(Outline({{0, 0, 0}, {10, 0, 0}, {20, 0, 0}, {30, 0, 0}}, 15), IsEmpty()) << "collinear";
  EXPECT_THAT(Outline({{0, 0, 0}, {3, 9, 0}, {6, 18, 0}}, 15), IsEmpty()) << "collinear, aslant";
  EXPECT_THAT(Outline({{5, 5, 1}, {5, 5, 2}, {5, 5, 3}, {5, 5, 3}}, 15), IsEmpty()) << "one place";
  EXPECT_THAT(Outline(Lattice(0, 0, 20, 20), 9.99), IsEmpty()) << "every side is longer";
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(LimiteDibujo, PiecesThatTouchInAVertexHaveARingEach) {
  const QuietApp app;
  const Point touch{0, 0, 0};
  const auto rings = Outline({touch, {-10, 5, 0}, {-10, -5, 0}, {10, 5, 0}, {10, -5, 0}}, 12);
  EXPECT_THAT(TwiceAreas(rings), ElementsAre(100, 100));
  for (Ring const& ring : rings) EXPECT_EQ(std::count(ring.begin(), ring.end() - 1, touch), 1);
}

TEST(LimiteDibujo, AHoleThatTouchesTheOuterRimInAVertexIsStillARingOfItsOwn) {
  const QuietApp app;
  // A belt of triangles between two rings of twelve points. The outer points beside the direction 0 stand so far apart
  // that the belt has no triangle between them, and the inner point there is on both sides of it.
  const auto at = [](int radius, double degrees) {
    const double angle = degrees / 180 * std::acos(-1.0);
    return Point{static_cast<int>(std::lround(radius * std::cos(angle))),
                 static_cast<int>(std::lround(radius * std::sin(angle))), 0};
  };
  std::vector<Point> points;
  for (int i = 0; i < 12; ++i) {
    points.push_back(at(400, 30 * i));
    points.push_back(at(570, i == 0 ? 17.5 : i == 11 ? -17.5 : 15 + 30 * i));
  }
  const auto rings = Outline(points, 300);
  ASSERT_THAT(rings, SizeIs(2));
  const Point touch{400, 0, 0};
  for (Ring const& ring : rings) EXPECT_EQ(std::count(ring.begin(), ring.end() - 1, touch), 1);
  EXPECT_THAT(rings, testing::UnorderedElementsAre(SizeIs(13), SizeIs(14)));
  EXPECT_LT(TwiceArea(rings[0]) * TwiceArea(rings[1]), 0);
}

// ---- The record and the two integers ----

TEST(LimiteDibujo, ADistanceOfZeroLetsNoSidePassAndOneBelowZeroAny) {
  const QuietApp app;
  const auto points = Lattice(0, 0, 20, 20) + std::vector<Point>{{500, 10, 0}};
  EXPECT_THAT(Outline(points, 0), IsEmpty());
  EXPECT_THAT(TwiceAreas(Outline(points, -1)), ElementsAre(2 * 400 + 480 * 20)) << "the convex hull";
  CDibujo<int> drawing = DrawingOf(points), outlines(kMetres);
  EXPECT_EQ(CTriangulacion(kMetres, {}).LimiteDibujo(drawing, outlines, nullptr, 1, 0), kHecho);
  EXPECT_EQ(RingsOf(outlines), Outline(points, -1)) << "no record, no limit";
}

TEST(LimiteDibujo, ASideJustAsLongAsTheDistanceStaysWhateverItsDecimals) {
  const QuietApp app;
  const CDataSemilla centimetres(2, 0, 0, 0);
  for (int side = 4; side <= 400; ++side) {  // a right triangle whose longest side is 5 times the number
    CDibujo<int> drawing = DrawingOf({{0, 0, 0}, {4 * side, 0, 0}, {0, 3 * side, 0}});
    EXPECT_THAT(Outline(drawing, Within(5 * side / 100.0), 1, 0, centimetres), SizeIs(1)) << side;
    EXPECT_THAT(Outline(drawing, Within((5 * side - 0.01) / 100.0), 1, 0, centimetres), IsEmpty()) << side;
  }
}

TEST(LimiteDibujo, RingsAroundLessThanTheLeastAreaAreLeftOut) {
  const QuietApp app;
  const auto points = Without(Lattice(0, 0, 60, 60), 20, 20, 40, 40) + Lattice(200, 0, 210, 10);
  CDibujo<int> drawing = DrawingOf(points);
  const std::int64_t hole = -2 * (40 * 40 - 2 * 100);
  EXPECT_THAT(TwiceAreas(Outline(drawing, Within(15, 100))), ElementsAre(hole, 200, 7200))
      << "just as much is not less";
  EXPECT_THAT(TwiceAreas(Outline(drawing, Within(15, 100.5))), ElementsAre(hole, 7200));
  EXPECT_THAT(TwiceAreas(Outline(drawing, Within(15, 1400.5))), ElementsAre(7200)) << "the hole is filled";
  EXPECT_THAT(Outline(drawing, Within(15, 5000)), IsEmpty());
  CDibujo<int> scaled = DrawingOf({{0, 0, 0}, {1000, 0, 0}, {0, 1000, 0}});  // ten metres in centimetres
  EXPECT_THAT(Outline(scaled, Within(20, 50), 1, 0, CDataSemilla(2, 0, 0, 0)), SizeIs(1)) << "square metres";
  EXPECT_THAT(Outline(scaled, Within(20, 51), 1, 0, CDataSemilla(2, 0, 0, 0)), IsEmpty());
}

TEST(LimiteDibujo, TheIntegersChooseTheSenseAndWhetherHolesCount) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Without(Lattice(0, 0, 60, 60), 20, 20, 40, 40));
  EXPECT_THAT(TwiceAreas(Outline(drawing, Within(15), 0, 0)), ElementsAre(-7200, 2 * (40 * 40 - 2 * 100)));
  EXPECT_THAT(TwiceAreas(Outline(drawing, Within(15), 1, 1)), ElementsAre(7200));
  EXPECT_THAT(TwiceAreas(Outline(drawing, Within(15), 0, 1)), ElementsAre(-7200));
}

// ---- Which points ----

TEST(LimiteDibujo, ThePointsOfAllEntitiesCountAndNothingElseOfThem) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf({{0, 0, 0}, {10, 0, 0}});
  CLinea<int> line(CString(L"line"));
  for (auto const& [x, y] : {std::pair{10, 10}, {0, 10}, {0, 0}}) line << CCoor3D<int>(x, y, 0, 0);
  drawing.Inserta(line);
  CLinea<int> deleted(line);
  deleted.Mover(10, 0, 0);
  deleted.SetBorrado(true);
  drawing.Inserta(deleted);
  EXPECT_THAT(TwiceAreas(Outline(drawing, Within(15))), ElementsAre(200));
}

TEST(LimiteDibujo, TheHeightWindowAndTheCodesOfTheParametersChoose) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf({{0, 0, 4}, {10, 0, 5}, {10, 10, 6}, {0, 10, 7}});
  drawing.Inserta(CloudOf({{20, 0, 5}, {20, 10, 5}}, L"other"));
  CDataTriangulacion window;
  window.zMin = 5;
  window.zMax = 6;
  EXPECT_THAT(TwiceAreas(Outline(drawing, Within(15), 1, 0, kMetres, window)), ElementsAre(200))
      << "(10, 0) - (20, 10)";
  CDataTriangulacion codes;
  codes.excluidos.Inserta(CElementoDigiTab(ENTIDAD_LINEA, L"other", 70, 70, 70, 0, 0, L"", 1), false);
  EXPECT_THAT(TwiceAreas(Outline(drawing, Within(15), 1, 0, kMetres, codes)), ElementsAre(200));
  codes.excluidos.clear();
  EXPECT_THAT(TwiceAreas(Outline(drawing, Within(15), 1, 0, kMetres, codes)), ElementsAre(400));
}

TEST(LimiteDibujo, TheSlopesOfTheParametersChooseTriangles) {
  const QuietApp app;
  // A level triangle, and across one of its sides a steep one.
  CDibujo<int> drawing = DrawingOf({{0, 0, 0}, {10, 0, 0}, {5, 9, 0}, {5, -9, 100}});
  CDataTriangulacion level;
  level.pendienteMin = 0;
  level.pendienteMax = 45;
  EXPECT_THAT(TwiceAreas(Outline(drawing, Within(15))), ElementsAre(180));
  EXPECT_THAT(TwiceAreas(Outline(drawing, Within(15), 1, 0, kMetres, level)), ElementsAre(90));
}

TEST(LimiteDibujo, InACloudTheCodesAreClasses) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Lattice(0, 0, 20, 10));
  drawing.tipoNube = 1;
  for (int i = 0; i < drawing[0].NPuntos(); ++i) {
    drawing[0].PunteroAPunto(i)->clasificacion = drawing[0].Punto(i).x == 20 ? 7 : 2;
  }
  CDataTriangulacion noNoise;
  noNoise.excluidos.Inserta(CElementoDigiTab(ENTIDAD_LINEA, L"7", 70, 70, 70, 0, 0, L"", 1), false);
  EXPECT_THAT(TwiceAreas(Outline(drawing, Within(15))), ElementsAre(400));
  EXPECT_THAT(TwiceAreas(Outline(drawing, Within(15), 1, 0, kMetres, noNoise)), ElementsAre(200));
}

TEST(LimiteDibujo, OfSeveralPointsAtOnePlaceTheHighestIsOnTheRing) {
  const QuietApp app;
  const std::vector<Point> down{{0, 0, 9}, {0, 0, 3}, {10, 0, 1}, {0, 10, 1}},
      up{{0, 0, 3}, {0, 10, 1}, {10, 0, 1}, {0, 0, 9}};
  EXPECT_THAT(Outline(down, 15), ElementsAre(testing::Contains(Point{0, 0, 9}).Times(2)));
  EXPECT_EQ(Outline(up, 15), Outline(down, 15));
}

TEST(LimiteDibujo, TheDrawingStaysAsItIsAndTheRingsJoinWhatWasThere) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Lattice(0, 0, 20, 20)), outlines(kMetres);
  for (int i = 0; i < drawing[0].NPuntos(); ++i) drawing[0].PunteroAPunto(i)->num = 1000 + i;
  const CDibujo<int> before(drawing);
  const CDataSacaLimites how = Within(15);
  CTriangulacion triangulation(kMetres, {});
  EXPECT_EQ(triangulation.LimiteDibujo(drawing, outlines, &how, 1, 0), kHecho);
  EXPECT_EQ(triangulation.LimiteDibujo(drawing, outlines, &how, 0, 0), kHecho);
  EXPECT_EQ(outlines.Cantidad(), 2U);
  for (int i = 0; i < drawing[0].NPuntos(); ++i) {
    EXPECT_EQ(drawing[0].Punto(i), before[0].Punto(i));
    EXPECT_EQ(drawing[0].Punto(i).num, 1000 + i);
  }
}

TEST(LimiteDibujo, NeitherTheOrderOfThePointsNorTheThreadsChangeTheRings) {
  // Every square of the lattice is cocircular, and so are slanted quadrilaterals whose diagonals differ in length: only
  // an order of its own makes the cut, and with it what is longer than the distance, the same each time.
  std::vector<Point> points = Lattice(0, 0, 300, 300);
  for (int i = 0; i < 40; ++i) {
    points = points + std::vector<Point>{{1000 + 50 * i, 0, 0},
                                         {1025 + 50 * i, 0, 1},
                                         {1020 + 50 * i, 10, 0},
                                         {1000 + 50 * i, 20, 0},
                                         {1020 + 50 * i, 20, 2}};
  }
  support::Random random(7);
  std::vector<Ring> first;
  for (const unsigned processors : {1U, 2U, 4U}) {
    const QuietApp app(processors);
    for (int turn = 0; turn < 3; ++turn) {
      const auto rings = Outline(points, 22.4);
      if (first.empty()) first = rings;
      EXPECT_EQ(rings, first) << processors << " threads, turn " << turn;
      random.shuffle(points);
    }
  }
  EXPECT_THAT(first, testing::Not(IsEmpty()));
}

// ---- Against an independent count ----

struct Scattered {
  support::HardCloud cloud;
  int fraction;  ///< of the extent of the cloud that is the distance, in ten thousandths
};
void PrintTo(Scattered const& s, std::ostream* out) { *out << s.cloud.recipe << ", " << s.fraction << " / 10000"; }

class OutlinesOfFamilies : public testing::TestWithParam<Scattered> {};

TEST_P(OutlinesOfFamilies, AreTheRimOfTheTrianglesWithShortSides) {
  const QuietApp app;
  const auto points = GetParam().cloud.points();
  const support::Mesh mesh = support::referenceDelaunay(points);
  std::int64_t extent = 0;
  for (Point const& p : points) {
    extent =
        std::max({extent, static_cast<std::int64_t>(p.x) - points[0].x, static_cast<std::int64_t>(points[0].x) - p.x,
                  static_cast<std::int64_t>(p.y) - points[0].y, static_cast<std::int64_t>(points[0].y) - p.y});
  }
  const std::int64_t distance = extent * GetParam().fraction / 10000;
  CDibujo<int> drawing = DrawingOf(points);
  const auto rings = Outline(drawing, Within(static_cast<double>(distance)));
  EXPECT_EQ(outlineFaults(rings, mesh, static_cast<support::Int128>(distance) * distance), "");
  EXPECT_THAT(rings, testing::Not(IsEmpty()));
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST_P(OutlinesOfFamilies, HoldWhatLiesInTheTrianglesAndNothingElse) {
  const QuietApp app;
  const auto points = GetParam().cloud.points();
  CMaximas<int> box;
  for (Point const& p : points) box.Nuevo(CCoor3D<int>(p.x, p.y, 0, 0));
  const double distance = std::max(box.Ancho(), box.Alto()) * GetParam().fraction / 10000;
  CDibujo<int> drawing = DrawingOf(points), outlines(kMetres);
  const CDataSacaLimites how = Within(distance);
  ASSERT_EQ(CTriangulacion(kMetres, {}).LimiteDibujo(drawing, outlines, &how, 1, 0), kHecho);
  outlines.Sort(3, true, -1);

  const support::Mesh mesh = support::referenceDelaunay(points);
  const auto triangles = support::withShortSides(mesh, static_cast<support::Int128>(distance * distance));
  support::Random random(GetParam().cloud.seed);
  std::vector<Point> places(points.begin(), points.begin() + 200);
  for (int i = 0; i < 300; ++i) {
    places.push_back({random.between(box.Minimo.x, box.Maximo.x), random.between(box.Minimo.y, box.Maximo.y), 0});
  }
  CDibujo<int> cloud = DrawingOf(places);
  unsigned changed = 0;
  constexpr int kNoLimit = 2147483647;
  ASSERT_EQ(cloud.ClasificarPuntosSegunLimite(outlines, CInfoClasificacion(6, 0.0, L""), changed,
                                              {CInfoClasificacion(0, 0.0, kTextoComodin)}, {}, kNoLimit, kNoLimit,
                                              nullptr, nullptr, nullptr),
            kHecho);
  for (std::size_t i = 0; i < places.size(); ++i) {
    const bool held = std::any_of(triangles.begin(), triangles.end(), [&](support::Triangle const& t) {
      const auto side = [&](std::size_t k) {
        return support::orientation(mesh.at(t[k]), mesh.at(t[(k + 1) % 3]), places[i]);
      };
      return side(0) <= 0 && side(1) <= 0 && side(2) <= 0;  // clockwise, its sides included
    });
    EXPECT_EQ(cloud[0].Punto(static_cast<int>(i)).clasificacion == 6, held) << toText(places[i]);
  }
}

/// Families without four cocircular points, which two right triangulations could cut each in its own way.
std::vector<Scattered> Scenes() {
  using support::Family;
  std::vector<Scattered> scenes;
  for (const Family family : {Family::Uniform, Family::JitteredGrid, Family::Clusters, Family::Negative, Family::Spiral,
                              Family::UpperLimit, Family::LowerLimit, Family::HugeSpread}) {
    for (const int fraction : {800, 1000, 1500, 4000, 20000}) {
      for (const std::uint64_t seed : {1U, 2U}) scenes.push_back({{family, 700, seed}, fraction});
    }
  }
  return scenes;
}
INSTANTIATE_TEST_SUITE_P(Scattered, OutlinesOfFamilies, testing::ValuesIn(Scenes()), [](auto const& scene) {
  return scene.param.cloud.testName() + "_" + std::to_string(scene.param.fraction);
});

// ---- Progress, failure, box ----

TEST(LimiteDibujo, ItReportsThreePhasesAndLeavesTheLevelOpen) {
  ListeningApp app;
  Outline(Lattice(0, 0, 50, 50), 15);
  EXPECT_THAT(app.PhaseMessages(), ElementsAre(19020, 19021, 19020, 19029)) << "filling goes on where points register";
  EXPECT_THAT(app.closed, IsEmpty());
  EXPECT_THAT(app.steps, testing::Not(IsEmpty()));
}

TEST(LimiteDibujo, ItIsSilentAtLevelZero) {
  ListeningApp app;
  CDibujo<int> drawing = DrawingOf(Lattice(0, 0, 50, 50)), outlines(kMetres);
  CTriangulacion triangulation(kMetres, {});
  EXPECT_EQ(triangulation.Mensajes(MENSAJES_NINGUNO), MENSAJES_NORMALES);
  EXPECT_EQ(triangulation.LimiteDibujo(drawing, outlines, nullptr, 1, 0), kHecho);
  EXPECT_EQ(outlines.Cantidad(), 1U);
  EXPECT_THAT(app.phases, IsEmpty());
  EXPECT_THAT(app.steps, IsEmpty());
}

TEST(LimiteDibujo, CancelledAtAnyStepItLeavesNothing) {
  const auto points = Lattice(0, 0, 50, 50);
  int steps = 0;
  {
    ListeningApp app;
    Outline(points, 15);
    steps = static_cast<int>(app.steps.size());
  }
  ASSERT_GT(steps, 20);
  int cancelled = 0;
  for (int step = 1; step <= steps; ++step) {
    ListeningApp app;
    app.cancelAt = step;
    CDibujo<int> drawing = DrawingOf(points), outlines(kMetres);
    CTriangulacion triangulation(kMetres, {});
    const int code = triangulation.LimiteDibujo(drawing, outlines, nullptr, 1, 0);
    EXPECT_EQ(app.TemporaryFiles(), 0U) << step;
    if (static_cast<int>(app.steps.size()) < step) continue;  // waiting for the worker took fewer reports this time
    ++cancelled;
    EXPECT_EQ(code, kCancelado) << step;
    EXPECT_EQ(outlines.Cantidad(), 0U) << step;
    EXPECT_TRUE(triangulation.GetMaximasDouble().EstanVacias(true)) << step;
  }
  EXPECT_GT(cancelled, 20);
}

TEST(LimiteDibujo, AFullDiskIsACodeAndLeavesNothing) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Lattice(0, 0, 200, 200)), outlines(kMetres);
  FaultGuard guard;
  guard.LimitDisk(1000);
  EXPECT_EQ(CTriangulacion(kMetres, {}).LimiteDibujo(drawing, outlines, nullptr, 1, 0), kFicheroInaccesible);
  EXPECT_EQ(outlines.Cantidad(), 0U);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(LimiteDibujo, TwoOutlinesOfOneDrawingCanBeDrawnAtOnce) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Lattice(0, 0, 300, 300) + Lattice(400, 0, 500, 300));
  std::vector<Ring> apart, together;
  Threads other;
  other.start([&] { apart = Outline(drawing, Within(15)); });
  together = Outline(drawing, Within(150));
  other.join();
  EXPECT_THAT(TwiceAreas(apart), ElementsAre(60000, 180000));
  EXPECT_THAT(TwiceAreas(together), ElementsAre(300000));
}

TEST(CTriangulacion, ItsBoxIsThatOfThePointsOutlinedLast) {
  const QuietApp app;
  const CDataSemilla centimetres(2, 0, 0, 0);
  CTriangulacion triangulation(centimetres, {});
  EXPECT_TRUE(triangulation.GetMaximasDouble().EstanVacias(true));
  CDibujo<int> drawing = DrawingOf({{-100, 0, 5}, {1000, 0, 600}, {0, 1000, 7}}), outlines(centimetres);
  ASSERT_EQ(triangulation.LimiteDibujo(drawing, outlines, nullptr, 1, 0), kHecho);
  const CMaximas<double> box = triangulation.GetMaximasDouble();
  EXPECT_EQ(box.Minimo, CCoor3D<double>(-1, 0, 0.05, 0));
  EXPECT_EQ(box.Maximo, CCoor3D<double>(10, 10, 6, 0));
  triangulation.Clear();
  EXPECT_TRUE(triangulation.GetMaximasDouble().EstanVacias(true));
  triangulation.SetMaximasDouble(box);
  EXPECT_EQ(triangulation.GetMaximasDouble().Maximo, box.Maximo);
  EXPECT_EQ(triangulation.GetTipoObjeto(), OBJETO_TRIANGULACION);
}

}  // namespace
}  // namespace Meseta47
