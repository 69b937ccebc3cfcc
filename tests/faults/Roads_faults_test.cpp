// Every road through the library with a failure at the first, second, third ... operation of each kind, until none
// fires: always a stated code, nothing half done, and what it was asked for once the system is well again.
#include <cstdio>
#include <gmock/gmock.h>
#include <system_error>

#include "faults/Refusals.h"
#include "faults/Roads.h"

namespace Meseta47 {
namespace {

using test::Kind;
using test::QuietApp;
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
    const bool mayLitter = operation == EOperacion::Borra;  // what cannot be deleted stays
    EXPECT_TRUE(mayLitter || app.TemporaryFiles() == 0U);
    EXPECT_EQ(road->Run(), kHecho) << "the system is well again";
    EXPECT_EQ(road->Result(), expected);
    return fired;
  }

  static testing::Matcher<int> StatedFor(EOperacion operation) {
    switch (operation) {
      case EOperacion::CreaSeccion:
        return AnyOf(0, kFicheroInconsistente);  // an exception, and the code of a thread that met it
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

  /// `RunAmiss` for the loops of Refusals.h.
  auto Amiss() {
    return [this](EOperacion operation, auto spoil, auto met) { return RunAmiss(operation, spoil, met); };
  }

  void Report(char const* what, int injected) {
    RecordProperty(what, injected);
    std::printf("%s: %s: %d faults injected, %d runs failed by them\n", GetParam().name, what, injected, failures);
  }

  std::string expected;
  int failures = 0;
};

TEST_P(Roads, WhateverIsRefusedFromItsNthTimeOnEndsWithACodeAndCanBeAskedForAgain) {
  const auto refuse = [](FaultGuard& guard, EOperacion operation, int nth) { guard.Refuse(operation, nth); };
  Report("refused for good", test::MeetEachRefusal("refused for good", refuse, Amiss()));
  EXPECT_GT(failures, 2);
}

TEST_P(Roads, OneRefusalIsNotForgottenWhenWhatFollowsGoesWell) {
  const auto refuse = [](FaultGuard& guard, EOperacion operation, int nth) { guard.RefuseOnce(operation, nth); };
  Report("refused once", test::MeetEachRefusal("refused once", refuse, Amiss()));
  EXPECT_GT(failures, 2);
}

TEST_P(Roads, ADiskThatFillsAnywhereIsToldOrHadRoomEnough) { Report("no space", test::FillTheDisk(failures, Amiss())); }

TEST_P(Roads, ShortTransfersChangeNothing) {
  Report("short transfers", test::ShortenTransfers(Amiss()));
  EXPECT_EQ(failures, 0);
}

INSTANTIATE_TEST_SUITE_P(All, Roads, test::EveryRoad(), test::NameOf);

}  // namespace
}  // namespace Meseta47
