// Filling: what is counted, how space is divided, which point is a cell's last and which its first.
#include <gmock/gmock.h>

#include "planar/PhaseScenes.h"

namespace Meseta47 {

void PrintTo(CPosicion const& p, std::ostream* out) { *out << p.lista << '/' << p.entidad << '/' << p.punto; }

namespace {

using support::Point;
using test::At;
using test::Box;
using test::CloudAt;
using test::CloudOf;
using test::Codes;
using test::DrawingAt;
using test::DrawingOf;
using test::LineAt;
using test::ListeningApp;
using test::OpenTriangulation;
using test::PlanOf;
using test::QuietApp;
using test::Scatter;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

int Fill(OpenTriangulation& t, CDibujo<int> const& drawing) { return t.Rellena(drawing, nullptr, nullptr, nullptr); }

unsigned Leaves(CDivisiones2D const& cell) {
  if (cell.hijos == nullptr) return 1;
  unsigned leaves = 0;
  for (int i = 0; i < 4; ++i) leaves += Leaves(cell.hijos[i]);
  return leaves;
}

TEST(Rellena, TwoHundredPointsGiveOneCellAndOneSeed) {
  const QuietApp app;
  OpenTriangulation t;
  EXPECT_EQ(Fill(t, DrawingOf(Scatter(200))), kHecho);
  EXPECT_EQ(t.divisiones.hijos, nullptr);
  EXPECT_THAT(t.primerosPuntos, ElementsAre(CPosicion(0, 0, 0)));
  EXPECT_EQ(t.divisiones.ultimoPuntoCelda, 199);
  EXPECT_EQ(t.cantidadPuntos, 200U);
}

TEST(Rellena, TwoHundredAndOnePointsGiveFourCells) {
  const QuietApp app;
  OpenTriangulation t;
  EXPECT_EQ(Fill(t, DrawingOf(Scatter(201))), kHecho);
  EXPECT_EQ(Leaves(t.divisiones), 4U);
  EXPECT_THAT(t.primerosPuntos, SizeIs(4));
}

TEST(Rellena, SeedsStandInTheOrderOfFilling) {
  const QuietApp app;
  OpenTriangulation t;
  ASSERT_EQ(Fill(t, DrawingOf(Scatter(5'000))), kHecho);
  for (std::size_t i = 1; i < t.primerosPuntos.size(); ++i) {
    EXPECT_LT(t.primerosPuntos[i - 1].punto, t.primerosPuntos[i].punto);
  }
  EXPECT_EQ(t.primerosPuntos.size(), Leaves(t.divisiones));
}

TEST(Rellena, EmptySiblingsArePrunedWhereAllFourAreEmptyAndKeptBesideAFilledOne) {
  std::vector<Point> points{{1'000'000, 1'000'000, 0}};  // alone in the upper right quadrant
  for (int i = 0; i < 899; ++i) points.push_back({i % 30, i / 30, 0});
  const QuietApp app;
  OpenTriangulation t;
  ASSERT_EQ(Fill(t, DrawingOf(points)), kHecho);
  ASSERT_NE(t.divisiones.hijos, nullptr);
  EXPECT_EQ(t.divisiones.hijos[0].hijos, nullptr) << "nothing on the upper left";
  EXPECT_NE(t.divisiones.hijos[1].hijos, nullptr) << "one point on the upper right";
  EXPECT_NE(t.divisiones.hijos[2].hijos, nullptr) << "the rest on the lower left";
  EXPECT_EQ(t.divisiones.hijos[3].hijos, nullptr) << "nothing on the lower right";
  EXPECT_THAT(t.primerosPuntos, ElementsAre(CPosicion(0, 0, 0), CPosicion(0, 0, 1)));
  EXPECT_EQ(t.divisiones.hijos[1].hijos[1].ultimoPuntoCelda, 0);
  EXPECT_EQ(t.divisiones.hijos[1].hijos[0].ultimoPuntoCelda, -1);
}

TEST(Rellena, PointsOnTheCentreLinesBelongToTheRightAndUpperQuadrants) {
  std::vector<Point> points{{0, 0, 0}, {100, 100, 0}};
  for (int i = 0; i < 198; ++i) points.push_back({1, i % 40, i});
  points.push_back({50, 50, 0});
  const QuietApp app;
  OpenTriangulation t;
  ASSERT_EQ(Fill(t, DrawingOf(points)), kHecho);
  ASSERT_EQ(t.divisiones.centro.x, 50);
  ASSERT_EQ(t.divisiones.centro.y, 50);
  EXPECT_EQ(t.divisiones.hijos[1].ultimoPuntoCelda, 200);
}

TEST(Rellena, FewerThanThreeAcceptedPointsAreTooFew) {
  const QuietApp app;
  for (std::size_t n = 0; n < 4; ++n) {
    OpenTriangulation t;
    EXPECT_EQ(Fill(t, DrawingOf(Scatter(n))), n < 3 ? kPocosPuntos : kHecho) << n;
    EXPECT_EQ(t.cantidadPuntos, n);
  }
  CDataTriangulacion low;
  low.zMax = 10;
  OpenTriangulation t(low);
  EXPECT_EQ(Fill(t, DrawingAt({{0, 0, 0}, {10, 0, 0}, {0, 10, 1'001}, {10, 10, 1'000}})), kHecho);
  EXPECT_EQ(t.cantidadPuntos, 3U) << "10 metres are 1000 scaled units, included";
  low.zMax = 9.99;
  OpenTriangulation lower(low);
  EXPECT_EQ(Fill(lower, DrawingAt({{0, 0, 0}, {10, 0, 0}, {0, 10, 1'001}, {10, 10, 1'000}})), kPocosPuntos);
}

TEST(Rellena, ADrawingWithoutEntitiesAndAnEntityWithoutPointsAreNothing) {
  const QuietApp app;
  OpenTriangulation t;
  EXPECT_EQ(Fill(t, CDibujo<int>()), kPocosPuntos);
  CDibujo<int> drawing;
  drawing.Inserta(CloudAt({}));
  drawing.Inserta(CloudAt({{0, 0}, {10, 0}, {0, 10}}));
  EXPECT_EQ(Fill(t, drawing), kHecho);
  EXPECT_EQ(PlanOf(t.maximas), std::make_tuple(0, 0, 10, 10));
  EXPECT_THAT(t.primerosPuntos, ElementsAre(CPosicion(0, 1, 0)));
}

TEST(Rellena, BothCountersStartAnew) {
  const QuietApp app;
  OpenTriangulation t;
  t.cantidadPuntos = 17;
  t.duplicados = 18;
  EXPECT_EQ(Fill(t, DrawingOf(Scatter(2))), kPocosPuntos);
  EXPECT_EQ(t.cantidadPuntos, 2U);
  EXPECT_EQ(t.duplicados, 0U);
}

TEST(Rellena, DrawingsAreNumberedInTheOrderOfTheirPassesAndTheExtraOneComesLast) {
  const QuietApp app;
  OpenTriangulation t;
  const CDibujo<int> drawing = DrawingAt({{0, 0}});
  CDibujo<int> first = DrawingAt({{10, 0}}), second = DrawingAt({{0, 10}}), extra = DrawingAt({{10, 10}});
  std::vector<CDibujo<int>*> others{&first, &second};
  ASSERT_EQ(t.Rellena(drawing, &others, nullptr, &extra), kHecho);
  EXPECT_EQ(t.divisiones.ultimaLista, 3);
  ASSERT_EQ(t.Rellena(drawing, &others, nullptr, nullptr), kHecho);
  EXPECT_EQ(t.divisiones.ultimaLista, 2);
  CDibujo<int> rest = DrawingAt({{10, 0}, {0, 10}});
  ASSERT_EQ(t.Rellena(drawing, nullptr, nullptr, &rest), kHecho);
  EXPECT_EQ(t.divisiones.ultimaLista, 1);
  EXPECT_EQ(t.divisiones.ultimoPuntoCelda, 1);
}

TEST(Rellena, ThePointsOfAnExtraDrawingGiveNoSeedsButMayBeTheLastOfACell) {
  std::vector<Point> base{{0, 0, 0}, {1'000, 1'000, 0}}, added;
  for (int i = 0; i < 150; ++i) base.push_back({i, i * 7 % 100, 0});     // lower left
  for (int i = 0; i < 100; ++i) added.push_back({900 - i, 200 - i, 0});  // lower right: no other point
  const QuietApp app;
  OpenTriangulation t;
  CDibujo<int> extra = DrawingOf(added);
  ASSERT_EQ(t.Rellena(DrawingOf(base), nullptr, nullptr, &extra), kHecho);
  EXPECT_THAT(t.primerosPuntos, ElementsAre(CPosicion(0, 0, 0), CPosicion(0, 0, 1)));
  EXPECT_EQ(t.divisiones.hijos[3].ultimaLista, 1);
  EXPECT_EQ(t.divisiones.hijos[3].ultimoPuntoCelda, 99);
  EXPECT_EQ(t.divisiones.hijos[2].ultimaLista, 0);
  EXPECT_EQ(t.cantidadPuntos, 252U);
}

/// A cloud whose points have the classes 0, 1, 2, 3, 4 in turn.
CDibujo<int> ClassedCloud(std::size_t n) {
  CDibujo<int> drawing = DrawingOf(Scatter(n));
  drawing.tipoNube = 1;
  for (std::size_t i = 0; i < n; ++i) {
    drawing[0].SetClasificacion(CInfoClasificacion(static_cast<unsigned char>(i % 5), 0, CString()),
                                static_cast<int>(i));
  }
  return drawing;
}

TEST(Rellena, AStarAmongTheIncludedCodesOfACloudTakesEveryClassThatIsNotExcluded) {
  const QuietApp app;
  CDataTriangulacion data;
  data.incluidos = Codes({L"2", L"*"});
  data.excluidos = Codes({L"3"});
  OpenTriangulation t(data);
  EXPECT_EQ(Fill(t, ClassedCloud(100)), kHecho);
  EXPECT_EQ(t.cantidadPuntos, 80U);
  data.incluidos = Codes({L"2", L"3"});
  OpenTriangulation one(data);
  EXPECT_EQ(Fill(one, ClassedCloud(100)), kHecho);
  EXPECT_EQ(one.cantidadPuntos, 20U);
}

TEST(Rellena, AnEntityThatLiesWhollyInTheWindowIsCountedAsAWholeWhateverItsClasses) {
  const QuietApp app;
  CDataTriangulacion data;
  data.incluidos = Codes({L"2"});
  OpenTriangulation t(data);
  const CDibujo<int> cloud = ClassedCloud(205);
  EXPECT_EQ(Fill(t, cloud), kHecho);
  EXPECT_EQ(t.cantidadPuntos, 41U);
  EXPECT_NE(t.divisiones.hijos, nullptr) << "space is divided for 205 points";
  EXPECT_EQ(PlanOf(t.maximas), PlanOf(cloud.GetMaximasInt())) << "of all points";
}

TEST(Rellena, AnEntityThatSticksOutOfTheWindowIsCountedPointByPoint) {
  const QuietApp app;
  CDataTriangulacion data;
  data.incluidos = Codes({L"2"});
  CDibujo<int> cloud = ClassedCloud(205);
  data.zMax = (cloud.GetMaximasInt().Maximo.z - 1) / 100.0;
  OpenTriangulation t(data);
  EXPECT_EQ(Fill(t, cloud), kHecho);
  EXPECT_LE(t.cantidadPuntos, 41U);
  EXPECT_EQ(t.divisiones.hijos, nullptr) << "space is divided for some 41 points";
  CMaximas<int> box;
  for (CCoor3D<int> const& p : cloud[0].Puntos()) {
    if (p.clasificacion == 2 && p.z <= data.zMax * 100) box.Nuevo(p);
  }
  EXPECT_EQ(PlanOf(t.maximas), PlanOf(box));
}

TEST(Rellena, ASelectionIsCountedPointByPointAndARefusedPointAdvancesIt) {
  const QuietApp app;
  CDataTriangulacion low;
  low.zMax = 1;
  OpenTriangulation t(low);
  const CDibujo<int> drawing = DrawingAt({{0, 0}, {5, 5, 200}, {10, 0}, {0, 10}, {99, 99}});
  const std::vector<CPosicionEntidad> selection{{0, 0}, {0, 1}, {0, 2}, {0, 3}};
  EXPECT_EQ(t.Rellena(drawing, nullptr, &selection, nullptr), kHecho);
  EXPECT_EQ(t.cantidadPuntos, 3U);
  EXPECT_EQ(PlanOf(t.maximas), std::make_tuple(0, 0, 10, 10));
  EXPECT_EQ(t.divisiones.ultimoPuntoCelda, 3);
}

TEST(Rellena, AnEmptySelectionTakesNothingOfTheDrawingAndEverythingOfTheOthers) {
  const QuietApp app;
  OpenTriangulation t;
  const std::vector<CPosicionEntidad> nothing;
  CDibujo<int> other = DrawingAt({{0, 0}, {10, 0}, {0, 10}});
  std::vector<CDibujo<int>*> others{&other};
  EXPECT_EQ(t.Rellena(other, nullptr, &nothing, nullptr), kPocosPuntos);
  EXPECT_EQ(t.Rellena(other, &others, &nothing, nullptr), kHecho);
  EXPECT_EQ(t.cantidadPuntos, 3U);
}

TEST(Rellena, OnePassCountsOrRecordsAsItIsTold) {
  const QuietApp app;
  OpenTriangulation t;
  const CDibujo<int> drawing = DrawingOf(Scatter(30));
  CMaximas<int> box;
  unsigned count = 0, progress = 0;
  EXPECT_EQ(t.Rellena(4, drawing, box, count, progress, 0, true, nullptr, true), kHecho);
  EXPECT_EQ(count, 30U);
  EXPECT_EQ(t.cantidadPuntos, 0U);
  EXPECT_EQ(PlanOf(box), PlanOf(drawing.GetMaximasInt()));
  t.EstableceDivisiones(count, box);
  EXPECT_EQ(t.Rellena(4, drawing, box, count, progress, 0, false, nullptr, false), kHecho);
  EXPECT_EQ(t.cantidadPuntos, 30U);
  EXPECT_EQ(count, 30U);
  EXPECT_THAT(t.primerosPuntos, IsEmpty());
  EXPECT_EQ(t.divisiones.ultimaLista, 4);
  t.EstableceDivisiones(count, box);
  EXPECT_EQ(t.Rellena(4, drawing, box, count, progress, 0, false, nullptr, true), kHecho);
  EXPECT_THAT(t.primerosPuntos, ElementsAre(CPosicion(4, 0, 0)));
}

TEST(Rellena, ProgressRunsByEntitiesAndGoesOnFromAThirdByPoints) {
  ListeningApp app;
  OpenTriangulation t;
  CDibujo<int> drawing;
  drawing.Inserta(CloudAt({{0, 0}, {10, 0}, {0, 10}}));
  drawing.Inserta(CloudAt({{3, 3}, {7, 3}}));
  CDibujo<int> other = DrawingAt({{5, 5}});
  std::vector<CDibujo<int>*> others{&other};
  ASSERT_EQ(t.Rellena(drawing, &others, nullptr, nullptr), kHecho);
  EXPECT_THAT(app.phases, ElementsAre(testing::Pair(3, 19020U)));
  ASSERT_THAT(app.steps, SizeIs(3 + 6));
  for (std::size_t i = 0; i < 9; ++i) {
    EXPECT_EQ(app.steps[i].level, 3);
    EXPECT_EQ(app.steps[i].value, i + 1) << "3 entities are counted, and half of 6 points is where recording starts";
    EXPECT_EQ(app.steps[i].total, i < 3 ? 6U : 9U);
  }
  EXPECT_EQ(app.lastFlags, 0);
}

TEST(Rellena, IsCancelledAtAnyStepOfEitherPass) {
  CDibujo<int> drawing;
  for (int i = 0; i < 4; ++i) drawing.Inserta(CloudAt({{i, 0}, {i, 10 + i}}));
  for (int n = 1; n <= 4 + 8; ++n) {
    ListeningApp app;
    app.cancelAt = n;
    OpenTriangulation t;
    EXPECT_EQ(Fill(t, drawing), kCancelado) << "at step " << n;
    EXPECT_THAT(app.steps, SizeIs(n)) << "nothing is asked after the answer";
  }
}

TEST(Rellena, TakesThePointsOfAModelWithoutAFilter) {
  ListeningApp app;
  CDataTriangulacion nothing;
  nothing.zMax = -1'000;
  nothing.incluidos = Codes({});
  OpenTriangulation t(nothing);
  const std::vector<Point> points = Scatter(201);
  CTIN model = test::ModelOf(points);
  ASSERT_EQ(t.Rellena(model), kHecho);
  EXPECT_EQ(t.cantidadPuntos, 201U);
  EXPECT_THAT(t.primerosPuntos, SizeIs(4));
  EXPECT_EQ(t.primerosPuntos[0], CPosicion(0, 0, 0));
  for (CPosicion const& seed : t.primerosPuntos) EXPECT_EQ(seed.punto, 0U) << "a point's place is its entity";
  EXPECT_EQ(t.divisiones.ultimaEntidad, 200);
  EXPECT_EQ(t.divisiones.ultimoPuntoCelda, 0);
  EXPECT_EQ(PlanOf(t.maximas), PlanOf(DrawingOf(points).GetMaximasInt()));
  ASSERT_THAT(app.steps, SizeIs(402));
  EXPECT_EQ(app.steps.back().value, 402U);
  EXPECT_EQ(app.steps.front().total, 402U);
}

TEST(Rellena, OfAModelIsCancelledAndRefusesTooFewAsADrawing) {
  for (int n = 1; n <= 8; ++n) {
    ListeningApp app;
    app.cancelAt = n;
    CTIN model = test::ModelOf(Scatter(4));
    OpenTriangulation t;
    EXPECT_EQ(t.Rellena(model), kCancelado) << "at step " << n;
  }
  const QuietApp app;
  for (std::size_t n = 0; n < 4; ++n) {
    CTIN model = test::ModelOf(Scatter(n));
    OpenTriangulation t;
    EXPECT_EQ(t.Rellena(model), n < 3 ? kPocosPuntos : kHecho) << n;
  }
}

TEST(Rellena, OnePassOverAModelCountsOrRecords) {
  const QuietApp app;
  OpenTriangulation t;
  CTIN model = test::ModelOf(Scatter(5));
  CMaximas<int> box;
  unsigned count = 0, progress = 0;
  EXPECT_EQ(t.Rellena(2, model, box, count, progress, 0, true), kHecho);
  EXPECT_EQ(count, 5U);
  t.EstableceDivisiones(count, box);
  EXPECT_EQ(t.Rellena(2, model, box, count, progress, 0, false), kHecho);
  EXPECT_THAT(t.primerosPuntos, ElementsAre(CPosicion(2, 0, 0)));
  EXPECT_EQ(t.divisiones.ultimaLista, 2);
}

TEST(Rellena, ASetMirrorsEachCellOfThePrunedTree) {
  const QuietApp app;
  OpenTriangulation t;
  ASSERT_EQ(Fill(t, DrawingOf(Scatter(2'000))), kHecho);
  t.EstableceDivisiones(t.divisiones, t.setRaiz);
  const auto mirrors = [](auto&& self, CDivisiones2D const& cell, CSetTriangulos2D const& set) -> void {
    EXPECT_EQ(cell.setAsociado, &set);
    EXPECT_EQ(PlanOf(cell.maximas), PlanOf(set.maximas));
    ASSERT_EQ(cell.hijos == nullptr, set.hijos == nullptr);
    for (int i = 0; cell.hijos != nullptr && i < 4; ++i) self(self, cell.hijos[i], set.hijos[i]);
  };
  mirrors(mirrors, t.divisiones, t.setRaiz);
}

}  // namespace
}  // namespace Meseta47
