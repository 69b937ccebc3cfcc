#include "host/mesh/PlyReader.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <string>

#include "host/HostScenes.h"
#include "model/terrain/CModeloDigital.h"

namespace Meseta47::host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

template <class T>
void append(std::string& bytes, T value) {
  bytes.append(reinterpret_cast<char const*>(&value), sizeof value);
}

Surface readText(std::string const& text) {
  MemorySource source("m.ply", {text.begin(), text.end()});
  return readPly(source);
}

std::string errorIn(std::string const& text) {
  return errorOf([&] { (void)readText(text); });
}

/// Four vertices and two faces, with a comment, a colour a vertex and a material a face.
std::string head(std::string const& format) {
  return "ply\nformat " + format +
         " 1.0\ncomment a square\nelement vertex 4\nproperty uchar red\nproperty double x\nproperty double y\n"
         "property float z\nelement face 2\nproperty list uchar int vertex_indices\nproperty short material\n"
         "end_header\n";
}

std::string asciiSquare() {
  return head("ascii") + "255 0 0 1.5\n255 10 0 2\n255 10 10 -3\n255 0 10 1e2\n3 0 1 2 7\n3 0 2 3 7\n";
}

std::string binarySquare() {
  std::string bytes = head("binary_little_endian");
  const double places[4][3] = {{0, 0, 1.5}, {10, 0, 2}, {10, 10, -3}, {0, 10, 100}};
  for (auto const& [x, y, z] : places) {
    append<std::uint8_t>(bytes, 255);
    append(bytes, x);
    append(bytes, y);
    append(bytes, static_cast<float>(z));
  }
  for (auto const& corners : {std::array{0, 1, 2}, std::array{0, 2, 3}}) {
    append<std::uint8_t>(bytes, 3);
    for (const std::int32_t corner : corners) append(bytes, corner);
    append<std::int16_t>(bytes, 7);
  }
  return bytes;
}

/// The text with one piece of it replaced.
std::string with(std::string text, std::string const& piece, std::string const& other) {
  const std::size_t at = text.find(piece);
  EXPECT_NE(at, std::string::npos) << piece;
  return text.replace(at, piece.size(), other);
}

void expectSquare(Surface const& s) {
  EXPECT_THAT(s.vertices, ElementsAre(Surface::Vertex{0, 0, 1.5}, Surface::Vertex{10, 0, 2},
                                      Surface::Vertex{10, 10, -3}, Surface::Vertex{0, 10, 100}));
  EXPECT_THAT(s.triangles, ElementsAre(Surface::Triangle{0, 1, 2}, Surface::Triangle{0, 2, 3}));
  EXPECT_TRUE(s.classes.empty());
}

TEST(PlyReader, ColoursComeWhereAVertexHasAllThreeAsBytes) {
  const auto coloured = [](std::string const& type, std::string const& names) {
    std::string text = "ply\nformat ascii 1.0\nelement vertex 3\n";
    for (char const* axis : {"x", "y", "z"}) text += std::string("property float ") + axis + "\n";
    std::string values;
    for (const char name : names) {
      text += "property " + type + (name == 'r' ? " red" : name == 'g' ? " green" : " blue") + "\n";
      values += name == 'r' ? " 10" : name == 'g' ? " 20" : " 255";
    }
    text += "element face 1\nproperty list uchar int vertex_indices\nend_header\n";
    for (char const* place : {"0 0 0", "1 0 0", "0 1 0"}) text += place + values + "\n";
    return readText(text + "3 0 1 2\n").colours;
  };
  using Colours = std::vector<std::array<std::uint8_t, 3>>;
  EXPECT_EQ(coloured("uchar", "rgb"), Colours(3, {10, 20, 255}));
  EXPECT_EQ(coloured("uchar", "bgr"), Colours(3, {10, 20, 255}));
  EXPECT_EQ(coloured("uchar", "rg"), Colours());
  EXPECT_EQ(coloured("float", "rgb"), Colours());
  EXPECT_EQ(coloured("uchar", ""), Colours());
}

TEST(PlyReader, TextAndBinaryFormsOfOneMeshAreOneMesh) {
  expectSquare(readText(asciiSquare()));
  expectSquare(readText(binarySquare()));
}

TEST(PlyReader, HeaderLinesMayEndAsOnOtherSystems) {
  std::string text;
  for (const char c : asciiSquare()) text += c == '\n' ? std::string("\r\n") : std::string(1, c);
  expectSquare(readText(text));
}

TEST(PlyReader, ElementsOfOtherKindsArePassedOver) {
  const std::string edges = "element edge 1\nproperty int vertex1\nproperty list uchar float weights\nend_header\n";
  expectSquare(readText(with(asciiSquare(), "end_header\n", edges) + "2 2 0.5 0.25\n"));
}

TEST(PlyReader, FacesMayStandBeforeTheVertices) {
  const Surface s = readText(
      "ply\nformat ascii 1.0\nelement face 1\nproperty list int uint vertex_index\nelement vertex 3\nproperty int x\n"
      "property int y\nproperty int z\nend_header\n3 2 1 0\n0 0 5\n1 0 6\n0 1 7");
  EXPECT_THAT(s.triangles, ElementsAre(Surface::Triangle{2, 1, 0}));
  EXPECT_EQ(s.vertices.size(), 3U);
}

TEST(PlyReader, EveryWidthOfIntegerIsReadAsItStands) {
  std::string bytes =
      "ply\nformat binary_little_endian 1.0\nelement vertex 3\nproperty int8 x\nproperty uint16 y\nproperty uint z\n"
      "element face 1\nproperty list ushort uint8 vertex_index\nend_header\n";
  for (auto const& [x, y, z] : {std::array<std::int64_t, 3>{-128, 0, 0}, {127, 0, 4294967295}, {0, 65535, 7}}) {
    append(bytes, static_cast<std::int8_t>(x));
    append(bytes, static_cast<std::uint16_t>(y));
    append(bytes, static_cast<std::uint32_t>(z));
  }
  append<std::uint16_t>(bytes, 3);
  bytes += {0, 1, 2};
  const Surface s = readText(bytes);
  EXPECT_THAT(s.vertices, ElementsAre(Surface::Vertex{-128, 0, 0}, Surface::Vertex{127, 0, 4294967295.0},
                                      Surface::Vertex{0, 65535, 7}));
  EXPECT_THAT(s.triangles, ElementsAre(Surface::Triangle{0, 1, 2}));
}

TEST(PlyReader, ReadsWhatTheLibraryExports) {
  const Folder folder;
  auto tin = std::make_unique<CTIN>(0, 0, CDataSemilla(2, 450000, 4480000, 0));
  for (auto const& [x, y, z] : {std::array{0, 0, 123}, std::array{0, 1000, -45}, std::array{1000, 0, 67}}) {
    tin->puntos.push_back(CCoor3D<int>(x, y, z, 0), false);
  }
  CTriangulo triangle(&tin->puntos[0], &tin->puntos[1], &tin->puntos[2], 0, 0, 0);
  ASSERT_TRUE(tin->Inserta(triangle, false, false, false));
  tin->Sort(nullptr, 0, true);
  CModeloDigital model(tin.release());
  model.Mensajes(MENSAJES_NINGUNO);
  ASSERT_EQ(model.Exportar(CString::DesdeUtf8(folder.file("m.ply")), CDataExportarMDT(FORMATO_PLY)), 1);
  const Surface s = readPly(folder.file("m.ply"));
  EXPECT_THAT(s.vertices, ElementsAre(Surface::Vertex{450000, 4480000, 1.23}, Surface::Vertex{450000, 4480010, -0.45},
                                      Surface::Vertex{450010, 4480000, 0.67}));
  EXPECT_THAT(s.triangles, ElementsAre(Surface::Triangle{0, 2, 1}));
}

// --- files that must be refused, each with its cause

TEST(PlyReader, NamesWhatIsNoPly) {
  EXPECT_THAT(errorIn("obj\n"), HasSubstr("m.ply: is no PLY file"));
  EXPECT_THAT(errorIn(""), HasSubstr("is no PLY file"));
  EXPECT_THAT(errorIn(std::string(100000, 'x')), HasSubstr("is no PLY file"));
}

TEST(PlyReader, NamesFormatsItDoesNotRead) {
  EXPECT_THAT(
      errorIn(with(asciiSquare(), "ascii", "binary_big_endian")),
      testing::AllOf(HasSubstr("line 2"), HasSubstr("binary_big_endian"), HasSubstr("binary_little_endian 1.0")));
}

TEST(PlyReader, NamesBadHeaderLines) {
  EXPECT_THAT(errorIn(with(asciiSquare(), "comment", "kommentar")), HasSubstr("line 3"));
  EXPECT_THAT(errorIn(with(asciiSquare(), "float z", "real z")), HasSubstr("there is no type \"real\""));
  EXPECT_THAT(errorIn(with(asciiSquare(), "vertex 4", "vertex -4")), HasSubstr("\"-4\" is no number of elements"));
  EXPECT_THAT(errorIn(with(asciiSquare(), "element vertex 4\n", "")), HasSubstr("before the first element"));
  EXPECT_THAT(errorIn(with(asciiSquare(), "list uchar int", "list uchar")), HasSubstr("a list, two types and a name"));
}

TEST(PlyReader, NamesAHeaderWithoutEnd) {
  const std::string text = asciiSquare();
  EXPECT_THAT(errorIn(text.substr(0, text.find("end_header"))), HasSubstr("its header has no end"));
}

TEST(PlyReader, NamesMissingCoordinatesAndFaces) {
  EXPECT_THAT(errorIn(with(asciiSquare(), "float z", "float height")), HasSubstr("vertices have no z"));
  EXPECT_THAT(errorIn(with(asciiSquare(), "vertex_indices", "corners")), HasSubstr("no list vertex_indices"));
  const std::string points =
      "ply\nformat ascii 1.0\nelement vertex 1\nproperty float x\nproperty float y\nproperty float z\nend_header\n1 2 "
      "3\n";
  EXPECT_THAT(errorIn(points), HasSubstr("holds no faces"));
}

TEST(PlyReader, NamesFacesThatAreNoTrianglesOfItsVertices) {
  EXPECT_THAT(errorIn(with(asciiSquare(), "3 0 2 3 7", "4 0 1 2 3 7")), HasSubstr("face 1 has 4 corners"));
  EXPECT_THAT(errorIn(with(asciiSquare(), "3 0 2 3", "3 0 2 4")), HasSubstr("face 1 names vertex 4, but there are 4"));
  EXPECT_THAT(errorIn(with(asciiSquare(), "3 0 1 2", "3 0 -1 2")), HasSubstr("face 0 names vertex -1"));
  EXPECT_THAT(errorIn(with(asciiSquare(), "3 0 1 2", "3 0 1.5 2")), HasSubstr("face 0 names vertex 1.5"));
}

TEST(PlyReader, NamesWordsThatAreNoNumbers) {
  EXPECT_THAT(errorIn(with(asciiSquare(), "255 10 0 2", "255 10 zero 2")), HasSubstr("vertex 1 holds \"zero\""));
  EXPECT_THAT(errorIn(with(asciiSquare(), "255 10 0 2", "255 10 0 nan")), HasSubstr("vertex 1 has the coordinate nan"));
  EXPECT_THAT(errorIn(with(asciiSquare(), "255 10 0 2", "255 10 0 1e300")), HasSubstr("vertex 1 has the coordinate"));
}

TEST(PlyReader, NamesElementsThatTheFileCannotHold) {
  EXPECT_THAT(errorIn(with(binarySquare(), "vertex 4", "vertex 4000000000000000000")),
              HasSubstr("announces 4,000,000,000,000,000,000 of the element \"vertex\""));
}

TEST(PlyReader, NamesBytesBehindTheEnd) {
  EXPECT_THAT(errorIn(binarySquare() + "abc"), HasSubstr("3 bytes follow"));
  EXPECT_THAT(errorIn(asciiSquare() + "3 1 2 3 7\n"), HasSubstr("10 bytes follow"));
}

TEST(PlyReader, RefusesEveryPrefixOfAFile) {
  for (std::string const& whole : {binarySquare(), asciiSquare()}) {
    // the last number of a text may lose its line's end, but nothing more
    for (std::size_t length = 0; length + 1 < whole.size(); ++length) {
      EXPECT_NE(errorIn(whole.substr(0, length)), "") << length << " of " << whole.size();
    }
  }
}

TEST(PlyReader, ADamagedByteIsRefusedOrGivesASoundSurface) {
  for (std::string const& whole : {binarySquare(), asciiSquare()}) {
    for (std::size_t i = 0; i < whole.size(); ++i) {
      for (const char other : {'\0', '\xFF', '9', static_cast<char>(whole[i] ^ 1)}) {
        std::string damaged = whole;
        damaged[i] = other;
        MemorySource source("m.ply", {damaged.begin(), damaged.end()});
        try {
          const Surface s = readPly(source);
          for (auto const& t : s.triangles) EXPECT_LT(*std::max_element(t.begin(), t.end()), s.vertices.size());
          for (auto const& v : s.vertices) {
            for (const double value : v) EXPECT_LE(std::abs(value), 1e12) << i;
          }
        } catch (FileError const& error) {
          EXPECT_THAT(error.what(), testing::StartsWith("m.ply: ")) << i;
        }
      }
    }
  }
}

TEST(PlyReader, SaysWhichElementIsCutShort) {
  const std::string whole = binarySquare();
  EXPECT_THAT(errorIn(whole.substr(0, whole.size() - 1)), HasSubstr("face 1 is cut short"));
}

TEST(PlyReader, AMeshOfManyBlocksIsWhole) {
  constexpr int kSide = 200;  // 40,000 vertices and 79,202 faces: some megabytes
  std::string text =
      "ply\nformat binary_little_endian 1.0\nelement vertex 40000\nproperty float x\nproperty float y\n"
      "property float z\nelement face 79202\nproperty list uchar uint vertex_indices\nend_header\n";
  for (int i = 0; i < kSide * kSide; ++i) {
    for (const int value : {i % kSide, i / kSide, i}) append(text, static_cast<float>(value));
  }
  for (int i = 0; i < kSide * (kSide - 1); ++i) {
    if (i % kSide == kSide - 1) continue;
    for (auto const& corners : {std::array{i, i + 1, i + kSide}, std::array{i + 1, i + kSide + 1, i + kSide}}) {
      append<std::uint8_t>(text, 3);
      for (const int corner : corners) append(text, static_cast<std::uint32_t>(corner));
    }
  }
  const Surface s = readText(text);
  ASSERT_EQ(s.triangles.size(), 79202U);
  EXPECT_EQ(s.triangles.back(), (Surface::Triangle{39799, 39999, 39998})) << "the last face";
  EXPECT_EQ(s.vertices.back(), (Surface::Vertex{199, 199, 39999}));
}

}  // namespace
}  // namespace Meseta47::host
