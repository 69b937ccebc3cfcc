// Filing triangles in the tree, and splitting its leaves.
#include <gmock/gmock.h>

#include "planar/CSetTriangulos2D.h"
#include "support/SetScene.h"

namespace Meseta47 {
namespace {

using test::BackwardListOf;
using test::Box;
using test::ListOf;
using test::Numbered;
using test::OpenOf;
using testing::ElementsAre;

class CSetTriangulos2DFiling : public test::SetScene {};

TEST_F(CSetTriangulos2DFiling, ATriangleGoesToTheDeepestSetThatHoldsItsCircle) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  root.hijos[2].EstableceDivisiones(root.hijos[2].maximas, true);
  EXPECT_EQ(FileSmall(root, 10, 10)->GetSet(), &root.hijos[2].hijos[2]);
  EXPECT_EQ(FileSmall(root, 249, 10)->GetSet(), &root.hijos[2]) << "across the axis of the quadrant";
  EXPECT_EQ(FileSmall(root, 600, 10)->GetSet(), &root.hijos[3]);
  EXPECT_EQ(FileSmall(root, 10, 499)->GetSet(), &root) << "across the axis of the root";
}

TEST_F(CSetTriangulos2DFiling, ACircleThatTouchesTheCentreLineStraddlesIt) {
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

TEST_F(CSetTriangulos2DFiling, TheBoxGivenDecidesInPlaceOfTheCircle) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  const CTriangulo2D t = Small(10, 10);
  root.Inserta(t, Box(600, 600, 700, 700));
  EXPECT_EQ(Filed(root, t)->GetSet(), &root.hijos[1]);
}

TEST_F(CSetTriangulos2DFiling, ATriangleForAClosedChildStaysAbove) {
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  root.hijos[2].QuitaTrianguloActual();
  EXPECT_EQ(FileSmall(root, 10, 10)->GetSet(), &root);
}

TEST_F(CSetTriangulos2DFiling, FilingAppendsAtTheTailAndMovesTheCursors) {
  CTriangulo2D* first = FileSmall(root, 10, 10);
  CTriangulo2D* second = FileSmall(root, 600, 10);
  CTriangulo2D* third = FileSmall(root, 10, 600);
  EXPECT_THAT(ListOf(root), ElementsAre(first, second, third));
  EXPECT_THAT(BackwardListOf(root), ElementsAre(third, second, first));
  EXPECT_EQ(root.actual, third);
  EXPECT_EQ(root.inicio, third);
  EXPECT_EQ(root.cantidad, 3U);
}

TEST_F(CSetTriangulos2DFiling, ALeafThatHoldsExactlyItsCapacitySplitsForTheNext) {
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

TEST_F(CSetTriangulos2DFiling, ASplitKeepsTheOrderAndLeavesWhatStraddles) {
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

TEST_F(CSetTriangulos2DFiling, ASplitLinksNothingAnew) {
  FillEvenly(root, 150);
  const std::vector<CTriangulo2D*> open = OpenOf(root);
  CTriangulo2D* added = FileSmall(root, 700, 200);
  std::vector<CTriangulo2D*> expected = open;
  expected.push_back(added);
  EXPECT_EQ(OpenOf(root), expected);
}

TEST_F(CSetTriangulos2DFiling, ALeafThatHasPassedItsCapacityIsNeverSplit) {
  for (int i = 0; i < 151; ++i) root.InsertaOrdenado(Small(10 + i, 10), CMaximas<int>());
  FillEvenly(root, 60);
  EXPECT_EQ(root.hijos, nullptr);
  EXPECT_EQ(root.cantidad, 211U);
}

TEST_F(CSetTriangulos2DFiling, AChildFilledPastItsCapacityByASplitStaysALeaf) {
  // All 150 in the lower left quadrant and one more of them: the root splits, and the child, exactly full, splits for
  // the new one too. Filled by hand to 151 before the split, it does not.
  root.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  CSetTriangulos2D& child = root.hijos[2];
  for (int i = 0; i < 151; ++i) child.InsertaOrdenado(Small(10 + i, 10), CMaximas<int>());
  FileSmall(root, 30, 30);
  EXPECT_EQ(child.hijos, nullptr);
  EXPECT_EQ(child.cantidad, 152U);
}

TEST_F(CSetTriangulos2DFiling, ASplitThatMovesEverythingToOneChildSplitsThatOneInTurn) {
  for (int i = 0; i < 150; ++i) FileSmall(root, 2 + i % 25 * 4, 2 + i / 25 * 4);
  ASSERT_EQ(root.cantidad, 150U);
  FileSmall(root, 400, 400);
  ASSERT_NE(root.hijos, nullptr);
  ASSERT_NE(root.hijos[2].hijos, nullptr);
  EXPECT_EQ(root.Cantidad(), 151U);
  EXPECT_EQ(root.hijos[2].hijos[2].cantidad, 150U);
  EXPECT_EQ(root.hijos[2].hijos[2].hijos, nullptr) << "the new triangle went elsewhere";
}

TEST_F(CSetTriangulos2DFiling, ALeafAtLevelTwelveKeepsGrowing) {
  CSetTriangulos2D deep(12);
  deep.EstableceDivisiones(Box(0, 0, 1000, 1000), false);
  FillEvenly(deep, 160);
  EXPECT_EQ(deep.hijos, nullptr);
  EXPECT_EQ(deep.cantidad, 160U);
}

TEST_F(CSetTriangulos2DFiling, ALeafAtLevelElevenSplits) {
  CSetTriangulos2D deep(11);
  deep.EstableceDivisiones(Box(0, 0, 1000, 1000), false);
  FillEvenly(deep, 151);
  ASSERT_NE(deep.hijos, nullptr);
  EXPECT_EQ(deep.hijos[0].nivel, 12U);
}

}  // namespace
}  // namespace Meseta47
