#include "host/render/Layout.h"

#include <gmock/gmock.h>

#include "host/Failure.h"
#include "host/render/Legend.h"

namespace Meseta47::host {
namespace {

using testing::HasSubstr;

std::string refusalOf(std::string const& size) {
  try {
    (void)parseSize(size);
  } catch (UsageError const& error) {
    return error.what();
  }
  return {};
}

TEST(PictureSize, IsTwoNumbersOrTheLongerOfThem) {
  EXPECT_EQ(parseSize("800x600").width, 800);
  EXPECT_EQ(parseSize("800x600").height, 600);
  EXPECT_EQ(parseSize("1200").width, 1200);
  EXPECT_EQ(parseSize("1200").height, 0);
  EXPECT_EQ(parseSize("1x20000").longest(), 20000);
}

TEST(PictureSize, NoPixelsTooManyAndNoNumbersAreRefused) {
  for (char const* size : {"0", "0x600", "800x0", "-5", "20001", "800x20001"}) {
    EXPECT_THAT(refusalOf(size), HasSubstr("from 1 to 20000 pixels")) << size;
  }
  for (char const* size : {"", "x", "800x", "x600", "800x600x1", "800 600", "big", "1e3", "99999999999"}) {
    EXPECT_THAT(refusalOf(size), HasSubstr("WIDTHxHEIGHT")) << size;
  }
}

constexpr double kLegend = 90, kLegendHeight = 150;

TEST(Layout, TheMapFitsAtOneScaleOnBothAxes) {
  for (auto const& [width, height] : {std::pair{1600, 1200}, {300, 900}, {1200, 250}, {20000, 20000}, {1600, 0}}) {
    for (View const& view : {View{0, 0, 100, 100}, View{-5, 7, 995, 17}, View{4e5, 4e6, 4e5 + 3, 4e6 + 800}}) {
      SCOPED_TRACE(testing::Message() << width << 'x' << height << ' ' << view.width() << " by " << view.height());
      const Layout l = layOut(view, {width, height}, kLegend, kLegendHeight);
      EXPECT_NEAR(l.column(view, view.maxX) - l.column(view, view.minX), view.width() / l.unit, 1e-6);
      EXPECT_NEAR(l.row(view, view.minY) - l.row(view, view.maxY), view.height() / l.unit, 1e-6) << "north is up";
      EXPECT_GE(l.mapX, 0);
      EXPECT_GE(l.mapY, 0);
      EXPECT_LE(l.mapX + l.mapWidth, l.width);
      EXPECT_LE(l.mapY + l.mapHeight, l.height);
      EXPECT_LE(l.legend.x + l.legend.width, l.width) << "the legend is in the picture";
      EXPECT_GE(l.legend.x, l.mapX + l.mapWidth) << "and not on the map";
      EXPECT_LE(l.foot.y + l.foot.height, l.height);
      EXPECT_GE(l.mapWidth * l.unit, view.width() * 0.999);
      EXPECT_GE(l.mapHeight * l.unit, view.height() * 0.999) << "nothing is cut off";
    }
  }
}

TEST(Layout, TwoNumbersAreTheSizeAndOneIsTheLongerSide) {
  const Layout exact = layOut({0, 0, 100, 10}, {800, 600}, kLegend, kLegendHeight);
  EXPECT_EQ(exact.width, 800);
  EXPECT_EQ(exact.height, 600);
  const Layout wide = layOut({0, 0, 100, 50}, {1000, 0}, kLegend, kLegendHeight);
  EXPECT_EQ(wide.width, 1000);
  EXPECT_LT(wide.height, 700);
  const Layout tall = layOut({0, 0, 50, 100}, {1000, 0}, kLegend, kLegendHeight);
  EXPECT_EQ(tall.height, 1000);
  EXPECT_LT(tall.width, 700);
}

TEST(Layout, APictureWithMoreRoomForLettersThanForTheMapIsAllMap) {
  const Layout l = layOut({0, 0, 100, 100}, {64, 64}, kLegend, kLegendHeight);
  EXPECT_TRUE(l.bare);
  EXPECT_EQ(l.mapWidth, 64);
  EXPECT_EQ(l.mapHeight, 64);
}

TEST(ScaleBar, IsRoundAndFitsUnderTheMap) {
  for (const double land : {0.003, 1.0, 47.0, 1234.5, 999999.0}) {
    const Layout l = layOut({0, 0, land, land * 0.7}, {1600, 1200}, kLegend, kLegendHeight);
    const RoundNumber bar = scaleBarLength(l);
    EXPECT_THAT(bar.mantissa, testing::AnyOf(1, 2, 5)) << land;
    EXPECT_LE(bar.value() / l.unit, l.mapWidth / 3.0) << land;
    EXPECT_GT(bar.value() / l.unit, l.mapWidth / 8.0) << land;
  }
}

TEST(ScaleBar, NamesItsLengthWithTheUnitWhenThatIsKnown) {
  EXPECT_EQ(lengthText(200, "m"), "200 m");
  EXPECT_EQ(lengthText(2000, "m"), "2 km");
  EXPECT_EQ(lengthText(500, "ft"), "500 ft");
  EXPECT_EQ(lengthText(0.5, ""), "0.5");
}

}  // namespace
}  // namespace Meseta47::host
