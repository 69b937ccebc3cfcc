// Neighbours found one vertex at a time against the triangulation of all, whose circles are tried one by one.
#include "classification/CEstrellaSuelo.h"

#include <cmath>
#include <gmock/gmock.h>
#include <set>
#include <vector>

#include "support/Random.h"

namespace Meseta47 {
namespace {

constexpr int kCell = 100;  // units of a centimetre
const auto kAny = [](std::size_t) { return true; };

/// A grid of so many cells a side with a minimum at random in each of those that `has` admits.
template <class Has>
CMallaSuelo Grid(int side, std::uint64_t seed, Has const& has) {
  CMallaSuelo grid;
  grid.metro = grid.metroZ = 0.01;
  grid.lado = kCell;
  grid.columnas = grid.filas = side;
  support::Random random(seed);
  for (int row = 0; row < side; ++row) {
    for (int column = 0; column < side; ++column) {
      grid.indice.push_back(CMallaSuelo::kNinguno);
      if (!has(column, row)) continue;
      const auto within = [&] { return static_cast<int>(kCell * random.unit()); };
      grid.indice.back() = static_cast<std::uint32_t>(grid.Minimos());
      grid.minimos.push_back({kCell * column + within(), kCell * row + within(), 0});
      grid.celdas.push_back(static_cast<std::uint32_t>(grid.indice.size() - 1));
      grid.sp.push_back(1);
      grid.estados.push_back(CEstadoSuelo::Suelo);
    }
  }
  return grid;
}

CMallaSuelo Full(int side, std::uint64_t seed) {
  return Grid(side, seed, [](int, int) { return true; });
}

using Sets = std::vector<std::set<std::size_t>>;

/// Joins the corners of all triangles whose circles hold no ground minimum: they and no others are Delaunay.
Sets Joined(CMallaSuelo const& grid) {
  const std::size_t n = grid.Minimos();
  Sets joined(n);
  const auto at = [&](std::size_t i, std::size_t from) {
    return std::pair<std::int64_t, std::int64_t>(grid.minimos[i].x - grid.minimos[from].x,
                                                 grid.minimos[i].y - grid.minimos[from].y);
  };
  for (std::size_t a = 0; a < n; ++a) {
    for (std::size_t b = a + 1; b < n; ++b) {
      for (std::size_t c = b + 1; c < n; ++c) {
        if (!grid.EsSuelo(a) || !grid.EsSuelo(b) || !grid.EsSuelo(c)) continue;
        const auto [bx, by] = at(b, a);
        const auto [cx, cy] = at(c, a);
        const std::int64_t turn = bx * cy - by * cx, b2 = bx * bx + by * by, c2 = cx * cx + cy * cy;
        bool empty = turn != 0;
        for (std::size_t d = 0; empty && d < n; ++d) {
          if (d == a || d == b || d == c || !grid.EsSuelo(d)) continue;
          const auto [dx, dy] = at(d, a);
          const std::int64_t inside = (dx * dx + dy * dy) * turn - dx * (b2 * cy - c2 * by) + dy * (b2 * cx - c2 * bx);
          empty = turn > 0 ? inside >= 0 : inside <= 0;
        }
        if (!empty) continue;
        for (const std::size_t p : {a, b, c}) joined[p].insert({a, b, c});
      }
    }
  }
  for (std::size_t i = 0; i < n; ++i) joined[i].erase(i);
  return joined;
}

/// How many minima have neighbours all around; whether they are the right ones is told where they are not.
std::size_t Compare(CMallaSuelo const& grid) {
  const Sets joined = Joined(grid);
  CEstrellaSuelo star(grid);
  std::size_t found = 0;
  for (std::size_t i = 0; i < grid.Minimos(); ++i) {
    if (!grid.EsSuelo(i) || !star.Halla(i, kAny)) continue;
    ++found;
    EXPECT_EQ(std::set<std::size_t>(star.Vecinos().begin(), star.Vecinos().end()), joined[i]) << "minimum " << i;
  }
  return found;
}

TEST(CEstrellaSuelo, NeighboursAreThoseOfTheTriangulationOfAll) {
  for (std::uint64_t seed = 1; seed <= 3; ++seed) {
    SCOPED_TRACE(seed);
    EXPECT_GE(Compare(Full(10, seed)), 60U);
  }
}

TEST(CEstrellaSuelo, NeighboursAreFoundAcrossAGap) {
  const auto hasGap = [](int column, int row) { return column < 5 || column > 11 || row < 4 || row > 9; };
  EXPECT_GE(Compare(Grid(16, 4, hasGap)), 140U);
}

TEST(CEstrellaSuelo, WhatIsNoGroundIsNoNeighbour) {
  CMallaSuelo grid = Full(11, 5);
  for (std::size_t i = 0; i < grid.Minimos(); i += 3) grid.estados[i] = CEstadoSuelo::Objeto;
  EXPECT_GE(Compare(grid), 40U);
}

TEST(CEstrellaSuelo, AtTheRimThereAreNeighboursOnOneSideAlone) {
  const CMallaSuelo grid = Full(12, 6);
  CEstrellaSuelo star(grid);
  std::size_t lowest = 0;
  for (std::size_t i = 0; i < grid.Minimos(); ++i) lowest = grid.minimos[i].y < grid.minimos[lowest].y ? i : lowest;
  EXPECT_FALSE(star.Halla(lowest, kAny));
  EXPECT_TRUE(star.Halla(12 * 6 + 6, kAny));
}

TEST(CEstrellaSuelo, WhereLandIsFarAwayIsTheRimToo) {
  const auto ring = [](int column, int row) {
    return std::hypot(column - 40, row - 40) > 35 || (column == 40 && row == 40);
  };
  const CMallaSuelo grid = Grid(81, 7, ring);
  CEstrellaSuelo star(grid);
  EXPECT_FALSE(star.Halla(grid.indice[grid.Celda(40, 40)], kAny));
}

TEST(CEstrellaSuelo, EndsAtANeighbourThatIsRefused) {
  const CMallaSuelo grid = Full(12, 8);
  CEstrellaSuelo star(grid);
  const std::size_t middle = 12 * 6 + 6;
  ASSERT_TRUE(star.Halla(middle, kAny));
  const std::vector<std::size_t> neighbours = star.Vecinos();
  for (const std::size_t refused : neighbours) {
    EXPECT_FALSE(star.Halla(middle, [refused](std::size_t j) { return j != refused; }));
  }
  EXPECT_TRUE(star.Halla(middle, [](std::size_t j) { return j != 0; }));
}

}  // namespace
}  // namespace Meseta47
