#include "run/Recorrido.h"

#include <array>
#include <gmock/gmock.h>
#include <limits>

#include "model/drawing/CSetPuntos.h"
#include "support/PlanarScene.h"

namespace Meseta47 {
namespace {

using test::At;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr double kCentimetres = 100;  // scaled units in a metre

CLinea<int> Line(wchar_t const* code, std::vector<At> const& places) {
  CLinea<int> line{CString(code)};
  for (At const& p : places) line << CCoor3D<int>(p.x, p.y, p.z, 0);
  return line;
}

CElementoDigiTab Row(wchar_t const* code) { return CElementoDigiTab(ENTIDAD_LINEA, code, 70, 70, 70, 0, 0, L"", 1); }

CDigiTab Table(std::vector<wchar_t const*> const& codes) {
  CDigiTab table;
  for (wchar_t const* code : codes) table.Inserta(Row(code), false);
  return table;
}

/// What the walk of a drawing meets.
struct Visitor {
  std::vector<std::pair<unsigned, unsigned>> points{};
  unsigned entities = 0, wholes = 0;
  bool takesWholes = false;
  unsigned stayAt = std::numeric_limits<unsigned>::max();  ///< index of the point after which the selection stays
  unsigned endAt = std::numeric_limits<unsigned>::max();   ///< index of the point after which the walk ends
  unsigned entitiesAllowed = std::numeric_limits<unsigned>::max();

  bool Entidad(CLinea<int> const&) { return ++entities <= entitiesAllowed; }
  bool Entera(CLinea<int> const&) {
    wholes += takesWholes ? 1 : 0;
    return takesWholes;
  }
  CPaso operator()(CLinea<int> const&, unsigned entity, unsigned point) {
    points.emplace_back(entity, point);
    if (points.size() - 1 == endAt) return CPaso::Termina;
    return points.size() - 1 == stayAt ? CPaso::SinAvanzar : CPaso::Sigue;
  }
};

class CFiltroPuntosTest : public testing::Test {
 protected:
  /// Entities: 0 and 1 of three points each, code A and B.
  CFiltroPuntosTest() {
    drawing.Inserta(Line(L"A", {{0, 0, 0}, {1, 0, 100}, {2, 0, 200}}));
    drawing.Inserta(Line(L"B", {{0, 5, 0}, {1, 5, 100}, {2, 5, 200}}));
  }

  [[nodiscard]] CFiltroPuntos Filter() const { return CFiltroPuntos(data, kCentimetres, drawing); }

  Visitor Walk(std::vector<CPosicionEntidad> const* selection = nullptr, Visitor visitor = {}) const {
    RecorrePuntos(drawing, Filter(), selection, visitor);
    return visitor;
  }

  CDataTriangulacion data;
  CDibujo<int> drawing;
};

TEST_F(CFiltroPuntosTest, ANewRecordFiltersNothing) {
  EXPECT_THAT(Walk().points, ElementsAre(Pair(0, 0), Pair(0, 1), Pair(0, 2), Pair(1, 0), Pair(1, 1), Pair(1, 2)));
}

TEST_F(CFiltroPuntosTest, TheHeightWindowIsInMetresWithItsLimitsIncluded) {
  data.zMin = 1.0;
  data.zMax = 2.0;
  EXPECT_THAT(Walk().points, ElementsAre(Pair(0, 1), Pair(0, 2), Pair(1, 1), Pair(1, 2)));
  data.zMin = 1.01;
  data.zMax = 1.99;
  EXPECT_THAT(Walk().points, IsEmpty());
}

TEST_F(CFiltroPuntosTest, AnEntityWhollyOutsideTheWindowIsRefused) {
  data.zMin = 2.01;
  EXPECT_FALSE(Filter().AdmiteEntidad(drawing[0])) << "above";
  data.zMin = 2.0;
  EXPECT_TRUE(Filter().AdmiteEntidad(drawing[0])) << "touched";
  data.zMin = -5;
  data.zMax = -0.01;
  EXPECT_FALSE(Filter().AdmiteEntidad(drawing[0])) << "below";
}

TEST_F(CFiltroPuntosTest, AnEntityCountsAsWholeWhenItsBoxLiesInTheWindow) {
  data.zMin = 0;
  data.zMax = 2.0;
  EXPECT_TRUE(Filter().TodaEnVentana(drawing[0]));
  data.zMax = 1.99;
  EXPECT_FALSE(Filter().TodaEnVentana(drawing[0]));
}

TEST_F(CFiltroPuntosTest, TakesCodesThatAreIncludedAndNotExcluded) {
  data.incluidos = Table({L"A", L"B"});
  data.excluidos = Table({L"A"});
  EXPECT_FALSE(Filter().AdmiteEntidad(drawing[0]));
  EXPECT_TRUE(Filter().AdmiteEntidad(drawing[1]));
  data.incluidos = Table({L"A"});
  EXPECT_FALSE(Filter().AdmiteEntidad(drawing[1]));
  data.incluidos = Table({});
  data.excluidos = Table({});
  EXPECT_FALSE(Filter().AdmiteEntidad(drawing[0])) << "nothing is included";
}

TEST_F(CFiltroPuntosTest, TheStarIncludesEveryCodeAndExcludesEveryCodeToo) {
  data.incluidos = Table({L"*"});
  EXPECT_TRUE(Filter().AdmiteEntidad(drawing[0]));
  data.excluidos = Table({L"*"});
  EXPECT_FALSE(Filter().AdmiteEntidad(drawing[0]));
}

TEST_F(CFiltroPuntosTest, DeletedEntitiesAndTextsTakeNoPart) {
  drawing[0].SetBorrado(true);
  CLinea<int> text{CTipoDat(ENTIDAD_TEXTO, L"A")};
  text << CCoor3D<int>(0, 0, 0, 0);
  drawing.Inserta(text);
  EXPECT_FALSE(Filter().AdmiteEntidad(drawing[0]));
  EXPECT_TRUE(Filter().AdmiteEntidad(drawing[1]));
  ASSERT_EQ(drawing.Cantidad(), 3U);
  EXPECT_FALSE(Filter().AdmiteEntidad(drawing[2]));
}

// --- clouds

class CFiltroPuntosCloud : public CFiltroPuntosTest {
 protected:
  CFiltroPuntosCloud() {
    drawing.Clear();
    CSetPuntos<int> set(L"7");
    for (const std::uint8_t type : std::array<std::uint8_t, 4>{0, 2, 6, 200}) {
      CCoor3D<int> p(type, 0, 0, 0);
      p.clasificacion = type;
      set << p;
    }
    drawing.Inserta(set);
    drawing.tipoNube = 1;
  }

  /// Classes of the points that pass.
  std::vector<int> Classes() const {
    std::vector<int> classes;
    for (auto const& [entity, point] : Walk().points) {
      classes.push_back(drawing[entity].Punto(static_cast<int>(point)).clasificacion);
    }
    return classes;
  }
};

TEST_F(CFiltroPuntosCloud, CodesAreClassesOfPointsAndNotCodesOfEntities) {
  for (std::int16_t type = 1; type <= 3; ++type) {
    drawing.tipoNube = type;
    data.incluidos = Table({L"2", L"200"});
    EXPECT_THAT(Classes(), ElementsAre(2, 200)) << "cloud type " << type;
  }
}

TEST_F(CFiltroPuntosCloud, OtherTypesSelectByTheCodeOfTheEntity) {
  for (const std::int16_t type : std::array<std::int16_t, 2>{0, 4}) {
    drawing.tipoNube = type;
    data.incluidos = Table({L"7"});
    EXPECT_THAT(Classes(), ElementsAre(0, 2, 6, 200)) << "cloud type " << type;
    data.incluidos = Table({L"2"});
    EXPECT_THAT(Classes(), IsEmpty());
  }
}

TEST_F(CFiltroPuntosCloud, AStarIncludesEveryClassThatIsNotExcluded) {
  data.incluidos = Table({L"*"});
  data.excluidos = Table({L"6", L"200"});
  EXPECT_THAT(Classes(), ElementsAre(0, 2));
}

TEST_F(CFiltroPuntosCloud, EveryIncludedCodeThatBeginsWithAStarIsTheWildcard) {
  data.incluidos = Table({L"*ground"});
  EXPECT_THAT(Classes(), ElementsAre(0, 2, 6, 200));
}

TEST_F(CFiltroPuntosCloud, AnExcludedStarIsAnOrdinaryCodeAndReadsAsClassZero) {
  data.incluidos = Table({L"*"});
  data.excluidos = Table({L"*"});
  EXPECT_THAT(Classes(), ElementsAre(2, 6, 200));
}

TEST_F(CFiltroPuntosCloud, ExclusionWinsOverInclusion) {
  data.incluidos = Table({L"2", L"6"});
  data.excluidos = Table({L"2"});
  EXPECT_THAT(Classes(), ElementsAre(6));
}

TEST_F(CFiltroPuntosCloud, ClassesCanBeLookedAtWhateverTheKindOfDrawing) {
  drawing.tipoNube = 0;
  data.incluidos = Table({L"7", L"2"});
  const CFiltroPuntos filter(data, kCentimetres, drawing, CFiltroPuntos::CPor::DibujoYClases);
  EXPECT_TRUE(filter.AdmitePunto(drawing[0].Punto(1)));
  EXPECT_FALSE(filter.AdmitePunto(drawing[0].Punto(2)));
  EXPECT_TRUE(filter.AdmiteEntidad(drawing[0])) << "entities go by their code all the same";
}

// --- the walk and its selection

TEST_F(CFiltroPuntosTest, ASelectionNamesThePointsToVisit) {
  const std::vector<CPosicionEntidad> selection{{0, 1}, {1, 0}, {1, 2}};
  EXPECT_THAT(Walk(&selection).points, ElementsAre(Pair(0, 1), Pair(1, 0), Pair(1, 2)));
}

TEST_F(CFiltroPuntosTest, AnEmptySelectionEndsTheWalkAtOnce) {
  const std::vector<CPosicionEntidad> selection;
  EXPECT_THAT(Walk(&selection).points, IsEmpty());
}

TEST_F(CFiltroPuntosTest, TheWalkEndsWithItsSelection) {
  const std::vector<CPosicionEntidad> selection{{0, 0}};
  const Visitor met = Walk(&selection);
  EXPECT_THAT(met.points, ElementsAre(Pair(0, 0)));
}

TEST_F(CFiltroPuntosTest, ASelectionThatNamesARefusedPointAdvances) {
  data.zMax = 1.5;
  const std::vector<CPosicionEntidad> selection{{0, 1}, {0, 2}, {1, 1}};
  EXPECT_THAT(Walk(&selection).points, ElementsAre(Pair(0, 1), Pair(1, 1)));
}

TEST_F(CFiltroPuntosTest, ASelectionThatNamesARefusedEntityAdvances) {
  drawing[0].SetBorrado(true);
  const std::vector<CPosicionEntidad> selection{{0, 0}, {0, 2}, {1, 1}};
  EXPECT_THAT(Walk(&selection).points, ElementsAre(Pair(1, 1)));
}

TEST_F(CFiltroPuntosTest, ASelectionThatIsNotAdvancedEndsTheVisits) {
  const std::vector<CPosicionEntidad> selection{{0, 0}, {0, 1}, {1, 0}};
  Visitor visitor;
  visitor.stayAt = 0;
  EXPECT_THAT(Walk(&selection, visitor).points, ElementsAre(Pair(0, 0)));
}

TEST_F(CFiltroPuntosTest, WithoutASelectionNothingIsHeldBack) {
  Visitor visitor;
  visitor.stayAt = 0;
  EXPECT_EQ(Walk(nullptr, visitor).points.size(), 6U);
}

TEST_F(CFiltroPuntosTest, APointNamedTwiceIsVisitedOnce) {
  const std::vector<CPosicionEntidad> selection{{0, 1}, {0, 1}, {1, 1}};
  EXPECT_THAT(Walk(&selection).points, ElementsAre(Pair(0, 1), Pair(1, 1)));
}

TEST_F(CFiltroPuntosTest, WholeEntitiesAreOfferedOnlyWithoutASelection) {
  Visitor visitor;
  visitor.takesWholes = true;
  const Visitor all = Walk(nullptr, visitor);
  EXPECT_EQ(all.wholes, 2U);
  EXPECT_THAT(all.points, IsEmpty());
  const std::vector<CPosicionEntidad> selection{{1, 1}};
  const Visitor some = Walk(&selection, visitor);
  EXPECT_EQ(some.wholes, 0U);
  EXPECT_THAT(some.points, ElementsAre(Pair(1, 1)));
}

TEST_F(CFiltroPuntosTest, TheVisitorMayEndTheWalkAtAnEntityOrAtAPoint) {
  Visitor atEntity, atPoint;
  atEntity.entitiesAllowed = 1;
  atPoint.endAt = 1;
  EXPECT_THAT(Walk(nullptr, atEntity).points, ElementsAre(Pair(0, 0), Pair(0, 1), Pair(0, 2)));
  EXPECT_THAT(Walk(nullptr, atPoint).points, ElementsAre(Pair(0, 0), Pair(0, 1)));
}

TEST_F(CFiltroPuntosCloud, CodesOfEntitiesCanBeLookedAtInACloudToo) {
  data.incluidos = Table({L"2"});  // a class, which is the code of no entity
  EXPECT_TRUE(CFiltroPuntos(data, kCentimetres, drawing).AdmiteEntidad(drawing[0]));
  const CFiltroPuntos byCode(data, kCentimetres, drawing, CFiltroPuntos::CPor::CodigosSiempre);
  EXPECT_FALSE(byCode.AdmiteEntidad(drawing[0]));
  EXPECT_TRUE(byCode.AdmitePunto(drawing[0].Punto(2))) << "classes have no part in it";
}

// --- what a lambda may answer, and progress

TEST_F(CFiltroPuntosTest, AVisitThatAnswersNothingGoesOnToTheEnd) {
  int met = 0;
  EXPECT_TRUE(RecorrePuntos(drawing, Filter(), nullptr, [&](CLinea<int> const&, unsigned, unsigned) { ++met; }));
  EXPECT_EQ(met, 6);
}

TEST_F(CFiltroPuntosTest, AVisitThatAnswersFalseEndsTheWalk) {
  int met = 0;
  EXPECT_FALSE(
      RecorrePuntos(drawing, Filter(), nullptr, [&](CLinea<int> const&, unsigned, unsigned) { return ++met < 4; }));
  EXPECT_EQ(met, 4);
}

/// Answers 0 at the step it is asked to.
struct Listener final : IPorcentaje {
  int Porcentaje(int, unsigned long long value, unsigned long long total, bool) override {
    steps.emplace_back(value, total);
    return steps.size() == cancelAt ? 0 : 1;
  }
  void Fase(int, unsigned) override {}
  void Cierra(int, int) override {}
  void Amplia(int, int) override {}
  void Abre(int, int, int) override {}
  void Mensaje(int, CString*, int) override {}

  std::vector<std::pair<unsigned long long, unsigned long long>> steps;
  std::size_t cancelAt = 0;
};

TEST_F(CFiltroPuntosTest, ProgressIsToldBeforeEachVisitAndEndsTheWalkWhenItIsAnswered0) {
  Listener listener;
  listener.cancelAt = 3;
  CMarcha progress(&listener, 3, 9, 5);
  int met = 0;
  const auto visit = [&](CLinea<int> const&, unsigned, unsigned) { ++met; };
  EXPECT_EQ(RecorrePuntos(drawing, Filter(), nullptr, progress, visit), kCancelado);
  EXPECT_EQ(met, 2);
  EXPECT_THAT(listener.steps, ElementsAre(Pair(6, 9), Pair(7, 9), Pair(8, 9)));
}

TEST_F(CFiltroPuntosTest, AWalkThatItsVisitEndsIsDone) {
  CMarcha nobody(nullptr, 3, 6);
  const auto visit = [](CLinea<int> const&, unsigned, unsigned) { return false; };
  EXPECT_EQ(RecorrePuntos(drawing, Filter(), nullptr, nobody, visit), kHecho);
  EXPECT_EQ(nobody.Hechos(), 1U);
}

TEST_F(CFiltroPuntosTest, CountingTellsProgressAnEntityAndTakesThoseWithinTheWindowWhole) {
  data.zMax = 1.0;  // entity 0 has points above it; entity 1 lies below it with all of them
  for (int k = 0; k < 3; ++k) drawing[1].PunteroAPunto(k)->z = 50 + k;
  drawing[1].CalculaMaximas();
  Listener listener;
  CMarcha progress(&listener, 3, 2);
  CCuentaPuntos count;
  EXPECT_EQ(CuentaPuntos(drawing, Filter(), nullptr, progress, count), kHecho);
  EXPECT_EQ(count.cuantos, 5U);
  EXPECT_EQ(count.caja.Maximo.z, 100);
  EXPECT_THAT(listener.steps, ElementsAre(Pair(1, 2), Pair(2, 2)));
}

TEST_F(CFiltroPuntosTest, CountingIsCancelledAtAnEntity) {
  Listener listener;
  listener.cancelAt = 2;
  CMarcha progress(&listener, 3, 2);
  CCuentaPuntos count;
  EXPECT_EQ(CuentaPuntos(drawing, Filter(), nullptr, progress, count), kCancelado);
  EXPECT_EQ(count.cuantos, 3U);
}

}  // namespace
}  // namespace Meseta47
