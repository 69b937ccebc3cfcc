// Contour lines of a drawing: from points to joined lines, and every way out.
#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <iterator>
#include <stdexcept>

#include "planar/CNivelDeCurvas.h"
#include "support/FaultGuard.h"
#include "support/PlanarRun.h"
#include "support/PlanarScene.h"
#include "support/PlanarSizes.h"
#include "support/ScratchFolder.h"

namespace Meseta47 {

namespace support {
void PrintTo(Point const& p, std::ostream* out) { *out << '(' << p.x << ", " << p.y << ", " << p.z << ')'; }
}  // namespace support

namespace {

using support::Point;
using test::ListeningApp;
using test::OpenTriangulation;
using test::QuietApp;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

using Path = std::vector<Point>;
using Piece = std::pair<Point, Point>;

constexpr double kAnySide = 1'000'000;
const CDataSemilla kWholeUnits(0, 0, 0, 0);  ///< a scaled unit is a unit of the drawing

CDibujo<int> DrawingOf(std::vector<Point> const& points, CDataSemilla const& seed = kWholeUnits) {
  CDibujo<int> drawing = test::DrawingOf(points);
  drawing.semilla = seed;
  return drawing;
}

std::vector<Path> Paths(CDibujo<int> const& drawing) {
  std::vector<Path> paths;
  for (unsigned i = 0; i < drawing.Cantidad(); ++i) {
    Path path;
    for (CCoor3D<int> const& p : drawing[i].Puntos()) path.push_back({p.x, p.y, p.z});
    paths.push_back(path);
  }
  return paths;
}

std::vector<Path> Contours(std::vector<Point> const& points, double interval, double maxSide = kAnySide) {
  CDibujo<int> drawing = DrawingOf(points), contours(kWholeUnits);
  OpenTriangulation triangulation;
  EXPECT_EQ(triangulation.Curvado(drawing, contours, maxSide, interval, nullptr), kHecho);
  return Paths(contours);
}

/// What the lines are made of, whichever way each runs.
std::vector<Piece> Pieces(std::vector<Path> const& paths) {
  std::vector<Piece> pieces;
  for (Path const& path : paths) {
    for (std::size_t i = 1; i < path.size(); ++i) {
      pieces.emplace_back(std::min(path[i - 1], path[i]), std::max(path[i - 1], path[i]));
    }
  }
  return pieces;
}

std::vector<int> Heights(std::vector<Path> const& paths) {
  std::vector<int> heights;
  for (Path const& path : paths) heights.push_back(path.front().z);
  return heights;
}

/// A square with a point in its middle: a hill, or a pit.
std::vector<Point> Pyramid(int foot, int top) {
  return {{0, 0, foot}, {100, 0, foot}, {100, 100, foot}, {0, 100, foot}, {50, 50, top}};
}

// ---- What comes out ----

TEST(Curvado, AHillGivesARingAtEveryLevel) {
  const QuietApp app;
  EXPECT_THAT(Contours(Pyramid(5, 25), 10),
              ElementsAre(Path{{12, 12, 10}, {12, 88, 10}, {88, 88, 10}, {88, 12, 10}, {12, 12, 10}},
                          Path{{38, 38, 20}, {38, 62, 20}, {62, 62, 20}, {62, 38, 20}, {38, 38, 20}}));
}

TEST(Curvado, APitGivesARingAtEveryLevel) {
  const QuietApp app;
  EXPECT_THAT(Contours(Pyramid(25, 5), 10),
              ElementsAre(Path{{38, 38, 10}, {38, 62, 10}, {62, 62, 10}, {62, 38, 10}, {38, 38, 10}},
                          Path{{12, 12, 20}, {12, 88, 20}, {88, 88, 20}, {88, 12, 20}, {12, 12, 20}}));
}

TEST(Curvado, BelowZeroTheLevelsAreTheSameMultiples) {
  const QuietApp app;
  EXPECT_THAT(Contours(Pyramid(-25, -5), 10),
              ElementsAre(Path{{12, 12, -20}, {12, 88, -20}, {88, 88, -20}, {88, 12, -20}, {12, 12, -20}},
                          Path{{38, 38, -10}, {38, 62, -10}, {62, 62, -10}, {62, 38, -10}, {38, 38, -10}}));
}

TEST(Curvado, LevelsGoThroughZero) {
  const QuietApp app;
  EXPECT_THAT(Heights(Contours(Pyramid(-15, 15), 10)), ElementsAre(-10, 0, 10));
}

TEST(Curvado, ATopOrABottomOnALevelIsNoContour) {
  const QuietApp app;
  EXPECT_THAT(Heights(Contours(Pyramid(5, 20), 10)), ElementsAre(10));
  EXPECT_THAT(Heights(Contours(Pyramid(25, 10), 10)), ElementsAre(20));
}

TEST(Curvado, AFootOnALevelIsAContourOfItsSides) {
  const QuietApp app;
  EXPECT_THAT(Contours(Pyramid(10, 15), 10),
              ElementsAre(Path{{0, 0, 10}, {0, 100, 10}, {100, 100, 10}, {100, 0, 10}, {0, 0, 10}}));
}

/// A square hill with a level top, which two triangles share.
std::vector<Point> Plateau(int foot, int top) {
  return {{0, 0, foot},  {100, 0, foot}, {100, 100, foot}, {0, 100, foot},
          {40, 40, top}, {60, 40, top},  {60, 61, top},    {40, 60, top}};
}

TEST(Curvado, APlateauOnALevelGivesTheSidesOfItsTrianglesOnceEach) {
  const QuietApp app;
  const std::vector<Path> paths = Contours(Plateau(15, 20), 10);
  const Point a{40, 40, 20}, b{60, 40, 20}, c{60, 61, 20}, d{40, 60, 20};
  EXPECT_THAT(Pieces(paths), UnorderedElementsAre(Piece(a, b), Piece(b, c), Piece(d, c), Piece(a, d), Piece(d, b)));
}

TEST(Curvado, APlateauOffTheLevelsGivesNothing) {
  const QuietApp app;
  EXPECT_THAT(Heights(Contours(Plateau(15, 21), 10)), ElementsAre(20));
  EXPECT_THAT(Contours(Plateau(15, 19), 10), IsEmpty());
}

TEST(Curvado, ALevelCloudGivesAllItsSidesOrNothing) {
  const QuietApp app;
  EXPECT_EQ(Pieces(Contours(Pyramid(20, 20), 10)).size(), 8U);
  EXPECT_THAT(Contours(Pyramid(21, 21), 10), IsEmpty());
}

TEST(Curvado, ARidgeOnALevelIsALineByItself) {
  const QuietApp app;
  EXPECT_THAT(Contours({{0, 0, 15}, {100, 0, 15}, {50, 40, 20}, {50, 60, 20}, {0, 100, 15}, {100, 100, 15}}, 10),
              ElementsAre(Path{{50, 40, 20}, {50, 60, 20}}));
}

TEST(Curvado, LinesOfAllLevelsStandFromTheLowestToTheHighest) {
  const QuietApp app;
  std::vector<Point> points = Pyramid(5, 65);
  for (Point p : Pyramid(95, 25)) points.push_back({p.x + 1'000, p.y, p.z});
  const auto heights = Heights(Contours(points, 10, 110));
  EXPECT_TRUE(std::is_sorted(heights.begin(), heights.end()));
  EXPECT_THAT(heights, ElementsAre(10, 20, 30, 30, 40, 40, 50, 50, 60, 60, 70, 80, 90));
}

TEST(Curvado, ContoursStopAtGapsInTheCloud) {
  const QuietApp app;
  // Two strips of a slope, 500 apart: the sides between them are longer than the limit.
  std::vector<Point> points;
  for (const int x : {0, 100, 600, 700}) {
    for (const int y : {0, 101}) points.push_back({x, y + x / 100, y == 0 ? 5 : 15});
  }
  EXPECT_EQ(Contours(points, 10).size(), 1U);
  const auto paths = Contours(points, 10, 200);
  ASSERT_EQ(paths.size(), 2U);
  EXPECT_EQ(paths[0].front().x, 0);
  EXPECT_EQ(paths[0].back().x, 100);
  EXPECT_EQ(paths[1].front().x, 600);
  EXPECT_EQ(paths[1].back().x, 700);
}

TEST(Curvado, TheLongestSideAllowedStillPasses) {
  const QuietApp app;
  const std::vector<Point> points{{0, 0, 5}, {60, 0, 15}, {0, 80, 15}};  // 60, 80 and 100
  EXPECT_EQ(Contours(points, 10, 100).size(), 1U);
  EXPECT_THAT(Contours(points, 10, 99), IsEmpty());
}

TEST(Curvado, ALimitOfZeroLeavesTheLinesAsTheyWere) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Pyramid(5, 25)), contours(kWholeUnits);
  CLinea<int> old(L"old");
  old << CCoor3D<int>(1, 2, 3, 0);
  contours.Inserta(old);
  OpenTriangulation triangulation;
  EXPECT_EQ(triangulation.Curvado(drawing, contours, 0, 10, nullptr), kHecho);
  EXPECT_THAT(Paths(contours), ElementsAre(Path{{1, 2, 3}}));
}

TEST(Curvado, LinesAreAddedBehindWhatTheDrawingHolds) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Pyramid(5, 15)), contours(kWholeUnits);
  CLinea<int> old(L"old");
  old << CCoor3D<int>(12, 12, 10, 0) << CCoor3D<int>(1, 2, 10, 0);  // not joined either, although it ends on a ring
  contours.Inserta(old);
  OpenTriangulation triangulation;
  ASSERT_EQ(triangulation.Curvado(drawing, contours, kAnySide, 10, nullptr), kHecho);
  ASSERT_EQ(contours.Cantidad(), 2U);
  EXPECT_EQ(contours[0].GetCodigo(), CString(L"old"));
  EXPECT_EQ(contours[0].NPuntos(), 2);
  EXPECT_EQ(contours[1].GetCodigo(), CString(L"nuevo"));
  EXPECT_EQ(contours.nPuntos, 7U);
}

// ---- Units ----

TEST(Curvado, LengthsAreInTheUnitOfTheDrawingAndCutToScaledOnes) {
  const QuietApp app;
  const std::vector<Point> points = Pyramid(5, 45);
  CDibujo<int> drawing = DrawingOf(points, CDataSemilla(2, 500'000, 4'000'000, 0)), contours(kWholeUnits);
  OpenTriangulation triangulation({}, CDataSemilla(7, 0, 0, 0));
  ASSERT_EQ(triangulation.Curvado(drawing, contours, 1.0099, 0.2099, nullptr), kHecho);
  EXPECT_EQ(triangulation.paramCurvaA, 20) << "0.2099 at two decimals, without its fraction";
  EXPECT_EQ(triangulation.paramCurvaB, 100);
  EXPECT_THAT(Heights(Paths(contours)), ElementsAre(20, 40))
      << "as they stand, although the lines' seed has no decimals";
  EXPECT_EQ(contours.semilla.Precision(), 1);
}

TEST(Curvado, AnIntervalBelowOneScaledUnitHasNoLevel) {
  const std::vector<Point> slope{{0, 0, 0}, {0, 100, 50}, {100, 0, 100}, {100, 90, 70}};
  for (const double interval : {0.0, 0.009, -0.01, -5.0, -1e300, std::nan("")}) {
    EXPECT_TRUE(Contours(slope, interval).empty()) << interval;
  }
}

TEST(Curvado, AnIntervalOfOneScaledUnitIsTheLeast) {
  const QuietApp app;
  EXPECT_THAT(Heights(Contours(Pyramid(0, 3), 1)), ElementsAre(0, 1, 2));
}

/// Looking through all segments for each level would take minutes.
TEST(Curvado, AHundredThousandLevelsAreJoinedOneByOne) {
  const QuietApp app;
  constexpr int kLevels = test::kFullSize ? 100'000 : 10'000;
  std::vector<Point> points = Pyramid(0, kLevels);
  for (Point& p : points) p = {p.x * (kLevels / 10), p.y * (kLevels / 10), p.z};
  const std::vector<Path> paths = Contours(points, 1, 2'000'000);
  ASSERT_EQ(paths.size(), std::size_t{kLevels});
  for (std::size_t i = 0; i < paths.size(); ++i) {
    ASSERT_EQ(paths[i].size(), 5U) << i;
    ASSERT_EQ(paths[i].front(), (Point{5 * static_cast<int>(i), 5 * static_cast<int>(i), static_cast<int>(i)}));
  }
}

TEST(Curvado, AnIntervalBeyondTheHeightsGivesWhatLiesAtZero) {
  const QuietApp app;
  EXPECT_THAT(Contours(Pyramid(5, 25), 1'000), IsEmpty());
  EXPECT_THAT(Heights(Contours(Pyramid(-5, 25), 5'000'000'000.0)), ElementsAre(0)) << "cut to 32 bits";
}

TEST(Curvado, HeightsAtTheLimitsOfThirtyTwoBitsEndTheLevelsInTime) {
  const QuietApp app;
  EXPECT_THAT(Heights(Contours(Pyramid(-2'147'483'648, 2'147'483'647), 1'000'000'000)),
              ElementsAre(-2'000'000'000, -1'000'000'000, 0, 1'000'000'000, 2'000'000'000));
}

// ---- Points ----

TEST(Curvado, NumbersOfPointsThatTakeNoPartStay) {
  const QuietApp app;
  std::vector<Point> points = Pyramid(5, 25);
  points.push_back({20, 50, 9'000});  // above the window
  CDibujo<int> drawing = DrawingOf(points), contours;
  for (int i = 0; i < 6; ++i) drawing[0].PunteroAPunto(i)->num = 77;
  CDataTriangulacion data;
  data.zMax = 100;
  OpenTriangulation triangulation(data, kWholeUnits);
  ASSERT_EQ(triangulation.Curvado(drawing, contours, kAnySide, 10, nullptr), kHecho);
  EXPECT_EQ(drawing[0].Punto(5).num, 77);
  EXPECT_EQ(drawing[0].Punto(0).num, 1);
  EXPECT_THAT(Heights(Paths(contours)), ElementsAre(10, 20));
}

TEST(Curvado, FurtherDrawingsArePartOfTheSurface) {
  const QuietApp app;
  const std::vector<Point> points = Pyramid(5, 25);
  CDibujo<int> square = DrawingOf({points.begin(), points.begin() + 4}), top = DrawingOf({points[4]});
  CDibujo<int> contours;
  std::vector<CDibujo<int>*> others{nullptr, &top};
  OpenTriangulation triangulation;
  ASSERT_EQ(triangulation.Curvado(square, contours, kAnySide, 10, &others), kHecho);
  EXPECT_EQ(Paths(contours), Contours(points, 10));
  EXPECT_THAT(others, ElementsAre(nullptr, &top)) << "they belong to the caller and stay";
  EXPECT_EQ(top[0].Punto(0).num, 5);
}

TEST(Curvado, ContoursCrossTheBorderOfTwoDrawingsWithoutABreak) {
  const QuietApp app;
  std::vector<Point> west, east;
  for (int x = 0; x <= 40; ++x) {
    for (int y = 0; y <= 20; ++y) (x <= 20 ? west : east).push_back({100 * x + y % 3, 100 * y + x % 3, 37 * y + x});
  }
  std::vector<Point> all = west;
  all.insert(all.end(), east.begin(), east.end());
  // An empty drawing at the end: the seeds of the last one are not reached.
  CDibujo<int> first = DrawingOf(west), second = DrawingOf(east), last(kWholeUnits), contours;
  std::vector<CDibujo<int>*> others{&second, &last};
  OpenTriangulation triangulation;
  ASSERT_EQ(triangulation.Curvado(first, contours, kAnySide, 100, &others), kHecho);
  EXPECT_EQ(Paths(contours), Contours(all, 100));
  int crossing = 0;
  for (Path const& path : Paths(contours)) {
    const auto [least, greatest] = std::minmax_element(path.begin(), path.end());
    crossing += least->x < 1'900 && greatest->x > 2'200 ? 1 : 0;
  }
  EXPECT_EQ(crossing, 7) << "every level from 100 to 700";
}

TEST(Curvado, APointOnAnotherInPlanTakesNoPart) {
  const QuietApp app;
  std::vector<Point> points = Pyramid(5, 25);
  points.push_back({50, 50, 500});
  EXPECT_THAT(Heights(Contours(points, 10)), ElementsAre(10, 20));
}

// ---- Progress, cancelling, failing ----

TEST(Curvado, TellsItsPhasesItsLevelsAndItsEnd) {
  ListeningApp app;
  CDibujo<int> drawing = DrawingOf(Pyramid(5, 45)), contours;
  OpenTriangulation triangulation;
  std::size_t told = 0;
  ASSERT_EQ(triangulation.Curvado(drawing, contours, kAnySide, 10, nullptr), kHecho);
  EXPECT_THAT(app.PhaseMessages(), ElementsAre(19020, 19021, 19020));
  ASSERT_GE(app.steps.size(), 4U);
  for (auto step = app.steps.end() - 4; step != app.steps.end(); ++step) {
    EXPECT_EQ(step->level, 3);
    EXPECT_EQ(step->value, ++told);
    EXPECT_EQ(step->total, 3U) << "(40 - 10) / 10: the levels are one more than the steps between them";
  }
  EXPECT_THAT(app.closed, ElementsAre(std::pair(3, 0)));
  EXPECT_EQ(app.lastFlags, 0);
}

TEST(Curvado, LevelsWithoutALineAreStepsToo) {
  ListeningApp app;
  std::vector<Point> points = Pyramid(5, 15);
  for (Point p : Pyramid(95, 105)) points.push_back({p.x + 1'000, p.y, p.z});
  CDibujo<int> drawing = DrawingOf(points), contours;
  OpenTriangulation triangulation;
  ASSERT_EQ(triangulation.Curvado(drawing, contours, 110, 10, nullptr), kHecho);
  EXPECT_THAT(Heights(Paths(contours)), ElementsAre(10, 100));
  EXPECT_EQ(app.steps.back().value, 10U);
  EXPECT_EQ(app.steps.back().total, 9U);
}

TEST(Curvado, WithoutALineThePhaseIsToldAndClosedAllTheSame) {
  ListeningApp app;
  CDibujo<int> drawing = DrawingOf(Pyramid(21, 21)), contours;
  OpenTriangulation triangulation;
  ASSERT_EQ(triangulation.Curvado(drawing, contours, kAnySide, 10, nullptr), kHecho);
  EXPECT_THAT(app.PhaseMessages(), ElementsAre(19020, 19021, 19020));
  EXPECT_THAT(app.closed, ElementsAre(std::pair(3, 0)));
}

TEST(Curvado, AtMessageLevelZeroNothingIsToldOrAsked) {
  ListeningApp app;
  app.cancelAt = 1;
  CDibujo<int> drawing = DrawingOf(Pyramid(5, 25)), contours;
  OpenTriangulation triangulation;
  triangulation.Mensajes(MENSAJES_NINGUNO);
  EXPECT_EQ(triangulation.Curvado(drawing, contours, kAnySide, 10, nullptr), kHecho);
  EXPECT_THAT(app.steps, IsEmpty());
  EXPECT_THAT(app.phases, IsEmpty());
  EXPECT_THAT(app.closed, IsEmpty());
}

TEST(Curvado, CancelledAtAnyStepItLeavesTheLevelsDone) {
  const std::vector<Point> points = Pyramid(5, 45);
  const std::vector<Path> all = Contours(points, 10);
  ASSERT_EQ(all.size(), 4U);
  ListeningApp app;
  int levelsAsked = 0;
  app.onStep = [&] { levelsAsked += app.phases.size() == 3 ? 1 : 0; };
  OpenTriangulation triangulation;  // one for all, so that what a cancelled run leaves would show in the next
  int code = kCancelado;
  for (int at = 1; code == kCancelado; ++at) {
    SCOPED_TRACE(at);
    app.steps.clear();
    app.phases.clear();
    app.closed.clear();
    app.cancelAt = at;
    levelsAsked = 0;
    CDibujo<int> drawing = DrawingOf(points), contours;
    code = triangulation.Curvado(drawing, contours, kAnySide, 10, nullptr);
    EXPECT_EQ(triangulation.dibujoCurvas.Cantidad(), 0U);
    if (code == kHecho) break;
    EXPECT_EQ(Paths(contours), std::vector<Path>(all.begin(), all.begin() + std::max(0, levelsAsked - 1)));
    EXPECT_EQ(static_cast<int>(app.steps.size()), at) << "nothing is asked after the answer";
    EXPECT_THAT(app.closed, IsEmpty());
  }
  EXPECT_EQ(code, kHecho) << "once no step is left to be answered by 0";
  EXPECT_EQ(levelsAsked, 4);
}

TEST(Curvado, TooFewPointsLeaveTheLinesAsTheyWere) {
  const QuietApp app;
  for (const int count : {0, 1, 2}) {
    const std::vector<Point> points = Pyramid(5, 25);
    CDibujo<int> drawing = DrawingOf({points.begin(), points.begin() + count}), contours;
    OpenTriangulation triangulation;
    EXPECT_EQ(triangulation.Curvado(drawing, contours, kAnySide, 10, nullptr), kPocosPuntos) << count;
    EXPECT_EQ(contours.Cantidad(), 0U);
  }
}

TEST(Curvado, PointsOnOneLineGiveNoContour) {
  const QuietApp app;
  EXPECT_THAT(Contours({{0, 0, 5}, {100, 100, 15}, {200, 200, 25}}, 10), IsEmpty());
}

TEST(Curvado, NoTemporaryFileIsMade) {
  ListeningApp app;
  std::size_t most = 0;
  app.onStep = [&] { most = std::max(most, app.TemporaryFiles()); };
  CDibujo<int> drawing = DrawingOf(Pyramid(5, 25)), contours;
  OpenTriangulation triangulation;
  ASSERT_EQ(triangulation.Curvado(drawing, contours, kAnySide, 10, nullptr), kHecho);
  EXPECT_FALSE(triangulation.ficheroTemporal.EstaAbierto());
  EXPECT_EQ(std::max(most, app.TemporaryFiles()), 0U);
}

TEST(Curvado, AFileThatAnEarlierRunLeftOpenIsDeleted) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Pyramid(5, 25)), contours;
  OpenTriangulation triangulation;
  ASSERT_EQ(triangulation.Link(drawing), kHecho);
  ASSERT_EQ(app.TemporaryFiles(), 1U);
  ASSERT_EQ(triangulation.Curvado(drawing, contours, kAnySide, 10, nullptr), kHecho);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
  EXPECT_EQ(contours.Cantidad(), 2U);
}

TEST(Curvado, AHostThatThrowsAtAnyStepLeavesNoWorkerBehind) {
  ListeningApp app;
  const std::vector<Point> points = Pyramid(5, 25);
  int at = 1;
  bool thrown = true;
  for (; thrown; ++at) {
    CDibujo<int> drawing = DrawingOf(points), contours;
    OpenTriangulation triangulation;
    app.steps.clear();
    app.onStep = [&] {
      if (static_cast<int>(app.steps.size()) == at) throw std::runtime_error("a host's own");
    };
    thrown = false;
    try {
      triangulation.Curvado(drawing, contours, kAnySide, 10, nullptr);
    } catch (std::runtime_error const&) {
      thrown = true;
      EXPECT_FALSE(triangulation.hiloSalva.EstaEnMarcha()) << "at step " << at;
    }
  }
  EXPECT_GT(at, 5);
}

TEST(Curvado, AgainOnOneObjectItGivesTheSame) {
  const QuietApp app;
  OpenTriangulation triangulation;
  std::vector<Path> first;
  for (int round = 0; round < 3; ++round) {
    CDibujo<int> drawing = DrawingOf(Plateau(-13, 48)), contours;
    ASSERT_EQ(triangulation.Curvado(drawing, contours, kAnySide, 10, nullptr), kHecho);
    if (round == 0) first = Paths(contours);
    EXPECT_EQ(Paths(contours), first);
    EXPECT_EQ(triangulation.dibujoCurvas.Cantidad(), 0U);
  }
}

// ---- Level by level ----

TEST(CurvadoPorNiveles, LevelsComeOneByOneFromTheLowestWithTheLinesOfAll) {
  const QuietApp app;
  const std::vector<Point> points = Plateau(-13, 48);
  CDibujo<int> drawing = DrawingOf(points), lines(kWholeUnits);
  std::vector<int> heights;
  OpenTriangulation triangulation;
  const auto receive = [&](CNivelDeCurvas const& level) {
    heights.push_back(level.Altura());
    for (std::size_t i = 0; i < level.Cantidad(); ++i) lines.Inserta(level.Linea(i));
  };
  ASSERT_EQ(triangulation.Curvado(drawing, receive, kAnySide, 10, nullptr, false), kHecho);
  EXPECT_THAT(heights, ElementsAre(-10, 0, 10, 20, 30, 40));
  EXPECT_EQ(Paths(lines), Contours(points, 10));
  EXPECT_EQ(drawing.nPuntos, points.size());
}

TEST(CurvadoPorNiveles, ADrawingThatIsToBeClearedIsSoBeforeTheFirstLevel) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Pyramid(5, 25));
  std::vector<unsigned> left;
  OpenTriangulation triangulation;
  const auto receive = [&](CNivelDeCurvas const&) { left.push_back(drawing.Cantidad()); };
  ASSERT_EQ(triangulation.Curvado(drawing, receive, kAnySide, 10, nullptr, true), kHecho);
  EXPECT_THAT(left, ElementsAre(0U, 0U));
  CDibujo<int> again = DrawingOf(Pyramid(5, 25)), contours;
  EXPECT_EQ(triangulation.Curvado(again, contours, kAnySide, 10, nullptr), kHecho);
  EXPECT_EQ(contours.Cantidad(), 2U);
}

/// So rough a grid that a level has many blocks of pieces.
std::vector<Point> Gravel() {
  std::vector<Point> points;
  for (int x = 0; x < 90; ++x) {
    for (int y = 0; y < 90; ++y) points.push_back({100 * x + y % 7, 100 * y + x % 5, (x * 7 + y * 11) % 13});
  }
  return points;
}

/// The code of a run whose pieces wait in a file, and what levels it gave.
std::pair<int, std::vector<Path>> ContoursByFile(CString const& path) {
  CFile pieces(path, CFile::modeCreate | CFile::modeReadWrite);
  CDibujo<int> drawing = DrawingOf(Gravel()), lines(kWholeUnits);
  OpenTriangulation triangulation;
  const auto receive = [&](CNivelDeCurvas const& level) {
    for (std::size_t i = 0; i < level.Cantidad(); ++i) lines.Inserta(level.Linea(i));
  };
  const int code = triangulation.Curvado(drawing, receive, kAnySide, 5, nullptr, true, &pieces);
  EXPECT_EQ(triangulation.dibujoCurvas.Cantidad(), 0U);
  return {code, Paths(lines)};
}

TEST(CurvadoPorNiveles, InAFileThePiecesWaitAsInMemory) {
  const QuietApp app;
  const ScratchFolder folder;
  const auto [code, lines] = ContoursByFile(folder.Path("pieces"));
  EXPECT_EQ(code, kHecho);
  EXPECT_EQ(lines, Contours(Gravel(), 5));
  EXPECT_GT(BytesOf(folder.Path("pieces")).size(), 100'000U);
}

TEST(CurvadoPorNiveles, AFileThatFailsEndsTheRunAfterWholeLevels) {
  const QuietApp app;
  const ScratchFolder folder;
  const std::vector<Path> all = Contours(Gravel(), 5);
  for (const EOperacion refused : {EOperacion::Escribe, EOperacion::Lee, EOperacion::Longitud, EOperacion::Posiciona}) {
    for (const int nth : {1, 2}) {
      SCOPED_TRACE(testing::Message() << static_cast<int>(refused) << " refused at time " << nth);
      FaultGuard guard;
      guard.RefuseOnce(refused, nth);
      const auto [code, lines] = ContoursByFile(folder.Path("pieces"));
      EXPECT_EQ(code, kFicheroInaccesible);
      ASSERT_LT(lines.size(), all.size());
      EXPECT_TRUE(std::equal(lines.begin(), lines.end(), all.begin()));
      EXPECT_TRUE(lines.empty() || lines.back().front().z != all[lines.size()].front().z);
    }
  }
}

TEST(CurvadoPorNiveles, WhatAReceiverThrowsEndsTheRunAndLeavesNoSegments) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Pyramid(5, 25));
  OpenTriangulation triangulation;
  int received = 0;
  const auto refuse = [&](CNivelDeCurvas const&) {
    ++received;
    throw std::runtime_error("a full disk");
  };
  EXPECT_THROW(triangulation.Curvado(drawing, refuse, kAnySide, 10, nullptr, true), std::runtime_error);
  EXPECT_EQ(received, 1);
  CDibujo<int> again = DrawingOf(Pyramid(5, 15)), contours;
  EXPECT_EQ(triangulation.Curvado(again, contours, kAnySide, 10, nullptr), kHecho);
  EXPECT_EQ(contours.Cantidad(), 1U);
}

}  // namespace
}  // namespace Meseta47
