#include "host/generate/Scene.h"

#include <cmath>
#include <gmock/gmock.h>

#include "host/generate/Noise.h"

namespace Meseta47::host {
namespace {

/// Places all over the land, the same in every run.
template <class Visit>
void atManyPlaces(int number, double reach, Visit&& visit) {
  Random random(77);
  for (int i = 0; i < number; ++i) {
    const double x = reach * (2.0 * random.unit() - 1.0);
    const double y = reach * (2.0 * random.unit() - 1.0);
    visit(x, y);
  }
}

TEST(Terrain, LandHasNoStepsButItsBanksAndAbutments) {
  const Terrain terrain(5);
  atManyPlaces(20000, 3000, [&](double x, double y) {
    const RiverFoot water = terrain.river(x, y);
    if (water.distance < water.halfWidth + 8) return;
    EXPECT_NEAR(terrain.height(x, y), terrain.height(x + 0.05, y + 0.05), 0.2) << x << ", " << y;
  });
}

TEST(Terrain, WaterLiesBelowAllLandAroundIt) {
  const Terrain terrain(5);
  atManyPlaces(20000, 1000, [&](double x, double y) {
    const Ground ground = terrain.at(x, y);
    const RiverFoot water = terrain.river(x, y);
    if (ground.cover == Cover::Water) {
      EXPECT_EQ(ground.z, water.level);
    } else {
      EXPECT_GE(ground.z, water.level - 0.01) << x << ", " << y;
    }
  });
}

TEST(Terrain, RoadsRiseGentlyAlongTheirAxis) {
  const Terrain terrain(6);
  for (double y = -2000; y < 2000; y += 10) {
    LineFoot road = terrain.mainRoad(-46, y);
    const double here = terrain.height(terrain.roadAcross(road, y), y);
    const double next = terrain.height(terrain.roadAcross(road, y + 10), y + 10);
    EXPECT_LT(std::abs(next - here), 2.5) << "a slope above 25 in 100 at " << y;
  }
}

TEST(Terrain, BridgesCrossTheWaterAboveIt) {
  const Terrain terrain(6);
  int overWater = 0;
  for (double x = -100; x < 200; x += 0.5) {
    const double y = terrain.roadAcross(terrain.crossRoad(x, 30), x);
    double deck = 0;
    if (!terrain.bridge(x, y, deck)) {
      EXPECT_NE(terrain.at(x, y).cover, Cover::Water) << "a road runs into the river at " << x;
      continue;
    }
    EXPECT_GT(deck, terrain.height(x, y) + 2.0);
    overWater += terrain.at(x, y).cover == Cover::Water ? 1 : 0;
  }
  EXPECT_GT(overWater, 15);
}

TEST(Buildings, RoofsStandAboveTheGroundAndOffRoadsAndWater) {
  Scene scene(7);
  int roofs = 0;
  atManyPlaces(60000, 250, [&](double x, double y) {
    Roof roof;
    if (!scene.buildings.at(x, y, roof)) return;
    ++roofs;
    const Ground ground = scene.terrain.at(x, y);
    EXPECT_GT(roof.z, ground.z + 2.0);
    EXPECT_GE(roof.z, roof.eave);
    EXPECT_GE(roof.edge, 0.0);
    EXPECT_NE(ground.cover, Cover::Road);
    EXPECT_NE(ground.cover, Cover::Water);
  });
  EXPECT_GT(roofs, 500);
}

TEST(Buildings, AnswersDoNotDependOnWhatWasAskedBefore) {
  Scene busy(8);
  atManyPlaces(5000, 2000, [&](double x, double y) {
    Roof roof;
    Crown crown;
    busy.buildings.at(x, y, roof);
    busy.trees.at(x, y, crown);
  });
  Scene fresh(8);
  atManyPlaces(3000, 200, [&](double x, double y) {
    Roof a, b;
    ASSERT_EQ(busy.buildings.at(x, y, a), fresh.buildings.at(x, y, b));
    EXPECT_EQ(a.z, b.z);
    Crown c, d;
    ASSERT_EQ(busy.trees.at(x, y, c), fresh.trees.at(x, y, d));
    EXPECT_EQ(c.top, d.top);
  });
}

TEST(Trees, EverySpeciesGrowsAndKeepsToItsHeight) {
  Scene scene(9);
  int seen[4] = {};
  atManyPlaces(60000, 800, [&](double x, double y) {
    Crown crown;
    if (!scene.trees.at(x, y, crown)) return;
    ++seen[static_cast<int>(crown.species)];
    EXPECT_GT(crown.top, crown.bottom);
    EXPECT_LE(crown.top - scene.terrain.height(x, y), 32.0);
    EXPECT_GE(crown.light, 0.0);
    EXPECT_LE(crown.light, 1.0);
  });
  for (const int count : seen) EXPECT_GT(count, 50);
}

TEST(Trees, StemsKeepOffRoadsAndWater) {
  Scene scene(9);
  atManyPlaces(60000, 800, [&](double x, double y) {
    Crown crown;
    if (!scene.trees.at(x, y, crown) || crown.light < 0.9) return;
    EXPECT_NE(scene.terrain.at(x, y).cover, Cover::Road) << x << ", " << y;
    EXPECT_NE(scene.terrain.at(x, y).cover, Cover::Water) << x << ", " << y;
  });
}

}  // namespace
}  // namespace Meseta47::host
