// The searches for noise on real clouds, held against the plain rules over the same mesh.
#include <algorithm>
#include <gmock/gmock.h>

#include "classification/NoiseScene.h"
#include "host/LoadedCloud.h"
#include "support/PlanarSizes.h"
#include "support/RealClouds.h"

namespace Meseta47 {
namespace {

using support::Found;
using support::Mesh;
using support::Point;
using test::Aerial;
using test::ClassesOf;
using test::ClassesWith;
using test::Isolated;
using test::Peaks;

/// The points of a file in scaled units, in the order in which the program feeds them, all of class 2. `unit` takes how
/// many of those make a unit of the file.
std::vector<test::ClassedPoint> Load(std::string const& path, int& unit) {
  host::CommonOptions quiet;
  quiet.quiet = true;
  host::HostApp app(quiet);
  host::LoadedCloud cloud = std::move(host::loadClouds({{path}}, host::LoadOptions(), app)[0]);
  unit = static_cast<int>(cloud.seed.Precision());
  std::vector<test::ClassedPoint> points;
  for (CCoor3D<int> const& p : host::takePoints(cloud, true)) points.push_back({p.x, p.y, p.z});
  return points;
}

template <class Search>
std::vector<int> After(Search search, std::vector<test::ClassedPoint> const& points) {
  CDibujo<int> drawing = test::Cloud(points);
  EXPECT_EQ(search.Run(drawing), kHecho);
  return ClassesOf(drawing);
}

class NoiseOfReal : public testing::TestWithParam<std::string> {};

TEST_P(NoiseOfReal, CloudsIsThatOfThePlainRules) {
  const auto path = support::realCloud(GetParam());
  if (!path) GTEST_SKIP() << support::missingCloud(GetParam());
  int unit = 0;
  const std::vector<test::ClassedPoint> points = Load(path->string(), unit);
  const test::QuietApp app;
  std::vector<Point> plain;
  for (test::ClassedPoint const& p : points) plain.push_back({p.x, p.y, p.z});
  const Mesh mesh = test::LinkCloud(plain).mesh;
  const auto check = [&](char const* what, Found const& expected, std::vector<int> const& classes) {
    const auto count = std::count(expected.begin(), expected.end(), true);
    std::printf("%s: %s: %lld of %zu\n", GetParam().c_str(), what, static_cast<long long>(count), points.size());
    EXPECT_TRUE(classes == ClassesWith(expected)) << what;
    EXPECT_LT(static_cast<std::size_t>(count), points.size()) << what;
  };
  const double side = 3.0 * unit;
  Isolated isolated;
  isolated.distance = std::min(side, 46'340.0);  // whose square still fits
  isolated.neighbours = 2;
  check("isolated", support::plainIsolated(mesh, isolated.distance * isolated.distance, 2), After(isolated, points));
  for (const double factor : {3.0, -3.0, 0.5}) {
    Aerial aerial;
    aerial.radius = side;
    aerial.factor = factor;
    check("aerial", support::plainAerial(mesh, 3 * unit, factor), After(aerial, points));
  }
  Peaks peaks;
  peaks.distance = 3 * side;
  peaks.height = unit;
  peaks.slope = 1.5;
  check("peaks", support::plainPeaks(mesh, 9 * side * side, 1.5, unit), After(peaks, points));
}

std::vector<std::string> Clouds() {
  std::vector<std::string> clouds{"isprs/samp12.las", "isprs/samp31.las", "sample_c.las", "4_6_crop.las"};
  if (test::kFullSize) clouds.insert(clouds.end(), {"isprs/samp53.las", "autzen_trim.las"});
  return clouds;
}
INSTANTIATE_TEST_SUITE_P(Of, NoiseOfReal, testing::ValuesIn(Clouds()), [](auto const& cloud) {
  std::string name;
  for (const char c : cloud.param.substr(0, cloud.param.size() - 4))
    name += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
  return name;
});

}  // namespace
}  // namespace Meseta47
