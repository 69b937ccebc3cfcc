// The search of isolated points as its callers see it.
#include <cmath>
#include <gmock/gmock.h>

#include "classification/CListasVecinos.h"
#include "classification/NoiseScene.h"

namespace Meseta47 {
namespace {

using test::Changing;
using test::ClassedPoint;
using test::ClassesOf;
using test::Cloud;
using test::Isolated;
using test::kGround;
using test::ListeningApp;
using test::Places;
using test::QuietApp;
using test::With;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

/// A square of four points five metres apart, and one far off.
const std::vector<ClassedPoint> kFive{{0, 0, 0}, {3, 4, 0}, {7, 1, 0}, {4, -3, 0}, {40, 41, 0}};

std::vector<int> Classes(std::vector<ClassedPoint> const& points, double distance, unsigned neighbours) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(points);
  Isolated search;
  search.distance = distance;
  search.neighbours = neighbours;
  EXPECT_EQ(search.Run(drawing), kHecho);
  const std::vector<int> classes = ClassesOf(drawing);
  EXPECT_EQ(search.changed, std::count(classes.begin(), classes.end(), 7));
  EXPECT_EQ(app.TemporaryFiles(), 0U);
  return classes;
}

// --- what is found ---

TEST(RunPuntosAislados, APointFarFromTheOthersTakesTheClass) {
  EXPECT_THAT(Classes(kFive, 10, 1), ElementsAre(2, 2, 2, 2, 7));
}

TEST(RunPuntosAislados, ANeighbourAtExactlyTheDistanceIsNone) {
  EXPECT_THAT(Classes(kFive, 5, 1), Each(7)) << "sides of exactly 5, and a diagonal of 7.07 or two";
  EXPECT_THAT(Classes(kFive, 5.1, 1), ElementsAre(2, 2, 2, 2, 7));
}

TEST(RunPuntosAislados, TheSquareOfTheDistanceLosesItsFraction) {
  // 5.05 squared is 25.5: as a whole number it is 25, and what is 5 away is not below it.
  EXPECT_THAT(Classes(kFive, 5.05, 1), Each(7));
}

TEST(RunPuntosAislados, DistancesAreInSpace) {
  std::vector<ClassedPoint> raised = kFive;
  raised[0].z = 100;
  EXPECT_THAT(Classes(raised, 10, 1), ElementsAre(7, 2, 2, 2, 7));
}

TEST(RunPuntosAislados, LengthsAreInDrawingUnits) {
  const QuietApp app;
  for (const double distance : {0.5, 0.6}) {  // the points are half a metre apart, in decimetres
    CDibujo<int> drawing = Cloud(kFive, {1, 0, 0, 0});
    Isolated search;
    search.seed = drawing.semilla;
    search.distance = distance;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(search.changed, distance == 0.5 ? 5U : 1U);
  }
}

TEST(RunPuntosAislados, FewerNeighboursThanAskedForAreTooFew) {
  EXPECT_THAT(Classes(kFive, 6, 2), ElementsAre(2, 2, 2, 2, 7));
  EXPECT_THAT(Classes(kFive, 6, 3), Each(7)) << "each has two sides of 5";
}

TEST(RunPuntosAislados, OfNoNeighboursNobodyHasFewer) { EXPECT_THAT(Classes(kFive, 0, 0), Each(2)); }

TEST(RunPuntosAislados, ManyNeighboursMayBeAskedFor) {
  // A hub with a ring of forty points: it has forty neighbours, and they three each.
  std::vector<ClassedPoint> wheel{{0, 0, 0}};
  for (int i = 0; i < 40; ++i) {
    const double turn = 0.15708 * i;
    wheel.push_back({static_cast<int>(std::lround(10'000 * std::cos(turn))),
                     static_cast<int>(std::lround(10'000 * std::sin(turn))), 0});
  }
  for (const unsigned asked : {3U, 4U, 40U, 41U, 4'000'000'000U}) {
    const std::vector<int> classes = Classes(wheel, 11'000, asked);
    EXPECT_EQ(classes[0], asked <= 40 ? 2 : 7) << asked;
    EXPECT_EQ(classes[1], asked <= 3 ? 2 : 7) << asked;
  }
}

TEST(RunPuntosAislados, WhereTheSquareHasNo32BitsAllEligiblePointsAreIsolated) {
  EXPECT_THAT(Classes(kFive, 46'340.9, 1), Each(2));
  for (const double distance : {46'341.0, 1e9, 1e300, -46'341.0, std::nan("")}) {
    EXPECT_THAT(Classes(kFive, distance, 1), Each(7)) << distance;
  }
  EXPECT_THAT(Classes(kFive, 1e9, 0), Each(2)) << "not even there does anybody have fewer than none";
}

TEST(RunPuntosAislados, ADistanceBelow0IsAsGoodAsItsSquare) {
  EXPECT_THAT(Classes(kFive, -10, 1), ElementsAre(2, 2, 2, 2, 7));
}

// --- lists of neighbours ---

TEST(CListasVecinos, KeepTwiceAsManyAsAskedForAndOne) {
  CListasVecinos lists(1, 3);
  for (const int neighbour : {5, 6, 5, 6, 5, 6, 5, 9}) lists.Anade(1, neighbour);
  EXPECT_TRUE(lists.Aislados()[0]) << "seven are kept, of two points: the eighth came too late";
}

TEST(CListasVecinos, APointWithAsManyAsAskedForIsNotIsolated) {
  for (const unsigned asked : {1U, 2U, 3U, 7U, 8U, 30U}) {
    CListasVecinos lists(2, asked);
    for (unsigned i = 0; i + 1 < asked; ++i) {
      lists.Anade(2, static_cast<int>(10 + i));
      lists.Anade(2, static_cast<int>(10 + i));
    }
    EXPECT_TRUE(lists.Aislados()[1]) << asked;
    lists.Anade(2, 9);
    EXPECT_FALSE(lists.Aislados()[1]) << asked;
    EXPECT_TRUE(lists.Aislados()[0]) << "the other knows of nobody";
  }
}

/// A triangulation whose spilled triangles are written by hand.
class WithRecords : public test::OpenTriangulation {
 public:
  using OpenTriangulation::OpenTriangulation;

  int Search(CDibujo<int>& drawing, std::vector<support::Triangle> const& records, unsigned neighbours) {
    drawing.PonNumerosACero();
    EXPECT_EQ(Link(drawing), kHecho);
    ficheroTemporal.Fichero()->SetLength(0);
    ficheroTemporal.Fichero()->Seek(0, CFile::begin);
    for (support::Triangle const& t : records) ficheroTemporal.Fichero()->Write(t.data(), sizeof t);
    ficheroTemporal.Vuelca();
    unsigned changed = 0;
    const CInfoClasificacion info(7, 0.0, L"");
    const int code = BuscaPuntosAislados(drawing, nullptr, 100, neighbours, info, changed, nullptr);
    BorraFicheroTemporal();
    return code;
  }
  using CTriangulacion2D::BuscaPuntosAislados;
};

TEST(RunPuntosAislados, AFullListOfRepeatedNeighboursMayFallBelowWhatIsAskedFor) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(kFive);
  WithRecords triangulation;
  // Four times the same triangle: each of its points has two neighbours, told eight times.
  EXPECT_EQ(triangulation.Search(drawing, {4, {1, 2, 3}}, 3), kHecho);
  EXPECT_THAT(ClassesOf(drawing), Each(7));
  drawing = Cloud(kFive);
  EXPECT_EQ(triangulation.Search(drawing, {4, {1, 2, 3}}, 2), kHecho);
  EXPECT_THAT(ClassesOf(drawing), testing::UnorderedElementsAre(2, 2, 2, 7, 7));
}

TEST(RunPuntosAislados, TrianglesAtTheFrameAndThoseOnALineTellNothing) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud({{0, 0, 0}, {1, 1, 0}, {2, 2, 0}, {0, 3, 0}});
  WithRecords triangulation;
  EXPECT_EQ(triangulation.Search(drawing, {{1, 2, -1}, {-2, 1, 2}, {1, -4, 3}}, 1), kHecho);
  EXPECT_THAT(ClassesOf(drawing), Each(7));
  drawing = Cloud({{0, 0, 0}, {1, 1, 0}, {2, 2, 0}, {0, 3, 0}});
  drawing.PonNumerosACero();
  ASSERT_EQ(triangulation.Link(drawing), kHecho);
  const auto number = [&](int i) { return drawing[0].Punto(i).num; };
  const support::Triangle line{number(0), number(1), number(2)};
  triangulation.BorraFicheroTemporal();
  EXPECT_EQ(triangulation.Search(drawing, {line, {0, number(1), number(2)}, {99, number(1), number(2)}}, 1), kHecho);
  EXPECT_THAT(ClassesOf(drawing), Each(7)) << "nor do those of a number that nobody has";
}

// --- which points may change ---

TEST(RunPuntosAislados, AnExcludedClassStaysThoughItIsIsolated) {
  const QuietApp app;
  for (const short cloud : {short{0}, short{1}}) {
    CDibujo<int> drawing = Cloud(With(kFive, {{-40, -40, 0, 9}}));
    drawing.tipoNube = cloud;
    Isolated search;
    search.data = Changing({L"*"}, {L"9"});
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_THAT(ClassesOf(drawing), ElementsAre(2, 2, 2, 2, 7, 9));
    EXPECT_EQ(search.changed, 1U);
  }
}

TEST(RunPuntosAislados, AClassThatIsNotIncludedStays) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(kFive, {{-40, -40, 0, 9}}));
  drawing.tipoNube = 0;
  Isolated search;
  search.data = Changing({L"cloud", L"9"});
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(ClassesOf(drawing), ElementsAre(2, 2, 2, 2, 2, 7));
}

TEST(RunPuntosAislados, OnlyTheByteOfTheClassIsGiven) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(kFive);
  Isolated search;
  search.info = CInfoClasificacion(255, 3.5, L"_###COMODIN###");
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(ClassesOf(drawing).back(), 255);
}

TEST(RunPuntosAislados, ADuplicateIsNeitherNeighbourNorFound) {
  EXPECT_THAT(Classes(With(kFive, {{40, 41, 1}}), 10, 1), ElementsAre(2, 2, 2, 2, 7, 2))
      << "the mesh has one point at each place in plan";
}

TEST(RunPuntosAislados, PointsOfFurtherDrawingsAreNeighboursAndKeepTheirClass) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(kFive), beside = Cloud({{41, 41, 0}, {42, 40, 0}, {-90, 0, 0}}),
               last = Cloud({{9, 9, 9}});
  Isolated search;
  search.others = {nullptr, &beside, &last};
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(ClassesOf(drawing), Each(2));
  EXPECT_THAT(ClassesOf(beside), Each(2));
}

TEST(RunPuntosAislados, ASelectionThatEndsOnADuplicateLeavesNumberedPointsThatAreNotFound) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(kFive, {{0, 0, 1}, {-40, -40, 0}, {-40, 40, 0}}));
  const std::vector<CPosicionEntidad> selection = Places({0, 1, 2, 3, 4, 5, 6, 7});
  Isolated search;
  search.selection = &selection;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_NE(drawing[0].Punto(7).num, 0) << "it is in the mesh";
  EXPECT_THAT(ClassesOf(drawing), ElementsAre(2, 2, 2, 2, 7, 2, 2, 2));
}

TEST(RunPuntosAislados, APointOutsideTheSelectionKeepsItsClass) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(kFive, {{-40, -40, 0}}));
  const std::vector<CPosicionEntidad> selection = Places({0, 1, 2, 3, 5});
  Isolated search;
  search.selection = &selection;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(ClassesOf(drawing), ElementsAre(2, 2, 2, 2, 2, 7));
}

// --- progress ---

TEST(RunPuntosAislados, TellsItsPhasesAndEndsTheLevelOnce) {
  const ListeningApp app;
  CDibujo<int> drawing = Cloud(kFive);
  Isolated search;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(app.PhaseMessages(), ElementsAre(19020, 19021, 19020, 19045, 39102));
  EXPECT_THAT(app.closed, ElementsAre(std::pair(3, 0)));
}

TEST(RunPuntosAislados, ReportsEachRecordAndEachPointOfTheDrawing) {
  ListeningApp app;
  std::vector<ListeningApp::Step> searching, writing;
  app.onStep = [&] {
    if (app.phases.back().second == 19045) searching.push_back(app.steps.back());
    if (app.phases.back().second == 39102) writing.push_back(app.steps.back());
  };
  CDibujo<int> drawing = Cloud(With(kFive, {{0, 0, 9}}));
  Isolated search;
  EXPECT_EQ(search.Run(drawing), kHecho);
  ASSERT_EQ(searching.size(), 2U * 5 + 2);
  for (std::size_t i = 0; i < searching.size(); ++i) {
    EXPECT_EQ(searching[i].value, 12 * i);
    EXPECT_EQ(searching[i].total, 12U * (2 * 5 + 2));
  }
  ASSERT_EQ(writing.size(), 6U) << "the duplicate too";
  for (std::size_t i = 0; i < writing.size(); ++i) {
    EXPECT_EQ(writing[i].value, i + 1);
    EXPECT_EQ(writing[i].total, 6U);
  }
}

TEST(RunPuntosAislados, AtLevel0NobodyIsAsked) {
  const ListeningApp app;
  CDibujo<int> drawing = Cloud(kFive);
  Isolated search;
  search.level = MENSAJES_NINGUNO;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(search.changed, 1U);
  EXPECT_THAT(app.steps, IsEmpty());
}

TEST(RunPuntosAislados, TooFewPointsAreTold) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud({{0, 0, 0}, {1, 0, 90}});
  Isolated search;
  EXPECT_EQ(search.Run(drawing), kPocosPuntos);
  EXPECT_EQ(search.changed, 12345U);
}

}  // namespace
}  // namespace Meseta47
