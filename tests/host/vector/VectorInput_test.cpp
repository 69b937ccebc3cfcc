#include "host/vector/VectorInput.h"

#include "tests/host/vector/VectorScenes.h"

using namespace Meseta47::host;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::string collection(std::string const& features) {
  return R"({"type":"FeatureCollection","name":"survey","crs":{"type":"name","properties":)"
         R"({"name":"urn:ogc:def:crs:EPSG::25830"}},"features":[)" +
         features + "]}";
}

std::string feature(std::string const& type, std::string const& coordinates, std::string const& code = "") {
  return R"({"type":"Feature","properties":{"CODE":)" + (code.empty() ? "null" : "\"" + code + "\"") +
         R"(},"geometry":{"type":")" + type + R"(","coordinates":)" + coordinates + "}}";
}

const std::string kLine = feature("LineString", "[[1,2,3],[4,5,6],[7,8,9]]", "BREAK");

class VectorInput : public testing::Test {
 protected:
  VectorContent read(std::string const& text, VectorOptions const& options = {}) {
    return readVectorFile(folder.make("a.geojson", text), options);
  }
  std::string failure(std::string const& text, VectorOptions const& options = {}) {
    return errorOf([&] { (void)read(text, options); });
  }

  Folder folder;
};

}  // namespace

TEST_F(VectorInput, ALineIsItsPlacesInTheirOrder) {
  const VectorContent content = read(collection(kLine));
  ASSERT_EQ(content.entities.size(), 1U);
  EXPECT_TRUE(content.entities[0].isLine);
  EXPECT_THAT(content.entities[0].places, ElementsAre(Place{1, 2, 3}, Place{4, 5, 6}, Place{7, 8, 9}));
  EXPECT_EQ(content.places, 3U);
  EXPECT_EQ(content.system.epsg(), 25830);
  EXPECT_EQ(content.extent.min, (std::array<double, 3>{1, 2, 3}));
  EXPECT_EQ(content.extent.max, (std::array<double, 3>{7, 8, 9}));
}

TEST_F(VectorInput, PolygonsBecomeTheirRingsAndPartsBecomeEntities) {
  const VectorContent content =
      read(collection(feature("Polygon", "[[[0,0,1],[9,0,1],[0,9,1],[0,0,1]],[[1,1,1],[1,2,1],[2,1,1],[1,1,1]]]") +
                      "," + feature("MultiLineString", "[[[0,0,5],[1,1,5]],[[2,2,5],[3,3,5]]]")));
  ASSERT_EQ(content.entities.size(), 4U);
  EXPECT_EQ(content.entities[0].places.size(), 4U);
  EXPECT_EQ(content.entities[0].places.front(), content.entities[0].places.back());
  EXPECT_THAT(content.entities[3].places, ElementsAre(Place{2, 2, 5}, Place{3, 3, 5}));
}

TEST_F(VectorInput, PointsOfOneCodeThatFollowEachOtherAreOneSet) {
  const VectorContent content =
      read(collection(feature("Point", "[1,2,3]", "A") + "," + feature("MultiPoint", "[[4,5,6],[7,8,9]]", "A") + "," +
                      feature("Point", "[0,0,0]", "B")),
           {"CODE", {}, false});
  ASSERT_EQ(content.entities.size(), 2U);
  EXPECT_FALSE(content.entities[0].isLine);
  EXPECT_EQ(content.entities[0].places.size(), 3U);
  EXPECT_EQ(content.entities[1].code, "B");
}

TEST_F(VectorInput, TheCodeIsAFieldOrElseTheLayer) {
  EXPECT_EQ(read(collection(kLine)).entities[0].code, "survey");
  EXPECT_EQ(read(collection(kLine), {"CODE", {}, false}).entities[0].code, "BREAK");
  const std::string nameless = feature("LineString", "[[1,2,3],[4,5,6]]");
  EXPECT_EQ(read(collection(nameless), {"CODE", {}, false}).entities[0].code, "survey");
}

TEST_F(VectorInput, AFieldThatIsNotThereIsRefusedWithThoseThatAre) {
  EXPECT_THAT(failure(collection(kLine), {"KIND", {}, false}),
              AllOf(HasSubstr("a.geojson"), HasSubstr("no field KIND"), HasSubstr("CODE")));
}

TEST_F(VectorInput, CodesChoose) {
  const std::string two = collection(kLine + "," + feature("LineString", "[[0,0,0],[1,1,1]]", "WALL"));
  const VectorContent content = read(two, {"CODE", {"WALL"}, false});
  ASSERT_EQ(content.entities.size(), 1U);
  EXPECT_EQ(content.entities[0].code, "WALL");
  EXPECT_EQ(content.otherCodes, 1U);
  EXPECT_THAT(failure(two, {"CODE", {"NONE"}, false}), HasSubstr("2 have other codes"));
}

TEST_F(VectorInput, AGeometryWithoutHeightsIsNeverTakenAtZero) {
  const std::string flat = collection(kLine + "," + feature("LineString", "[[1,2],[4,5]]"));
  EXPECT_THAT(failure(flat), AllOf(HasSubstr("feature 1 of layer survey has no heights"), HasSubstr("--without-z")));
  const VectorContent content = read(flat, {"", {}, true});
  EXPECT_EQ(content.entities.size(), 1U);
  EXPECT_EQ(content.withoutZ, 1U);
  EXPECT_THAT(failure(collection(feature("Point", "[1,2]")), {"", {}, true}),
              HasSubstr("1 geometries have no heights"));
}

TEST_F(VectorInput, NothingInAFileIsAnError) {
  EXPECT_THAT(failure(collection("")), HasSubstr("holds no lines, polygons or points"));
  EXPECT_THAT(failure(collection(R"({"type":"Feature","properties":{},"geometry":null})")),
              HasSubstr("holds no lines, polygons or points"));
}

TEST_F(VectorInput, WhatCannotBeReadIsSaidWithTheFile) {
  EXPECT_THAT(failure("{\"type\":\"FeatureCollection\",\"features\":[{\"ty"), HasSubstr("a.geojson: cannot be read"));
  EXPECT_THAT(errorOf([&] { (void)readVectorFile(folder.file("missing.gpkg"), {}); }),
              AllOf(HasSubstr("missing.gpkg"), HasSubstr("No such file")));
  const std::string damaged = folder.make("a.gpkg", std::string("SQLite format 3 and then nothing"));
  EXPECT_THAT(errorOf([&] { (void)readVectorFile(damaged, {}); }), HasSubstr("a.gpkg: cannot be read"));
}

TEST_F(VectorInput, DecimalsAreThoseOfTheCoordinatesUpToAMillimetre) {
  EXPECT_EQ(read(collection(kLine)).decimals, 0);
  EXPECT_EQ(read(collection(feature("Point", "[440000.25,4470000.5,3]"))).decimals, 2);
  EXPECT_EQ(read(collection(feature("Point", "[440000.123456,4470000.5,3]"))).decimals, 3);
}

TEST_F(VectorInput, DegreesHaveMoreDecimals) {
  const std::string bare =
      R"({"type":"FeatureCollection","features":[)" + feature("Point", "[-3.123456789,40.5,3]") + "]}";
  const VectorContent content = read(bare);
  EXPECT_TRUE(content.system.isGeographic());
  EXPECT_EQ(content.decimals, 7);
}

TEST_F(VectorInput, MetresInAGeoJsonWithoutASystemAreNotTakenForDegrees) {
  const std::string bare =
      R"({"type":"FeatureCollection","features":[)" + feature("Point", "[440000.5,4470000,3]") + "]}";
  EXPECT_FALSE(read(bare).system.isKnown());
}

TEST_F(VectorInput, TheExtensionTellsAVectorFile) {
  for (char const* name : {"a.gpkg", "a.SHP", "b.c.dxf", "a.geojson", "a.json", "a.fgb", "a.gml"}) {
    EXPECT_TRUE(isVectorFile(name)) << name;
  }
  for (char const* name : {"a.las", "a.laz", "a.txt", "a.csv", "a.xyz", "a", "a.ply", "gpkg"}) {
    EXPECT_FALSE(isVectorFile(name)) << name;
  }
}

TEST(VectorInputDxf, TheLayerOfTheDrawingIsTheCode) {
  const Folder folder;
  const std::string name = folder.make(
      "a.dxf", std::string("0\nSECTION\n2\nENTITIES\n0\nLINE\n8\nRIDGE\n10\n1\n20\n2\n30\n3\n11\n4\n21\n5\n31\n6\n"
                           "0\nPOINT\n8\nSPOT\n10\n7\n20\n8\n30\n9\n0\nENDSEC\n0\nEOF\n"));
  const VectorContent content = readVectorFile(name, {});
  ASSERT_EQ(content.entities.size(), 2U);
  EXPECT_EQ(content.entities[0].code, "RIDGE");
  EXPECT_THAT(content.entities[0].places, ElementsAre(Place{1, 2, 3}, Place{4, 5, 6}));
  EXPECT_EQ(content.entities[1].code, "SPOT");
  EXPECT_FALSE(content.entities[1].isLine);
}
