#include "host/CloudReader.h"

#include "host/las/LasWriter.h"
#include "tests/host/HostScenes.h"

using namespace Meseta47::host;
using testing::HasSubstr;

namespace {

std::vector<CloudPoint> pointsOf(CloudReader& reader) {
  std::vector<CloudPoint> all, some;
  while (reader.readBatch(some, 1000) > 0) {
    all.insert(all.end(), some.begin(), some.end());
  }
  return all;
}

std::string las(Folder const& folder, unsigned format, std::vector<LasPoint> const& points) {
  LasWriterOptions options;
  options.pointFormat = format;
  options.scale = {0.01, 0.01, 0.001};
  options.offset = {500000, 4600000, -10};
  LasWriter writer(folder.file("a.las"), options);
  for (LasPoint const& point : points) {
    writer.add(point);
  }
  writer.finish();
  return folder.file("a.las");
}

int precisionOf(double scale, double offset) {
  const std::array<double, 3> scales{scale, scale, scale}, offsets{offset, 0, 0};
  return defaultPrecision(scales, offsets);
}

}  // namespace

TEST(CloudReader, APointOfALasFileHasItsPlaceAndFields) {
  const Folder folder;
  LasPoint p = somePoint(40);
  p.classification = 6;
  CloudReader reader(las(folder, 7, {p}));
  EXPECT_TRUE(reader.isLas());
  EXPECT_EQ(reader.points(), 1U);
  const CloudPoint c = pointsOf(reader).at(0);
  EXPECT_EQ(c.x, p.x * 0.01 + 500000);
  EXPECT_EQ(c.y, p.y * 0.01 + 4600000);
  EXPECT_EQ(c.z, p.z * 0.001 + -10);
  EXPECT_EQ(c.intensity, p.intensity);
  EXPECT_EQ(c.classification, 6);
  EXPECT_EQ(c.returnNumber, p.returnNumber);
  EXPECT_EQ(c.returns, p.returns);
  EXPECT_EQ(c.gpsTime, p.gpsTime);
  EXPECT_EQ(c.sourceId, p.sourceId);
  EXPECT_FLOAT_EQ(c.scanAngle, static_cast<float>(p.scanAngle * 0.006));
}

TEST(CloudReader, WholeDegreesStayWhole) {
  const Folder folder;
  LasPoint p;
  p.scanAngle = 1167;  // seven degrees, in 0.006
  CloudReader reader(las(folder, 1, {p}));
  EXPECT_EQ(pointsOf(reader).at(0).scanAngle, 7.0F);
}

TEST(CloudReader, SixteenBitColoursAreCutToTheirHighByte) {
  const Folder folder;
  LasPoint dark, bright;
  dark.red = 255;
  bright.red = 0x1234;
  CloudReader reader(las(folder, 3, {dark, bright}));
  const auto points = pointsOf(reader);
  EXPECT_EQ(points.at(0).r, 0);
  EXPECT_EQ(points.at(1).r, 0x12);
}

TEST(CloudReader, ColoursThatNeverPass255AreTakenAsTheyAre) {
  const Folder folder;
  LasPoint a, b;
  a.green = 255;
  b.blue = 17;
  CloudReader reader(las(folder, 3, {a, b}));
  const auto points = pointsOf(reader);
  EXPECT_EQ(points.at(0).g, 255);
  EXPECT_EQ(points.at(1).b, 17);
}

TEST(CloudReader, ContentGoesBeforeTheName) {
  const Folder folder;
  const std::string path = las(folder, 1, {somePoint(1)});
  std::filesystem::rename(path, folder.file("a.txt"));
  EXPECT_TRUE(CloudReader(folder.file("a.txt")).isLas());
  EXPECT_FALSE(CloudReader(folder.make("b.unheard", std::string("1 2 3\n"))).isLas());
}

TEST(CloudReader, TextCalledLasIsNoCloud) {
  const Folder folder;
  for (char const* name : {"a.las", "a.LAZ"}) {
    EXPECT_THAT(errorOf([&] { CloudReader reader(folder.make(name, std::string("1 2 3\n"))); }),
                HasSubstr("is not a LAS file"));
  }
}

TEST(CloudReader, TenRandomBytesAreNoCloudWhateverTheName) {
  const Folder folder;
  for (char const* name : {"a.las", "a.txt", "a"}) {
    const std::string path = folder.make(name, Bytes{200, 1, 0, 77, 255, 3, 9, 160, 4, 11});
    EXPECT_THAT(errorOf([&] { CloudReader reader(path); }), HasSubstr(path + ": is n")) << name;
  }
}

TEST(CloudReader, AnEmptyFileIsSaidToBeEmptyWhateverTheName) {
  const Folder folder;
  for (char const* name : {"a.las", "a.txt"}) {
    EXPECT_THAT(errorOf([&] { CloudReader reader(folder.make(name, std::string())); }), HasSubstr("the file is empty"));
  }
}

TEST(CloudReader, RewindingStartsAgainForBothKinds) {
  const Folder folder;
  CloudReader fromLas(las(folder, 1, {somePoint(1), somePoint(2)}));
  CloudReader fromText(folder.make("b.txt", std::string("1 2 3\n4 5 6\n")));
  for (CloudReader* const reader : {&fromLas, &fromText}) {
    EXPECT_EQ(pointsOf(*reader).size(), 2U);
    reader->rewind();
    EXPECT_EQ(pointsOf(*reader).size(), 2U);
  }
}

TEST(CloudReader, AHeaderWithSenselessBoundsDeclaresNoExtent) {
  const Folder folder;
  LasScene scene(1, 3);
  scene.header.min = {0, 0, std::nan("")};
  EXPECT_EQ(CloudReader(folder.make("a.las", scene.bytes())).declaredExtent(), std::nullopt);
  scene.header.min = {-5, 0, 0};
  scene.header.max = {5, 1, 1};
  EXPECT_EQ(CloudReader(folder.make("b.las", scene.bytes())).declaredExtent()->min[0], -5);
}

TEST(CloudReader, PrecisionIsThatOfTheFile) {
  const Folder folder;
  EXPECT_EQ(CloudReader(las(folder, 1, {somePoint(1)})).precision(), 3);
  CloudReader text(folder.make("b.txt", std::string("1.25 2 3\n")));
  pointsOf(text);
  EXPECT_EQ(text.precision(), 2);
}

TEST(DefaultPrecision, IsTheFewestDecimalsThatHoldScaleAndOffset) {
  EXPECT_EQ(precisionOf(1, 0), 0);
  EXPECT_EQ(precisionOf(10, 0), 0);
  EXPECT_EQ(precisionOf(0.01, 0), 2);
  EXPECT_EQ(precisionOf(0.001, 4600000), 3);
  EXPECT_EQ(precisionOf(0.00025, 270000), 5);
  EXPECT_EQ(precisionOf(0.25, 0), 2);
  EXPECT_EQ(precisionOf(0.01, 1000.005), 3);
  EXPECT_EQ(precisionOf(1e-7, -180), 7);
}

TEST(DefaultPrecision, WhereNothingFitsTheScaleDecides) {
  EXPECT_EQ(precisionOf(0.01, 627.530029296875), 2);
  EXPECT_EQ(precisionOf(1.0 / 3, 0), 1);
  EXPECT_EQ(precisionOf(static_cast<double>(0.01F), 0), 2);
  EXPECT_EQ(precisionOf(1e-9, 0), 7);
  EXPECT_EQ(precisionOf(1e5 / 3, 0), 0);
}
