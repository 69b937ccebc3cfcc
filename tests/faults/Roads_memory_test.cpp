// Every road through the library with memory refused at the first, second, third ... request, until none is: an
// exception or a stated code, nothing half done, and what it was asked for once there is memory again.
#include <cstdio>
#include <gmock/gmock.h>
#include <new>

#include "faults/FailingHeap.h"
#include "faults/Roads.h"

namespace Meseta47 {
namespace {

using failing_heap::Refusal;
using test::Kind;
using test::QuietApp;

constexpr int kThrown = 0;

/// The next request to refuse: each of the first, and fewer the more there have been.
long After(long nth) { return nth + 1 + nth / 8; }

class RoadsWithoutMemory : public testing::TestWithParam<Kind> {
 protected:
  /// A run with one request refused, and a clean one behind it. Returns whether it was refused.
  bool RunWithout(long nth, Refusal refusal) {
    const QuietApp app(2);
    const auto road = GetParam().make();
    const std::string before = road->Kept();
    int code = kThrown;
    failing_heap::RefuseAt(nth, refusal);
    try {
      code = road->Run();
    } catch (std::bad_alloc const&) {
      code = kThrown;
    }
    const bool fired = failing_heap::Stop() >= nth;
    if (code == kHecho) {
      EXPECT_EQ(road->Result(), expected) << "a failure that went unseen";
    } else {
      EXPECT_TRUE(fired);
      EXPECT_THAT(code, testing::AnyOf(kThrown, kFicheroInaccesible, kFicheroInconsistente));
      if (road->LeavesWhatIsDone()) {
        EXPECT_THAT(expected, testing::StartsWith(road->Kept()));
      } else {
        EXPECT_EQ(road->Kept(), before);
      }
      ++failures;
    }
    EXPECT_EQ(app.TemporaryFiles(), 0U);
    EXPECT_EQ(road->Run(), kHecho) << "there is memory again";
    EXPECT_EQ(road->Result(), expected);
    return fired;
  }

  void MeetEachRefusal(char const* how, Refusal refusal) {
    {
      const QuietApp app(2);
      const auto road = GetParam().make();
      EXPECT_EQ(road->Run(), kHecho);
      expected = road->Result();
    }
    int injected = 0;
    for (long nth = 1;; nth = After(nth)) {
      SCOPED_TRACE(std::string(how) + " at request " + std::to_string(nth));
      const bool fired = RunWithout(nth, refusal);
      ASSERT_FALSE(HasFailure());
      if (!fired) break;
      ++injected;
    }
    EXPECT_GT(injected, 10);
    EXPECT_GT(failures, injected / 2);
    std::printf("%s: %s: %d requests refused, %d runs failed by them\n", GetParam().name, how, injected, failures);
  }

  std::string expected;
  int failures = 0;
};

TEST_P(RoadsWithoutMemory, OneRefusedRequestEndsTheRunCleanly) { MeetEachRefusal("refused once", Refusal::Once); }

TEST_P(RoadsWithoutMemory, WithNoMoreMemoryFromSomeRequestOnTheRunEndsCleanly) {
  MeetEachRefusal("refused for good", Refusal::ForGood);
}

INSTANTIATE_TEST_SUITE_P(All, RoadsWithoutMemory, test::EveryRoad(), test::NameOf);

}  // namespace
}  // namespace Meseta47
