#include "host/vector/DxfWriter.h"

#include "tests/host/vector/VectorScenes.h"

using namespace Meseta47::host;
using testing::ElementsAre;

namespace {

void write(std::string const& name, std::vector<Ring> const& lines) {
  DxfWriter writer({name, name}, someLines());
  for (Ring const& line : lines) writer.addLine(line, {}, "contour");
  writer.finish();
  writer.commit();
}

const Ring kOpen{{400000.25, 4000000.5, 12.5}, {400010.25, 4000000.5, 12.5}, {400010.25, 4000007.75, 12.5}};
const Ring kRising{{0, 0, 1.25}, {10, 0, 2.5}, {10, 10, -3.75}};

}  // namespace

// Read by GDAL, whose reader shares nothing with the writer.
TEST(DxfWriter, GivesOpenClosedAndRisingLinesBack) {
  const Folder folder;
  const std::string name = folder.file("a.dxf");
  const Ring ring = square(400000.25, 4000000.5, 10, 617);
  write(name, {kOpen, ring, kRising});
  const VectorContent content = readVectorFile(name, {});
  ASSERT_EQ(content.entities.size(), 3U);
  EXPECT_EQ(content.entities[0].places, kOpen);
  EXPECT_EQ(content.entities[1].places, ring) << "closed by its mark";
  EXPECT_EQ(content.entities[2].places, kRising);
  EXPECT_EQ(content.entities[0].code, "contour");
}

TEST(DxfWriter, PutsHolesOnALayerOfTheirOwn) {
  const Folder folder;
  const std::string name = folder.file("a.dxf");
  {
    DxfWriter writer({name, name}, someLines());
    const std::array<Ring, 2> rings{square(0, 0, 100, 1), square(10, 10, 20, 2)};
    writer.addPolygon(rings, {}, "outline");
    writer.finish();
    writer.commit();
  }
  const VectorContent content = readVectorFile(name, {});
  ASSERT_EQ(content.entities.size(), 2U);
  EXPECT_EQ(content.entities[0].code, "outline");
  EXPECT_EQ(content.entities[1].code, "outline_hole");
}

TEST(DxfWriter, HoldsTheSamePlacesAsGdals) {
  const Folder folder;
  write(folder.file("own.dxf"), {kOpen, square(0, 0, 33.33, 5), kRising});
  VectorOutput output(folder.file("gdal.dxf"), ReferenceSystem(), someLines());
  for (Ring const& line : {kOpen, square(0, 0, 33.33, 5), kRising}) output.addLine(line, {}, "contour");
  output.commit();
  EXPECT_EQ(sortedPlaces(readVectorFile(folder.file("own.dxf"), {})),
            sortedPlaces(readVectorFile(folder.file("gdal.dxf"), {})));
}

TEST(DxfWriter, LeavesNothingWithoutACommit) {
  const Folder folder;
  {
    DxfWriter writer({folder.file("a.dxf"), folder.file("a.dxf")}, someLines());
    writer.addLine(kOpen, {}, "contour");
    writer.finish();
  }
  EXPECT_THAT(folder.names(), testing::IsEmpty());
}

TEST(TextNumbers, LoseTheirZerosButOneAndNeverTurnIntoMinusZero) {
  const Folder folder;
  const std::string name = folder.file("a.geojson");
  VectorOutput output(name, ReferenceSystem(), {"contour", false, 2, {{"ELEV", false}, {"INDEX", true}}});
  const std::array<double, 2> values{600, 1};
  output.addLine(std::array<Place, 2>{{{-0.001, 0.004, 600}, {12.5, -7.25, 600}}}, values, "contour");
  output.commit();
  const Bytes bytes = bytesOf(name);
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()),
            "{\n\"type\": \"FeatureCollection\",\n\"name\": \"contour\",\n\"features\": [\n"
            "{ \"type\": \"Feature\", \"properties\": { \"ELEV\": 600.0, \"INDEX\": 1 }, \"geometry\": { \"type\": "
            "\"LineString\", \"coordinates\": [ [ 0.0, 0.0, 600.0 ], [ 12.5, -7.25, 600.0 ] ] } }\n]\n}\n");
}
