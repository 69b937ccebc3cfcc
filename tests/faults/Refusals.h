#pragma once

#include <cstddef>
#include <gtest/gtest.h>
#include <string>

#include "support/FaultGuard.h"
#include "support/PlanarSizes.h"

/// What tests of whole roads let fail. `amiss(operation, spoil, met)` stands for a run with one thing amiss: it lets
/// `spoil` prepare a guard, runs, judges what came out, and returns what `met` says of the guard then: whether the run
/// came across it.
namespace Meseta47::test {

/// Each kind of operation refused, by `refuse(guard, operation, nth)`, at its first, second, third time ... until there
/// is none more to refuse. Returns how many there were; ends with the first run that a test finds fault with. Where
/// checks slow a run down, from the sixth time on each fourth alone: most repeat what has been refused before.
template <class Refuse, class Amiss>
int MeetEachRefusal(char const* how, Refuse refuse, Amiss amiss) {
  int injected = 0;
  for (const EOperacion operation : kEveryOperation) {
    for (int nth = 1;; nth += kFullSize || nth < 6 ? 1 : 4) {
      SCOPED_TRACE("operation " + std::to_string(static_cast<int>(operation)) + " " + how + " at time " +
                   std::to_string(nth));
      const bool fired = amiss(
          operation, [&](FaultGuard& guard) { refuse(guard, operation, nth); },
          [&](FaultGuard const& guard) { return guard.Asked(operation) >= nth; });
      if (testing::Test::HasFailure()) return injected;
      if (!fired) break;
      ++injected;
    }
  }
  EXPECT_GT(injected, 3);
  return injected;
}

/// A disk with room for more each time, in longer steps where checks slow a run down, until a run fits. `failures`
/// counts the runs that failed.
template <class Amiss>
int FillTheDisk(int const& failures, Amiss amiss) {
  int injected = 0;
  for (std::size_t room = 0; room < 4'000'000; room += (kFullSize ? room / 3 : room) + 11) {
    SCOPED_TRACE("room for " + std::to_string(room));
    const int before = failures;
    amiss(
        EOperacion::Escribe, [&](FaultGuard& guard) { guard.LimitDisk(room); },
        [](FaultGuard const& guard) { return guard.Asked(EOperacion::Escribe) > 0; });
    if (testing::Test::HasFailure() || failures == before) break;
    ++injected;
  }
  return injected;
}

/// Transfers of a few bytes each. Returns how many sizes were tried.
template <class Amiss>
int ShortenTransfers(Amiss amiss) {
  int injected = 0;
  for (const std::size_t bytes : {1U, 7U, 1000U}) {
    amiss(
        EOperacion::Lee, [&](FaultGuard& guard) { guard.LimitTransfers(bytes); },
        [](FaultGuard const& guard) { return guard.Asked(EOperacion::Lee) + guard.Asked(EOperacion::Escribe) > 0; });
    ++injected;
  }
  return injected;
}

}  // namespace Meseta47::test
