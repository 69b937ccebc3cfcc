#include "planar/CNivelDeCurvas.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <limits>
#include <random>

#include "model/drawing/CDibujo.h"

namespace Meseta47 {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Path = std::vector<CLugarPlano>;

constexpr int kHeight = 30;

Path PathOf(CLinea<int> const& line) {
  Path path;
  for (CCoor3D<int> const& p : line.Puntos()) {
    EXPECT_EQ(p.z, kHeight);
    path.push_back({p.x, p.y});
  }
  return path;
}

std::vector<Path> Joined(std::vector<CSegmento> const& segments, CLlanos flat = CLlanos::LADOS) {
  const CNivelDeCurvas level(kHeight, segments, flat);
  std::vector<Path> paths;
  for (std::size_t i = 0; i < level.Cantidad(); ++i) {
    EXPECT_EQ(level.Linea(i).GetCodigo(), CString(L"nuevo"));
    paths.push_back(PathOf(level.Linea(i)));
  }
  return paths;
}

/// What joining the same segments as lines of a drawing gives.
std::vector<Path> JoinedInADrawing(std::vector<CSegmento> const& segments) {
  CDibujo<int> drawing;
  for (CSegmento const& s : segments) {
    CLinea<int> line(L"nuevo");
    line << CCoor3D<int>(s.a.x, s.a.y, kHeight, 1) << CCoor3D<int>(s.b.x, s.b.y, kHeight, 2);
    drawing.Inserta(std::move(line));
  }
  drawing.Junta(0, 0, true, true, true, 0, 0, true);
  std::vector<Path> paths;
  for (unsigned i = 0; i < drawing.Cantidad(); ++i) paths.push_back(PathOf(drawing[i]));
  return paths;
}

TEST(CNivelDeCurvas, OfNothingThereIsNothing) {
  EXPECT_THAT(Joined({}), IsEmpty());
  EXPECT_THAT(Joined({{{3, 3}, {3, 3}}}), IsEmpty()) << "nor of a piece without length";
}

TEST(CNivelDeCurvas, AnOpenLineBeginsAtItsLowerEnd) {
  EXPECT_THAT(Joined({{{5, 5}, {9, 0}}, {{5, 5}, {2, 7}}}), ElementsAre(Path{{2, 7}, {5, 5}, {9, 0}}));
}

TEST(CNivelDeCurvas, ARingBeginsAtItsLowestPointAndGoesOnToTheLowerSide) {
  EXPECT_THAT(Joined({{{4, 0}, {4, 4}}, {{4, 4}, {0, 4}}, {{0, 0}, {0, 4}}, {{4, 0}, {0, 0}}}),
              ElementsAre(Path{{0, 0}, {0, 4}, {4, 4}, {4, 0}, {0, 0}}));
}

TEST(CNivelDeCurvas, ARepeatedPieceCountsOnceInEitherSense) {
  EXPECT_THAT(Joined({{{0, 0}, {1, 0}}, {{1, 0}, {0, 0}}, {{0, 0}, {1, 0}}}), ElementsAre(Path{{0, 0}, {1, 0}}));
}

TEST(CNivelDeCurvas, PiecesOfAShoreThatLieUponEachOtherGoInPairs) {
  const std::vector<CSegmento> twice{{{0, 0}, {1, 0}}, {{1, 0}, {0, 0}}, {{1, 0}, {1, 5}}, {{1, 5}, {3, 3}}};
  EXPECT_THAT(Joined(twice, CLlanos::ORILLA), ElementsAre(Path{{1, 0}, {1, 5}, {3, 3}}));
  const std::vector<CSegmento> thrice{{{0, 0}, {1, 0}}, {{1, 0}, {0, 0}}, {{0, 0}, {1, 0}}};
  EXPECT_THAT(Joined(thrice, CLlanos::ORILLA), ElementsAre(Path{{0, 0}, {1, 0}}));
}

TEST(CNivelDeCurvas, LinesGoStraightOnThroughACrossingWithoutCrossing) {
  EXPECT_THAT(Joined({{{0, 0}, {-10, 1}}, {{0, 0}, {-10, -1}}, {{0, 0}, {10, 1}}, {{0, 0}, {10, -1}}}),
              ElementsAre(Path{{-10, -1}, {0, 0}, {10, -1}}, Path{{-10, 1}, {0, 0}, {10, 1}}));
}

TEST(CNivelDeCurvas, PlacesAtTheLimitsOfThirtyTwoBitsAreJoined) {
  constexpr int kLow = std::numeric_limits<int>::min(), kHigh = std::numeric_limits<int>::max();
  const std::vector<CSegmento> corners{{{kLow, kLow}, {kHigh, kHigh}}, {{kHigh, kHigh}, {kLow, kHigh}}};
  EXPECT_THAT(Joined(corners), ElementsAre(Path{{kLow, kLow}, {kHigh, kHigh}, {kLow, kHigh}}));
}

/// On few places pieces repeat, lie in one direction, meet by threes to sevens and close in every way.
TEST(CNivelDeCurvas, JoinsAsADrawingJoinsLines) {
  for (unsigned seed = 1; seed <= 3'000; ++seed) {
    std::mt19937 random(seed);
    const int side = 2 + static_cast<int>(random() % 7);
    std::vector<CSegmento> segments(1 + random() % 60);
    const auto coordinate = [&] { return static_cast<int>(random() % static_cast<unsigned>(side)); };
    for (CSegmento& s : segments) s = {{coordinate(), coordinate()}, {coordinate(), coordinate()}};
    ASSERT_EQ(Joined(segments), JoinedInADrawing(segments)) << "seed " << seed;
  }
}

/// Long rings, of which many look alike for a while.
TEST(CNivelDeCurvas, JoinsLongRingsAsADrawingDoes) {
  std::mt19937 random(7);
  std::vector<CSegmento> segments;
  for (int ring = 0; ring < 40; ++ring) {
    const int y = ring * 10, length = 50 + static_cast<int>(random() % 3);
    for (int x = 0; x < length; ++x) {
      segments.push_back({{x, y}, {x + 1, y}});
      segments.push_back({{x + 1, y + 5}, {x, y + 5}});
    }
    segments.push_back({{0, y}, {0, y + 5}});
    segments.push_back({{length, y + 5}, {length, y}});
  }
  std::shuffle(segments.begin(), segments.end(), random);
  const auto joined = Joined(segments);
  EXPECT_EQ(joined.size(), 40U);
  EXPECT_EQ(joined, JoinedInADrawing(segments));
}

}  // namespace

void PrintTo(CLugarPlano const& p, std::ostream* out) { *out << '(' << p.x << ", " << p.y << ')'; }

}  // namespace Meseta47
