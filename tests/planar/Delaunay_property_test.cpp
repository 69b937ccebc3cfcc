// What every linked cloud has to be, whatever its shape and its order, against oracles of exact integer arithmetic.
#include <gtest/gtest.h>
#include <limits>

#include "model/threads/Codigos.h"
#include "support/Extremes.h"
#include "support/MeshOracle.h"
#include "support/PlanarFeeds.h"
#include "support/PlanarRun.h"
#include "support/PlanarSizes.h"

namespace Meseta47 {
namespace {

using support::Family;
using test::EveryFeed;
using test::Feed;
using test::LinkCloud;
using test::Linked;
using test::QuietApp;

void ExpectDelaunay(Linked const& linked, support::MeshReport const& report) {
  EXPECT_EQ(support::surfaceFaults(report), "");
  EXPECT_EQ(support::frameTilingFaults(linked.mesh, report), "");
  EXPECT_EQ(report.notDelaunay.count, 0U) << report.notDelaunay.first << ", deepest " << report.deepest;
  const std::size_t distinct = support::distinctPositions(linked.mesh.points);
  EXPECT_EQ(linked.mesh.triangles.size(), 2 * distinct + 2);
  EXPECT_EQ(linked.summary.enlazados, 2 * distinct + 2);
  EXPECT_EQ(linked.summary.duplicados, linked.mesh.points.size() - distinct);
}

void Check(std::string const& name, std::vector<support::Point> const& points) {
  const QuietApp app;
  SCOPED_TRACE(name);
  const Linked linked = LinkCloud(points);
  ASSERT_EQ(linked.code, kHecho);
  const support::MeshReport report = support::inspect(linked.mesh);
  ExpectDelaunay(linked, report);
  EXPECT_EQ(linked.summary.aceptados, linked.mesh.points.size());
  EXPECT_EQ(linked.summary.rechazados, 0U);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

void Check(Feed const& feed) { Check(feed.Name(), feed.Points()); }

class LinkedClouds : public testing::TestWithParam<Feed> {};

TEST_P(LinkedClouds, OfEverySmallSizeTileTheFrameWithDelaunayTriangles) {
  for (const std::size_t size : {3U, 4U, 5U, 10U, 50U, 200U, 201U, 1'000U}) {
    Check({GetParam().family, GetParam().order, size});
  }
}

TEST_P(LinkedClouds, OfSomeThousandPointsTileTheFrameWithDelaunayTriangles) {
  Check({GetParam().family, GetParam().order, 5'000});
}

INSTANTIATE_TEST_SUITE_P(EveryFamily, LinkedClouds, testing::ValuesIn(EveryFeed(0)),
                         [](testing::TestParamInfo<Feed> const& feed) {
                           const std::string name = feed.param.Name();
                           return name.substr(0, name.rfind('_'));
                         });

class LargeClouds : public testing::TestWithParam<Family> {};

TEST_P(LargeClouds, TileTheFrameWithDelaunayTriangles) {
  Check({GetParam(), test::Order::Hilbert, test::kFullSize ? test::LargestSize(GetParam()) : 2'000});
}

INSTANTIATE_TEST_SUITE_P(EveryFamily, LargeClouds, testing::ValuesIn(support::kAllFamilies),
                         [](testing::TestParamInfo<Family> const& family) { return support::name(family.param); });

class ExtremeClouds : public testing::TestWithParam<support::Extreme> {};

TEST_P(ExtremeClouds, TileTheFrameWithDelaunayTriangles) {
  for (const std::size_t size : {20U, 2'000U}) {
    Check(support::name(GetParam()), support::extreme(GetParam(), size));
  }
}

INSTANTIATE_TEST_SUITE_P(Every, ExtremeClouds, testing::ValuesIn(support::kAllExtremes),
                         [](testing::TestParamInfo<support::Extreme> const& extreme) {
                           return support::name(extreme.param);
                         });

// There is no room for a frame around them: it ends where numbers end, and its corners stand where the points do.
TEST(CloudsAsWideAs32Bits, LoseThePointsThatStandOnTheCornersOfTheFrameAndCountThem) {
  const QuietApp app;
  constexpr std::int32_t low = std::numeric_limits<std::int32_t>::min(),
                         high = std::numeric_limits<std::int32_t>::max();
  std::vector<support::Point> points{{low, low, 0}, {low, high, 0}, {high, high, 0}, {high, low, 0}};
  for (support::Point const& p : support::family(Family::HugeSpread, 1'000, 1)) points.push_back(p);
  const Linked linked = LinkCloud(points);
  ASSERT_EQ(linked.code, kHecho);
  const support::MeshReport report = support::inspect(linked.mesh);
  EXPECT_EQ(support::surfaceFaults(report), "");
  EXPECT_EQ(report.notDelaunay.count, 0U) << report.notDelaunay.first;
  EXPECT_EQ(linked.mesh.triangles.size(), 2 * 1'000 + 2);
  EXPECT_EQ(linked.summary.duplicados, 4U);
}

TEST(TinyClouds, OfFewerThanThreePointsAreTooFew) {
  const QuietApp app;
  for (const Family family : support::kAllFamilies) {
    for (const std::size_t size : {0U, 1U, 2U}) {
      EXPECT_EQ(LinkCloud(support::family(family, size, 1)).code, kPocosPuntos) << support::name(family) << ' ' << size;
    }
  }
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

}  // namespace
}  // namespace Meseta47
