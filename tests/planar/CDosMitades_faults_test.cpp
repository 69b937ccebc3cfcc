// Two threads that insert, and a system that refuses something: the code that one thread answers, no file left, nobody
// waiting for good, and a drawing that may be run again.
#include <array>
#include <atomic>
#include <thread>

#include "planar/HalvesScenes.h"
#include "support/FaultGuard.h"
#include "support/PlanarFeeds.h"
#include "support/PlanarSizes.h"

namespace Meseta47 {
namespace {

using support::Point;
using test::DrawingOf;
using test::kPatience;
using test::Left;
using test::Observed;
using test::OpenTriangulation;
using test::QuietApp;

constexpr std::size_t kSize = test::kFullSize ? 30'000 : 3'000;

std::vector<Point> Scattered(std::size_t size) {
  return test::InTurns(test::Feed{support::Family::Uniform, test::Order::Hilbert, size}.Points(), 64);
}

/// A guard that knows which thread met its refusals.
class WatchfulGuard : public FaultGuard {
 public:
  bool Permite(EOperacion operation, CString const& path) override {
    const bool allowed = FaultGuard::Permite(operation, path);
    if (!allowed) (std::this_thread::get_id() == caller_ ? byCaller : byOther) = true;
    return allowed;
  }
  std::atomic<bool> byCaller{false}, byOther{false};

 private:
  std::thread::id caller_ = std::this_thread::get_id();
};

/// A cloud with its drawing and mesh, linked again and again.
struct Scene {
  explicit Scene(std::vector<Point> const& points) : drawing(DrawingOf(points)) { t.DosDesde(0); }
  int Link(unsigned threads) {
    AfxGetApp()->PonProcesadores(threads);
    return t.Link(drawing);
  }
  CDibujo<int> drawing;
  OpenTriangulation t;
};

/// How a disk refuses a write.
struct Refusal {
  char const* name;
  void (*refuse)(FaultGuard& guard, int nth);
};
constexpr std::array kRefusals = {
    Refusal{"for good", [](FaultGuard& guard, int nth) { guard.Refuse(EOperacion::Escribe, nth); }},
    Refusal{"once", [](FaultGuard& guard, int nth) { guard.RefuseOnce(EOperacion::Escribe, nth); }}};

TEST(DosMitadesSinDisco, AnswerForEachRefusedWriteWhatOneThreadAnswersWhicheverThreadMeetsIt) {
  const QuietApp app;
  Scene scene(Scattered(kSize));
  ASSERT_EQ(scene.Link(1), kHecho);
  const Left whole = test::LeftOf(scene.t, scene.drawing);
  bool byCaller = false, byOther = false;
  for (Refusal const& how : kRefusals) {
    int refused = 0;
    for (int nth = 1;; ++nth) {
      SCOPED_TRACE(std::string(how.name) + ", write " + std::to_string(nth));
      std::array<int, 2> codes{};
      bool fired = false;
      for (const unsigned threads : {1U, 2U}) {
        // One that has begun anew on one thread has written more, and been refused what is of no account.
        for (unsigned again = 0; again == 0 || (again < kPatience && scene.t.porDos.tarde); ++again) {
          const Observed delays(&test::Delay);
          test::thePace = static_cast<unsigned>(nth);  // either half is the one that comes later, and writes
          WatchfulGuard guard;
          how.refuse(guard, nth);
          codes[threads - 1] = scene.Link(threads);
          fired = guard.byCaller || guard.byOther;
          EXPECT_TRUE(codes[threads - 1] == kHecho || app.TemporaryFiles() == 0U);
          scene.t.BorraFicheroTemporal();
          byCaller |= threads == 2 && guard.byCaller;
          byOther |= guard.byOther;
        }
      }
      EXPECT_EQ(codes[0], codes[1]);
      EXPECT_EQ(codes[1], fired ? kFicheroInaccesible : kHecho);
      ASSERT_FALSE(HasFailure());
      if (!fired) break;
      ++refused;
      ASSERT_EQ(scene.Link(2), kHecho);
      ASSERT_TRUE(test::LeftOf(scene.t, scene.drawing) == whole);
    }
    EXPECT_GT(refused, test::kFullSize ? 8 : 0);
  }
  const bool otherWrites = test::kFullSize;  // a small file has few writes before the last, which is the caller's
  for (unsigned again = 0; again < kPatience && !(byCaller && (byOther || !otherWrites)); ++again) {
    const Observed delays(&test::Delay);
    test::thePace = again;
    WatchfulGuard guard;
    guard.Refuse(EOperacion::Escribe, otherWrites ? 1 + static_cast<int>(again % 8) : 1);
    EXPECT_EQ(scene.Link(2), kFicheroInaccesible);
    byCaller |= guard.byCaller;
    byOther |= guard.byOther;
  }
  EXPECT_TRUE(byCaller);
  EXPECT_TRUE(byOther || !otherWrites);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(DosMitadesSinDisco, TellOfADiskThatFillsWhereverThatIs) {
  const QuietApp app;
  Scene scene(Scattered(kSize));
  ASSERT_EQ(scene.Link(1), kHecho);
  const Left whole = test::LeftOf(scene.t, scene.drawing);
  for (const double part : {0.0, 0.001, 0.3, 0.7, 0.999}) {
    FaultGuard guard;
    guard.LimitDisk(static_cast<std::size_t>(part * static_cast<double>(whole.bytes.size())));
    EXPECT_EQ(scene.Link(2), kFicheroInaccesible) << part;
    EXPECT_EQ(app.TemporaryFiles(), 0U) << part;
  }
  ASSERT_EQ(scene.Link(2), kHecho);
  EXPECT_TRUE(test::LeftOf(scene.t, scene.drawing) == whole);
}

TEST(DosMitadesSinHilo, LeaveItToOneThreadWhereTheSystemGivesNoSecond) {
  const QuietApp app;
  Scene scene(Scattered(2'000));
  ASSERT_EQ(scene.Link(1), kHecho);
  const Left whole = test::LeftOf(scene.t, scene.drawing);
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaHilo);
  ASSERT_EQ(scene.Link(2), kHecho);
  EXPECT_FALSE(scene.t.porDos.hecho);
  EXPECT_EQ(guard.Asked(EOperacion::CreaHilo), 1);
  EXPECT_TRUE(test::LeftOf(scene.t, scene.drawing) == whole);
}

}  // namespace
}  // namespace Meseta47
