#include "host/las/LasWriter.h"

#include "host/las/LasReader.h"
#include "tests/host/HostScenes.h"

using namespace Meseta47::host;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

unsigned firstVersionOf(unsigned format) { return format >= 6 ? 4 : format >= 4 ? 3 : format >= 2 ? 2 : 0; }

}  // namespace

class LasWriterKinds : public testing::TestWithParam<std::tuple<unsigned, unsigned>> {};

TEST_P(LasWriterKinds, WhatIsWrittenIsReadBack) {
  const auto [format, minor] = GetParam();
  if (minor < firstVersionOf(format)) {
    const Folder folder;
    LasWriterOptions options;
    options.pointFormat = format;
    options.versionMinor = minor;
    EXPECT_THAT(errorOf([&] { LasWriter writer(folder.file("a.las"), options); }), HasSubstr("has no point format"));
    EXPECT_THAT(folder.names(), IsEmpty());
    return;
  }
  const Folder folder;
  LasWriterOptions options;
  options.pointFormat = format;
  options.versionMinor = minor;
  options.extraBytes = 2;
  options.scale = {0.01, 0.02, 0.5};
  options.offset = {1000, 0, -3};
  options.vlrs = {{"me", 7, "a record", {1, 2, 3}}};
  LasWriter writer(folder.file("a.las"), options);
  for (int i = 0; i < 100; ++i) {
    const Bytes extra{static_cast<std::uint8_t>(i), 9};
    writer.add(somePoint(i), extra);
  }
  writer.finish();
  EXPECT_THAT(folder.names(), ElementsAre("a.las"));

  LasReader reader(folder.file("a.las"));
  std::vector<LasPoint> points;
  ASSERT_EQ(reader.readBatch(points), 100U);
  for (int i = 0; i < 100; ++i) {
    const auto n = static_cast<std::size_t>(i);
    EXPECT_EQ(fieldsOf(points[n]), fieldsOf(asHeldBy(format, somePoint(i)))) << i;
    EXPECT_EQ(reader.rawRecords()[(n + 1) * reader.header().recordLength - 2], i);
  }
  EXPECT_THAT(reader.vlrData(reader.vlrs().at(0)), ElementsAre(1, 2, 3));
  LasHeader const& header = reader.header();
  EXPECT_EQ(header.pointsByReturn[0], 20U);
  EXPECT_EQ(header.pointsByReturn[4], 20U);
  EXPECT_DOUBLE_EQ(header.min[0], -5 * 0.01 + 1000);
  EXPECT_DOUBLE_EQ(header.max[0], 98995 * 0.01 + 1000);
  EXPECT_DOUBLE_EQ(header.min[1], -77 * 99 * 0.02);
  EXPECT_DOUBLE_EQ(header.max[2], 99 * 99 * 0.5 - 3);
}

INSTANTIATE_TEST_SUITE_P(AllFormatsAndVersions, LasWriterKinds,
                         testing::Combine(testing::Range(0U, kLasFormats), testing::Range(0U, 5U)));

TEST(LasWriter, ExtendedRecordsFollowThePoints) {
  const Folder folder;
  LasWriterOptions options;
  options.evlrs = {{"LASF_Projection", 2112, "", {'W', 'K', 'T'}}, {"big", 1, "", Bytes(70000, 5)}};
  LasWriter writer(folder.file("a.las"), options);
  writer.add(somePoint(1));
  writer.finish();
  LasReader reader(folder.file("a.las"));
  EXPECT_EQ(reader.wkt(), "WKT");
  EXPECT_EQ(reader.vlrData(reader.vlrs().at(1)), Bytes(70000, 5));
  EXPECT_EQ(reader.header().globalEncoding & 16U, 16U) << "formats from 6 on name their system as text";
}

TEST(LasWriter, MorePointsThanABlockAllArrive) {
  const Folder folder;
  LasWriter writer(folder.file("a.las"), {});
  for (int i = 0; i < 40000; ++i) {  // 1.2 MB
    writer.add(somePoint(i % 40000 % 30000));
  }
  writer.finish();
  LasReader reader(folder.file("a.las"));
  std::vector<LasPoint> points;
  ASSERT_EQ(reader.readBatch(points), 40000U);
  EXPECT_EQ(points[35000].x, somePoint(5000).x);
  EXPECT_EQ(reader.fileSize(), 375U + 40000U * 30U);
}

TEST(LasWriter, AnEmptyCloudIsAFileThatCanBeReadAgain) {
  const Folder folder;
  LasWriter(folder.file("a.las"), {}).finish();
  EXPECT_EQ(LasReader(folder.file("a.las")).header().pointCount, 0U);
}

TEST(LasWriter, AWriterThatIsDroppedLeavesNothing) {
  const Folder folder;
  { LasWriter(folder.file("a.las"), {}).add(somePoint(1)); }
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST(LasWriter, AClassThatTheFormatCannotHoldIsRefused) {
  const Folder folder;
  LasWriterOptions options;
  options.pointFormat = 1;
  LasWriter writer(folder.file("a.las"), options);
  LasPoint point;
  point.classification = 40;
  EXPECT_THAT(errorOf([&] { writer.add(point); }), HasSubstr("class 40 does not fit point format 1"));
}

TEST(LasWriter, RecordsBehindThePointsAskForVersion14) {
  const Folder folder;
  LasWriterOptions options;
  options.versionMinor = 3;
  options.pointFormat = 1;
  options.evlrs.push_back({"urdimbre", 1, "late", {1, 2, 3}});
  EXPECT_THAT(errorOf([&] { LasWriter writer(folder.file("a.las"), options); }), HasSubstr("choose version 1.4"));
}

TEST(LasWriter, ARecordBeforeThePointsHoldsAtMostWhatItsLengthCanTell) {
  const Folder folder;
  LasWriterOptions options;
  options.vlrs.push_back({"urdimbre", 1, "long", std::vector<std::uint8_t>(65535)});
  EXPECT_EQ(errorOf([&] { LasWriter writer(folder.file("a.las"), options); }), "");
  options.vlrs[0].data.push_back(0);
  EXPECT_THAT(errorOf([&] { LasWriter writer(folder.file("a.las"), options); }), HasSubstr("more than 65,535 bytes"));
}

TEST(LasWriter, TheSamePointsGiveTheSameBytes) {
  const Folder folder;
  for (char const* name : {"a.las", "b.las"}) {
    LasWriter writer(folder.file(name), {});
    writer.add(somePoint(3));
    writer.finish();
  }
  EXPECT_EQ(bytesOf(folder.file("a.las")), bytesOf(folder.file("b.las")));
}
