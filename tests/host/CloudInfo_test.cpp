#include "host/CloudInfo.h"

#include "host/las/LasWriter.h"
#include "tests/host/HostScenes.h"

using namespace Meseta47::host;
using testing::HasSubstr;

namespace {

CloudInfo infoOf(std::vector<std::string> const& names) { return gatherInfo(names).value(); }

}  // namespace

TEST(CloudInfo, CountsPointsClassesReturnsAndExtent) {
  const Folder folder;
  LasWriterOptions options;
  options.offset = {100, 0, 0};
  LasWriter writer(folder.file("a.las"), options);
  for (int i = 0; i < 64; ++i) {
    writer.add(somePoint(i));
  }
  writer.finish();
  const CloudInfo info = infoOf({folder.file("a.las")});
  ASSERT_EQ(info.files.size(), 1U);
  EXPECT_EQ(info.all.points, 64U);
  EXPECT_EQ(info.all.byClass[7], 2U);
  EXPECT_EQ(info.all.byReturn[1], 13U);
  EXPECT_EQ(info.all.byReturn[0], 0U);
  EXPECT_EQ(info.all.extent.min[0], -5 * 0.001 + 100);
  EXPECT_EQ(info.all.extent.max[0], 62995 * 0.001 + 100);
  EXPECT_EQ(info.all.planDuplicates, 0U);
  EXPECT_EQ(info.files[0].las->header.pointFormat, 6);
}

TEST(CloudInfo, TellsWhetherIntensityAndColourVary) {
  const Folder folder;
  const auto infoWith = [&folder](unsigned format, auto look) {
    LasWriterOptions options;
    options.pointFormat = format;
    LasWriter writer(folder.file("a.las"), options);
    for (int i = 0; i < 64; ++i) {
      LasPoint p = somePoint(i);
      look(p);
      writer.add(p);
    }
    writer.finish();
    return infoOf({folder.file("a.las")}).all;
  };
  const CloudCounts varied = infoWith(3, [](LasPoint&) {});
  EXPECT_EQ(varied.intensity.least, 40'000);
  EXPECT_EQ(varied.intensity.most, 40'063);
  EXPECT_TRUE(varied.intensity.varies());
  EXPECT_TRUE(varied.hasColour());
  EXPECT_TRUE(varied.colourVaries());
  EXPECT_EQ(varied.colour[1].least, 0);
  EXPECT_EQ(varied.colour[1].most, 63);

  const CloudCounts even = infoWith(3, [](LasPoint& p) { p.intensity = 9, p.red = p.green = p.blue = 0; });
  EXPECT_FALSE(even.intensity.varies());
  EXPECT_EQ(even.intensity.least, 9);
  EXPECT_TRUE(even.hasColour());
  EXPECT_FALSE(even.colourVaries());
  EXPECT_FALSE(infoWith(1, [](LasPoint&) {}).hasColour());
}

TEST(CloudInfo, OfSeveralFilesItTellsTheLooksOfAllTogether) {
  const Folder folder;
  const auto dark = folder.make("dark.csv", std::string("x,y,z,intensity\n0,0,0,5\n1,0,0,5\n"));
  const auto light = folder.make("light.csv", std::string("x,y,z,intensity\n0,1,0,9\n1,1,0,9\n"));
  const CloudInfo info = infoOf({dark, light});
  EXPECT_FALSE(info.files[0].intensity.varies());
  EXPECT_FALSE(info.files[1].intensity.varies());
  EXPECT_TRUE(info.all.intensity.varies());
  EXPECT_EQ(info.all.intensity.least, 5);
  EXPECT_EQ(info.all.intensity.most, 9);
}

TEST(CloudInfo, DuplicatesAreEqualPlacesInPlanWhateverTheHeight) {
  const Folder folder;
  const auto name = folder.make("a.txt", std::string("1.5 2 3\n1.50 2 9\n1.5 2.1 3\n1.5 2 3\n"));
  EXPECT_EQ(infoOf({name}).all.planDuplicates, 2U);
}

TEST(CloudInfo, DuplicatesBetweenFilesAreCountedForTheWholeAlone) {
  const Folder folder;
  const auto a = folder.make("a.txt", std::string("500000.25 4600000 1\n500001 4600000 1\n"));
  LasWriterOptions options;
  options.scale = {0.01, 0.01, 0.01};
  options.offset = {500000, 4600000, 0};
  LasWriter writer(folder.file("b.las"), options);
  LasPoint point;
  point.x = 25;
  writer.add(point);
  writer.add(point);
  writer.finish();
  const CloudInfo info = infoOf({a, folder.file("b.las")});
  EXPECT_EQ(info.files[0].planDuplicates, 0U);
  EXPECT_EQ(info.files[1].planDuplicates, 1U);
  EXPECT_EQ(info.all.planDuplicates, 2U);
  EXPECT_EQ(info.precision, 2);
}

TEST(CloudInfo, CloudsTooWideFor32BitsAreComparedAllTheSame) {
  const Folder folder;
  const auto name = folder.make("a.txt", std::string("0.0000001 0 0\n900000 0 0\n0.0000001 0 5\n900000 0.5 0\n"));
  EXPECT_EQ(infoOf({name}).all.planDuplicates, 1U);
}

TEST(CloudInfo, AnEmptyCloudIsAllZeros) {
  const Folder folder;
  const CloudInfo info = infoOf({folder.make("a.las", LasScene(1, 0).bytes())});
  EXPECT_EQ(info.all.points, 0U);
  EXPECT_TRUE(info.all.extent.isEmpty());
}

TEST(CloudInfo, StopsWhenAskedTo) {
  const Folder folder;
  const std::vector<std::string> names{folder.make("a.txt", std::string("1 2 3\n"))};
  EXPECT_FALSE(gatherInfo(names, [](auto) { return false; }).has_value());
}

TEST(CloudInfoRealClouds, TheirDistinctPositionsAreThoseWrittenDownForThem) {
  const std::string folder = realClouds();
  if (folder.empty()) {
    GTEST_SKIP() << "the folder of real clouds is not here: set URDIMBRE_DATA";
  }
  const std::tuple<char const*, std::uint64_t, std::uint64_t> clouds[] = {{"autzen_trim.las", 110000, 109993},
                                                                          {"Megaplot.las", 81590, 81586},
                                                                          {"Topography.las", 73403, 73403},
                                                                          {"bcts_1.las", 531662, 531362}};
  for (auto const& [name, points, distinct] : clouds) {
    SCOPED_TRACE(name);
    const CloudInfo info = infoOf({folder + "/" + name});
    EXPECT_EQ(info.all.points, points);
    EXPECT_EQ(info.all.points - info.all.planDuplicates, distinct);
  }
  EXPECT_EQ(infoOf({folder + "/bcts_1.las", folder + "/bcts_2.las"}).all.points, 531662U + 823945U);
  EXPECT_EQ(infoOf({folder + "/sample_c.las"}).precision, 2);
  EXPECT_GT(infoOf({folder + "/sample_c.las"}).all.byClass[6], 0U);
}
