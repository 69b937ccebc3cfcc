#include "host/render/SpaceView.h"

#include <gtest/gtest.h>

#include "host/Failure.h"

namespace Meseta47::host {
namespace {

Canvas seenFrom(Surface const& surface, Direction const& from, PictureSize size = {60, 60}) {
  double units = 0;
  return paintFrom(
      surface, from, size, false, [](auto, auto) {}, units);
}
std::uint32_t pixel(Canvas& canvas, int x, int y) { return canvas.row(y)[static_cast<std::size_t>(x)]; }
int red(std::uint32_t colour) { return static_cast<int>(colour >> 16 & 255U); }
int green(std::uint32_t colour) { return static_cast<int>(colour >> 8 & 255U); }
int blue(std::uint32_t colour) { return static_cast<int>(colour & 255U); }

constexpr std::array<std::uint8_t, 3> kRed{255, 0, 0}, kBlue{0, 0, 255};

/// Two upright squares across the north: a red one in the south, a blue one 10 further north, both 10 by 10.
Surface twoWalls() {
  Surface s;
  for (const double y : {0.0, 10.0}) {
    const auto a = static_cast<std::uint32_t>(s.vertices.size());
    s.vertices.insert(s.vertices.end(), {{0, y, 0}, {10, y, 0}, {0, y, 10}, {10, y, 10}});
    s.triangles.insert(s.triangles.end(), {{a, a + 1, a + 2}, {a + 1, a + 3, a + 2}});
    s.colours.insert(s.colours.end(), 4, y == 0 ? kRed : kBlue);
  }
  return s;
}

TEST(SpaceView, ADirectionIsTwoNumbersAndElevationsEndAtTheZenith) {
  EXPECT_EQ(parseDirection("210,30").azimuth, 210);
  EXPECT_EQ(parseDirection("210,30").elevation, 30);
  EXPECT_EQ(parseDirection("-20.5,-90").azimuth, -20.5);
  EXPECT_EQ(parseDirection("-20.5,-90").elevation, -90);
  for (char const* text :
       {"", "210", "210,", ",30", "210,91", "210,-90.5", "nan,0", "0,nan", "inf,0", "1,2,3", "a,b"}) {
    EXPECT_THROW((void)parseDirection(text), UsageError) << text;
  }
}

TEST(SpaceView, TheNearerOfTwoWallsHidesTheOther) {
  Canvas south = seenFrom(twoWalls(), {180, 0}), north = seenFrom(twoWalls(), {0, 0});
  EXPECT_GT(red(pixel(south, 30, 30)), 2 * blue(pixel(south, 30, 30)));
  EXPECT_GT(blue(pixel(north, 30, 30)), 2 * red(pixel(north, 30, 30)));
}

TEST(SpaceView, FromTheSouthEastIsOnTheRightAndFromTheNorthOnTheLeft) {
  Surface s = twoWalls();
  s.vertices[1][0] = s.vertices[3][0] = s.vertices[5][0] = s.vertices[7][0] = 10;
  s.colours[1] = s.colours[3] = s.colours[5] = s.colours[7] = {0, 255, 0};  // the eastern ends
  Canvas south = seenFrom(s, {180, 0}), north = seenFrom(s, {0, 0});
  EXPECT_GT(green(pixel(south, 55, 30)), green(pixel(south, 5, 30)) + 50);
  EXPECT_GT(green(pixel(north, 5, 30)), green(pixel(north, 55, 30)) + 50);
}

TEST(SpaceView, FromAboveNorthIsUp) {
  Surface s;
  s.vertices = {{0, 0, 0}, {10, 0, 0}, {0, 10, 0}, {10, 10, 0}};
  s.triangles = {{0, 1, 2}, {1, 3, 2}};
  s.colours = {kRed, kRed, kBlue, kBlue};
  Canvas above = seenFrom(s, {180, 90});
  EXPECT_GT(blue(pixel(above, 30, 5)), red(pixel(above, 30, 5)));
  EXPECT_GT(red(pixel(above, 30, 55)), blue(pixel(above, 30, 55)));
}

TEST(SpaceView, AFaceIsSeenAlikeWhicheverWayItRuns) {
  Surface s = twoWalls();
  Canvas one = seenFrom(s, {200, 20});
  for (auto& t : s.triangles) std::swap(t[1], t[2]);
  Canvas other = seenFrom(s, {200, 20});
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x) EXPECT_EQ(pixel(one, x, y), pixel(other, x, y));
  }
}

TEST(SpaceView, WhatIsSeenFillsThePictureAndTheScaleSaysHow) {
  double units = 0;
  const Canvas wide = paintFrom(
      twoWalls(), {180, 0}, {600, 0}, false, [](auto, auto) {}, units);
  EXPECT_EQ(wide.width(), 600);
  EXPECT_EQ(wide.height(), 600);
  EXPECT_NEAR(units, 10 / (600 * 0.94), 1e-9);  // a margin of 3 hundredths on each side
  Surface flat;
  flat.vertices = {{0, 0, 0}, {100, 0, 0}, {0, 10, 0}};
  flat.triangles = {{0, 1, 2}};
  const Canvas low = paintFrom(
      flat, {180, 90}, {400, 0}, false, [](auto, auto) {}, units);
  EXPECT_EQ(low.width(), 400);
  EXPECT_EQ(low.height(), 50);  // not below an eighth
}

TEST(SpaceView, OnAFarPlaceOfTheEarthNothingMoves) {
  Surface far = twoWalls();
  for (auto& v : far.vertices) v = {v[0] + 450000, v[1] + 4480000, v[2] + 600};
  Canvas near = seenFrom(twoWalls(), {210, 30}), there = seenFrom(far, {210, 30});
  int differing = 0;
  for (int y = 0; y < near.height(); ++y) {
    for (int x = 0; x < near.width(); ++x) differing += pixel(near, x, y) != pixel(there, x, y) ? 1 : 0;
  }
  EXPECT_LT(differing, 40);  // of 3,600: samples on the very edges
}

TEST(SpaceView, TheWorkEndsWithWhatAStepThrows) {
  struct Enough {};
  double units = 0;
  EXPECT_THROW((void)paintFrom(
                   twoWalls(), {180, 0}, {60, 60}, false, [](auto, auto) { throw Enough(); }, units),
               Enough);
}

}  // namespace
}  // namespace Meseta47::host
