#include "classification/CHiloBuscaPuntosAltos.h"

#include <chrono>
#include <gmock/gmock.h>
#include <thread>

#include "SystemNames.h"
#include "classification/PassScene.h"
#include "platform/Manejadores.h"
#include "support/FaultGuard.h"
#include "support/PlanarSizes.h"
#include "support/Random.h"

namespace Meseta47 {
namespace {

using support::Point;
using support::Triangle;
using test::PassScene;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kHeight = 100;  // of PassScene

// --- pass 0: a vertex that rises above both others ---

/// One triangle with sides of 100, 100 and 141; the first vertex at the height given, the others at 0.
std::vector<Point> Corner(int z) { return {{0, 0, z}, {100, 0, 0}, {0, 100, 0}}; }

TEST(PointsFoundFirst, RiseAboveBothOthersByMoreThanTheHeight) {
  PassScene scene(Corner(kHeight + 1), {{1, 2, 3}});
  EXPECT_THAT(scene.Run(0), ElementsAre(1));
  EXPECT_EQ(scene.count, 1U);
  ASSERT_EQ(scene.high.size(), 1U);
  EXPECT_EQ(scene.high[0], CCoor3D<int>(0, 0, kHeight + 1, 0));
  EXPECT_EQ(scene.high[0].num, 1) << "copied before its sign turned";
}

TEST(PointsFoundFirst, AreNotThoseAtExactlyTheHeight) {
  PassScene scene(Corner(kHeight), {{1, 2, 3}});
  EXPECT_THAT(scene.Run(0), IsEmpty());
  EXPECT_EQ(scene.count, 0U);
}

TEST(PointsFoundFirst, AreNotThoseThatRiseAboveOneAlone) {
  for (const int second : {1, 200}) {  // 199 and 0 below the first vertex
    std::vector<Point> places = Corner(200);
    places[1].z = second;
    PassScene scene(places, {{1, 2, 3}});
    EXPECT_EQ(scene.Run(0).size(), second == 1 ? 1U : 0U);
  }
}

TEST(PointsFoundFirst, MayBeAnyVertex) {
  for (unsigned i = 0; i < 3; ++i) {
    std::vector<Point> places = Corner(0);
    places[i].z = 200;
    PassScene scene(places, {{1, 2, 3}});
    EXPECT_THAT(scene.Run(0), ElementsAre(static_cast<int>(i) + 1));
  }
}

TEST(PointsFoundFirst, AreSteeperThanARatioOfRiseToRun) {
  // 785 in 1000 is below pi/4, 786 above it; 1000 in 1000, which is 45 degrees, is not asked for.
  for (const int rise : {785, 786}) {
    for (const int other : {0, 1}) {  // the short side is steep in any case
      std::vector<Point> places{{0, 0, rise}, {1000, 0, 0}, {0, 1000, 0}};
      places[other == 0 ? 1 : 2] = other == 0 ? Point{500, 0, 0} : Point{0, 500, 0};
      PassScene scene(places, {{1, 2, 3}});
      EXPECT_EQ(scene.Run(0).size(), rise == 786 ? 1U : 0U) << rise << ", " << other;
    }
  }
}

TEST(PointsFoundFirst, AreMeasuredWithoutOverflow) {
  constexpr int kTop = 2'000'000'000;
  PassScene scene({{0, 0, kTop}, {100, 0, -kTop}, {0, 100, -kTop}}, {{1, 2, 3}});
  EXPECT_THAT(scene.Run(0), ElementsAre(1));
}

TEST(PointsFoundFirst, AreCountedOnceInAllTheirTriangles) {
  PassScene scene({{0, 0, 200}, {100, 0, 0}, {0, 100, 0}, {-100, 0, 0}, {0, -100, 0}},
                  {{1, 2, 3}, {1, 3, 4}, {1, 4, 5}, {1, 5, 2}});
  EXPECT_THAT(scene.Run(0), ElementsAre(1));
  EXPECT_EQ(scene.count, 1U);
  EXPECT_EQ(scene.high.size(), 1U);
}

TEST(PointsFoundFirst, ChangeNeitherTheMarkOfChangeNorTheTotal) {
  PassScene scene(Corner(200), {{1, 2, 3}});
  scene.Run(0);
  EXPECT_FALSE(scene.change);
  EXPECT_EQ(scene.total, 12U);
}

TEST(PointsFoundFirst, AreNotLookedForAtTheFrame) {
  PassScene scene(Corner(200), {{1, 2, -1}, {-3, 1, 3}, {1, -1, -4}});
  EXPECT_THAT(scene.Run(0), IsEmpty());
  EXPECT_EQ(scene.read, 36U) << "read and counted all the same";
}

TEST(PointsFoundFirst, AreNotLookedForWithoutThreePoints) {
  // Number 3 is of a point that was not registered.
  PassScene scene({{0, 0, 200}, {100, 0, 0}}, {{0, 2, 1}, {1, 0, 2}, {1, 2, 3}, {1, 2, 2'000'000'000}, {1, 2, 2}});
  EXPECT_THAT(scene.Run(0), IsEmpty());
  EXPECT_EQ(scene.read, 60U);
}

TEST(PointsFoundFirst, AreFoundByTheirNumbers) {
  PassScene scene(Corner(200), {{7, 5, 6}});
  for (std::size_t i = 0; i < 3; ++i) {
    scene.points[i].num = static_cast<int>(i) == 0 ? 7 : static_cast<int>(i) + 4;
    scene.mesh.Anade(&scene.points[i]);
  }
  EXPECT_THAT(scene.Run(0), ElementsAre(7));
}

TEST(PointsFoundFirst, HaveTheirNumbersBackOnceTheSearchIsOver) {
  std::vector<CCoor3D<int>> points{{0, 0, 0, 1}, {1, 0, 0, 2}};
  {
    CBusquedaPuntos mesh(2);
    for (CCoor3D<int>& p : points) mesh.Anade(&p);
    mesh.Punto(2)->num = -2;
    EXPECT_EQ(mesh.Punto(0), nullptr);
    EXPECT_EQ(mesh.Punto(-1), nullptr);
    EXPECT_EQ(mesh.Punto(3), nullptr);
  }
  EXPECT_EQ(points[0].num, 1);
  EXPECT_EQ(points[1].num, 2);
}

// --- passes 1 and 2: a vertex above what has been found ---

/// A row of three points one unit apart in a corner: 2 at the corner, 1 and 3 beside it, at the heights given.
std::vector<Point> SmallCorner(int z1, int z2, int z3) { return {{1, 0, z1}, {0, 0, z2}, {0, 1, z3}}; }

TEST(TheSpread, ReachesAPointAboveTwoNeighboursInPass1) {
  PassScene scene(SmallCorner(0, 1, 0), {{1, 2, 3}});
  scene.Mark(1);
  scene.Mark(3);
  EXPECT_THAT(scene.Run(1), ElementsAre(1, 2, 3));
  EXPECT_EQ(scene.count, 1U);
  EXPECT_EQ(scene.high.size(), 1U);
  EXPECT_TRUE(scene.change);
  EXPECT_EQ(scene.total, 24U) << "the file will be read once more";
}

TEST(TheSpread, ReachesAPointAboveOneNeighbourInPass2AndNotInPass1) {
  PassScene scene(SmallCorner(0, 1, 0), {{1, 2, 3}});
  scene.Mark(1);
  EXPECT_THAT(scene.Run(1), ElementsAre(1));
  EXPECT_FALSE(scene.change);
  EXPECT_EQ(scene.total, 12U);
  EXPECT_THAT(scene.Run(2), ElementsAre(1, 2));
  EXPECT_TRUE(scene.change);
}

TEST(TheSpread, OnlyClimbs) {
  for (const int z : {-1, 0}) {
    PassScene scene(SmallCorner(0, z, 0), {{1, 2, 3}});
    scene.Mark(1);
    scene.Mark(3);
    EXPECT_THAT(scene.Run(2), ElementsAre(1, 3)) << z;
  }
}

TEST(TheSpread, HoldsTheSquaredSideAgainstThePlainDistance) {
  // A side of 3 by 1 is 3.2 units long: its square is 10. With a distance of 9 it is too long.
  for (const int distance : {9, 10}) {
    PassScene scene({{3, 1, 0}, {0, 0, 1}, {-1, 3, 0}}, {{1, 2, 3}});
    scene.distance = distance;
    scene.Mark(1);
    scene.Mark(3);
    EXPECT_EQ(scene.Run(1).count(2), distance == 10 ? 1U : 0U);
  }
}

TEST(TheSpread, DoesNotTakeASideWithinTheDistanceForAShortOne) {
  PassScene scene({{5, 0, 0}, {0, 0, 1}, {0, 5, 0}}, {{1, 2, 3}});
  scene.distance = 10;  // five units, whose square is 25
  scene.Mark(1);
  scene.Mark(3);
  EXPECT_THAT(scene.Run(2), ElementsAre(1, 3));
}

TEST(TheSpread, MeasuresEachSideForItself) {
  // From vertex i the next one is near and the one before too far, or the other way about.
  for (const bool far : {false, true}) {
    for (unsigned i = 0; i < 3; ++i) {
      std::vector<Point> places(3);
      places[i] = {0, 0, 1};
      places[(i + 1) % 3] = {far ? 50 : 1, 0, 0};
      places[(i + 2) % 3] = {0, far ? 1 : 50, 0};
      PassScene scene(places, {{1, 2, 3}});
      const int top = static_cast<int>(i) + 1, next = static_cast<int>((i + 1) % 3) + 1,
                last = static_cast<int>((i + 2) % 3) + 1;
      scene.Mark(far ? next : last);
      EXPECT_EQ(scene.Run(2).count(top), 0U) << "the neighbour found is too far";
      scene.Mark(far ? last : next);
      EXPECT_EQ(scene.Run(1).count(top), 0U) << "one of the two is too far";
      EXPECT_EQ(scene.Run(2).count(top), 1U);
    }
  }
}

TEST(TheSpread, DoesNotSeeTheMarksOfItsOwnTriangle) {
  // 2 stands on 1, and 3 on 2 alone: it is not reached through this triangle before the next run.
  PassScene scene({{1, 0, 0}, {0, 0, 1}, {-1, 0, 3}}, {{1, 2, 3}});
  scene.distance = 1;
  scene.Mark(1);
  EXPECT_THAT(scene.Run(2), ElementsAre(1, 2));
  EXPECT_THAT(scene.Run(2), ElementsAre(1, 2, 3));
  EXPECT_THAT(scene.Run(2), ElementsAre(1, 2, 3));
  EXPECT_FALSE(scene.change) << "nothing was left to be found";
}

TEST(TheSpread, AddsTheLengthOfTheFileOnceARun) {
  PassScene scene({{1, 0, 0}, {0, 0, 1}, {0, 1, 0}, {0, -1, 1}}, {{1, 2, 3}, {1, 4, 2}, {1, 2, -1}});
  scene.Mark(1);
  scene.Run(2);
  EXPECT_EQ(scene.count, 2U);
  EXPECT_EQ(scene.total, 72U);
}

TEST(TheSpread, PassesOverTrianglesThatAreFoundWhole) {
  PassScene scene(SmallCorner(0, 1, 0), {{1, 2, 3}});
  for (const int number : {1, 2, 3}) scene.Mark(number);
  scene.Run(2);
  EXPECT_EQ(scene.count, 0U);
  EXPECT_THAT(scene.high, IsEmpty());
}

// --- threads, slices and faults ---

/// Triangles without number, one pole each, side by side.
struct Poles {
  explicit Poles(unsigned n) {
    for (unsigned i = 0; i < n; ++i) {
      const int x = static_cast<int>(i) * 1000;
      for (Point const& p : Corner(200)) places.push_back({x + p.x, p.y, p.z});
      const int first = static_cast<int>(3 * i) + 1;
      triangles.push_back({first, first + 1, first + 2});
    }
  }
  std::vector<Point> places;
  std::vector<Triangle> triangles;
};

TEST(CHiloBuscaPuntosAltos, ReadsEveryRecordOnceWhateverTheNumberOfThreads) {
  for (const unsigned n : {1U, 2U, 7U, 1023U, 1024U, 1025U, 5000U}) {
    const Poles poles(n);
    for (const unsigned threads : {1U, 2U, 3U, 7U}) {
      PassScene scene(poles.places, poles.triangles);
      EXPECT_EQ(scene.Run(0, threads).size(), n) << threads;
      EXPECT_EQ(scene.count, n);
      EXPECT_EQ(scene.read, 12 * n);
      EXPECT_EQ(scene.finished, static_cast<long>(threads));
    }
  }
}

TEST(CHiloBuscaPuntosAltos, KeepsItsThreadAndItsFileFromPassToPass) {
  PassScene scene(SmallCorner(0, 1, 0), {{1, 2, 3}});
  FaultGuard guard;
  scene.Mark(1);
  for (const unsigned pass : {1U, 1U, 2U, 2U}) {
    scene.Run(pass, 2);
    EXPECT_EQ(scene.read, 12U);
    EXPECT_EQ(scene.finished, 2);
  }
  EXPECT_THAT(scene.Found(), ElementsAre(1, 2));
  EXPECT_EQ(guard.Asked(EOperacion::CreaHilo), 2);
  EXPECT_EQ(guard.Asked(EOperacion::Abre), 2);
}

TEST(CHiloBuscaPuntosAltos, LeavesItsSliceWhenThePassIsCancelled) {
  const Poles poles(5000);
  PassScene scene(poles.places, poles.triangles);
  scene.Make(1);
  scene.Start(0, 1);
  scene.cancelled = true;
  SetEvent(scene.Go(0));
  scene.Thread(0).Stop();
  EXPECT_EQ(scene.read, 0U);
  EXPECT_THAT(scene.Found(), IsEmpty());
}

TEST(CHiloBuscaPuntosAltos, CanBeStoppedWhileItReads) {
  const Poles poles(20'000);
  for (int repetition = 0; repetition < 20; ++repetition) {
    PassScene scene(poles.places, poles.triangles);
    scene.Begin(0, 2);
    std::this_thread::sleep_for(std::chrono::microseconds(50 * repetition));
  }  // returns at all
}

TEST(CHiloBuscaPuntosAltos, TakesNoProcessorBetweenPasses) {
  PassScene scene(Corner(200), {{1, 2, 3}});
  scene.Run(0, 4);
  constexpr double kNearlyNothing = 0.05;
  double took = kNearlyNothing;
  // Time for which a virtual machine stands still may count as taken, though not each time, as that of a spin does.
  for (int again = 0; again < 10 && took >= kNearlyNothing; ++again) {
    const double before = ProcessorSeconds();
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    took = ProcessorSeconds() - before;
  }
  EXPECT_LT(took, kNearlyNothing);
}

TEST(CHiloBuscaPuntosAltos, TellsOfAFileThatIsNotThere) {
  PassScene scene(Corner(200), {{1, 2, 3}});
  scene.path = scene.folder.Path("nowhere");
  scene.Make(1);
  scene.Start(0, 1);
  EXPECT_EQ(scene.Thread(0).Codigo(), kFicheroInaccesible);
}

TEST(CHiloBuscaPuntosAltos, TellsOfASystemWithoutThreads) {
  PassScene scene(Corner(200), {{1, 2, 3}});
  scene.Make(1);
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaHilo);
  scene.Start(0, 1);
  EXPECT_EQ(scene.Thread(0).Codigo(), kFicheroInconsistente);
}

TEST(CHiloBuscaPuntosAltos, TellsOfADiskThatRefusesARecord) {
  const Poles poles(5000);
  PassScene scene(poles.places, poles.triangles);
  FaultGuard guard;
  guard.Refuse(EOperacion::Lee);
  scene.Run(0);
  EXPECT_EQ(scene.Thread(0).Codigo(), kFicheroInconsistente);
  EXPECT_EQ(scene.finished, 1) << "and still ends its pass";
}

TEST(CHiloBuscaPuntosAltos, EndsTheProcessWhenItCannotWait) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  const auto lose = [] {
    PassScene scene(Corner(200), {{1, 2, 3}});
    scene.Make(1);
    CloseHandle(scene.Go(0));
    scene.Start(0, 1);
    std::this_thread::sleep_for(std::chrono::minutes(5));  // ended by its thread, long before
  };
  EXPECT_EXIT(lose(), testing::ExitedWithCode(22), "");
}

TEST(CHiloBuscaPuntosAltos, ThreadsFindTheSamePointsOnceHoweverTheyMeet) {
  // A lawn of triangles in which every point is shared by six, so that threads meet at the borders of their slices.
  constexpr int kSide = test::kFullSize ? 200 : 40;
  support::Random random(4711);
  std::vector<Point> places;
  std::vector<Triangle> triangles;
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) places.push_back({x, y, random.between(0, 6)});
  }
  for (int y = 0; y + 1 < kSide; ++y) {
    for (int x = 0; x + 1 < kSide; ++x) {
      const int a = y * kSide + x + 1;
      triangles.push_back({a, a + kSide, a + kSide + 1});
      triangles.push_back({a, a + kSide + 1, a + 1});
    }
  }
  const auto search = [&](unsigned threads) {
    random.shuffle(triangles);
    PassScene scene(places, triangles);
    scene.height = 4;
    scene.distance = 2;
    scene.Run(0, threads);
    for (unsigned pass = 1; pass <= 2;) {
      scene.Run(pass, threads);
      if (!scene.change) ++pass;
    }
    std::set<std::pair<int, int>> copied;
    for (CCoor3D<int> const& p : scene.high) copied.emplace(p.x, p.y);
    EXPECT_EQ(copied.size(), scene.high.size()) << "a point was found twice";
    EXPECT_EQ(scene.Found().size(), scene.high.size());
    return scene.Found();
  };
  const std::set<int> alone = search(1);
  EXPECT_GT(alone.size(), places.size() / 20);
  EXPECT_LT(alone.size(), places.size());
  for (const unsigned threads : {1U, 2U, 3U, 4U, 8U, 4U, 4U}) EXPECT_EQ(search(threads), alone) << threads;
}

}  // namespace
}  // namespace Meseta47
