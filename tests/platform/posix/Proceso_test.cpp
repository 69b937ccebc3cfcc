#include "platform/Proceso.h"

#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <vector>

#include "support/PlanarSizes.h"

namespace {

TEST(ProcessMemory, GrowsWithWhatIsHeldAndThePeakStays) {
  const auto before = MemoriaResidente();
  EXPECT_GT(before, 100'000u);
  constexpr std::size_t kBytes = std::size_t{64} << 20;
  {
    const std::vector<char> held(kBytes, 'x');
    EXPECT_GE(MemoriaResidente(), before + kBytes / 2) << held.size();
  }
  EXPECT_GE(MemoriaResidenteMaxima(), before + kBytes / 2);
  // Each processor counts pages by itself, and they are added up now and then.
  constexpr std::size_t kUncounted = std::size_t{1} << 20;
  const auto after = MemoriaResidente();  // first: it may grow between the two
  EXPECT_GE(MemoriaResidenteMaxima() + kUncounted, after);
}

TEST(ProcessMemory, FreedBlocksGoBackAtOnce) {
#if URDIMBRE_SANITIZED
  GTEST_SKIP() << "the heap is the sanitizer's own";
#endif
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        DevuelveMemoriaLibre();
        constexpr std::size_t kBlock = std::size_t{8} << 20;
        // The usual heap learns by these to keep blocks of that size.
        for (int i = 0; i < 4; ++i) std::make_unique<std::vector<char>>(kBlock, 'x').reset();
        const auto before = MemoriaResidente();
        {
          const std::vector<char> held(kBlock, 'x');
          if (MemoriaResidente() < before + kBlock / 2) std::exit(2);
        }
        std::exit(MemoriaResidente() < before + kBlock / 4 ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(ProcessMemory, FreedBlocksServeTheNextPhaseWhicheverThreadAsks) {
#if URDIMBRE_SANITIZED
  GTEST_SKIP() << "the heap is the sanitizer's own";
#endif
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        DevuelveMemoriaLibre();
        GuardaMemoriaLibre();
        constexpr std::size_t kBlock = std::size_t{64} << 20;
        std::make_unique<std::vector<char>>(kBlock, 'x').reset();
        const auto before = MemoriaResidente();
        if (before < kBlock) std::exit(2);
        std::thread([] {
          const std::vector<char> one(kBlock / 3, 'x'), two(kBlock / 3, 'x');
          if (one != two) std::exit(3);
        }).join();
        std::exit(MemoriaResidenteMaxima() < before + kBlock / 4 ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(Terminal, AFileIsNoneAndHasTheUsualColumns) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), std::fclose);
  ASSERT_NE(file, nullptr);
  EXPECT_FALSE(EsTerminal(file.get()));
  EXPECT_EQ(ColumnasTerminal(file.get()), 80u);
  EXPECT_FALSE(EsTerminal(nullptr));
  EXPECT_EQ(ColumnasTerminal(nullptr), 80u);
}

// Handlers are for a whole process: each of these runs in one of its own.

[[noreturn]] void ExitWith(bool good) { std::exit(good ? 0 : 1); }

TEST(Interruption, TheFirstRequestIsNotedOnly) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  for (const int signal : {SIGINT, SIGTERM, SIGQUIT}) {
    EXPECT_EXIT(
        {
          PonManejadorInterrupcion();
          const bool before = Interrumpido();
          std::raise(signal);
          ExitWith(!before && Interrumpido());
        },
        testing::ExitedWithCode(0), "");
  }
}

TEST(Interruption, TheSecondRequestEndsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        PonManejadorInterrupcion();
        std::raise(SIGTERM);
        std::raise(SIGINT);
        ExitWith(true);
      },
      testing::KilledBySignal(SIGINT), "");
}

TEST(Interruption, ARequestThatHasBeenDealtWithIsForgotten) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        PonManejadorInterrupcion();
        std::raise(SIGINT);
        OlvidaInterrupcion();
        const bool forgotten = !Interrumpido();
        std::raise(SIGINT);
        ExitWith(forgotten && Interrumpido());
      },
      testing::ExitedWithCode(0), "");
}

TEST(Interruption, AReaderThatGoesAwayOrAFileTooLargeDoesNotEndTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        PonManejadorInterrupcion();
        std::raise(SIGPIPE);
        std::raise(SIGXFSZ);
        ExitWith(!Interrumpido());
      },
      testing::ExitedWithCode(0), "");
}

TEST(Interruption, AClosedTerminalIsARequestUnlessTheProgramIsToOutliveIt) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  for (const bool outlives : {false, true}) {
    EXPECT_EXIT(
        {
          std::signal(SIGHUP, outlives ? SIG_IGN : SIG_DFL);
          PonManejadorInterrupcion();
          std::raise(SIGHUP);
          ExitWith(Interrumpido() != outlives);
        },
        testing::ExitedWithCode(0), "");
  }
}

}  // namespace
