// The growth of a class by affinity as runs do it, against the rules told once more over the same mesh.
#include <gmock/gmock.h>
#include <map>
#include <system_error>

#include "classification/AffinityScene.h"
#include "support/Families.h"
#include "support/FaultGuard.h"
#include "support/PlanarSizes.h"

namespace Meseta47 {
namespace {

using support::Family;
using test::AffinityCloud;
using test::AffinityPoint;
using test::AffinityRule;
using test::ClassesIn;
using test::Growing;
using test::LinkedCells;
using test::ListeningApp;
using test::QuietApp;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

/// A row of points along the ground, each the nearest of the next, in a frame of four that stop.
std::vector<AffinityPoint> Row(std::vector<int> const& classes) {
  std::vector<AffinityPoint> points{
      {-500, -400, 0, 0, 6}, {-500, 410, 0, 0, 6}, {900, 420, 0, 0, 6}, {910, -430, 0, 0, 6}};
  int x = 0;
  for (const int cls : classes) {
    points.push_back({x, x % 3, 0, 10 * x, cls});
    x += 10;
  }
  return points;
}
std::vector<int> RowOf(CDibujo<int> const& drawing) {
  std::vector<int> classes = ClassesIn(drawing);
  return {classes.begin() + 4, classes.end()};
}

TEST(RunPuntosPorAfinidad, APointTakesTheClassOfANeighbourThatHasIt) {
  const QuietApp app;
  CDibujo<int> drawing = AffinityCloud(Row({1, 2, 1, 6, 1}));
  Growing growing;
  growing.rule.squares = {0, 200};
  growing.changed = 1000;
  EXPECT_EQ(growing.Once(drawing), kHecho);
  EXPECT_THAT(RowOf(drawing), ElementsAre(2, 2, 2, 6, 1));
  EXPECT_EQ(growing.changed, 1002U) << "it is added to";
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(RunPuntosPorAfinidad, IntensitiesAreLookedAtWhereThereIsARangeOfThem) {
  const QuietApp app;
  for (const bool limited : {false, true}) {
    CDibujo<int> drawing = AffinityCloud(Row({2, 1, 1}));
    drawing[0].PunteroAPunto(6)->intensidad = 500;
    Growing growing;
    growing.rule.squares = {0, 200};
    if (limited) growing.rule.intensities = {0, 100};
    EXPECT_EQ(growing.Once(drawing), kHecho);
    EXPECT_THAT(RowOf(drawing), ElementsAre(2, 2, limited ? 1 : 2));
  }
}

TEST(RunPuntosPorAfinidad, WritesTheClassesOfPointsThatMayChangeAlone) {
  // Not a cloud: entities take part by their codes, and a point of any class does; classes decide about writing.
  const QuietApp app;
  CDibujo<int> drawing = AffinityCloud(Row({2, 1, 3, 1}), 0);
  Growing growing;
  growing.rule.squares = {0, 200};
  growing.data.excluidos.Inserta(CElementoDigiTab(ENTIDAD_LINEA, L"3", 70, 70, 70, 0, 0, L"", 1), false);
  EXPECT_EQ(growing.Once(drawing), kHecho);
  EXPECT_THAT(RowOf(drawing), ElementsAre(2, 2, 3, 2)) << "what keeps its class hands the other on";
  EXPECT_EQ(growing.changed, 3U);
}

TEST(RunPuntosPorAfinidad, OfACloudClassesThatAreLeftOutTakeNoPart) {
  const QuietApp app;
  CDibujo<int> drawing = AffinityCloud(Row({2, 1, 3, 1}));
  Growing growing;
  growing.rule.squares = {0, 200};
  growing.data.excluidos.Inserta(CElementoDigiTab(ENTIDAD_LINEA, L"3", 70, 70, 70, 0, 0, L"", 1), false);
  EXPECT_EQ(growing.Once(drawing), kHecho);
  EXPECT_THAT(RowOf(drawing), ElementsAre(2, 2, 3, 1)) << "the last one is too far from the others";
}

TEST(RunPuntosPorAfinidad, FurtherDrawingsHandTheClassOnAndKeepTheirs) {
  // The last further drawing loses the first point of each cell, here its first.
  const QuietApp app;
  CDibujo<int> drawing = AffinityCloud(Row({1, 1}));
  CDibujo<int> other = AffinityCloud({{700, 0, 0, 0, 1}, {-10, 1, 0, 0, 1}, {-20, 0, 0, 0, 2}}),
               last = AffinityCloud({{701, 9}});
  Growing growing;
  growing.rule.squares = {0, 200};
  growing.others = {&other, &last};
  EXPECT_EQ(growing.Once(drawing), kHecho);
  EXPECT_EQ(growing.ToRest(drawing), kHecho);
  EXPECT_THAT(RowOf(drawing), ElementsAre(2, 2));
  EXPECT_THAT(ClassesIn(other), ElementsAre(1, 1, 2));
}

TEST(RunPuntosPorAfinidad, ASelectionTakesPartAlone) {
  const QuietApp app;
  CDibujo<int> drawing = AffinityCloud(Row({2, 1, 1, 1}));
  const std::vector<CPosicionEntidad> selection{{0, 0}, {0, 1}, {0, 2}, {0, 3}, {0, 4}, {0, 5}, {0, 7}};
  Growing growing;
  growing.rule.squares = {0, 200};
  growing.selection = &selection;
  EXPECT_EQ(growing.Once(drawing), kHecho);
  EXPECT_THAT(RowOf(drawing), ElementsAre(2, 2, 1, 1));
}

TEST(RunPuntosPorAfinidad, ASelectionThatNamesADuplicateGoesOnBehindIt) {
  const QuietApp app;
  for (const bool toRest : {false, true}) {
    CDibujo<int> drawing = AffinityCloud(Row({2, 2, 1, 1}));
    CCoor3D<int>& twin = *drawing[0].PunteroAPunto(5);
    twin.x = drawing[0].Punto(4).x;
    twin.y = drawing[0].Punto(4).y;
    twin.clasificacion = 9;
    drawing[0].PunteroAPunto(6)->x = 10;
    drawing[0].PunteroAPunto(7)->x = 20;
    const std::vector<CPosicionEntidad> selection{{0, 0}, {0, 1}, {0, 2}, {0, 3}, {0, 4}, {0, 5}, {0, 6}, {0, 7}};
    Growing growing;
    growing.rule.squares = {0, 200};
    growing.selection = &selection;
    EXPECT_EQ(toRest ? growing.ToRest(drawing) : growing.Once(drawing), kHecho);
    EXPECT_THAT(RowOf(drawing), ElementsAre(2, 9, 2, 2)) << "the duplicate is in no triangle";
  }
}

TEST(RunPuntosPorAfinidad, ClassesAbove127Grow) {
  const QuietApp app;
  CDibujo<int> drawing = AffinityCloud(Row({1, 200, 255, 72}));
  Growing growing;
  growing.rule = {.grow = 200, .barrier = 255, .squares = {{0.0, 200.0}}};
  EXPECT_EQ(growing.Once(drawing), kHecho);
  EXPECT_THAT(RowOf(drawing), ElementsAre(200, 200, 255, 72));
}

TEST(RunPuntosPorAfinidad, NumbersOfAnEarlierRunAreForgotten) {
  const QuietApp app;
  CDibujo<int> drawing = AffinityCloud(Row({2, 1}));
  for (int i = 0; i < 6; ++i) drawing[0].PunteroAPunto(i)->num = 1'000'000;
  Growing growing;
  EXPECT_EQ(growing.Once(drawing), kHecho);
  EXPECT_THAT(RowOf(drawing), ElementsAre(2, 2));
}

// --- what the program is told ---

TEST(RunPuntosPorAfinidad, TellsTheIterationAndTheCountAndCountsIt) {
  ListeningApp app;
  CDibujo<int> drawing = AffinityCloud(Row({2, 1, 1}));
  Growing growing;
  unsigned iteration = 4;
  growing.iteration = &iteration;
  growing.changed = 10;
  EXPECT_EQ(growing.Once(drawing), kHecho);
  EXPECT_EQ(iteration, 5U);
  EXPECT_THAT(app.messages, ElementsAre(std::tuple(1, CString(L"Iteration 4: 12 points"), 1)));
  EXPECT_THAT(app.PhaseMessages(), ElementsAre(19020U, 19021U));
  EXPECT_THAT(app.closed, ElementsAre(std::pair(3, 0)));
}

TEST(RunPuntosPorAfinidad, WithoutAnIterationThereIsNoMessageAndTheRunGoesOn) {
  ListeningApp app;
  CDibujo<int> drawing = AffinityCloud(Row({2, 1}));
  Growing growing;
  EXPECT_EQ(growing.Once(drawing), kHecho);
  EXPECT_THAT(app.messages, IsEmpty());
  EXPECT_THAT(RowOf(drawing), ElementsAre(2, 2));
}

TEST(RunPuntosPorAfinidad, WhereItIsNotToBeShownTheIterationStays) {
  ListeningApp app;
  CDibujo<int> drawing = AffinityCloud(Row({2, 1}));
  Growing growing;
  unsigned iteration = 4;
  growing.iteration = &iteration;
  growing.show = 0;
  EXPECT_EQ(growing.Once(drawing), kHecho);
  EXPECT_EQ(iteration, 4U);
  EXPECT_THAT(app.messages, IsEmpty());
}

TEST(RunPuntosPorAfinidad, WithoutAnybodyToTellTheIterationStays) {
  const QuietApp app;
  CDibujo<int> drawing = AffinityCloud(Row({2, 1}));
  Growing growing;
  unsigned iteration = 4;
  growing.iteration = &iteration;
  EXPECT_EQ(growing.Once(drawing), kHecho);
  EXPECT_EQ(iteration, 4U);
}

TEST(RunPuntosPorAfinidad, TheHostsCounterGrowsByEachPointThatGoesIn) {
  const QuietApp app;
  CDibujo<int> drawing = AffinityCloud(Row({2, 1, 1}));
  Growing growing;
  int progress = 50;
  growing.progress = &progress;
  EXPECT_EQ(growing.Once(drawing), kHecho);
  EXPECT_EQ(progress, 57);
}

TEST(RunPuntosPorAfinidad, TooFewPointsAreTold) {
  const QuietApp app;
  CDibujo<int> drawing = AffinityCloud({{0, 0, 0, 0, 2}, {9, 0, 0, 0, 1}});
  EXPECT_EQ(Growing{}.Once(drawing), kPocosPuntos);
  EXPECT_EQ(Growing{}.ToRest(drawing), kPocosPuntos);
  EXPECT_THAT(ClassesIn(drawing), ElementsAre(2, 1));
}

// --- against the plain rules ---

/// A rule that lets about half the sides of such a cloud pass, in each of its four ways.
AffinityRule HalfOpen(LinkedCells const& mesh) {
  std::vector<double> squares, heights;
  for (support::Triangle const& t : mesh.triangles) {
    if (std::min({t[0], t[1], t[2]}) < 1) continue;
    AffinityPoint const& a = mesh.points[static_cast<std::size_t>(t[0]) - 1];
    AffinityPoint const& b = mesh.points[static_cast<std::size_t>(t[1]) - 1];
    const double dx = static_cast<double>(a.x) - b.x, dy = static_cast<double>(a.y) - b.y;
    squares.push_back(dx * dx + dy * dy);
    heights.push_back(std::abs(static_cast<double>(a.z) - b.z));
  }
  const auto atShare = [](std::vector<double> values, double share) {
    if (values.empty()) return 0.0;
    const auto at = values.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), at, values.end());
    return *at;
  };
  AffinityRule rule;
  rule.heights = {0, atShare(heights, 0.9)};
  rule.squares = {0, atShare(squares, 0.9)};
  rule.intensities = {0, 250};
  rule.slopes = {-1e6, 1e6};
  return rule;
}

struct Case {
  Family family;
  std::size_t size;
};
class GrowthIn : public testing::TestWithParam<Case> {
 protected:
  /// The cloud, the mesh of it, and rules that let all pass or half.
  void SetUp() override {
    cloud = test::Sown(support::family(GetParam().family, GetParam().size, 11), 20, 5);
    mesh = test::Link(cloud);
    rules = {AffinityRule{}, HalfOpen(mesh)};
    rules.push_back(rules[1]);
    rules.back().slopes = {-1e9, 0};  // downhill alone
    rules.back().barrier = rules.back().grow;
  }
  std::vector<AffinityPoint> cloud;
  LinkedCells mesh;
  std::vector<AffinityRule> rules;
};

TEST_P(GrowthIn, OneRunGivesWhatThePlainRulesGiveOnTheSameCells) {
  for (AffinityRule const& rule : rules) {
    std::vector<AffinityPoint> grown = mesh.points;
    const unsigned changed = support::growOnce(mesh.cells, grown, rule);
    for (const unsigned processors : {1U, 2U, 4U}) {
      const QuietApp app(processors);
      CDibujo<int> drawing = AffinityCloud(cloud);
      Growing growing{.rule = rule};
      ASSERT_EQ(growing.Once(drawing), kHecho);
      EXPECT_EQ(growing.changed, changed);
      EXPECT_EQ(ClassesIn(drawing), mesh.ClassesOf(grown, cloud));
      EXPECT_EQ(app.TemporaryFiles(), 0U);
    }
  }
}

TEST_P(GrowthIn, RepeatedRunsComeToRestWhereTheClosureAndTheCompleteRunDo) {
  for (AffinityRule const& rule : rules) {
    std::vector<AffinityPoint> reached = mesh.points;
    const unsigned changed = support::growToRest(mesh.triangles, reached, rule);
    const QuietApp app;
    CDibujo<int> drawing = AffinityCloud(cloud), complete = AffinityCloud(cloud);
    unsigned sum = 0;
    for (bool moved = true; moved;) {
      Growing growing{.rule = rule};
      ASSERT_EQ(growing.Once(drawing), kHecho);
      sum += growing.changed;
      moved = growing.changed != 0;
    }
    EXPECT_EQ(sum, changed);
    EXPECT_EQ(ClassesIn(drawing), mesh.ClassesOf(reached, cloud));

    Growing growing{.rule = rule};
    ASSERT_EQ(growing.ToRest(complete), kHecho);
    EXPECT_EQ(growing.changed, changed);
    EXPECT_EQ(ClassesIn(complete), ClassesIn(drawing));
    EXPECT_GE(growing.rounds, 1U);
  }
}

std::vector<Case> EveryFamily() {
  std::vector<Case> cases;
  for (const Family family : support::kAllFamilies) {
    for (const std::size_t size : {std::size_t{60}, std::size_t{test::kFullSize ? 2'500U : 1'000U}}) {
      cases.push_back({family, size});
    }
  }
  return cases;
}
INSTANTIATE_TEST_SUITE_P(EveryFamily, GrowthIn, testing::ValuesIn(EveryFamily()),
                         [](testing::TestParamInfo<Case> const& cloud) {
                           return std::string(support::name(cloud.param.family)) + "_" +
                                  std::to_string(cloud.param.size);
                         });

TEST(RunPuntosPorAfinidad, OneRunMayEndShortOfWhatCanBeReachedAndItsOutcomeGoesWithTheOrder) {
  const std::vector<AffinityPoint> cloud = test::Sown(support::family(Family::Uniform, 3'000, 3), 800, 9);
  std::vector<AffinityPoint> backward(cloud.rbegin(), cloud.rend());
  const QuietApp app;
  const auto grow = [](std::vector<AffinityPoint> const& points, bool toRest) {
    CDibujo<int> drawing = AffinityCloud(points);
    Growing growing;
    EXPECT_EQ(toRest ? growing.ToRest(drawing) : growing.Once(drawing), kHecho);
    return ClassesIn(drawing);
  };
  std::vector<int> once = grow(cloud, false), onceBackward = grow(backward, false);
  std::vector<int> rest = grow(cloud, true), restBackward = grow(backward, true);
  std::reverse(onceBackward.begin(), onceBackward.end());
  std::reverse(restBackward.begin(), restBackward.end());
  EXPECT_NE(once, rest);
  EXPECT_NE(once, onceBackward);
  EXPECT_EQ(rest, restBackward) << "to the end it does not: no four of these points lie on a circle";
}

TEST(RunAfinidadCompleta, CountsTheTimesThatTrianglesWereLookedAt) {
  const QuietApp app;
  Growing growing;
  CDibujo<int> drawing = AffinityCloud(Row({6, 6, 6}));
  EXPECT_EQ(growing.ToRest(drawing), kHecho);
  EXPECT_EQ(growing.rounds, 1U) << "nothing was left to read";
  growing.rule.squares = {0, 1};
  drawing = AffinityCloud(Row({2, 1, 1}));
  EXPECT_EQ(growing.ToRest(drawing), kHecho);
  EXPECT_EQ(growing.rounds, 2U) << "one reading, that changed nothing";
}

TEST(RunAfinidadCompleta, TellsItsPhases) {
  ListeningApp app;
  CDibujo<int> drawing = AffinityCloud(Row({2, 1, 1}));
  Growing growing;
  growing.rule.squares = {0, 1};
  EXPECT_EQ(growing.ToRest(drawing), kHecho);
  EXPECT_THAT(app.PhaseMessages(), ElementsAre(19020U, 19021U, 19020U, 19045U));
  EXPECT_THAT(app.closed, ElementsAre(std::pair(3, 0)));
  EXPECT_THAT(app.messages, IsEmpty());
}

// --- cancellation and faults ---

/// Either of the two runs.
class EitherGrowth : public testing::TestWithParam<bool> {
 protected:
  EitherGrowth() : cloud(test::Sown(support::family(Family::Uniform, 60, 3), 15, 9)) {
    CDibujo<int> drawing = Drawing();
    before = ClassesIn(drawing);
    const QuietApp app;
    EXPECT_EQ(Grow(drawing), kHecho);
    after = ClassesIn(drawing);
    EXPECT_NE(before, after);
  }
  [[nodiscard]] CDibujo<int> Drawing() const { return AffinityCloud(cloud); }
  int Grow(CDibujo<int>& drawing) {
    Growing growing;
    growing.rule.squares = {0, 1.2e6};  // a metre and a bit: the spacing of the cloud
    return GetParam() ? growing.ToRest(drawing) : growing.Once(drawing);
  }
  std::vector<AffinityPoint> cloud;
  std::vector<int> before, after;
};
INSTANTIATE_TEST_SUITE_P(Runs, EitherGrowth, testing::Bool(),
                         [](testing::TestParamInfo<bool> const& form) { return form.param ? "ToRest" : "Once"; });

TEST_P(EitherGrowth, CancelledAtAnyStepLeavesTheClassesAndNoFile) {
  int cancelled = 0;
  for (int step = 1;; ++step) {
    ListeningApp app;
    app.cancelAt = step;
    CDibujo<int> drawing = Drawing();
    const int code = Grow(drawing);
    EXPECT_EQ(app.TemporaryFiles(), 0U);
    if (static_cast<int>(app.steps.size()) < step) {
      EXPECT_EQ(code, kHecho);
      EXPECT_EQ(ClassesIn(drawing), after);
      break;
    }
    ++cancelled;
    EXPECT_EQ(code, kCancelado) << step;
    EXPECT_EQ(ClassesIn(drawing), before) << step;
    EXPECT_THAT(app.closed, IsEmpty());
  }
  EXPECT_GT(cancelled, (GetParam() ? 3 : 2) * 60) << "filling, linking, registering, reading";
}

TEST_P(EitherGrowth, RefusedAnythingByTheSystemFailsWithACodeAndNothingWritten) {
  std::map<EOperacion, int> failures;
  for (const EOperacion operation : kEveryOperation) {
    for (int nth = 1;; ++nth) {
      const QuietApp app;
      CDibujo<int> drawing = Drawing();
      FaultGuard guard;
      guard.Refuse(operation, nth);
      int code = 0;
      try {
        code = Grow(drawing);
      } catch (std::system_error const&) {
        EXPECT_EQ(operation, EOperacion::CreaSeccion);
      }
      const bool refused = guard.Asked(operation) >= nth;
      guard.Allow(operation);
      EXPECT_EQ(ClassesIn(drawing), code == kHecho ? after : before) << nth;
      if (code != kHecho) ++failures[operation];
      if (operation != EOperacion::Borra && operation != EOperacion::CreaEvento) {
        EXPECT_EQ(app.TemporaryFiles(), 0U);
      }
      if (!refused) break;
    }
  }
  EXPECT_GT(failures[EOperacion::Abre], 0);
  EXPECT_GT(failures[EOperacion::CreaHilo], 0);
  EXPECT_GT(failures[EOperacion::CreaEvento], 0);
  EXPECT_GT(failures[EOperacion::CreaSeccion], 0);
  if (GetParam()) {
    EXPECT_GT(failures[EOperacion::Lee], 0);
    EXPECT_GT(failures[EOperacion::Escribe], 0);
  }
}

TEST_P(EitherGrowth, LeavesTheObjectReadyForAnotherRun) {
  const QuietApp app;
  const test::Ranges ranges{AffinityRule{}};
  CTriangulacion2D triangulation(0, CDataSemilla(0, 0, 0, 0), CDataTriangulacion(), 7);
  CDibujo<int> first = Drawing(), second = Drawing();
  unsigned changed = 0, rounds = 0;
  ASSERT_EQ(triangulation.RunAfinidadCompleta(first, ranges.Rules(), changed, rounds, nullptr, nullptr), kHecho);
  ASSERT_EQ(triangulation.RunPuntosPorAfinidad(second, changed, nullptr, nullptr, nullptr, nullptr,
                                               CInfoClasificacion(2, 0.0, L""), CInfoClasificacion(6, 0.0, L""),
                                               nullptr, nullptr, nullptr, 0, nullptr),
            kHecho);
  ASSERT_EQ(triangulation.RunAfinidadCompleta(second, ranges.Rules(), changed, rounds, nullptr, nullptr), kHecho);
  EXPECT_EQ(ClassesIn(second), ClassesIn(first));
}

}  // namespace
}  // namespace Meseta47
