// The searches by colour, by intensity and by jumps of intensity while they are watched, cancelled, or refused
// something by the system.
#include <functional>
#include <gmock/gmock.h>

#include "classification/SearchScene.h"
#include "classification/SeenScene.h"
#include "support/FaultGuard.h"

namespace Meseta47 {
namespace {

using test::ClassesOf;
using test::ListeningApp;
using test::QuietApp;
using test::Seen;
using testing::ElementsAre;

/// A search of the garden, and what it leaves behind.
struct Kind {
  char const* name;
  std::function<int(CDibujo<int>&)> run;
  bool classifies = true;

  friend void PrintTo(Kind const& kind, std::ostream* out) { *out << kind.name; }
};

template <class Search>
Search InGarden() {
  Search search;
  search.distance = 15;
  return search;
}

int ByColour(CDibujo<int>& drawing) {
  auto search = InGarden<test::ColourSearch>();
  search.when = {{60, 100, 128, 5, 2, 130}, {150, 100, 128, 6, 2, 130}};
  return search.Run(drawing);
}
int ByIntensity(CDibujo<int>& drawing) {
  auto search = InGarden<test::IntensitySearch>();
  search.when = {{0, 8'000, 5, 2}, {8'001, 65'535, 6, 2}};
  return search.Run(drawing);
}
int ByJumps(CDibujo<int>& drawing) {
  auto search = InGarden<test::JumpSearch>();
  search.difference = 9'000;
  return search.Run(drawing);
}
int ListColours(CDibujo<int>& drawing) {
  std::vector<CCondicionHRGB> list;
  const int code = test::ColourSearch().List(drawing, 2, list);
  EXPECT_TRUE(code != kHecho || !list.empty());
  return code;
}
int ListIntensities(CDibujo<int>& drawing) {
  std::vector<CCondicionHIntensidad> list;
  const int code = test::IntensitySearch().List(drawing, 2, list);
  EXPECT_TRUE(code != kHecho || !list.empty());
  return code;
}

CDibujo<int> Garden(int n) { return Seen(test::Garden(n), {3, 0, 0, 0}); }

class SeenSearches : public testing::TestWithParam<Kind> {};

TEST_P(SeenSearches, TellTheirPhasesAndEndTheLevelOnce) {
  const ListeningApp app;
  CDibujo<int> drawing = Garden(60);
  EXPECT_EQ(GetParam().run(drawing), kHecho);
  std::vector<unsigned> phases = app.PhaseMessages();
  phases.resize(4);
  EXPECT_THAT(phases, ElementsAre(19020, 19021, 19020, 19045));
  EXPECT_EQ(std::count(app.closed.begin(), app.closed.end(), std::pair(3, 0)), 1);
}

TEST_P(SeenSearches, CancelledAtAnyStepLeaveTheClassesAndNoFile) {
  const std::vector<int> before = ClassesOf(Garden(60));
  int cancelled = 0;
  for (int step = 1;; ++step) {
    ListeningApp app(2);
    app.cancelAt = step;
    CDibujo<int> drawing = Garden(60);
    const int code = GetParam().run(drawing);
    EXPECT_EQ(app.TemporaryFiles(), 0U);
    if (static_cast<int>(app.steps.size()) < step) {
      EXPECT_EQ(code, kHecho);
      EXPECT_EQ(ClassesOf(drawing) != before, GetParam().classifies);
      break;
    }
    ++cancelled;
    ASSERT_EQ(code, kCancelado) << step;
    ASSERT_EQ(ClassesOf(drawing), before) << step;
    for (int i = 0; i < drawing[0].NPuntos(); ++i) ASSERT_GE(drawing[0].Punto(i).num, 0) << "a mark stayed";
  }
  EXPECT_GT(cancelled, 4 * 60) << "two fillings, linking, registering and passes";
}

TEST_P(SeenSearches, ReportTheBytesOfTheirPasses) {
  ListeningApp app;
  std::vector<ListeningApp::Step> searching;
  app.onStep = [&] {
    if (app.phases.size() == 4) searching.push_back(app.steps.back());
  };
  CDibujo<int> drawing = Garden(500);
  EXPECT_EQ(GetParam().run(drawing), kHecho);
  const unsigned long long length = 12ULL * (2 * 500 + 2);
  ASSERT_FALSE(searching.empty());
  EXPECT_EQ(searching.front().value, 0U);
  EXPECT_EQ(searching.front().total, 2 * length) << "two runs are announced";
  for (std::size_t i = 1; i < searching.size(); ++i) {
    ASSERT_EQ(searching[i].value, searching[i - 1].value + 12);
    ASSERT_EQ(searching[i].total % length, 0U);
  }
  EXPECT_EQ(searching.back().value % length, length - 12) << "and they end with a whole one";
  EXPECT_EQ(searching.back().value / length + 1, GetParam().classifies ? searching.back().total / length + 1 : 1U);
}

TEST_P(SeenSearches, WithoutTheSystemFailWithACodeAndLoseNothing) {
  const std::vector<int> before = ClassesOf(Garden(60));
  std::vector<int> after;
  {
    const QuietApp app;
    CDibujo<int> drawing = Garden(60);
    GetParam().run(drawing);
    after = ClassesOf(drawing);
  }
  for (const EOperacion operation : {EOperacion::Abre, EOperacion::Lee, EOperacion::Escribe, EOperacion::Longitud,
                                     EOperacion::CreaEvento, EOperacion::CreaHilo}) {
    for (const bool once : {false, true}) {
      int failures = 0;
      for (int nth = 1;; ++nth) {
        const QuietApp app(2);
        CDibujo<int> drawing = Garden(60);
        FaultGuard guard;
        once ? guard.RefuseOnce(operation, nth) : guard.Refuse(operation, nth);
        const int code = GetParam().run(drawing);
        const bool refused = guard.Asked(operation) >= nth;
        guard.Allow(operation);
        if (code == kHecho) {
          EXPECT_EQ(ClassesOf(drawing), after)
              << "a failure that went unseen: " << static_cast<int>(operation) << " " << nth;
        } else {
          ++failures;
          EXPECT_THAT(code, testing::AnyOf(kFicheroInaccesible, kFicheroInconsistente)) << nth;
          for (std::size_t i = 0; i < before.size(); ++i) {
            ASSERT_THAT(ClassesOf(drawing)[i], testing::AnyOf(before[i], after[i]));
          }
        }
        if (operation != EOperacion::CreaEvento) {
          EXPECT_EQ(app.TemporaryFiles(), 0U) << nth;
        }
        if (!refused) break;
      }
      const bool harmless = operation == EOperacion::CreaHilo && !GetParam().classifies;  // lists draw no outline
      EXPECT_EQ(failures > 0, !harmless) << static_cast<int>(operation);
    }
  }
}

TEST_P(SeenSearches, TellOfAFullDisk) {
  const QuietApp app;
  CDibujo<int> drawing = Garden(3'000);
  const std::vector<int> before = ClassesOf(drawing);
  FaultGuard guard;
  guard.LimitDisk(40'000);
  EXPECT_EQ(GetParam().run(drawing), kFicheroInaccesible);
  EXPECT_EQ(ClassesOf(drawing), before);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST_P(SeenSearches, TellOfTooFewPointsBeforeAnythingIsSearched) {
  const QuietApp app;
  CDibujo<int> drawing = Seen({{0, 0, 0}, {1, 0, 90}});
  EXPECT_EQ(GetParam().run(drawing), kPocosPuntos);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Each, SeenSearches,
                         testing::Values(Kind{"ByColour", ByColour}, Kind{"ByIntensity", ByIntensity},
                                         Kind{"ByJumps", ByJumps}, Kind{"ListColours", ListColours, false},
                                         Kind{"ListIntensities", ListIntensities, false}),
                         [](auto const& kind) { return std::string(kind.param.name); });

}  // namespace
}  // namespace Meseta47
