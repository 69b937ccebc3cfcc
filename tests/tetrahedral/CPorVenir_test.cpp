#include "tetrahedral/CPorVenir.h"

#include <gtest/gtest.h>

#include "support/Random.h"
#include "support/SpaceFamilies.h"

using namespace Meseta47;
using namespace Meseta47::support;

namespace {

CCoor3D<int> At(Point const& p) { return {p.x, p.y, p.z, 0}; }

CPorVenir TreeOf(std::vector<Point> const& points) {
  std::vector<CPorVenir::CPunto> coming;
  coming.reserve(points.size());
  for (Point const& p : points) coming.push_back({{p.x, p.y, p.z}, static_cast<std::uint32_t>(coming.size())});
  CPorVenir tree;
  tree.Prepara(coming);
  return tree;
}

double Excess(CPorVenir::CBola const& ball, Point const& p) {
  const double dx = ball.x - p.x, dy = ball.y - p.y, dz = ball.z - p.z;
  return dx * dx + dy * dy + dz * dz - ball.radio2;
}

TEST(CPorVenir, WithoutPointsThereIsNoLeaf) {
  CPorVenir tree;
  tree.Prepara({});
  EXPECT_EQ(tree.Hojas(), 0U);
  EXPECT_FALSE(tree.Quedan());
}

TEST(CPorVenir, PointsAtOnePlaceShareALeafHoweverManyTheyAre) {
  CPorVenir tree = TreeOf(std::vector<Point>(1000, {7, -8, 9}));
  ASSERT_EQ(tree.Hojas(), 1U);
  for (int i = 0; i < 999; ++i) EXPECT_FALSE(tree.Llega(tree.Hoja({7, -8, 9, 0}))) << i;
  EXPECT_TRUE(tree.Quedan());
  EXPECT_TRUE(tree.Llega(0));
  EXPECT_FALSE(tree.Quedan());
}

TEST(CPorVenir, TheFarthestCoordinatesAreDividedWithoutOverflow) {
  std::vector<Point> corners;
  for (int i = 0; i < 800; ++i) {
    const auto side = [i](int bit) { return (i >> bit & 1) != 0 ? 2147483647 - i : -2147483647 + i; };
    corners.push_back({side(0), side(1), side(2)});
  }
  CPorVenir tree = TreeOf(corners);
  std::vector<unsigned> ended(tree.Hojas());
  for (Point const& p : corners) {
    const std::uint32_t leaf = tree.Hoja(At(p));
    ended.at(leaf) += tree.Llega(leaf) ? 1U : 0U;
  }
  EXPECT_EQ(ended, std::vector<unsigned>(tree.Hojas(), 1U));
}

class Coming : public testing::TestWithParam<SpaceFamily> {};

// What is told to be out of reach must be so, to the last bit: a tetrahedron let go too early would be missed for ever.
TEST_P(Coming, ASphereToldToBeOutOfReachHoldsNoPointThatIsToCome) {
  const std::vector<Point> points = alongACurve(spaceFamily(GetParam(), 1500, 5));
  CPorVenir tree = TreeOf(points);
  Random random(99);
  unsigned outOfReach = 0, within = 0;
  for (std::size_t came = 0; came < points.size(); ++came) {
    const std::uint32_t leaf = tree.Hoja(At(points[came]));
    if (!tree.Llega(leaf)) continue;
    CPorVenir::CVecindad around;
    around.Pon(tree, leaf);
    for (int k = 0; k < 40; ++k) {
      // From a tenth of the distance to another point to several times it.
      Point const &centre = points[random.bits() % (came + 1)], &other = points[random.bits() % points.size()];
      CPorVenir::CBola ball{centre.x + 0.25, centre.y - 0.5, centre.z * 1.0, 0, 0};
      ball.radio2 = Excess(ball, other) * (k % 2 == 0 ? 1.0 : 0.01 * (k + 1));
      ball.margen = 1e-9 * ball.radio2;
      const std::uint32_t reached = around.Alcanza(ball);
      if (reached != CPorVenir::kNinguna) {
        ++within;
        continue;
      }
      ++outOfReach;
      for (std::size_t i = came + 1; i < points.size(); ++i) {
        ASSERT_GT(Excess(ball, points[i]), ball.margen) << "point " << i << " after " << came;
      }
    }
  }
  EXPECT_GT(outOfReach, 0U);
  EXPECT_GT(within, 0U);
}

TEST_P(Coming, OnceAllHaveComeNothingReachesThem) {
  const std::vector<Point> points = spaceFamily(GetParam(), 700, 6);
  CPorVenir tree = TreeOf(points);
  std::uint32_t last = 0;
  std::size_t ended = 0;
  for (Point const& p : points) {
    EXPECT_TRUE(tree.Quedan());
    const std::uint32_t leaf = tree.Hoja(At(p));
    if (!tree.Llega(leaf)) continue;
    last = leaf;
    ++ended;
  }
  EXPECT_EQ(ended, tree.Hojas());
  EXPECT_FALSE(tree.Quedan());
  CPorVenir::CVecindad around;
  around.Pon(tree, last);
  EXPECT_EQ(around.Alcanza({0, 0, 0, 1e20, 1e9}), CPorVenir::kNinguna);
}

INSTANTIATE_TEST_SUITE_P(EveryFamily, Coming, testing::ValuesIn(kSpaceFamilies),
                         [](auto const& test) { return name(test.param); });

}  // namespace
