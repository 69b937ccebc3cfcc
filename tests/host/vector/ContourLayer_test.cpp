#include "host/vector/ContourLayer.h"

#include "host/Failure.h"
#include "model/drawing/CDibujo.h"
#include "tests/host/vector/VectorScenes.h"

using namespace Meseta47;
using namespace Meseta47::host;
using testing::AllOf;
using testing::HasSubstr;

namespace {

template <class F>
std::string failureOf(F const& work) {
  try {
    work();
  } catch (Failure const& failure) {
    return failure.what();
  }
  return {};
}

CLinea<int> line(std::vector<std::array<int, 2>> const& places, int z) {
  CLinea<int> result(L"nuevo");
  for (auto const& [x, y] : places) result << CCoor3D<int>(x, y, z, 0);
  return result;
}

/// A ring of 40 m at 1.00, an open line of 3 m at 5.00, and one of 0.02 m at 5.00.
CDibujo<int> someContours() {
  CDibujo<int> drawing(CDataSemilla(2, 500000, 4000000, 0));
  drawing.Inserta(line({{0, 0}, {1000, 0}, {1000, 1000}, {0, 1000}, {0, 0}}, 100));
  drawing.Inserta(line({{0, 0}, {300, 0}}, 500));
  drawing.Inserta(line({{0, 0}, {2, 0}}, 500));
  return drawing;
}

ContourCounts write(VectorOutput& output, ContourLevels const& levels, ContourChoice const& choice) {
  const CDibujo<int> contours = someContours();
  ContourWriter writer(contours.semilla, levels, choice, output);
  for (unsigned i = 0; i < contours.Cantidad(); ++i) writer.add(contours[i]);
  return writer.counts();
}

}  // namespace

TEST(ContourLevels, StandAtTheBaseAndEveryIntervalFromIt) {
  const ContourLevels levels(2, 0.5, 2);
  EXPECT_EQ(levels.interval(), 200);
  EXPECT_EQ(levels.shift(), 50);
  EXPECT_EQ(levels.number(50), 0);
  EXPECT_EQ(levels.number(450), 2);
  EXPECT_EQ(levels.number(-150), -1);
}

TEST(ContourLevels, ABaseBeyondAnIntervalOrBelowZeroShiftsByWhatIsLeftOfIt) {
  EXPECT_EQ(ContourLevels(2, 100.5, 2).shift(), 50);
  EXPECT_EQ(ContourLevels(2, -0.5, 2).shift(), 150);
  EXPECT_EQ(ContourLevels(2, -4, 2).shift(), 0);
  EXPECT_EQ(ContourLevels(2, 100.5, 2).number(50), -50);
}

TEST(ContourLevels, NoProductWithTheScaleCutsAUnitOff) {
  for (int i = 1; i < 3000; ++i) {
    const ContourLevels levels(i / 100.0, 0, 2);
    ASSERT_EQ(levels.interval(), i);
    ASSERT_EQ(static_cast<int>(100.0 * levels.safeInterval()), i);
  }
}

TEST(ContourLevels, AreCountedWithBothLimitsAndBelowZero) {
  const ContourLevels levels(1, 0, 0);
  EXPECT_EQ(levels.between(0, 0), 1);
  EXPECT_EQ(levels.between(-2, 2), 5);
  const ContourLevels shifted(10, 3, 0);
  EXPECT_EQ(shifted.between(-7, 13), 3);
  EXPECT_EQ(shifted.between(-6, 2), 0);
  EXPECT_EQ(shifted.between(-2147483647 - 1, 2147483647), 429496730);
}

TEST(ContourLevels, AnIntervalBelowAUnitIsRefusedWithTheUnit) {
  EXPECT_THAT(failureOf([] { ContourLevels(0.001, 0, 2); }),
              AllOf(HasSubstr("0.001"), HasSubstr("0.01"), HasSubstr("--precision")));
  EXPECT_EQ(failureOf([] { ContourLevels(0.01, 0, 2); }), "");
}

TEST(ContourLevels, WhatIsNoWholeNumberOfUnitsIsRefused) {
  EXPECT_THAT(failureOf([] { ContourLevels(0.125, 0, 2); }), AllOf(HasSubstr("--interval 0.125"), HasSubstr("2")));
  EXPECT_THAT(failureOf([] { ContourLevels(1, 0.005, 2); }), HasSubstr("--base 0.005"));
  EXPECT_THAT(failureOf([] { ContourLevels(3e7, 0, 2); }), HasSubstr("32 bits"));
}

TEST(ContourLevels, MoreThanAHundredThousandAreRefusedWithTheNumbers) {
  const ContourLevels levels(0.01, 0, 2);
  EXPECT_EQ(failureOf([&] { levels.requireFew(1, 100000, "the heights"); }), "");
  EXPECT_THAT(failureOf([&] { levels.requireFew(0, 100000, "the heights"); }),
              AllOf(HasSubstr("0.01"), HasSubstr("from 0 to 1000"), HasSubstr("100,001"), HasSubstr("100,000")));
}

TEST(ContourLayer, CountsWhatItWrites) {
  const Folder folder;
  VectorOutput output(folder.file("a.gpkg"), ReferenceSystem(), contourLayer(2));
  const ContourCounts counts = write(output, ContourLevels(1, 0, 2), {5, 0.1});
  output.commit();
  EXPECT_EQ(counts.contours, 2U);
  EXPECT_EQ(counts.tooShort, 1U);
  EXPECT_EQ(counts.closed, 1U);
  EXPECT_EQ(counts.index, 1U);
  EXPECT_EQ(counts.levels, 2U);
  EXPECT_EQ(counts.vertices, 7U);
  EXPECT_EQ(counts.length, 43);
  EXPECT_EQ(counts.lowest, 1);
  EXPECT_EQ(counts.highest, 5);
}

TEST(ContourLayer, EachContourHasItsFields) {
  const Folder folder;
  VectorOutput output(folder.file("a.geojson"), ReferenceSystem(), contourLayer(2));
  write(output, ContourLevels(1, 0, 2), {5, 0.1});
  output.commit();
  const Bytes bytes = bytesOf(folder.file("a.geojson"));
  EXPECT_THAT(std::string(bytes.begin(), bytes.end()),
              AllOf(HasSubstr(R"("ELEV": 1.0, "INDEX": 0, "CLOSED": 1, "LENGTH": 40.0)"),
                    HasSubstr(R"("ELEV": 5.0, "INDEX": 1, "CLOSED": 0, "LENGTH": 3.0)"),
                    HasSubstr("[ 500010.0, 4000010.0, 1.0 ]")));
}

TEST(ContourLayer, IndexContoursOfADxfHaveALayerOfTheirOwn) {
  const Folder folder;
  VectorOutput output(folder.file("a.dxf"), ReferenceSystem(), contourLayer(2));
  write(output, ContourLevels(1, 0, 2), {5, 0.1});
  output.commit();
  const VectorContent content = readVectorFile(folder.file("a.dxf"), {});
  ASSERT_EQ(content.entities.size(), 2U);
  EXPECT_EQ(content.entities[0].code, "contour");
  EXPECT_EQ(content.entities[1].code, "contour_index");
  EXPECT_EQ(content.entities[1].places[0][2], 5);
}

TEST(ContourLayer, IndexContoursAreCountedFromTheBase) {
  const Folder folder;
  VectorOutput output(folder.file("a.gpkg"), ReferenceSystem(), contourLayer(2));
  EXPECT_EQ(write(output, ContourLevels(1, 1, 2), {4, 0}).index, 3U);
  VectorOutput none(folder.file("b.gpkg"), ReferenceSystem(), contourLayer(2));
  EXPECT_EQ(write(none, ContourLevels(1, 0, 2), {0, 0}).index, 0U);
}
