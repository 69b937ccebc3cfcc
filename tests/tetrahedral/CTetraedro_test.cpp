#include "tetrahedral/CTetraedro.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <memory>

#include "platform/CFile.h"
#include "support/ScratchFolder.h"
#include "support/SpaceScenes.h"

using namespace Meseta47;
using namespace Meseta47::test;

namespace {

/// Shows what is protected.
struct Open : CTetraedro {
  using CTetraedro::CTetraedro;
  using CTetraedro::DameDistancias;
  using CTetraedro::EstableceDistancias;
  using CTetraedro::GetArea;
};

//   The corner of a cube of 10 units: P1 at the origin, P2, P3, P4 on the axes. Sphere around (5, 5, 5).
class CTetraedroTest : public testing::Test {
 protected:
  Points p;
  CCoor3D<int>*a = p(0, 0, 0, 1), *b = p(10, 0, 0, 2), *c = p(0, 10, 0, 3), *d = p(0, 0, 10, 4);
  CTetraedro t{a, b, c, d};
  CTetraedro n123, n124, n134, n234;

  void LinkAll() {
    t.SetVecino123(&n123, 0, 0, 0, false);
    t.SetVecino124(&n124, 0, 0, 0, false);
    t.SetVecino134(&n134, 0, 0, 0, false);
    t.SetVecino234(&n234, 0, 0, 0, false);
  }
};

TEST_F(CTetraedroTest, VerticesStandInAscendingOrderOfNumberFrameFirst) {
  CCoor3D<int>* corner = p(-50, -50, -50, -3);
  const CTetraedro mixed(d, a, corner, b);
  EXPECT_EQ(mixed.N1(), -3);
  EXPECT_EQ(mixed.N2(), 1);
  EXPECT_EQ(mixed.N3(), 2);
  EXPECT_EQ(mixed.N4(), 4);
}

TEST_F(CTetraedroTest, TheSphereGoesThroughTheVertices) {
  const CCentro s = t.Centro();
  EXPECT_EQ(s.centro.x, 5);
  EXPECT_EQ(s.centro.y, 5);
  EXPECT_EQ(s.centro.z, 5);
  EXPECT_EQ(s.radio2, 75);
  EXPECT_EQ(s.radio, std::sqrt(75.0));
}

TEST_F(CTetraedroTest, APointOnTheSphereIsInsideAndSoIsEachVertex) {
  EXPECT_TRUE(t.Dentro(*p(10, 10, 10, 9)));
  EXPECT_TRUE(t.Dentro(*p(10, 10, 0, 9)));
  for (CCoor3D<int>* v : {a, b, c, d}) EXPECT_TRUE(t.Dentro(*v));
  EXPECT_TRUE(t.Dentro(*p(5, 5, 5, 9)));
  EXPECT_FALSE(t.Dentro(*p(11, 10, 10, 9)));
}

TEST_F(CTetraedroTest, APointNearerThanTheToleranceIsInside) {
  // Around 10^6, six volumes are 10^12 and more, so that a point can miss a sphere by less than 10^-7.
  const int r = 1'000'000;
  const CTetraedro wide(p(r, 0, 0, 1), p(-r, 1, 0, 2), p(0, r, 3, 3), p(2, 0, r, 4));
  const CCentro s = wide.Centro();
  int tested = 0;
  for (int x = 0; x < 8000 && tested == 0; ++x) {
    for (int y = 0; y < 8000 && tested == 0; ++y) {
      const double rest = s.radio2 - (x - s.centro.x) * (x - s.centro.x) - (y - s.centro.y) * (y - s.centro.y);
      const double z = s.centro.z - std::sqrt(rest), whole = std::nearbyint(z);
      const double off = (z - whole) * -(z - s.centro.z) / s.radio;  // beyond the sphere by so much
      if (std::abs(off) > 0.9e-7) continue;
      CTetraedro copy(wide);
      EXPECT_TRUE(copy.Dentro(*p(x, y, static_cast<int>(whole), 9))) << x << " " << y;
      ++tested;
    }
  }
  EXPECT_GT(tested, 0);
}

TEST_F(CTetraedroTest, TheTestLeavesThePointsNumberAlsoWhenTheAnswerIsNo) {
  EXPECT_FALSE(t.Dentro(*p(1000, 0, 0, 77)));
  EXPECT_EQ(t.GetIdentificador(), 77);
  EXPECT_EQ(t.Centro().centro.num, 77);
  EXPECT_EQ(t.GetUltimoPuntoProyectado(), 77);
}

TEST_F(CTetraedroTest, HugeFlatSpheresAreJudgedByTheirVertices) {
  CTetraedro flat(p(0, 0, 0, 1), p(1'000'000, 0, 0, 2), p(0, 1'000'000, 0, 3), p(300'000, 300'000, 1, 4));
  EXPECT_GT(flat.Centro().radio, 0x1p27);
  EXPECT_TRUE(flat.Dentro(*p(500'000, 500'000, 500'000, 9)) != flat.Dentro(*p(500'000, 500'000, -500'000, 9)));
  EXPECT_TRUE(flat.Dentro(*p(300'000, 300'000, 1, 9)));
}

TEST_F(CTetraedroTest, TwoVerticesAtOnePlaceMakeItInvalidAndSoDoFourOnAPlane) {
  EXPECT_TRUE(t.EsValido());
  EXPECT_FALSE(CTetraedro(a, b, c, p(10, 10, 0, 5)).EsValido());
  EXPECT_FALSE(CTetraedro(a, b, c, p(0, 0, 0, 5)).EsValido());
  EXPECT_FALSE(CTetraedro().EsValido());
  // With a sphere of its own, and a vertex that was moved onto another behind its back.
  CTetraedro moved(t);
  *d = *a;
  EXPECT_NE(moved.Centro().radio, 0.0);
  EXPECT_FALSE(moved.EsValido());
}

TEST_F(CTetraedroTest, FacesAreFoundByAscendingNumbersAlone) {
  EXPECT_EQ(t.ContieneCara(1, 2, 3), 1);
  EXPECT_EQ(t.ContieneCara(1, 2, 4), 2);
  EXPECT_EQ(t.ContieneCara(1, 3, 4), 3);
  EXPECT_EQ(t.ContieneCara(2, 3, 4), 4);
  EXPECT_EQ(t.ContieneCara(2, 1, 3), 0);
  EXPECT_EQ(t.ContieneCara(1, 2, 5), 0);
}

TEST_F(CTetraedroTest, AnEdgeNeedsTwoDifferentNumbers) {
  EXPECT_TRUE(t.ContieneLado(4, 2));
  EXPECT_FALSE(t.ContieneLado(1, 1));
  EXPECT_FALSE(t.ContieneLado(1, 5));
}

TEST_F(CTetraedroTest, ANewOneHasFourFreeFacesAndKnowsNothing) {
  EXPECT_EQ(t.CarasLimite(), 4);
  CCara faces[4];
  EXPECT_TRUE(t.GetCaras(faces));
  char const* const names[] = {"1 2 3", "1 2 4", "1 3 4", "2 3 4"};
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(Named(faces[i]), names[i]);
    EXPECT_EQ(faces[i].Tetra(), nullptr);
    EXPECT_EQ(faces[i].D12() + faces[i].D13() + faces[i].D23(), 6);
    EXPECT_FALSE(faces[i].Grabado());
  }
  EXPECT_FALSE(t.Borrado());
  EXPECT_EQ(t.GetIdentificador(), 0);
}

TEST_F(CTetraedroTest, ANeighbourWithoutASetOrInAClosedOneIsNoneToAFace) {
  CSetTetraedros open(0), closed(0);
  open.EstableceDivisiones(Box(-100, 100), false);
  closed.EstableceDivisiones(Box(-100, 100), false);
  CTetraedro other(a, b, c, p(0, 0, -10, 5));
  open.Inserta(other, false, false, false, false, false, false);
  t.SetVecino123(open.Primero(), 0, 1, 2, true);
  CCara faces[4];
  t.GetCaras(faces);
  EXPECT_EQ(faces[0].Tetra(), open.Primero());
  EXPECT_EQ(faces[0].D12(), 0);
  EXPECT_EQ(faces[0].D13(), 1);
  EXPECT_EQ(faces[0].D23(), 2);
  EXPECT_TRUE(faces[0].Grabado());
  open.cerrado = true;
  t.GetCaras(faces);
  EXPECT_EQ(faces[0].Tetra(), nullptr);
  open.cerrado = false;
  t.SetVecino123(&n123, 2, 2, 2, false);
  t.GetCaras(faces);
  EXPECT_EQ(faces[0].Tetra(), nullptr);
}

TEST_F(CTetraedroTest, AVertexCannotBeMovedOntoAnother) {
  const CCentro before = t.Centro();
  t.SetIdentificador(8);
  EXPECT_FALSE(t.SetPunto2(p(0, 0, 10, 9)));
  EXPECT_EQ(t.P2(), b);
  EXPECT_EQ(t.Centro().radio, before.radio);
  EXPECT_EQ(t.GetIdentificador(), 8);
  EXPECT_TRUE(t.SetPunto2(p(20, 0, 0, 9)));
  EXPECT_EQ(t.Centro().centro.x, 10);
  EXPECT_EQ(t.GetIdentificador(), 0);
  EXPECT_EQ(t.N2(), 9);  // not sorted
}

TEST_F(CTetraedroTest, PartingFromANeighbourWritesItsBitAndDyingClearsIt) {
  LinkAll();
  t.BorraVecino(&n134, true);
  EXPECT_EQ(t.GetVecino134(), nullptr);
  EXPECT_EQ(t.CarasLimite(), 1);
  CCara faces[4];
  t.GetCaras(faces);
  EXPECT_TRUE(faces[2].Grabado());
  {
    CTetraedro dying;
    dying.SetVecino123(&t, 2, 2, 2, false);
    t.SetVecino134(&dying, 2, 2, 2, true);
  }
  EXPECT_EQ(t.GetVecino134(), nullptr);
  t.GetCaras(faces);
  EXPECT_FALSE(faces[2].Grabado());
}

TEST_F(CTetraedroTest, OnlyTheFirstLinkToANeighbourIsTakenAway) {
  t.SetVecino124(&n123, 2, 2, 2, false);
  t.SetVecino234(&n123, 2, 2, 2, false);
  t.BorraVecino(&n123, false);
  EXPECT_EQ(t.GetVecino124(), nullptr);
  EXPECT_EQ(t.GetVecino234(), &n123);
  t.BorraVecino(&n134, true);
  EXPECT_EQ(t.CarasLimite(), 3);
}

TEST_F(CTetraedroTest, ClearForgetsTheNeighboursWithoutTellingThem) {
  LinkAll();
  n123.SetVecino234(&t, 2, 2, 2, false);
  t.clear();
  EXPECT_EQ(t.CarasLimite(), 4);
  EXPECT_EQ(n123.GetVecino234(), &t);
  n123.clear();
}

TEST_F(CTetraedroTest, ALongEdgeStaysLong) {
  Open mine(a, b, c, d), other(b, c, d, p(20, 20, 20, 5));
  mine.SetVecino234(&other, 2, 2, 2, false);
  mine.EstableceDistancias(&other, true, false, true);
  mine.EstableceDistancias(&other, false, false, false);
  short e = 2, f = 2, g = 1;
  mine.DameDistancias(&other, e, f, g);
  EXPECT_EQ(e, 1);
  EXPECT_EQ(f, 0);
  EXPECT_EQ(g, 1);
  short h = 2, i = 2, j = 2;
  mine.DameDistancias(&n123, h, i, j);
  EXPECT_EQ(h + i + j, 6);
}

TEST_F(CTetraedroTest, KnownEdgesDoNotReplaceALongOneThatIsAskedFor) {
  Open mine(a, b, c, d);
  mine.SetVecino123(&n123, 0, 2, 1, false);
  short e = 1, f = 1, g = 0;
  mine.DameDistancias(&n123, e, f, g);
  EXPECT_EQ(e, 1);
  EXPECT_EQ(f, 1);
  EXPECT_EQ(g, 1);
}

TEST_F(CTetraedroTest, ItsBoxIsAlwaysEmptyAndThatOfItsSphereIsRounded) {
  EXPECT_TRUE(t.GetMaximas().EstanVacias(true));
  const CMaximas<int> m = t.GetMaximasEsfera();  // 5 -+ 8.66
  EXPECT_EQ(m.Minimo, CCoor3D<int>(-4, -4, -4, 0));
  EXPECT_EQ(m.Maximo, CCoor3D<int>(14, 14, 14, 0));
}

TEST_F(CTetraedroTest, SortingWhatIsSortedChangesNothing) {
  LinkAll();
  t.OrdenaPuntos();
  EXPECT_EQ(t.P1(), a);
  EXPECT_EQ(t.GetVecino134(), &n134);
  EXPECT_EQ(t.GetVecino234(), &n234);
}

TEST_F(CTetraedroTest, WithTheFirstTwoExchangedTheirOppositeFacesChangePlaces) {
  LinkAll();
  t.SetVecino134(&n134, 0, 1, 2, true);  // d13, d14, d34
  t.SetVecino234(&n234, 1, 0, 2, false);
  a->num = 2;
  b->num = 1;
  t.OrdenaPuntos();
  EXPECT_EQ(t.P1(), b);
  EXPECT_EQ(t.GetVecino134(), &n234);
  EXPECT_EQ(t.GetVecino234(), &n134);
  EXPECT_EQ(t.GetVecino123(), &n123);
  CCara faces[4];
  t.GetCaras(faces);
  EXPECT_TRUE(faces[3].Grabado());
  EXPECT_EQ(faces[2].D12(), 1);  // was d23
  EXPECT_EQ(faces[3].D12(), 0);  // was d13
}

/// Whatever the numbers become, each face keeps its neighbour and each edge its state.
TEST_F(CTetraedroTest, SortingKeepsEveryFaceWithItsNeighbourAndEveryEdgeWithItsState) {
  const int numbers[] = {1, 2, 3, 4};
  int order[] = {0, 1, 2, 3};
  do {
    CTetraedro mixed(a, b, c, d);
    CTetraedro* const across[] = {&n234, &n134, &n124, &n123};  // from a, b, c, d
    mixed.SetVecino123(&n123, 0, 1, 2, false);                  // ab ac bc
    mixed.SetVecino124(&n124, 0, 3, 1, true);                   // ab ad bd
    mixed.SetVecino134(&n134, 1, 3, 0, false);                  // ac ad cd
    mixed.SetVecino234(&n234, 2, 1, 0, true);                   // bc bd cd
    CCoor3D<int>* const points[] = {a, b, c, d};
    for (int i = 0; i < 4; ++i) points[i]->num = numbers[order[i]];
    mixed.OrdenaPuntos();
    CTetraedro* const now[] = {mixed.GetVecino234(), mixed.GetVecino134(), mixed.GetVecino124(), mixed.GetVecino123()};
    CCara faces[4];
    mixed.GetCaras(faces);
    const int state[4][4] = {{9, 0, 1, 3}, {0, 9, 2, 1}, {1, 2, 9, 0}, {3, 1, 0, 9}};
    const auto index = [&](CCoor3D<int>* q) { return q == a ? 0 : (q == b ? 1 : (q == c ? 2 : 3)); };
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ(now[i], across[index(mixed.Puntos()[i])]);
      CCara const& f = faces[i];
      EXPECT_EQ(f.D12(), state[index(f.P1())][index(f.P2())]);
      EXPECT_EQ(f.D13(), state[index(f.P1())][index(f.P3())]);
      EXPECT_EQ(f.D23(), state[index(f.P2())][index(f.P3())]);
      const int opposite = 6 - index(f.P1()) - index(f.P2()) - index(f.P3());
      EXPECT_EQ(f.Grabado(), opposite == 2 || opposite == 0);
    }
    for (int i = 0; i < 4; ++i) points[i]->num = numbers[i];
  } while (std::next_permutation(std::begin(order), std::end(order)));
}

TEST_F(CTetraedroTest, EdgesAreMeasuredInSpaceAndTheLongestOnce) {
  CTetraedro far(a, b, c, p(0, 0, 30, 4));
  EXPECT_EQ(far.Distancia12(), 10);
  EXPECT_EQ(far.Distancia41(), 30);
  EXPECT_EQ(far.Distancia23(), std::sqrt(200.0));
  EXPECT_EQ(far.DistanciaMinima(), 10);
  const double longest = std::sqrt(1000.0);
  EXPECT_EQ(far.DistanciaMaxima(), longest);
  EXPECT_TRUE(far.SetPunto4(p(0, 0, 10, 5)));
  EXPECT_EQ(far.DistanciaMaxima(), longest);  // kept
  far.SetPuntos(a, b, c, d, true);
  EXPECT_EQ(far.DistanciaMaxima(), std::sqrt(200.0));
}

TEST_F(CTetraedroTest, AreaAddsTheFacesAndVolumeMixesItsUnits) {
  EXPECT_NEAR(t.Area(10), 1.5 + std::sqrt(3.0) / 2, 1e-9);
  EXPECT_NEAR(t.Volumen(10), 0.5 * 10 / 3, 1e-9);  // square metres times scaled units
  EXPECT_EQ(CTetraedro(a, b, p(20, 0, 0, 3), d).Volumen(10), 0.0);
}

TEST_F(CTetraedroTest, TheAreaOfOneFaceIsRightForTheFirstAlone) {
  const Open open(a, b, c, d);
  EXPECT_NEAR(open.GetArea(0), 50, 1e-9);
  EXPECT_TRUE(std::isnan(open.GetArea(3)));
}

TEST_F(CTetraedroTest, EqualityIsOfPointObjectsInAnyOrder) {
  Points q;
  EXPECT_TRUE(t == CTetraedro(d, c, b, a));
  EXPECT_FALSE(t == CTetraedro(a, b, c, q(0, 0, 10, 4)));
}

TEST_F(CTetraedroTest, ElementsOfThePoolAndOthersLinkToOneAnother) {
  const std::unique_ptr<CTetraedro> pooled(CTetraedro::Nuevo(t)), heap(new CTetraedro(t));
  pooled->SetVecino123(heap.get(), 2, 2, 2, false);
  heap->SetVecino124(pooled.get(), 2, 2, 2, false);
  t.SetVecino134(pooled.get(), 2, 2, 2, false);
  EXPECT_EQ(pooled->GetVecino123(), heap.get());
  EXPECT_EQ(heap->GetVecino124(), pooled.get());
  EXPECT_EQ(t.GetVecino134(), pooled.get());
  t.clear();
}

/// The faces that the spill of a tetrahedron writes.
std::vector<std::int32_t> Spilled(CTetraedro& t, double limit, bool all,
                                  std::vector<unsigned short>* intensities = nullptr) {
  std::vector<std::int32_t> records;
  t.Salva(records, limit, all, intensities);
  return records;
}
using Records = std::vector<std::int32_t>;

TEST_F(CTetraedroTest, WithoutALongEdgeNothingIsSpilledUnlessAllIsAskedFor) {
  EXPECT_EQ(Spilled(t, 200, false), Records());
  EXPECT_EQ(Spilled(t, 200, true), Records({1, 2, 3, 1, 2, 4, 1, 3, 4, 2, 3, 4}));
}

TEST_F(CTetraedroTest, FacesWithALongEdgeStayOut) {
  CTetraedro tall(a, b, c, p(0, 0, 100, 4));
  EXPECT_EQ(Spilled(tall, 200, false), Records({1, 2, 3}));
}

TEST_F(CTetraedroTest, WhatTouchesTheFrameOnceGivesItsOneFaceAndTwiceNothing) {
  CCoor3D<int>*corner = p(-5, -5, -5, -1), *second = p(-6, -5, -5, -2);
  CTetraedro once(corner, b, c, d), twice(corner, second, c, d);
  EXPECT_EQ(Spilled(once, 1e9, false), Records({2, 3, 4}));
  twice.SetVecino123(&n123, 2, 2, 2, false);
  EXPECT_EQ(Spilled(twice, 1e9, true), Records());
  EXPECT_EQ(twice.GetVecino123(), &n123);  // nothing further done
}

TEST_F(CTetraedroTest, AFaceIsWrittenFromOneOfItsSides) {
  CTetraedro other(b, c, d, p(100, 100, 100, 5));
  t.SetVecino234(&other, 2, 2, 2, false);
  other.SetVecino123(&t, 2, 2, 2, false);
  EXPECT_EQ(Spilled(t, 200, true), Records({1, 2, 3, 1, 2, 4, 1, 3, 4, 2, 3, 4}));
  EXPECT_EQ(t.GetVecino234(), nullptr);
  EXPECT_EQ(other.GetVecino123(), nullptr);
  EXPECT_EQ(Spilled(other, 200, false), Records());  // its one short face has gone out
}

TEST_F(CTetraedroTest, AnEdgeIsMeasuredOnce) {
  CTetraedro other(b, c, d, p(100, 100, 100, 5));
  t.SetVecino234(&other, 1, 0, 0, false);  // b-c is said to be long
  other.SetVecino123(&t, 2, 2, 2, false);
  EXPECT_EQ(Spilled(other, 200, false), Records());
}

TEST_F(CTetraedroTest, AJumpOfIntensityMakesAnEdgeLong) {
  std::vector<unsigned short> intensities{0, 10000, 0, 10001};
  EXPECT_EQ(Spilled(t, 200, false, &intensities), Records({1, 2, 3}));
}

TEST_F(CTetraedroTest, TheSpillFileHasTwelveLittleEndianBytesAFace) {
  const ScratchFolder folder;
  const CString path = folder.Path("faces");
  CTetraedro tall(a, b, c, p(0, 0, 100, 4));
  CFile file(path, CFile::modeCreate | CFile::modeReadWrite | CFile::typeBinary);
  EXPECT_TRUE(tall.Salva(&file, 200, false, nullptr));
  file.Close();
  EXPECT_EQ(BytesOf(path), std::string("\1\0\0\0\2\0\0\0\3\0\0\0", 12));
}

}  // namespace
