#include "model/terrain/CTriangulo.h"

#include <gtest/gtest.h>
#include <numbers>

#include "model/TinScenes.h"
#include "model/geometry/OrdenCanonico.h"

using namespace Meseta47;
using scenes::point;

namespace {

constexpr int kLow = -2147483647 - 1, kHigh = 2147483647;

struct Corners {
  CPuntoTIN a, b, c;

  CTriangulo Triangle() { return {&a, &b, &c, -1, -1, -1}; }
};

/// The order that each of the six ways to hand the corners over ends in, as a text of their names.
std::set<std::string> canonicalOrders(Corners& k, bool plan) {
  std::set<std::string> orders;
  std::array<CPuntoTIN*, 3> p{&k.a, &k.b, &k.c};
  std::sort(p.begin(), p.end());
  do {
    CTriangulo t(p[0], p[1], p[2], -1, -1, -1);
    t.ColocaPuntos(plan);
    std::string order;
    for (CPuntoTIN const* q : {t.P1, t.P2, t.P3}) order += q == &k.a ? 'a' : (q == &k.b ? 'b' : 'c');
    orders.insert(order);
  } while (std::next_permutation(p.begin(), p.end()));
  return orders;
}

using Orders = std::set<std::string>;

}  // namespace

TEST(CTriangulo, ANullPointOrThreeOnALineAreNotValid) {
  Corners k{point(0, 0), point(2, 2, 2), point(4, 4, 4)};
  EXPECT_FALSE(k.Triangle().EsValido());
  EXPECT_FALSE(CTriangulo().EsValido());
  EXPECT_FALSE(CTriangulo(&k.a, &k.b, nullptr, -1, -1, -1).EsValido());
  EXPECT_FALSE(CTriangulo(&k.a, &k.b, &k.b, -1, -1, -1).EsValido());
}

TEST(CTriangulo, AnUprightTriangleIsValid) {
  Corners k{point(0, 0), point(2, 2, 2), point(4, 4, 5)};
  EXPECT_TRUE(k.Triangle().EsValido());
}

TEST(CTriangulo, OneUnitOffTheLineIsEnoughAtAnyDistance) {
  Corners k{point(kLow, kLow, kLow), point(5, 5, 5), point(kHigh, kHigh, kHigh)};
  EXPECT_FALSE(k.Triangle().EsValido());
  k.b.z = 6;
  EXPECT_TRUE(k.Triangle().EsValido());
}

TEST(CTriangulo, CanonicalOrderIsSmallestFirstAndClockwise) {
  Corners k{point(0, 0), point(10, 0), point(0, 10)};
  EXPECT_EQ(canonicalOrders(k, true), Orders{"acb"});
  EXPECT_EQ(canonicalOrders(k, false), Orders{"acb"});
}

TEST(CTriangulo, CanonicalOrderHoldsAtTheEndsOfTheRange) {
  Corners k{point(kLow, kHigh), point(kHigh, kLow), point(kHigh, kHigh)};
  EXPECT_EQ(canonicalOrders(k, true), Orders{"acb"});
}

TEST(CTriangulo, UprightTrianglesOfSpaceHaveOneOrderToo) {
  for (Corners k : {Corners{point(5, 0, 0), point(5, 10, 0), point(5, 0, 10)},
                    Corners{point(0, 5, 0), point(10, 5, 0), point(0, 5, 10)},
                    Corners{point(0, 0, 0), point(10, 10, 0), point(10, 10, 10)}}) {
    EXPECT_EQ(canonicalOrders(k, false).size(), 1u);
  }
}

TEST(CTriangulo, SquaredSidesAreInPlanOrInSpace) {
  Corners k{point(0, 0, 0), point(3, 4, 12), point(3, 0, 0)};
  EXPECT_EQ(k.Triangle().Distancia2_12(false), 25);
  EXPECT_EQ(k.Triangle().Distancia2_12(true), 169);
  EXPECT_EQ(k.Triangle().Distancia2_23(false), 16);
  EXPECT_EQ(k.Triangle().Distancia2_31(true), 9);
}

TEST(CTriangulo, SlopeIsInDegreesFromFlatToUpright) {
  Corners k{point(0, 0, 0), point(10, 0, 0), point(0, 10, 0)};
  EXPECT_EQ(k.Triangle().Pendiente(), 0);
  k.c.z = 10;
  EXPECT_NEAR(k.Triangle().Pendiente(), 45, 1e-12);
  k.c = point(5, 0, 7);
  EXPECT_NEAR(k.Triangle().Pendiente(), 90, 1e-12);
}

TEST(CTriangulo, SlopeDoesNotDependOnTheOrderOfTheVertices) {
  Corners k{point(0, 0, 3), point(10, 1, -4), point(2, 10, 8)};
  EXPECT_NEAR(CTriangulo(&k.a, &k.c, &k.b, -1, -1, -1).Pendiente(), k.Triangle().Pendiente(), 1e-12);
}

TEST(CTriangulo, SlopeAtAVertexIsNegativeWhereTheTriangleFallsAwayFromIt) {
  Corners k{point(0, 0, 10, 1), point(10, 10, 0, 2), point(10, -10, 0, 3)};
  EXPECT_NEAR(k.Triangle().Pendiente(1), -std::numbers::pi / 4, 1e-12);
  EXPECT_GT(k.Triangle().Pendiente(2), 0);
  EXPECT_EQ(k.Triangle().Pendiente(99), 0);
}

TEST(CTriangulo, ExtremesOfHeight) {
  Corners k{point(0, 0, 3), point(1, 0, -8), point(0, 1, 5)};
  EXPECT_EQ(k.Triangle().GetMinZ(), -8);
  EXPECT_EQ(k.Triangle().GetMaxZ(), 5);
}

TEST(CTriangulo, AreaIsThatInSpaceInTheGivenUnit) {
  Corners k{point(0, 0, 0), point(300, 0, 0), point(0, 300, 400)};
  EXPECT_DOUBLE_EQ(k.Triangle().CalculaSuperficie(100), 3 * 5 / 2.0);
}

TEST(CTriangulo, NewPointsReplaceAll) {
  Corners k{point(0, 0), point(1, 0), point(0, 1)};
  CTriangulo t;
  t.SetPuntos(&k.a, &k.b, &k.c, 0, 1, 2, true);
  EXPECT_EQ(t.P3, &k.c);
  EXPECT_EQ(t.vecino12, 0);
  EXPECT_EQ(t.vecino23, 1);
  EXPECT_EQ(t.vecino31, 2);
}
