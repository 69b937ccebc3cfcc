// How cells are divided among their children, on two axes and on three.
#include "run/CCeldas.h"

#include <gmock/gmock.h>
#include <limits>

namespace Meseta47 {
namespace {

using Plane = CCeldas<2>;
using Space = CCeldas<3>;

CCoor3D<int> At(int x, int y, int z) { return {x, y, z, 0}; }
CMaximas<int> Box(CCoor3D<int> const& low, CCoor3D<int> const& high) {
  CMaximas<int> box;
  box.Minimo = low;
  box.Maximo = high;
  return box;
}

const CMaximas<int> kCell = Box(At(-10, -20, -30), At(10, 20, 31));

TEST(Celdas, OneIsAddedForXHighTwoForYLowAndFourForZHigh) {
  const CCoor3D<int> centre = At(0, 0, 0);
  for (const int z : {-1, 1}) {
    const unsigned up = z < 0 ? 0 : 4;
    EXPECT_EQ(Space::Hijo(At(-1, 1, z), centre), up + 0);
    EXPECT_EQ(Space::Hijo(At(1, 1, z), centre), up + 1);
    EXPECT_EQ(Space::Hijo(At(-1, -1, z), centre), up + 2);
    EXPECT_EQ(Space::Hijo(At(1, -1, z), centre), up + 3);
    EXPECT_EQ(Plane::Hijo(At(1, -1, z), centre), 3U) << "heights have no part in it";
  }
}

TEST(Celdas, ThePointAtTheCentreIsHigh) {
  EXPECT_EQ(Space::Hijo(At(5, 6, 7), At(5, 6, 7)), 5U);
  EXPECT_EQ(Plane::Hijo(At(5, 6, 7), At(5, 6, 9)), 1U);
}

TEST(Celdas, TheBoxesOfTheChildrenMeetAtTheCentre) {
  const CCoor3D<int> centre = Space::Centro(kCell);
  for (unsigned i = 0; i < Space::kHijos; ++i) {
    const CMaximas<int> box = Space::Caja(i, kCell, centre);
    EXPECT_EQ(box.Minimo.x, (i & 1) != 0 ? centre.x : kCell.Minimo.x);
    EXPECT_EQ(box.Maximo.x, (i & 1) != 0 ? kCell.Maximo.x : centre.x);
    EXPECT_EQ(box.Minimo.y, (i & 2) != 0 ? kCell.Minimo.y : centre.y);
    EXPECT_EQ(box.Maximo.y, (i & 2) != 0 ? centre.y : kCell.Maximo.y);
    EXPECT_EQ(box.Minimo.z, (i & 4) != 0 ? centre.z : kCell.Minimo.z);
    EXPECT_EQ(box.Maximo.z, (i & 4) != 0 ? kCell.Maximo.z : centre.z);
  }
}

TEST(Celdas, InPlanTheHeightsOfAChildStayEmpty) {
  const CMaximas<int> box = Plane::Caja(2, kCell, Plane::Centro(kCell)), empty;
  EXPECT_EQ(box.Minimo.z, empty.Minimo.z);
  EXPECT_EQ(box.Maximo.z, empty.Maximo.z);
}

TEST(Celdas, ABoxGoesToTheChildThatHoldsItStrictly) {
  const CCoor3D<int> centre = At(0, 0, 0);
  for (unsigned i = 0; i < Space::kHijos; ++i) {
    CCoor3D<int> low = At(-9, -9, -9), high = At(-1, -1, -1);
    if ((i & 1) != 0) low.x = 1, high.x = 9;
    if ((i & 2) == 0) low.y = 1, high.y = 9;
    if ((i & 4) != 0) low.z = 1, high.z = 9;
    EXPECT_EQ(Space::HijoDeCaja(Box(low, high), centre), static_cast<int>(i));
    EXPECT_EQ(Plane::HijoDeCaja(Box(low, high), centre), static_cast<int>(i & 3));
  }
}

TEST(Celdas, ABoxThatTouchesAPlaneThroughTheCentreGoesToNoChild) {
  const CCoor3D<int> centre = At(0, 0, 0);
  EXPECT_EQ(Space::HijoDeCaja(Box(At(0, 1, 1), At(5, 5, 5)), centre), -1);
  EXPECT_EQ(Space::HijoDeCaja(Box(At(1, -5, 1), At(5, 0, 5)), centre), -1);
  EXPECT_EQ(Space::HijoDeCaja(Box(At(1, 1, 0), At(5, 5, 5)), centre), -1);
  EXPECT_EQ(Plane::HijoDeCaja(Box(At(1, 1, 0), At(5, 5, 5)), centre), 1);
  EXPECT_EQ(Space::HijoDeCaja(Box(At(-5, 1, 1), At(5, 5, 5)), centre), -1) << "and one that crosses it";
}

TEST(Celdas, TheLimitsOf32BitsAreNoDifferentFromOtherNumbers) {
  constexpr int kLow = std::numeric_limits<int>::min(), kHigh = std::numeric_limits<int>::max();
  const CMaximas<int> all = Box(At(kLow, kLow, kLow), At(kHigh, kHigh, kHigh));
  const CCoor3D<int> centre = Space::Centro(all);
  EXPECT_EQ(Space::Hijo(all.Minimo, centre), 2U);
  EXPECT_EQ(Space::Hijo(all.Maximo, centre), 5U);
  EXPECT_EQ(Space::HijoDeCaja(all, centre), -1);
}

}  // namespace
}  // namespace Meseta47
