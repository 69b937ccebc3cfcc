#include "host/laz/Copc.h"

#include <map>

#include "host/las/LasBytes.h"
#include "host/las/LasReader.h"
#include "host/las/LasWriter.h"
#include "tests/host/laz/LazScenes.h"

using namespace Meseta47::host;
using testing::HasSubstr;

namespace {

struct Node {
  std::int32_t level, x, y;
  int points;
};

// The root and, in the north-east of it, one child with a child of its own; another child in the south-west. A cube of
// 1,000 units around (500, 500, 500); its points are 100 apart.
constexpr Node kNodes[] = {{0, 0, 0, 5}, {1, 1, 1, 7}, {2, 3, 3, 11}, {1, 0, 0, 13}};

constexpr std::size_t kInfo = 375 + 54;  // of the octree's record, which is the first

LasVlrRecord infoRecord() {
  LasVlrRecord record{"copc", 1, "copc info", Bytes(160)};
  for (std::size_t axis = 0; axis < 4; ++axis) store(record.data.data() + 8 * axis, 500.0);
  store(record.data.data() + 32, 100.0);
  return record;
}

Bytes entry(Node const& node, std::uint64_t place, std::uint64_t bytes, std::int32_t points) {
  Bytes entry(32);
  const std::int32_t key[] = {node.level, node.x, node.y, 0, static_cast<std::int32_t>(bytes), points};
  for (std::size_t i = 0; i < 4; ++i) store(entry.data() + 4 * i, key[i]);
  store(entry.data() + 16, place);
  store(entry.data() + 24, key[4]);
  store(entry.data() + 28, key[5]);
  return entry;
}

/// The file's bytes: the children stand on a second page, and one node has no points.
Bytes octreeFile() {
  const Folder folder;
  LasWriterOptions options;
  options.pointFormat = 7;
  options.scale = {1, 1, 1};
  options.compressed = true;
  options.chunkPoints = LazScheme::kVariable;
  options.vlrs = {infoRecord()};
  options.evlrs = {{"copc", 1000, "hierarchy", Bytes(6 * 32)}};
  LasWriter writer(folder.file("a.laz"), options);
  int number = 0;
  for (Node const& node : kNodes) {
    const int side = 1000 >> node.level;
    for (int i = 0; i < node.points; ++i) {
      LasPoint p = somePoint(number++);
      p.x = node.x * side + side / 2;
      p.y = node.y * side + side / 2 + i;
      p.classification = static_cast<std::uint8_t>(node.points);
      writer.add(p);
    }
    writer.endChunk();
  }
  writer.finish();
  Bytes bytes = bytesOf(folder.file("a.laz"));
  MemorySource source("a.laz", bytes);
  const LasReader reader(folder.file("a.laz"));
  const auto chunks = readChunks(source, reader.header(), *reader.compression());
  const std::size_t pages = bytes.size() - std::size_t{6} * 32;
  Bytes entries;
  const auto add = [&](Bytes const& one) { entries.insert(entries.end(), one.begin(), one.end()); };
  add(entry(kNodes[0], chunks->at(0).place, chunks->at(0).bytes, kNodes[0].points));
  add(entry({1, 1, 0, 0}, 0, 0, 0));
  add(entry(kNodes[1], pages + 3 * 32, 3 * 32, -1));
  for (std::size_t i = 1; i < 4; ++i) add(entry(kNodes[i], chunks->at(i).place, chunks->at(i).bytes, kNodes[i].points));
  std::copy(entries.begin(), entries.end(), bytes.begin() + static_cast<std::ptrdiff_t>(pages));
  store(bytes.data() + kInfo + 40, std::uint64_t{pages});
  store(bytes.data() + kInfo + 48, std::uint64_t{3} * 32);
  return bytes;
}

/// The points of a reading, counted by the node that they are in.
std::map<int, int> nodesRead(Bytes const& bytes, LasReading const& reading) {
  LasReader reader(std::make_unique<MemorySource>("a.laz", bytes), reading);
  std::vector<LasPoint> points;
  std::map<int, int> found;
  std::uint64_t count = 0;
  while (reader.readBatch(points) > 0) {
    for (LasPoint const& p : points) ++found[p.classification];
    count += points.size();
  }
  EXPECT_EQ(count, reader.header().pointCount);
  return found;
}

using Nodes = std::map<int, int>;

}  // namespace

TEST(Copc, EveryPageOfTheHierarchyIsRead) {
  const LasReader reader(std::make_unique<MemorySource>("a.laz", octreeFile()));
  const auto copc = reader.octree();
  ASSERT_TRUE(copc);
  EXPECT_EQ(copc->nodes.size(), 4U);
  EXPECT_EQ(copc->levels(), 3);
  EXPECT_EQ(copc->spacingOf(2), 25);
}

TEST(Copc, AsAWholeItIsReadAsAnyCompressedFile) {
  EXPECT_EQ(nodesRead(octreeFile(), {}), (Nodes{{5, 5}, {7, 7}, {11, 11}, {13, 13}}));
}

TEST(Copc, ABoxReadsTheNodesThatItTouchesAlone) {
  EXPECT_EQ(nodesRead(octreeFile(), {.box = Bounds{0, 0, 400, 400}}), (Nodes{{5, 5}, {13, 13}}));
  EXPECT_EQ(nodesRead(octreeFile(), {.box = Bounds{600, 600, 700, 700}}), (Nodes{{5, 5}, {7, 7}}));
  EXPECT_EQ(nodesRead(octreeFile(), {.box = Bounds{750, 750, 760, 760}}), (Nodes{{5, 5}, {7, 7}, {11, 11}}));
  EXPECT_EQ(nodesRead(octreeFile(), {.box = Bounds{0, 600, 400, 700}}), (Nodes{{5, 5}})) << "the root has it too";
  EXPECT_EQ(nodesRead(octreeFile(), {.box = Bounds{1500, 0, 1600, 10}}), Nodes());
}

TEST(Copc, AResolutionReadsNoDeeperThanItNeeds) {
  EXPECT_EQ(nodesRead(octreeFile(), {.resolution = 100}), (Nodes{{5, 5}}));
  EXPECT_EQ(nodesRead(octreeFile(), {.resolution = 99}), (Nodes{{5, 5}, {7, 7}, {13, 13}}));
  EXPECT_EQ(nodesRead(octreeFile(), {.resolution = 0.001}), (Nodes{{5, 5}, {7, 7}, {11, 11}, {13, 13}}));
  EXPECT_EQ(nodesRead(octreeFile(), {.box = Bounds{0, 0, 400, 400}, .resolution = 1000}), (Nodes{{5, 5}}));
}

TEST(Copc, WithoutLevelsAResolutionIsRefused) {
  const Folder folder;
  LasWriter writer(folder.file("a.las"), {});
  writer.finish();
  EXPECT_THAT(errorOf([&] { LasReader(folder.file("a.las"), LasReading{.resolution = 1}); }),
              HasSubstr("a.las: has no levels of detail"));
}

TEST(Copc, PagesThatLeadInARingOrOutOfTheFileAreNoOctree) {
  const Bytes whole = octreeFile();
  const std::size_t pages = whole.size() - std::size_t{6} * 32;
  const auto octreeAfter = [&](std::size_t place, std::uint64_t value) {
    Bytes bytes = whole;
    store(bytes.data() + place, value);
    const LasReader reader(std::make_unique<MemorySource>("a.laz", bytes));
    return reader.octree().has_value();
  };
  EXPECT_TRUE(octreeAfter(pages + 2 * 32 + 16, pages + 3 * 32));
  EXPECT_FALSE(octreeAfter(pages + 2 * 32 + 16, pages)) << "the page names itself";
  EXPECT_FALSE(octreeAfter(pages + 2 * 32 + 16, whole.size()));
  EXPECT_FALSE(octreeAfter(pages + 16, whole.size() - 4)) << "a node that ends behind the file";
  EXPECT_FALSE(octreeAfter(kInfo + 40, ~std::uint64_t{0}));
  EXPECT_FALSE(octreeAfter(kInfo + 32, 0)) << "no spacing";
}

TEST(Copc, ARealOneIsReadNodeByNode) {
  const std::string folder = realClouds();
  if (folder.empty()) GTEST_SKIP() << "the folder of real clouds is not here: set URDIMBRE_DATA";
  const std::string file = folder + "/laz/with-color.copc.laz";
  LasReader all(file);
  const auto copc = all.octree();
  ASSERT_TRUE(copc);
  EXPECT_EQ(copc->nodes.size(), 65U);
  const auto boundsOf = [&](double part) {
    auto const& [min, max] = std::tie(all.header().min, all.header().max);
    return Bounds{min[0], min[1], min[0] + part * (max[0] - min[0]), min[1] + part * (max[1] - min[1])};
  };
  const auto inside = [&](LasReader& reader, Bounds const& box) {
    std::vector<LasPoint> points;
    std::size_t found = 0;
    auto const& [scale, offset] = std::tie(reader.header().scale, reader.header().offset);
    while (reader.readBatch(points) > 0) {
      for (LasPoint const& p : points) found += box.contains(p.x * scale[0] + offset[0], p.y * scale[1] + offset[1]);
    }
    return found;
  };
  for (const double part : {0.1, 0.3, 0.7, 1.0}) {
    const Bounds box = boundsOf(part);
    LasReader some(file, {.box = box});
    all.seek(0);
    EXPECT_EQ(inside(some, box), inside(all, box)) << part;
    EXPECT_EQ(some.header().pointCount < 1065, part < 0.9);
  }
}
