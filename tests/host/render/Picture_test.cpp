#include "host/render/Picture.h"

#include <gmock/gmock.h>
#include <map>

#include "host/Failure.h"
#include "host/HostScenes.h"
#include "host/render/RenderScenes.h"

namespace Meseta47::host {
namespace {

using testing::HasSubstr;

constexpr std::uint32_t kWhite = 0xFFFFFF;

void noStep(unsigned long long, unsigned long long) {}

Canvas paint(Surface const& surface, PictureOptions const& options) {
  PictureFacts facts;
  return paintPicture(surface, options, noStep, facts);
}

std::string refusalOf(Surface const& surface, PictureOptions const& options) {
  try {
    (void)paint(surface, options);
  } catch (Failure const& failure) {
    return failure.what();
  }
  return {};
}

std::uint32_t pixel(Canvas& canvas, int x, int y) { return canvas.row(y)[static_cast<std::size_t>(x)] & kWhite; }

Colour colourAt(Canvas& canvas, int x, int y) { return Colour::ofBytes(pixel(canvas, x, y)); }

/// Without letters, so that all pixels are map.
PictureOptions bare(int side) {
  PictureOptions options;
  options.size = {side, side};
  return options;
}

TEST(Picture, NorthIsUpAndHighGroundIsLight) {
  const Surface s = gridSurface(10, [](int, int y) { return y * 1e-3; });  // hardly a slope: the light is even
  Canvas canvas = paint(s, bare(100));
  EXPECT_GT(lightness(colourAt(canvas, 50, 2)), lightness(colourAt(canvas, 50, 97)) + 0.3F);
}

TEST(Picture, EastIsToTheRight) {
  const Surface s = gridSurface(10, [](int x, int) { return x * 1e-3; });
  Canvas canvas = paint(s, bare(100));
  EXPECT_GT(lightness(colourAt(canvas, 97, 50)), lightness(colourAt(canvas, 2, 50)) + 0.3F);
}

TEST(Picture, OutsideTheDataIsWhiteAndAHoleToo) {
  Surface s = gridSurface(10, [](int x, int) { return double(x); });
  std::erase_if(s.triangles, [&s](auto const& t) {  // the cell from 5,5 to 6,6
    auto const& v = s.vertices;
    return v[t[0]][0] + v[t[1]][0] + v[t[2]][0] > 15.5 && v[t[0]][0] + v[t[1]][0] + v[t[2]][0] < 17.5 &&
           v[t[0]][1] + v[t[1]][1] + v[t[2]][1] > 15.5 && v[t[0]][1] + v[t[1]][1] + v[t[2]][1] < 17.5;
  });
  PictureOptions options = bare(100);
  options.size = {180, 100};  // wider than the land
  Canvas canvas = paint(s, options);
  EXPECT_EQ(pixel(canvas, 5, 50), kWhite);
  EXPECT_EQ(pixel(canvas, 175, 50), kWhite);
  EXPECT_EQ(pixel(canvas, 40 + 55, 45), kWhite) << "the hole";
  EXPECT_NE(pixel(canvas, 40 + 55, 65), kWhite);
}

TEST(Picture, EveryPixelOfAFullSquareIsPainted) {
  const Surface s = gridSurface(7, [](int x, int y) { return x * 3 % 5 + y * 0.1; });
  Canvas canvas = paint(s, bare(150));
  for (int y = 0; y < 150; ++y) {
    for (int x = 0; x < 150; ++x) ASSERT_NE(pixel(canvas, x, y), kWhite) << x << ',' << y;
  }
}

TEST(Picture, BoundsShowAPartOfTheLand) {
  const Surface s = gridSurface(10, [](int x, int y) { return double(x + y); });
  PictureOptions options = bare(100);
  options.bounds = Bounds{2, 3, 4, 100};
  const View view = viewOf(s, options.bounds);
  EXPECT_EQ(view.minX, 2);
  EXPECT_EQ(view.minY, 3);
  EXPECT_EQ(view.maxX, 4);
  EXPECT_EQ(view.maxY, 10) << "no farther than the land";
  PictureFacts facts;
  (void)paintPicture(s, options, noStep, facts);
  EXPECT_EQ(facts.heights.low, 5) << "tints of what is shown";
  EXPECT_EQ(facts.heights.high, 14);
}

TEST(Picture, BoundsBesideTheLandAreRefusedWithWhereItIs) {
  const Surface s = gridSurface(10, [](int, int) { return 1.0; });
  PictureOptions options = bare(100);
  options.bounds = Bounds{20, 20, 30, 30};
  EXPECT_THAT(refusalOf(s, options), testing::AllOf(HasSubstr("--bounds 20,20,30,30"), HasSubstr("to 10.00,10.00")));
}

TEST(Picture, AWallSeenFromAboveIsRefused) {
  Surface wall;
  wall.vertices = {{0, 0, 0}, {10, 0, 0}, {10, 0, 5}};
  wall.triangles = {{0, 1, 2}};
  EXPECT_THAT(refusalOf(wall, bare(100)), HasSubstr("no extent in plan"));
}

TEST(Picture, MoreContoursThanAnyoneCanTellApartAreRefusedWithTheirNumber) {
  const Surface s = gridSurface(10, [](int x, int) { return double(x); });
  PictureOptions options = bare(100);
  options.contours = 0.001;
  EXPECT_THAT(refusalOf(s, options), testing::AllOf(HasSubstr("10,001 levels"), HasSubstr("give 0.2 or more")));
}

TEST(Picture, ContoursAreDarkLinesAtTheirPlace) {
  const Surface s = gridSurface(10, [](int x, int) { return double(x) / 2; });  // the only level inside is 4, at x = 8
  PictureOptions options = bare(150);
  Canvas without = paint(s, options);
  options.contours = 4;
  Canvas with = paint(s, options);
  EXPECT_LT(lightness(colourAt(with, 120, 75)), lightness(colourAt(without, 120, 75)) - 0.05F);
  EXPECT_EQ(pixel(with, 105, 75), pixel(without, 105, 75));
}

TEST(Picture, ClassesAreColoursOfPoints) {
  Surface s = gridSurface(10, [](int, int) { return 0.0; });
  for (auto const& v : s.vertices) s.classes.push_back(v[0] < 5 ? 2 : 6);
  PictureOptions options = bare(100);
  options.classes = true;
  Canvas canvas = paint(s, options);
  std::map<std::uint32_t, int> found[2];
  for (int y = 0; y < 100; ++y) {
    for (int x = 0; x < 100; ++x) {
      if (x < 40 || x > 55) ++found[x > 50][pixel(canvas, x, y)];
    }
  }
  const auto bytes = [](Colour const& c) {
    return static_cast<std::uint32_t>(c.r * 255 + 0.5F) << 16 | static_cast<std::uint32_t>(c.g * 255 + 0.5F) << 8 |
           static_cast<std::uint32_t>(c.b * 255 + 0.5F);
  };
  EXPECT_GT(found[0][bytes(classColour(2))], 500);
  EXPECT_GT(found[1][bytes(classColour(6))], 500);
  EXPECT_EQ(found[0][bytes(classColour(6))], 0);
}

TEST(Picture, ALegendStandsBesideTheMapAndAScaleBarBelow) {
  const Surface s = gridSurface(10, [](int x, int y) { return double(x * y); });
  PictureOptions options;
  options.size = {800, 600};
  Canvas canvas = paint(s, options);
  const auto inked = [&canvas](int fromX, int fromY, int toX, int toY) {
    int count = 0;
    for (int y = fromY; y < toY; ++y) {
      for (int x = fromX; x < toX; ++x) count += pixel(canvas, x, y) != kWhite;
    }
    return count;
  };
  const Layout l = layOut(viewOf(s, std::nullopt), options.size, 60, 60);
  EXPECT_GT(inked(static_cast<int>(l.legend.x), l.mapY, 800, l.mapY + l.mapHeight), 1000);
  EXPECT_GT(inked(l.mapX, l.mapY + l.mapHeight + 2, l.mapX + l.mapWidth, 600), 200);
}

TEST(Picture, FlatLandHasARangeOfHeightsToo) {
  const Surface s = gridSurface(3, [](int, int) { return 12.0; });
  const HeightRange range = heightRangeOf(s, viewOf(s, std::nullopt));
  EXPECT_LT(range.low, 12);
  EXPECT_GT(range.high, 12);
}

TEST(Picture, AFewBirdsDoNotBleachTheLand) {
  const Surface s = gridSurface(40, [](int x, int y) { return x == 20 && y == 20 ? 900.0 : double(x); });
  const HeightRange range = heightRangeOf(s, viewOf(s, std::nullopt));
  EXPECT_EQ(range.low, 0);
  EXPECT_EQ(range.high, 40);
  EXPECT_TRUE(range.higher);
  EXPECT_FALSE(range.lower);
}

TEST(Picture, AnInterruptedPaintingEndsAtOnce) {
  const Surface s = gridSurface(3, [](int, int) { return 1.0; });
  PictureFacts facts;
  EXPECT_THROW((void)paintPicture(
                   s, bare(100), [](auto, auto) { throw Cancelled(); }, facts),
               Cancelled);
}

TEST(Picture, APngBeginsAsOneAndSaysItsSize) {
  const Folder folder;
  Canvas canvas(300, 200);
  OutputFile file(folder.file("p.png"));
  canvas.writePng(file);
  file.commit();
  const Bytes bytes = bytesOf(folder.file("p.png"));
  ASSERT_GT(bytes.size(), 24U);
  EXPECT_EQ(std::string(bytes.begin() + 1, bytes.begin() + 4), "PNG");
  EXPECT_EQ(bytes[18] * 256 + bytes[19], 300);
  EXPECT_EQ(bytes[22] * 256 + bytes[23], 200);
}

}  // namespace
}  // namespace Meseta47::host
