#include "run/CListaPuntos.h"

#include <gmock/gmock.h>

#include "platform/CFile.h"
#include "support/FaultGuard.h"
#include "support/PlanarScene.h"
#include "support/ScratchFolder.h"

namespace Meseta47 {
namespace {

using test::PlanOf;
using testing::ElementsAre;
using testing::IsEmpty;

CCoor3D<int> Point(int number, int x = 0, int y = 0, int z = 0) { return CCoor3D<int>(x, y, z, number); }

std::vector<int> Forward(CListaPuntos const& list) {
  std::vector<int> numbers;
  for (CCoor3DIntLista const* node = list.primero; node != nullptr; node = node->Sig()) numbers.push_back(node->num);
  return numbers;
}

std::vector<int> Backward(CListaPuntos const& list) {
  std::vector<int> numbers;
  for (CCoor3DIntLista const* node = list.ultimo; node != nullptr; node = node->Ant()) numbers.push_back(node->num);
  return numbers;
}

TEST(CListaPuntos, AppendsCopiesAndWidensItsExtents) {
  CListaPuntos list;
  CCoor3D<int> p = Point(1, 5, 7, 9);
  CCoor3DIntLista* first = list.Inserta(p);
  p.x = 99;
  CCoor3DIntLista* second = list.Inserta(Point(2, -5, 20, 3));
  EXPECT_EQ(first->x, 5);
  EXPECT_EQ(list.primero, first);
  EXPECT_EQ(list.ultimo, second);
  EXPECT_EQ(list.actual, second);
  EXPECT_EQ(list.Cantidad(), 2);
  EXPECT_EQ(PlanOf(list), std::tuple(-5, 7, 5, 20));
  EXPECT_EQ(list.Maximo.z, 9);
  EXPECT_THAT(Forward(list), ElementsAre(1, 2));
  EXPECT_THAT(Backward(list), ElementsAre(2, 1));
}

TEST(CListaPuntos, TakingOutTheLastNodeMovesTheEndAndTheCursorBack) {
  CListaPuntos list;
  list.Inserta(Point(1));
  CCoor3DIntLista* second = list.Inserta(Point(2));
  CCoor3DIntLista* third = list.Inserta(Point(3));
  list.Elimina(third);
  EXPECT_EQ(list.ultimo, second);
  EXPECT_EQ(list.actual, second);
  EXPECT_THAT(Forward(list), ElementsAre(1, 2));
  EXPECT_EQ(list.Cantidad(), 2);
}

TEST(CListaPuntos, TakingOutTheFirstNodeMovesTheBeginningOnly) {
  CListaPuntos list;
  CCoor3DIntLista* first = list.Inserta(Point(1));
  CCoor3DIntLista* second = list.Inserta(Point(2));
  list.Elimina(first);
  EXPECT_EQ(list.primero, second);
  EXPECT_EQ(list.ultimo, second);
  EXPECT_EQ(list.actual, second);
  EXPECT_THAT(Backward(list), ElementsAre(2));
}

TEST(CListaPuntos, TakingOutAMiddleNodeJoinsItsNeighbours) {
  CListaPuntos list;
  list.Inserta(Point(1));
  CCoor3DIntLista* second = list.Inserta(Point(2));
  CCoor3DIntLista* third = list.Inserta(Point(3));
  list.Elimina(second);
  EXPECT_THAT(Forward(list), ElementsAre(1, 3));
  EXPECT_THAT(Backward(list), ElementsAre(3, 1));
  EXPECT_EQ(list.actual, third);
}

TEST(CListaPuntos, TheCursorNeverStaysOnANodeThatIsTakenOut) {
  CListaPuntos list;
  CCoor3DIntLista* first = list.Inserta(Point(1));
  CCoor3DIntLista* second = list.Inserta(Point(2));
  CCoor3DIntLista* third = list.Inserta(Point(3));
  list.actual = second;
  list.Elimina(second);
  EXPECT_EQ(list.actual, first);
  list.Elimina(first);
  EXPECT_EQ(list.actual, third);
}

TEST(CListaPuntos, TakingOutTheOnlyNodeClearsBothEndsAndTheCursor) {
  CListaPuntos list;
  list.Elimina(list.Inserta(Point(1)));
  EXPECT_EQ(list.primero, nullptr);
  EXPECT_EQ(list.ultimo, nullptr);
  EXPECT_EQ(list.actual, nullptr);
  EXPECT_EQ(list.Cantidad(), 0);
}

TEST(CListaPuntos, ExtentsDoNotShrinkWithThePoints) {
  CListaPuntos list;
  list.Inserta(Point(1, 0, 0));
  list.Elimina(list.Inserta(Point(2, 50, 60)));
  EXPECT_EQ(PlanOf(list), std::tuple(0, 0, 50, 60));
}

TEST(CListaPuntos, ClearLeavesTheEndWhereItWasAndTheListUsable) {
  CListaPuntos list;
  list.Inserta(Point(1));
  CCoor3DIntLista const* const gone = list.Inserta(Point(2));
  list.Clear();
  EXPECT_EQ(list.primero, nullptr);
  EXPECT_EQ(list.Cantidad(), 0);
  EXPECT_EQ(list.ultimo, gone);
  list.Inserta(Point(3));
  EXPECT_THAT(Forward(list), ElementsAre(3));
  EXPECT_THAT(Backward(list), ElementsAre(3));
}

TEST(CListaPuntos, SavesEachPointAtThePlaceOfItsNumber) {
  const ScratchFolder folder;
  CFile file(folder.Path("points"), CFile::modeCreate | CFile::modeReadWrite);
  CListaPuntos list;
  list.Inserta(Point(3, 7, 8, 9));
  list.Inserta(Point(1, 1, 2, -3));
  EXPECT_TRUE(list.Salva(&file));
  EXPECT_TRUE(file.Close());
  // Appended to one text: of a chain of sums GCC 12 says that it writes beyond its end.
  std::string expected("\1\0\0\0\2\0\0\0\xFD\xFF\xFF\xFF", 12);
  expected.append(12, '\0');
  expected.append("\7\0\0\0\x08\0\0\0\x09\0\0\0", 12);
  EXPECT_EQ(BytesOf(folder.Path("points")), expected);
}

TEST(CListaPuntos, IsEmptyAfterSaving) {
  const ScratchFolder folder;
  CFile file(folder.Path("points"), CFile::modeCreate | CFile::modeReadWrite);
  CListaPuntos list;
  list.Inserta(Point(1));
  ASSERT_TRUE(list.Salva(&file));
  EXPECT_THAT(Forward(list), IsEmpty());
  EXPECT_EQ(list.ultimo, nullptr);
  EXPECT_EQ(list.actual, nullptr);
  EXPECT_EQ(list.Cantidad(), 0);
}

TEST(CListaPuntos, TellsWhenTheDiskRefusesAndIsEmptyAllTheSame) {
  const ScratchFolder folder;
  FaultGuard guard;
  CFile file(folder.Path("points"), CFile::modeCreate | CFile::modeReadWrite);
  guard.Refuse(EOperacion::Escribe);
  CListaPuntos list;
  for (int number = 1; number <= 100'000; ++number) list.Inserta(Point(number));
  EXPECT_FALSE(list.Salva(&file));
  EXPECT_EQ(list.Cantidad(), 0);
  EXPECT_EQ(list.primero, nullptr);
}

TEST(CListaPuntos, AListThatShowsTheNodesOfAnotherLeavesThemAlone) {
  CListaPuntos owner, guest;
  owner.Inserta(Point(1, 3, 4));
  guest.Inserta(Point(9));
  guest.Comparte(owner);
  EXPECT_EQ(guest.primero, owner.primero);
  EXPECT_EQ(PlanOf(guest), PlanOf(owner));
  guest.Clear();
  EXPECT_THAT(Forward(guest), IsEmpty());
  EXPECT_THAT(Forward(owner), ElementsAre(1));
}

TEST(CCoor3DIntLista, IsComparedAndAssignedAsACoordinate) {
  CCoor3DIntLista before(Point(1, 1, 1), nullptr), node(Point(2, 2, 2), &before);
  const CCoor3DIntLista other(Point(3, 5, 6, 7), nullptr);
  EXPECT_EQ(node.Sig(), nullptr);
  node.SetSig(&before);
  node = other;
  EXPECT_TRUE(node == other);
  EXPECT_EQ(node.num, 3);
  EXPECT_EQ(node.Ant(), &before) << "links are not part of the coordinate";
  EXPECT_EQ(node.Sig(), &before);
  node = Point(4, 8, 8);
  EXPECT_EQ(node.num, 4);
  EXPECT_EQ(node.Ant(), &before);
  node.SetAnt(nullptr);
  EXPECT_EQ(node.Ant(), nullptr);
}

}  // namespace
}  // namespace Meseta47
