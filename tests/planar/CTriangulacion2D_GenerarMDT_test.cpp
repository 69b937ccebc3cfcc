// From the temporary file to a model: points, filters, outline, and every way out.
#include <cmath>
#include <gmock/gmock.h>
#include <limits>

#include "model/geometry/CRango.h"
#include "planar/PhaseScenes.h"
#include "support/FaultGuard.h"
#include "support/ReferenceDelaunay.h"

namespace Meseta47 {
namespace {

using support::Point;
using support::Triangle;
using test::Described;
using test::DrawingOf;
using test::ListeningApp;
using test::OpenTriangulation;
using test::QuietApp;
using test::Scatter;
using test::TrianglesOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double kLargest = std::numeric_limits<double>::max();

CRango Between(double least, double greatest) {
  CRango range(-99, -99, 0, kLargest);
  range.SetValorMin(least);
  range.SetValorMax(greatest);
  return range;
}

/// A square grid of 100 units with one point in the middle raised; sheared, so that no four points lie on a circle.
std::vector<Point> Spike(int n, int height) {
  std::vector<Point> points;
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) points.push_back({100 * i + 7 * j, 100 * j + 3 * i, 0});
  }
  points[static_cast<std::size_t>(n / 2 * n + n / 2)].z = height;
  return points;
}

/// A linked drawing; its model is made with the arguments given.
struct Made {
  int Make(std::vector<Point> const& points, double maxSide = 0, CRango const* heights = nullptr,
           CRango const* intensities = nullptr) {
    drawing = DrawingOf(points);
    return Make(maxSide, heights, intensities);
  }
  int Make(double maxSide, CRango const* heights, CRango const* intensities) {
    const int linked = t.Link(drawing);
    if (linked != kHecho) return linked;
    const int code =
        t.GenerarMDT(drawing, nullptr, model, maxSide, false, nullptr, nullptr, nullptr, heights, intensities);
    t.BorraFicheroTemporal();
    return code;
  }

  CDataTriangulacion data;
  CDataSemilla seed{0, 0, 0, 0};  // a scaled unit is a metre
  OpenTriangulation t{data, seed};
  CDibujo<int> drawing{seed};
  CTIN model{0, 0, seed};
};

TEST(GenerarMDT, TheModelHoldsThePointsInOrderAndTheTrianglesAmongThem) {
  const QuietApp app;
  const std::vector<Point> points = Scatter(60);
  Made made;
  ASSERT_EQ(made.Make(points), kHecho);
  std::vector<Point> sorted = points;
  std::sort(sorted.begin(), sorted.end());
  std::vector<Point> stored;
  int number = 0;
  for (CPuntoTIN const& p : made.model.puntos) {
    stored.push_back({p.x, p.y, p.z});
    EXPECT_EQ(p.num, ++number);
  }
  EXPECT_EQ(stored, sorted);
  std::vector<Triangle> inner;
  for (Triangle const& t : support::referenceDelaunay(sorted, support::frameAround(sorted)).triangles) {
    if (*std::min_element(t.begin(), t.end()) > 0) inner.push_back(t);
  }
  EXPECT_EQ(TrianglesOf(made.model), support::canonicalSet(inner));
  EXPECT_EQ(made.model.estado, 1);
  EXPECT_TRUE(made.model.EstaEnlazado());
}

TEST(GenerarMDT, AMaximumLengthOfZeroIsNone) {
  const QuietApp app;
  Made any, huge, negative;
  ASSERT_EQ(any.Make(Scatter(60), 0), kHecho);
  ASSERT_EQ(huge.Make(Scatter(60), 1e9), kHecho);
  EXPECT_EQ(Described(any.model), Described(huge.model));
  EXPECT_EQ(any.t.Resumen().porLongitud, 0U);
}

TEST(GenerarMDT, ALengthIsInMetresAndItsLimitIncluded) {
  const QuietApp app;
  // The triangle has sides of 300, 400 and 500 scaled units.
  for (const double metres : {5.0, 4.99}) {
    Made made;
    made.seed = CDataSemilla(2, 0, 0, 0);
    OpenTriangulation t({}, made.seed);
    CDibujo<int> drawing = DrawingOf({{0, 0, 0}, {300, 0, 0}, {0, 400, 0}});
    ASSERT_EQ(t.Link(drawing), kHecho);
    CTIN model(0, 0, made.seed);
    EXPECT_EQ(t.GenerarMDT(drawing, nullptr, model, metres, false, nullptr, nullptr, nullptr, nullptr, nullptr),
              kHecho);
    t.BorraFicheroTemporal();
    EXPECT_EQ(model.Cantidad(), metres == 5 ? 1U : 0U);
    EXPECT_EQ(model.longitudMaxima, 500) << "looked at before the length is";
    EXPECT_EQ(t.Resumen().porLongitud, metres == 5 ? 0U : 1U);
  }
}

TEST(GenerarMDT, ATriangleAndTheFrameAroundItGiveOneRing) {
  const QuietApp app;
  Made made;
  ASSERT_EQ(made.Make({{0, 0, 0}, {300, 0, 0}, {0, 400, 0}}), kHecho);
  EXPECT_THAT(made.model.Limite(), ElementsAre(SizeIs(3)));
  EXPECT_EQ(made.t.Resumen().delMarco, 7U);
}

TEST(GenerarMDT, TrianglesRejectedOnBothSidesOfASideLeaveNoOutlineThere) {
  const QuietApp app;
  const CRango gentle = Between(0, 50);
  Made made;
  ASSERT_EQ(made.Make(Spike(7, 1'000), 0, &gentle), kHecho);
  ASSERT_EQ(made.t.Resumen().porAltura, 6U) << "the triangles around the raised point";
  ASSERT_THAT(made.model.Limite(), SizeIs(2));
  const std::size_t hole = made.model.EsHueco(0) ? 0 : 1;
  EXPECT_TRUE(made.model.EsHueco(hole));
  EXPECT_THAT(made.model.Limite()[hole], SizeIs(6)) << "no side to the raised point bounds the hole";
}

TEST(GenerarMDT, HeightDifferencesAreFilteredAtBothLimits) {
  const QuietApp app;
  for (const int limit : {999, 1'000}) {
    const CRango range = Between(0, limit);
    Made made;
    ASSERT_EQ(made.Make(Spike(5, 1'000), 0, &range), kHecho);
    EXPECT_EQ(made.t.Resumen().porAltura, limit == 999 ? 6U : 0U);
  }
  const CRango steep = Between(1, 5'000);
  Made made;
  ASSERT_EQ(made.Make(Spike(5, 1'000), 0, &steep), kHecho);
  EXPECT_EQ(made.model.Cantidad(), 0U) << "every triangle has a level side";
}

TEST(GenerarMDT, IntensityDifferencesAreFilteredAfterHeights) {
  const QuietApp app;
  const CRango range = Between(0, 100);
  Made made;
  made.drawing = DrawingOf(Spike(5, 0));
  made.drawing[0].PunteroAPunto(12)->intensidad = 60'000;
  ASSERT_EQ(made.Make(0, nullptr, &range), kHecho);
  EXPECT_EQ(made.t.Resumen().porIntensidad, 6U);
  made.drawing[0].PunteroAPunto(12)->z = 1'000;
  const CRango gentle = Between(0, 50);
  ASSERT_EQ(made.Make(0, &gentle, &range), kHecho);
  EXPECT_EQ(made.t.Resumen().porIntensidad, 0U);
  EXPECT_EQ(made.t.Resumen().porAltura, 6U);
}

TEST(GenerarMDT, SlopesAreLookedAtUnlessTheMinimumIsNegativeAndTheMaximumNinety) {
  const QuietApp app;
  const auto rejected = [](double least, double greatest) {
    CDataTriangulacion data;
    data.pendienteMin = least;
    data.pendienteMax = greatest;
    OpenTriangulation t(data);
    CDibujo<int> drawing = DrawingOf(Spike(5, 1'000));
    CTIN model(0, 0, CDataSemilla());
    EXPECT_EQ(t.Link(drawing), kHecho);
    EXPECT_EQ(t.GenerarMDT(drawing, nullptr, model, 0, false, nullptr, nullptr, nullptr, nullptr, nullptr), kHecho);
    t.BorraFicheroTemporal();
    return std::make_pair(t.Resumen().porPendiente, model.Cantidad());
  };
  const std::uint64_t all = 32;
  EXPECT_EQ(rejected(-1, 90), std::make_pair(std::uint64_t{0}, all));
  EXPECT_EQ(rejected(-90, 90), std::make_pair(std::uint64_t{0}, all));
  EXPECT_EQ(rejected(0, 90), std::make_pair(std::uint64_t{0}, all)) << "it filters, and everything passes";
  EXPECT_EQ(rejected(-1, 45), std::make_pair(std::uint64_t{6}, all - 6));
  EXPECT_EQ(rejected(1, 90), std::make_pair(all - 6, std::uint64_t{6}));
  EXPECT_EQ(rejected(60, 20), std::make_pair(all, std::uint64_t{0}));
}

TEST(GenerarMDT, TheLongestSideCountsTrianglesThatPassedTheRangesWhateverTheirLength) {
  const QuietApp app;
  Made made;
  ASSERT_EQ(made.Make(Scatter(60), 1), kHecho);
  EXPECT_EQ(made.model.Cantidad(), 0U);
  Made free;
  ASSERT_EQ(free.Make(Scatter(60)), kHecho);
  double longest = 0;
  for (std::uint32_t i = 0; i < free.model.Cantidad(); ++i) {
    const CTriangulo t = free.model.Triangulo(i);
    longest = std::max({longest, t.Distancia2_12(false), t.Distancia2_23(false), t.Distancia2_31(false)});
  }
  EXPECT_EQ(free.model.longitudMaxima, static_cast<int>(std::sqrt(longest)));
  EXPECT_EQ(made.model.longitudMaxima, free.model.longitudMaxima);
  const CRango none = Between(-5, -1);
  Made nothing;
  ASSERT_EQ(nothing.Make(Scatter(60), 0, &none), kHecho);
  EXPECT_EQ(nothing.model.longitudMaxima, 0);
}

TEST(GenerarMDT, AnEmptyFileGivesNoTriangleNoOutlineAndTakesOneThread) {
  const QuietApp app(4);
  Made made;
  made.drawing = DrawingOf(Scatter(60));
  ASSERT_EQ(made.t.Link(made.drawing, nullptr, nullptr, 0, 5), kHecho);
  ASSERT_EQ(made.t.ficheroTemporal.Fichero()->GetLength(), 0U);
  FaultGuard guard;
  EXPECT_EQ(made.t.GenerarMDT(made.drawing, nullptr, made.model, 0, false, nullptr, nullptr, nullptr, nullptr, nullptr),
            kHecho);
  EXPECT_EQ(guard.Asked(EOperacion::CreaHilo), 1);
  EXPECT_EQ(made.model.puntos.size(), 60U);
  EXPECT_EQ(made.model.Cantidad(), 0U);
  EXPECT_THAT(made.model.Limite(), IsEmpty());
  EXPECT_EQ(made.model.longitudMaxima, 0);
  made.t.BorraFicheroTemporal();
}

TEST(GenerarMDT, TakesAReaderAProcessorUnlessThereAreFewerRecords) {
  for (auto const& [processors, readers] : {std::make_pair(1U, 1), std::make_pair(4U, 4), std::make_pair(200U, 1)}) {
    const QuietApp app(processors);
    Made made;
    made.drawing = DrawingOf(Scatter(60));  // 122 records
    ASSERT_EQ(made.t.Link(made.drawing), kHecho);
    FaultGuard guard;
    EXPECT_EQ(
        made.t.GenerarMDT(made.drawing, nullptr, made.model, 0, false, nullptr, nullptr, nullptr, nullptr, nullptr),
        kHecho);
    EXPECT_EQ(guard.Asked(EOperacion::Abre), readers) << "each has the file open for itself";
    EXPECT_GT(made.model.Cantidad(), 80U);
    made.t.BorraFicheroTemporal();
  }
}

TEST(GenerarMDT, RegistersFurtherDrawingsAndDestroysThemWhenAsked) {
  for (const bool destroy : {false, true}) {
    const QuietApp app;
    OpenTriangulation t;
    CDibujo<int> drawing = DrawingOf({{0, 0, 0}, {300, 0, 0}}), extra = DrawingOf({{350, 410, 0}});
    std::vector<CDibujo<int>*> others{new CDibujo<int>(DrawingOf({{0, 400, 0}})),
                                      new CDibujo<int>(DrawingOf({{9, 9, 0}}))};
    std::vector<CDibujo<int>*> const before = others;
    ASSERT_EQ(t.Link(drawing, &others, &extra), kHecho);
    CTIN model(0, 0, CDataSemilla());
    EXPECT_EQ(t.GenerarMDT(drawing, &others, model, 0, destroy, nullptr, nullptr, &extra, nullptr, nullptr), kHecho);
    t.BorraFicheroTemporal();
    EXPECT_EQ(model.puntos.size(), 5U);
    EXPECT_EQ(drawing.Cantidad(), 1U) << "the drawing itself is the run's to clear";
    if (destroy) {
      EXPECT_THAT(others, ElementsAre(nullptr, nullptr));
    } else {
      EXPECT_EQ(others, before);
      for (CDibujo<int>* other : others) delete other;
    }
  }
}

TEST(GenerarMDT, PointsThatAreNotInTheMeshAreNotInTheModel) {
  const QuietApp app;
  Made made;
  ASSERT_EQ(made.Make({{0, 0, 0}, {300, 0, 0}, {0, 400, 0}, {300, 0, 9}, {290, 390, 0}}), kHecho);
  EXPECT_EQ(made.model.puntos.size(), 4U);
  EXPECT_EQ(made.model.Cantidad(), 2U);
}

TEST(GenerarMDT, ARicherModelGetsRicherPoints) {
  const QuietApp app;
  for (const int form : {0, 2, 3}) {
    Made made;
    made.model = CTIN(0, form, CDataSemilla());
    made.model.estado = static_cast<unsigned char>(form);
    ASSERT_EQ(made.Make(Scatter(5)), kHecho);
    EXPECT_EQ(made.model.puntos.EsRica(), form == 3) << form;
    EXPECT_EQ(made.model.estado, std::max(1, form));
  }
}

TEST(GenerarMDT, AnnouncesItsPhasesAndReportsBytesOfTheFile) {
  ListeningApp app(2);
  Made made;
  made.drawing = DrawingOf(Scatter(60));
  ASSERT_EQ(made.t.Link(made.drawing), kHecho);
  app.phases.clear();
  app.steps.clear();
  ASSERT_EQ(made.t.GenerarMDT(made.drawing, nullptr, made.model, 0, false, nullptr, nullptr, nullptr, nullptr, nullptr),
            kHecho);
  EXPECT_THAT(app.PhaseMessages(), ElementsAre(19020U, 19029U));
  ASSERT_GE(app.steps.size(), 60U);
  EXPECT_EQ(app.steps[0].value, 1U);
  EXPECT_EQ(app.steps[59].value, 60U);
  EXPECT_EQ(app.steps[59].total, 60U);
  for (ListeningApp::Step const& step : app.steps) EXPECT_LE(step.value, step.total);
  made.t.BorraFicheroTemporal();
}

TEST(GenerarMDT, CancelledAtAnyStepItStopsItsReadersAndCanBeAskedAgain) {
  Made made;
  made.drawing = DrawingOf(Scatter(30));
  ListeningApp app(3);
  ASSERT_EQ(made.t.Link(made.drawing), kHecho);
  int cancelled = 0;
  for (int n = 1;; ++n) {
    app.steps.clear();
    app.cancelAt = n;
    const int code =
        made.t.GenerarMDT(made.drawing, nullptr, made.model, 0, false, nullptr, nullptr, nullptr, nullptr, nullptr);
    if (static_cast<int>(app.steps.size()) < n) {
      EXPECT_EQ(code, kHecho);
      break;
    }
    EXPECT_EQ(code, kCancelado) << n;
    ++cancelled;
  }
  EXPECT_GT(cancelled, 30);
  EXPECT_GT(made.model.Cantidad(), 30U);
  EXPECT_THAT(made.model.Limite(), SizeIs(1));
  made.t.BorraFicheroTemporal();
}

/// What the disk or the system may refuse while the file is read.
class Refusals : public testing::Test {
 protected:
  int Generate(EOperacion operation, int nth) {
    Made made;
    made.drawing = DrawingOf(Scatter(3'000));
    EXPECT_EQ(made.t.Link(made.drawing), kHecho);
    FaultGuard guard;
    guard.Refuse(operation, nth);
    const int code =
        made.t.GenerarMDT(made.drawing, nullptr, made.model, 0, false, nullptr, nullptr, nullptr, nullptr, nullptr);
    made.t.BorraFicheroTemporal();
    EXPECT_EQ(app.TemporaryFiles(), 0U);
    return code;
  }
  const QuietApp app{3};
};

TEST_F(Refusals, AFileThatAReaderCannotOpenIsTold) {
  EXPECT_EQ(Generate(EOperacion::Abre, 1), kFicheroInaccesible);
  EXPECT_EQ(Generate(EOperacion::Abre, 3), kFicheroInaccesible) << "two readers are at work by then";
}
TEST_F(Refusals, AThreadThatTheSystemDoesNotGiveIsTold) {
  EXPECT_EQ(Generate(EOperacion::CreaHilo, 1), kFicheroInconsistente);
  EXPECT_EQ(Generate(EOperacion::CreaHilo, 3), kFicheroInconsistente);
}
TEST_F(Refusals, ARecordThatCannotBeReadIsNotLostInSilence) {
  EXPECT_EQ(Generate(EOperacion::Lee, 1), kFicheroInconsistente);
  EXPECT_EQ(Generate(EOperacion::Lee, 2), kFicheroInconsistente);
}

/// The form for a model that has its points.
class GenerarMDTModel : public testing::Test {
 protected:
  int Make(double maxSide) {
    model.LiberaTriangulos();
    const int filled = t.Rellena(model);
    if (filled != kHecho) return filled;
    const int linked = t.EnlazaLista(model, 0, nullptr);
    if (linked != kHecho) return linked;
    const int code = t.GenerarMDT(model, maxSide, nullptr, nullptr);
    t.BorraFicheroTemporal();
    return code;
  }

  const QuietApp app;
  OpenTriangulation t{{}, CDataSemilla(0, 0, 0, 0)};
  CTIN model = test::ModelOf({{0, 0, 0}, {300, 0, 0}, {300, 0, 9}, {0, 400, 0}});
};

TEST_F(GenerarMDTModel, KeepsItsPointsWhereTheyAreAndNumbersThoseOfTheMesh) {
  ASSERT_EQ(Make(500), kHecho);
  std::vector<int> numbers;
  for (CPuntoTIN const& p : model.puntos) numbers.push_back(p.num);
  EXPECT_THAT(numbers, ElementsAre(1, 2, 0, 4)) << "a point of number zero keeps it";
  EXPECT_EQ(TrianglesOf(model), (std::vector<Triangle>{{1, 4, 2}}));
  EXPECT_THAT(model.Limite(), SizeIs(1));
  EXPECT_EQ(model.longitudMaxima, 500);
}

TEST_F(GenerarMDTModel, TheSquareOfTheLimitIsCutToAnInteger) {
  ASSERT_EQ(Make(500.0009), kHecho);
  EXPECT_EQ(model.Cantidad(), 1U);
  ASSERT_EQ(Make(499.9999), kHecho);
  EXPECT_EQ(model.Cantidad(), 0U) << "249999.9 is 249999 then";
}

TEST_F(GenerarMDTModel, ALimitOfZeroRejectsEverything) {
  ASSERT_EQ(Make(0), kHecho);
  EXPECT_EQ(model.Cantidad(), 0U);
  EXPECT_THAT(model.Limite(), IsEmpty());
}

TEST_F(GenerarMDTModel, ALimitWhoseSquarePassesThirtyTwoBitsRejectsEverything) {
  ASSERT_EQ(Make(46'340), kHecho);
  EXPECT_EQ(model.Cantidad(), 1U) << "2147395600 fits";
  ASSERT_EQ(Make(46'341), kHecho);
  EXPECT_EQ(model.Cantidad(), 0U) << "2147488281 does not";
  EXPECT_THAT(model.Limite(), IsEmpty());
  ASSERT_EQ(Make(1e12), kHecho);
  EXPECT_EQ(model.Cantidad(), 0U);
}

}  // namespace
}  // namespace Meseta47
