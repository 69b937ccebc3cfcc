#include "planar/CTriangulo2D.h"

#include <gmock/gmock.h>
#include <memory>

#include "support/PlanarScene.h"
#include "support/Threads.h"

namespace Meseta47 {
namespace {

using test::At;
using test::Numbered;
using test::NumbersOf;
using test::PlanOf;
using testing::Each;

CCoor3D<int> Query(int x, int y, int z = 0, int number = 77) { return CCoor3D<int>(x, y, z, number); }

/// Three points and their triangle: 1, 2 and 3 in the order given.
struct Scene {
  explicit Scene(std::vector<At> const& places) : p(Numbered(places)), t(&p[0], &p[1], &p[2]) {}
  std::vector<CCoor3D<int>> p;
  CTriangulo2D t;
};

/// Right angle at (0, 0): circle around (4, 3) with radius 5, exact in doubles. Clockwise.
Scene FiveCircle() { return Scene({{0, 0, 10}, {0, 6, 20}, {8, 0, 30}}); }

/// Right angle at (0, 0), sides of 100, z = 1000 + x + 2 y. Clockwise.
Scene Slope() { return Scene({{0, 0, 1000}, {0, 100, 1200}, {100, 0, 1100}}); }

// --- life

TEST(CTriangulo2D, ANewOneHasThreeFreeSidesNoLinksAndNoMark) {
  const Scene s = FiveCircle();
  EXPECT_EQ(s.t.LadosLimite(), 3);
  EXPECT_EQ(s.t.GetVecino12(), nullptr);
  EXPECT_EQ(s.t.GetVecino23(), nullptr);
  EXPECT_EQ(s.t.GetVecino31(), nullptr);
  EXPECT_EQ(s.t.Sig(), nullptr);
  EXPECT_EQ(s.t.Ant(), nullptr);
  EXPECT_EQ(s.t.GetSet(), nullptr);
  EXPECT_EQ(s.t.GetUltimoPuntoProyectado(), 0);
  EXPECT_FALSE(s.t.Borrado());
  EXPECT_TRUE(s.t.EsValido());
}

TEST(CTriangulo2D, WithoutPointsItIsInvalid) {
  const CTriangulo2D t;
  EXPECT_FALSE(t.EsValido());
  EXPECT_EQ(NumbersOf(t), std::tuple(0, 0, 0));
  EXPECT_EQ(t.LadosLimite(), 3);
}

TEST(CTriangulo2D, DestroyingOneUnhooksItFromItsNeighbours) {
  auto p = Numbered({{0, 0}, {0, 10}, {10, 0}, {10, 10}});
  CTriangulo2D stays(&p[1], &p[3], &p[2]);
  auto goes = std::make_unique<CTriangulo2D>(&p[0], &p[1], &p[2]);
  goes->SetVecino23(&stays);
  stays.SetVecino31(goes.get());
  goes.reset();
  EXPECT_EQ(stays.GetVecino31(), nullptr);
}

TEST(CTriangulo2D, ACopyTakesLinksAndSetAlong) {
  Scene s = FiveCircle();
  CTriangulo2D other, another;
  auto* const set = reinterpret_cast<CSetTriangulos2D*>(&another);  // never looked into
  s.t.SetSet(set);
  s.t.SetVecinos(&other, &another);
  s.t.SetVecino31(&other);
  s.t.SetBorrado(true);
  {
    CTriangulo2D copy(s.t);
    EXPECT_EQ(copy.GetSet(), set);
    EXPECT_EQ(copy.Ant(), &other);
    EXPECT_EQ(copy.Sig(), &another);
    EXPECT_EQ(copy.GetVecino31(), &other);
    EXPECT_TRUE(copy.Borrado());
    EXPECT_EQ(copy.GetMaxX(), 8);
    copy.SetVecino31(nullptr);
  }
  s.t.SetVecino31(nullptr);
}

TEST(CTriangulo2D, MayBeDestroyedByAnotherThreadThanTheOneThatMadeIt) {
  auto p = Numbered({{0, 0}, {0, 6}, {8, 0}});
  std::vector<CTriangulo2D*> made;
  for (int i = 0; i < 1000; ++i) made.push_back(new CTriangulo2D(&p[0], &p[1], &p[2]));
  Threads other;
  other.start([&made] {
    for (CTriangulo2D* t : made) delete t;
  });
  other.join();
  std::unique_ptr<CTriangulo2D> again(new CTriangulo2D(&p[0], &p[1], &p[2]));
  EXPECT_EQ(again->GetMaxX(), 8);
}

// --- queries

TEST(CTriangulo2D, ItsCircleIsTheOneThroughItsPoints) {
  const Scene s = FiveCircle();
  EXPECT_EQ(s.t.Centro().centro.x, 4.0);
  EXPECT_EQ(s.t.Centro().centro.y, 3.0);
  EXPECT_EQ(s.t.Centro().radio, 5.0);
  EXPECT_EQ(s.t.Centro().radio2, 25.0);
  EXPECT_EQ(PlanOf(s.t.GetMaximasCir()), std::tuple(-1, -2, 9, 8));
  EXPECT_EQ(s.t.GetMinCir().x, -1);
  EXPECT_EQ(s.t.GetMaxCir().y, 8);
}

TEST(CTriangulo2D, SidesAreMeasuredInPlan) {
  const Scene s = FiveCircle();
  EXPECT_EQ(s.t.Distancia12(), 6.0);
  EXPECT_EQ(s.t.Distancia23(), 10.0);
  EXPECT_EQ(s.t.Distancia31(), 8.0);
}

TEST(CTriangulo2D, ExtremesAreThoseOfItsVerticesWhateverTheirOrder) {
  std::vector<CCoor3D<int>> p = Numbered({{5, -2, 9}, {-7, 4, 1}, {3, 11, -6}});
  const int orders[6][3] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
  for (auto const& o : orders) {
    const CTriangulo2D t(&p[static_cast<std::size_t>(o[0])], &p[static_cast<std::size_t>(o[1])],
                         &p[static_cast<std::size_t>(o[2])]);
    EXPECT_EQ(std::tuple(t.GetMinX(), t.GetMinY(), t.GetMinZ()), std::tuple(-7, -2, -6));
    EXPECT_EQ(std::tuple(t.GetMaxX(), t.GetMaxY(), t.GetMaxZ()), std::tuple(5, 11, 9));
    EXPECT_EQ(PlanOf(t.GetMaximas()), std::tuple(-7, -2, 5, 11));
    EXPECT_EQ(t.GetMaximas().Maximo.z, 9);
    EXPECT_EQ(t.GetMaximas().Minimo.z, -6);
  }
}

TEST(CTriangulo2D, ThreeCollinearPointsMakeAnInvalidOneWhoseExtremesAreZero) {
  const Scene s({{5, 5, 5}, {10, 10, 6}, {20, 20, 7}});
  EXPECT_FALSE(s.t.EsValido());
  EXPECT_EQ(s.t.Centro().radio, 0.0);
  EXPECT_THAT(
      std::vector<int>({s.t.GetMinX(), s.t.GetMinY(), s.t.GetMinZ(), s.t.GetMaxX(), s.t.GetMaxY(), s.t.GetMaxZ()}),
      Each(0));
  EXPECT_TRUE(s.t.GetMaximas().EstanVacias(true));
}

TEST(CTriangulo2D, TwoEqualVerticesMakeAnInvalidOne) {
  const Scene s({{5, 5, 5}, {5, 5, 5}, {20, 10, 7}});
  EXPECT_FALSE(s.t.EsValido());
}

TEST(CTriangulo2D, EqualityIsThatOfThePointObjectsInAnyOrder) {
  auto p = Numbered({{0, 0}, {0, 6}, {8, 0}, {0, 0}});
  const CTriangulo2D t(&p[0], &p[1], &p[2]), turned(&p[2], &p[0], &p[1]), flipped(&p[1], &p[0], &p[2]);
  EXPECT_TRUE(t == turned);
  EXPECT_TRUE(t == flipped);
  EXPECT_FALSE(t == CTriangulo2D(&p[3], &p[1], &p[2])) << "another object with the same coordinates";
}

TEST(CTriangulo2D, ASideIsFoundInItsOwnDirectionOnly) {
  const Scene s = FiveCircle();
  EXPECT_EQ(s.t.ContieneLado(1, 2), 1);
  EXPECT_EQ(s.t.ContieneLado(2, 3), 2);
  EXPECT_EQ(s.t.ContieneLado(3, 1), 3);
  EXPECT_EQ(s.t.ContieneLado(2, 1), 0);
  EXPECT_EQ(s.t.ContieneLado(3, 2), 0);
  EXPECT_EQ(s.t.ContieneLado(1, 3), 0);
  EXPECT_EQ(s.t.ContieneLado(1, 9), 0);
}

TEST(CTriangulo2D, GivesItsSidesInOrder) {
  const Scene s = FiveCircle();
  CLado2D sides[3];
  EXPECT_TRUE(s.t.GetLados(sides));
  EXPECT_EQ(test::DirectedNumbers({sides[0], sides[1], sides[2]}),
            (std::vector<std::pair<int, int>>{{1, 2}, {2, 3}, {3, 1}}));
}

// --- changes

TEST(CTriangulo2D, MarkAndUnmarkLeaveTheIndicesAlone) {
  Scene s = FiveCircle();
  s.t.SetBorrado(true);
  EXPECT_TRUE(s.t.Borrado());
  EXPECT_EQ(s.t.GetMaxX(), 8);
  EXPECT_EQ(s.t.GetMaxY(), 6);
  s.t.SetBorrado(false);
  EXPECT_FALSE(s.t.Borrado());
  EXPECT_EQ(s.t.GetMinX(), 0);
}

TEST(CTriangulo2D, SetPuntosRecomputesOnDemandAndLeavesMarkAndLinks) {
  Scene s = FiveCircle();
  auto q = Numbered({{100, 100}, {100, 160}, {180, 100}});
  CTriangulo2D neighbour;
  s.t.SetVecino12(&neighbour);
  s.t.SetBorrado(true);
  s.t.Dentro(Query(1, 1));
  s.t.SetPuntos(&q[0], &q[1], &q[2], false);
  EXPECT_EQ(s.t.Centro().radio, 5.0);
  EXPECT_EQ(s.t.GetUltimoPuntoProyectado(), 77);
  s.t.SetPuntos(&q[0], &q[1], &q[2], true);
  EXPECT_EQ(s.t.Centro().radio, 50.0);
  EXPECT_EQ(s.t.GetUltimoPuntoProyectado(), 0);
  EXPECT_EQ(s.t.GetMaxX(), 180);
  EXPECT_TRUE(s.t.Borrado());
  EXPECT_EQ(s.t.GetVecino12(), &neighbour);
  s.t.SetVecino12(nullptr);
}

TEST(CTriangulo2D, AVertexEqualToAnotherOneIsRefusedAndNothingChanges) {
  Scene s = FiveCircle();
  s.t.Dentro(Query(1, 1));
  CCoor3D<int> like1 = s.p[0], like2 = s.p[1], like3 = s.p[2];
  EXPECT_FALSE(s.t.SetPunto1(&like2));
  EXPECT_FALSE(s.t.SetPunto1(&like3));
  EXPECT_FALSE(s.t.SetPunto2(&like1));
  EXPECT_FALSE(s.t.SetPunto2(&like3));
  EXPECT_FALSE(s.t.SetPunto3(&like1));
  EXPECT_FALSE(s.t.SetPunto3(&like2));
  EXPECT_EQ(s.t.P1(), &s.p[0]);
  EXPECT_EQ(s.t.P2(), &s.p[1]);
  EXPECT_EQ(s.t.P3(), &s.p[2]);
  EXPECT_EQ(s.t.GetUltimoPuntoProyectado(), 77) << "nothing was recomputed";
}

TEST(CTriangulo2D, AVertexAboveAnotherOneIsAcceptedAndMakesItInvalid) {
  Scene s = FiveCircle();
  CCoor3D<int> above = s.p[1];
  above.z += 1;
  EXPECT_TRUE(s.t.SetPunto1(&above));
  EXPECT_EQ(s.t.P1(), &above);
  EXPECT_FALSE(s.t.EsValido());
}

TEST(CTriangulo2D, AnAcceptedVertexRecomputesCircleAndExtremes) {
  Scene s = FiveCircle();
  CCoor3D<int> far = Query(80, 0, 5, 9);
  CCoor3D<int> like3 = s.p[2];
  s.t.Dentro(Query(1, 1));
  EXPECT_TRUE(s.t.SetPunto3(&far));
  EXPECT_EQ(s.t.GetMaxX(), 80);
  EXPECT_EQ(s.t.Centro().centro.x, 40.0);
  EXPECT_EQ(s.t.GetUltimoPuntoProyectado(), 0);
  EXPECT_TRUE(s.t.SetPunto3(&like3)) << "equal to the vertex that it replaces";
  EXPECT_TRUE(s.t.SetPunto3(nullptr));
  EXPECT_FALSE(s.t.EsValido());
}

TEST(CTriangulo2D, ActualizaMaxMinFollowsMovedPointsOnTheAxisAskedFor) {
  Scene s({{0, 0, 0}, {0, 60, 10}, {80, 0, 20}});
  const auto moved = [&s] {
    s.p[0].Actualiza(200, 300, 400);
    s.t.Dentro(Query(1, 1));
  };
  moved();
  s.t.ActualizaMaxMin(1);
  EXPECT_EQ(s.t.GetMaxX(), 200);
  EXPECT_EQ(s.t.GetMaxY(), 60) << "the index of the other axes stays";
  EXPECT_EQ(s.t.GetMaxZ(), 20);
  EXPECT_EQ(s.t.GetUltimoPuntoProyectado(), 0);
  s.t.ActualizaMaxMin(2);
  EXPECT_EQ(s.t.GetMaxY(), 300);
  EXPECT_EQ(s.t.GetMaxZ(), 20);
  s.t.ActualizaMaxMin(3);
  EXPECT_EQ(s.t.GetMaxZ(), 400);
}

TEST(CTriangulo2D, ActualizaMaxMinOfNoAxisRecomputesTheCircleAlone) {
  Scene s({{0, 0}, {0, 6}, {8, 0}});
  s.p[2].x = -8;
  s.t.ActualizaMaxMin(4);
  EXPECT_EQ(s.t.Centro().centro.x, -4.0);
  EXPECT_EQ(s.t.GetMaxX(), -8) << "still the third vertex";
  s.t.ActualizaMaxMin(0);
  EXPECT_EQ(s.t.GetMaxX(), 0);
  EXPECT_EQ(s.t.GetMinX(), -8);
}

TEST(CTriangulo2D, ActualizaMaxMinOfACollapsedOneLeavesItInvalid) {
  Scene s({{0, 0}, {0, 6}, {8, 0}});
  s.p[2] = Query(0, 12);
  s.t.ActualizaMaxMin(0);
  EXPECT_FALSE(s.t.EsValido());
  EXPECT_EQ(s.t.GetMaxY(), 0);
}

TEST(CTriangulo2D, SetVecinosAndBorraVecinosTouchTheListAndNotTheSides) {
  Scene s = FiveCircle();
  CTriangulo2D before, after, neighbour;
  s.t.SetVecino23(&neighbour);
  s.t.SetVecinos(&before, &after);
  EXPECT_EQ(s.t.Ant(), &before);
  EXPECT_EQ(s.t.Sig(), &after);
  s.t.BorraVecinos();
  EXPECT_EQ(s.t.Ant(), nullptr);
  EXPECT_EQ(s.t.Sig(), nullptr);
  EXPECT_EQ(s.t.GetVecino23(), &neighbour);
  s.t.SetVecino23(nullptr);
}

TEST(CTriangulo2D, BorraVecinoClearsTheFirstLinkToTheNeighbourOnly) {
  Scene s = FiveCircle();
  CTriangulo2D neighbour, other;
  s.t.SetVecino12(&other);
  s.t.SetVecino23(&neighbour);
  s.t.SetVecino31(&neighbour);
  s.t.BorraVecino(&neighbour);
  EXPECT_EQ(s.t.GetVecino12(), &other);
  EXPECT_EQ(s.t.GetVecino23(), nullptr);
  EXPECT_EQ(s.t.GetVecino31(), &neighbour);
  EXPECT_EQ(s.t.LadosLimite(), 1);
  s.t.SetVecino12(nullptr);
  s.t.SetVecino31(nullptr);
}

TEST(CTriangulo2D, BorraMisVecinosClearsBothEndsOfEveryLink) {
  Scene s = FiveCircle();
  CTriangulo2D a, b, unrelated;
  s.t.SetVecino12(&a);
  s.t.SetVecino31(&b);
  a.SetVecino23(&s.t);
  a.SetVecino31(&unrelated);
  b.SetVecino12(&s.t);
  s.t.BorraMisVecinos();
  EXPECT_EQ(s.t.LadosLimite(), 3);
  EXPECT_EQ(a.GetVecino23(), nullptr);
  EXPECT_EQ(a.GetVecino31(), &unrelated);
  EXPECT_EQ(b.LadosLimite(), 3);
  a.SetVecino31(nullptr);
}

// --- in the circle

TEST(CTriangulo2D, APointOnTheCircleIsInside) {
  Scene s = FiveCircle();
  EXPECT_TRUE(s.t.Dentro(Query(8, 6)));
  EXPECT_TRUE(s.t.Dentro(Query(9, 3))) << "the rightmost point of the circle";
  EXPECT_FALSE(s.t.Dentro(Query(9, 4)));
  EXPECT_FALSE(s.t.Dentro(Query(10, 3)));
}

TEST(CTriangulo2D, ANeighbouringPositionOutsideTheCircleByLessThanTheToleranceIsInside) {
  // Radius 10^7: the point (10^7, 1) lies 5e-8 outside, (10^7, 2) lies 2e-7 outside.
  Scene s({{10'000'000, 0}, {-10'000'000, 0}, {0, 10'000'000}});
  EXPECT_TRUE(s.t.Dentro(Query(10'000'000, 1)));
  EXPECT_FALSE(s.t.Dentro(Query(10'000'000, 2)));
}

TEST(CTriangulo2D, TheBoxOfTheCircleHasNoTolerance) {
  // Nothing with integer coordinates lies less than 1e-7 outside the box of this circle but for its own extremes, which
  // are on it: the test is that one unit outside the box is outside, however large the tolerance of the circle.
  Scene s({{100'000'000, 0}, {-100'000'000, 0}, {0, 100'000'000}});
  EXPECT_TRUE(s.t.Dentro(Query(100'000'000, 3)));
  EXPECT_FALSE(s.t.Dentro(Query(100'000'001, 0)));
}

TEST(CTriangulo2D, ACircleTooLargeForDoublesIsJudgedByItsVertices) {
  Scene s({{2'000'000'000, 0}, {-2'000'000'000, 0}, {0, 2'000'000'000}});
  EXPECT_TRUE(s.t.Dentro(Query(0, -2'000'000'000)));
  EXPECT_FALSE(s.t.Dentro(Query(2'000'000'000, 3)));
  EXPECT_TRUE(s.t.Dentro(Query(1'999'999'999, 3)));
}

TEST(CTriangulo2D, AVertexIsInside) {
  Scene s = FiveCircle();
  for (CCoor3D<int> const& v : s.p) EXPECT_TRUE(s.t.Dentro(v));
}

TEST(CTriangulo2D, TheTestLeavesThePointsNumberWhateverItsAnswer) {
  Scene s = FiveCircle();
  s.t.Dentro(Query(1, 1, 0, 5));
  EXPECT_EQ(s.t.GetUltimoPuntoProyectado(), 5);
  s.t.Dentro(Query(1000, 1000, 0, 6));
  EXPECT_EQ(s.t.GetUltimoPuntoProyectado(), 6);
}

TEST(CTriangulo2D, TheTestHasNothingToSayOfTheTriangleItself) {
  Scene s = FiveCircle();
  EXPECT_TRUE(s.t.Dentro(Query(7, 6))) << "beyond the longest side, inside the circle";
}

// --- projection

TEST(CTriangulo2D, APointOutsideTheCircleDoesNotProject) {
  Scene s = Slope();
  CCoor3D<double> p(200, 200, 5, 7);
  EXPECT_EQ(s.t.Proyecta(p, true, true), 0);
  EXPECT_EQ(p.z, 5.0);
  EXPECT_EQ(s.t.GetUltimoPuntoProyectado(), 7);
}

TEST(CTriangulo2D, APointInsideProjectsOnThePlane) {
  Scene s = Slope();
  CCoor3D<double> p(25, 30.5, 0, 7);
  EXPECT_EQ(s.t.Proyecta(p, true, true), 2);
  EXPECT_DOUBLE_EQ(p.z, 1000 + 25 + 2 * 30.5);
  EXPECT_EQ(s.t.GetUltimoPuntoProyectado(), 7);
}

TEST(CTriangulo2D, AVertexProjectsAsInsideAndTakesTheVertexsHeight) {
  Scene s = Slope();
  for (CCoor3D<int> const& v : s.p) {
    CCoor3D<double> p(v.x, v.y, -1, 7);
    EXPECT_EQ(s.t.Proyecta(p, true, true), 2);
    EXPECT_EQ(p.z, static_cast<double>(v.z));
  }
}

TEST(CTriangulo2D, WithoutUpdateTheHeightStays) {
  Scene s = Slope();
  CCoor3D<double> inside(25, 25, -1, 7), vertex(0, 0, -1, 7);
  EXPECT_EQ(s.t.Proyecta(inside, true, false), 2);
  EXPECT_EQ(s.t.Proyecta(vertex, true, false), 2);
  EXPECT_EQ(inside.z, -1.0);
  EXPECT_EQ(vertex.z, -1.0);
}

TEST(CTriangulo2D, APointOneUnitBeyondASideCountsAsOnIt) {
  Scene s = Slope();
  CCoor3D<double> p(50, -1, 0, 7);
  EXPECT_EQ(s.t.Proyecta(p, true, true), 1);
  EXPECT_DOUBLE_EQ(p.z, 1000 + 50 - 2) << "the plane goes on beyond the side";
}

TEST(CTriangulo2D, APointLessThanAUnitBeyondEachSideCountsAsOnIt) {
  Scene s = Slope();
  for (auto const& [x, y] : {std::pair{50.0, -0.75}, {-0.75, 50.0}, {50.5, 50.5}}) {
    CCoor3D<double> p(x, y, 0, 7);
    EXPECT_EQ(s.t.Proyecta(p, true, true), 1) << x << ' ' << y;
  }
}

TEST(CTriangulo2D, APointOneUnitAndAHalfBeyondASideDoesNotProject) {
  Scene s = Slope();
  for (auto const& [x, y] : {std::pair{50.0, -1.5}, {-1.5, 50.0}, {51.5, 51.5}}) {
    CCoor3D<double> p(x, y, 5, 7);
    EXPECT_EQ(s.t.Proyecta(p, true, true), 0) << x << ' ' << y;
    EXPECT_EQ(p.z, 5.0);
  }
}

TEST(CTriangulo2D, APointExactlyOnASideHasNoSideAgainstItAndCountsAsInside) {
  Scene s = Slope();
  CCoor3D<double> p(50, 50, 0, 7);
  EXPECT_EQ(s.t.Proyecta(p, true, true), 2);
  EXPECT_DOUBLE_EQ(p.z, 1150.0);
}

TEST(CTriangulo2D, TurningTheOtherWayChangesNoProjection) {
  Scene s({{0, 0, 1000}, {100, 0, 1100}, {0, 100, 1200}});
  CCoor3D<double> inside(25, 25, 0, 7), near(50, -1, 0, 7), outside(50, -1.5, 0, 7);
  EXPECT_EQ(s.t.Proyecta(inside, true, true), 2);
  EXPECT_DOUBLE_EQ(inside.z, 1075.0);
  EXPECT_EQ(s.t.Proyecta(near, true, true), 1);
  EXPECT_EQ(s.t.Proyecta(outside, true, true), 0);
}

TEST(CTriangulo2D, WithoutCheckingAnyPointWithinTheCircleProjectsAsInside) {
  Scene s = Slope();
  CCoor3D<double> p(50, -10, 0, 7);
  EXPECT_EQ(s.t.Proyecta(p, false, true), 2);
  EXPECT_DOUBLE_EQ(p.z, 1000 + 50 - 20);
}

TEST(CTriangulo2D, NothingProjectsOnCollinearPoints) {
  // Their circle is the point (0, 0) with radius 0, and that point alone passes the test of the circle.
  Scene s({{5, 0, 1}, {10, 0, 2}, {15, 0, 3}});
  CCoor3D<double> p(0, 0, 9, 7);
  EXPECT_EQ(s.t.Proyecta(p, false, true), 0);
  EXPECT_EQ(p.z, 9.0);
}

TEST(CTriangulo2D, TheIntegerFormChecksAndRoundsTheHeight) {
  Scene s({{0, 0, 0}, {0, 100, 0}, {100, 0, 33}});
  CCoor3D<int> inside = Query(50, 25), beyond = Query(50, -2, 5), vertex = Query(100, 0);
  EXPECT_EQ(s.t.Proyecta(inside, true), 2);
  EXPECT_EQ(inside.z, 16) << "16.5 to the even integer";
  EXPECT_EQ(s.t.Proyecta(beyond, true), 0);
  EXPECT_EQ(beyond.z, 5);
  EXPECT_EQ(s.t.Proyecta(vertex, true), 2);
  EXPECT_EQ(vertex.z, 33);
}

TEST(CTriangulo2D, TheIntegerFormWithoutUpdateKeepsTheHeight) {
  Scene s = Slope();
  CCoor3D<int> p = Query(25, 25, -1);
  EXPECT_EQ(s.t.Proyecta(p, false), 2);
  EXPECT_EQ(p.z, -1);
}

TEST(CTriangulo2D, HeightsAtTheEdgeOfThirtyTwoBitsKeepTheirUnits) {
  Scene s({{2'000'000'000, -2'000'000'000, 2'000'000'000},
           {2'000'000'000, -1'999'999'900, 2'000'000'010},
           {2'000'000'100, -2'000'000'000, 2'000'000'030}});
  CCoor3D<int> p = Query(2'000'000'050, -1'999'999'980);
  EXPECT_EQ(s.t.Proyecta(p, true), 2);
  EXPECT_EQ(p.z, 2'000'000'017);
}

// --- canonical order

/// The numbers of the vertices after ordering; the places in the order of the constructor.
std::tuple<int, int, int> Placed(std::vector<At> const& places, bool onlyTurn) {
  Scene s(places);
  s.t.ColocaPuntos(onlyTurn);
  return NumbersOf(s.t);
}

constexpr At kLow{0, 0}, kUp{0, 10}, kRight{10, 0};  // in ascending order: kLow, kUp, kRight, and clockwise

TEST(CTriangulo2D, TurningBringsTheSmallestVertexFirstAndKeepsTheCycle) {
  EXPECT_EQ(Placed({kLow, kUp, kRight}, true), std::tuple(1, 2, 3));
  EXPECT_EQ(Placed({kLow, kRight, kUp}, true), std::tuple(1, 2, 3)) << "counter-clockwise stays so";
  EXPECT_EQ(Placed({kUp, kLow, kRight}, true), std::tuple(2, 3, 1)) << "the second is the smallest";
  EXPECT_EQ(Placed({kRight, kLow, kUp}, true), std::tuple(2, 3, 1));
  EXPECT_EQ(Placed({kUp, kRight, kLow}, true), std::tuple(3, 1, 2)) << "the third, from the first branch of the search";
  EXPECT_EQ(Placed({kRight, kUp, kLow}, true), std::tuple(3, 1, 2)) << "the third, from the second branch";
}

TEST(CTriangulo2D, TurningRecomputesNothing) {
  Scene s({kUp, kRight, kLow});
  s.t.Dentro(Query(1, 1));
  s.t.ColocaPuntos(true);
  EXPECT_EQ(s.t.GetUltimoPuntoProyectado(), 77);
}

TEST(CTriangulo2D, OrderingMakesTheTriangleClockwiseFromItsSmallestVertex) {
  EXPECT_EQ(Placed({kLow, kUp, kRight}, false), std::tuple(1, 2, 3));
  EXPECT_EQ(Placed({kLow, kRight, kUp}, false), std::tuple(1, 3, 2));
  EXPECT_EQ(Placed({kUp, kLow, kRight}, false), std::tuple(2, 1, 3));
  EXPECT_EQ(Placed({kRight, kLow, kUp}, false), std::tuple(2, 3, 1));
  EXPECT_EQ(Placed({kUp, kRight, kLow}, false), std::tuple(3, 1, 2));
  EXPECT_EQ(Placed({kRight, kUp, kLow}, false), std::tuple(3, 2, 1));
}

TEST(CTriangulo2D, OrderingRecomputesUnlessTheTriangleStandsInOrder) {
  Scene ordered({kLow, kUp, kRight}), other({kLow, kRight, kUp});
  ordered.t.Dentro(Query(1, 1));
  other.t.Dentro(Query(1, 1));
  ordered.t.ColocaPuntos(false);
  other.t.ColocaPuntos(false);
  EXPECT_EQ(ordered.t.GetUltimoPuntoProyectado(), 77) << "nothing changed";
  EXPECT_EQ(other.t.GetUltimoPuntoProyectado(), 0);
  EXPECT_EQ(other.t.GetMaxX(), 10) << "the indices follow the vertices";
  EXPECT_EQ(other.t.GetMaxY(), 10);
}

TEST(CTriangulo2D, UprightTrianglesAcrossXAreOrderedAsTheyLieInYAndZ) {
  // All x equal: seen along x, (y, z) takes the place of (x, y).
  constexpr At low{5, 0, 0}, up{5, 0, 10}, right{5, 10, 0};
  EXPECT_EQ(Placed({low, up, right}, false), std::tuple(1, 2, 3));
  EXPECT_EQ(Placed({low, right, up}, false), std::tuple(1, 3, 2));
  EXPECT_EQ(Placed({right, up, low}, false), std::tuple(3, 2, 1));
}

TEST(CTriangulo2D, UprightTrianglesAcrossYAreOrderedAsTheyLieInXAndZ) {
  constexpr At low{0, 5, 0}, up{0, 5, 10}, right{10, 5, 0};
  EXPECT_EQ(Placed({low, up, right}, false), std::tuple(1, 2, 3));
  EXPECT_EQ(Placed({low, right, up}, false), std::tuple(1, 3, 2));
  EXPECT_EQ(Placed({up, low, right}, false), std::tuple(2, 1, 3));
}

TEST(CTriangulo2D, UprightTrianglesAcrossTheDiagonalAreOrderedAsTheyLieInYAndZ) {
  constexpr At low{0, 0, 0}, up{0, 0, 10}, right{10, 10, 0};
  EXPECT_EQ(Placed({low, up, right}, false), std::tuple(1, 2, 3));
  EXPECT_EQ(Placed({low, right, up}, false), std::tuple(1, 3, 2));
  EXPECT_EQ(Placed({right, low, up}, false), std::tuple(2, 3, 1));
}

TEST(CTriangulo2D, AmongEqualPlanPositionsTheLowestVertexIsTheSmallest) {
  EXPECT_EQ(std::get<0>(Placed({{0, 0, 7}, {0, 0, 3}, {10, 0, 0}}, false)), 2);
}

}  // namespace
}  // namespace Meseta47
