// The worker of a linking pass, fed by hand.
#include <chrono>
#include <gmock/gmock.h>
#include <thread>

#include "planar/CSetTriangulos2D.h"
#include "planar/PhaseScenes.h"
#include "platform/CSingleLock.h"
#include "support/FaultGuard.h"

namespace Meseta47 {
namespace {

using support::Triangle;
using testing::ElementsAre;
using testing::IsEmpty;
using Worker = CHiloSalvaTriangulosEnlazados;

/// Closed sets of a triangle each, whose records are (1, 2, 3), (4, 5, 6), ...
class SalvaEnlazados : public testing::Test {
 protected:
  SalvaEnlazados() {
    for (int i = 0; i < 5; ++i) {
      points.emplace_back(100 * i, 0, 10, 3 * i + 1);
      points.emplace_back(100 * i, 50, 50 * i, 3 * i + 2);
      points.emplace_back(100 * i + 50, 0, 10, 3 * i + 3);
    }
    for (std::size_t i = 0; i < 5; ++i) {
      own.push_back(std::make_unique<CSetTriangulos2D>(1));
      own.back()->EstableceDivisiones(test::Box(-10'000, -10'000, 10'000, 10'000), false);
      own.back()->InsertaOrdenado(CTriangulo2D(&points[3 * i], &points[3 * i + 1], &points[3 * i + 2]),
                                  own.back()->maximas);
      own.back()->QuitaTrianguloActual();
    }
    sets.reserve(20);
    event = CreateEventW(nullptr, true, true, nullptr);
  }
  ~SalvaEnlazados() override {
    worker.Stop();
    CloseHandle(event);
  }

  Worker::CCola Queue() { return {&sets, &section, &stop, &end, &news}; }
  void Append(std::size_t i) {
    {
      CSingleLock lock(&section, true);
      sets.push_back(own[i].get());
    }
    Announce();
  }
  void Raise(std::atomic<int>& flag) {
    flag = 1;
    Announce();
  }
  void Announce() {
    news.fetch_add(1);
    news.notify_one();
  }
  void WaitForDone(unsigned count) {
    for (unsigned done = worker.Hechos(); done < count; done = worker.Hechos()) worker.EsperaMasHechosQue(done);
  }
  [[nodiscard]] bool HasLeft() const { return WaitForSingleObject(event, 0) == WAIT_TIMEOUT; }
  void WaitForLeaving() {
    while (!HasLeft()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  [[nodiscard]] std::vector<Triangle> Records() {
    file.Flush();
    return test::RecordsOf(BytesOf(file.GetFilePath()));
  }

  ScratchFolder folder;
  CFile file{folder.Path("sets"), 36930};
  std::vector<CCoor3D<int>> points;
  std::vector<std::unique_ptr<CSetTriangulos2D>> own;
  std::vector<CSetTriangulos2D*> sets;
  CCriticalSection section;
  std::atomic<int> stop{0}, end{0};
  std::atomic<unsigned> news{0};
  HANDLE event = nullptr;
  Worker worker;
};

TEST_F(SalvaEnlazados, WritesWhatIsQueuedInOrderAndLeavesWhenNoMoreComes) {
  for (const std::size_t i : {2U, 0U, 1U}) Append(i);
  Raise(end);
  ASSERT_TRUE(worker.Start(0, &event, Queue(), &file));
  WaitForLeaving();
  EXPECT_EQ(worker.Hechos(), 3U);
  EXPECT_THAT(Records(), ElementsAre(Triangle{7, 8, 9}, Triangle{1, 2, 3}, Triangle{4, 5, 6}));
  EXPECT_EQ(sets.size(), 3U) << "entries stay in the queue";
  EXPECT_EQ(own[2]->cantidad, 0U);
}

TEST_F(SalvaEnlazados, WakesForWhatComesWhileItWaits) {
  ASSERT_TRUE(worker.Start(0, &event, Queue(), &file));
  for (std::size_t i = 0; i < 5; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(i % 2 * 3));
    Append(i);
    WaitForDone(static_cast<unsigned>(i) + 1);
    EXPECT_EQ(worker.Hechos(), i + 1);
  }
  EXPECT_FALSE(HasLeft());
  Raise(end);
  WaitForLeaving();
  EXPECT_EQ(Records().size(), 5U);
}

TEST_F(SalvaEnlazados, LeavesAtOnceWhenStoppedAndTakesNothingMore) {
  ASSERT_TRUE(worker.Start(0, &event, Queue(), &file));
  worker.Stop();
  EXPECT_EQ(stop, 1);
  EXPECT_TRUE(HasLeft());
  EXPECT_FALSE(worker.EstaEnMarcha());
  Append(0);
  ASSERT_TRUE(worker.Start(0, &event, Queue(), &file)) << "the flag is the queue's owner's to take down";
  worker.Stop();
  EXPECT_EQ(worker.Hechos(), 0U);
  EXPECT_EQ(own[0]->cantidad, 1U);
}

TEST_F(SalvaEnlazados, IsStoppedBeforeItHasStartedAndTwiceWithoutHarm) {
  worker.Stop();
  EXPECT_EQ(stop, 0) << "there is no queue to speak of";
  ASSERT_TRUE(worker.Start(0, &event, Queue(), &file));
  worker.Stop();
  worker.Stop();
  EXPECT_EQ(worker.Hechos(), 0U);
}

TEST_F(SalvaEnlazados, AThreadThatIsThereIsNotStartedAgain) {
  FaultGuard guard;
  end = 1;
  ASSERT_TRUE(worker.Start(0, &event, Queue(), &file));
  WaitForLeaving();
  EXPECT_TRUE(worker.Start(0, &event, Queue(), &file));
  EXPECT_EQ(guard.Asked(EOperacion::CreaHilo), 1);
}

TEST_F(SalvaEnlazados, ARefusedThreadIsTold) {
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaHilo);
  EXPECT_FALSE(worker.Start(0, &event, Queue(), &file));
  EXPECT_FALSE(worker.EstaEnMarcha());
}

TEST_F(SalvaEnlazados, ASetQueuedTwiceIsEmptyTheSecondTime) {
  Append(3);
  Append(3);
  Raise(end);
  ASSERT_TRUE(worker.Start(0, &event, Queue(), &file));
  WaitForLeaving();
  EXPECT_EQ(worker.Hechos(), 2U);
  EXPECT_THAT(Records(), ElementsAre(Triangle{10, 11, 12}));
}

TEST_F(SalvaEnlazados, ARefusalOfTheDiskStaysWithTheFileAndTheSetsAreFreed) {
  FaultGuard guard;
  guard.LimitDisk(12);
  for (std::size_t i = 0; i < 5; ++i) Append(i);
  Raise(end);
  ASSERT_TRUE(worker.Start(0, &event, Queue(), &file));
  WaitForLeaving();
  EXPECT_FALSE(file.Flush());
  EXPECT_TRUE(file.HayError());
  EXPECT_EQ(worker.Hechos(), 5U);
  for (auto const& set : own) EXPECT_EQ(set->cantidad, 0U);
  EXPECT_FALSE(worker.FaltoMemoria());
}

TEST_F(SalvaEnlazados, TheJobOfCuttingGathersSegmentsAndWritesNothing) {
  CSegmentos contours;
  Append(1);
  Raise(end);
  ASSERT_TRUE(worker.Start(0, &event, Queue(), &contours, 40, 1e12));
  WaitForLeaving();
  EXPECT_EQ(contours.Cantidad(), 1U) << "the triangle rises from 10 to 50";
  EXPECT_EQ(own[1]->cantidad, 0U);
  EXPECT_THAT(Records(), IsEmpty());
}

TEST_F(SalvaEnlazados, AWaitForMoreEndsEvenIfNothingIsDone) {
  ASSERT_TRUE(worker.Start(0, &event, Queue(), &file));
  worker.EsperaMasHechosQue(0);
  EXPECT_EQ(worker.Hechos(), 0U);
}

}  // namespace
}  // namespace Meseta47
