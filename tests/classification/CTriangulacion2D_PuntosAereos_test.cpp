// The search of aerial points as its callers see it.
#include <gmock/gmock.h>
#include <limits>

#include "classification/CVecindario.h"
#include "classification/NoiseScene.h"

namespace Meseta47 {
namespace {

using test::Aerial;
using test::Changing;
using test::ClassedPoint;
using test::ClassesOf;
using test::Cloud;
using test::ListeningApp;
using test::Places;
using test::QuietApp;
using test::With;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

/// A level plain of 7 by 7 points, a metre apart and in general position enough, the centre at its middle.
std::vector<ClassedPoint> Plain(int z = 0) {
  std::vector<ClassedPoint> points;
  for (int y = -3; y <= 3; ++y) {
    for (int x = -3; x <= 3; ++x) points.push_back({10 * x + y, 10 * y - x, z + (x * x + 3 * y + 9) % 2});
  }
  return points;
}
constexpr std::size_t kMiddle = 24;

std::vector<ClassedPoint> PlainWith(int z) {
  std::vector<ClassedPoint> points = Plain();
  points[kMiddle].z = z;
  return points;
}

/// The places of those found; coordinates are in decimetres.
std::vector<std::size_t> Found(std::vector<ClassedPoint> const& points, double radius, double factor) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(points, {1, 0, 0, 0});
  Aerial search;
  search.seed = drawing.semilla;
  search.radius = radius;
  search.factor = factor;
  EXPECT_EQ(search.Run(drawing), kHecho);
  std::vector<std::size_t> found;
  const std::vector<int> classes = ClassesOf(drawing);
  for (std::size_t i = 0; i < classes.size(); ++i) {
    if (classes[i] == 7) found.push_back(i);
  }
  EXPECT_EQ(search.changed, found.size());
  EXPECT_EQ(app.TemporaryFiles(), 0U);
  return found;
}

// --- direction ---

TEST(RunPuntosAereos, AFactorAbove0LooksForPointsAboveTheirSurroundings) {
  EXPECT_THAT(Found(PlainWith(50), 2, 3), ElementsAre(kMiddle));
  EXPECT_THAT(Found(PlainWith(-50), 2, 3), IsEmpty());
}

TEST(RunPuntosAereos, AFactorBelow0LooksForPointsBelow) {
  EXPECT_THAT(Found(PlainWith(-50), 2, -3), ElementsAre(kMiddle));
  EXPECT_THAT(Found(PlainWith(50), 2, -3), IsEmpty());
}

TEST(RunPuntosAereos, OnlyPointsOnSteepTrianglesAreLookedAt) {
  // Six decimetres above a ring a metre away is 30 degrees at the height of its triangles, 5 is not.
  EXPECT_THAT(Found(PlainWith(7), 2, 3), ElementsAre(kMiddle));
  EXPECT_THAT(Found(PlainWith(4), 2, 3), IsEmpty()) << "it is 4 deviations above, on gentle slopes";
  EXPECT_THAT(Found(PlainWith(4), 2, 1e-8), testing::Contains(kMiddle)) << "next to 0 any slope will do";
}

TEST(RunPuntosAereos, AFactorOf0TakesAnyCandidateAboveTheLocalMean) {
  std::vector<ClassedPoint> points = Plain();
  for (ClassedPoint& p : points) p.z = 0;
  EXPECT_THAT(Found(points, 2, 0), IsEmpty()) << "nothing falls away from anything";
  points[kMiddle].z = 1;
  EXPECT_THAT(Found(points, 2, 0), ElementsAre(kMiddle));
  points[kMiddle].z = -1;
  const std::vector<std::size_t> around = Found(points, 2, 0);
  EXPECT_THAT(around, testing::SizeIs(testing::Ge(6U))) << "those from which the mesh falls to it";
  EXPECT_THAT(around, testing::Not(testing::Contains(kMiddle)));
}

// --- the surroundings ---

TEST(RunPuntosAereos, ACandidateWithTwoNeighboursOrFewerIsNeverMarked) {
  // A pole, and ground of which so many points lie within 5 metres.
  for (const std::size_t near : {0U, 2U, 3U}) {
    std::vector<ClassedPoint> points{{0, 0, 900}, {200, 10, 0}, {-200, 20, 0}, {10, 210, 0}, {20, -220, 1}};
    const std::vector<ClassedPoint> ring{{40, 10, 0}, {-40, 11, 0}, {3, -41, 1}};
    points.insert(points.end(), ring.begin(), ring.begin() + static_cast<std::ptrdiff_t>(near));
    EXPECT_EQ(Found(points, 5, 1).size(), near == 3 ? 1U : 0U) << near;
  }
}

TEST(RunPuntosAereos, ARadiusOf0HasNoNeighbours) {
  EXPECT_THAT(Found(PlainWith(900), 0, 1), IsEmpty());
  EXPECT_THAT(Found(PlainWith(900), 0.099, 1), IsEmpty()) << "cut to whole scaled units it is 0";
  EXPECT_THAT(Found(PlainWith(900), -3, 1), IsEmpty());
}

TEST(RunPuntosAereos, PointsAtExactlyTheRadiusCount) {
  const std::vector<ClassedPoint> points{{0, 0, 900},    {30, 40, 0},   {-30, 40, 0},  {50, 0, 1},
                                         {-300, -10, 0}, {10, -300, 0}, {300, -11, 0}, {11, 320, 0}};
  EXPECT_THAT(Found(points, 5, 1), ElementsAre(0U));
  EXPECT_THAT(Found(points, 4.9, 1), IsEmpty());
}

TEST(RunPuntosAereos, ARadiusBeyondTheWholeCloudTakesAllOfIt) {
  EXPECT_THAT(Found(PlainWith(50), 1e3, 3), ElementsAre(kMiddle));
  EXPECT_THAT(Found(PlainWith(50), 1e300, 3), ElementsAre(kMiddle)) << "as much as 32 bits hold";
}

TEST(RunPuntosAereos, AHeightMustPassTheMeanByMoreThanItsDeviations) {
  // Four neighbours at -3, -3, 3 and 3: mean 0, variance 12, deviation 3.46.
  const auto pole = [](int z) {
    return std::vector<ClassedPoint>{{0, 0, z},      {10, 1, -3},   {-10, -1, -3}, {1, -10, 3}, {-1, 10, 3},
                                     {-300, -10, 0}, {10, -300, 0}, {300, -11, 0}, {11, 320, 0}};
  };
  EXPECT_THAT(Found(pole(34), 2, 10), IsEmpty());
  EXPECT_THAT(Found(pole(35), 2, 10), ElementsAre(0U));
  EXPECT_THAT(Found(pole(-34), 2, -10), IsEmpty());
  EXPECT_THAT(Found(pole(-35), 2, -10), ElementsAre(0U));
}

TEST(RunPuntosAereos, AHeightExactlyAtTheLimitStays) {
  // Five neighbours at -2, -2, 0, 2 and 2: mean 0, variance 4, deviation 2.
  const auto pole = [](int z) {
    return std::vector<ClassedPoint>{{0, 0, z},   {10, 1, -2},    {-10, -1, -2}, {1, -10, 2},   {-1, 10, 2},
                                     {12, 12, 0}, {-300, -10, 0}, {10, -300, 0}, {300, -11, 0}, {11, 320, 0}};
  };
  EXPECT_THAT(Found(pole(50), 2, 25), IsEmpty());
  EXPECT_THAT(Found(pole(51), 2, 25), ElementsAre(0U));
  EXPECT_THAT(Found(pole(-50), 2, -25), IsEmpty());
  EXPECT_THAT(Found(pole(-51), 2, -25), ElementsAre(0U));
}

TEST(RunPuntosAereos, ACandidateThatIsMarkedNoLongerCountsForThoseToTheRight) {
  // Two poles side by side over a plain. The first to the left stands out; without it the second does too.
  std::vector<ClassedPoint> points = PlainWith(300);
  points[kMiddle + 1].z = 200;
  EXPECT_THAT(Found(points, 3, 4), ElementsAre(kMiddle, kMiddle + 1));
  std::swap(points[kMiddle].z, points[kMiddle + 1].z);
  EXPECT_THAT(Found(points, 3, 4), ElementsAre(kMiddle + 1)) << "the one at the left met the higher one";
}

// --- candidates ---

/// A triangulation whose spilled triangles are written by hand.
class WithRecords : public test::OpenTriangulation {
 public:
  WithRecords() : OpenTriangulation({}, CDataSemilla(1, 0, 0, 0)) {}
  using CTriangulacion2D::BuscaPuntosAereos;

  /// Searches with triangles of places, from 0.
  std::vector<int> Search(std::vector<ClassedPoint> const& points, std::vector<std::array<int, 3>> const& triangles) {
    CDibujo<int> drawing = Cloud(points, {1, 0, 0, 0});
    EXPECT_EQ(Link(drawing), kHecho);
    ficheroTemporal.Fichero()->SetLength(0);
    ficheroTemporal.Fichero()->Seek(0, CFile::begin);
    for (std::array<int, 3> const& t : triangles) {
      const support::Triangle numbers{drawing[0].Punto(t[0]).num, drawing[0].Punto(t[1]).num,
                                      drawing[0].Punto(t[2]).num};
      ficheroTemporal.Fichero()->Write(numbers.data(), sizeof numbers);
    }
    ficheroTemporal.Vuelca();
    unsigned changed = 0;
    const CInfoClasificacion info(7, 0.0, L"");
    EXPECT_EQ(BuscaPuntosAereos(drawing, nullptr, 100, 1, info, changed, nullptr), kHecho);
    BorraFicheroTemporal();
    const std::vector<int> classes = ClassesOf(drawing);
    return {classes.begin(), classes.begin() + 2};
  }
};

/// Two poles on ground, the first to the left.
const std::vector<ClassedPoint> kPoles{{0, 0, 90},   {30, 2, 90}, {-10, 1, 0}, {-9, 20, 0},
                                       {20, -18, 1}, {40, 10, 0}, {15, 30, 1}};

TEST(RunPuntosAereos, ExactlyOneCandidateIsNone) {
  const QuietApp app;
  EXPECT_THAT(WithRecords().Search(kPoles, {{0, 2, 3}}), ElementsAre(2, 2));
  EXPECT_THAT(WithRecords().Search(kPoles, {{0, 2, 3}, {0, 2, 4}}), ElementsAre(2, 2)) << "nor is one told of twice";
  EXPECT_THAT(WithRecords().Search(kPoles, {{0, 2, 3}, {0, 2, 4}, {0, 3, 4}}), ElementsAre(7, 2))
      << "told of three times it is";
}

TEST(RunPuntosAereos, OfTwoCandidatesTheFirstIsKept) {
  const QuietApp app;
  EXPECT_THAT(WithRecords().Search(kPoles, {{1, 5, 6}, {0, 2, 3}}), ElementsAre(7, 2));
  EXPECT_THAT(WithRecords().Search(kPoles, {{1, 5, 6}, {0, 2, 3}, {0, 2, 4}}), ElementsAre(7, 7));
}

// --- which points may change ---

TEST(RunPuntosAereos, AnExcludedClassStaysThoughItWasFound) {
  const QuietApp app;
  for (const wchar_t* excluded : {L"4", L"8"}) {
    std::vector<ClassedPoint> points = PlainWith(50);
    points[kMiddle].clase = 4;
    CDibujo<int> drawing = Cloud(points, {1, 0, 0, 0});
    drawing.tipoNube = 0;
    Aerial search;
    search.seed = drawing.semilla;
    search.radius = 2;
    search.data = Changing({L"*"}, {excluded});
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing)[kMiddle], excluded[0] == L'4' ? 4 : 7);
  }
}

TEST(RunPuntosAereos, InACloudAnExcludedClassIsNotAmongTheSurroundings) {
  const QuietApp app;
  for (const bool leftOut : {false, true}) {
    std::vector<ClassedPoint> points = PlainWith(50);
    points[kMiddle + 1] = {points[kMiddle + 1].x, points[kMiddle + 1].y, 2000, 5};
    CDibujo<int> drawing = Cloud(points, {1, 0, 0, 0});
    Aerial search;
    search.seed = drawing.semilla;
    search.radius = 2;
    search.data = Changing({L"*"}, leftOut ? std::vector<CString>{L"5"} : std::vector<CString>{});
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing)[kMiddle], leftOut ? 7 : 2);
  }
}

TEST(RunPuntosAereos, OnlyTheByteOfTheClassIsGiven) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(PlainWith(50), {1, 0, 0, 0});
  Aerial search;
  search.seed = drawing.semilla;
  search.radius = 2;
  search.info = CInfoClasificacion(255, 3.5, L"_###COMODIN###");
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(ClassesOf(drawing)[kMiddle], 255);
}

TEST(RunPuntosAereos, PointsOfFurtherDrawingsAreSurroundingsAndKeepTheirClass) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(PlainWith(50), {1, 0, 0, 0});
  CDibujo<int> tall = Cloud({{2, 3, 900}, {4, 1, 800}, {3, 2, 700}}, {1, 0, 0, 0}), last = Cloud({{90, 90, 0}});
  Aerial search;
  search.seed = drawing.semilla;
  search.radius = 2;
  search.others = {nullptr, &tall, &last};
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(ClassesOf(drawing), Each(2));
  EXPECT_THAT(ClassesOf(tall), Each(2));
}

TEST(RunPuntosAereos, ASelectionThatEndsOnADuplicateLeavesNumberedPointsThatAreNotFound) {
  const QuietApp app;
  std::vector<ClassedPoint> points = With(Plain(), {{0, 0, 1}, {5, 5, 90}});
  CDibujo<int> drawing = Cloud(points, {1, 0, 0, 0});
  std::vector<CPosicionEntidad> selection;
  for (int i = 0; i < 51; ++i) selection.emplace_back(0, i);
  Aerial search;
  search.seed = drawing.semilla;
  search.radius = 2;
  search.selection = &selection;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_NE(drawing[0].Punto(50).num, 0) << "it is in the mesh";
  EXPECT_THAT(ClassesOf(drawing), Each(2));
}

TEST(RunPuntosAereos, NumbersAreAsBeforeWhenItEnds) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(PlainWith(50), {1, 0, 0, 0});
  Aerial search;
  search.seed = drawing.semilla;
  search.radius = 2;
  EXPECT_EQ(search.Run(drawing), kHecho);
  for (CCoor3D<int> const& p : drawing[0].Puntos()) EXPECT_GT(p.num, 0);
}

// --- progress ---

TEST(RunPuntosAereos, TellsItsPhasesAndReportsPointsAndCandidates) {
  ListeningApp app;
  std::vector<ListeningApp::Step> around, writing;
  app.onStep = [&] {
    if (app.phases.back().second == 19026) around.push_back(app.steps.back());
    if (app.phases.back().second == 39102) writing.push_back(app.steps.back());
  };
  CDibujo<int> drawing = Cloud(PlainWith(50), {1, 0, 0, 0});
  Aerial search;
  search.seed = drawing.semilla;
  search.radius = 2;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(app.PhaseMessages(), ElementsAre(19020, 19021, 19020, 19045, 19026, 39102));
  EXPECT_THAT(app.closed, ElementsAre(std::pair(3, 0)));
  ASSERT_GE(around.size(), 50U);
  EXPECT_EQ(around.front().value, 1U);
  EXPECT_EQ(around.back().value, 50U) << "49 points and a candidate";
  for (ListeningApp::Step const& step : around) EXPECT_EQ(step.total, 50U);
  ASSERT_EQ(writing.size(), 49U);
  EXPECT_EQ(writing.back().value, 49U);
  EXPECT_EQ(writing.back().total, 49U);
}

TEST(RunPuntosAereos, AtLevel0NobodyIsAsked) {
  const ListeningApp app;
  CDibujo<int> drawing = Cloud(PlainWith(50), {1, 0, 0, 0});
  Aerial search;
  search.seed = drawing.semilla;
  search.radius = 2;
  search.level = MENSAJES_NINGUNO;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(search.changed, 1U);
  EXPECT_THAT(app.steps, IsEmpty());
}

TEST(RunPuntosAereos, TooFewPointsAreTold) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud({{0, 0, 0}, {1, 0, 90}});
  Aerial search;
  EXPECT_EQ(search.Run(drawing), kPocosPuntos);
  EXPECT_EQ(search.changed, 12345U);
}

// --- what is around a place ---

/// Filled and ready to be asked.
CVecindario Around(std::vector<CCoor3D<int>> const& points, int radius) {
  CMaximas<int> box;
  for (CCoor3D<int> const& p : points) box.Nuevo(p);
  CVecindario around(box, points.size(), radius);
  for (CCoor3D<int> const& p : points) around.Cuenta(p);
  around.Reserva();
  for (CCoor3D<int> const& p : points) around.Pon(p);
  for (std::size_t band = 0; band < around.Bandas(); ++band) around.Ordena(band);
  return around;
}

/// Heights around the point of that number, in order.
std::vector<std::int32_t> HeightsAround(std::vector<CCoor3D<int>> const& points, int number, int radius) {
  CVecindario around = Around(points, radius);
  CVecindario::CIndice i = 0;
  while (around.Puntos()[i].num != number) ++i;
  const auto ordered = around.AlturasEnOrden(i);
  std::vector<std::int32_t> inOrder(ordered.begin(), ordered.end());
  const auto any = around.Alturas(i);
  EXPECT_THAT(std::vector<std::int32_t>(any.begin(), any.end()), testing::UnorderedElementsAreArray(inOrder));
  return inOrder;
}

TEST(CVecindario, GivesHeightsInTheOrderOfPositions) {
  const std::vector<CCoor3D<int>> points{{5, 5, 50, 1}, {4, 9, 40, 2}, {4, 2, 41, 3},
                                         {6, 0, 60, 4}, {5, 9, 51, 5}, {9, 5, 90, 6}};
  EXPECT_THAT(HeightsAround(points, 1, 5), ElementsAre(41, 40, 51, 90));
  for (const int radius : {6, 100, std::numeric_limits<int>::max()}) {
    EXPECT_THAT(HeightsAround(points, 1, radius), ElementsAre(41, 40, 51, 60, 90)) << radius;
  }
}

TEST(CVecindario, APointThatWasTakenOutIsAroundNobody) {
  const std::vector<CCoor3D<int>> points{{0, 0, 1, 1}, {1, 0, 2, 2}, {0, 1, 3, 3}};
  CVecindario around = Around(points, 10);
  for (CVecindario::CIndice i = 0; i < 3; ++i) {
    if (around.Puntos()[i].num == 2) around.Quita(i);
  }
  for (CVecindario::CIndice i = 0; i < 3; ++i) {
    const auto heights = around.Alturas(i);
    EXPECT_EQ(std::count(heights.begin(), heights.end(), 2), 0);
    EXPECT_EQ(heights.size(), around.Puntos()[i].num == 0 ? 2U : 1U);
  }
}

TEST(CVecindario, DifferencesAreTakenAsFloats) {
  constexpr int kExact = 1 << 24;  // from where on floats leave out odd numbers
  const std::vector<CCoor3D<int>> points{{0, 0, 1, 1}, {kExact + 1, 0, 2, 2}, {0, kExact, 3, 3}};
  EXPECT_THAT(HeightsAround(points, 1, kExact), ElementsAre(3)) << "beyond the box, whatever a float would say";
  EXPECT_THAT(HeightsAround({{0, 0, 1, 1}, {kExact + 1, 2, 2, 2}}, 1, kExact + 1), ElementsAre(2))
      << "2 aside it is out by half a unit, but as a float the difference is one less";
}

TEST(CVecindario, ReachesFromOneEndOf32BitsToTheOther) {
  constexpr int kLow = std::numeric_limits<int>::min(), kHigh = std::numeric_limits<int>::max(), kHalf = 1 << 30;
  const std::vector<CCoor3D<int>> points{
      {kHigh, kHigh, 3, 1}, {kLow, kLow, 1, 2}, {kHalf, kHalf, 2, 3}, {kHigh, kHalf, 4, 4}};
  EXPECT_THAT(HeightsAround(points, 4, kHigh), ElementsAre(2, 3));
  EXPECT_THAT(HeightsAround(points, 2, kHigh), IsEmpty());
}

}  // namespace
}  // namespace Meseta47
