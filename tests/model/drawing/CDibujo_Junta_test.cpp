#include <algorithm>
#include <gmock/gmock.h>
#include <random>
#include <utility>

#include "model/Fixtures.h"
#include "model/drawing/CDibujo.h"

using namespace Meseta47;
using namespace Meseta47::test;

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Points = std::vector<Point>;

CDibujo<int> Drawing(std::vector<CLinea<int>> const& lines) {
  CDibujo<int> drawing;
  for (CLinea<int> const& line : lines) drawing.Inserta(line);
  return drawing;
}

std::vector<Points> Paths(CDibujo<int> const& drawing) {
  std::vector<Points> paths;
  for (unsigned i = 0; i < drawing.Cantidad(); ++i) paths.push_back(drawing[i].Puntos());
  return paths;
}

/// The way contours are joined.
int Join(CDibujo<int>& drawing) { return drawing.Junta(0, 0, true, true, true, 0, 0, true); }

std::vector<Points> Joined(std::vector<CLinea<int>> const& lines) {
  CDibujo<int> drawing = Drawing(lines);
  Join(drawing);
  return Paths(drawing);
}

using Segment = std::pair<Point, Point>;

/// Every segment of every line, its lower end first, sorted.
std::vector<Segment> Segments(CDibujo<int> const& drawing) {
  std::vector<Segment> segments;
  for (Points const& path : Paths(drawing)) {
    for (std::size_t i = 1; i < path.size(); ++i) {
      const bool forward = (path[i - 1] < path[i]) != 0;
      segments.emplace_back(forward ? path[i - 1] : path[i], forward ? path[i] : path[i - 1]);
    }
  }
  std::sort(segments.begin(), segments.end());
  return segments;
}

TEST(Junta, EmptyLinesThatItDoesNotLookAtStay) {
  CDibujo<int> drawing = Drawing({CLinea<int>(L"before"), CLinea<int>(L"inside"), CLinea<int>(L"behind")});
  drawing.Junta(1, 1, true, true, true, 0, 0, true);
  ASSERT_EQ(drawing.Cantidad(), 2u);
  EXPECT_EQ(drawing[0].GetCodigo(), L"before");
  EXPECT_EQ(drawing[1].GetCodigo(), L"behind");
}

TEST(Junta, AnEmptyLineLeavesOnlyWhereRepeatedPointsDo) {
  CDibujo<int> drawing = Drawing({CLinea<int>(L"empty")});
  drawing.Junta(0, 0, true, true, true, 0, 0, false);
  EXPECT_EQ(drawing.Cantidad(), 1u);
  drawing.Junta(0, 0, true, true, true, 0, 0, true);
  EXPECT_EQ(drawing.Cantidad(), 0u);
}

TEST(Junta, SegmentsThatFollowEachOtherBecomeOneLine) {
  CDibujo<int> drawing = Drawing({Line({P(0, 0), P(1, 0)}), Line({P(2, 5), P(1, 0)}), Line({P(2, 5), P(3, 3)})});
  EXPECT_EQ(Join(drawing), 2);
  EXPECT_THAT(Paths(drawing), ElementsAre(Points{P(0, 0), P(1, 0), P(2, 5), P(3, 3)}));
  EXPECT_EQ(drawing[0].GetCodigo(), CString(L"line"));
  EXPECT_EQ(drawing[0].maximas, BoxOf(drawing[0].Puntos()));
  EXPECT_EQ(drawing.nPuntos, 4u);
}

TEST(Junta, ARingClosesAtItsLowestPoint) {
  EXPECT_THAT(
      Joined({Line({P(5, 5), P(5, 0)}), Line({P(0, 0), P(5, 0)}), Line({P(0, 0), P(0, 5)}), Line({P(0, 5), P(5, 5)})}),
      ElementsAre(Points{P(0, 0), P(0, 5), P(5, 5), P(5, 0), P(0, 0)}));
}

TEST(Junta, LinesAtDifferentHeightsAreNeverJoined) {
  const std::vector<CLinea<int>> lines{Line({P(0, 0, 1), P(5, 5, 1)}), Line({P(5, 5, 2), P(9, 9, 2)})};
  EXPECT_THAT(Joined(lines), ElementsAre(Points{P(0, 0, 1), P(5, 5, 1)}, Points{P(5, 5, 2), P(9, 9, 2)}));
}

TEST(Junta, InPlanTheJointKeepsBothHeights) {
  CDibujo<int> drawing = Drawing({Line({P(0, 0, 1), P(5, 5, 1)}), Line({P(5, 5, 2), P(9, 9, 2)})});
  EXPECT_EQ(drawing.Junta(0, 0, true, false, true, 0, 0, true), 1);
  EXPECT_THAT(Paths(drawing), ElementsAre(Points{P(0, 0, 1), P(5, 5, 1), P(5, 5, 2), P(9, 9, 2)}));
}

TEST(Junta, ARingInPlanClosesOverItsStep) {
  for (const bool swapped : {false, true}) {
    std::vector<CLinea<int>> lines{Line({P(0, 0, 1), P(5, 0, 1), P(5, 5, 1)}),
                                   Line({P(5, 5, 2), P(0, 5, 2), P(0, 0, 2)})};
    if (swapped) std::swap(lines[0], lines[1]);
    CDibujo<int> drawing = Drawing(lines);
    EXPECT_EQ(drawing.Junta(0, 0, true, false, true, 0, 0, true), 2);
    EXPECT_THAT(Paths(drawing), ElementsAre(Points{P(0, 0, 1), P(0, 0, 2), P(0, 5, 2), P(5, 5, 2), P(5, 5, 1),
                                                   P(5, 0, 1), P(0, 0, 1)}));
  }
}

TEST(Junta, CodesKeepLinesApartUnlessAskedOtherwise) {
  const std::vector<CLinea<int>> lines{Line({P(0, 0), P(1, 0)}, L"b"), Line({P(1, 0), P(2, 0)}, L"a")};
  EXPECT_EQ(Joined(lines).size(), 2u);
  CDibujo<int> drawing = Drawing(lines);
  EXPECT_EQ(drawing.Junta(0, 0, false, true, true, 0, 0, true), 1);
  ASSERT_EQ(drawing.Cantidad(), 1u);
  EXPECT_EQ(drawing[0].GetCodigo(), CString(L"a"));
}

TEST(Junta, FourLinesAtANodeGoOnByPairsThatTouchAndDoNotCross) {
  // Nearly straight on in both ways: crossing would be straighter, but contours do not cross.
  EXPECT_THAT(Joined({Line({P(-10, -1), P(0, 0)}), Line({P(0, 0), P(10, -1)}), Line({P(-10, 1), P(0, 0)}),
                      Line({P(0, 0), P(10, 1)})}),
              ElementsAre(Points{P(-10, -1), P(0, 0), P(10, -1)}, Points{P(-10, 1), P(0, 0), P(10, 1)}));
}

TEST(Junta, OfAnOddNumberTheOneThatFitsWorstEndsAtTheNode) {
  EXPECT_THAT(Joined({Line({P(-10, 0), P(0, 0)}), Line({P(0, 0), P(10, 1)}), Line({P(0, 0), P(1, 10)})}),
              ElementsAre(Points{P(-10, 0), P(0, 0), P(10, 1)}, Points{P(0, 0), P(1, 10)}));
  // Five of them: a straight pair above, another below, and one to the side.
  EXPECT_THAT(Joined({Line({P(0, 0), P(-10, 5)}), Line({P(0, 0), P(10, 5)}), Line({P(0, 0), P(-10, -5)}),
                      Line({P(0, 0), P(10, -5)}), Line({P(0, 0), P(10, 0)})}),
              ElementsAre(Points{P(-10, -5), P(0, 0), P(10, -5)}, Points{P(-10, 5), P(0, 0), P(10, 5)},
                          Points{P(0, 0), P(10, 0)}));
}

TEST(Junta, WithoutCrossingsLinesEndWhereMoreThanTwoMeet) {
  CDibujo<int> drawing = Drawing(
      {Line({P(-10, 0), P(0, 0)}), Line({P(0, 0), P(10, 1)}), Line({P(0, 0), P(1, 10)}), Line({P(10, 1), P(20, 0)})});
  EXPECT_EQ(drawing.Junta(0, 0, true, true, false, 0, 0, true), 1);
  EXPECT_THAT(Paths(drawing),
              ElementsAre(Points{P(-10, 0), P(0, 0)}, Points{P(0, 0), P(1, 10)}, Points{P(0, 0), P(10, 1), P(20, 0)}));
}

TEST(Junta, WhereRingsTouchTheStraightestWayIsTaken) {
  const Points left{P(0, 0), P(-9, -3), P(-12, 0), P(-9, 3)}, right{P(0, 0), P(9, 3), P(12, 0), P(9, -3)};
  std::vector<CLinea<int>> lines;
  for (Points const* ring : {&left, &right}) {
    for (std::size_t i = 0; i < 4; ++i) lines.push_back(Line({(*ring)[i], (*ring)[(i + 1) % 4]}));
  }
  EXPECT_THAT(Joined(lines), ElementsAre(Points{P(-12, 0), P(-9, -3), P(0, 0), P(9, -3), P(12, 0), P(9, 3), P(0, 0),
                                                P(-9, 3), P(-12, 0)}));
}

TEST(Junta, ALineDrawnTwiceCountsOnceInEitherSense) {
  EXPECT_THAT(
      Joined({Line({P(0, 0), P(1, 0)}), Line({P(1, 0), P(0, 0)}), Line({P(0, 0), P(1, 0)}), Line({P(1, 0), P(2, 0)})}),
      ElementsAre(Points{P(0, 0), P(1, 0), P(2, 0)}));
}

TEST(Junta, ALineWithoutExtentIsTakenOut) {
  EXPECT_THAT(Joined({Line({P(0, 0), P(1, 0)}), Line({P(1, 0), P(1, 0)}), Line({P(1, 0), P(2, 0)}), Line({P(7, 7)})}),
              ElementsAre(Points{P(0, 0), P(1, 0), P(2, 0)}));
}

TEST(Junta, WithoutCleaningEveryLineIsKept) {
  CDibujo<int> drawing = Drawing({Line({P(0, 0), P(1, 0)}), Line({P(1, 0), P(0, 0)}), Line({P(7, 7), P(7, 7)})});
  EXPECT_EQ(drawing.Junta(0, 0, true, true, true, 0, 0, false), 2);
  EXPECT_THAT(Paths(drawing), ElementsAre(Points{P(7, 7), P(7, 7)}, Points{P(0, 0), P(1, 0), P(0, 0)}));
}

TEST(Junta, WhatIsClosedDeletedOrNoLineIsLeftAsItIs) {
  CDibujo<int> drawing;
  CLinea<int> deleted = Line({P(1, 0), P(2, 0)}, L"line");
  deleted.SetBorrado(true);
  drawing.Inserta(Line({P(1, 0), P(5, 5), P(2, 9), P(1, 0)}));
  drawing.Inserta(deleted);
  drawing.Inserta(Set({P(1, 0), P(2, 0)}, L"line"));
  drawing.Inserta(Line({P(0, 0), P(1, 0)}));
  EXPECT_EQ(Join(drawing), 0);
  EXPECT_THAT(Paths(drawing), ElementsAre(Points{P(1, 0), P(5, 5), P(2, 9), P(1, 0)}, Points{P(1, 0), P(2, 0)},
                                          Points{P(1, 0), P(2, 0)}, Points{P(0, 0), P(1, 0)}));
}

TEST(Junta, OnlyTheEntitiesOfTheStretchAreJoined) {
  const std::vector<CLinea<int>> lines{Line({P(0, 0), P(1, 0)}), Line({P(1, 0), P(2, 0)}), Line({P(2, 0), P(3, 0)})};
  CDibujo<int> drawing = Drawing(lines);
  EXPECT_EQ(drawing.Junta(1, 1, true, true, true, 0, 0, true), 0);
  EXPECT_EQ(drawing.Junta(1, 0, true, true, true, 0, 0, true), 1);
  EXPECT_THAT(Paths(drawing), ElementsAre(Points{P(0, 0), P(1, 0)}, Points{P(1, 0), P(2, 0), P(3, 0)}));
  EXPECT_EQ(drawing.Junta(9, 5, true, true, true, 0, 0, true), 0);
  EXPECT_EQ(drawing.Cantidad(), 2u);
}

TEST(Junta, LinesTooShortOrTooLongLeaveTheDrawing) {
  const std::vector<CLinea<int>> lines{Line({P(0, 0), P(1, 0)}), Line({P(1, 0), P(2, 0)}), Line({P(8, 8), P(9, 9)})};
  CDibujo<int> least = Drawing(lines), greatest = Drawing(lines);
  least.Junta(0, 0, true, true, true, 3, 0, true);
  greatest.Junta(0, 0, true, true, true, 0, 2, true);
  EXPECT_THAT(Paths(least), ElementsAre(Points{P(0, 0), P(1, 0), P(2, 0)}));
  EXPECT_THAT(Paths(greatest), ElementsAre(Points{P(8, 8), P(9, 9)}));
}

TEST(Junta, AnEmptyDrawingHasNothingToJoin) {
  CDibujo<int> drawing;
  EXPECT_EQ(Join(drawing), 0);
  EXPECT_THAT(Paths(drawing), IsEmpty());
}

/// Distinct segments of a small lattice at three heights: nodes of every degree, rings inside rings.
std::vector<CLinea<int>> Network(std::mt19937& random, int side, int count) {
  CDibujo<int> drawing;
  const auto cell = [&] { return static_cast<int>(random() % static_cast<unsigned>(side)); };
  for (int i = 0; i < count; ++i) {
    const int x = cell(), y = cell(), z = static_cast<int>(random() % 3), way = static_cast<int>(random() % 4);
    const int dx[4] = {1, 0, 1, 1}, dy[4] = {0, 1, 1, -1};
    drawing.Inserta(Line({P(x, y, z), P(x + dx[way], y + dy[way], z)}));
  }
  drawing.BorraDuplicadas(false, false);
  std::vector<CLinea<int>> lines;
  for (unsigned i = 0; i < drawing.Cantidad(); ++i) lines.push_back(drawing[i]);
  return lines;
}

/// How many lines cannot do without an end: half of the ends at nodes where an odd number meets.
std::size_t FewestOpenLines(std::vector<CLinea<int>> const& lines) {
  Points ends;
  for (CLinea<int> const& line : lines) {
    ends.push_back(line.Punto(0));
    ends.push_back(line.Punto(1));
  }
  std::sort(ends.begin(), ends.end());
  std::size_t odd = 0;
  for (auto from = ends.begin(); from != ends.end();) {
    const auto to = std::upper_bound(from, ends.end(), *from);
    odd += static_cast<std::size_t>(to - from) % 2;
    from = to;
  }
  return odd / 2;
}

/// Direction of a step on the lattice, 0 to 7 counter-clockwise from the east.
int Direction(Point const& from, Point const& to) {
  const int dx = to.x - from.x, dy = to.y - from.y;
  const int byStep[3][3] = {{5, 4, 3}, {6, -1, 2}, {7, 0, 1}};
  return byStep[dx + 1][dy + 1];
}

/// A line that passes through a node: where it comes from and where it goes on to.
struct Pass {
  Point node;
  int in, out;
  /// Whether the other one comes from one side of this and goes on to the other.
  [[nodiscard]] bool Crosses(Pass const& o) const {
    const auto turn = [&](int direction) { return (direction - in + 8) % 8; };
    const int end = turn(out);
    return (turn(o.in) < end) != (turn(o.out) < end);
  }
};

std::vector<Pass> Passes(std::vector<Points> const& paths) {
  std::vector<Pass> passes;
  for (Points const& path : paths) {
    const std::size_t steps = path.size() - 1;
    const bool ring = path.front() == path.back();
    for (std::size_t i = ring ? 0 : 1; i < steps; ++i) {
      Point const& before = i == 0 ? path[steps - 1] : path[i - 1];
      passes.push_back({path[i], Direction(path[i], before), Direction(path[i], path[i + 1])});
    }
  }
  return passes;
}

class JuntaNetworks : public testing::TestWithParam<int> {};

TEST_P(JuntaNetworks, NoSegmentIsLostOrDoubledAndNoLineIsOpenWithoutNeed) {
  std::mt19937 random(static_cast<unsigned>(GetParam()));
  const auto lines = Network(random, 4 + GetParam() % 8, 300);
  CDibujo<int> before = Drawing(lines), drawing = before;
  Join(drawing);
  EXPECT_EQ(Segments(drawing), Segments(before));
  std::size_t open = 0;
  for (Points const& path : Paths(drawing)) {
    open += path.front() == path.back() ? 0u : 1u;
    for (Point const& p : path) EXPECT_EQ(p.z, path.front().z);
  }
  EXPECT_LE(open, FewestOpenLines(lines));
}

TEST_P(JuntaNetworks, LinesTouchAtNodesAndDoNotCrossThere) {
  std::mt19937 random(static_cast<unsigned>(GetParam()));
  const auto passes = Passes(Joined(Network(random, 4 + GetParam() % 8, 300)));
  int touching = 0;
  for (std::size_t i = 0; i < passes.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (passes[i].node != passes[j].node) continue;
      ++touching;
      ASSERT_FALSE(passes[i].Crosses(passes[j])) << testing::PrintToString(passes[i].node);
    }
  }
  EXPECT_GT(touching, 0);
}

TEST_P(JuntaNetworks, TheOrderAndTheSenseOfTheSegmentsDoNotMatter) {
  std::mt19937 random(static_cast<unsigned>(GetParam()));
  auto lines = Network(random, 4 + GetParam() % 8, 300);
  const auto expected = Joined(lines);
  for (int round = 0; round < 5; ++round) {
    std::shuffle(lines.begin(), lines.end(), random);
    for (CLinea<int>& line : lines) {
      if (random() % 2 == 0) line.Voltea();
    }
    ASSERT_EQ(Joined(lines), expected) << "round " << round;
  }
}

TEST_P(JuntaNetworks, JoiningAgainChangesNothing) {
  std::mt19937 random(static_cast<unsigned>(GetParam()));
  CDibujo<int> drawing = Drawing(Network(random, 4 + GetParam() % 8, 300));
  Join(drawing);
  auto once = Paths(drawing);
  // A closed line stays where it stands, and the open ones are put behind it.
  EXPECT_EQ(Join(drawing), 0);
  auto twice = Paths(drawing);
  std::sort(once.begin(), once.end());
  std::sort(twice.begin(), twice.end());
  EXPECT_EQ(twice, once);
}

INSTANTIATE_TEST_SUITE_P(Seeds, JuntaNetworks, testing::Range(1, 40));

}  // namespace
