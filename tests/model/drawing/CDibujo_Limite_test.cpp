#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <random>

#include "model/Fixtures.h"
#include "model/drawing/CDibujo.h"
#include "model/drawing/CIndiceAnillos.h"
#include "model/drawing/CPosicionEntidad.h"
#include "model/threads/IPorcentaje.h"

using namespace Meseta47;
using namespace Meseta47::test;

namespace {

using testing::ElementsAre;

constexpr int kNoLimit = 2147483647;
constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kGreatest = std::numeric_limits<int>::max();

const CInfoClasificacion kBuilding(6, 0.0, L""), kAny(0, 0.0, kTextoComodin);

CLinea<int> Box(int x0, int y0, int x1, int y1, int z = 0) {
  return Line({P(x0, y0, z), P(x1, y0, z), P(x1, y1, z), P(x0, y1, z), P(x0, y0, z)});
}

CDibujo<int> Drawing(std::vector<CLinea<int>> const& lines) {
  CDibujo<int> drawing;
  for (CLinea<int> const& line : lines) drawing.Inserta(line);
  return drawing;
}

CDibujo<int> Cloud(std::vector<Point> const& points) {
  CDibujo<int> drawing;
  drawing.Inserta(Set(points));
  return drawing;
}

std::vector<int> Classes(CDibujo<int> const& cloud) {
  std::vector<int> classes;
  for (unsigned e = 0; e < cloud.Cantidad(); ++e) {
    for (Point const& p : cloud[e].Puntos()) classes.push_back(p.clasificacion);
  }
  return classes;
}

int Classify(CDibujo<int>& cloud, CDibujo<int> const& outlines, int aboveRing = kNoLimit, int aboveAll = kNoLimit) {
  unsigned count = 0;
  EXPECT_EQ(cloud.ClasificarPuntosSegunLimite(outlines, kBuilding, count, {kAny}, {}, aboveRing, aboveAll, nullptr,
                                              nullptr, nullptr),
            1);
  return static_cast<int>(count);
}

TEST(ClasificarPuntosSegunLimite, APointInsideOrOnTheLineTakesTheClass) {
  CDibujo<int> cloud = Cloud({P(5, 5), P(0, 0), P(10, 5), P(5, 0), P(11, 5), P(-1, 5), P(5, 11), P(5, -1)});
  EXPECT_EQ(Classify(cloud, Drawing({Box(0, 0, 10, 10)})), 4);
  EXPECT_THAT(Classes(cloud), ElementsAre(6, 6, 6, 6, 0, 0, 0, 0));
}

TEST(ClasificarPuntosSegunLimite, ARingInARingIsAHoleAndAThirdOneAnIsland) {
  CDibujo<int> cloud = Cloud({P(1, 1), P(15, 15), P(25, 25), P(10, 20), P(20, 20), P(50, 50)});
  EXPECT_EQ(Classify(cloud, Drawing({Box(0, 0, 60, 60), Box(10, 10, 40, 40), Box(20, 20, 30, 30)})), 5);
  EXPECT_THAT(Classes(cloud), ElementsAre(6, 0, 6, 6, 6, 6));
}

TEST(ClasificarPuntosSegunLimite, TheRimOfAHoleIsInside) {
  CDibujo<int> cloud = Cloud({P(10, 10), P(25, 10), P(40, 33), P(11, 11), P(39, 39)});
  EXPECT_EQ(Classify(cloud, Drawing({Box(0, 0, 60, 60), Box(10, 10, 40, 40)})), 3);
  EXPECT_THAT(Classes(cloud), ElementsAre(6, 6, 6, 0, 0));
}

TEST(ClasificarPuntosSegunLimite, RingsThatTouchInAVertexHoldWhatEachOfThemHolds) {
  // Two boxes that meet in (20, 20), and in the first a hole that reaches its side in (20, 10).
  const CDibujo<int> outlines =
      Drawing({Box(0, 0, 20, 20), Box(20, 20, 40, 40), Line({P(20, 10), P(10, 15), P(10, 5), P(20, 10)})});
  CDibujo<int> cloud = Cloud({P(20, 20), P(20, 10), P(19, 10), P(21, 21), P(19, 19), P(21, 19), P(19, 21), P(5, 10)});
  Classify(cloud, outlines);
  EXPECT_THAT(Classes(cloud), ElementsAre(6, 6, 0, 6, 6, 0, 0, 6));
}

TEST(ClasificarPuntosSegunLimite, RepeatedVerticesOfARingChangeNothing) {
  const CLinea<int> ring =
      Line({P(0, 0), P(0, 0), P(10, 0), P(10, 5), P(10, 5), P(10, 10), P(0, 10), P(0, 5), P(0, 5), P(0, 0)});
  CDibujo<int> cloud = Cloud({P(5, 5), P(-5, 5), P(15, 5), P(0, 5), P(-5, 0), P(15, 10)});
  EXPECT_EQ(Classify(cloud, Drawing({ring})), 2);
  EXPECT_THAT(Classes(cloud), ElementsAre(6, 0, 0, 6, 0, 0));
}

TEST(ClasificarPuntosSegunLimite, ARowThroughVerticesIsCountedAsItCrosses) {
  // A crown: its points up on the row 10, its valleys down on the row 5.
  const CLinea<int> crown = Line({P(0, 0), P(40, 0), P(40, 10), P(30, 5), P(20, 10), P(10, 5), P(0, 10), P(0, 0)});
  CDibujo<int> cloud =
      Cloud({P(5, 10), P(15, 10), P(20, 10), P(5, 5), P(20, 5), P(-5, 5), P(45, 5), P(-5, 10), P(-5, 0)});
  Classify(cloud, Drawing({crown}));
  EXPECT_THAT(Classes(cloud), ElementsAre(0, 0, 6, 6, 6, 0, 0, 0, 0));
}

TEST(ClasificarPuntosSegunLimite, ThePositionIsExactOneUnitFromALongSide) {
  const CLinea<int> triangle =
      Line({P(kLeast, kLeast), P(kGreatest, kGreatest), P(kLeast, kGreatest), P(kLeast, kLeast)});
  CDibujo<int> cloud = Cloud({P(1000, 1000), P(1000, 1001), P(1001, 1000), P(kGreatest, kGreatest - 1)});
  Classify(cloud, Drawing({triangle}));
  EXPECT_THAT(Classes(cloud), ElementsAre(6, 6, 0, 0));
}

TEST(ClasificarPuntosSegunLimite, LinesThatAreOpenDeletedOrNoOutlineHoldNothing) {
  CLinea<int> deleted = Box(0, 0, 10, 10);
  deleted.SetBorrado(true);
  CDibujo<int> outlines =
      Drawing({Line({P(0, 0), P(10, 0), P(10, 10), P(0, 10)}), deleted, Line({P(0, 0), P(9, 9), P(0, 0)})});
  outlines.Inserta(Set({P(0, 0), P(10, 0), P(10, 10), P(0, 10), P(0, 0)}));
  CDibujo<int> cloud = Cloud({P(5, 5)});
  EXPECT_EQ(Classify(cloud, outlines), 0);
  EXPECT_EQ(Classify(cloud, CDibujo<int>()), 0);
}

TEST(ClasificarPuntosSegunLimite, EverythingLowEnoughIsClassifiedAndNothingIsTooLow) {
  CDibujo<int> cloud = Cloud({P(5, 5, 120), P(5, 5, 121), P(5, 5, -100000), P(5, 5, 0)});
  EXPECT_EQ(Classify(cloud, Drawing({Box(0, 0, 10, 10, 100)}), 20), 3);
  EXPECT_THAT(Classes(cloud), ElementsAre(6, 0, 6, 6));
}

TEST(ClasificarPuntosSegunLimite, BelowZeroALimitAsksForLessThanTheHeightOfTheOutline) {
  CDibujo<int> cloud = Cloud({P(5, 5, 80), P(5, 5, 81)});
  EXPECT_EQ(Classify(cloud, Drawing({Box(0, 0, 10, 10, 100)}), -20), 1);
  EXPECT_THAT(Classes(cloud), ElementsAre(6, 0));
}

TEST(ClasificarPuntosSegunLimite, OfOneRingTheHighestVertexCounts) {
  const CLinea<int> slope = Line({P(0, 0, 10), P(10, 0, 10), P(10, 10, 90), P(0, 10, 90), P(0, 0, 10)});
  CDibujo<int> cloud = Cloud({P(5, 1, 95), P(5, 1, 96)});
  EXPECT_EQ(Classify(cloud, Drawing({slope}), 5, 5), 1) << "what is low beside the far side is low everywhere";
}

TEST(ClasificarPuntosSegunLimite, TheHeightOfTheInnermostOutlineCounts) {
  const CDibujo<int> outlines = Drawing({Box(0, 0, 60, 60, 1000), Box(10, 10, 40, 40, 500), Box(20, 20, 30, 30, 100)});
  CDibujo<int> cloud = Cloud({P(25, 25, 130), P(25, 25, 131), P(5, 5, 1030), P(5, 5, 1031)});
  Classify(cloud, outlines, 30);
  EXPECT_THAT(Classes(cloud), ElementsAre(6, 0, 6, 0));
}

TEST(ClasificarPuntosSegunLimite, TheSecondLimitCountsFromTheHighestOfAllOutlines) {
  const CDibujo<int> outlines = Drawing({Box(0, 0, 10, 10, 100), Box(20, 20, 30, 30, 300)});
  CDibujo<int> cloud = Cloud({P(5, 5, 310), P(5, 5, 311)});
  Classify(cloud, outlines, kNoLimit, 10);
  EXPECT_THAT(Classes(cloud), ElementsAre(6, 0));
}

TEST(ClasificarPuntosSegunLimite, WithoutLimitTheHighestPointIsClassified) {
  CDibujo<int> cloud = Cloud({P(5, 5, kGreatest)});
  EXPECT_EQ(Classify(cloud, Drawing({Box(0, 0, 10, 10, kLeast)})), 1);
  cloud = Cloud({P(5, 5, kGreatest)});
  EXPECT_EQ(Classify(cloud, Drawing({Box(0, 0, 10, 10, kGreatest)}), 5, 5), 1);
}

TEST(ClasificarPuntosSegunLimite, OnlyIncludedClassesThatAreNotExcludedChange) {
  CDibujo<int> cloud = Cloud({P(1, 1), P(2, 2), P(3, 3), P(4, 4)});
  const int classes[4] = {1, 2, 6, 9};
  for (int i = 0; i < 4; ++i) cloud[0].PunteroAPunto(i)->clasificacion = static_cast<std::uint8_t>(classes[i]);
  const CDibujo<int> outlines = Drawing({Box(0, 0, 10, 10)});
  unsigned count = 40;
  std::vector<CPosicionEntidad> changed;
  EXPECT_EQ(cloud.ClasificarPuntosSegunLimite(outlines, kBuilding, count, {kAny}, {CInfoClasificacion(9, 0.0, L"")},
                                              kNoLimit, kNoLimit, nullptr, &changed, nullptr),
            1);
  EXPECT_THAT(Classes(cloud), ElementsAre(6, 6, 6, 9));
  EXPECT_EQ(count, 42u) << "the point that had the class already is not counted";
  EXPECT_THAT(changed, ElementsAre(CPosicionEntidad(0, 0), CPosicionEntidad(0, 1)));
  EXPECT_EQ(cloud.ClasificarPuntosSegunLimite(outlines, kBuilding, count, {CInfoClasificacion(2, 0.0, L"")}, {},
                                              kNoLimit, kNoLimit, nullptr, nullptr, nullptr),
            1);
  EXPECT_EQ(count, 42u);
}

TEST(ClasificarPuntosSegunLimite, WithNothingIncludedOrEverythingExcludedNothingChanges) {
  CDibujo<int> cloud = Cloud({P(1, 1)});
  const CDibujo<int> outlines = Drawing({Box(0, 0, 10, 10)});
  unsigned count = 3;
  for (auto const& [included, excluded] :
       {std::pair<std::vector<CInfoClasificacion>, std::vector<CInfoClasificacion>>{}, {{kAny}, {kAny}}}) {
    EXPECT_EQ(cloud.ClasificarPuntosSegunLimite(outlines, kBuilding, count, included, excluded, kNoLimit, kNoLimit,
                                                nullptr, nullptr, nullptr),
              1);
  }
  EXPECT_EQ(count, 3u);
  EXPECT_THAT(Classes(cloud), ElementsAre(0));
}

TEST(ClasificarPuntosSegunLimite, ASelectionRestrictsTheWorkAndPlacesThatAreNoneAreIgnored) {
  CDibujo<int> cloud = Cloud({P(1, 1), P(2, 2), P(3, 3)});
  const std::vector<CPosicionEntidad> selection{{-1, 0}, {0, -1}, {0, 1}, {0, 3}, {1, 0}};
  unsigned count = 0;
  EXPECT_EQ(cloud.ClasificarPuntosSegunLimite(Drawing({Box(0, 0, 10, 10)}), kBuilding, count, {kAny}, {}, kNoLimit,
                                              kNoLimit, &selection, nullptr, nullptr),
            1);
  EXPECT_THAT(Classes(cloud), ElementsAre(0, 6, 0));
  EXPECT_EQ(count, 1u);
}

TEST(ClasificarPuntosSegunLimite, PointsOfDeletedEntitiesStayAsTheyAre) {
  CDibujo<int> cloud = Cloud({P(1, 1)});
  cloud[0].SetBorrado(true);
  EXPECT_EQ(Classify(cloud, Drawing({Box(0, 0, 10, 10)})), 0);
}

class Progress : public IPorcentaje {
 public:
  explicit Progress(int patience) : patience_(patience) {}
  virtual ~Progress() = default;
  int Porcentaje(int, unsigned long long value, unsigned long long total, bool) override {
    EXPECT_GT(value, last_);
    EXPECT_LE(value, total);
    last_ = value;
    return ++calls <= patience_ ? 1 : 0;
  }
  void Fase(int, unsigned) override {}
  void Cierra(int, int) override {}
  void Amplia(int, int) override {}
  void Abre(int, int, int) override {}
  void Mensaje(int, CString*, int) override {}

  int calls = 0;

 private:
  int patience_;
  unsigned long long last_ = 0;
};

TEST(ClasificarPuntosSegunLimite, ACancellationChangesNothing) {
  CDibujo<int> cloud = Cloud(std::vector<Point>(5000, P(1, 1)));
  const CDibujo<int> outlines = Drawing({Box(0, 0, 10, 10)});
  unsigned count = 0;
  std::vector<CPosicionEntidad> changed;
  Progress impatient(2), patient(1000);
  EXPECT_EQ(cloud.ClasificarPuntosSegunLimite(outlines, kBuilding, count, {kAny}, {}, kNoLimit, kNoLimit, nullptr,
                                              &changed, &impatient),
            2);
  EXPECT_EQ(impatient.calls, 3);
  EXPECT_EQ(count, 0u);
  EXPECT_TRUE(changed.empty());
  EXPECT_EQ(cloud[0].Punto(0).clasificacion, 0);
  EXPECT_EQ(cloud.ClasificarPuntosSegunLimite(outlines, kBuilding, count, {kAny}, {}, kNoLimit, kNoLimit, nullptr,
                                              &changed, &patient),
            1);
  EXPECT_EQ(count, 5000u);
  EXPECT_GT(patient.calls, 2);
}

// ---- Against a plain count of turns ----

__extension__ typedef __int128 Int128;

/// Twice the area of (a, b, place): positive when the place lies on the left.
Int128 Side(Point const& a, Point const& b, int x, int y) {
  return (static_cast<Int128>(b.x) - a.x) * (static_cast<Int128>(y) - a.y) -
         (static_cast<Int128>(b.y) - a.y) * (static_cast<Int128>(x) - a.x);
}

bool OnSide(Point const& a, Point const& b, int x, int y) {
  return Side(a, b, x, y) == 0 && x >= std::min(a.x, b.x) && x <= std::max(a.x, b.x) && y >= std::min(a.y, b.y) &&
         y <= std::max(a.y, b.y);
}

/// How often a ring turns round a place that is not on it.
int Turns(std::vector<Point> const& ring, int x, int y) {
  int turns = 0;
  for (std::size_t i = 1; i < ring.size(); ++i) {
    Point const &a = ring[i - 1], &b = ring[i];
    if (a.y <= y && b.y > y && Side(a, b, x, y) > 0) ++turns;
    if (a.y > y && b.y <= y && Side(a, b, x, y) < 0) --turns;
  }
  return turns;
}

bool InsideByTurns(std::vector<CLinea<int>> const& rings, int x, int y) {
  bool inside = false;
  for (CLinea<int> const& ring : rings) {
    std::vector<Point> const& p = ring.Puntos();
    for (std::size_t i = 1; i < p.size(); ++i) {
      if (OnSide(p[i - 1], p[i], x, y)) return true;
    }
    inside = inside != (Turns(p, x, y) != 0);
  }
  return inside;
}

/// A ring round a centre without crossings of its own: its vertices follow each other by direction.
CLinea<int> Star(std::mt19937& random, int x, int y, int radius) {
  const int vertices = 3 + static_cast<int>(random() % 30);
  std::vector<Point> points;
  for (int i = 0; i < vertices; ++i) {
    const double angle = 6.283185307179586 * i / vertices;
    const double r = radius * (0.3 + 0.7 * static_cast<double>(random() % 1000) / 1000);
    points.push_back(P(x + static_cast<int>(r * std::cos(angle)), y + static_cast<int>(r * std::sin(angle))));
  }
  points.push_back(points.front());
  return Line(points);
}

class Outlines : public testing::TestWithParam<int> {};

TEST_P(Outlines, HoldWhatAnOddNumberOfThemTurnsRound) {
  std::mt19937 random(static_cast<unsigned>(GetParam()));
  const int extent = GetParam() % 2 == 0 ? 60 : 100000, count = 1 + GetParam() % 60;
  const auto place = [&] { return static_cast<int>(random() % static_cast<unsigned>(2 * extent)) - extent; };
  std::vector<CLinea<int>> rings;
  for (int i = 0; i < count; ++i) {
    const int radius = 3 + static_cast<int>(random() % static_cast<unsigned>(i % 10 == 0 ? extent : extent / 10));
    rings.push_back(Star(random, place(), place(), radius));
  }
  const CDibujo<int> outlines = Drawing(rings);
  const CIndiceAnillos index(outlines);
  int inside = 0;
  for (int i = 0; i < 3000; ++i) {
    int x = place() * 5 / 4, y = place() * 5 / 4;
    if (i % 3 == 0) {  // a vertex, or beside one: rows through vertices are the hard ones
      CLinea<int> const& ring = rings[random() % rings.size()];
      Point const& p = ring.Punto(static_cast<int>(random() % static_cast<unsigned>(ring.NPuntos())));
      x = p.x + static_cast<int>(random() % 3) - 1;
      y = p.y;
    }
    ASSERT_EQ(index.Busca(x, y) != nullptr, InsideByTurns(rings, x, y)) << x << ' ' << y;
    inside += index.Busca(x, y) != nullptr ? 1 : 0;
  }
  EXPECT_GT(inside, 0);
  EXPECT_LT(inside, 3000);
}

INSTANTIATE_TEST_SUITE_P(Seeds, Outlines, testing::Range(1, 60));

}  // namespace
