// The fan of a new point, held against the triangle made one by one and the sort of sides.
#include "planar/CAbanico.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <tuple>

#include "planar/CTriangulo2D.h"

namespace Meseta47 {
namespace {

/// A ring of corners around a point, its sides in the fan in another order than round the ring.
class Ring {
 public:
  Ring(CCoor3D<int> centre, std::vector<CCoor3D<int>> ringCorners, bool wide = HayVectoresAnchos())
      : p(centre), corners(std::move(ringCorners)), fan(wide) {
    const auto n = static_cast<unsigned>(corners.size());
    fan.Amplia(n);
    for (unsigned i = 0; i < n; ++i) {
      fan.Lados()[Slot(i)] = {&corners[i], nullptr, nullptr, Slot((i + 1) % n)};
    }
  }
  bool LaidOut() { return fan.Dispone(p, corners.size()); }

  CCoor3D<int> p;
  std::vector<CCoor3D<int>> corners;
  CAbanico fan;

 private:
  /// Side 0 stays first; the others run backwards.
  [[nodiscard]] unsigned Slot(unsigned i) const { return i == 0 ? 0 : static_cast<unsigned>(corners.size()) - i; }
};

/// `n` corners clockwise around the origin, their numbers without order, some heights equal.
std::vector<CCoor3D<int>> Corners(int n, double radius, unsigned seed) {
  std::minstd_rand random(seed);
  std::vector<int> numbers(static_cast<std::size_t>(n));
  std::iota(numbers.begin(), numbers.end(), -2);
  std::shuffle(numbers.begin(), numbers.end(), random);
  std::vector<CCoor3D<int>> corners;
  for (int i = 0; i < n; ++i) {
    const double angle = -2 * 3.14159265358979 * i / n, far = radius * (1 + 0.3 * ((i * 7) % 5));
    corners.emplace_back(static_cast<int>(far * std::cos(angle)), static_cast<int>(far * std::sin(angle)), i % 3,
                         numbers[static_cast<std::size_t>(i)]);
  }
  return corners;
}

/// So many sides, in either form.
class CAbanicoOf : public testing::TestWithParam<std::tuple<int, bool>> {
 protected:
  static std::vector<CCoor3D<int>> Sides(double radius, unsigned seed) {
    return Corners(std::get<0>(GetParam()), radius, seed);
  }
  static Ring Around(CCoor3D<int> const& centre, std::vector<CCoor3D<int>> const& corners) {
    return {centre, corners, std::get<1>(GetParam())};
  }
};

TEST_P(CAbanicoOf, TheTrianglesAreThoseMadeOneByOne) {
  // Up to 131,072 units from the point all is exact; the last radius is beyond that.
  for (const double radius : {20.0, 5000.0, 60000.0, 3e8}) {
    Ring ring = Around({3, -2, 1, 1000}, Sides(radius, 7));
    ASSERT_TRUE(ring.LaidOut());
    ring.fan.Calcula(ring.p);
    ASSERT_EQ(ring.fan.Cantidad(), ring.corners.size());
    for (std::size_t i = 0; i < ring.fan.Cantidad(); ++i) {
      EXPECT_EQ(ring.fan.A(i), &ring.corners[i]);
      EXPECT_EQ(ring.fan.B(i), &ring.corners[(i + 1) % ring.corners.size()]);
      CCirculo circle;
      circle.Por3Puntos(ring.p, *ring.fan.A(i), *ring.fan.B(i));
      const CCirculo got = ring.fan.Circulo(i);
      EXPECT_EQ(got.x, circle.x);
      EXPECT_EQ(got.y, circle.y);
      EXPECT_EQ(got.radio, circle.radio);
      EXPECT_EQ(got.radio2, circle.radio2);
      const CTriangulo2D single(&ring.p, ring.fan.A(i), ring.fan.B(i));
      CCoor3D<int> const* vertices[3] = {single.P1(), single.P2(), single.P3()};
      const unsigned bits = ring.fan.Indices(i);
      EXPECT_EQ(vertices[bits & 3U]->x, single.GetMinX());
      EXPECT_EQ(vertices[bits >> 2 & 3U]->y, single.GetMinY());
      EXPECT_EQ(vertices[bits >> 4 & 3U]->z, single.GetMinZ());
      EXPECT_EQ(vertices[bits >> 6 & 3U]->x, single.GetMaxX());
      EXPECT_EQ(vertices[bits >> 8 & 3U]->y, single.GetMaxY());
      EXPECT_EQ(vertices[bits >> 10 & 3U]->z, single.GetMaxZ());
    }
  }
}

TEST_P(CAbanicoOf, TheOrderIsThatOfTheSortedSides) {
  Ring ring = Around({0, 0, 0, 1000}, Sides(700, 11));
  ASSERT_TRUE(ring.LaidOut());
  std::vector<CLado2D> sides, sorted;
  for (std::size_t i = 0; i < ring.fan.Cantidad(); ++i) sides.emplace_back(ring.fan.A(i), ring.fan.B(i));
  sorted = sides;
  std::sort(sorted.begin(), sorted.end());
  for (std::size_t i = 0; i < sides.size(); ++i) EXPECT_EQ(sides[ring.fan.Orden(i)], sorted[i]);
}

TEST_P(CAbanicoOf, ACircleIsCountedOutOfEachFrameThatItsBoxLeaves) {
  using Frames = CAbanico::CMarcos;
  struct Box {
    double minX, minY, maxX, maxY;
  };
  // Quarters of quarters around the origin, now one side cut off and now the other.
  const Box nested[Frames::kCuantos] = {
      {-300, -300, 2000, 700}, {-300, -300, 2000, 2500}, {-4000, -5000, 2000, 2500}, {-4000, -5000, 6000, 9000}};
  const auto least = [](Frames::CCota side, double value) { return Frames::CLimite{side, {value, value}}; };
  const Frames frames = {{{least(Frames::MENOS_MAX_Y, -700), least(Frames::MIN_X, -300)},
                          {least(Frames::MIN_X, -300), least(Frames::MIN_Y, -300)},
                          {least(Frames::MENOS_MAX_X, -2000), least(Frames::MENOS_MAX_Y, -2500)}},
                         {least(Frames::MIN_X, -4000), least(Frames::MENOS_MAX_X, -6000), least(Frames::MIN_Y, -5000),
                          least(Frames::MENOS_MAX_Y, -9000)}};
  std::vector<bool> seen(Frames::kCuantos + 1);
  for (const double radius : {100.0, 500.0, 1500.0, 3000.0, 6000.0, 9000.0}) {
    Ring ring = Around({0, 0, 0, 1000}, Sides(radius, 5));
    ASSERT_TRUE(ring.LaidOut());
    ring.fan.Calcula(ring.p);
    ring.fan.Situa(frames);
    std::size_t most = 0;
    bool proper = true;
    for (std::size_t i = 0; i < ring.fan.Cantidad(); ++i) {
      const CCirculo c = ring.fan.Circulo(i);
      const auto leaves = [&c](Box const& box) {
        return c.x - c.radio < box.minX || c.x + c.radio > box.maxX || c.y - c.radio < box.minY ||
               c.y + c.radio > box.maxY;
      };
      const auto left = static_cast<std::size_t>(std::count_if(std::begin(nested), std::end(nested), leaves));
      EXPECT_EQ(ring.fan.Fuera(i), left);
      seen[left] = true;
      most = std::max(most, left);
      proper &= c.radio2 != 0;
    }
    for (std::size_t n = 0; n <= 5; ++n) EXPECT_EQ(ring.fan.DejanMenosDe(n), proper && most < n) << n;
  }
  EXPECT_GE(std::count(seen.begin(), seen.end(), true), 4);
}

TEST_P(CAbanicoOf, ACornerThatComesTwiceIsRefused) {
  std::vector<CCoor3D<int>> corners = Sides(700, 3);
  corners.back().num = corners[1].num;
  EXPECT_FALSE(Around({0, 0, 0, 1000}, corners).LaidOut());
}

TEST_P(CAbanicoOf, ACornerOnThePointIsRefused) {
  std::vector<CCoor3D<int>> corners = Sides(700, 3);
  for (std::size_t i = 0; i < corners.size(); ++i) {
    EXPECT_FALSE(Around({corners[i].x, corners[i].y, 99, 1000}, corners).LaidOut()) << i;
  }
}

// Around the length of a batch, the lengths of the ranking, and beyond.
INSTANTIATE_TEST_SUITE_P(Sides, CAbanicoOf,
                         testing::Combine(testing::Values(3, 6, 7, 8, 9, 11, 12, 13, 16, 17, 24, 25, 32, 33, 40),
                                          testing::Values(false, HayVectoresAnchos())));

TEST(CAbanico, ThreePointsOnALineMakeNoCircle) {
  Ring ring({0, 0, 5, 10}, {{-10, 0, 1, 1}, {10, 0, 2, 2}, {0, -10, 3, 3}});
  ASSERT_TRUE(ring.LaidOut());
  ring.fan.Calcula(ring.p);
  EXPECT_EQ(ring.fan.Circulo(0).radio, 0);
  EXPECT_EQ(ring.fan.Circulo(0).radio2, 0);
  EXPECT_EQ(ring.fan.Indices(0), 0);
  EXPECT_GT(ring.fan.Circulo(1).radio, 0);
}

TEST(CAbanico, ACircleThatTouchesAFrameLiesInIt) {
  // The circle around (5, 0) with radius 5.
  Ring ring({0, 0, 0, 1000}, {{10, 0, 0, 1}, {5, -5, 0, 2}, {-1, -9, 0, 3}, {-2, 8, 0, 4}});
  ASSERT_TRUE(ring.LaidOut());
  ring.fan.Calcula(ring.p);
  using Frames = CAbanico::CMarcos;
  const auto least = [](Frames::CCota side, double value) { return Frames::CLimite{side, {value, value}}; };
  for (const double past : {0.0, 1e-12}) {
    Frames frames;
    for (auto& own : frames.propios) own[0] = own[1] = least(Frames::MIN_X, -1e9);
    for (auto& limit : frames.ultimo) limit = least(Frames::MIN_Y, -1e9);
    frames.propios[1][0] = least(Frames::MENOS_MAX_X, -10 + past);
    ring.fan.Situa(frames);
    EXPECT_EQ(ring.fan.Fuera(0), past == 0 ? 0U : 2U);
  }
}

TEST(CAbanico, AnEarlierLargerFanLeavesNoTrace) {
  Ring ring({0, 0, 0, 1000}, Corners(40, 700, 5));
  ASSERT_TRUE(ring.LaidOut());
  ring.fan.Calcula(ring.p);
  const std::vector<CCoor3D<int>> few = Corners(5, 90, 6);
  ring.corners = few;
  for (unsigned i = 0; i < 5; ++i) ring.fan.Lados()[i] = {&ring.corners[i], nullptr, nullptr, (i + 1) % 5};
  ASSERT_TRUE(ring.LaidOut());
  ring.fan.Calcula(ring.p);
  Ring alone({0, 0, 0, 1000}, few);
  ASSERT_TRUE(alone.LaidOut());
  alone.fan.Calcula(alone.p);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(ring.fan.Circulo(i).radio2, alone.fan.Circulo(i).radio2);
    EXPECT_EQ(ring.fan.Indices(i), alone.fan.Indices(i));
    EXPECT_EQ(ring.fan.Orden(i), alone.fan.Orden(i));
  }
}

}  // namespace
}  // namespace Meseta47
