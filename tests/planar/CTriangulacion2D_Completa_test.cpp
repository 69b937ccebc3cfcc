// Surfaces without their frame: they fill the convex hull of the points, exactly, whatever shape the points have.
#include <algorithm>
#include <gmock/gmock.h>
#include <random>

#include "model/geometry/CRango.h"
#include "planar/CTriangulacion.h"
#include "planar/PhaseScenes.h"
#include "support/Canonical.h"
#include "support/ContourRun.h"
#include "support/Extremes.h"
#include "support/FaultGuard.h"
#include "support/HullOracle.h"
#include "support/PlanarFeeds.h"
#include "support/PlanarSizes.h"
#include "support/ReferenceDelaunay.h"

namespace Meseta47 {
namespace {

using support::Family;
using support::Mesh;
using support::Point;
using support::Triangle;
using test::CloudAt;
using test::CloudOf;
using test::Described;
using test::DrawingOf;
using test::EveryFeed;
using test::Feed;
using test::ListeningApp;
using test::ModelOf;
using test::OpenTriangulation;
using test::QuietApp;
using test::Scatter;
using test::TrianglesOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

/// A cloud linked without its frame: the surface, and the sides that bound it, as they stand in the temporary file.
struct Whole {
  Mesh surface;
  std::vector<std::array<std::int32_t, 2>> rim;
  CResumenPlano summary;
  std::string bytes;
};

Whole LinkedWhole(std::vector<Point> const& points) {
  CDibujo<int> drawing = DrawingOf(points);
  OpenTriangulation triangulation;
  triangulation.SinMarco(true);
  EXPECT_EQ(triangulation.Link(drawing), kHecho);
  const test::Linked linked = test::Collected(triangulation, drawing[0], points);
  Whole whole{{points, {}, {}}, {}, linked.summary, linked.bytes};
  for (Triangle const& t : linked.mesh.triangles) {
    if (t[2] < 0) {
      whole.rim.push_back({t[0], t[1]});
    } else {
      whole.surface.triangles.push_back(t);
    }
  }
  return whole;
}

/// The sides of the hull, counter-clockwise, ascending; `names` stand for points of one place.
std::vector<std::array<std::int32_t, 2>> HullSides(std::vector<Point> const& points) {
  const std::vector<std::int32_t> ring = support::hullRing(points);
  std::vector<std::array<std::int32_t, 2>> sides;
  for (std::size_t i = 0; i < ring.size(); ++i) sides.push_back({ring[i], ring[(i + 1) % ring.size()]});
  std::sort(sides.begin(), sides.end());
  return sides;
}

void ExpectWhole(Whole const& whole) {
  const support::MeshReport report = support::inspect(whole.surface);
  EXPECT_EQ(support::surfaceFaults(report), "");
  EXPECT_EQ(support::hullFillingFaults(whole.surface, report), "");
  EXPECT_EQ(report.notDelaunay.count, 0U) << report.notDelaunay.first << ", deepest " << report.deepest;
  const std::vector<std::int32_t> names = support::representatives(whole.surface.points);
  auto rim = whole.rim;
  for (auto& side : rim) {
    for (std::int32_t& v : side) v = names[static_cast<std::size_t>(v) - 1];
  }
  std::sort(rim.begin(), rim.end());
  EXPECT_EQ(rim, HullSides(whole.surface.points));
  const std::size_t distinct = support::distinctPositions(whole.surface.points);
  EXPECT_EQ(whole.summary.duplicados, whole.surface.points.size() - distinct);
  EXPECT_EQ(whole.summary.rechazados, 0U);
}

void Check(Feed const& feed) {
  SCOPED_TRACE(feed.Name());
  const QuietApp app;
  ExpectWhole(LinkedWhole(feed.Points()));
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

/// Triangles in terms of the place that a point has in ascending order.
std::vector<Triangle> ByPosition(Whole const& whole) {
  std::vector<Point> sorted = whole.surface.points;
  for (Point& p : sorted) p.z = 0;
  std::sort(sorted.begin(), sorted.end());
  sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
  std::vector<std::int32_t> places;
  for (Point const& p : whole.surface.points) {
    const auto found = std::lower_bound(sorted.begin(), sorted.end(), Point{p.x, p.y, 0});
    places.push_back(static_cast<std::int32_t>(found - sorted.begin()) + 1);
  }
  return support::canonicalSet(support::renumbered(whole.surface.triangles, places));
}

class EveryWholeCloud : public testing::TestWithParam<Feed> {};
INSTANTIATE_TEST_SUITE_P(EveryFamily, EveryWholeCloud, testing::ValuesIn(EveryFeed(0)),
                         [](testing::TestParamInfo<Feed> const& feed) {
                           const std::string name = feed.param.Name();
                           return name.substr(0, name.rfind('_'));
                         });

TEST_P(EveryWholeCloud, OfEverySmallSizeFillTheirHullWithDelaunayTriangles) {
  for (const std::size_t size : {3U, 4U, 5U, 6U, 7U, 10U, 20U, 50U, 200U, 201U, 1'000U}) {
    Check({GetParam().family, GetParam().order, size});
  }
}

TEST_P(EveryWholeCloud, OfSomeThousandPointsFillTheirHullWithDelaunayTriangles) {
  Check({GetParam().family, GetParam().order, 5'000});
}

TEST(LargeWholeClouds, FillTheirHullWithDelaunayTriangles) {
  const std::size_t size = test::kFullSize ? 200'000 : 2'000;
  for (const Family family : {Family::Uniform, Family::RegularGrid, Family::Circle, Family::ScanLines}) {
    Check({family, test::Order::Hilbert, size});
  }
}

TEST(ExtremeWholeClouds, FillTheirHullWithDelaunayTriangles) {
  for (const auto extreme : support::kAllExtremes) {
    SCOPED_TRACE(support::name(extreme));
    for (const std::size_t size : {20U, 2'000U}) {
      const QuietApp app;
      ExpectWhole(LinkedWhole(support::extreme(extreme, size)));
    }
  }
}

// --- few points

/// Every circle of it reaches a corner of its frame.
const std::vector<Point> kKite{{0, 0, 0}, {3'000, 200, 0}, {10'000, 0, 0}, {6'000, -250, 0}};

/// A shallow arch: the same of every circle.
std::vector<Point> Arch(int n) {
  std::vector<Point> points;
  for (int i = 0; i < n; ++i) points.push_back({1'000 * i, i * (n - 1 - i), 0});
  return points;
}

TEST(WholeClouds, OfFivePointsLoseNothing) {
  const QuietApp app;
  for (std::uint64_t seed = 1; seed <= 300; ++seed) {
    SCOPED_TRACE(seed);
    const std::vector<Point> points = support::family(Family::Uniform, 5, seed);
    const Whole whole = LinkedWhole(points);
    ExpectWhole(whole);
    EXPECT_THAT(support::canonicalSet(whole.surface.triangles),
                testing::IsSubsetOf(support::emptyCircleTriangles(points)));
  }
}

TEST(WholeClouds, OfAKiteHaveItsTwoTrianglesThoughTheFrameLeavesNone) {
  const QuietApp app;
  const Whole whole = LinkedWhole(kKite);
  ExpectWhole(whole);
  EXPECT_EQ(whole.summary.completados, 2U);
}

TEST(WholeClouds, OfThreePointsAreOneTriangleHoweverThin) {
  const QuietApp app;
  for (const int height : {1, 2, 10, 1'000, 1'000'000}) {
    SCOPED_TRACE(height);
    ExpectWhole(LinkedWhole({{0, 0, 0}, {1'000'000, height, 0}, {2'000'000, 0, 0}}));
    ExpectWhole(LinkedWhole({{0, 0, 0}, {1'000'000, -height, 0}, {2'000'001, 3, 0}}));
  }
}

TEST(WholeClouds, OnOneLineHaveNoTriangle) {
  const QuietApp app;
  for (auto const& [dx, dy] : {std::pair{1, 0}, {0, 1}, {1, 1}, {-3, 7}}) {
    std::vector<Point> points;
    for (int i = 0; i < 700; ++i) points.push_back({i * dx, i * dy, 0});
    const Whole whole = LinkedWhole(points);
    EXPECT_THAT(whole.surface.triangles, IsEmpty());
    ExpectWhole(whole);
  }
}

TEST(WholeClouds, OnOneLineButForOnePointFanOut) {
  const QuietApp app;
  std::vector<Point> points{{350, 1, 0}};
  for (int i = 0; i < 700; ++i) points.push_back({i, 0, 0});
  const Whole whole = LinkedWhole(points);
  EXPECT_THAT(whole.surface.triangles, SizeIs(699));
  ExpectWhole(whole);
}

// --- borders

TEST(WholeClouds, OfAGridKeepEveryBorderPointAndHaveNoFlatTriangle) {
  const QuietApp app;
  std::vector<Point> grid;
  for (int x = 0; x < 30; ++x) {
    for (int y = 0; y < 20; ++y) grid.push_back({1'000 * x, 1'000 * y, 0});
  }
  const Whole whole = LinkedWhole(grid);
  EXPECT_THAT(whole.rim, SizeIs(2 * (29 + 19)));
  EXPECT_THAT(whole.surface.triangles, SizeIs(2 * 29 * 19));
  ExpectWhole(whole);
}

TEST(WholeClouds, OfAFewUnitsKeepThePointsThatAFrameOfATenthStandsOn) {
  const QuietApp app;
  std::vector<Point> grid;
  for (int x = 0; x < 5; ++x) {
    for (int y = 0; y < 5; ++y) grid.push_back({x, y, 0});
  }
  EXPECT_EQ(test::LinkCloud(grid).summary.duplicados, 4U) << "by contract a run with its frame loses them";
  ExpectWhole(LinkedWhole(grid));
  for (int width = 1; width < 9; ++width) {
    for (int height = 0; height < 9; ++height) {
      SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height));
      std::vector<Point> tiny;
      for (int i = 0; i < (width + 1) * (height + 1); ++i) {
        tiny.push_back({-3 + i % (width + 1), 7 + i / (width + 1), 0});
      }
      if (tiny.size() >= 3) ExpectWhole(LinkedWhole(tiny));
    }
  }
}

TEST(WholeClouds, OnAShallowArchHaveAllOfTheirTrianglesThoughTheFrameLeavesNone) {
  const QuietApp app;
  const Whole whole = LinkedWhole(Arch(500));
  ExpectWhole(whole);
  EXPECT_EQ(whole.summary.completados, 500 - 2);
}

TEST(WholeClouds, OnACircleThatReachesNoCornerLackNothing) {
  const QuietApp app;
  const Whole whole = LinkedWhole(support::family(Family::Circle, 900, 1));
  ExpectWhole(whole);
  EXPECT_EQ(whole.summary.completados, 0U);
}

TEST(WholeClouds, UpToTheLastUnitButOneOf32BitsFillTheirHull) {
  const QuietApp app;
  constexpr std::int32_t low = -2147483647, high = 2147483646;
  std::vector<Point> points = support::family(Family::HugeSpread, 300, 1);
  for (Point const& p :
       {Point{low, low, 0}, {low, high, 0}, {high, high, 0}, {high, low, 0}, {low, 0, 0}, {low, 9, 0}}) {
    points.push_back(p);
  }
  ExpectWhole(LinkedWhole(points));
}

// No frame has room around them: points on its corners count as duplicates, as in any run, and those on its sides may
// be left aside. What there is is a sound surface all the same.
TEST(WholeClouds, ThatReachTheEndsOf32BitsAreSoundThoughNotWhole) {
  const QuietApp app;
  constexpr std::int32_t low = std::numeric_limits<std::int32_t>::min(),
                         high = std::numeric_limits<std::int32_t>::max();
  std::vector<Point> points = support::family(Family::HugeSpread, 300, 1);
  for (Point const& p : {Point{low, low, 0}, {high, high, 0}, {low, 0, 0}, {low, 9, 0}, {low, 700, 0}, {5, high, 0}}) {
    points.push_back(p);
  }
  const Whole whole = LinkedWhole(points);
  EXPECT_EQ(whole.summary.duplicados, 2U);
  const support::MeshReport report = support::inspect(whole.surface);
  EXPECT_EQ(report.inverted.count, 0U) << report.inverted.first;
  EXPECT_EQ(report.overusedSides.count, 0U) << report.overusedSides.first;
  EXPECT_EQ(report.sameWaySides.count, 0U) << report.sameWaySides.first;
  EXPECT_EQ(report.notDelaunay.count, 0U) << report.notDelaunay.first;
  EXPECT_GT(report.triangles, 500U);
}

// Where a corner of the frame and points lie on one circle, the mesh has some triangles of those points and some with
// the corner, as the order of the points has it. What is kept is kept, and the rest fits it.
TEST(WholeClouds, WithPointsOnOneCircleWithACornerOfTheFrameFillTheirHullInEveryOrder) {
  const QuietApp app;
  // The frame's corner is (-10, -10); the circle about (15, 15) through it has the square of its radius 1250.
  std::vector<Point> points{{10, 50, 0}, {20, 50, 0}, {32, 46, 0}, {40, 40, 0}, {46, 32, 0},
                            {50, 20, 0}, {50, 10, 0}, {0, 100, 0}, {100, 0, 0}, {100, 100, 0}};
  std::mt19937_64 random(1);
  std::size_t different = 0;
  std::vector<Triangle> first;
  for (int round = 0; round < 200; ++round) {
    SCOPED_TRACE(round);
    std::shuffle(points.begin(), points.end(), random);
    const Whole whole = LinkedWhole(points);
    ExpectWhole(whole);
    if (round == 0) first = ByPosition(whole);
    different += ByPosition(whole) != first;
  }
  EXPECT_GT(different, 0U) << "no order of the points has cut the circle in another way: the scene proves nothing";
}

// --- the same bytes

TEST(WholeClouds, DependOnTheirPointsAloneNotOnTheirOrder) {
  const QuietApp app;
  for (const Family family : {Family::Uniform, Family::Clusters, Family::Negative, Family::Spiral, Family::Slivers}) {
    SCOPED_TRACE(support::name(family));
    std::vector<Point> points = support::family(family, 972, 1);
    const std::vector<Triangle> expected = ByPosition(LinkedWhole(points));
    std::mt19937_64 random(7);
    for (int round = 0; round < 5; ++round) {
      std::shuffle(points.begin(), points.end(), random);
      EXPECT_EQ(ByPosition(LinkedWhole(points)), expected);
    }
  }
}

TEST(WholeClouds, DifferByTheirTiesAloneWhereGridsAreCutInAnotherOrder) {
  const QuietApp app;
  std::vector<Point> points = support::family(Family::RegularGrid, 900, 0);
  Whole whole = LinkedWhole(points);
  const std::vector<Triangle> expected = ByPosition(whole);
  std::mt19937_64 random(7);
  std::shuffle(points.begin(), points.end(), random);
  Mesh sorted{points, {}, ByPosition(LinkedWhole(points))};
  std::sort(sorted.points.begin(), sorted.points.end());
  EXPECT_EQ(support::compare(sorted, expected).first, "");
}

std::string Model(std::vector<Point> const& points, unsigned processors, double maxSide = 0) {
  const QuietApp app(processors);
  CDibujo<int> drawing = DrawingOf(points);
  CTIN tin(0, 0, CDataSemilla());
  OpenTriangulation t;
  t.SinMarco(true);
  EXPECT_EQ(t.Run(drawing, tin, maxSide, nullptr, false, nullptr, nullptr, nullptr), kHecho);
  return Described(tin);
}

TEST(WholeModels, AreTheSameForAnyNumberOfThreadsAndAnyOrderOfPoints) {
  std::vector<Point> points = Scatter(3'000);
  const std::string expected = Model(points, 1);
  for (const unsigned processors : {2U, 4U}) EXPECT_EQ(Model(points, processors), expected);
  std::reverse(points.begin(), points.end());
  EXPECT_EQ(Model(points, 2), expected);
}

// --- the runs

/// A run that keeps what it made.
struct Made {
  CTIN tin{0, 0, CDataSemilla()};
  OpenTriangulation t;

  explicit Made(bool whole = true) { t.SinMarco(whole); }
  int Of(CDibujo<int>& drawing, double maxSide = 0, std::vector<CDibujo<int>*>* others = nullptr,
         CRango const* heights = nullptr) {
    return t.Run(drawing, tin, maxSide, others, false, nullptr, heights, nullptr);
  }
  [[nodiscard]] Mesh Surface() const {
    Mesh mesh{{}, {}, TrianglesOf(tin)};
    for (CPuntoTIN const& p : tin.puntos) mesh.points.push_back({p.x, p.y, p.z});
    return mesh;
  }
  void ExpectWhole() const {
    const Mesh mesh = Surface();
    const support::MeshReport report = support::inspect(mesh);
    EXPECT_EQ(support::surfaceFaults(report), "");
    EXPECT_EQ(support::hullFillingFaults(mesh, report), "");
    EXPECT_EQ(report.notDelaunay.count, 0U) << report.notDelaunay.first;
    ASSERT_THAT(tin.Limite(), SizeIs(1));
    std::vector<std::int32_t> ring, hull = support::hullRing(mesh.points);
    for (const std::uint32_t i : tin.Limite()[0]) ring.push_back(static_cast<std::int32_t>(i) + 1);
    std::rotate(ring.begin(), std::find(ring.begin(), ring.end(), hull[0]), ring.end());
    if (ring[1] != hull[1]) std::reverse(ring.begin() + 1, ring.end());
    EXPECT_EQ(ring, hull);
  }
};

TEST(WholeModels, HaveTheirConvexHullForAnOutline) {
  const QuietApp app;
  for (const std::size_t n : {3U, 4U, 5U, 20U, 50U, 500U, 3'000U}) {
    SCOPED_TRACE(n);
    CDibujo<int> drawing = DrawingOf(Scatter(n));
    Made run;
    ASSERT_EQ(run.Of(drawing), kHecho);
    run.ExpectWhole();
    EXPECT_EQ(run.t.Resumen().delMarco, run.tin.Limite()[0].size());
  }
}

TEST(WholeModels, OfAGridHaveItsBorderForAnOutline) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(support::family(Family::RegularGrid, 400, 1));
  Made run;
  ASSERT_EQ(run.Of(drawing), kHecho);
  run.ExpectWhole();
}

TEST(WholeModels, WithoutTheOptionKeepTheRimThatTheFrameLeaves) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Scatter(50));
  Made whole, framed(false);
  ASSERT_EQ(whole.Of(drawing), kHecho);
  ASSERT_EQ(framed.Of(drawing), kHecho);
  EXPECT_LT(framed.tin.Cantidad(), whole.tin.Cantidad());
  EXPECT_EQ(framed.tin.Cantidad() + whole.t.Resumen().completados, whole.tin.Cantidad());
  EXPECT_EQ(framed.t.Resumen().completados, 0U);
  EXPECT_FALSE(framed.t.SinMarco());
  EXPECT_FALSE(CTriangulacion2D(0, CDataSemilla(), 1).SinMarco());
}

TEST(WholeModels, AreCompletedBeforeTheFiltersWhichTakeTheirPart) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Scatter(200));
  Made all, some;
  ASSERT_EQ(all.Of(drawing), kHecho);
  // Half of the longest side that there is.
  const double limit = all.tin.longitudMaxima / 2.0 / CDataSemilla().Precision();
  ASSERT_EQ(some.Of(drawing, limit), kHecho);
  EXPECT_GT(some.t.Resumen().porLongitud, 0U);
  EXPECT_EQ(some.tin.Cantidad() + some.t.Resumen().porLongitud, all.tin.Cantidad());
  EXPECT_LE(some.tin.longitudMaxima, all.tin.longitudMaxima);
}

TEST(WholeModels, OfDuplicatesTakeEachPlaceOnce) {
  const QuietApp app;
  std::vector<Point> points = Scatter(40);
  for (std::size_t i = 0; i < 40; ++i) points.push_back({points[i].x, points[i].y, 99});
  CDibujo<int> drawing = DrawingOf(points);
  Made run;
  ASSERT_EQ(run.Of(drawing), kHecho);
  EXPECT_EQ(run.tin.puntos.size(), 40U);
  EXPECT_EQ(run.t.Resumen().duplicados, 40U);
  run.ExpectWhole();
}

TEST(WholeModels, OfSeveralDrawingsFillTheHullOfAll) {
  const QuietApp app;
  std::vector<Point> points = Scatter(90);
  CDibujo<int> first = DrawingOf({points.begin(), points.begin() + 30});
  CDibujo<int> second = DrawingOf({points.begin() + 30, points.begin() + 60});
  CDibujo<int> third = DrawingOf({points.begin() + 60, points.end()});
  std::vector<CDibujo<int>*> others{&second, &third, nullptr};
  Made run;
  ASSERT_EQ(run.Of(first, 0, &others), kHecho);
  EXPECT_EQ(run.tin.puntos.size(), 90U);
  run.ExpectWhole();
}

TEST(WholeModels, OfAnUpdateLeaveOutWhatTheToleranceRefused) {
  const QuietApp app;
  std::vector<Point> base = Scatter(60);
  for (Point& p : base) p.z = 0;
  CDibujo<int> drawing = DrawingOf(base);
  // Added at the rim: one at the height of the surface, and some far above it, which are refused.
  std::vector<Point> added = support::family(Family::Uniform, 30, 99);
  for (std::size_t i = 0; i < added.size(); ++i) added[i].z = i % 2 == 0 ? 0 : 1'000'000;
  CDibujo<int> extra = DrawingOf(added);
  Made run;
  ASSERT_EQ(run.t.RunActualiza(drawing, run.tin, 0, extra, 10, nullptr, false, nullptr), kHecho);
  EXPECT_GT(run.t.Resumen().rechazados, 5U);
  EXPECT_EQ(run.tin.puntos.size(), 90 - run.t.Resumen().rechazados);
  run.ExpectWhole();
}

/// A model that is made anew: its root is finished too when the last point has not closed it.
TEST(WholeModels, MadeAnewFromTheirOwnPointsAreThoseOfADrawing) {
  const QuietApp app;
  for (const std::size_t n : {3U, 4U, 5U, 50U, 300U}) {
    SCOPED_TRACE(n);
    std::vector<Point> points = Scatter(n);
    for (Point& p : points) p = {p.x % 20'011, p.y % 19'997, p.z % 1'000};
    std::sort(points.begin(), points.end());
    CDibujo<int> drawing = DrawingOf(points);
    Made fromDrawing, anew;
    ASSERT_EQ(fromDrawing.Of(drawing), kHecho);
    anew.tin = ModelOf(points);
    anew.tin.longitudMaxima = 46'000;
    ASSERT_EQ(anew.t.Run(anew.tin, nullptr), kHecho);
    EXPECT_EQ(TrianglesOf(anew.tin), TrianglesOf(fromDrawing.tin));
    anew.ExpectWhole();
  }
}

TEST(WholeModels, AreMadeByOneObjectAgainAndAgainAndWithTheFrameInBetween) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Scatter(300)), other = DrawingOf(Arch(100));
  Made once;
  ASSERT_EQ(once.Of(drawing), kHecho);
  const std::string expected = Described(once.tin);
  ASSERT_EQ(once.Of(other), kHecho);
  once.t.SinMarco(false);
  ASSERT_EQ(once.Of(drawing), kHecho);
  EXPECT_NE(Described(once.tin), expected);
  once.t.SinMarco(true);
  ASSERT_EQ(once.Of(drawing), kHecho);
  EXPECT_EQ(Described(once.tin), expected);
}

TEST(WholeModels, CancelledAtAnyStepAnswerTwoAndLeaveNoFile) {
  CDibujo<int> drawing = DrawingOf(Scatter(27));
  Made run;
  for (int n = 1;; ++n) {
    ListeningApp app(2);
    app.cancelAt = n;
    const int code = run.Of(drawing);
    EXPECT_EQ(app.TemporaryFiles(), 0U) << "at step " << n;
    if (static_cast<int>(app.steps.size()) < n) {
      EXPECT_EQ(code, kHecho);
      return run.ExpectWhole();
    }
    EXPECT_EQ(code, kCancelado) << "at step " << n;
  }
}

// --- faults

TEST(WholeModels, AreNotMadeWhenTheDiskHasNoRoomForWhatCompletesThem) {
  const std::vector<Point> points = Arch(600);  // the file holds nothing else
  std::size_t bytes = 0;
  {
    const QuietApp app;
    bytes = LinkedWhole(points).bytes.size();
  }
  for (const std::size_t room : {std::size_t{0}, bytes / 2, bytes - 1}) {
    const QuietApp app;
    FaultGuard guard;
    guard.LimitDisk(room);
    CDibujo<int> drawing = DrawingOf(points);
    Made run;
    EXPECT_EQ(run.Of(drawing), kFicheroInaccesible) << room;
    EXPECT_EQ(app.TemporaryFiles(), 0U);
  }
}

// --- contours

TEST(WholeContours, AreThoseOfTheWholeSurface) {
  const QuietApp app;
  for (const std::size_t n : {3U, 4U, 5U, 20U, 300U}) {
    SCOPED_TRACE(n);
    std::vector<CCoor3D<int>> points;
    for (Point const& p : Scatter(n)) points.emplace_back(p.x, p.y, (p.x / 7 + p.y / 3) % 5'000, 0);
    support::ContourRule rule;
    rule.interval = 250;
    const test::Contoured contoured = test::ContourCloud(points, rule, true);
    ASSERT_EQ(contoured.code, kHecho);
    EXPECT_EQ(test::FaultsOf(contoured), "");
  }
}

TEST(WholeContours, OfATiltedPlaneRunFromHullToHull) {
  const QuietApp app;
  // 100 m square at 45 degrees to the axes, tilted: one contour at each metre, across all of it.
  std::vector<Point> points{
      {0, 50'000, 0}, {50'000, 0, 0}, {100'000, 50'000, 0}, {50'000, 100'000, 0}, {50'000, 50'000, 0}};
  for (Point& p : points) p.z = p.x / 10;
  CDibujo<int> drawing = DrawingOf(points), curves{CDataSemilla(3, 0, 0, 0)};
  drawing.semilla = CDataSemilla(3, 0, 0, 0);
  OpenTriangulation t({}, drawing.semilla);
  t.SinMarco(true);
  ASSERT_EQ(t.Curvado(drawing, curves, 1'000, 1, nullptr), kHecho);
  std::vector<int> levels;
  for (unsigned i = 0; i < curves.Cantidad(); ++i) {
    CLinea<int> const& line = curves[i];
    const int z = line.Punto(0).z, x = 10 * z;
    levels.push_back(z);
    const int half = std::min(x, 100'000 - x);
    std::vector<int> ends{line.Punto(0).y, line.Punto(line.NPuntos() - 1).y};
    EXPECT_THAT(ends, UnorderedElementsAre(50'000 - half, 50'000 + half)) << "at " << z;
  }
  EXPECT_THAT(levels, ElementsAre(1'000, 2'000, 3'000, 4'000, 5'000, 6'000, 7'000, 8'000, 9'000));
}

// --- outlines

std::vector<Point> OutlineOf(std::vector<Point> const& points, bool whole, double distance = -1) {
  const CDataSemilla metres(0, 0, 0, 0);
  CDibujo<int> drawing = DrawingOf(points), outlines(metres);
  CTriangulacion triangulation(metres, CDataTriangulacion());
  triangulation.SinMarco(whole);
  CDataSacaLimites how;
  how.distancia = distance;
  how.superficieMinima = -1;
  EXPECT_EQ(triangulation.LimiteDibujo(drawing, outlines, &how, 1, 0), kHecho);
  std::vector<Point> ring;
  for (unsigned i = 0; i < outlines.Cantidad(); ++i) {
    for (CCoor3D<int> const& p : outlines[i].Puntos()) ring.push_back({p.x, p.y, 0});
  }
  return ring;
}

TEST(WholeOutlines, WithoutALimitAreTheConvexHull) {
  const QuietApp app;
  for (const std::size_t n : {3U, 5U, 50U, 1'000U}) {
    SCOPED_TRACE(n);
    std::vector<Point> points = Scatter(n), hull;
    for (const std::int32_t i : support::hullRing(points)) hull.push_back(points[static_cast<std::size_t>(i) - 1]);
    for (Point& p : hull) p.z = 0;
    std::vector<Point> ring = OutlineOf(points, true);
    ASSERT_GE(ring.size(), 4U);
    EXPECT_EQ(ring.front(), ring.back());
    ring.pop_back();
    std::rotate(ring.begin(), std::find(ring.begin(), ring.end(), hull[0]), ring.end());
    EXPECT_EQ(ring, hull);
  }
}

TEST(WholeOutlines, OfAKiteAreThereWhereTheFrameLeavesNone) {
  const QuietApp app;
  EXPECT_THAT(OutlineOf(kKite, false), IsEmpty());
  EXPECT_THAT(OutlineOf(kKite, true), SizeIs(5));
  EXPECT_THAT(OutlineOf(kKite, true, 7'100), SizeIs(5));
  EXPECT_THAT(OutlineOf(kKite, true, 3'000), IsEmpty());
}

}  // namespace
}  // namespace Meseta47
