// The search of high points while it is watched, cancelled, or refused something by the system.
#include <gmock/gmock.h>
#include <system_error>

#include "classification/SearchScene.h"
#include "model/threads/Codigos.h"
#include "support/FaultGuard.h"
#include "support/MatchesPattern.h"

namespace Meseta47 {
namespace {

using test::ClassedPoint;
using test::ClassesOf;
using test::Cloud;
using test::Forest;
using test::InForest;
using test::kCorners;
using test::kGround;
using test::kPoles;
using test::ListeningApp;
using test::QuietApp;
using test::Search;
using test::With;
using testing::ElementsAre;

// --- progress ---

/// Writes down in which phase each step was made.
class PhaseApp : public ListeningApp {
 public:
  explicit PhaseApp(unsigned processors = 0) : ListeningApp(processors) {
    onStep = [this] {
      if (phases.size() == kSearching) searching.push_back(steps.back());
    };
  }
  static constexpr std::size_t kSearching = 4;  // filling, linking, registering, searching
  std::vector<Step> searching;
};

TEST(RunPuntosAltos, TellsItsPhasesAndEndsTheLevelOnce) {
  const ListeningApp app;
  CDibujo<int> drawing = Cloud(kGround);
  Search search;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(app.PhaseMessages(), ElementsAre(19020, 19021, 19020, 19045));
  EXPECT_THAT(app.closed, ElementsAre(std::pair(3, 0)));
  EXPECT_EQ(app.lastFlags, 0);

  drawing = Cloud(With(kCorners, kPoles));
  search.distance = 7;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_THAT(app.PhaseMessages(), testing::SizeIs(testing::Gt(8U))) << "the phases of the outline follow";
  EXPECT_THAT(app.closed, testing::SizeIs(2));
}

TEST(RunPuntosAltos, OnePassReportsExactlyTheLengthOfTheFile) {
  const PhaseApp app;
  CDibujo<int> drawing = Cloud(Forest(3000), {3, 0, 0, 0});
  Search search = InForest();
  search.onePass = 1;
  EXPECT_EQ(search.Run(drawing), kHecho);
  EXPECT_GT(search.changed, 100U);
  ASSERT_FALSE(app.searching.empty());
  for (ListeningApp::Step const& step : app.searching) {
    EXPECT_EQ(step.total, 12ULL * (2 * 3000 + 2));
    EXPECT_LE(step.value, step.total);
  }
}

TEST(RunPuntosAltos, ThreePassesReportTheFileAsOftenAsItIsRead) {
  const PhaseApp app;
  constexpr unsigned long long kLength = 12ULL * (2 * 3000 + 2);
  CDibujo<int> drawing = Cloud(Forest(3000), {3, 0, 0, 0});
  Search search = InForest();
  search.distance = 4'000;  // the square of two metres
  EXPECT_EQ(search.Run(drawing), kHecho);
  ASSERT_FALSE(app.searching.empty());
  unsigned long long before = 0;
  for (ListeningApp::Step const& step : app.searching) {
    EXPECT_EQ(step.total % kLength, 0U);
    EXPECT_GE(step.total, 3 * kLength);
    EXPECT_LE(step.value, step.total);
    EXPECT_GE(step.value, before);
    before = step.value;
  }
  EXPECT_GT(app.searching.back().total, 3 * kLength) << "some pass was run again";
  EXPECT_GE(app.searching.back().value + kLength, app.searching.back().total);
}

TEST(RunPuntosAltos, ASmallFileIsReadByOneThread) {
  CDibujo<int> drawing = Cloud(kGround);  // 22 records
  for (const unsigned processors : {1U, 22U, 23U, 500U}) {
    const QuietApp app(processors);
    FaultGuard guard;
    Search search;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_EQ(guard.Asked(EOperacion::CreaHilo), processors == 22 ? 22 : 1) << processors;
  }
}

TEST(RunPuntosAltos, ATriangleAtTheFrameIsNeverLookedAt) {
  // All three points are corners of the hull: their one triangle is looked at, those at the frame are not.
  const QuietApp app;
  for (const int height : {5, 9}) {
    CDibujo<int> drawing = Cloud({{0, 0, 0}, {4, 0, 0}, {2, 3, 9}});
    Search search;
    search.height = height;
    EXPECT_EQ(search.Run(drawing), kHecho);
    EXPECT_THAT(ClassesOf(drawing), ElementsAre(2, 2, height == 5 ? 6 : 2));
  }
}

TEST(RunPuntosAltos, AtLevel0NobodyIsAsked) {
  const ListeningApp app;
  CDibujo<int> drawing = Cloud(kGround);
  CTriangulacion2D triangulation(0, drawing.semilla, CDataTriangulacion(), 7);
  triangulation.Mensajes(MENSAJES_NINGUNO);
  unsigned changed = 0;
  EXPECT_EQ(triangulation.RunPuntosAltos(drawing, 2, 5, CInfoClasificacion(6, 0.0, L""), 0, changed, nullptr, nullptr),
            kHecho);
  EXPECT_THAT(app.steps, testing::IsEmpty());
  EXPECT_THAT(app.phases, testing::IsEmpty());
}

// --- cancellation and faults ---

TEST(RunPuntosAltos, TooFewPointsAreToldBeforeAnythingIsSearched) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud({{0, 0, 0}, {1, 0, 90}});
  Search search;
  EXPECT_EQ(search.Run(drawing), kPocosPuntos);
  EXPECT_EQ(search.changed, 12345U);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(RunPuntosAltos, CancelledAtAnyStepItLeavesTheClassesAndNoFile) {
  const std::vector<ClassedPoint> forest = Forest(60);
  const std::vector<int> before = ClassesOf(Cloud(forest));
  int cancelled = 0;
  for (int step = 1;; ++step) {
    ListeningApp app(2);
    app.cancelAt = step;
    CDibujo<int> drawing = Cloud(forest, {3, 0, 0, 0});
    Search search = InForest();
    const int code = search.Run(drawing);
    EXPECT_EQ(app.TemporaryFiles(), 0U);
    if (static_cast<int>(app.steps.size()) < step) {
      EXPECT_EQ(code, kHecho);
      EXPECT_NE(ClassesOf(drawing), before);
      break;
    }
    ++cancelled;
    EXPECT_EQ(code, kCancelado) << step;
    EXPECT_EQ(ClassesOf(drawing), before) << step;
    EXPECT_THAT(app.closed, testing::IsEmpty());
  }
  EXPECT_GT(cancelled, 4 * 60) << "two fillings, linking, registering, passes and the outline";
}

TEST(RunPuntosAltos, CancelledInAPassItTellsWhereItWas) {
  ListeningApp app(2);
  app.onStep = [&] {
    if (app.phases.size() == PhaseApp::kSearching) app.cancelAt = static_cast<int>(app.steps.size());
  };
  CDibujo<int> drawing = Cloud(Forest(20'000), {3, 0, 0, 0});
  Search search = InForest();
  EXPECT_EQ(search.Run(drawing), kCancelado);
  ASSERT_EQ(app.messages.size(), 4U);
  const auto text = [&](std::size_t i) { return std::get<1>(app.messages[i]).Utf8(); };
  EXPECT_THAT(text(0), MatchesPattern("cantidad leida [0-9]+"));
  EXPECT_EQ(text(1), "cont 0 total " + std::to_string(3 * 12 * (2 * 20'000 + 2)));
  EXPECT_THAT(text(2), MatchesPattern("k=0 file=[0-9]+ limite=" + std::to_string(12 * 20'002)));
  EXPECT_THAT(text(3), MatchesPattern("k=1 file=[0-9]+ limite=" + std::to_string(12 * 40'002)));
  for (auto const& [level, message, one] : app.messages) EXPECT_EQ(level * 10 + one, 11);
}

class RunPuntosAltosWithoutTheSystem : public testing::TestWithParam<EOperacion> {};

TEST_P(RunPuntosAltosWithoutTheSystem, FailsWithACodeAndLosesNothing) {
  const std::vector<ClassedPoint> forest = Forest(60);
  const std::vector<int> before = ClassesOf(Cloud(forest));
  std::vector<int> after;
  {
    const QuietApp app(2);
    CDibujo<int> drawing = Cloud(forest, {3, 0, 0, 0});
    InForest().Run(drawing);
    after = ClassesOf(drawing);
  }
  int failures = 0;
  for (int nth = 1;; ++nth) {
    const QuietApp app(2);
    CDibujo<int> drawing = Cloud(forest, {3, 0, 0, 0});
    FaultGuard guard;
    guard.Refuse(GetParam(), nth);
    Search search = InForest();
    int code = 0;
    try {
      code = search.Run(drawing);
    } catch (std::system_error const&) {
      EXPECT_EQ(GetParam(), EOperacion::CreaSeccion);
    }
    const bool refused = guard.Asked(GetParam()) >= nth;
    guard.Allow(GetParam());
    if (code == kHecho) {
      EXPECT_EQ(ClassesOf(drawing), after) << "a failure that went unseen, at " << nth;
    } else {
      ++failures;
      EXPECT_THAT(code, testing::AnyOf(0, kFicheroInaccesible, kFicheroInconsistente)) << nth;
      // Once the passes are over, what was found keeps its class; nothing else changes.
      for (std::size_t i = 0; i < before.size(); ++i) {
        EXPECT_THAT(ClassesOf(drawing)[i], testing::AnyOf(before[i], after[i]));
      }
    }
    if (GetParam() != EOperacion::Borra && GetParam() != EOperacion::CreaEvento) {
      EXPECT_EQ(app.TemporaryFiles(), 0U) << nth;
    }
    if (!refused) break;
  }
  EXPECT_GT(failures, 0);
}

std::string OperationName(testing::TestParamInfo<EOperacion> const& operation) {
  switch (operation.param) {
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
    case EOperacion::CreaHilo:
      return "MakeThread";
    default:
      return "MakeLock";
  }
}

INSTANTIATE_TEST_SUITE_P(Each, RunPuntosAltosWithoutTheSystem,
                         testing::Values(EOperacion::Abre, EOperacion::Lee, EOperacion::Escribe, EOperacion::Longitud,
                                         EOperacion::CreaEvento, EOperacion::CreaHilo, EOperacion::CreaSeccion),
                         OperationName);

TEST(RunPuntosAltos, AFullDiskIsTold) {
  const QuietApp app;
  CDibujo<int> drawing = Cloud(Forest(3000), {3, 0, 0, 0});
  const std::vector<int> before = ClassesOf(drawing);
  FaultGuard guard;
  guard.LimitDisk(40'000);
  EXPECT_EQ(InForest().Run(drawing), kFicheroInaccesible);
  EXPECT_EQ(ClassesOf(drawing), before);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

}  // namespace
}  // namespace Meseta47
