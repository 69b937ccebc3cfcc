// Which clouds two threads take, and where they divide them: each limit, on it and one beyond.
#include "planar/CReparto2D.h"

#include <gtest/gtest.h>
#include <limits>

#include "planar/CSetTriangulos2D.h"

namespace Meseta47 {
namespace {

// Quadrants: 1 is added for x high, 2 for y low.
struct Cloud {
  std::uint64_t points = 100'000;
  std::uint64_t in[4] = {25'000, 25'000, 25'000, 25'000};
  std::int64_t width = 1'000'000, height = 1'000'000;
};

bool ByTwo(Cloud const& cloud, std::uint32_t least = CReparto2D::kMinimo) {
  CMaximas<int> box;
  box.Nuevo(CCoor3D<int>(-100, -100, 0, 0));
  box.Nuevo(CCoor3D<int>(static_cast<int>(cloud.width - 100), static_cast<int>(cloud.height - 100), 0, 0));
  return CReparto2D::VaPorDos(cloud.points, cloud.in, box, least);
}

Cloud Even(std::uint64_t points) {
  const std::uint64_t part = points / 4;
  return {points, {part, part, part, points - 3 * part}};
}

TEST(CReparto2D, FromFiftyThousandPointsOnOrFromWhereAHostSays) {
  EXPECT_FALSE(ByTwo(Even(49'999)));
  EXPECT_TRUE(ByTwo(Even(50'000)));
  EXPECT_FALSE(ByTwo(Even(999), 1'000));
  EXPECT_TRUE(ByTwo(Even(1'000), 1'000));
}

TEST(CReparto2D, UpToAsManyPointsAsHaveAStampOfTheirOwn) {
  constexpr auto kStamps = static_cast<std::uint64_t>(CSetTriangulos2D::kSegundaMarca);
  EXPECT_TRUE(ByTwo(Even(kStamps)));
  EXPECT_FALSE(ByTwo(Even(kStamps + 1)));
  EXPECT_FALSE(ByTwo(Even(std::numeric_limits<std::uint32_t>::max())));
}

TEST(CReparto2D, UpToExtentsWhoseCirclesInAQuadrantAreJudgedByCentreAndRadius) {
  constexpr std::int64_t kWidest = std::int64_t{1} << 28;
  for (auto Cloud::*side : {&Cloud::width, &Cloud::height}) {
    Cloud cloud;
    cloud.*side = kWidest;
    EXPECT_TRUE(ByTwo(cloud));
    cloud.*side = kWidest + 1;
    EXPECT_FALSE(ByTwo(cloud));
  }
}

TEST(CReparto2D, NotWhereEitherAxisLeavesLessThanAQuarterInOneHalf) {
  EXPECT_TRUE(ByTwo({100'000, {25'000, 0, 0, 75'000}}));
  EXPECT_FALSE(ByTwo({100'000, {24'999, 0, 0, 75'001}}));
  EXPECT_TRUE(ByTwo({100'000, {50'000, 0, 50'000, 0}})) << "all on the left: divided by y";
  EXPECT_FALSE(ByTwo({100'000, {0, 100'000, 0, 0}}));
}

TEST(CReparto2D, DividesTheAxisThatSharesThePointsMoreEvenlyXIfBothDoAlike) {
  const CCoor3D<int> centre(7, -3, 0, 0);
  const CReparto2D alike = CReparto2D::Para({10, 10, 10, 10}, centre);
  EXPECT_EQ(alike.eje, &CCoor3D<int>::x);
  EXPECT_EQ(alike.medio, 7);
  const CReparto2D byY = CReparto2D::Para({30, 5, 25, 10}, centre);
  EXPECT_EQ(byY.eje, &CCoor3D<int>::y);
  EXPECT_EQ(byY.medio, -3);
  EXPECT_EQ(byY.Mitad({0, -3, 0, 0}), 1U) << "what lies on the middle is of the high half";
  EXPECT_EQ(byY.Mitad({100, -4, 0, 0}), 0U);
}

}  // namespace
}  // namespace Meseta47
