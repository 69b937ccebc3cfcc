// How a triangle, and a set of them, is cut with contour levels.
#include <algorithm>
#include <gmock/gmock.h>
#include <limits>

#include "model/drawing/CDibujo.h"
#include "planar/CSetTriangulos2D.h"
#include "support/ExactInteger.h"
#include "support/PlanarScene.h"
#include "support/Random.h"

namespace Meseta47 {
namespace {

using test::At;
using test::Box;
using test::Numbered;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr double kAnySide = std::numeric_limits<double>::max();

using Place = std::tuple<int, int, int>;
using Piece = std::pair<Place, Place>;

Place PlaceOf(CCoor3D<int> const& p) { return {p.x, p.y, p.z}; }

/// What a drawing holds: pieces of two points with the code that joining looks for, whichever way each runs.
std::vector<Piece> PiecesOf(CDibujo<int> const& drawing) {
  std::vector<Piece> pieces;
  for (unsigned i = 0; i < drawing.Cantidad(); ++i) {
    CLinea<int> const& line = drawing[i];
    EXPECT_EQ(line.GetCodigo(), CString(L"nuevo"));
    EXPECT_EQ(line.NPuntos(), 2);
    const Place a = PlaceOf(line.Punto(0)), b = PlaceOf(line.Punto(1));
    pieces.emplace_back(std::min(a, b), std::max(a, b));
  }
  return pieces;
}

std::vector<Piece> Contours(std::vector<At> const& places, int interval, double side2 = kAnySide) {
  auto p = Numbered(places);
  CDibujo<int> drawing;
  CTriangulo2D(&p[0], &p[1], &p[2]).Curva(drawing, interval, side2);
  return PiecesOf(drawing);
}

class Cutter : public CTriangulo2D {
 public:
  using CTriangulo2D::CortaLado;
  using CTriangulo2D::CTriangulo2D;
};

std::vector<CCoor3D<int>> Cuts(std::vector<At> const& places, short side, int interval) {
  auto p = Numbered(places);
  std::vector<CCoor3D<int>> cuts;
  Cutter(&p[0], &p[1], &p[2]).CortaLado(cuts, side, interval);
  return cuts;
}

TEST(CortaLado, AnIntervalBelowOneHasNoLevel) {
  for (const int interval : {0, -1, -10, std::numeric_limits<int>::min()}) {
    EXPECT_TRUE(Contours({{0, 0, -35}, {0, 10, 0}, {10, 0, 35}}, interval).empty()) << interval;
    EXPECT_TRUE(Cuts({{0, 0, -35}, {0, 10, 0}, {10, 0, 35}}, 2, interval).empty()) << interval;
  }
}

TEST(CortaLado, CutsASideAtEveryLevelBetweenItsEnds) {
  const auto cuts = Cuts({{0, 0, 5}, {100, 200, 25}, {100, 0, 7}}, 0, 10);
  ASSERT_EQ(cuts.size(), 2U);
  EXPECT_EQ(PlaceOf(cuts[0]), Place(25, 50, 10));
  EXPECT_EQ(PlaceOf(cuts[1]), Place(75, 150, 20));
  EXPECT_EQ(cuts[0].num, 1);
  EXPECT_EQ(cuts[1].num, 2);
}

TEST(CortaLado, LevelsRiseWhicheverWayTheSideRuns) {
  const auto cuts = Cuts({{0, 0, 25}, {100, 200, 5}, {100, 0, 7}}, 0, 10);
  ASSERT_EQ(cuts.size(), 2U);
  EXPECT_EQ(PlaceOf(cuts[0]), Place(75, 150, 10));
  EXPECT_EQ(PlaceOf(cuts[1]), Place(25, 50, 20));
}

TEST(CortaLado, TheSidesAreCountedFromTheFirstVertex) {
  const std::vector<At> places{{0, 0, 0}, {0, 100, 20}, {100, 0, 4}};
  EXPECT_EQ(PlaceOf(Cuts(places, 0, 10)[1]), Place(0, 50, 10));
  EXPECT_EQ(PlaceOf(Cuts(places, 1, 10)[0]), Place(62, 38, 10)) << "62.5 and 37.5, to the even integers";
  EXPECT_EQ(PlaceOf(Cuts(places, 2, 4)[0]), Place(0, 0, 0));
}

TEST(CortaLado, EndsOnALevelAreCuts) {
  const auto cuts = Cuts({{0, 0, 10}, {100, 0, 30}, {0, 50, 7}}, 0, 10);
  ASSERT_EQ(cuts.size(), 3U);
  EXPECT_EQ(PlaceOf(cuts[0]), Place(0, 0, 10));
  EXPECT_EQ(PlaceOf(cuts[2]), Place(100, 0, 30));
}

TEST(CortaLado, ASideThatLiesOnALevelGivesBothItsEnds) {
  std::vector<CCoor3D<int>> cuts = Cuts({{0, 0, 20}, {100, 0, 20}, {0, 50, 7}}, 0, 10);
  ASSERT_EQ(cuts.size(), 2U);
  EXPECT_EQ(PlaceOf(cuts[0]), Place(0, 0, 20));
  EXPECT_EQ(PlaceOf(cuts[1]), Place(100, 0, 20));
  EXPECT_EQ(cuts[0].num, 1) << "numbered as cuts, whatever the vertices' numbers";
  EXPECT_EQ(cuts[1].num, 2);
}

TEST(CortaLado, ALevelSideOffTheLevelsIsNotCut) {
  EXPECT_THAT(Cuts({{0, 0, 21}, {100, 0, 21}, {0, 50, 7}}, 0, 10), IsEmpty());
}

TEST(CortaLado, BelowZeroTheFirstLevelIsTheLeastThatIsNotBelowTheSide) {
  std::vector<int> levels;
  for (CCoor3D<int> const& cut : Cuts({{0, 0, -25}, {100, 0, 15}, {0, 50, 7}}, 0, 10)) levels.push_back(cut.z);
  EXPECT_THAT(levels, ElementsAre(-20, -10, 0, 10));
}

TEST(CortaLado, ASideWhollyBelowZeroBetweenTwoLevelsIsNotCut) {
  EXPECT_THAT(Cuts({{0, 0, -19}, {100, 0, -11}, {0, 50, -15}}, 0, 10), IsEmpty());
}

TEST(CortaLado, HeightsAtTheLimitsOfThirtyTwoBitsEndTheLevelsInTime) {
  std::vector<CCoor3D<int>> cuts =
      Cuts({{0, 0, 2'147'483'000}, {100, 0, 2'147'483'647}, {0, 50, 2'147'483'647}}, 0, 2'000'000'000);
  EXPECT_THAT(cuts, IsEmpty());
  cuts = Cuts({{0, 0, -2'147'483'648}, {100, 0, 2'147'483'647}, {0, 50, 0}}, 0, 1'000'000'000);
  EXPECT_EQ(cuts.size(), 5U);
}

TEST(CortaLado, BothTrianglesOfASideCutItAtTheSamePoints) {
  support::Random random(20'260);
  for (const std::int32_t reach : {100, 1'000'000, 2'147'483'647}) {
    for (int i = 0; i < 2'000; ++i) {
      const auto any = [&] { return random.between(-std::int64_t{reach}, reach); };
      const At a{any(), any(), any()}, b{any(), any(), any()}, left{any(), any(), 0}, right{any(), any(), 0};
      const int interval = reach / 7 + 1;
      const auto there = Cuts({a, b, left}, 0, interval), back = Cuts({b, a, right}, 0, interval);
      ASSERT_EQ(there.size(), back.size());
      for (std::size_t k = 0; k < there.size(); ++k) ASSERT_EQ(PlaceOf(there[k]), PlaceOf(back[k])) << i;
    }
  }
}

TEST(CortaLado, ACutOfTheWidestSideIsOffByAUnitAtMost) {
  support::Random random(20'260);
  for (int i = 0; i < 5'000; ++i) {
    const auto any = [&] { return random.between(-2'147'483'648, 2'147'483'647); };
    const At a{any(), any(), any()}, b{any(), any(), any()};
    for (CCoor3D<int> const& cut : Cuts({a, b, {any(), any(), 0}}, 0, 400'000'000)) {
      // Off by d along x, the point misses the side by d times the climb: exactly so in integers.
      const auto misses = [&](std::int32_t at, std::int32_t from, std::int32_t to) {
        const support::Int128 climb = support::Int128{b.z} - a.z;
        const support::Int128 off =
            (support::Int128{at} - from) * climb - (support::Int128{cut.z} - a.z) * (support::Int128{to} - from);
        return (off < 0 ? -off : off) > (climb < 0 ? -climb : climb);
      };
      ASSERT_FALSE(misses(cut.x, a.x, b.x) || misses(cut.y, a.y, b.y)) << i;
    }
  }
}

TEST(CortaLado, CutsOfBothSidesOfAVertexOnALevelAreTheVertex) {
  const std::vector<At> places{{7, 3, 40}, {100, 77, 13}, {-31, 5, 95}};
  EXPECT_EQ(PlaceOf(Cuts(places, 0, 40)[0]), Place(7, 3, 40));
  EXPECT_EQ(PlaceOf(Cuts(places, 2, 40)[0]), Place(7, 3, 40));
}

TEST(CortaLado, ASideBelowZeroThatLiesOnALevelGivesBothItsEnds) {
  const auto cuts = Cuts({{0, 0, -20}, {100, 0, -20}, {0, 50, 7}}, 0, 10);
  ASSERT_EQ(cuts.size(), 2U);
  EXPECT_EQ(PlaceOf(cuts[0]), Place(0, 0, -20));
  EXPECT_EQ(PlaceOf(cuts[1]), Place(100, 0, -20));
}

TEST(CortaLado, ZeroIsALevel) {
  EXPECT_EQ(PlaceOf(Cuts({{0, 0, -5}, {100, 0, 5}, {0, 50, 7}}, 0, 10)[0]), Place(50, 0, 0));
}

TEST(CortaLado, NumbersGoOnFromWhatTheListHolds) {
  auto p = Numbered({{0, 0, 5}, {0, 100, 15}, {100, 0, 25}});
  std::vector<CCoor3D<int>> cuts;
  for (short side = 0; side < 3; ++side) Cutter(&p[0], &p[1], &p[2]).CortaLado(cuts, side, 10);
  ASSERT_EQ(cuts.size(), 4U);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(cuts[static_cast<std::size_t>(i)].num, i + 1);
}

TEST(CortaLado, ATriangleAtTheFrameIsCutAllTheSame) {
  auto p = Numbered({{0, 0, 5}, {0, 100, 15}, {100, 0, 25}});
  p[2].num = -1;
  std::vector<CCoor3D<int>> cuts;
  Cutter(&p[0], &p[1], &p[2]).CortaLado(cuts, 0, 10);
  EXPECT_EQ(cuts.size(), 1U);
}

TEST(CortaLado, CollinearPointsAreNotCut) {
  EXPECT_THAT(Cuts({{0, 0, 0}, {100, 0, 100}, {200, 0, 200}}, 0, 10), IsEmpty());
}

TEST(Curva, JoinsTheCutsOfOneLevel) {
  EXPECT_THAT(
      Contours({{0, 0, 0}, {0, 100, 20}, {100, 0, 20}}, 10),
      UnorderedElementsAre(Piece(Place(0, 50, 10), Place(50, 0, 10)), Piece(Place(0, 100, 20), Place(100, 0, 20))));
}

TEST(Curva, AFlatTriangleOnALevelGivesItsThreeSides) {
  EXPECT_THAT(Contours({{0, 0, 20}, {0, 100, 20}, {100, 0, 20}}, 10),
              UnorderedElementsAre(Piece(Place(0, 0, 20), Place(0, 100, 20)), Piece(Place(0, 0, 20), Place(100, 0, 20)),
                                   Piece(Place(0, 100, 20), Place(100, 0, 20))));
}

TEST(Curva, AFlatTriangleOffTheLevelsGivesNothing) {
  EXPECT_THAT(Contours({{0, 0, 21}, {0, 100, 21}, {100, 0, 21}}, 10), IsEmpty());
}

TEST(Curva, AVertexOnALevelWithTheOthersToOneSideGivesNoPiece) {
  EXPECT_THAT(Contours({{0, 0, 10}, {0, 100, 15}, {100, 0, 17}}, 10), IsEmpty());
}

TEST(Curva, AVertexOnALevelBetweenTheOthersIsOneEndOfThePiece) {
  EXPECT_THAT(Contours({{0, 0, 10}, {0, 100, 5}, {100, 0, 15}}, 10),
              ElementsAre(Piece(Place(0, 0, 10), Place(50, 50, 10))));
}

TEST(Curva, AVertexOnALevelGivesItsPieceBelowZeroToo) {
  EXPECT_THAT(Contours({{0, 0, -10}, {0, 100, -15}, {100, 0, -5}}, 10),
              ElementsAre(Piece(Place(0, 0, -10), Place(50, 50, -10))));
}

TEST(Curva, ASideOnALevelRunsFromTheEarlierVertexToTheLater) {
  auto p = Numbered({{0, 100, 10}, {100, 0, 15}, {0, 0, 10}});
  CDibujo<int> drawing;
  CTriangulo2D(&p[0], &p[1], &p[2]).Curva(drawing, 10, kAnySide);
  ASSERT_EQ(drawing.Cantidad(), 1U);
  EXPECT_EQ(PlaceOf(drawing[0].Punto(0)), Place(0, 100, 10)) << "P1, although it stands behind P3 in any order";
  EXPECT_EQ(PlaceOf(drawing[0].Punto(1)), Place(0, 0, 10));
}

TEST(Curva, AFlatTriangleGivesItsSidesInOrder) {
  auto p = Numbered({{0, 0, 20}, {0, 100, 20}, {100, 0, 20}});
  CDibujo<int> drawing;
  CTriangulo2D(&p[0], &p[1], &p[2]).Curva(drawing, 10, kAnySide);
  std::vector<std::pair<int, int>> sides;
  for (unsigned i = 0; i < drawing.Cantidad(); ++i) {
    sides.emplace_back(drawing[i].Punto(0).num, drawing[i].Punto(1).num);
  }
  EXPECT_THAT(sides, ElementsAre(std::pair(1, 2), std::pair(1, 3), std::pair(2, 3)));
}

TEST(Curva, AFlatTriangleAtZeroAndBelowItGivesItsThreeSides) {
  for (const int height : {0, -20}) {
    EXPECT_EQ(Contours({{0, 0, height}, {0, 100, height}, {100, 0, height}}, 10).size(), 3U) << height;
  }
}

TEST(Curva, CutsThatRoundToOnePointGiveNoPiece) {
  EXPECT_THAT(
      Contours({{0, 0, 9}, {0, 10, 100}, {10, 0, 100}}, 10),
      testing::Not(testing::Contains(testing::Truly([](Piece const& piece) { return piece.first == piece.second; }))));
  EXPECT_EQ(Contours({{0, 0, 9}, {0, 10, 100}, {10, 0, 100}}, 10).size(), 9U)
      << "ten levels, the lowest of which cuts both sides a tenth of a unit from the vertex";
}

TEST(Curva, PiecesKeepNoMarkOfThePairing) {
  auto p = Numbered({{0, 0, 5}, {0, 100, 15}, {100, 0, 25}});
  CDibujo<int> drawing;
  CTriangulo2D(&p[0], &p[1], &p[2]).Curva(drawing, 10, kAnySide);
  ASSERT_EQ(drawing.Cantidad(), 2U);
  for (unsigned i = 0; i < 2; ++i) {
    EXPECT_FALSE(drawing[i].Punto(0).EsBorrado());
    EXPECT_FALSE(drawing[i].Punto(1).EsBorrado());
    EXPECT_EQ(drawing[i].maximas.Minimo.z, drawing[i].maximas.Maximo.z);
  }
}

TEST(Curva, EachSideIsHeldAgainstTheLimit) {
  const std::vector<At> places{{0, 0, 0}, {0, 60, 20}, {80, 0, 20}};  // 60, 100 and 80
  for (std::size_t turn = 0; turn < 3; ++turn) {
    std::vector<At> turned = places;
    std::rotate(turned.begin(), turned.begin() + static_cast<std::ptrdiff_t>(turn), turned.end());
    EXPECT_THAT(Contours(turned, 10, 99.0 * 99), IsEmpty()) << turn;
  }
}

TEST(Curva, ASideOnALevelIsGivenOnceAndItsEndsAreSpent) {
  EXPECT_THAT(Contours({{0, 0, 10}, {0, 100, 10}, {100, 0, 15}}, 10),
              ElementsAre(Piece(Place(0, 0, 10), Place(0, 100, 10))));
}

TEST(Curva, ASideOnALevelBelowZeroIsFoundToo) {
  EXPECT_THAT(Contours({{0, 0, -10}, {0, 100, -10}, {100, 0, -15}}, 10),
              ElementsAre(Piece(Place(0, 0, -10), Place(0, 100, -10))));
}

TEST(Curva, ALevelSideLeavesTheOtherLevelsOfTheTriangle) {
  EXPECT_THAT(
      Contours({{0, 0, 10}, {0, 100, 10}, {100, 0, 30}}, 10),
      UnorderedElementsAre(Piece(Place(0, 0, 10), Place(0, 100, 10)), Piece(Place(50, 0, 20), Place(50, 50, 20))));
}

TEST(Curva, TwoVerticesOnDifferentLevels) {
  EXPECT_THAT(Contours({{0, 0, 0}, {0, 100, 10}, {100, 0, 20}}, 10),
              ElementsAre(Piece(Place(0, 100, 10), Place(50, 0, 10))));
}

TEST(Curva, ASideLongerInPlanThanTheLimitLeavesTheTriangleOut) {
  const std::vector<At> places{{0, 0, 0}, {0, 60, 20}, {80, 0, 20}};  // 60, 80 and 100
  EXPECT_EQ(Contours(places, 10, 100.0 * 100).size(), 2U) << "a side of the limit passes";
  EXPECT_THAT(Contours(places, 10, 99.0 * 99), IsEmpty());
}

TEST(Curva, WithALimitOfZeroNoTrianglePasses) {
  EXPECT_THAT(Contours({{0, 0, 0}, {0, 1, 20}, {1, 0, 20}}, 10, 0), IsEmpty());
}

TEST(Curva, TrianglesAtTheFrameGiveNothing) {
  for (std::size_t corner = 0; corner < 3; ++corner) {
    auto p = Numbered({{0, 0, 0}, {0, 100, 20}, {100, 0, 20}});
    p[corner].num = -2;
    CDibujo<int> drawing;
    CTriangulo2D(&p[0], &p[1], &p[2]).Curva(drawing, 10, kAnySide);
    EXPECT_EQ(drawing.Cantidad(), 0U) << corner;
  }
}

TEST(Curva, InvalidTrianglesGiveNothing) {
  EXPECT_THAT(Contours({{0, 0, 0}, {50, 0, 10}, {100, 0, 20}}, 10), IsEmpty());
  EXPECT_THAT(Contours({{0, 0, 20}, {0, 0, 20}, {100, 0, 20}}, 10), IsEmpty());
  CDibujo<int> drawing;
  CTriangulo2D().Curva(drawing, 10, kAnySide);
  EXPECT_EQ(drawing.Cantidad(), 0U);
}

TEST(Curva, ASetGivesThePiecesOfItsSubtreeAndIsEmptied) {
  auto p = Numbered({{10, 10, 0}, {10, 20, 20}, {20, 10, 20}, {490, 10, 5}, {490, 30, 15}, {510, 10, 5}});
  CSetTriangulos2D root(0);
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  root.Inserta(CTriangulo2D(&p[0], &p[1], &p[2]));
  root.Inserta(CTriangulo2D(&p[3], &p[4], &p[5]));
  root.QuitaTrianguloActual();
  CDibujo<int> drawing;
  root.Curva(drawing, 10, kAnySide);
  EXPECT_THAT(PiecesOf(drawing),
              ElementsAre(Piece(Place(490, 20, 10), Place(500, 20, 10)), Piece(Place(10, 20, 20), Place(20, 10, 20)),
                          Piece(Place(10, 15, 10), Place(15, 10, 10))));
  EXPECT_EQ(root.hijos, nullptr);
  EXPECT_EQ(root.primero, nullptr);
  EXPECT_EQ(root.Cantidad(), 0U);
  root.Curva(drawing, 10, kAnySide);
  EXPECT_EQ(drawing.Cantidad(), 3U) << "a second time finds nothing";
}

TEST(Curva, ASetGivesUpItsChildrenAndEveryWayIntoItsList) {
  auto p = Numbered({{10, 10, 0}, {10, 20, 20}, {20, 10, 20}, {490, 10, 5}, {490, 30, 15}, {510, 10, 5}});
  CSetTriangulos2D root(0);
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  root.Inserta(CTriangulo2D(&p[0], &p[1], &p[2]));
  root.Inserta(CTriangulo2D(&p[3], &p[4], &p[5]));
  CDibujo<int> drawing;
  root.Curva(drawing, 10, kAnySide);
  EXPECT_EQ(root.hijos, nullptr);
  EXPECT_EQ(root.primero, nullptr);
  EXPECT_EQ(root.ultimo, nullptr);
  EXPECT_EQ(root.actual, nullptr);
  EXPECT_EQ(root.inicio, nullptr);
  EXPECT_EQ(root.cantidad, 0U);
}

TEST(Curva, TheTrianglesOfASetLetGoOfTheirNeighbours) {
  auto p = Numbered({{0, 0, 0}, {0, 100, 20}, {100, 0, 20}, {100, 100, 40}});
  CTriangulo2D outside(&p[1], &p[3], &p[2]);
  CSetTriangulos2D root(0);
  root.EstableceDivisiones(Box(-1000, -1000, 1000, 1000), false);
  root.Inserta(CTriangulo2D(&p[0], &p[1], &p[2]));
  root.primero->SetVecino23(&outside);
  outside.SetVecino31(root.primero);
  CDibujo<int> drawing;
  root.Curva(drawing, 10, kAnySide);
  EXPECT_EQ(outside.GetVecino31(), nullptr);
}

TEST(Curva, AnEmptySetGivesNothing) {
  CSetTriangulos2D root(0);
  CDibujo<int> drawing;
  root.Curva(drawing, 10, kAnySide);
  EXPECT_EQ(drawing.Cantidad(), 0U);
}

}  // namespace
}  // namespace Meseta47
