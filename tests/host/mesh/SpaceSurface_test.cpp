#include "host/mesh/SpaceSurface.h"

#include <array>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <set>

#include "host/SpaceDrawing.h"
#include "platform/CFile.h"
#include "support/ScratchFolder.h"

namespace Meseta47::host {
namespace {

using Face = SpaceSurface::Face;

SpaceSurface surfaceOf(std::vector<std::array<int, 3>> const& places, std::vector<Face> faces) {
  SpaceSurface surface;
  surface.seed = CDataSemilla(0, 0, 0, 0);
  for (auto const& p : places) surface.vertices.emplace_back(p[0], p[1], p[2], 0);
  surface.faces = std::move(faces);
  return surface;
}

const std::vector<std::array<int, 3>> kTetrahedron{{0, 0, 0}, {10, 0, 0}, {0, 10, 0}, {0, 0, 10}};

TEST(SpaceSurface, AClosedPieceHasNoBorder) {
  const SurfaceCounts counts = countsOf(surfaceOf(kTetrahedron, {{0, 1, 2}, {0, 1, 3}, {0, 2, 3}, {1, 2, 3}}));
  EXPECT_EQ(counts.faces, 4U);
  EXPECT_EQ(counts.vertices, 4U);
  EXPECT_EQ(counts.components, 1U);
  EXPECT_EQ(counts.borders, 0U);
  EXPECT_EQ(counts.branchSides, 0U);
  EXPECT_NEAR(counts.area, 150 + 50 * std::sqrt(3.0), 1e-9);
}

TEST(SpaceSurface, PiecesThatTouchInAPointAreTwoAndTheirBorderIsOne) {
  const SurfaceCounts counts =
      countsOf(surfaceOf({{0, 0, 0}, {10, 0, 0}, {0, 10, 0}, {-10, 0, 3}, {0, -10, 3}}, {{0, 1, 2}, {0, 3, 4}}));
  EXPECT_EQ(counts.components, 2U);
  EXPECT_EQ(counts.borders, 1U);
  EXPECT_EQ(counts.borderSides, 6U);
}

TEST(SpaceSurface, AHoleIsABorderOfItsOwn) {
  // A square ring: eight points, eight faces.
  std::vector<std::array<int, 3>> places;
  for (const int r : {10, 30}) {
    for (auto const& [x, y] : {std::pair{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}) places.push_back({r * x, r * y, 0});
  }
  std::vector<Face> faces;
  for (std::uint32_t i = 0; i < 4; ++i) {
    const std::uint32_t j = (i + 1) % 4;
    faces.push_back({i, j, i + 4});
    faces.push_back({j, i + 4, j + 4});
  }
  const SurfaceCounts counts = countsOf(surfaceOf(places, faces));
  EXPECT_EQ(counts.components, 1U);
  EXPECT_EQ(counts.borders, 2U);
  EXPECT_EQ(counts.borderSides, 8U);
}

TEST(SpaceSurface, ThreeFacesAtASideAreABranchAndOnePiece) {
  const SurfaceCounts counts = countsOf(
      surfaceOf({{0, 0, 0}, {10, 0, 0}, {5, 10, 0}, {5, -10, 0}, {5, 0, 10}}, {{0, 1, 2}, {0, 1, 3}, {0, 1, 4}}));
  EXPECT_EQ(counts.components, 1U);
  EXPECT_EQ(counts.branchSides, 1U);
  EXPECT_EQ(counts.borderSides, 6U);
}

/// A kept mesh of points in centimetres.
class Kept {
 public:
  explicit Kept(std::vector<std::array<int, 3>> const& places) {
    std::vector<CCoor3D<int>> points;
    for (auto const& p : places) points.emplace_back(p[0], p[1], p[2], 0);
    CSetPuntos<int> set(L"CLOUD");
    set.CLinea<int>::Asigna(std::move(points));
    drawing_.Inserta(std::move(set));
  }
  SpaceSurface ofMesh(double maxSide) {
    CTriangulacion3D mesh(0, drawing_.semilla, everything(), 1);
    EXPECT_EQ(mesh.Run(drawing_, false), kHecho);
    return surfaceInSpace(mesh, maxSide, [](auto, auto) {});
  }
  SpaceSurface ofRun(double maxSide) {
    CTriangulacion3D run(0, drawing_.semilla, everything(), 1);
    CTIN tin(0, 0, drawing_.semilla);
    EXPECT_EQ(run.Run(drawing_, tin, maxSide, false, nullptr, false), kHecho);
    return surfaceInSpace(tin);
  }

 private:
  HostApp app_{CommonOptions{.quiet = true, .json = false, .threads = 2, .tempDir = {}}};
  CDibujo<int> drawing_;
};

std::vector<std::array<int, 3>> cloudOfABall() {
  std::vector<std::array<int, 3>> places;
  std::uint64_t state = 11;
  const auto next = [&state] {
    state = state * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<int>(state >> 33) % 2001 - 1000;
  };
  while (places.size() < 1500) {
    const std::array<int, 3> p{next(), next(), next()};
    if (p[0] * p[0] + p[1] * p[1] + p[2] * p[2] < 1'000'000) places.push_back(p);
  }
  return places;
}

TEST(SpaceSurface, AKeptMeshAndARunGiveOneSurfaceForAnyLongestSide) {
  Kept ball(cloudOfABall());
  std::set<std::size_t> sizes;
  for (const double side : {0.3, 1.0, 1.5, 2.5, 4.0, 100.0}) {
    const SpaceSurface mesh = ball.ofMesh(side), run = ball.ofRun(side);
    EXPECT_EQ(mesh.faces, run.faces) << side;
    EXPECT_EQ(mesh.vertices.size(), run.vertices.size());
    sizes.insert(mesh.faces.size());
  }
  EXPECT_GT(sizes.size(), 4U);  // each another surface
}

TEST(SpaceSurface, WithoutALongestSideToSpeakOfTheSurfaceIsTheHullAndLooksOutwards) {
  const SpaceSurface hull = Kept(cloudOfABall()).ofMesh(1000);
  const SurfaceCounts counts = countsOf(hull);
  EXPECT_EQ(counts.components, 1U);
  EXPECT_EQ(counts.borderSides + counts.branchSides, 0U);
  double volume = 0;
  std::map<std::pair<std::uint32_t, std::uint32_t>, int> sides;
  for (Face const& f : hull.faces) {
    auto const &a = hull.vertices[f[0]], &b = hull.vertices[f[1]], &c = hull.vertices[f[2]];
    volume += double(a.x) * (double(b.y) * c.z - double(b.z) * c.y) -
              double(a.y) * (double(b.x) * c.z - double(b.z) * c.x) +
              double(a.z) * (double(b.x) * c.y - double(b.y) * c.x);
    for (unsigned i = 0; i < 3; ++i) ++sides[{f[i], f[(i + 1) % 3]}];
  }
  EXPECT_GT(volume / 6, 3.5e9);  // of a ball of 4.19e9: inwards it would be below 0
  for (auto const& [side, times] : sides) EXPECT_EQ(times, 1);
}

/// The first face of an STL: its normal, then its three corners.
std::array<float, 12> firstFaceOfStl(SpaceSurface const& surface) {
  const ScratchFolder folder;
  const CString path = folder.Path("s.stl");
  writeSurface(surface, path.Utf8());
  constexpr std::size_t kHead = 84;
  std::array<char, kHead + 48> bytes{};
  CFile file(path, CFile::modeRead);
  EXPECT_EQ(file.Read(bytes.data(), bytes.size()), bytes.size());
  std::array<float, 12> face{};
  std::memcpy(face.data(), bytes.data() + kHead, sizeof face);
  return face;
}

TEST(SpaceSurface, ANormalOfAnStlIsThatOfThePointsFarFromTheOriginToo) {
  // Two million metres away single precision has steps of an eighth of one: the side of 0.3 m in y is 0.25 m there.
  SpaceSurface surface = surfaceOf(
      {{2000000123, -2000000371, 5}, {2000000423, -2000000371, 5}, {2000000123, -2000000071, 305}}, {{0, 1, 2}});
  surface.seed = CDataSemilla(3, 0, 0, 0);
  const auto face = firstFaceOfStl(surface);
  EXPECT_EQ(face[3], 2000000.125F) << "the corners are single precision";
  const float half = static_cast<float>(std::sqrt(0.5));
  EXPECT_FLOAT_EQ(face[0], 0.0F);
  EXPECT_FLOAT_EQ(face[1], -half);
  EXPECT_FLOAT_EQ(face[2], half);
}

TEST(SpaceSurface, AFlatFaceOfAnStlHasNoNormal) {
  const auto face = firstFaceOfStl(surfaceOf({{0, 0, 0}, {1, 2, 3}, {2, 4, 6}}, {{0, 1, 2}}));
  for (int axis = 0; axis < 3; ++axis) EXPECT_EQ(face[static_cast<std::size_t>(axis)], 0.0F);
}

}  // namespace
}  // namespace Meseta47::host
