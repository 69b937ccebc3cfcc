#include "model/drawing/CLinea.h"

#include <gmock/gmock.h>
#include <limits>
#include <numbers>

#include "model/Fixtures.h"

using namespace Meseta47;
using namespace Meseta47::test;

namespace {

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kGreatest = std::numeric_limits<int>::max();

using Real = CCoor3D<double>;
using testing::ElementsAre;

/// The box is right after every operation.
void ExpectPoints(CLinea<int> const& line, std::vector<Point> const& points) {
  EXPECT_EQ(line.Puntos(), points);
  EXPECT_EQ(line.maximas, BoxOf(points));
}

CLinea<int> Square() { return Line({P(0, 0, 1), P(10, 0, 2), P(10, 10, 3), P(0, 10, 4), P(0, 0, 1)}); }

TEST(CLinea, ItsOwnPointIsAppendedToIt) {
  CLinea<int> ring(L"ring");
  ring << P(-7, 3, 9);
  for (int i = 1; i < 40; ++i) ring << P(i, i, 0);
  for (int i = 0; i < 100; ++i) ring << ring.Punto(0);  // whatever room there was, it has grown meanwhile
  EXPECT_EQ(ring.Punto(139), P(-7, 3, 9));
  EXPECT_EQ(ring.maximas.Minimo, P(-7, 1, 0));
  EXPECT_EQ(ring.maximas.Maximo, P(39, 39, 9));
}

TEST(CLinea, ANewLineIsGraphicAndEmpty) {
  const CLinea<int> line(CString(L"ridge"));
  EXPECT_TRUE(line.EsGrafico());
  EXPECT_FALSE(line.EsSetPuntos());
  EXPECT_EQ(line.GetCodigo(), CString(L"ridge"));
  EXPECT_EQ(line.NPuntos(), 0);
  EXPECT_TRUE(line.maximas.EstanVacias(true));
}

TEST(CLinea, PointsAreAppendedThroughTheBaseToo) {
  CLinea<int> line(CString(L"a"));
  CEntidadDigi<int>& entity = line;
  entity << P(1, 2, 3) << P(4, 5, 6);
  ExpectPoints(line, {P(1, 2, 3), P(4, 5, 6)});
  EXPECT_EQ(entity.NPuntos(), 2);
  EXPECT_EQ(entity.Punto(1), P(4, 5, 6));
}

TEST(CLinea, ThePointerLeadsToTheStoredPoint) {
  CLinea<int> line = Square();
  line.PunteroAPunto(2)->num = 77;
  EXPECT_EQ(line.Punto(2).num, 77);
  line.PonNumerosACero();
  EXPECT_EQ(line.Punto(2).num, 0);
}

TEST(CLinea, AListOfPointsCanBeOfAKindThatIsNoTerrain) {
  const CLinea<int> text(CTipoDat(ENTIDAD_TEXTO, L"label"));
  EXPECT_FALSE(text.EsGrafico());
  EXPECT_FALSE(text.EsSetPuntos());
  EXPECT_FALSE(CLinea<int>(text).EsGrafico());
  EXPECT_FALSE(CLinea<int>(CTipoDat(ENTIDAD_SETPUNTOS, L"x")).EsSetPuntos());
}

TEST(CLinea, TheLineCopiedFromASetOfPointsIsALine) {
  const CSetPuntos<int> set = Set({P(1, 2, 3)});
  CLinea<int> copy(static_cast<CLinea<int> const&>(set));
  EXPECT_TRUE(copy.EsGrafico());
  ExpectPoints(copy, {P(1, 2, 3)});
  CLinea<int> assigned(CString(L"other"));
  assigned = set;
  EXPECT_TRUE(assigned.EsGrafico());
  EXPECT_EQ(assigned.GetCodigo(), CString(L"set"));
  ExpectPoints(assigned, {P(1, 2, 3)});
}

TEST(CLinea, AMovedLineLeavesAnEmptyOneBehind) {
  CLinea<int> line = Square();
  Point const* first = line.PunteroAPunto(0);
  CLinea<int> other(std::move(line));
  EXPECT_EQ(other.PunteroAPunto(0), first) << "the points themselves must move, not a copy";
  ExpectPoints(line, {});  // NOLINT: the state after a move is part of the contract
  CLinea<int> third;
  third = std::move(other);
  EXPECT_EQ(third.PunteroAPunto(0), first);
  ExpectPoints(other, {});  // NOLINT
  ExpectPoints(third, Square().Puntos());
}

TEST(CLinea, TakingOverAVectorDoesNotCopyIt) {
  std::vector<Point> points{P(3, 3, 3), P(-1, 7, 0)};
  Point const* first = points.data();
  CLinea<int> line;
  line.Asigna(std::move(points));
  EXPECT_EQ(line.PunteroAPunto(0), first);
  ExpectPoints(line, {P(3, 3, 3), P(-1, 7, 0)});
}

TEST(CLinea, AssigningAnEntityTakesCodeMarkAndPointsButNotTheKind) {
  CSetPuntos<int> set = Set({P(1, 1, 1), P(2, 2, 2)}, L"cloud");
  set.SetBorrado(true);
  CLinea<int> line = Square();
  line.Asigna(set);
  ExpectPoints(line, {P(1, 1, 1), P(2, 2, 2)});
  EXPECT_EQ(line.GetCodigo(), CString(L"cloud"));
  EXPECT_TRUE(line.EsBorrado());
  EXPECT_TRUE(line.EsGrafico());
}

TEST(CLinea, AssigningToItselfKeepsThePoints) {
  CLinea<int> line = Square();
  line.Asigna(static_cast<CEntidadDigi<int> const&>(line));
  ExpectPoints(line, Square().Puntos());
}

TEST(CLinea, AssigningTheOtherNumberFormRounds) {
  CLinea<double> real(CString(L"r"));
  real << Real(1.4, 2.6, -3.6, 5);
  CLinea<int> line;
  line.Asigna(real);
  ExpectPoints(line, {P(1, 3, -4)});
  EXPECT_EQ(line.Punto(0).num, 5);
  CLinea<double> back;
  back.Asigna(line);
  EXPECT_EQ(back.Punto(0), Real(1, 3, -4, 0));
}

TEST(CLinea, SwappingExchangesEverythingButTheKind) {
  CLinea<int> line = Square();
  CSetPuntos<int> set = Set({P(9, 9, 9)}, L"cloud");
  set.SetBorrado(true);
  line.swap(static_cast<CEntidadDigi<int>&>(set));
  ExpectPoints(line, {P(9, 9, 9)});
  ExpectPoints(set, Square().Puntos());
  EXPECT_EQ(line.GetCodigo(), CString(L"cloud"));
  EXPECT_TRUE(line.EsBorrado());
  EXPECT_FALSE(set.EsBorrado());
  EXPECT_TRUE(set.EsSetPuntos());

  CLinea<double> real(CString(L"real"));
  real << Real(0.25, 0.75, 0, 0);
  line.swap(static_cast<CEntidadDigi<double>&>(real));
  ExpectPoints(line, {P(0, 1, 0)});
  EXPECT_EQ(real.Punto(0), Real(9, 9, 9, 0));
}

TEST(CLinea, EqualityIsOfKindCodeAndPositions) {
  EXPECT_TRUE(Square() == Square());
  EXPECT_FALSE(Square() != Square());
  CLinea<int> numbered = Square();
  numbered.PunteroAPunto(0)->num = 5;
  EXPECT_TRUE(numbered == Square());
  EXPECT_FALSE(Square() == Line(Square().Puntos(), L"other"));
  EXPECT_FALSE(Line({P(0, 0)}, L"a") == Set({P(0, 0)}, L"a"));
  EXPECT_FALSE(Line({P(0, 0)}) == Line({P(0, 0), P(0, 0)}));
  CCabDigi<int> const& head = numbered;
  EXPECT_TRUE(head == static_cast<CCabDigi<int> const&>(Square()));
}

TEST(CLinea, TheOrderIsByCodeAndThenByBox) {
  EXPECT_TRUE(Line({P(9, 9)}, L"a") < Line({P(0, 0)}, L"b"));
  EXPECT_TRUE(Line({P(0, 0)}, L"a") < Line({P(1, 0)}, L"a"));
  EXPECT_FALSE(Line({P(0, 0)}, L"a") < Line({P(0, 0)}, L"a"));
}

TEST(CLinea, ClearingLeavesCodeAndMark) {
  CLinea<int> line = Square();
  line.SetBorrado(true);
  line.Clear();
  ExpectPoints(line, {});
  EXPECT_EQ(line.GetCodigo(), CString(L"line"));
  EXPECT_TRUE(line.EsBorrado());
}

TEST(CLinea, ShiftingStopsAtTheEndOfTheRange) {
  CLinea<int> line = Line({P(0, kGreatest - 1, kLeast), P(5, 0, 0)});
  line.Mover(10, 5, -1);
  ExpectPoints(line, {P(10, kGreatest, kLeast), P(15, 5, -1)});
}

TEST(CLinea, ScalingMultipliesEachAxisByItsFactor) {
  CLinea<int> line = Line({P(10, 20, 30)});
  line.PunteroAPunto(0)->num = 4;
  line.Escalar(0.5, 2, -1);
  ExpectPoints(line, {P(5, 40, -30)});
  EXPECT_EQ(line.Punto(0).num, 4);
}

TEST(CLinea, HeightsCanBeSetToZeroOrToAValue) {
  CLinea<int> line = Line({P(1, 2, 3), P(4, 5, 6)});
  line.ZFija(-9);
  ExpectPoints(line, {P(1, 2, -9), P(4, 5, -9)});
  line.ZetaCero();
  ExpectPoints(line, {P(1, 2, 0), P(4, 5, 0)});
}

TEST(CLinea, AMapAndItsInverseBringEveryPointBack) {
  CTransformacion map;
  map.giro = std::numbers::pi / 2;
  map.escala = 3;
  map.dx = 7;
  CLinea<int> line = Square();
  ASSERT_TRUE(line.Helmert(map));
  ExpectPoints(line, {P(7, 0, 1), P(7, 30, 2), P(-23, 30, 3), P(-23, 0, 4), P(7, 0, 1)});
  ASSERT_TRUE(line.HelmertInverso(map));
  ExpectPoints(line, Square().Puntos());

  CMatrizCuadrada matrix(4);
  matrix(0, 0) = 5;
  matrix(0, 3) = 100;
  ASSERT_TRUE(line.Helmert(matrix));
  EXPECT_EQ(line.Punto(1), P(150, 0, 2));
  ASSERT_TRUE(line.HelmertInverso(matrix));
  ExpectPoints(line, Square().Puntos());
}

TEST(CLinea, AMapWithoutInverseOrOfAnotherOrderChangesNothing) {
  CLinea<int> line = Square();
  CTransformacion flat;
  flat.escala = 0;
  CMatrizCuadrada singular(3);
  singular(0, 0) = 0;
  EXPECT_FALSE(line.HelmertInverso(flat));
  EXPECT_FALSE(line.HelmertInverso(singular));
  EXPECT_FALSE(line.Helmert(CMatrizCuadrada(2)));
  EXPECT_FALSE(line.HelmertInverso(CMatrizCuadrada(5)));
  ExpectPoints(line, Square().Puntos());
}

TEST(CLinea, AReplacedPointGrowsTheBoxAndShrinksItWhenAsked) {
  CLinea<int> line = Line({P(0, 0), P(5, 5), P(100, 100)});
  EXPECT_TRUE(line.ModificaPunto(2, P(10, 10), true));
  ExpectPoints(line, {P(0, 0), P(5, 5), P(10, 10)});
  EXPECT_TRUE(line.ModificaPunto(1, P(-3, 20, 4), false));
  ExpectPoints(line, {P(0, 0), P(-3, 20, 4), P(10, 10)});
  EXPECT_TRUE(line.ModificaPunto(1, P(5, 5), false));
  EXPECT_EQ(line.maximas, BoxOf<int>({P(0, 0), P(-3, 20, 4), P(10, 10)})) << "without asking it only grows";
  line.CalculaMaximas();
  ExpectPoints(line, {P(0, 0), P(5, 5), P(10, 10)});
}

TEST(CLinea, AnIndexOutOfRangeIsRefused) {
  CLinea<int> line = Line({P(0, 0)});
  EXPECT_FALSE(line.ModificaPunto(1, P(9, 9), true));
  EXPECT_FALSE(line.ModificaTipoPunto(1, 2));
  EXPECT_EQ(line.BorraPunto(1, 1), 0);
  EXPECT_EQ(line.BorraPunto(-1, 1), 0);
  EXPECT_EQ(line.BorraPunto(0, 0), 0);
  ExpectPoints(line, {P(0, 0)});
}

TEST(CLinea, TheClassOfAPointIsAByte) {
  CLinea<int> line = Line({P(0, 0), P(1, 1)});
  EXPECT_TRUE(line.ModificaTipoPunto(1, 255));
  EXPECT_FALSE(line.ModificaTipoPunto(1, 256));
  EXPECT_FALSE(line.ModificaTipoPunto(1, -1));
  EXPECT_EQ(line.Punto(1).GetClasificacion(), 255);
  line.SetClasificacion(CInfoClasificacion(6, 0.0, L""), 0);
  EXPECT_EQ(line.Punto(0).GetClasificacion(), 6);
}

TEST(CLinea, PointsAreTakenOutFromAnIndexOn) {
  CLinea<int> line = Square();
  EXPECT_EQ(line.BorraPunto(1, 2), 2);
  ExpectPoints(line, {P(0, 0, 1), P(0, 10, 4), P(0, 0, 1)});
  EXPECT_EQ(line.BorraPunto(1, kGreatest), 2);
  ExpectPoints(line, {P(0, 0, 1)});
}

TEST(CLinea, OnlyNeighbouringPointsOfALineAreRepeated) {
  CLinea<int> plan = Line({P(0, 0, 1), P(0, 0, 2), P(5, 5), P(5, 5), P(0, 0, 1)});
  CLinea<int> space = plan;
  EXPECT_EQ(plan.BorraPuntosDobles(0), 2);
  ExpectPoints(plan, {P(0, 0, 1), P(5, 5), P(0, 0, 1)});
  EXPECT_EQ(space.BorraPuntosDobles(1), 1);
  ExpectPoints(space, {P(0, 0, 1), P(0, 0, 2), P(5, 5), P(0, 0, 1)});
  CLinea<int> empty;
  EXPECT_EQ(empty.BorraPuntosDobles(0), 0);
}

TEST(CLinea, TurningALineRoundReversesItsPointsAndItsArea) {
  CLinea<int> line = Square();
  EXPECT_EQ(line.DobleArea(), 200.0);
  line.Voltea();
  ExpectPoints(line, {P(0, 0, 1), P(0, 10, 4), P(10, 10, 3), P(10, 0, 2), P(0, 0, 1)});
  EXPECT_EQ(line.DobleArea(), -200.0);
}

TEST(CLinea, TheAreaIsTheSameWithTheLastPointRepeatedOrNot) {
  EXPECT_EQ(Line({P(0, 0), P(10, 0), P(10, 10), P(0, 10)}).DobleArea(), 200.0);
  EXPECT_EQ(Line({P(0, 0), P(10, 0)}).DobleArea(), 0.0);
  const double width = 4294967295.0;
  EXPECT_EQ(Line({P(kLeast, kLeast), P(kGreatest, kLeast), P(kGreatest, kGreatest), P(kLeast, kGreatest)}).DobleArea(),
            2 * width * width);
}

TEST(CLinea, ALineIsClosedWhenItEndsInSpaceWhereItBegins) {
  EXPECT_TRUE(Square().EsCerrada());
  EXPECT_FALSE(Line({P(0, 0, 1), P(10, 0), P(10, 10), P(0, 0, 2)}).EsCerrada());
  EXPECT_FALSE(Line({P(0, 0), P(10, 0), P(0, 0)}).EsCerrada());
}

TEST(CLinea, AnArcIsAppendedByCentreByThreePointsOrAsAnEllipse) {
  CLinea<int> line = Line({P(-500, 0, 7)});
  ASSERT_TRUE(line.Arco(P(0, 0, 7), 1000, 0, std::numbers::pi / 2, 5));
  EXPECT_EQ(line.Punto(1), P(1000, 0, 7));
  EXPECT_EQ(line.Punto(line.NPuntos() - 1), P(0, 1000, 7));
  EXPECT_EQ(line.maximas, BoxOf(line.Puntos()));
  const int before = line.NPuntos();
  ASSERT_TRUE(line.Arco(P(0, 1000, 7), P(-1000, 0, 17), P(0, -1000, 27), 5));
  EXPECT_GT(line.NPuntos(), before + 3);
  EXPECT_EQ(line.Punto(line.NPuntos() - 1), P(0, -1000, 27));
  ASSERT_TRUE(line.ArcoElipse(P(0, 0), 300, 100, 0, 0, std::numbers::pi, 1));
  EXPECT_EQ(line.Punto(line.NPuntos() - 1), P(-300, 0));
  EXPECT_FALSE(line.Arco(P(0, 0), -1, 0, 1, 5));
}

TEST(CLinea, TheCursorTouchesALineBetweenItsPoints) {
  const CLinea<int> line = Line({P(0, 0), P(100, 100)});
  const auto cursor = [](double x, double y) {
    return BoxOf<double>({Real(x - 2, y - 2, 0, 0), Real(x + 2, y + 2, 0, 0)});
  };
  EXPECT_TRUE(line.DentroCursor(cursor(50, 51)));
  EXPECT_FALSE(line.DentroCursor(cursor(50, 60)));
  EXPECT_FALSE(line.DentroCursor(cursor(500, 500)));
  EXPECT_FALSE(line.DentroCursor(CMaximas<double>()));
  EXPECT_FALSE(CLinea<int>().DentroCursor(cursor(0, 0)));
  CTransformacion view;
  view.escala = 10;
  EXPECT_TRUE(line.DentroCursor(view, cursor(500, 500)));
  EXPECT_FALSE(line.DentroCursor(view, cursor(50, 60)));
}

TEST(CLinea, SelectionReachesAsFarAsTheDistance) {
  const CLinea<int> line = Line({P(0, 0), P(100, 0)});
  EXPECT_TRUE(line.Selecciona(P(50, 5), 5));
  EXPECT_FALSE(line.Selecciona(P(50, 6), 5));
  EXPECT_FALSE(line.Selecciona(P(106, 0), 5));
  EXPECT_FALSE(CLinea<int>().Selecciona(P(0, 0), 5));
  EXPECT_EQ(line.SeleccionaPunto(P(97, 4), 5), 1);
  EXPECT_EQ(line.SeleccionaPunto(P(96, 4), 5), -1);
  EXPECT_EQ(Line({P(0, 0), P(0, 0)}).SeleccionaPunto(P(0, 0), 0), 0);
}

class Canvas : public ILienzo {
 public:
  std::vector<std::vector<Real>> lines;
  std::vector<Real> points;
  void Linea(std::vector<Real> const& p) override { lines.push_back(p); }
  void Punto(Real const& p) override { points.push_back(p); }
};

TEST(CLinea, ALinePaintsItselfOnceAsTheViewShowsItUnlessDeleted) {
  CLinea<int> line = Line({P(1, 2, 3), P(4, 5, 6)});
  CTransformacion view;
  view.escala = 2;
  view.dx = 10;
  Canvas canvas;
  line.OnPaint(canvas, view);
  EXPECT_THAT(canvas.lines, ElementsAre(std::vector<Real>{Real(12, 4, 3, 0), Real(18, 10, 6, 0)}));
  line.SetBorrado(true);
  line.OnPaint(canvas, view);
  CLinea<int>().OnPaint(canvas, view);
  EXPECT_EQ(canvas.lines.size(), 1u);
  Set({P(1, 1), P(2, 2)}).OnPaint(canvas, CTransformacion());
  EXPECT_THAT(canvas.points, ElementsAre(Real(1, 1, 0, 0), Real(2, 2, 0, 0)));
}

// ---- File ----

CLinea<int> Decorated() {
  CLinea<int> line = Line({P(1, -2, 3), P(kGreatest, kLeast, 0)}, L"r\u00edo");
  line.SetBorrado(true);
  line.PunteroAPunto(0)->intensidad = 65535;
  line.PunteroAPunto(0)->num = 12;
  line.PunteroAPunto(1)->clasificacion = 255;
  line.PunteroAPunto(1)->SetBorrado(true);
  return line;
}

TEST(CLinea, ReadsWhatItWroteButForTheNumbers) {
  ScratchFile scratch;
  CFile out = scratch.ForWriting();
  ASSERT_TRUE(Decorated().Write(&out, CDataSemilla(), 0, FICHERO_NATIVO));
  ASSERT_TRUE(out.Close());
  CFile in = scratch.ForReading();
  CLinea<int> read;
  ASSERT_TRUE(read.Read(&in, 1.0, FICHERO_NATIVO));
  EXPECT_EQ(read, Decorated());
  ExpectPoints(read, Decorated().Puntos());
  EXPECT_TRUE(read.EsBorrado());
  EXPECT_EQ(read.Punto(0).intensidad, 65535);
  EXPECT_EQ(read.Punto(0).num, 0);
  EXPECT_EQ(read.Punto(1).clasificacion, 255);
  EXPECT_TRUE(read.Punto(1).EsBorrado());
}

TEST(CLinea, AFileCutAnywhereIsRefusedAndChangesNothing) {
  ScratchFile scratch;
  CFile out = scratch.ForWriting();
  ASSERT_TRUE(Decorated().Write(&out, CDataSemilla(), 0, FICHERO_NATIVO));
  ASSERT_TRUE(out.Close());
  for (std::size_t bytes = scratch.Bytes().size(); bytes-- > 0;) {
    scratch.Cut(bytes);
    CFile in = scratch.ForReading();
    CLinea<int> read = Square();
    ASSERT_FALSE(read.Read(&in, 1.0, FICHERO_NATIVO)) << bytes;
    ASSERT_EQ(read, Square()) << bytes;
  }
}

TEST(CLinea, AFalseCountOrAnotherKindIsRefused) {
  ScratchFile scratch;
  CFile out = scratch.ForWriting();
  const std::uint16_t head[6] = {0, 1, 0, 0, 0, 0};
  const std::uint32_t points = 0x7FFFFFFF;
  ASSERT_TRUE(out.Write(head, sizeof(head)) && out.Write(&points, 4) && out.Close());
  CFile in = scratch.ForReading();
  CLinea<int> read = Square();
  EXPECT_FALSE(read.Read(&in, 1.0, FICHERO_NATIVO));
  in.Seek(0, CFile::begin);
  CSetPuntos<int> set;
  EXPECT_FALSE(set.Read(&in, 1.0, FICHERO_NATIVO));
  in.Seek(0, CFile::begin);
  EXPECT_FALSE(read.Read(&in, 1.0, static_cast<CTipoFichero>(1)));
  EXPECT_EQ(read, Square());
}

TEST(CLinea, WritingWhereNothingCanBeWrittenFails) {
  ScratchFile scratch;
  ASSERT_TRUE(scratch.ForWriting().Close());
  CFile in = scratch.ForReading();
  EXPECT_FALSE(Square().Write(&in, CDataSemilla(), 0, FICHERO_NATIVO));
  CFile out = scratch.ForWriting();
  EXPECT_FALSE(Square().Write(&out, CDataSemilla(), 0, static_cast<CTipoFichero>(9)));
}

}  // namespace
