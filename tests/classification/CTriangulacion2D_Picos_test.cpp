// The search of peaks and pits as its callers see it.
#include <gmock/gmock.h>

#include "classification/NoiseScene.h"

namespace Meseta47 {
namespace {

using test::Changing;
using test::ClassedPoint;
using test::ClassesOf;
using test::Cloud;
using test::kGround;
using test::ListeningApp;
using test::Peaks;
using test::Places;
using test::QuietApp;
using test::With;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<int> LastOf(CDibujo<int> const& drawing, std::ptrdiff_t n) {
  const std::vector<int> classes = ClassesOf(drawing);
  return {classes.end() - n, classes.end()};
}

/// Ten points of ground, and an eleventh among six of them.
CDibujo<int> GroundWith(int z) { return Cloud(With(kGround, {{0, 0, z}})); }

TEST(BuscaPicos, SpikesAndPitsGoToTheSameClass) {
  const QuietApp app;
  for (const int z : {-6, 6}) {
    CDibujo<int> drawing = GroundWith(z);
    Peaks search;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_THAT(ClassesOf(drawing), ElementsAre(2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 7)) << z;
    EXPECT_EQ(search.changed, 1U);
    EXPECT_EQ(search.found, Places({10}));
    EXPECT_EQ(app.TemporaryFiles(), 0U);
  }
}

TEST(BuscaPicos, APointAtExactlyTheHeightStays) {
  const QuietApp app;
  for (const int z : {-5, 5}) {
    CDibujo<int> drawing = GroundWith(z);
    EXPECT_EQ(Peaks().Run(drawing), kHecho);
    EXPECT_THAT(ClassesOf(drawing), Each(2)) << z;
  }
}

TEST(BuscaPicos, LengthsAreInDrawingUnits) {
  const QuietApp app;
  for (const double height : {4.99, 5.0}) {
    CDibujo<int> drawing = Cloud(With(kGround, {{0, 0, 50}}), {1, 0, 0, 0});
    Peaks search;
    search.seed = drawing.semilla;
    search.height = height;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).back(), height < 5 ? 7 : 2);
  }
}

TEST(BuscaPicos, TheLongestSideIsALimitOfTheStatistics) {
  const QuietApp app;
  for (const double distance : {3.0, 4.0, 0.0, 1e-8}) {  // the ring around the pole is up to four metres away
    CDibujo<int> drawing = GroundWith(9);
    Peaks search;
    search.distance = distance;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).back(), distance == 3 ? 2 : 7) << distance;
  }
}

TEST(BuscaPicos, ADistanceOf0RemovesTheLimit) {
  const QuietApp app;
  std::vector<ClassedPoint> points = With(kGround, {{0, 0, 9}});
  for (ClassedPoint& p : points) p = {p.x * 10'000'000, p.y * 10'000'000, p.z};
  CDibujo<int> drawing = Cloud(points);
  EXPECT_EQ(Peaks().Run(drawing), kHecho);
  EXPECT_EQ(ClassesOf(drawing).back(), 7);
}

TEST(BuscaPicos, TwoSteepTrianglesMakeAPeakWhateverTheStatistics) {
  const QuietApp app;
  for (const double slope : {0.0, 2.0, 1e-7}) {
    CDibujo<int> drawing = GroundWith(11);
    Peaks search;
    search.slope = slope;
    search.distance = 1;  // no side is so short: no statistics
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).back(), slope == 2 ? 7 : 2) << slope;
  }
}

TEST(BuscaPicos, APointOnTheBorderOfACloudIsAPeakOnlyByItsSlopes) {
  // A corner with two triangles, whose neighbours are counted four times.
  const QuietApp app;
  for (const double slope : {0.0, 1.0}) {
    CDibujo<int> drawing = Cloud({{0, 0, 100}, {10, 1, 0}, {9, 9, 0}, {1, 10, 0}});
    Peaks search;
    search.slope = slope;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).front(), slope == 0 ? 2 : 7);
  }
}

TEST(BuscaPicos, APointLevelWithItsHighestNeighbourIsNoPeak) {
  const QuietApp app;
  CDibujo<int> drawing = GroundWith(90);
  drawing[0].PunteroAPunto(0)->z = 90;  // one of the ring; the others are at 0
  EXPECT_EQ(Peaks().Run(drawing), kHecho);
  EXPECT_EQ(ClassesOf(drawing).back(), 2);
  EXPECT_EQ(ClassesOf(drawing).front(), 2);
}

TEST(BuscaPicos, TrianglesAtTheFrameAddNothing) {
  // Three points, one triangle: two neighbours each, whatever the frame's corners are at.
  const QuietApp app;
  CDibujo<int> drawing = Cloud({{0, 0, 0}, {4, 0, 0}, {2, 3, 90}});
  Peaks search;
  search.slope = 0.1;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(ClassesOf(drawing), ElementsAre(2, 2, 7)) << "two sides rise to the third, each once";
  search = Peaks();
  drawing = Cloud({{0, 0, 0}, {4, 0, 0}, {2, 3, 90}});
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(ClassesOf(drawing), Each(2));
}

TEST(BuscaPicos, CountsAreAddedAndPlacesAppended) {
  const QuietApp app;
  CDibujo<int> drawing = GroundWith(9);
  Peaks search;
  search.changed = 40;
  search.found = Places({3});
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(search.changed, 41U);
  EXPECT_EQ(search.found, Places({3, 10}));
}

TEST(BuscaPicos, OnlyTheByteOfTheClassIsGiven) {
  const QuietApp app;
  CDibujo<int> drawing = GroundWith(9);
  Peaks search;
  search.info = CInfoClasificacion(255, 3.5, L"a text");
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(ClassesOf(drawing).back(), 255);
}

TEST(BuscaPicos, AnExcludedClassTakesNoPartInACloudAndStaysInAnyDrawing) {
  const QuietApp app;
  for (const short cloud : {short{0}, short{1}}) {
    CDibujo<int> drawing = Cloud(With(kGround, {{0, 0, 9, 5}}));
    drawing.tipoNube = cloud;
    Peaks search;
    search.data = Changing({L"*"}, {L"5"});
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).back(), 5);
    EXPECT_EQ(search.changed, 0U);
    EXPECT_EQ(drawing[0].Punto(10).num != 0, cloud == 0) << "it is in the mesh of what is no cloud";
  }
}

TEST(BuscaPicos, AClassThatIsNotIncludedStays) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(kGround, {{0, 0, 9, 3}, {20, 20, 90, 4}}));
  drawing.tipoNube = 0;
  Peaks search;
  search.data = Changing({L"cloud", L"4"});
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(LastOf(drawing, 2), ElementsAre(3, 7));
}

TEST(BuscaPicos, PointsOfFurtherDrawingsAreNeighboursAndKeepTheirClass) {
  const QuietApp app;
  CDibujo<int> drawing = GroundWith(9);
  CDibujo<int> tall = Cloud({{1, 1, 95}, {1, 0, 90}, {0, 1, 80}});
  Peaks search;
  search.others = {nullptr, &tall};
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(ClassesOf(drawing), Each(2)) << "what is beside it is higher";
  EXPECT_THAT(ClassesOf(tall), Each(2));
}

TEST(BuscaPicos, OnlySelectedPointsTakePart) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(kGround, {{0, 0, 9}, {20, 20, 90}}));
  const std::vector<CPosicionEntidad> selection = Places({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 11});
  Peaks search;
  search.selection = &selection;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(LastOf(drawing, 2), ElementsAre(2, 7));
  EXPECT_EQ(search.found, Places({11}));
}

TEST(BuscaPicos, ANumberOfAnEarlierRunBeyondTheLastOneIsNoIndex) {
  const QuietApp app;
  for (const int stale : {12, 1'000'000, 2'147'483'647, -1, -7}) {
    CDibujo<int> drawing = GroundWith(9);
    CLinea<int> line(L"line");
    line << CCoor3D<int>(20, 20, 90, stale) << CCoor3D<int>(21, 20, 90, stale);
    drawing.Inserta(line);
    const std::vector<CPosicionEntidad> selection = Places({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    for (const bool all : {false, true}) {
      Peaks search;
      search.data.zMax = all ? 50 : 100;  // above which the line's points stay out, stale numbers and all
      search.selection = all ? nullptr : &selection;
      EXPECT_EQ(search.Run(drawing), kHecho);
      EXPECT_EQ(ClassesOf(drawing)[10], 7);
      EXPECT_EQ(drawing[1].Punto(0).clasificacion, 0);
      EXPECT_EQ(search.changed, 1U) << stale;
    }
  }
}

TEST(BuscaPicos, ADuplicateIsNotJudged) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(kGround, {{0, 0, 0}, {0, 0, 9}}));
  EXPECT_EQ(Peaks().Run(drawing), kHecho);
  EXPECT_THAT(ClassesOf(drawing), Each(2));
}

TEST(BuscaPicos, EveryPointThatGoesInIsToldToTheCounter) {
  const QuietApp app;
  CDibujo<int> drawing = GroundWith(9);
  int told = 100;
  Peaks search;
  search.progress = &told;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(told, 111);
}

// --- progress, cancellation, faults ---

TEST(BuscaPicos, FillsAndLinksAndEndsTheLevelOnce) {
  const ListeningApp app;
  CDibujo<int> drawing = GroundWith(9);
  EXPECT_EQ(Peaks().Run(drawing), kHecho);
  EXPECT_THAT(app.PhaseMessages(), ElementsAre(19020, 19021));
  EXPECT_THAT(app.closed, ElementsAre(std::pair(3, 0)));
}

TEST(BuscaPicos, AtLevel0NobodyIsAsked) {
  const ListeningApp app;
  CDibujo<int> drawing = GroundWith(9);
  Peaks search;
  search.level = MENSAJES_NINGUNO;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(ClassesOf(drawing).back(), 7);
  EXPECT_THAT(app.steps, IsEmpty());
}

TEST(BuscaPicos, TooFewPointsAreTold) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud({{0, 0, 0}, {1, 0, 90}});
  Peaks search;
  EXPECT_EQ(search.Run(drawing), kPocosPuntos);
  EXPECT_EQ(search.changed, 0U);
}

TEST(BuscaPicos, TheLibrarysOwnLinkingGivesTheSame) {
  // As a derived class asks for it, argument by argument.
  const QuietApp app;
  CDibujo<int> drawing = GroundWith(9);
  test::OpenTriangulation triangulation({}, drawing.semilla);
  triangulation.paramCurvaB = 2'147'483'647;
  triangulation.paramPicoA = 5;
  triangulation.paramPicoB = 0;
  ASSERT_EQ(triangulation.Rellena(drawing, nullptr, nullptr, nullptr), kHecho);
  const CInfoClasificacion info(7, 0.0, L"");
  unsigned count = 0;
  std::vector<CPosicionEntidad> found;
  EXPECT_EQ(triangulation.EnlazaLista(drawing, nullptr, nullptr, nullptr, 3, nullptr, &info, nullptr, &count, nullptr,
                                      0, nullptr, nullptr, nullptr, nullptr, &found),
            kHecho);
  EXPECT_EQ(ClassesOf(drawing).back(), 7);
  EXPECT_EQ(count, 1U);
  EXPECT_EQ(found, Places({10}));
  EXPECT_EQ(triangulation.SpilledBytes(), "") << "the file of this mode is made, and stays empty";
  triangulation.BorraFicheroTemporal();
}

}  // namespace
}  // namespace Meseta47
