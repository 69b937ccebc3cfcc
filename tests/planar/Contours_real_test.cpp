// Contours of real clouds, held against a plain contouring of the finished model in exact arithmetic.
#include <cmath>
#include <gtest/gtest.h>

#include "host/LoadedCloud.h"
#include "model/threads/Codigos.h"
#include "support/ContourRun.h"
#include "support/PlanarRun.h"
#include "support/PlanarSizes.h"
#include "support/RealClouds.h"

namespace Meseta47 {
namespace {

using support::ContourRule;

struct RealScene {
  std::string name;
  std::vector<std::string> files;
  double interval;     ///< in the files' unit
  double longestSide;  ///< in the files' unit
};
std::ostream& operator<<(std::ostream& out, RealScene const& scene) { return out << scene.name; }

constexpr double kAnySide = 1e6;

host::LoadedCloud Load(std::vector<std::string> const& paths) {
  host::CommonOptions quiet;
  quiet.quiet = true;
  host::HostApp app(quiet);
  return std::move(host::loadClouds({paths}, host::LoadOptions(), app)[0]);
}

class RealContours : public testing::TestWithParam<RealScene> {};

TEST_P(RealContours, AreThoseOfTheFinishedModel) {
  RealScene const& scene = GetParam();
  std::vector<std::string> paths;
  for (std::string const& file : scene.files) {
    const auto path = support::realCloud(file);
    if (!path) GTEST_SKIP() << support::missingCloud(file);
    paths.push_back(path->string());
  }
  host::LoadedCloud cloud = Load(paths);
  const test::QuietApp app;
  const double scale = cloud.seed.Precision();
  const ContourRule rule{static_cast<std::int32_t>(std::lround(scene.interval * scale)),
                         std::llround(std::min(scene.longestSide * scale, 2147483647.0))};
  const test::Contoured contoured = test::ContourCloud(host::takePoints(cloud, true), rule);
  ASSERT_EQ(contoured.code, kHecho);
  EXPECT_GT(contoured.lines.size(), 10U);
  EXPECT_EQ(FaultsOf(contoured), "");
}

std::vector<RealScene> Scenes() {
  std::vector<RealScene> scenes{
      {"Autzen", {"autzen_trim.las"}, 10, kAnySide},   {"AutzenGapped", {"autzen_trim.las"}, 5, 12},
      {"Topography", {"Topography.las"}, 2, kAnySide}, {"TopographyGapped", {"Topography.las"}, 1, 6},
      {"Megaplot", {"Megaplot.las"}, 2, kAnySide},     {"Building", {"sample_c.las"}, 0.5, kAnySide},
      {"BuildingGapped", {"sample_c.las"}, 0.5, 2},    {"Slope", {"4_6_crop.las"}, 1, kAnySide},
      {"City", {"isprs/samp12.las"}, 1, kAnySide}};
  if (test::kFullSize) {
    scenes.push_back({"Forest", {"bcts_1.las"}, 5, kAnySide});
    scenes.push_back({"ForestGapped", {"bcts_1.las"}, 5, 3});
    scenes.push_back({"ForestOfTwoTiles", {"bcts_1.las", "bcts_2.las"}, 10, kAnySide});
  }
  return scenes;
}
INSTANTIATE_TEST_SUITE_P(Each, RealContours, testing::ValuesIn(Scenes()),
                         [](auto const& scene) { return scene.param.name; });

}  // namespace
}  // namespace Meseta47
