// The search of jumps of intensity as its callers see it.
#include <gmock/gmock.h>
#include <limits>

#include "classification/SearchScene.h"
#include "classification/SeenScene.h"

namespace Meseta47 {
namespace {

using test::And;
using test::Changing;
using test::ClassesOf;
using test::JumpSearch;
using test::kFarCorners;
using test::kFlat;
using test::ListeningApp;
using test::QuietApp;
using test::Seen;
using test::SeenPoint;
using testing::Each;
using testing::ElementsAre;

/// Level ground of one intensity, and a spot in its middle.
std::vector<SeenPoint> Spot(int intensity, int around = 1000) {
  std::vector<SeenPoint> points = And(kFlat, {{0, 0, 0, intensity}});
  for (std::size_t i = 0; i + 1 < points.size(); ++i) points[i].intensity = around;
  return points;
}

int LastAfter(std::vector<SeenPoint> const& points, int difference) {
  CDibujo<int> drawing = Seen(points);
  JumpSearch search;
  search.difference = difference;
  EXPECT_EQ(search.Run(drawing), kHecho);
  return ClassesOf(drawing).back();
}

TEST(RunPuntosDifIntensidad, ABrightSpotTakesTheClassAndNothingElse) {
  const QuietApp app;
  CDibujo<int> drawing = Seen(Spot(1200));
  const std::vector<CCoor3D<int>> before = drawing[0].Puntos();
  JumpSearch search;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(ClassesOf(drawing), ElementsAre(2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 9));
  EXPECT_EQ(search.changed, 1U);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
  for (int i = 0; i < drawing[0].NPuntos(); ++i) {
    EXPECT_TRUE(drawing[0].Punto(i) == before[static_cast<std::size_t>(i)]) << "heights stay";
    EXPECT_EQ(drawing[0].Punto(i).intensidad, before[static_cast<std::size_t>(i)].intensidad);
  }
}

TEST(RunPuntosDifIntensidad, ADifferenceBelow0FindsWhatIsDarker) {
  const QuietApp app;
  EXPECT_EQ(LastAfter(Spot(800), -100), 9);
  EXPECT_EQ(LastAfter(Spot(800), 100), 2);
  EXPECT_EQ(LastAfter(Spot(1200), -100), 2);
}

TEST(RunPuntosDifIntensidad, ExactlyTheDifferenceIsNoSeed) {
  const QuietApp app;
  EXPECT_EQ(LastAfter(Spot(1100), 100), 2);
  EXPECT_EQ(LastAfter(Spot(1101), 100), 9);
  EXPECT_EQ(LastAfter(Spot(900), -100), 2);
  EXPECT_EQ(LastAfter(Spot(899), -100), 9);
}

TEST(RunPuntosDifIntensidad, TheWholeRangeOfDifferencesIsTaken) {
  const QuietApp app;
  EXPECT_EQ(LastAfter(Spot(65535, 0), 65534), 9);
  EXPECT_EQ(LastAfter(Spot(0, 65535), -65534), 9);
  EXPECT_EQ(LastAfter(Spot(0, 65535), std::numeric_limits<int>::min()), 2);
  EXPECT_EQ(LastAfter(Spot(65535, 0), std::numeric_limits<int>::max()), 2);
}

class PassApp : public ListeningApp {
 public:
  PassApp() {
    onStep = [this] {
      if (phases.size() == 4) searching.push_back(steps.back());
    };
  }
  std::vector<Step> searching;  ///< steps in the fourth phase: filling, linking, registering, searching
};

TEST(RunPuntosDifIntensidad, WithADifferenceOf0AllPassesRunAndFindNothing) {
  const PassApp app;
  CDibujo<int> drawing = Seen(Spot(5000));
  JumpSearch search;
  search.difference = 0;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(search.changed, 0U);
  EXPECT_THAT(ClassesOf(drawing), Each(2));
  const unsigned long long length = 12ULL * (2 * 11 + 2);
  ASSERT_THAT(app.searching, testing::SizeIs(3 * (2 * 11 + 2)));
  EXPECT_EQ(app.searching.back().value, 3 * length - 12) << "read three times";
  EXPECT_EQ(app.searching.back().total, 2 * length) << "though two were announced";
}

TEST(RunPuntosDifIntensidad, BothCompanionsOfATriangleMustBePassed) {
  const QuietApp app;
  for (const int second : {0, 950}) {
    CDibujo<int> drawing = Seen({{0, 0, 0, 0}, {4, 0, 0, second}, {2, 3, 0, 1000}});
    JumpSearch search;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).back(), second == 0 ? 9 : 2);
  }
}

TEST(RunPuntosDifIntensidad, ItSpreadsUphillFromSeedsWhateverTheDistance) {
  const QuietApp app;
  // Two far corners are a little brighter than the spot, which alone jumps: in its triangle with the two others.
  std::vector<SeenPoint> points = And(kFarCorners, {{0, 0, 0, 2000}});
  for (const int others : {2001, 2000}) {
    for (std::size_t i = 0; i < 4; ++i) points[i].intensity = i < 2 ? others : 1000;
    CDibujo<int> drawing = Seen(points);
    JumpSearch search;
    search.difference = 998;
    search.distance = 0;
    EXPECT_EQ(search.Run(drawing), kHecho);
    const int reached = others > 2000 ? 9 : 2;
    EXPECT_THAT(ClassesOf(drawing), ElementsAre(reached, reached, 2, 2, 9));
  }
}

TEST(RunPuntosDifIntensidad, OtherDrawingsThanCloudsAreComparedByHeightInScaledUnits) {
  const QuietApp app;
  for (std::int16_t kind = 0; kind <= 4; ++kind) {
    CDibujo<int> drawing = Seen(And(kFlat, {{0, 0, 90}}), {1, 0, 0, 0});  // nine metres, in decimetres
    drawing.tipoNube = kind;
    for (const int difference : {89, 90}) {
      JumpSearch search;
      search.difference = difference;
      EXPECT_EQ(search.Run(drawing), kHecho);
      const bool byHeight = kind == 0 || kind == 4;
      EXPECT_EQ(search.changed, byHeight && difference == 89 ? 1U : 0U) << kind;
    }
  }
}

TEST(RunPuntosDifIntensidad, PointsOfFurtherDrawingsKeepTheirHeights) {
  const QuietApp app;
  // All but the spot is of the further drawing: dark, and 5000 high.
  std::vector<SeenPoint> around = kFlat;
  for (SeenPoint& p : around) p.z = 5000;
  for (const int intensity : {4000, 5050, 5200}) {
    CDibujo<int> drawing = Seen({{0, 0, 0, intensity}});
    CDibujo<int> other = Seen(around);
    JumpSearch search;
    search.others = {&other, nullptr};  // of the last one the first points of cells are not reached
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).back(), intensity == 5200 ? 9 : 2) << intensity;
    EXPECT_THAT(ClassesOf(other), Each(2));
  }
}

TEST(RunPuntosDifIntensidad, APointThatIsNotSelectedIsIgnored) {
  const QuietApp app;
  CDibujo<int> drawing = Seen(And(Spot(5000), {{1, 1, 0, 9000}}));
  std::vector<CPosicionEntidad> selection;
  for (int i = 0; i < 10; ++i) selection.emplace_back(0, i);
  selection.emplace_back(0, 11);
  JumpSearch search;
  search.selection = &selection;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(drawing[0].Punto(10).num, 0);
  EXPECT_EQ(ClassesOf(drawing)[10], 2);
  EXPECT_EQ(ClassesOf(drawing)[11], 9);
  EXPECT_EQ(search.changed, 1U);
}

TEST(RunPuntosDifIntensidad, TheWindowOfHeightsFiltersHeights) {
  const QuietApp app;
  for (const double highest : {50.0, 5.0}) {
    std::vector<SeenPoint> points = Spot(30'000);
    points.back().z = 10;
    CDibujo<int> drawing = Seen(points);
    JumpSearch search;
    search.data.zMin = -1;
    search.data.zMax = highest;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).back(), highest == 50 ? 9 : 2);
  }
}

TEST(RunPuntosDifIntensidad, PointsOfLinesCountWithTheirIntensity) {
  const QuietApp app;
  CDibujo<int> drawing = Seen(kFlat);
  CLinea<int> wire(L"wire");
  CCoor3D<int> spot(0, 0, 0, 0);
  spot.intensidad = 500;
  wire << spot << CCoor3D<int>(20, 20, 0, 0);
  drawing.Inserta(wire);
  JumpSearch search;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(drawing[1].Punto(0).clasificacion, 9);
}

TEST(RunPuntosDifIntensidad, AnExcludedClassStaysThoughItWasFound) {
  const QuietApp app;
  for (const wchar_t* excluded : {L"2", L"3"}) {
    CDibujo<int> drawing = Seen(Spot(5000));
    drawing.tipoNube = 0;
    for (int i = 0; i < 11; ++i) drawing[0].PunteroAPunto(i)->z = drawing[0].Punto(i).intensidad;
    JumpSearch search;
    search.data = Changing({L"*"}, {excluded});
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).back(), excluded[0] == L'2' ? 2 : 9);
  }
}

/// Three spots in a triangle that is an outline for a distance of seven metres, and a dull point within it, on a mast.
std::vector<SeenPoint> ThreeSpots() {
  return And(kFarCorners, {{-3, -3, 0, 5000}, {3, -3, 0, 5000}, {0, 3, 0, 5000}, {0, 0, 900, 0}});
}

TEST(RunPuntosDifIntensidad, WhatLiesWithinTheOutlineIsTakenWhateverItsHeight) {
  const QuietApp app;
  for (const double distance : {5.9, 7.0}) {
    CDibujo<int> drawing = Seen(ThreeSpots());
    JumpSearch search;
    search.distance = distance;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).back(), distance < 6 ? 2 : 9);
    EXPECT_EQ(search.changed, distance < 6 ? 3U : 4U);
  }
}

TEST(RunPuntosDifIntensidad, PointsThatHaveTheClassAlreadyDoNotJoinTheOutline) {
  const QuietApp app;
  std::vector<SeenPoint> points = ThreeSpots();
  for (std::size_t i = 4; i < 7; ++i) points[i] = {points[i].x, points[i].y, 0, 0, {}, 9};
  CDibujo<int> drawing = Seen(points);
  JumpSearch search;
  search.distance = 7;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(ClassesOf(drawing).back(), 2);
}

TEST(RunPuntosDifIntensidad, TheOutlineReportsAtTheLevelOfTheRun) {
  for (const CNivelMensajes level : {MENSAJES_NORMALES, static_cast<CNivelMensajes>(1)}) {
    const ListeningApp app;
    CDibujo<int> drawing = Seen(ThreeSpots());
    JumpSearch search;
    search.distance = 7;
    search.level = level;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_THAT(app.phases, testing::SizeIs(testing::Gt(4U)));
    for (auto const& [at, message] : app.phases) EXPECT_EQ(at, static_cast<int>(level)) << message;
  }
}

}  // namespace
}  // namespace Meseta47
