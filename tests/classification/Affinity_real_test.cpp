// Growth by affinity on real clouds: against the plain rules on the same cells, and how much of a thinned ground it
// gives back.
#include <cmath>
#include <gmock/gmock.h>
#include <string_view>

#include "classification/AffinityScene.h"
#include "host/LoadedCloud.h"
#include "support/PlanarSizes.h"
#include "support/RealClouds.h"

namespace Meseta47 {
namespace {

using test::AffinityCloud;
using test::AffinityPoint;
using test::AffinityRule;
using test::ClassesIn;
using test::Growing;
using test::QuietApp;

struct Loaded {
  std::vector<AffinityPoint> points;
  double unitsAMetre = 1;  ///< scaled units in a unit of the file
};
Loaded Load(std::string const& path) {
  host::CommonOptions quiet;
  quiet.quiet = true;
  host::HostApp app(quiet);
  host::LoadedCloud cloud = std::move(host::loadClouds({{path}}, host::LoadOptions(), app)[0]);
  Loaded loaded;
  loaded.unitsAMetre = cloud.seed.Precision();
  for (CCoor3D<int> const& p : host::takePoints(cloud, true)) {
    loaded.points.push_back({p.x, p.y, p.z, p.intensidad, p.clasificacion});
  }
  return loaded;
}

class RealAffinity : public testing::TestWithParam<char const*> {};

TEST_P(RealAffinity, GivesWhatThePlainRulesGiveOnTheSameMesh) {
  const auto path = support::realCloud(GetParam());
  if (!path) GTEST_SKIP() << support::missingCloud(GetParam());
  if (!test::kFullSize && std::string_view(GetParam()) == "bcts_1.las") GTEST_SKIP() << "minutes in such a build";
  Loaded loaded = Load(path->string());
  for (std::size_t i = 0; i < loaded.points.size(); ++i) {
    if (i % 50 != 0) loaded.points[i].cls = 0;  // one in fifty keeps its class
  }
  const test::LinkedCells mesh = test::Link(loaded.points);
  const double u = loaded.unitsAMetre;
  AffinityRule rule{.grow = 2, .barrier = 1};
  rule.heights = {0, std::floor(0.4 * u)};
  rule.squares = {0, 16 * u * u};
  rule.slopes = {-0.5, 0.5};
  std::vector<AffinityPoint> once = mesh.points, rest = mesh.points;
  const unsigned changed = support::growOnce(mesh.cells, once, rule);
  const unsigned reached = support::growToRest(mesh.triangles, rest, rule);
  EXPECT_GT(changed, loaded.points.size() / 100);
  EXPECT_GE(reached, changed);
  for (const unsigned processors : {1U, 2U, 4U}) {
    const QuietApp app(processors);
    CDibujo<int> drawing = AffinityCloud(loaded.points), complete = AffinityCloud(loaded.points);
    Growing growing, toRest;
    growing.rule = toRest.rule = rule;
    ASSERT_EQ(growing.Once(drawing), kHecho);
    EXPECT_EQ(growing.changed, changed);
    EXPECT_TRUE(ClassesIn(drawing) == mesh.ClassesOf(once, loaded.points));
    ASSERT_EQ(toRest.ToRest(complete), kHecho);
    EXPECT_EQ(toRest.changed, reached);
    EXPECT_TRUE(ClassesIn(complete) == mesh.ClassesOf(rest, loaded.points));
  }
}

INSTANTIATE_TEST_SUITE_P(Clouds, RealAffinity,
                         testing::Values("autzen_trim.las", "Megaplot.las", "Topography.las", "sample_c.las",
                                         "4_6_crop.las", "bcts_1.las", "isprs/samp11.las", "isprs/samp12.las",
                                         "isprs/samp22.las", "isprs/samp31.las", "isprs/samp53.las"),
                         [](testing::TestParamInfo<char const*> const& cloud) {
                           std::string name = cloud.param;
                           std::erase_if(name, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; });
                           return name;
                         });

}  // namespace
}  // namespace Meseta47
