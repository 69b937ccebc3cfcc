// Several growths by affinity at once, each on a thread and a drawing of its own.
#include "classification/CHiloPuntosPorAfinidad.h"

#include <atomic>
#include <gmock/gmock.h>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

#include "classification/AffinityScene.h"
#include "support/Families.h"
#include "support/FaultGuard.h"
#include "support/PlanarSizes.h"

namespace Meseta47 {
namespace {

using test::AffinityCloud;
using test::AffinityPoint;
using test::ClassesIn;
using test::Growing;
using test::QuietApp;
using testing::ElementsAre;
using testing::IsEmpty;

/// A program that several threads report to at once: it keeps each thread's progress apart, and cancels all when the
/// flag that the threads share is up.
class SharedApp : public QuietApp, public IPorcentaje {
 public:
  explicit SharedApp(int& cancel) : QuietApp(2), cancel_(cancel) {}

  int Porcentaje(int level, unsigned long long value, unsigned long long total, bool) override {
    const std::scoped_lock lock(mutex_);
    Bar& bar = bars_[std::this_thread::get_id()];
    if (bar.phase == kLinking && (value < bar.value || (bar.total != 0 && total != bar.total))) ++jumps;
    bar.value = value;
    bar.total = total;
    levels.insert(level);
    ++steps;
    if (steps == cancelAt) std::atomic_ref<int>(cancel_).store(1);
    return std::atomic_ref<int>(cancel_) != 0 ? 0 : 1;
  }
  void Fase(int, unsigned message) override {
    const std::scoped_lock lock(mutex_);
    bars_[std::this_thread::get_id()] = {message, 0, 0};
  }
  void Cierra(int, int) override {
    const std::scoped_lock lock(mutex_);
    ++closed;
  }
  void Amplia(int, int) override {}
  void Abre(int, int, int) override {}
  void Mensaje(int level, CString* text, int) override {
    const std::scoped_lock lock(mutex_);
    messages.emplace_back(level, *text);
  }

  std::set<int> levels;
  std::vector<std::pair<int, CString>> messages;
  int jumps = 0;  ///< steps of a thread that went back within its linking, or changed its total
  int closed = 0;
  long steps = 0, cancelAt = 0;

 private:
  static constexpr unsigned kLinking = 19021;
  struct Bar {
    unsigned phase = 0;
    unsigned long long value = 0, total = 0;
  };
  int& cancel_;
  std::mutex mutex_;
  std::map<std::thread::id, Bar> bars_;
};

/// So many growths, and what they share.
class SideBySide {
 public:
  explicit SideBySide(unsigned count, std::size_t points = test::kFullSize ? 20'000 : 3'000) {
    for (unsigned k = 0; k < count; ++k) {
      clouds.push_back(test::Sown(support::family(support::Family::Uniform, points, 30 + k), 20, k));
      drawings.push_back(AffinityCloud(clouds.back()));
    }
    threads = std::vector<CHiloPuntosPorAfinidad>(count);
  }
  void Start(unsigned k) {
    threads[k].Start(k, &event, &drawings[k], nullptr, nullptr, &near, nullptr, &grows, &stops, 0, &data, &section,
                     &cancel, &finished, nullptr, nullptr, 1);
  }
  void StartAll() {
    for (unsigned k = 0; k < threads.size(); ++k) Start(k);
  }
  /// As a program does that shows other things meanwhile.
  void WaitForAll() {
    while (std::atomic_ref<unsigned>(finished) < threads.size()) std::this_thread::yield();
  }
  [[nodiscard]] std::vector<int> Alone(unsigned k) const {
    CDibujo<int> drawing = AffinityCloud(clouds[k]);
    Growing growing;
    growing.rule.squares = {0, near.ValorMax};
    EXPECT_EQ(growing.Once(drawing), kHecho);
    return ClassesIn(drawing);
  }

  int cancel = 0;
  unsigned finished = 0;
  std::vector<std::vector<AffinityPoint>> clouds;
  std::vector<CDibujo<int>> drawings;
  CRango near = [] {
    CRango range(2147483647.0, 2147483647.0, -2147483648.0, 2147483647.0);
    range.SetValorMax(1.2e6);
    return range;
  }();
  CInfoClasificacion grows{2, 0.0, L""}, stops{6, 0.0, L""};
  CDataTriangulacion data;
  CEvent event;
  CCriticalSection section;
  std::vector<CHiloPuntosPorAfinidad> threads;
};

class HilosPorAfinidad : public testing::TestWithParam<unsigned> {};
INSTANTIATE_TEST_SUITE_P(Threads, HilosPorAfinidad, testing::Values(1U, 2U, 4U), testing::PrintToStringParamName());

TEST_P(HilosPorAfinidad, SideBySideGiveWhatEachGivesAlone) {
  SideBySide all(GetParam());
  SharedApp app(all.cancel);
  all.StartAll();
  all.WaitForAll();
  for (CHiloPuntosPorAfinidad& thread : all.threads) thread.CHilo::Stop();
  EXPECT_EQ(all.finished, GetParam());
  EXPECT_EQ(all.cancel, 0);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
  EXPECT_EQ(app.jumps, 0);
  EXPECT_EQ(app.closed, static_cast<int>(GetParam()));
  EXPECT_THAT(app.levels, ElementsAre(1));
  EXPECT_THAT(app.messages, testing::SizeIs(GetParam()));
  for (unsigned k = 0; k < GetParam(); ++k) {
    CHiloPuntosPorAfinidad const& thread = all.threads[k];
    EXPECT_EQ(thread.Codigo(), kHecho);
    EXPECT_EQ(thread.iteracion, 1U);
    EXPECT_EQ(thread.progreso, all.drawings[k][0].NPuntos());
    EXPECT_GT(thread.cantidad, 0U);
    EXPECT_THAT(thread.texto.Utf8(), testing::StartsWith("T " + std::to_string(k) + " - " + std::to_string(k) + " "));
    const std::string message = "Iteration 0: " + std::to_string(thread.cantidad) + " points";
    EXPECT_THAT(app.messages, testing::Contains(testing::Pair(1, CString::DesdeUtf8(message))));
  }
  const QuietApp quiet;
  for (unsigned k = 0; k < GetParam(); ++k) EXPECT_EQ(ClassesIn(all.drawings[k]), all.Alone(k)) << k;
}

TEST_P(HilosPorAfinidad, CancelledByTheProgramNoneChangesAClassAndTheFlagIsUp) {
  SideBySide all(GetParam());
  SharedApp app(all.cancel);
  app.cancelAt = 2'000;
  all.StartAll();
  all.WaitForAll();
  for (CHiloPuntosPorAfinidad& thread : all.threads) thread.CHilo::Stop();
  EXPECT_EQ(all.cancel, 1);
  EXPECT_EQ(app.TemporaryFiles(), 0U);
  for (unsigned k = 0; k < GetParam(); ++k) {
    EXPECT_EQ(all.threads[k].Codigo(), kCancelado);
    EXPECT_EQ(ClassesIn(all.drawings[k]), ClassesIn(AffinityCloud(all.clouds[k])));
  }
}

TEST(CHiloPuntosPorAfinidad, StopRaisesTheFlagAndWaits) {
  SideBySide all(2);
  SharedApp app(all.cancel);
  all.StartAll();
  all.threads[0].Stop();
  EXPECT_EQ(std::atomic_ref<int>(all.cancel), 1);
  all.threads[1].Stop();
  EXPECT_EQ(all.finished, 2U) << "both have ended by now, whichever way";
  for (CHiloPuntosPorAfinidad const& thread : all.threads) {
    EXPECT_THAT(thread.Codigo(), testing::AnyOf(kHecho, kCancelado));
  }
}

TEST(CHiloPuntosPorAfinidad, TheRunItselfDoesNotLookAtTheFlag) {
  const QuietApp app;
  SideBySide all(1, 300);
  all.cancel = 1;
  all.StartAll();
  all.WaitForAll();
  all.threads[0].CHilo::Stop();
  EXPECT_EQ(all.threads[0].Codigo(), kHecho);
}

TEST(CHiloPuntosPorAfinidad, DestroyedItWaitsAndCancelsNobody) {
  const QuietApp app;
  SideBySide all(1, 3'000);
  all.StartAll();
  all.threads.clear();
  EXPECT_EQ(all.finished, 1U);
  EXPECT_EQ(all.cancel, 0);
}

TEST(CHiloPuntosPorAfinidad, RunOnTheCallersThreadCountsAsAnEnd) {
  const QuietApp app;
  SideBySide all(1, 300);
  FaultGuard guard;
  guard.RefuseOnce(EOperacion::CreaHilo, 1);
  all.Start(0);
  EXPECT_EQ(all.threads[0].Codigo(), kFicheroInconsistente) << "the system gave no thread";
  EXPECT_EQ(all.finished, 0U);
  all.threads[0].cantidad = 99;
  all.threads[0].Run();
  EXPECT_EQ(all.threads[0].Codigo(), kHecho);
  EXPECT_EQ(all.finished, 1U);
  EXPECT_EQ(ClassesIn(all.drawings[0]), all.Alone(0));
  const unsigned changed = all.threads[0].cantidad;
  all.drawings[0] = AffinityCloud(all.clouds[0]);
  all.threads[0].Run();
  EXPECT_EQ(all.threads[0].cantidad, changed) << "its counters begin anew";
}

TEST(CHiloPuntosPorAfinidad, WithTooFewPointsItEndsWithTheCodeAndCancelsNobody) {
  const QuietApp app;
  SideBySide all(1, 2);
  all.StartAll();
  all.WaitForAll();
  all.threads[0].CHilo::Stop();
  EXPECT_EQ(all.threads[0].Codigo(), kPocosPuntos);
  EXPECT_EQ(all.cancel, 0);
}

TEST(CHiloPuntosPorAfinidad, WithoutALockItEndsWithACodeAndNothingWritten) {
  const QuietApp app;
  SideBySide all(1, 300);
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaSeccion);
  all.StartAll();
  all.WaitForAll();
  all.threads[0].CHilo::Stop();
  EXPECT_EQ(all.threads[0].Codigo(), kFicheroInconsistente);
  EXPECT_EQ(all.cancel, 0);
  EXPECT_EQ(ClassesIn(all.drawings[0]), ClassesIn(AffinityCloud(all.clouds[0])));
}

}  // namespace
}  // namespace Meseta47
