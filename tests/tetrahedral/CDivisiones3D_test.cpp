#include "tetrahedral/CDivisiones3D.h"

#include <gtest/gtest.h>

#include "support/SpaceScenes.h"

using namespace Meseta47;
using namespace Meseta47::test;

namespace {

CCoor3D<int> At(int x, int y, int z) { return {x, y, z, 0}; }

TEST(CDivisiones3D, ACellOf200PointsIsALeafAndOneOf201IsDividedByEight) {
  CArbolDivisiones3D cell;
  cell.EstableceDivisiones(200, Box(-100, 100));
  EXPECT_EQ(cell.hijos, nullptr);
  cell.EstableceDivisiones(201, Box(-100, 100));
  ASSERT_NE(cell.hijos, nullptr);
  EXPECT_EQ(cell.CantidadNiveles(), 2U);  // 25 in each child
  cell.EstableceDivisiones(201 * 8, Box(-100, 100));
  EXPECT_EQ(cell.CantidadNiveles(), 3U);
  EXPECT_EQ(cell.hijos[6].maximas.Minimo, At(-100, -100, 0));
  EXPECT_EQ(cell.hijos[6].maximas.Maximo, At(0, 0, 100));
  EXPECT_EQ(cell.hijos[6].padre, &cell);
  EXPECT_EQ(cell.hijos[6].nivel, 1U);
}

TEST(CDivisiones3D, AtLevelTenNothingIsDivided) {
  CArbolDivisiones3D cell;
  cell.nivel = 10;
  cell.EstableceDivisiones(1'000'000, Box(-100, 100));
  EXPECT_EQ(cell.hijos, nullptr);
}

TEST(CDivisiones3D, APointOnACentrePlaneGoesToTheHighChild) {
  CArbolDivisiones3D cell;
  cell.EstableceDivisiones(201, Box(-100, 100));
  EXPECT_EQ(cell.Hijo(At(0, 0, 0)), &cell.hijos[5]);
  EXPECT_EQ(cell.Hijo(At(-1, -1, 0)), &cell.hijos[6]);
  EXPECT_EQ(cell.Hijo(At(900, 900, 900)), &cell.hijos[5]);  // outside goes to the nearest octant
}

TEST(CDivisiones3D, TheFirstPointOfALeafIsTold) {
  CArbolDivisiones3D cell;
  cell.EstableceDivisiones(201, Box(-100, 100));
  EXPECT_TRUE(cell.ColocaIndices(At(1, 1, 1), {0, 0}));
  EXPECT_FALSE(cell.ColocaIndices(At(2, 2, 2), {0, 1}));
  EXPECT_TRUE(cell.ColocaIndices(At(-1, 1, 1), {0, 2}));
  EXPECT_EQ(cell.Cantidad(), 3);
  EXPECT_EQ(cell.lista.cantidad, 3);
  EXPECT_EQ(cell.ultimoPuntoCelda, 2);
}

TEST(CDivisiones3D, InsertionTellsTheLargestCellThatAPointFinishes) {
  CArbolDivisiones3D cell;
  cell.EstableceDivisiones(201 * 8, Box(-100, 100));
  cell.ColocaIndices(At(60, 60, 60), {3, 0});
  cell.ColocaIndices(At(10, 10, 10), {3, 1});
  cell.ColocaIndices(At(11, 11, 11), {3, 2});
  cell.ColocaIndices(At(-60, 60, 60), {4, 0});
  CDivisiones3D* finished = nullptr;
  EXPECT_FALSE(cell.Inserta(At(10, 10, 10), {3, 1}, finished));
  EXPECT_EQ(finished, cell.hijos[5].Hijo(At(10, 10, 10)));
  EXPECT_TRUE(cell.Inserta(At(60, 60, 60), {3, 0}, finished));
  EXPECT_EQ(finished, cell.hijos[5].Hijo(At(60, 60, 60)));
  EXPECT_TRUE(cell.Inserta(At(11, 11, 11), {3, 2}, finished));
  EXPECT_EQ(finished, &cell.hijos[5]);
  EXPECT_TRUE(cell.Inserta(At(-60, 60, 60), {4, 0}, finished));
  EXPECT_EQ(finished, &cell);
}

TEST(CDivisiones3D, PruningKeepsThePathOfTheOnlyOctantAndCutsTheOthersDownToLeaves) {
  CArbolDivisiones3D cell;
  cell.EstableceDivisiones(201 * 64, Box(-100, 100));
  cell.ColocaIndices(At(70, 70, 70), {0, 0});
  cell.Comprimir();
  ASSERT_NE(cell.hijos, nullptr);
  for (unsigned i = 0; i < 8; ++i) EXPECT_EQ(cell.hijos[i].hijos != nullptr, i == 5) << i;
  EXPECT_EQ(cell.CantidadNiveles(), 4U);
  EXPECT_EQ(cell.Cantidad(), 0);
  EXPECT_EQ(cell.ultimoPuntoCelda, 0);
}

/// The structure of a tree, with the last points.
std::string Portrait(CDivisiones3D const& cell) {
  std::string text = std::to_string(cell.nivel) + ":" + std::to_string(cell.ultimaEntidad) + "," +
                     std::to_string(cell.ultimoPuntoCelda) + " ";
  if (cell.hijos == nullptr) return text;
  for (unsigned i = 0; i < 8; ++i) text += Portrait(cell.hijos[i]);
  return "(" + text + ")";
}

TEST(CDivisiones3D, ChildrenMadeOnDemandComeToTheSameTree) {
  CArbolDivisiones3D eager, lazy;
  eager.EstableceDivisiones(201 * 64, Box(-100, 100));
  lazy.PreparaDivisiones(201 * 64, Box(-100, 100));
  int k = 0;
  for (CCoor3D<int> const& p : {At(70, 70, 70), At(-5, 3, 0), At(0, 0, 0), At(71, 70, 70), At(-99, -99, 99)}) {
    EXPECT_EQ(eager.ColocaIndices(p, {0, k}), lazy.ColocaIndices(p, {0, k}));
    ++k;
  }
  eager.Comprimir();
  lazy.Comprimir();
  EXPECT_EQ(Portrait(eager), Portrait(lazy));
}

TEST(CDivisiones3D, TheListsOfTheLeavesComeOnceEachAndThenNone) {
  CArbolDivisiones3D cell;
  cell.EstableceDivisiones(201 * 8, Box(-100, 100));
  std::vector<int> path(cell.CantidadNiveles());
  int leaves = 0;
  CListaPuntos* last = nullptr;
  for (CListaPuntos* l = cell.PrimeraLista(path); l != nullptr; l = cell.SiguienteLista(path)) {
    EXPECT_EQ(l, &cell.hijos[leaves / 8].hijos[leaves % 8].lista) << leaves;
    last = l;
    ++leaves;
  }
  EXPECT_EQ(leaves, 64);
  EXPECT_EQ(last, &cell.hijos[7].hijos[7].lista);
  EXPECT_EQ(cell.SiguienteLista(path), nullptr);
}

TEST(CDivisiones3D, ACopyHasTheSameCellsOfItsOwn) {
  CArbolDivisiones3D cell, copy;
  cell.EstableceDivisiones(201, Box(-100, 100));
  cell.ColocaIndices(At(1, 1, 1), {4, 2});
  copy.CopiaDe(cell);
  EXPECT_EQ(copy.hijos[3].padre, &copy);
  EXPECT_EQ(copy.hijos[3].maximas, cell.hijos[3].maximas);
  EXPECT_EQ(copy.hijos[5].ultimaEntidad, 4);
  copy.ColocaIndices(At(1, 1, 1), {9, 9});
  EXPECT_EQ(cell.hijos[5].ultimaEntidad, 4);
}

TEST(CDivisiones3D, ClearingEmptiesTheListsOfTheLeavesAlone) {
  CArbolDivisiones3D cell;
  cell.EstableceDivisiones(201, Box(-100, 100));
  cell.hijos[2].lista.Inserta(At(1, 2, 3));
  cell.lista.cantidad = 5;
  cell.clear();
  EXPECT_EQ(cell.hijos[2].lista.Cantidad(), 0);
  EXPECT_EQ(cell.lista.cantidad, 5);
}

}  // namespace
