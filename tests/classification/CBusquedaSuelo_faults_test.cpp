// The ground search while it is watched, cancelled, or refused something by the system.
#include <gmock/gmock.h>
#include <system_error>

#include "classification/GroundScene.h"
#include "model/threads/Codigos.h"
#include "support/FaultGuard.h"
#include "support/PlanarSizes.h"

namespace Meseta47 {
namespace {

using test::ClassedPoint;
using test::ClassesOf;
using test::Cloud;
using test::GroundSearch;
using test::Land;
using test::ListeningApp;
using test::QuietApp;
using testing::Each;
using testing::ElementsAre;

constexpr int kBefore = 5;

/// A plain with a hut and a pit, all in one class.
std::vector<ClassedPoint> Meadow() {
  Land land(1);
  land.Fly(
      0, 0, 30, 30, 3, [](double, double) { return 100; }, kBefore);
  land.Fly(
      10, 10, 16, 16, 3, [](double, double) { return 104; }, kBefore);
  return land.Put(22, 22, 93, kBefore).points;
}

TEST(CBusquedaSuelo, TellsItsThreePhasesAndNoStepBeyondTheirTotals) {
  const ListeningApp app;
  ASSERT_FALSE(GroundSearch().Classes(Meadow()).empty());
  EXPECT_THAT(app.PhaseMessages(), ElementsAre(19020, 19045, 39102));
  ASSERT_FALSE(app.steps.empty());
  for (ListeningApp::Step const& step : app.steps) EXPECT_LE(step.value, step.total);
}

TEST(CBusquedaSuelo, WithoutMessagesItTellsNothing) {
  const ListeningApp app;
  CDibujo<int> drawing = Cloud(Meadow(), test::kCentimetres);
  CBusquedaSuelo search(drawing.semilla, CDataTriangulacion());
  EXPECT_EQ(search.Mensajes(MENSAJES_NINGUNO), MENSAJES_NORMALES);
  EXPECT_EQ(search.Busca(drawing, CDataSuelo()), kHecho);
  EXPECT_THAT(app.PhaseMessages(), testing::IsEmpty());
}

TEST(CBusquedaSuelo, CancelledAtAnyStepItChangesNothing) {
  std::size_t steps = 0;
  {
    const ListeningApp app(1);
    GroundSearch().Classes(Meadow());
    steps = app.steps.size();
  }
  std::size_t cancelled = 0;
  for (std::size_t at = 1; at <= steps; at += test::kFullSize ? 1 : 7) {
    ListeningApp app(1);
    app.cancelAt = static_cast<int>(at);
    CDibujo<int> drawing = Cloud(Meadow(), test::kCentimetres);
    const int code = GroundSearch().Run(drawing);
    ASSERT_EQ(app.TemporaryFiles(), 0U);
    if (app.steps.size() < at) continue;  // waiting for the readers of triangles took fewer reports this time
    ++cancelled;
    ASSERT_EQ(code, kCancelado) << "at step " << at;
    ASSERT_THAT(ClassesOf(drawing), Each(kBefore)) << "at step " << at;
  }
  EXPECT_GT(cancelled, test::kFullSize ? 2000U : 250U);
}

TEST(CBusquedaSuelo, CancelledBesideAThreadThatTriangulatesItChangesNothing) {
  for (int at = 1; at <= 40; at += 3) {
    ListeningApp app(2);
    app.cancelAt = at;
    CDibujo<int> drawing = Cloud(Meadow(), test::kCentimetres);
    if (GroundSearch().Run(drawing) == kHecho) continue;  // two threads take fewer steps
    ASSERT_THAT(ClassesOf(drawing), Each(kBefore)) << "at step " << at;
    ASSERT_EQ(app.TemporaryFiles(), 0U);
  }
}

TEST(CBusquedaSuelo, IsAskedWhetherToGoOnWhileItTriangulates) {
  const ListeningApp app(1);
  Land land(2);
  land.Fly(0, 0, 150, 150, 2, [](double x, double y) { return 100 + 0.1 * x + 2 * std::sin(y / 9); });
  CDibujo<int> drawing = Cloud(land.points, test::kCentimetres);
  CBusquedaSuelo search(test::kCentimetres, CDataTriangulacion());
  ASSERT_EQ(search.Busca(drawing, CDataSuelo()), kHecho);
  ASSERT_GT(search.Resumen().minimos, 15000U);
  EXPECT_GT(app.steps.size(), 15000U) << "passes over points and cells take a few hundred; a run asks at each point";
}

TEST(CBusquedaSuelo, WhatTheSystemRefusesChangesNothingOrNothingAtAll) {
  const QuietApp app;
  const std::vector<int> right = GroundSearch().Classes(Meadow());
  int failures = 0;
  for (const EOperacion operation : kEveryOperation) {
    for (int nth = 1; nth < 40; nth += test::kFullSize || nth < 6 ? 1 : 4) {
      CDibujo<int> drawing = Cloud(Meadow(), test::kCentimetres);
      const std::size_t before = app.TemporaryFiles();  // those whose deletion was refused
      FaultGuard guard;
      guard.Refuse(operation, nth);
      int code = 0;
      try {
        code = GroundSearch().Run(drawing);
      } catch (std::system_error const&) {
        EXPECT_EQ(operation, EOperacion::CreaSeccion);  // as with every run
      }
      if (code == kHecho) {
        ASSERT_EQ(ClassesOf(drawing), right);
      } else {
        ASSERT_THAT(ClassesOf(drawing), Each(kBefore)) << "operation " << static_cast<int>(operation) << ", " << nth;
        ++failures;
      }
      if (operation != EOperacion::Borra) {
        ASSERT_EQ(app.TemporaryFiles(), before) << "operation " << static_cast<int>(operation) << ", " << nth;
      }
    }
  }
  EXPECT_GT(failures, 10);
}

}  // namespace
}  // namespace Meseta47
