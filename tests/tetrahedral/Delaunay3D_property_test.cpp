#include <algorithm>
#include <gtest/gtest.h>
#include <random>

#include "support/PlanarSizes.h"
#include "support/SpaceFamilies.h"
#include "support/SpaceRun.h"

using namespace Meseta47;
using namespace Meseta47::support;
using namespace Meseta47::test;

namespace {

struct Cloud {
  SpaceFamily kind;
  std::size_t size;
  std::string recipe;
};

std::vector<Cloud> Clouds(std::vector<std::size_t> const& sizes) {
  std::vector<Cloud> clouds;
  for (const SpaceFamily kind : kSpaceFamilies) {
    for (const std::size_t n : sizes) {
      // Points on one sphere condemn nearly the whole mesh of one another.
      const bool cospherical = kind == SpaceFamily::Sphere && n > 20000;
      clouds.push_back({kind, cospherical ? 20000 : n, std::string(name(kind)) + "_" + std::to_string(n)});
    }
  }
  return clouds;
}

class HardSpaces : public testing::TestWithParam<Cloud> {};

void ExpectSound(std::vector<Point> const& points, bool spill, unsigned fineness) {
  const LinkedInSpace linked = LinkInSpace(points, spill, fineness);
  ASSERT_EQ(linked.code, kHecho);
  EXPECT_EQ(linked.mesh.corners, cubeAround(points));
  EXPECT_EQ(cubeTilingFaults(linked.mesh, inspect(linked.mesh)), "");
  EXPECT_EQ(linked.summary.duplicados, points.size() - distinctPlaces(points));
  EXPECT_EQ(linked.summary.perdidos, std::vector<int>());
  EXPECT_EQ(linked.summary.enlazados, linked.mesh.tetrahedra.size());
}

TEST_P(HardSpaces, TetrahedraTileTheFrameExactlyInRandomOrder) {
  SCOPED_TRACE(GetParam().recipe);
  ExpectSound(spaceFamily(GetParam().kind, GetParam().size, 1), false, 1);
}

TEST_P(HardSpaces, TetrahedraTileTheFrameExactlyAlongACurveAndSpilled) {
  SCOPED_TRACE(GetParam().recipe);
  ExpectSound(alongACurve(spaceFamily(GetParam().kind, GetParam().size, 2)), true, 1);
}

TEST_P(HardSpaces, TetrahedraTileTheFrameExactlySortedAndInFinerCells) {
  SCOPED_TRACE(GetParam().recipe);
  std::vector<Point> points = spaceFamily(GetParam().kind, GetParam().size, 3);
  std::sort(points.begin(), points.end());
  ExpectSound(points, true, 27);
}

/// The cavity of a repeated point grows over the sphere until its double is met. It leaves nothing new: what the next
/// point starts from is still the star of the point before, which is much smaller here.
TEST(HardSpaces, AfterARepeatedPointOfASphereTheSearchStartsFromWhatIsThere) {
  constexpr int kRadius = 65;
  std::vector<Point> sphere, points;
  for (int x = -kRadius; x <= kRadius; ++x) {
    for (int y = -kRadius; y <= kRadius; ++y) {
      for (int z = -kRadius; z <= kRadius; ++z) {
        if (x * x + y * y + z * z == kRadius * kRadius) sphere.push_back({x, y, z});
      }
    }
  }
  ASSERT_GT(sphere.size(), 200U);
  points = sphere;
  std::shuffle(points.begin(), points.end(), std::mt19937(1));
  for (std::size_t i = 0; i < sphere.size(); ++i) {
    points.push_back(
        {1000 + 7 * static_cast<int>(i), 900 + static_cast<int>(i * i % 613), static_cast<int>(i * 31 % 557)});
    for (const std::size_t step : {1U, 77U, 131U}) points.push_back(sphere[(i * step + step) % sphere.size()]);
  }
  ExpectSound(points, false, 1);
  ExpectSound(points, true, 27);
}

class LargestSpaces : public testing::TestWithParam<Cloud> {};

TEST_P(LargestSpaces, TetrahedraTileTheFrameExactly) {
  SCOPED_TRACE(GetParam().recipe);
  ExpectSound(alongACurve(spaceFamily(GetParam().kind, GetParam().size, 5)), true, 27);
}

/// Whether the points span space.
bool Span(std::vector<Point> const& points) {
  Point const& a = points.front();
  for (Point const& b : points) {
    for (Point const& c : points) {
      for (Point const& d : points) {
        if (sixVolumes(a, b, c, d) != 0) return true;
      }
    }
  }
  return false;
}

class HardHulls : public testing::TestWithParam<Cloud> {};

TEST_P(HardHulls, TheMeshOfThePointsAloneFillsTheirHull) {
  SCOPED_TRACE(GetParam().recipe);
  std::vector<Point> points = alongACurve(spaceFamily(GetParam().kind, GetParam().size, 4));
  const LinkedInSpace linked = LinkHull(points);
  ASSERT_EQ(linked.code, kHecho);
  if (GetParam().size <= 10 && !Span(points)) {
    EXPECT_TRUE(linked.mesh.tetrahedra.empty());
  } else {
    EXPECT_EQ(hullTilingFaults(linked.mesh, inspect(linked.mesh)), "");
  }
}

INSTANTIATE_TEST_SUITE_P(Hulls, HardHulls, testing::ValuesIn(Clouds({2, 3, 4, 5, 6, 8, 10, 40, 700})),
                         [](auto const& test) { return test.param.recipe; });
INSTANTIATE_TEST_SUITE_P(Small, HardSpaces, testing::ValuesIn(Clouds({2, 3, 4, 5, 6, 7, 8, 9, 10, 200})),
                         [](auto const& test) { return test.param.recipe; });
INSTANTIATE_TEST_SUITE_P(Large, HardSpaces, testing::ValuesIn(Clouds({3000})),
                         [](auto const& test) { return test.param.recipe; });

INSTANTIATE_TEST_SUITE_P(Largest, LargestSpaces, testing::ValuesIn(Clouds({kFullSize ? 200'000U : 4'000U})),
                         [](auto const& test) { return test.param.recipe; });

}  // namespace
