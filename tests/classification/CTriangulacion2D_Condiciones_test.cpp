// The searches of high points by colour and by intensity as their callers see them.
#include <gmock/gmock.h>

#include "classification/SearchScene.h"
#include "classification/SeenScene.h"

namespace Meseta47 {
namespace {

using test::And;
using test::Changing;
using test::ClassesOf;
using test::ColourSearch;
using test::IntensitySearch;
using test::kFarCorners;
using test::kFlat;
using test::ListeningApp;
using test::QuietApp;
using test::Seen;
using test::SeenPoint;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Colour = std::array<int, 3>;

constexpr Colour kGreen{40, 120, 40}, kRed{200, 40, 30};

CCondicionHRGB When(Colour const& c, int tolerance, double height, int clase) {
  return {static_cast<unsigned char>(c[0]), static_cast<unsigned char>(c[1]), static_cast<unsigned char>(c[2]),
          static_cast<char>(clase),         static_cast<float>(height),       static_cast<unsigned char>(tolerance)};
}
CCondicionHIntensidad When(int least, int most, double height, int clase) {
  return {least, most, static_cast<char>(clase), static_cast<float>(height)};
}

SeenPoint Pole(int x, int y, int z, Colour const& colour, unsigned char clase = 2) {
  return {x, y, z, 0, colour, clase};
}
SeenPoint Bright(int x, int y, int z, int intensity, unsigned char clase = 2) {
  return {x, y, z, intensity, {}, clase};
}

/// Of what class the last point is after a search by colour.
int LastByColour(std::vector<SeenPoint> const& points, std::vector<CCondicionHRGB> const& when, double distance = 2) {
  CDibujo<int> drawing = Seen(points);
  ColourSearch search;
  search.distance = distance;
  search.when = when;
  EXPECT_EQ(search.Run(drawing), kHecho);
  return ClassesOf(drawing).back();
}
int LastByIntensity(std::vector<SeenPoint> const& points, std::vector<CCondicionHIntensidad> const& when,
                    double distance = 2) {
  CDibujo<int> drawing = Seen(points);
  IntensitySearch search;
  search.distance = distance;
  search.when = when;
  EXPECT_EQ(search.Run(drawing), kHecho);
  return ClassesOf(drawing).back();
}

// --- which condition takes a point ---

TEST(RunPuntosAltosRGB, APoleOfTheColourTakesTheClassOfTheCondition) {
  const QuietApp app;
  CDibujo<int> drawing = Seen(And(kFlat, {Pole(20, 20, 90, kRed), Pole(0, 0, 9, kGreen)}));
  ColourSearch search;
  search.when = {When(kGreen, 10, 5, 5), When(kRed, 10, 5, 6)};
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(ClassesOf(drawing), ElementsAre(2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 6, 5));
  EXPECT_EQ(search.changed, 2U);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(RunPuntosAltosIntensidad, APoleWithinTheLimitsTakesTheClassOfTheCondition) {
  const QuietApp app;
  CDibujo<int> drawing = Seen(And(kFlat, {Bright(20, 20, 90, 900), Bright(0, 0, 9, 40'000)}));
  IntensitySearch search;
  search.when = {When(0, 1000, 5, 5), When(1001, 65535, 5, 6)};
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(ClassesOf(drawing), ElementsAre(2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 5, 6));
  EXPECT_EQ(search.changed, 2U);
}

TEST(RunPuntosAltosRGB, APoleOfAnotherColourStays) {
  const QuietApp app;
  EXPECT_EQ(LastByColour(And(kFlat, {Pole(0, 0, 9, kRed)}), {When(kGreen, 100, 5, 5)}), 2);
}

TEST(RunPuntosAltosRGB, EachChannelByItselfKeepsAPointOut) {
  const QuietApp app;
  for (std::size_t channel = 0; channel < 3; ++channel) {
    for (const int off : {-10, -9, 9, 10}) {
      Colour colour = kGreen;
      colour[channel] += off;
      const int found = LastByColour(And(kFlat, {Pole(0, 0, 9, colour)}), {When(kGreen, 10, 5, 5)});
      EXPECT_EQ(found, std::abs(off) < 10 ? 5 : 2) << channel << " " << off;
    }
  }
}

/// A roof of four points, each two metres from the next, and a ridge among them that rises above nothing else.
std::vector<SeenPoint> RidgeOn(Colour const& roof, Colour const& ridge) {
  return And(kFlat, {Pole(-1, -1, 10, roof), Pole(1, -1, 10, roof), Pole(1, 1, 10, roof), Pole(-1, 1, 10, roof),
                     Pole(0, 0, 12, ridge)});
}

TEST(RunPuntosAltosRGB, AColourAtExactlyTheToleranceIsNoSeedAndYetReachedByTheSpread) {
  const QuietApp app;
  const Colour edge{50, 120, 40}, beyond{51, 120, 40};
  const std::vector<CCondicionHRGB> when{When(kGreen, 10, 1, 5)};
  EXPECT_EQ(LastByColour(And(kFlat, {Pole(0, 0, 9, edge)}), when), 2) << "alone it could only be a seed";
  EXPECT_EQ(LastByColour(RidgeOn(kGreen, edge), when), 5);
  EXPECT_EQ(LastByColour(RidgeOn(kGreen, beyond), when), 2);
  EXPECT_EQ(LastByColour(RidgeOn(kGreen, edge), when, 1), 2) << "the spread has a reach";
}

TEST(RunPuntosAltosIntensidad, BothLimitsBelongToTheRangeOfSeedsAndOfTheSpread) {
  const QuietApp app;
  for (const int value : {99, 100, 200, 201}) {
    const bool within = value >= 100 && value <= 200;
    const std::vector<CCondicionHIntensidad> when{When(100, 200, 1, 5)};
    EXPECT_EQ(LastByIntensity(And(kFlat, {Bright(0, 0, 9, value)}), when), within ? 5 : 2) << value;
    const std::vector<SeenPoint> roof{Bright(-1, -1, 10, 150), Bright(1, -1, 10, 150), Bright(1, 1, 10, 150),
                                      Bright(-1, 1, 10, 150), Bright(0, 0, 12, value)};
    EXPECT_EQ(LastByIntensity(And(kFlat, roof), when), within ? 5 : 2) << value;
  }
}

TEST(RunPuntosAltosRGB, AToleranceOf0SeedsNothing) {
  const QuietApp app;
  EXPECT_EQ(LastByColour(And(kFlat, {Pole(0, 0, 9, kGreen)}), {When(kGreen, 0, 5, 5)}), 2);
}

TEST(RunPuntosAltosRGB, OfTwoConditionsWithOneColourTheEarlierTakesThePoint) {
  const QuietApp app;
  const std::vector<SeenPoint> pole = And(kFlat, {Pole(0, 0, 9, kGreen)});
  EXPECT_EQ(LastByColour(pole, {When(kGreen, 10, 5, 5), When(kGreen, 20, 5, 6)}), 5);
  EXPECT_EQ(LastByColour(pole, {When(kGreen, 20, 5, 6), When(kGreen, 10, 5, 5)}), 6);
  EXPECT_EQ(LastByColour(pole, {When(kGreen, 10, 9, 5), When(kGreen, 10, 5, 6)}), 6) << "not high enough for the first";
}

TEST(RunPuntosAltosRGB, TheSpreadGivesTheClassOfTheFirstConditionOfTheColourWhateverItsHeight) {
  const QuietApp app;
  EXPECT_EQ(LastByColour(RidgeOn(kGreen, kRed), {When(kGreen, 10, 1, 5), When(kRed, 10, 90, 6)}), 6);
}

TEST(RunPuntosAltosRGB, OneRiseThatIsHighEnoughIsEnoughWhenBothAreSteep) {
  const QuietApp app;
  // The only triangle of these points: the third stands 9 above the first and 5 above the second.
  for (const double height : {4.0, 8.0, 9.0}) {
    CDibujo<int> drawing = Seen({{0, 0, 0}, {4, 0, 4}, {2, 3, 9}});
    ColourSearch search;
    search.when = {When({0, 0, 0}, 10, height, 5)};
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_THAT(ClassesOf(drawing), ElementsAre(2, 2, height < 9 ? 5 : 2)) << height;
  }
  CDibujo<int> gentle = Seen({{0, 0, 0}, {4, 0, 7}, {2, 3, 9}});  // 2 over 3.6 is not steep
  ColourSearch search;
  search.when = {When({0, 0, 0}, 10, 4, 5)};
  EXPECT_EQ(search.Run(gentle), kHecho);
  EXPECT_THAT(ClassesOf(gentle), Each(2));
}

TEST(RunPuntosAltosRGB, LengthsAreInDrawingUnits) {
  const QuietApp app;
  for (const double height : {4.99, 5.0}) {
    CDibujo<int> drawing = Seen(And(kFlat, {Pole(0, 0, 50, kGreen)}), {1, 0, 0, 0});  // five metres, in decimetres
    ColourSearch search;
    search.when = {When(kGreen, 10, height, 5)};
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).back(), height < 5 ? 5 : 2);
  }
}

TEST(RunPuntosAltosRGB, WithoutAConditionNothingIsFound) {
  const QuietApp app;
  CDibujo<int> drawing = Seen(And(kFlat, {Pole(0, 0, 9, kGreen)}));
  ColourSearch search;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(ClassesOf(drawing), Each(2));
  EXPECT_EQ(search.changed, 0U);
}

TEST(RunPuntosAltosRGB, AClassAbove127CanBeGivenAndIsNeverTakenForThatOfACondition) {
  const QuietApp app;
  EXPECT_EQ(LastByColour(And(kFlat, {Pole(0, 0, 9, kGreen)}), {When(kGreen, 10, 5, 200)}), 200);
  // Three points that have the class already would be an outline around the last.
  for (const std::uint8_t clase : std::initializer_list<std::uint8_t>{127, 200}) {
    const std::vector<SeenPoint> court = And(kFarCorners, {Pole(0, 0, 0, kRed, clase), Pole(4, 0, 0, kRed, clase),
                                                           Pole(2, 3, 0, kRed, clase), Pole(2, 1, 0, kRed)});
    EXPECT_EQ(LastByColour(court, {When(kGreen, 10, 5, clase)}, 4), clase == 127 ? 127 : 2);
  }
}

TEST(RunPuntosAltosRGB, WhatThe129thConditionTakesKeepsItsClass) {
  const QuietApp app;
  std::vector<CCondicionHRGB> when(128, When(kRed, 10, 5, 6));
  when.push_back(When(kGreen, 10, 5, 5));
  EXPECT_EQ(LastByColour(And(kFlat, {Pole(0, 0, 9, kGreen)}), when), 2);
  when.erase(when.begin());
  EXPECT_EQ(LastByColour(And(kFlat, {Pole(0, 0, 9, kGreen)}), when), 5);
}

TEST(RunPuntosAltosRGB, PointsOfLinesAreBlack) {
  const QuietApp app;
  for (const bool black : {false, true}) {
    CDibujo<int> drawing = Seen(kFlat);
    CLinea<int> wire(L"wire");
    wire << CCoor3D<int>(0, 0, 9, 0) << CCoor3D<int>(20, 20, 0, 0);
    drawing.Inserta(wire);
    ColourSearch search;
    search.when = {When(black ? Colour{0, 0, 0} : kGreen, 10, 5, 5)};
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(drawing[1].Punto(0).clasificacion, black ? 5 : 0);
  }
}

TEST(RunPuntosAltosIntensidad, PointsOfLinesHaveIntensity0WhateverTheyHold) {
  const QuietApp app;
  for (const int least : {0, 1}) {
    CDibujo<int> drawing = Seen(kFlat);
    CLinea<int> wire(L"wire");
    CCoor3D<int> top(0, 0, 9, 0);
    top.intensidad = 500;
    wire << top << CCoor3D<int>(20, 20, 0, 0);
    drawing.Inserta(wire);
    IntensitySearch search;
    search.when = {When(least, 65535, 5, 5)};
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(drawing[1].Punto(0).clasificacion, least == 0 ? 5 : 0);
  }
}

TEST(RunPuntosAltosRGB, PointsOfASetWithoutSurveyDataAreBlack) {
  const QuietApp app;
  CDibujo<int> drawing = test::Cloud(test::With(test::kGround, {{0, 0, 9}}));
  ColourSearch search;
  search.when = {When({5, 5, 5}, 6, 5, 5)};
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(ClassesOf(drawing).back(), 5);
}

// --- which classes may change ---

TEST(RunPuntosAltosRGB, AnExcludedClassStaysThoughItWasTaken) {
  const QuietApp app;
  CDibujo<int> drawing = Seen(And(kFlat, {Pole(0, 0, 9, kGreen, 9), Pole(20, 20, 90, kGreen)}));
  drawing.tipoNube = 0;  // the tables choose entities, and the classes are looked at only at the end
  ColourSearch search;
  search.data = Changing({L"*"}, {L"9"});
  search.when = {When(kGreen, 10, 5, 5)};
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(ClassesOf(drawing)[10], 9);
  EXPECT_EQ(ClassesOf(drawing)[11], 5);
  EXPECT_EQ(search.changed, 1U);
}

TEST(RunPuntosAltosRGB, ASelectionThatEndsOnADuplicateLeavesNumberedPointsThatAreNotClassified) {
  const QuietApp app;
  CDibujo<int> drawing = Seen(And(kFlat, {Pole(0, 0, 9, kGreen), Pole(4, 0, 1, kGreen), Pole(20, 20, 90, kGreen)}));
  std::vector<CPosicionEntidad> selection;
  for (int i = 0; i < 13; ++i) selection.emplace_back(0, i);
  ColourSearch search;
  search.selection = &selection;
  search.when = {When(kGreen, 10, 5, 5)};
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_NE(drawing[0].Punto(12).num, 0);
  EXPECT_THAT(ClassesOf(drawing), ElementsAre(2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 5, 2, 2));
}

TEST(RunPuntosAltosRGB, PointsOfFurtherDrawingsServeTheSpreadAndKeepTheirClass) {
  const QuietApp app;
  CDibujo<int> drawing = Seen(And(kFlat, {Pole(0, 0, 12, kRed)}));
  CDibujo<int> roof =
      Seen({Pole(-1, -1, 10, kGreen), Pole(1, -1, 10, kGreen), Pole(1, 1, 10, kGreen), Pole(-1, 1, 10, kGreen)});
  ColourSearch search;
  search.others = {nullptr, &roof};
  search.when = {When(kGreen, 10, 1, 5), When(kRed, 10, 90, 6)};
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(ClassesOf(drawing).back(), 6);
  EXPECT_THAT(ClassesOf(roof), Each(2));
  EXPECT_EQ(search.changed, 1U);
}

// --- outlines ---

/// Two green poles and a red one in a triangle that is an outline for a distance of seven metres, and a stone within.
std::vector<SeenPoint> Triad(Colour const& third, int stone = 0) {
  return And(kFarCorners, {Pole(-3, -3, 90, kGreen), Pole(3, -3, 90, kGreen), Pole(0, 3, 90, third),
                           Pole(0, 0, stone, {255, 255, 255})});
}

TEST(RunPuntosAltosRGB, APointInTheClassOfAConditionJoinsItsOutlineThoughItWasNotFound) {
  const QuietApp app;
  for (const std::uint8_t clase : std::initializer_list<std::uint8_t>{5, 4}) {
    std::vector<SeenPoint> points = Triad(kRed);
    points[6].clase = clase;
    EXPECT_EQ(LastByColour(points, {When(kGreen, 10, 5, 5)}, 7), clase == 5 ? 5 : 2);
  }
}

TEST(RunPuntosAltosRGB, NeighbouringConditionsWithOneClassAreOutlinedTogether) {
  const QuietApp app;
  const CCondicionHRGB green = When(kGreen, 10, 5, 5), red = When(kRed, 10, 5, 5), none = When({9, 9, 9}, 2, 5, 5);
  EXPECT_EQ(LastByColour(Triad(kRed), {green, red}, 7), 5);
  EXPECT_EQ(LastByColour(Triad(kRed), {green, none, red}, 7), 5) << "a run of three";
}

TEST(RunPuntosAltosRGB, ConditionsOfOneClassWithAnotherBetweenThemAreOutlinedApart) {
  const QuietApp app;
  const CCondicionHRGB green = When(kGreen, 10, 5, 5), red = When(kRed, 10, 5, 5), other = When({9, 9, 9}, 2, 5, 6);
  EXPECT_EQ(LastByColour(Triad(kRed), {green, other, red}, 7), 2);
}

TEST(RunPuntosAltosRGB, AnOutlineOfSeveralConditionsHasTheHeightOfTheFirst) {
  const QuietApp app;
  const std::vector<SeenPoint> points = Triad(kRed, 110);  // the stone stands 20 above the outline
  const CCondicionHRGB low = When(kGreen, 10, 5, 5), high = When(kRed, 10, 25, 5);
  EXPECT_EQ(LastByColour(points, {low, high}, 7), 2);
  EXPECT_EQ(LastByColour(points, {high, low}, 7), 5);
}

/// Writes down what it is told of further steps.
class CountingApp : public ListeningApp {
 public:
  void Amplia(int level, int more) override { further.emplace_back(level, more); }
  std::vector<std::pair<int, int>> further;
};

TEST(RunPuntosAltosRGB, ThreePhasesAreAnnouncedForEachFurtherOutline) {
  const CCondicionHRGB five = When(kGreen, 10, 5, 5), six = When(kRed, 10, 5, 6);
  for (auto const& [when, steps] : std::vector<std::pair<std::vector<CCondicionHRGB>, int>>{
           {{five}, 0}, {{five, five}, 0}, {{five, six}, 3}, {{five, six, five}, 6}, {{five, five, six, six}, 3}}) {
    CountingApp app;
    CDibujo<int> drawing = Seen(Triad(kRed));
    ColourSearch search;
    search.when = when;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_THAT(app.further, ElementsAre(std::pair(3, steps)));
  }
}

TEST(RunPuntosAltosRGB, OutlinesOfLaterConditionsTakeWhatEarlierOnesLeft) {
  const QuietApp app;
  // A triangle of poles with a stone within, and ground around it, twice over: one of each colour.
  std::vector<SeenPoint> points = kFarCorners;
  for (const int x : {-20, 20}) {
    for (SeenPoint const& p : kFlat) {
      if (std::abs(p.x) < 10) points.push_back({x + 2 * p.x, 2 * p.y, 0});
    }
  }
  for (const int x : {-20, 20}) {
    Colour const& colour = x < 0 ? kGreen : kRed;
    for (SeenPoint const& p :
         {Pole(-3, -3, 90, colour), Pole(3, -3, 90, colour), Pole(0, 3, 90, colour), Pole(0, 0, 0, {255, 255, 255})}) {
      points.push_back(Pole(x + p.x, p.y, p.z, p.colour));
    }
  }
  CDibujo<int> drawing = Seen(points);
  ColourSearch search;
  search.distance = 7;
  search.when = {When(kGreen, 10, 5, 5), When(kRed, 10, 5, 6)};
  EXPECT_EQ(search.Run(drawing), kHecho);
  const std::vector<int> classes = ClassesOf(drawing);
  EXPECT_THAT(std::vector<int>(classes.end() - 8, classes.end()), ElementsAre(5, 5, 5, 5, 6, 6, 6, 6));
  EXPECT_EQ(search.changed, 8U);
}

// --- what rises ---

TEST(RunListarPuntosAltosRGB, TellsColourAndHeightOfWhatRises) {
  const QuietApp app;
  CDibujo<int> drawing = Seen({{0, 0, 10, 0, kGreen}, {40, 0, 25, 0, kRed}, {20, 30, 95, 0, {1, 2, 3}}}, {1, 0, 0, 0});
  const std::vector<int> before = ClassesOf(drawing);
  std::vector<CCondicionHRGB> list{When({7, 7, 7}, 7, 7, 7)};
  ColourSearch search;
  EXPECT_EQ(search.List(drawing, 2, list), kHecho);
  ASSERT_THAT(list, SizeIs(2));
  EXPECT_EQ(list[0].tipo, 7) << "what was in the list stays";
  EXPECT_EQ(list[1].tipo, -1);
  EXPECT_EQ(list[1].tolerancia, 1);
  EXPECT_EQ(list[1].altura, 8.5F) << "the greater of both rises";
  EXPECT_EQ(ClassesOf(drawing), before);
}

TEST(RunListarPuntosAltosRGB, TheThirdVertexIsToldByTheColourOfTheFirst) {
  const QuietApp app;
  const std::vector<SeenPoint> points{{0, 0, 0, 11, {10, 0, 0}}, {4, 0, 0, 22, {20, 0, 0}}, {2, 3, 9, 33, {30, 0, 0}}};
  for (std::size_t top = 0; top < 3; ++top) {
    std::vector<SeenPoint> scene = points;
    for (std::size_t i = 0; i < 3; ++i) scene[i].z = i == top ? 9 : 0;
    const support::Triangle t = test::SpilledOf(Seen(scene)).at(0);
    const auto place = static_cast<std::size_t>(std::find(t.begin(), t.end(), static_cast<int>(top)) - t.begin());
    const auto shown = static_cast<std::size_t>(t[place == 2 ? 0 : place]);
    CDibujo<int> drawing = Seen(scene);
    std::vector<CCondicionHRGB> colours;
    std::vector<CCondicionHIntensidad> intensities;
    EXPECT_EQ(ColourSearch().List(drawing, 1, colours), kHecho);
    EXPECT_EQ(IntensitySearch().List(drawing, 1, intensities), kHecho);
    ASSERT_THAT(colours, SizeIs(1));
    ASSERT_THAT(intensities, SizeIs(1));
    EXPECT_EQ(colours[0].r, scene[shown].colour[0]) << top;
    EXPECT_EQ(intensities[0].minimo, scene[shown].intensity);
    EXPECT_EQ(intensities[0].maximo, scene[shown].intensity);
    EXPECT_EQ(intensities[0].tipo, -1);
    EXPECT_EQ(intensities[0].altura, 9.0F);
  }
}

TEST(RunListarPuntosAltosRGB, APointIsToldOnceForEachOfItsTriangles) {
  const QuietApp app;
  CDibujo<int> drawing = Seen(And(kFlat, {Pole(0, 0, 9, kGreen)}));
  std::vector<CCondicionHRGB> list;
  EXPECT_EQ(ColourSearch().List(drawing, 5, list), kHecho);
  EXPECT_THAT(list, SizeIs(6));
}

TEST(RunListarPuntosAltosRGB, WithNothingThatRisesTheListStays) {
  const QuietApp app;
  CDibujo<int> drawing = Seen(kFlat);
  std::vector<CCondicionHRGB> list;
  std::vector<CCondicionHIntensidad> other{When(1, 2, 3, 4)};
  EXPECT_EQ(ColourSearch().List(drawing, 0, list), kHecho);
  EXPECT_EQ(IntensitySearch().List(drawing, 0, other), kHecho);
  EXPECT_THAT(list, IsEmpty());
  EXPECT_THAT(other, SizeIs(1));
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(RunListarPuntosAltosRGB, AtExactlyTheHeightNothingIsTold) {
  const QuietApp app;
  CDibujo<int> drawing = Seen(And(kFlat, {Pole(0, 0, 9, kGreen)}));
  std::vector<CCondicionHRGB> list;
  EXPECT_EQ(ColourSearch().List(drawing, 9, list), kHecho);
  EXPECT_THAT(list, IsEmpty());
}

}  // namespace
}  // namespace Meseta47
