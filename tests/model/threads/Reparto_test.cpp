#include "model/threads/Reparto.h"

#include <algorithm>
#include <atomic>
#include <gtest/gtest.h>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include "platform/CWinApp.h"

namespace Meseta47 {
namespace {

/// Threads that take part in work whose blocks wait for each other until so many of them are under way, or for a while.
std::size_t ThreadsOf(unsigned processors, unsigned busy, unsigned expected) {
  CWinApp application;
  application.PonProcesadores(processors);
  std::mutex lock;
  std::set<std::thread::id> threads;
  std::atomic<unsigned> met{0};
  Reparte(
      64, 1,
      [&](std::size_t, std::size_t) {
        {
          const std::lock_guard guard(lock);
          if (threads.insert(std::this_thread::get_id()).second) ++met;
        }
        for (int i = 0; i < 2000 && met < expected; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(1));
      },
      {}, busy);
  return threads.size();
}

TEST(Reparte, CallsForEveryItemOnce) {
  CWinApp application;
  application.PonProcesadores(3);
  std::vector<int> calls(1000);
  EXPECT_TRUE(Reparte(calls.size(), 7, [&](std::size_t from, std::size_t to) {
    for (std::size_t i = from; i < to; ++i) ++calls[i];
  }));
  EXPECT_EQ(std::count(calls.begin(), calls.end(), 1), 1000);
}

TEST(Reparte, TakesAllProcessorsButThoseThatAreBusy) {
  EXPECT_EQ(ThreadsOf(4, 0, 4), 4U);
  EXPECT_EQ(ThreadsOf(4, 1, 3), 3U);
  EXPECT_EQ(ThreadsOf(2, 1, 1), 1U);
}

TEST(Reparte, WorksOnOneProcessorHoweverManyAreBusy) {
  EXPECT_EQ(ThreadsOf(1, 1, 1), 1U);
  EXPECT_EQ(ThreadsOf(2, 9, 1), 1U);
}

TEST(Reparte, BeginsNoFurtherBlockOnceToldToStop) {
  CWinApp application;
  application.PonProcesadores(1);
  std::size_t begun = 0;
  EXPECT_FALSE(Reparte(
      100, 10, [&](std::size_t, std::size_t) { ++begun; }, [](std::size_t done) { return done < 30; }));
  EXPECT_EQ(begun, 3U);
}

}  // namespace
}  // namespace Meseta47
