#include "model/geometry/CMaximas.h"

#include <gmock/gmock.h>
#include <limits>

#include "model/Fixtures.h"

using namespace Meseta47;
using namespace Meseta47::test;

namespace {

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kGreatest = std::numeric_limits<int>::max();

using Box = CMaximas<int>;

Box BoxAround(Point const& a, Point const& b) { return BoxOf<int>({a, b}); }

TEST(CMaximas, ABoxThatReceivedOnePointHasEqualLimitsAndNoWidth) {
  const Box box = BoxOf<int>({P(5, -6, 7)});
  EXPECT_EQ(box.Maximo, box.Minimo);
  EXPECT_EQ(box.Maximo, P(5, -6, 7));
  EXPECT_EQ(box.Ancho(), 0.0);
  EXPECT_EQ(box.Alto(), 0.0);
  EXPECT_EQ(box.Altura(), 0.0);
  EXPECT_FALSE(box.EstanVacias(true));
}

TEST(CMaximas, AnEmptyBoxYieldsWidthsOfZeroAndNeverANegativeOne) {
  Box box;
  for (int round = 0; round < 2; ++round) {
    EXPECT_TRUE(box.EstanVacias(true));
    EXPECT_GT(box.Minimo.x, box.Maximo.x);
    EXPECT_GT(box.Minimo.y, box.Maximo.y);
    EXPECT_GT(box.Minimo.z, box.Maximo.z);
    EXPECT_EQ(box.Ancho(), 0.0);
    EXPECT_EQ(box.Alto(), 0.0);
    EXPECT_EQ(box.Altura(), 0.0);
    box.Nuevo(P(1, 2, 3));
    box.Borra();
  }
}

TEST(CMaximas, TheBoxGrowsToHoldEveryPoint) {
  const Box box = BoxOf<int>({P(1, 9, -4), P(-3, 2, 8), P(0, 5, 0)});
  EXPECT_EQ(box.Maximo, P(1, 9, 8));
  EXPECT_EQ(box.Minimo, P(-3, 2, -4));
  EXPECT_EQ(box.Ancho(), 4.0);
  EXPECT_EQ(box.Alto(), 7.0);
  EXPECT_EQ(box.Altura(), 12.0);
}

TEST(CMaximas, TheBoxOfTheWholeRangeHasItsTrueWidth) {
  const Box box = BoxAround(P(kLeast, kLeast, kLeast), P(kGreatest, kGreatest, kGreatest));
  EXPECT_EQ(box.Ancho(), 4294967295.0);
  EXPECT_EQ(box.Centro(true), P(-1, -1, -1));
}

TEST(CMaximas, GrowingByABoxHoldsBothAndByAnEmptyOneChangesNothing) {
  Box box = BoxAround(P(0, 0, 0), P(1, 1, 1));
  box.Nuevo(Box());
  EXPECT_EQ(box, BoxAround(P(0, 0, 0), P(1, 1, 1)));
  box.Nuevo(BoxAround(P(-5, 3, 9), P(0, 4, 10)));
  EXPECT_EQ(box, BoxAround(P(-5, 0, 0), P(1, 4, 10)));
  Box empty;
  empty.Nuevo(box);
  EXPECT_EQ(empty, box);
}

TEST(CMaximas, TheCentreIsTheMeanWithHalvesTowardsMinusInfinity) {
  EXPECT_EQ(BoxAround(P(0, 0, 0), P(10, 20, 30)).Centro(true), P(5, 10, 15));
  EXPECT_EQ(BoxAround(P(0, 0, 0), P(10, 20, 30)).Centro(false), P(5, 10, 0));
  EXPECT_EQ(BoxAround(P(0, -1, -3), P(1, 0, 0)).Centro(true), P(0, -1, -2));
  EXPECT_EQ(BoxAround(P(kGreatest - 2, kLeast, 0), P(kGreatest, kLeast + 2, 0)).Centro(true),
            P(kGreatest - 1, kLeast + 1, 0));
}

TEST(CMaximas, APointOnTheLimitsIsInside) {
  const Box box = BoxAround(P(0, 0, 0), P(10, 20, 30));
  EXPECT_TRUE(box.Dentro(P(0, 0, 0), 0));
  EXPECT_TRUE(box.Dentro(P(10, 20, 30), 0));
  EXPECT_TRUE(box.Dentro(P(5, 20, 15), 0));
  EXPECT_FALSE(box.Dentro(P(11, 5, 5), 0));
  EXPECT_FALSE(box.Dentro(P(-1, 5, 5), 0));
  EXPECT_FALSE(box.Dentro(P(5, 21, 5), 0));
  EXPECT_FALSE(box.Dentro(P(5, 5, 31), 0));
  EXPECT_FALSE(box.Dentro(P(5, 5, -1), 0));
  EXPECT_FALSE(Box().Dentro(P(0, 0, 0), 0));
}

TEST(CMaximas, ABoxWithoutHeightsLooksAtThePlanAlone) {
  Box cell = BoxAround(P(0, 0, 0), P(10, 10, 0));
  cell.Minimo.z = kGreatest;
  cell.Maximo.z = kLeast;
  EXPECT_TRUE(cell.Dentro(P(5, 5, 123456), 0));
  EXPECT_FALSE(cell.Dentro(P(11, 5, 0), 0));
  EXPECT_FALSE(cell.EstanVacias(true));
  EXPECT_TRUE(cell.Dentro(BoxAround(P(1, 1, -50), P(9, 9, 50)), 1));
}

TEST(CMaximas, ABoxLiesInAnotherOnlyWholly) {
  const Box box = BoxAround(P(0, 0, 0), P(10, 10, 10));
  EXPECT_TRUE(box.Dentro(box, 1));
  EXPECT_TRUE(box.Dentro(BoxAround(P(1, 1, 1), P(2, 2, 2)), 1));
  EXPECT_FALSE(box.Dentro(BoxAround(P(1, 1, 1), P(2, 2, 11)), 1));
  EXPECT_FALSE(box.Dentro(BoxAround(P(-1, 1, 1), P(2, 2, 2)), 1));
  EXPECT_FALSE(box.Dentro(Box(), 1));
  EXPECT_FALSE(Box().Dentro(box, 1));
}

TEST(CMaximas, ComparisonsLookAtTheWholeBox) {
  const Box a = BoxAround(P(0, 0, 0), P(5, 5, 5)), b = BoxAround(P(0, 0, 0), P(5, 5, 6)),
            c = BoxAround(P(0, 0, 1), P(2, 2, 2));
  EXPECT_TRUE(a == a);
  EXPECT_TRUE(a != b);
  EXPECT_TRUE(a < b);
  EXPECT_FALSE(b < a);
  EXPECT_FALSE(a < a);
  EXPECT_TRUE(b < c);
  Box copy;
  copy = c;
  EXPECT_EQ(copy, c);
}

TEST(CMaximas, ARealBoxIsScaledAndRounded) {
  CMaximas<double> real;
  real.Nuevo(CCoor3D<double>(1.234, -5.678, 10, 0));
  real.Nuevo(CCoor3D<double>(2.006, -5.678, 9.999, 0));
  const Box box(real * 100.0);
  EXPECT_EQ(box, BoxAround(P(123, -568, 1000), P(201, -568, 1000)));
}

TEST(CMaximas, AnEmptyRealBoxStaysEmptyThroughScalingAndRounding) {
  const Box box(CMaximas<double>() * 1000.0);
  EXPECT_EQ(box, Box());
  EXPECT_TRUE(CMaximas<double>(Box()).EstanVacias(true));
}

TEST(CMaximas, TheBinaryFormIsTheGreatestPointAndThenTheLeast) {
  ScratchFile scratch;
  const Box box = BoxAround(P(1, 2, 3), P(4, 5, -1));
  CFile out = scratch.ForWriting();
  ASSERT_TRUE(box.Write(&out, CDataSemilla(2, 0, 0, 0), 0, FICHERO_NATIVO));
  ASSERT_TRUE(out.Close());
  EXPECT_THAT(scratch.Bytes(), testing::ElementsAre(4, 0, 0, 0, 5, 0, 0, 0, 3, 0, 0, 0,  //
                                                    1, 0, 0, 0, 2, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF));
  CFile in = scratch.ForReading();
  Box read;
  ASSERT_TRUE(read.Read(&in, 1.0, FICHERO_NATIVO));
  EXPECT_EQ(read, box);
}

TEST(CMaximas, AShortReadFailsAndChangesNothing) {
  ScratchFile scratch;
  CFile out = scratch.ForWriting();
  ASSERT_TRUE(BoxAround(P(1, 2, 3), P(4, 5, 6)).Write(&out, CDataSemilla(), 0, FICHERO_NATIVO));
  ASSERT_TRUE(out.Close());
  scratch.Cut(23);
  CFile in = scratch.ForReading();
  Box read = BoxAround(P(7, 7, 7), P(8, 8, 8));
  EXPECT_FALSE(read.Read(&in, 1.0, FICHERO_NATIVO));
  EXPECT_EQ(read, BoxAround(P(7, 7, 7), P(8, 8, 8)));
}

}  // namespace
