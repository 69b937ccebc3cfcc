#include "host/mesh/ModelCheck.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <limits>
#include <random>

#include "host/HostScenes.h"

namespace Meseta47::host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Kind = ModelFaultKind;

constexpr std::uint32_t kColumns = 7, kRows = 6;

std::uint32_t at(std::uint32_t column, std::uint32_t row) { return row * kColumns + column; }

/// Rows of points, every other row half a step to the right: triangles as nearly equilateral as whole units allow.
//     2---3
//      \ / \        two triangles for each step of a row
//       0---1
Surface honeycomb(double unit = 1, double x = 0, double y = 0) {
  Surface s;
  for (std::uint32_t row = 0; row < kRows; ++row) {
    for (std::uint32_t column = 0; column < kColumns; ++column) {
      s.vertices.push_back({x + unit * (10.0 * column + 5.0 * (row % 2)), y + unit * 9.0 * row, 1.0 * column});
    }
  }
  for (std::uint32_t row = 0; row + 1 < kRows; ++row) {
    for (std::uint32_t column = 0; column + 1 < kColumns; ++column) {
      const std::uint32_t a = at(column, row), b = at(column + 1, row), c = at(column, row + 1),
                          d = at(column + 1, row + 1);
      if (row % 2 == 0) {
        s.triangles.insert(s.triangles.end(), {{a, b, c}, {b, d, c}});
      } else {
        s.triangles.insert(s.triangles.end(), {{a, d, c}, {a, b, d}});
      }
    }
  }
  return s;
}

ExactModel exactHoneycomb() { return exactModel(honeycomb(), "m.ply"); }

/// With the outline that a native model brings along: counter-clockwise round the four edges.
ExactModel withOutline() {
  ExactModel m = exactHoneycomb();
  m.hasOutline = true;
  m.outline.emplace_back();
  auto& ring = m.outline.back().vertices;
  for (std::uint32_t c = 0; c + 1 < kColumns; ++c) ring.push_back(at(c, 0));
  for (std::uint32_t r = 0; r + 1 < kRows; ++r) ring.push_back(at(kColumns - 1, r));
  for (std::uint32_t c = kColumns - 1; c > 0; --c) ring.push_back(at(c, kRows - 1));
  for (std::uint32_t r = kRows - 1; r > 0; --r) ring.push_back(at(0, r));
  return m;
}

std::size_t triangleOf(ExactModel const& m, Surface::Triangle corners) {
  return static_cast<std::size_t>(std::find(m.triangles.begin(), m.triangles.end(), corners) - m.triangles.begin());
}

/// A triangle in the middle, whose vertices and neighbours all lie inside.
std::size_t inner(ExactModel const& m) { return triangleOf(m, {at(3, 2), at(4, 2), at(3, 3)}); }

std::vector<Kind> kindsOf(ModelReport const& report) {
  std::vector<Kind> kinds;
  for (ModelFault const& fault : report.faults) kinds.push_back(fault.kind);
  return kinds;
}
std::vector<Kind> kindsIn(ExactModel const& m, bool whole = false) { return kindsOf(checkModel(m, whole)); }

std::uint64_t countOf(ModelReport const& report, Kind kind) {
  for (ModelFault const& fault : report.faults) {
    if (fault.kind == kind) return fault.count;
  }
  return 0;
}

TEST(ModelCheck, ASoundModelHasNoFaultAndItsCountsAreRight) {
  const ModelReport r = checkModel(withOutline(), false);
  EXPECT_THAT(kindsOf(r), IsEmpty());
  EXPECT_EQ(r.vertices, 42u);
  EXPECT_EQ(r.unused, 0u);
  EXPECT_EQ(r.triangles, 60u);
  EXPECT_EQ(r.boundarySides, 22u);
  EXPECT_EQ(r.sides, (3 * 60u + 22u) / 2);
  EXPECT_EQ(r.pieces, 1u);
  EXPECT_EQ(r.rings, 1u);
}

TEST(ModelCheck, TellsItsStepsAndEndsWithWhatTheyThrow) {
  struct Enough {};
  unsigned long long told = 0;
  (void)checkModel(withOutline(), false, [&](auto done, auto all) {
    EXPECT_LE(told, done);
    EXPECT_LT(done, all);
    told = done;
  });
  EXPECT_GT(told, 0U);
  EXPECT_THROW((void)checkModel(withOutline(), false,
                                [&](auto done, auto) {
                                  if (done == told) throw Enough();
                                }),
               Enough);
}

TEST(ModelCheck, ATurnedTriangleIsToldWithItsPlace) {
  ExactModel m = exactHoneycomb();
  const std::size_t t = inner(m);
  std::swap(m.triangles[t][1], m.triangles[t][2]);
  const ModelReport r = checkModel(m, false);
  EXPECT_EQ(countOf(r, Kind::clockwise), 1u);
  EXPECT_EQ(countOf(r, Kind::sameWaySide), 3u);
  EXPECT_THAT(r.faults[0].text(),
              HasSubstr("1 triangle runs the wrong way round: triangle " + std::to_string(t) + " (30 18, "));
}

TEST(ModelCheck, AMissingTriangleIsAHoleInAWholeSurfaceAndAgainstAnOutline) {
  ExactModel m = withOutline();
  m.triangles.erase(m.triangles.begin() + static_cast<std::ptrdiff_t>(inner(m)));
  EXPECT_EQ(countOf(checkModel(m, false), Kind::outlineMissing), 3u);
  EXPECT_THAT(kindsIn(m, true), ElementsAre(Kind::hole, Kind::outlineMissing));
  m.hasOutline = false;
  EXPECT_THAT(kindsIn(m), IsEmpty()) << "a filter may have taken it out";
  EXPECT_EQ(checkModel(m, false).rings, 2u);
}

TEST(ModelCheck, ATriangleMissingAtACornerLeavesAVertexUnusedWherePlyFilesHaveNone) {
  ExactModel m = exactHoneycomb();
  m.triangles.erase(m.triangles.begin());
  EXPECT_EQ(checkModel(m, true).unused, 1u);
  EXPECT_THAT(kindsIn(m), ElementsAre(Kind::unusedVertex));
  m.usesAllVertices = false;
  EXPECT_THAT(kindsIn(m), IsEmpty());
  EXPECT_THAT(kindsIn(m, true), ElementsAre(Kind::unusedVertex, Kind::dent)) << "a whole surface has all points";
}

TEST(ModelCheck, AWholeSurfaceFillsItsConvexHull) {
  ExactModel m = exactHoneycomb();
  const ModelReport dented = checkModel(m, true);
  EXPECT_THAT(kindsOf(dented), ElementsAre(Kind::dent));
  EXPECT_EQ(countOf(dented, Kind::dent), 4u) << "two rows begin half a step to the right, and two end there";
  EXPECT_THAT(dented.faults[0].text(), HasSubstr("4 corners of the rim lie inside the convex hull"));
  for (const std::uint32_t row : {1U, 3U}) m.triangles.push_back({at(0, row - 1), at(0, row), at(0, row + 1)});
  m.triangles.push_back({at(6, 1), at(6, 3), at(6, 2)});
  EXPECT_THAT(checkModel(m, true).faults[0].text(), HasSubstr("1 corner of the rim lies inside the convex hull, which "
                                                              "a whole surface fills: vertex 34 (60 36"));
  m.triangles.push_back({at(6, 3), at(6, 5), at(6, 4)});
  EXPECT_THAT(kindsIn(m, true), IsEmpty());
}

TEST(ModelCheck, PointsInTheMiddleOfAHullSideAreNoDent) {
  ExactModel m;
  for (auto const& [x, y] : {std::pair{0, 0}, {5, 0}, {10, 0}, {5, 8}}) m.vertices.emplace_back(x, y, 0, 0);
  m.triangles = {{0, 1, 3}, {1, 2, 3}};
  EXPECT_THAT(kindsIn(m, true), IsEmpty());
  m.vertices[1].y = 1;
  EXPECT_THAT(kindsIn(m, true), ElementsAre(Kind::dent));
}

TEST(ModelCheck, ADoubledTriangleIsFoundWhicheverCornerItBeginsWith) {
  ExactModel m = exactHoneycomb();
  auto [a, b, c] = m.triangles[inner(m)];
  m.triangles.push_back({b, c, a});
  const ModelReport r = checkModel(m, false);
  EXPECT_EQ(countOf(r, Kind::doubledTriangle), 1u);
  EXPECT_EQ(countOf(r, Kind::crowdedSide), 3u);
}

TEST(ModelCheck, AMovedVertexTurnsTrianglesOrBreaksTheirCircles) {
  ExactModel m = exactHoneycomb();
  m.vertices[at(3, 3)].y += 7;
  EXPECT_THAT(kindsIn(m), ElementsAre(Kind::notDelaunay));
  m.vertices[at(3, 3)].x += 40;
  EXPECT_GT(countOf(checkModel(m, false), Kind::clockwise), 0u);
  m = exactHoneycomb();
  m.vertices[at(3, 3)] = m.vertices[at(4, 3)];
  const ModelReport r = checkModel(m, false);
  EXPECT_EQ(countOf(r, Kind::doubledVertex), 1u);
  EXPECT_EQ(countOf(r, Kind::flat), 2u);
}

TEST(ModelCheck, ASwappedDiagonalIsNotDelaunay) {
  ExactModel m = exactHoneycomb();
  const std::size_t t = inner(m), u = triangleOf(m, {at(4, 2), at(4, 3), at(3, 3)});
  m.triangles[t] = {at(3, 2), at(4, 2), at(4, 3)};
  m.triangles[u] = {at(3, 2), at(4, 3), at(3, 3)};
  const ModelReport r = checkModel(m, false);
  EXPECT_THAT(kindsOf(r), ElementsAre(Kind::notDelaunay));
  EXPECT_EQ(r.faults[0].count, 1u);
}

TEST(ModelCheck, ATriangleWithAVertexTwiceIsToldAndCountsForNothingElse) {
  ExactModel m = exactHoneycomb();
  m.triangles.push_back({3, 4, 3});
  EXPECT_THAT(kindsIn(m), ElementsAre(Kind::repeatedCorner));
}

TEST(ModelCheck, TrianglesThatGoRoundAVertexTwiceLieOneOverTheOther) {
  // Two turns about vertex 0 by triangles of 120 degrees; each side belongs to two at most.
  ExactModel m;
  m.vertices.resize(7);
  const int rim[6][2] = {{100, 0}, {-50, 87}, {-50, -86}, {99, 1}, {-51, 86}, {-49, -87}};
  for (std::size_t i = 0; i < 6; ++i) m.vertices[i + 1].x = rim[i][0], m.vertices[i + 1].y = rim[i][1];
  for (std::uint32_t i = 0; i < 6; ++i) m.triangles.push_back({0, 1 + i, 1 + (i + 1) % 6});
  EXPECT_EQ(countOf(checkModel(m, true), Kind::overlappingFan), 1u);
  EXPECT_EQ(countOf(checkModel(m, true), Kind::noSheet), 0u);
  m.triangles.pop_back();  // open, and still more than one turn
  EXPECT_EQ(countOf(checkModel(m, true), Kind::overlappingFan), 1u);
  m.triangles.resize(3);
  m.triangles.pop_back();  // two thirds of a turn
  EXPECT_EQ(countOf(checkModel(m, true), Kind::overlappingFan), 0u);
}

TEST(ModelCheck, AHandleBreaksEulersCount) {
  // A square torus of 3 by 3 vertices less a triangle: paired sides, one ring, but no sheet.
  ExactModel m;
  m.vertices.resize(9);
  for (int i = 0; i < 9; ++i) {
    m.vertices[static_cast<std::size_t>(i)].x = 10 * i, m.vertices[static_cast<std::size_t>(i)].y = i * i;
  }
  const auto v = [](std::uint32_t x, std::uint32_t y) { return y % 3 * 3 + x % 3; };
  for (std::uint32_t x = 0; x < 3; ++x) {
    for (std::uint32_t y = 0; y < 3; ++y) {
      m.triangles.push_back({v(x, y), v(x + 1, y), v(x + 1, y + 1)});
      m.triangles.push_back({v(x, y), v(x + 1, y + 1), v(x, y + 1)});
    }
  }
  m.triangles.pop_back();
  const ModelReport r = checkModel(m, false);
  EXPECT_EQ(countOf(r, Kind::noSheet), 1u);
  EXPECT_EQ(countOf(r, Kind::crowdedSide), 0u);
  EXPECT_THAT(r.faults.back().first, HasSubstr("9 vertices, 27 sides, 17 triangles and 1 rings"));
}

TEST(ModelCheck, ASurfaceThatTouchesItselfInAVertexIsSound) {
  ExactModel m = exactHoneycomb();
  const std::size_t across = triangleOf(m, {at(3, 3), at(4, 4), at(3, 4)});
  ASSERT_LT(across, m.triangles.size());
  m.triangles.erase(m.triangles.begin() + static_cast<std::ptrdiff_t>(across));
  m.triangles.erase(m.triangles.begin() + static_cast<std::ptrdiff_t>(inner(m)));
  EXPECT_THAT(kindsIn(m), IsEmpty());
  EXPECT_EQ(checkModel(m, false).rings, 2u) << "one round both holes";
}

TEST(ModelCheck, APieceApartIsSoundUnlessTheSurfaceShouldBeWhole) {
  ExactModel m = exactHoneycomb();
  const auto first = static_cast<std::uint32_t>(m.vertices.size());
  for (auto const& [x, y] : {std::pair{500, 0}, {510, 0}, {505, 9}}) m.vertices.emplace_back(x, y, 0, 0);
  m.triangles.push_back({first, first + 1, first + 2});
  EXPECT_THAT(kindsIn(m), IsEmpty());
  EXPECT_THAT(kindsIn(m, true), ElementsAre(Kind::separatePiece));
}

TEST(ModelCheck, AnOutlineIsHeldAgainstTheSurface) {
  ExactModel m = withOutline();
  m.outline[0].hole = true;
  EXPECT_THAT(kindsIn(m), ElementsAre(Kind::wrongHole));
  m = withOutline();
  std::reverse(m.outline[0].vertices.begin(), m.outline[0].vertices.end());
  EXPECT_THAT(kindsIn(m), IsEmpty()) << "either sense is a ring's";
  m = withOutline();
  m.outline[0].vertices.erase(m.outline[0].vertices.begin() + 1);
  EXPECT_THAT(kindsIn(m), ElementsAre(Kind::outlineAside, Kind::outlineMissing));
  m = withOutline();
  m.outline[0].vertices[1] = m.outline[0].vertices[0];
  EXPECT_EQ(countOf(checkModel(m, false), Kind::outlineNotClosed), 1u);
  m = withOutline();
  m.outline.push_back(m.outline[0]);
  EXPECT_EQ(countOf(checkModel(m, false), Kind::outlineAside), 22u);
  m.outline.clear();
  EXPECT_EQ(countOf(checkModel(m, false), Kind::outlineMissing), 22u);
}

TEST(ModelCheck, CirclesAreExactAtTheEdgesOf32Bits) {
  // Four points of one circle, the fourth then moved inwards by one unit: a double does not see it.
  constexpr int kEdge = std::numeric_limits<int>::max();
  ExactModel m;
  for (auto const& [x, y] : {std::pair{-kEdge, -kEdge}, {kEdge, -kEdge}, {kEdge, kEdge}, {-kEdge, kEdge}}) {
    m.vertices.emplace_back(x, y, 0, 0);
  }
  m.triangles = {{0, 1, 2}, {0, 2, 3}};
  EXPECT_THAT(kindsIn(m, true), IsEmpty()) << "all on the circle";
  m.vertices[3].x += 1;
  EXPECT_THAT(kindsIn(m, true), ElementsAre(Kind::notDelaunay));
  m.vertices[3].x -= 2;
  EXPECT_THAT(kindsIn(m, true), IsEmpty());
}

// --- whole units

TEST(ExactModel, DecimalsOfDoublesComeBackAsTheUnitsThatAllShare) {
  const ExactModel m = exactModel(honeycomb(0.001, 449450, 4479500), "m.ply");
  EXPECT_EQ(m.precision, 3);
  ASSERT_THAT(kindsIn(m), IsEmpty());
  ExactModel const& units = exactHoneycomb();
  for (std::size_t i = 1; i < m.vertices.size(); ++i) {
    EXPECT_EQ(m.vertices[i].x - m.vertices[0].x, units.vertices[i].x - units.vertices[0].x);
    EXPECT_EQ(m.vertices[i].y - m.vertices[0].y, units.vertices[i].y - units.vertices[0].y);
  }
  EXPECT_EQ(m.place(1), "449450.010 4479500.000");
}

TEST(ExactModel, FloatsAreTheNearestToDecimalsToo) {
  Surface s = honeycomb(0.1, 1000, 2000);
  for (auto& v : s.vertices) {
    v[0] = static_cast<double>(static_cast<float>(v[0])), v[1] = static_cast<double>(static_cast<float>(v[1]));
  }
  const ExactModel m = exactModel(s, "m.ply");
  EXPECT_EQ(m.precision, 1);
  EXPECT_THAT(kindsIn(m), IsEmpty());
}

TEST(ExactModel, CoordinatesWithoutCommonUnitsAreRefusedByName) {
  Surface s = honeycomb(1, 449450, 4479500);
  s.vertices[5][0] = 449450 + 1.0 / 3;
  EXPECT_THAT(errorOf([&] { (void)exactModel(s, "m.ply"); }), HasSubstr("m.ply: the coordinate 449450.333"));
  s.vertices[5][0] = 1e10;
  s.vertices[6][0] = 0.125;
  EXPECT_THAT(errorOf([&] { (void)exactModel(s, "m.ply"); }), HasSubstr("32 bits"));
}

TEST(ExactModel, TheWidestExtentOf32BitsStillFits) {
  Surface s;
  s.vertices = {{0, 0, 0}, {4294967295.0, 0, 0}, {0, 4294967295.0, 0}};
  s.triangles = {{0, 1, 2}};
  const ExactModel m = exactModel(s, "m.ply");
  EXPECT_EQ(m.vertices[0].x, std::numeric_limits<int>::min());
  EXPECT_EQ(m.vertices[1].x, std::numeric_limits<int>::max());
  EXPECT_THAT(kindsIn(m, true), IsEmpty());
  s.vertices[1][0] += 1;
  EXPECT_NE(errorOf([&] { (void)exactModel(s, "m.ply"); }), "");
}

}  // namespace
}  // namespace Meseta47::host
