// A reader of the temporary file: what it hands to the model, what it keeps for the outline, and where it ends.
#include "planar/CHiloGenerarMDT.h"

#include <cstring>
#include <gmock/gmock.h>

#include "model/geometry/CRango.h"
#include "planar/PhaseScenes.h"
#include "platform/CCriticalSection.h"
#include "platform/CEvent.h"
#include "support/FaultGuard.h"

namespace Meseta47 {

void PrintTo(CLado const& side, std::ostream* out) { *out << side.P1 << '-' << side.P2; }

namespace {

using support::Triangle;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kNoLimit = 1e18;

CLado Side(unsigned a, unsigned b) { return {a, b, -1, 0}; }

/// Eight points of a model, indices 0 to 7, which have the numbers 1 to 8 in the file; nobody has 9 or more. Points 0,
/// 1 and 2 make a right triangle with sides of 300 (0-1), 400 (1-2) and 500 (0-2).
class CHiloGenerarMDTTest : public testing::Test {
 protected:
  CHiloGenerarMDTTest() {
    model = test::ModelOf({{0, 0, 0},
                           {300, 0, 0},
                           {300, 400, 0},
                           {0, 400, 0},
                           {600, 100, 0},
                           {600, 500, 0},
                           {900, 0, 0},
                           {150, 0, 0}});  // on the side from 0 to 1
  }

  bool Start(CHiloGenerarMDT& one, std::vector<Triangle> const& records, unsigned index = 0, unsigned share = 1'000,
             std::string const& tail = "") {
    std::string bytes(records.size() * 12, '\0');
    if (!records.empty()) std::memcpy(bytes.data(), records.data(), bytes.size());  // little-endian machines only
    bytes += tail;
    PutBytes(path, bytes);
    length = bytes.size();
    return one.Start(index, &event, path, &model, &map, limit2, &length, share, heights, intensities, slopes, &section,
                     &read, &ended);
  }
  void Read(std::vector<Triangle> const& records, unsigned index = 0, unsigned share = 1'000,
            std::string const& tail = "") {
    ASSERT_TRUE(Start(reader, records, index, share, tail));
    reader.Stop();
    EXPECT_EQ(ended, 1);
  }
  /// Sides kept, blanks left out.
  [[nodiscard]] std::vector<CLado> Kept() const {
    std::vector<CLado> kept;
    for (CLado const& side : reader.lados) {
      if (side.P1 != side.P2) kept.push_back(side);
    }
    return kept;
  }
  [[nodiscard]] std::vector<Triangle> InModel() {
    EXPECT_EQ(model.Sort(nullptr, 0, false), kHecho);
    return test::TrianglesOf(model);
  }
  void Height(unsigned point, int z) { model.puntos[point].z = z; }
  void Intensity(unsigned point, int value) { model.puntos[point].intensidad = static_cast<unsigned short>(value); }

  ScratchFolder folder;
  CString path = folder.Path("triangles");
  CTIN model{0, 0, CDataSemilla()};
  std::vector<int> map{1, 2, 3, 4, 5, 6, 7, 8};
  double limit2 = kNoLimit;
  CRango const *heights = nullptr, *intensities = nullptr, *slopes = nullptr;
  unsigned long long length = 0;
  CEvent event{false, true};
  CCriticalSection section;
  std::atomic<std::uint64_t> read{0};
  std::atomic<long> ended{0};
  CHiloGenerarMDT reader;
};

TEST_F(CHiloGenerarMDTTest, APlainRecordBecomesATriangleInCanonicalOrder) {
  Read({{3, 2, 1}, {4, 3, 1}});
  EXPECT_THAT(InModel(), ElementsAre(Triangle{1, 3, 2}, Triangle{1, 4, 3}));
  EXPECT_THAT(reader.lados, IsEmpty());
  EXPECT_EQ(read, 24U);
  EXPECT_EQ(reader.ladoMasLargo, 250'000);
  EXPECT_TRUE(event.Lock(0)) << "it says that it has ended";
}

TEST_F(CHiloGenerarMDTTest, NumbersGoThroughTheMap) {
  map = {3, 0, 1, 2};
  Read({{1, 3, 4}});
  EXPECT_THAT(InModel(), ElementsAre(Triangle{1, 3, 2}));
}

TEST_F(CHiloGenerarMDTTest, ARecordWithoutItsThreePointsIsDropped) {
  map[4] = 0;  // number 5 belongs to nobody
  Read({{0, 1, 2}, {1, 0, 2}, {1, 2, 0}, {1, 2, 9}, {1, 2, 2'000'000'000}, {5, 1, 2}});
  EXPECT_THAT(InModel(), IsEmpty());
  EXPECT_THAT(reader.lados, IsEmpty());
  EXPECT_EQ(reader.ladoMasLargo, 0);
  EXPECT_EQ(read, 72U);
}

TEST_F(CHiloGenerarMDTTest, ATriangleOfPointsInALineIsDropped) {
  Read({{1, 8, 2}});
  EXPECT_THAT(InModel(), IsEmpty());
  EXPECT_THAT(reader.lados, IsEmpty());
}

TEST_F(CHiloGenerarMDTTest, OneNegativeNumberGivesTheOtherTwosSide) {
  Read({{3, 2, -1}, {5, -4, 4}, {-2, 1, 7}});
  EXPECT_THAT(reader.lados, ElementsAre(Side(0, 6), Side(1, 2), Side(3, 4)));
  EXPECT_EQ(reader.lados[1].triangulo, -1);
  EXPECT_EQ(reader.lados[1].lado, 0);
  EXPECT_EQ(reader.rechazos.delMarco, 3U);
  EXPECT_EQ(model.Cantidad(), 0U);
  EXPECT_EQ(reader.ladoMasLargo, 0) << "a side at the frame is no triangle's";
}

TEST_F(CHiloGenerarMDTTest, TwoNegativeNumbersOrANegativeOneAndZeroGiveNothing) {
  Read({{-1, -2, 3},
        {-1, 3, -2},
        {3, -1, -2},
        {-1, -2, -3},
        {0, 2, -1},
        {2, 0, -1},
        {2, -1, 0},
        {0, -1, 2},
        {-1, 0, 2},
        {-1, 2, 0}});
  EXPECT_THAT(reader.lados, IsEmpty());
}

TEST_F(CHiloGenerarMDTTest, ASideAtTheFrameIsKeptWithinTheLengthAndTheHeights) {
  CRango low(-1, -1, 0, 50);
  heights = &low;
  limit2 = 400 * 400;
  Height(4, 51);
  Height(5, 50);
  Intensity(5, 60'000);
  CRango faint(-1, -1, 0, 1);
  intensities = &faint;
  Read({{2, 3, -1}, {1, 3, -1}, {2, 5, -1}, {6, 3, -1}});
  EXPECT_THAT(Kept(), ElementsAre(Side(1, 2), Side(2, 5))) << "400 is within 400, 500 is not; 51 up is too much";
}

TEST_F(CHiloGenerarMDTTest, ATriangleThatIsTooSteepLeavesItsSidesWithinTheLength) {
  CRango gentle(-1, -1, 0, 45);
  slopes = &gentle;
  Height(2, 1'000);
  limit2 = 400 * 400;
  Read({{1, 2, 3}});
  EXPECT_THAT(InModel(), IsEmpty());
  EXPECT_THAT(reader.lados, ElementsAre(Side(0, 1), Side(1, 2)));
  EXPECT_EQ(reader.rechazos.porPendiente, 1U);
  EXPECT_EQ(reader.ladoMasLargo, 0) << "only what passes the ranges is measured";
}

/// Which sides of the triangle 1, 2, 3 the differences of a quantity must leave.
struct Differences {
  int v1, v2, v3;
  std::vector<CLado> kept;
  bool passes = false;
};

std::vector<Differences> DifferencesUpToTen() {
  const CLado s12 = Side(0, 1), s23 = Side(1, 2), s13 = Side(0, 2);
  return {{0, 0, 0, {}, true},    {0, 5, 10, {}, true},   {0, 11, 5, {s13, s23}},
          {5, 0, 11, {s12, s13}}, {0, 5, 11, {s12, s23}}, {0, 20, 40, {}},
          {0, 20, 20, {s23}},     {20, 0, 20, {s13}},     {20, 20, 0, {s12}}};
}

TEST_F(CHiloGenerarMDTTest, HeightDifferencesLeaveTheSidesThatPass) {
  CRango range(-1, -1, 0, 10);
  heights = &range;
  for (Differences const& d : DifferencesUpToTen()) {
    CHiloGenerarMDT one;
    model.LiberaTriangulos();
    Height(0, d.v1);
    Height(1, d.v2);
    Height(2, d.v3);
    ASSERT_TRUE(Start(one, {{1, 2, 3}}));
    one.Stop();
    EXPECT_EQ(one.lados, d.kept) << d.v1 << ' ' << d.v2 << ' ' << d.v3;
    EXPECT_EQ(model.Cantidad(), d.passes ? 1U : 0U);
    EXPECT_EQ(one.rechazos.porAltura, d.passes ? 0U : 1U);
  }
}

TEST_F(CHiloGenerarMDTTest, IntensityDifferencesDoTheSame) {
  CRango range(-1, -1, 0, 10);
  intensities = &range;
  for (Differences const& d : DifferencesUpToTen()) {
    CHiloGenerarMDT one;
    model.LiberaTriangulos();
    Intensity(0, 65'000 + d.v1);
    Intensity(1, 65'000 + d.v2);
    Intensity(2, 65'000 + d.v3);
    ASSERT_TRUE(Start(one, {{1, 2, 3}}));
    one.Stop();
    EXPECT_EQ(one.lados, d.kept) << d.v1 << ' ' << d.v2 << ' ' << d.v3;
    EXPECT_EQ(model.Cantidad(), d.passes ? 1U : 0U);
    EXPECT_EQ(one.rechazos.porIntensidad, d.passes ? 0U : 1U);
  }
}

TEST_F(CHiloGenerarMDTTest, ASideThatPassesARangeIsKeptOnlyWithinTheLength) {
  CRango range(-1, -1, 0, 10);
  heights = &range;
  limit2 = 350 * 350;
  Height(2, 5);
  Height(1, 20);
  Read({{1, 2, 3}});  // sides 1-2 and 2-3 fail; 1-3 passes and is 500 long
  EXPECT_THAT(reader.lados, IsEmpty());
  EXPECT_EQ(reader.rechazos.porAltura, 1U);
}

TEST_F(CHiloGenerarMDTTest, SlopesComeBeforeHeightsAndHeightsBeforeIntensities) {
  CRango none(-9, -9, 91, 92), narrow(-1, -1, 0, 10);
  slopes = &none;
  heights = intensities = &narrow;
  Height(1, 100);
  Intensity(1, 100);
  Read({{1, 2, 3}});
  EXPECT_EQ(reader.rechazos.porPendiente, 1U);
  EXPECT_EQ(reader.rechazos.porAltura, 0U);
  slopes = nullptr;
  CHiloGenerarMDT second;
  ASSERT_TRUE(Start(second, {{1, 2, 3}}));
  second.Stop();
  EXPECT_EQ(second.rechazos.porAltura, 1U);
  EXPECT_EQ(second.rechazos.porIntensidad, 0U);
}

TEST_F(CHiloGenerarMDTTest, ATooLongTriangleLeavesItsShortSidesAndIsMeasuredAllTheSame) {
  limit2 = 430 * 430;
  Read({{1, 2, 3}, {2, 3, 5}});
  EXPECT_THAT(reader.lados, ElementsAre(Side(0, 1), Side(1, 2)));
  EXPECT_THAT(InModel(), ElementsAre(Triangle{2, 3, 5}));
  EXPECT_EQ(reader.rechazos.porLongitud, 1U);
  EXPECT_EQ(reader.ladoMasLargo, 250'000);
}

TEST_F(CHiloGenerarMDTTest, ALimitBelowZeroRejectsEverythingAndKeepsNothing) {
  limit2 = -2'147'483'648.0;
  Read({{1, 2, 3}, {1, 2, -1}});
  EXPECT_THAT(InModel(), IsEmpty());
  EXPECT_THAT(reader.lados, IsEmpty());
}

TEST_F(CHiloGenerarMDTTest, ASideOfTwoRejectedTrianglesIsBlanked) {
  limit2 = 400 * 400;
  Read({{1, 2, 3}, {1, 3, 4}, {1, 2, -1}});  // both triangles have the side 1-3, which is too long; 1-2 comes twice
  EXPECT_THAT(reader.lados, ElementsAre(Side(0, 0), Side(0, 0), Side(0, 3), Side(1, 2), Side(2, 3)));
}

TEST_F(CHiloGenerarMDTTest, EachReaderTakesItsShareOfRecordsAndTheLastWhatIsLeft) {
  const std::vector<Triangle> records{{1, 2, -1}, {2, 3, -1}, {3, 4, -1}, {4, 5, -1}, {5, 6, -1}};
  std::vector<std::vector<CLado>> kept;
  for (unsigned index = 0; index < 4; ++index) {
    CHiloGenerarMDT one;
    ASSERT_TRUE(Start(one, records, index, 2));
    one.Stop();
    kept.push_back(one.lados);
  }
  EXPECT_THAT(kept, ElementsAre(ElementsAre(Side(0, 1), Side(1, 2)), ElementsAre(Side(2, 3), Side(3, 4)),
                                ElementsAre(Side(4, 5)), IsEmpty()));
  EXPECT_EQ(read, 60U);
  EXPECT_EQ(ended, 4);
}

TEST_F(CHiloGenerarMDTTest, AnEmptyFileIsReadAtOnce) {
  Read({});
  EXPECT_EQ(read, 0U);
  EXPECT_FALSE(reader.falloDeDisco);
  EXPECT_THAT(reader.lados, IsEmpty());
}

TEST_F(CHiloGenerarMDTTest, AShortRecordEndsTheWorkWithoutAnError) {
  Read({{1, 2, -1}}, 0, 1'000, "seven b");
  EXPECT_THAT(reader.lados, ElementsAre(Side(0, 1)));
  EXPECT_EQ(read, 12U);
  EXPECT_FALSE(reader.falloDeDisco);
}

TEST_F(CHiloGenerarMDTTest, ARefusalOfTheDiskEndsTheWorkAndIsTold) {
  FaultGuard guard;
  guard.Refuse(EOperacion::Lee);
  Read({{1, 2, 3}});
  EXPECT_TRUE(reader.falloDeDisco);
  EXPECT_EQ(read, 0U);
  EXPECT_EQ(model.Cantidad(), 0U);
}

TEST_F(CHiloGenerarMDTTest, WhatCannotStartLeavesNothingBehind) {
  FaultGuard guard;
  guard.Refuse(EOperacion::Abre);
  EXPECT_FALSE(Start(reader, {{1, 2, 3}}));
  guard.Allow(EOperacion::Abre).Refuse(EOperacion::CreaHilo);
  EXPECT_FALSE(Start(reader, {{1, 2, 3}}));
  reader.Stop();
  EXPECT_EQ(ended, 0);
  EXPECT_FALSE(event.Lock(0));
}

TEST_F(CHiloGenerarMDTTest, AReaderThatIsGivenUpReadsNoMore) {
  reader.Abandona();
  Read({{1, 2, 3}, {1, 2, -1}});
  EXPECT_EQ(read, 0U);
  EXPECT_EQ(model.Cantidad(), 0U);
}

TEST_F(CHiloGenerarMDTTest, StandsStillAndGoesOn) {
  reader.Suspender();  // without a thread nothing happens
  reader.Reanudar();
  reader.SetPriority(CHiloGenerarMDT::P_LOWEST);
  const std::vector<Triangle> many(20'000, Triangle{1, 2, 3});
  ASSERT_TRUE(Start(reader, many, 0, 100'000));
  reader.Suspender();
  reader.SetPriority(CHiloGenerarMDT::P_BELOW_NORMAL);
  reader.Reanudar();
  reader.Stop();
  EXPECT_EQ(read, 240'000U);
  EXPECT_EQ(model.Cantidad(), 20'000U);
  reader.Stop();
}

TEST_F(CHiloGenerarMDTTest, ACopyHasSidesOfItsOwnAndNoThread) {
  limit2 = 400 * 400;
  Read({{1, 2, 3}, {2, 3, -1}});
  reader.falloDeDisco = reader.faltoMemoria = true;
  CHiloGenerarMDT copy(reader), assigned;
  assigned = reader;
  for (CHiloGenerarMDT* one : {&copy, &assigned}) {
    EXPECT_EQ(one->lados, reader.lados);
    EXPECT_NE(one->lados.data(), reader.lados.data());
    EXPECT_EQ(one->ladoMasLargo, 250'000);
    EXPECT_EQ(one->rechazos.porLongitud, 1U);
    EXPECT_TRUE(one->falloDeDisco);
    EXPECT_TRUE(one->faltoMemoria);
    one->Stop();
  }
}

TEST(CHiloGenerarMDT, PrioritiesAreThoseOfTheSystem) {
  EXPECT_EQ(CHiloGenerarMDT::P_CRITICAL, 15);
  EXPECT_EQ(CHiloGenerarMDT::P_NORMAL, 0);
  EXPECT_EQ(CHiloGenerarMDT::P_LOWEST, -2);
  EXPECT_EQ(CHiloGenerarMDT::P_IDLE, -15);
  EXPECT_EQ(CHiloGenerarMDT::P_HIGHEST, 2);
  EXPECT_EQ(CHiloGenerarMDT::P_BELOW_NORMAL, -1);
  EXPECT_EQ(CHiloGenerarMDT::P_ABOVE_NORMAL, 1);
}

TEST(AnulaLadosRepetidos, BlanksBothOfEveryTwoEqualNeighbours) {
  std::vector<CLado> sides{Side(0, 1), Side(0, 2), Side(0, 2), Side(1, 2), Side(1, 2), Side(1, 2), Side(3, 4)};
  AnulaLadosRepetidos(sides);
  EXPECT_THAT(sides, ElementsAre(Side(0, 0), Side(0, 0), Side(0, 0), Side(0, 0), Side(0, 1), Side(1, 2), Side(3, 4)));
  std::vector<CLado> none;
  AnulaLadosRepetidos(none);
  EXPECT_THAT(none, IsEmpty());
}

}  // namespace
}  // namespace Meseta47
