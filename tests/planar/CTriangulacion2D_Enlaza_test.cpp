// The linking pass: frame, file, seeds, queue, and what stays after each way out.
#include <filesystem>
#include <gmock/gmock.h>
#include <stdexcept>

#include "SystemNames.h"
#include "planar/PhaseScenes.h"
#include "support/FaultGuard.h"
#include "support/ReferenceDelaunay.h"

namespace Meseta47 {
namespace {

using support::Point;
using support::Triangle;
using test::DrawingAt;
using test::DrawingOf;
using test::ListeningApp;
using test::NumbersOf;
using test::OpenTriangulation;
using test::QuietApp;
using test::RecordsOf;
using test::Scatter;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

const std::vector<Point> kThree{{0, 0, 0}, {100, 7, 0}, {13, 100, 0}};
CDibujo<int> Three() { return DrawingOf(kThree); }

std::vector<Triangle> Spilled(OpenTriangulation& t) { return support::canonicalSet(RecordsOf(t.SpilledBytes())); }

int LinkModel(OpenTriangulation& t, CTIN& model) {
  const int code = t.Rellena(model);
  return code == kHecho ? t.EnlazaLista(model, 0, nullptr) : code;
}

TEST(EnlazaLista, ThreePointsSpillEveryTriangleOnceThoughTheRootIsQueuedTwice) {
  const QuietApp app;
  CDibujo<int> drawing = Three();
  OpenTriangulation t;
  ASSERT_EQ(t.Link(drawing), kHecho);
  EXPECT_EQ(t.divisiones.hijos, nullptr);
  EXPECT_THAT(t.setsCerrados.Entradas(), ElementsAre(&t.setRaiz, &t.setRaiz));
  EXPECT_EQ(t.SpilledBytes().size(), 8U * 12);
  EXPECT_EQ(Spilled(t), support::canonicalSet(support::referenceDelaunay(kThree).triangles));
  EXPECT_EQ(t.ficheroTemporal.Fichero()->GetLength(), 96U);
  EXPECT_EQ(t.setRaiz.Cantidad(), 0U);
  t.BorraFicheroTemporal();
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(EnlazaLista, AnExceptionOfAHostLeavesNoWorkerAtWhatHasGoneAndNoFile) {
  for (const unsigned mode : {CHiloSalvaTriangulosEnlazados::SALVA, CHiloSalvaTriangulosEnlazados::PICOS}) {
    constexpr std::size_t kPoints = 2'000;
    ListeningApp app;
    CDibujo<int> drawing = DrawingOf(Scatter(kPoints));
    OpenTriangulation t;
    app.onStep = [&app] {
      if (app.steps.size() == 3 * kPoints / 2) throw std::runtime_error("a host's own");
    };
    EXPECT_THROW(static_cast<void>(t.Link(drawing, nullptr, nullptr, 0, mode)), std::runtime_error);
    EXPECT_FALSE(t.hiloSalva.EstaEnMarcha()) << mode;
    EXPECT_EQ(app.TemporaryFiles(), 0U) << mode;
  }
}

TEST(EnlazaLista, TheFrameIsASquareWithATenthOfTheLargerExtentToSpareOnEachSide) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingAt({{0, 0}, {1'000, 100}, {500, 50}});
  OpenTriangulation t;
  ASSERT_EQ(t.Link(drawing), kHecho);
  const std::vector<std::tuple<int, int, int>> expected{
      {-100, -550, -1}, {-100, 650, -2}, {1'100, 650, -3}, {1'100, -550, -4}};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(std::make_tuple(t.esquinas[i].x, t.esquinas[i].y, t.esquinas[i].num), expected[i]);
  }
  t.BorraFicheroTemporal();
}

TEST(EnlazaLista, NumbersStartAtOneWithTheSeeds) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Scatter(201));
  OpenTriangulation t;
  ASSERT_EQ(t.Link(drawing), kHecho);
  int number = 0;
  for (CPosicion const& seed : t.primerosPuntos) {
    EXPECT_EQ(drawing[0].Punto(static_cast<int>(seed.punto)).num, ++number);
  }
  EXPECT_EQ(number, 4);
  EXPECT_EQ(t.cantidadPuntos, 201U);
  t.BorraFicheroTemporal();
}

TEST(EnlazaLista, FewerThanThreePointsAreTooFewAfterThePhaseIsAnnounced) {
  ListeningApp app;
  CDibujo<int> drawing = Three();
  CTIN model = test::ModelOf(Scatter(2));
  OpenTriangulation t;
  t.cantidadPuntos = 2;
  EXPECT_EQ(t.EnlazaLista(drawing, nullptr, nullptr, nullptr, 0, nullptr, nullptr, nullptr, nullptr, nullptr, 0,
                          nullptr, nullptr, nullptr, nullptr, nullptr),
            kPocosPuntos);
  EXPECT_EQ(t.EnlazaLista(model, 0, nullptr), kPocosPuntos);
  EXPECT_THAT(app.PhaseMessages(), ElementsAre(19021U, 19021U));
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(EnlazaLista, WithModeOneThereIsNoFile) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Scatter(300));
  OpenTriangulation t;
  EXPECT_EQ(t.Link(drawing, nullptr, nullptr, 0, 1), kHecho);
  EXPECT_FALSE(t.ficheroTemporal.EstaAbierto());
  EXPECT_EQ(app.TemporaryFiles(), 0U);
  EXPECT_EQ(t.setRaiz.Cantidad(), 0U) << "the worker has been through all sets";
}

TEST(EnlazaLista, ModeFourDoesWhatModeNoneDoes) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Scatter(700));
  OpenTriangulation plain, four;
  ASSERT_EQ(plain.Link(drawing), kHecho);
  ASSERT_EQ(four.Link(drawing, nullptr, nullptr, 0, 4), kHecho);
  EXPECT_EQ(four.SpilledBytes(), plain.SpilledBytes());
  plain.BorraFicheroTemporal();
  four.BorraFicheroTemporal();
}

TEST(EnlazaLista, ModesAboveFourStartNoWorkerAndWriteNothing) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Scatter(300));
  OpenTriangulation t;
  FaultGuard guard;
  EXPECT_EQ(t.Link(drawing, nullptr, nullptr, 0, 5), kHecho);
  EXPECT_EQ(guard.Asked(EOperacion::CreaHilo), 0);
  EXPECT_FALSE(t.hiloSalva.EstaEnMarcha());
  EXPECT_EQ(t.SpilledBytes(), "");
  EXPECT_THAT(t.setsCerrados.Entradas(), Not(IsEmpty()));
  t.BorraFicheroTemporal();
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(EnlazaLista, DuplicatesHaveNumberZeroAndNoTriangle) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingAt({{0, 0}, {100, 0}, {0, 100}, {100, 0, 50}, {0, 0, -3}, {90, 90}});
  OpenTriangulation t;
  ASSERT_EQ(t.Link(drawing), kHecho);
  EXPECT_THAT(NumbersOf(drawing[0]), ElementsAre(1, 2, 3, 0, 0, 6));
  EXPECT_EQ(t.duplicados, 2U);
  EXPECT_EQ(t.Resumen().duplicados, 2U);
  std::vector<int> seen;
  for (Triangle const& record : RecordsOf(t.SpilledBytes())) seen.insert(seen.end(), record.begin(), record.end());
  EXPECT_THAT(seen, Each(testing::AnyOf(1, 2, 3, 6, -1, -2, -3, -4)));
  EXPECT_EQ(seen.size(), 3U * (2 * 4 + 2));
  t.BorraFicheroTemporal();
}

TEST(EnlazaLista, ThreePointsAtOnePlaceSpillNothingOfTheirs) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingAt({{5, 5}, {5, 5}, {5, 5}});
  OpenTriangulation t;
  const int code = t.Link(drawing);
  EXPECT_EQ(code, kHecho);
  for (Triangle const& record : RecordsOf(t.SpilledBytes())) {
    EXPECT_TRUE(std::any_of(record.begin(), record.end(), [](int n) { return n < 0; }));
  }
  t.BorraFicheroTemporal();
}

TEST(EnlazaLista, ASeedAloneInItsCellLeavesItToAnAncestorToClose) {
  std::vector<Point> points;
  for (int i = 0; i < 200; ++i) points.push_back({i * 37 % 201, i * 53 % 199, 0});
  points.insert(points.begin() + 7, {1'000, 1'000, 0});
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(points);
  OpenTriangulation t;
  ASSERT_EQ(t.Link(drawing), kHecho);
  ASSERT_NE(t.divisiones.hijos, nullptr);
  CDivisiones2D const& alone = t.divisiones.hijos[1];
  ASSERT_EQ(alone.ultimoPuntoCelda, 7);
  ASSERT_THAT(t.primerosPuntos, Contains(CPosicion(0, 0, 7)));
  EXPECT_THAT(t.setsCerrados.Entradas(), Not(Contains(alone.setAsociado)));
  EXPECT_EQ(RecordsOf(t.SpilledBytes()).size(), 2 * points.size() + 2) << "an ancestor has closed it";
  t.BorraFicheroTemporal();
}

/// A drawing on the left, two further ones in the middle and on the right, 70 points each: cells of their own.
class FurtherDrawings : public testing::Test {
 protected:
  FurtherDrawings() {
    std::vector<Point> left, middle, right;
    for (int i = 0; i < 70; ++i) {
      left.push_back({i * 17 % 71, i * 29 % 73 * 12, 0});
      middle.push_back({100 + i * 17 % 71, i * 29 % 73 * 12, 0});
      right.push_back({700 + i * 17 % 71, i * 29 % 73 * 12, 0});
    }
    drawing = DrawingOf(left);
    second = DrawingOf(middle);
    last = DrawingOf(right);
  }
  static std::size_t In(CDibujo<int> const& d) {
    std::size_t in = 0;
    for (const int number : NumbersOf(d[0])) in += number != 0 ? 1 : 0;
    return in;
  }
  std::size_t SeedsOf(unsigned list) const {
    return static_cast<std::size_t>(std::count_if(t.primerosPuntos.begin(), t.primerosPuntos.end(),
                                                  [list](CPosicion const& p) { return p.lista == list; }));
  }

  CDibujo<int> drawing, second, last;
  std::vector<CDibujo<int>*> others{&second, &last};
  OpenTriangulation t;
};

TEST_F(FurtherDrawings, TheLastOneLosesItsSeeds) {
  const QuietApp app;
  ASSERT_EQ(t.Link(drawing, &others), kHecho);
  ASSERT_GT(SeedsOf(2), 0U);
  EXPECT_EQ(In(drawing), 70U);
  EXPECT_EQ(In(second), 70U);
  EXPECT_EQ(In(last), 70U - SeedsOf(2));
  for (CPosicion const& seed : t.primerosPuntos) {
    if (seed.lista == 2) {
      EXPECT_EQ(last[0].Punto(static_cast<int>(seed.punto)).num, 0);
    }
  }
  EXPECT_EQ(RecordsOf(t.SpilledBytes()).size(), 2 * (210 - SeedsOf(2)) + 2);
  t.BorraFicheroTemporal();
}

TEST_F(FurtherDrawings, AloneItLosesItsSeedsToo) {
  const QuietApp app;
  others = {&last};
  last = DrawingOf([&] {
    std::vector<Point> points;
    for (int i = 0; i < 140; ++i) points.push_back({700 + i * 17 % 141, i * 29 % 143 * 6, 0});
    return points;
  }());
  ASSERT_EQ(t.Link(drawing, &others), kHecho);
  ASSERT_GT(SeedsOf(1), 0U);
  EXPECT_EQ(In(last), 140U - SeedsOf(1));
  t.BorraFicheroTemporal();
}

TEST_F(FurtherDrawings, WithNothingButSeedsItStaysOutOfTheMesh) {
  const QuietApp app;
  last = DrawingAt({{900, 0}, {900, 880}});
  for (int i = 0; i < 70; ++i) second.Inserta(test::CloudAt({{i, 1'000 + i}}));
  ASSERT_EQ(t.Link(drawing, &others), kHecho);
  ASSERT_EQ(SeedsOf(2), 2U);
  EXPECT_EQ(In(last), 0U);
  t.BorraFicheroTemporal();
}

TEST_F(FurtherDrawings, ItsSeedsAreLookedUpInAnExtraDrawing) {
  const QuietApp app;
  last = DrawingAt({{900, 0}, {900, 880}});
  for (int i = 0; i < 70; ++i) second.Inserta(test::CloudAt({{i, 1'000 + i}}));
  CDibujo<int> extra = DrawingAt({{500, 300}, {510, 310}, {400, 300}});
  ASSERT_EQ(t.Link(drawing, &others, &extra), kHecho);
  ASSERT_EQ(SeedsOf(2), 2U);
  EXPECT_EQ(In(last), 0U);
  EXPECT_EQ(t.duplicados, 2U) << "the first two points of the extra drawing went in as seeds and came again";
  EXPECT_NE(extra[0].Punto(2).num, 0);
  EXPECT_EQ(extra[0].Punto(0).num, 0);
  const std::vector<Triangle> records = RecordsOf(t.SpilledBytes());
  EXPECT_THAT(records, Contains(Contains(0))) << "their triangles have lost them";
  t.BorraFicheroTemporal();
}

TEST(EnlazaLista, WithoutAnExtraDrawingALostSeedStillCountsAsAStep) {
  ListeningApp app;
  CDibujo<int> drawing = DrawingOf(Scatter(198)),
               other = DrawingAt({{-2'000'000, -2'000'000}, {-2'000'000, 3'000'000}, {-1'999'999, -2'000'000}});
  std::vector<CDibujo<int>*> others{&other};
  OpenTriangulation t;
  ASSERT_EQ(t.Rellena(drawing, &others, nullptr, nullptr), kHecho);
  ASSERT_THAT(t.primerosPuntos, Contains(CPosicion(1, 0, 0)));
  app.steps.clear();
  ASSERT_EQ(t.EnlazaLista(drawing, &others, nullptr, nullptr, 0, nullptr, nullptr, nullptr, nullptr, nullptr, 0,
                          nullptr, nullptr, nullptr, nullptr, nullptr),
            kHecho);
  ASSERT_GE(app.steps.size(), 201U);
  for (std::size_t i = 0; i < 201; ++i) {
    EXPECT_EQ(app.steps[i].value, i + 1);
    EXPECT_EQ(app.steps[i].total, 201U);
  }
  EXPECT_EQ(other[0].Punto(0).num, 0);
  t.BorraFicheroTemporal();
}

TEST(EnlazaLista, TheHostsCounterGoesOnFromWhereItStands) {
  ListeningApp app;
  CDibujo<int> drawing = Three();
  OpenTriangulation t;
  ASSERT_EQ(t.Rellena(drawing, nullptr, nullptr, nullptr), kHecho);
  app.steps.clear();
  int counter = 40;
  ASSERT_EQ(t.EnlazaLista(drawing, nullptr, &counter, nullptr, 0, nullptr, nullptr, nullptr, nullptr, nullptr, 0,
                          nullptr, nullptr, nullptr, nullptr, nullptr),
            kHecho);
  EXPECT_EQ(counter, 43);
  EXPECT_EQ(app.steps[0].value, 41U);
  t.BorraFicheroTemporal();
}

TEST(EnlazaLista, AToleranceAppliesToTheExtraDrawingAlone) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingAt({{0, 0}, {100, 0}, {0, 100}, {100, 100}, {50, 52, 1'000}});
  CDibujo<int> other = DrawingAt({{20, 71, 1'000}, {21, 10, 1'000}}),
               extra = DrawingAt({{80, 20, 2'000}, {80, 21, -2'000}});
  std::vector<CDibujo<int>*> others{&other};
  OpenTriangulation t;
  ASSERT_EQ(t.Link(drawing, &others, &extra, 5), kHecho);
  EXPECT_THAT(NumbersOf(drawing[0]), Each(testing::Gt(0)));
  EXPECT_THAT(NumbersOf(other[0]), Each(testing::Gt(0)));
  EXPECT_THAT(NumbersOf(extra[0]), ElementsAre(0, 9));
  t.BorraFicheroTemporal();
}

TEST(EnlazaLista, TheFileHasNoNameWhereThatCanBeAndIsOpenedAsLongAsItIsThere) {
  const QuietApp app;
  CDibujo<int> drawing = Three();
  OpenTriangulation t({}, {}, 35);
  ASSERT_EQ(t.Link(drawing), kHecho);
  EXPECT_EQ(app.folder.Files(), kTemporaryFilesHaveNames ? 1U : 0U);
  EXPECT_EQ(app.TemporaryFiles(), 1U);
  EXPECT_EQ(CFile(t.ficheroTemporal.Ruta(), CFile::modeRead).GetLength(), t.ficheroTemporal.Fichero()->GetLength());
  t.BorraFicheroTemporal();
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(EnlazaLista, WhereAFileNeedsANameItHoldsTheIdentifierAndStandsInTheTemporaryFolder) {
  const QuietApp app;
  CDibujo<int> drawing = Three();
  OpenTriangulation t({}, {}, 35);
  FaultGuard guard;
  if (!kTemporaryFilesHaveNames) guard.RefuseOnce(EOperacion::Abre, 1).RefuseOnce(EOperacion::Borra, 1);
  ASSERT_EQ(t.Link(drawing), kHecho);
  const std::filesystem::path path = t.ficheroTemporal.Ruta().Utf8();
  EXPECT_EQ(path.parent_path(), std::filesystem::path(app.folder.Path().Utf8()));
  EXPECT_THAT(path.filename().string(), testing::StartsWith("35MD"));
  t.BorraFicheroTemporal();
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(EnlazaLista, WithoutATemporaryNameTheFileStandsWhereTheProgramRuns) {
  const QuietApp app;
  CDibujo<int> drawing = Three();
  OpenTriangulation t({}, {}, 7'351);
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaTemporal);
  ASSERT_EQ(t.Link(drawing), kHecho);
  EXPECT_EQ(t.ficheroTemporal.Ruta(), CString(L"7351MDTriangulacion2D.tmp"));
  EXPECT_TRUE(Exists(t.ficheroTemporal.Ruta()));
  t.BorraFicheroTemporal();
  EXPECT_FALSE(Exists(L"7351MDTriangulacion2D.tmp"));
}

/// Each of the two forms of the linking pass, for what they have in common.
class EitherForm : public testing::TestWithParam<bool> {
 protected:
  int Link(OpenTriangulation& t) { return GetParam() ? LinkModel(t, model) : t.Link(drawing); }

  CDibujo<int> drawing = DrawingOf(Scatter(300));
  CTIN model = test::ModelOf(Scatter(300));
};
INSTANTIATE_TEST_SUITE_P(Forms, EitherForm, testing::Bool(), [](testing::TestParamInfo<bool> const& form) {
  return form.param ? "OfAModel" : "OfADrawing";
});

TEST_P(EitherForm, AFileThatCannotBeOpenedLeavesNothing) {
  const QuietApp app;
  OpenTriangulation t;
  FaultGuard guard;
  guard.Refuse(EOperacion::Abre);
  EXPECT_EQ(Link(t), kFicheroInaccesible);
  EXPECT_FALSE(t.ficheroTemporal.EstaAbierto());
  EXPECT_EQ(app.TemporaryFiles(), 0U);
  EXPECT_EQ(guard.Asked(EOperacion::CreaHilo), 0);
  guard.Allow(EOperacion::Abre);
  EXPECT_EQ(Link(t), kHecho) << "the same object runs once the disk is well again";
  t.BorraFicheroTemporal();
}

TEST_P(EitherForm, AFullDiskLeavesNoFileWhereverItFills) {
  for (const std::size_t room : {0U, 1U, 12U, 100U, 602U * 12 - 1}) {
    const QuietApp app;
    OpenTriangulation t;
    FaultGuard guard;
    guard.LimitDisk(room);
    EXPECT_EQ(Link(t), kFicheroInaccesible) << room;
    EXPECT_FALSE(t.ficheroTemporal.EstaAbierto());
    EXPECT_EQ(app.TemporaryFiles(), 0U);
  }
  const QuietApp app;
  OpenTriangulation t;
  FaultGuard guard;
  guard.LimitDisk(602U * 12);
  EXPECT_EQ(Link(t), kHecho) << "the disk has just room enough";
  t.BorraFicheroTemporal();
}

TEST(EnlazaLista, ClassesAreNotGivenWhereTheRunIsCancelledAtTheLastStep) {
  for (const bool cancels : {false, true}) {
    ListeningApp app;
    CDibujo<int> drawing = DrawingOf(Scatter(600));
    OpenTriangulation t;
    ASSERT_EQ(t.Rellena(drawing, nullptr, nullptr, nullptr), kHecho);
    const std::size_t last = app.steps.size() + 600;
    if (cancels) app.cancelAt = static_cast<int>(last);
    app.onStep = [&] {
      if (app.steps.size() == last) drawing[0].PunteroAPunto(0)->clasificacion = 77;  // it is in, with class 0
    };
    EXPECT_EQ(t.EnlazaLista(drawing, nullptr, nullptr, nullptr, 2, nullptr, nullptr, nullptr, nullptr, nullptr, 0,
                            nullptr, nullptr, nullptr, nullptr, nullptr),
              cancels ? kCancelado : kHecho);
    EXPECT_EQ(drawing[0].Punto(0).clasificacion, cancels ? 77 : 0);
    t.BorraFicheroTemporal();
  }
}

TEST_P(EitherForm, RecordsAreWrittenWithoutAThread) {
  const QuietApp app;
  OpenTriangulation t;
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaHilo);
  EXPECT_EQ(Link(t), kHecho);
  EXPECT_EQ(guard.Asked(EOperacion::CreaHilo), 0);
  EXPECT_FALSE(t.SpilledBytes().empty());
  t.BorraFicheroTemporal();
}

TEST_P(EitherForm, ASeedThatCannotGoInEndsTheRunWithoutAFile) {
  ListeningApp app;
  OpenTriangulation t;
  ASSERT_EQ(GetParam() ? t.Rellena(model) : t.Rellena(drawing, nullptr, nullptr, nullptr), kHecho);
  ASSERT_THAT(t.primerosPuntos, SizeIs(4));
  CPosicion const& seed = t.primerosPuntos[2];
  (GetParam() ? static_cast<CCoor3D<int>*>(model.puntos.at(seed.entidad))
              : drawing[0].PunteroAPunto(static_cast<int>(seed.punto)))
      ->x = 2'000'000'000;
  EXPECT_EQ(GetParam() ? t.EnlazaLista(model, 0, nullptr)
                       : t.EnlazaLista(drawing, nullptr, nullptr, nullptr, 0, nullptr, nullptr, nullptr, nullptr,
                                       nullptr, 0, nullptr, nullptr, nullptr, nullptr, nullptr),
            kFicheroInconsistente);
  EXPECT_THAT(app.messages, SizeIs(1));
  EXPECT_FALSE(t.ficheroTemporal.EstaAbierto());
  EXPECT_EQ(app.TemporaryFiles(), 0U);
  EXPECT_FALSE(t.hiloSalva.EstaEnMarcha());
}

TEST_P(EitherForm, CancelledAtAnyStepItLeavesNothingAndTheSameObjectThenLinks) {
  drawing = DrawingOf(Scatter(30));
  model = test::ModelOf(Scatter(30));
  std::string expected;
  {
    const QuietApp app;
    OpenTriangulation t;
    ASSERT_EQ(Link(t), kHecho);
    expected = t.SpilledBytes();
    t.BorraFicheroTemporal();
  }
  OpenTriangulation t;
  int cancelled = 0;
  for (int n = 1;; ++n) {
    ListeningApp app;
    app.cancelAt = n;
    const int code = Link(t);
    if (static_cast<int>(app.steps.size()) < n) {
      EXPECT_EQ(code, kHecho);
      t.BorraFicheroTemporal();
      break;
    }
    ++cancelled;
    EXPECT_EQ(code, kCancelado) << "at step " << n;
    EXPECT_FALSE(t.ficheroTemporal.EstaAbierto());
    EXPECT_EQ(app.TemporaryFiles(), 0U) << "at step " << n;
    const QuietApp quiet;
    ASSERT_EQ(Link(t), kHecho);
    EXPECT_EQ(t.SpilledBytes(), expected) << "after step " << n;
    t.BorraFicheroTemporal();
  }
  EXPECT_GE(cancelled, 60);
}

TEST(EnlazaLista, ARefusedThreadLeavesNoFileWhereTheWorkersJobWantsOne) {
  for (const unsigned mode : {1U, 2U, 3U}) {
    const QuietApp app;
    CDibujo<int> drawing = DrawingOf(Scatter(300));
    OpenTriangulation t;
    FaultGuard guard;
    guard.Refuse(EOperacion::CreaHilo);
    EXPECT_EQ(t.Link(drawing, nullptr, nullptr, 0, mode), kFicheroInconsistente) << mode;
    EXPECT_EQ(guard.Asked(EOperacion::CreaHilo), 1) << mode;
    EXPECT_EQ(app.TemporaryFiles(), 0U) << mode;
  }
}

TEST(EnlazaLista, WithoutAnEventTheFileStaysForWhoeverLooksIntoIt) {
  const QuietApp app;
  CDibujo<int> drawing = Three();
  OpenTriangulation t;
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaEvento);
  EXPECT_EQ(t.Link(drawing), kFicheroInconsistente);
  EXPECT_TRUE(t.ficheroTemporal.EstaAbierto());
  EXPECT_EQ(app.TemporaryFiles(), 1U);
  EXPECT_FALSE(t.hiloSalva.EstaEnMarcha());
  t.BorraFicheroTemporal();
}

TEST(EnlazaLista, OfAModelDoesWithoutAnEvent) {
  const QuietApp app;
  CTIN model = test::ModelOf(Scatter(300));
  OpenTriangulation t;
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaEvento);
  EXPECT_EQ(LinkModel(t, model), kHecho);
  EXPECT_EQ(RecordsOf(t.SpilledBytes()).size(), 602U);
  t.BorraFicheroTemporal();
}

TEST(EnlazaLista, OfAModelSpillsWhatADrawingOfItsPointsDoes) {
  const QuietApp app;
  const std::vector<Point> points = Scatter(2'000);
  CDibujo<int> drawing = DrawingOf(points);
  CTIN model = test::ModelOf(points);
  OpenTriangulation fromDrawing, fromModel;
  ASSERT_EQ(fromDrawing.Link(drawing), kHecho);
  ASSERT_EQ(LinkModel(fromModel, model), kHecho);
  EXPECT_EQ(fromModel.SpilledBytes(), fromDrawing.SpilledBytes());
  fromDrawing.BorraFicheroTemporal();
  fromModel.BorraFicheroTemporal();
}

TEST(EnlazaLista, OfAModelLosesTheRootThatADuplicateLastPointLeavesOpen) {
  const QuietApp app;
  CTIN model = test::ModelOf({{0, 0, 0}, {100, 0, 0}, {0, 100, 0}, {100, 0, 0}});
  OpenTriangulation t;
  EXPECT_EQ(LinkModel(t, model), kHecho);
  EXPECT_EQ(t.SpilledBytes(), "");
  EXPECT_EQ(t.setRaiz.Cantidad(), 0U) << "freed all the same";
  t.BorraFicheroTemporal();

  std::vector<Point> points = Scatter(600);
  points.push_back(points[0]);
  CTIN larger = test::ModelOf(points);
  OpenTriangulation other;
  EXPECT_EQ(LinkModel(other, larger), kHecho);
  const std::size_t records = RecordsOf(other.SpilledBytes()).size();
  EXPECT_GT(records, 0U) << "cells closed before have reached the file";
  EXPECT_LT(records, 2U * 600 + 2);
  other.BorraFicheroTemporal();
}

TEST(EnlazaLista, OfAModelLosesTheRootThatASeedAsLastPointLeavesOpen) {
  std::vector<Point> points;
  for (int i = 0; i < 200; ++i) points.push_back({i * 37 % 201, i * 53 % 199, 0});
  points.push_back({1'000, 1'000, 0});  // the only point of its cell
  const QuietApp app;
  CTIN model = test::ModelOf(points);
  OpenTriangulation t;
  EXPECT_EQ(LinkModel(t, model), kHecho);
  EXPECT_EQ(t.primerosPuntos.back().entidad, 200U);
  EXPECT_LT(RecordsOf(t.SpilledBytes()).size(), 2U * 201 + 2);
  t.BorraFicheroTemporal();
  CDibujo<int> drawing = DrawingOf(points);
  OpenTriangulation fromDrawing;
  EXPECT_EQ(fromDrawing.Link(drawing), kHecho);
  EXPECT_EQ(RecordsOf(fromDrawing.SpilledBytes()).size(), 2U * 201 + 2) << "a drawing closes its root itself";
  fromDrawing.BorraFicheroTemporal();
}

TEST(EnlazaLista, APointThatCannotGoInAfterTheSeedsEndsItsListAndTheRunGoesOn) {
  ListeningApp app;
  CDibujo<int> drawing = DrawingOf(Scatter(20)), other = DrawingAt({{400'001, 400'003}, {400'007, 400'011}});
  std::vector<CDibujo<int>*> others{&other};
  OpenTriangulation t;
  ASSERT_EQ(t.Rellena(drawing, &others, nullptr, nullptr), kHecho);
  drawing[0].PunteroAPunto(8)->x = 2'000'000'000;
  EXPECT_EQ(t.EnlazaLista(drawing, &others, nullptr, nullptr, 0, nullptr, nullptr, nullptr, nullptr, nullptr, 0,
                          nullptr, nullptr, nullptr, nullptr, nullptr),
            kHecho);
  EXPECT_THAT(app.messages, SizeIs(1));
  EXPECT_THAT(NumbersOf(other[0]), ElementsAre(10, 11));
  EXPECT_EQ(RecordsOf(t.SpilledBytes()).size(), 2U * 10 + 2);
  EXPECT_EQ(t.Resumen().rechazados, 1U);
  t.BorraFicheroTemporal();
}

TEST(EnlazaLista, SavingACellClosesItsSetAndQueuesIt) {
  OpenTriangulation t;
  t.EstableceDivisiones(1, test::Box(0, 0, 10, 10));
  test::Frame(t, -1, -1, 11, 11);
  t.Salva(&t.divisiones);
  EXPECT_TRUE(t.setRaiz.cerrado);
  EXPECT_THAT(t.setsCerrados.Entradas(), ElementsAre(&t.setRaiz));
}

TEST(EnlazaLista, ASelectionLinksItsPointsAlone) {
  const QuietApp app;
  CDibujo<int> drawing = DrawingOf(Scatter(20));
  const std::vector<CPosicionEntidad> selection{{0, 1}, {0, 3}, {0, 5}, {0, 7}, {0, 9}};
  OpenTriangulation t;
  ASSERT_EQ(t.Rellena(drawing, nullptr, &selection, nullptr), kHecho);
  ASSERT_EQ(t.EnlazaLista(drawing, nullptr, nullptr, nullptr, 0, &selection, nullptr, nullptr, nullptr, nullptr, 0,
                          nullptr, nullptr, nullptr, nullptr, nullptr),
            kHecho);
  EXPECT_EQ(RecordsOf(t.SpilledBytes()).size(), 12U);
  EXPECT_EQ(drawing[0].Punto(0).num, 0);
  EXPECT_EQ(drawing[0].Punto(9).num, 5);
  t.BorraFicheroTemporal();
}

}  // namespace
}  // namespace Meseta47
