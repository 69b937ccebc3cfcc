#include "model/geometry/CDataSemilla.h"

#include <gtest/gtest.h>

using namespace Meseta47;

namespace {

TEST(CDataSemilla, PrecisionIsTenToTheNumberOfDecimals) {
  EXPECT_EQ(CDataSemilla(0, 0, 0, 0).Precision(), 1.0);
  EXPECT_EQ(CDataSemilla(2, 0, 0, 0).Precision(), 100.0);
  EXPECT_EQ(CDataSemilla(3, 0, 0, 0).Precision(), 1000.0);
  EXPECT_EQ(CDataSemilla(-1, 0, 0, 0).Precision(), 0.1);
}

TEST(CDataSemilla, KeepsTheOriginBehindThePrecision) {
  const CDataSemilla seed(3, 500000, 4100000, -12.5);
  EXPECT_EQ(seed.precision, 3);
  EXPECT_EQ(seed.origen[0], 500000);
  EXPECT_EQ(seed.origen[1], 4100000);
  EXPECT_EQ(seed.origen[2], -12.5);
  const CDataSemilla copy = seed;
  EXPECT_EQ(copy.origen[1], 4100000);
}

}  // namespace
