// What makes a point a peak or a pit, once the points around it are known.
#include "planar/CAlturasVecinas.h"

#include <gtest/gtest.h>
#include <limits>

namespace Meseta47 {
namespace {

constexpr int kLowest = std::numeric_limits<int>::min(), kHighest = std::numeric_limits<int>::max();

/// One point, of whose six neighbours the lowest is at 10 and the highest at 20; they are 90 together, 15 on average.
CAlturasVecinas Known() {
  CAlturasVecinas known;
  known.Prepara(1);
  known.minimos[0] = 10;
  known.maximos[0] = 20;
  known.sumas[0] = 90;
  known.vecinos[0] = 6;
  return known;
}

bool IsPeak(CAlturasVecinas const& known, int z, int height) { return known.EsPico(0, z, height); }

TEST(CAlturasVecinas, NothingIsKnownAtFirst) {
  CAlturasVecinas known = Known();
  known.Prepara(3);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(known.minimos[i] | known.maximos[i] | known.sumas[i] | known.vecinos[i] | known.empinados[i], 0);
    EXPECT_FALSE(known.EsPico(i, kHighest, 0)) << "without neighbours there is no mean";
  }
}

TEST(CAlturasVecinas, APointInTwoSteepTrianglesIsAPeakWhateverItsNeighboursStatistics) {
  CAlturasVecinas known = Known();
  known.empinados[0] = 1;
  EXPECT_FALSE(IsPeak(known, 15, 1));
  known.empinados[0] = 2;
  EXPECT_TRUE(IsPeak(known, 15, 1));
  known.vecinos[0] = 0;
  EXPECT_TRUE(IsPeak(known, 15, 1)) << "not even neighbours are asked for";
}

TEST(CAlturasVecinas, FourNeighboursAreTooFew) {
  CAlturasVecinas known = Known();
  for (const int n : {0, 2, 4, 6}) {
    known.vecinos[0] = static_cast<unsigned char>(n);
    EXPECT_EQ(IsPeak(known, 1000, 1), n == 6) << n;
    EXPECT_EQ(IsPeak(known, -1000, 1), n == 6) << n;
  }
}

TEST(CAlturasVecinas, AboveTheHighestByMoreThanTheHeightIsAPeak) {
  CAlturasVecinas known = Known();
  known.sumas[0] = 6 * 20;  // on average as high as the highest, so that the mean says nothing
  EXPECT_FALSE(IsPeak(known, 23, 3));
  EXPECT_TRUE(IsPeak(known, 24, 3));
}

TEST(CAlturasVecinas, AboveTheHighestByLessItIsAPeakByTheMean) {
  EXPECT_FALSE(IsPeak(Known(), 21, 6));
  EXPECT_TRUE(IsPeak(Known(), 22, 6)) << "2 above the highest, 7 above the mean";
}

TEST(CAlturasVecinas, APointLevelWithTheHighestIsNoPeakWhateverItsMean) {
  CAlturasVecinas known = Known();
  known.sumas[0] = -6000;
  EXPECT_FALSE(IsPeak(known, 20, 0));
  EXPECT_TRUE(IsPeak(known, 21, 0));
}

TEST(CAlturasVecinas, PitsAreJudgedAsPeaksAre) {
  CAlturasVecinas known = Known();
  EXPECT_FALSE(IsPeak(known, 9, 6));
  EXPECT_TRUE(IsPeak(known, 8, 6)) << "2 below the lowest, 7 below the mean";
  EXPECT_FALSE(IsPeak(known, 10, 0)) << "level with the lowest";
  known.sumas[0] = 6 * 10;
  EXPECT_FALSE(IsPeak(known, 7, 3));
  EXPECT_TRUE(IsPeak(known, 6, 3));
}

TEST(CAlturasVecinas, TheMeanIsCutTowardsZero) {
  CAlturasVecinas known = Known();
  known.sumas[0] = 95;  // 15.83
  EXPECT_TRUE(IsPeak(known, 21, 5)) << "6 above 15";
  known.minimos[0] = -20;
  known.maximos[0] = -16;
  known.sumas[0] = -101;  // -16.83
  EXPECT_FALSE(IsPeak(known, -15, 1)) << "1 above -16";
  EXPECT_TRUE(IsPeak(known, -14, 1));
}

TEST(CAlturasVecinas, DifferencesOfTheWholeRangeAreNotCut) {
  CAlturasVecinas known = Known();
  known.minimos[0] = known.maximos[0] = kLowest;
  known.sumas[0] = kLowest;
  EXPECT_TRUE(IsPeak(known, kHighest, kHighest));
  known.minimos[0] = known.maximos[0] = kHighest;
  EXPECT_TRUE(IsPeak(known, kLowest, kHighest));
}

TEST(CAlturasVecinas, AHeightBelowZeroTakesWhatStandsOutAtAll) {
  EXPECT_TRUE(IsPeak(Known(), 21, -1));
  EXPECT_TRUE(IsPeak(Known(), 20, -1)) << "0 above the highest is more than -1";
  EXPECT_FALSE(IsPeak(Known(), 19, -1));
}

}  // namespace
}  // namespace Meseta47
