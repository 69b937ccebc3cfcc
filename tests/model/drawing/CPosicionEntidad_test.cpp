#include "model/drawing/CPosicionEntidad.h"

#include <gtest/gtest.h>
#include <type_traits>

#include "model/drawing/tipoAero3.h"

using namespace Meseta47;

namespace {

TEST(CPosicionEntidad, TheOrderGoesByEntityThenPoint) {
  EXPECT_TRUE(CPosicionEntidad(1, 9) < CPosicionEntidad(2, 0));
  EXPECT_TRUE(CPosicionEntidad(1, 1) < CPosicionEntidad(1, 2));
  EXPECT_FALSE(CPosicionEntidad(1, 2) < CPosicionEntidad(1, 2));
  EXPECT_FALSE(CPosicionEntidad(2, 0) < CPosicionEntidad(1, 9));
  EXPECT_TRUE(CPosicionEntidad(3, 4) == CPosicionEntidad(3, 4));
  EXPECT_FALSE(CPosicionEntidad(3, 4) == CPosicionEntidad(4, 3));
}

TEST(TipoAero3, IsSixteenBytesThatCanBeCopiedAsABlock) {
  static_assert(sizeof(tipoAero3) == 16 && std::is_trivially_copyable_v<tipoAero3>);
  tipoAero3 a;
  EXPECT_TRUE(a == tipoAero3());
  a.angulo = -15;
  EXPECT_FALSE(a == tipoAero3());
}

}  // namespace
