#include "model/threads/CHilo.h"

#include <atomic>
#include <chrono>
#include <cstring>
#include <gtest/gtest.h>
#include <thread>

#include "model/TinScenes.h"
#include "model/terrain/CHiloLeerPuntos.h"
#include "support/FaultGuard.h"
#include "support/ScratchFolder.h"

using namespace Meseta47;

namespace {

class Sleeper : public CHilo {
 public:
  std::atomic<bool> done{false};

  ~Sleeper() override { Stop(); }
  bool Start() { return Arranca(Work, this); }
  [[nodiscard]] bool HasThread() const { return hilo != nullptr; }
  void SetIndex(unsigned i) { indice = i; }
  [[nodiscard]] unsigned Index() const { return indice; }

 private:
  static unsigned long Work(void* me) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    static_cast<Sleeper*>(me)->done = true;
    return 0;
  }
};

class Copyable : public CHilo {
 public:
  using CHilo::hilo;
  using CHilo::indice;
};

}  // namespace

TEST(CHilo, StoppingWaitsForTheThread) {
  Sleeper sleeper;
  ASSERT_TRUE(sleeper.Start());
  sleeper.SetPriority(CHilo::P_NORMAL);
  sleeper.Stop();
  EXPECT_TRUE(sleeper.done);
  EXPECT_FALSE(sleeper.HasThread());
  sleeper.Stop();
}

TEST(CHilo, AThreadThatRunsIsNotStartedAgain) {
  Sleeper sleeper;
  ASSERT_TRUE(sleeper.Start());
  EXPECT_FALSE(sleeper.Start());
}

TEST(CHilo, ARefusedThreadIsToldAndLeavesNone) {
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaHilo);
  Sleeper sleeper;
  EXPECT_FALSE(sleeper.Start());
  EXPECT_FALSE(sleeper.HasThread());
}

TEST(CHilo, ACopyHasTheIndexAndNoThread) {
  Copyable original;
  original.indice = 3;
  original.hilo = &original;  // any value: a copy must not take it
  Copyable copy(original), assigned;
  assigned = original;
  EXPECT_EQ(copy.indice, 3u);
  EXPECT_EQ(copy.hilo, nullptr);
  EXPECT_EQ(assigned.indice, 3u);
  EXPECT_EQ(assigned.hilo, nullptr);
  original.hilo = nullptr;
}

namespace {

/// Bare points 12 bytes apart behind a few bytes of something else.
class PointFile {
 public:
  static constexpr unsigned kBefore = 7;

  explicit PointFile(int count) {
    std::string bytes(kBefore, '#');
    for (std::int32_t i = 0; i < count; ++i) {
      for (const std::int32_t v : {i, -i, 2 * i}) {
        char raw[4];
        std::memcpy(raw, &v, 4);
        bytes.append(raw, 4);
      }
    }
    PutBytes(Path(), bytes);
  }
  [[nodiscard]] CString Path() const { return folder.Path("points"); }

 private:
  ScratchFolder folder;
};

struct Readers {
  CSetPuntosMdt points{0, 0};
  CCriticalSection section;
  long counter = 0;

  bool Start(CHiloLeerPuntos& reader, CEvent& event, CString const& path, unsigned count, unsigned first) {
    const auto offset = PointFile::kBefore + 12ull * first;
    return reader.Start(0, &event, &counter, path, offset, count, first, &points, &section);
  }
};

}  // namespace

TEST(CHiloLeerPuntos, ReadersOfOneFileFillTheirPartsOfTheSet) {
  const PointFile file(10000);
  Readers all;
  all.points.resize(10000);
  CEvent events[2];
  CHiloLeerPuntos readers[2];
  ASSERT_TRUE(all.Start(readers[0], events[0], file.Path(), 4999, 0));
  ASSERT_TRUE(all.Start(readers[1], events[1], file.Path(), 5001, 4999));
  EXPECT_TRUE(events[0].Lock(60000));
  EXPECT_TRUE(events[1].Lock(60000));
  for (CHiloLeerPuntos& r : readers) r.Stop();
  EXPECT_EQ(all.counter, 10000);
  EXPECT_TRUE(readers[0].EsCompleto());
  EXPECT_TRUE(readers[1].EsCompleto());
  for (int i = 0; i < 10000; ++i) {
    CPuntoTIN const& p = all.points[static_cast<unsigned>(i)];
    ASSERT_EQ(p, (CCoor3D<int>(i, -i, 2 * i, 0)));
    ASSERT_EQ(p.num, i + 1);
  }
}

TEST(CHiloLeerPuntos, AFileThatEndsTooEarlyDoesNotKeepAnybodyWaiting) {
  const PointFile file(10000);
  Readers all;
  all.points.resize(20000);
  CEvent event;
  CHiloLeerPuntos reader;
  ASSERT_TRUE(all.Start(reader, event, file.Path(), 20000, 0));
  EXPECT_TRUE(event.Lock(60000));
  reader.Stop();
  EXPECT_EQ(all.counter, 20000);
  EXPECT_FALSE(reader.EsCompleto());
}

TEST(CHiloLeerPuntos, NorDoesAMissingFile) {
  const ScratchFolder folder;
  Readers all;
  all.points.resize(5);
  CEvent event;
  CHiloLeerPuntos reader;
  ASSERT_TRUE(all.Start(reader, event, folder.Path("none"), 5, 0));
  EXPECT_TRUE(event.Lock(60000));
  reader.Stop();
  EXPECT_EQ(all.counter, 5);
  EXPECT_FALSE(reader.EsCompleto());
}

TEST(CHiloLeerPuntos, NorDoesAThreadThatTheSystemRefuses) {
  const PointFile file(5);
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaHilo);
  Readers all;
  all.points.resize(5);
  CEvent event;
  CHiloLeerPuntos reader;
  EXPECT_FALSE(all.Start(reader, event, file.Path(), 5, 0));
  EXPECT_TRUE(event.Lock(0));
  EXPECT_EQ(all.counter, 5);
}

TEST(CHiloLeerPuntos, NoPointsAreReadCompletely) {
  const PointFile file(0);
  Readers all;
  CEvent event;
  CHiloLeerPuntos reader;
  ASSERT_TRUE(all.Start(reader, event, file.Path(), 0, 0));
  EXPECT_TRUE(event.Lock(60000));
  reader.Stop();
  EXPECT_TRUE(reader.EsCompleto());
}
