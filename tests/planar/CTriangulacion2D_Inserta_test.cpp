// One point into the mesh, and the points after the seeds in their order.
#include <gmock/gmock.h>

#include "planar/PhaseScenes.h"

namespace Meseta47 {
namespace {

using support::Point;
using support::Triangle;
using test::At;
using test::Box;
using test::DrawingAt;
using test::DrawingOf;
using test::ListeningApp;
using test::Living;
using test::NumbersOf;
using test::OpenTriangulation;
using test::QuietApp;
using test::Scatter;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// A program with a text of its own for each of the two refusals.
class TextApp : public ListeningApp {
 public:
  [[nodiscard]] CString TextoMensaje(unsigned id) const override {
    return id == 12105 ? L"nowhere %d %d %d %d" : id == 12106 ? L"no start %d %d %d %d" : L"";
  }
  /// The only message there was; its level and its last argument are always these.
  [[nodiscard]] std::string OnlyMessage() const {
    EXPECT_EQ(messages.size(), 1U);
    if (messages.size() != 1) return "";
    EXPECT_EQ(std::get<0>(messages[0]), 3);
    EXPECT_EQ(std::get<2>(messages[0]), 1);
    return std::get<1>(messages[0]).Utf8();
  }
};

/// A frame of a hundred units around the origin, undivided.
//
//    -2 +---------+ -3
//       |       / |
//       |     /   |
//       |   /     |
//    -1 +---------+ -4
class TriangulaPunto : public testing::Test {
 protected:
  TriangulaPunto() {
    t.EstableceDivisiones(1, Box(-50, -50, 50, 50));
    test::Frame(t, -50, -50, 50, 50);
  }

  bool Insert(CCoor3D<int>& p, int tolerance = 0, bool save = false, bool cut = false) {
    return t.TriangulaPunto(&p, 0, 0, place++, a, b, save, cut, tolerance, nullptr, nullptr, nullptr, nullptr, nullptr);
  }

  OpenTriangulation t;
  unsigned a = 0, b = 0, place = 0;
  std::vector<Triangle> frame{{-4, -1, -3}, {-3, -1, -2}};
};

TEST_F(TriangulaPunto, NumbersThePointInItsStoreAndFansItToTheCavity) {
  const QuietApp app;
  CCoor3D<int> p(10, 0, 0, 0);
  EXPECT_TRUE(Insert(p));
  EXPECT_EQ(p.num, 1);
  EXPECT_EQ(t.cantidadPuntos, 1U);
  EXPECT_EQ(Living(t), (support::canonicalSet({{1, -1, -2}, {1, -2, -3}, {1, -3, -4}, {1, -4, -1}})));
}

TEST_F(TriangulaPunto, ThePointAtAVertexInPlanGetsNumberZeroWhateverItsHeight) {
  const QuietApp app;
  CCoor3D<int> first(10, 0, 5, 0), same(10, 0, 5, 0), above(10, 0, 500, 0), other(0, 20, 7, 0);
  ASSERT_TRUE(Insert(first));
  EXPECT_TRUE(Insert(same));
  EXPECT_TRUE(Insert(above));
  EXPECT_EQ(same.num, 0);
  EXPECT_EQ(above.num, 0);
  EXPECT_EQ(t.duplicados, 2U);
  EXPECT_EQ(t.cantidadPuntos, 3U) << "a number given is not given again";
  EXPECT_TRUE(Insert(other));
  EXPECT_EQ(other.num, 4);
  EXPECT_EQ(first.num, 1);
  CSetTriangulos2D const& mesh = t.setRaiz;
  for (CTriangulo2D const* triangle = mesh.primero; triangle != nullptr; triangle = triangle->Sig()) {
    for (CCoor3D<int> const* v : {triangle->P1(), triangle->P2(), triangle->P3()}) {
      EXPECT_TRUE(v->num != 1 || v == &first) << "the earlier point and its height stay";
      EXPECT_NE(v->num, 0);
    }
  }
}

TEST_F(TriangulaPunto, APointOnTheSideOfTwoTrianglesMakesFour) {
  const QuietApp app;
  CCoor3D<int> p(20, 20, 0, 0);
  ASSERT_EQ(Living(t), support::canonicalSet(frame));
  EXPECT_TRUE(Insert(p));
  EXPECT_EQ(Living(t), (support::canonicalSet({{1, -1, -2}, {1, -2, -3}, {1, -3, -4}, {1, -4, -1}})));
  EXPECT_EQ(t.setRaiz.Cantidad(), 4U);
}

TEST_F(TriangulaPunto, APointOnTheCircleOfANeighbourCondemnsThatOneToo) {
  const QuietApp app;
  CCoor3D<int> centre(0, 0, 0, 0), p(-30, 10, 0, 0);  // 50 units from (0, 50), where the upper triangle has its centre
  ASSERT_TRUE(Insert(centre));
  ASSERT_TRUE(Insert(p));
  EXPECT_EQ(Living(t),
            (support::canonicalSet({{2, -1, -2}, {2, -2, -3}, {2, -3, 1}, {2, 1, -1}, {1, -3, -4}, {1, -4, -1}})));
}

TEST_F(TriangulaPunto, EveryTriangleTurnsAsTheFrameDoes) {
  const QuietApp app;
  std::vector<CCoor3D<int>> points;
  for (int i = 0; i < 200; ++i) points.emplace_back(i * 37 % 97 - 48, i * 53 % 89 - 44, 0, 0);
  for (CCoor3D<int>& p : points) ASSERT_TRUE(Insert(p));
  const auto twiceArea = [](CTriangulo2D const& v) {
    const long long ux = v.P2()->x - v.P1()->x, uy = v.P2()->y - v.P1()->y, wx = v.P3()->x - v.P1()->x,
                    wy = v.P3()->y - v.P1()->y;
    return ux * wy - uy * wx;
  };
  long long sum = 0;
  const auto add = [&](auto&& self, CSetTriangulos2D const& set) -> void {
    for (CTriangulo2D const* v = set.primero; v != nullptr; v = v->Sig()) {
      EXPECT_LT(twiceArea(*v), 0);
      sum += twiceArea(*v);
    }
    for (int i = 0; set.hijos != nullptr && i < 4; ++i) self(self, set.hijos[i]);
  };
  add(add, t.setRaiz);
  EXPECT_EQ(sum, -2 * 100 * 100);
}

TEST_F(TriangulaPunto, AToleranceLeavesOutWhatLiesHigherAboveTheSurface) {
  const QuietApp app;
  CCoor3D<int> ground(10, 0, 0, 0), at(20, 5, 30, 0), above(-20, 5, 31, 0), below(0, -20, -1'000'000, 0);
  ASSERT_TRUE(Insert(ground));
  EXPECT_TRUE(Insert(at, 30));
  EXPECT_EQ(at.num, 2) << "at the tolerance is within it";
  const std::vector<Triangle> before = Living(t);
  EXPECT_TRUE(Insert(above, 30));
  EXPECT_EQ(above.num, 0);
  EXPECT_EQ(t.duplicados, 0U);
  EXPECT_EQ(t.Resumen().rechazados, 1U);
  EXPECT_EQ(Living(t), before);
  EXPECT_TRUE(Insert(below, 30));
  EXPECT_EQ(below.num, 4);
  EXPECT_NE(Living(t), before);
}

TEST_F(TriangulaPunto, WithoutAToleranceNoHeightIsTooHigh) {
  const QuietApp app;
  CCoor3D<int> p(10, 0, 2'000'000'000, 0);
  EXPECT_TRUE(Insert(p, 0));
  EXPECT_EQ(p.num, 1);
}

TEST_F(TriangulaPunto, APointThatNoCircleHoldsIsToldToThePersonAndEndsTheWork) {
  TextApp app;
  CCoor3D<int> p(1'000, 2'000, 3, 0);
  EXPECT_FALSE(Insert(p));
  EXPECT_EQ(app.OnlyMessage(), "nowhere 1 1000 2000 3");
  EXPECT_EQ(p.num, 1);
  EXPECT_EQ(Living(t), support::canonicalSet(frame));
}

TEST_F(TriangulaPunto, APointThatNoCircleHoldsIsDroppedInSilenceWhereNobodyListens) {
  CCoor3D<int> p(1'000, 2'000, 3, 0);
  {
    const QuietApp app;
    EXPECT_TRUE(Insert(p));
    EXPECT_EQ(p.num, 1) << "it keeps its number";
  }
  TextApp app;
  EXPECT_TRUE(Insert(p, 10)) << "a tolerance may be the cause";
  EXPECT_EQ(p.num, 2);
  t.Mensajes(MENSAJES_NINGUNO);
  EXPECT_TRUE(Insert(p));
  EXPECT_THAT(app.messages, IsEmpty());
  EXPECT_EQ(Living(t), support::canonicalSet(frame));
  EXPECT_EQ(t.Resumen().rechazados, 3U);
}

TEST_F(TriangulaPunto, AMeshWithoutATriangleToStartFromIsToldWithItsOwnText) {
  TextApp app;
  OpenTriangulation empty;
  empty.EstableceDivisiones(1, Box(0, 0, 10, 10));
  empty.EstableceDivisiones(empty.divisiones, empty.setRaiz);
  CCoor3D<int> p(4, 5, 6, 0);
  EXPECT_FALSE(empty.TriangulaPunto(&p, 0, 0, 0, a, b, false, false, 0, nullptr, nullptr, nullptr, nullptr, nullptr));
  EXPECT_EQ(app.OnlyMessage(), "no start 1 4 5 6");
}

TEST_F(TriangulaPunto, WithoutAnOpenSetItFailsWithoutAMessage) {
  TextApp app;
  CCoor3D<int> p(4, 5, 6, 0);
  t.Salva(&t.divisiones);
  EXPECT_FALSE(Insert(p));
  OpenTriangulation unmirrored;
  unmirrored.EstableceDivisiones(1, Box(0, 0, 10, 10));
  EXPECT_FALSE(
      unmirrored.TriangulaPunto(&p, 0, 0, 0, a, b, false, false, 0, nullptr, nullptr, nullptr, nullptr, nullptr));
  EXPECT_THAT(app.messages, IsEmpty());
}

TEST_F(TriangulaPunto, TheLastPointOfACellClosesItsSetWhenSavingOrCutting) {
  const QuietApp app;
  for (const bool save : {false, true}) {
    for (const bool cut : {false, true}) {
      OpenTriangulation one;
      CCoor3D<int> p(0, 1, 0, 0), q(10, 0, 0, 0);
      one.EstableceDivisiones(1, Box(-50, -50, 50, 50));
      one.ColocaIndices(p, 0, 0, 0, true);
      one.ColocaIndices(q, 0, 0, 1, true);
      test::Frame(one, -50, -50, 50, 50);
      one.TriangulaPunto(&p, 0, 0, 0, a, b, save, cut, 0, nullptr, nullptr, nullptr, nullptr, nullptr);
      EXPECT_THAT(one.setsCerrados.Entradas(), IsEmpty());
      one.TriangulaPunto(&q, 0, 0, 1, a, b, save, cut, 0, nullptr, nullptr, nullptr, nullptr, nullptr);
      EXPECT_THAT(one.setsCerrados.Entradas(), SizeIs(save || cut ? 1 : 0));
      EXPECT_EQ(one.setRaiz.cerrado, save || cut);
    }
  }
}

TEST_F(TriangulaPunto, ADuplicateOrARefusedLastPointClosesNothing) {
  const QuietApp app;
  CCoor3D<int> p(0, 1, 0, 0), same(0, 1, 0, 0), high(20, 0, 90, 0);
  t.ColocaIndices(p, 0, 0, 0, true);
  t.ColocaIndices(same, 0, 0, 1, true);
  EXPECT_TRUE(Insert(p, 0, true));
  EXPECT_TRUE(Insert(same, 0, true));
  EXPECT_EQ(same.num, 0);
  t.ColocaIndices(high, 0, 0, 2, true);
  EXPECT_TRUE(Insert(high, 10, true));
  EXPECT_EQ(high.num, 0);
  EXPECT_THAT(t.setsCerrados.Entradas(), IsEmpty());
  EXPECT_FALSE(t.setRaiz.cerrado);
}

TEST_F(TriangulaPunto, ClassAndIntensityGoByTheNumberWhenBothSidesAreGiven) {
  const QuietApp app;
  std::vector<CInfoClasificacion> infos(2);
  std::vector<unsigned short> intensities(2);
  CInfoClasificacion info(9, 1.5, L"nine");
  unsigned short intensity = 77;
  CCoor3D<int> p(0, 1, 0, 0), q(10, 0, 0, 0);
  t.TriangulaPunto(&p, 0, 0, 0, a, b, false, false, 0, nullptr, &infos, &intensity, nullptr, nullptr);
  t.TriangulaPunto(&q, 0, 0, 1, a, b, false, false, 0, &info, &infos, &intensity, &intensities, nullptr);
  EXPECT_THAT(infos, ElementsAre(CInfoClasificacion(), info));
  EXPECT_THAT(intensities, ElementsAre(0, 77));
}

TEST_F(TriangulaPunto, TheCountsAreThoseOfTheLastPoint) {
  const QuietApp app;
  CCoor3D<int> p(0, 1, 0, 0), q(10, 0, 0, 0);
  a = b = 1'000;
  Insert(p);
  const unsigned first = a + b;
  EXPECT_LT(first, 10U);
  Insert(q);
  EXPECT_EQ(t.Resumen().examinados, first + a + b);
}

TEST_F(TriangulaPunto, LocatingACopyNumbersTheCopyAlone) {
  CCoor3D<int> p(1, 2, 3, 40);
  t.ColocaIndices(p, 0, 5, 6, true);
  CDivisiones2D* cell = nullptr;
  EXPECT_TRUE(t.Inserta(std::as_const(p), nullptr, 0, 5, 6, &cell));
  EXPECT_EQ(cell, &t.divisiones);
  EXPECT_EQ(p.num, 40);
  EXPECT_EQ(t.cantidadPuntos, 1U);
  EXPECT_FALSE(t.Inserta(&p, 0, 5, 7, &cell));
  EXPECT_EQ(p.num, 2);
}

/// A filled drawing, its frame built, its seeds inserted.
class InsertaRestoPuntos : public testing::Test {
 protected:
  void Prepare(CDibujo<int>& drawing, std::vector<CPosicionEntidad> const* selection = nullptr) {
    t.Mensajes(MENSAJES_NINGUNO);
    ASSERT_EQ(t.Rellena(drawing, nullptr, selection, nullptr), kHecho);
    total = t.cantidadPuntos;
    BuildFrame();
    for (CPosicion const& seed : t.primerosPuntos) {
      auto* p = drawing[seed.entidad].PunteroAPunto(static_cast<int>(seed.punto));
      t.TriangulaPunto(p, 0, seed.entidad, seed.punto, a, b, false, false, 0, nullptr, nullptr, nullptr, nullptr,
                       nullptr);
    }
    a = b = 0;
    t.Mensajes(MENSAJES_NORMALES);
  }
  void BuildFrame() {
    std::vector<Point> ends;
    ends.push_back({t.maximas.Minimo.x, t.maximas.Minimo.y, 0});
    ends.push_back({t.maximas.Maximo.x, t.maximas.Maximo.y, 0});
    const std::vector<Point> corners = support::frameAround(ends);
    test::Frame(t, corners[0].x, corners[0].y, corners[2].x, corners[2].y);
    t.cantidadPuntos = 0;
  }
  int Insert(CDibujo<int>& drawing, unsigned mode = 0, std::vector<CPosicionEntidad> const* selection = nullptr,
             std::vector<CInfoClasificacion>* infos = nullptr, std::vector<unsigned short>* intensities = nullptr) {
    return t.InsertaRestoPuntos(0, drawing, step, total, a, b, mode, selection, infos, intensities, 0, nullptr);
  }

  ListeningApp app;
  OpenTriangulation t;
  int step = 0;
  unsigned total = 0, a = 0, b = 0;
};

TEST_F(InsertaRestoPuntos, PassesOverTheSeedsInStepAndReportsEveryOther) {
  CDibujo<int> drawing = DrawingOf(Scatter(201));
  Prepare(drawing);
  ASSERT_THAT(t.primerosPuntos, SizeIs(4));
  step = 4;
  EXPECT_EQ(Insert(drawing), kHecho);
  EXPECT_EQ(step, 201);
  ASSERT_THAT(app.steps, SizeIs(197));
  EXPECT_EQ(app.steps.front().value, 5U);
  EXPECT_EQ(app.steps.back().value, 201U);
  EXPECT_EQ(app.steps.back().total, 201U);
  EXPECT_EQ(app.steps.back().level, 3);
  for (const int number : NumbersOf(drawing[0])) EXPECT_GT(number, 0);
  EXPECT_EQ(NumbersOf(drawing[0])[0], 1) << "the first point is the first seed";
}

TEST_F(InsertaRestoPuntos, AddsUpTheCountsOfItsPoints) {
  CDibujo<int> drawing = DrawingOf(Scatter(100));
  Prepare(drawing);
  const std::uint64_t before = t.Resumen().examinados;
  a = 1'000;
  b = 2'000;
  Insert(drawing);
  EXPECT_EQ(a + b - 3'000, t.Resumen().examinados - before);
}

TEST_F(InsertaRestoPuntos, LeavesOutWhatTheFillingLeftOut) {
  CDibujo<int> drawing = DrawingAt({{0, 0}, {10, 0}, {0, 10}, {4, 5, 1'000}, {3, 3}});
  t.datos.zMax = 1;
  Prepare(drawing);
  EXPECT_EQ(Insert(drawing), kHecho);
  EXPECT_THAT(NumbersOf(drawing[0]), ElementsAre(1, 2, 3, 0, 4));
}

TEST_F(InsertaRestoPuntos, EndsWithItsSelection) {
  CDibujo<int> drawing = DrawingOf(Scatter(20));
  const std::vector<CPosicionEntidad> selection{{0, 2}, {0, 5}, {0, 7}, {0, 11}};
  Prepare(drawing, &selection);
  EXPECT_EQ(Insert(drawing, 0, &selection), kHecho);
  std::vector<int> in;
  for (int i = 0; i < 20; ++i) {
    if (drawing[0].Punto(i).num != 0) in.push_back(i);
  }
  EXPECT_THAT(in, ElementsAre(2, 5, 7, 11));
  EXPECT_EQ(step, 3);
}

TEST_F(InsertaRestoPuntos, IsCancelledAtAnyStep) {
  for (int n = 1; n <= 9; ++n) {
    CDibujo<int> drawing = DrawingOf(Scatter(10));
    Prepare(drawing);
    app.steps.clear();
    app.cancelAt = n;
    EXPECT_EQ(Insert(drawing), kCancelado);
    EXPECT_EQ(drawing[0].Punto(n).num, 0) << "the point of step " << n << " does not go in";
    EXPECT_NE(drawing[0].Punto(n - 1).num, 0);
    t.setRaiz.Vacia();
  }
}

TEST_F(InsertaRestoPuntos, APointThatCannotGoInEndsTheListQuietly) {
  CDibujo<int> drawing = DrawingOf(Scatter(10));
  Prepare(drawing);
  drawing[0].PunteroAPunto(4)->x = 2'000'000'000;
  EXPECT_EQ(Insert(drawing), kHecho);
  EXPECT_THAT(app.messages, SizeIs(1));
  EXPECT_THAT(NumbersOf(drawing[0]), ElementsAre(1, 2, 3, 4, 5, 0, 0, 0, 0, 0));
  EXPECT_EQ(t.setRaiz.Cantidad(), 2U * 4 + 2) << "the fifth has a number and no triangle";
}

TEST_F(InsertaRestoPuntos, ModeOneClosesCellsAsTheOthersDo) {
  for (const unsigned mode : {0U, 1U, 3U, 4U, 9U}) {
    CDibujo<int> drawing = DrawingOf(Scatter(10));
    Prepare(drawing);
    EXPECT_EQ(Insert(drawing, mode), kHecho);
    EXPECT_THAT(t.setsCerrados.Entradas(), ElementsAre(&t.setRaiz)) << mode;
    t.setsCerrados.Prepara(0);
    t.setRaiz.Vacia();
  }
}

TEST_F(InsertaRestoPuntos, OnlyModeTwoTakesClassesAndIntensities) {
  for (const unsigned mode : {0U, 2U}) {
    CDibujo<int> drawing = DrawingOf(Scatter(10));
    drawing[0].PunteroAPunto(6)->clasificacion = 5;
    drawing[0].PunteroAPunto(6)->intensidad = 300;
    Prepare(drawing);
    std::vector<CInfoClasificacion> infos(10);
    std::vector<unsigned short> intensities(10);
    EXPECT_EQ(Insert(drawing, mode, nullptr, &infos, &intensities), kHecho);
    EXPECT_EQ(infos[6].GetTipo(), mode == 2 ? 5 : 0);
    EXPECT_EQ(intensities[6], mode == 2 ? 300 : 0);
    t.setRaiz.Vacia();
  }
}

TEST_F(InsertaRestoPuntos, OfAModelSkipsItsSeedsAndSavesEveryCell) {
  CTIN model = test::ModelOf(Scatter(201));
  t.Mensajes(MENSAJES_NINGUNO);
  ASSERT_EQ(t.Rellena(model), kHecho);
  BuildFrame();
  for (CPosicion const& seed : t.primerosPuntos) {
    t.TriangulaPunto(model.puntos.at(seed.entidad), 0, seed.entidad, 0, a, b, false, false, 0, nullptr, nullptr,
                     nullptr, nullptr, nullptr);
  }
  t.Mensajes(MENSAJES_NORMALES);
  step = 4;
  EXPECT_EQ(t.InsertaRestoPuntos(model, step, 201, a, b, nullptr), kHecho);
  EXPECT_EQ(step, 201);
  EXPECT_THAT(app.steps, SizeIs(197));
  EXPECT_THAT(t.setsCerrados.Entradas(), SizeIs(testing::Ge(1)))
      << "the run's last point closes the root and whatever is open in it";
  EXPECT_EQ(t.setsCerrados.Entradas().back(), &t.setRaiz);
  for (CPuntoTIN const& p : model.puntos) EXPECT_GT(p.num, 0);
}

TEST_F(InsertaRestoPuntos, OfAModelIsCancelledAndEndsAtAPointThatCannotGoIn) {
  for (const bool cancels : {true, false}) {
    CTIN model = test::ModelOf(Scatter(6));
    t.Mensajes(MENSAJES_NINGUNO);
    ASSERT_EQ(t.Rellena(model), kHecho);
    BuildFrame();
    t.TriangulaPunto(model.puntos.at(0), 0, 0, 0, a, b, false, false, 0, nullptr, nullptr, nullptr, nullptr, nullptr);
    t.Mensajes(MENSAJES_NORMALES);
    app.steps.clear();
    app.cancelAt = cancels ? 3 : 0;
    if (!cancels) model.puntos[3].x = 2'000'000'000;
    EXPECT_EQ(t.InsertaRestoPuntos(model, step, 6, a, b, nullptr), cancels ? kCancelado : kHecho);
    EXPECT_EQ(model.puntos[2].num, 3);
    EXPECT_EQ(model.puntos[3].num, cancels ? 0 : 4);
    EXPECT_EQ(model.puntos[4].num, 0);
  }
}

}  // namespace
}  // namespace Meseta47
