#include "model/drawing/CInfoClasificacion.h"

#include <gtest/gtest.h>

using namespace Meseta47;

namespace {

TEST(CInfoClasificacion, AClassMatchesItsOwnByteAlone) {
  const CInfoClasificacion ground(2, 0.0, L"");
  for (int c = 0; c < 256; ++c) EXPECT_EQ(ground.Compara(static_cast<unsigned char>(c)), c == 2) << c;
  EXPECT_EQ(ground.GetTipo(), 2);
}

TEST(CInfoClasificacion, TheWildcardMatchesEveryByte) {
  const CInfoClasificacion any(0, 0.0, L"_###COMODIN###");
  for (int c = 0; c < 256; ++c) EXPECT_TRUE(any.Compara(static_cast<unsigned char>(c))) << c;
}

TEST(CInfoClasificacion, OnlyTheWholeWildcardTextIsTheWildcard) {
  EXPECT_FALSE(CInfoClasificacion(0, 0.0, L"_###COMODIN##").Compara(1));
  EXPECT_FALSE(CInfoClasificacion(0, 0.0, L"_###comodin###").Compara(1));
  EXPECT_FALSE(CInfoClasificacion(0, 0.0, L"*").Compara(1));
}

TEST(CInfoClasificacion, EqualityLooksAtTypeValueAndText) {
  const CInfoClasificacion a(6, 1.5, L"building");
  EXPECT_TRUE(a == CInfoClasificacion(6, 1.5, L"building"));
  EXPECT_TRUE(a != CInfoClasificacion(5, 1.5, L"building"));
  EXPECT_TRUE(a != CInfoClasificacion(6, 1.0, L"building"));
  EXPECT_TRUE(a != CInfoClasificacion(6, 1.5, L""));
}

TEST(CInfoClasificacion, ACopyIsEqualAndMatchesAlike) {
  const CInfoClasificacion any(0, 2.0, kTextoComodin);
  CInfoClasificacion copy;
  EXPECT_FALSE(copy.Compara(9));
  copy = any;
  EXPECT_TRUE(copy == any);
  EXPECT_TRUE(copy.Compara(9));
  EXPECT_EQ(copy.GetValor(), 2.0);
}

}  // namespace
