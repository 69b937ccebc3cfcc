// The pool of slots, from one thread and from several that give back what others took.
#include "model/storage/CReserva.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <gmock/gmock.h>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace Meseta47 {
namespace {

using testing::Contains;
using testing::Not;

/// With the address sanitizer each request goes to the system, and no slot is ever reused on purpose.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kPooled = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kPooled = false;
#else
constexpr bool kPooled = true;
#endif
#else
constexpr bool kPooled = true;
#endif

constexpr std::size_t kBytes = 100;

std::vector<void*> Take(CReserva& pool, CReserva::CMonton*& mine, std::size_t count) {
  std::vector<void*> slots;
  for (std::size_t i = 0; i < count; ++i) slots.push_back(pool.Pide(mine));
  return slots;
}
void GiveBack(std::vector<void*> const& slots, CReserva::CMonton* mine) {
  for (void* slot : slots) CReserva::Devuelve(slot, mine);
}
/// Runs `work` in a thread of its own, whose share of the pool it gets and gives up at the end.
template <class F>
void InThread(CReserva& pool, F&& work) {
  std::thread([&] {
    CReserva::CMonton* mine = nullptr;
    work(mine);
    pool.Abandona(mine);
  }).join();
}

TEST(CReserva, SlotsStartACacheLineEachAndLieApart) {
  CReserva pool(kBytes);
  CReserva::CMonton* mine = nullptr;
  std::vector<void*> slots = Take(pool, mine, 5'000);  // several blocks
  for (std::size_t i = 0; i < slots.size(); ++i) {
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(slots[i]) % 64, 0U);
    std::memset(slots[i], static_cast<int>(i % 251), kBytes);
  }
  for (std::size_t i = 0; i < slots.size(); ++i) {
    auto const* bytes = static_cast<unsigned char const*>(slots[i]);
    ASSERT_TRUE(std::all_of(bytes, bytes + kBytes, [i](unsigned char b) { return b == i % 251; })) << i;
  }
  GiveBack(slots, mine);
  pool.Abandona(mine);
}

TEST(CReserva, AHeapThatGrowsBySeveralBlocksAtOnceFindsEachSlotByItsNumber) {
  constexpr std::size_t kStep = 128, kCount = 200'000;  // 100 blocks
  CReserva pool(kStep, true);
  CReserva::CMonton* mine = nullptr;
  const std::vector<void*> slots = Take(pool, mine, kCount);
  EXPECT_EQ(std::set<void*>(slots.begin(), slots.end()).size(), kCount);
  if (kPooled) {
    for (void* slot : slots) ASSERT_EQ(CNumeros::Direccion<kStep>(CReserva::Numero<kStep>(slot)), slot);
  }
  for (void* slot : slots) std::memset(slot, 3, kStep);
  GiveBack(slots, mine);
  pool.Encoge(mine);
  EXPECT_EQ(mine, nullptr) << "all slots are home";
}

TEST(CReserva, TheSlotGivenBackLastIsTakenFirst) {
  CReserva pool(kBytes);
  CReserva::CMonton* mine = nullptr;
  const std::vector<void*> slots = Take(pool, mine, 3);
  GiveBack(slots, mine);
  const std::vector<void*> again = Take(pool, mine, 3);
  if (kPooled) {
    EXPECT_THAT(again, testing::ElementsAre(slots[2], slots[1], slots[0]));
  }
  EXPECT_EQ(std::set<void*>(again.begin(), again.end()).size(), 3U);
  GiveBack(again, mine);
  pool.Abandona(mine);
}

TEST(CReserva, ASlotGivenBackByAnotherThreadReturnsToTheThreadThatTookIt) {
  CReserva pool(kBytes);
  CReserva::CMonton* mine = nullptr;
  const std::vector<void*> slots = Take(pool, mine, 3);
  InThread(pool, [&](CReserva::CMonton*& its) {
    GiveBack(slots, its);
    const std::vector<void*> own = Take(pool, its, 3);
    for (void* slot : own) EXPECT_THAT(slots, Not(Contains(slot)));
    GiveBack(own, its);
  });
  const std::vector<void*> again = Take(pool, mine, 3);
  if (kPooled) {
    EXPECT_THAT(again, testing::UnorderedElementsAreArray(slots));
  }
  GiveBack(again, mine);
  pool.Abandona(mine);
}

TEST(CReserva, ABatchOfSlotsReturnsToTheThreadsThatTookThem) {
  CReserva pool(kBytes);
  CReserva::CMonton* mine = nullptr;
  const std::vector<void*> slots = Take(pool, mine, 200);
  InThread(pool, [&](CReserva::CMonton*& its) {
    const std::vector<void*> own = Take(pool, its, 3);
    {
      CReserva::CLote batch(its);
      for (std::size_t i = 0; i < slots.size(); ++i) {
        batch.Anade(slots[i]);
        if (i < own.size()) batch.Anade(own[i]);
      }
    }
    const std::vector<void*> again = Take(pool, its, 3);
    if (kPooled) {
      EXPECT_THAT(again, testing::UnorderedElementsAreArray(own));
    }
    GiveBack(again, its);
  });
  const std::vector<void*> again = Take(pool, mine, 200);
  if (kPooled) {
    EXPECT_THAT(again, testing::UnorderedElementsAreArray(slots));
  }
  GiveBack(again, mine);
  pool.Abandona(mine);
}

TEST(CReserva, AThreadThatNeverTookAnythingMayGiveBack) {
  CReserva pool(kBytes);
  CReserva::CMonton* mine = nullptr;
  const std::vector<void*> slots = Take(pool, mine, 2);
  std::thread([&] { GiveBack(slots, nullptr); }).join();
  pool.Encoge(mine);
  EXPECT_EQ(mine, nullptr) << "all slots are home";
}

TEST(CReserva, MemoryGoesBackOnlyWhenNoSlotIsInUse) {
  CReserva pool(kBytes);
  CReserva::CMonton* mine = nullptr;
  pool.Encoge(mine);
  EXPECT_EQ(mine, nullptr);
  std::vector<void*> slots = Take(pool, mine, 4'000);
  if (kPooled) {
    void* kept = slots.back();
    slots.pop_back();
    GiveBack(slots, mine);
    pool.Encoge(mine);
    EXPECT_NE(mine, nullptr);
    std::memset(kept, 7, kBytes);
    slots = {kept};
  }
  GiveBack(slots, mine);
  pool.Encoge(mine);
  EXPECT_EQ(mine, nullptr);
  GiveBack(Take(pool, mine, 1), mine);
  pool.Abandona(mine);
}

TEST(CReserva, SlotsOutliveTheirThreadAndTheNextOneTakesOverTheRest) {
  CReserva pool(kBytes);
  std::vector<void*> slots;
  void* returned = nullptr;
  InThread(pool, [&](CReserva::CMonton*& its) {
    slots = Take(pool, its, 3);
    returned = slots.back();
    slots.pop_back();
    CReserva::Devuelve(returned, its);
  });
  for (void* slot : slots) std::memset(slot, 9, kBytes);
  InThread(pool, [&](CReserva::CMonton*& its) {
    void* slot = pool.Pide(its);
    if (kPooled) {
      EXPECT_EQ(slot, returned);
    }
    std::memset(slot, 1, kBytes);
    EXPECT_EQ(static_cast<unsigned char*>(slots[0])[kBytes - 1], 9);
    CReserva::Devuelve(slot, its);
    GiveBack(slots, its);
  });
  CReserva::CMonton* mine = nullptr;
  GiveBack(Take(pool, mine, 1), mine);
  pool.Abandona(mine);
}

/// Slots on their way from the thread that took them to the one that gives them back.
class Channel {
 public:
  void Send(void* slot) {
    const std::scoped_lock lock(mutex_);
    slots_.push_back(slot);
  }
  std::vector<void*> Receive() {
    const std::scoped_lock lock(mutex_);
    return std::exchange(slots_, {});
  }

 private:
  std::mutex mutex_;
  std::vector<void*> slots_;
};

TEST(CReserva, ThreadsThatGiveBackToEachOthersShareNeverMeetInASlot) {
  constexpr std::size_t kThreads = 4, kSlots = 20'000;
  CReserva pool(kBytes);
  std::vector<Channel> channels(kThreads);
  std::atomic<std::size_t> finished{0}, spoilt{0};
  const auto work = [&](std::size_t me) {
    CReserva::CMonton* mine = nullptr;
    const auto giveBack = [&] {
      for (void* slot : channels[me].Receive()) {
        auto const* bytes = static_cast<unsigned char const*>(slot);
        if (!std::all_of(bytes, bytes + kBytes, [&](unsigned char b) { return b == bytes[0]; })) ++spoilt;
        CReserva::Devuelve(slot, mine);
      }
    };
    for (std::size_t i = 0; i < kSlots; ++i) {
      void* slot = pool.Pide(mine);
      std::memset(slot, static_cast<int>((me * 61 + i) % 256), kBytes);
      channels[(me + 1 + i % (kThreads - 1)) % kThreads].Send(slot);
      if (i % 16 == 0) giveBack();
    }
    ++finished;
    while (finished < kThreads) std::this_thread::yield();
    giveBack();
    pool.Abandona(mine);
  };
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < kThreads; ++i) threads.emplace_back(work, i);
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(spoilt, 0U);
  CReserva::CMonton* mine = nullptr;
  const std::vector<void*> after = Take(pool, mine, 1'000);
  EXPECT_EQ(std::set<void*>(after.begin(), after.end()).size(), 1'000U);
  GiveBack(after, mine);
  pool.Abandona(mine);
}

}  // namespace
}  // namespace Meseta47
