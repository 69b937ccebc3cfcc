#include "model/geometry/CRango.h"

#include <gtest/gtest.h>

using namespace Meseta47;

namespace {

CRango Open() { return CRango(2147483647.0, 2147483647.0, -2147483648.0, 2147483647.0); }

TEST(CRango, AnOpenRangeHasNoLimitAndHoldsTheWholeIntegerRange) {
  const CRango range = Open();
  EXPECT_FALSE(range.HayRango());
  EXPECT_TRUE(range.EsValido(-2147483648.0));
  EXPECT_TRUE(range.EsValido(0.0));
  EXPECT_TRUE(range.EsValido(2147483647.0));
}

TEST(CRango, EitherLimitMakesARange) {
  CRango low = Open(), high = Open();
  low.SetValorMin(5);
  high.SetValorMax(5);
  EXPECT_TRUE(low.HayRango());
  EXPECT_TRUE(high.HayRango());
  EXPECT_TRUE(low.EsValido(1e9));
  EXPECT_FALSE(low.EsValido(4.999));
  EXPECT_TRUE(high.EsValido(-1e9));
  EXPECT_FALSE(high.EsValido(5.001));
}

TEST(CRango, TheLimitsAreIncluded) {
  CRango range = Open();
  range.SetValorMin(-1.5);
  range.SetValorMax(2.5);
  EXPECT_TRUE(range.EsValido(-1.5));
  EXPECT_TRUE(range.EsValido(2.5));
  EXPECT_FALSE(range.EsValido(-1.5000001));
  EXPECT_FALSE(range.EsValido(2.5000001));
  EXPECT_FALSE(range.EsValido(std::nan("")));
}

TEST(CRango, APairIsJudgedByItsAbsoluteDifference) {
  CRango range = Open();
  range.SetValorMin(2);
  range.SetValorMax(4);
  EXPECT_TRUE(range.EsValido(10.0, 13.0));
  EXPECT_TRUE(range.EsValido(13.0, 10.0));
  EXPECT_TRUE(range.EsValido(10.0, 12.0));
  EXPECT_FALSE(range.EsValido(10.0, 11.0));
  EXPECT_FALSE(range.EsValido(10.0, 15.0));
}

TEST(CRango, TheMarkOfNoLimitTakesALimitOff) {
  CRango range = Open();
  range.SetValorMin(5);
  range.SetValorMax(6);
  range.SetValorMin(2147483647.0);
  EXPECT_TRUE(range.HayRango());
  EXPECT_TRUE(range.EsValido(-100.0));
  EXPECT_FALSE(range.EsValido(7.0));
  range.SetValorMax(2147483647.0);
  EXPECT_FALSE(range.HayRango());
  EXPECT_TRUE(range.EsValido(7.0));
}

TEST(CRango, ALimitOfZeroIsALimit) {
  CRango range = Open();
  range.SetValorMin(0);
  EXPECT_TRUE(range.HayRango());
  EXPECT_FALSE(range.EsValido(-0.1));
}

}  // namespace
