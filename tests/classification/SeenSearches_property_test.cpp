// The searches by colour, by intensity and by jumps of intensity against their plain rules over the same mesh: on the
// hard families and on real clouds, in classes and lists; and against one another.
#include <gmock/gmock.h>
#include <numeric>

#include "classification/SearchScene.h"
#include "classification/SeenScene.h"
#include "model/terrain/CDataSacaLimites.h"
#include "planar/CTriangulacion.h"
#include "support/PlainSearches.h"
#include "support/PlanarSizes.h"
#include "support/RealClouds.h"

namespace Meseta47 {
namespace {

using support::Family;
using support::HardCloud;
using support::Point;
using support::Triangle;
using test::ClassesOf;
using test::ColourSearch;
using test::IntensitySearch;
using test::JumpSearch;
using test::QuietApp;
using test::Seen;
using test::SeenPoint;

/// A cloud and the mesh that it spills.
struct Scene {
  explicit Scene(std::vector<SeenPoint> itsPoints, CDataSemilla const& itsSeed = {0, 0, 0, 0})
      : seen(std::move(itsPoints)), seed(itsSeed), triangles(test::SpilledOf(Seen(seen, seed))) {
    for (SeenPoint const& p : seen) places.push_back({p.x, p.y, p.z});
  }
  [[nodiscard]] CDibujo<int> Drawing() const { return Seen(seen, seed); }

  std::vector<SeenPoint> seen;
  CDataSemilla seed;
  std::vector<Triangle> triangles;
  std::vector<Point> places;
};

int Off(CCondicionHRGB const& c, SeenPoint const& p) {
  return std::max({std::abs(c.r - p.colour[0]), std::abs(c.g - p.colour[1]), std::abs(c.b - p.colour[2])});
}

std::int64_t Scaled(double length, CDataSemilla const& seed) {
  return static_cast<std::int64_t>(length * seed.Precision());
}

std::vector<support::PlainCondition> Plain(std::vector<CCondicionHRGB> const& when, Scene const& scene) {
  std::vector<support::PlainCondition> plain;
  for (CCondicionHRGB const& c : when) {
    plain.push_back({[c, &scene](std::size_t p) { return Off(c, scene.seen[p]) < c.tolerancia; },
                     [c, &scene](std::size_t p) { return Off(c, scene.seen[p]) <= c.tolerancia; },
                     Scaled(c.altura, scene.seed)});
  }
  return plain;
}
std::vector<support::PlainCondition> Plain(std::vector<CCondicionHIntensidad> const& when, Scene const& scene) {
  std::vector<support::PlainCondition> plain;
  for (CCondicionHIntensidad const& c : when) {
    const auto within = [c, &scene](std::size_t p) {
      return c.minimo <= scene.seen[p].intensity && scene.seen[p].intensity <= c.maximo;
    };
    plain.push_back({within, within, Scaled(c.altura, scene.seed)});
  }
  return plain;
}

/// The outline of some points of a cloud, and the class for what lies within, as the library's own operations give it.
void Outline(CDibujo<int>& drawing, std::vector<CCoor3D<int>> points, double distance, unsigned char clase,
             int height) {
  CSetPuntos<int> set(L"nuevo");
  set.swap(points);
  CDibujo<int> found(drawing.semilla), outlines(drawing.semilla);
  found.Inserta(set);
  found.BorraDuplicadas(true, false);
  if (found.Cantidad() == 0) return;
  CTriangulacion triangulation(drawing.semilla, CDataTriangulacion());
  CDataSacaLimites how;
  how.distancia = distance;
  how.superficieMinima = -1;
  ASSERT_EQ(triangulation.LimiteDibujo(found, outlines, &how, 1, 0), kHecho);
  outlines.Sort(3, true, -1);
  unsigned changed = 0;
  ASSERT_EQ(drawing.ClasificarPuntosSegunLimite(outlines, CInfoClasificacion(clase, 0.0, L""), changed,
                                                {CInfoClasificacion(0, 0.0, L"_###COMODIN###")}, {}, height, height,
                                                nullptr, nullptr, nullptr),
            1);
}

/// The classes of a search by conditions, from the plain rules and the library's outlines.
template <class Condition>
std::vector<int> ExpectedClasses(Scene const& scene, std::vector<Condition> const& when, double distance) {
  const std::vector<int> takers = support::plainConditions(scene.places, scene.triangles, Plain(when, scene),
                                                           static_cast<double>(Scaled(distance, scene.seed)));
  std::vector<std::vector<CCoor3D<int>>> groups(when.size());
  CDibujo<int> drawing = scene.Drawing();
  for (std::size_t p = 0; p < takers.size(); ++p) {
    CCoor3D<int> const& point = drawing[0].Punto(static_cast<int>(p));
    if (takers[p] >= 0) groups[static_cast<std::size_t>(takers[p])].push_back(point);
    for (std::size_t c = 0; c < when.size(); ++c) {
      if (when[c].tipo != point.clasificacion) continue;
      groups[c].push_back(point);
      break;
    }
  }
  for (std::size_t p = 0; p < takers.size(); ++p) {
    if (takers[p] < 0) continue;
    const auto clase = static_cast<unsigned char>(when[static_cast<std::size_t>(takers[p])].tipo);
    drawing[0].SetClasificacion(CInfoClasificacion(clase, 0.0, L""), static_cast<int>(p));
  }
  for (std::size_t c = 0; c < when.size();) {
    std::vector<CCoor3D<int>> together;
    std::size_t next = c;
    for (; next < when.size() && when[next].tipo == when[c].tipo; ++next) {
      together.insert(together.end(), groups[next].begin(), groups[next].end());
    }
    Outline(drawing, together, distance, static_cast<unsigned char>(when[c].tipo),
            static_cast<int>(Scaled(when[c].altura, scene.seed)));
    c = next;
  }
  return ClassesOf(drawing);
}

template <class Search, class Condition>
std::vector<int> FoundClasses(Scene const& scene, std::vector<Condition> const& when, double distance) {
  CDibujo<int> drawing = scene.Drawing();
  Search search;
  search.when = when;
  search.distance = distance;
  EXPECT_EQ(search.Run(drawing), kHecho);
  return ClassesOf(drawing);
}

std::vector<int> ExpectedJumps(Scene const& scene, int difference, double distance) {
  std::vector<std::int64_t> values;
  for (SeenPoint const& p : scene.seen) values.push_back(p.intensity);
  const std::vector<bool> jumps = support::plainJumps(values, scene.triangles, difference);
  CDibujo<int> drawing = scene.Drawing();
  std::vector<CCoor3D<int>> found;
  for (std::size_t p = 0; p < jumps.size(); ++p) {
    if (!jumps[p]) continue;
    found.push_back(drawing[0].Punto(static_cast<int>(p)));
    drawing[0].SetClasificacion(CInfoClasificacion(9, 0.0, L""), static_cast<int>(p));
  }
  Outline(drawing, found, distance, 9, 2147483647);
  return ClassesOf(drawing);
}

std::vector<int> FoundJumps(Scene const& scene, int difference, double distance) {
  CDibujo<int> drawing = scene.Drawing();
  JumpSearch search;
  search.difference = difference;
  search.distance = distance;
  EXPECT_EQ(search.Run(drawing), kHecho);
  return ClassesOf(drawing);
}

std::size_t Differences(std::vector<int> const& a, std::vector<int> const& b) {
  std::size_t n = 0;
  for (std::size_t i = 0; i < a.size(); ++i) n += a[i] != b[i] ? 1U : 0U;
  return n;
}

/// Overlapping, of two classes that alternate, one of them met in the cloud already.
const std::vector<CCondicionHRGB> kColours{{60, 100, 100, 5, 0.5F, 90},
                                           {120, 100, 60, 6, 0.2F, 70},
                                           {130, 90, 60, 6, 3.0F, 80},
                                           {200, 100, 200, 5, 0.1F, 100}};
const std::vector<CCondicionHIntensidad> kIntensities{
    {0, 4000, 5, 0.5F}, {3000, 40'000, 6, 0.2F}, {30'000, 65'535, 6, 2}};

/// Searches a scene in all ways; answers how many points the plain rules gave a class.
std::size_t SearchAll(Scene const& scene, double distance, int difference) {
  const std::vector<int> before = ClassesOf(scene.Drawing());
  const std::vector<int> byColour = ExpectedClasses(scene, kColours, distance);
  EXPECT_TRUE(FoundClasses<ColourSearch>(scene, kColours, distance) == byColour);
  const std::vector<int> byIntensity = ExpectedClasses(scene, kIntensities, distance);
  EXPECT_TRUE(FoundClasses<IntensitySearch>(scene, kIntensities, distance) == byIntensity);
  std::size_t changed = Differences(before, byColour) + Differences(before, byIntensity);
  for (const int by : {difference, -difference}) {
    const std::vector<int> jumps = ExpectedJumps(scene, by, distance);
    EXPECT_TRUE(FoundJumps(scene, by, distance) == jumps) << by;
    changed += Differences(before, jumps);
  }
  return changed;
}

void ExpectSameLists(Scene const& scene, double height) {
  const std::vector<support::PlainRise> plain =
      support::plainRises(scene.places, scene.triangles, Scaled(height, scene.seed));
  CDibujo<int> drawing = scene.Drawing();
  std::vector<CCondicionHRGB> colours;
  std::vector<CCondicionHIntensidad> intensities;
  EXPECT_EQ(ColourSearch().List(drawing, height, colours), kHecho);
  EXPECT_EQ(IntensitySearch().List(drawing, height, intensities), kHecho);
  ASSERT_EQ(colours.size(), plain.size());
  ASSERT_EQ(intensities.size(), plain.size());
  for (std::size_t i = 0; i < plain.size(); ++i) {
    SeenPoint const& shown = scene.seen[plain[i].shown];
    const auto rise = static_cast<float>(static_cast<double>(plain[i].height) / scene.seed.Precision());
    ASSERT_EQ(Off(colours[i], shown), 0) << i;
    ASSERT_EQ(colours[i].altura, rise) << i;
    ASSERT_EQ(intensities[i].minimo, shown.intensity) << i;
    ASSERT_EQ(intensities[i].altura, rise) << i;
  }
}

class SearchedFamilies : public testing::TestWithParam<HardCloud> {};

/// Points of a family with looks of their own; a third of them stands as high as the family is wide.
std::vector<SeenPoint> Looking(std::vector<Point> const& points, std::uint64_t seed) {
  support::Random random(seed);
  const auto [low, high] =
      std::minmax_element(points.begin(), points.end(), [](Point const& a, Point const& b) { return a.x < b.x; });
  const std::int64_t width = std::int64_t{high->x} - low->x;
  const int tall = static_cast<int>(std::clamp<std::int64_t>(width / 4, 10, 500'000'000));
  std::vector<SeenPoint> seen;
  for (Point const& p : points) {
    const int z = random.between(0, 2) == 0 ? random.between(tall / 2, tall) : random.between(0, tall / 50 + 1);
    seen.push_back({p.x,
                    p.y,
                    z,
                    random.between(0, 3) == 0 ? random.between(0, 65'535) : random.between(0, 9'000),
                    {random.between(0, 255), random.between(40, 160), random.between(0, 255)},
                    static_cast<unsigned char>(random.between(0, 9) == 0 ? 6 : 2)});
  }
  return seen;
}

TEST_P(SearchedFamilies, FindWhatThePlainRulesFindOnTheSameMesh) {
  const QuietApp app(2);
  const Scene scene(Looking(GetParam().points(), 5), {3, 0, 0, 0});
  const double reach = GetParam().kind == Family::RegularGrid ? 2'500 : 40;
  const std::size_t changed = SearchAll(scene, reach, 6'000);
  ExpectSameLists(scene, 0.05);
  if (support::hasOrdinarySpread(GetParam().kind)) {
    EXPECT_GT(changed, GetParam().size / 50);
  }
}

INSTANTIATE_TEST_SUITE_P(All, SearchedFamilies, testing::ValuesIn(support::hardClouds({60, 3'000}, 11)),
                         [](auto const& cloud) { return cloud.param.testName(); });

// On a lattice, with a distance of 1, a spread goes along the rows, and no triangle is small enough for an outline.
TEST(SearchedLattices, SpreadAsThePlainRulesSay) {
  const QuietApp app;
  std::size_t spread = 0;
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    support::Random random(seed);
    std::vector<SeenPoint> cloud;
    for (int x = 0; x < 40; ++x) {
      for (int y = 0; y < 40; ++y) {
        if (random.between(0, 2) == 0) continue;
        cloud.push_back({x,
                         y,
                         random.between(0, 12),
                         random.between(0, 300),
                         {random.between(0, 255), random.between(40, 160), random.between(0, 255)}});
      }
    }
    random.shuffle(cloud);
    const Scene scene(cloud);
    EXPECT_GT(SearchAll(scene, 1, 150), 0U);
    std::vector<CCondicionHRGB> high = kColours;
    for (CCondicionHRGB& c : high) c.altura += 2;
    const std::vector<int> wide = FoundClasses<ColourSearch>(scene, high, 1);
    EXPECT_TRUE(wide == ExpectedClasses(scene, high, 1)) << seed;
    spread += Differences(wide, FoundClasses<ColourSearch>(scene, high, 0));
  }
  EXPECT_GT(spread, 100U) << "nothing was found by the spread";
}

/// The plain points of a LAS file without compression, in hundredths of its unit.
std::vector<SeenPoint> PointsOf(std::string const& bytes) {
  const auto number = [&bytes](std::size_t at, auto zero) {
    std::memcpy(&zero, bytes.data() + at, sizeof zero);
    return zero;
  };
  const std::size_t start = number(96, std::uint32_t{}), length = number(105, std::uint16_t{});
  const unsigned format = number(104, std::uint8_t{}), count = number(107, std::uint32_t{});
  std::vector<SeenPoint> points;
  for (std::size_t at = start; points.size() < count; at += length) {
    SeenPoint& p = points.emplace_back(SeenPoint{number(at, int{}), number(at + 4, int{}), number(at + 8, int{})});
    p.intensity = number(at + 12, std::uint16_t{});
    p.clase = number(at + 15, std::uint8_t{}) & 31;
    if (format != 3) continue;
    for (std::size_t c = 0; c < 3; ++c) p.colour[c] = number(at + 28 + 2 * c, std::uint16_t{}) & 255;
  }
  return points;
}

class SearchedRealClouds : public testing::TestWithParam<char const*> {};

TEST_P(SearchedRealClouds, FindWhatThePlainRulesFindOnTheSameMesh) {
  const auto file = support::realCloud(GetParam());
  if (!file) GTEST_SKIP() << support::missingCloud(GetParam());
  const QuietApp app;
  std::vector<SeenPoint> points = PointsOf(BytesOf(CString::DesdeUtf8(file->string())));
  // Around the first, as the frame must fit; and a quarter of the cloud in a quick build.
  const SeenPoint first = points.front();
  for (SeenPoint& p : points) p.x -= first.x, p.y -= first.y;
  if (!test::kFullSize) points.resize(points.size() / 4);
  const Scene scene(std::move(points), {2, 0, 0, 0});
  EXPECT_GT(SearchAll(scene, 10, 40), scene.seen.size() / 100);
  ExpectSameLists(scene, 2);
}

INSTANTIATE_TEST_SUITE_P(All, SearchedRealClouds, testing::Values("autzen_trim.las", "Megaplot.las", "sample_c.las"),
                         [](auto const& name) {
                           const std::string file = name.param;
                           return file.substr(0, file.find('.'));
                         });

// --- searches against one another ---

TEST(SeenSearches, OneConditionOnAnyIntensityIsOneOnAnyColour) {
  const QuietApp app;
  for (std::uint64_t seed = 1; seed <= 5; ++seed) {
    const Scene scene(test::Garden(2'000, seed), {3, 0, 0, 0});
    const std::vector<int> any =
        FoundClasses<IntensitySearch>(scene, std::vector<CCondicionHIntensidad>{{0, 65'535, 5, 2}}, 15);
    EXPECT_GT(Differences(any, ClassesOf(scene.Drawing())), 200U);
    EXPECT_TRUE(any == FoundClasses<ColourSearch>(scene, std::vector<CCondicionHRGB>{{128, 128, 128, 5, 2, 255}}, 15));
  }
}

TEST(SeenSearches, JumpsAreTheHighPointsOfACopyWithIntensitiesForHeights) {
  // On a lattice, whose sides are steep for every jump and shorter than the distance.
  const QuietApp app;
  for (const int sign : {1, -1}) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
      support::Random random(seed);
      std::vector<SeenPoint> cloud;
      for (int x = 0; x < 30; ++x) {
        for (int y = 0; y < 30; ++y) {
          if (random.between(0, 3) != 0) cloud.push_back({x, y, random.between(0, 12), 100 * random.between(0, 12)});
        }
      }
      random.shuffle(cloud);
      std::vector<test::ClassedPoint> swapped;
      for (SeenPoint const& p : cloud) swapped.push_back({p.x, p.y, sign * p.intensity});
      // Eleven is beyond the square of all sides, and the searches stop in the same place at the rim of the lattice.
      CDibujo<int> heights = test::Cloud(swapped), jumps = Seen(cloud);
      test::Search high;
      high.height = 250;
      high.distance = 900;
      high.info = CInfoClasificacion(9, 0.0, L"");
      JumpSearch search;
      search.difference = sign * 250;
      search.distance = 900;
      EXPECT_EQ(high.Run(heights), kHecho);
      EXPECT_EQ(search.Run(jumps), kHecho);
      EXPECT_GT(search.changed, cloud.size() / 20);
      EXPECT_EQ(search.changed, high.changed) << seed;
      EXPECT_TRUE(ClassesOf(jumps) == ClassesOf(heights)) << seed;
    }
  }
}

TEST(SeenSearches, ManyColoursWithOneClassAreTheHighPoints) {
  // Apart from the seeds, which need one high rise and not two: on poles, both are high.
  const QuietApp app;
  std::vector<SeenPoint> poles;
  for (int i = 0; i < 400; ++i)
    poles.push_back({i % 20 * 10, i / 20 * 10, i % 3 == 0 && i / 20 % 3 == 0 ? 50 : 0, 0, {i % 256, 0, 0}});
  const Scene scene(poles);
  CDibujo<int> drawing = scene.Drawing();
  test::Search high;
  high.distance = 5;
  high.height = 5;
  EXPECT_EQ(high.Run(drawing), kHecho);
  EXPECT_GT(high.changed, 20U);
  EXPECT_TRUE(
      ClassesOf(drawing) ==
      FoundClasses<ColourSearch>(scene, std::vector<CCondicionHRGB>{{64, 0, 0, 6, 5, 65}, {192, 0, 0, 6, 5, 65}}, 5));
}

// --- what does not matter ---

TEST(SeenSearches, DisjointConditionsGiveTheSameClassesInAnyOrderOfThePoints) {
  const QuietApp app;
  const std::vector<CCondicionHIntensidad> disjoint{{0, 4000, 5, 2}, {4001, 8000, 6, 1}, {8001, 65'535, 4, 3}};
  const std::vector<SeenPoint> cloud = test::Garden(3'000, 3);
  std::vector<std::size_t> order(cloud.size());
  std::iota(order.begin(), order.end(), 0U);
  const std::vector<int> expected = FoundClasses<IntensitySearch>(Scene(cloud, {3, 0, 0, 0}), disjoint, 15);
  const std::vector<int> jumps = FoundJumps(Scene(cloud, {3, 0, 0, 0}), 9'000, 15);
  for (int turn = 0; turn < 3; ++turn) {
    support::Random(static_cast<std::uint64_t>(turn) + 7).shuffle(order);
    std::vector<SeenPoint> shuffled;
    for (const std::size_t i : order) shuffled.push_back(cloud[i]);
    const Scene scene(shuffled, {3, 0, 0, 0});
    const std::vector<int> found = FoundClasses<IntensitySearch>(scene, disjoint, 15);
    const std::vector<int> foundJumps = FoundJumps(scene, 9'000, 15);
    for (std::size_t i = 0; i < order.size(); ++i) {
      ASSERT_EQ(found[i], expected[order[i]]) << i;
      ASSERT_EQ(foundJumps[i], jumps[order[i]]) << i;
    }
  }
}

TEST(SeenSearches, ProcessorsMakeNoDifference) {
  std::vector<std::vector<int>> classes;
  for (const unsigned processors : {1U, 2U, 4U}) {
    const QuietApp app(processors);
    const Scene scene(test::Garden(3'000, 4), {3, 0, 0, 0});
    classes.push_back(FoundClasses<ColourSearch>(scene, kColours, 15));
    for (auto const& more : {FoundClasses<IntensitySearch>(scene, kIntensities, 15), FoundJumps(scene, 9'000, 15)}) {
      classes.back().insert(classes.back().end(), more.begin(), more.end());
    }
  }
  EXPECT_TRUE(classes[1] == classes[0]);
  EXPECT_TRUE(classes[2] == classes[0]);
}

}  // namespace
}  // namespace Meseta47
