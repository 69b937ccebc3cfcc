#include "support/PlyReader.h"

#include <bit>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>

namespace Meseta47::support {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string bytes(std::uint64_t value, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text.push_back(static_cast<char>(value >> (8 * i) & 0xff));
  return text;
}

std::string vertex(double x, double y, double z) {
  return bytes(std::bit_cast<std::uint64_t>(x), 8) + bytes(std::bit_cast<std::uint64_t>(y), 8) +
         bytes(std::bit_cast<std::uint64_t>(z), 8);
}

std::string face(std::uint32_t a, std::uint32_t b, std::uint32_t c) {
  return "\3" + bytes(a, 4) + bytes(b, 4) + bytes(c, 4);
}

const std::string kStart = "ply\nformat binary_little_endian 1.0\ncomment anything\n";
const std::string kCoordinates = "property double x\nproperty double y\nproperty double z\n";
const std::string kFaces = "property list uchar int vertex_indices\nend_header\n";

std::string header(int vertices, int faces) {
  return kStart + "element vertex " + std::to_string(vertices) + "\n" + kCoordinates + "element face " +
         std::to_string(faces) + "\n" + kFaces;
}

const std::string kThreeVertices = vertex(500'000.25, -4.5, 1) + vertex(500'001, 0, 2) + vertex(500'000, 1, -3);

PlyMesh parsed(std::string const& text) {
  std::istringstream in(text);
  return readPly(in);
}

/// What the reader has against a text.
std::string complaint(std::string const& text) {
  try {
    (void)parsed(text);
  } catch (std::runtime_error const& error) {
    return error.what();
  }
  return "none";
}

TEST(PlyReader, VerticesAndFacesComeBack) {
  const PlyMesh mesh = parsed(header(3, 1) + kThreeVertices + face(2, 0, 1));
  EXPECT_THAT(mesh.vertices,
              ElementsAre(ElementsAre(500'000.25, -4.5, 1), ElementsAre(500'001, 0, 2), ElementsAre(500'000, 1, -3)));
  EXPECT_THAT(mesh.faces, ElementsAre(Triangle{2, 0, 1}));
}

TEST(PlyReader, OtherVertexPropertiesAreSteppedOver) {
  const std::string text = kStart + "element vertex 1\nproperty ushort intensity\n" + kCoordinates +
                           "property uchar class\nelement face 0\n" + kFaces + bytes(7, 2) + vertex(1, 2, 3) +
                           bytes(9, 1);
  EXPECT_THAT(parsed(text).vertices, ElementsAre(ElementsAre(1, 2, 3)));
}

TEST(PlyReader, EveryWayAFileCanBeWrongHasItsComplaint) {
  const std::string good = header(3, 1) + kThreeVertices;
  EXPECT_EQ(complaint(good + face(0, 1, 2)), "none");
  EXPECT_THAT(complaint(""), HasSubstr("does not begin with 'ply'"));
  EXPECT_THAT(complaint("ply\nformat ascii 1.0\n"), HasSubstr("unexpected format"));
  EXPECT_THAT(complaint(kStart + "element vertex 1\n"), HasSubstr("the header has no end"));
  EXPECT_THAT(complaint(kStart + "element vertex 0\n" + kCoordinates + "end_header\n"), HasSubstr("no faces"));
  EXPECT_THAT(complaint(kStart + "element vertex 0\nproperty float x\nelement face 0\n" + kFaces),
              HasSubstr("double x"));
  EXPECT_THAT(complaint(kStart + "element vertex 0\nproperty long x\n"), HasSubstr("unknown type 'long'"));
  EXPECT_THAT(complaint(kStart + "element face 0\n"), HasSubstr("unexpected element 'face'"));
  EXPECT_THAT(complaint(good.substr(0, good.size() - 1)), HasSubstr("vertex 2 is cut short"));
  EXPECT_THAT(complaint(good + face(0, 1, 2).substr(0, 12)), HasSubstr("face 0 is cut short"));
  EXPECT_THAT(complaint(good + "\4" + face(0, 1, 2).substr(1) + bytes(0, 4)), HasSubstr("face 0 is not a triangle"));
  EXPECT_THAT(complaint(good + face(0, 1, 3)), HasSubstr("face 0 names vertex 3"));
  EXPECT_THAT(complaint(good + face(0, 1, 0xffffffff)), HasSubstr("face 0 names vertex -1"));
  EXPECT_THAT(complaint(good + face(0, 1, 2) + "x"), HasSubstr("bytes follow the last face"));
}

TEST(PlyReader, AMissingFileIsNamed) {
  EXPECT_THROW((void)readPly(std::filesystem::path("no_such_file.ply")), std::runtime_error);
}

TEST(PlyReader, ScalingTakesTheOriginOffAndRoundsToNearest) {
  const Mesh mesh = scaled(parsed(header(3, 1) + kThreeVertices + face(2, 0, 1)), 10, {500'000, 0, 0});
  EXPECT_THAT(mesh.points, ElementsAre(Point{3, -45, 10}, Point{10, 0, 20}, Point{0, 10, -30}));
  EXPECT_THAT(mesh.triangles, ElementsAre(Triangle{3, 1, 2}));
}

TEST(PlyReader, ACoordinateThatDoesNotFitIsRefused) {
  const PlyMesh ply{{{3e6, 0, 0}}, {}};
  EXPECT_THROW((void)scaled(ply, 1000), std::runtime_error);
  EXPECT_EQ(scaled(ply, 1000, {3e6, 0, 0}).points.size(), 1);
}

}  // namespace
}  // namespace Meseta47::support
