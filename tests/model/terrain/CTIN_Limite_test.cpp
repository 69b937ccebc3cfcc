#include <gtest/gtest.h>

#include "model/TinScenes.h"
#include "model/threads/Codigos.h"

using namespace Meseta47;
using namespace scenes;

namespace {

using Rings = std::vector<std::vector<std::uint32_t>>;

/// A surface of some of a 3 by 3 grid's cells, square and without jitter. Point 4 * column + row; cells from 0 to 8, by
/// columns, upwards.
class Cells {
 public:
  explicit Cells(std::set<int> kept) : tin(Corners()) {
    std::vector<Terna> rejected, all;
    for (int cell = 0; cell < 9; ++cell) {
      const auto a = static_cast<std::uint32_t>(cell / 3 * 4 + cell % 3);
      for (Terna const& t : {Terna{a, a + 4, a + 5}, Terna{a, a + 5, a + 1}}) {
        all.push_back(t);
        (kept.count(cell) ? accepted : rejected).push_back(t);
      }
    }
    for (Terna const& t : accepted) insert(tin, t);
    sides = rejectedSides(all, rejected);
  }

  Rings Outline(int way = 1) {
    EXPECT_EQ(tin.GenerarLimiteAPartirLados(sides, way, 0), kHecho);
    return tin.Limite();
  }

  std::vector<Terna> accepted;
  std::vector<CLado> sides;
  CTIN tin;

 private:
  static CTIN Corners() {
    std::vector<CPuntoTIN> points;
    for (int x = 0; x < 4; ++x) {
      for (int y = 0; y < 4; ++y) points.push_back(point(10 * x, 10 * y));
    }
    return surface(points);
  }
};

}  // namespace

TEST(CTIN_Limite, OuterRingRunsCounterClockwiseFromItsLowestIndex) {
  Cells cells({4});
  EXPECT_EQ(cells.Outline(), (Rings{{5, 9, 10, 6}}));
  EXPECT_FALSE(cells.tin.EsHueco(0));
}

TEST(CTIN_Limite, AnotherSenseRunsTheOtherWay) {
  Cells cells({4});
  EXPECT_EQ(cells.Outline(0), (Rings{{5, 6, 10, 9}}));
  EXPECT_FALSE(cells.tin.EsHueco(0));
}

TEST(CTIN_Limite, HoleRunsClockwise) {
  Cells cells({0, 1, 2, 3, 5, 6, 7, 8});
  EXPECT_EQ(cells.Outline(), (Rings{{0, 4, 8, 12, 13, 14, 15, 11, 7, 3, 2, 1}, {5, 6, 10, 9}}));
  EXPECT_FALSE(cells.tin.EsHueco(0));
  EXPECT_TRUE(cells.tin.EsHueco(1));
  EXPECT_EQ(outlineFault(cells.tin, cells.accepted), "");
}

TEST(CTIN_Limite, PatchesThatTouchInAPointHaveARingEach) {
  Cells cells({0, 4});
  EXPECT_EQ(cells.Outline(), (Rings{{0, 4, 5, 1}, {5, 9, 10, 6}}));
}

TEST(CTIN_Limite, HolesThatTouchInAPointHaveARingEach) {
  // A 4 by 4 grid without its cells (1, 1) and (2, 2).
  const Grid grid(4, 4, 3);
  const CTIN tin = finished(grid, [](std::size_t i) { return i / 2 != 5 && i / 2 != 10; });
  ASSERT_EQ(tin.Limite().size(), 3u);
  EXPECT_EQ(tin.EsHueco(0) + tin.EsHueco(1) + tin.EsHueco(2), 2);
  EXPECT_EQ(outlineFault(tin, sortedTriangles(tin)), "");
}

TEST(CTIN_Limite, HoleThatTouchesTheOuterRingIsSplitFromIt) {
  Cells cells({1, 2, 3, 5, 6, 7, 8});
  const Rings rings = cells.Outline();
  ASSERT_EQ(rings.size(), 2u);
  EXPECT_EQ(rings[1], (std::vector<std::uint32_t>{5, 6, 10, 9}));
  EXPECT_FALSE(cells.tin.EsHueco(0));
  EXPECT_TRUE(cells.tin.EsHueco(1));
  EXPECT_EQ(outlineFault(cells.tin, cells.accepted), "");
}

TEST(CTIN_Limite, SidesThatBoundNoTriangleOrLieBetweenTwoAreDropped) {
  Cells cells({4});
  cells.sides.emplace_back(5, 10, -1, 0);   // the diagonal of the kept cell
  cells.sides.emplace_back(0, 15, -1, 0);   // nobody's
  cells.sides.emplace_back(1, 900, -1, 0);  // not even of this model
  cells.sides.push_back(cells.sides.back());
  EXPECT_EQ(cells.Outline(), (Rings{{5, 9, 10, 6}}));
}

TEST(CTIN_Limite, IndicesCountFromTheBase) {
  Cells cells({4});
  for (CLado& l : cells.sides) l = CLado(l.P1 + 1, l.P2 + 1, -1, 0);
  EXPECT_EQ(cells.tin.GenerarLimiteAPartirLados(cells.sides, 1, 1), kHecho);
  EXPECT_EQ(cells.tin.Limite(), (Rings{{5, 9, 10, 6}}));
}

TEST(CTIN_Limite, SidesThatDoNotCloseAreRefusedAndLeaveNoOutline) {
  Cells cells({4});
  EXPECT_EQ(cells.Outline().size(), 1u);
  std::erase_if(cells.sides, [](CLado const& l) { return l == CLado(5, 9, -1, 0); });
  EXPECT_EQ(cells.tin.GenerarLimiteAPartirLados(cells.sides, 1, 0), kFicheroInconsistente);
  EXPECT_TRUE(cells.tin.Limite().empty());
}

TEST(CTIN_Limite, NothingHasNoOutline) {
  CTIN tin(0, 0, CDataSemilla());
  std::vector<CLado> none;
  EXPECT_EQ(tin.GenerarLimiteAPartirLados(none, 1, 0), kHecho);
  EXPECT_TRUE(tin.Limite().empty());
}

TEST(CTIN_Limite, ExtremeCoordinatesTurnTheRightWay) {
  constexpr int kLow = -2147483647 - 1, kHigh = 2147483647;
  CTIN tin = surface({point(kLow, kLow), point(kLow, kHigh), point(kHigh, kLow), point(kHigh, kHigh)});
  insert(tin, {0, 2, 1});
  insert(tin, {1, 2, 3});
  std::vector<CLado> sides{{0, 1, -1, 0}, {0, 2, -1, 0}, {1, 3, -1, 0}, {2, 3, -1, 0}};
  EXPECT_EQ(tin.GenerarLimiteAPartirLados(sides, 1, 0), kHecho);
  EXPECT_EQ(tin.Limite(), (Rings{{0, 2, 3, 1}}));
}

/// Grids with triangles taken out at random: at a half, patches and holes of every shape touch in points everywhere.
class RandomHoles : public testing::TestWithParam<std::tuple<int, unsigned>> {};

TEST_P(RandomHoles, RingsCloseAndEncloseTheTrianglesExactly) {
  const auto [percent, seed] = GetParam();
  SCOPED_TRACE("seed " + std::to_string(seed));
  const Grid grid(40, 40, seed);
  std::mt19937 random(seed);
  std::vector<Terna> accepted, rejected;
  for (Terna const& t : grid.triangles) {
    (static_cast<int>(random() % 100) < percent ? rejected : accepted).push_back(t);
  }
  std::vector<CLado> sides = rejectedSides(grid.triangles, rejected);
  CTIN tin = surface(grid.points);
  for (Terna const& t : accepted) insert(tin, t);
  ASSERT_EQ(tin.GenerarLimiteAPartirLados(sides, 1, 0), kHecho);
  EXPECT_EQ(outlineFault(tin, accepted), "");

  const Rings rings = tin.Limite();
  std::shuffle(sides.begin(), sides.end(), random);
  std::shuffle(accepted.begin(), accepted.end(), random);
  const Processors four(4);
  CTIN again = surface(grid.points);
  for (Terna const& t : accepted) insert(again, t);
  ASSERT_EQ(again.GenerarLimiteAPartirLados(sides, 1, 0), kHecho);
  EXPECT_EQ(again.Limite(), rings);
}

INSTANTIATE_TEST_SUITE_P(Shares, RandomHoles,
                         testing::Combine(testing::Values(0, 2, 20, 50, 80, 98, 100), testing::Range(1u, 6u)));

TEST(CTIN_Limite, IslandsWithinHolesAreRingsOfTheirOwn) {
  const Grid grid(30, 30, 7);
  const CTIN tin = finished(grid, [](std::size_t i) {
    const int column = static_cast<int>(i / 60), row = static_cast<int>(i / 2 % 30);
    const int fromCentre = std::max(std::abs(column - 15), std::abs(row - 15));
    return fromCentre > 10 || fromCentre < 5;
  });
  ASSERT_EQ(tin.Limite().size(), 3u);
  EXPECT_EQ(tin.EsHueco(0) + tin.EsHueco(1) + tin.EsHueco(2), 1);
  EXPECT_EQ(outlineFault(tin, sortedTriangles(tin)), "");
}
