// What the search of high points finds is told by the mesh: not by the number of threads, nor by the order of the
// points.
#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <numbers>
#include <numeric>
#include <set>

#include "classification/SearchScene.h"
#include "model/threads/Codigos.h"
#include "support/PlanarSizes.h"

namespace Meseta47 {
namespace {

using support::Triangle;
using test::ClassedPoint;
using test::ClassesOf;
using test::Cloud;
using test::QuietApp;
using test::Search;

/// Ground of three hundred metres with trees on it, in millimetres; crowns are dense enough for a spread to climb them.
std::vector<ClassedPoint> Wood(int trees, std::uint64_t seed) {
  support::Random random(seed);
  std::vector<ClassedPoint> points;
  for (int i = 0; i < 100 * trees; ++i) {
    points.push_back({random.between(0, 300'000), random.between(0, 300'000), random.between(0, 300)});
  }
  for (int tree = 0; tree < trees; ++tree) {
    const int x = random.between(0, 300'000), y = random.between(0, 300'000), top = random.between(5'000, 25'000);
    for (int i = 0; i < 200; ++i) {
      const double turn = 2 * std::numbers::pi * random.unit(), r = 2'000 * random.unit();
      points.push_back({x + static_cast<int>(r * std::cos(turn)), y + static_cast<int>(r * std::sin(turn)),
                        static_cast<int>(top * std::sqrt(1 - r * r / 4.5e6)) - random.between(0, 1'500),
                        static_cast<unsigned char>(i % 50 == 0  ? 6
                                                   : i % 7 == 0 ? 3
                                                                : 2)});
    }
  }
  return points;
}

struct Outcome {
  std::vector<int> classes;  ///< point by point of the cloud as it was made, whatever order it was fed in
  unsigned changed = 0;
};

Outcome Find(std::vector<ClassedPoint> const& cloud, std::vector<std::size_t> const& order, unsigned threads,
             int onePass = 0) {
  const QuietApp app(threads);
  std::vector<ClassedPoint> fed;
  for (const std::size_t i : order) fed.push_back(cloud[i]);
  CDibujo<int> drawing = Cloud(fed, {3, 0, 0, 0});
  Search search;
  search.seed = drawing.semilla;
  search.distance = 10;
  search.height = 2;
  search.onePass = onePass;
  search.data = test::Changing({L"*"}, {L"3"});
  drawing.tipoNube = 0;
  EXPECT_EQ(search.Run(drawing), kHecho);
  Outcome outcome{std::vector<int>(cloud.size()), search.changed};
  const std::vector<int> classes = ClassesOf(drawing);
  for (std::size_t i = 0; i < order.size(); ++i) outcome.classes[order[i]] = classes[i];
  return outcome;
}

class WoodsOf : public testing::TestWithParam<int> {};

TEST_P(WoodsOf, GetTheSameClassesFromAnyNumberOfThreadsInAnyOrder) {
  const std::vector<ClassedPoint> cloud = Wood(test::kFullSize ? 60 : 6, static_cast<std::uint64_t>(GetParam()));
  std::vector<std::size_t> forward(cloud.size());
  std::iota(forward.begin(), forward.end(), 0U);
  const std::vector<std::size_t> backward(forward.rbegin(), forward.rend());
  std::vector<std::size_t> mixed = forward;
  support::Random(99).shuffle(mixed);

  const Outcome expected = Find(cloud, forward, 1);
  EXPECT_GT(expected.changed, cloud.size() / 10);
  EXPECT_LT(expected.changed, cloud.size());
  EXPECT_GT(expected.changed, Find(cloud, forward, 1, 1).changed) << "nothing was found by the spread";
  for (auto const& order : {forward, backward, mixed}) {
    for (const unsigned threads : {1U, 2U, 4U}) {
      const Outcome found = Find(cloud, order, threads);
      EXPECT_EQ(found.changed, expected.changed) << threads;
      EXPECT_TRUE(found.classes == expected.classes) << threads;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Seed, WoodsOf, testing::Values(1, 2, 3), testing::PrintToStringParamName());

/// The rules once more, one triangle after another until nothing changes, over the triangles of the same mesh.
class PlainSearch {
 public:
  PlainSearch(std::vector<ClassedPoint> const& cloud, double height, double distance)
      : points_(cloud), height_(height), distance_(distance) {
    const QuietApp app;
    CDibujo<int> drawing = Cloud(cloud);
    test::OpenTriangulation triangulation({}, drawing.semilla);
    EXPECT_EQ(triangulation.Link(drawing), kHecho);
    std::vector<std::size_t> placeOf(cloud.size() + 1, cloud.size());
    for (std::size_t i = 0; i < cloud.size(); ++i) {
      placeOf[static_cast<std::size_t>(drawing[0].Punto(static_cast<int>(i)).num)] = i;
    }
    for (Triangle const& t : test::RecordsOf(triangulation.SpilledBytes())) {
      if (*std::min_element(t.begin(), t.end()) < 0) continue;
      triangles_.push_back({placeOf[static_cast<std::size_t>(t[0])], placeOf[static_cast<std::size_t>(t[1])],
                            placeOf[static_cast<std::size_t>(t[2])]});
    }
    triangulation.BorraFicheroTemporal();
  }

  std::set<std::size_t> Found() {
    std::set<std::size_t> found;
    ForEachVertex([&](std::size_t p, std::size_t q, std::size_t r) {
      if (Rises(p, q) && Rises(p, r)) found.insert(p);
    });
    for (const int needed : {2, 1}) {
      std::size_t before = 0;
      do {
        before = found.size();
        ForEachVertex([&](std::size_t p, std::size_t q, std::size_t r) {
          if (Carries(found, q, p) + Carries(found, r, p) >= needed) found.insert(p);
        });
      } while (found.size() != before);
    }
    return found;
  }

 private:
  template <class Visit>
  void ForEachVertex(Visit visit) const {
    for (auto const& t : triangles_) {
      for (std::size_t i = 0; i < 3; ++i) visit(t[i], t[(i + 1) % 3], t[(i + 2) % 3]);
    }
  }
  [[nodiscard]] double Square(std::size_t p, std::size_t q) const {
    const double dx = points_[p].x - points_[q].x, dy = points_[p].y - points_[q].y;
    return dx * dx + dy * dy;
  }
  [[nodiscard]] bool Rises(std::size_t p, std::size_t q) const {
    const double rise = points_[p].z - points_[q].z;
    return rise > height_ && rise / std::sqrt(Square(p, q)) > std::numbers::pi / 4;
  }
  [[nodiscard]] int Carries(std::set<std::size_t> const& found, std::size_t q, std::size_t p) const {
    return found.count(q) != 0 && points_[q].z < points_[p].z && Square(p, q) <= distance_ ? 1 : 0;
  }

  std::vector<ClassedPoint> points_;
  double height_, distance_;
  std::vector<std::array<std::size_t, 3>> triangles_;
};

TEST(RunPuntosAltos, FindsWhatThePlainRulesFindOnTheSameMesh) {
  // On a lattice, with a distance of 1, a spread goes along the rows, and no triangle is small enough for an outline.
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    support::Random random(seed);
    std::vector<ClassedPoint> cloud;
    for (int x = 0; x < 40; ++x) {
      for (int y = 0; y < 40; ++y) {
        if (random.between(0, 2) != 0) cloud.push_back({x, y, random.between(0, 12)});
      }
    }
    random.shuffle(cloud);
    std::vector<int> expected(cloud.size(), 2);
    const std::set<std::size_t> found = PlainSearch(cloud, 3, 1).Found();
    for (const std::size_t i : found) expected[i] = 6;
    EXPECT_GT(found.size(), cloud.size() / 10);
    EXPECT_LT(found.size(), cloud.size());
    for (const unsigned threads : {1U, 4U}) {
      const QuietApp app(threads);
      CDibujo<int> drawing = Cloud(cloud);
      Search search;
      search.distance = 1;
      search.height = 3;
      EXPECT_EQ(search.Run(drawing), kHecho);
      EXPECT_EQ(search.changed, found.size());
      EXPECT_TRUE(ClassesOf(drawing) == expected) << "seed " << seed << ", threads " << threads;
    }
  }
}

}  // namespace
}  // namespace Meseta47
