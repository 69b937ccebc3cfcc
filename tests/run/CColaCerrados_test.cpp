// The queue of closed sets and the worker that empties it, with sets that are mere numbers.
#include <chrono>
#include <gmock/gmock.h>
#include <thread>

#include "platform/Manejadores.h"
#include "run/CHiloCerrados.h"
#include "support/FaultGuard.h"

namespace Meseta47 {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Queue = CColaCerrados<int>;
constexpr auto kLimit = Queue::kElementosEnCola;

/// Writes down what it is given. It works on a set only while the gate is open.
class Worker final : public CHiloCerrados<int> {
 public:
  ~Worker() override { Stop(); }
  bool Start(HANDLE* event, Queue& queue) { return Empieza(0, event, queue); }
  using CHiloCerrados::SinHilo;

  std::vector<int> seen;
  CEvent gate{true, true};
  int failsAt = -1;

 private:
  void Trabaja(int& set) override {
    gate.Lock();
    if (set == failsAt) throw std::bad_alloc();
    seen.push_back(set);
  }
};

class CColaCerradosTest : public testing::Test {
 protected:
  ~CColaCerradosTest() override {
    OpenGate();
    worker.Stop();
    CloseHandle(event);
  }
  void OpenGate() { worker.gate.SetEvent(); }
  void Append(int set, std::uint64_t elements = 1) { queue.Anade(&numbers[static_cast<std::size_t>(set)], elements); }
  [[nodiscard]] bool HasLeft() const { return WaitForSingleObject(event, 0) == WAIT_TIMEOUT; }
  void WaitForLeaving() const {
    while (!HasLeft()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  static bool Always() { return true; }

  std::vector<int> numbers = [] {
    std::vector<int> all(100);
    for (int i = 0; i < 100; ++i) all[static_cast<std::size_t>(i)] = i;
    return all;
  }();
  Queue queue;
  HANDLE event = CreateEventW(nullptr, true, true, nullptr);
  Worker worker;  // last: it goes before what it works on
};

TEST_F(CColaCerradosTest, SetsAreDoneInTheOrderInWhichTheyWereQueued) {
  for (const int set : {7, 3, 5, 3}) Append(set);
  ASSERT_TRUE(worker.Start(&event, queue));
  EXPECT_TRUE(queue.EsperaTodo(Always));
  EXPECT_THAT(worker.seen, ElementsAre(7, 3, 5, 3));
  EXPECT_EQ(queue.Hechos(), 4U);
  EXPECT_THAT(queue.Entradas(), SizeIs(4)) << "entries stay in the queue";
  EXPECT_FALSE(HasLeft());
}

TEST_F(CColaCerradosTest, AWorkerThatSleepsIsWokenForAFewThousandElementsAndByAWaitForAll) {
  ASSERT_TRUE(worker.Start(&event, queue));
  std::this_thread::sleep_for(std::chrono::milliseconds(5));
  Append(0, Queue::kElementosPorAviso);
  while (queue.Hechos() < 1) std::this_thread::yield();
  std::this_thread::sleep_for(std::chrono::milliseconds(5));
  Append(1);
  EXPECT_TRUE(queue.EsperaTodo(Always));
  EXPECT_THAT(worker.seen, ElementsAre(0, 1));
}

TEST_F(CColaCerradosTest, TheWorkerLeavesByItselfWhenAllIsDoneAndNoMoreComes) {
  Append(1);
  queue.Acaba();
  ASSERT_TRUE(worker.Start(&event, queue));
  WaitForLeaving();
  EXPECT_THAT(worker.seen, ElementsAre(1));
}

TEST_F(CColaCerradosTest, AWorkerToldToStopTakesNothingQueuedAfterwards) {
  ASSERT_TRUE(worker.Start(&event, queue));
  queue.Para();
  Append(0);
  queue.Acaba();
  WaitForLeaving();
  EXPECT_THAT(worker.seen, IsEmpty());
  EXPECT_TRUE(queue.HaParado());
}

TEST_F(CColaCerradosTest, WithoutAThreadTheJobIsDoneByWhoeverAttends) {
  worker.Atiende();
  worker.SinHilo(queue);
  for (const int set : {7, 3, 7}) Append(set);
  EXPECT_THAT(worker.seen, IsEmpty());
  worker.Atiende();
  EXPECT_THAT(worker.seen, ElementsAre(7, 3, 7));
  EXPECT_EQ(queue.Hechos(), 3U);
  EXPECT_TRUE(queue.EsperaTodo([] { return false; })) << "nothing is left to wait for";
  EXPECT_FALSE(worker.EstaEnMarcha());
}

TEST_F(CColaCerradosTest, WithoutAThreadNothingIsDoneOnceToldToStopOrToFinish) {
  worker.SinHilo(queue);
  queue.Para();
  Append(1);
  worker.Atiende();
  queue.Prepara(0);
  queue.Acaba();
  Append(2);
  worker.Atiende();
  queue.Prepara(0);
  worker.Stop();
  Append(3);
  worker.Atiende();
  EXPECT_THAT(worker.seen, IsEmpty());
  EXPECT_FALSE(queue.HaParado()) << "only a thread is told to stop";
}

TEST_F(CColaCerradosTest, WithoutAThreadMemoryThatGivesOutIsRememberedAndTheNextSetDone) {
  worker.SinHilo(queue);
  worker.failsAt = 1;
  for (const int set : {0, 1, 2}) Append(set);
  worker.Atiende();
  EXPECT_TRUE(worker.FaltoMemoria());
  EXPECT_THAT(worker.seen, ElementsAre(0, 2));
  EXPECT_EQ(queue.Hechos(), 3U);
}

TEST_F(CColaCerradosTest, AQueueMadeReadyAnewIsEmptyWithItsFlagsDown) {
  ASSERT_TRUE(worker.Start(&event, queue));
  Append(0, 10);
  EXPECT_TRUE(queue.EsperaTodo(Always));
  worker.Stop();
  queue.Prepara(3);
  EXPECT_EQ(queue.Encolados(), 0U);
  EXPECT_EQ(queue.Elementos(), 0U);
  EXPECT_EQ(queue.Liberados(), 0U);
  EXPECT_FALSE(queue.HaParado());
  ASSERT_TRUE(worker.Start(&event, queue));
  Append(4);
  EXPECT_TRUE(queue.EsperaTodo(Always));
  EXPECT_THAT(worker.seen, ElementsAre(0, 4));
}

TEST_F(CColaCerradosTest, ElementsAreCountedAsTheyAreQueuedAndAsTheyAreDone) {
  worker.gate.ResetEvent();
  ASSERT_TRUE(worker.Start(&event, queue));
  Append(0, 10);
  Append(1, 5);
  EXPECT_EQ(queue.Elementos(), 15U);
  EXPECT_EQ(queue.Liberados(), 0U);
  OpenGate();
  EXPECT_TRUE(queue.EsperaTodo(Always));
  EXPECT_EQ(queue.Liberados(), 15U);
}

TEST_F(CColaCerradosTest, TheQueueIsFullAboveItsLimitAndHasRoomOnceHalfIsDone) {
  worker.gate.ResetEvent();
  ASSERT_TRUE(worker.Start(&event, queue));
  for (int i = 0; i < 8; ++i) Append(i, kLimit / 8);
  EXPECT_FALSE(queue.EstaLlena());
  Append(8, 1);
  EXPECT_TRUE(queue.EstaLlena());
  bool opened = false;
  EXPECT_TRUE(queue.EsperaSitio([&] {
    if (!opened) OpenGate();
    opened = true;
    return true;
  }));
  EXPECT_GE(queue.Hechos(), 5U) << "of nine sets, four and the last one make up half the limit and one element";
  EXPECT_FALSE(queue.EstaLlena());
}

TEST_F(CColaCerradosTest, AWaitBehindASuspendedWorkerIsCancelledAndTheWorkerStopped) {
  ASSERT_TRUE(worker.Start(&event, queue));
  worker.Suspender();
  worker.Suspender();
  Append(0);  // what the worker may have been waiting for already
  Append(1, kLimit + 1);
  EXPECT_TRUE(queue.EstaLlena());
  int asked = 0;
  EXPECT_FALSE(queue.EsperaSitio([&] { return ++asked < 3; }));
  EXPECT_EQ(asked, 3);
  worker.Stop();
  EXPECT_FALSE(worker.EstaEnMarcha());
  EXPECT_TRUE(HasLeft());
}

TEST_F(CColaCerradosTest, AWaitGoesOnOnceTheSuspendedWorkerMayGoOn) {
  ASSERT_TRUE(worker.Start(&event, queue));
  worker.Suspender();
  Append(0);
  Append(1, kLimit + 1);
  int asked = 0;
  EXPECT_TRUE(queue.EsperaSitio([&] {
    if (++asked == 2) worker.Reanudar();
    return true;
  }));
  EXPECT_GE(asked, 2);
  EXPECT_THAT(worker.seen, ElementsAre(0, 1));
}

TEST_F(CColaCerradosTest, ASetThatMemoryDoesNotSufficeForIsToldAndTheOthersAreDone) {
  worker.failsAt = 1;
  for (const int set : {0, 1, 2}) Append(set);
  ASSERT_TRUE(worker.Start(&event, queue));
  EXPECT_TRUE(queue.EsperaTodo(Always));
  EXPECT_TRUE(worker.FaltoMemoria());
  EXPECT_THAT(worker.seen, ElementsAre(0, 2));
}

TEST_F(CColaCerradosTest, ARefusedThreadIsToldAndOneThatIsThereIsNotStartedAgain) {
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaHilo);
  EXPECT_FALSE(worker.Start(&event, queue));
  EXPECT_FALSE(worker.EstaEnMarcha());
  guard.Allow(EOperacion::CreaHilo);
  EXPECT_TRUE(worker.Start(&event, queue));
  EXPECT_TRUE(worker.Start(&event, queue));
  EXPECT_EQ(guard.Asked(EOperacion::CreaHilo), 1);
}

TEST_F(CColaCerradosTest, NeitherSideBurnsAProcessorNorMissesTheOtherOverManySets) {
  ASSERT_TRUE(worker.Start(&event, queue));
  for (int i = 0; i < 20'000; ++i) {
    Append(i % 100, 100);
    if (queue.EstaLlena()) {
      ASSERT_TRUE(queue.EsperaSitio(Always));
    }
    ASSERT_LE(queue.Elementos() - queue.Liberados(), kLimit + 100);
  }
  EXPECT_TRUE(queue.EsperaTodo(Always));
  EXPECT_THAT(worker.seen, SizeIs(20'000));
}

}  // namespace
}  // namespace Meseta47
