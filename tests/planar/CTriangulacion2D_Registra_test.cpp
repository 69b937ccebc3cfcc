// The points of a drawing in the numbering of the temporary file.
#include <gmock/gmock.h>

#include "model/drawing/CIntensidadTipo.h"
#include "model/drawing/CRGBTipo.h"
#include "planar/PhaseScenes.h"

namespace Meseta47 {
namespace {

using test::At;
using test::Codes;
using test::LineAt;
using test::ListeningApp;
using test::OpenTriangulation;
using test::QuietApp;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Entity 0 is a cloud of three points with survey data, entity 1 a line of two; numbers 1 to 5.
class RegistraPuntos : public testing::Test {
 protected:
  RegistraPuntos() {
    CSetPuntos<int> cloud{CString(L"A")};
    for (int i = 0; i < 3; ++i) {
      CCoor3D<int> p(10 * i, i, 100 * i, i + 1);
      p.intensidad = static_cast<unsigned short>(500 + i);
      p.clasificacion = static_cast<unsigned char>(i);
      tipoAero3 data;
      data.gps = 1.5 * i;
      data.rojo = static_cast<unsigned char>(200 + i);
      data.verde = 30;
      data.azul = 40;
      cloud.Inserta(p, data);
    }
    drawing.Inserta(cloud);
    CLinea<int> line = LineAt({{50, 50, 50}, {60, 60, 60}}, L"B");
    line.PunteroAPunto(0)->num = 4;
    line.PunteroAPunto(1)->num = 5;
    line.PunteroAPunto(1)->intensidad = 900;
    drawing.Inserta(line);
  }

  int Register(std::vector<CPosicionEntidad> const* selection = nullptr, std::vector<CRGBTipo>* colours = nullptr,
               std::vector<CIntensidadTipo>* intensities = nullptr) {
    return t.RegistraPuntos(points, drawing, counter, 50, selection, colours, intensities);
  }
  [[nodiscard]] std::vector<int> Numbers() const {
    std::vector<int> numbers;
    for (CPuntoTIN const& p : points) numbers.push_back(p.num);
    return numbers;
  }

  CDibujo<int> drawing;
  OpenTriangulation t;
  CSetPuntosMdt points{0, 0};
  unsigned long long counter = 0;
};

TEST_F(RegistraPuntos, CopiesPointsWithAllThatTravelsWithThem) {
  const QuietApp app;
  EXPECT_EQ(Register(), kHecho);
  EXPECT_THAT(Numbers(), ElementsAre(1, 2, 3, 4, 5));
  CPuntoTIN const& p = points[2];
  EXPECT_EQ(std::make_tuple(p.x, p.y, p.z), std::make_tuple(20, 2, 200));
  EXPECT_EQ(p.intensidad, 502);
  EXPECT_EQ(p.clasificacion, 2);
  EXPECT_EQ(p.aero.gps, 3.0);
  EXPECT_EQ(p.aero.rojo, 202);
  EXPECT_EQ(points[4].aero, tipoAero3()) << "a line has no survey data";
  EXPECT_EQ(points[4].intensidad, 900);
}

TEST_F(RegistraPuntos, AppendsToWhatIsThere) {
  const QuietApp app;
  Register();
  Register();
  EXPECT_EQ(points.size(), 10U);
  EXPECT_EQ(counter, 10U);
}

TEST_F(RegistraPuntos, PassesOverPointsOfNumberZero) {
  const QuietApp app;
  drawing[0].PunteroAPunto(1)->num = 0;
  EXPECT_EQ(Register(), kHecho);
  EXPECT_THAT(Numbers(), ElementsAre(1, 3, 4, 5));
  EXPECT_EQ(counter, 5U) << "it is a step all the same";
}

TEST_F(RegistraPuntos, ASelectionNamesThePointsToCopy) {
  const QuietApp app;
  const std::vector<CPosicionEntidad> selection{{0, 0}, {0, 2}, {1, 1}};
  EXPECT_EQ(Register(&selection), kHecho);
  EXPECT_THAT(Numbers(), ElementsAre(1, 3, 5));
}

TEST_F(RegistraPuntos, ASelectionStaysOnAPointOfNumberZeroAndGivesNothingMore) {
  const QuietApp app;
  drawing[0].PunteroAPunto(1)->num = 0;
  const std::vector<CPosicionEntidad> selection{{0, 0}, {0, 1}, {0, 2}, {1, 1}};
  EXPECT_EQ(Register(&selection), kHecho);
  EXPECT_THAT(Numbers(), ElementsAre(1));
}

TEST_F(RegistraPuntos, AppliesTheFilterOfTheRun) {
  const QuietApp app;
  t.datos.zMin = 0.5;
  t.datos.excluidos = Codes({L"B"});
  EXPECT_EQ(Register(), kHecho);
  EXPECT_THAT(Numbers(), ElementsAre(2, 3));
  drawing.tipoNube = 2;
  t.datos.excluidos = Codes({L"2"});
  points.clear();
  EXPECT_EQ(Register(), kHecho);
  EXPECT_THAT(Numbers(), ElementsAre(2, 4, 5)) << "of a cloud the codes are classes";
}

TEST_F(RegistraPuntos, ColoursGoByNumberAndAreBlackForALine) {
  const QuietApp app;
  std::vector<CRGBTipo> colours(5, CRGBTipo(1, 2, 3, 4));
  std::vector<CIntensidadTipo> intensities(5, CIntensidadTipo(7, 7));
  drawing[0].PunteroAPunto(0)->num = 3;
  drawing[0].PunteroAPunto(2)->num = 1;
  drawing[0].PunteroAPunto(1)->num = 0;
  EXPECT_EQ(Register(nullptr, &colours, &intensities), kHecho);
  const auto is = [](int r, int g, int b, int type) {
    return testing::AllOf(testing::Field(&CRGBTipo::r, r), testing::Field(&CRGBTipo::g, g),
                          testing::Field(&CRGBTipo::b, b), testing::Field(&CRGBTipo::tipo, type));
  };
  EXPECT_THAT(colours,
              ElementsAre(is(202, 30, 40, -1), is(1, 2, 3, 4), is(200, 30, 40, -1), is(0, 0, 0, -1), is(0, 0, 0, -1)));
  for (CIntensidadTipo const& i : intensities) EXPECT_EQ(i.intensidad, 7) << "colours go before intensities";
}

TEST_F(RegistraPuntos, IntensitiesGoByNumberAndAreZeroForALine) {
  const QuietApp app;
  std::vector<CIntensidadTipo> intensities(5, CIntensidadTipo(7, 7));
  drawing[0].PunteroAPunto(1)->num = 0;
  EXPECT_EQ(Register(nullptr, nullptr, &intensities), kHecho);
  const auto is = [](int value, int type) {
    return testing::AllOf(testing::Field(&CIntensidadTipo::intensidad, value),
                          testing::Field(&CIntensidadTipo::tipo, type));
  };
  EXPECT_THAT(intensities, ElementsAre(is(500, -1), is(7, 7), is(502, -1), is(0, -1), is(0, -1)));
}

TEST_F(RegistraPuntos, ReportsEachPointAndIsCancelledAtAny) {
  ListeningApp app;
  counter = 20;
  EXPECT_EQ(Register(), kHecho);
  ASSERT_THAT(app.steps, SizeIs(5));
  EXPECT_EQ(app.steps[0].value, 21U);
  EXPECT_EQ(app.steps[4].value, 25U);
  EXPECT_EQ(app.steps[4].total, 50U);
  EXPECT_EQ(app.steps[4].level, 3);
  EXPECT_THAT(app.phases, IsEmpty());
  for (int n = 1; n <= 5; ++n) {
    app.steps.clear();
    app.cancelAt = n;
    points.clear();
    EXPECT_EQ(Register(), kCancelado);
    EXPECT_EQ(points.size(), static_cast<std::size_t>(n - 1));
  }
}

}  // namespace
}  // namespace Meseta47
