// The tree of triangle lists: dividing, asking, counting, taking out, drawing.
#include "planar/CSetTriangulos2D.h"

#include <gmock/gmock.h>

#include "model/drawing/CDibujo.h"
#include "support/SetScene.h"

namespace Meseta47 {
namespace {

using test::BackwardListOf;
using test::Box;
using test::DirectedNumbers;
using test::ListOf;
using test::PlanOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class CSetTriangulos2DTree : public test::SetScene {};

TEST_F(CSetTriangulos2DTree, ANewSetIsAnEmptyLeafOfItsLevel) {
  const CSetTriangulos2D set(3);
  EXPECT_EQ(set.nivel, 3U);
  EXPECT_EQ(set.hijos, nullptr);
  EXPECT_EQ(set.padre, nullptr);
  EXPECT_FALSE(set.cerrado);
  EXPECT_EQ(set.Cantidad(), 0U);
  EXPECT_EQ(set.GetActual(true), nullptr);
}

TEST_F(CSetTriangulos2DTree, ChildrenAreTheQuadrants) {
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

TEST_F(CSetTriangulos2DTree, DividingInAdvanceBeginsAtOneMoreThanALeafHolds) {
  CSetTriangulos2D leaf, divided;
  leaf.EstableceDivisiones(150U, Box(0, 0, 100, 100));
  divided.EstableceDivisiones(151U, Box(0, 0, 100, 100));
  EXPECT_EQ(leaf.hijos, nullptr);
  ASSERT_NE(divided.hijos, nullptr);
  EXPECT_EQ(divided.CantidadNiveles(), 2U);
  EXPECT_EQ(PlanOf(divided.hijos[3].maximas), std::tuple(50, 0, 100, 50));
}

TEST_F(CSetTriangulos2DTree, DividingInAdvanceGivesEachChildAQuarter) {
  CSetTriangulos2D two, three;
  two.EstableceDivisiones(4U * 151 - 1, Box(0, 0, 100, 100));
  three.EstableceDivisiones(4U * 151, Box(0, 0, 100, 100));
  EXPECT_EQ(two.CantidadNiveles(), 2U);
  EXPECT_EQ(three.CantidadNiveles(), 3U);
}

TEST_F(CSetTriangulos2DTree, DividingInAdvanceEndsAtLevelTwelve) {
  CSetTriangulos2D eleventh(11), twelfth(12);
  eleventh.EstableceDivisiones(100'000U, Box(0, 0, 100, 100));
  twelfth.EstableceDivisiones(100'000U, Box(0, 0, 100, 100));
  ASSERT_NE(eleventh.hijos, nullptr);
  EXPECT_EQ(eleventh.hijos[0].hijos, nullptr);
  EXPECT_EQ(twelfth.hijos, nullptr);
}

TEST_F(CSetTriangulos2DTree, OnlyTheRootCountsOneLevelMore) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  EXPECT_EQ(root.CantidadNiveles(), 2U);
  EXPECT_EQ(root.hijos[0].CantidadNiveles(), 1U);
}

TEST_F(CSetTriangulos2DTree, APointOnACentreLineGoesRightOrUp) {
  EXPECT_EQ(root.BuscaHijo(CCoor3D<int>(1, 1, 0, 0)), -1) << "on a leaf";
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  EXPECT_EQ(root.BuscaHijo(CCoor3D<int>(499, 500, 0, 0)), 0);
  EXPECT_EQ(root.BuscaHijo(CCoor3D<int>(500, 500, 0, 0)), 1);
  EXPECT_EQ(root.BuscaHijo(CCoor3D<int>(499, 499, 0, 0)), 2);
  EXPECT_EQ(root.BuscaHijo(CCoor3D<int>(500, 499, 0, 0)), 3);
}

TEST_F(CSetTriangulos2DTree, ABoxThatTouchesACentreLineBelongsToNoChild) {
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

// --- counting, taking out, asking

TEST_F(CSetTriangulos2DTree, CountsItsSubtreeUntilItIsClosed) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  FileSmall(root, 499, 10);
  FileSmall(root, 10, 10);
  FileSmall(root, 600, 10);
  EXPECT_EQ(root.Cantidad(), 3U);
  root.QuitaTrianguloActual();
  EXPECT_EQ(root.Cantidad(), 1U) << "its own list alone";
}

TEST_F(CSetTriangulos2DTree, ClearDestroysTheTrianglesAndLeavesTheChildren) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  FileSmall(root, 10, 10);
  FileSmall(root, 499, 10);
  root.clear();
  EXPECT_EQ(root.Cantidad(), 0U);
  EXPECT_THAT(root.Abiertos(), IsEmpty());
  EXPECT_EQ(root.inicio, nullptr);
  EXPECT_EQ(root.actual, nullptr);
  ASSERT_NE(root.hijos, nullptr);
  EXPECT_EQ(root.hijos[2].primero, nullptr);
}

TEST_F(CSetTriangulos2DTree, VaciaGivesBackAnOpenLeafOfTheSameLevel) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  FileSmall(root, 10, 10);
  root.QuitaTrianguloActual();
  root.Vacia();
  EXPECT_EQ(root.hijos, nullptr);
  EXPECT_FALSE(root.cerrado);
  EXPECT_EQ(root.Cantidad(), 0U);
  EXPECT_EQ(root.nivel, 0U);
}

TEST_F(CSetTriangulos2DTree, ACopySharesTreeAndListsAndHasAnOpenListOfItsOwn) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* t = FileSmall(root, 499, 10);
  CSetTriangulos2D copy(root);
  EXPECT_EQ(copy.hijos, root.hijos);
  EXPECT_EQ(copy.primero, t);
  EXPECT_EQ(copy.ultimo, t);
  EXPECT_EQ(copy.inicio, t);
  EXPECT_EQ(copy.cantidad, 1U);
  EXPECT_EQ(PlanOf(copy.maximas), PlanOf(root.maximas));
  copy.Abiertos().clear();
  EXPECT_EQ(root.Abiertos().size(), 1U);
  copy.hijos = nullptr;  // what is shared stays with the original
  copy.primero = nullptr;
}

TEST_F(CSetTriangulos2DTree, TakingATriangleOutJoinsTheList) {
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
  root.Abiertos().clear();
  for (CTriangulo2D* t : {first, second, third}) delete t;
}

TEST_F(CSetTriangulos2DTree, TheCursorMovesToThePreviousTriangleElseToTheNext) {
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
  root.Abiertos().clear();
  for (CTriangulo2D* t : {first, third}) delete t;
}

TEST_F(CSetTriangulos2DTree, ATriangleThatIsNoCursorLeavesTheCursorsAlone) {
  CTriangulo2D* first = FileSmall(root, 10, 10);
  CTriangulo2D* second = FileSmall(root, 30, 10);
  root.Borra(first);
  EXPECT_EQ(root.actual, second);
  EXPECT_EQ(root.inicio, second);
  root.Abiertos().clear();
  delete first;
}

TEST_F(CSetTriangulos2DTree, TheStartOfTheRootFollowsATriangleTakenOutOfAChild) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* above = FileSmall(root, 499, 10);
  CTriangulo2D* first = FileSmall(root, 10, 10);
  CTriangulo2D* second = FileSmall(root, 30, 10);
  root.inicio = second;
  root.hijos[2].Borra(second);
  EXPECT_EQ(root.inicio, first) << "the child's new cursor";
  root.hijos[2].Borra(first);
  EXPECT_EQ(root.inicio, above) << "the child has none left: that of the nearest ancestor";
  root.Abiertos().clear();
  for (CTriangulo2D* t : {first, second}) delete t;
}

TEST_F(CSetTriangulos2DTree, GetActualPrefersTheOwnStartThenAChildsThenAnAncestors) {
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

TEST_F(CSetTriangulos2DTree, GetActualPassesOverAClosedSet) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* above = FileSmall(root, 499, 10);
  FileSmall(root, 10, 10);
  root.hijos[2].QuitaTrianguloActual();
  EXPECT_EQ(root.hijos[2].GetActual(true), above);
  EXPECT_EQ(root.hijos[2].GetActual(false), above);
}

TEST_F(CSetTriangulos2DTree, GetLadosGivesTheSidesOfTheOpenSetsOfItsSubtree) {
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

TEST_F(CSetTriangulos2DTree, TheCheckOfOuterSidesTakesFreeOwnSidesAndEverySideBelow) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* own = FileSmall(root, 499, 10);   // 1, 2, 3
  CTriangulo2D* below = FileSmall(root, 10, 10);  // 4, 5, 6
  own->SetVecino23(below);
  below->SetVecino12(own);
  CSetLados2D sides;
  root.CompruebaLadosExteriores(sides);
  EXPECT_THAT(DirectedNumbers(sides.lados), ElementsAre(Pair(1, 2), Pair(3, 1), Pair(4, 5), Pair(5, 6), Pair(6, 4)));
}

TEST_F(CSetTriangulos2DTree, TheTrianglesOfAPointAreThoseThatHaveItAsAVertex) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* t = FileSmall(root, 10, 10);
  FileSmall(root, 30, 10);
  std::vector<CTriangulo2D*> found;
  root.GetTriangulosDePunto(t->P2(), found);
  EXPECT_THAT(found, ElementsAre(t));
}

TEST_F(CSetTriangulos2DTree, TheTrianglesOfAPointAreLookedForUpToTheFirstToItsRight) {
  // The list is not sorted by x: a triangle that stands behind one to the right of the point is not met.
  CTriangulo2D* before = FileSmall(root, 10, 10);
  FileSmall(root, 700, 10);
  auto* behind = new CTriangulo2D(before->P1(), before->P2(), before->P3());
  root.InsertaOrdenado(behind, CMaximas<int>(), false);
  std::vector<CTriangulo2D*> found;
  root.GetTriangulosDePunto(before->P1(), found);
  EXPECT_THAT(found, ElementsAre(before));
}

TEST_F(CSetTriangulos2DTree, BelowTheRootOnlySetsWhoseBoxHoldsThePointAreSearched) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CTriangulo2D* t = FileSmall(root, 10, 10);
  root.hijos[2].maximas = Box(400, 400, 500, 500);
  std::vector<CTriangulo2D*> found;
  root.GetTriangulosDePunto(t->P1(), found);
  EXPECT_THAT(found, IsEmpty());
}

TEST_F(CSetTriangulos2DTree, CheckingANewPointStampsEveryTriangle) {
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

// --- drawing

TEST_F(CSetTriangulos2DTree, DrawsTheBoxesOfTheSetsAndTheTrianglesBelowWhateverItWasAsked) {
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

TEST_F(CSetTriangulos2DTree, DrawsItsOwnTrianglesWhenAsked) {
  FileSmall(root, 499, 10);
  CDibujo<int> drawing;
  root.GraficoMaxMin(drawing, true);
  ASSERT_EQ(drawing.Cantidad(), 2U);
  EXPECT_EQ(drawing[1].GetCodigo(), CString(L"0"));
}

}  // namespace
}  // namespace Meseta47
