// The ground search on small made-up scenes, each of which could disprove one claim.
#include "classification/CBusquedaSuelo.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <map>
#include <tuple>

#include "classification/GroundScene.h"
#include "model/threads/Codigos.h"

namespace Meseta47 {
namespace {

using test::Changing;
using test::ClassedPoint;
using test::ClassesOf;
using test::Cloud;
using test::GroundSearch;
using test::Land;
using test::QuietApp;
using test::Share;
using testing::Each;
using testing::ElementsAre;

constexpr int kOther = 1, kGroundClass = 2, kNoise = 7;
const Land::Height kPlain = [](double, double) { return 100.0; };

bool InBox(ClassedPoint const& p, double x0, double y0, double x1, double y1) {
  return p.x >= 100 * x0 && p.x <= 100 * x1 && p.y >= 100 * y0 && p.y <= 100 * y1;
}

/// Two thirds of a hectare: hills, two houses, a wood and pits.
std::vector<ClassedPoint> Village(std::uint64_t seed) {
  const Land::Height hills = [](double x, double y) { return 100 + 0.15 * x + 3 * std::sin(y / 15); };
  Land land(seed);
  land.Fly(0, 0, 90, 75, 4, hills);
  std::erase_if(land.points,
                [](ClassedPoint const& p) { return InBox(p, 20, 20, 35, 32) || InBox(p, 60, 40, 70, 55); });
  land.Fly(20, 20, 35, 32, 4, [](double, double) { return 112; });
  land.Fly(60, 40, 70, 55, 4, [](double x, double) { return 118 + 0.3 * std::abs(x - 65); });
  land.Fly(5, 50, 40, 72, 3, [&](double x, double y) { return hills(x, y) + 2 + 10 * land.random.unit(); });
  for (int i = 0; i < 5; ++i) land.Put(45 + 7 * i, 10, 90);
  return land.points;
}

// --- what is found ---

TEST(CBusquedaSuelo, AFlatSlabIsGroundWholly) {
  const QuietApp app;
  GroundSearch search;
  EXPECT_THAT(search.Classes(Land(1).Fly(0, 0, 60, 60, 2, kPlain).points), Each(kGroundClass));
  EXPECT_EQ(search.summary.suelo, 7200U);
  EXPECT_EQ(search.summary.aceptados, 7200U);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

TEST(CBusquedaSuelo, AHouseLeavesThePlainItStandsOn) {
  const QuietApp app;
  Land land(2);
  land.Fly(0, 0, 80, 80, 2, kPlain);
  std::erase_if(land.points, [](ClassedPoint const& p) { return InBox(p, 30, 30, 45, 50); });
  land.Fly(30, 30, 45, 50, 2, [](double, double) { return 106; });
  const std::vector<int> classes = GroundSearch().Classes(land.points);
  const auto roof = [](ClassedPoint const& p) { return p.z > 10500; };
  EXPECT_EQ(Share(land.points, classes, kGroundClass, roof), 0);
  EXPECT_GE(Share(land.points, classes, kGroundClass, std::not_fn(roof)), 0.999);
}

TEST(CBusquedaSuelo, ABuildingAloneIsAllThereIsToStandOn) {
  const QuietApp app;
  EXPECT_THAT(GroundSearch().Classes(Land(3).Fly(0, 0, 40, 25, 4, [](double, double) { return 12; }).points),
              Each(kGroundClass));
}

TEST(CBusquedaSuelo, TreesOnASteepSlopeAreToldFromIt) {
  const QuietApp app;
  const Land::Height slope = [](double x, double) { return 100 + 0.7 * x; };
  Land land(4);
  land.Fly(0, 0, 80, 60, 3, slope);
  const std::size_t ground = land.points.size();
  land.Fly(
      10, 10, 70, 50, 1, [&](double x, double y) { return slope(x, y) + 4 + 8 * land.random.unit(); }, 5);
  const std::vector<int> classes = GroundSearch().Classes(land.points);
  EXPECT_GE(Share(land.points, classes, kGroundClass, [](ClassedPoint const& p) { return p.clase == 1; }), 0.99);
  EXPECT_LE(Share(land.points, classes, kGroundClass, [](ClassedPoint const& p) { return p.clase == 5; }), 0.01);
  EXPECT_GT(ground, 10000U);
}

TEST(CBusquedaSuelo, ACliffKeepsTheLandAboveAndBelow) {
  const QuietApp app;
  Land land(5);
  land.Fly(0, 0, 100, 60, 3, [](double x, double) { return x < 50 ? 100 : 110; });
  const std::vector<int> classes = GroundSearch().Classes(land.points);
  EXPECT_GE(Share(land.points, classes, kGroundClass, [](ClassedPoint const& p) { return p.x > 5000; }), 0.98);
  EXPECT_GE(Share(land.points, classes, kGroundClass, [](ClassedPoint const& p) { return p.x <= 5000; }), 0.999);
}

TEST(CBusquedaSuelo, AGapOfWaterDividesNothing) {
  const QuietApp app;
  Land land(6);
  land.Fly(0, 0, 40, 60, 3, kPlain).Fly(110, 0, 150, 60, 3, [](double, double) { return 103; });
  EXPECT_GE(Share(land.points, GroundSearch().Classes(land.points), kGroundClass, [](auto const&) { return true; }),
            0.999);
}

TEST(CBusquedaSuelo, PitsAreNoise) {
  const QuietApp app;
  Land land(7);
  land.Fly(0, 0, 60, 60, 3, kPlain).Put(20, 20, 60).Put(40, 40, 96).Put(40.8, 40.3, 96.2).Put(41.2, 41, 96.1);
  const std::vector<int> classes = GroundSearch().Classes(land.points);
  EXPECT_THAT(std::vector<int>(classes.end() - 4, classes.end()), Each(kNoise));
  EXPECT_GE(Share(land.points, classes, kGroundClass, [](ClassedPoint const& p) { return p.z > 9900; }), 0.999);
}

TEST(CBusquedaSuelo, NothingButNoiseIsMostlyLeftAlone) {
  const QuietApp app;
  Land land(8);
  land.Fly(0, 0, 60, 60, 4, [&](double, double) { return 80 * land.random.unit(); });
  const std::vector<int> classes = GroundSearch().Classes(land.points);
  ASSERT_EQ(classes.size(), land.points.size());
  EXPECT_LE(Share(land.points, classes, kGroundClass, [](auto const&) { return true; }), 0.25);
}

TEST(CBusquedaSuelo, OfAScannedWallAtMostTheFootIsGround) {
  const QuietApp app;
  Land land(9);
  land.Fly(0, 0, 20, 0.3, 2000, [&](double, double) { return 15 * land.random.unit(); });
  const std::vector<int> classes = GroundSearch().Classes(land.points);
  ASSERT_EQ(classes.size(), land.points.size());
  EXPECT_LE(Share(land.points, classes, kGroundClass, [](ClassedPoint const& p) { return p.z > 300; }), 0.02);
}

TEST(CBusquedaSuelo, ATightBandTakesInLess) {
  const QuietApp app;
  Land land(10);
  land.Fly(0, 0, 60, 60, 4, [&](double, double) { return 100 + 0.4 * land.random.unit(); });
  GroundSearch rough, tight;
  rough.how.Banda = CDataSuelo::kBandaAncha;
  tight.how.Banda = CDataSuelo::kBandaEstrecha;
  rough.Classes(land.points);
  tight.Classes(land.points);
  EXPECT_LT(tight.summary.suelo, rough.summary.suelo);
}

TEST(CBusquedaSuelo, TheBandIsAsWideAsTheGroundIsRough) {
  const QuietApp app;
  Land land(11);
  const Land::Height smooth = [](double, double) { return 100.0; };
  const Land::Height rough = [&](double, double) { return 100 + 0.8 * land.random.unit(); };
  land.Fly(0, 0, 60, 60, 8, smooth).Fly(60, 0, 120, 60, 2, rough);
  const std::size_t soil = land.points.size();
  const Land::Height herbs = [](double, double) { return 100.22; };
  land.Fly(5, 5, 55, 55, 1, herbs);
  const auto found = [&](int band) {
    GroundSearch search;
    search.how.Banda = band;
    return search.Classes(land.points);
  };
  const auto herbsIn = [&](std::vector<int> const& classes) {
    return std::count(classes.begin() + static_cast<std::ptrdiff_t>(soil), classes.end(), kGroundClass);
  };
  const std::vector<int> wide = found(CDataSuelo::kBandaAncha), tight = found(CDataSuelo::kBandaEstrecha),
                         local = found(CDataSuelo::kBandaDelLugar);
  const auto isRough = [](ClassedPoint const& p) { return p.x > 6300; };
  const double rough90 = 0.9 * Share(land.points, wide, kGroundClass, isRough);
  EXPECT_GT(Share(land.points, local, kGroundClass, isRough), rough90);
  EXPECT_LT(Share(land.points, tight, kGroundClass, isRough), rough90);
  EXPECT_LT(herbsIn(local) * 20, herbsIn(wide)) << "on smooth ground what stands a hand above it is told from it";
}

TEST(CBusquedaSuelo, AWiderWindowFindsAWiderHall) {
  const QuietApp app;
  Land land(11);
  land.Fly(0, 0, 160, 160, 1, kPlain);
  std::erase_if(land.points, [](ClassedPoint const& p) { return InBox(p, 40, 40, 120, 120); });
  land.Fly(40, 40, 120, 120, 1, [](double, double) { return 112; });
  const auto hall = [](ClassedPoint const& p) { return p.z > 11100; };
  GroundSearch usual, wide;
  wide.how.Ventana = 50;
  EXPECT_GE(Share(land.points, usual.Classes(land.points), kGroundClass, hall), 0.5);
  EXPECT_EQ(Share(land.points, wide.Classes(land.points), kGroundClass, hall), 0);
}

// --- few points, and points astray ---

TEST(CBusquedaSuelo, ThreePointsAreGroundAndTwoAreTooFew) {
  const QuietApp app;
  std::vector<ClassedPoint> points{{0, 0, 100}, {500, 0, 110}, {0, 500, 105}};
  EXPECT_THAT(GroundSearch().Classes(points), Each(kGroundClass));
  points.pop_back();
  CDibujo<int> drawing = Cloud(points, test::kCentimetres);
  EXPECT_EQ(GroundSearch().Run(drawing), kPocosPuntos);
}

TEST(CBusquedaSuelo, PointsInOneLineAndInOnePlaceAreGround) {
  const QuietApp app;
  std::vector<ClassedPoint> line, place;
  for (int i = 0; i < 200; ++i) {
    line.push_back({100 * i, 200 * i, 1000, 1});
    place.push_back({50, 50, 1000, 1});
  }
  EXPECT_THAT(GroundSearch().Classes(line), Each(kGroundClass));
  EXPECT_THAT(GroundSearch().Classes(place), Each(kGroundClass));
}

TEST(CBusquedaSuelo, APointFarAstrayIsToldAndChangesNothing) {
  const QuietApp app;
  Land land(12);
  land.Fly(0, 0, 40, 40, 2, kPlain, 5).Put(9e6, 9e6, 100, 5);
  CDibujo<int> drawing = Cloud(land.points, test::kCentimetres);
  EXPECT_EQ(GroundSearch().Run(drawing), kNubeDispersa);
  EXPECT_THAT(ClassesOf(drawing), Each(5));
}

// --- classes ---

TEST(CBusquedaSuelo, WhatTakesNoPartStaysAndWhatWasGroundGoes) {
  const QuietApp app;
  Land land(13);
  land.Fly(0, 0, 60, 60, 3, kPlain, 9).Fly(0, 0, 60, 60, 3, kPlain, 1);
  land.Put(30, 30, 108, 2).Put(31, 30, 108, 5).Put(30, 31, 108, 9);
  GroundSearch search;
  search.data = Changing({L"*"}, {L"9"});
  const std::vector<int> classes = search.Classes(land.points);
  EXPECT_THAT(std::vector<int>(classes.end() - 3, classes.end()), ElementsAre(kOther, 5, 9));
  EXPECT_EQ(Share(land.points, classes, 9, [](ClassedPoint const& p) { return p.clase == 9; }), 1);
  EXPECT_EQ(search.summary.aceptados, 10802U);
}

TEST(CBusquedaSuelo, TheClassesAskedForAreGiven) {
  const QuietApp app;
  Land land(14);
  land.Fly(0, 0, 40, 40, 3, kPlain).Put(20, 20, 50);
  GroundSearch search;
  search.how.Tipo = CInfoClasificacion(22, 0.0, L"");
  search.how.Ruido = CInfoClasificacion(33, 0.0, L"");
  const std::vector<int> classes = search.Classes(land.points);
  EXPECT_EQ(classes.back(), 33);
  EXPECT_EQ(classes.front(), 22);
}

// --- what must not matter ---

std::vector<int> ByThreads(std::vector<ClassedPoint> const& points, unsigned threads) {
  const QuietApp app(threads);
  return GroundSearch().Classes(points);
}

TEST(CBusquedaSuelo, ThreadsDoNotMatter) {
  const std::vector<ClassedPoint> points = Village(20);
  const std::vector<int> one = ByThreads(points, 1);
  ASSERT_EQ(one.size(), points.size());
  EXPECT_EQ(ByThreads(points, 2), one);
  EXPECT_EQ(ByThreads(points, 4), one);
}

TEST(CBusquedaSuelo, LookingAtEverythingAgainInEachRoundFindsNothingElse) {
  const QuietApp app;
  // Steep waves, which the openings cut to pieces and growth finds again, round by round; bushes stop it here and
  // there. In stripes a twentieth of the points is left: the minima there see three times as far as those beside them,
  // and have to look again when one of those is taken in.
  const Land::Height waves = [](double x, double y) { return 100 + 6 * std::sin(x / 7) + 5 * std::sin(y / 6); };
  Land land(3);
  land.Fly(0, 0, 160, 90, 4, waves);
  land.Fly(0, 0, 160, 90, 0.6, [&](double x, double y) { return waves(x, y) + 2.5 * land.random.unit(); });
  std::erase_if(land.points, [&](ClassedPoint const& p) { return p.x / 2500 % 2 == 1 && land.random.unit() > 0.06; });
  const auto found = [&](bool shortcuts) {
    CDibujo<int> drawing = Cloud(land.points, test::kCentimetres);
    CBusquedaSuelo search(test::kCentimetres, CDataTriangulacion());
    search.constantes.atajos = shortcuts;
    EXPECT_EQ(search.Busca(drawing, CDataSuelo()), kHecho);
    return ClassesOf(drawing);
  };
  EXPECT_EQ(found(true), found(false));
}

TEST(CBusquedaSuelo, OrderAndRepetitionOfPointsDoNotMatter) {
  const QuietApp app;
  std::vector<ClassedPoint> points = Village(21);
  // Coarse steps put many points at one place in plan, on sides of triangles, and on common circles.
  for (ClassedPoint& p : points) {
    p.x -= p.x % 25;
    p.y -= p.y % 50;
  }
  std::map<std::tuple<int, int, int>, int> expected;
  const std::vector<int> once = GroundSearch().Classes(points);
  ASSERT_EQ(once.size(), points.size());
  for (std::size_t i = 0; i < points.size(); ++i) expected[{points[i].x, points[i].y, points[i].z}] = once[i];

  support::Random(22).shuffle(points);
  const std::vector<int> shuffled = GroundSearch().Classes(points);
  for (std::size_t i = 0; i < points.size(); ++i) {
    ASSERT_EQ(shuffled[i], (expected[{points[i].x, points[i].y, points[i].z}])) << "point " << i;
  }
}

TEST(CBusquedaSuelo, PointsThatStandTwiceChangeNothing) {
  const QuietApp app;
  std::vector<ClassedPoint> points = Village(26);
  const std::vector<int> once = GroundSearch().Classes(points);
  const std::size_t n = points.size();
  // A few, scattered, so that the side of the cells stays what it was.
  for (std::size_t i = 0; i < n; i += 50) points.push_back(points[i]);
  const std::vector<int> again = GroundSearch().Classes(points);
  ASSERT_EQ(again.size(), points.size());
  EXPECT_EQ(std::vector<int>(again.begin(), again.begin() + static_cast<std::ptrdiff_t>(n)), once);
  for (std::size_t i = n; i < again.size(); ++i) ASSERT_EQ(again[i], once[50 * (i - n)]) << "copy " << i - n;
}

TEST(CBusquedaSuelo, EntitiesOfOneDrawingAreOneCloud) {
  const QuietApp app;
  const std::vector<ClassedPoint> points = Village(23);
  const std::size_t half = points.size() / 2;
  CDibujo<int> drawing =
      Cloud({points.begin(), points.begin() + static_cast<std::ptrdiff_t>(half)}, test::kCentimetres);
  drawing.Suma(Cloud({points.begin() + static_cast<std::ptrdiff_t>(half), points.end()}, test::kCentimetres), false, 0);
  ASSERT_EQ(drawing.Cantidad(), 2U);
  ASSERT_EQ(GroundSearch().Run(drawing), kHecho);
  EXPECT_EQ(ClassesOf(drawing), GroundSearch().Classes(points));
}

TEST(CBusquedaSuelo, FeetGiveWhatMetresGive) {
  const QuietApp app;
  const std::vector<ClassedPoint> metres = Village(24);
  std::vector<ClassedPoint> feet = metres;
  const auto scaled = [](int v) { return static_cast<int>(std::lround(v / 0.3048)); };
  for (ClassedPoint& p : feet) p = {scaled(p.x), scaled(p.y), scaled(p.z), p.clase};
  GroundSearch search;
  search.metres = 0.3048;
  const std::vector<int> inFeet = search.Classes(feet), inMetres = GroundSearch().Classes(metres);
  ASSERT_EQ(inFeet.size(), inMetres.size());
  double differ = 0;
  for (std::size_t i = 0; i < inFeet.size(); ++i) differ += inFeet[i] != inMetres[i] ? 1 : 0;
  EXPECT_LE(differ / static_cast<double>(inFeet.size()), 0.01) << "rounding and the place of the cells differ, no more";
}

TEST(CBusquedaSuelo, ATileWithEnoughOfItsNeighboursIsItsPartOfTheWhole) {
  const QuietApp app;
  Land land(25);
  const Land::Height hills = [](double x, double y) { return 100 + 0.2 * x + 4 * std::sin(y / 20) * std::sin(x / 30); };
  land.Fly(0, 0, 320, 60, 4, hills);
  land.Fly(0, 0, 320, 60, 0.4, [&](double x, double y) { return hills(x, y) + 9 * land.random.unit(); });
  const std::vector<int> whole = GroundSearch().Classes(land.points);
  std::vector<ClassedPoint> tile;
  std::vector<int> expected;
  constexpr int kFrom = 16000, kTo = 20000, kHalo = 9000;  // a tile of 40 m, and 90 m of what lies on either side
  for (std::size_t i = 0; i < land.points.size(); ++i) {
    if (land.points[i].x < kFrom - kHalo || land.points[i].x > kTo + kHalo) continue;
    tile.push_back(land.points[i]);
    expected.push_back(whole[i]);
  }
  const std::vector<int> found = GroundSearch().Classes(tile);
  ASSERT_EQ(found.size(), tile.size());
  for (std::size_t i = 0; i < tile.size(); ++i) {
    if (tile[i].x >= kFrom && tile[i].x <= kTo) {
      ASSERT_EQ(found[i], expected[i]) << tile[i].x << ' ' << tile[i].y;
    }
  }
}

}  // namespace
}  // namespace Meseta47
