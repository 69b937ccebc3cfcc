#include <gtest/gtest.h>

#include "model/drawing/CCondicionHIntensidad.h"
#include "model/drawing/CCondicionHRGB.h"
#include "model/drawing/CIntensidadTipo.h"

using namespace Meseta47;

namespace {

TEST(CCondicionHRGB, KeepsColourClassHeightAndTolerance) {
  const CCondicionHRGB c(10, 200, 255, 5, 2.5f, 30);
  EXPECT_EQ(c.r, 10);
  EXPECT_EQ(c.g, 200);
  EXPECT_EQ(c.b, 255);
  EXPECT_EQ(c.tipo, 5);
  EXPECT_EQ(c.altura, 2.5f);
  EXPECT_EQ(c.tolerancia, 30);
}

TEST(CCondicionHIntensidad, KeepsLimitsClassAndHeight) {
  const CCondicionHIntensidad c(-1, 70000, 6, 3.0f);
  EXPECT_EQ(c.minimo, -1);
  EXPECT_EQ(c.maximo, 70000);
  EXPECT_EQ(c.tipo, 6);
  EXPECT_EQ(c.altura, 3.0f);
}

TEST(CRGBTipo, ATypeBelowZeroIsKeptAsSuch) {
  EXPECT_EQ(CRGBTipo(1, 2, 3, -1).tipo, -1);
  EXPECT_EQ(CIntensidadTipo(65535, -1).tipo, -1);
  EXPECT_EQ(CIntensidadTipo(65535, -1).intensidad, 65535);
  EXPECT_EQ(CRGBTipo().tipo, -1);
}

}  // namespace
