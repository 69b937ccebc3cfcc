// The runs from beginning to end, and every way out of them.
#include <functional>
#include <gmock/gmock.h>
#include <stdexcept>

#include "model/geometry/CRango.h"
#include "planar/PhaseScenes.h"
#include "support/FaultGuard.h"

namespace Meseta47 {
namespace {

using support::Point;
using support::Triangle;
using test::At;
using test::Described;
using test::DrawingAt;
using test::DrawingOf;
using test::ListeningApp;
using test::ModelOf;
using test::NumbersOf;
using test::OpenTriangulation;
using test::QuietApp;
using test::Scatter;
using test::TrianglesOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::NotNull;
using testing::Pair;
using testing::SizeIs;

/// One of the three runs over points that it keeps from run to run.
class Road {
 public:
  enum Kind { FromDrawing, Update, Extension, FromModel };

  Road(Kind itsKind, std::vector<Point> const& points) : kind(itsKind) {
    std::vector<Point> sorted = points;
    std::sort(sorted.begin(), sorted.end());
    model = ModelOf(sorted);
    const auto third = static_cast<std::ptrdiff_t>(points.size() / 3);
    drawing = DrawingOf(kind == Update || kind == Extension ? std::vector<Point>(points.begin() + third, points.end())
                                                            : points);
    extra = DrawingOf({points.begin(), points.begin() + third});
  }

  int Run() {
    switch (kind) {
      case FromDrawing:
        return t.Run(drawing, model, 0, nullptr, false, nullptr, nullptr, nullptr);
      case Update:
        return t.RunActualiza(drawing, model, 0, extra, 1e6, nullptr, false, nullptr);
      case Extension:
        return t.Run({.dibujo = drawing, .extra = &extra, .tolerancia = 1e6}, model);
      case FromModel:
        model.longitudMaxima = 46'000;
        return t.Run(model, nullptr);
    }
    return 0;
  }

  Kind kind;
  OpenTriangulation t;
  CDibujo<int> drawing, extra;
  CTIN model{0, 0, CDataSemilla()};
};

class EveryRun : public testing::TestWithParam<Road::Kind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, EveryRun,
                         testing::Values(Road::FromDrawing, Road::Update, Road::Extension, Road::FromModel),
                         [](testing::TestParamInfo<Road::Kind> const& kind) {
                           return kind.param == Road::FromDrawing ? "FromDrawing"
                                  : kind.param == Road::Update    ? "Update"
                                  : kind.param == Road::Extension ? "Extension"
                                                                  : "FromModel";
                         });

/// Points within a few hundred metres, so that no side passes what a model's own limit can hold.
std::vector<Point> Near(std::size_t n) {
  std::vector<Point> points = Scatter(n);
  for (Point& p : points) p = {p.x % 20'011, p.y % 19'997, p.z % 1'000};
  return points;
}

TEST_P(EveryRun, MakesTheTrianglesOfThePointsAndLeavesNoFile) {
  ListeningApp app;
  Road road(GetParam(), Near(300));
  ASSERT_EQ(road.Run(), kHecho);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
  EXPECT_FALSE(road.t.ficheroTemporal.EstaAbierto());
  EXPECT_THAT(app.closed, ElementsAre(Pair(3, 0)));
  Road plain(Road::FromDrawing, Near(300));
  ASSERT_EQ(plain.Run(), kHecho);
  EXPECT_EQ(TrianglesOf(road.model), TrianglesOf(plain.model));
  EXPECT_EQ(road.model.Limite(), plain.model.Limite());
  EXPECT_GT(road.model.Cantidad(), 500U);
}

TEST_P(EveryRun, OfFewerThanThreePointsIsRefusedWithoutAFile) {
  for (std::size_t n = 0; n < 3; ++n) {
    ListeningApp app;
    Road road(GetParam(), Near(n));
    EXPECT_EQ(road.Run(), kPocosPuntos) << n;
    EXPECT_EQ(app.TemporaryFiles(), 0U);
    EXPECT_THAT(app.closed, IsEmpty());
    EXPECT_THAT(app.PhaseMessages(), ElementsAre(19020U));
  }
}

TEST_P(EveryRun, CancelledAtAnyStepAnswersTwoAndThenRunsToTheRightResult) {
  const std::vector<Point> points = Near(27);
  std::string expected;
  {
    const QuietApp app;
    Road road(GetParam(), points);
    ASSERT_EQ(road.Run(), kHecho);
    expected = Described(road.model);
  }
  Road road(GetParam(), points);
  int cancelled = 0;
  for (int n = 1;; ++n) {
    ListeningApp app(2);
    app.cancelAt = n;
    const int code = road.Run();
    EXPECT_EQ(app.TemporaryFiles(), 0U) << "at step " << n;
    if (static_cast<int>(app.steps.size()) < n) {
      EXPECT_EQ(code, kHecho);
      EXPECT_EQ(Described(road.model), expected);
      break;
    }
    ++cancelled;
    ASSERT_EQ(code, kCancelado) << "at step " << n;
    EXPECT_THAT(app.closed, IsEmpty());
    const QuietApp quiet(2);
    ASSERT_EQ(road.Run(), kHecho);
    ASSERT_EQ(Described(road.model), expected) << "after step " << n;
  }
  EXPECT_GT(cancelled, 3 * 27 - 9) << "points are recorded, inserted and, but for a model, registered";
}

TEST_P(EveryRun, AFullDiskIsToldAndLeavesNoFile) {
  const QuietApp app;
  Road road(GetParam(), Near(300));
  FaultGuard guard;
  guard.LimitDisk(5'000);
  EXPECT_EQ(road.Run(), kFicheroInaccesible);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST_P(EveryRun, AFileThatCannotBeReadBackIsToldAndRemoved) {
  const QuietApp app;
  Road road(GetParam(), Near(300));
  FaultGuard guard;
  guard.Refuse(EOperacion::Lee);
  EXPECT_EQ(road.Run(), kFicheroInconsistente);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
  guard.Allow(EOperacion::Lee).Refuse(EOperacion::Abre, 2);
  EXPECT_EQ(road.Run(), kFicheroInaccesible) << "the readers' own opening of it";
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST_P(EveryRun, WithoutAnEventADrawingsRunLeavesItsFileAndAModelsRunsOn) {
  const QuietApp app;
  Road road(GetParam(), Near(30));
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaEvento);
  if (GetParam() == Road::FromModel) {
    EXPECT_EQ(road.Run(), kHecho);
    EXPECT_EQ(app.TemporaryFiles(), 0U);
    EXPECT_GT(road.model.Cantidad(), 40U);
    return;
  }
  EXPECT_EQ(road.Run(), kFicheroInconsistente);
  EXPECT_EQ(app.TemporaryFiles(), 1U);
  EXPECT_TRUE(Exists(road.t.ficheroTemporal.Ruta()));
  guard.Allow(EOperacion::CreaEvento);
  EXPECT_EQ(road.Run(), kHecho) << "the same object runs once the system has events again";
}

TEST_P(EveryRun, TheFileOfARunWithoutAnEventGoesWithTheObject) {
  const QuietApp app;
  {
    Road road(GetParam(), Near(30));
    FaultGuard guard;
    guard.Refuse(EOperacion::CreaEvento);
    road.Run();
  }
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST_P(EveryRun, AnExceptionOfTheHostLeavesNoFileAndNoWorker) {
  for (const std::size_t at : {5U, 40U, 70U, 85U}) {
    ListeningApp app(2);
    Road road(GetParam(), Near(30));
    app.onStep = [&] {
      if (app.steps.size() == at) throw std::runtime_error("of the host");
    };
    EXPECT_THROW(road.Run(), std::runtime_error) << at;
    EXPECT_EQ(app.TemporaryFiles(), 0U) << at;
    EXPECT_FALSE(road.t.hiloSalva.EstaEnMarcha());
  }
}

TEST_P(EveryRun, ReportsAtItsLevelAndClosesIt) {
  ListeningApp app;
  Road road(GetParam(), Near(30));
  road.t.Mensajes(MENSAJES_FASES);
  ASSERT_EQ(road.Run(), kHecho);
  EXPECT_THAT(app.closed, ElementsAre(Pair(1, 0)));
  for (auto const& [level, message] : app.phases) EXPECT_EQ(level, 1) << message;
  EXPECT_EQ(app.lastFlags, 0);
  EXPECT_EQ(app.PhaseMessages(), GetParam() == Road::FromModel ? (std::vector<unsigned>{19020, 19021, 19029})
                                                               : (std::vector<unsigned>{19020, 19021, 19020, 19029}));
}

TEST(Run, PutsEntitiesInASpatialOrderAndAnUpdateDoesNot) {
  const QuietApp app;
  const auto far = [] {
    CDibujo<int> drawing;
    drawing.Inserta(test::CloudAt({{100'000, 100'000}, {100'010, 100'003}}, L"far"));
    drawing.Inserta(test::CloudAt({{0, 0}, {7, 3}}, L"near"));
    return drawing;
  };
  CTIN model(0, 0, CDataSemilla());
  CDibujo<int> sorted = far(), kept = far(), extra = DrawingAt({{5, 8}});
  OpenTriangulation t;
  ASSERT_EQ(t.Run(sorted, model, 0, nullptr, false, nullptr, nullptr, nullptr), kHecho);
  EXPECT_EQ(sorted[0].GetCodigo(), CString(L"near"));
  ASSERT_EQ(t.RunActualiza(kept, model, 0, extra, 0, nullptr, false, nullptr), kHecho);
  EXPECT_EQ(kept[0].GetCodigo(), CString(L"far"));
  EXPECT_THAT(NumbersOf(kept[0]), ElementsAre(1, 2));
}

TEST(Run, NumbersOfAnEarlierRunAreForgotten) {
  const QuietApp app;
  CDataTriangulacion low;
  low.zMax = 1;
  CDibujo<int> drawing = DrawingAt({{0, 0}, {70, 3}, {5, 70}, {30, 30, 500}}), extra = DrawingAt({{9, 9, 500}});
  drawing[0].PunteroAPunto(3)->num = extra[0].PunteroAPunto(0)->num = 4'000'000;
  CTIN model(0, 0, CDataSemilla());
  OpenTriangulation t(low);
  ASSERT_EQ(t.RunActualiza(drawing, model, 0, extra, 0, nullptr, false, nullptr), kHecho);
  EXPECT_EQ(drawing[0].Punto(3).num, 0);
  EXPECT_EQ(extra[0].Punto(0).num, 0);
  drawing[0].PunteroAPunto(3)->num = 4'000'000;
  std::vector<CDibujo<int>*> others{&extra};
  extra[0].PunteroAPunto(0)->num = 4'000'000;
  ASSERT_EQ(t.Run(drawing, model, 0, &others, false, nullptr, nullptr, nullptr), kHecho);
  EXPECT_EQ(drawing[0].Punto(3).num, 0);
  EXPECT_EQ(extra[0].Punto(0).num, 0);
  EXPECT_EQ(model.puntos.size(), 3U);
}

TEST(Run, EmptiesItsDrawingsOnlyWhenAskedAndDone) {
  const QuietApp app;
  CTIN model(0, 0, CDataSemilla());
  OpenTriangulation t;
  CDibujo<int> drawing = DrawingOf(Near(40));
  std::vector<CDibujo<int>*> others{new CDibujo<int>(DrawingAt({{50'000, 50'000}, {50'010, 50'007}}))};
  {
    FaultGuard guard;
    guard.Refuse(EOperacion::Escribe);
    EXPECT_EQ(t.Run(drawing, model, 0, &others, true, nullptr, nullptr, nullptr), kFicheroInaccesible);
    EXPECT_EQ(drawing.Cantidad(), 1U);
    EXPECT_NE(others[0], nullptr);
  }
  EXPECT_EQ(t.Run(drawing, model, 0, &others, true, nullptr, nullptr, nullptr), kHecho);
  EXPECT_EQ(drawing.Cantidad(), 0U);
  EXPECT_THAT(others, ElementsAre(nullptr));
  EXPECT_EQ(model.puntos.size(), 42U);
  drawing = DrawingOf(Near(40));
  EXPECT_EQ(t.Run(drawing, model, 0, &others, false, nullptr, nullptr, nullptr), kHecho)
      << "null drawings are passed over";
  EXPECT_EQ(drawing.Cantidad(), 1U);
  EXPECT_EQ(model.puntos.size(), 40U);
}

/// A drawing that writes down when it goes.
class Mortal : public CDibujo<int> {
 public:
  Mortal(CDibujo<int> const& drawing, std::function<void()> atEnd) : CDibujo<int>(drawing), die(std::move(atEnd)) {}
  ~Mortal() override { die(); }
  using CDibujo<int>::operator=;

 private:
  std::function<void()> die;
};

TEST(Run, AFurtherDrawingGoesBeforeThePointsOfTheNextOneAreTaken) {
  ListeningApp app;
  CDibujo<int> drawing = DrawingOf(Near(40));
  std::vector<unsigned long long> registered;
  const auto note = [&] { registered.push_back(app.steps.empty() ? 0 : app.steps.back().value); };
  std::vector<CDibujo<int>*> others;
  for (int i = 0; i < 3; ++i) {
    const int x = 50'000 + 10 * i;
    others.push_back(new Mortal(DrawingAt({{x, 50'000}, {x + 3, 50'007}, {x + 1, 50'002}}), note));
  }
  CTIN model(0, 0, CDataSemilla());
  OpenTriangulation t;
  ASSERT_EQ(t.Run(drawing, model, 0, &others, true, nullptr, nullptr, nullptr), kHecho);
  EXPECT_THAT(registered, ElementsAre(43U, 46U, 49U));
  EXPECT_THAT(others, ElementsAre(nullptr, nullptr, nullptr));
}

TEST(Run, FurtherDrawingsThatWereNotTakenWhenItIsCancelledStay) {
  ListeningApp app;
  CDibujo<int> drawing = DrawingOf(Near(40));
  int gone = 0;
  std::vector<CDibujo<int>*> others;
  for (int i = 0; i < 3; ++i) {
    const int x = 50'000 + 10 * i;
    others.push_back(new Mortal(DrawingAt({{x, 50'000}, {x + 3, 50'007}, {x + 1, 50'002}}), [&] { ++gone; }));
  }
  app.onStep = [&] {
    if (gone == 1) app.cancelAt = static_cast<int>(app.steps.size());
  };
  CTIN model(0, 0, CDataSemilla());
  OpenTriangulation t;
  EXPECT_EQ(t.Run(drawing, model, 0, &others, true, nullptr, nullptr, nullptr), kCancelado);
  EXPECT_EQ(gone, 1);
  EXPECT_THAT(others, ElementsAre(nullptr, NotNull(), NotNull()));
  delete others[1];
  delete others[2];
}

TEST(Run, TheModelIsTheSameWhetherFurtherDrawingsGoOrStay) {
  const QuietApp app(2);
  const std::vector<support::Point> cloud = Scatter(30'000);
  const std::size_t third = cloud.size() / 3;
  const auto part = [&](std::size_t i) {
    return DrawingOf({cloud.begin() + static_cast<std::ptrdiff_t>(i * third),
                      cloud.begin() + static_cast<std::ptrdiff_t>((i + 1) * third)});
  };
  std::string described[2];
  for (const bool go : {false, true}) {
    CDibujo<int> drawing = part(0);
    std::vector<CDibujo<int>*> others{new CDibujo<int>(part(1)), nullptr, new CDibujo<int>(part(2))};
    CTIN model(0, 0, CDataSemilla());
    OpenTriangulation t;
    ASSERT_EQ(t.Run(drawing, model, 0, &others, go, nullptr, nullptr, nullptr), kHecho);
    described[go ? 1 : 0] = Described(model);
    for (CDibujo<int>* other : others) delete other;
  }
  EXPECT_TRUE(described[0] == described[1]) << "they are long";
}

TEST(Run, FiltersByLengthHeightAndIntensity) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingAt({{0, 0}, {100, 7}, {3, 90}, {110, 95, 900}, {-90, 50}});
  drawing[0].PunteroAPunto(4)->intensidad = 900;
  CRango small(-1, -1, 0, 100);
  CTIN model(0, 0, CDataSemilla());
  OpenTriangulation t;
  ASSERT_EQ(t.Run(drawing, model, 0, nullptr, false, nullptr, nullptr, nullptr), kHecho);
  const std::uint64_t all = model.Cantidad();
  ASSERT_EQ(t.Run(drawing, model, 0, nullptr, false, nullptr, &small, nullptr), kHecho);
  EXPECT_GT(t.Resumen().porAltura, 0U);
  EXPECT_EQ(model.Cantidad(), all - t.Resumen().porAltura);
  ASSERT_EQ(t.Run(drawing, model, 0, nullptr, false, nullptr, nullptr, &small), kHecho);
  EXPECT_GT(t.Resumen().porIntensidad, 0U);
  EXPECT_EQ(model.Cantidad(), all - t.Resumen().porIntensidad);
  ASSERT_EQ(t.Run(drawing, model, 1.25, nullptr, false, nullptr, nullptr, nullptr), kHecho);
  EXPECT_GT(t.Resumen().porLongitud, 0U) << "in metres, of which each is a hundred scaled units";
  EXPECT_EQ(model.Cantidad(), all - t.Resumen().porLongitud);
}

/// A flat square, and points added above it and below it.
class RunActualiza : public testing::Test {
 protected:
  std::vector<int> Heights(double tolerance) {
    CDibujo<int> drawing = DrawingAt({{0, 0}, {1'000, 7}, {13, 1'000}, {1'010, 1'020}, {500, 490}});
    CDibujo<int> extra = DrawingAt({{700, 210, 21}, {300, 710, 20}, {200, 310, 19}, {810, 620, -90'000}});
    EXPECT_EQ(t.RunActualiza(drawing, model, 0, extra, tolerance, nullptr, false, nullptr), kHecho);
    std::vector<int> heights;
    for (int i = 0; i < 4; ++i) {
      if (extra[0].Punto(i).num != 0) heights.push_back(extra[0].Punto(i).z);
    }
    EXPECT_EQ(model.puntos.size(), 5 + heights.size());
    return heights;
  }

  const QuietApp app;
  OpenTriangulation t;
  CTIN model{0, 0, CDataSemilla()};
};

TEST_F(RunActualiza, AToleranceOfZeroLeavesOutNothing) {
  EXPECT_THAT(Heights(0), ElementsAre(21, 20, 19, -90'000));
  EXPECT_THAT(Heights(0.009), ElementsAre(21, 20, 19, -90'000)) << "less than a scaled unit is zero";
}

TEST_F(RunActualiza, TheToleranceIsInMetresCutToScaledUnits) {
  EXPECT_THAT(Heights(0.2), ElementsAre(20, 19, -90'000));
  EXPECT_THAT(Heights(0.199), ElementsAre(19, -90'000));
  EXPECT_THAT(Heights(0.01), ElementsAre(-90'000));
  EXPECT_EQ(t.Resumen().rechazados, 3U);
}

TEST_F(RunActualiza, EmptyingSparesTheAddedDrawing) {
  CDibujo<int> drawing = DrawingOf(Near(20)), extra = DrawingAt({{5, 8}});
  ASSERT_EQ(t.RunActualiza(drawing, model, 0, extra, 0, nullptr, true, nullptr), kHecho);
  EXPECT_EQ(drawing.Cantidad(), 0U);
  EXPECT_EQ(extra.Cantidad(), 1U);
}

/// Steep ground, of which no point lies within a centimetre of the surface over its neighbours.
CDibujo<int> SteepGround(std::size_t n) {
  std::vector<Point> points = Near(n);
  for (std::size_t i = 0; i < points.size(); ++i) points[i].z = static_cast<int>(i * 7'919 % 10'007);
  return DrawingOf(points);
}

int LeftOut(CDibujo<int> const& drawing) {
  int count = 0;
  for (unsigned e = 0; e < drawing.Cantidad(); ++e) {
    for (const int number : NumbersOf(drawing[e])) count += number == 0 ? 1 : 0;
  }
  return count;
}

TEST(RunWithAnUpdate, KeepsAllOfItsBaseWhereAnUpdateLosesFirstPointsOfCells) {
  const QuietApp app;
  CTIN model(0, 0, CDataSemilla());
  OpenTriangulation t;
  CDibujo<int> base = SteepGround(3'000), extra = DrawingAt({{9'000, 9'000, -90'000}});
  ASSERT_EQ(t.RunActualiza(base, model, 0, extra, 0.01, nullptr, false, nullptr), kHecho);
  ASSERT_GT(LeftOut(base), 0) << "the scene has lost its point";
  ASSERT_EQ(t.Run({.dibujo = base, .extra = &extra, .tolerancia = 0.01}, model), kHecho);
  EXPECT_EQ(LeftOut(base), 0);
  EXPECT_EQ(LeftOut(extra), 0);
  EXPECT_EQ(model.puntos.size(), 3'001U);
  EXPECT_EQ(t.Resumen().aceptados, 3'001U);
  EXPECT_EQ(t.Resumen().rechazados, 0U);
  EXPECT_EQ(t.Resumen().duplicados, 0U);
}

TEST(RunWithAnUpdate, KeepsTheBaseThatPassesTheFilterAndTheFurtherDrawingsToo) {
  const QuietApp app;
  CDataTriangulacion low;
  low.zMax = 60;  // metres, of a hundred units
  CTIN model(0, 0, CDataSemilla());
  OpenTriangulation t(low);
  CDibujo<int> base = SteepGround(1'000), further = SteepGround(1'000);
  further[0].Mover(30'000, 0, 0);
  std::vector<CDibujo<int>*> others{&further};
  std::size_t admitted = 0;
  for (CCoor3D<int> const& p : base[0].Puntos()) admitted += p.z <= 6'000 ? 2 : 0;
  CDibujo<int> extra = DrawingAt({{9'000, 9'000, -90'000}, {8'000, 7'000, 5'999'999}});
  ASSERT_EQ(t.Run({.dibujo = base, .otros = &others, .extra = &extra, .tolerancia = 0.01}, model), kHecho);
  EXPECT_EQ(model.puntos.size(), admitted + 1);
  EXPECT_EQ(t.Resumen().aceptados, admitted + 1);
  EXPECT_EQ(t.Resumen().rechazados, 0U);
}

TEST(RunOfAJob, IsTheRunWithAnEmptyPlaceBehindItsFurtherDrawings) {
  const QuietApp app;
  CRango heights(2147483647.0, 2147483647.0, -2147483648.0, 2147483647.0);
  heights.SetValorMax(9'000);
  const auto made = [&](bool asAJob) {
    CTIN model(0, 0, CDataSemilla());
    OpenTriangulation t;
    CDibujo<int> lines = DrawingOf(Near(40)), cloud = SteepGround(3'000);
    std::vector<CDibujo<int>*> others{&cloud};
    if (!asAJob) others.push_back(nullptr);
    const int code = asAJob
                         ? t.Run({.dibujo = lines, .otros = &others, .ladoMaximo = 9'000, .alturas = &heights}, model)
                         : t.Run(lines, model, 9'000, &others, false, nullptr, &heights, nullptr);
    return std::pair(code, Described(model) + std::to_string(t.Resumen().examinados));
  };
  EXPECT_EQ(made(true), made(false));
}

TEST(RunOfAJob, TellsHowManyOfItsAddedPointsPassedTheFilterAndWentIn) {
  const QuietApp app;
  CDataTriangulacion low;
  low.zMax = 60;
  CTIN model(0, 0, CDataSemilla());
  OpenTriangulation t(low);
  CDibujo<int> base = DrawingAt({{0, 0, 500}, {1'000, 7, 500}, {13, 1'000, 500}, {1'010, 1'020, 500}});
  CDibujo<int> extra = DrawingAt({{700, 210, 505}, {300, 710, 5'000}, {200, 310, 9'000}, {0, 0, 500}});
  ASSERT_EQ(t.Run({.dibujo = base, .extra = &extra, .tolerancia = 1}, model), kHecho);
  EXPECT_EQ(t.Resumen().ofrecidos, 3U) << "all but the one above 60 metres";
  EXPECT_EQ(t.Resumen().anadidos, 1U) << "one stands too high, one on a point of the base";
  ASSERT_EQ(t.Run({.dibujo = base}, model), kHecho);
  EXPECT_EQ(t.Resumen().ofrecidos + t.Resumen().anadidos, 0U);
}

/// A flat square at 500 units, and points added to it.
class RunWithAnUpdateOnASquare : public testing::Test {
 protected:
  void Add(std::vector<At> const& places, double tolerance) {
    CDibujo<int> drawing =
        DrawingAt({{0, 0, 500}, {1'000, 7, 500}, {13, 1'000, 500}, {1'010, 1'020, 500}, {500, 490, 500}});
    extra = DrawingAt(places);
    ASSERT_EQ(t.Run({.dibujo = drawing, .extra = &extra, .tolerancia = tolerance}, model), kHecho);
  }

  const QuietApp app;
  OpenTriangulation t;
  CTIN model{0, 0, CDataSemilla()};
  CDibujo<int> extra;
};

TEST_F(RunWithAnUpdateOnASquare, LeavesOutWhatStandsAboveTheSurfaceByMoreThanTheTolerance) {
  Add({{700, 210, 521}, {300, 710, 520}, {200, 310, 519}, {810, 620, -90'000}}, 0.2);
  EXPECT_THAT(NumbersOf(extra[0]), ElementsAre(0, testing::Gt(0), testing::Gt(0), testing::Gt(0)));
  EXPECT_EQ(t.Resumen().rechazados, 1U);
  EXPECT_EQ(model.puntos.size(), 8U);
}

TEST_F(RunWithAnUpdateOnASquare, CountsARepeatedPlaceAsADuplicateWhateverItsHeight) {
  Add({{0, 0, 500}, {500, 490, 9'000}, {700, 210, 505}, {700, 210, 506}}, 0.2);
  EXPECT_EQ(t.Resumen().duplicados, 3U);
  EXPECT_EQ(t.Resumen().rechazados, 0U);
  EXPECT_EQ(model.puntos.size(), 6U);
}

TEST_F(RunWithAnUpdateOnASquare, GoesOnBeyondTheBorderAtAnyHeight) {
  Add({{3'000, 400, 700}, {-2'500, 300, 900}, {300, 710, 900}}, 0.2);
  EXPECT_EQ(t.Resumen().rechazados, 1U) << "the last one stands on the square";
  EXPECT_EQ(model.puntos.size(), 7U);
}

TEST_F(RunWithAnUpdateOnASquare, FiltersItsTrianglesLikeAnyRun) {
  CRango small(-1, -1, 0, 10);
  CDibujo<int> drawing = DrawingAt({{0, 0}, {100, 7}, {3, 90}, {110, 95, 900}, {-90, 50}});
  CDibujo<int> more = DrawingAt({{50, 40, 3}});
  ASSERT_EQ(t.Run({.dibujo = drawing, .extra = &more, .alturas = &small}, model), kHecho);
  EXPECT_GT(t.Resumen().porAltura, 0U);
  EXPECT_EQ(model.puntos.size(), 6U);
}

TEST_F(RunWithAnUpdateOnASquare, SparesTheNextRunItsOwnRules) {
  Add({{700, 210, 521}}, 0.2);
  CDibujo<int> base = SteepGround(3'000), more = DrawingAt({{9'000, 9'000, -90'000}});
  ASSERT_EQ(t.RunActualiza(base, model, 0, more, 0.01, nullptr, false, nullptr), kHecho);
  EXPECT_GT(LeftOut(base), 0);
}

/// Runs over a model.
class RunModel : public testing::Test {
 protected:
  const QuietApp app;
  OpenTriangulation t;
  CTIN model{0, 0, CDataSemilla()};
};

TEST_F(RunModel, RebuildsTheModelThatADrawingGave) {
  CDibujo<int> drawing = DrawingOf(Near(500));
  ASSERT_EQ(t.Run(drawing, model, 0, nullptr, false, nullptr, nullptr, nullptr), kHecho);
  const std::string before = Described(model);
  model.longitudMaxima = 46'000;
  ASSERT_EQ(t.Run(model, nullptr), kHecho);
  EXPECT_EQ(Described(model), before);
}

TEST_F(RunModel, TakesTheModelsOwnLimitAndPrecision) {
  model = ModelOf({{0, 0, 0}, {300, 0, 0}, {0, 400, 0}});
  model.longitudMaxima = 500;
  ASSERT_EQ(t.Run(model, nullptr), kHecho);
  EXPECT_EQ(model.Cantidad(), 1U);
  model.longitudMaxima = 499;
  ASSERT_EQ(t.Run(model, nullptr), kHecho);
  EXPECT_EQ(model.Cantidad(), 0U);
  EXPECT_EQ(model.longitudMaxima, 500);
  model.semilla.precision = 1;  // 500 are 50 metres now, and 5000 scaled units of the run
  ASSERT_EQ(t.Run(model, nullptr), kHecho);
  EXPECT_EQ(model.Cantidad(), 1U);
}

TEST_F(RunModel, ALimitThatPassesThirtyTwoBitsSquaredLeavesNoTriangle) {
  model = ModelOf({{0, 0, 0}, {300, 0, 0}, {0, 400, 0}});
  model.longitudMaxima = 46'341;
  ASSERT_EQ(t.Run(model, nullptr), kHecho);
  EXPECT_EQ(model.Cantidad(), 0U);
  EXPECT_THAT(model.Limite(), IsEmpty());
  model.longitudMaxima = 46'340;
  ASSERT_EQ(t.Run(model, nullptr), kHecho);
  EXPECT_EQ(model.Cantidad(), 1U);
}

TEST_F(RunModel, DropsTheOldTrianglesWhateverComesOut) {
  CDibujo<int> drawing = DrawingOf(Near(50));
  ASSERT_EQ(t.Run(drawing, model, 0, nullptr, false, nullptr, nullptr, nullptr), kHecho);
  ASSERT_GT(model.Cantidad(), 0U);
  FaultGuard guard;
  guard.Refuse(EOperacion::Abre);
  EXPECT_EQ(t.Run(model, nullptr), kFicheroInaccesible);
  EXPECT_EQ(model.Cantidad(), 0U);
  EXPECT_EQ(model.puntos.size(), 50U);
}

}  // namespace
}  // namespace Meseta47
