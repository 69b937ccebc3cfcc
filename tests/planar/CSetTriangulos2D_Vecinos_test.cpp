// Linking a filed triangle to its neighbours.
#include <gmock/gmock.h>

#include "planar/CSetTriangulos2D.h"
#include "support/SetScene.h"

namespace Meseta47 {
namespace {

using test::Box;
using test::ListOf;
using test::Numbered;
using test::OpenOf;
using testing::ElementsAre;

/// Two triangles over the square 1 (0,0), 2 (0,10), 3 (10,10), 4 (10,0), with the diagonal 1-3. Clockwise.
class CSetTriangulos2DLinks : public test::SetScene {
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
  root.Abiertos().clear();
  root.Inserta(lower);
  EXPECT_EQ(root.primero->GetVecino31(), root.ultimo);
  EXPECT_EQ(root.ultimo->GetVecino12(), root.primero);
}

TEST_F(CSetTriangulos2DLinks, TheSearchByPlaceLooksNowhereElse) {
  root.EstableceDivisiones(Box(500, 500, 600, 600), false);
  root.Inserta(upper);
  root.Abiertos().clear();
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
  root.Abiertos().clear();
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
  root.Abiertos().clear();
  int side = 0;
  EXPECT_NE(root.GetContieneLado(p[1], p[0], side), nullptr);
  EXPECT_EQ(side, 1);
  root.hijos[1].QuitaTrianguloActual();
  EXPECT_EQ(root.GetContieneLado(p[1], p[0], side), nullptr);
}

TEST_F(CSetTriangulos2DLinks, ASideFromAPointToItselfHasNoNeighbour) {
  root.Inserta(upper);
  root.Abiertos().clear();
  int side = 0;
  EXPECT_EQ(root.GetContieneLado(p[0], p[0], side), nullptr);
}

TEST_F(CSetTriangulos2DLinks, TheSearchByPlaceStartsFromTheCursorAndGoesBothWays) {
  // Two copies hold the same side: the one nearer to the cursor answers, forward first.
  for (int i = 0; i < 2; ++i) {
    root.InsertaOrdenado(new CTriangulo2D(upper), CMaximas<int>(), false);
    root.InsertaOrdenado(new CTriangulo2D(lower), CMaximas<int>(), false);
  }
  root.Abiertos().clear();
  const std::vector<CTriangulo2D*> list = ListOf(root);  // upper, lower, upper, lower
  int side = 0;
  root.actual = list[1];
  EXPECT_EQ(root.GetContieneLado(p[1], p[0], side), list[2]) << "one step forward comes before one step back";
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
  root.Abiertos().clear();
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
  root.Abiertos().clear();
  int side = 0;
  EXPECT_EQ(root.GetContieneLado(p[1], p[0], side), root.hijos[1].primero);
}

}  // namespace
}  // namespace Meseta47
