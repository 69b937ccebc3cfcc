// What every linked cloud has to be, whatever its shape and its order, against oracles of exact integer arithmetic.
#include <gtest/gtest.h>

#include "model/Codigos.h"
#include "support/MeshOracle.h"
#include "support/PlanarRun.h"
#include "support/PlanarSizes.h"

namespace Meseta47 {
namespace {

using support::Family;
using support::HardCloud;
using test::LinkCloud;
using test::Linked;
using test::Order;
using test::QuietApp;

struct Feed {
  HardCloud cloud;
  Order order;

  [[nodiscard]] std::string Name() const {
    return cloud.testName() + (order == Order::Hilbert ? "_Hilbert" : cloud.seed == 0 ? "_InFileOrder" : "_Shuffled");
  }
};
std::ostream& operator<<(std::ostream& out, Feed const& feed) { return out << feed.Name(); }

/// Every family in each size, shuffled, as its file would have it, and along a curve that fills the plane.
std::vector<Feed> Feeds(std::vector<std::size_t> const& sizes) {
  std::vector<Feed> feeds;
  for (HardCloud const& cloud : support::hardClouds(sizes, 20'260)) feeds.push_back({cloud, Order::AsGiven});
  for (HardCloud const& cloud : support::hardClouds(sizes, 0)) {
    feeds.push_back({cloud, Order::AsGiven});
    feeds.push_back({cloud, Order::Hilbert});
  }
  return feeds;
}

std::string FeedName(testing::TestParamInfo<Feed> const& feed) { return feed.param.Name(); }

class LinkedClouds : public testing::TestWithParam<Feed> {};

TEST_P(LinkedClouds, TileTheFrameWithUprightDelaunayTriangles) {
  const QuietApp app;
  SCOPED_TRACE(GetParam().cloud.recipe);
  const Linked linked = LinkCloud(InOrder(GetParam().cloud.points(), GetParam().order));
  ASSERT_EQ(linked.code, kHecho);
  const support::MeshReport report = support::inspect(linked.mesh);
  EXPECT_EQ(support::surfaceFaults(report), "");
  EXPECT_EQ(support::frameTilingFaults(linked.mesh, report), "");
  EXPECT_EQ(linked.mesh.triangles.size(), 2 * support::distinctPositions(linked.mesh.points) + 2);
  if (support::hasOrdinarySpread(GetParam().cloud.kind)) {
    EXPECT_EQ(report.notDelaunay.count, 0U) << report.notDelaunay.first << ", deepest " << report.deepest;
  }
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Small, LinkedClouds, testing::ValuesIn(Feeds({3, 4, 5, 10, 50, 200, 201, 1'000})), FeedName);
std::vector<Feed> HugeFeeds() {
  std::vector<Feed> feeds;
  for (const support::Family kind : {support::Family::Uniform, support::Family::RegularGrid,
                                     support::Family::JitteredGrid, support::Family::ScanLines}) {
    feeds.push_back({HardCloud(kind, test::kHugeCloud, 0), Order::Hilbert});
  }
  return feeds;
}
INSTANTIATE_TEST_SUITE_P(Huge, LinkedClouds, testing::ValuesIn(HugeFeeds()), FeedName);
INSTANTIATE_TEST_SUITE_P(Large, LinkedClouds, testing::ValuesIn(Feeds(test::kLargeClouds)), FeedName);

}  // namespace
}  // namespace Meseta47
