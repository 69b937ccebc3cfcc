// The tree of triangle lists: filing, splitting, linking, taking out, closing, emptying.
#include "planar/CSetTriangulos2D.h"

#include <gmock/gmock.h>
#include <memory>

#include "model/CDibujo.h"
#include "model/CTIN.h"
#include "model/Codigos.h"
#include "platform/CFile.h"
#include "support/FaultGuard.h"
#include "support/PlanarScene.h"
#include "support/ScratchFolder.h"

namespace Meseta47 {
namespace {

using test::At;
using test::Box;
using test::DirectedNumbers;
using test::Numbered;
using test::NumbersOf;
using test::PlanOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

using Numbers = std::tuple<int, int, int>;

std::vector<CTriangulo2D*> ListOf(CSetTriangulos2D const& set) {
  std::vector<CTriangulo2D*> triangles;
  for (CTriangulo2D* t = set.primero; t != nullptr; t = t->Sig()) triangles.push_back(t);
  return triangles;
}

std::vector<CTriangulo2D*> BackwardListOf(CSetTriangulos2D const& set) {
  std::vector<CTriangulo2D*> triangles;
  for (CTriangulo2D* t = set.ultimo; t != nullptr; t = t->Ant()) triangles.push_back(t);
  return triangles;
}

std::vector<CTriangulo2D*> OpenOf(CSetTriangulos2D const& set) { return set.abiertos; }

/// A root from 0 to 1000 each way, and small triangles with points of their own, kept alive by the scene.
class CSetTriangulos2DTest : public testing::Test {
 protected:
  CSetTriangulos2DTest() { root.EstableceDivisiones(Box(0, 0, 1000, 1000), false); }

  /// Files a triangle of about two units with its right angle at (x, y), and returns the filed copy.
  CTriangulo2D* FileSmall(CSetTriangulos2D& set, int x, int y) {
    CTriangulo2D const small = Small(x, y);
    set.Inserta(small);
    return small.P1() == nullptr ? nullptr : Filed(set, small);
  }

  CTriangulo2D Small(int x, int y) {
    held.push_back(std::make_unique<std::vector<CCoor3D<int>>>(Numbered({{x, y}, {x, y + 2}, {x + 2, y}})));
    auto& p = *held.back();
    for (CCoor3D<int>& q : p) q.num = ++lastNumber;
    return CTriangulo2D(&p[0], &p[1], &p[2]);
  }

  /// The copy of a triangle that lies somewhere in a subtree.
  static CTriangulo2D* Filed(CSetTriangulos2D& set, CTriangulo2D const& t) {
    for (CTriangulo2D* mine : ListOf(set)) {
      if (*mine == t) return mine;
    }
    for (unsigned i = 0; set.hijos != nullptr && i < 4; ++i) {
      if (CTriangulo2D* found = Filed(set.hijos[i], t)) return found;
    }
    return nullptr;
  }

  /// Fills a set with small triangles, spread over its four quadrants in turn, each wholly within one.
  void FillEvenly(CSetTriangulos2D& set, int count) {
    for (int i = 0; i < count; ++i) {
      const int step = 10 * (i / 4 % 40);
      FileSmall(set, 20 + step + (i % 2 == 0 ? 0 : 500), 20 + step + (i / 2 % 2 == 0 ? 0 : 500));
    }
  }

  std::vector<std::unique_ptr<std::vector<CCoor3D<int>>>> held;
  int lastNumber = 0;
  CSetTriangulos2D root{0};  // after the points, so that it goes before them
};

// --- the tree

TEST_F(CSetTriangulos2DTest, ANewSetIsAnEmptyLeafOfItsLevel) {
  const CSetTriangulos2D set(3);
  EXPECT_EQ(set.nivel, 3U);
  EXPECT_EQ(set.hijos, nullptr);
  EXPECT_EQ(set.padre, nullptr);
  EXPECT_FALSE(set.cerrado);
  EXPECT_EQ(set.Cantidad(), 0U);
  EXPECT_EQ(set.GetActual(true), nullptr);
}

TEST_F(CSetTriangulos2DTest, ChildrenAreTheQuadrants) {
  root.EstableceDivisiones(Box(0, 0, 100, 200), true);
  ASSERT_NE(root.hijos, nullptr);
  EXPECT_EQ(PlanOf(root.hijos[0].maximas), std::tuple(0, 100, 50, 200));
  EXPECT_EQ(PlanOf(root.hijos[1].maximas), std::tuple(50, 100, 100, 200));
  EXPECT_EQ(PlanOf(root.hijos[2].maximas), std::tuple(0, 0, 50, 100));
  EXPECT_EQ(PlanOf(root.hijos[3].maximas), std::tuple(50, 0, 100, 100));
  for (unsigned i = 0; i < 4; ++i) {
    EXPECT_EQ(root.hijos[i].nivel, 1U);
    EXPECT_EQ(root.hijos[i].padre, &root);
    EXPECT_EQ(root.hijos[i].GetNivel0(), &root);
  }
}

TEST_F(CSetTriangulos2DTest, DividingInAdvanceBeginsAtOneMoreThanALeafHolds) {
  CSetTriangulos2D leaf, divided;
  leaf.EstableceDivisiones(150U, Box(0, 0, 100, 100));
  divided.EstableceDivisiones(151U, Box(0, 0, 100, 100));
  EXPECT_EQ(leaf.hijos, nullptr);
  ASSERT_NE(divided.hijos, nullptr);
  EXPECT_EQ(divided.CantidadNiveles(), 2U);
  EXPECT_EQ(PlanOf(divided.hijos[3].maximas), std::tuple(50, 0, 100, 50));
}

TEST_F(CSetTriangulos2DTest, DividingInAdvanceGivesEachChildAQuarter) {
  CSetTriangulos2D two, three;
  two.EstableceDivisiones(4U * 151 - 1, Box(0, 0, 100, 100));
  three.EstableceDivisiones(4U * 151, Box(0, 0, 100, 100));
  EXPECT_EQ(two.CantidadNiveles(), 2U);
  EXPECT_EQ(three.CantidadNiveles(), 3U);
}

TEST_F(CSetTriangulos2DTest, DividingInAdvanceEndsAtLevelTwelve) {
  CSetTriangulos2D eleventh(11), twelfth(12);
  eleventh.EstableceDivisiones(100'000U, Box(0, 0, 100, 100));
  twelfth.EstableceDivisiones(100'000U, Box(0, 0, 100, 100));
  ASSERT_NE(eleventh.hijos, nullptr);
  EXPECT_EQ(eleventh.hijos[0].hijos, nullptr);
  EXPECT_EQ(twelfth.hijos, nullptr);
}

TEST_F(CSetTriangulos2DTest, OnlyTheRootCountsOneLevelMore) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  EXPECT_EQ(root.CantidadNiveles(), 2U);
  EXPECT_EQ(root.hijos[0].CantidadNiveles(), 1U);
}

TEST_F(CSetTriangulos2DTest, APointOnACentreLineGoesRightOrUp) {
  EXPECT_EQ(root.BuscaHijo(CCoor3D<int>(1, 1, 0, 0)), -1) << "on a leaf";
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  EXPECT_EQ(root.BuscaHijo(CCoor3D<int>(499, 500, 0, 0)), 0);
  EXPECT_EQ(root.BuscaHijo(CCoor3D<int>(500, 500, 0, 0)), 1);
  EXPECT_EQ(root.BuscaHijo(CCoor3D<int>(499, 499, 0, 0)), 2);
  EXPECT_EQ(root.BuscaHijo(CCoor3D<int>(500, 499, 0, 0)), 3);
}

TEST_F(CSetTriangulos2DTest, ABoxThatTouchesACentreLineBelongsToNoChild) {
  EXPECT_EQ(root.BuscaHijo(Box(1, 1, 2, 2)), -1) << "on a leaf";
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  EXPECT_EQ(root.BuscaHijo(Box(10, 501, 499, 990)), 0);
  EXPECT_EQ(root.BuscaHijo(Box(501, 501, 990, 990)), 1);
  EXPECT_EQ(root.BuscaHijo(Box(10, 10, 499, 499)), 2);
  EXPECT_EQ(root.BuscaHijo(Box(501, 10, 990, 499)), 3);
  EXPECT_EQ(root.BuscaHijo(Box(10, 10, 500, 499)), -1) << "from the left";
  EXPECT_EQ(root.BuscaHijo(Box(500, 10, 990, 499)), -1) << "from the right";
  EXPECT_EQ(root.BuscaHijo(Box(10, 10, 499, 500)), -1) << "from below";
  EXPECT_EQ(root.BuscaHijo(Box(10, 500, 499, 990)), -1) << "from above";
}

// --- filing

TEST_F(CSetTriangulos2DTest, ATriangleGoesToTheDeepestSetThatHoldsItsCircle) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  root.hijos[2].EstableceDivisiones(root.hijos[2].maximas, true);
  EXPECT_EQ(FileSmall(root, 10, 10)->GetSet(), &root.hijos[2].hijos[2]);
  EXPECT_EQ(FileSmall(root, 249, 10)->GetSet(), &root.hijos[2]) << "across the axis of the quadrant";
  EXPECT_EQ(FileSmall(root, 600, 10)->GetSet(), &root.hijos[3]);
  EXPECT_EQ(FileSmall(root, 10, 499)->GetSet(), &root) << "across the axis of the root";
}

TEST_F(CSetTriangulos2DTest, ACircleThatTouchesTheCentreLineStraddlesIt) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  // Circle around (494, 103) with radius 5, and the same one unit further left.
  auto p = Numbered({{490, 100}, {490, 106}, {498, 100}}), q = Numbered({{489, 100}, {489, 106}, {497, 100}});
  const CTriangulo2D nearer(&q[0], &q[1], &q[2]);
  const CTriangulo2D inside(&p[0], &p[1], &p[2]);
  ASSERT_EQ(inside.GetMaxCir().x, 499);
  for (CCoor3D<int>& corner : p) corner.x += 1;
  const CTriangulo2D touching(&p[0], &p[1], &p[2]);
  ASSERT_EQ(touching.GetMaxCir().x, 500);
  root.Inserta(touching);
  EXPECT_NE(Filed(root, touching), nullptr);
  EXPECT_EQ(Filed(root, touching)->GetSet(), &root);
  root.Inserta(nearer);
  EXPECT_EQ(Filed(root, nearer)->GetSet(), &root.hijos[2]);
  root.clear();
}

TEST_F(CSetTriangulos2DTest, TheBoxGivenDecidesInPlaceOfTheCircle) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  const CTriangulo2D t = Small(10, 10);
  root.Inserta(t, Box(600, 600, 700, 700));
  EXPECT_EQ(Filed(root, t)->GetSet(), &root.hijos[1]);
}

TEST_F(CSetTriangulos2DTest, ATriangleForAClosedChildStaysAbove) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  root.hijos[2].QuitaTrianguloActual();
  EXPECT_EQ(FileSmall(root, 10, 10)->GetSet(), &root);
}

TEST_F(CSetTriangulos2DTest, FilingAppendsAtTheTailAndMovesTheCursors) {
  CTriangulo2D* first = FileSmall(root, 10, 10);
  CTriangulo2D* second = FileSmall(root, 600, 10);
  CTriangulo2D* third = FileSmall(root, 10, 600);
  EXPECT_THAT(ListOf(root), ElementsAre(first, second, third));
  EXPECT_THAT(BackwardListOf(root), ElementsAre(third, second, first));
  EXPECT_EQ(root.actual, third);
  EXPECT_EQ(root.inicio, third);
  EXPECT_EQ(root.cantidad, 3U);
}

TEST_F(CSetTriangulos2DTest, ALeafThatHoldsExactlyItsCapacitySplitsForTheNext) {
  FillEvenly(root, 150);
  ASSERT_EQ(root.hijos, nullptr);
  ASSERT_EQ(root.cantidad, 150U);
  FileSmall(root, 700, 200);
  ASSERT_NE(root.hijos, nullptr);
  EXPECT_EQ(root.cantidad, 0U);
  EXPECT_EQ(root.Cantidad(), 151U);
  EXPECT_EQ(root.hijos[2].cantidad, 38U);
  EXPECT_EQ(root.hijos[3].cantidad, 39U) << "38 that moved down and the new one";
  EXPECT_EQ(root.primero, nullptr);
  EXPECT_EQ(root.ultimo, nullptr);
}

TEST_F(CSetTriangulos2DTest, ASplitKeepsTheOrderAndLeavesWhatStraddles) {
  CTriangulo2D* across = FileSmall(root, 499, 100);
  FillEvenly(root, 149);
  const std::vector<CTriangulo2D*> before = ListOf(root);
  FileSmall(root, 700, 200);
  EXPECT_THAT(ListOf(root), ElementsAre(across));
  EXPECT_EQ(across->GetSet(), &root);
  std::vector<CTriangulo2D*> expected;
  for (CTriangulo2D* t : before) {
    if (t->GetMaxX() < 500 && t->GetMaxY() < 500 && t != across) expected.push_back(t);
  }
  EXPECT_EQ(ListOf(root.hijos[2]), expected);
  EXPECT_EQ(root.hijos[2].actual, expected.back());
  EXPECT_EQ(root.hijos[2].inicio, expected.back());
  EXPECT_EQ(root.hijos[2].ultimo, expected.back());
  for (CTriangulo2D const* t : expected) EXPECT_EQ(t->GetSet(), &root.hijos[2]);
}

TEST_F(CSetTriangulos2DTest, ASplitLinksNothingAnew) {
  FillEvenly(root, 150);
  const std::vector<CTriangulo2D*> open = OpenOf(root);
  CTriangulo2D* added = FileSmall(root, 700, 200);
  std::vector<CTriangulo2D*> expected = open;
  expected.push_back(added);
  EXPECT_EQ(OpenOf(root), expected);
}

TEST_F(CSetTriangulos2DTest, ALeafThatHasPassedItsCapacityIsNeverSplit) {
  for (int i = 0; i < 151; ++i) root.InsertaOrdenado(Small(10 + i, 10), CMaximas<int>());
  FillEvenly(root, 60);
  EXPECT_EQ(root.hijos, nullptr);
  EXPECT_EQ(root.cantidad, 211U);
}

TEST_F(CSetTriangulos2DTest, AChildFilledPastItsCapacityByASplitStaysALeaf) {
  // All 150 in the lower left quadrant and one more of them: the root splits, and the child, exactly full, splits for
  // the new one too. Filled by hand to 151 before the split, it does not.
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CSetTriangulos2D& child = root.hijos[2];
  for (int i = 0; i < 151; ++i) child.InsertaOrdenado(Small(10 + i, 10), CMaximas<int>());
  FileSmall(root, 30, 30);
  EXPECT_EQ(child.hijos, nullptr);
  EXPECT_EQ(child.cantidad, 152U);
}

TEST_F(CSetTriangulos2DTest, ASplitThatMovesEverythingToOneChildSplitsThatOneInTurn) {
  for (int i = 0; i < 150; ++i) FileSmall(root, 2 + i % 25 * 4, 2 + i / 25 * 4);
  ASSERT_EQ(root.cantidad, 150U);
  FileSmall(root, 400, 400);
  ASSERT_NE(root.hijos, nullptr);
  ASSERT_NE(root.hijos[2].hijos, nullptr);
  EXPECT_EQ(root.Cantidad(), 151U);
  EXPECT_EQ(root.hijos[2].hijos[2].cantidad, 150U);
  EXPECT_EQ(root.hijos[2].hijos[2].hijos, nullptr) << "the new triangle went elsewhere";
}

TEST_F(CSetTriangulos2DTest, ALeafAtLevelTwelveKeepsGrowing) {
  CSetTriangulos2D deep(12);
  deep.EstableceDivisiones(Box(0, 0, 1000, 1000), false);
  FillEvenly(deep, 160);
  EXPECT_EQ(deep.hijos, nullptr);
  EXPECT_EQ(deep.cantidad, 160U);
}

TEST_F(CSetTriangulos2DTest, ALeafAtLevelElevenSplits) {
  CSetTriangulos2D deep(11);
  deep.EstableceDivisiones(Box(0, 0, 1000, 1000), false);
  FillEvenly(deep, 151);
  ASSERT_NE(deep.hijos, nullptr);
  EXPECT_EQ(deep.hijos[0].nivel, 12U);
}

// --- linking

/// Two triangles over the square 1 (0,0), 2 (0,10), 3 (10,10), 4 (10,0), with the diagonal 1-3. Clockwise.
class CSetTriangulos2DLinks : public CSetTriangulos2DTest {
 protected:
  std::vector<CCoor3D<int>> p = Numbered({{0, 0}, {0, 10}, {10, 10}, {10, 0}, {30, 0}, {0, 30}, {-20, -5}});
  CTriangulo2D upper{&p[0], &p[1], &p[2]}, lower{&p[0], &p[2], &p[3]};

  ~CSetTriangulos2DLinks() override { root.clear(); }
};

TEST_F(CSetTriangulos2DLinks, TheFirstTriangleHasThreeFreeSidesAndIsOpen) {
  root.Inserta(upper);
  EXPECT_EQ(root.primero->LadosLimite(), 3);
  EXPECT_THAT(OpenOf(root), ElementsAre(root.primero));
}

TEST_F(CSetTriangulos2DLinks, TheSecondFindsTheFirstThroughTheOpenListAlone) {
  root.EstableceDivisiones(Box(500, 500, 600, 600), false);  // holds neither end of the side: no search by place
  root.Inserta(upper);
  root.Inserta(lower);
  EXPECT_EQ(root.primero->GetVecino31(), root.ultimo);
  EXPECT_EQ(root.ultimo->GetVecino12(), root.primero);
  EXPECT_EQ(root.primero->LadosLimite(), 2);
  EXPECT_EQ(root.ultimo->LadosLimite(), 2);
  EXPECT_THAT(OpenOf(root), ElementsAre(root.primero, root.ultimo));
}

TEST_F(CSetTriangulos2DLinks, WithAnEmptyOpenListTheSearchIsByPlace) {
  root.Inserta(upper);
  root.abiertos.clear();
  root.Inserta(lower);
  EXPECT_EQ(root.primero->GetVecino31(), root.ultimo);
  EXPECT_EQ(root.ultimo->GetVecino12(), root.primero);
}

TEST_F(CSetTriangulos2DLinks, TheSearchByPlaceLooksNowhereElse) {
  root.EstableceDivisiones(Box(500, 500, 600, 600), false);
  root.Inserta(upper);
  root.abiertos.clear();
  root.Inserta(lower);
  EXPECT_EQ(root.primero->LadosLimite(), 3);
  EXPECT_EQ(root.ultimo->LadosLimite(), 3);
}

TEST_F(CSetTriangulos2DLinks, ASideThatRunsTheSameWayIsNoNeighbour) {
  root.Inserta(upper);
  root.Inserta(CTriangulo2D(&p[0], &p[1], &p[5]));
  EXPECT_EQ(root.primero->LadosLimite(), 3);
}

TEST_F(CSetTriangulos2DLinks, AllThreeSidesFindTheirNeighboursAndReportTheirPlace) {
  const CTriangulo2D left(&p[1], &p[0], &p[6]), above(&p[5], &p[2], &p[1]), below(&p[2], &p[3], &p[0]);
  root.Inserta(left);
  root.Inserta(above);
  root.Inserta(below);
  root.Inserta(upper);
  CTriangulo2D* middle = root.ultimo;
  EXPECT_EQ(middle->GetVecino12(), Filed(root, left));
  EXPECT_EQ(middle->GetVecino23(), Filed(root, above));
  EXPECT_EQ(middle->GetVecino31(), Filed(root, below));
  EXPECT_EQ(Filed(root, left)->GetVecino12(), middle) << "its first side";
  EXPECT_EQ(Filed(root, above)->GetVecino23(), middle) << "its second side";
  EXPECT_EQ(Filed(root, below)->GetVecino31(), middle) << "its third side";
}

TEST_F(CSetTriangulos2DLinks, ATriangleWithTwoFreeSidesStaysOpenAfterOneAndLeavesAtTheNext) {
  const CTriangulo2D left(&p[1], &p[0], &p[6]), above(&p[5], &p[2], &p[1]);
  root.Inserta(upper);
  CTriangulo2D* middle = root.primero;
  root.Inserta(lower);
  ASSERT_EQ(middle->LadosLimite(), 2);
  root.Inserta(left);
  EXPECT_EQ(middle->LadosLimite(), 1);
  EXPECT_THAT(OpenOf(root), testing::Contains(middle));
  root.Inserta(above);
  EXPECT_EQ(middle->LadosLimite(), 0);
  EXPECT_THAT(OpenOf(root), testing::Not(testing::Contains(middle)));
}

TEST_F(CSetTriangulos2DLinks, ATriangleWithoutFreeSidesIsNotOpened) {
  const CTriangulo2D left(&p[1], &p[0], &p[6]), above(&p[5], &p[2], &p[1]);
  root.Inserta(left);
  root.Inserta(above);
  root.Inserta(lower);
  root.Inserta(upper);
  EXPECT_EQ(root.ultimo->LadosLimite(), 0);
  EXPECT_THAT(OpenOf(root), testing::Not(testing::Contains(root.ultimo)));
}

TEST_F(CSetTriangulos2DLinks, WhatTheOpenListLacksIsNotSearchedByPlace) {
  root.Inserta(upper);
  root.abiertos.clear();
  FileSmall(root, 600, 600);  // something to search in the open list
  root.Inserta(lower);
  EXPECT_EQ(root.primero->LadosLimite(), 3);
}

TEST_F(CSetTriangulos2DLinks, WithoutLinkingATriangleIsFiledAndOpenedAsItIs) {
  root.Inserta(upper);
  auto* t = new CTriangulo2D(lower);
  root.InsertaOrdenado(t, CMaximas<int>(), false);
  EXPECT_EQ(root.ultimo, t);
  EXPECT_EQ(t->LadosLimite(), 3);
  EXPECT_EQ(t->GetSet(), &root);
  EXPECT_THAT(OpenOf(root), ElementsAre(root.primero, t));
}

TEST_F(CSetTriangulos2DLinks, AClosedSetGivesNoNeighbour) {
  root.Inserta(upper);
  root.QuitaTrianguloActual();
  int side = 9;
  EXPECT_EQ(root.GetContieneLado(p[0], p[2], side), nullptr);
}

TEST_F(CSetTriangulos2DLinks, TheSearchByPlaceSkipsAClosedChild) {
  root.EstableceDivisiones(Box(-1000, -1000, 1000, 1000), true);  // the triangle lies in child 1
  for (CCoor3D<int>& q : p) q.x += 100, q.y += 100;
  const CTriangulo2D moved(&p[0], &p[1], &p[2]);
  root.Inserta(moved);
  ASSERT_EQ(root.hijos[1].cantidad, 1U);
  root.abiertos.clear();
  int side = 0;
  EXPECT_NE(root.GetContieneLado(p[1], p[0], side), nullptr);
  EXPECT_EQ(side, 1);
  root.hijos[1].QuitaTrianguloActual();
  EXPECT_EQ(root.GetContieneLado(p[1], p[0], side), nullptr);
}

TEST_F(CSetTriangulos2DLinks, ASideFromAPointToItselfHasNoNeighbour) {
  root.Inserta(upper);
  root.abiertos.clear();
  int side = 0;
  EXPECT_EQ(root.GetContieneLado(p[0], p[0], side), nullptr);
}

TEST_F(CSetTriangulos2DLinks, TheSearchByPlaceStartsFromTheCursorAndGoesBothWays) {
  // Two copies hold the same side: the one nearer to the cursor answers, forward first.
  for (int i = 0; i < 2; ++i) {
    root.InsertaOrdenado(new CTriangulo2D(upper), CMaximas<int>(), false);
    root.InsertaOrdenado(new CTriangulo2D(lower), CMaximas<int>(), false);
  }
  root.abiertos.clear();
  const std::vector<CTriangulo2D*> list = ListOf(root);  // upper, lower, upper, lower
  int side = 0;
  root.actual = list[1];
  EXPECT_EQ(root.GetContieneLado(p[1], p[0], side), list[0]) << "one step back comes before one step forward";
  root.actual = list[2];
  EXPECT_EQ(root.GetContieneLado(p[1], p[0], side), list[2]);
  root.actual = list[3];
  EXPECT_EQ(root.GetContieneLado(p[1], p[0], side), list[2]);
}

TEST_F(CSetTriangulos2DLinks, WithoutACursorAThirdOfTheSumOfXChoosesTheEndToStartFrom) {
  // The side runs between x = 30 and x = 45: a third of the sum is 25, their mean 37.
  auto q = Numbered({{30, 0}, {45, 0}, {40, 20}});
  const CTriangulo2D t(&q[0], &q[1], &q[2]);
  root.InsertaOrdenado(new CTriangulo2D(t), CMaximas<int>(), false);
  root.InsertaOrdenado(new CTriangulo2D(t), CMaximas<int>(), false);
  root.abiertos.clear();
  root.actual = nullptr;
  int side = 0;
  root.EstableceDivisiones(Box(0, 0, 60, 60), false);  // centre at 30
  EXPECT_EQ(root.GetContieneLado(q[1], q[0], side), root.primero) << "25 lies left of 30, though the mean does not";
  root.EstableceDivisiones(Box(0, 0, 50, 50), false);  // centre at 25
  EXPECT_EQ(root.GetContieneLado(q[1], q[0], side), root.ultimo) << "25 is not less than 25";
  root.clear();
}

TEST_F(CSetTriangulos2DLinks, TheSearchByPlaceGoesDownToTheChildrenInOrder) {
  root.EstableceDivisiones(Box(-100, -100, 100, 100), true);
  for (unsigned i : {3U, 1U}) {
    root.hijos[i].InsertaOrdenado(new CTriangulo2D(upper), CMaximas<int>(), false);
    root.hijos[i].EstableceDivisiones(Box(-100, -100, 100, 100), false);
  }
  root.abiertos.clear();
  int side = 0;
  EXPECT_EQ(root.GetContieneLado(p[1], p[0], side), root.hijos[1].primero);
}

// --- counting, taking out, asking

TEST_F(CSetTriangulos2DTest, CountsItsSubtreeUntilItIsClosed) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  FileSmall(root, 499, 10);
  FileSmall(root, 10, 10);
  FileSmall(root, 600, 10);
  EXPECT_EQ(root.Cantidad(), 3U);
  root.QuitaTrianguloActual();
  EXPECT_EQ(root.Cantidad(), 1U) << "its own list alone";
}

TEST_F(CSetTriangulos2DTest, ClearDestroysTheTrianglesAndLeavesTheChildren) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  FileSmall(root, 10, 10);
  FileSmall(root, 499, 10);
  root.clear();
  EXPECT_EQ(root.Cantidad(), 0U);
  EXPECT_THAT(root.abiertos, IsEmpty());
  EXPECT_EQ(root.inicio, nullptr);
  EXPECT_EQ(root.actual, nullptr);
  ASSERT_NE(root.hijos, nullptr);
  EXPECT_EQ(root.hijos[2].primero, nullptr);
}

TEST_F(CSetTriangulos2DTest, VaciaGivesBackAnOpenLeafOfTheSameLevel) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  FileSmall(root, 10, 10);
  root.QuitaTrianguloActual();
  root.Vacia();
  EXPECT_EQ(root.hijos, nullptr);
  EXPECT_FALSE(root.cerrado);
  EXPECT_EQ(root.Cantidad(), 0U);
  EXPECT_EQ(root.nivel, 0U);
}

TEST_F(CSetTriangulos2DTest, ACopySharesTreeAndListsAndHasAnOpenListOfItsOwn) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* t = FileSmall(root, 499, 10);
  CSetTriangulos2D copy(root);
  EXPECT_EQ(copy.hijos, root.hijos);
  EXPECT_EQ(copy.primero, t);
  EXPECT_EQ(copy.ultimo, t);
  EXPECT_EQ(copy.inicio, t);
  EXPECT_EQ(copy.cantidad, 1U);
  EXPECT_EQ(PlanOf(copy.maximas), PlanOf(root.maximas));
  copy.abiertos.clear();
  EXPECT_EQ(root.abiertos.size(), 1U);
  copy.hijos = nullptr;  // what is shared stays with the original
  copy.primero = nullptr;
}

TEST_F(CSetTriangulos2DTest, TakingATriangleOutJoinsTheList) {
  CTriangulo2D* first = FileSmall(root, 10, 10);
  CTriangulo2D* second = FileSmall(root, 30, 10);
  CTriangulo2D* third = FileSmall(root, 50, 10);
  root.Borra(second);
  EXPECT_THAT(ListOf(root), ElementsAre(first, third));
  EXPECT_THAT(BackwardListOf(root), ElementsAre(third, first));
  EXPECT_EQ(root.cantidad, 2U);
  root.Borra(first);
  EXPECT_EQ(root.primero, third);
  root.Borra(third);
  EXPECT_EQ(root.primero, nullptr);
  EXPECT_EQ(root.ultimo, nullptr);
  EXPECT_EQ(root.actual, nullptr);
  EXPECT_EQ(root.inicio, nullptr);
  root.abiertos.clear();
  for (CTriangulo2D* t : {first, second, third}) delete t;
}

TEST_F(CSetTriangulos2DTest, TheCursorMovesToThePreviousTriangleElseToTheNext) {
  CTriangulo2D* first = FileSmall(root, 10, 10);
  CTriangulo2D* second = FileSmall(root, 30, 10);
  CTriangulo2D* third = FileSmall(root, 50, 10);
  root.Borra(third);
  EXPECT_EQ(root.actual, second);
  EXPECT_EQ(root.inicio, second);
  root.actual = root.inicio = first;
  root.Borra(first);
  EXPECT_EQ(root.actual, second);
  EXPECT_EQ(root.inicio, second);
  root.abiertos.clear();
  for (CTriangulo2D* t : {first, third}) delete t;
}

TEST_F(CSetTriangulos2DTest, ATriangleThatIsNoCursorLeavesTheCursorsAlone) {
  CTriangulo2D* first = FileSmall(root, 10, 10);
  CTriangulo2D* second = FileSmall(root, 30, 10);
  root.Borra(first);
  EXPECT_EQ(root.actual, second);
  EXPECT_EQ(root.inicio, second);
  root.abiertos.clear();
  delete first;
}

TEST_F(CSetTriangulos2DTest, TheStartOfTheRootFollowsATriangleTakenOutOfAChild) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* above = FileSmall(root, 499, 10);
  CTriangulo2D* first = FileSmall(root, 10, 10);
  CTriangulo2D* second = FileSmall(root, 30, 10);
  root.inicio = second;
  root.hijos[2].Borra(second);
  EXPECT_EQ(root.inicio, first) << "the child's new cursor";
  root.hijos[2].Borra(first);
  EXPECT_EQ(root.inicio, above) << "the child has none left: that of the nearest ancestor";
  root.abiertos.clear();
  for (CTriangulo2D* t : {first, second}) delete t;
}

TEST_F(CSetTriangulos2DTest, GetActualPrefersTheOwnStartThenAChildsThenAnAncestors) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CSetTriangulos2D& child = root.hijos[2];
  child.EstableceDivisiones(child.maximas, true);
  CTriangulo2D* above = FileSmall(root, 499, 10);
  EXPECT_EQ(child.GetActual(true), above);
  EXPECT_EQ(child.GetActual(false), nullptr) << "without children it gives its own, whatever that is";
  CTriangulo2D* inGrandchild3 = FileSmall(root, 400, 10);
  CTriangulo2D* inGrandchild0 = FileSmall(root, 10, 400);
  ASSERT_EQ(inGrandchild3->GetSet(), &child.hijos[3]);
  EXPECT_EQ(child.GetActual(true), inGrandchild0) << "in index order";
  CTriangulo2D* own = FileSmall(root, 249, 10);
  ASSERT_EQ(own->GetSet(), &child);
  EXPECT_EQ(child.GetActual(true), own);
  EXPECT_EQ(child.GetActual(false), own);
}

TEST_F(CSetTriangulos2DTest, GetActualPassesOverAClosedSet) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* above = FileSmall(root, 499, 10);
  FileSmall(root, 10, 10);
  root.hijos[2].QuitaTrianguloActual();
  EXPECT_EQ(root.hijos[2].GetActual(true), above);
  EXPECT_EQ(root.hijos[2].GetActual(false), above);
}

TEST_F(CSetTriangulos2DTest, GetLadosGivesTheSidesOfTheOpenSetsOfItsSubtree) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  FileSmall(root, 499, 10);  // 1, 2, 3
  FileSmall(root, 10, 10);   // 4, 5, 6
  FileSmall(root, 600, 10);  // 7, 8, 9
  root.hijos[2].QuitaTrianguloActual();
  CSetLados2D sides;
  root.GetLados(sides);
  EXPECT_THAT(DirectedNumbers(sides.lados),
              ElementsAre(Pair(1, 2), Pair(2, 3), Pair(3, 1), Pair(7, 8), Pair(8, 9), Pair(9, 7)));
}

TEST_F(CSetTriangulos2DTest, TheCheckOfOuterSidesTakesFreeOwnSidesAndEverySideBelow) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* own = FileSmall(root, 499, 10);   // 1, 2, 3
  CTriangulo2D* below = FileSmall(root, 10, 10);  // 4, 5, 6
  own->SetVecino23(below);
  below->SetVecino12(own);
  CSetLados2D sides;
  root.CompruebaLadosExteriores(sides);
  EXPECT_THAT(DirectedNumbers(sides.lados), ElementsAre(Pair(1, 2), Pair(3, 1), Pair(4, 5), Pair(5, 6), Pair(6, 4)));
}

TEST_F(CSetTriangulos2DTest, TheTrianglesOfAPointAreThoseThatHaveItAsAVertex) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* t = FileSmall(root, 10, 10);
  FileSmall(root, 30, 10);
  std::vector<CTriangulo2D*> found;
  root.GetTriangulosDePunto(t->P2(), found);
  EXPECT_THAT(found, ElementsAre(t));
}

TEST_F(CSetTriangulos2DTest, TheTrianglesOfAPointAreLookedForUpToTheFirstToItsRight) {
  // The list is not sorted by x: a triangle that stands behind one to the right of the point is not met.
  CTriangulo2D* before = FileSmall(root, 10, 10);
  FileSmall(root, 700, 10);
  auto* behind = new CTriangulo2D(before->P1(), before->P2(), before->P3());
  root.InsertaOrdenado(behind, CMaximas<int>(), false);
  std::vector<CTriangulo2D*> found;
  root.GetTriangulosDePunto(before->P1(), found);
  EXPECT_THAT(found, ElementsAre(before));
}

TEST_F(CSetTriangulos2DTest, BelowTheRootOnlySetsWhoseBoxHoldsThePointAreSearched) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* t = FileSmall(root, 10, 10);
  root.hijos[2].maximas = Box(400, 400, 500, 500);
  std::vector<CTriangulo2D*> found;
  root.GetTriangulosDePunto(t->P1(), found);
  EXPECT_THAT(found, IsEmpty());
}

TEST_F(CSetTriangulos2DTest, CheckingANewPointStampsEveryTriangle) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* own = FileSmall(root, 499, 10);
  CTriangulo2D* below = FileSmall(root, 10, 10);
  root.ComprobarPuntoNuevo(CCoor3D<int>(1, 2, 3, 44));
  EXPECT_EQ(own->GetUltimoPuntoProyectado(), 44);
  EXPECT_EQ(below->GetUltimoPuntoProyectado(), 44);
  EXPECT_FALSE(own->Borrado());
  root.Lista();
  EXPECT_EQ(root.Cantidad(), 2U);
}

// --- closing

TEST_F(CSetTriangulos2DTest, ClosingCutsTheSubtreeOffFromTheLivingMesh) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* living = FileSmall(root, 499, 10);
  CTriangulo2D* closed = FileSmall(root, 10, 10);
  CTriangulo2D* other = FileSmall(root, 30, 10);
  closed->SetVecino12(living);
  living->SetVecino31(closed);
  closed->SetVecino23(other);
  other->SetVecino12(closed);
  EXPECT_EQ(root.hijos[2].QuitaTrianguloActual(), 2U);
  EXPECT_TRUE(root.hijos[2].cerrado);
  EXPECT_EQ(living->LadosLimite(), 3);
  EXPECT_EQ(closed->LadosLimite(), 3);
  EXPECT_EQ(other->LadosLimite(), 3);
  EXPECT_THAT(OpenOf(root), ElementsAre(living)) << "its triangles leave the open list";
  EXPECT_EQ(root.hijos[2].actual, nullptr);
  EXPECT_EQ(root.hijos[2].inicio, nullptr);
  EXPECT_THAT(ListOf(root.hijos[2]), ElementsAre(closed, other)) << "they wait for the worker";
}

TEST_F(CSetTriangulos2DTest, ClosingClosesTheChildren) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  FileSmall(root, 499, 10);
  FileSmall(root, 10, 10);
  FileSmall(root, 600, 600);
  EXPECT_EQ(root.QuitaTrianguloActual(), 3U);
  for (unsigned i = 0; i < 4; ++i) EXPECT_TRUE(root.hijos[i].cerrado);
  EXPECT_THAT(root.abiertos, IsEmpty());
  EXPECT_EQ(root.inicio, nullptr);
}

TEST_F(CSetTriangulos2DTest, ASetIsClosedOnce) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* t = FileSmall(root, 10, 10);
  EXPECT_EQ(root.hijos[2].QuitaTrianguloActual(), 1U);
  CTriangulo2D other = Small(30, 30);
  t->SetVecino12(&other);
  EXPECT_EQ(root.hijos[2].QuitaTrianguloActual(), 0U);
  EXPECT_EQ(t->GetVecino12(), &other) << "a second closing touches nothing";
  t->SetVecino12(nullptr);
}

TEST_F(CSetTriangulos2DTest, AStartThatIsClosedAwayIsReplacedByTheCursorOfAnAncestor) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CSetTriangulos2D& child = root.hijos[2];
  child.EstableceDivisiones(child.maximas, true);
  CTriangulo2D* inRoot = FileSmall(root, 499, 10);
  CTriangulo2D* inChild = FileSmall(root, 249, 10);
  CTriangulo2D* inGrandchild = FileSmall(root, 10, 10);
  root.inicio = inGrandchild;
  child.hijos[2].QuitaTrianguloActual();
  EXPECT_EQ(root.inicio, inChild);
  child.QuitaTrianguloActual();
  EXPECT_EQ(root.inicio, inRoot);
  root.QuitaTrianguloActual();
  EXPECT_EQ(root.inicio, nullptr);
}

TEST_F(CSetTriangulos2DTest, WithoutAnAncestorsCursorTheStartIsLost) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* t = FileSmall(root, 10, 10);
  FileSmall(root, 600, 10);
  root.inicio = t;
  root.hijos[2].QuitaTrianguloActual();
  EXPECT_EQ(root.inicio, nullptr) << "a sibling is not asked";
}

TEST_F(CSetTriangulos2DTest, AStartInAnotherSetStays) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  FileSmall(root, 10, 10);
  CTriangulo2D* elsewhere = FileSmall(root, 600, 10);
  root.inicio = elsewhere;
  root.hijos[2].QuitaTrianguloActual();
  EXPECT_EQ(root.inicio, elsewhere);
}

// --- emptying

class CSetTriangulos2DSpill : public CSetTriangulos2DTest {
 protected:
  /// The records that a set writes.
  std::vector<Numbers> Saved(CSetTriangulos2D& set) const {
    CFile file(folder.Path("spill"), CFile::modeCreate | CFile::modeReadWrite);
    EXPECT_TRUE(set.Salva(&file));
    EXPECT_TRUE(file.Close());
    const std::string bytes = BytesOf(folder.Path("spill"));
    EXPECT_EQ(bytes.size() % 12, 0U);
    std::vector<Numbers> records;
    const auto at = [&bytes](std::size_t i) {
      std::uint32_t value = 0;
      for (std::size_t b = 4; b-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[i + b]);
      return static_cast<int>(value);
    };
    for (std::size_t i = 0; i < bytes.size(); i += 12) records.emplace_back(at(i), at(i + 4), at(i + 8));
    return records;
  }

  ScratchFolder folder;
};

TEST_F(CSetTriangulos2DSpill, TheOwnListComesFirstThenTheChildrenInOrder) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  FileSmall(root, 600, 10);   // 1 2 3, child 3
  FileSmall(root, 10, 10);    // 4 5 6, child 2
  FileSmall(root, 499, 10);   // 7 8 9, own
  FileSmall(root, 10, 600);   // 10 11 12, child 0
  FileSmall(root, 600, 600);  // 13 14 15, child 1
  FileSmall(root, 20, 600);   // 16 17 18, child 0
  FileSmall(root, 10, 499);   // 19 20 21, own
  root.QuitaTrianguloActual();
  EXPECT_THAT(Saved(root), ElementsAre(Numbers(7, 8, 9), Numbers(19, 20, 21), Numbers(10, 11, 12), Numbers(16, 17, 18),
                                       Numbers(13, 14, 15), Numbers(4, 5, 6), Numbers(1, 2, 3)));
}

TEST_F(CSetTriangulos2DSpill, NumbersStandInTheTrianglesOwnOrderWithItsSigns) {
  auto p = Numbered({{0, 0}, {0, 10}, {10, 0}});
  p[0].num = -1;
  p[1].num = 2'000'000'000;
  root.Inserta(CTriangulo2D(&p[2], &p[0], &p[1]));
  EXPECT_THAT(Saved(root), ElementsAre(Numbers(3, -1, 2'000'000'000)));
}

TEST_F(CSetTriangulos2DSpill, AMissingVertexIsWrittenAsZero) {
  FileSmall(root, 10, 10)->SetPunto3(nullptr);
  EXPECT_THAT(Saved(root), ElementsAre(Numbers(1, 2, 0)));
}

TEST_F(CSetTriangulos2DSpill, NothingIsLeftAndASecondTimeWritesNothing) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  FileSmall(root, 10, 10);
  FileSmall(root, 499, 10);
  root.QuitaTrianguloActual();
  EXPECT_EQ(Saved(root).size(), 2U);
  EXPECT_EQ(root.hijos, nullptr);
  EXPECT_EQ(root.primero, nullptr);
  EXPECT_EQ(root.ultimo, nullptr);
  EXPECT_EQ(root.cantidad, 0U);
  EXPECT_TRUE(root.cerrado);
  EXPECT_THAT(Saved(root), IsEmpty());
}

TEST_F(CSetTriangulos2DSpill, ARefusalOfTheDiskIsToldAndEverythingIsFreedAllTheSame) {
  FaultGuard guard;
  CFile file(folder.Path("spill"), CFile::modeCreate | CFile::modeReadWrite);
  guard.Refuse(EOperacion::Escribe);
  CSetTriangulos2D big(12);
  const CTriangulo2D t = Small(10, 10);
  for (int i = 0; i < 100'000; ++i) big.InsertaOrdenado(new CTriangulo2D(t), CMaximas<int>(), false);
  EXPECT_FALSE(big.Salva(&file));
  EXPECT_EQ(big.cantidad, 0U);
  EXPECT_EQ(big.primero, nullptr);
}

// --- into a model

TEST_F(CSetTriangulos2DTest, ASetEmptiesIntoAModelWithoutFrameTrianglesAndLongOnes) {
  CTIN tin(0, 0, CDataSemilla());
  CSetPuntosMdt points(0, 0);
  for (At const& place : {At{0, 0}, At{0, 10}, At{10, 0}, At{40, 0}}) {
    CCoor3D<int> p(place.x, place.y, place.z, static_cast<int>(points.size()) + 1);
    points.push_back(CPuntoTIN(p), true);
  }
  tin.SetPuntosMdt(points);
  auto p = Numbered({{0, 0}, {0, 10}, {10, 0}, {40, 0}});
  CCoor3D<int> corner(-50, -50, 0, -1);
  root.EstableceDivisiones(Box(-1000, -1000, 1000, 1000), true);
  const CTriangulo2D kept(&p[2], &p[0], &p[1]), tooLong(&p[2], &p[1], &p[3]), atFrame(&p[0], &p[2], &corner);
  for (CTriangulo2D const& t : {kept, tooLong, atFrame}) root.Inserta(t);
  root.RellenaMDT(tin, 20, nullptr);
  EXPECT_EQ(root.Cantidad(), 0U);
  ASSERT_EQ(tin.Sort(nullptr, 0, false), kHecho);
  ASSERT_EQ(tin.Cantidad(), 1U);
  EXPECT_EQ(tin.Vertices(0), (Terna{0, 1, 2})) << "canonical: the smallest vertex first";
  root.clear();
}

TEST_F(CSetTriangulos2DTest, ASideOfExactlyTheLimitGoesIntoTheModel) {
  CTIN tin(0, 0, CDataSemilla());
  CSetPuntosMdt points(0, 0);
  auto p = Numbered({{0, 0}, {0, 10}, {10, 0}});
  for (CCoor3D<int> const& q : p) points.push_back(CPuntoTIN(q), true);
  tin.SetPuntosMdt(points);
  p = Numbered({{0, 0}, {0, 6}, {8, 0}});  // 6, 8 and 10
  root.Inserta(CTriangulo2D(&p[0], &p[1], &p[2]));
  root.RellenaMDT(tin, 9, nullptr);
  EXPECT_EQ(tin.Cantidad(), 0U);
  root.Inserta(CTriangulo2D(&p[0], &p[1], &p[2]));
  root.RellenaMDT(tin, 10, nullptr);
  EXPECT_EQ(tin.Cantidad(), 1U);
  root.clear();
}

// --- drawing

TEST_F(CSetTriangulos2DTest, DrawsTheBoxesOfTheSetsAndTheTrianglesBelowWhateverItWasAsked) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  FileSmall(root, 499, 10);
  FileSmall(root, 10, 10);
  CDibujo<int> drawing;
  root.GraficoMaxMin(drawing, false);
  std::vector<CString> codes;
  for (unsigned i = 0; i < drawing.Cantidad(); ++i) codes.push_back(drawing[i].GetCodigo());
  EXPECT_THAT(codes, ElementsAre(CString(L"LIMITE"), CString(L"LIMITE"), CString(L"LIMITE"), CString(L"LIMITE"),
                                 CString(L"1"), CString(L"LIMITE")))
      << "the own triangle is left out, that of the child is not";
  std::vector<std::pair<int, int>> ring;
  for (CCoor3D<int> const& q : drawing[0].Puntos()) ring.emplace_back(q.x, q.y);
  EXPECT_THAT(ring, ElementsAre(Pair(0, 0), Pair(0, 1000), Pair(1000, 1000), Pair(1000, 0), Pair(0, 0)));
  EXPECT_EQ(PlanOf(drawing[4].maximas), std::tuple(10, 10, 12, 12));
}

TEST_F(CSetTriangulos2DTest, DrawsItsOwnTrianglesWhenAsked) {
  FileSmall(root, 499, 10);
  CDibujo<int> drawing;
  root.GraficoMaxMin(drawing, true);
  ASSERT_EQ(drawing.Cantidad(), 2U);
  EXPECT_EQ(drawing[1].GetCodigo(), CString(L"0"));
}

}  // namespace
}  // namespace Meseta47
