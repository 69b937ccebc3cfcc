// The cavity of a new point: what is condemned, what is left, what is counted, and when nothing happens.
#include <gmock/gmock.h>

#include "planar/CSetTriangulos2D.h"
#include "support/PlanarScene.h"

namespace Meseta47 {
namespace {

using test::Box;
using test::DirectedNumbers;
using test::Numbered;
using test::NumbersOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using testing::UnorderedElementsAre;

constexpr int kSecondStamp = 10'000'000;

/// The square of four corners, -1 to -4, from -100 to 100, and the point 1 at its centre: four triangles.
///
///   -2 +---------+ -3
///      | \     / |
///      |   \ /   |
///      |    1    |
///      |   / \   |
///      | /     \ |
///   -1 +---------+ -4
class Implicados : public testing::Test {
 protected:
  Implicados() {
    for (int i = 0; i < 4; ++i) p[static_cast<std::size_t>(i)].num = -1 - i;
    p[4].num = 1;
    root.EstableceDivisiones(Box(-100, -100, 100, 100), false);
    root.Inserta(CTriangulo2D(&p[4], &p[0], &p[1]));
    root.Inserta(CTriangulo2D(&p[4], &p[1], &p[2]));
    root.Inserta(CTriangulo2D(&p[4], &p[2], &p[3]));
    root.Inserta(CTriangulo2D(&p[4], &p[3], &p[0]));
    west = root.primero;
    north = west->Sig();
    east = north->Sig();
    south = east->Sig();
  }

  int Search(CCoor3D<int>& q, CTriangulo2D* from, int tolerance = 0) {
    return root.Implicados(&q, sides, a, b, from, tolerance);
  }

  [[nodiscard]] std::vector<CTriangulo2D*> Open() { return root.Abiertos(); }

  void ExpectUntouched() const {
    EXPECT_EQ(root.Cantidad(), 4U);
    for (CTriangulo2D const* t : {west, north, east, south}) {
      EXPECT_FALSE(t->Borrado());
      EXPECT_EQ(t->LadosLimite(), 1) << "the side at the frame";
    }
  }

  // Heights: the square is level at 0 but for its centre, which is 1000 high.
  std::vector<CCoor3D<int>> p = Numbered({{-100, -100}, {-100, 100}, {100, 100}, {100, -100}, {0, 0, 1000}});
  CSetTriangulos2D root{0};
  CTriangulo2D *west, *north, *east, *south;
  CSetLados2D sides;
  unsigned a = 99, b = 99;
};

TEST_F(Implicados, TheSceneIsLinkedAllAround) { ExpectUntouched(); }

TEST_F(Implicados, ThePointsCavityIsCondemnedAndItsSidesGiven) {
  CCoor3D<int> q(-60, 10, 0, 2);  // in the circle of the west triangle alone
  EXPECT_EQ(Search(q, west), 0);
  EXPECT_THAT(DirectedNumbers(sides.lados), ElementsAre(Pair(1, -1), Pair(-1, -2), Pair(-2, 1)));
  EXPECT_EQ(root.Cantidad(), 3U);
  EXPECT_EQ(root.primero, north);
  EXPECT_EQ(q.num, 2);
}

TEST_F(Implicados, TheRimOfTheCavityIsOpenAndFreeOnItsSide) {
  CCoor3D<int> q(-60, 10, 0, 2);
  ASSERT_EQ(Search(q, west), 0);
  EXPECT_THAT(Open(), UnorderedElementsAre(north, south));
  EXPECT_EQ(north->LadosLimite(), 2);
  EXPECT_EQ(south->LadosLimite(), 2);
  EXPECT_EQ(east->LadosLimite(), 1);
}

TEST_F(Implicados, APointOnASideCondemnsBothOfItsTriangles) {
  CCoor3D<int> q(-50, 50, 0, 2);  // on the side from 1 to -2
  ASSERT_EQ(Search(q, west), 0);
  EXPECT_THAT(sides.lados, SizeIs(6));
  sides.BorraDuplicados();
  EXPECT_THAT(sides.lados, SizeIs(4)) << "the boundary, from which four triangles will be made";
  EXPECT_EQ(root.Cantidad(), 2U);
}

TEST_F(Implicados, APointOnTheCircleOfAThirdTriangleCondemnsThatOneToo) {
  // The circle of the west triangle is centred at (-100, 0) with radius 100, those of its neighbours likewise: (0, 0)
  // apart they meet at the corners. A point on the side 1 to -2 and on the circle of a triangle further on exists once
  // there is one: split the east triangle.
  CCoor3D<int> first(60, 0, 0, 2);
  ASSERT_EQ(Search(first, east), 0);
  sides.BorraDuplicados();
  for (CLado2D const& side : sides.lados) root.Inserta(CTriangulo2D(&first, side.P1(), side.P2()));
  // (1, -3, 2) has the circle through (0, 0), (100, 100), (60, 0): centre (30, 70), radius^2 5800.
  CCoor3D<int> onCircle(0, 140, 0, 3);
  CTriangulo2D const* third = nullptr;
  for (CTriangulo2D* t = root.primero; t != nullptr; t = t->Sig()) {
    if (t->EnCirculo(0, 140) && t != north) third = t;
  }
  ASSERT_NE(third, nullptr);
  EXPECT_EQ(third->Centro().centro.x, 30.0);
  EXPECT_EQ(third->Centro().centro.y, 70.0);
  sides.lados.clear();
  ASSERT_EQ(Search(onCircle, north), 0);
  EXPECT_THAT(sides.lados, SizeIs(6)) << "the north triangle and the one whose circle it touches";
  root.clear();
}

TEST_F(Implicados, TheCountersTellWhatWasTakenAndWhatWasFoundOutside) {
  CCoor3D<int> q(-60, 10, 0, 2);
  ASSERT_EQ(Search(q, west), 0);
  EXPECT_EQ(a, 2U) << "taken once by the walk and once into the cavity";
  EXPECT_EQ(b, 2U) << "its two neighbours, met by the growth";
}

TEST_F(Implicados, TheCountersOfALongerWalk) {
  CCoor3D<int> q(-60, 10, 0, 2);
  ASSERT_EQ(Search(q, east), 0);
  // Walk: east (outside), then its neighbours in the order of its sides, south or north (outside), then west.
  EXPECT_EQ(a, 5U) << "four taken by the walk, one into the cavity";
  EXPECT_EQ(b, 3U) << "three found outside by the walk; the growth meets them stamped and does not count them again";
}

TEST_F(Implicados, WithoutAStartThereIsNoAnswerButTwo) {
  CCoor3D<int> q(-60, 10, 0, 2);
  root.inicio = nullptr;
  EXPECT_EQ(Search(q, nullptr), 2);
  EXPECT_THAT(sides.lados, IsEmpty());
  EXPECT_EQ(a, 0U);
  EXPECT_EQ(b, 0U);
  EXPECT_EQ(q.num, 2);
  ExpectUntouched();
}

TEST_F(Implicados, AStartInAClosedSetAnswersTwo) {
  CSetTriangulos2D closed(1);
  auto* t = new CTriangulo2D(&p[0], &p[1], &p[2]);
  closed.InsertaOrdenado(t, CMaximas<int>(), false);
  closed.QuitaTrianguloActual();
  CCoor3D<int> q(-60, 10, 0, 2);
  EXPECT_EQ(Search(q, t), 2);
  root.inicio = nullptr;
}

TEST_F(Implicados, TheStartOfTheSetServesWhenNoneIsGiven) {
  CCoor3D<int> q(-60, 10, 0, 2);
  root.inicio = north;
  EXPECT_EQ(Search(q, nullptr), 0);
  EXPECT_EQ(root.Cantidad(), 3U);
}

TEST_F(Implicados, AGivenStartBecomesTheStartOfTheSet) {
  CCoor3D<int> q(1000, 1000, 0, 2);
  EXPECT_EQ(Search(q, north), 4);
  EXPECT_EQ(root.inicio, north);
}

TEST_F(Implicados, APointThatNoCircleHoldsAnswersFour) {
  CCoor3D<int> q(1000, 1000, 0, 2);
  EXPECT_EQ(Search(q, north), 4);
  EXPECT_EQ(a, 5U) << "the south triangle stands in the queue twice, once from each side";
  EXPECT_EQ(b, 4U);
  EXPECT_THAT(sides.lados, IsEmpty());
  ExpectUntouched();
}

TEST_F(Implicados, APointAtAVertexAnswersThreeAndDestroysNothing) {
  CCoor3D<int> q(0, 0, -5, 2);  // in plan, whatever its height
  EXPECT_EQ(Search(q, east), 3);
  EXPECT_EQ(q.num, 2);
  ExpectUntouched();
}

TEST_F(Implicados, ADuplicateFoundAfterPartOfTheCavityClearsEveryMark) {
  // 2 on the side of two triangles, then a point on the frame corner -2: circles of several triangles hold it, and the
  // first ones of the growth may not have it as a vertex.
  CCoor3D<int> first(-60, 60, 0, 2);
  ASSERT_EQ(Search(first, west), 0);
  sides.BorraDuplicados();
  for (CLado2D const& side : sides.lados) root.Inserta(CTriangulo2D(&first, side.P1(), side.P2()));
  const unsigned before = root.Cantidad();
  CCoor3D<int> again(-60, 60, 9, 3);
  sides.lados.clear();
  EXPECT_EQ(Search(again, root.primero), 3);
  EXPECT_EQ(root.Cantidad(), before);
  for (CTriangulo2D* t = root.primero; t != nullptr; t = t->Sig()) EXPECT_FALSE(t->Borrado());
  root.clear();
}

TEST_F(Implicados, BelowTheRootAPointOutsideTheBoxAnswersOne) {
  root.EstableceDivisiones(Box(-100, -100, 100, 100), true);
  CCoor3D<int> q(50, 50, 0, 2);
  EXPECT_EQ(root.hijos[2].Implicados(&q, sides, a, b, west, 0), 1);
  EXPECT_EQ(a, 0U);
  EXPECT_EQ(b, 0U);
  CCoor3D<int> outside(1000, 1000, 0, 2);
  EXPECT_NE(Search(outside, west), 1) << "the box of the root is not asked";
}

TEST_F(Implicados, TheOpenListIsEmptiedBeforeTheSearch) {
  ASSERT_FALSE(root.Abiertos().empty());
  CCoor3D<int> q(1000, 1000, 0, 2);
  EXPECT_EQ(Search(q, north), 4);
  EXPECT_THAT(root.Abiertos(), IsEmpty());
}

TEST_F(Implicados, APointHigherThanTheSurfaceByTheToleranceIsAccepted) {
  CCoor3D<int> q(-60, 10, 0, 2);
  // The west triangle falls from 1000 at the centre to 0 at x = -100: 400 at x = -60.
  q.z = 450;
  EXPECT_EQ(Search(q, west, 50), 0);
  EXPECT_EQ(q.num, 2);
}

TEST_F(Implicados, APointHigherThanTheSurfaceByMoreAnswersFiveAndKeepsTheSecondStamp) {
  CCoor3D<int> q(-60, 10, 451, 2);
  EXPECT_EQ(Search(q, west, 50), 5);
  EXPECT_EQ(q.num, 2 + kSecondStamp);
  EXPECT_EQ(q.z, 451);
  ExpectUntouched();
}

TEST_F(Implicados, APointFarBelowTheSurfaceIsAccepted) {
  CCoor3D<int> q(-60, 10, -2'000'000'000, 2);
  EXPECT_EQ(Search(q, west, 1), 0);
}

TEST_F(Implicados, HeightDifferencesArePastThirtyTwoBits) {
  p[0].z = p[1].z = p[4].z = -2'000'000'000;
  CCoor3D<int> q(-60, 10, 2'000'000'000, 2);
  EXPECT_EQ(Search(q, west, 50), 5);
}

TEST_F(Implicados, ADuplicateIsMeasuredToo) {
  // The first triangle that holds the duplicate has it as a vertex: nothing is condemned, and nothing can place it.
  CCoor3D<int> q(0, 0, 1000, 2);
  EXPECT_EQ(Search(q, west, 50), 5);
  EXPECT_EQ(q.num, 2 + kSecondStamp);
  ExpectUntouched();
}

TEST_F(Implicados, ADuplicateMetAfterATriangleThatPlacesItAnswersThree) {
  // The walk starts at a triangle whose circle holds the point, which is no vertex of it but lies within a unit of its
  // side, so that it can be placed; its neighbour has the point as a vertex.
  auto q = Numbered({{0, 0}, {0, 100}, {100, 0}, {51, 50}, {200, 200}});
  CSetTriangulos2D set(0);
  set.EstableceDivisiones(Box(-1000, -1000, 1000, 1000), false);
  set.Inserta(CTriangulo2D(&q[0], &q[1], &q[2]));
  set.Inserta(CTriangulo2D(&q[2], &q[1], &q[3]));
  ASSERT_EQ(set.primero->GetVecino23(), set.ultimo);
  CCoor3D<int> duplicate(51, 50, 0, 9);
  EXPECT_EQ(set.Implicados(&duplicate, sides, a, b, set.primero, 10), 3);
  EXPECT_EQ(duplicate.num, 9);
  EXPECT_EQ(set.Cantidad(), 2U);
  EXPECT_FALSE(set.primero->Borrado());
  duplicate.z = 1000;
  EXPECT_EQ(set.Implicados(&duplicate, sides, a, b, set.primero, 10), 5) << "too high, which is asked first";
  EXPECT_FALSE(set.primero->Borrado());
}

TEST_F(Implicados, APointThatNoTriangleOfItsCavityCanPlaceIsRefused) {
  // In the circle of the only triangle and outside the triangle itself.
  auto q = Numbered({{0, 0}, {0, 100}, {100, 0}});
  CSetTriangulos2D set(0);
  set.EstableceDivisiones(Box(-1000, -1000, 1000, 1000), false);
  set.Inserta(CTriangulo2D(&q[0], &q[1], &q[2]));
  CCoor3D<int> beyond(80, 80, 0, 9);
  EXPECT_EQ(set.Implicados(&beyond, sides, a, b, set.primero, 1000), 5);
  beyond.num = 10;
  sides.lados.clear();
  EXPECT_EQ(set.Implicados(&beyond, sides, a, b, set.primero, 0), 0) << "without a tolerance nothing is placed";
}

TEST_F(Implicados, TriangleOfAClosedSetIsNotEntered) {
  root.clear();
  root.EstableceDivisiones(Box(-1000, -1000, 1000, 1000), true);
  auto q = Numbered({{10, 10}, {10, 20}, {20, 10}, {20, 20}, {-10, 15}});
  const CTriangulo2D inChild(&q[1], &q[3], &q[2]), across(&q[0], &q[1], &q[2]), left(&q[4], &q[1], &q[0]);
  for (CTriangulo2D const& t : {inChild, across}) root.Inserta(t);
  root.Inserta(left);
  ASSERT_EQ(root.hijos[1].Cantidad(), 2U);
  CTriangulo2D* living = root.primero;
  ASSERT_EQ(living->LadosLimite(), 2);
  root.hijos[1].QuitaTrianguloActual();
  CCoor3D<int> in(12, 12, 0, 9);
  EXPECT_EQ(Search(in, living), 4) << "its circle lies in the closed set";
  root.clear();
}

}  // namespace
}  // namespace Meseta47
