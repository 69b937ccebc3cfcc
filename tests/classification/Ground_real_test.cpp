// The ground search on real clouds.
#include <gtest/gtest.h>
#include <map>
#include <tuple>

#include "classification/GroundScene.h"
#include "host/LoadedCloud.h"
#include "support/RealClouds.h"

namespace Meseta47 {
namespace {

std::vector<test::ClassedPoint> Load(std::string const& path) {
  host::CommonOptions quiet;
  quiet.quiet = true;
  host::HostApp app(quiet);
  host::LoadedCloud cloud = std::move(host::loadClouds({{path}}, host::LoadOptions(), app)[0]);
  std::vector<test::ClassedPoint> points;
  for (CCoor3D<int> const& p : host::takePoints(cloud, false)) points.push_back({p.x, p.y, p.z, 1});
  return points;
}

class GroundOfReal : public testing::TestWithParam<std::string> {};

// At the rim of the triangles, which is not convex, a point must not be sought from where the last one was found.
TEST_P(GroundOfReal, CloudsDoesNotDependOnTheOrderOfThePoints) {
  const auto path = support::realCloud(GetParam());
  if (!path) GTEST_SKIP() << support::missingCloud(GetParam());
  std::vector<test::ClassedPoint> points = Load(path->string());
  const test::QuietApp app;
  const std::vector<int> once = test::GroundSearch().Classes(points);
  ASSERT_EQ(once.size(), points.size());
  std::map<std::tuple<int, int, int>, int> expected;
  for (std::size_t i = 0; i < points.size(); ++i) expected[{points[i].x, points[i].y, points[i].z}] = once[i];
  support::Random(5).shuffle(points);
  const std::vector<int> shuffled = test::GroundSearch().Classes(points);
  ASSERT_EQ(shuffled.size(), points.size());
  for (std::size_t i = 0; i < points.size(); ++i) {
    ASSERT_EQ(shuffled[i], (expected[{points[i].x, points[i].y, points[i].z}])) << "point " << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Samples, GroundOfReal,
                         testing::Values("isprs/samp11.las", "isprs/samp12.las", "isprs/samp53.las"));

}  // namespace
}  // namespace Meseta47
