#include "planar/CSegmentos.h"

#include <gmock/gmock.h>

#include "support/FaultGuard.h"
#include "support/ScratchFolder.h"

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

using At = CCoor3D<int>;

TEST(CSegmentos, ATriangleIsCutWhereItIsHigherThanALevelAndWhereItIsNot) {
  CSegmentos segments;
  segments.Corta(At(0, 0, -15, 1), At(100, 0, 15, 2), At(0, 100, 15, 3), 10);
  EXPECT_EQ(segments.Cantidad(), 3U);
  EXPECT_THAT(segments.Saca(-10), ElementsAre(CSegmento{{0, 17}, {17, 0}}));
  EXPECT_THAT(segments.Saca(0), ElementsAre(CSegmento{{0, 50}, {50, 0}}));
  EXPECT_THAT(segments.Saca(10), ElementsAre(CSegmento{{0, 83}, {83, 0}}));
}

TEST(CSegmentos, AVertexOnALevelCountsAsBelowIt) {
  CSegmentos segments;
  segments.Corta(At(0, 0, 10, 1), At(100, 0, 10, 2), At(0, 100, 10, 3), 10);
  segments.Corta(At(0, 0, 10, 1), At(100, 0, 10, 2), At(0, 100, 5, 3), 10);
  segments.Corta(At(0, 0, 10, 1), At(100, 0, 15, 2), At(0, 100, 15, 3), 10);
  EXPECT_EQ(segments.Cantidad(), 0U);
  segments.Corta(At(0, 0, 10, 1), At(100, 0, 10, 2), At(0, 100, 15, 3), 10);
  segments.Corta(At(0, 0, 10, 1), At(100, 0, 5, 2), At(0, 100, 15, 3), 10);
  EXPECT_THAT(segments.Saca(10), ElementsAre(CSegmento{{0, 0}, {100, 0}}, CSegmento{{0, 0}, {50, 50}}));
}

TEST(CSegmentos, BothTrianglesOfASideCutItAtOnePlace) {
  CSegmentos segments;
  segments.Corta(At(0, 0, 1, 1), At(101, 57, 8, 2), At(3, 90, 2, 3), 3);
  segments.Corta(At(101, 57, 8, 2), At(0, 0, 1, 1), At(80, -70, 2, 3), 3);
  for (const int level : {3, 6}) {
    const std::vector<CSegmento> pieces = segments.Saca(level);
    ASSERT_EQ(pieces.size(), 2U) << level;
    EXPECT_TRUE(pieces[0].a == pieces[1].a || pieces[0].a == pieces[1].b || pieces[0].b == pieces[1].a ||
                pieces[0].b == pieces[1].b)
        << level;
  }
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

/// In a file as in memory: the same pieces of three levels in the same order, whole blocks and what is over.
TEST(CSegmentos, AFileGivesBackWhatMemoryWould) {
  const ScratchFolder folder;
  CFile file(folder.Path("pieces"), CFile::modeCreate | CFile::modeReadWrite);
  CSegmentos inMemory, inFile;
  inFile.PonFichero(&file);
  for (const int many : {1, 4'095, 4'096, 4'097, 50'000}) {
    for (int i = 0; i < 3 * many; ++i) {
      for (CSegmentos* segments : {&inMemory, &inFile}) Add(*segments, {i, 7}, {i + 1, i % 5}, i % 3 * 10);
    }
    EXPECT_EQ(inFile.Cantidad(), static_cast<std::size_t>(3 * many));
    for (int z = 0; z <= 20; z += 10) EXPECT_TRUE(inFile.Saca(z) == inMemory.Saca(z)) << many << " at " << z;
    EXPECT_EQ(inFile.Cantidad(), 0U);
  }
  EXPECT_TRUE(file.Close());
  EXPECT_EQ(BytesOf(folder.Path("pieces")).size(), 16U * 4'096 * 3 * (1 + 12)) << "whole blocks and nothing else";
}

TEST(CSegmentos, AFewPiecesOfALevelNeverTroubleTheFile) {
  const ScratchFolder folder;
  CFile file(folder.Path("pieces"), CFile::modeCreate | CFile::modeReadWrite);
  CSegmentos segments;
  segments.PonFichero(&file);
  for (int i = 0; i < 100'000; ++i) Add(segments, {i, 0}, {i + 1, 0}, i % 100);
  EXPECT_EQ(file.GetLength(), 0U);
}

TEST(CSegmentos, AFileThatFailsKeepsTheFailureAndPiecesAreMissing) {
  for (const EOperacion refused : {EOperacion::Escribe, EOperacion::Lee, EOperacion::Longitud, EOperacion::Posiciona}) {
    SCOPED_TRACE(static_cast<int>(refused));
    const ScratchFolder folder;
    CFile file(folder.Path("pieces"), CFile::modeCreate | CFile::modeReadWrite);
    FaultGuard guard;
    guard.Refuse(refused);
    CSegmentos segments;
    segments.PonFichero(&file);
    for (int i = 0; i < 20'000; ++i) Add(segments, {i, 0}, {i + 1, 0}, 0);
    EXPECT_LT(segments.Saca(0).size(), 20'000U);
    EXPECT_TRUE(file.HayError());
    EXPECT_EQ(segments.Cantidad(), 0U);
  }
}

}  // namespace
}  // namespace Meseta47
