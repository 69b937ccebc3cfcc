#include "model/geometry/CCoor3D.h"

#include <cmath>
#include <cstring>
#include <gmock/gmock.h>
#include <limits>
#include <random>

#include "model/Fixtures.h"

using namespace Meseta47;
using namespace Meseta47::test;

namespace {

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kGreatest = std::numeric_limits<int>::max();
constexpr double kInfinite = std::numeric_limits<double>::infinity();

using Real = CCoor3D<double>;

Point Decorated() {
  Point p(1, 2, 3, 44);
  p.intensidad = 65535;
  p.clasificacion = 255;
  p.SetBorrado(true);
  return p;
}

template <class A, class B>
void ExpectSameAttributes(A const& a, B const& b) {
  EXPECT_EQ(a.num, b.num);
  EXPECT_EQ(a.intensidad, b.intensidad);
  EXPECT_EQ(a.clasificacion, b.clasificacion);
  EXPECT_EQ(a.EsBorrado(), b.EsBorrado());
}

TEST(CCoor3D, APointBeginsUnnumberedAtTheOrigin) {
  const Point p;
  EXPECT_EQ(p, P(0, 0, 0));
  EXPECT_EQ(p.Num(), 0);
  EXPECT_FALSE(p.EsBorrado());
  EXPECT_EQ(p.GetClasificacion(), 0);
}

TEST(CCoor3D, TwoCoordinatesAtOnePositionWithDifferentNumbersAreEqual) {
  EXPECT_EQ(Point(1, 2, 3, 7), Point(1, 2, 3, 8));
  EXPECT_FALSE(Point(1, 2, 3, 7) != Point(1, 2, 3, 8));
  EXPECT_NE(Point(1, 2, 3, 7), Point(1, 2, 4, 7));
}

TEST(CCoor3D, TheOrderGoesByXThenYThenZ) {
  EXPECT_EQ(P(1, 9, 9) < P(2, 0, 0), 1);
  EXPECT_EQ(P(1, 1, 9) < P(1, 2, 0), 1);
  EXPECT_EQ(P(1, 1, 1) < P(1, 1, 2), 1);
  EXPECT_EQ(P(1, 1, 1) < P(1, 1, 1), 0);
  EXPECT_EQ(P(1, 1, 2) > P(1, 1, 1), 1);
  EXPECT_EQ(Point(1, 1, 1, 5) > Point(1, 1, 1, 2), 0);
  EXPECT_EQ(P(kLeast, 0) < P(kGreatest, 0), 1);
}

TEST(CCoor3D, ACopyCarriesEveryMember) {
  const Point original = Decorated();
  const Point copy(original);
  EXPECT_EQ(copy, original);
  ExpectSameAttributes(copy, original);
  Point assigned;
  assigned = original;
  EXPECT_EQ(assigned, original);
  ExpectSameAttributes(assigned, original);
}

TEST(CCoor3D, ChangingTheNumberFormKeepsEverythingAndIntegersExactly) {
  Point original = Decorated();
  original.Actualiza(kLeast, kGreatest, -1);
  const Real real(original);
  EXPECT_EQ(real, Real(kLeast, kGreatest, -1, 0));
  ExpectSameAttributes(real, original);
  EXPECT_EQ(Point(real), original);
  ExpectSameAttributes(Point(real), original);
}

TEST(CCoor3D, RealsBecomeTheNearestIntegersWithinTheLimits) {
  EXPECT_EQ(Point(Real(1.6, -1.6, 0.4, 0)), P(2, -2, 0));
  EXPECT_EQ(Point(Real(1e12, -1e12, std::nan(""), 0)), P(kGreatest, kLeast, 0));
}

TEST(CCoor3D, UpdatingAPositionLeavesNumberIntensityAndFlags) {
  Point p = Decorated();
  p.Actualiza(10.4, 20.6, -30.6);
  EXPECT_EQ(p, P(10, 21, -31));
  ExpectSameAttributes(p, Decorated());
  p.ActualizaXY(5, 6);
  EXPECT_EQ(p, P(5, 6, -31));
  p.ActualizaX(-7.7);
  p.ActualizaY(1e99);
  p.ActualizaZ(8.2);
  EXPECT_EQ(p, P(-8, kGreatest, 8));
  ExpectSameAttributes(p, Decorated());
}

TEST(CCoor3D, TheDeletedMarkLeavesTheOtherFlags) {
  Point p;
  p.marcas = 0xF0;
  p.SetBorrado(true);
  EXPECT_EQ(p.marcas, 0xF1);
  EXPECT_TRUE(p.EsBorrado());
  p.SetBorrado(false);
  EXPECT_EQ(p.marcas, 0xF0);
}

TEST(CCoor3D, ScalingMultipliesAndDividesTheThreeCoordinates) {
  EXPECT_EQ(P(100, -250, 30) / 10.0, P(10, -25, 3));
  EXPECT_EQ(Real(100, -250, 30, 0) / 100.0, Real(1, -2.5, 0.3, 0));
  EXPECT_EQ(Real(1, -2.5, 0.25, 0) * 4.0, Real(4, -10, 1, 0));
  ExpectSameAttributes(Decorated() / 2.0, Decorated());
}

TEST(CCoor3D, DistanceIsInPlanOrInSpaceAsAsked) {
  EXPECT_EQ(P(0, 0, 0).Distancia(P(3, 4, 12), 0), 5.0);
  EXPECT_EQ(P(0, 0, 0).Distancia(P(3, 4, 12), 1), 13.0);
  EXPECT_EQ(P(0, 0, 0).Distancia2(P(3, 4, 12), 0), 25.0);
  EXPECT_EQ(P(0, 0, 0).Distancia2(P(3, 4, 12), 1), 169.0);
  EXPECT_EQ(Real(0.5, 0, 0, 0).Distancia2(Real(0, 0, 2, 0), 1), 4.25);
}

TEST(CCoor3D, DistanceDoesNotOverflowBetweenTheEndsOfTheRange) {
  const double width = 4294967295.0;
  EXPECT_EQ(P(kLeast, kLeast, kLeast).Distancia2(P(kGreatest, kLeast, kLeast), 0), width * width);
  EXPECT_EQ(P(kLeast, kLeast, kLeast).Distancia2(P(kGreatest, kGreatest, kGreatest), 1),
            width * width + width * width + width * width);
}

TEST(CCoor3D, SlopeIsRiseOverRunWithItsSign) {
  EXPECT_EQ(P(0, 0, 0).Pendiente(P(3, 4, 10)), 2.0);
  EXPECT_EQ(P(3, 4, 10).Pendiente(P(0, 0, 0)), -2.0);
  EXPECT_EQ(P(0, 0, 5).Pendiente(P(3, 4, 5)), 0.0);
}

TEST(CCoor3D, SlopeOfAVerticalSegmentIsInfiniteAndOfAPointZero) {
  EXPECT_EQ(P(1, 1, 0).Pendiente(P(1, 1, 5)), kInfinite);
  EXPECT_EQ(P(1, 1, 5).Pendiente(P(1, 1, 0)), -kInfinite);
  EXPECT_EQ(P(1, 1, 5).Pendiente(P(1, 1, 5)), 0.0);
}

TEST(CCoor3D, TheSideOfALineIsLeftRightOrOnItInEachPlane) {
  const Point a = P(0, 0, 0), b = P(10, 10, 10);
  EXPECT_EQ(P(0, 10, 0).CalculaLado(a, b, 0), 1);
  EXPECT_EQ(P(10, 0, 0).CalculaLado(a, b, 0), -1);
  EXPECT_EQ(P(20, 20, 7).CalculaLado(a, b, 0), 0);
  EXPECT_EQ(P(7, 0, 10).CalculaLado(a, b, 1), 1);
  EXPECT_EQ(P(7, 10, 0).CalculaLado(a, b, 1), -1);
  EXPECT_EQ(P(7, -4, -4).CalculaLado(a, b, 1), 0);
  EXPECT_EQ(P(0, 7, 10).CalculaLado(a, b, 2), 1);
  EXPECT_EQ(P(10, 7, 0).CalculaLado(a, b, 2), -1);
  EXPECT_EQ(P(3, 7, 3).CalculaLado(a, b, 2), 0);
}

TEST(CCoor3D, TheSideIsExactOneUnitFromALineAcrossTheWholeRange) {
  const Point a = P(kLeast, kLeast), b = P(kGreatest, kGreatest);
  EXPECT_EQ(P(0, 0).CalculaLado(a, b, 0), 0);
  EXPECT_EQ(P(kGreatest - 1, kGreatest - 1).CalculaLado(a, b, 0), 0);
  EXPECT_EQ(P(kGreatest - 1, kGreatest).CalculaLado(a, b, 0), 1);
  EXPECT_EQ(P(kLeast + 1, kLeast).CalculaLado(a, b, 0), -1);
}

TEST(CCoor3D, ProjectionOnAPlaneIsOrthogonal) {
  // The plane z = 5, by a unit normal and by a longer one.
  EXPECT_EQ(P(3, 4, 9).ProyectaSobrePlano(Real(0, 0, 1, 0), -5, true), P(3, 4, 5));
  EXPECT_EQ(P(3, 4, 9).ProyectaSobrePlano(Real(0, 0, 2, 0), -10, false), P(3, 4, 5));
  // The plane x + y + z = 0.
  EXPECT_EQ(P(30, 0, 0).ProyectaSobrePlano(Real(1, 1, 1, 0), 0, false), P(20, -10, -10));
  EXPECT_EQ(P(3, 4, 9).ProyectaSobrePlano(Real(0, 0, 0, 0), 1, false), P(3, 4, 9));
  ExpectSameAttributes(Decorated().ProyectaSobrePlano(Real(0, 0, 1, 0), 0, true), Decorated());
}

TEST(CCoor3D, NormalisingMakesAVectorOneUnitLong) {
  Real v(3, 4, 12, 9);
  ASSERT_TRUE(v.Normaliza());
  EXPECT_DOUBLE_EQ(v.Distancia(Real(), 1), 1.0);
  EXPECT_DOUBLE_EQ(v.x, 3.0 / 13);
  EXPECT_EQ(v.num, 9);
  Point axis = P(0, -70, 0);
  ASSERT_TRUE(axis.Normaliza());
  EXPECT_EQ(axis, P(0, -1, 0));
}

TEST(CCoor3D, TheNullVectorCannotBeNormalised) {
  Real v(0, 0, 0, 3);
  EXPECT_FALSE(v.Normaliza());
  EXPECT_EQ(v, Real(0, 0, 0, 0));
}

TEST(CCoor3D, DistanceToALineTellsWhereTheFootStands) {
  double t = -1;
  EXPECT_DOUBLE_EQ(Real(5, 3, 100, 0).DistanciaARecta(Real(0, 0, 0, 0), Real(20, 0, 0, 0), 0, &t), 3.0);
  EXPECT_DOUBLE_EQ(t, 0.25);
  EXPECT_DOUBLE_EQ(Real(5, 3, 4, 0).DistanciaARecta(Real(0, 0, 0, 0), Real(20, 0, 0, 0), 1, &t), 5.0);
  EXPECT_DOUBLE_EQ(t, 0.25);
  EXPECT_DOUBLE_EQ(Real(-20, 1, 0, 0).DistanciaARecta(Real(0, 0, 0, 0), Real(20, 0, 0, 0), 1, nullptr), 1.0);
}

TEST(CCoor3D, DistanceToALineOfOnePointIsTheDistanceToIt) {
  double t = -1;
  EXPECT_DOUBLE_EQ(Real(3, 4, 0, 0).DistanciaARecta(Real(0, 0, 0, 0), Real(0, 0, 0, 0), 0, &t), 5.0);
  EXPECT_EQ(t, 0.0);
}

// ---- Best-fit plane ----

struct Plane {
  double rms = -1, greatest = -1, term = 0;
  std::vector<double> residuals;
  Real normal, mean;
  bool Fit(std::vector<Real> const& points, int least = 3) {
    return normal.CalcularPlano(points, term, residuals, rms, mean, greatest, least);
  }
  [[nodiscard]] double At(Real const& p) const { return normal.x * p.x + normal.y * p.y + normal.z * p.z + term; }
};

TEST(CCoor3D, ThePlaneThroughPointsOfOnePlaneHoldsThemAll) {
  std::vector<Real> points;
  for (int x = 0; x < 5; ++x) {
    for (int y = 0; y < 5; ++y) points.emplace_back(500000.0 + x, 4100000.0 + y, 700 + 2.0 * x - 3.0 * y, 0);
  }
  Plane plane;
  ASSERT_TRUE(plane.Fit(points));
  EXPECT_NEAR(plane.rms, 0, 1e-9);
  EXPECT_GT(plane.normal.z, 0);
  EXPECT_NEAR(plane.normal.x / plane.normal.z, -2.0, 1e-9);
  EXPECT_NEAR(plane.normal.y / plane.normal.z, 3.0, 1e-9);
  EXPECT_NEAR(plane.normal.Distancia(Real(), 1), 1.0, 1e-14);
  for (Real const& p : points) EXPECT_NEAR(plane.At(p), 0, 1e-8);
}

TEST(CCoor3D, ThePlaneOfAVerticalWallIsVertical) {
  Plane plane;
  ASSERT_TRUE(plane.Fit({{0, 7, 0, 0}, {10, 7, 0, 0}, {0, 7, 10, 0}, {10, 7, 10, 0}}));
  EXPECT_NEAR(plane.normal.y, 1.0, 1e-12);
  EXPECT_NEAR(plane.term, -7.0, 1e-12);
}

TEST(CCoor3D, ThePlaneHoldsTheMeanOfThePoints) {
  Plane plane;
  ASSERT_TRUE(plane.Fit({{0, 0, 1, 0}, {6, 0, 1, 0}, {0, 6, 4, 0}}, 0));
  EXPECT_NEAR(plane.mean.Distancia(Real(2, 2, 2, 0), 1), 0, 1e-12);
  EXPECT_NEAR(plane.At(plane.mean), 0, 1e-12);
}

TEST(CCoor3D, AFootOnThePlaneComesFromTheNormalAndTheTerm) {
  Real normal;
  double term = 0, rms = 0, greatest = 0;
  std::vector<double> residuals;
  Real mean;
  ASSERT_TRUE(
      normal.CalcularPlano({{0, 0, 7, 0}, {6, 0, 7, 0}, {0, 6, 7, 0}}, term, residuals, rms, mean, greatest, 0));
  EXPECT_EQ(P(1, 2, 100).ProyectaSobrePlano(normal, term, false), P(1, 2, 7));
}

TEST(CCoor3D, ResidualsOfThePlaneAreSignedDistances) {
  // A tilted square whose corners stand alternately 1 above and 1 below the plane z = 0.
  Plane plane;
  ASSERT_TRUE(plane.Fit({{0, 0, 1, 0}, {9, 0, -1, 0}, {9, 9, 1, 0}, {0, 9, -1, 0}}));
  EXPECT_NEAR(plane.rms, 1.0, 1e-12);
  EXPECT_NEAR(plane.greatest, 1.0, 1e-12);
  EXPECT_THAT(plane.residuals, testing::Pointwise(testing::DoubleNear(1e-12), {1.0, -1.0, 1.0, -1.0}));
}

TEST(CCoor3D, PointsOnALineOrTooFewHaveNoPlane) {
  Plane plane;
  EXPECT_FALSE(plane.Fit({{0, 0, 0, 0}, {1, 2, 3, 0}, {2, 4, 6, 0}, {100, 200, 300, 0}}));
  EXPECT_FALSE(plane.Fit({{1e6, 1e6, 1, 0}, {1e6, 1e6, 1, 0}, {1e6, 1e6, 1, 0}}));
  EXPECT_FALSE(plane.Fit({{0, 0, 0, 0}, {1, 0, 0, 0}}));
  EXPECT_FALSE(plane.Fit({}));
  EXPECT_FALSE(plane.Fit({{0, 0, 0, 0}, {1, 0, 0, 0}, {0, 1, 0, 0}}, 4));
  EXPECT_EQ(plane.rms, -1) << "a failure leaves the results alone";
  EXPECT_EQ(plane.normal, Real()) << "and the object";
  EXPECT_TRUE(plane.Fit({{0, 0, 0, 0}, {1, 0, 0, 0}, {0, 1, 0, 0}}, 0));
}

// ---- Binary form ----

TEST(CCoor3D, TheIntegerFormIsTwelveLittleEndianBytes) {
  ScratchFile scratch;
  CFile out = scratch.ForWriting();
  Point p = Decorated();
  p.Actualiza(1, -2, 0x12345678);
  ASSERT_TRUE(p.Write(&out, CDataSemilla(2, 0, 0, 0), 0, FICHERO_NATIVO, 0, 3));
  ASSERT_TRUE(out.Close());
  EXPECT_THAT(scratch.Bytes(), testing::ElementsAre(1, 0, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF, 0x78, 0x56, 0x34, 0x12));

  CFile in = scratch.ForReading();
  Point read(0, 0, 0, 9);
  ASSERT_TRUE(read.Read(&in, 1.0, FICHERO_NATIVO));
  EXPECT_EQ(read, P(1, -2, 0x12345678));
  EXPECT_EQ(read.num, 9);
}

TEST(CCoor3D, TheRealFormIsTheTwelveBytesOfItsRoundedCoordinates) {
  ScratchFile scratch;
  CFile out = scratch.ForWriting();
  ASSERT_TRUE(Real(1.4, -2.5, 1e300, 4).Write(&out, CDataSemilla(2, 0, 0, 0), 0, FICHERO_NATIVO, 0, 3));
  ASSERT_TRUE(out.Close());
  EXPECT_THAT(scratch.Bytes(), testing::ElementsAre(1, 0, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F));

  CFile in = scratch.ForReading();
  Real read(0, 0, 0, 9);
  ASSERT_TRUE(read.Read(&in, 1.0, FICHERO_NATIVO));
  EXPECT_EQ(read, Real(1, -2, 2147483647, 0));
  EXPECT_EQ(read.num, 9);
}

TEST(CCoor3D, ReadingMultipliesByTheFactor) {
  ScratchFile scratch;
  CFile out = scratch.ForWriting();
  ASSERT_TRUE(P(7, -3, kGreatest).Write(&out, CDataSemilla(), 0, FICHERO_NATIVO, 0, 3));
  ASSERT_TRUE(out.Close());
  CFile in = scratch.ForReading();
  Point read;
  ASSERT_TRUE(read.Read(&in, 10.0, FICHERO_NATIVO));
  EXPECT_EQ(read, P(70, -30, kGreatest));
}

TEST(CCoor3D, AShortReadFailsAndChangesNothing) {
  ScratchFile scratch;
  CFile out = scratch.ForWriting();
  ASSERT_TRUE(P(7, -3, 5).Write(&out, CDataSemilla(), 0, FICHERO_NATIVO, 0, 3));
  ASSERT_TRUE(out.Close());
  scratch.Cut(11);
  CFile in = scratch.ForReading();
  Point read = P(1, 2, 3);
  EXPECT_FALSE(read.Read(&in, 1.0, FICHERO_NATIVO));
  EXPECT_EQ(read, P(1, 2, 3));
}

TEST(CCoor3D, WritingToAFileOpenedForReadingFails) {
  ScratchFile scratch;
  ASSERT_TRUE(scratch.ForWriting().Close());
  CFile in = scratch.ForReading();
  EXPECT_FALSE(P(1, 2, 3).Write(&in, CDataSemilla(), 0, FICHERO_NATIVO, 0, 3));
}

struct Tagged : Point {
  using Point::Point;
  bool* gone = nullptr;
  ~Tagged() override { *gone = true; }
};

TEST(CCoor3D, ADerivedCoordinateIsDestroyedThroughItsBase) {
  bool gone = false;
  auto tagged = std::make_unique<Tagged>(1, 2, 3, 4);
  tagged->gone = &gone;
  std::unique_ptr<Point> base = std::move(tagged);
  EXPECT_EQ(*base, P(1, 2, 3));
  base.reset();
  EXPECT_TRUE(gone);
}

}  // namespace
