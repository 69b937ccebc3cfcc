// Two threads that insert leave what one leaves: bytes, numbers and counts, whenever either of them gets the processor.
#include <atomic>
#include <chrono>
#include <new>
#include <string_view>
#include <thread>

#include "planar/HalvesScenes.h"
#include "run/CTurnos.h"
#include "support/PlanarFeeds.h"
#include "support/PlanarSizes.h"

namespace Meseta47 {
namespace {

using support::Family;
using support::Point;
using test::DrawingOf;
using test::Feed;
using test::InTurns;
using test::kPatience;
using test::LinkedBy;
using test::ListeningApp;
using test::Observed;
using test::OpenTriangulation;
using test::Order;
using test::Outcome;
using test::QuietApp;

constexpr std::size_t kMany = test::kFullSize ? 20'000 : 3'000;

/// Clouds whose halves are taken in turns, with delays.
constexpr Family kTurned[] = {Family::Uniform,    Family::RegularGrid, Family::Clusters,
                              Family::Duplicates, Family::ScanLines,   Family::TwoFarClusters};

void ExpectTheSame(Outcome const& one, Outcome const& other, std::string const& what) {
  EXPECT_TRUE(one.left.bytes == other.left.bytes) << what << ": bytes";
  EXPECT_TRUE(one.left.numbers == other.left.numbers) << what << ": numbers";
  EXPECT_EQ(one.left.counts, other.left.counts) << what;
}

class DosMitades : public testing::TestWithParam<Family> {};
INSTANTIATE_TEST_SUITE_P(Families, DosMitades, testing::ValuesIn(support::kAllFamilies),
                         [](testing::TestParamInfo<Family> const& family) { return support::name(family.param); });

TEST_P(DosMitades, LeaveWhatOneThreadLeavesInEveryOrder) {
  const std::size_t size = std::min(kMany, test::LargestSize(GetParam()) / 20);
  for (const Order order : {Order::File, Order::Shuffled, Order::Hilbert}) {
    const std::vector<Point> points = Feed{GetParam(), order, size}.Points();
    const Outcome one = LinkedBy(1, points);
    EXPECT_FALSE(one.byTwo);
    for (const unsigned threads : {2U, 4U}) {
      ExpectTheSame(one, LinkedBy(threads, points),
                    std::to_string(threads) + " threads, order " + std::to_string(static_cast<int>(order)));
    }
  }
}

TEST_P(DosMitades, LeaveWhatOneThreadLeavesOfHalvesInTurnsWithAFrameAndWithout) {
  const std::size_t size = std::min(kMany, test::LargestSize(GetParam()) / 20);
  const std::vector<Point> curve = Feed{GetParam(), Order::Hilbert, size}.Points();
  for (const std::size_t stretch : {1U, 16U, 64U, 256U}) {
    for (const bool withoutFrame : {false, true}) {
      // A side of the whole extent leaves a frame without its corners no room.
      if (withoutFrame && !support::hasOrdinarySpread(GetParam())) continue;
      const std::vector<Point> points = InTurns(curve, stretch);
      ExpectTheSame(LinkedBy(1, points, withoutFrame), LinkedBy(2, points, withoutFrame), std::to_string(stretch));
    }
  }
}

TEST(DosMitadesUso, TakeMostPointsWithoutATurn) {
  const std::vector<Point> points = InTurns(Feed{Family::Uniform, Order::Hilbert, 20'000}.Points(), 64);
  Outcome two = LinkedBy(2, points);
  for (unsigned again = 0; again < kPatience && two.late; ++again) two = LinkedBy(2, points);
  EXPECT_FALSE(two.late);
  EXPECT_TRUE(two.byTwo);
  EXPECT_GT(two.inTurn, 0U);
  EXPECT_LT(two.inTurn, points.size() / 8) << "fewer of larger clouds: 1.3 % of a million";
}

TEST(DosMitadesDemoradas, LeaveTheSameWhoeverIsHeldUpAtACrossing) {
  const unsigned schedules = test::kFullSize ? 1'200 : 60;
  std::uint64_t late = 0, byTwo = 0;
  const auto tryAll = [&](unsigned first) {
    for (const Family family : kTurned) {
      for (const std::size_t size : {250U, 900U}) {
        const std::vector<Point> points = InTurns(Feed{family, Order::Hilbert, size}.Points(), size / 30);
        const Outcome one = LinkedBy(1, points);
        const Observed delays(&test::Delay);
        for (unsigned i = first; i < first + schedules / 12; ++i) {
          test::theDelays = i * 7'919;
          test::thePace = i;
          const Outcome two = LinkedBy(2, points);
          ExpectTheSame(one, two,
                        support::name(family) + std::string(", ") + std::to_string(size) + " points, schedule " +
                            std::to_string(i));
          ASSERT_FALSE(HasFailure());
          late += two.late ? 1 : 0;
          byTwo += two.byTwo ? 1 : 0;
        }
      }
    }
  };
  // How many of either kind there are is up to whoever shares out the processors.
  for (unsigned again = 0; again < kPatience && (late == 0 || byTwo == 0); ++again) {
    tryAll(again * schedules);
    ASSERT_FALSE(HasFatalFailure());
  }
  EXPECT_GT(byTwo, 0U) << "there are clouds made by two";
  EXPECT_GT(late, 0U) << "and such as must begin anew";
}

/// Holds one half up at one of its crossings for so long that the other cannot go on.
std::atomic<int> theStopped{-1}, theSteps{0}, theStopAt{0};
CTurnos::CJuicio Stop(unsigned half, char const*) {
  if (static_cast<int>(half) != theStopped || theSteps.fetch_add(1) != theStopAt) return CTurnos::VAN_BIEN;
  std::this_thread::sleep_for(std::chrono::milliseconds(5));  // of a run that takes one
  return CTurnos::VAN_BIEN;
}

TEST(DosMitadesDemoradas, LeaveTheSameWhereverOneStandsStillForLong) {
  const std::vector<Point> points = InTurns(Feed{Family::Uniform, Order::Hilbert, 400}.Points(), 8);
  const Outcome one = LinkedBy(1, points);
  const Observed stop(&Stop);
  for (const int half : {0, 1}) {
    for (int at = 0; at < 240; at += test::kFullSize ? 2 : 16) {
      theStopped = half;
      theSteps = 0;
      theStopAt = at;
      ASSERT_TRUE(one.left == LinkedBy(2, points).left) << "half " << half << " at crossing " << at;
    }
  }
}

/// Delays, and every third or so of the waits was too long: the halves meet, one thread goes on for a little, and both
/// begin again.
CTurnos::CJuicio Meet(unsigned half, char const* step) {
  test::Delay(half, step);
  const bool tooLong = std::string_view(step) == "weighs its waits" && test::theDelays % 3 == 0;
  return tooLong ? CTurnos::ESPERAN_DEMASIADO : CTurnos::VAN_BIEN;
}

TEST(DosMitadesReunidas, LeaveTheSameWhereverTheyMeetAndHoweverOftenOneGoesOnAlone) {
  const unsigned schedules = test::kFullSize ? 540 : 36;
  std::uint64_t alone = 0, byTwo = 0;
  const auto tryAll = [&](unsigned first) {
    for (const Family family : kTurned) {
      for (const std::size_t size : {250U, 900U, 2'500U}) {
        const std::vector<Point> points = InTurns(Feed{family, Order::Hilbert, size}.Points(), size / 30);
        const Outcome one = LinkedBy(1, points);
        for (unsigned i = first; i < first + schedules / 18; ++i) {
          const Observed meetings(&Meet, 1 << (i % 7));
          test::theDelays = i * 7'919;
          test::thePace = i;
          const Outcome two = LinkedBy(2, points);
          ASSERT_TRUE(one.left == two.left) << support::name(family) << ", " << size << " points, schedule " << i;
          alone += two.byTwo ? two.alone : 0;
          byTwo += two.byTwo ? points.size() - two.alone : 0;
        }
      }
    }
  };
  // How many of either kind there are is up to whoever shares out the processors.
  for (unsigned again = 0; again < kPatience && (alone == 0 || byTwo == 0); ++again) {
    tryAll(again * schedules);
    ASSERT_FALSE(HasFatalFailure());
  }
  EXPECT_GT(alone, 0U) << "there are points that one linked while the other stood";
  EXPECT_GT(byTwo, 0U) << "and points that were linked by two at once";
}

/// One half comes late to everything for a while, as a thread does whose processor another program has.
CTurnos::CJuicio Lag(unsigned half, char const*) {
  if (half == 1 && theSteps.fetch_add(1) % 16 == 0) test::Dawdle(std::chrono::microseconds(100));
  return CTurnos::POR_EL_RELOJ;
}

TEST(DosMitadesReunidas, LeaveItToOneThreadWhileTheOtherIsLongInComing) {
  const std::vector<Point> points = InTurns(Feed{Family::Uniform, Order::Hilbert, 20'000}.Points(), 64);
  const Outcome one = LinkedBy(1, points);
  theSteps = 0;
  const Observed lag(&Lag);
  std::uint64_t alone = 0;
  for (unsigned again = 0; again < kPatience && alone <= points.size() / 2; ++again) {
    const Outcome two = LinkedBy(2, points);
    ASSERT_TRUE(one.left == two.left);
    alone = two.byTwo ? two.alone : 0;
  }
  EXPECT_GT(alone, points.size() / 2);
}

TEST(DosMitadesCanceladas, LeaveNoFileAndADrawingThatMayBeRunAgain) {
  const std::vector<Point> points = InTurns(Feed{Family::Uniform, Order::Hilbert, kMany}.Points(), 64);
  const Outcome one = LinkedBy(1, points);
  CDibujo<int> drawing = DrawingOf(points);
  OpenTriangulation t;
  t.DosDesde(0);
  int cancelled = 0;
  for (const double at : {0.05, 0.3, 0.51, 0.6, 0.75, 0.9}) {
    ListeningApp app(2);
    app.cancelAt = static_cast<int>(at * 2 * static_cast<double>(kMany));
    const int code = t.Link(drawing);
    EXPECT_TRUE(code == kCancelado || code == kHecho);
    cancelled += code == kCancelado ? 1 : 0;
    if (code == kCancelado) {
      EXPECT_EQ(app.TemporaryFiles(), 0U) << at;
    }
    t.BorraFicheroTemporal();
  }
  EXPECT_GT(cancelled, 3);
  const QuietApp app(2);
  ASSERT_EQ(t.Link(drawing), kHecho);
  EXPECT_TRUE(t.SpilledBytes() == one.left.bytes);
  t.BorraFicheroTemporal();
}

/// What a witness throws comes from the midst of a half's work; not from where a turn is given back, which cannot fail.
std::atomic<int> theThrower{-1}, theCountdown{0};
CTurnos::CJuicio Throw(unsigned half, char const* step) {
  if (std::string_view(step) == "gives its turn back") return CTurnos::VAN_BIEN;
  if (static_cast<int>(half) == theThrower && theCountdown.fetch_sub(1) == 1) throw std::bad_alloc();
  return CTurnos::VAN_BIEN;
}

TEST(DosMitadesRotas, ThrowOnWhatEitherHalfThrowsAndLeaveADrawingThatMayBeRunAgain) {
  const std::vector<Point> points = InTurns(Feed{Family::Uniform, Order::Hilbert, 2'000}.Points(), 16);
  const Outcome one = LinkedBy(1, points);
  const QuietApp app(2);
  CDibujo<int> drawing = DrawingOf(points);
  OpenTriangulation t;
  t.DosDesde(0);
  for (const int half : {0, 1}) {
    for (const int countdown : {1, 2, 7, 60, 300, 900}) {
      SCOPED_TRACE("half " + std::to_string(half) + ", " + std::to_string(countdown));
      const Observed thrower(&Throw);
      bool thrown = false;
      for (unsigned again = 0; again < kPatience && !thrown; ++again) {
        theThrower = half;
        theCountdown = countdown;
        try {
          ASSERT_EQ(t.Link(drawing), kHecho);
          ASSERT_TRUE(t.porDos.tarde) << "neither thrown nor begun anew";
        } catch (std::bad_alloc const&) {
          thrown = true;
        }
        t.BorraFicheroTemporal();
      }
      EXPECT_TRUE(thrown);
    }
  }
  ASSERT_EQ(t.Link(drawing), kHecho);
  EXPECT_TRUE(t.SpilledBytes() == one.left.bytes);
  t.BorraFicheroTemporal();
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(DosMitadesAparte, LeaveWhatTheyDoNotSuitToOneThread) {
  const std::vector<Point> points = Feed{Family::Uniform, Order::Hilbert, 2'000}.Points();
  // Begun by two, whether or not one has had to do it anew.
  const auto byTwo = [&points](auto const& prepare, unsigned mode) {
    const QuietApp app(2);
    CDibujo<int> drawing = DrawingOf(points);
    OpenTriangulation t;
    t.DosDesde(0);
    prepare(t);
    EXPECT_EQ(t.Link(drawing, nullptr, nullptr, 0, mode), kHecho);
    t.BorraFicheroTemporal();
    return t.porDos.hecho || t.porDos.tarde;
  };
  const auto nothing = [](OpenTriangulation&) {};
  EXPECT_TRUE(byTwo(nothing, CHiloSalvaTriangulosEnlazados::SALVA));
  EXPECT_TRUE(byTwo(nothing, CHiloSalvaTriangulosEnlazados::SALVA_TAMBIEN));
  EXPECT_FALSE(byTwo([](OpenTriangulation& t) { t.DosDesde(2'001); }, CHiloSalvaTriangulosEnlazados::SALVA));
}

}  // namespace
}  // namespace Meseta47
