// The search of high points as its callers see it: classes, counts, codes and progress.
#include <gmock/gmock.h>

#include "classification/SearchScene.h"
#include "model/threads/Codigos.h"

namespace Meseta47 {
namespace {

using test::Changing;
using test::ClassedPoint;
using test::ClassesOf;
using test::Cloud;
using test::Forest;
using test::InForest;
using test::kCorners;
using test::kGround;
using test::kPoles;
using test::QuietApp;
using test::Search;
using test::With;
using testing::Each;
using testing::ElementsAre;

std::vector<int> LastThree(CDibujo<int> const& drawing) {
  const std::vector<int> classes = ClassesOf(drawing);
  return {classes.end() - 3, classes.end()};
}

TEST(RunPuntosAltos, APoleOverTheGroundTakesTheClass) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(kGround, {{0, 0, 9}}));
  Search search;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(ClassesOf(drawing), ElementsAre(2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 6));
  EXPECT_EQ(search.changed, 1U);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

// --- what is found ---

TEST(RunPuntosAltos, APointAtExactlyTheHeightStays) {
  const QuietApp app;
  for (const int z : {5, 6}) {
    CDibujo<int> drawing = Cloud(With(kGround, {{0, 0, z}}));
    Search search;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).back(), z == 5 ? 2 : 6);
  }
}

TEST(RunPuntosAltos, LengthsAreInDrawingUnits) {
  const QuietApp app;
  for (const double height : {4.99, 5.0}) {
    CDibujo<int> drawing = Cloud(With(kGround, {{0, 0, 50}}), {1, 0, 0, 0});  // five metres, in decimetres
    Search search;
    search.seed = drawing.semilla;
    search.height = height;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).back(), height < 5 ? 6 : 2);
  }
}

/// A roof of four points that stand above the ground, and a fifth among them that only rises above the roof. Their
/// sides of two metres make no outline with one of the diagonals.
const std::vector<ClassedPoint> kRoof{{-1, -1, 10}, {1, -1, 10}, {1, 1, 10}, {-1, 1, 10}};
const ClassedPoint kRidge{0, 0, 12};

TEST(RunPuntosAltos, OnePassDoesNotSpread) {
  const QuietApp app;
  for (const int onePass : {0, 1, -1}) {
    CDibujo<int> drawing = Cloud(With(With(kGround, kRoof), {kRidge}));
    Search search;
    search.onePass = onePass;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(search.changed, onePass == 0 ? 5U : 4U);
    EXPECT_EQ(ClassesOf(drawing).back(), onePass == 0 ? 6 : 2);
  }
}

TEST(RunPuntosAltos, TheSpreadHoldsTheSquaredSideAgainstThePlainDistance) {
  const QuietApp app;
  for (const double distance : {1.99, 2.0}) {  // the ridge is 1.41 from the roof: its square is 2
    CDibujo<int> drawing = Cloud(With(With(kGround, kRoof), {kRidge}));
    Search search;
    search.distance = distance;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).back(), distance < 2 ? 2 : 6);
  }
}

TEST(RunPuntosAltos, APointOnAnotherInPlanIsNotLookedAt) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(kGround, {{0, 0, 0}, {0, 0, 9}}));
  Search search;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(ClassesOf(drawing), Each(2));
  EXPECT_EQ(search.changed, 0U);
}

TEST(RunPuntosAltos, WithNothingFoundAndNothingOfTheClassNothingChanges) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(kGround);
  Search search;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(search.changed, 0U);
  EXPECT_THAT(ClassesOf(drawing), Each(2));
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(RunPuntosAltos, PointsOfLinesAreFoundAsWell) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(kGround);
  CLinea<int> wire(L"wire");
  wire << CCoor3D<int>(0, 0, 9, 0) << CCoor3D<int>(20, 20, 0, 0);
  drawing.Inserta(wire);
  Search search;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(drawing[1].Punto(0).clasificacion, 6);
  EXPECT_EQ(drawing[1].Punto(1).clasificacion, 0);
}

// --- which classes may change ---

TEST(RunPuntosAltos, AnExcludedClassStaysThoughItWasFound) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(kGround, {{0, 0, 9, 9}, {20, 20, 90, 2}}));
  drawing.tipoNube = 0;  // the tables choose entities, and the classes are looked at only at the end
  Search search;
  search.data = Changing({L"*"}, {L"9"});
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(ClassesOf(drawing)[10], 9);
  EXPECT_EQ(ClassesOf(drawing)[11], 6);
  EXPECT_EQ(search.changed, 1U);
}

TEST(RunPuntosAltos, AClassThatIsNotIncludedStaysThoughItWasFound) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(kGround, {{0, 0, 9, 3}, {20, 20, 90, 4}, {-20, 20, 90, 5}}));
  drawing.tipoNube = 0;
  Search search;
  search.data = Changing({L"cloud", L"4", L" 5 high"});
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(LastThree(drawing), ElementsAre(3, 6, 6));
  EXPECT_EQ(search.changed, 2U);
}

TEST(RunPuntosAltos, InACloudAnExcludedClassTakesNoPart) {
  const QuietApp app;
  for (wchar_t const* excluded : {L"7", L"8"}) {
    // A ring as tall as the pole within it, which stands out only where the ring is left out.
    std::vector<ClassedPoint> points = With(kGround, {{0, 0, 90}});
    for (std::size_t i = 0; i < 6; ++i) points[i] = {points[i].x, points[i].y, 90, 7};
    CDibujo<int> drawing = Cloud(points);
    Search search;
    search.onePass = 1;
    search.data = Changing({L"*"}, {excluded});
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).back(), excluded[0] == L'7' ? 6 : 2);
    EXPECT_EQ(ClassesOf(drawing).front(), excluded[0] == L'7' ? 7 : 6);
  }
}

TEST(RunPuntosAltos, AFoundPointOfTheClassIsCounted) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(kGround, {{0, 0, 9, 6}}));
  Search search;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(search.changed, 1U);
}

TEST(RunPuntosAltos, OnlyTheByteOfTheClassIsGiven) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(kGround, {{0, 0, 9}}));
  Search search;
  search.info = CInfoClasificacion(255, 3.5, L"a text");
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(ClassesOf(drawing).back(), 255);
}

// --- the outline ---

/// Three points of class 6 on the ground, their sides of four metres at most, and one of class 2 among them.
std::vector<ClassedPoint> Courtyard(int z) {
  return With(kCorners, {{0, 0, 0, 6}, {4, 0, 0, 6}, {2, 3, 0, 6}, {2, 1, z, 2}});
}

TEST(RunPuntosAltos, PointsThatBearTheClassAreOutlinedWithThoseFound) {
  const QuietApp app;
  for (const double distance : {3.9, 4.0}) {
    CDibujo<int> drawing = Cloud(Courtyard(0));
    Search search;
    search.distance = distance;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).back(), distance < 4 ? 2 : 6) << distance;
    EXPECT_EQ(search.changed, distance < 4 ? 0U : 1U);
  }
}

TEST(RunPuntosAltos, WhatIsFoundAndWhatIsInsideAreCountedTogether) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(Courtyard(0), {{-20, 0, 90}}));
  Search search;
  search.distance = 4;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(search.changed, 2U);
}

TEST(RunPuntosAltos, InsideTheOutlineAPointIsLowEnoughUpToTheHeightAboveIt) {
  const QuietApp app;
  for (const int z : {-50, 5, 6}) {
    // Sides of forty metres: six of height over thirteen of run are not steep.
    std::vector<ClassedPoint> points = Courtyard(z);
    for (ClassedPoint& p : points) p = {p.x * 10, p.y * 10, p.z, p.clase};
    CDibujo<int> drawing = Cloud(points);
    Search search;
    search.distance = 40;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).back(), z == 6 ? 2 : 6) << z;
  }
}

TEST(RunPuntosAltos, InsideTheOutlineTheTablesOfClassesHoldAsWell) {
  const QuietApp app;
  for (wchar_t const* excluded : {L"2", L"3"}) {
    CDibujo<int> drawing = Cloud(Courtyard(0));
    drawing.tipoNube = 0;
    Search search;
    search.distance = 4;
    search.data = Changing({L"*"}, {excluded});
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).back(), excluded[0] == L'2' ? 2 : 6);
  }
}

TEST(RunPuntosAltos, AnOutlineTooSmallToBeOneIsNoFailure) {
  const QuietApp app;
  for (std::vector<ClassedPoint> const& poles :
       {std::vector<ClassedPoint>{{0, 0, 9}}, {{0, 0, 9}, {20, 20, 90}}, {{0, 0, 9}, {10, 20, 90}, {20, -20, 90}}}) {
    CDibujo<int> drawing = Cloud(With(kGround, poles));
    Search search;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(search.changed, poles.size());
  }
}

// --- further drawings and selections ---

TEST(RunPuntosAltos, PointsOfFurtherDrawingsServeTheSpreadAndKeepTheirClass) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(kGround, {kRidge}));
  CDibujo<int> roof = Cloud(kRoof);
  Search alone;
  EXPECT_EQ(alone.Run(drawing), kHecho);
  EXPECT_EQ(ClassesOf(drawing).back(), 6) << "without the roof it is a pole";

  drawing = Cloud(With(kGround, {kRidge}));
  Search search;
  search.others = {nullptr, &roof};
  search.onePass = 1;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(ClassesOf(drawing), Each(2));
  search.onePass = 0;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(ClassesOf(drawing).back(), 6);
  EXPECT_THAT(ClassesOf(roof), Each(2));
  EXPECT_EQ(search.changed, 1U);
}

TEST(RunPuntosAltos, FurtherDrawingsAreSearchedAgainWhateverNumbersTheyHold) {
  const QuietApp app;
  // The first point of the last further drawing is a seed that no run reaches: its number must not be an earlier one.
  for (const int stale : {0, 1, 5, 1'000'000}) {
    CDibujo<int> drawing = Cloud(With(kGround, {kRidge}));
    CDibujo<int> roof = Cloud(kRoof);
    for (int i = 0; i < 4; ++i) roof[0].PunteroAPunto(i)->num = stale + i;
    Search search;
    search.others = {&roof};
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(ClassesOf(drawing).back(), 6) << stale;
    EXPECT_EQ(search.changed, 1U);
  }
}

TEST(RunPuntosAltos, PointsOfFurtherDrawingsThatTakeNoPartKeepTheirNumbers) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(kGround, {{0, 0, 9}}));
  CDibujo<int> other = Cloud({{10, 10, 0, 2}, {10, 11, 0, 7}});
  other[0].PunteroAPunto(1)->num = 77;
  Search search;
  search.data = Changing({L"*"}, {L"7"});
  search.others = {&other};
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(other[0].Punto(1).num, 77);
}

std::vector<CPosicionEntidad> All(std::size_t points) {
  std::vector<CPosicionEntidad> places;
  for (std::size_t i = 0; i < points; ++i) places.emplace_back(0, static_cast<int>(i));
  return places;
}

TEST(RunPuntosAltos, ASelectionLeavesTheOthersOutOfTheMesh) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(kGround, {{0, 0, 9}, {20, 20, 90}}));
  std::vector<CPosicionEntidad> selection = All(12);
  selection.erase(selection.begin() + 10);
  Search search;
  search.selection = &selection;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(ClassesOf(drawing)[10], 2);
  EXPECT_EQ(ClassesOf(drawing)[11], 6);
  EXPECT_EQ(search.changed, 1U);
}

TEST(RunPuntosAltos, APointOutsideTheSelectionIsStillOfferedToTheOutline) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(kCorners, kPoles));
  const std::vector<CPosicionEntidad> selection = All(7);
  Search search;
  search.distance = 7;
  search.selection = &selection;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_EQ(drawing[0].Punto(7).num, 0) << "it was not in the mesh";
  EXPECT_EQ(ClassesOf(drawing).back(), 6);
  EXPECT_EQ(search.changed, 4U);
}

// Three poles whose circle reaches the corners of a frame around them, and a stone on the ground within their triangle.
TEST(RunPuntosAltos, TheOutlineOfWhatIsFoundReachesItsHullWithoutTheFrame) {
  const QuietApp app;
  const auto wall = With(kCorners, {{-30, 0, 90}, {30, 0, 90}, {0, 4, 90}, {0, 2, 0}});
  for (const bool withoutFrame : {false, true}) {
    CDibujo<int> drawing = Cloud(wall);
    Search search;
    search.distance = 62;
    search.withoutFrame = withoutFrame;
    ASSERT_EQ(search.Run(drawing), kHecho);
    EXPECT_THAT(ClassesOf(drawing), ElementsAre(2, 2, 2, 2, 6, 6, 6, withoutFrame ? 6 : 2));
  }
}

// The passes look at the triangles of the frame, with and without it: what they find, before any outline, is the same.
TEST(RunPuntosAltos, TheMeshThatIsSearchedKeepsItsFrame) {
  const QuietApp app;
  CDibujo<int> framed = Cloud(Forest(300), CDataSemilla(3, 0, 0, 0)),
               whole = Cloud(Forest(300), CDataSemilla(3, 0, 0, 0));
  Search search = InForest();
  search.distance = 0;
  ASSERT_EQ(search.Run(framed), kHecho);
  search.withoutFrame = true;
  ASSERT_EQ(search.Run(whole), kHecho);
  EXPECT_EQ(ClassesOf(whole), ClassesOf(framed));
}

TEST(RunPuntosAltos, ASelectionThatNamesADuplicateEndsThere) {
  // Registering stays on a point that is not in the mesh: what was numbered behind it is in the mesh, but not found.
  const QuietApp app;
  CDibujo<int> drawing = Cloud(With(kGround, {{0, 0, 9}, {4, 0, 1}, {20, 20, 90}}));
  const std::vector<CPosicionEntidad> selection = All(13);
  Search search;
  search.selection = &selection;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(LastThree(drawing), ElementsAre(6, 2, 2));
}

}  // namespace
}  // namespace Meseta47
