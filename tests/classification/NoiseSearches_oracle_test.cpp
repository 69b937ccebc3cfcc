// The searches for noise against plain second implementations over the same mesh, and against what needs no mesh.
#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>

#include "classification/NoiseScene.h"
#include "model/terrain/CModeloDigital.h"
#include "support/PlanarSizes.h"
#include "support/PlyReader.h"

namespace Meseta47 {
namespace {

using support::Family;
using support::Found;
using support::HardCloud;
using support::Mesh;
using support::Point;
using support::Triangle;
using test::Aerial;
using test::Classed;
using test::ClassesOf;
using test::ClassesWith;
using test::Cloud;
using test::Isolated;
using test::Peaks;
using test::QuietApp;

/// What the square of a distance comes to as a whole number of 32 bits.
double Limit(double distance) {
  const double square = distance * distance;
  return square < 2147483648.0 ? std::floor(square) : -2147483648.0;
}

/// A search over a cloud in scaled units, and the classes that it left.
template <class Search>
std::vector<int> After(Search search, std::vector<Point> const& points, unsigned threads = 1) {
  const QuietApp app(threads);
  CDibujo<int> drawing = Cloud(Classed(points));
  EXPECT_EQ(search.Run(drawing), kHecho);
  return ClassesOf(drawing);
}

/// Lengths of the sides of a mesh in plan, ascending.
std::vector<double> Sides(Mesh const& mesh) {
  std::vector<double> sides;
  for (Triangle const& t : mesh.triangles) {
    for (std::size_t v = 0; v < 3; ++v) {
      const std::int32_t a = t[v], b = t[(v + 1) % 3];
      if (a < 1 || b < 1) continue;
      Point const &p = mesh.at(a), &q = mesh.at(b);
      sides.push_back(std::hypot(static_cast<double>(p.x) - q.x, static_cast<double>(p.y) - q.y));
    }
  }
  std::sort(sides.begin(), sides.end());
  return sides;
}

std::size_t CountOf(Found const& found) {
  return static_cast<std::size_t>(std::count(found.begin(), found.end(), true));
}

/// Every family in two sizes, with heights that make some of the points stand out.
class NoiseIn : public testing::TestWithParam<HardCloud> {
 protected:
  void SetUp() override {
    points = GetParam().points();
    support::Random random(GetParam().seed);
    const double spread = Spread();
    for (Point& p : points) {
      const int kind = random.between(0, 19);
      const double height = kind == 0 ? spread : kind == 1 ? -spread : random.unit() * spread / 20;
      p.z = static_cast<std::int32_t>(height);
    }
    const QuietApp app;
    linked = test::LinkCloud(points);
    ASSERT_EQ(linked.code, kHecho);
    sides = Sides(linked.mesh);
  }
  /// About the height at which a point that stands out is steep among its neighbours.
  double Spread() const {
    std::int64_t wide = 0;
    for (Point const& p : points) {
      wide = std::max({wide, std::abs(std::int64_t{p.x} - points[0].x), std::abs(std::int64_t{p.y} - points[0].y)});
    }
    return std::min(1e9, 2 * static_cast<double>(wide) / std::sqrt(static_cast<double>(points.size())));
  }
  /// A length that so many of the sides are below.
  double Side(double share) const {
    if (sides.empty()) return 1;
    return sides[static_cast<std::size_t>(share * static_cast<double>(sides.size() - 1))];
  }

  std::vector<Point> points;
  test::Linked linked;
  std::vector<double> sides;
};

TEST_P(NoiseIn, IsolatedPointsAreThoseOfThePlainRules) {
  SCOPED_TRACE(GetParam().recipe);
  for (const double share : {0.1, 0.5, 0.95}) {
    for (const unsigned asked : {0U, 1U, 2U, 4U, 9U}) {
      Isolated search;
      search.distance = Side(share) * 1.01;
      search.neighbours = asked;
      const Found expected = support::plainIsolated(linked.mesh, Limit(search.distance), asked);
      EXPECT_EQ(After(search, points), ClassesWith(expected)) << search.distance << ", " << asked;
    }
  }
}

TEST_P(NoiseIn, AerialPointsAreThoseOfThePlainRules) {
  SCOPED_TRACE(GetParam().recipe);
  for (const double share : {0.5, 0.95}) {
    for (const double factor : {3.0, 1.0, 0.2, 0.0, -0.2, -1.0, -3.0}) {
      Aerial search;
      search.radius = Side(share) * 2;
      search.factor = factor;
      const Found expected = support::plainAerial(linked.mesh, Trunca(search.radius), factor);
      EXPECT_EQ(After(search, points), ClassesWith(expected)) << search.radius << ", " << factor;
    }
  }
}

TEST_P(NoiseIn, PeaksAreThoseOfThePlainRules) {
  SCOPED_TRACE(GetParam().recipe);
  for (const double distance : {0.0, Side(0.5), Side(0.95)}) {
    for (const double slope : {0.0, 0.5, 3.0}) {
      for (const double height : {Spread() / 100, Spread() / 3}) {
        Peaks search;
        search.distance = distance;
        search.slope = slope;
        search.height = height;
        const double limit = distance == 0 ? 2147483647.0 : std::floor(distance);
        const Found expected = support::plainPeaks(linked.mesh, limit * limit, slope, Trunca(height));
        EXPECT_EQ(After(search, points), ClassesWith(expected)) << distance << ", " << slope << ", " << height;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Family, NoiseIn,
                         testing::ValuesIn(support::hardClouds({40, test::kFullSize ? 700U : 200U}, 11)),
                         [](auto const& cloud) { return cloud.param.testName(); });

TEST(NoiseSearches, FindSomethingAndNotEverythingInTheFamilies) {
  // The equalities above would hold of searches that find nothing.
  const std::vector<Point> points = [] {
    std::vector<Point> scattered = HardCloud(Family::Uniform, 700, 11).points();
    support::Random random(11);
    for (Point& p : scattered) p.z = random.between(0, 19) == 0 ? 900'000'000 : random.between(0, 1000);
    return scattered;
  }();
  const QuietApp app;
  const Mesh mesh = test::LinkCloud(points).mesh;
  const double side = Sides(mesh)[1000];
  for (Found const& found :
       {support::plainIsolated(mesh, side * side, 2), support::plainAerial(mesh, Trunca(4 * side), 1),
        support::plainPeaks(mesh, 1e30, 0, 100'000)}) {
    EXPECT_GT(CountOf(found), 10U);
    EXPECT_LT(CountOf(found), 690U);
  }
}

// --- without a mesh ---

TEST(RunPuntosAislados, WithOneNeighbourOnAPlaneItIsTheNearestNeighbour) {
  // A point's nearest neighbour is always joined to it, by a triangle off the frame unless it stands at the rim.
  constexpr int kWide = 40'000, kRim = 4'000;
  for (std::uint64_t seed = 1; seed <= 5; ++seed) {
    support::Random random(seed);
    std::vector<Point> points;
    for (int i = 0; i < 3'000; ++i) points.push_back({random.between(0, kWide), random.between(0, kWide), 5});
    for (const double distance : {100.0, 400.0, 700.5}) {
      Isolated search;
      search.distance = distance;
      const std::vector<int> classes = After(search, points);
      std::size_t judged = 0, isolated = 0;
      for (std::size_t i = 0; i < points.size(); ++i) {
        Point const& p = points[i];
        if (p.x < kRim || p.x > kWide - kRim || p.y < kRim || p.y > kWide - kRim) continue;
        std::int64_t nearest = std::int64_t{1} << 60;
        for (std::size_t j = 0; j < points.size(); ++j) {
          const std::int64_t dx = points[j].x - p.x, dy = points[j].y - p.y;
          if (j != i) nearest = std::min(nearest, dx * dx + dy * dy);
        }
        if (nearest == 0) continue;  // one of the two is a duplicate
        const bool alone = static_cast<double>(nearest) >= Limit(distance);
        EXPECT_EQ(classes[i], alone ? 7 : 2) << "seed " << seed << ", point " << i << ", " << distance;
        ++judged;
        isolated += alone ? 1 : 0;
      }
      EXPECT_GT(judged, 1'500U);
      EXPECT_GT(isolated, 30U);
      EXPECT_LT(isolated, judged);
    }
  }
}

/// Points that stand out against all others up to the radius away, one after another by position; those of the ground,
/// which is nowhere steep, are none.
std::vector<int> OutstandingAmong(std::vector<Point> const& points, double radius, double factor) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < points.size(); ++i) order.push_back(i);
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return points[a] < points[b]; });
  std::vector<int> classes(points.size(), 2);
  for (const std::size_t i : order) {
    if (std::abs(points[i].z) < 1000) continue;
    double n = 0, sum = 0, squares = 0;
    for (std::size_t j = 0; j < points.size(); ++j) {
      const double d = std::hypot(points[j].x - points[i].x, points[j].y - points[i].y);
      if (j == i || classes[j] == 7 || d > radius) continue;
      n += 1;
      sum += points[j].z;
      squares += static_cast<double>(points[j].z) * points[j].z;
    }
    if (n <= 2) continue;
    const double deviation = std::sqrt((squares - sum * sum / n) / (n - 1)), difference = points[i].z - sum / n;
    if (factor < 0 ? difference < factor * deviation : difference > factor * deviation) classes[i] = 7;
  }
  return classes;
}

TEST(RunPuntosAereos, FindsWhatStandsOutAgainstAllPointsAround) {
  for (std::uint64_t seed = 1; seed <= 5; ++seed) {
    support::Random random(seed);
    std::vector<Point> points;
    for (int y = 0; y < 50; ++y) {
      for (int x = 0; x < 50; ++x) {
        const int kind = random.between(0, 39);
        const int z = kind == 0   ? random.between(1'000, 9'000)
                      : kind == 1 ? -random.between(1'000, 9'000)
                                  : random.between(0, 9);
        points.push_back({100 * x + random.between(0, 60), 100 * y + random.between(0, 60), z});
      }
    }
    random.shuffle(points);
    for (const double factor : {1.5, 3.0, -1.5, -3.0}) {
      Aerial search;
      search.radius = 450;
      search.factor = factor;
      const std::vector<int> expected = OutstandingAmong(points, search.radius, factor);
      EXPECT_GT(std::count(expected.begin(), expected.end(), 7), 10);
      EXPECT_EQ(After(search, points), expected) << seed << ", " << factor;
    }
  }
}

TEST(BuscaPicos, JudgesByTheTrianglesOfTheExportedModel) {
  support::Random random(3);
  std::vector<Point> points;
  for (int i = 0; i < 4'000; ++i) {
    points.push_back({random.between(0, 500'000), random.between(0, 500'000),
                      random.between(0, 30) == 0 ? random.between(-20'000, 20'000) : random.between(0, 1'500)});
  }
  const QuietApp app;
  CDibujo<int> drawing = Cloud(Classed(points));
  auto model = std::make_unique<CTIN>(0, 0, drawing.semilla);
  test::OpenTriangulation triangulation({}, drawing.semilla);
  ASSERT_EQ(triangulation.Run(drawing, *model, 0, nullptr, false, nullptr, nullptr, nullptr), kHecho);
  const CString path = app.folder.Path("model.ply");
  ASSERT_EQ(CModeloDigital(model.release()).Exportar(path, CDataExportarMDT(FORMATO_PLY)), kHecho);
  const Mesh exported = support::scaled(support::readPly(path.Utf8()), 1);
  ASSERT_EQ(exported.points.size(), support::distinctPositions(points));

  for (const double slope : {0.0, 0.3}) {
    Peaks search;
    search.height = 1'000;
    search.slope = slope;
    search.distance = 12'000;
    const Found found = support::plainPeaks(exported, 12'000.0 * 12'000.0, slope, 1'000);
    std::vector<Point> expected, actual;
    for (std::size_t i = 0; i < found.size(); ++i) {
      if (found[i]) expected.push_back(exported.points[i]);
    }
    const std::vector<int> classes = After(search, points);
    for (std::size_t i = 0; i < classes.size(); ++i) {
      if (classes[i] == 7) actual.push_back(points[i]);
    }
    std::sort(expected.begin(), expected.end());
    std::sort(actual.begin(), actual.end());
    EXPECT_GT(expected.size(), 50U);
    EXPECT_LT(expected.size(), 1'000U);
    EXPECT_TRUE(actual == expected) << actual.size() << " and " << expected.size();
  }
}

// --- threads and order ---

TEST(NoiseSearches, GiveTheSameClassesOnAnyNumberOfThreadsInAnyOrder) {
  support::Random random(5);
  std::vector<Point> points;
  for (int i = 0; i < 5'000; ++i) {
    points.push_back({random.between(0, 1'000'000), random.between(0, 1'000'000),
                      random.between(0, 40) == 0 ? random.between(-90'000, 90'000) : random.between(0, 900)});
  }
  const auto all = [](std::vector<Point> const& cloud, unsigned threads) {
    Isolated isolated;
    isolated.distance = 15'000;
    isolated.neighbours = 2;
    Aerial above, below;
    above.radius = below.radius = 45'000;
    below.factor = -1.5;
    Peaks peaks;
    peaks.height = 5'000;
    std::vector<std::vector<int>> classes{After(isolated, cloud, threads), After(above, cloud, threads),
                                          After(below, cloud, threads), After(peaks, cloud, threads)};
    return classes;
  };
  const auto expected = all(points, 1);
  for (std::vector<int> const& classes : expected) EXPECT_GT(std::count(classes.begin(), classes.end(), 7), 20);
  for (const unsigned threads : {2U, 4U}) EXPECT_TRUE(all(points, threads) == expected) << threads;
  const std::vector<Point> backward(points.rbegin(), points.rend());
  auto reversed = all(backward, 2);
  for (std::vector<int>& classes : reversed) std::reverse(classes.begin(), classes.end());
  EXPECT_TRUE(reversed == expected);
}

}  // namespace
}  // namespace Meseta47
