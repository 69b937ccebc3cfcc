#include "model/threads/IPorcentaje.h"

#include <chrono>
#include <cstring>
#include <gtest/gtest.h>
#include <thread>

#include "model/TinScenes.h"
#include "model/threads/CAvance.h"
#include "model/threads/Reparto.h"
#include "support/FaultGuard.h"

using namespace Meseta47;
using namespace scenes;

TEST(IPorcentaje, WithoutAnApplicationThereIsNone) { EXPECT_EQ(BuscaPorcentaje(), nullptr); }

TEST(IPorcentaje, AnApplicationThatTakesNoProgressHasNone) {
  const CWinApp application;
  EXPECT_EQ(BuscaPorcentaje(), nullptr);
}

TEST(IPorcentaje, IsThatOfTheCurrentApplication) {
  Listener listener;
  EXPECT_EQ(BuscaPorcentaje(), &listener);
}

#if defined(__x86_64__)
TEST(IPorcentaje, SlotsStandInTheirOrder) {
  const auto slot = [](auto member) {  // a pointer to a virtual member is its place in the table, in bytes, plus 1
    std::ptrdiff_t place;
    std::memcpy(&place, &member, sizeof place);
    return (place - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
  };
  EXPECT_EQ(slot(&IPorcentaje::Porcentaje), 0);
  EXPECT_EQ(slot(&IPorcentaje::Fase), 1);
  EXPECT_EQ(slot(&IPorcentaje::Cierra), 2);
  EXPECT_EQ(slot(&IPorcentaje::Amplia), 3);
  EXPECT_EQ(slot(&IPorcentaje::Abre), 4);
  EXPECT_EQ(slot(&IPorcentaje::Mensaje), 5);
}
#endif

TEST(CAvance, PassesMakeOneBarThatOnlyGrows) {
  struct Bar : Listener {
    std::vector<unsigned long long> values;
    int Porcentaje(int, unsigned long long value, unsigned long long total, bool) override {
      EXPECT_EQ(total, 3000u);
      values.push_back(value);
      return 1;
    }
  } bar;
  CAvance progress(&bar, 3, 3);
  for (const std::size_t things : {10u, 0u, 4u}) {
    progress.Pasada(things);
    progress(things / 2);
    progress(things);
  }
  EXPECT_EQ(bar.values, (std::vector<unsigned long long>{500, 1000, 2000, 2000, 2500, 3000}));
}

class Shares : public testing::TestWithParam<unsigned> {};

TEST_P(Shares, CoverEverythingOnce) {
  const Processors processors(GetParam());
  for (const std::size_t total : {0u, 1u, 99u, 100u, 101u, 5000u}) {
    std::vector<std::atomic<int>> visits(total);
    EXPECT_TRUE(Reparte(total, 100, [&](std::size_t first, std::size_t last) {
      EXPECT_LE(last - first, 100u);
      for (std::size_t i = first; i < last; ++i) ++visits[i];
    }));
    EXPECT_TRUE(std::all_of(visits.begin(), visits.end(), [](auto const& v) { return v == 1; })) << total;
  }
}

TEST_P(Shares, EndWhenTheProgressSaysSo) {
  const Processors processors(GetParam());
  const auto caller = std::this_thread::get_id();
  std::atomic<std::size_t> done{0};
  const auto work = [&](std::size_t first, std::size_t last) {
    // The others are slow, so that the caller's turn comes on the busiest machine.
    if (std::this_thread::get_id() != caller) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    done += last - first;
  };
  EXPECT_FALSE(Reparte(100000, 1, work, [](std::size_t) { return false; }));
  EXPECT_LT(done, 100000u);
}

INSTANTIATE_TEST_SUITE_P(Threads, Shares, testing::Values(1u, 2u, 4u));

TEST(Reparto, RefusedThreadsLeaveTheirShareToTheOthers) {
  const Processors processors(4);
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaHilo, 2);
  std::atomic<std::size_t> done{0};
  EXPECT_TRUE(Reparte(10000, 10, [&](std::size_t first, std::size_t last) { done += last - first; }));
  EXPECT_EQ(done, 10000u);
}
