// Growth of a class by affinity within one set of triangles, sweep by sweep.
#include <gmock/gmock.h>

#include "planar/CAfinidad.h"
#include "planar/CSetTriangulos2D.h"
#include "planar/PhaseScenes.h"
#include "support/ScratchFolder.h"
#include "support/SetScene.h"

namespace Meseta47 {
namespace {

using support::Triangle;
using test::At;
using test::Box;
using test::ListOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr unsigned char kGrows = 2, kStops = 6;

/// A range that is set from `least` to `most`.
CRango Range(double least, double most) {
  CRango range(2147483647.0, 2147483647.0, -2147483648.0, 2147483647.0);
  range.SetValorMin(least);
  range.SetValorMax(most);
  return range;
}
CRango NoRange() { return CRango(2147483647.0, 2147483647.0, -2147483648.0, 2147483647.0); }

/// A closed set of triangles over points of classes told, and one call of the growth.
class Growth : public testing::Test {
 protected:
  explicit Growth(std::vector<At> const& places = {{0, 0}, {0, 9}, {9, 0}, {9, 9}, {18, 0}, {18, 9}}) {
    points = test::Numbered(places);
    infos.resize(points.size());
  }

  void Classes(std::vector<unsigned char> const& classes) {
    for (std::size_t i = 0; i < classes.size(); ++i) infos[i] = CInfoClasificacion(classes[i], 0.0, L"");
  }
  /// Appends the triangle of these points to the set, whatever its shape.
  void Add(CSetTriangulos2D& to, int a, int b, int c) {
    to.InsertaOrdenado(CTriangulo2D(P(a), P(b), P(c)), to.maximas);
  }
  CCoor3D<int>* P(int number) { return number > 0 ? &points[static_cast<std::size_t>(number) - 1] : nullptr; }

  unsigned Grow(bool writes = false) {
    set.QuitaTrianguloActual();
    unsigned changed = 100;
    EXPECT_FALSE(set.ClasificaPorAfinidad(&file, infos, intensities.empty() ? nullptr : &intensities, grows, stops,
                                          heights, intensityRange, distances, slopes, changed, writes));
    return changed - 100;
  }
  [[nodiscard]] std::vector<int> Classes() const {
    std::vector<int> classes;
    for (CInfoClasificacion const& info : infos) classes.push_back(info.GetTipo());
    return classes;
  }
  [[nodiscard]] std::vector<Triangle> Records() {
    file.Flush();
    return test::RecordsOf(BytesOf(file.GetFilePath()));
  }
  static std::vector<Triangle> Left(CSetTriangulos2D const& of) {
    std::vector<Triangle> left;
    for (CTriangulo2D const* t : ListOf(of)) left.push_back({t->N1(), t->N2(), t->N3()});
    return left;
  }

  ScratchFolder folder;
  CFile file{folder.Path("triangles"), 36930};
  std::vector<CCoor3D<int>> points;
  std::vector<CInfoClasificacion> infos;
  std::vector<unsigned short> intensities;
  CInfoClasificacion grows{kGrows, 0.0, L""}, stops{kStops, 0.0, L""};
  CRango const *heights = nullptr, *intensityRange = nullptr, *distances = nullptr, *slopes = nullptr;
  CSetTriangulos2D set{0};
};

TEST_F(Growth, WithAllFourRangesNullEveryNeighbourTakesTheClassUnlessItStops) {
  Classes({kGrows, 1, kStops, 1, 1, 1});
  Add(set, 1, 2, 3);
  Add(set, 2, 4, 3);
  EXPECT_EQ(Grow(), 2U);
  EXPECT_THAT(Classes(), ElementsAre(kGrows, kGrows, kStops, kGrows, 1, 1));
}

TEST_F(Growth, AVertexThatTakesTheClassHandsItOnInTheSameLook) {
  // Vertex 1 takes it from 2; from vertex 1 alone 3 is near enough, and pair (3, 1) comes after (1, 2).
  points[0] = {0, 0, 0, 1};
  points[1] = {-5, 0, 0, 2};
  points[2] = {5, 1, 0, 3};
  const CRango near = Range(0, 30);
  distances = &near;
  Classes({1, kGrows, 1});
  Add(set, 1, 2, 3);
  EXPECT_EQ(Grow(), 2U);
  EXPECT_THAT(Classes(), ElementsAre(kGrows, kGrows, kGrows, 0, 0, 0));
  EXPECT_THAT(Left(set), IsEmpty());
}

TEST_F(Growth, ThePointThatStopsNeverChangesThoughItIsSurrounded) {
  Classes({kGrows, kGrows, kGrows, kStops, kGrows, kGrows});
  Add(set, 2, 4, 3);
  Add(set, 3, 4, 5);
  EXPECT_EQ(Grow(), 0U);
  EXPECT_EQ(Classes()[3], kStops);
}

TEST_F(Growth, WhereBothClassesAreOneTrianglesOfItGoAndOthersGrow) {
  stops = grows;
  Classes({kGrows, kGrows, kGrows, kStops, 1, 1});
  Add(set, 1, 2, 3);
  Add(set, 2, 4, 3);
  EXPECT_EQ(Grow(), 1U);
  EXPECT_THAT(Classes(), ElementsAre(kGrows, kGrows, kGrows, kGrows, 1, 1)) << "the other class is one like any";
}

TEST_F(Growth, ATriangleWithAFrameCornerGoesAtOnce) {
  points[3].num = -1;
  Classes({kGrows, 1, 1});
  Add(set, 1, 2, 4);
  EXPECT_EQ(Grow(), 0U);
  EXPECT_THAT(Classes(), ElementsAre(kGrows, 1, 1, 0, 0, 0)) << "nothing passes through it";
  EXPECT_THAT(Left(set), IsEmpty());
  EXPECT_EQ(set.cantidad, 0U);
}

TEST_F(Growth, ATriangleThatHasLostAVertexGoesWithoutComplaint) {
  Classes({kGrows, 1, 1, 1});
  Add(set, 1, 2, 3);
  Add(set, 2, 4, 3);
  set.primero->SetPuntos(P(1), nullptr, P(3), false);
  EXPECT_EQ(Grow(), 0U);
  EXPECT_THAT(Left(set), ElementsAre(Triangle{2, 4, 3}));
}

TEST_F(Growth, AVertexOfNumberZeroTakesItsTriangleAway) {
  Classes({kGrows, 1, 1, 1});
  points[2].num = 0;
  Add(set, 1, 2, 3);
  EXPECT_EQ(Grow(), 0U);
  EXPECT_THAT(Left(set), IsEmpty());
}

TEST_F(Growth, TrianglesThatMayStillChangeStayInTheirOrderAndTheListIsWhole) {
  const CRango none = Range(50, 60);  // nobody differs by so much
  heights = &none;
  Classes({kGrows, kGrows, kGrows, 1, 1, 1});
  Add(set, 1, 2, 3);
  Add(set, 2, 4, 3);
  Add(set, 3, 4, 5);
  Add(set, 1, 3, 2);
  Add(set, 4, 6, 5);
  Add(set, 3, 2, 1);
  EXPECT_EQ(Grow(), 0U);
  EXPECT_THAT(Left(set), ElementsAre(Triangle{2, 4, 3}, Triangle{3, 4, 5}, Triangle{4, 6, 5}));
  EXPECT_EQ(set.cantidad, 3U);
  std::vector<CTriangulo2D*> back = test::BackwardListOf(set);
  std::reverse(back.begin(), back.end());
  EXPECT_EQ(back, ListOf(set));
}

TEST_F(Growth, WithSavingWhatIsLeftIsWrittenAndTheSetIsEmpty) {
  Classes({kGrows, kGrows, kStops, kStops, 1, 1});
  Add(set, 1, 2, 3);
  Add(set, 4, 6, 5);
  EXPECT_EQ(Grow(true), 0U);
  EXPECT_THAT(Records(), ElementsAre(Triangle{4, 6, 5}));
  EXPECT_THAT(Left(set), IsEmpty());
}

TEST_F(Growth, WithoutSavingNothingIsWritten) {
  Classes({1, 1, 1, 1, 1, 1});
  Add(set, 4, 6, 5);
  EXPECT_EQ(Grow(), 0U);
  EXPECT_THAT(Records(), IsEmpty());
  EXPECT_THAT(Left(set), SizeIs(1));
}

TEST_F(Growth, SweepsGoOnUntilOneChangesNothing) {
  // The class comes in at the last triangle and goes against the order of the list.
  Classes({1, 1, 1, 1, 1, kGrows});
  Add(set, 1, 2, 3);
  Add(set, 2, 4, 3);
  Add(set, 3, 4, 5);
  Add(set, 4, 6, 5);
  EXPECT_EQ(Grow(), 5U);
  EXPECT_THAT(Left(set), IsEmpty());
}

TEST_F(Growth, OfAnotherClassThanTheTwoItIsOverrunWhateverItIs) {
  Classes({kGrows, 200, 255, 0, 18, 128});
  Add(set, 1, 2, 3);
  Add(set, 2, 4, 3);
  Add(set, 3, 4, 5);
  Add(set, 4, 6, 5);
  EXPECT_EQ(Grow(), 5U);
}

TEST_F(Growth, ClassesAbove127GrowAndStopLikeOthers) {
  grows = CInfoClasificacion(200, 0.0, L"");
  stops = CInfoClasificacion(255, 0.0, L"");
  Classes({200, 255, 72, 127});
  Add(set, 1, 2, 3);
  Add(set, 2, 4, 3);
  EXPECT_EQ(Grow(), 2U);
  EXPECT_THAT(Classes(), ElementsAre(200, 255, 200, 200, 0, 0));
}

TEST_F(Growth, ClassesAreToldApartByTheirNumberAlone) {
  grows = CInfoClasificacion(kGrows, 7.5, L"Ground");
  Classes({kGrows, 1, 1});
  Add(set, 1, 2, 3);
  EXPECT_EQ(Grow(), 2U);
  EXPECT_EQ(infos[1].GetTexto(), L"Ground") << "what is given is the class as the caller has it";
}

// --- the four tests of a pair ---

/// One side, from point 1 that has the class to point 2 that may take it; point 3 stops.
class Pair : public Growth {
 protected:
  Pair() : Growth({{0, 0, 100}, {3, 4, 110}, {-50, 0, 0}}) {
    Classes({kGrows, 1, kStops});
    Add(set, 1, 2, 3);
  }
  bool Passes() { return Grow() == 1; }
};

TEST_F(Pair, ByHeightTheAbsoluteDifferenceIsJudgedLimitsIncluded) {
  const CRango range = Range(10, 10);
  heights = &range;
  EXPECT_TRUE(Passes());
}
TEST_F(Pair, ByHeightTheSameGoesDownward) {
  const CRango range = Range(10, 10);
  heights = &range;
  points[1].z = 90;
  EXPECT_TRUE(Passes());
}
TEST_F(Pair, ByHeightAUnitMoreDoesNotPass) {
  const CRango range = Range(0, 9);
  heights = &range;
  EXPECT_FALSE(Passes());
}
TEST_F(Pair, ByHeightExtremesOf32BitsDoNotWrap) {
  points[0].z = -2147483647 - 1;
  points[1].z = 2147483647;
  const CRango range = Range(0, 4294967294.0);
  heights = &range;
  EXPECT_FALSE(Passes()) << "they are 4294967295 apart";
}
TEST_F(Pair, ARangeOfHeightsIsAskedThoughItHasNoLimit) {
  points[0].z = -2147483647 - 1;
  points[1].z = 2147483647;
  const CRango range = NoRange();
  heights = &range;
  EXPECT_FALSE(Passes()) << "what stands for no limit is less than that difference";
}
TEST_F(Pair, ByIntensityTheAbsoluteDifferenceIsJudged) {
  const CRango range = Range(0, 64535);
  intensityRange = &range;
  intensities = {65535, 1000, 0};
  EXPECT_TRUE(Passes());
}
TEST_F(Pair, ByIntensityOneMoreDoesNotPass) {
  const CRango range = Range(0, 64535);
  intensityRange = &range;
  intensities = {65535, 999, 0};
  EXPECT_FALSE(Passes());
}
TEST_F(Pair, IntensitiesWithoutARangePass) {
  intensities = {65535, 0, 0};
  EXPECT_TRUE(Passes());
}
TEST_F(Pair, ARangeWithoutIntensitiesPasses) {
  const CRango range = Range(5, 6);
  intensityRange = &range;
  EXPECT_TRUE(Passes());
}
TEST_F(Pair, ByDistanceLimitsAreSquaredUnits) {
  const CRango range = Range(25, 25);
  distances = &range;
  EXPECT_TRUE(Passes());
}
TEST_F(Pair, ByDistanceAnUnsquaredLimitDoesNotPass) {
  const CRango range = Range(0, 5);
  distances = &range;
  EXPECT_FALSE(Passes());
}
TEST_F(Pair, ADistanceRangeWithoutALimitPasses) {
  const CRango range = NoRange();
  points[1].x = 2'000'000'000;
  points[0].x = -2'000'000'000;
  distances = &range;
  EXPECT_TRUE(Passes());
}
TEST_F(Pair, BySlopeRiseOverRunFromTheNeighbourToThePointIsJudged) {
  const CRango range = Range(2, 2);
  slopes = &range;
  EXPECT_TRUE(Passes()) << "it rises by 10 on 5";
}
TEST_F(Pair, BySlopeTheOtherWayHasTheOtherSign) {
  const CRango range = Range(2, 2);
  slopes = &range;
  points[1].z = 90;
  EXPECT_FALSE(Passes());
}
TEST_F(Pair, ASlopeRangeWithoutALimitPasses) {
  const CRango range = NoRange();
  slopes = &range;
  EXPECT_TRUE(Passes());
}

// --- the tree ---

class GrowthInATree : public Growth {
 protected:
  GrowthInATree() : Growth({{0, 0}, {0, 9}, {9, 0}, {9, 9}, {18, 0}, {18, 9}, {90, 0}, {90, 9}}) {
    set.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
  }
};

TEST_F(GrowthInATree, ChildrenAreSweptInOrderAfterTheOwnList) {
  Classes({kGrows, 1, 1, 1, 1, 1});
  Add(set, 1, 2, 3);
  Add(set.hijos[0], 2, 4, 3);
  Add(set.hijos[3], 4, 6, 5);
  EXPECT_EQ(Grow(), 5U);
}

TEST_F(GrowthInATree, AnEarlierChildIsLeftBehindALaterOneWhereTheOwnListHasSettled) {
  Classes({1, 1, 1, 1, 1, kGrows});
  Add(set.hijos[0], 1, 2, 3);
  Add(set.hijos[3], 4, 6, 5);
  Add(set.hijos[3], 4, 3, 5);
  EXPECT_EQ(Grow(), 3U);
  EXPECT_THAT(Classes(), ElementsAre(1, 1, kGrows, kGrows, kGrows, kGrows, 0, 0));
  EXPECT_THAT(Left(set.hijos[0]), SizeIs(1));
}

TEST_F(GrowthInATree, AChangeInTheOwnListHasTheChildrenSweptOnceMore) {
  // As above, but the own list has a point to change, far from all this.
  Classes({1, 1, 1, 1, 1, kGrows, kGrows, 1});
  Add(set.hijos[0], 1, 2, 3);
  Add(set.hijos[3], 4, 6, 5);
  Add(set.hijos[3], 4, 3, 5);
  Add(set, 7, 8, 7);
  EXPECT_EQ(Grow(), 1U + 5U);
}

TEST_F(GrowthInATree, SavingWritesTheOwnListAndThenTheChildrenThatGo) {
  Add(set.hijos[2], 1, 2, 3);
  Add(set.hijos[1], 3, 4, 5);
  Add(set, 4, 6, 5);
  Classes({1, 1, 1, 1, 1, 1});
  EXPECT_EQ(Grow(true), 0U);
  EXPECT_THAT(Records(), ElementsAre(Triangle{4, 6, 5}, Triangle{3, 4, 5}, Triangle{1, 2, 3}));
  EXPECT_EQ(set.hijos, nullptr);
}

TEST_F(GrowthInATree, OfARunNoTriangleStaysAndNoneIsWrittenUnlessItIsAskedFor) {
  for (const bool writes : {false, true}) {
    CSetTriangulos2D own(0);
    own.EstableceDivisiones(Box(0, 0, 1000, 1000), true);
    Add(own, 1, 2, 3);
    Add(own.hijos[1], 4, 6, 5);
    own.QuitaTrianguloActual();
    CAfinidad affinity;
    affinity.reglas = {.crece = kGrows, .barrera = kStops};
    affinity.guarda = writes;
    affinity.Prepara(points.size());
    points[0].clasificacion = kGrows;
    for (CCoor3D<int> const& p : points) affinity.Anota(p);
    unsigned changed = 0;
    affinity.cambiados = &changed;
    EXPECT_TRUE(own.ClasificaPorAfinidad(&file, affinity));
    EXPECT_EQ(changed, 2U);
    EXPECT_EQ(own.cantidad, 0U);
    EXPECT_EQ(own.hijos, nullptr);
    EXPECT_THAT(Records(), SizeIs(writes ? 1 : 0));
  }
}

TEST_F(Growth, AnOpenSetIsCutOffFromTheLivingMeshBefore) {
  set.EstableceDivisiones(Box(0, 0, 1000, 1000), false);
  Classes({kGrows, 1, 1, 1});
  set.Inserta(CTriangulo2D(P(1), P(2), P(3)));
  set.Inserta(CTriangulo2D(P(2), P(4), P(3)));
  ASSERT_THAT(set.Abiertos(), SizeIs(2));
  unsigned changed = 0;
  set.ClasificaPorAfinidad(nullptr, infos, nullptr, grows, stops, nullptr, nullptr, nullptr, nullptr, changed, false);
  EXPECT_EQ(changed, 3U);
  EXPECT_THAT(set.Abiertos(), IsEmpty()) << "it would name triangles that are gone";
  EXPECT_EQ(set.inicio, nullptr);
}

}  // namespace
}  // namespace Meseta47
