// The searches for noise while they are cancelled, or refused something by the system.
#include <gmock/gmock.h>
#include <system_error>

#include "classification/NoiseScene.h"
#include "support/FaultGuard.h"

namespace Meseta47 {
namespace {

using test::Aerial;
using test::ClassedPoint;
using test::ClassesOf;
using test::Cloud;
using test::Isolated;
using test::ListeningApp;
using test::Peaks;
using test::QuietApp;

/// A search of its own kind over the same cloud in scaled units.
struct Kind {
  std::string name;
  std::function<int(CDibujo<int>&)> run;
  std::function<unsigned(CDibujo<int>&, int&)> count;  ///< runs it as well: how many it says it has found

  friend void PrintTo(Kind const& kind, std::ostream* out) { *out << kind.name; }
};

template <class Search>
Kind Of(std::string name, Search const& search) {
  return {std::move(name), [search](CDibujo<int>& drawing) { return Search(search).Run(drawing); },
          [search](CDibujo<int>& drawing, int& code) {
            Search mine(search);
            code = mine.Run(drawing);
            return mine.changed;
          }};
}

std::vector<Kind> Kinds() {
  Isolated isolated;
  isolated.distance = 12'000;
  isolated.neighbours = 2;
  Aerial above, below;
  above.radius = below.radius = 40'000;
  above.factor = 1;
  below.factor = -1;
  Peaks peaks;
  peaks.height = 5'000;
  return {Of("Isolated", isolated), Of("Above", above), Of("Below", below), Of("Peaks", peaks)};
}

std::vector<ClassedPoint> Noisy(int n) {
  support::Random random(8);
  std::vector<ClassedPoint> points;
  for (int i = 0; i < n; ++i) {
    points.push_back({random.between(0, 100'000), random.between(0, 100'000),
                      random.between(0, 9) == 0 ? random.between(-90'000, 90'000) : random.between(0, 900)});
  }
  return points;
}

class NoiseSearch : public testing::TestWithParam<Kind> {
 protected:
  static constexpr int kPoints = 80;
  CDibujo<int> Fresh() const { return Cloud(Noisy(kPoints)); }
  std::vector<int> before = ClassesOf(Fresh());
  std::vector<int> after = [this] {
    const QuietApp app(2);
    CDibujo<int> drawing = Fresh();
    EXPECT_EQ(GetParam().run(drawing), kHecho);
    return ClassesOf(drawing);
  }();
};

TEST_P(NoiseSearch, CancelledAtAnyStepLeavesNoFileAndNoClassBeforeTheyAreWritten) {
  ASSERT_NE(before, after);
  int cancelled = 0, partly = 0;
  for (int step = 1;; ++step) {
    ListeningApp app(2);
    app.cancelAt = step;
    CDibujo<int> drawing = Fresh();
    int code = 0;
    const unsigned found = GetParam().count(drawing, code);
    EXPECT_EQ(app.TemporaryFiles(), 0U) << step;
    const std::vector<int> classes = ClassesOf(drawing);
    if (static_cast<int>(app.steps.size()) < step) {
      EXPECT_EQ(code, kHecho);
      EXPECT_EQ(classes, after);
      break;
    }
    ++cancelled;
    EXPECT_EQ(code, kCancelado) << step;
    EXPECT_THAT(app.closed, testing::IsEmpty());
    if (app.phases.back().second != 39102) {
      EXPECT_EQ(classes, before) << step;
      continue;
    }
    // Those written before the cancelled step stay.
    const auto reached = static_cast<std::size_t>(app.steps.back().value) - 1;
    for (std::size_t i = 0; i < classes.size(); ++i) EXPECT_EQ(classes[i], i < reached ? after[i] : before[i]);
    EXPECT_EQ(found, std::count(classes.begin(), classes.end(), 7));
    partly += classes != before && classes != after ? 1 : 0;
  }
  EXPECT_GT(cancelled, 2 * kPoints) << "filling and linking at the least";
  EXPECT_EQ(partly > 0, GetParam().name != "Peaks") << "peaks are written in one go";
}

class RefusedNoiseSearch : public testing::TestWithParam<std::tuple<Kind, EOperacion>> {};

TEST_P(RefusedNoiseSearch, FailsWithACodeAndLosesNothing) {
  auto const& [kind, operation] = GetParam();
  const std::vector<int> before = ClassesOf(Cloud(Noisy(80)));
  std::vector<int> after;
  {
    const QuietApp app(2);
    CDibujo<int> drawing = Cloud(Noisy(80));
    EXPECT_EQ(kind.run(drawing), kHecho);
    after = ClassesOf(drawing);
  }
  int failures = 0;
  for (int nth = 1;; ++nth) {
    const QuietApp app(2);
    CDibujo<int> drawing = Cloud(Noisy(80));
    FaultGuard guard;
    guard.Refuse(operation, nth);
    const int code = kind.run(drawing);
    const bool refused = guard.Asked(operation) >= nth;
    guard.Allow(operation);
    if (code == kHecho) {
      EXPECT_EQ(ClassesOf(drawing), after) << "a failure that went unseen, at " << nth;
    } else {
      ++failures;
      EXPECT_THAT(code, testing::AnyOf(kFicheroInaccesible, kFicheroInconsistente)) << nth;
      EXPECT_EQ(ClassesOf(drawing), before) << nth;
    }
    EXPECT_EQ(app.TemporaryFiles(), 0U) << nth;
    if (!refused) break;
  }
  const bool onDisk =
      operation == EOperacion::Lee || operation == EOperacion::Escribe || operation == EOperacion::Longitud;
  const bool harmless = kind.name == "Peaks" ? onDisk : operation == EOperacion::CreaHilo;
  EXPECT_EQ(failures > 0, !harmless) << "peaks neither read nor write, and they alone have a worker";
}

std::string OperationName(EOperacion operation) {
  switch (operation) {
    case EOperacion::Abre:
      return "Open";
    case EOperacion::Lee:
      return "Read";
    case EOperacion::Escribe:
      return "Write";
    case EOperacion::Longitud:
      return "Length";
    case EOperacion::CreaEvento:
      return "MakeEvent";
    default:
      return "MakeThread";
  }
}

TEST_P(NoiseSearch, TellsOfAFullDisk) {
  if (GetParam().name == "Peaks") return;  // writes nothing, as the test above shows
  const QuietApp app;
  CDibujo<int> drawing = Cloud(Noisy(3000));
  FaultGuard guard;
  guard.LimitDisk(40'000);
  EXPECT_EQ(GetParam().run(drawing), kFicheroInaccesible);
  EXPECT_EQ(ClassesOf(drawing), ClassesOf(Cloud(Noisy(3000))));
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Each, NoiseSearch, testing::ValuesIn(Kinds()),
                         [](auto const& kind) { return kind.param.name; });
INSTANTIATE_TEST_SUITE_P(
    Each, RefusedNoiseSearch,
    testing::Combine(testing::ValuesIn(Kinds()),
                     testing::Values(EOperacion::Abre, EOperacion::Lee, EOperacion::Escribe, EOperacion::Longitud,
                                     EOperacion::CreaEvento, EOperacion::CreaHilo)),
    [](auto const& both) { return std::get<0>(both.param).name + OperationName(std::get<1>(both.param)); });

}  // namespace
}  // namespace Meseta47
