#include "model/terrain/Exportacion.h"

#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pugixml.hpp>
#include <sstream>

#include "model/TinScenes.h"
#include "model/terrain/CModeloDigital.h"
#include "support/ScratchFolder.h"

using namespace Meseta47;
using namespace scenes;

namespace {

struct Parsed {
  std::vector<std::array<double, 3>> points;
  std::vector<Terna> faces;  // from 0

  bool operator==(Parsed const&) const = default;
};

std::string exported(CTIN const& tin, CDataExportarMDT const& data) {
  const ScratchFolder folder;
  CModeloDigital model(new CTIN(tin));
  EXPECT_EQ(model.Exportar(folder.Path("m"), data), kHecho);
  return BytesOf(folder.Path("m"));
}

template <class T>
T take(std::string const& bytes, std::size_t& at) {
  T value;
  std::memcpy(&value, bytes.data() + at, sizeof value);
  at += sizeof value;
  return value;
}

Parsed parsePly(std::string const& bytes) {
  std::istringstream header(bytes);
  std::string line;
  std::size_t points = 0, faces = 0;
  while (std::getline(header, line) && line != "end_header") {
    std::sscanf(line.c_str(), "element vertex %zu", &points);
    std::sscanf(line.c_str(), "element face %zu", &faces);
  }
  auto at = static_cast<std::size_t>(header.tellg());
  EXPECT_EQ(bytes.size(), at + points * 24 + faces * 13);
  Parsed mesh;
  for (std::size_t i = 0; i < points; ++i) {
    for (double& v : mesh.points.emplace_back()) v = take<double>(bytes, at);
  }
  for (std::size_t i = 0; i < faces; ++i) {
    EXPECT_EQ(take<unsigned char>(bytes, at), 3);
    for (std::uint32_t& v : mesh.faces.emplace_back()) v = take<std::uint32_t>(bytes, at);
  }
  return mesh;
}

Terna face(std::istream& in) {
  Terna t{};
  for (std::uint32_t& v : t) in >> v, --v;
  return t;
}

Parsed parseObj(std::string const& text) {
  Parsed mesh;
  std::istringstream in(text);
  for (std::string word; in >> word;) {
    if (word == "v") {
      for (double& v : mesh.points.emplace_back()) in >> v;
    } else {
      EXPECT_EQ(word, "f");
      mesh.faces.push_back(face(in));
    }
  }
  return mesh;
}

Parsed parse2dm(std::string const& text) {
  Parsed mesh;
  std::istringstream in(text);
  std::string word;
  in >> word;
  EXPECT_EQ(word, "MESH2D");
  for (std::size_t id; in >> word >> id;) {
    if (word == "E3T") {
      mesh.faces.push_back(face(in));
      EXPECT_EQ(id, mesh.faces.size());
      int material = 0;
      in >> material;
      EXPECT_EQ(material, 1);
    } else {
      EXPECT_EQ(word, "ND");
      for (double& v : mesh.points.emplace_back()) in >> v;
      EXPECT_EQ(id, mesh.points.size());
    }
  }
  return mesh;
}

Parsed parseXml(std::string const& text) {
  pugi::xml_document document;
  const pugi::xml_parse_result result = document.load_buffer(text.data(), text.size(), pugi::parse_full);
  EXPECT_TRUE(result) << result.description();
  const pugi::xml_node definition = document.child("LandXML").child("Surfaces").child("Surface").child("Definition");
  EXPECT_STREQ(definition.attribute("surfType").value(), "TIN");
  Parsed mesh;
  for (const pugi::xml_node p : definition.child("Pnts").children("P")) {
    std::istringstream in(p.child_value());
    auto& xyz = mesh.points.emplace_back();
    in >> xyz[1] >> xyz[0] >> xyz[2];
    EXPECT_EQ(p.attribute("id").as_ullong(), mesh.points.size());
  }
  for (const pugi::xml_node f : definition.child("Faces").children("F")) {
    std::istringstream in(f.child_value());
    mesh.faces.push_back(face(in));
  }
  return mesh;
}

Parsed parsed(CTIN const& tin, int format) {
  const std::string bytes = exported(tin, CDataExportarMDT(format));
  switch (format) {
    case FORMATO_PLY:
      return parsePly(bytes);
    case FORMATO_OBJ:
      return parseObj(bytes);
    case FORMATO_2DM:
      return parse2dm(bytes);
    default:
      return parseXml(bytes);
  }
}

/// One triangle over points 1, 2 and 4 of five.
CTIN lonely(CDataSemilla const& seed) {
  CTIN tin = surface({point(-9, 0), point(-5, 0, 7), point(0, -1005, 0), point(3, 3), point(10, 20, -30)}, seed);
  insert(tin, {1, 2, 4});
  tin.Sort(nullptr, 0, true);
  return tin;
}

std::string written(int precision, double origin, int v) {
  char text[512];
  return std::string(text, CEjeReal(precision, origin).Escribe(text, v));
}

}  // namespace

TEST(CEjeReal, TextHasAsManyDecimalsAsThePrecision) {
  EXPECT_EQ(written(2, 0, 0), "0.00");
  EXPECT_EQ(written(2, 0, 5), "0.05");
  EXPECT_EQ(written(2, 0, -5), "-0.05");
  EXPECT_EQ(written(2, 0, -100), "-1.00");
  EXPECT_EQ(written(0, 0, -12), "-12");
  EXPECT_EQ(written(3, 4500000, 123456), "4500123.456");
  EXPECT_EQ(written(3, -1, 1), "-0.999");
  EXPECT_EQ(written(-2, 7, 3), "307");
}

TEST(CEjeReal, TextIsExactAtTheEndsOfTheRange) {
  EXPECT_EQ(written(9, 700000000, 2147483647), "700000002.147483647");
  EXPECT_EQ(written(9, -700000000, -2147483647 - 1), "-700000002.147483648");
  EXPECT_EQ(written(-9, 0, -2147483647 - 1), "-2147483648000000000");
  EXPECT_LE(written(-9, 0, -2147483647 - 1).size(), CEjeReal(-9, 0).Ancho());
}

TEST(CEjeReal, AnOriginWithAFractionIsRoundedToThePrecision) {
  EXPECT_EQ(written(2, 0.5, 125), "1.75");
  EXPECT_EQ(written(2, 1000.126, 100), "1001.13");
  EXPECT_EQ(written(12, 0, 1), "0.000000000001");
  EXPECT_EQ(written(2, 1e12, 1), "1000000000000.01");
}

TEST(CEjeReal, NoTextIsLongerThanItsRoom) {
  for (const int precision : {-128, -9, 0, 9, 127}) {
    for (const double origin : {0.0, 0.25, -1e300, 799999999.0}) {
      const CEjeReal axis(precision, origin);
      std::vector<char> room(axis.Ancho());
      EXPECT_LE(axis.Escribe(room.data(), -2147483647 - 1), room.data() + room.size()) << precision << " " << origin;
    }
  }
}

TEST(CEjeReal, ValuesAreTheNearestDoubles) {
  EXPECT_EQ(CEjeReal(3, 4500000).Valor(123456), 4500123.456);
  EXPECT_EQ(CEjeReal(2, 0).Valor(-29), -0.29);
  EXPECT_EQ(CEjeReal(-2, 7).Valor(3), 307.0);
  EXPECT_EQ(CEjeReal(1, 0.5).Valor(15), 2.0);
}

class Formats : public testing::TestWithParam<int> {};

TEST_P(Formats, OnlyUsedPointsAreWrittenAndFacesRunCounterClockwise) {
  const Parsed mesh = parsed(lonely(CDataSemilla(2, 100, 2000, -1)), GetParam());
  const std::vector<std::array<double, 3>> points{{99.95, 2000, -0.93}, {100, 1989.95, -1}, {100.1, 2000.2, -1.3}};
  EXPECT_EQ(mesh.points, points);
  EXPECT_EQ(mesh.faces, (std::vector<Terna>{{0, 1, 2}}));
}

TEST_P(Formats, HoldTheWholeSurface) {
  const Grid grid(60, 60, 8);
  const CTIN tin = finished(
      grid, [](std::size_t i) { return i % 3 != 0; }, CDataSemilla(1, 0, 0, 0));
  const Parsed mesh = parsed(tin, GetParam());
  ASSERT_EQ(mesh.faces.size(), tin.Cantidad());
  std::set<std::uint32_t> used;
  for (std::size_t i = 0; i < mesh.faces.size(); ++i) {
    Terna const &t = tin.Vertices(static_cast<std::uint32_t>(i)), &f = mesh.faces[i];
    const std::uint32_t corners[] = {t[0], t[2], t[1]};
    double area = 0;
    for (std::size_t s = 0; s < 3; ++s) {
      ASSERT_LT(f[s], mesh.points.size());
      used.insert(f[s]);
      auto const &p = mesh.points[f[s]], &q = mesh.points[f[(s + 1) % 3]];
      area += p[0] * q[1] - q[0] * p[1];
      CPuntoTIN const& original = tin.puntos[corners[s]];
      ASSERT_EQ(p, (std::array<double, 3>{original.x / 10.0, original.y / 10.0, original.z / 10.0}));
    }
    ASSERT_GT(area, 0);
  }
  EXPECT_EQ(used.size(), mesh.points.size());
}

TEST_P(Formats, BytesDoNotDependOnThreads) {
  const Grid grid(300, 300, 9);  // several blocks of points and of faces
  const CTIN tin = finished(
      grid, [](std::size_t) { return true; }, CDataSemilla(2, 1, 2, 3.25));
  std::vector<std::string> bytes;
  for (const unsigned threads : {1u, 2u, 4u}) {
    const Processors processors(threads);
    bytes.push_back(exported(tin, CDataExportarMDT(GetParam())));
  }
  EXPECT_TRUE(bytes[1] == bytes[0]);
  EXPECT_TRUE(bytes[2] == bytes[0]);
}

TEST_P(Formats, AnEmptySurfaceIsAnEmptyMesh) { EXPECT_EQ(parsed(CTIN(0, 0, CDataSemilla()), GetParam()), Parsed{}); }

INSTANTIATE_TEST_SUITE_P(All, Formats, testing::Values(FORMATO_PLY, FORMATO_OBJ, FORMATO_2DM, FORMATO_LANDXML));

TEST(Exportacion, MoreFacesThanOneRoundOfBlocksStayInOrder) {
  const Grid grid(525, 525, 10);
  const CTIN tin = finished(grid, [](std::size_t) { return true; });
  const Parsed mesh = parsed(tin, FORMATO_PLY);
  ASSERT_EQ(mesh.faces.size(), 2u * 525 * 525);
  for (std::uint32_t i = 0; i < mesh.faces.size(); ++i) {
    Terna const& t = tin.Vertices(i);
    ASSERT_EQ(mesh.faces[i], (Terna{t[0], t[2], t[1]})) << i;
  }
}

TEST(Exportacion, TextNumbersHaveThePrecisionOfTheSeed) {
  EXPECT_EQ(exported(lonely(CDataSemilla(2, 100, 2000, -1)), CDataExportarMDT(FORMATO_OBJ)),
            "v 99.95 2000.00 -0.93\nv 100.00 1989.95 -1.00\nv 100.10 2000.20 -1.30\nf 1 2 3\n");
}

TEST(Exportacion, PlyHeaderNamesDoublesAndIndices) {
  EXPECT_THAT(exported(lonely({}), CDataExportarMDT(FORMATO_PLY)),
              testing::StartsWith("ply\nformat binary_little_endian 1.0\nelement vertex 3\nproperty double x\n"
                                  "property double y\nproperty double z\nelement face 1\n"
                                  "property list uchar int vertex_indices\nend_header\n"));
}

TEST(Exportacion, LandXmlNamesUnitsSystemAndSurface) {
  CDataExportarMDT data(FORMATO_LANDXML);
  data.unidad = UNIDAD_PIE_TOPOGRAFICO;
  data.sistema = L"NAD83 / \"Oregon\" <North> & more \u00E1\U0001F5FB\x01";
  data.epsg = 2269;
  data.nombre = CString::DesdeUtf8("raw \xFF byte");
  const std::string text = exported(lonely({}), data);
  pugi::xml_document document;
  ASSERT_TRUE(document.load_buffer(text.data(), text.size()));
  const pugi::xml_node root = document.child("LandXML");
  EXPECT_STREQ(root.attribute("version").value(), "1.2");
  EXPECT_STREQ(root.attribute("xmlns").value(), "http://www.landxml.org/schema/LandXML-1.2");
  EXPECT_STREQ(root.attribute("date").value(), "2000-01-01");
  EXPECT_STREQ(root.child("Units").child("Imperial").attribute("linearUnit").value(), "USSurveyFoot");
  EXPECT_STREQ(root.child("CoordinateSystem").attribute("name").value(),
               "NAD83 / \"Oregon\" <North> & more \xC3\xA1\xF0\x9F\x97\xBB\xEF\xBF\xBD");
  EXPECT_STREQ(root.child("CoordinateSystem").attribute("epsgCode").value(), "2269");
  EXPECT_STREQ(root.child("Surfaces").child("Surface").attribute("name").value(), "raw \xEF\xBF\xBD byte");
}

TEST(Exportacion, LandXmlKeepsTheBlanksOfAName) {
  CDataExportarMDT data(FORMATO_LANDXML);
  data.nombre = L"a\tb\nc\rd";
  const std::string text = exported(lonely({}), data);
  pugi::xml_document document;
  ASSERT_TRUE(document.load_buffer(text.data(), text.size()));
  EXPECT_STREQ(document.child("LandXML").child("Surfaces").child("Surface").attribute("name").value(), "a\tb\nc\rd");
}

TEST(Exportacion, LandXmlWithoutASystemNamesNone) {
  CDataExportarMDT data(FORMATO_LANDXML);
  EXPECT_EQ(exported(lonely({}), data).find("CoordinateSystem"), std::string::npos);
  EXPECT_NE(exported(lonely({}), data).find("<Metric areaUnit=\"squareMeter\" linearUnit=\"meter\""),
            std::string::npos);
  data.unidad = UNIDAD_PIE;
  EXPECT_NE(exported(lonely({}), data).find("linearUnit=\"foot\""), std::string::npos);
}
