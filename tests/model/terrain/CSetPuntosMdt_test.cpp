#include "model/terrain/CSetPuntosMdt.h"

#include <gtest/gtest.h>

#include "model/TinScenes.h"
#include "model/threads/Codigos.h"
#include "platform/CFile.h"
#include "support/FaultGuard.h"
#include "support/ScratchFolder.h"

using namespace Meseta47;
using namespace scenes;

namespace {

constexpr std::size_t kHeader = 12, kSum = 8;  // of a point block

CSetPuntosMdt setOf(std::vector<CPuntoTIN> const& points, int rich = 0) {
  CSetPuntosMdt set(0, rich);
  for (CPuntoTIN const& p : points) set.push_back(p, false);
  return set;
}

std::vector<int> numbers(CSetPuntosMdt const& set) {
  std::vector<int> all;
  for (CPuntoTIN const& p : set) all.push_back(p.num);
  return all;
}

std::vector<int> stablySorted(std::vector<CPuntoTIN> points) {
  std::stable_sort(points.begin(), points.end(),
                   [](auto const& a, auto const& b) { return std::tie(a.x, a.y, a.z) < std::tie(b.x, b.y, b.z); });
  return numbers(setOf(points));
}

/// Points that carry everything that a point can carry.
CSetPuntosMdt laden(int rich) {
  CSetPuntosMdt set(0, rich);
  for (int i = 0; i < 5; ++i) {
    CPuntoTIN p = point(i - 2, -1000 * i, 2147483647 - i, i == 3 ? -4 : i + 1);
    p.intensidad = static_cast<std::uint16_t>(65535 - i);
    p.clasificacion = static_cast<std::uint8_t>(i);
    p.SetBorrado(i == 3);
    p.aero = {1e9 + i, 1, 2, 3, 4, 5, -6, 7};
    set.push_back(p, false);
  }
  return set;
}

int writeTo(CString const& path, CSetPuntosMdt const& set, IPorcentaje* progress = nullptr) {
  CFile file(path, CFile::modeCreate | CFile::modeWrite);
  unsigned value = 0;
  const int code = set.Write(&file, value, 5, progress, MENSAJES_NORMALES);
  return file.Close() ? code : kFicheroInaccesible;
}

int readFrom(CString const& path, CSetPuntosMdt& set, IPorcentaje* progress = nullptr) {
  CFile file(path, CFile::modeRead);
  unsigned value = 0;
  return set.Read(&file, value, 5, progress, MENSAJES_NORMALES);
}

}  // namespace

TEST(CSetPuntosMdt, IndexBeyondTheEndGivesANull) {
  CSetPuntosMdt set = setOf({point(1, 2)});
  EXPECT_EQ(set.at(0), &set[0]);
  EXPECT_EQ(set.at(1), nullptr);
  EXPECT_EQ(set.at(0xFFFFFFFF), nullptr);  // entry 0 of a table that counts from 1
}

TEST(CSetPuntosMdt, PointsStayWhereTheyAreWithinTheReservedRoom) {
  CSetPuntosMdt set(0, 0);
  set.reserve(100, 0, 10);
  set.push_back(point(9, 9), true);
  CPuntoTIN const* const first = &set[0];
  for (int i = 0; i < 99; ++i) set.push_back(point(-i, 0), true);
  EXPECT_EQ(&set[0], first);
  EXPECT_EQ(set[99].x, -98);  // the last one added is the last one
}

TEST(CSetPuntosMdt, PointsOfALivingMeshStayWhereTheyAreWhateverTheRoom) {
  constexpr unsigned kCount = 5000;
  CSetPuntosMdt set = setOf({point(0, 0), point(1, 0), point(2, 0)});
  std::vector<CPuntoTIN const*> places = {&set[0], &set[1], &set[2]};
  for (unsigned i = 3; i < kCount; ++i) {
    set.push_back(point(static_cast<int>(i), 0), i % 7 != 0);
    places.push_back(&set[i]);
  }
  ASSERT_EQ(set.size(), kCount);
  EXPECT_GE(set.capacity(), kCount);
  for (unsigned i = 0; i < kCount; ++i) {
    ASSERT_EQ(&set[i], places[i]) << i;
    ASSERT_EQ(set.at(i), places[i]);
    ASSERT_EQ(set.Indice(places[i]), i);
    ASSERT_EQ(set[i].x, static_cast<int>(i));
  }
  EXPECT_EQ(set.at(kCount), nullptr);
  const CPuntoTIN stranger;
  EXPECT_EQ(set.Indice(&stranger), CSetPuntosMdt::kSinIndice);
  EXPECT_EQ(set.Indice(nullptr), CSetPuntosMdt::kSinIndice);
}

/// A set whose points stand in several blocks, numbered as they came, the highest first.
struct Scattered : testing::TestWithParam<unsigned> {
  CSetPuntosMdt set{0, 1};
  void SetUp() override {
    for (unsigned i = 0; i < GetParam(); ++i) {
      set.push_back(point(-static_cast<int>(i), 7, 0, static_cast<int>(i) + 1), i >= 10);
    }
  }
  [[nodiscard]] std::vector<int> Downwards() const {
    std::vector<int> all;
    for (unsigned i = GetParam(); i > 0; --i) all.push_back(static_cast<int>(i));
    return all;
  }
};

TEST_P(Scattered, SetsSort) {
  set.sort(0, true);
  EXPECT_EQ(numbers(set), Downwards());
}

TEST_P(Scattered, SetsComeBackFromAFile) {
  const ScratchFolder folder;
  ASSERT_EQ(writeTo(folder.Path("p"), set), kHecho);
  CSetPuntosMdt read(0, 0);
  ASSERT_EQ(readFrom(folder.Path("p"), read), kHecho);
  EXPECT_EQ(numbers(read), numbers(set));
}

TEST_P(Scattered, SetsAreCopiedAndTheCopyIsAlive) {
  CSetPuntosMdt copy(set);
  EXPECT_EQ(numbers(copy), numbers(set));
  CPuntoTIN const* const last = &copy[GetParam() - 1];
  for (int i = 0; i < 3000; ++i) copy.push_back(point(i, 0), true);
  EXPECT_EQ(&copy[GetParam() - 1], last);
}

TEST_P(Scattered, SetsMoveAndLeaveNothing) {
  CPuntoTIN const* const last = &set[GetParam() - 1];
  CSetPuntosMdt other(std::move(set));
  EXPECT_EQ(other.size(), GetParam());
  EXPECT_EQ(&other[GetParam() - 1], last);
  EXPECT_EQ(set.size(), 0u);  // NOLINT(bugprone-use-after-move): that is the claim
}

TEST_P(Scattered, SetsGrowAndShrink) {
  const std::vector<int> before = numbers(set);
  set.resize(GetParam() + 5);
  EXPECT_EQ(set[GetParam() + 4].num, 0);
  set.resize(GetParam());
  EXPECT_EQ(numbers(set), before);
  set.clear();
  EXPECT_EQ(set.size(), 0u);
  EXPECT_EQ(set.capacity(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Sizes, Scattered, testing::Values(11u, 1034u, 1035u, 4000u, 20000u));

TEST(CSetPuntosMdt, ResizingMakesClearPoints) {
  CSetPuntosMdt set(0, 0);
  set.resize(3);
  EXPECT_EQ(set.size(), 3u);
  EXPECT_EQ(set[2].num, 0);
  EXPECT_EQ(set[2].aero, tipoAero3{});
}

TEST(CSetPuntosMdt, ClearingGivesTheMemoryBack) {
  CSetPuntosMdt set = laden(0);
  set.clear();
  EXPECT_EQ(set.size(), 0u);
  EXPECT_EQ(set.capacity(), 0u);
}

TEST(CSetPuntosMdt, AscendsByXThenYThenZAndTiesKeepTheirOrder) {
  CSetPuntosMdt set = setOf({point(1, 0, 0, 1), point(0, 5, 0, 2), point(0, 5, -1, 3), point(-1, 9, 9, 4),
                             point(0, 5, 0, 5), point(0, -5, 7, 6)});
  set.sort(0, true);
  EXPECT_EQ(numbers(set), (std::vector<int>{4, 6, 3, 2, 5, 1}));
}

TEST(CSetPuntosMdt, SortingKeepsWhatAPointCarriesAndTheReservedRoom) {
  CSetPuntosMdt set = laden(1);
  set.reserve(50, 0, 0);
  std::reverse(set.begin(), set.end());
  set.sort(0, true);
  EXPECT_EQ(set[0].x, -2);
  EXPECT_EQ(set[0].aero, (tipoAero3{1e9, 1, 2, 3, 4, 5, -6, 7}));
  EXPECT_EQ(set[4].intensidad, 65531);
  EXPECT_GE(set.capacity(), 50u);
}

struct Cloud {
  char const* name;
  int count;
  std::function<CPuntoTIN(std::mt19937&, int)> make;
};

class HardOrders : public testing::TestWithParam<std::tuple<Cloud, unsigned>> {};

TEST_P(HardOrders, AreThoseOfAStableSort) {
  auto const& [cloud, threads] = GetParam();
  const Processors processors(threads);
  std::mt19937 random(20);
  std::vector<CPuntoTIN> points;
  for (int i = 0; i < cloud.count; ++i) {
    points.push_back(cloud.make(random, i));
    points.back().num = i + 1;
  }
  CSetPuntosMdt set = setOf(points);
  CSetPuntosMdt inPlace(set);
  set.sort(0, true);
  EXPECT_EQ(numbers(set), stablySorted(points));
  CPuntoTIN const* const first = inPlace.at(0);
  inPlace.OrdenaEnSitio();
  EXPECT_EQ(numbers(inPlace), numbers(set));
  EXPECT_EQ(inPlace.at(0), first) << "no second set";
}

namespace {

int any(std::mt19937& random) { return static_cast<int>(random()); }
int upTo(std::mt19937& random, unsigned limit) { return static_cast<int>(random() % limit); }

const Cloud kClouds[] = {
    {"none", 0, [](auto&, int) { return point(0, 0); }},
    {"one", 1, [](auto&, int) { return point(0, 0); }},
    {"random", 100000, [](auto& r, int) { return point(any(r), any(r), any(r)); }},
    {"few positions", 50000, [](auto& r, int) { return point(upTo(r, 4), upTo(r, 4), upTo(r, 4)); }},
    {"one position", 20000, [](auto&, int) { return point(7, 7, 7); }},
    {"one column", 50000, [](auto& r, int) { return point(5, any(r)); }},
    {"outlier", 50000, [](auto& r, int i) { return i == 99 ? point(2147483647, 0) : point(upTo(r, 500), any(r)); }},
    {"descending", 30000, [](auto&, int i) { return point(-i, 0); }},
    {"ascending", 30000, [](auto&, int i) { return point(i, 0); }},
    {"just few", 4095, [](auto& r, int) { return point(any(r), 0); }},
    {"just many", 4096, [](auto& r, int) { return point(any(r), 0); }},
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Clouds, HardOrders, testing::Combine(testing::ValuesIn(kClouds), testing::Values(1u, 2u, 4u)),
                         [](auto const& param) {
                           std::string name = std::get<0>(param.param).name;
                           std::replace(name.begin(), name.end(), ' ', '_');
                           return name + "_" + std::to_string(std::get<1>(param.param));
                         });

class Forms : public testing::TestWithParam<int> {};

TEST_P(Forms, ComeBackFromAFileAsTheyWere) {
  const ScratchFolder folder;
  const CSetPuntosMdt set = laden(GetParam());
  ASSERT_EQ(writeTo(folder.Path("p"), set), kHecho);
  EXPECT_EQ(BytesOf(folder.Path("p")).size(), kHeader + 5u * (GetParam() ? 36 : 20) + kSum);
  CSetPuntosMdt read(0, 1 - GetParam());
  read.reserva = 10;
  ASSERT_EQ(readFrom(folder.Path("p"), read), kHecho);
  ASSERT_EQ(read.size(), 5u);
  EXPECT_GE(read.capacity(), 15u);
  EXPECT_EQ(read.EsRica(), GetParam() == 1);
  for (unsigned i = 0; i < 5; ++i) {
    EXPECT_EQ(read[i], set[i]);
    EXPECT_EQ(read[i].num, set[i].num);
    EXPECT_EQ(read[i].intensidad, set[i].intensidad);
    EXPECT_EQ(read[i].clasificacion, set[i].clasificacion);
    EXPECT_EQ(read[i].EsBorrado(), set[i].EsBorrado());
    EXPECT_EQ(read[i].aero, GetParam() ? set[i].aero : tipoAero3{});
  }
}

TEST_P(Forms, AreRefusedWhereverTheyAreCut) {
  const ScratchFolder folder;
  ASSERT_EQ(writeTo(folder.Path("p"), laden(GetParam())), kHecho);
  const std::string whole = BytesOf(folder.Path("p"));
  for (std::size_t length = 0; length < whole.size(); ++length) {
    PutBytes(folder.Path("cut"), whole.substr(0, length));
    CSetPuntosMdt set = laden(0);
    EXPECT_EQ(readFrom(folder.Path("cut"), set), kFicheroCortado) << "cut to " << length;
    EXPECT_EQ(set.size(), 0u);
  }
}

TEST_P(Forms, AreRefusedWhicheverByteIsAnother) {
  const ScratchFolder folder;
  ASSERT_EQ(writeTo(folder.Path("p"), laden(GetParam())), kHecho);
  const std::string whole = BytesOf(folder.Path("p"));
  for (std::size_t i = 0; i < whole.size(); ++i) {
    std::string damaged = whole;
    damaged[i] = static_cast<char>(damaged[i] ^ 0x10);
    PutBytes(folder.Path("bad"), damaged);
    CSetPuntosMdt set(0, 0);
    EXPECT_NE(readFrom(folder.Path("bad"), set), kHecho) << "byte " << i;
    EXPECT_EQ(set.size(), 0u);
  }
}

INSTANTIATE_TEST_SUITE_P(PlainAndRich, Forms, testing::Values(0, 1));

TEST(CSetPuntosMdt, IsReadWithNothingButTheFile) {
  const ScratchFolder folder;
  ASSERT_EQ(writeTo(folder.Path("p"), laden(1)), kHecho);
  CFile file(folder.Path("p"), CFile::modeRead);
  CSetPuntosMdt set(0, 0);
  EXPECT_EQ(set.Read(&file), kHecho);
  EXPECT_EQ(numbers(set), numbers(laden(1)));
}

TEST(CSetPuntosMdt, ACountThatTheFileCannotHoldTakesNoMemory) {
  const ScratchFolder folder;
  ASSERT_EQ(writeTo(folder.Path("p"), laden(0)), kHecho);
  std::string bytes = BytesOf(folder.Path("p"));
  for (std::size_t i = 4; i < 12; ++i) bytes[i] = static_cast<char>(0xFF);
  PutBytes(folder.Path("p"), bytes);
  CSetPuntosMdt set(0, 0);
  EXPECT_EQ(readFrom(folder.Path("p"), set), kFicheroCortado);
  EXPECT_EQ(set.capacity(), 0u);
}

TEST(CSetPuntosMdt, AFullDiskIsToldInWriting) {
  const ScratchFolder folder;
  FaultGuard guard;
  guard.LimitDisk(50);
  EXPECT_EQ(writeTo(folder.Path("p"), laden(0)), kFicheroInaccesible);
}

TEST(CSetPuntosMdt, WritingAndReadingCanBeCancelled) {
  const ScratchFolder folder;
  Listener listener;
  CSetPuntosMdt set(0, 0);
  set.resize(200000);
  ASSERT_EQ(writeTo(folder.Path("p"), set, &listener), kHecho);
  ASSERT_GT(listener.reports, 1);
  listener.cancelAt = listener.reports + 1;
  EXPECT_EQ(writeTo(folder.Path("q"), set, &listener), kCancelado);
  listener.cancelAt = listener.reports + 1;
  EXPECT_EQ(readFrom(folder.Path("p"), set, &listener), kCancelado);
  EXPECT_EQ(set.size(), 0u);
}

TEST(CSetPuntosMdt, AtLevelZeroNothingIsReported) {
  const ScratchFolder folder;
  Listener listener;
  CSetPuntosMdt set(0, 0);
  set.resize(200000);
  CFile file(folder.Path("p"), CFile::modeCreate | CFile::modeWrite);
  unsigned value = 7;
  EXPECT_EQ(set.Write(&file, value, 200007, &listener, MENSAJES_NINGUNO), kHecho);
  EXPECT_EQ(listener.reports, 0);
  EXPECT_EQ(value, 200007u);
}
