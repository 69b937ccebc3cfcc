#include "model/drawing/CDibujo.h"

#include <gmock/gmock.h>
#include <limits>
#include <random>

#include "model/Fixtures.h"
#include "model/geometry/Hilbert.h"

using namespace Meseta47;
using namespace Meseta47::test;

namespace {

using testing::ElementsAre;
using Real = CCoor3D<double>;

std::vector<std::string> Codes(CDibujo<int> const& drawing) {
  std::vector<std::string> codes;
  for (unsigned i = 0; i < drawing.Cantidad(); ++i) codes.push_back(drawing[i].GetCodigo().Utf8());
  return codes;
}

CLinea<int> SquareOf(int side, wchar_t const* code, int x = 0) {
  return Line({P(x, 0), P(x + side, 0), P(x + side, side), P(x, side), P(x, 0)}, code);
}

TEST(CDibujo, ANewDrawingIsEmptyAndNoCloud) {
  const CDibujo<int> drawing(CDataSemilla(3, 1, 2, 3));
  EXPECT_EQ(drawing.Cantidad(), 0u);
  EXPECT_EQ(drawing.nEntidades, 0u);
  EXPECT_EQ(drawing.nPuntos, 0u);
  EXPECT_EQ(drawing.tipoNube, 0);
  EXPECT_EQ(drawing.estado, 0u);
  EXPECT_EQ(drawing.semilla.precision, 3);
  EXPECT_EQ(drawing.GetTipoObjeto(), OBJETO_DIBUJO);
  EXPECT_TRUE(drawing.GetMaximasInt().EstanVacias(true));
  EXPECT_TRUE(drawing.GetMaximasDouble().EstanVacias(true));
}

TEST(CDibujo, InsertingAppendsACopyOfTheSameKind) {
  CDibujo<int> drawing;
  CLinea<int> line = Line({P(1, 1), P(2, 2)}, L"line");
  CSetPuntos<int> set = Set({P(3, 3)}, L"set");
  EXPECT_TRUE(drawing.Inserta(line));
  EXPECT_TRUE(drawing.Inserta(set));
  EXPECT_TRUE(drawing.Inserta(static_cast<CLinea<int> const&>(set)));
  EXPECT_TRUE(drawing.Inserta(static_cast<CEntidadDigi<int> const*>(&set)));
  EXPECT_FALSE(drawing.Inserta(nullptr));
  line.Clear();
  ASSERT_EQ(drawing.Cantidad(), 4u);
  EXPECT_EQ(drawing.nPuntos, 5u);
  EXPECT_TRUE(drawing[0].EsGrafico());
  EXPECT_EQ(drawing[0].NPuntos(), 2);
  for (unsigned i = 1; i < 4; ++i) EXPECT_NE(CSetPuntos<int>::De(drawing[i]), nullptr) << i;
}

TEST(CDibujo, InsertingComputesTheBox) {
  CLinea<int> line = Line({P(1, 1), P(2, 2)});
  line.PunteroAPunto(1)->x = 50;
  CDibujo<int> drawing;
  drawing.Inserta(line);
  EXPECT_EQ(drawing[0].maximas.Maximo, P(50, 2));
}

TEST(CDibujo, AnEntityMovedInKeepsItsPointsWhereTheyAre) {
  CDibujo<int> drawing;
  CSetPuntos<int> set = Set({P(3, 3), P(4, 4)});
  CLinea<int> line = Line({P(1, 1)});
  Point const *inSet = set.PunteroAPunto(0), *inLine = line.PunteroAPunto(0);
  drawing.Inserta(std::move(set));
  drawing.Inserta(std::move(line));
  for (int i = 0; i < 100; ++i) drawing.Inserta(Line({P(i, i)}));
  drawing.Sort(7, true, -1);
  bool setFound = false, lineFound = false;
  for (unsigned i = 0; i < drawing.Cantidad(); ++i) {
    setFound = setFound || drawing[i].PunteroAPunto(0) == inSet;
    lineFound = lineFound || drawing[i].PunteroAPunto(0) == inLine;
  }
  EXPECT_TRUE(setFound);
  EXPECT_TRUE(lineFound);
}

TEST(CDibujo, ACopyIsDeepAndCarriesSeedCloudTypeAndData) {
  CDibujo<int> drawing(CDataSemilla(3, 1, 2, 3));
  drawing.tipoNube = 2;
  drawing.estado = 9;
  drawing.fichero = L"a.dib";
  CSetPuntos<int> set(CString(L"set"));
  tipoAero3 info;
  info.gps = 5;
  set.Inserta(P(1, 2, 3), info);
  drawing.Inserta(set);
  CDibujo<int> copy(drawing);
  drawing[0].PunteroAPunto(0)->num = 7;
  CDibujo<int> assigned;
  assigned.Inserta(Line({P(0, 0)}));
  assigned = copy;
  for (CDibujo<int> const* d : {&copy, &assigned}) {
    ASSERT_EQ(d->Cantidad(), 1u);
    EXPECT_EQ(d->nPuntos, 1u);
    EXPECT_EQ((*d)[0].Punto(0).num, 0);
    EXPECT_EQ(CSetPuntos<int>::De((*d)[0])->Info(0).gps, 5);
    EXPECT_EQ(d->semilla.origen[2], 3);
    EXPECT_EQ(d->tipoNube, 2);
    EXPECT_EQ(d->estado, 9u);
    EXPECT_EQ(d->fichero, CString(L"a.dib"));
  }
  const CDibujo<int> moved(std::move(copy));
  EXPECT_EQ(moved.Cantidad(), 1u);
  EXPECT_EQ(copy.Cantidad(), 0u);  // NOLINT: the state after a move is part of the contract
  EXPECT_EQ(copy.nPuntos, 0u);
}

TEST(CDibujo, NumbersGoToZeroInEveryEntity) {
  CDibujo<int> drawing;
  drawing.Inserta(Line({Point(0, 0, 0, 5)}));
  drawing.Inserta(Set({Point(1, 1, 0, -6)}));
  drawing.PonNumerosACero();
  EXPECT_EQ(drawing[0].Punto(0).num, 0);
  EXPECT_EQ(drawing[1].Punto(0).num, 0);
}

// ---- Order ----

TEST(CDibujo, KeySevenOrdersEntitiesAlongAHilbertCurveOfTheirCentres) {
  std::mt19937 random(20240616);
  CDibujo<int> drawing;
  for (int i = 0; i < 500; ++i) {
    const int x = static_cast<int>(random() % 2000001) - 1000000, y = static_cast<int>(random() % 2000001) - 1000000;
    drawing.Inserta(Line({P(x - 10, y - 20), P(x + 10, y + 20)}));
  }
  drawing.Sort(7, true, -1);
  const Point corner = drawing.GetMaximasInt().Minimo;
  std::uint64_t last = 0;
  for (unsigned i = 0; i < drawing.Cantidad(); ++i) {
    const Point centre = drawing[i].maximas.Centro(false);
    const std::uint64_t place =
        Hilbert(static_cast<std::uint32_t>(centre.x - corner.x), static_cast<std::uint32_t>(centre.y - corner.y));
    ASSERT_GE(place, last) << i;
    last = place;
  }
}

TEST(CDibujo, KeySevenMakesAPathThroughAGridThatNeverJumps) {
  CDibujo<int> drawing;
  for (int x = 0; x < 16; ++x) {
    for (int y = 0; y < 16; ++y) drawing.Inserta(Line({P(-500 + x, 300 + y)}));
  }
  drawing.Sort(7, true, -1);
  for (unsigned i = 1; i < drawing.Cantidad(); ++i) {
    ASSERT_EQ(drawing[i].Punto(0).Distancia2(drawing[i - 1].Punto(0)), 1.0) << i;
  }
}

TEST(CDibujo, EqualEntitiesKeepTheirOrderInBothSenses) {
  CDibujo<int> drawing;
  for (wchar_t const* code : {L"a", L"b", L"c"}) drawing.Inserta(SquareOf(10, code));
  drawing.Sort(7, true, -1);
  EXPECT_THAT(Codes(drawing), ElementsAre("a", "b", "c"));
  drawing.Sort(3, false, -1);
  EXPECT_THAT(Codes(drawing), ElementsAre("a", "b", "c"));
}

TEST(CDibujo, EmptyEntitiesComeLastAlongTheCurve) {
  CDibujo<int> drawing;
  drawing.Inserta(Line({}, L"empty"));
  drawing.Inserta(Line({P(std::numeric_limits<int>::max(), std::numeric_limits<int>::min())}, L"far"));
  drawing.Inserta(Line({P(std::numeric_limits<int>::min(), std::numeric_limits<int>::min())}, L"near"));
  drawing.Sort(7, true, -1);
  EXPECT_THAT(Codes(drawing), ElementsAre("near", "far", "empty"));
}

TEST(CDibujo, KeyThreePutsLargerOutlinesFirstAndSetsLast) {
  CDibujo<int> drawing;
  drawing.Inserta(Set({P(0, 0), P(100, 0), P(100, 100)}, L"set"));
  drawing.Inserta(SquareOf(10, L"small"));
  drawing.Inserta(SquareOf(100, L"large"));
  CLinea<int> hole = SquareOf(50, L"hole");
  hole.Voltea();
  drawing.Inserta(hole);
  drawing.Inserta(Line({P(0, 0), P(1000, 1000)}, L"open"));
  drawing.Sort(3, true, -1);
  EXPECT_THAT(Codes(drawing), ElementsAre("large", "hole", "small", "open", "set"));
  drawing.Sort(3, false, -1);
  EXPECT_THAT(Codes(drawing), ElementsAre("set", "open", "small", "hole", "large"));
}

TEST(CDibujo, SortingAKindLeavesTheOthersInTheirPlaces) {
  CDibujo<int> drawing;
  drawing.Inserta(SquareOf(10, L"small"));
  drawing.Inserta(Set({P(0, 0)}, L"set"));
  drawing.Inserta(SquareOf(100, L"large"));
  drawing.Sort(3, true, ENTIDAD_LINEA);
  EXPECT_THAT(Codes(drawing), ElementsAre("large", "set", "small"));
}

TEST(CDibujo, AnotherKeyChangesNothingAndNoKeyMovesAPointWithinItsEntity) {
  CDibujo<int> drawing;
  drawing.Inserta(Line({P(5, 5), P(1, 1), P(9, 2)}, L"b"));
  drawing.Inserta(Line({P(0, 0), P(7, 7), P(3, 3)}, L"a"));
  drawing.Sort(1, true, -1);
  EXPECT_THAT(Codes(drawing), ElementsAre("b", "a"));
  drawing.Sort(7, true, -1);
  EXPECT_THAT(Codes(drawing), ElementsAre("a", "b"));
  EXPECT_THAT(drawing[1].Puntos(), ElementsAre(P(5, 5), P(1, 1), P(9, 2)));
  EXPECT_THAT(drawing[0].Puntos(), ElementsAre(P(0, 0), P(7, 7), P(3, 3)));
}

// ---- Extent and counts ----

TEST(CDibujo, TheBoxIsThatOfAllEntities) {
  CDibujo<int> drawing(CDataSemilla(2, 1000, 1000, 0));
  drawing.Inserta(Line({P(0, 100, 5), P(200, 300, -5)}));
  drawing.Inserta(Set({P(-100, 150, 70)}));
  drawing.Inserta(CLinea<int>(CString(L"empty")));
  EXPECT_EQ(drawing.GetMaximasInt(), BoxOf<int>({P(-100, 100, -5), P(200, 300, 70)}));
  EXPECT_EQ(drawing.GetMaximasDouble(), BoxOf<double>({Real(-1, 1, -0.05, 0), Real(2, 3, 0.7, 0)}));
}

TEST(CDibujo, AFrameWidensTheBoxUntilItIsTakenOff) {
  CDibujo<int> drawing(CDataSemilla(1, 0, 0, 0));
  drawing.Inserta(Line({P(0, 0, 0)}));
  drawing.SetMaximasDouble(BoxOf<double>({Real(-5, -6, 0, 0), Real(7, 8, 9, 0)}));
  EXPECT_EQ(drawing.GetMaximasInt(), BoxOf<int>({P(-50, -60, 0), P(70, 80, 90)}));
  drawing.SetMaximasDouble(CMaximas<double>());
  EXPECT_EQ(drawing.GetMaximasInt(), BoxOf<int>({P(0, 0, 0)}));
}

TEST(CDibujo, CountingSeesWhatChangedBehindTheDrawing) {
  CDibujo<int> drawing;
  drawing.Inserta(Line({P(0, 0)}));
  drawing.Inserta(Set({P(1, 1), P(2, 2)}));
  drawing[0] << P(5, 5) << P(6, 6);
  drawing[1].SetBorrado(true);
  EXPECT_EQ(drawing.nPuntos, 3u);
  drawing.ActualizaCantidades();
  EXPECT_EQ(drawing.nPuntos, 5u);
  EXPECT_THAT(drawing.cantidades, ElementsAre(2u, 5u, 1u));
}

TEST(CDibujo, ClearingLeavesAnEmptyDrawingWithItsSeed) {
  CDibujo<int> drawing(CDataSemilla(4, 0, 0, 0));
  drawing.Inserta(Line({P(0, 0)}));
  drawing.ActualizaCantidades();
  drawing.Clear();
  EXPECT_EQ(drawing.Cantidad(), 0u);
  EXPECT_EQ(drawing.nPuntos, 0u);
  EXPECT_THAT(drawing.cantidades, ElementsAre(0u, 0u, 0u));
  EXPECT_EQ(drawing.semilla.precision, 4);
}

// ---- Repeated points ----

TEST(CDibujo, ARepeatedPointStaysWhereItCameFirstAcrossSets) {
  CDibujo<int> drawing;
  drawing.Inserta(Set({P(1, 1, 1), P(2, 2, 2), P(1, 1, 1)}, L"a"));
  drawing.Inserta(Set({P(2, 2, 2), P(1, 1, 9), P(3, 3, 3)}, L"b"));
  EXPECT_EQ(drawing.BorraDuplicadas(true, false), 1);
  ASSERT_EQ(drawing.Cantidad(), 2u);
  EXPECT_THAT(drawing[0].Puntos(), ElementsAre(P(1, 1, 1), P(2, 2, 2)));
  EXPECT_THAT(drawing[1].Puntos(), ElementsAre(P(1, 1, 9), P(3, 3, 3)));
  EXPECT_EQ(drawing[1].maximas, BoxOf(drawing[1].Puntos()));
  EXPECT_EQ(drawing.nPuntos, 4u);
}

TEST(CDibujo, InPlanTheHeightDoesNotTellPointsApart) {
  CDibujo<int> drawing;
  drawing.Inserta(Set({P(1, 1, 1), P(1, 1, 2), P(2, 2, 2)}));
  EXPECT_EQ(drawing.BorraDuplicadas(true, true), 1);
  EXPECT_THAT(drawing[0].Puntos(), ElementsAre(P(1, 1, 1), P(2, 2, 2)));
}

TEST(CDibujo, AnEntityThatLosesAllItsPointsLeavesTheDrawing) {
  CDibujo<int> drawing;
  drawing.Inserta(Set({P(1, 1, 1)}, L"a"));
  drawing.Inserta(Set({P(1, 1, 1)}, L"b"));
  drawing.Inserta(CSetPuntos<int>(CString(L"empty")));
  EXPECT_EQ(drawing.BorraDuplicadas(true, false), 1);
  EXPECT_THAT(Codes(drawing), ElementsAre("a"));
  EXPECT_EQ(drawing.nEntidades, 1u);
}

TEST(CDibujo, AnEmptyDrawingHasNothingRepeated) {
  CDibujo<int> drawing;
  EXPECT_EQ(drawing.BorraDuplicadas(true, false), 1);
  drawing.Inserta(CSetPuntos<int>(CString(L"empty")));
  EXPECT_EQ(drawing.BorraDuplicadas(true, false), 1);
  EXPECT_EQ(drawing.Cantidad(), 0u);
}

TEST(CDibujo, ARepeatedLineGoesAndAnotherThatCrossesItStays) {
  CDibujo<int> drawing;
  drawing.Inserta(Line({P(0, 0, 1), P(5, 5, 1)}, L"a"));
  drawing.Inserta(Line({P(0, 0, 1), P(5, 5, 2)}, L"a"));
  drawing.Inserta(Line({P(0, 0, 1), P(5, 5, 1)}, L"b"));
  drawing.Inserta(Line({P(0, 0, 1), P(5, 5, 1)}, L"a"));
  CDibujo<int> inPlan(drawing);
  drawing.BorraDuplicadas(false, false);
  EXPECT_THAT(Codes(drawing), ElementsAre("a", "a", "b"));
  inPlan.BorraDuplicadas(false, true);
  EXPECT_THAT(Codes(inPlan), ElementsAre("a", "b"));
  EXPECT_EQ(inPlan[0].Punto(1), P(5, 5, 1));
}

TEST(CDibujo, OnlyWhenPointsAreAskedForDoTheyGo) {
  CDibujo<int> drawing;
  drawing.Inserta(Set({P(1, 1), P(1, 1)}));
  drawing.Inserta(Line({P(2, 2), P(2, 2), P(1, 1), P(2, 2)}));
  drawing.BorraDuplicadas(false, false);
  EXPECT_EQ(drawing.nPuntos, 6u);
  drawing.BorraDuplicadas(true, false);
  EXPECT_THAT(drawing[0].Puntos(), ElementsAre(P(1, 1)));
  EXPECT_THAT(drawing[1].Puntos(), ElementsAre(P(2, 2), P(1, 1), P(2, 2)));
}

TEST(CDibujo, DeletedEntitiesAreNotLookedAt) {
  CDibujo<int> drawing;
  CSetPuntos<int> deleted = Set({P(1, 1), P(1, 1)}, L"deleted");
  deleted.SetBorrado(true);
  drawing.Inserta(deleted);
  drawing.Inserta(Set({P(1, 1)}, L"alive"));
  drawing.BorraDuplicadas(true, false);
  EXPECT_THAT(Codes(drawing), ElementsAre("deleted", "alive"));
  EXPECT_EQ(drawing.nPuntos, 3u);
}

// ---- Sum ----

TEST(CDibujo, AddingADrawingCopiesItsEntitiesAsTheyAre) {
  CDibujo<int> a(CDataSemilla(2, 0, 0, 0)), b(CDataSemilla(3, 100, 0, 0));
  a.Inserta(Line({P(0, 0)}, L"a"));
  b.Inserta(Set({P(1000, 2000, 3000)}, L"b"));
  EXPECT_EQ(a.Suma(b, false, 0), 1u);
  EXPECT_THAT(Codes(a), ElementsAre("a", "b"));
  EXPECT_EQ(a[1].Punto(0), P(1000, 2000, 3000));
  EXPECT_NE(CSetPuntos<int>::De(a[1]), nullptr);
  EXPECT_EQ(b.Cantidad(), 1u);
  EXPECT_EQ(a.nPuntos, 2u);
}

TEST(CDibujo, AddingWithConversionBringsPointsToTheSameMetres) {
  CDibujo<int> a(CDataSemilla(2, 10, 20, 30)), b(CDataSemilla(3, 100, 0, 0));
  b.Inserta(Set({P(1000, 2000, 3000)}));
  EXPECT_EQ(a.Suma(b, true, 0), 1u);
  EXPECT_EQ(a[0].Punto(0), P(9100, -1800, -2700));
  EXPECT_EQ(a[0].maximas, BoxOf<int>({P(9100, -1800, -2700)}));
}

TEST(CDibujo, AddingCanChooseTheKind) {
  CDibujo<int> b;
  b.Inserta(Line({P(0, 0)}, L"line"));
  b.Inserta(Set({P(0, 0)}, L"set"));
  CDibujo<int> lines, sets;
  EXPECT_EQ(lines.Suma(b, false, 1), 1u);
  EXPECT_EQ(sets.Suma(b, false, 2), 1u);
  EXPECT_THAT(Codes(lines), ElementsAre("line"));
  EXPECT_THAT(Codes(sets), ElementsAre("set"));
}

TEST(CDibujo, AddingADrawingThatIsGivenAwayMovesItsPoints) {
  CDibujo<int> a, b;
  b.Inserta(Set({P(1, 1)}, L"set"));
  b.Inserta(Line({P(2, 2)}, L"line"));
  Point const* point = b[0].PunteroAPunto(0);
  EXPECT_EQ(a.Suma(std::move(b), false, 2), 1u);
  EXPECT_EQ(a[0].PunteroAPunto(0), point);
  EXPECT_THAT(Codes(b), ElementsAre("line"));  // NOLINT: what was not chosen stays
  EXPECT_EQ(b.nPuntos, 1u);
}

TEST(CDibujo, ADrawingCanBeAddedToItself) {
  CDibujo<int> a;
  a.Inserta(Line({P(1, 1)}, L"a"));
  EXPECT_EQ(a.Suma(a, true, 0), 1u);
  EXPECT_THAT(Codes(a), ElementsAre("a", "a"));
}

TEST(CDibujo, AnotherReferenceSystemIsReachedThroughMetres) {
  CDibujo<int> drawing(CDataSemilla(2, 1000, 2000, 0));
  drawing.Inserta(Line({P(100, 200, 300)}));
  CDataHelmertNTV2 data;
  data.escala = 1;
  data.traslacion[2] = 0.5;
  EXPECT_TRUE(drawing.Transformacion(data));
  // (1001, 2002, 3) doubled is (2002, 4004, 6), and 0.5 m higher.
  EXPECT_EQ(drawing[0].Punto(0), P(100200, 200400, 650));
  EXPECT_EQ(drawing[0].maximas.Maximo, P(100200, 200400, 650));
}

}  // namespace
