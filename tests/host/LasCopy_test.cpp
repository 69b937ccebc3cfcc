#include "host/las/LasCopy.h"

#include "host/las/LasReader.h"
#include "host/las/LasWriter.h"
#include "tests/host/HostScenes.h"

using namespace Meseta47::host;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

namespace {

/// A file with records before the points, extra bytes, and where the version allows it records after the points.
std::string cloud(Folder const& folder, unsigned format, int points) {
  LasWriterOptions options;
  options.pointFormat = format;
  options.extraBytes = 5;
  options.vlrs = {{"me", 7, "a record", {1, 2, 3}}};
  options.evlrs = {{"me", 8, "another", Bytes(100, 4)}};
  LasWriter writer(folder.file("in.las"), options);
  for (int i = 0; i < points; ++i) {
    writer.add(somePoint(i), Bytes{1, 2, 3, static_cast<std::uint8_t>(i), 5});
  }
  writer.finish();
  return folder.file("in.las");
}

std::vector<std::uint8_t> classesOf(int points) {
  std::vector<std::uint8_t> classes;
  for (int i = 0; i < points; ++i) {
    classes.push_back(somePoint(i).classification);
  }
  return classes;
}

}  // namespace

class LasCopyFormats : public testing::TestWithParam<unsigned> {};

TEST_P(LasCopyFormats, NothingButTheClassesAskedForChanges) {
  const Folder folder;
  const std::string from = cloud(folder, GetParam(), 50);
  auto classes = classesOf(50);
  classes[3] = 31;
  classes[49] = 6;
  ASSERT_TRUE(copyWithClasses(from, folder.file("out.las"), classes));
  Bytes expected = bytesOf(from);
  const LasReader reader(from);
  for (const std::size_t point : {std::size_t{3}, std::size_t{49}}) {
    const std::size_t place = reader.header().offsetToPoints + point * reader.header().recordLength;
    std::uint8_t& byte = expected[place + (GetParam() >= 6 ? 16 : 15)];
    byte = static_cast<std::uint8_t>(GetParam() >= 6 ? classes[point] : (byte & 0xe0) | classes[point]);
  }
  EXPECT_NE(expected, bytesOf(from));
  EXPECT_EQ(bytesOf(folder.file("out.las")), expected);
}

TEST_P(LasCopyFormats, WithTheClassesItHasTheCopyIsTheFile) {
  const Folder folder;
  const std::string from = cloud(folder, GetParam(), 50);
  ASSERT_TRUE(copyWithClasses(from, folder.file("out.las"), classesOf(50)));
  EXPECT_EQ(bytesOf(folder.file("out.las")), bytesOf(from));
}

TEST_P(LasCopyFormats, ACompressedCopyHoldsTheSameOnceItIsPlainAgain) {
  const Folder folder;
  const std::string from = cloud(folder, GetParam(), 50);
  ASSERT_TRUE(copyWithClasses(from, folder.file("out.laz"), classesOf(50)));
  EXPECT_TRUE(LasReader(folder.file("out.laz")).header().compressed);
  ASSERT_TRUE(copyWithClasses(folder.file("out.laz"), folder.file("back.las"), classesOf(50)));
  EXPECT_EQ(bytesOf(folder.file("back.las")), bytesOf(from));
}

TEST_P(LasCopyFormats, NothingButTheClassesOfACompressedFileChanges) {
  const Folder folder;
  const std::string from = cloud(folder, GetParam(), 50);
  auto classes = classesOf(50);
  ASSERT_TRUE(copyWithClasses(from, folder.file("a.laz"), classes));
  classes[3] = 31;
  ASSERT_TRUE(copyWithClasses(folder.file("a.laz"), folder.file("b.laz"), classes));
  ASSERT_TRUE(copyWithClasses(folder.file("b.laz"), folder.file("b.las"), classes));
  ASSERT_TRUE(copyWithClasses(from, folder.file("c.las"), classes));
  EXPECT_EQ(bytesOf(folder.file("b.las")), bytesOf(folder.file("c.las")));
}

INSTANTIATE_TEST_SUITE_P(AllFormats, LasCopyFormats, testing::Range(0U, kLasFormats));

TEST(LasCopy, AFileCanBeCopiedOntoItself) {
  const Folder folder;
  const std::string from = cloud(folder, 1, 50);
  ASSERT_TRUE(copyWithClasses(from, from, std::vector<std::uint8_t>(50, 9)));
  LasReader reader(from);
  std::vector<LasPoint> points;
  ASSERT_EQ(reader.readBatch(points), 50U);
  EXPECT_EQ(points[17].classification, 9);
  EXPECT_THAT(folder.names(), ElementsAre("in.las"));
}

TEST(LasCopy, AClassAbove31IsRefusedInTheOldFormats) {
  const Folder folder;
  const std::string from = cloud(folder, 3, 5);
  EXPECT_THAT(errorOf([&] { copyWithClasses(from, folder.file("o.las"), Bytes(5, 32)); }),
              HasSubstr("in.las: class 32 does not fit point format 3"));
  EXPECT_THAT(folder.names(), ElementsAre("in.las"));
}

TEST(LasCopy, EveryClassFitsTheNewFormats) {
  const Folder folder;
  const std::string from = cloud(folder, 6, 5);
  EXPECT_TRUE(copyWithClasses(from, folder.file("o.las"), Bytes(5, 255)));
}

TEST(LasCopy, OneClassForEachPointIsNeeded) {
  const Folder folder;
  const std::string from = cloud(folder, 3, 5);
  EXPECT_THAT(errorOf([&] { copyWithClasses(from, folder.file("o.las"), Bytes(4, 2)); }),
              HasSubstr("has 5 points now and 4 classes"));
}

TEST(LasCopy, StoppingLeavesTheFilesAsTheyWere) {
  const Folder folder;
  const std::string from = cloud(folder, 1, 50);
  const std::string out = folder.make("out.las", std::string("precious"));
  EXPECT_FALSE(copyWithClasses(from, out, Bytes(50, 2), [](auto, auto) { return false; }));
  EXPECT_EQ(bytesOf(out).size(), 8U);
  EXPECT_THAT(folder.names(), UnorderedElementsAre("in.las", "out.las"));
}
