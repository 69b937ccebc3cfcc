#include "host/render/SurfaceRaster.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <random>

namespace Meseta47::host {
namespace {

/// Which side of a-b a cell's centre is on, exactly: corners are whole numbers of eighths.
std::int64_t sideOf(Corner const& a, Corner const& b, int column, int row) {
  const auto eighths = [](double v) { return static_cast<std::int64_t>(v * 8); };
  return (eighths(b.column) - eighths(a.column)) * (eighths(row + 0.5) - eighths(a.row)) -
         (eighths(b.row) - eighths(a.row)) * (eighths(column + 0.5) - eighths(a.column));
}

bool isStrictlyInside(Corner const& a, Corner const& b, Corner const& c, int column, int row) {
  const auto u = sideOf(a, b, column, row), v = sideOf(b, c, column, row), w = sideOf(c, a, column, row);
  return (u > 0 && v > 0 && w > 0) || (u < 0 && v < 0 && w < 0);
}

bool isStrictlyOutside(Corner const& a, Corner const& b, Corner const& c, int column, int row) {
  const auto u = sideOf(a, b, column, row), v = sideOf(b, c, column, row), w = sideOf(c, a, column, row);
  return (u < 0 || v < 0 || w < 0) && (u > 0 || v > 0 || w > 0);
}

double planeAt(int column, int row) { return 100 + 0.75 * (column + 0.5) - 1.25 * (row + 0.5); }

Corner onPlane(double column, double row) {
  return {column, row, static_cast<float>(100 + 0.75 * column - 1.25 * row), static_cast<float>(row / 64)};
}

TEST(SurfaceRaster, ATriangleCoversTheCentresInsideItAndNoOther) {
  std::mt19937 random(42);
  for (int scene = 0; scene < 200; ++scene) {
    const auto eighths = [&random] { return static_cast<int>(random() % 400) / 8.0 - 10; };
    const auto corner = [&eighths] { return onPlane(eighths(), eighths()); };
    const Corner a = corner(), b = corner(), c = corner();
    SCOPED_TRACE(testing::Message() << a.column << ',' << a.row << ' ' << b.column << ',' << b.row << ' ' << c.column
                                    << ',' << c.row);
    SurfaceRaster raster(30, 0, 25);
    raster.add(a, b, c);
    for (int row = 0; row < 25; ++row) {
      for (int column = 0; column < 30; ++column) {
        if (isStrictlyInside(a, b, c, column, row)) {
          ASSERT_TRUE(raster.has(column, row)) << column << ',' << row;
          EXPECT_NEAR(raster.height(column, row), planeAt(column, row), 1e-3);
          EXPECT_NEAR(raster.light(column, row), (row + 0.5) / 64, 1e-4);
        }
        if (isStrictlyOutside(a, b, c, column, row)) {
          ASSERT_FALSE(raster.has(column, row)) << column << ',' << row;
        }
      }
    }
  }
}

/// How many of some triangles take a cell.
int countOf(std::vector<std::array<Corner, 3>> const& triangles, int column, int row) {
  int count = 0;
  for (auto const& [a, b, c] : triangles) {
    SurfaceRaster alone(column + 1, row, 1);
    alone.add(a, b, c);
    count += alone.has(column, row);
  }
  return count;
}

TEST(SurfaceRaster, TrianglesThatShareSidesShareNoCentreAndMissNone) {
  // Fans over a square, their middle and many of their sides right on centres.
  for (auto const& [x, y] : {std::pair{4.5, 4.5}, {3.0, 5.5}, {4.25, 2.125}}) {
    const Corner middle = onPlane(x, y);
    std::vector<Corner> rim;
    for (int i = 0; i < 8; ++i) rim.push_back(onPlane(i, 0));
    for (int i = 0; i < 8; ++i) rim.push_back(onPlane(8, i));
    for (int i = 8; i > 0; --i) rim.push_back(onPlane(i, 8));
    for (int i = 8; i > 0; --i) rim.push_back(onPlane(0, i));
    std::vector<std::array<Corner, 3>> fan;
    for (std::size_t i = 0; i < rim.size(); ++i) fan.push_back({middle, rim[i], rim[(i + 1) % rim.size()]});
    for (int row = 0; row < 8; ++row) {
      for (int column = 0; column < 8; ++column) {
        EXPECT_EQ(countOf(fan, column, row), 1) << column << ',' << row << " around " << x << ',' << y;
      }
    }
  }
}

TEST(SurfaceRaster, TheOrderOfCornersAndTrianglesMakesNoDifference) {
  std::vector<std::array<Corner, 3>> triangles{{onPlane(0.3, 0.1), onPlane(9.7, 3.3), onPlane(4.1, 9.9)},
                                               {onPlane(9.7, 3.3), onPlane(4.1, 9.9), onPlane(9.9, 9.9)}};
  const auto drawn = [](std::vector<std::array<Corner, 3>> const& all) {
    SurfaceRaster raster(10, 0, 10);
    for (auto const& [a, b, c] : all) raster.add(a, b, c);
    std::vector<float> values;
    for (int i = 0; i < 100; ++i) values.push_back(raster.height(i % 10, i / 10));
    return values;
  };
  const auto first = drawn(triangles);
  std::swap(triangles[0], triangles[1]);
  for (int turn = 0; turn < 6; ++turn) {
    for (auto& t : triangles) {
      std::rotate(t.begin(), t.begin() + 1, t.end());
      if (turn == 3) std::swap(t[0], t[1]);
    }
    EXPECT_EQ(drawn(triangles), first) << turn;
  }
}

TEST(SurfaceRaster, BandsOfRowsAreThoseOfTheWhole) {
  const Corner a = onPlane(-5, -3), b = onPlane(30, 8), c = onPlane(3, 40);
  SurfaceRaster whole(20, 0, 30);
  whole.add(a, b, c);
  for (int first = 0; first < 30; first += 7) {
    SurfaceRaster band(20, first, std::min(7, 30 - first));
    band.add(a, b, c);
    for (int row = first; row < band.endRow(); ++row) {
      for (int column = 0; column < 20; ++column) {
        ASSERT_EQ(band.has(column, row), whole.has(column, row));
        EXPECT_EQ(band.height(column, row), whole.height(column, row));
      }
    }
  }
}

TEST(SurfaceRaster, OfSurfacesOverOneAnotherTheHighestIsSeen) {
  const auto at = [](float height) {
    return std::array<Corner, 3>{Corner{0, 0, height, 1}, Corner{4, 0, height, 1}, Corner{0, 4, height, 1}};
  };
  for (const bool highFirst : {true, false}) {
    SurfaceRaster raster(2, 0, 2);
    for (const float height : {highFirst ? 7.0F : 3.0F, highFirst ? 3.0F : 7.0F}) {
      const auto [a, b, c] = at(height);
      raster.add(a, b, c);
    }
    EXPECT_EQ(raster.height(0, 0), 7);
  }
}

TEST(SurfaceRaster, ATriangleWithoutAreaCoversNothing) {
  SurfaceRaster raster(10, 0, 10);
  raster.add(onPlane(0, 0), onPlane(5, 5), onPlane(10, 10));
  raster.add(onPlane(1.5, 2.5), onPlane(8, 2.5), onPlane(4, 2.5));
  raster.add(onPlane(3, 3), onPlane(3, 3), onPlane(3, 3));
  for (int i = 0; i < 100; ++i) EXPECT_FALSE(raster.has(i % 10, i / 10)) << i;
}

TEST(SurfaceRaster, LandBelowTheSeaIsThere) {
  SurfaceRaster raster(2, 0, 2);
  raster.add({0, 0, -10935, 1}, {4, 0, -10935, 1}, {0, 4, -10935, 1});
  EXPECT_TRUE(raster.has(0, 0));
  EXPECT_EQ(raster.height(0, 0), -10935);
}

}  // namespace
}  // namespace Meseta47::host
