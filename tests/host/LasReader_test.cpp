#include "host/las/LasReader.h"

#include <cmath>
#include <limits>
#include <map>
#include <set>

#include "platform/CWinApp.h"
#include "tests/host/HostScenes.h"

using namespace Meseta47::host;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

LasReader readerOf(Bytes bytes) { return LasReader(std::make_unique<MemorySource>("tile_7.las", std::move(bytes))); }

std::vector<LasPoint> pointsOf(LasReader& reader, std::size_t batch = LasReader::kBatch) {
  std::vector<LasPoint> all, some;
  while (reader.readBatch(some, batch) > 0) {
    all.insert(all.end(), some.begin(), some.end());
  }
  return all;
}

/// Opens and reads to the end.
std::string errorOfReading(Bytes bytes) {
  return errorOf([&] {
    LasReader reader = readerOf(std::move(bytes));
    pointsOf(reader);
  });
}

std::string errorOfReading(LasScene const& scene) { return errorOfReading(scene.bytes()); }

template <typename T>
void put(Bytes& bytes, std::size_t place, T value) {
  std::memcpy(bytes.data() + place, &value, sizeof value);
}

/// A plain record before the points, with its head.
Bytes vlr(std::string const& user, std::uint16_t id, Bytes const& data) {
  Bytes bytes(54 + data.size());
  std::copy(user.begin(), user.end(), bytes.begin() + 2);
  put(bytes, 18, id);
  put(bytes, 20, static_cast<std::uint16_t>(data.size()));
  std::copy(data.begin(), data.end(), bytes.begin() + 54);
  return bytes;
}

Bytes withVlr(LasScene scene, Bytes const& record) {
  scene.header.vlrCount = 1;
  scene.header.offsetToPoints += static_cast<std::uint32_t>(record.size());
  Bytes bytes = scene.bytes();
  bytes.insert(bytes.begin() + scene.header.headerSize, record.begin(), record.end());
  return bytes;
}

}  // namespace

class LasReaderFormats : public testing::TestWithParam<unsigned> {};

TEST_P(LasReaderFormats, EveryFieldOfTheFormatIsReadWhateverTheBatch) {
  const LasScene scene(GetParam(), 37, 4);
  for (const std::size_t batch : {std::size_t{1}, std::size_t{8}, LasReader::kBatch}) {
    LasReader reader = readerOf(scene.bytes());
    const auto points = pointsOf(reader, batch);
    ASSERT_EQ(points.size(), 37U);
    for (std::size_t i = 0; i < points.size(); ++i) {
      EXPECT_EQ(fieldsOf(points[i]), fieldsOf(asHeldBy(GetParam(), scene.points[i]))) << "point " << i;
    }
  }
}

TEST_P(LasReaderFormats, BytesBeyondTheFormatAreLeftToTheCaller) {
  LasScene scene(GetParam(), 0, 4);
  scene.header.recordLength = static_cast<std::uint16_t>(scene.header.recordLength + 3);
  scene.header.pointCount = 2;
  Bytes bytes = scene.bytes();
  for (int i = 0; i < 2; ++i) {
    Bytes record(scene.header.recordLength, static_cast<std::uint8_t>(0xa0 + i));
    encodeLasPoint(GetParam(), somePoint(i), record.data());
    bytes.insert(bytes.end(), record.begin(), record.end());
  }
  LasReader reader = readerOf(bytes);
  const auto points = pointsOf(reader);
  ASSERT_EQ(points.size(), 2U);
  EXPECT_EQ(reader.extraBytes(), 3U);
  EXPECT_EQ(fieldsOf(points[1]), fieldsOf(asHeldBy(GetParam(), somePoint(1))));
  reader.seek(0);
  ASSERT_EQ(reader.readRecords(), 2U);
  EXPECT_TRUE(
      std::equal(reader.rawRecords().begin(), reader.rawRecords().end(), bytes.end() - 2 * scene.header.recordLength));
}

INSTANTIATE_TEST_SUITE_P(AllFormats, LasReaderFormats, testing::Range(0U, kLasFormats));

TEST(LasReader, AnExtendedRecordLaidOutByHandIsRead) {
  LasScene scene(10, 0, 4);
  scene.header.pointCount = 1;
  Bytes bytes = scene.bytes();
  Bytes record(67);
  put(record, 0, std::int32_t{-7});
  put(record, 4, std::int32_t{8});
  put(record, 8, std::int32_t{9});
  put(record, 12, std::uint16_t{500});
  record[14] = 0x94;  // return 4 of 9
  record[15] = 0xea;  // key point and overlap... 1010; channel 2; scan direction, edge
  record[16] = 200;
  record[17] = 11;
  put(record, 18, std::int16_t{-3001});
  put(record, 20, std::uint16_t{60000});
  put(record, 22, 1.5);
  put(record, 30, std::uint16_t{1});
  put(record, 32, std::uint16_t{2});
  put(record, 34, std::uint16_t{3});
  put(record, 36, std::uint16_t{4});
  bytes.insert(bytes.end(), record.begin(), record.end());
  LasReader reader = readerOf(bytes);
  const LasPoint p = pointsOf(reader).at(0);
  EXPECT_EQ(fieldsOf(p),
            std::make_tuple(-7, 8, 9, 500, 4, 9, 200, 10, 2, true, true, 11, -3001, 60000, 1.5, 1, 2, 3, 4));
}

TEST(LasReader, ALegacyRecordLaidOutByHandIsRead) {
  LasScene scene(3, 0);
  scene.header.pointCount = 1;
  Bytes bytes = scene.bytes();
  Bytes record(34);
  put(record, 0, std::int32_t{-7});
  record[14] = 0x93;                            // return 3 of 2, edge of flight line
  record[15] = 0xa5;                            // class 5, synthetic and withheld
  record[16] = static_cast<std::uint8_t>(-15);  // degrees
  put(record, 20, 2.5);
  put(record, 28, std::uint16_t{1});
  put(record, 32, std::uint16_t{3});
  bytes.insert(bytes.end(), record.begin(), record.end());
  LasReader reader = readerOf(bytes);
  const LasPoint p = pointsOf(reader).at(0);
  EXPECT_EQ(fieldsOf(p), std::make_tuple(-7, 0, 0, 0, 3, 2, 5, 5, 0, false, true, 0, -2500, 0, 2.5, 1, 0, 3, 0));
}

TEST(LasReader, EveryVersionFromZeroToFourIsRead) {
  for (unsigned minor = 0; minor <= 4; ++minor) {
    LasReader reader = readerOf(LasScene(1, 4, minor).bytes());
    EXPECT_EQ(reader.header().versionMinor, minor);
    EXPECT_EQ(pointsOf(reader).size(), 4U);
  }
}

TEST(LasReader, AFileWithoutPointsIsAnEmptyCloud) {
  LasReader reader = readerOf(LasScene(1, 0).bytes());
  EXPECT_EQ(reader.header().pointCount, 0U);
  EXPECT_TRUE(pointsOf(reader).empty());
}

TEST(LasReader, TheOldCountOfVersion14ServesWhenTheNewOneIsZero) {
  Bytes bytes = LasScene(1, 6, 4).bytes();
  put(bytes, 247, std::uint64_t{0});
  EXPECT_EQ(readerOf(bytes).header().pointCount, 6U);
}

TEST(LasReader, TheNewCountOfVersion14GoesBeforeTheOldOne) {
  Bytes bytes = LasScene(1, 6, 4).bytes();
  put(bytes, 107, std::uint32_t{2});
  EXPECT_EQ(readerOf(bytes).header().pointCount, 6U);
}

TEST(LasReader, ReadingCanStartAtAnyPoint) {
  LasReader reader = readerOf(LasScene(1, 10).bytes());
  reader.seek(7);
  const auto points = pointsOf(reader);
  ASSERT_EQ(points.size(), 3U);
  EXPECT_EQ(points[0].x, somePoint(7).x);
}

TEST(LasReader, RecordsBeforeAndAfterThePointsAreGiven) {
  LasScene scene(6, 3, 4);
  const Bytes record = vlr("LASF_Projection", 2112, {'P', 'R', 'O', 'J', 0, 0});
  scene.header.evlrCount = 1;
  scene.header.evlrStart = 375 + record.size() + 3 * 30;
  Bytes bytes = withVlr(scene, record);
  Bytes evlr(60 + 5, 7);
  std::fill(evlr.begin(), evlr.begin() + 60, std::uint8_t{0});
  evlr[2] = 'Q';
  put(evlr, 18, std::uint16_t{42});
  put(evlr, 20, std::uint64_t{5});
  bytes.insert(bytes.end(), evlr.begin(), evlr.end());
  const LasReader reader = readerOf(bytes);
  ASSERT_EQ(reader.vlrs().size(), 2U);
  EXPECT_EQ(reader.wkt(), "PROJ");
  EXPECT_TRUE(reader.vlrs()[1].is("Q", 42));
  EXPECT_TRUE(reader.vlrs()[1].extended);
  EXPECT_EQ(reader.vlrData(reader.vlrs()[1]), Bytes(5, 7));
}

TEST(LasReader, GeoTiffKeysNameTheReferenceSystem) {
  Bytes keys(8 * 2 + 8);
  const std::uint16_t numbers[] = {1, 1, 0, 2, 3072, 0, 1, 25830, 1024, 34737, 3, 0};
  std::memcpy(keys.data(), numbers, sizeof numbers);
  const LasReader reader = readerOf(withVlr(LasScene(1, 2), vlr("LASF_Projection", 34735, keys)));
  ASSERT_TRUE(reader.geoKeys().has_value());
  EXPECT_EQ(reader.geoKeys()->shortValue(3072), 25830);
  EXPECT_EQ(reader.geoKeys()->shortValue(1024), std::nullopt) << "its value is text, kept elsewhere";
  EXPECT_EQ(reader.geoKeys()->shortValue(2048), std::nullopt);
}

// ---- Bad input: one line each, with the file, the value and the way out ----

TEST(LasReaderError, AMissingFileIsNamed) {
  const Folder folder;
  EXPECT_THAT(errorOf([&] { LasReader reader(folder.file("no.las")); }),
              AllOf(HasSubstr("no.las: there is no such file")));
}

TEST(LasReaderError, AFolderIsNoFile) {
  const Folder folder;
  EXPECT_THAT(errorOf([&] { LasReader reader(folder.path()); }), HasSubstr(folder.path() + ": is a folder"));
}

TEST(LasReaderError, AnEmptyFileIsSaidToBeEmpty) {
  EXPECT_EQ(errorOfReading(Bytes{}), "tile_7.las: the file is empty (0 bytes): copy it again");
}

TEST(LasReaderError, TenRandomBytesAreNoLasFile) {
  EXPECT_THAT(errorOfReading(Bytes{'a', 1, 200, 'z', 3, 9, 8, 7, 6, 5}),
              StartsWith("tile_7.las: is not a LAS file: it begins with \"a??z\""));
}

TEST(LasReaderError, AHeaderThatIsCutTellsBothLengths) {
  Bytes bytes = LasScene().bytes();
  bytes.resize(100);
  EXPECT_EQ(errorOfReading(bytes),
            "tile_7.las: the header is cut short (227 bytes expected, 100 found): the file is damaged or still being "
            "written");
}

TEST(LasReaderError, AHeaderAloneThatPromisesPointsIsRefused) {
  Bytes bytes = LasScene(1, 5000).bytes();
  bytes.resize(227);
  EXPECT_EQ(
      errorOfReading(bytes),
      "tile_7.las: the header promises 5,000 points and the file ends after 0: the file is damaged or still being "
      "written");
}

TEST(LasReaderError, APointThatIsCutIsNamedByItsNumberFromOne) {
  Bytes bytes = LasScene(1, 1500).bytes();
  bytes.resize(227 + 1203 * 28 + 11);
  EXPECT_EQ(errorOfReading(bytes),
            "tile_7.las: point 1,204 is cut short (28 bytes expected, 11 found): the file is damaged or still being "
            "written");
}

TEST(LasReaderError, ACountLargerThanTheFileIsRefused) {
  LasScene scene(1, 10);
  scene.header.pointCount = 4000000000;
  EXPECT_THAT(errorOfReading(scene), HasSubstr("promises 4,000,000,000 points and the file ends after 10"));
  scene = LasScene(6, 10, 4);
  scene.header.pointCount = std::numeric_limits<std::uint64_t>::max();
  EXPECT_THAT(errorOfReading(scene), HasSubstr("promises 18,446,744,073,709,551,615 points"));
}

TEST(LasReaderError, AScaleThatNoSurveyHasIsRefused) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double scale : {0.0, -0.01, std::nan(""), infinity, std::numeric_limits<double>::denorm_min(), 1e300}) {
    LasScene scene;
    scene.header.scale[1] = scale;
    EXPECT_THAT(errorOfReading(scene), StartsWith("tile_7.las: the scale of y is ")) << scale;
  }
}

TEST(LasReaderError, AnOffsetThatIsNoNumberIsRefused) {
  for (const double offset : {std::nan(""), std::numeric_limits<double>::infinity(), -1e300}) {
    LasScene scene;
    scene.header.offset[2] = offset;
    EXPECT_THAT(errorOfReading(scene), StartsWith("tile_7.las: the offset of z is ")) << offset;
  }
}

TEST(LasReaderError, RecordsShorterThanTheirFormatAreRefused) {
  LasScene scene(3, 5);
  scene.header.recordLength = 33;
  EXPECT_THAT(errorOfReading(scene), HasSubstr("the header gives 33 bytes a point, format 3 needs 34"));
}

TEST(LasReaderError, AHeaderShorterThanItsVersionIsRefused) {
  LasScene scene;
  scene.header.headerSize = 226;
  EXPECT_THAT(errorOfReading(scene), HasSubstr("it is 226 bytes long, version 1.2 needs 227"));
}

TEST(LasReaderError, PointsThatBeginWithinTheHeaderOrPastTheEndAreRefused) {
  LasScene scene;
  scene.header.offsetToPoints = 100;
  EXPECT_THAT(errorOfReading(scene), HasSubstr("points begin at byte 100, within the header of 227 bytes"));
  scene.header.offsetToPoints = 1000000;
  EXPECT_THAT(errorOfReading(scene), HasSubstr("points begin at byte 1,000,000, but the file ends at byte 507"));
}

TEST(LasReaderError, ARecordThatRunsIntoThePointsIsRefused) {
  Bytes record = vlr("someone", 1, Bytes(10));
  put(record, 20, std::uint16_t{65000});
  EXPECT_THAT(errorOfReading(withVlr(LasScene(), record)),
              HasSubstr("record 1 of the 1 before the points is 65,054 bytes long and only 64 are left"));
}

TEST(LasReaderError, MoreRecordsThanThereIsRoomForAreRefused) {
  LasScene scene;
  scene.header.vlrCount = 4294967295;
  EXPECT_THAT(errorOfReading(scene), HasSubstr("record 1 of the 4294967295 before the points is 54 bytes long"));
}

TEST(LasReaderError, ExtendedRecordsMustLieBehindThePointsAndWithinTheFile) {
  LasScene scene(6, 3, 4);
  scene.header.evlrCount = 1;
  scene.header.evlrStart = 400;
  EXPECT_THAT(errorOfReading(scene), HasSubstr("extended records begin at byte 400, outside"));
  scene.header.evlrStart = 375 + 90;
  EXPECT_THAT(errorOfReading(scene), HasSubstr("record 1 of the 1 after the points is 60 bytes long and only 0"));
  Bytes bytes = scene.bytes();
  bytes.resize(bytes.size() + 60);
  put(bytes, bytes.size() - 40, std::numeric_limits<std::uint64_t>::max() - 10);
  EXPECT_THAT(errorOfReading(bytes), HasSubstr("record 1 of the 1 after the points"));
}

TEST(LasReaderError, CompressedPointsNeedTheRecordThatTellsHow) {
  for (const unsigned bit : {0x80U, 0x40U}) {
    LasScene scene;
    Bytes bytes = scene.bytes();
    bytes[104] = static_cast<std::uint8_t>(1U | bit);
    EXPECT_THAT(errorOf([&] { LasReader r(std::make_unique<MemorySource>("t.laz", bytes)); }),
                AllOf(StartsWith("t.laz: its points are compressed"), HasSubstr("is missing")));
  }
}

TEST(LasReaderError, UnknownVersionsAndPointFormatsAreNamed) {
  Bytes bytes = LasScene(1, 20, 2).bytes();
  bytes[25] = 5;
  EXPECT_THAT(errorOfReading(bytes), HasSubstr("LAS version 1.5 is not known"));
  bytes[24] = 2;
  bytes[25] = 0;
  EXPECT_THAT(errorOfReading(bytes), HasSubstr("LAS version 2.0 is not known"));
  bytes = LasScene().bytes();
  bytes[104] = 11;
  EXPECT_THAT(errorOfReading(bytes), HasSubstr("point format 11 is not known"));
}

TEST(LasReader, WhatIsReadAheadIsTakenWhereItBelongsAndNowhereElse) {
  CWinApp application;
  application.PonProcesadores(2);
  const LasScene scene(1, 100000);
  LasReader reader = readerOf(withVlr(scene, vlr("LASF_Projection", 2112, {'P', 'R', 'O', 'J'})));
  std::vector<LasPoint> points;
  // In and out of step with what was read ahead, and with something else of the file read between.
  for (auto const& [from, count] : std::vector<std::pair<std::size_t, std::size_t>>{{0, 20000},
                                                                                    {20000, 20000},
                                                                                    {40000, 10000},
                                                                                    {70000, 20000},
                                                                                    {90000, 10000},
                                                                                    {10000, 20000},
                                                                                    {30000, 20000}}) {
    reader.seek(from);
    EXPECT_EQ(reader.wkt(), "PROJ");
    ASSERT_EQ(reader.readBatch(points, count), count) << from;
    for (std::size_t i = 0; i < count; ++i) {
      LasPoint const& expected = scene.points[from + i];
      ASSERT_EQ(std::tuple(points[i].x, points[i].y, points[i].z), std::tuple(expected.x, expected.y, expected.z))
          << from + i;
    }
  }
}

TEST(LasReaderError, AFileThatShrinksWhileItIsReadIsNoticed) {
  const Folder folder;
  const std::string path = folder.make("t.las", LasScene(1, 100000).bytes());
  LasReader reader(path);
  std::vector<LasPoint> points;
  ASSERT_EQ(reader.readBatch(points, 30000), 30000U);
  std::filesystem::resize_file(path, 227 + 28 * 60000 + 9);
  ASSERT_EQ(reader.readBatch(points, 30000), 30000U) << "which may have been read ahead";
  EXPECT_THAT(errorOf([&] { reader.readBatch(points, 30000); }),
              HasSubstr("point 60,001 is cut short (28 bytes expected, 9"));
}

TEST(LasReaderError, AFileCutAtAnyLengthIsReadOrRefusedNeverMisread) {
  LasScene scene(8, 3, 4);
  scene.header.evlrCount = 1;
  const Bytes record = vlr("LASF_Projection", 2112, {'P', 'R', 'O', 'J'});
  scene.header.evlrStart = 375 + record.size() + 3U * 38;
  Bytes whole = withVlr(scene, record);
  whole.resize(whole.size() + 60);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_THAT(errorOfReading(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length))),
                StartsWith("tile_7.las: "))
        << length;
  }
  EXPECT_EQ(errorOfReading(whole), "");
}

TEST(LasReaderError, DamagedHeadersNeverDoWorseThanAnError) {
  constexpr unsigned kSeed = 20240611;
  std::mt19937 random(kSeed);
  SCOPED_TRACE(kSeed);
  LasScene scene(7, 5, 4);
  scene.header.evlrCount = 1;
  const Bytes record = vlr("LASF_Projection", 34735, Bytes(24, 1));
  scene.header.evlrStart = 375 + record.size() + 5U * 36;
  Bytes whole = withVlr(scene, record);
  whole.resize(whole.size() + 60);
  int refused = 0, read = 0;
  for (int round = 0; round < 20000; ++round) {
    Bytes damaged = whole;
    for (auto i = random() % 4 + 1; i > 0; --i) {
      const std::size_t place = random() % 2 == 0 ? 90 + random() % 42 : random() % damaged.size();
      damaged[place] = static_cast<std::uint8_t>(random() % 3 == 0 ? 0xff : random());
    }
    const std::string error = errorOf([&] {
      LasReader reader = readerOf(damaged);
      pointsOf(reader, 2);
      for (LasVlr const& v : reader.vlrs()) {
        EXPECT_EQ(reader.vlrData(v).size(), v.dataLength);
      }
      EXPECT_LE(reader.wkt().size(), damaged.size());
      EXPECT_LE(reader.geoKeys().value_or(GeoKeys{}).directory.size(), damaged.size());
    });
    error.empty() ? ++read : ++refused;
    EXPECT_EQ(error.find('\n'), std::string::npos);
  }
  EXPECT_GT(read, 0);
  EXPECT_GT(refused, 0);
}

// ---- Real clouds ----

TEST(LasReaderRealClouds, TheirCountsAreThoseWrittenDownForThem) {
  const std::string folder = realClouds();
  if (folder.empty()) {
    GTEST_SKIP() << "the folder of real clouds is not here: set URDIMBRE_DATA";
  }
  struct Cloud {
    std::string name;
    std::size_t points;
    unsigned format;
    std::set<int> classes;  // none: not known
  };
  const Cloud clouds[] = {
      {"autzen_trim.las", 110000, 3, {1, 2}},  {"Megaplot.las", 81590, 1, {1, 2}},
      {"Topography.las", 73403, 1, {1, 2, 9}}, {"sample_c.las", 14408, 3, {}},
      {"4_6_crop.las", 23875, 3, {1, 2}},      {"bcts_1.las", 531662, 1, {1, 2}},
      {"bcts_2.las", 823945, 1, {1, 2}},       {"isprs/samp11.las", 38010, 0, {1, 2}},
      {"isprs/samp12.las", 52119, 0, {1, 2}},  {"isprs/samp31.las", 28862, 0, {1, 2}},
  };
  for (Cloud const& cloud : clouds) {
    SCOPED_TRACE(cloud.name);
    LasReader reader(folder + "/" + cloud.name);
    const auto points = pointsOf(reader);
    EXPECT_EQ(points.size(), cloud.points);
    EXPECT_EQ(reader.header().pointFormat, cloud.format);
    std::set<int> classes;
    std::int32_t least = std::numeric_limits<std::int32_t>::max();
    for (LasPoint const& point : points) {
      classes.insert(point.classification);
      least = std::min(least, point.x);
    }
    if (!cloud.classes.empty()) {
      EXPECT_EQ(classes, cloud.classes);
    }
    EXPECT_NEAR(least * reader.header().scale[0] + reader.header().offset[0], reader.header().min[0], 0.006);
  }
}
