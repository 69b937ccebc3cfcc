#include <map>

#include "host/CloudReader.h"
#include "host/las/LasBytes.h"
#include "host/las/LasReader.h"
#include "host/las/LasWriter.h"
#include "host/laz/ChunkTable.h"
#include "tests/host/laz/LazScenes.h"
#include "tests/support/PlanarSizes.h"

using namespace Meseta47::host;
using testing::AllOf;
using testing::HasSubstr;

namespace {

LasWriterOptions optionsFor(unsigned format, std::uint32_t chunkPoints, unsigned extra = 0) {
  LasWriterOptions options;
  options.pointFormat = format;
  options.extraBytes = static_cast<std::uint16_t>(extra);
  options.compressed = true;
  options.chunkPoints = chunkPoints;
  return options;
}

/// Writes points and their extra bytes; chunks of varying size hold 1, 2, 3 ... of them.
std::string written(Folder const& folder, LasWriterOptions const& options, std::size_t points) {
  LasWriter writer(folder.file("a.laz"), options);
  const Bytes extra(options.extraBytes, 9);
  std::size_t left = 1, size = 1;
  for (std::size_t i = 0; i < points; ++i) {
    writer.add(somePoint(static_cast<int>(i)), extra);
    if (options.chunkPoints == LazScheme::kVariable && --left == 0) {
      writer.endChunk();
      left = ++size;
    }
  }
  writer.finish();
  return folder.file("a.laz");
}

LasReader readerOf(Bytes bytes) { return LasReader(std::make_unique<MemorySource>("a.laz", std::move(bytes))); }

/// How many points a reader gives; each must be the one that was written.
std::size_t soundPoints(LasReader& reader, std::size_t batch = LasReader::kBatch) {
  std::vector<LasPoint> points;
  std::size_t count = 0;
  while (reader.readBatch(points, batch) > 0) {
    for (LasPoint const& point : points) {
      const LasPoint wanted = asHeldBy(reader.header().pointFormat, somePoint(static_cast<int>(count)));
      if (fieldsOf(point) != fieldsOf(wanted)) return count;
      ++count;
    }
  }
  return count;
}

std::size_t soundPoints(Bytes bytes) {
  LasReader reader = readerOf(std::move(bytes));
  return soundPoints(reader);
}

std::string errorOfReading(Bytes bytes) {
  return errorOf([&] { soundPoints(std::move(bytes)); });
}

std::uint32_t pointsPlace(Bytes const& bytes) { return load<std::uint32_t>(bytes.data() + 96); }

template <typename T>
void put(Bytes& bytes, std::size_t place, T value) {
  store(bytes.data() + place, value);
}

}  // namespace

class LazFileFormats : public testing::TestWithParam<unsigned> {};

TEST_P(LazFileFormats, PointsComeBackWhateverTheChunksAndTheBatches) {
  const Folder folder;
  constexpr std::size_t kPoints = Meseta47::test::kFullSize ? 333 : 111;
  for (const std::uint32_t chunk : {1U, 2U, 100U, 50000U, LazScheme::kVariable}) {
    for (const unsigned extra : {0U, 4U}) {
      const std::string file = written(folder, optionsFor(GetParam(), chunk, extra), kPoints);
      for (const std::size_t batch : {std::size_t{1}, std::size_t{100}, LasReader::kBatch}) {
        LasReader reader(file);
        EXPECT_EQ(soundPoints(reader, batch), kPoints) << "chunks of " << chunk << ", batches of " << batch;
      }
    }
  }
}

TEST_P(LazFileFormats, AnyPointCanBeTheNextOne) {
  const Folder folder;
  LasReader reader(written(folder, optionsFor(GetParam(), 50), 1000));
  std::vector<LasPoint> points;
  for (const std::uint64_t place : {999U, 0U, 51U, 50U, 49U, 700U, 720U, 710U}) {
    for (const std::size_t batch : {std::size_t{3}, std::size_t{10000}}) {
      reader.seek(place);
      ASSERT_GE(reader.readBatch(points, batch), 1U);
      EXPECT_EQ(fieldsOf(points[0]), fieldsOf(asHeldBy(GetParam(), somePoint(static_cast<int>(place))))) << place;
    }
  }
  reader.seek(1000);
  EXPECT_EQ(reader.readBatch(points), 0U);
}

TEST_P(LazFileFormats, AMissingTableIsRebuilt) {
  const Folder folder;
  Bytes bytes = bytesOf(written(folder, optionsFor(GetParam(), 100), 1050));
  put(bytes, pointsPlace(bytes), std::uint64_t{0});
  EXPECT_EQ(soundPoints(bytes), 1050U);
}

INSTANTIATE_TEST_SUITE_P(AllFormats, LazFileFormats, testing::Range(0U, kLasFormats));

TEST(LazFile, MoreThanAChunkOfTheUsualSizeIsReadByAllProcessors) {
  const Folder folder;
  LasReader reader(written(folder, optionsFor(7, LazScheme::kUsualChunk), 160000));
  EXPECT_EQ(soundPoints(reader), 160000U);
  EXPECT_EQ(reader.goodStart(149999), 100000U);
}

TEST(LazFile, ItIsMuchSmallerThanAPlainOne) {
  const Folder folder;
  const std::size_t bytes = bytesOf(written(folder, optionsFor(6, LazScheme::kUsualChunk), 20000)).size();
  EXPECT_LT(bytes, 20000U * 30 / 4);
}

TEST(LazFile, AFileWithoutPointsIsAnEmptyCloud) {
  const Folder folder;
  for (const unsigned format : {1U, 6U}) {
    LasReader reader(written(folder, optionsFor(format, 100), 0));
    EXPECT_EQ(soundPoints(reader), 0U);
    EXPECT_TRUE(reader.header().compressed);
  }
}

TEST(LazFile, AHeaderOfVersion10IsRead) {
  const Folder folder;
  LasWriterOptions options = optionsFor(1, 10);
  options.versionMinor = 0;
  LasReader reader(written(folder, options, 35));
  EXPECT_EQ(reader.header().versionMinor, 0);
  EXPECT_EQ(soundPoints(reader), 35U);
}

TEST(LazFile, RecordsBeforeAndAfterThePointsAreFound) {
  const Folder folder;
  LasWriterOptions options = optionsFor(6, 10);
  options.vlrs = {{"me", 7, "a record", {1, 2, 3}}};
  options.evlrs = {{"me", 8, "another", Bytes(100, 4)}};
  const LasReader reader(written(folder, options, 25));
  std::map<unsigned, Bytes> found;
  for (LasVlr const& vlr : reader.vlrs()) found[vlr.recordId] = reader.vlrData(vlr);
  EXPECT_EQ(found[7], (Bytes{1, 2, 3}));
  EXPECT_EQ(found[8], Bytes(100, 4));
}

TEST(LazFile, ATableWhosePlaceStandsAtTheEndIsFound) {
  const Folder folder;
  for (const std::uint32_t chunk : {100U, LazScheme::kVariable}) {
    Bytes bytes = bytesOf(written(folder, optionsFor(1, chunk), 1050));
    const auto table = load<std::uint64_t>(bytes.data() + pointsPlace(bytes));
    put(bytes, pointsPlace(bytes), std::int64_t{-1});
    bytes.resize(bytes.size() + 8);
    put(bytes, bytes.size() - 8, table);
    EXPECT_EQ(soundPoints(bytes), 1050U);
  }
}

TEST(LazFile, ADamagedTableIsRebuilt) {
  const Folder folder;
  for (const unsigned format : {3U, 7U}) {
    const Bytes whole = bytesOf(written(folder, optionsFor(format, 100), 1050));
    const auto table = static_cast<std::size_t>(load<std::uint64_t>(whole.data() + pointsPlace(whole)));
    for (std::size_t byte = table; byte < whole.size(); ++byte) {
      Bytes bytes = whole;
      bytes[byte] ^= 0x5aU;
      EXPECT_EQ(soundPoints(bytes), 1050U) << "byte " << byte - table << " of the table";
    }
  }
}

TEST(LazFile, LayersTellTheSizesOfChunksThatVaryWithoutATable) {
  const Folder folder;
  Bytes bytes = bytesOf(written(folder, optionsFor(6, LazScheme::kVariable), 500));
  put(bytes, pointsPlace(bytes), std::uint64_t{1} << 60U);
  EXPECT_EQ(soundPoints(bytes), 500U);
}

TEST(LazFile, OneThatIsCutShortIsRefusedWithWhatIsWhole) {
  const Folder folder;
  for (const unsigned format : {1U, 6U}) {
    Bytes bytes = bytesOf(written(folder, optionsFor(format, 100), 1050));
    bytes.resize(pointsPlace(bytes) + (bytes.size() - pointsPlace(bytes)) / 2);
    EXPECT_THAT(errorOfReading(bytes),
                AllOf(HasSubstr("a.laz: the header promises 1,050 points and "),
                      HasSubstr("00 of them stand in whole compressed chunks: the file is damaged or still being")));
  }
}

TEST(LazFile, WithPartialTheWholeChunksBeforeTheCutAreRead) {
  const Folder folder;
  for (const unsigned format : {1U, 6U}) {
    Bytes bytes = bytesOf(written(folder, optionsFor(format, 100), 1050));
    const std::size_t start = pointsPlace(bytes);
    bytes.resize(start + (bytes.size() - start) / 2);
    LasReader reader(std::make_unique<MemorySource>("a.laz", bytes), LasReading{.partial = true});
    const std::uint64_t points = reader.header().pointCount;
    EXPECT_GT(points, 300U);
    EXPECT_LT(points, 700U);
    EXPECT_EQ(points % 100, 0U);
    EXPECT_EQ(soundPoints(reader), points);
  }
}

TEST(LazFile, WithPartialTheWholePointsOfAPlainFileAreRead) {
  LasScene scene(6, 20, 4);
  scene.header.evlrStart = 100000;
  scene.header.evlrCount = 2;
  Bytes bytes = scene.bytes();
  bytes.resize(bytes.size() - 70);
  LasReader reader(std::make_unique<MemorySource>("a.las", bytes), LasReading{.partial = true});
  EXPECT_EQ(reader.header().pointCount, 17U);
  EXPECT_EQ(soundPoints(reader), 17U);
}

TEST(LazFile, AWholeFileIsReadWholeWithPartialToo) {
  const Folder folder;
  LasReader reader(written(folder, optionsFor(7, 100), 1050), LasReading{.partial = true});
  EXPECT_EQ(soundPoints(reader), 1050U);
}

TEST(LazFile, AnUnknownCompressionIsNamed) {
  const Folder folder;
  const Bytes whole = bytesOf(written(folder, optionsFor(1, 100), 50));
  const std::size_t record = 375 + 54;
  const auto errorWith = [&](std::size_t place, std::uint16_t value) {
    Bytes bytes = whole;
    put(bytes, record + place, value);
    return errorOfReading(bytes);
  };
  EXPECT_THAT(errorWith(0, 9), HasSubstr("compressed in a way that is not known (compressor 9)"));
  EXPECT_THAT(errorWith(0, 3), HasSubstr("points of format 1 are never compressed in layers"));
  EXPECT_THAT(errorWith(2, 1), HasSubstr("compressed with a coder that is not known (1)"));
  EXPECT_THAT(errorWith(38, 7), HasSubstr("compressed by a version that is not known (7)"));
  EXPECT_THAT(errorWith(34, 8), HasSubstr("compressed fields are not those of point format 1"));
  EXPECT_THAT(errorWith(32, 60), HasSubstr("the record that tells how points are compressed is cut short (46 bytes)"));
}

TEST(LazFile, CompressedPointsWithoutTheirRecordAreDamage) {
  const Folder folder;
  Bytes bytes = bytesOf(written(folder, optionsFor(1, 100), 50));
  bytes[375 + 2] = 'L';
  EXPECT_THAT(errorOfReading(bytes), HasSubstr("the record that tells how is missing"));
}

TEST(LazFile, PlainPointsBesideALeftOverRecordArePlain) {
  const Folder folder;
  LasWriterOptions options = optionsFor(1, 100);
  options.compressed = false;
  options.vlrs = {encodeLazScheme(lazSchemeFor(1, 0))};
  LasReader reader(written(folder, options, 50));
  EXPECT_FALSE(reader.header().compressed);
  EXPECT_EQ(soundPoints(reader), 50U);
}

TEST(LazFile, ByteColoursAreKnownFromASampleOfChunks) {
  const Folder folder;
  LasWriter writer(folder.file("a.laz"), optionsFor(2, 1000));
  for (int i = 0; i < 40000; ++i) {
    LasPoint p = somePoint(i);
    p.red = p.green = p.blue = 200;
    writer.add(p);
  }
  writer.finish();
  CloudReader reader(folder.file("a.laz"));
  std::vector<CloudPoint> points;
  ASSERT_GT(reader.readBatch(points), 0U);
  EXPECT_EQ(points[0].r, 200);
}

TEST(LazFile, EveryRealFileHoldsTheRecordsOfItsPartner) {
  const std::string folder = realClouds();
  if (folder.empty()) GTEST_SKIP() << "the folder of real clouds is not here: set URDIMBRE_DATA";
  const std::pair<char const*, char const*> partners[] = {{"simple.laz", "laz/simple.las"},
                                                          {"simple-1.2r0.laz", "laz/simple.las"},
                                                          {"autzen_trim.laz", "autzen_trim.las"},
                                                          {"bcts_1.laz", "bcts_1.las"},
                                                          {"las14_pdrf6.laz", "laz/las14_pdrf6.points.las"},
                                                          {"with-color.copc.laz", "laz/with-color.copc.points.las"},
                                                          {"example.copc.laz", "laz/example.copc.points.las"}};
  for (auto const& [compressed, plain] : partners) {
    SCOPED_TRACE(compressed);
    LasReader reader(folder + "/laz/" + compressed);
    const Bytes wanted = bytesOf(folder + "/" + plain);  // some have headers that no reader takes
    std::size_t place = pointsPlace(wanted);
    while (reader.readRecords() > 0) {
      const auto found = reader.rawRecords();
      ASSERT_LE(place + found.size(), wanted.size());
      ASSERT_TRUE(std::equal(found.begin(), found.end(), wanted.begin() + static_cast<std::ptrdiff_t>(place)));
      place += found.size();
    }
    EXPECT_EQ(place, pointsPlace(wanted) + reader.header().pointCount * reader.header().recordLength);
  }
}
