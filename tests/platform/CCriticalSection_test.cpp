#include "platform/CCriticalSection.h"

#include <gtest/gtest.h>
#include <system_error>
#include <thread>
#include <vector>

#include "platform/Manejadores.h"
#include "support/FaultGuard.h"

namespace {

TEST(CCriticalSection, LetsOneThreadInAtATime) {
  CCriticalSection section;
  long counter = 0;
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([&] {
        for (int round = 0; round < 10000; ++round) {
          section.Lock();
          ++counter;
          section.Unlock();
        }
      });
    }
  }
  EXPECT_EQ(counter, 40000);
}

TEST(CCriticalSection, IsFreeAfterAsManyUnlocksAsLocks) {
  CCriticalSection section;
  const auto takenByAnother = [&] {
    bool taken = false;
    std::jthread([&] {
      taken = section.Lock(0);
      if (taken) {
        section.Unlock();
      }
    }).join();
    return taken;
  };
  EXPECT_TRUE(section.Lock());
  EXPECT_TRUE(section.Lock(INFINITE));
  EXPECT_TRUE(section.Unlock());
  EXPECT_FALSE(takenByAnother());
  EXPECT_TRUE(section.Unlock());
  EXPECT_TRUE(takenByAnother());
}

TEST(CCriticalSection, AWaitWithATimeGivesUp) {
  CCriticalSection section;
  section.Lock();
  std::jthread([&] { EXPECT_FALSE(section.Lock(20)); }).join();
  section.Unlock();
}

TEST(CCriticalSection, ConstructionThrowsWhenTheSystemHasNoRoom) {
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaSeccion);
  EXPECT_THROW(CCriticalSection(), std::system_error);
}

}  // namespace
