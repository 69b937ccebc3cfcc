// What the triangles of a closed set tell of the heights around their vertices.
#include <gmock/gmock.h>
#include <limits>

#include "planar/CAlturasVecinas.h"
#include "planar/CSetTriangulos2D.h"
#include "support/SetScene.h"

namespace Meseta47 {
namespace {

using test::Box;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kAnySide = 1e18;

struct Place {
  int x, y, z;
};

/// A closed set with triangles of numbered points.
class Heights : public testing::Test {
 protected:
  void Points(std::vector<Place> const& places) {
    for (Place const& p : places) points.emplace_back(p.x, p.y, p.z, static_cast<int>(points.size()) + 1);
  }
  /// By the numbers of its points.
  void Triangle(int a, int b, int c) { Triangle(root, a, b, c); }
  void Triangle(CSetTriangulos2D& set, int a, int b, int c) {
    const CTriangulo2D t(&points[static_cast<std::size_t>(a) - 1], &points[static_cast<std::size_t>(b) - 1],
                         &points[static_cast<std::size_t>(c) - 1]);
    set.InsertaOrdenado(t, set.maximas);
  }
  CAlturasVecinas const& Gather(double limit2 = kAnySide, double slope = 0, int height = 0) {
    root.QuitaTrianguloActual();
    if (known.minimos.empty()) known.Prepara(points.size());
    root.BuscaPicos(known, limit2, slope, height);
    return known;
  }

  std::vector<CCoor3D<int>> points;
  CAlturasVecinas known;
  CSetTriangulos2D root{0};
};

class HeightsOfOne : public Heights {
 protected:
  HeightsOfOne() {
    root.EstableceDivisiones(Box(-1000, -1000, 1000, 1000), false);
    Points({{0, 0, 5}, {0, 30, 70}, {40, 0, -2}, {40, 30, 8}});
  }
};

TEST_F(HeightsOfOne, EachVertexLearnsTheHeightsOfTheOtherTwo) {
  Triangle(1, 2, 3);
  Gather();
  EXPECT_THAT(known.minimos, ElementsAre(-2, -2, 5, 0));
  EXPECT_THAT(known.maximos, ElementsAre(70, 5, 70, 0));
  EXPECT_THAT(known.sumas, ElementsAre(68, 3, 75, 0));
  EXPECT_THAT(known.vecinos, ElementsAre(2, 2, 2, 0));
  EXPECT_THAT(known.empinados, Each(0));
}

TEST_F(HeightsOfOne, ANeighbourSharedByTwoTrianglesIsSummedTwice) {
  Triangle(1, 2, 3);
  Triangle(2, 4, 3);
  Gather();
  EXPECT_THAT(known.vecinos, ElementsAre(2, 4, 4, 2));
  EXPECT_EQ(known.sumas[1], 5 - 2 - 2 + 8) << "its neighbour at -2 is in both";
  EXPECT_EQ(known.minimos[1], -2);
  EXPECT_EQ(known.maximos[1], 8);
  EXPECT_EQ(known.minimos[2], 5);
  EXPECT_EQ(known.maximos[2], 70);
}

TEST_F(HeightsOfOne, ATriangleAtTheFrameTellsNothing) {
  for (const int number : {0, -1, -4}) {
    points[3].num = number;
    Triangle(2, 4, 3);
    Gather(kAnySide, 0.1);
    EXPECT_THAT(known.vecinos, Each(0)) << number;
    EXPECT_THAT(known.empinados, Each(0)) << number;
    root.Vacia();
    root.EstableceDivisiones(Box(-1000, -1000, 1000, 1000), false);
  }
}

TEST_F(HeightsOfOne, ATriangleWithANullVertexTellsNothing) {
  CTriangulo2D t;
  t.SetPuntos(&points[0], &points[1], nullptr, false);
  root.InsertaOrdenado(new CTriangulo2D(t), root.maximas, false);
  Gather(kAnySide, 0.1);
  EXPECT_THAT(known.vecinos, Each(0));
}

TEST_F(HeightsOfOne, ALongSideSilencesTheTriangleButNotItsSlopes) {
  Triangle(1, 2, 3);
  Gather(2499, 1);
  EXPECT_THAT(known.vecinos, Each(0)) << "the side from 2 to 3 is 50 long in plan";
  EXPECT_THAT(known.empinados, ElementsAre(0, 2, 0, 0));
  Triangle(1, 2, 3);
  known.Prepara(4);
  Gather(2500, 1);
  EXPECT_THAT(known.vecinos, ElementsAre(2, 2, 2, 0)) << "a side at the limit is none too long";
}

TEST_F(HeightsOfOne, TheSquareOfTheLargestNumberLetsEverySidePass) {
  points[1].y = 500'000'000;
  points[2].x = 500'000'000;
  Triangle(1, 2, 3);
  constexpr double kLargest = std::numeric_limits<int>::max();
  Gather(kLargest * kLargest);
  EXPECT_THAT(known.vecinos, ElementsAre(2, 2, 2, 0));
}

/// The steep rises that reach points 1, 2 and 3 at these heights, of a right angle with legs of 30 and 40.
class SteepRises : public Heights {
 protected:
  std::vector<int> At(std::array<int, 3> z, double slope, int height) {
    for (const std::array<std::size_t, 3>& turn : {std::array<std::size_t, 3>{0, 1, 2}, {1, 2, 0}, {2, 0, 1}}) {
      points.clear();
      root.Vacia();
      root.EstableceDivisiones(Box(-1000, -1000, 1000, 1000), false);
      Points({{0, 0, z[0]}, {0, 30, z[1]}, {40, 0, z[2]}});
      const auto number = [](std::size_t i) { return static_cast<int>(i) + 1; };
      Triangle(number(turn[0]), number(turn[1]), number(turn[2]));
      known.Prepara(3);
      Gather(kAnySide, slope, height);
      const std::vector<int> rises(known.empinados.begin(), known.empinados.end());
      if (!seen.empty()) {
        EXPECT_EQ(rises, seen) << "whichever vertex comes first";
      }
      seen = rises;
    }
    return std::exchange(seen, {});
  }

 private:
  std::vector<int> seen;
};

TEST_F(SteepRises, AreCountedAtTheirUpperEndOnceASide) {
  EXPECT_THAT(At({0, 100, 0}, 1, 10), ElementsAre(0, 2, 0)) << "100 over 30 and over 50";
  EXPECT_THAT(At({0, 100, 300}, 1, 10), ElementsAre(0, 1, 2));
  EXPECT_THAT(At({100, 0, 0}, 1, 10), ElementsAre(2, 0, 0));
  EXPECT_THAT(At({0, 0, 100}, 1, 10), ElementsAre(0, 0, 2));
}

TEST_F(SteepRises, MustBeSteeperThanTheSlope) {
  EXPECT_THAT(At({0, 30, 0}, 1, 0), ElementsAre(0, 0, 0)) << "30 over 30";
  EXPECT_THAT(At({0, 31, 0}, 1, 0), ElementsAre(0, 1, 0));
  EXPECT_THAT(At({0, 31, 0}, 0.61, 0), ElementsAre(0, 2, 0)) << "and 31 over 50";
}

TEST_F(SteepRises, MustBeMoreThanTwiceTheHeight) {
  EXPECT_THAT(At({0, 100, 0}, 1, 50), ElementsAre(0, 0, 0));
  EXPECT_THAT(At({0, 100, 0}, 1, 49), ElementsAre(0, 2, 0));
}

TEST_F(SteepRises, AreNotLookedAtWithoutASlope) {
  for (const double slope : {0.0, -1.0, 1e-7}) EXPECT_THAT(At({0, 100, 0}, slope, 0), Each(0)) << slope;
  EXPECT_THAT(At({0, 100, 0}, 1.1e-7, 0), ElementsAre(0, 2, 0));
}

TEST_F(SteepRises, TwiceTheGreatestHeightIsMoreThanAnyRise) {
  constexpr int kLow = std::numeric_limits<int>::min(), kHigh = std::numeric_limits<int>::max();
  EXPECT_THAT(At({kLow, kHigh, kLow}, 1, kHigh), ElementsAre(0, 2, 0)) << "2^32 - 1 is more than 2^32 - 2";
  EXPECT_THAT(At({kLow, kHigh - 1, kLow}, 1, kHigh), Each(0));
}

/// A point with a wheel of triangles around it, on a root without children.
class Wheel : public Heights {
 protected:
  Wheel(int spokes, int z) {
    root.EstableceDivisiones(Box(-1000, -1000, 1000, 1000), false);
    Points({{0, 0, 0}});
    for (int i = 0; i < spokes; ++i) points.emplace_back(i, 1000 - i * i % 7, z, i + 2);
    for (int i = 0; i < spokes; ++i) Triangle(1, 2 + i, 2 + (i + 1) % spokes);
  }
  Wheel() : Wheel(130, 7) {}
};

TEST_F(Wheel, CountsWrapAt256AndBeginAnew) {
  Gather();
  EXPECT_EQ(known.vecinos[0], 2 * 130 - 256);
  EXPECT_EQ(known.sumas[0], 2 * 7 * 2) << "the count had come back to 0, and the sum began anew";
}

class HighWheel : public Wheel {
 protected:
  HighWheel() : Wheel(5, std::numeric_limits<int>::max()) {}
};

TEST_F(HighWheel, SumsWrapAt32Bits) {
  Gather();
  EXPECT_EQ(known.vecinos[0], 10);
  EXPECT_EQ(known.sumas[0], -10) << "ten times 2^31 - 1";
}

TEST_F(Heights, ChildrenAreEmptiedAndStay) {
  root.EstableceDivisiones(Box(-1000, -1000, 1000, 1000), true);
  Points({{0, 0, 5}, {0, 30, 70}, {40, 0, -2}});
  for (unsigned i = 0; i < 4; ++i) Triangle(root.hijos[i], 1, 2, 3);
  Triangle(1, 2, 3);
  Gather();
  EXPECT_THAT(known.vecinos, Each(10));
  ASSERT_NE(root.hijos, nullptr);
  for (unsigned i = 0; i < 4; ++i) {
    EXPECT_EQ(root.hijos[i].primero, nullptr);
    EXPECT_EQ(root.hijos[i].cantidad, 0U);
    EXPECT_TRUE(root.hijos[i].cerrado);
  }
  EXPECT_EQ(root.primero, nullptr);
  EXPECT_EQ(root.ultimo, nullptr);
  EXPECT_EQ(root.actual, nullptr);
  EXPECT_EQ(root.inicio, nullptr);
}

TEST_F(HeightsOfOne, TheRowOfArraysIsTheSame) {
  Triangle(1, 2, 3);
  Triangle(2, 4, 3);
  root.QuitaTrianguloActual();
  std::vector<int> least(4), greatest(4), sums(4);
  std::vector<unsigned char> neighbours(4), steep(4);
  root.BuscaPicos(least, greatest, sums, neighbours, kAnySide, steep, 1, 10);
  Triangle(1, 2, 3);
  Triangle(2, 4, 3);
  Gather(kAnySide, 1, 10);
  EXPECT_EQ(least, known.minimos);
  EXPECT_EQ(greatest, known.maximos);
  EXPECT_EQ(sums, known.sumas);
  EXPECT_EQ(neighbours, known.vecinos);
  EXPECT_EQ(steep, known.empinados);
  EXPECT_THAT(known.empinados, ElementsAre(0, 4, 0, 0)) << "the side from 2 to 3 rises in both";
}

TEST_F(HeightsOfOne, AnOpenSetIsCutOffFromTheLivingMeshFirst) {
  Triangle(1, 2, 3);
  known.Prepara(4);
  root.BuscaPicos(known, kAnySide, 0, 0);
  EXPECT_THAT(known.vecinos, ElementsAre(2, 2, 2, 0));
  EXPECT_THAT(root.Abiertos(), IsEmpty());
}

}  // namespace
}  // namespace Meseta47
