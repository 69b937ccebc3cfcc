#include "model/threads/CEquipo.h"

#include <atomic>
#include <gmock/gmock.h>
#include <thread>

#include "platform/Manejadores.h"
#include "support/FaultGuard.h"

namespace Meseta47 {
namespace {

TEST(CEquipo, AllEventsAreWaitedForAndStaySet) {
  CEquipo team(3, false);
  ASSERT_TRUE(team.Estan());
  team[0].SetEvent();
  team[2].SetEvent();
  EXPECT_FALSE(team.EsperaTodos(1));
  EXPECT_TRUE(SetEvent(*team.Manejador(1))) << "the handle is the event's";
  EXPECT_TRUE(team.EsperaTodos());
  EXPECT_TRUE(team.EsperaTodos(0));
}

TEST(CEquipo, EventsThatTheSystemRefusedAreTold) {
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaEvento, 2);
  EXPECT_FALSE(CEquipo(2, false).Estan());
}

TEST(CEquipo, AWaitWithProgressEndsWhenTheWorkIsDoneAndWakesForIt) {
  CEquipo team(1, false);
  std::atomic<bool> done{false};
  std::atomic<int> asked{0};
  std::thread worker([&] {
    while (asked == 0) std::this_thread::yield();
    done = true;
    team[0].SetEvent();
  });
  EXPECT_TRUE(team.EsperaHasta([&] { return done.load(); }, [&] { return ++asked > 0; }));
  EXPECT_GE(asked, 1);
  worker.join();
}

TEST(CEquipo, AWaitIsCancelledByItsProgress) {
  CEquipo team(1, false);
  int asked = 0;
  EXPECT_FALSE(team.EsperaHasta([] { return false; }, [&] { return ++asked < 3; }));
  EXPECT_EQ(asked, 3);
}

TEST(CEquipo, AWaitForWhatIsDoneAsksForNothing) {
  CEquipo team(1, false);
  EXPECT_TRUE(team.EsperaHasta([] { return true; }, [] { return false; }));
}

}  // namespace
}  // namespace Meseta47
