#include "host/render/Light.h"

#include <gmock/gmock.h>

#include "host/render/RenderScenes.h"

namespace Meseta47::host {
namespace {

TEST(Light, LevelGroundIsLitOnce) { EXPECT_NEAR(lightOn({0, 0}), 1, 1e-5); }

TEST(Light, SlopesTowardsTheNorthWestAreBright) {
  const float level = lightOn({0, 0});
  // A slope that falls to the north-west rises to the south-east.
  EXPECT_GT(lightOn({0.5F, -0.5F}), level);
  EXPECT_LT(lightOn({-0.5F, 0.5F}), level);
  EXPECT_GT(lightOn({0.5F, 0}), level) << "facing west";
  EXPECT_GT(lightOn({0, -0.5F}), level) << "facing north";
}

TEST(Light, NoSlopeIsBrighterThanTheOneThatFacesTheLightNorBlackerThanBlack) {
  for (float east = -30; east <= 30; east += 0.7F) {
    for (float north = -30; north <= 30; north += 0.7F) {
      EXPECT_GE(lightOn({east, north}), 0);
      EXPECT_LE(lightOn({east, north}), 1.4143F);
    }
  }
}

TEST(Gradients, APlaneHasItsOwnEverywhereWhicheverWayTrianglesRun) {
  Surface s = gridSurface(4, [](int x, int y) { return 3 + 0.25 * x - 2 * y; });
  for (std::size_t i = 0; i < s.triangles.size(); i += 3) std::swap(s.triangles[i][0], s.triangles[i][1]);
  for (Gradient const& g : gradientsOf(s)) {
    EXPECT_FLOAT_EQ(g.east, 0.25F);
    EXPECT_FLOAT_EQ(g.north, -2);
  }
}

TEST(Gradients, AVertexWithoutTriangleIsLevel) {
  Surface s = gridSurface(1, [](int x, int) { return double(x); });
  s.vertices.push_back({5, 5, 100});
  EXPECT_EQ(gradientsOf(s).back().east, 0);
}

TEST(ReliefScale, TheReliefDoesNotDependOnTheUnitOfHeights) {
  const auto hills = [](double unit) {
    return gradientsOf(gridSurface(20, [unit](int x, int y) { return unit * (x * y % 7); }));
  };
  const double metres = reliefScale(hills(1)), millimetres = reliefScale(hills(1000));
  EXPECT_NEAR(metres / millimetres, 1000, 1e-3);
}

TEST(ReliefScale, APlainStaysAPlain) {
  EXPECT_LE(reliefScale(std::vector<Gradient>(100)), 8);
  EXPECT_LE(reliefScale(std::vector<Gradient>(100, {1e-6F, 0})), 8);
  EXPECT_GT(reliefScale({}), 0);
}

}  // namespace
}  // namespace Meseta47::host
