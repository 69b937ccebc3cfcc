#include "model/terrain/CLado.h"

#include <gtest/gtest.h>

using Meseta47::CLado;

TEST(CLado, OrderIsThatOfThePairsAlone) {
  EXPECT_LT(CLado(1, 9, 5, 0), CLado(2, 3, -1, 0));
  EXPECT_LT(CLado(1, 2, 5, 0), CLado(1, 3, -1, 0));
  EXPECT_FALSE(CLado(1, 2, -1, 0) < CLado(1, 2, 5, 1));
  EXPECT_EQ(CLado(1, 2, -1, 0), CLado(1, 2, 5, 1));
}

TEST(CLado, IndicesAreUnsigned) { EXPECT_LT(CLado(1, 2, -1, 0), CLado(0xFFFFFFFE, 0xFFFFFFFF, -1, 0)); }
