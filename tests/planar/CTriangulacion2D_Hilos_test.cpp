// What threads must not change: the bytes of a run, whatever their number and whenever it is cancelled.
#include <chrono>
#include <gmock/gmock.h>
#include <thread>

#include "planar/PhaseScenes.h"
#include "platform/IVigilante.h"
#include "support/PlanarFeeds.h"
#include "support/PlanarSizes.h"
#include "support/Random.h"
#include "support/Threads.h"

namespace Meseta47 {
namespace {

using support::Family;
using support::Point;
using test::Described;
using test::DrawingOf;
using test::Feed;
using test::ListeningApp;
using test::OpenTriangulation;
using test::Order;
using test::QuietApp;

constexpr std::size_t kMany = test::kFullSize ? 20'000 : 3'000;

std::string ModelFrom(std::vector<Point> const& points) {
  CDibujo<int> drawing = DrawingOf(points);
  CTIN model(0, 0, CDataSemilla());
  OpenTriangulation t;
  EXPECT_EQ(t.Run(drawing, model, 0, nullptr, false, nullptr, nullptr, nullptr), kHecho);
  return Described(model);
}

class Hilos : public testing::TestWithParam<Family> {};
INSTANTIATE_TEST_SUITE_P(Families, Hilos,
                         testing::Values(Family::Uniform, Family::RegularGrid, Family::Clusters, Family::Duplicates),
                         [](testing::TestParamInfo<Family> const& family) { return support::name(family.param); });

TEST_P(Hilos, OneTwoAndFourThreadsMakeTheSameModel) {
  const std::vector<Point> points = Feed{GetParam(), Order::Hilbert, kMany}.Points();
  std::string expected;
  for (const unsigned threads : {1U, 2U, 4U}) {
    const QuietApp app(threads);
    const std::string made = ModelFrom(points);
    if (threads == 1) expected = made;
    EXPECT_TRUE(made == expected) << threads << " threads";
    EXPECT_GT(made.size(), kMany);
  }
}

TEST_P(Hilos, TheWorkersPaceLeavesTheFileAsItIs) {
  const std::vector<Point> points = Feed{GetParam(), Order::Hilbert, kMany}.Points();
  std::string expected;
  for (int run = 0; run < 3; ++run) {
    ListeningApp app;
    int step = 0;
    app.onStep = [&] {
      if (run == 1 && ++step % 50 == 0) std::this_thread::yield();
      if (run == 2 && ++step % 1'000 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    };
    CDibujo<int> drawing = DrawingOf(points);
    OpenTriangulation t;
    ASSERT_EQ(t.Link(drawing), kHecho);
    const std::string bytes = t.SpilledBytes();
    if (run == 0) expected = bytes;
    EXPECT_TRUE(bytes == expected) << "run " << run;
    t.BorraFicheroTemporal();
  }
}

/// A disk on which every write takes a while.
class SlowDisk : public IVigilante {
 public:
  SlowDisk() : before_(PonVigilante(this)) {}
  SlowDisk(SlowDisk const&) = delete;
  SlowDisk& operator=(SlowDisk const&) = delete;
  ~SlowDisk() override { PonVigilante(before_); }

  bool Permite(EOperacion, CString const&) override { return true; }
  std::size_t Concede(EOperacion operation, CString const&, std::size_t bytes) override {
    if (operation == EOperacion::Escribe) std::this_thread::sleep_for(std::chrono::milliseconds(30));
    return bytes;
  }

 private:
  IVigilante* before_;
};

TEST(HilosLentos, ASlowDiskFillsNeitherMemoryNorChangesTheFile) {
  const QuietApp app;
  const std::vector<Point> points = Feed{Family::Uniform, Order::Hilbert, 30'000}.Points();
  const auto linked = [&points](OpenTriangulation& t) {
    CDibujo<int> drawing = DrawingOf(points);
    EXPECT_EQ(t.Link(drawing), kHecho);
    std::string bytes = t.SpilledBytes();
    t.BorraFicheroTemporal();
    return bytes;
  };
  OpenTriangulation fast, slow;
  const std::string expected = linked(fast);
  const SlowDisk disk;
  EXPECT_TRUE(linked(slow) == expected);
  EXPECT_GT(slow.Resumen().enlazados, 60'000U);
  EXPECT_LT(slow.Resumen().picoVivos, 45'000U);
}

TEST(HilosCancelados, InAnyPhaseLeaveNoFileAndARunThatIsRight) {
  const std::vector<Point> points = Feed{Family::Uniform, Order::Hilbert, kMany}.Points();
  CDibujo<int> drawing = DrawingOf(points);
  CTIN model(0, 0, CDataSemilla());
  OpenTriangulation t;
  support::Random random(20'260);
  int cancelled = 0;
  for (int i = 0; i < 12; ++i) {
    ListeningApp app(4);
    app.cancelAt = random.between(1, static_cast<int>(3 * kMany) + 40);
    const int code = t.Run(drawing, model, 0, nullptr, false, nullptr, nullptr, nullptr);
    EXPECT_EQ(code, static_cast<int>(app.steps.size()) >= app.cancelAt ? kCancelado : kHecho) << app.cancelAt;
    EXPECT_EQ(app.TemporaryFiles(), 0U) << app.cancelAt;
    EXPECT_FALSE(t.hiloSalva.EstaEnMarcha() && code == kCancelado && app.PhaseMessages().size() == 2);
    cancelled += code == kCancelado ? 1 : 0;
  }
  EXPECT_GT(cancelled, 6);
  const QuietApp app(4);
  ASSERT_EQ(t.Run(drawing, model, 0, nullptr, false, nullptr, nullptr, nullptr), kHecho);
  EXPECT_TRUE(Described(model) == ModelFrom(points));
}

TEST(HilosVarios, ObjectsRunSideBySideOnTheirOwnDrawings) {
  const QuietApp app(2);
  std::vector<std::string> made(3), expected;
  Threads threads;
  const auto points = [](std::size_t i) { return Feed{Family::Uniform, Order::Hilbert, kMany / 2 + 100 * i}.Points(); };
  for (std::size_t i = 0; i < 3; ++i) {
    threads.start([&, i] { made[i] = ModelFrom(points(i)); });
  }
  threads.join();
  for (std::size_t i = 0; i < 3; ++i) EXPECT_TRUE(made[i] == ModelFrom(points(i))) << i;
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(HilosVarios, AnObjectMayBeDestroyedWithItsFileOpenAndItsWorkerThere) {
  const QuietApp app;
  CString path;
  {
    CDibujo<int> drawing = DrawingOf(test::Scatter(500));
    OpenTriangulation t;
    ASSERT_EQ(t.Link(drawing), kHecho);
    path = t.ficheroTemporal.Ruta();
    ASSERT_TRUE(Exists(path));
  }
  EXPECT_FALSE(Exists(path)) << "it had no name";
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

/// Points enough for the queue to fill while the worker stands still.
constexpr std::size_t kFillsTheQueue = 20'000;

/// A linking pass whose worker has a thread, as its job is work: it cuts contours.
class Cutting : public OpenTriangulation {
 public:
  Cutting() {
    paramCurvaA = 20'000;
    paramCurvaB = 1'000'000;
  }
  int LinkFilled(CDibujo<int>& drawing) {
    return EnlazaLista(drawing, nullptr, nullptr, nullptr, 1, nullptr, nullptr, nullptr, nullptr, nullptr, 0, nullptr,
                       nullptr, nullptr, nullptr, nullptr);
  }
};

TEST(Suspended, ARunHeldUpByItsWorkerIsCancelledAndLeavesNothing) {
  ListeningApp app;
  Cutting t;
  CDibujo<int> drawing = DrawingOf(Feed{Family::Uniform, Order::Hilbert, kFillsTheQueue}.Points());
  ASSERT_EQ(t.Rellena(drawing, nullptr, nullptr, nullptr), kHecho);
  app.steps.clear();
  app.onStep = [&] {
    if (app.steps.size() == 1) t.hiloSalva.Suspender();
    const auto n = app.steps.size();
    const bool waits = n > 1 && app.steps[n - 1].value == app.steps[n - 2].value;
    if (waits && app.cancelAt == 0) app.cancelAt = static_cast<int>(n);  // at this step alone
  };
  EXPECT_EQ(t.LinkFilled(drawing), kCancelado);
  EXPECT_LT(app.steps.back().value, kFillsTheQueue) << "before the last point";
  EXPECT_FALSE(t.hiloSalva.EstaEnMarcha());
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(Suspended, ARunHeldUpByItsWorkerGoesOnWithIt) {
  const std::vector<Point> points = Feed{Family::Uniform, Order::Hilbert, kFillsTheQueue}.Points();
  std::size_t expected = 0;
  for (const bool suspended : {false, true}) {
    ListeningApp app;
    Cutting t;
    CDibujo<int> drawing = DrawingOf(points);
    ASSERT_EQ(t.Rellena(drawing, nullptr, nullptr, nullptr), kHecho);
    app.steps.clear();
    app.onStep = [&] {
      const auto n = app.steps.size();
      if (n == 1 && suspended) t.hiloSalva.Suspender();
      if (n > 1 && app.steps[n - 1].value == app.steps[n - 2].value) t.hiloSalva.Reanudar();
    };
    ASSERT_EQ(t.LinkFilled(drawing), kHecho);
    if (!suspended) expected = t.dibujoCurvas.Cantidad();
    EXPECT_EQ(t.dibujoCurvas.Cantidad(), expected);
    EXPECT_GT(expected, 1'000U);
  }
}

TEST(Suspended, AWorkerThatMerelyWritesHasNoThreadThatCouldBe) {
  const std::vector<Point> points = Feed{Family::Uniform, Order::Hilbert, kMany}.Points();
  ListeningApp app;
  CDibujo<int> drawing = DrawingOf(points);
  OpenTriangulation t;
  bool running = false;
  app.onStep = [&] {
    running = running || t.hiloSalva.EstaEnMarcha();
    t.hiloSalva.Suspender();
  };
  ASSERT_EQ(t.Link(drawing), kHecho);
  EXPECT_FALSE(running);
  EXPECT_EQ(t.setsCerrados.Hechos(), t.setsCerrados.Encolados()) << "each set is done as soon as it is queued";
  EXPECT_EQ(t.SpilledBytes().size(), 12 * t.Resumen().enlazados);
  t.BorraFicheroTemporal();
}

}  // namespace
}  // namespace Meseta47
