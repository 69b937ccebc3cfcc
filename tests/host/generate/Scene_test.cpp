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

// --- lands of one kind ---

TEST(LandStyle, NamesThatAreNoneHaveNone) {
  EXPECT_TRUE(landStyle("mixed").has_value());
  EXPECT_FALSE(landStyle("desert").has_value());
}

/// The share of places for which `holds` is true.
template <class Holds>
double share(Holds&& holds) {
  int hits = 0;
  atManyPlaces(4000, 400, [&](double x, double y) { hits += holds(x, y) ? 1 : 0; });
  return hits / 4000.0;
}

/// The share of a land of a kind for which `holds(scene, x, y)` is true.
template <class Holds>
double shareOf(char const* kind, Holds&& holds) {
  Scene scene(5, *landStyle(kind));
  return share([&](double x, double y) { return holds(scene, x, y); });
}

TEST(LandStyle, EachKindHasMoreOfItsOwn) {
  const auto wood = [](Scene& scene, double x, double y) { return scene.terrain.isWood(x, y); };
  const auto water = [](Scene& scene, double x, double y) { return scene.terrain.at(x, y).cover == Cover::Water; };
  const auto roof = [](Scene& scene, double x, double y) {
    Roof found;
    return scene.buildings.at(x, y, found);
  };
  const auto slope = [](Scene& scene, double x, double y) {
    const Ground ground = scene.terrain.at(x, y);
    return std::abs(ground.slopeX) + std::abs(ground.slopeY) > 0.5;
  };
  EXPECT_GT(shareOf("forest", wood), 0.95);
  EXPECT_LT(shareOf("mixed", wood), 0.7);
  EXPECT_GT(shareOf("river", water), 2 * shareOf("mixed", water));
  EXPECT_GT(shareOf("town", roof), 1.5 * shareOf("mixed", roof));
  EXPECT_GT(shareOf("steep", slope), 2 * shareOf("mixed", slope));
}

}  // namespace
}  // namespace Meseta47::host
