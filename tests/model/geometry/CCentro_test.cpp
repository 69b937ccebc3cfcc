#include "model/geometry/CCentro.h"

#include <gtest/gtest.h>
#include <random>

#include "model/Fixtures.h"

using namespace Meseta47;
using namespace Meseta47::test;

namespace {

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kGreatest = std::numeric_limits<int>::max();

__extension__ typedef __int128 Int128;

void ExpectFigure(CCentro const& c, double x, double y, double z, double radius) {
  EXPECT_DOUBLE_EQ(c.centro.x, x);
  EXPECT_DOUBLE_EQ(c.centro.y, y);
  EXPECT_DOUBLE_EQ(c.centro.z, z);
  EXPECT_DOUBLE_EQ(c.radio, radius);
  EXPECT_DOUBLE_EQ(c.radio2, radius * radius);
}

void ExpectDegenerate(CCentro const& c) {
  EXPECT_EQ(c.radio, 0.0);
  EXPECT_EQ(c.radio2, 0.0);
}

/// A vertex at three parts in ten thousand million of the range is off the figure by this much at most.
void ExpectThrough(CCentro const& c, std::vector<Point> const& points, int space) {
  for (Point const& p : points) {
    const double d = CCoor3D<double>(p).Distancia(c.centro, space);
    ASSERT_NEAR(d, c.radio, 1e-6 * std::max(1.0, c.radio)) << "radius " << c.radio;
  }
}

TEST(CCentro, TheCircleThroughThreePointsOfAKnownCircle) {
  CCentro c;
  ASSERT_TRUE(c.Centro3P(P(3, 4, 100), P(-4, 3, 200), P(0, -5, -300)));
  ExpectFigure(c, 0, 0, 0, 5);
}

TEST(CCentro, TheCircleIsAsGoodAtTheEdgeOfTheRange) {
  const int x = kGreatest - 5, y = kLeast + 5;
  CCentro c;
  ASSERT_TRUE(c.Centro3P(P(x + 3, y + 4), P(x - 4, y + 3), P(x, y - 5)));
  ExpectFigure(c, x, y, 0, 5);
}

TEST(CCentro, TheCircleOfTheWholeRange) {
  CCentro c;
  ASSERT_TRUE(c.Centro3P(P(kLeast, kLeast), P(kGreatest, kLeast), P(kGreatest, kGreatest)));
  ExpectFigure(c, -0.5, -0.5, 0, std::sqrt(0.5) * 4294967295.0);
}

TEST(CCentro, TheSenseOfTheThreePointsDoesNotMatter) {
  CCentro a, b;
  ASSERT_TRUE(a.Centro3P(P(0, 0), P(7, 1), P(2, 9)));
  ASSERT_TRUE(b.Centro3P(P(0, 0), P(2, 9), P(7, 1)));
  EXPECT_EQ(a.centro, b.centro);
  EXPECT_EQ(a.radio, b.radio);
}

TEST(CCentro, CollinearPointsHaveNoCircle) {
  CCentro c;
  ASSERT_TRUE(c.Centro3P(P(3, 4), P(-4, 3), P(0, -5)));
  EXPECT_FALSE(c.Centro3P(P(0, 0, 5), P(1, 1, 9), P(1000, 1000, -2)));
  ExpectDegenerate(c);
  EXPECT_FALSE(c.Centro3P(P(kLeast, kLeast), P(0, 0), P(kGreatest, kGreatest)));
  EXPECT_FALSE(c.Centro3P(P(1, 1), P(1, 1), P(5, 7)));
  ExpectDegenerate(c);
}

TEST(CCentro, AShortSideFarFromTheFirstPointCostsNoPrecision) {
  // Points of one circle, two of them 128 units apart: their numerators have more bits than a double.
  CCentro c;
  ASSERT_TRUE(c.Centro3P(P(-900711, 771052), P(-973471, -676872), P(-973544, -676767)));
  EXPECT_EQ(c.centro.x, 0.0);
  EXPECT_EQ(c.centro.y, 0.0);
  EXPECT_EQ(c.radio, 1185665.0);
  EXPECT_EQ(c.radio2, 1185665.0 * 1185665.0);
}

TEST(CCentro, AllTrianglesOfOneCircleHaveItsCentreToTheLastBit) {
  // 5^2 13^2 17^2 29^2 37^2 is the square of the radius: what these points have in common.
  const std::vector<Point> points{P(1185665, 0),      P(0, 1185665),      P(-1185665, 0),      P(0, -1185665),
                                  P(-900711, 771052), P(955929, -701428), P(853479, -823028),  P(1154844, 268583),
                                  P(12415, 1185600),  P(-7852, -1185639), P(-42585, -1184900), P(120479, 1179528)};
  for (Point const& p : points) {
    for (Point const& q : points) {
      for (Point const& r : points) {
        CCentro c;
        if (!c.Centro3P(p, q, r)) continue;
        EXPECT_EQ(c.centro, CCoor3D<double>());
        EXPECT_EQ(c.radio, 1185665.0);
      }
    }
  }
}

TEST(CCentro, CentresBetweenUnitsAreRoundedOnce) {
  CCentro c;
  ASSERT_TRUE(c.Centro3P(P(1'000'000, 0), P(-999'999, 0), P(0, 1'000'001)));
  EXPECT_EQ(c.centro.x, 0.5);
  const double y = (1'000'001.0 * 1'000'001 - 1e6 * 999'999) / (2 * 1'000'001.0);
  EXPECT_DOUBLE_EQ(c.centro.y, y);
}

TEST(CCentro, OneUnitOffALineAcrossTheRangeIsACircle) {
  CCentro c;
  ASSERT_TRUE(c.Centro3P(P(kLeast, kLeast), P(0, 1), P(kGreatest, kGreatest)));
  EXPECT_GT(c.radio, 1e17);
  EXPECT_TRUE(std::isfinite(c.radio2));
}

TEST(CCentro, BuildingAFigureKeepsTheStampOfTheCentre) {
  CCentro c;
  c.centro.num = 1234;
  ASSERT_TRUE(c.Centro3P(P(3, 4), P(-4, 3), P(0, -5)));
  EXPECT_EQ(c.centro.num, 1234);
  EXPECT_FALSE(c.Centro3P(P(0, 0), P(1, 1), P(2, 2)));
  EXPECT_EQ(c.centro.num, 1234);
  ASSERT_TRUE(c.Centro4P(P(0, 0, 0), P(2, 0, 0), P(0, 2, 0), P(0, 0, 2)));
  EXPECT_EQ(c.centro.num, 1234);
}

TEST(CCentro, ACopyCarriesTheWholeFigure) {
  CCentro c;
  ASSERT_TRUE(c.Centro3P(P(3, 4), P(-4, 3), P(0, -5)));
  const CCentro copy(c);
  ExpectFigure(copy, 0, 0, 0, 5);
  CCentro assigned;
  assigned = c;
  ExpectFigure(assigned, 0, 0, 0, 5);
  EXPECT_EQ(CCentro().radio, 0.0);
}

TEST(CCentro, TheSphereThroughFourPointsOfAKnownSphere) {
  CCentro c;
  ASSERT_TRUE(c.Centro4P(P(0, 0, 0), P(10, 0, 0), P(0, 10, 0), P(0, 0, 10)));
  ExpectFigure(c, 5, 5, 5, std::sqrt(75.0));
  ASSERT_TRUE(c.Centro4P(P(13, 0, 0), P(-5, 12, 0), P(3, 4, 12), P(3, -4, -12)));
  ExpectFigure(c, 0, 0, 0, 13);
}

TEST(CCentro, TheSphereIsAsGoodAtTheEdgeOfTheRange) {
  const int x = kLeast + 13, y = kGreatest - 13, z = kLeast + 13;
  CCentro c;
  ASSERT_TRUE(c.Centro4P(P(x + 13, y, z), P(x - 5, y + 12, z), P(x + 3, y + 4, z + 12), P(x + 3, y - 4, z - 12)));
  ExpectFigure(c, x, y, z, 13);
}

TEST(CCentro, CoplanarPointsHaveNoSphere) {
  CCentro c;
  ASSERT_TRUE(c.Centro4P(P(0, 0, 0), P(10, 0, 0), P(0, 10, 0), P(0, 0, 10)));
  EXPECT_FALSE(c.Centro4P(P(0, 0, 7), P(10, 0, 7), P(0, 10, 7), P(10, 10, 7)));
  ExpectDegenerate(c);
  EXPECT_FALSE(c.Centro4P(P(0, 0, 0), P(1, 2, 3), P(2, 4, 6), P(9, 9, 1)));
  EXPECT_FALSE(c.Centro4P(P(0, 0, 0), P(0, 0, 0), P(2, 4, 6), P(9, 9, 1)));
  EXPECT_FALSE(c.Centro4P(P(kLeast, kLeast, kLeast), P(kGreatest, kLeast, kGreatest), P(kLeast, kGreatest, kLeast),
                          P(kGreatest, kGreatest, kGreatest)));
  ExpectDegenerate(c);
}

TEST(CCentro, OneUnitOffAPlaneAcrossTheRangeIsASphere) {
  CCentro c;
  EXPECT_TRUE(c.Centro4P(P(kLeast, kLeast, kLeast), P(kGreatest, kLeast, kGreatest), P(kLeast, kGreatest, kLeast),
                         P(kGreatest, kGreatest, kGreatest - 1)));
  EXPECT_GT(c.radio, 0);
  EXPECT_TRUE(std::isfinite(c.radio2));
}

/// Six times the volume, exactly: differences are below 2^32, so the terms fit 128 bits.
Int128 Volume(std::vector<Point> const& p) {
  Int128 d[3][3];
  for (std::size_t i = 0; i < 3; ++i) {
    d[i][0] = static_cast<Int128>(p[i + 1].x) - p[0].x;
    d[i][1] = static_cast<Int128>(p[i + 1].y) - p[0].y;
    d[i][2] = static_cast<Int128>(p[i + 1].z) - p[0].z;
  }
  return d[0][0] * (d[1][1] * d[2][2] - d[1][2] * d[2][1]) - d[0][1] * (d[1][0] * d[2][2] - d[1][2] * d[2][0]) +
         d[0][2] * (d[1][0] * d[2][1] - d[1][1] * d[2][0]);
}

TEST(CCentro, TheSphereFailsOnExactlyCoplanarPointsAndOnNoOthers) {
  std::mt19937 random(20240613);
  int coplanar = 0;
  for (int i = 0; i < 20000; ++i) {
    // Points of a lattice plane through large coordinates, the last one moved off it in half of the cases.
    const auto near = [&] { return static_cast<int>(random() % 41) - 20; };
    const auto far = [&] { return static_cast<int>(random() % 2000001) - 1000000; };
    const Point u = P(far(), far(), far()), v = P(near(), near(), near());
    std::vector<Point> p{P(far(), far(), far())};
    for (int k = 0; k < 3; ++k) {
      const int s = near(), t = near();
      p.push_back(P(p[0].x + s * u.x + t * v.x, p[0].y + s * u.y + t * v.y, p[0].z + s * u.z + t * v.z));
    }
    if (i % 2 == 0) p[3].z += static_cast<int>(random() % 3) - 1;
    const bool flat = Volume(p) == 0;
    coplanar += flat ? 1 : 0;
    CCentro c;
    ASSERT_EQ(c.Centro4P(p[0], p[1], p[2], p[3]), !flat) << "round " << i;
    ASSERT_EQ(c.radio == 0.0, flat) << "round " << i;
  }
  EXPECT_GT(coplanar, 10000);
  EXPECT_LT(coplanar, 19000);
}

TEST(CCentro, FiguresOfOrdinaryPointsPassThroughThem) {
  std::mt19937 random(20240614);
  const auto near = [&](int base) { return base + static_cast<int>(random() % 100000); };
  for (int i = 0; i < 20000 && !HasFatalFailure(); ++i) {
    const int x = static_cast<int>(random() % 4000000000u - 2000000000u), y = x / 3;
    const std::vector<Point> p{P(near(x), near(y), near(0)), P(near(x), near(y), near(0)), P(near(x), near(y), near(0)),
                               P(near(x), near(y), near(0))};
    CCentro c;
    if (c.Centro3P(p[0], p[1], p[2]) && c.radio < 1e7) ExpectThrough(c, {p[0], p[1], p[2]}, 0);
    if (c.Centro4P(p[0], p[1], p[2], p[3]) && c.radio < 1e7) ExpectThrough(c, p, 1);
  }
}

}  // namespace
