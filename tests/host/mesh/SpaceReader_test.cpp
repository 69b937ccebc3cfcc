#include "host/mesh/SpaceReader.h"

#include <gmock/gmock.h>

#include "host/HostScenes.h"

namespace Meseta47::host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

ExactSpaceMesh readText(std::string const& name, std::string const& text) {
  const Folder folder;
  return readSpaceMesh(folder.make(name, text));
}

std::string errorIn(std::string const& name, std::string const& text) {
  return errorOf([&] { (void)readText(name, text); });
}

constexpr char const* kMeditHead = "MeshVersionFormatted 2\nDimension\n3\n";
constexpr char const* kMeditPlaces = "Vertices\n4\n0 0 0 1\n2.5 0 0 1\n0 2 0 1\n0 0 2 1\n";
constexpr char const* kMeditCells = "Tetrahedra\n1\n1 2 3 4 0\n";

std::string medit(std::string const& body) { return kMeditHead + body + "End\n"; }

std::string gmsh(std::string const& nodes, std::string const& elements) {
  return "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n" + nodes + "$EndNodes\n$Elements\n" + elements +
         "$EndElements\n";
}
constexpr char const* kNodes = "4\n1 0 0 0\n2 2.5 0 0\n3 0 2 0\n4 0 0 2\n";

/// Arrays behind their lengths, at the offsets that the head tells.
std::string vtu(std::int64_t lastVertex, std::uint64_t bytesOfPoints = 96) {
  std::string data;
  const auto put = [&data](auto value) { data.append(reinterpret_cast<char const*>(&value), sizeof value); };
  put(bytesOfPoints);
  for (const double c : {0., 0., 0., 2.5, 0., 0., 0., 2., 0., 0., 0., 2.}) put(c);
  put(std::uint64_t{32});
  for (const std::int64_t v : {std::int64_t{0}, std::int64_t{1}, std::int64_t{2}, lastVertex}) put(v);
  put(std::uint64_t{8});
  put(std::int64_t{4});
  put(std::uint64_t{1});
  put(std::uint8_t{10});
  const auto array = [](std::string const& name, std::string const& type, int offset) {
    return "<DataArray type=\"" + type + "\" Name=\"" + name + "\" format=\"appended\" offset=\"" +
           std::to_string(offset) + "\"/>\n";
  };
  return "<VTKFile type=\"UnstructuredGrid\" byte_order=\"LittleEndian\" header_type=\"UInt64\">\n" +
         array("Points", "Float64", 0) + array("connectivity", "Int64", 104) + array("offsets", "Int64", 144) +
         array("types", "UInt8", 160) + "<AppendedData encoding=\"raw\">\n_" + data + "\n</AppendedData>\n";
}

TEST(SpaceReader, TheThreeFormatsGiveTheSameMeshInWholeUnits) {
  const ExactSpaceMesh meshes[] = {readText("m.mesh", medit(std::string(kMeditPlaces) + kMeditCells)),
                                   readText("m.msh", gmsh(kNodes, "1\n1 4 2 0 0 1 2 3 4\n")),
                                   readText("m.vtu", vtu(3))};
  for (ExactSpaceMesh const& mesh : meshes) {
    EXPECT_EQ(mesh.precision, 1);
    EXPECT_THAT(mesh.tetrahedra, ElementsAre(Tetrahedron{0, 1, 2, 3}));
    ASSERT_EQ(mesh.vertices.size(), 4U);
    EXPECT_EQ(mesh.vertices[1].x - mesh.vertices[0].x, 25);
    EXPECT_EQ(mesh.place(1), "2.5 0.0 0.0");
  }
}

TEST(SpaceReader, AnExtensionMayStandInCapitals) {
  EXPECT_TRUE(isSpaceMesh("M.VTU") && isSpaceMesh("m.Mesh") && isSpaceMesh("m.MSH"));
  EXPECT_FALSE(isSpaceMesh("m.VTK"));
  EXPECT_THAT(readText("M.VTU", vtu(3)).tetrahedra, ElementsAre(Tetrahedron{0, 1, 2, 3}));
  EXPECT_THAT(readText("M.MSH", gmsh(kNodes, "1\n1 4 2 0 0 1 2 3 4\n")).tetrahedra,
              ElementsAre(Tetrahedron{0, 1, 2, 3}));
}

TEST(SpaceReader, ASecondListOfVerticesIsRefusedSinceTheFirstIsNamedAlready) {
  const std::string both = std::string(kMeditPlaces) + kMeditCells;
  EXPECT_THAT(errorIn("m.mesh", medit(both + "Vertices\n1\n0 0 0 1\n")), HasSubstr("it has Vertices twice"));
  EXPECT_THAT(errorIn("m.mesh", medit(both + kMeditCells)), HasSubstr("it has Tetrahedra twice"));
}

TEST(SpaceReader, AVertexThatIsNotThereIsNamed) {
  EXPECT_THAT(errorIn("m.mesh", medit(std::string(kMeditPlaces) + "Tetrahedra\n1\n1 2 3 5 0\n")),
              HasSubstr("names vertex 5 of 4"));
  EXPECT_THAT(errorIn("m.mesh", medit(std::string(kMeditCells) + kMeditPlaces)), HasSubstr("names vertex 1 of 0"));
  EXPECT_THAT(errorIn("m.msh", gmsh(kNodes, "1\n1 4 0 0 2 3 4\n")), HasSubstr("names vertex 0 of 4"));
  EXPECT_THAT(errorIn("m.vtu", vtu(4)), HasSubstr("names vertex 4 of 4"));
  EXPECT_THAT(errorIn("m.vtu", vtu(-1)), HasSubstr("names vertex -1 of 4"));
}

TEST(SpaceReader, AMeshWithoutPointsHasNoneForItsTetrahedra) {
  EXPECT_THAT(errorIn("m.vtu", vtu(3, 0)), HasSubstr("names vertex 0 of 0"));
}

TEST(SpaceReader, CountsBeyondTheFileAreRefusedBeforeMemoryIsAskedFor) {
  EXPECT_THAT(errorIn("m.mesh", medit("Vertices\n4000000000\n")), HasSubstr("more than it has room for"));
  EXPECT_THAT(errorIn("m.msh", gmsh("4000000000\n", "")), HasSubstr("more than it has room for"));
  EXPECT_THAT(errorIn("m.msh", gmsh(kNodes, "1\n1 4 4000000000 1 2 3 4\n")), HasSubstr("where a number should"));
  EXPECT_THAT(errorIn("m.vtu", vtu(3, ~std::uint64_t{0})), HasSubstr("its array Points is cut short"));
  EXPECT_THAT(errorIn("m.vtu", vtu(3, 95)), HasSubstr("its points are not three coordinates each"));
}

TEST(SpaceReader, WithoutTetrahedraThereIsNothingToProve) {
  EXPECT_THAT(errorIn("m.mesh", medit(kMeditPlaces)), HasSubstr("it holds no tetrahedra"));
  EXPECT_THAT(errorIn("m.msh", gmsh(kNodes, "0\n")), HasSubstr("it holds no tetrahedra"));
}

TEST(SpaceReader, WhatIsNoNumberIsQuoted) {
  EXPECT_THAT(errorIn("m.mesh", medit("Vertices\n1\n0 0 zero 1\n")), HasSubstr("\"zero\" stands where a number"));
  EXPECT_THAT(errorIn("m.mesh", medit("Vertices\n1\n0 0 nan 1\n" + std::string("Tetrahedra\n1\n1 1 1 1 0\n"))),
              HasSubstr("a vertex has the coordinate nan"));
}

}  // namespace
}  // namespace Meseta47::host
