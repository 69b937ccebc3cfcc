#include "support/PlainContours.h"

#include <gmock/gmock.h>

#include "support/ContourFaults.h"

namespace Meseta47::support {

void PrintTo(Point const& p, std::ostream* out) { *out << toText(p) << " at " << p.z; }

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

Mesh triangle(Point a, Point b, Point c) { return {{a, b, c}, {}, {{1, 2, 3}}}; }

std::vector<ContourPiece> piecesIn(Mesh const& mesh, std::int32_t interval) {
  return plainContours(mesh, {interval}).pieces();
}

TEST(PlainContours, ATriangleIsCutAtEveryLevelItPasses) {
  EXPECT_THAT(piecesIn(triangle({0, 0, -15}, {100, 0, 15}, {0, 100, 15}), 10),
              UnorderedElementsAre(pieceBetween({17, 0, -10}, {0, 17, -10}), pieceBetween({50, 0, 0}, {0, 50, 0}),
                                   pieceBetween({83, 0, 10}, {0, 83, 10})));
}

TEST(PlainContours, HalvesGoToTheEvenUnit) {
  EXPECT_THAT(piecesIn(triangle({0, 0, 0}, {5, 0, 2}, {-7, 0, 2}), 1),
              ElementsAre(pieceBetween({-7, 0, 2}, {5, 0, 2}), pieceBetween({-4, 0, 1}, {2, 0, 1})));
}

TEST(PlainContours, VerticesOnALevel) {
  EXPECT_THAT(piecesIn(triangle({0, 0, 10}, {100, 0, 5}, {0, 100, 15}), 10),
              ElementsAre(pieceBetween({0, 0, 10}, {50, 50, 10})));
  EXPECT_THAT(piecesIn(triangle({0, 0, 10}, {100, 0, 15}, {0, 100, 15}), 10), IsEmpty());
  EXPECT_THAT(piecesIn(triangle({0, 0, 10}, {100, 0, 10}, {0, 100, 15}), 10),
              ElementsAre(pieceBetween({0, 0, 10}, {100, 0, 10})));
  EXPECT_EQ(piecesIn(triangle({0, 0, -10}, {100, 0, -10}, {0, 100, -10}), 10).size(), 3U);
}

std::vector<ContourPiece> shoresIn(Mesh const& mesh, std::int32_t interval) {
  return plainContours(mesh, {interval, 1 << 30, true}).pieces();
}

TEST(PlainContours, AShoreIsTheBorderOfWhatIsHigherThanTheLevel) {
  EXPECT_THAT(shoresIn(triangle({0, 0, 5}, {100, 0, 5}, {0, 100, 15}), 10),
              ElementsAre(pieceBetween({0, 50, 10}, {50, 50, 10})));
  EXPECT_THAT(shoresIn(triangle({0, 0, 10}, {100, 0, 10}, {0, 100, 15}), 10),
              ElementsAre(pieceBetween({0, 0, 10}, {100, 0, 10})))
      << "a side on the level with higher ground behind it";
  EXPECT_THAT(shoresIn(triangle({0, 0, 10}, {100, 0, 5}, {0, 100, 15}), 10),
              ElementsAre(pieceBetween({0, 0, 10}, {50, 50, 10})));
  EXPECT_THAT(shoresIn(triangle({0, 0, 10}, {100, 0, 10}, {0, 100, 5}), 10), IsEmpty());
  EXPECT_THAT(shoresIn(triangle({0, 0, 10}, {100, 0, 15}, {0, 100, 15}), 10), IsEmpty());
  EXPECT_THAT(shoresIn(triangle({0, 0, 10}, {100, 0, 10}, {0, 100, 10}), 10), IsEmpty());
}

TEST(PlainContours, TrianglesOfTheFrameAndWithLongSidesAreLeftOut) {
  Mesh mesh{{{0, 0, 5}, {60, 0, 15}, {0, 80, 15}}, {{-9, -9, 0}}, {{1, 2, 3}, {1, 2, -1}}};
  EXPECT_EQ(plainContours(mesh, {10, 100}).pieces().size(), 1U);
  EXPECT_EQ(plainContours(mesh, {10, 99}).pieces().size(), 0U);
}

/// Two triangles over the square of 100, whose shared side runs from (0, 0) to (100, 100).
Mesh square(std::int32_t southWest, std::int32_t southEast, std::int32_t northEast, std::int32_t northWest) {
  return {
      {{0, 0, southWest}, {100, 0, southEast}, {100, 100, northEast}, {0, 100, northWest}}, {}, {{1, 3, 2}, {1, 4, 3}}};
}

TEST(PlainContours, TheOutlineIsWhereOneTriangleEnds) {
  EXPECT_THAT(plainContours(square(5, 5, 15, 15), {10}).onOutline, ElementsAre(Point{0, 50, 10}, Point{100, 50, 10}));
  EXPECT_THAT(plainContours(square(10, 10, 15, 15), {10}).onOutline, ElementsAre(Point{0, 0, 10}, Point{100, 0, 10}));
}

TEST(ContourFaults, EachCheckFindsTheFaultItIsThereFor) {
  const Mesh mesh = square(5, 5, 15, 15);
  const PlainContours plain = plainContours(mesh, {10});
  const ContourLine good{{0, 50, 10}, {50, 50, 10}, {100, 50, 10}};
  const auto all = [&](std::vector<ContourLine> const& lines) {
    return levelFaults(lines, 10) + pieceFaults(piecesOf(lines), plain.distinctPieces()) + openEndFaults(lines, plain) +
           strayFaults(lines, mesh, {10});
  };
  EXPECT_EQ(all({good}), "");
  EXPECT_THAT(levelFaults({{{0, 0, 7}, {1, 0, 7}}}, 10), HasSubstr("not on a level"));
  EXPECT_THAT(levelFaults({{{0, 0, 10}, {1, 0, 20}}}, 10), HasSubstr("goes on to"));
  EXPECT_THAT(levelFaults({{{0, 0, 10}, {0, 0, 10}}}, 10), HasSubstr("twice in a row"));
  EXPECT_THAT(levelFaults({{{0, 0, 10}}}, 10), HasSubstr("1 points"));
  EXPECT_THAT(all({{good[0], good[1]}}), HasSubstr("missing"));
  EXPECT_THAT(all({good, {good[1], good[2]}}), HasSubstr("too many"));
  EXPECT_THAT(openEndFaults({{good[0], good[1]}}, plain), HasSubstr("could go on"));
  EXPECT_THAT(strayFaults({{{40, 20, 10}, {50, 50, 10}}}, mesh, {10}), HasSubstr("on no side"));
  EXPECT_EQ(strayFaults({{{40, 41, 10}, {101, 50, 10}}}, mesh, {10}), "");
}

TEST(ContourFaults, AnEndAmidTheSurfaceNeedsALevelSide) {
  const PlainContours ridge = plainContours(square(10, 5, 10, 5), {10});
  EXPECT_EQ(openEndFaults({{{0, 0, 10}, {100, 100, 10}}}, ridge), "");
  PlainContours bare = ridge;
  bare.onOutline.clear();
  EXPECT_EQ(openEndFaults({{{0, 0, 10}, {100, 100, 10}}}, bare), "") << "two triangles gave it";
  bare.given.pop_back();
  EXPECT_THAT(openEndFaults({{{0, 0, 10}, {100, 100, 10}}}, bare), HasSubstr("amid the surface"));
}

TEST(ContourFaults, OfThreePiecesAtAPlaceTwoGoOnIntoEachOther) {
  const Point hub{0, 0, 10}, east{9, 0, 10}, north{0, 9, 10}, south{0, -9, 10};
  PlainContours plain;
  plain.given = {{pieceBetween(hub, south)}, {pieceBetween(hub, north)}, {pieceBetween(hub, east)}};
  plain.onOutline = {south, hub, north, east};
  EXPECT_EQ(openEndFaults({{south, hub, north}, {hub, east}}, plain), "");
  EXPECT_THAT(openEndFaults({{south, hub}, {hub, north}, {hub, east}}, plain), HasSubstr("two lines end"));
}

TEST(ContourFaults, MeetingsAreExcusedByRoundingAlone) {
  const auto given = [](Point a, Point b, double moved) { return GivenPiece{{a, b}, moved, 0, moved, 0}; };
  const std::vector<ContourLine> touching{{{0, 0, 10}, {0, 10, 10}}, {{0, 5, 20}, {0, 15, 20}}};
  PlainContours plain;
  plain.given = {given({0, 0, 10}, {0, 10, 10}, 0.5), given({0, 5, 20}, {0, 15, 20}, -0.5)};
  EXPECT_EQ(meetings(touching, plain).pairs, 1U);
  EXPECT_EQ(meetings(touching, plain).tooFar, 0U);
  plain.given[0].movedAx = plain.given[0].movedBx = 1.5;
  EXPECT_EQ(meetings(touching, plain).tooFar, 1U);
  EXPECT_EQ(meetings({{{0, 0, 10}, {0, 10, 10}}, {{1, 5, 20}, {1, 15, 20}}}, plain).pairs, 0U);
  EXPECT_EQ(meetings({{{0, 0, 10}, {0, 10, 10}}, {{0, 5, 10}, {0, 15, 10}}}, plain).pairs, 0U) << "one height";
}

}  // namespace
}  // namespace Meseta47::support
