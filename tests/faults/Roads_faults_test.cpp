// Every road through the library with a failure at the first, second, third ... operation of each kind, until none
// fires: always a stated code, nothing half done, and what it was asked for once the system is well again.
#include <cstdio>
#include <gmock/gmock.h>
#include <system_error>

#include "faults/Roads.h"
#include "support/FaultGuard.h"

namespace Meseta47 {
namespace {

using test::Kind;
using test::QuietApp;
using test::WorkingFolder;
using testing::AnyOf;

class Roads : public testing::TestWithParam<Kind> {
 protected:
  Roads() {
    const QuietApp app(2);
    const auto road = GetParam().make();
    EXPECT_EQ(road->Run(), kHecho);
    expected = road->Result();
    EXPECT_GT(expected.size(), 500U);
  }

  /// Runs with each kind of operation refused at its first, second, third time ... until there is none more to refuse.
  template <class Refuse>
  void MeetEachRefusal(char const* how, Refuse refuse);

  /// A run with one thing amiss, and a clean one behind it. Returns whether the first met what was amiss.
  template <class Spoil, class Met>
  bool RunAmiss(EOperacion operation, Spoil spoil, Met met) {
    const QuietApp app(2);
    const WorkingFolder here(app.folder.Path());
    const auto road = GetParam().make();
    const std::string before = road->Kept();
    int code = 0;
    bool fired = false;
    {
      FaultGuard guard;
      spoil(guard);
      try {
        code = road->Run();
      } catch (std::system_error const&) {
        EXPECT_EQ(operation, EOperacion::CreaSeccion);
      }
      fired = met(guard);
    }
    if (code == kHecho) {
      EXPECT_EQ(road->Result(), expected) << "a failure that went unseen";
    } else {
      EXPECT_TRUE(fired);
      EXPECT_THAT(code, StatedFor(operation));
      EXPECT_EQ(road->Kept(), before);
      ++failures;
    }
    // What cannot be deleted stays, and a run without events leaves its file to whoever looks into it.
    if (operation != EOperacion::Borra && operation != EOperacion::CreaEvento) {
      EXPECT_EQ(app.TemporaryFiles(), 0U);
    }
    EXPECT_EQ(road->Run(), kHecho) << "the system is well again";
    EXPECT_EQ(road->Result(), expected);
    return fired;
  }

  static testing::Matcher<int> StatedFor(EOperacion operation) {
    switch (operation) {
      case EOperacion::CreaSeccion:
        return testing::Eq(0);  // an exception
      case EOperacion::CreaEvento:
        return testing::Eq(kFicheroInconsistente);
      case EOperacion::Lee:
      case EOperacion::Posiciona:
      case EOperacion::Longitud:
      case EOperacion::CreaHilo:
        return AnyOf(kFicheroInaccesible, kFicheroInconsistente);
      default:
        return testing::Eq(kFicheroInaccesible);
    }
  }

  void Report(std::string const& what, int injected) {
    RecordProperty(what, injected);
    std::printf("%s: %s: %d faults injected, %d runs failed by them\n", GetParam().name, what.c_str(), injected,
                failures);
  }

  std::string expected;
  int failures = 0;
};

constexpr EOperacion kOperations[] = {EOperacion::Abre,         EOperacion::Lee,        EOperacion::Escribe,
                                      EOperacion::Posiciona,    EOperacion::Longitud,   EOperacion::Sincroniza,
                                      EOperacion::Cierra,       EOperacion::Renombra,   EOperacion::Borra,
                                      EOperacion::CreaTemporal, EOperacion::CreaEvento, EOperacion::CreaHilo,
                                      EOperacion::CreaSeccion};

template <class Refuse>
void Roads::MeetEachRefusal(char const* how, Refuse refuse) {
  int injected = 0;
  for (const EOperacion operation : kOperations) {
    for (int nth = 1;; ++nth) {
      SCOPED_TRACE("operation " + std::to_string(static_cast<int>(operation)) + " " + how + " at time " +
                   std::to_string(nth));
      const bool fired = RunAmiss(
          operation, [&](FaultGuard& guard) { refuse(guard, operation, nth); },
          [&](FaultGuard const& guard) { return guard.Asked(operation) >= nth; });
      ASSERT_FALSE(HasFailure());
      if (!fired) break;
      ++injected;
    }
  }
  EXPECT_GT(injected, 3);
  EXPECT_GT(failures, 2);
  Report(how, injected);
}

TEST_P(Roads, WhateverIsRefusedFromItsNthTimeOnEndsWithACodeAndCanBeAskedForAgain) {
  MeetEachRefusal("refused for good",
                  [](FaultGuard& guard, EOperacion operation, int nth) { guard.Refuse(operation, nth); });
}

TEST_P(Roads, OneRefusalIsNotForgottenWhenWhatFollowsGoesWell) {
  MeetEachRefusal("refused once",
                  [](FaultGuard& guard, EOperacion operation, int nth) { guard.RefuseOnce(operation, nth); });
}

TEST_P(Roads, ADiskThatFillsAnywhereIsToldOrHadRoomEnough) {
  int injected = 0;
  for (std::size_t room = 0; room < 4'000'000; room = room + room / 3 + 11) {
    SCOPED_TRACE("room for " + std::to_string(room));
    const int before = failures;
    RunAmiss(
        EOperacion::Escribe, [&](FaultGuard& guard) { guard.LimitDisk(room); },
        [](FaultGuard const& guard) { return guard.Asked(EOperacion::Escribe) > 0; });
    ASSERT_FALSE(HasFailure());
    if (failures == before) break;
    ++injected;
  }
  Report("no space", injected);
}

TEST_P(Roads, ShortTransfersChangeNothing) {
  int injected = 0;
  for (const std::size_t bytes : {1U, 7U, 1000U}) {
    RunAmiss(
        EOperacion::Lee, [&](FaultGuard& guard) { guard.LimitTransfers(bytes); },
        [](FaultGuard const& guard) { return guard.Asked(EOperacion::Lee) + guard.Asked(EOperacion::Escribe) > 0; });
    ++injected;
  }
  EXPECT_EQ(failures, 0);
  Report("short transfers", injected);
}

INSTANTIATE_TEST_SUITE_P(All, Roads, test::EveryRoad(), test::NameOf);

}  // namespace
}  // namespace Meseta47
