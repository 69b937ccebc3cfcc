#include "planar/CSegmentos.h"

#include <gmock/gmock.h>

namespace Meseta47 {

void PrintTo(CSegmento const& s, std::ostream* out) {
  *out << '(' << s.a.x << ", " << s.a.y << ") - (" << s.b.x << ", " << s.b.y << ')';
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

void Add(CSegmentos& segments, CLugarPlano a, CLugarPlano b, int z) {
  segments.Anade(CCoor3D<int>(a.x, a.y, z, 7), CCoor3D<int>(b.x, b.y, z, 8));
}

TEST(CSegmentos, ALevelGivesItsOwnInTheOrderInWhichTheyCame) {
  CSegmentos segments;
  Add(segments, {0, 0}, {1, 0}, 20);
  Add(segments, {5, 5}, {6, 6}, -10);
  Add(segments, {0, 3}, {1, 3}, 20);
  Add(segments, {0, 0}, {1, 0}, 20);
  EXPECT_EQ(segments.Cantidad(), 4U);
  EXPECT_EQ(segments.MinimoZ(), -10);
  EXPECT_EQ(segments.MaximoZ(), 20);
  EXPECT_THAT(segments.Saca(20),
              ElementsAre(CSegmento{{0, 0}, {1, 0}}, CSegmento{{0, 3}, {1, 3}}, CSegmento{{0, 0}, {1, 0}}));
  EXPECT_EQ(segments.Cantidad(), 1U);
  EXPECT_EQ(segments.MaximoZ(), -10);
}

TEST(CSegmentos, TheLowerEndComesFirst) {
  CSegmentos segments;
  Add(segments, {3, 0}, {1, 9}, 0);
  Add(segments, {1, 9}, {1, 4}, 0);
  EXPECT_THAT(segments.Saca(0), ElementsAre(CSegmento{{1, 9}, {3, 0}}, CSegmento{{1, 4}, {1, 9}}));
}

TEST(CSegmentos, ALevelThatHasNoneOrWasTakenGivesNone) {
  CSegmentos segments;
  EXPECT_THAT(segments.Saca(0), IsEmpty());
  Add(segments, {0, 0}, {1, 0}, 10);
  EXPECT_THAT(segments.Saca(0), IsEmpty());
  EXPECT_EQ(segments.Saca(10).size(), 1U);
  EXPECT_THAT(segments.Saca(10), IsEmpty());
}

TEST(CSegmentos, ALevelThatWasTakenMayFillAgain) {
  CSegmentos segments;
  Add(segments, {0, 0}, {1, 0}, 10);
  ASSERT_EQ(segments.Saca(10).size(), 1U);
  Add(segments, {2, 0}, {3, 0}, 10);
  EXPECT_THAT(segments.Saca(10), ElementsAre(CSegmento{{2, 0}, {3, 0}}));
  Add(segments, {2, 0}, {3, 0}, 10);
  segments.Clear();
  EXPECT_EQ(segments.Cantidad(), 0U);
  Add(segments, {4, 0}, {5, 0}, 10);
  EXPECT_THAT(segments.Saca(10), ElementsAre(CSegmento{{4, 0}, {5, 0}}));
}

TEST(CSegmentos, NoneIsLostWhereBlocksEnd) {
  CSegmentos segments;
  constexpr int kMany = 200'000;
  for (int i = 0; i < kMany; ++i) Add(segments, {i, 0}, {i + 1, i % 3}, i % 3 * 10);
  for (int level = 0; level < 3; ++level) {
    const auto taken = segments.Saca(level * 10);
    ASSERT_EQ(taken.size(), static_cast<std::size_t>((kMany - level + 2) / 3));
    for (std::size_t i = 0; i < taken.size(); ++i) ASSERT_EQ(taken[i].a.x, static_cast<int>(3 * i) + level);
  }
  EXPECT_EQ(segments.Cantidad(), 0U);
}

}  // namespace
}  // namespace Meseta47
