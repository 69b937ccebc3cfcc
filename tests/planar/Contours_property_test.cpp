// Contours of every hard family, held against a plain contouring of the finished model in exact arithmetic.
#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "model/threads/Codigos.h"
#include "support/ContourRun.h"
#include "support/PlanarFeeds.h"
#include "support/PlanarRun.h"
#include "support/PlanarSizes.h"

namespace Meseta47 {
namespace {

using support::ContourRule;
using test::ContourCloud;
using test::Contoured;
using test::Feed;
using test::QuietApp;

/// What is done to a family before it is contoured.
enum class Change {
  None,
  Terraced,  ///< heights brought to levels and midway between them: level sides, plateaus, ridges, pits
  Gapped,    ///< long sides left out
};

struct Scene {
  Feed cloud;
  Change change;
  bool shore;  ///< level sides are no contours

  [[nodiscard]] std::string Name() const {
    constexpr std::array names{"", "_Terraced", "_Gapped"};
    return cloud.Name() + names[static_cast<std::size_t>(change)] + (shore ? "_Shore" : "");
  }
};
std::ostream& operator<<(std::ostream& out, Scene const& scene) { return out << scene.Name(); }

struct Prepared {
  std::vector<CCoor3D<int>> points;
  ContourRule rule;
};

Prepared Prepare(Scene const& scene) {
  std::vector<support::Point> points = scene.cloud.Points();
  if (scene.cloud.family == support::Family::HugeSpread) {
    // A double holds the products that a cut is formed of where a side's width and its climb multiply to less than
    // 2^53. Beyond that a cut may round to the unit next to the exact one, and there would be nothing to compare with.
    for (support::Point& p : points) p.z /= 10'000;
  }
  const auto range = [&](std::int32_t support::Point::*axis) {
    const auto [least, greatest] = std::minmax_element(points.begin(), points.end(),
                                                       [&](auto const& a, auto const& b) { return a.*axis < b.*axis; });
    return std::int64_t{(*greatest).*axis} - (*least).*axis;
  };
  Prepared prepared;
  prepared.rule.shore = scene.shore;
  const bool terraced = scene.change == Change::Terraced;
  prepared.rule.interval = static_cast<std::int32_t>(range(&support::Point::z) / (terraced ? 5 : 13) / 2 * 2 + 2);
  if (terraced) {
    for (support::Point& p : points) p.z = p.z / (prepared.rule.interval / 2) * (prepared.rule.interval / 2);
  }
  if (scene.change == Change::Gapped) {
    const auto extent = static_cast<double>(std::max(range(&support::Point::x), range(&support::Point::y)));
    prepared.rule.longestSide = static_cast<std::int64_t>(1.5 * extent / std::sqrt(static_cast<double>(points.size())));
  }
  for (support::Point const& p : points) prepared.points.emplace_back(p.x, p.y, p.z, 0);
  return prepared;
}

std::vector<Scene> Scenes(std::vector<std::size_t> const& sizes) {
  std::vector<Scene> scenes;
  for (const support::Family family : support::kAllFamilies) {
    for (const std::size_t size : sizes) {
      for (const Change change : {Change::None, Change::Terraced, Change::Gapped}) {
        for (const bool shore : {false, true}) {
          scenes.push_back({{family, test::Order::Hilbert, size}, change, shore});
        }
      }
    }
  }
  return scenes;
}

std::string SceneName(testing::TestParamInfo<Scene> const& scene) { return scene.param.Name(); }

class ContouredClouds : public testing::TestWithParam<Scene> {};

TEST_P(ContouredClouds, AreThoseOfTheFinishedModel) {
  const QuietApp app;
  Prepared prepared = Prepare(GetParam());
  const Contoured contoured = ContourCloud(std::move(prepared.points), prepared.rule);
  ASSERT_EQ(contoured.code, kHecho);
  EXPECT_EQ(FaultsOf(contoured), "");
}

INSTANTIATE_TEST_SUITE_P(Small, ContouredClouds,
                         testing::ValuesIn(Scenes({3, 4, 10, 200, test::kFullSize ? 1'000U : 400U})), SceneName);
INSTANTIATE_TEST_SUITE_P(Large, ContouredClouds, testing::ValuesIn(Scenes({test::kFullSize ? 5'000U : 1'500U})),
                         SceneName);

/// Segments as lines of two points, level by level.
std::vector<support::ContourLine> LinesOf(CSegmentos& segments, int interval) {
  std::vector<support::ContourLine> lines;
  while (segments.Cantidad() != 0) {
    const int z = segments.MinimoZ();
    EXPECT_EQ(z % interval, 0);
    for (CSegmento const& s : segments.Saca(z)) lines.push_back({{s.a.x, s.a.y, z}, {s.b.x, s.b.y, z}});
  }
  return lines;
}

class SegmentsOfClouds : public testing::TestWithParam<Scene> {};

/// The two-point segments that the worker leaves, and the finished model's pieces, copies included.
TEST_P(SegmentsOfClouds, AreWhatEachTriangleGives) {
  const QuietApp app;
  Prepared prepared = Prepare(GetParam());
  const Contoured contoured = ContourCloud(prepared.points, prepared.rule);
  ASSERT_EQ(contoured.code, kHecho);
  CDibujo<int> drawing;
  CSetPuntos<int> cloud{CString(L"cloud")};
  cloud.CLinea<int>::Asigna(std::move(prepared.points));
  drawing.Inserta(std::move(cloud));
  test::OpenTriangulation triangulation;
  triangulation.paramCurvaA = contoured.rule.interval;
  triangulation.dibujoCurvas.PonLlanos(contoured.rule.shore ? CLlanos::ORILLA : CLlanos::LADOS);
  triangulation.paramCurvaB = static_cast<std::int32_t>(contoured.rule.longestSide);
  ASSERT_EQ(triangulation.Link(drawing, nullptr, nullptr, 0, CHiloSalvaTriangulosEnlazados::CURVA), kHecho);
  EXPECT_EQ(pieceFaults(piecesOf(LinesOf(triangulation.dibujoCurvas, contoured.rule.interval)),
                        plainContours(contoured.mesh, contoured.rule).pieces()),
            "");
}

/// The segments of a cloud in another order and turned round come out as the same lines.
TEST_P(SegmentsOfClouds, JoinAlikeInAnyOrderAndSense) {
  const QuietApp app;
  Prepared prepared = Prepare(GetParam());
  const Contoured contoured = ContourCloud(std::move(prepared.points), prepared.rule);
  ASSERT_EQ(contoured.code, kHecho);
  const support::PlainContours plain = plainContours(contoured.mesh, contoured.rule);
  std::vector<support::ContourPiece> pieces = contoured.rule.shore ? plain.distinctPieces() : plain.pieces();
  std::mt19937 random(20'260);
  for (int round = 0; round < 3; ++round) {
    std::shuffle(pieces.begin(), pieces.end(), random);
    CDibujo<int> drawing;
    for (support::ContourPiece const& piece : pieces) {
      const bool turned = random() % 2 == 0;
      support::Point const &a = turned ? piece.b : piece.a, &b = turned ? piece.a : piece.b;
      CLinea<int> line(L"nuevo");
      line << CCoor3D<int>(a.x, a.y, a.z, 0) << CCoor3D<int>(b.x, b.y, b.z, 0);
      drawing.Inserta(std::move(line));
    }
    drawing.Junta(0, 0, true, true, true, 0, 0, true);
    std::vector<support::ContourLine> joined = test::LinesOf(drawing);
    std::stable_sort(joined.begin(), joined.end(),
                     [](auto const& a, auto const& b) { return a.front().z < b.front().z; });
    ASSERT_TRUE(joined == contoured.lines) << "round " << round;
  }
}

INSTANTIATE_TEST_SUITE_P(Each, SegmentsOfClouds, testing::ValuesIn(Scenes({4, 200, 1'000})), SceneName);

/// Rounding brings contours together only on walls: where no triangle climbs an interval within a unit and a half, they
/// stay apart.
TEST(ContoursOfDifferentHeight, DoNotMeetOnGentleGround) {
  const QuietApp app;
  std::mt19937 random(20'260);
  std::vector<CCoor3D<int>> points;
  for (int i = 0; i < 5'000; ++i) {
    const int x = static_cast<int>(random() % 20'000), y = static_cast<int>(random() % 20'000);
    points.emplace_back(x, y, (x - 9'000) * (y - 11'000) / 4'000'000 + x / 50 - y / 90, 0);
  }
  const Contoured contoured = ContourCloud(std::move(points), {1, 1 << 30});
  ASSERT_EQ(contoured.code, kHecho);
  EXPECT_EQ(FaultsOf(contoured), "");
  EXPECT_GT(contoured.lines.size(), 300U);
  EXPECT_EQ(meetings(contoured.lines, plainContours(contoured.mesh, contoured.rule)).pairs, 0U);
}

/// Hills whose heights are whole metres, as many surveys give them: every level runs through vertices and flat places.
std::vector<CCoor3D<int>> RoundedHills() {
  std::mt19937 random(20'260);
  std::vector<CCoor3D<int>> points;
  for (int i = 0; i < 5'000; ++i) {
    const int x = static_cast<int>(random() % 200'000), y = static_cast<int>(random() % 200'000);
    const double height = 8 * std::sin(x / 23'000.0) * std::cos(y / 31'000.0) + x / 40'000.0;
    points.emplace_back(x, y, 1'000 * static_cast<int>(std::lround(height)), 0);
  }
  return points;
}

TEST(ContoursOfHeightsRoundedToTheLevel, EndOnTheOutlineAlone) {
  const QuietApp app;
  const Contoured contoured = ContourCloud(RoundedHills(), {1'000, std::int64_t{1} << 40, true});
  ASSERT_EQ(contoured.code, kHecho);
  EXPECT_EQ(FaultsOf(contoured), "");
  EXPECT_GT(contoured.lines.size(), 50U);
  const support::PlainContours plain = plainContours(contoured.mesh, contoured.rule);
  for (support::ContourLine const& line : contoured.lines) {
    if (line.front() == line.back()) continue;
    for (support::Point const& end : {line.front(), line.back()}) {
      EXPECT_TRUE(std::binary_search(plain.onOutline.begin(), plain.onOutline.end(), end)) << support::toText(end);
    }
  }
}

/// A lake amid higher land, an island in it and a level bank that rises from its far side.
std::vector<CCoor3D<int>> Lake() {
  std::vector<CCoor3D<int>> points;
  for (int y = 0; y <= 20; ++y) {
    for (int x = 0; x <= 20; ++x) {
      const double away = std::hypot(x - 10, y - 10);
      const int height = away < 2.5 ? 251 : away < 7 ? 250 : 250 + static_cast<int>(away - 5);
      points.emplace_back(1'000 * x + 37 * (y % 3), 1'000 * y + 41 * (x % 5), 1'000 * height, 0);
    }
  }
  return points;
}

TEST(ContoursOfALakeOnALevel, AreItsShoreAndThatOfItsIsland) {
  const QuietApp app;
  const Contoured contoured = ContourCloud(Lake(), {500, std::int64_t{1} << 40, true});
  ASSERT_EQ(contoured.code, kHecho);
  EXPECT_EQ(FaultsOf(contoured), "");
  const auto isOfTheLake = [](support::ContourLine const& line) { return line.front().z == 250'000; };
  ASSERT_EQ(std::count_if(contoured.lines.begin(), contoured.lines.end(), isOfTheLake), 2);
  for (support::ContourLine const& line : contoured.lines) {
    EXPECT_TRUE(!isOfTheLake(line) || line.front() == line.back());
  }
}

TEST(ContoursOfAFlatGridOnALevel, AreNone) {
  const QuietApp app;
  std::vector<CCoor3D<int>> points;
  for (int i = 0; i < 400; ++i) points.emplace_back(i % 20 * 100, i / 20 * 100, 1'000, 0);
  EXPECT_TRUE(ContourCloud(points, {1'000, std::int64_t{1} << 40, true}).lines.empty());
  EXPECT_GT(ContourCloud(points, {1'000, std::int64_t{1} << 40, false}).lines.size(), 300U)
      << "sides are contours there";
}

TEST(ContoursOfDifferentHeight, MeetOnAWallOfAUnitAndNowhereElse) {
  const QuietApp app;
  std::vector<CCoor3D<int>> points;
  for (int y = 0; y <= 1'000; y += 100) {
    for (const int x : {0, 500, 501, 1'000}) points.emplace_back(x, y + x % 7, x > 500 ? 1'000 : 0, 0);
  }
  const Contoured contoured = ContourCloud(std::move(points), {100, 1 << 30});
  ASSERT_EQ(contoured.code, kHecho);
  EXPECT_EQ(FaultsOf(contoured), "");
  const support::Meetings found = meetings(contoured.lines, plainContours(contoured.mesh, contoured.rule));
  EXPECT_GT(found.pairs, 0U) << "the scene has lost its wall";
  EXPECT_EQ(found.tooFar, 0U);
}

}  // namespace
}  // namespace Meseta47
