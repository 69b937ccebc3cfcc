#include "host/generate/Scan.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <gmock/gmock.h>
#include <limits>
#include <map>
#include <stdexcept>
#include <utility>
#include <vector>

namespace Meseta47::host {
namespace {

std::vector<LasPoint> scanned(ScanOptions const& options) {
  Scan scan(options);
  std::vector<LasPoint> all, batch;
  while (scan.next(batch)) all.insert(all.end(), batch.begin(), batch.end());
  return all;
}

/// FNV-1a over the bytes of every field, so that padding and byte order of the machine do not matter.
class Fingerprint {
 public:
  template <class Integer>
  void add(Integer value) {
    const auto bits = static_cast<std::uint64_t>(value);
    for (std::size_t byte = 0; byte < sizeof(Integer); ++byte) {
      hash = (hash ^ ((bits >> (8 * byte)) & 0xFF)) * 0x100000001B3U;
    }
  }
  void add(double value) {
    static_assert(sizeof(double) == sizeof(std::uint64_t));
    add(std::bit_cast<std::uint64_t>(value));
  }
  std::uint64_t value() const { return hash; }

 private:
  std::uint64_t hash = 0xCBF29CE484222325U;
};

std::uint64_t fingerprintOf(std::vector<LasPoint> const& points) {
  Fingerprint print;
  for (LasPoint const& p : points) {
    print.add(p.x), print.add(p.y), print.add(p.z), print.add(p.intensity), print.add(p.returnNumber);
    print.add(p.returns), print.add(p.classification), print.add(p.flags), print.add(p.channel);
    print.add(p.scanDirection), print.add(p.edgeOfFlightLine), print.add(p.userData), print.add(p.scanAngle);
    print.add(p.sourceId), print.add(p.gpsTime), print.add(p.red), print.add(p.green), print.add(p.blue);
    print.add(p.nir);
  }
  return print.value();
}

/// One survey of three strips, flown once for all the tests that only look at it.
class ScannedBlock : public testing::Test {
 protected:
  static constexpr ScanOptions kOptions{.points = 400000, .seed = 7, .density = 4};

  static void SetUpTestSuite() {
    points = scanned(kOptions);
    offset = Scan(kOptions).offset();
  }
  static void TearDownTestSuite() { points = {}; }

  /// Metres from the land's centre.
  static double landX(LasPoint const& p) { return offset[0] + Scan::kScale * p.x - Scan::kCentreEast; }
  static double landY(LasPoint const& p) { return offset[1] + Scan::kScale * p.y - Scan::kCentreNorth; }
  static double landZ(LasPoint const& p) { return offset[2] + Scan::kScale * p.z; }

  static inline std::vector<LasPoint> points;
  static inline std::array<double, 3> offset;
};

TEST(Scan, DeliversExactlyThePointsAskedFor) {
  for (const std::uint64_t asked : {0U, 1U, 2U, 3U, 1000U, 32768U, 100000U}) {
    EXPECT_EQ(scanned({.points = asked, .seed = 3}).size(), asked);
  }
}

TEST(Scan, NoPointsMeanNoBatch) {
  Scan scan({.points = 0, .seed = 1});
  std::vector<LasPoint> batch(5);
  EXPECT_FALSE(scan.next(batch));
  EXPECT_TRUE(batch.empty());
}

TEST(Scan, BatchesStaySmallHoweverManyPointsFollow) {
  Scan scan({.points = 1000000000, .seed = 1});
  std::vector<LasPoint> batch;
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(scan.next(batch));
    EXPECT_LT(batch.size(), 100000U);
  }
}

TEST(Scan, RefusesADensityThatNoBlockHas) {
  EXPECT_THROW(Scan({.points = 10, .seed = 1, .density = 0}), std::invalid_argument);
  EXPECT_THROW(Scan({.points = 10, .seed = 1, .density = -4}), std::invalid_argument);
  EXPECT_THROW(Scan({.points = 10, .seed = 1, .density = std::numeric_limits<double>::quiet_NaN()}),
               std::invalid_argument);
  EXPECT_THROW(Scan({.points = 1000000000, .seed = 1, .density = 1e-9}), std::invalid_argument);
}

// The values hold for every compiler, machine and optimisation level; they change only when the land or the flight
// does.
TEST(Scan, SameSeedGivesTheSameBytesEverywhere) {
  EXPECT_EQ(fingerprintOf(scanned({.points = 1000, .seed = 1})), 14894441117520448080U);
  EXPECT_EQ(fingerprintOf(scanned({.points = 100000, .seed = 42})), 2923790427105176996U);
  EXPECT_EQ(fingerprintOf(scanned({.points = 50000, .seed = 42, .density = 0.5})), 10672671812796826378U);
}

TEST(Scan, AnotherSeedGivesAnotherLand) {
  const auto one = scanned({.points = 2000, .seed = 1}), other = scanned({.points = 2000, .seed = 2});
  std::size_t equal = 0;
  for (std::size_t i = 0; i < one.size(); ++i) equal += one[i].z == other[i].z ? 1U : 0U;
  EXPECT_LT(equal, one.size() / 20);
}

TEST(Scan, OffsetIsInWholeMetresAtTheCornerOfTheBlock) {
  const Scan scan({.points = 100000, .seed = 5});
  EXPECT_EQ(scan.scale(), (std::array<double, 3>{0.01, 0.01, 0.01}));
  for (const double offset : scan.offset()) EXPECT_EQ(offset, static_cast<double>(static_cast<std::int64_t>(offset)));
  EXPECT_NEAR(scan.offset()[0] + scan.side() / 2, Scan::kCentreEast, 3.0);
  EXPECT_NEAR(scan.offset()[1] + scan.side() / 2, Scan::kCentreNorth, 3.0);
}

TEST_F(ScannedBlock, CoversTheSquareThatItsDensityPromises) {
  const double half = Scan(kOptions).side() / 2;
  EXPECT_NEAR(4 * half * half * kOptions.density, static_cast<double>(kOptions.points), 1.0);
  constexpr int kCells = 8;
  std::map<std::pair<int, int>, int> cells;
  for (LasPoint const& p : points) {
    EXPECT_LT(std::abs(landX(p)), half + 1.0);
    EXPECT_LT(std::abs(landY(p)), half + 12.0) << "the flight goes on for a few lines at the most";
    ++cells[{static_cast<int>((landX(p) / half + 1) * kCells / 2),
             static_cast<int>((landY(p) / half + 1) * kCells / 2)}];
  }
  const double mean = static_cast<double>(points.size()) / (kCells * kCells);
  for (int i = 0; i < kCells; ++i) {
    for (int j = 0; j < kCells; ++j) {
      EXPECT_GT((cells[{i, j}]), 0.3 * mean) << "cell " << i << ", " << j;
      EXPECT_LT((cells[{i, j}]), 3.0 * mean) << "cell " << i << ", " << j;
    }
  }
}

TEST_F(ScannedBlock, ShowsEveryClassInSaneProportions) {
  std::map<int, double> share;
  for (LasPoint const& p : points) share[p.classification] += 1.0 / static_cast<double>(points.size());
  const auto within = [&share](PointClass kind, double low, double high) {
    const double part = share[static_cast<int>(kind)];
    EXPECT_GT(part, low) << "class " << static_cast<int>(kind);
    EXPECT_LT(part, high) << "class " << static_cast<int>(kind);
  };
  within(PointClass::Ground, 0.35, 0.85);
  within(PointClass::LowVegetation, 0.01, 0.20);
  within(PointClass::MediumVegetation, 0.005, 0.15);
  within(PointClass::HighVegetation, 0.05, 0.45);
  within(PointClass::Building, 0.01, 0.15);
  within(PointClass::Water, 0.003, 0.10);
  within(PointClass::Road, 0.01, 0.10);
  within(PointClass::LowNoise, 1e-5, 1e-3);
  within(PointClass::HighNoise, 1e-5, 1e-3);
  EXPECT_LE(share.size(), 10U) << "a class that nobody asked for";
}

TEST_F(ScannedBlock, ReturnsOfAPulseAreCountedAndComeFromTheHighestDown) {
  std::size_t several = 0;
  for (std::size_t i = 0; i < points.size(); i += points[i].returns) {
    LasPoint const& first = points[i];
    ASSERT_GE(first.returns, 1);
    ASSERT_LE(first.returns, Echoes::kMost);
    ASSERT_LE(i + first.returns, points.size());
    several += first.returns > 1 ? 1 : 0;
    for (std::size_t k = 0; k < first.returns; ++k) {
      LasPoint const& p = points[i + k];
      ASSERT_EQ(p.returnNumber, k + 1);
      ASSERT_EQ(p.returns, first.returns);
      ASSERT_EQ(p.gpsTime, first.gpsTime);
      if (k > 0) {
        ASSERT_LT(p.z, points[i + k - 1].z);
      }
    }
  }
  EXPECT_GT(several, points.size() / 50);
}

TEST_F(ScannedBlock, StripsFollowOneAnotherInTime) {
  for (std::size_t i = 1; i < points.size(); ++i) {
    ASSERT_GE(points[i].gpsTime, points[i - 1].gpsTime);
    ASSERT_GE(points[i].sourceId, points[i - 1].sourceId);
  }
  EXPECT_EQ(points.front().sourceId, 1);
  EXPECT_EQ(points.back().sourceId, Scan(kOptions).strips());
  EXPECT_GE(Scan(kOptions).strips(), 3);
}

TEST_F(ScannedBlock, MirrorSweepsToAndFroAcrossTheStrip) {
  std::int16_t lowest = 0, highest = 0;
  std::size_t edges = 0, overlaps = 0;
  for (std::size_t i = 1; i < points.size(); ++i) {
    LasPoint const &a = points[i - 1], &b = points[i];
    lowest = std::min(lowest, b.scanAngle);
    highest = std::max(highest, b.scanAngle);
    edges += b.edgeOfFlightLine ? 1 : 0;
    overlaps += (b.flags >> 3) & 1;
    if (a.edgeOfFlightLine && !b.edgeOfFlightLine) {
      EXPECT_NE(a.scanDirection, b.scanDirection) << "point " << i;
    }
  }
  EXPECT_GT(highest * 0.006, 10.0);
  EXPECT_LT(highest * 0.006, 30.0);
  EXPECT_NEAR(lowest, -highest, 200);
  EXPECT_GT(edges, 500U);
  EXPECT_GT(overlaps, points.size() / 20);
  EXPECT_LT(overlaps, points.size() / 2);
}

TEST_F(ScannedBlock, ClassesAreTheTruthOfTheLand) {
  Scene scene(kOptions.seed);
  const auto kindOf = [](LasPoint const& p) { return static_cast<PointClass>(p.classification); };
  for (std::size_t i = 0; i < points.size(); i += 3) {
    LasPoint const& p = points[i];
    const Ground ground = scene.terrain.at(landX(p), landY(p));
    const double above = landZ(p) - ground.z;
    SCOPED_TRACE(testing::Message() << "point " << i << ", class " << int(p.classification) << ", " << above
                                    << " m above");
    // Half a centimetre of rounding in plan moves a place across the edge of a bank or a cutting by a few centimetres.
    switch (kindOf(p)) {
      case PointClass::Ground:
      case PointClass::Road:
        ASSERT_NEAR(above, 0.0, 0.12);
        break;
      case PointClass::Water:
        ASSERT_NEAR(above, 0.0, 0.12);
        break;
      case PointClass::LowVegetation:
        ASSERT_GT(above, 0.0);
        ASSERT_LT(above, 1.1);
        break;
      case PointClass::MediumVegetation:
        ASSERT_GT(above, 0.9);
        ASSERT_LT(above, 4.1);
        break;
      case PointClass::HighVegetation:
        ASSERT_GT(above, 3.9);
        ASSERT_LT(above, 40.0);
        break;
      case PointClass::Building:
        ASSERT_GT(above, 0.3);
        ASSERT_LT(above, 25.0);
        break;
      case PointClass::BridgeDeck:
        ASSERT_GT(above, 1.0);
        ASSERT_LT(above, 8.0);
        break;
      case PointClass::LowNoise:
        ASSERT_LT(above, -1.0);
        break;
      case PointClass::HighNoise:
        ASSERT_GT(above, 25.0);
        break;
      default:
        FAIL() << "a class that nobody knows";
    }
  }
}

TEST_F(ScannedBlock, BlocksOfOneSeedShowTheSameLand) {
  const auto small = scanned({.points = 2000, .seed = kOptions.seed});
  const auto corner = Scan({.points = 2000, .seed = kOptions.seed}).offset();
  Scene scene(kOptions.seed);
  std::size_t ground = 0;
  for (LasPoint const& p : small) {
    if (p.classification != static_cast<int>(PointClass::Ground)) continue;
    ++ground;
    ASSERT_NEAR(corner[2] + Scan::kScale * p.z,
                scene.terrain.height(corner[0] + Scan::kScale * p.x - Scan::kCentreEast,
                                     corner[1] + Scan::kScale * p.y - Scan::kCentreNorth),
                0.12);
  }
  EXPECT_GT(ground, 500U);
}

}  // namespace
}  // namespace Meseta47::host
