#include "model/drawing/CSetPuntos.h"

#include <gmock/gmock.h>

#include "model/Fixtures.h"

using namespace Meseta47;
using namespace Meseta47::test;

namespace {

tipoAero3 Pulse(double gps) {
  tipoAero3 info;
  info.gps = gps;
  info.rojo = 200;
  return info;
}

/// Points 1, 2, 3 ... on the x axis, each with its x for a time.
CSetPuntos<int> Flight(int points) {
  CSetPuntos<int> set(CString(L"flight"));
  for (int i = 1; i <= points; ++i) set.Inserta(P(i, 0), Pulse(i));
  return set;
}

std::vector<double> Times(CSetPuntos<int> const& set) {
  std::vector<double> times;
  for (int i = 0; i < set.NPuntos(); ++i) times.push_back(set.Info(static_cast<unsigned>(i)).gps);
  return times;
}

void ExpectPoints(CSetPuntos<int> const& set, std::vector<Point> const& points) {
  EXPECT_EQ(set.Puntos(), points);
  EXPECT_EQ(set.maximas, BoxOf(points));
}

using testing::ElementsAre;

TEST(CSetPuntos, IsASetOfPointsAndNotGraphic) {
  const CSetPuntos<int> set(CString(L"cloud"));
  EXPECT_TRUE(set.EsSetPuntos());
  EXPECT_FALSE(set.EsGrafico());
  EXPECT_EQ(set.GetCodigo(), CString(L"cloud"));
}

TEST(CSetPuntos, IsFoundBehindALineAndALineIsNot) {
  CSetPuntos<int> set = Flight(1);
  CLinea<int> line = Line({P(0, 0)});
  CLinea<int>& asLine = set;
  EXPECT_EQ(CSetPuntos<int>::De(asLine), &set);
  EXPECT_EQ(CSetPuntos<int>::De(line), nullptr);
  EXPECT_EQ(CSetPuntos<int>::De(static_cast<CLinea<int> const&>(line)), nullptr);
}

TEST(CSetPuntos, StaysASetWhateverIsAssignedToItsBase) {
  CSetPuntos<int> set = Flight(2);
  static_cast<CLinea<int>&>(set) = Line({P(0, 0)});
  EXPECT_TRUE(set.EsSetPuntos());
}

TEST(CSetPuntos, SurveyDataCostNothingUntilAPointHasSome) {
  CSetPuntos<int> set(CString(L"cloud"));
  set << P(1, 1);
  set.Inserta(P(2, 2), tipoAero3());
  EXPECT_FALSE(set.TieneInfos());
  EXPECT_TRUE(set.Info(1) == tipoAero3());
  set.Inserta(P(3, 3), Pulse(7));
  set << P(4, 4);
  EXPECT_TRUE(set.TieneInfos());
  EXPECT_THAT(Times(set), ElementsAre(0, 0, 7, 0));
  ExpectPoints(set, {P(1, 1), P(2, 2), P(3, 3), P(4, 4)});
}

TEST(CSetPuntos, TakesOverPointsAndDataWithoutACopy) {
  std::vector<Point> points{P(1, 1), P(2, 2)};
  std::vector<tipoAero3> infos{Pulse(1), Pulse(2)};
  Point const* first = points.data();
  tipoAero3 const* firstInfo = infos.data();
  CSetPuntos<int> set(CString(L"cloud"));
  ASSERT_TRUE(set.Asigna(std::move(points), std::move(infos)));
  EXPECT_EQ(set.PunteroAPunto(0), first);
  EXPECT_EQ(&set.Info(0), firstInfo);
  ExpectPoints(set, {P(1, 1), P(2, 2)});
  EXPECT_TRUE(set.Asigna({P(3, 3)}, {}));
  EXPECT_FALSE(set.TieneInfos());
}

TEST(CSetPuntos, DataThatAreNotAsManyAsThePointsAreRefused) {
  CSetPuntos<int> set = Flight(2);
  EXPECT_FALSE(set.Asigna({P(9, 9), P(8, 8)}, {Pulse(1)}));
  EXPECT_THAT(Times(set), ElementsAre(1, 2));
  EXPECT_EQ(set.NPuntos(), 2);
}

TEST(CSetPuntos, ACopyAndAMoveCarryKindAndData) {
  CSetPuntos<int> set = Flight(2);
  const CSetPuntos<int> copy(set);
  EXPECT_TRUE(copy.EsSetPuntos());
  EXPECT_THAT(Times(copy), ElementsAre(1, 2));
  Point const* first = set.PunteroAPunto(0);
  CSetPuntos<int> moved(std::move(set));
  EXPECT_TRUE(moved.EsSetPuntos());
  EXPECT_EQ(moved.PunteroAPunto(0), first);
  EXPECT_THAT(Times(moved), ElementsAre(1, 2));
  EXPECT_EQ(set.NPuntos(), 0);  // NOLINT: the state after a move is part of the contract
  EXPECT_FALSE(set.TieneInfos());
}

TEST(CSetPuntos, AssigningAnEntityTakesItsDataAlong) {
  CSetPuntos<int> set(CString(L"x"));
  set.Asigna(static_cast<CEntidadDigi<int> const&>(Flight(2)));
  EXPECT_THAT(Times(set), ElementsAre(1, 2));
  CSetPuntos<double> real(CString(L"y"));
  real.Asigna(static_cast<CEntidadDigi<int> const&>(set));
  EXPECT_EQ(real.Info(1).gps, 2);
  set.Asigna(static_cast<CEntidadDigi<int> const&>(Line({P(5, 5)})));
  EXPECT_FALSE(set.TieneInfos());
  ExpectPoints(set, {P(5, 5)});
  set.Asigna(static_cast<CEntidadDigi<double> const&>(real));
  EXPECT_THAT(Times(set), ElementsAre(1, 2));
}

TEST(CSetPuntos, SwappingWithASetOfEitherFormExchangesTheData) {
  CSetPuntos<int> a = Flight(2), b = Set({P(7, 7)});
  a.swap(static_cast<CEntidadDigi<int>&>(b));
  ExpectPoints(a, {P(7, 7)});
  EXPECT_FALSE(a.TieneInfos());
  EXPECT_THAT(Times(b), ElementsAre(1, 2));
  CSetPuntos<double> real(CString(L"real"));
  real.Inserta(CCoor3D<double>(0.6, 0.2, 0, 0), Pulse(9));
  b.swap(static_cast<CEntidadDigi<double>&>(real));
  ExpectPoints(b, {P(1, 0)});
  EXPECT_THAT(Times(b), ElementsAre(9));
  EXPECT_EQ(real.NPuntos(), 2);
  EXPECT_EQ(real.Info(0).gps, 1);
}

TEST(CSetPuntos, SwappingWithAVectorDropsTheDataOfTheOldPoints) {
  CSetPuntos<int> set = Flight(2);
  std::vector<Point> points{P(5, 6, 7)};
  Point const* first = points.data();
  set.swap(points);
  ExpectPoints(set, {P(5, 6, 7)});
  EXPECT_EQ(set.PunteroAPunto(0), first);
  EXPECT_FALSE(set.TieneInfos());
  EXPECT_THAT(points, ElementsAre(P(1, 0), P(2, 0)));
}

TEST(CSetPuntos, APointIsReplacedByEitherKindOfIndex) {
  CSetPuntos<int> set = Flight(2);
  EXPECT_TRUE(set.ModificaPunto(0, P(9, 9), true));
  EXPECT_TRUE(set.ModificaPunto(1u, P(8, 8), true));
  EXPECT_FALSE(set.ModificaPunto(-1, P(7, 7), true));
  EXPECT_FALSE(set.ModificaPunto(2, P(7, 7), true));
  ExpectPoints(set, {P(9, 9), P(8, 8)});
  EXPECT_THAT(Times(set), ElementsAre(1, 2));
}

TEST(CSetPuntos, TakingPointsOutAndTurningRoundKeepDataBesideTheirPoints) {
  CSetPuntos<int> set = Flight(5);
  EXPECT_EQ(set.BorraPunto(1, 2), 2);
  EXPECT_THAT(Times(set), ElementsAre(1, 4, 5));
  set.Voltea();
  ExpectPoints(set, {P(5, 0), P(4, 0), P(1, 0)});
  EXPECT_THAT(Times(set), ElementsAre(5, 4, 1));
  EXPECT_EQ(set.Filtra({true, false, true}), 1);
  ExpectPoints(set, {P(5, 0), P(1, 0)});
  EXPECT_THAT(Times(set), ElementsAre(5, 1));
  EXPECT_EQ(set.BorraPunto(7, 1), 0);
}

TEST(CSetPuntos, RepeatedPointsGoWhereverTheyStandAndTheFirstStays) {
  CSetPuntos<int> plan(CString(L"a"));
  plan.Inserta(P(1, 1, 1), Pulse(1));
  plan.Inserta(P(0, 0, 0), Pulse(2));
  plan.Inserta(P(1, 1, 2), Pulse(3));
  plan.Inserta(P(1, 1, 1), Pulse(4));
  CSetPuntos<int> space = plan;
  EXPECT_EQ(plan.BorraPuntosDobles(0), 2);
  EXPECT_THAT(Times(plan), ElementsAre(1, 2));
  EXPECT_EQ(space.BorraPuntosDobles(1), 1);
  EXPECT_THAT(Times(space), ElementsAre(1, 2, 3));
  ExpectPoints(space, {P(1, 1, 1), P(0, 0, 0), P(1, 1, 2)});
}

TEST(CSetPuntos, ClearingDropsPointsAndData) {
  CSetPuntos<int> set = Flight(3);
  set.Clear();
  ExpectPoints(set, {});
  EXPECT_FALSE(set.TieneInfos());
  set << P(1, 1);
  EXPECT_TRUE(set.Info(0) == tipoAero3());
}

TEST(CSetPuntos, NothingLiesBetweenThePointsForTheCursor) {
  const CSetPuntos<int> set = Set({P(0, 0), P(100, 0)});
  const auto cursor = [](double x) {
    return BoxOf<double>({CCoor3D<double>(x - 1, -1, 0, 0), CCoor3D<double>(x + 1, 1, 0, 0)});
  };
  EXPECT_TRUE(set.DentroCursor(cursor(100)));
  EXPECT_FALSE(set.DentroCursor(cursor(50)));
  EXPECT_TRUE(set.Selecciona(P(99, 0), 2));
  EXPECT_FALSE(set.Selecciona(P(50, 0), 2));
}

TEST(CSetPuntos, ReadsWhatItWroteWithAndWithoutData) {
  ScratchFile scratch;
  CFile out = scratch.ForWriting();
  ASSERT_TRUE(Flight(3).Write(&out, CDataSemilla(), 0, FICHERO_NATIVO));
  ASSERT_TRUE(Set({P(7, 8, 9)}).Write(&out, CDataSemilla(), 0, FICHERO_NATIVO));
  ASSERT_TRUE(out.Close());
  CFile in = scratch.ForReading();
  CSetPuntos<int> first, second = Flight(2);
  ASSERT_TRUE(first.Read(&in, 1.0, FICHERO_NATIVO));
  ASSERT_TRUE(second.Read(&in, 10.0, FICHERO_NATIVO));
  EXPECT_EQ(first, Flight(3));
  EXPECT_THAT(Times(first), ElementsAre(1, 2, 3));
  EXPECT_EQ(first.Info(0).rojo, 200);
  ExpectPoints(second, {P(70, 80, 90)});
  EXPECT_FALSE(second.TieneInfos());
}

TEST(CSetPuntos, AFileCutAnywhereIsRefusedAndChangesNothing) {
  ScratchFile scratch;
  CFile out = scratch.ForWriting();
  ASSERT_TRUE(Flight(2).Write(&out, CDataSemilla(), 0, FICHERO_NATIVO));
  ASSERT_TRUE(out.Close());
  for (std::size_t bytes = scratch.Bytes().size(); bytes-- > 0;) {
    scratch.Cut(bytes);
    CFile in = scratch.ForReading();
    CSetPuntos<int> read = Flight(4);
    ASSERT_FALSE(read.Read(&in, 1.0, FICHERO_NATIVO)) << bytes;
    ASSERT_THAT(Times(read), ElementsAre(1, 2, 3, 4)) << bytes;
  }
}

}  // namespace
