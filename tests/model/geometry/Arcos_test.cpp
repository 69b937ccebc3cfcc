#include "model/geometry/Arcos.h"

#include <gtest/gtest.h>
#include <limits>
#include <numbers>

#include "model/Fixtures.h"
#include "model/geometry/Cercania.h"

using namespace Meseta47;

namespace {

using Real = CCoor3D<double>;
constexpr double kTurn = 2 * std::numbers::pi;

/// Greatest distance from points of the curve to the chords.
double Sagitta(std::vector<Real> const& chords, Real const& centre, double a, double b, double turn, double from,
               double to) {
  double greatest = 0;
  for (int i = 0; i <= 2000; ++i) {
    const double w = from + (to - from) * i / 2000;
    const double u = a * std::cos(w), v = b * std::sin(w);
    const Real p(centre.x + std::cos(turn) * u - std::sin(turn) * v, centre.y + std::sin(turn) * u + std::cos(turn) * v,
                 0, 0);
    double nearest = std::numeric_limits<double>::infinity();
    for (std::size_t k = 1; k < chords.size(); ++k) {
      nearest = std::min(nearest, DistanciaASegmento(p, chords[k - 1], chords[k]));
    }
    greatest = std::max(greatest, nearest);
  }
  return greatest;
}

TEST(ArcoDeElipse, TheChordsStayWithinTheSagittaAndAreNotWasted) {
  const Real centre(1000, 2000, 30, 0);
  const auto arc = ArcoDeElipse(centre, 500, 200, 0.7, 0.3, 4.0, 1.0);
  const double off = Sagitta(arc, centre, 500, 200, 0.7, 0.3, 4.0);
  EXPECT_LE(off, 1.0);
  EXPECT_GT(off, 0.5);
  for (Real const& p : arc) EXPECT_EQ(p.z, 30);
}

TEST(ArcoDeElipse, TheEndsAreThoseOfTheAngles) {
  const auto arc = ArcoDeElipse(Real(0, 0, 0, 0), 10, 10, 0, 0, std::numbers::pi / 2, 0.1);
  ASSERT_GE(arc.size(), 2u);
  EXPECT_NEAR(arc.front().Distancia(Real(10, 0, 0, 0)), 0, 1e-12);
  EXPECT_NEAR(arc.back().Distancia(Real(0, 10, 0, 0)), 0, 1e-12);
  const auto back = ArcoDeElipse(Real(0, 0, 0, 0), 10, 10, 0, std::numbers::pi / 2, 0, 0.1);
  EXPECT_EQ(back.size(), arc.size());
  EXPECT_NEAR(back.front().Distancia(Real(0, 10, 0, 0)), 0, 1e-12);
}

TEST(ArcoDeElipse, AWholeTurnHasThreeChordsAtLeast) {
  EXPECT_GE(ArcoDeElipse(Real(), 1, 1, 0, 0, kTurn, 1e9).size(), 4u);
}

TEST(ArcoDeElipse, LengthsThatAreNotPositiveGiveNothing) {
  EXPECT_TRUE(ArcoDeElipse(Real(), 0, 1, 0, 0, 1, 0.1).empty());
  EXPECT_TRUE(ArcoDeElipse(Real(), 1, -1, 0, 0, 1, 0.1).empty());
  EXPECT_TRUE(ArcoDeElipse(Real(), 1, 1, 0, 0, 1, 0).empty());
  EXPECT_TRUE(ArcoDeElipse(Real(), 1, 1, 0, 0, std::nan(""), 0.1).empty());
}

TEST(ArcoDeElipse, ATinySagittaDoesNotMakeMoreThanAMillionChords) {
  EXPECT_EQ(ArcoDeElipse(Real(), 1e9, 1e9, 0, 0, kTurn, 1e-9).size(), 1000001u);
}

TEST(ArcoPorTresPuntos, GoesFromTheFirstOverTheSecondToTheThirdInEitherSense) {
  const Real east(10, 0, 0, 0), north(0, 10, 5, 0), west(-10, 0, 20, 0);
  for (const bool forward : {true, false}) {
    const auto arc = forward ? ArcoPorTresPuntos(east, north, west, 0.01) : ArcoPorTresPuntos(west, north, east, 0.01);
    EXPECT_EQ(arc.front(), forward ? east : west);
    EXPECT_EQ(arc.back(), forward ? west : east);
    EXPECT_NE(std::find(arc.begin(), arc.end(), north), arc.end());
    for (Real const& p : arc) {
      EXPECT_NEAR(p.Distancia(Real(0, 0, 0, 0), 0), 10, 1e-9);
      EXPECT_GE(p.y, -1e-9) << "the arc takes the side of the middle point";
    }
    EXPECT_LE(Sagitta(arc, Real(0, 0, 0, 0), 10, 10, 0, 0, std::numbers::pi), 0.01);
  }
}

TEST(ArcoPorTresPuntos, TakesTheLongWayRoundWhenTheMiddlePointIsThere) {
  // From east to north it is a quarter of a turn, but over the west three quarters, by the south.
  const auto arc = ArcoPorTresPuntos(Real(10, 0, 0, 0), Real(-10, 0, 0, 0), Real(0, 10, 0, 0), 0.1);
  double lowest = 0;
  for (Real const& p : arc) lowest = std::min(lowest, p.y);
  EXPECT_LT(lowest, -9.5);
}

TEST(ArcoPorTresPuntos, HeightsGrowEvenlyOnEachPart) {
  const auto arc = ArcoPorTresPuntos(Real(10, 0, 0, 0), Real(0, 10, 100, 0), Real(-10, 0, 50, 0), 0.01);
  for (std::size_t i = 1; i < arc.size(); ++i) {
    if (arc[i].x >= 0) {
      EXPECT_GT(arc[i].z, arc[i - 1].z);
    } else {
      EXPECT_LT(arc[i].z, arc[i - 1].z);
    }
  }
}

TEST(ArcoPorTresPuntos, CollinearPointsAreTheirOwnArc) {
  const std::vector<Real> points{{0, 0, 1, 0}, {1, 1, 2, 0}, {5, 5, 3, 0}};
  EXPECT_EQ(ArcoPorTresPuntos(points[0], points[1], points[2], 0.1), points);
  EXPECT_TRUE(ArcoPorTresPuntos(points[0], points[1], points[2], 0).empty());
}

}  // namespace
