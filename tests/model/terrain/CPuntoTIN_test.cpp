#include "model/terrain/CPuntoTIN.h"

#include <gtest/gtest.h>

using namespace Meseta47;

TEST(CPuntoTIN, ACoordinateBringsNoSurveyData) {
  CCoor3D<int> coordinate(1, 2, 3, 4);
  coordinate.intensidad = 5;
  const CPuntoTIN p(coordinate);
  EXPECT_EQ(p, coordinate);
  EXPECT_EQ(p.num, 4);
  EXPECT_EQ(p.intensidad, 5);
  EXPECT_EQ(p.aero, tipoAero3{});
}

TEST(CPuntoTIN, ACopyHasTheSurveyData) {
  CPuntoTIN p;
  p.aero.gps = 12.5;
  EXPECT_EQ(CPuntoTIN(p).aero.gps, 12.5);
}
