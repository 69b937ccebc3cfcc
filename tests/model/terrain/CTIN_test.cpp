#include "model/terrain/CTIN.h"

#include <gtest/gtest.h>
#include <thread>

#include "model/TinScenes.h"
#include "model/threads/Codigos.h"

using namespace Meseta47;
using namespace scenes;

namespace {

CTIN square() { return surface({point(0, 0), point(0, 10), point(10, 0), point(10, 10)}); }

/// What is wrong with the links; empty when nothing is.
std::string linkFault(CTIN& tin) {
  const auto counts = sideCounts(sortedTriangles(tin));
  for (std::uint32_t i = 0; i < tin.Cantidad(); ++i) {
    const CTriangulo t = tin.Triangulo(i);
    const std::int16_t turned[] = {t.vecino12, t.vecino23, t.vecino31};
    for (std::size_t s = 0; s < 3; ++s) {
      const std::string here = "triangle " + std::to_string(i) + ", side " + std::to_string(s);
      const auto mine = side(tin.Vertices(i)[s], tin.Vertices(i)[(s + 1) % 3]);
      const std::uint32_t other = tin.Vecinos(i)[s];
      if ((other == kSinTriangulo) != (counts.at(mine) != 2)) return here + " has the wrong number of neighbours";
      if ((other == kSinTriangulo) != (turned[s] == -1)) return here + " and its slot disagree";
      if (other == kSinTriangulo) continue;
      const auto k = static_cast<std::size_t>(turned[s]);
      if (tin.Vecinos(other)[k] != i) return here + " is not its neighbour's neighbour";
      if (side(tin.Vertices(other)[k], tin.Vertices(other)[(k + 1) % 3]) != mine) return here + " meets another side";
    }
  }
  return "";
}

}  // namespace

TEST(CTIN, TakesItsOwnPointsAndKeepsThem) {
  CTIN tin = surface({point(0, 0), point(1, 0), point(0, 1)});
  insert(tin, {0, 1, 2});
  tin.SetPuntosMdt(tin.puntos);
  EXPECT_EQ(tin.puntos.size(), 3u);
  EXPECT_EQ(tin.Cantidad(), 0u);
}

TEST(CTIN, NewModelIsEmpty) {
  const CTIN tin(0, 0, CDataSemilla(3, 1, 2, 3));
  EXPECT_EQ(tin.Cantidad(), 0u);
  EXPECT_EQ(tin.estado, 0);
  EXPECT_EQ(tin.semilla.precision, 3);
  EXPECT_EQ(tin.GetTipoObjeto(), OBJETO_TIN);
  EXPECT_FALSE(tin.puntos.EsRica());
  EXPECT_TRUE(tin.GetMaximasDouble().EstanVacias(true));
}

TEST(CTIN, AFormOfThreeOrMoreSelectsTheRicherPoints) {
  EXPECT_TRUE(CTIN(0, 3, CDataSemilla()).puntos.EsRica());
  EXPECT_EQ(CTIN(0, 3, CDataSemilla()).estado, 3);
}

TEST(CTIN, PointBeyondTheEndIsNull) {
  CTIN tin = square();
  EXPECT_EQ(tin.Punto(3)->x, 10);
  EXPECT_EQ(tin.Punto(4), nullptr);
  EXPECT_EQ(tin.Punto(0xFFFFFFFF), nullptr);
}

TEST(CTIN, TakingPointsOverEmptiesTheArgumentAndDropsTheTriangles) {
  CTIN tin = square();
  insert(tin, {0, 1, 2});
  CSetPuntosMdt points(0, 0);
  points.push_back(point(5, 5), false);
  tin.SetPuntosMdt(points);
  EXPECT_EQ(points.size(), 0u);
  EXPECT_EQ(tin.puntos.size(), 1u);
  EXPECT_EQ(tin.Cantidad(), 0u);
}

TEST(CTIN, TrianglesOfForeignOrMissingPointsAreNotTaken) {
  CTIN tin = square();
  CPuntoTIN foreign = point(3, 3);
  CTriangulo missing(tin.Punto(0), tin.Punto(1), nullptr, -1, -1, -1);
  CTriangulo stranger(tin.Punto(0), tin.Punto(1), &foreign, -1, -1, -1);
  EXPECT_FALSE(tin.Inserta(missing, false, false, false));
  EXPECT_FALSE(tin.Inserta(stranger, false, false, false));
  EXPECT_EQ(tin.Cantidad(), 0u);
}

TEST(CTIN, SortedTrianglesAscendByTheirPoints) {
  CTIN tin = square();
  insert(tin, {1, 2, 3});
  insert(tin, {2, 1, 0});
  EXPECT_FALSE(tin.EstaOrdenado());
  EXPECT_EQ(tin.Sort(nullptr, 0, true), kHecho);
  EXPECT_TRUE(tin.EstaOrdenado());
  EXPECT_EQ(sortedTriangles(tin), (std::vector<Terna>{{0, 1, 2}, {1, 3, 2}}));
  EXPECT_EQ(neighbours(tin),
            (std::vector<Terna>{{kSinTriangulo, 1, kSinTriangulo}, {kSinTriangulo, kSinTriangulo, 0}}));
  const CTriangulo first = tin.Triangulo(0);
  EXPECT_EQ(first.P2, tin.Punto(1));
  EXPECT_EQ(first.vecino12, -1);
  EXPECT_EQ(first.vecino23, 2);
  EXPECT_EQ(first.vecino31, -1);
}

TEST(CTIN, WithoutLinkingThereAreNoNeighbours) {
  CTIN tin = square();
  insert(tin, {0, 1, 2});
  insert(tin, {1, 3, 2});
  EXPECT_EQ(tin.Sort(nullptr, 0, false), kHecho);
  EXPECT_FALSE(tin.EstaEnlazado());
  EXPECT_EQ(tin.Triangulo(0).vecino23, -1);
}

TEST(CTIN, AModelWhoseOwnerReadsNoNeighboursIsOrderedAllTheSame) {
  CTIN tin = square();
  tin.conVecinos = false;
  insert(tin, {1, 3, 2});
  insert(tin, {0, 1, 2});
  EXPECT_EQ(tin.Sort(nullptr, 0, true), kHecho);
  EXPECT_EQ(sortedTriangles(tin), (std::vector<Terna>{{0, 1, 2}, {1, 3, 2}}));
  EXPECT_FALSE(tin.EstaEnlazado());
}

TEST(CTIN, TrianglesInsertedLaterAreSortedIn) {
  CTIN tin = square();
  insert(tin, {1, 3, 2});
  tin.Sort(nullptr, 0, true);
  insert(tin, {0, 1, 2});
  EXPECT_EQ(tin.Cantidad(), 2u);
  tin.Sort(nullptr, 0, true);
  EXPECT_EQ(sortedTriangles(tin), (std::vector<Terna>{{0, 1, 2}, {1, 3, 2}}));
}

TEST(CTIN, AFaceHandedOverAgainIsKeptOnce) {
  CTIN tin = square();
  for (int i = 0; i < 3; ++i) {
    EXPECT_TRUE(insert(tin, {0, 1, 2}, true));
    EXPECT_TRUE(insert(tin, {2, 3, 1}, true));
  }
  tin.Sort(nullptr, 0, true);
  EXPECT_EQ(tin.Cantidad(), 2u);
  EXPECT_EQ(linkFault(tin), "");
}

TEST(CTIN, WithoutAskingForItEveryFaceIsKept) {
  CTIN tin = square();
  insert(tin, {0, 1, 2});
  insert(tin, {0, 1, 2});
  tin.Sort(nullptr, 0, true);
  EXPECT_EQ(tin.Cantidad(), 2u);
}

TEST(CTIN, ThreeFacesOnOneSideAreNobodysNeighbours) {
  CTIN tin = surface({point(0, 0), point(0, 10), point(5, 5, 9), point(10, 0), point(10, 10, 3)});
  for (Terna const& t : {Terna{0, 1, 2}, Terna{0, 1, 3}, Terna{0, 1, 4}}) insert(tin, t);
  tin.Sort(nullptr, 0, true);
  for (std::uint32_t i = 0; i < 3; ++i) EXPECT_EQ(tin.Vecinos(i), (Terna{kSinTriangulo, kSinTriangulo, kSinTriangulo}));
}

TEST(CTIN, AnEmptyModelSorts) {
  CTIN tin(0, 0, CDataSemilla());
  EXPECT_EQ(tin.Sort(nullptr, 0, true), kHecho);
  EXPECT_EQ(tin.Cantidad(), 0u);
}

TEST(CTIN, TrianglesRoundAPointOfHighDegreeAreLinked) {
  std::vector<CPuntoTIN> points{point(-1000, 0)};  // first of all, and in every triangle
  for (int i = 0; i < 5000; ++i) points.push_back(point(i, i * i / 100));
  CTIN tin = surface(points);
  for (std::uint32_t i = 5000; i > 1; --i) insert(tin, {0, i - 1, i});
  tin.Sort(nullptr, 0, true);
  EXPECT_EQ(linkFault(tin), "");
}

TEST(CTIN, LiberatingDropsTrianglesAndOutlineAndKeepsPoints) {
  CTIN tin = finished(Grid(3, 3, 1), [](std::size_t) { return true; });
  tin.LiberaTriangulos();
  EXPECT_EQ(tin.Cantidad(), 0u);
  EXPECT_TRUE(tin.Limite().empty());
  EXPECT_EQ(tin.puntos.size(), 16u);
}

TEST(CTIN, CountsAreThoseOfPointsTrianglesAndRings) {
  CTIN tin = finished(Grid(3, 3, 1), [](std::size_t) { return true; });
  tin.ActualizaCantidades();
  EXPECT_EQ(tin.cantidades[0], 16u);
  EXPECT_EQ(tin.cantidades[1], 18u);
  EXPECT_EQ(tin.cantidades[2], 1u);
  tin.Clear();
  EXPECT_EQ(tin.cantidades[0], 0u);
  EXPECT_EQ(tin.puntos.size(), 0u);
}

TEST(CTIN, TheBoxIsInMetres) {
  const CTIN tin = surface({point(-150, 25, 7), point(300, 50, -100)}, CDataSemilla(2, 0, 0, 0));
  const CMaximas<double> box = tin.GetMaximasDouble();
  EXPECT_EQ(box.Minimo, (CCoor3D<double>(-1.5, 0.25, -1, 0)));
  EXPECT_EQ(box.Maximo, (CCoor3D<double>(3, 0.5, 0.07, 0)));
}

TEST(CTIN, ACopyIsWholeAndItsOwn) {
  CTIN tin = finished(Grid(4, 4, 2), [](std::size_t i) { return i != 9; });
  insert(tin, {0, 1, 2});
  CTIN copy(tin);
  EXPECT_EQ(copy.Cantidad(), tin.Cantidad());
  EXPECT_EQ(copy.Limite(), tin.Limite());
  insert(copy, {3, 4, 5});
  EXPECT_EQ(copy.Cantidad(), tin.Cantidad() + 1);
  EXPECT_EQ(copy.Triangulo(0).P1, copy.Punto(copy.Vertices(0)[0]));
}

TEST(CTIN, OneThreadMayFillSeveralModelsInTurn) {
  CTIN a = square(), b = square();
  for (int i = 0; i < 200000; ++i) {
    insert(a, {0, 1, 2});
    insert(b, {1, 3, 2});
  }
  EXPECT_EQ(a.Cantidad(), 200000u);
  a.Sort(nullptr, 0, false);
  b.Sort(nullptr, 0, false);
  EXPECT_EQ(b.Cantidad(), 200000u);
  EXPECT_EQ(a.Vertices(199999), (Terna{0, 1, 2}));
  EXPECT_EQ(b.Vertices(0), (Terna{1, 3, 2}));
}

TEST(CTIN, CancelledSortKeepsTheTriangles) {
  const Grid grid(60, 60, 3);
  int reports = 0;
  {
    Listener all;
    CTIN tin = surface(grid.points);
    for (Terna const& t : grid.triangles) insert(tin, t);
    EXPECT_EQ(tin.Sort(&all, 0, true), kHecho);
    EXPECT_FALSE(all.beyondTotal);
    reports = all.reports;
  }
  ASSERT_GE(reports, 6);
  for (int n = 1; n <= reports; ++n) {
    Listener listener;
    listener.cancelAt = n;
    CTIN tin = surface(grid.points);
    for (Terna const& t : grid.triangles) insert(tin, t);
    EXPECT_EQ(tin.Sort(&listener, 0, true), kCancelado) << "at report " << n;
    EXPECT_EQ(tin.Cantidad(), grid.triangles.size());
    EXPECT_EQ(tin.Sort(nullptr, 0, true), kHecho);
    EXPECT_EQ(linkFault(tin), "");
  }
}

/// The same triangles, shuffled and inserted from several threads.
class Threads : public testing::TestWithParam<unsigned> {};

TEST_P(Threads, TheModelDoesNotDependOnThreadsNorOnTheOrderOfInsertion) {
  const Grid grid(150, 150, 11);
  const CTIN alone = finished(grid, [](std::size_t) { return true; });

  const unsigned count = GetParam();
  const Processors processors(count);
  std::vector<Terna> shuffled = grid.triangles;
  std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(count));
  CTIN tin = surface(grid.points);
  std::vector<std::thread> threads;
  for (unsigned k = 0; k < count; ++k) {
    threads.emplace_back([&, k] {
      for (std::size_t i = k; i < shuffled.size(); i += count) insert(tin, shuffled[i]);
    });
  }
  for (std::thread& t : threads) t.join();
  ASSERT_EQ(tin.Cantidad(), grid.triangles.size());
  ASSERT_EQ(tin.Sort(nullptr, 0, true), kHecho);
  EXPECT_EQ(sortedTriangles(tin), sortedTriangles(alone));
  EXPECT_EQ(neighbours(tin), neighbours(alone));
  EXPECT_EQ(linkFault(tin), "");
}

INSTANTIATE_TEST_SUITE_P(Counts, Threads, testing::Values(1u, 2u, 4u, 7u));
