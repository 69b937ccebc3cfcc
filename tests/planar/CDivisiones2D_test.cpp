#include "planar/CDivisiones2D.h"

#include <gmock/gmock.h>
#include <random>

#include "support/PlanarScene.h"

namespace Meseta47 {
namespace {

using test::Box;
using test::PlanOf;
using testing::ElementsAre;

CCoor3D<int> Place(int x, int y) { return CCoor3D<int>(x, y, 0, 0); }

CDivisiones2D const& Child(CDivisiones2D const& cell, unsigned i) { return cell.hijos[i]; }

/// Identity of the last point of a cell.
std::tuple<int, int, int> LastOf(CDivisiones2D const& cell) {
  return {cell.ultimaLista, cell.ultimaEntidad, cell.ultimoPuntoCelda};
}

/// A cell of four leaves, 0 to 100 each way.
class CDivisiones2DTest : public testing::Test {
 protected:
  CDivisiones2DTest() { root.EstableceDivisiones(201, Box(0, 0, 100, 100)); }
  CArbolDivisiones2D root;
};

TEST_F(CDivisiones2DTest, ANewCellIsAnEmptyLeaf) {
  const CArbolDivisiones2D cell;
  EXPECT_EQ(cell.nivel, 0U);
  EXPECT_EQ(cell.hijos, nullptr);
  EXPECT_EQ(cell.padre, nullptr);
  EXPECT_EQ(LastOf(cell), std::tuple(-1, -1, -1));
  EXPECT_EQ(cell.setAsociado, nullptr);
}

TEST_F(CDivisiones2DTest, ACopyRecordsItsPointsInItselfAndInTheSharedCells) {
  CArbolDivisiones2D copy;
  copy.Comparte(root);
  EXPECT_TRUE(copy.ColocaIndices(Place(10, 10), {0, 5, 6}));
  EXPECT_FALSE(copy.ColocaIndices(Place(20, 10), {0, 5, 7}));
  EXPECT_EQ(LastOf(copy), std::tuple(0, 5, 7));
  EXPECT_EQ(copy.lista.cantidad, 2);
  EXPECT_EQ(LastOf(Child(root, 2)), std::tuple(0, 5, 7));
  EXPECT_EQ(Child(root, 2).lista.cantidad, 2);
  EXPECT_EQ(LastOf(root), std::tuple(-1, -1, -1)) << "the owner is another root";
}

TEST_F(CDivisiones2DTest, TwoHundredPointsMakeASingleCell) {
  CArbolDivisiones2D cell;
  cell.EstableceDivisiones(200, Box(0, 0, 100, 100));
  EXPECT_EQ(cell.hijos, nullptr);
  EXPECT_EQ(cell.CantidadNiveles(), 1U);
  EXPECT_EQ(cell.centro.x, 50);
}

TEST_F(CDivisiones2DTest, TwoHundredAndOnePointsMakeFourCells) {
  ASSERT_NE(root.hijos, nullptr);
  EXPECT_EQ(root.CantidadNiveles(), 2U);
  EXPECT_EQ(PlanOf(Child(root, 0).maximas), std::tuple(0, 50, 50, 100));
  EXPECT_EQ(PlanOf(Child(root, 1).maximas), std::tuple(50, 50, 100, 100));
  EXPECT_EQ(PlanOf(Child(root, 2).maximas), std::tuple(0, 0, 50, 50));
  EXPECT_EQ(PlanOf(Child(root, 3).maximas), std::tuple(50, 0, 100, 50));
  for (unsigned i = 0; i < 4; ++i) {
    EXPECT_EQ(Child(root, i).nivel, 1U);
    EXPECT_EQ(Child(root, i).padre, &root);
    EXPECT_EQ(Child(root, i).hijos, nullptr);
    EXPECT_GT(Child(root, i).maximas.Minimo.z, Child(root, i).maximas.Maximo.z) << "a cell has no heights";
  }
}

TEST_F(CDivisiones2DTest, ACountIsSharedEvenlyAmongTheChildrenRoundedDown) {
  CArbolDivisiones2D one, two;
  one.EstableceDivisiones(4 * 201 - 1, Box(0, 0, 100, 100));
  two.EstableceDivisiones(4 * 201, Box(0, 0, 100, 100));
  EXPECT_EQ(one.CantidadNiveles(), 2U);
  EXPECT_EQ(two.CantidadNiveles(), 3U);
}

TEST_F(CDivisiones2DTest, NothingIsDividedAtLevelTwelve) {
  CArbolDivisiones2D eleventh, twelfth;
  eleventh.nivel = 11;
  twelfth.nivel = 12;
  eleventh.EstableceDivisiones(1'000'000, Box(0, 0, 100, 100));
  twelfth.EstableceDivisiones(1'000'000, Box(0, 0, 100, 100));
  ASSERT_NE(eleventh.hijos, nullptr);
  EXPECT_EQ(Child(eleventh, 0).nivel, 12U);
  EXPECT_EQ(Child(eleventh, 0).hijos, nullptr);
  EXPECT_EQ(twelfth.hijos, nullptr);
}

TEST_F(CDivisiones2DTest, DividingAgainDropsWhatWasThere) {
  root.ColocaIndices(Place(10, 10), {0, 0, 0});
  root.EstableceDivisiones(10, Box(0, 0, 10, 10));
  EXPECT_EQ(root.hijos, nullptr);
  EXPECT_EQ(LastOf(root), std::tuple(-1, -1, -1));
  EXPECT_EQ(root.lista.Cantidad(), 0);
}

TEST_F(CDivisiones2DTest, PointsOnACentreLineGoRightOrUp) {
  EXPECT_EQ(root.Hijo(Place(49, 50)), &root.hijos[0]);
  EXPECT_EQ(root.Hijo(Place(50, 50)), &root.hijos[1]);
  EXPECT_EQ(root.Hijo(Place(50, 49)), &root.hijos[3]);
  EXPECT_EQ(root.Hijo(Place(49, 49)), &root.hijos[2]);
}

TEST_F(CDivisiones2DTest, RecordingTellsTheFirstPointOfALeaf) {
  EXPECT_TRUE(root.ColocaIndices(Place(10, 10), {0, 0, 0}));
  EXPECT_FALSE(root.ColocaIndices(Place(20, 20), {0, 0, 1}));
  EXPECT_TRUE(root.ColocaIndices(Place(90, 90), {0, 0, 2})) << "the first of its leaf, though not of the root";
}

TEST_F(CDivisiones2DTest, EveryCellDownThePathHoldsTheLastPointAndTheCount) {
  root.ColocaIndices(Place(10, 10), {0, 3, 4});
  root.ColocaIndices(Place(20, 20), {1, 5, 6});
  root.ColocaIndices(Place(90, 90), {2, 7, 8});
  EXPECT_EQ(LastOf(root), std::tuple(2, 7, 8));
  EXPECT_EQ(root.lista.Cantidad(), 3);
  EXPECT_EQ(LastOf(root.hijos[2]), std::tuple(1, 5, 6));
  EXPECT_EQ(root.hijos[2].lista.Cantidad(), 2);
  EXPECT_EQ(LastOf(root.hijos[1]), std::tuple(2, 7, 8));
  EXPECT_EQ(LastOf(root.hijos[0]), std::tuple(-1, -1, -1));
}

TEST_F(CDivisiones2DTest, APointThatIsNotTheLastOfItsLeafGivesTheLeaf) {
  root.ColocaIndices(Place(10, 10), {0, 0, 0});
  root.ColocaIndices(Place(20, 20), {0, 0, 1});
  CDivisiones2D* cell = nullptr;
  EXPECT_FALSE(root.Inserta(Place(10, 10), {0, 0, 0}, cell));
  EXPECT_EQ(cell, &root.hijos[2]);
}

TEST_F(CDivisiones2DTest, TheLastPointOfALeafGivesTheLeaf) {
  root.ColocaIndices(Place(10, 10), {0, 0, 0});
  root.ColocaIndices(Place(20, 20), {0, 0, 1});
  root.ColocaIndices(Place(90, 90), {0, 0, 2});
  CDivisiones2D* cell = nullptr;
  EXPECT_TRUE(root.Inserta(Place(20, 20), {0, 0, 1}, cell));
  EXPECT_EQ(cell, &root.hijos[2]);
}

TEST_F(CDivisiones2DTest, TheLastPointOfSeveralCellsGivesTheLargest) {
  CArbolDivisiones2D deep;
  deep.EstableceDivisiones(16 * 201, Box(0, 0, 100, 100));
  ASSERT_EQ(deep.CantidadNiveles(), 4U);
  deep.ColocaIndices(Place(10, 10), {0, 0, 0});  // lower left of the lower left quadrant
  deep.ColocaIndices(Place(30, 30), {0, 0, 1});  // upper right of it
  deep.ColocaIndices(Place(90, 90), {0, 0, 2});
  CDivisiones2D* cell = nullptr;
  EXPECT_TRUE(deep.Inserta(Place(30, 30), {0, 0, 1}, cell));
  EXPECT_EQ(cell, &deep.hijos[2]) << "last of its leaf and of the quadrant above, not of the root";
  EXPECT_TRUE(deep.Inserta(Place(90, 90), {0, 0, 2}, cell));
  EXPECT_EQ(cell, &deep);
  EXPECT_TRUE(deep.Inserta(Place(10, 10), {0, 0, 0}, cell));
  EXPECT_EQ(cell->nivel, 2U) << "alone in a quarter of the quadrant, which it finishes with its leaf";
}

TEST_F(CDivisiones2DTest, ThreeNumbersTogetherIdentifyAPoint) {
  root.ColocaIndices(Place(10, 10), {1, 2, 3});
  CDivisiones2D* cell = nullptr;
  EXPECT_FALSE(root.Inserta(Place(10, 10), {0, 2, 3}, cell));
  EXPECT_FALSE(root.Inserta(Place(10, 10), {1, 0, 3}, cell));
  EXPECT_FALSE(root.Inserta(Place(10, 10), {1, 2, 0}, cell));
  EXPECT_TRUE(root.Inserta(Place(10, 10), {1, 2, 3}, cell));
}

TEST_F(CDivisiones2DTest, PruningRemovesChildrenThatAreAllEmptyAndOnlyThose) {
  CArbolDivisiones2D deep;
  deep.EstableceDivisiones(4 * 201, Box(0, 0, 100, 100));  // two levels below the root
  deep.ColocaIndices(Place(10, 10), {0, 0, 0});
  deep.Comprimir();
  ASSERT_NE(deep.hijos, nullptr) << "one of the four is filled, so all four stay";
  EXPECT_EQ(deep.hijos[0].hijos, nullptr) << "its own four were empty";
  EXPECT_EQ(deep.hijos[1].hijos, nullptr);
  EXPECT_EQ(deep.hijos[3].hijos, nullptr);
  ASSERT_NE(deep.hijos[2].hijos, nullptr);
  EXPECT_EQ(deep.CantidadNiveles(), 3U);
}

TEST_F(CDivisiones2DTest, PruningZeroesEveryCounterAndKeepsTheLastPoints) {
  root.ColocaIndices(Place(10, 10), {0, 1, 2});
  root.Comprimir();
  EXPECT_EQ(root.lista.Cantidad(), 0);
  EXPECT_EQ(root.hijos[2].lista.Cantidad(), 0);
  EXPECT_EQ(LastOf(root.hijos[2]), std::tuple(0, 1, 2));
}

TEST_F(CDivisiones2DTest, PruningATreeWithoutPointsLeavesOneCell) {
  root.Comprimir();
  EXPECT_EQ(root.hijos, nullptr);
  EXPECT_EQ(root.CantidadNiveles(), 1U);
}

TEST_F(CDivisiones2DTest, TheListsOfTheLeavesComeDepthFirstAndOnce) {
  CArbolDivisiones2D deep;
  deep.EstableceDivisiones(4 * 201, Box(0, 0, 100, 100));
  deep.ColocaIndices(Place(10, 10), {0, 0, 0});
  deep.Comprimir();
  std::vector<CListaPuntos const*> met;
  std::vector<int> position(deep.CantidadNiveles());
  for (CListaPuntos* list = deep.PrimeraLista(position); list != nullptr; list = deep.SiguienteLista(position)) {
    met.push_back(list);
  }
  CDivisiones2D const* filled = deep.hijos[2].hijos;
  EXPECT_THAT(met, ElementsAre(&deep.hijos[0].lista, &deep.hijos[1].lista, &filled[0].lista, &filled[1].lista,
                               &filled[2].lista, &filled[3].lista, &deep.hijos[3].lista));
}

TEST_F(CDivisiones2DTest, ASingleCellGivesItsOwnListOnce) {
  CArbolDivisiones2D cell;
  std::vector<int> position(cell.CantidadNiveles());
  EXPECT_EQ(cell.PrimeraLista(position), &cell.lista);
  EXPECT_EQ(cell.SiguienteLista(position), nullptr);
}

TEST_F(CDivisiones2DTest, TheIterationCanBeBegunAgain) {
  std::vector<int> position(root.CantidadNiveles());
  root.PrimeraLista(position);
  root.SiguienteLista(position);
  EXPECT_EQ(root.PrimeraLista(position), &root.hijos[0].lista);
  EXPECT_EQ(root.SiguienteLista(position), &root.hijos[1].lista);
}

TEST_F(CDivisiones2DTest, ClearEmptiesTheListsOfTheLeaves) {
  root.hijos[3].lista.Inserta(Place(60, 10));
  root.hijos[0].lista.Inserta(Place(10, 60));
  root.clear();
  EXPECT_EQ(root.hijos[3].lista.primero, nullptr);
  EXPECT_EQ(root.hijos[3].lista.Cantidad(), 0);
  EXPECT_EQ(root.hijos[0].lista.Cantidad(), 0);
  EXPECT_NE(root.hijos, nullptr);
}

TEST_F(CDivisiones2DTest, ASharedTreeStaysItsOwners) {
  root.ColocaIndices(Place(10, 10), {0, 1, 2});
  {
    CArbolDivisiones2D guest;
    guest.Comparte(root);
    EXPECT_EQ(guest.hijos, root.hijos);
    EXPECT_EQ(PlanOf(guest.maximas), PlanOf(root.maximas));
    EXPECT_EQ(guest.centro.x, 50);
    EXPECT_EQ(LastOf(guest), LastOf(root));
    EXPECT_EQ(guest.lista.Cantidad(), 1);
  }
  EXPECT_EQ(LastOf(root.hijos[2]), std::tuple(0, 1, 2)) << "the guest took nothing with it";
}

TEST_F(CDivisiones2DTest, ATreeThatGrowsWithItsPointsEndsAsTheOneThatWasDividedAtOnce) {
  CArbolDivisiones2D atOnce, growing;
  atOnce.EstableceDivisiones(64 * 201, Box(0, 0, 1000, 1000));
  growing.PreparaDivisiones(64 * 201, Box(0, 0, 1000, 1000));
  EXPECT_EQ(growing.hijos, nullptr);
  const std::vector<CCoor3D<int>> places{Place(10, 10), Place(990, 500), Place(11, 10), Place(500, 500),
                                         Place(0, 1000)};
  for (CArbolDivisiones2D* tree : {&atOnce, &growing}) {
    for (int i = 0; i < 5; ++i) tree->ColocaIndices(places[static_cast<std::size_t>(i)], {0, 0, i});
    tree->Comprimir();
  }
  const auto same = [](auto&& self, CDivisiones2D const& a, CDivisiones2D const& b) -> void {
    EXPECT_EQ(LastOf(a), LastOf(b));
    EXPECT_EQ(PlanOf(a.maximas), PlanOf(b.maximas));
    ASSERT_EQ(a.hijos == nullptr, b.hijos == nullptr);
    for (unsigned i = 0; a.hijos != nullptr && i < 4; ++i) self(self, a.hijos[i], b.hijos[i]);
  };
  same(same, atOnce, growing);
  EXPECT_EQ(growing.CantidadNiveles(), 5U);
}

TEST_F(CDivisiones2DTest, PointsPlacedInARowLeaveWhatTheyLeaveOneByOne) {
  constexpr unsigned kPoints = 64 * 201;
  CArbolDivisiones2D oneByOne, inARow, owner, guest;
  for (CArbolDivisiones2D* tree : {&oneByOne, &inARow, &owner})
    tree->EstableceDivisiones(kPoints, Box(0, 0, 1000, 1000));
  guest.Comparte(owner);
  std::mt19937 random(11);
  std::vector<CCoor3D<int>> places;
  for (int i = 0; i < 200; ++i) {  // some to a leaf, some on and beyond the limits
    const CCoor3D<int> about = Place(static_cast<int>(random() % 1100), static_cast<int>(random() % 1100));
    for (int n = static_cast<int>(random() % 5); n > 0; --n) places.push_back(Place(about.x + n, about.y));
  }
  {
    CArbolDivisiones2D::CSeguidos row(inARow), ofGuest(guest);
    for (int i = 0; i < static_cast<int>(places.size()); ++i) {
      CCoor3D<int> const& p = places[static_cast<std::size_t>(i)];
      const bool first = oneByOne.ColocaIndices(p, {0, 3, i});
      EXPECT_EQ(row.Coloca(p, {0, 3, i}), first);
      EXPECT_EQ(ofGuest.Coloca(p, {0, 3, i}), first);
    }
  }
  const auto same = [](auto&& self, CDivisiones2D const& a, CDivisiones2D const& b) -> void {
    ASSERT_EQ(LastOf(a), LastOf(b));
    ASSERT_EQ(a.lista.Cantidad(), b.lista.Cantidad());
    for (unsigned i = 0; a.hijos != nullptr && i < 4; ++i) self(self, a.hijos[i], b.hijos[i]);
  };
  same(same, oneByOne, inARow);
  same(same, oneByOne, guest);
  EXPECT_EQ(LastOf(owner), std::tuple(-1, -1, -1)) << "its cells are shared, its root is not";
}

TEST_F(CDivisiones2DTest, ACopyHasTheSameCellsOfItsOwn) {
  root.ColocaIndices(Place(10, 10), {0, 1, 2});
  CArbolDivisiones2D copy;
  copy.CopiaDe(root);
  ASSERT_NE(copy.hijos, nullptr);
  EXPECT_NE(copy.hijos, root.hijos);
  EXPECT_EQ(LastOf(copy.hijos[2]), std::tuple(0, 1, 2));
  EXPECT_EQ(copy.hijos[2].padre, &copy);
  copy.ColocaIndices(Place(10, 10), {0, 5, 6});
  EXPECT_EQ(LastOf(root.hijos[2]), std::tuple(0, 1, 2));
}

}  // namespace
}  // namespace Meseta47
