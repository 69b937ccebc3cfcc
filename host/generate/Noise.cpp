#include "host/generate/Noise.h"

namespace Meseta47::host {
namespace {

constexpr double fade(double t) { return t * t * t * (t * (t * 6.0 - 15.0) + 10.0); }
constexpr double fadeSlope(double t) { return 30.0 * t * t * (t - 1.0) * (t - 1.0); }

double signedUnit(std::uint64_t hash) { return 2.0 * unitOf(hash) - 1.0; }

struct Vector {
  double x, y;
};

/// Sixteen directions spread evenly over the circle; eight already show as streaks along the axes.
constexpr Vector kGradients[16] = {{1, 0},  {0.92388, 0.38268},   {0.70711, 0.70711},   {0.38268, 0.92388},
                                   {0, 1},  {-0.38268, 0.92388},  {-0.70711, 0.70711},  {-0.92388, 0.38268},
                                   {-1, 0}, {-0.92388, -0.38268}, {-0.70711, -0.70711}, {-0.38268, -0.92388},
                                   {0, -1}, {0.38268, -0.92388},  {0.70711, -0.70711},  {0.92388, -0.38268}};

Vector const& gradient(std::uint64_t seed, std::int64_t i, std::int64_t j) {
  return kGradients[cellHash(seed, i, j) >> 60];
}

}  // namespace

double Random::bell() {
  const std::uint64_t draw = bits();
  const std::uint64_t sum = (draw & 0xFFFF) + ((draw >> 16) & 0xFFFF) + ((draw >> 32) & 0xFFFF) + (draw >> 48);
  constexpr double kRootOfThree = 1.7320508075688772;
  return (static_cast<double>(sum) * 0x1p-16 - 2.0) * kRootOfThree;
}

Value1 noise1(std::uint64_t seed, double t) {
  const std::int64_t cell = floorOf(t);
  const double f = t - static_cast<double>(cell);
  const double a = signedUnit(cellHash(seed, cell));
  const double b = signedUnit(cellHash(seed, cell + 1));
  return {a + (b - a) * fade(f), (b - a) * fadeSlope(f)};
}

Value2 noise2(std::uint64_t seed, double x, double y) {
  const std::int64_t i = floorOf(x), j = floorOf(y);
  const double fx = x - static_cast<double>(i), fy = y - static_cast<double>(j);
  Vector const &ga = gradient(seed, i, j), &gb = gradient(seed, i + 1, j);
  Vector const &gc = gradient(seed, i, j + 1), &gd = gradient(seed, i + 1, j + 1);

  const double a = ga.x * fx + ga.y * fy;
  const double b = gb.x * (fx - 1.0) + gb.y * fy;
  const double c = gc.x * fx + gc.y * (fy - 1.0);
  const double d = gd.x * (fx - 1.0) + gd.y * (fy - 1.0);
  const double u = fade(fx), v = fade(fy);
  const double cross = a - b - c + d;

  return {a + u * (b - a) + v * (c - a) + u * v * cross,
          ga.x + u * (gb.x - ga.x) + v * (gc.x - ga.x) + u * v * (ga.x - gb.x - gc.x + gd.x) +
              fadeSlope(fx) * (b - a + v * cross),
          ga.y + u * (gb.y - ga.y) + v * (gc.y - ga.y) + u * v * (ga.y - gb.y - gc.y + gd.y) +
              fadeSlope(fy) * (c - a + u * cross)};
}

}  // namespace Meseta47::host
