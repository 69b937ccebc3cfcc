#include "host/vector/OutlineLayer.h"

#include <functional>
#include <numeric>

#include "model/drawing/CDibujo.h"
#include "planar/CTriangulacion2D.h"
#include "tests/host/vector/VectorScenes.h"

using namespace Meseta47;
using namespace Meseta47::host;

namespace {

constexpr int kStep = 1000;  // scaled units: ten metres

/// The surface over the nodes of a grid that are wanted, with no side longer than the diagonal of a cell.
std::unique_ptr<CTIN> gridModel(int side, std::function<bool(int, int)> const& isWanted) {
  const CDataSemilla seed(2, 500000, 4000000, 0);
  CSetPuntos<int> points(L"GRID");
  for (int i = 0; i < side; ++i) {
    for (int j = 0; j < side; ++j) {
      if (isWanted(i, j)) points << CCoor3D<int>(i * kStep, j * kStep, i + j, 0);
    }
  }
  CDibujo<int> drawing(seed);
  drawing.Inserta(std::move(points));
  auto tin = std::make_unique<CTIN>(0, 0, seed);
  CTriangulacion2D run(0, seed, 1);
  EXPECT_EQ(run.Run(drawing, *tin, 14.5, nullptr, true, nullptr, nullptr, nullptr), kHecho);
  return tin;
}

bool isIn(int i, int j, int low, int high) { return i >= low && i <= high && j >= low && j <= high; }

double cellsOf(CTIN const& tin, std::size_t ring) {
  auto const& r = tin.Limite()[ring];
  double twice = 0;
  for (std::size_t i = 0; i < r.size(); ++i) {
    auto const &a = tin.puntos[r[i]], &b = tin.puntos[r[(i + 1) % r.size()]];
    twice += static_cast<double>(a.x) * b.y - static_cast<double>(b.x) * a.y;
  }
  return std::abs(twice) / 2 / kStep / kStep;
}

/// Cells inside the outer ring and inside each hole, polygon by polygon, all sorted.
std::vector<std::vector<double>> cells(CTIN const& tin) {
  std::vector<std::vector<double>> all;
  for (OutlinePolygon const& polygon : nestRings(tin)) {
    std::vector<double> holes;
    for (const std::size_t hole : polygon.holes) holes.push_back(cellsOf(tin, hole));
    std::sort(holes.begin(), holes.end());
    holes.insert(holes.begin(), cellsOf(tin, polygon.outer));
    all.push_back(holes);
  }
  std::sort(all.begin(), all.end());
  return all;
}

using Cells = std::vector<std::vector<double>>;

}  // namespace

TEST(OutlineLayer, AWholeSurfaceIsOnePolygon) {
  EXPECT_EQ(cells(*gridModel(11, [](int, int) { return true; })), (Cells{{100}}));
}

TEST(OutlineLayer, EachHoleGoesToItsOwnPolygon) {
  // Two plots of 10 by 10 and 10 by 12 cells side by side: one hole in the first, two in the second.
  const auto tin = gridModel(30, [](int i, int j) {
    const bool first = i <= 10 && j <= 10, second = i >= 13 && i <= 23 && j <= 12;
    const bool hole = isIn(i, j, 4, 6) || (i == 16 && j == 4) || (i >= 19 && i <= 20 && j >= 7 && j <= 9);
    return (first || second) && !hole;
  });
  EXPECT_EQ(cells(*tin), (Cells{{100, 14}, {120, 1 + 1, 10}}));
}

TEST(OutlineLayer, AnIslandInAHoleIsAPolygonWithHolesOfItsOwn) {
  // From the outside: land, a lake, an island with a pond, and an islet in the pond.
  const auto tin = gridModel(41, [](int i, int j) {
    if (isIn(i, j, 18, 22)) return true;
    if (isIn(i, j, 15, 25)) return false;
    if (isIn(i, j, 10, 30)) return true;
    return !isIn(i, j, 5, 35);
  });
  EXPECT_EQ(cells(*tin), (Cells{{16}, {400, 142}, {1600, 1022}}));
}

TEST(OutlineLayer, AHoleMayTouchItsRingInAPoint) {
  // The hole's corner lies on the edge of the land, whose ring bends in to it.
  const auto tin = gridModel(21, [](int i, int j) {
    const bool hole = isIn(i, j, 3, 6), notch = i >= 8 && i <= 9 && j <= 1;
    return !hole && !notch;
  });
  const Cells found = cells(*tin);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].size(), 2U);
}

TEST(OutlineLayer, ManyPlotsWithManyHolesKeepEachTheirOwn) {
  // Plots of 8 by 8 nodes, four steps apart, plot (a, b) with one hole of one node for each bit of a and b.
  const auto tin = gridModel(96, [](int i, int j) {
    const int a = i / 12, b = j / 12, x = i % 12, y = j % 12;
    if (x > 8 || y > 8) return false;
    const bool first = x == 2 && y == 2 && a % 2 == 1, second = x == 6 && y == 6 && b % 2 == 1;
    return !first && !second;
  });
  const std::vector<OutlinePolygon> polygons = nestRings(*tin);
  ASSERT_EQ(polygons.size(), 64U);
  for (OutlinePolygon const& polygon : polygons) {
    auto const& place = tin->puntos[tin->Limite()[polygon.outer].front()];
    const int a = place.x / kStep / 12, b = place.y / kStep / 12;
    EXPECT_EQ(polygon.holes.size(), static_cast<std::size_t>(a % 2 + b % 2)) << a << ' ' << b;
  }
}

TEST(OutlineLayer, PolygonsHaveRealPlacesAndTheirAreas) {
  const auto tin = gridModel(11, [](int i, int j) { return !(i == 5 && j == 5); });
  const Folder folder;
  VectorOutput output(folder.file("a.geojson"), ReferenceSystem(), outlineLayer(2));
  EXPECT_EQ(addOutline(*tin, output), 1U);
  output.commit();
  const VectorContent content = readVectorFile(folder.file("a.geojson"), {});
  ASSERT_EQ(content.entities.size(), 2U);
  EXPECT_EQ(content.extent.min[0], 500000);
  EXPECT_EQ(content.extent.max[1], 4000100);
  EXPECT_EQ(content.extent.max[2], 0.2);
  const Bytes bytes = bytesOf(folder.file("a.geojson"));
  EXPECT_THAT(std::string(bytes.begin(), bytes.end()), testing::HasSubstr("\"AREA\": 9800.0, \"HOLES\": 1"));
}
