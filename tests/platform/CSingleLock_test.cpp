#include "platform/CSingleLock.h"

#include <gtest/gtest.h>
#include <thread>

#include "platform/CCriticalSection.h"
#include "platform/CEvent.h"

namespace {

bool FreeForOthers(CCriticalSection& section) {
  bool free = false;
  std::jthread([&] {
    CSingleLock lock(&section);
    free = lock.Lock(0);
  }).join();
  return free;
}

TEST(CSingleLock, TakesNothingUntilAsked) {
  CCriticalSection section;
  CSingleLock lock(&section, false);
  EXPECT_FALSE(lock.IsLocked());
  EXPECT_FALSE(lock.Unlock());
  EXPECT_TRUE(FreeForOthers(section));
  EXPECT_TRUE(lock.Lock(-1));
  EXPECT_TRUE(lock.IsLocked());
  EXPECT_FALSE(FreeForOthers(section));
  EXPECT_TRUE(lock.Unlock());
  EXPECT_TRUE(FreeForOthers(section));
}

TEST(CSingleLock, GivesBackWhatItHoldsAtTheEndOfItsBlock) {
  CCriticalSection section;
  {
    CSingleLock lock(&section, true);
    EXPECT_TRUE(lock.IsLocked());
    EXPECT_FALSE(FreeForOthers(section));
  }
  EXPECT_TRUE(FreeForOthers(section));
}

TEST(CSingleLock, TakingTwiceHoldsOnce) {
  CCriticalSection section;
  CSingleLock lock(&section, true);
  EXPECT_TRUE(lock.Lock());
  EXPECT_TRUE(lock.Unlock());
  EXPECT_TRUE(FreeForOthers(section));
}

TEST(CSingleLock, WithoutAnObjectHoldsNothing) {
  CSingleLock lock(nullptr, true);
  EXPECT_FALSE(lock.IsLocked());
  EXPECT_FALSE(lock.Lock());
}

TEST(CSingleLock, WaitsForAnEventToo) {
  CEvent event;
  CSingleLock lock(&event);
  EXPECT_FALSE(lock.Lock(0));
  event.SetEvent();
  EXPECT_TRUE(lock.Lock());
}

}  // namespace
