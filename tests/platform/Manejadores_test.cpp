#include "platform/Manejadores.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <gmock/gmock.h>
#include <thread>
#include <vector>

#include "support/FaultGuard.h"

namespace {

using namespace std::chrono_literals;

constexpr unsigned long kFailed = 0xFFFFFFFF;
constexpr unsigned long kShort = 20;  // milliseconds: long enough to tell waiting from passing

unsigned long Call(void* body) {
  (*static_cast<std::function<void()>*>(body))();
  return 0;
}

/// A thread on a function, which must outlive it.
HANDLE Start(std::function<void()>& body, unsigned long options = 0) {
  return CreateThread(nullptr, 0, Call, &body, options, nullptr);
}

struct Handle {
  HANDLE value;
  ~Handle() { CloseHandle(value); }
  operator HANDLE() const { return value; }
};

TEST(Handles, WhatIsNoHandleIsAnsweredWithFailure) {
  int variable = 0;
  const Handle closed{CreateEventW(nullptr, true, true, nullptr)};
  EXPECT_TRUE(CloseHandle(closed));
  for (HANDLE const none : {HANDLE{nullptr}, HANDLE{&variable}, reinterpret_cast<HANDLE>(std::intptr_t{-1}),
                            reinterpret_cast<HANDLE>(std::intptr_t{7}), closed.value}) {
    EXPECT_EQ(WaitForSingleObject(none, INFINITE), WAIT_FAILED);
    EXPECT_EQ(WaitForMultipleObjects(1, &none, true, INFINITE), WAIT_FAILED);
    EXPECT_FALSE(SetEvent(none));
    EXPECT_FALSE(ResetEvent(none));
    EXPECT_FALSE(SetThreadPriority(none, 0));
    EXPECT_EQ(SuspendThread(none), kFailed);
    EXPECT_EQ(ResumeThread(none), kFailed);
    EXPECT_FALSE(CloseHandle(none));
  }
}

TEST(Handles, TheAddressOfAHandleIsNoHandle) {
  const Handle event{CreateEventW(nullptr, true, false, nullptr)};
  HANDLE variable = event;
  EXPECT_EQ(WaitForSingleObject(&variable, INFINITE), WAIT_FAILED);
}

TEST(Handles, AClosedHandleIsNeverTheNameOfAnotherObject) {
  HANDLE const first = CreateEventW(nullptr, true, true, nullptr);
  CloseHandle(first);
  const Handle second{CreateEventW(nullptr, true, true, nullptr)};
  EXPECT_NE(first, second.value);
}

TEST(Handles, ThreadsAndEventsAreNotTakenForEachOther) {
  const Handle event{CreateEventW(nullptr, true, true, nullptr)};
  std::function<void()> nothing = [] {};
  const Handle thread{Start(nothing)};
  EXPECT_FALSE(SetThreadPriority(event, 0));
  EXPECT_EQ(SuspendThread(event), kFailed);
  EXPECT_EQ(ResumeThread(event), kFailed);
  EXPECT_FALSE(SetEvent(thread));
  EXPECT_FALSE(ResetEvent(thread));
  EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
}

TEST(Events, AManualOneLetsAllWaitsPassUntilItIsReset) {
  const Handle event{CreateEventW(nullptr, true, true, nullptr)};
  EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_OBJECT_0);
  EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_OBJECT_0);
  EXPECT_TRUE(ResetEvent(event));
  EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_TIMEOUT);
}

TEST(Events, AnAutomaticOneLetsASingleWaitPass) {
  const Handle event{CreateEventW(nullptr, false, false, nullptr)};
  EXPECT_EQ(WaitForSingleObject(event, kShort), WAIT_TIMEOUT);
  EXPECT_TRUE(SetEvent(event));
  EXPECT_TRUE(SetEvent(event)) << "set twice is set once";
  EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_OBJECT_0);
  EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_TIMEOUT);
}

TEST(Events, OneWithANameIsRefused) { EXPECT_EQ(CreateEventW(nullptr, true, true, L"shared"), nullptr); }

TEST(Events, ARefusedOneIsNull) {
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaEvento);
  EXPECT_EQ(CreateEventW(nullptr, true, true, nullptr), nullptr);
}

TEST(Events, AnAutomaticOneWakesOneOfSeveralWaitingThreadsATime) {
  const Handle event{CreateEventW(nullptr, false, false, nullptr)};
  std::atomic<int> passed{0};
  std::vector<std::jthread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      EXPECT_EQ(WaitForSingleObject(event, INFINITE), WAIT_OBJECT_0);
      ++passed;
    });
  }
  for (int i = 1; i <= 4; ++i) {
    SetEvent(event);
    while (passed < i) {
      std::this_thread::yield();
    }
    std::this_thread::sleep_for(5ms);
    EXPECT_EQ(passed, i);
  }
}

TEST(Waits, ForOneOfSeveralAnswerThePositionOfTheFirstThatIsSet) {
  const Handle a{CreateEventW(nullptr, true, false, nullptr)};
  const Handle b{CreateEventW(nullptr, false, true, nullptr)};
  const Handle c{CreateEventW(nullptr, false, true, nullptr)};
  HANDLE const all[] = {a, b, c};
  EXPECT_EQ(WaitForMultipleObjects(3, all, false, INFINITE), WAIT_OBJECT_0 + 1);
  EXPECT_EQ(WaitForMultipleObjects(3, all, false, INFINITE), WAIT_OBJECT_0 + 2) << "the first pass unset only b";
  EXPECT_EQ(WaitForMultipleObjects(3, all, false, kShort), WAIT_TIMEOUT);
}

TEST(Waits, ForAllUnsetAutomaticEventsOnlyWhenAllAreSet) {
  const Handle a{CreateEventW(nullptr, false, true, nullptr)};
  const Handle b{CreateEventW(nullptr, false, false, nullptr)};
  HANDLE const both[] = {a, b};
  EXPECT_EQ(WaitForMultipleObjects(2, both, true, kShort), WAIT_TIMEOUT);
  SetEvent(b);
  EXPECT_EQ(WaitForMultipleObjects(2, both, true, INFINITE), WAIT_OBJECT_0);
  EXPECT_EQ(WaitForMultipleObjects(2, both, false, 0), WAIT_TIMEOUT);
}

TEST(Waits, ForNothingOrForAStrangerFailAtOnce) {
  const Handle event{CreateEventW(nullptr, true, false, nullptr)};
  HANDLE const withStranger[] = {event, nullptr};
  EXPECT_EQ(WaitForMultipleObjects(0, withStranger, true, INFINITE), WAIT_FAILED);
  EXPECT_EQ(WaitForMultipleObjects(2, nullptr, true, INFINITE), WAIT_FAILED);
  EXPECT_EQ(WaitForMultipleObjects(2, withStranger, true, INFINITE), WAIT_FAILED);
  EXPECT_EQ(WaitForMultipleObjects(2, withStranger, false, INFINITE), WAIT_FAILED);
}

TEST(Waits, HaveNoLimitOfHandles) {
  std::vector<HANDLE> events;
  for (int i = 0; i < 200; ++i) {
    events.push_back(CreateEventW(nullptr, true, i != 150, nullptr));
  }
  EXPECT_EQ(WaitForMultipleObjects(200, events.data(), true, 0), WAIT_TIMEOUT);
  std::jthread later([event = events[150]] { SetEvent(event); });
  EXPECT_EQ(WaitForMultipleObjects(200, events.data(), true, INFINITE), WAIT_OBJECT_0);
  for (HANDLE const event : events) {
    CloseHandle(event);
  }
}

TEST(Waits, OutliveTheHandleThatTheyBeganWith) {
  unsigned long answer = WAIT_FAILED;
  // A thread that is held up before its wait has begun finds no handle, and shows nothing.
  for (int again = 0; again < 50 && answer == WAIT_FAILED; ++again) {
    HANDLE const event = CreateEventW(nullptr, true, false, nullptr);
    std::atomic<bool> waiting{false};
    std::jthread thread([&] {
      waiting = true;
      answer = WaitForSingleObject(event, 100);
    });
    while (!waiting) {
      std::this_thread::yield();
    }
    std::this_thread::sleep_for(10ms);
    EXPECT_TRUE(CloseHandle(event));
  }
  EXPECT_EQ(answer, WAIT_TIMEOUT);
}

TEST(Waits, WithATimeLastThatTime) {
  const Handle event{CreateEventW(nullptr, true, false, nullptr)};
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(WaitForSingleObject(event, kShort), WAIT_TIMEOUT);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(kShort));
}

TEST(Waits, WhoseTimeIsOverAsTheyAreWokenLoseNothing) {
  const Handle event{CreateEventW(nullptr, false, false, nullptr)};
  std::atomic<bool> goesOn{true};
  std::function<void()> sets = [&] {
    while (goesOn) {
      SetEvent(event);
      std::this_thread::sleep_for(1ms);
    }
  };
  const Handle setter{Start(sets)};
  for (int i = 0; i < 1000; ++i) {
    EXPECT_NE(WaitForSingleObject(event, 1), WAIT_FAILED);
  }
  goesOn = false;
  EXPECT_EQ(WaitForSingleObject(setter, INFINITE), WAIT_OBJECT_0);
  SetEvent(event);
  EXPECT_EQ(WaitForSingleObject(event, INFINITE), WAIT_OBJECT_0);
}

TEST(Threads, RunTheirRoutineAndAreSetWhenItHasEnded) {
  int result = 0;
  std::function<void()> body = [&] { result = 42; };
  unsigned long id = 0;
  const Handle thread{CreateThread(nullptr, 0, Call, &body, 0, &id)};
  ASSERT_NE(thread.value, nullptr);
  EXPECT_NE(id, 0u);
  EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
  EXPECT_EQ(result, 42) << "what the thread wrote is seen without a lock";
  EXPECT_EQ(WaitForSingleObject(thread, 0), WAIT_OBJECT_0) << "an ended thread stays ended";
}

TEST(Threads, AreSetOnlyAfterTheirOwnObjectsAreGone) {
  static std::atomic<int> living;
  struct Slow {
    Slow() { ++living; }
    ~Slow() {
      std::this_thread::sleep_for(20ms);
      --living;
    }
  };
  living = 0;
  std::function<void()> body = [] {
    thread_local const Slow slow;
    EXPECT_EQ(living, 1) << &slow;
  };
  const Handle thread{Start(body)};
  WaitForSingleObject(thread, INFINITE);
  EXPECT_EQ(living, 0);
}

TEST(Threads, AllOfAPoolAreWaitedForAtOnce) {
  std::atomic<int> done{0};
  std::function<void()> body = [&] { ++done; };
  std::vector<HANDLE> pool;
  for (int i = 0; i < 64; ++i) {
    pool.push_back(Start(body));
    ASSERT_NE(pool.back(), nullptr);
  }
  EXPECT_EQ(WaitForMultipleObjects(64, pool.data(), true, INFINITE), WAIT_OBJECT_0);
  EXPECT_EQ(done, 64);
  for (HANDLE const thread : pool) {
    EXPECT_TRUE(CloseHandle(thread));
  }
}

TEST(Threads, GoOnWithoutTheirHandle) {
  const Handle go{CreateEventW(nullptr, true, false, nullptr)};
  const Handle done{CreateEventW(nullptr, true, false, nullptr)};
  std::function<void()> body = [&] {
    WaitForSingleObject(go, INFINITE);
    SetEvent(done);
  };
  EXPECT_TRUE(CloseHandle(Start(body)));
  SetEvent(go);
  EXPECT_EQ(WaitForSingleObject(done, INFINITE), WAIT_OBJECT_0);
}

TEST(Threads, AreRefusedWithNull) {
  std::function<void()> body = [] { FAIL(); };
  EXPECT_EQ(CreateThread(nullptr, 0, nullptr, nullptr, 0, nullptr), nullptr);
  EXPECT_EQ(CreateThread(nullptr, std::size_t{1} << 60, Call, &body, CREATE_SUSPENDED, nullptr), nullptr)
      << "no machine has room for such a stack";
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaHilo);
  EXPECT_EQ(Start(body), nullptr);
}

TEST(Threads, HaveTheStackThatWasAskedFor) {
  std::function<void()> body = [] {
    volatile char large[12 << 20];  // past the usual 8 megabytes
    for (std::size_t i = 0; i < sizeof large; i += 4096) {
      large[i] = 1;
    }
    EXPECT_EQ(large[0], 1);
  };
  const Handle thread{CreateThread(nullptr, std::size_t{32} << 20, Call, &body, 0, nullptr)};
  EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
}

TEST(Threads, TakeALowerPriorityAndRefuseOneOnceTheyHaveEnded) {
  const Handle go{CreateEventW(nullptr, true, false, nullptr)};
  std::function<void()> body = [&] { WaitForSingleObject(go, INFINITE); };
  const Handle thread{Start(body)};
  EXPECT_TRUE(SetThreadPriority(thread, 0)) << "normal is where every thread begins";
  EXPECT_TRUE(SetThreadPriority(thread, -2));
  EXPECT_TRUE(SetThreadPriority(thread, -15));
  SetEvent(go);
  WaitForSingleObject(thread, INFINITE);
  EXPECT_FALSE(SetThreadPriority(thread, 0));
}

TEST(Threads, StartedSuspendedDoNotBeginBeforeTheyAreResumed) {
  std::atomic<bool> begun{false};
  std::function<void()> body = [&] { begun = true; };
  const Handle thread{Start(body, CREATE_SUSPENDED)};
  EXPECT_EQ(WaitForSingleObject(thread, kShort), WAIT_TIMEOUT);
  EXPECT_FALSE(begun);
  EXPECT_TRUE(SetThreadPriority(thread, -1));
  EXPECT_EQ(ResumeThread(thread), 1u);
  EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
  EXPECT_TRUE(begun);
}

/// A worker that counts records until it is told to stop.
struct Counter {
  std::atomic<bool> stop{false};
  std::atomic<long> records{0};
  std::function<void()> body = [this] {
    while (!stop) {
      CompruebaSuspension();
      ++records;
    }
  };
  Handle thread{Start(body)};

  ~Counter() {
    stop = true;
    while (ResumeThread(thread) != 0 && WaitForSingleObject(thread, 0) != WAIT_OBJECT_0) {
    }
    WaitForSingleObject(thread, INFINITE);
  }
  void AwaitProgress() const {
    const long before = records;
    while (records == before) {
      std::this_thread::yield();
    }
  }
  /// It may be on its way to one more record, however long it is held up there.
  [[nodiscard]] bool StandsStill() const {
    const long before = records;
    std::this_thread::sleep_for(30ms);
    return records <= before + 1;
  }
};

TEST(Suspension, AWorkerStandsStillUntilEveryRequestIsTakenBack) {
  Counter worker;
  worker.AwaitProgress();
  EXPECT_EQ(SuspendThread(worker.thread), 0u);
  EXPECT_EQ(SuspendThread(worker.thread), 1u);
  EXPECT_TRUE(worker.StandsStill());
  EXPECT_EQ(ResumeThread(worker.thread), 2u);
  EXPECT_TRUE(worker.StandsStill());
  EXPECT_EQ(ResumeThread(worker.thread), 1u);
  worker.AwaitProgress();
  EXPECT_EQ(ResumeThread(worker.thread), 0u);
}

TEST(Suspension, OfOneWorkerLeavesTheOthersRunning) {
  Counter still;
  Counter running;
  SuspendThread(still.thread);
  EXPECT_TRUE(still.StandsStill());
  running.AwaitProgress();
  CompruebaSuspension();  // and this thread, which was not made by CreateThread
  ResumeThread(still.thread);
  still.AwaitProgress();
}

TEST(Suspension, CostsNothingOnceItIsOver) {
  const unsigned before = suspension::peticiones;
  {
    Counter worker;
    SuspendThread(worker.thread);
    EXPECT_EQ(suspension::peticiones, before + 1);
  }
  EXPECT_EQ(suspension::peticiones, before);
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaHilo);
  std::function<void()> body = [] {};
  EXPECT_EQ(Start(body, CREATE_SUSPENDED), nullptr);
  EXPECT_EQ(suspension::peticiones, before) << "a thread that was never made has nothing to wait for";
}

TEST(Suspension, OfAThreadThatEndsWithoutLookingIsForgotten) {
  const unsigned before = suspension::peticiones;
  const Handle go{CreateEventW(nullptr, true, false, nullptr)};
  std::atomic<bool> running{false};
  std::function<void()> body = [&] {
    running = true;
    WaitForSingleObject(go, INFINITE);
  };
  const Handle thread{Start(body)};
  while (!running) {  // one that has not begun would stand still before its first step
    std::this_thread::yield();
  }
  SuspendThread(thread);
  SetEvent(go);
  EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
  EXPECT_EQ(suspension::peticiones, before);
  EXPECT_EQ(SuspendThread(thread), kFailed);
  EXPECT_EQ(ResumeThread(thread), kFailed);
}

TEST(Suspension, ManyRequestsFromManyThreadsEndEven) {
  const unsigned before = suspension::peticiones;
  Counter worker;
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 3; ++i) {
      threads.emplace_back([&] {
        for (int round = 0; round < 500; ++round) {
          SuspendThread(worker.thread);
          ResumeThread(worker.thread);
        }
      });
    }
  }
  worker.AwaitProgress();
  EXPECT_EQ(suspension::peticiones, before);
}

}  // namespace
