#include "planar/CSetLados2D.h"

#include <gmock/gmock.h>

#include "platform/CStdioFile.h"
#include "support/PlanarScene.h"
#include "support/ScratchFolder.h"

namespace Meseta47 {
namespace {

using test::DirectedNumbers;
using test::Numbered;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class CSetLados2DTest : public testing::Test {
 protected:
  CLado2D Side(std::size_t from, std::size_t to) { return CLado2D(&p[from - 1], &p[to - 1]); }

  std::vector<CCoor3D<int>> p = Numbered({{0, 0}, {10, 0}, {0, 10}, {10, 10}, {5, 20}, {5, 30}});
  CSetLados2D set;
};

TEST_F(CSetLados2DTest, AnEmptyBagHasNothingToRemoveNorToReport) {
  set.BorraDuplicados();
  EXPECT_THAT(set.lados, IsEmpty());
  EXPECT_TRUE(set.Comprueba(nullptr));
}

TEST_F(CSetLados2DTest, ASideAloneStays) {
  set.lados = {Side(2, 1)};
  set.BorraDuplicados();
  EXPECT_THAT(DirectedNumbers(set.lados), ElementsAre(Pair(2, 1)));
}

TEST_F(CSetLados2DTest, TwoEqualSidesLeaveTheBagEmpty) {
  set.lados = {Side(1, 2), Side(1, 2)};
  set.BorraDuplicados();
  EXPECT_THAT(set.lados, IsEmpty());
}

TEST_F(CSetLados2DTest, TwoCopiesOfASideRunningOppositeWaysBothVanish) {
  set.lados = {Side(1, 2), Side(2, 3), Side(2, 1)};
  set.BorraDuplicados();
  EXPECT_THAT(DirectedNumbers(set.lados), ElementsAre(Pair(2, 3)));
}

TEST_F(CSetLados2DTest, OfThreeEqualSidesOneStays) {
  set.lados = {Side(1, 2), Side(3, 4), Side(2, 1), Side(1, 2)};
  set.BorraDuplicados();
  ASSERT_EQ(set.lados.size(), 2U);
  EXPECT_EQ(set.lados[0], Side(1, 2));
  EXPECT_EQ(set.lados[1], Side(3, 4));
}

TEST_F(CSetLados2DTest, OfFourEqualSidesNoneStays) {
  set.lados = {Side(1, 2), Side(2, 1), Side(1, 2), Side(2, 1), Side(1, 3)};
  set.BorraDuplicados();
  EXPECT_THAT(DirectedNumbers(set.lados), ElementsAre(Pair(1, 3)));
}

TEST_F(CSetLados2DTest, WhatStaysIsSortedByTheNumbersAndKeepsItsDirection) {
  p[5].num = -3;
  set.lados = {Side(5, 4), Side(4, 2), Side(3, 1), Side(1, 2), Side(2, 6), Side(4, 3), Side(3, 4)};
  set.BorraDuplicados();
  EXPECT_THAT(DirectedNumbers(set.lados), ElementsAre(Pair(2, -3), Pair(1, 2), Pair(3, 1), Pair(4, 2), Pair(5, 4)));
}

TEST_F(CSetLados2DTest, PairsAtBothEndsOfTheOrderVanish) {
  set.lados = {Side(1, 2), Side(2, 3), Side(4, 5), Side(2, 1), Side(5, 4)};
  set.BorraDuplicados();
  EXPECT_THAT(DirectedNumbers(set.lados), ElementsAre(Pair(2, 3)));
}

TEST_F(CSetLados2DTest, SidesOfDistinctObjectsWithEqualCoordinatesAreNoPair) {
  p[2] = CCoor3D<int>(p[1].x, p[1].y, p[1].z, 3);
  set.lados = {Side(1, 2), Side(3, 1)};
  set.BorraDuplicados();
  EXPECT_THAT(DirectedNumbers(set.lados), ElementsAre(Pair(1, 2), Pair(3, 1)));
}

TEST_F(CSetLados2DTest, TheOuterSidesOfACavityOfTwoTrianglesRemain) {
  // 3---4   (1, 3, 4) and (1, 4, 2) share the side 1-4, each running it its own way.
  // | / |
  // 1---2
  set.lados = {Side(1, 3), Side(3, 4), Side(4, 1), Side(1, 4), Side(4, 2), Side(2, 1)};
  set.BorraDuplicados();
  EXPECT_THAT(DirectedNumbers(set.lados), ElementsAre(Pair(2, 1), Pair(1, 3), Pair(4, 2), Pair(3, 4)));
}

TEST_F(CSetLados2DTest, ThreeEqualSidesPassTheCheckAlthoughOnlyTwoTrianglesCanMeet) {
  set.lados = {Side(1, 2), Side(2, 1), Side(1, 2), Side(3, 4)};
  EXPECT_TRUE(set.Comprueba(nullptr));
}

TEST_F(CSetLados2DTest, FourEqualSidesFailTheCheckWithoutAFileToo) {
  set.lados = {Side(1, 2), Side(2, 1), Side(1, 2), Side(2, 1)};
  EXPECT_FALSE(set.Comprueba(nullptr));
}

TEST_F(CSetLados2DTest, TheCheckSortsTheSides) {
  set.lados = {Side(3, 4), Side(1, 2)};
  EXPECT_TRUE(set.Comprueba(nullptr));
  EXPECT_THAT(DirectedNumbers(set.lados), ElementsAre(Pair(1, 2), Pair(3, 4)));
}

TEST_F(CSetLados2DTest, EveryRunOfFourOrMoreIsReportedOnALineOfItsOwn) {
  const ScratchFolder folder;
  CStdioFile report(folder.Path("report.txt"), CFile::modeCreate | CFile::modeWrite);
  set.lados = {Side(1, 2), Side(1, 2), Side(1, 2), Side(1, 2), Side(2, 4), Side(3, 4), Side(3, 4),
               Side(3, 4), Side(3, 4), Side(3, 4), Side(5, 6), Side(5, 6), Side(5, 6)};
  EXPECT_FALSE(set.Comprueba(&report));
  EXPECT_TRUE(report.Close());
  EXPECT_EQ(BytesOf(folder.Path("report.txt")), "error lado [4] 1 2\nerror lado [5] 3 4\n");
}

TEST_F(CSetLados2DTest, ACheckThatPassesWritesNothing) {
  const ScratchFolder folder;
  CStdioFile report(folder.Path("report.txt"), CFile::modeCreate | CFile::modeWrite);
  set.lados = {Side(1, 2), Side(1, 2), Side(1, 2)};
  EXPECT_TRUE(set.Comprueba(&report));
  EXPECT_TRUE(report.Close());
  EXPECT_EQ(BytesOf(folder.Path("report.txt")), "");
}

}  // namespace
}  // namespace Meseta47
