// Runs in space with memory refused at the first, second, third ... request, until none is: an exception or a stated
// code, no file, and the same mesh once there is memory again. The address sanitizer tells whether a tetrahedron
// stayed.
#include <gmock/gmock.h>
#include <new>

#include "faults/FailingHeap.h"
#include "support/SpaceFamilies.h"
#include "support/SpaceRun.h"

namespace Meseta47 {
namespace {

using failing_heap::Refusal;
using support::SpaceFamily;
using test::OpenTriangulation3D;
using test::QuietApp;

constexpr int kThrown = 0;

struct Road {
  char const* name;
  int (*run)(OpenTriangulation3D& t, CDibujo<int>& drawing, std::string& result);
};

int Whole(OpenTriangulation3D& t, CDibujo<int>& drawing, std::string& result) {
  const int code = t.RunTetraedros(drawing);
  if (code == kHecho) result = t.SpilledBytes();
  return code;
}

int Faces(OpenTriangulation3D& t, CDibujo<int>& drawing, std::string& result) {
  const int code = t.Link(drawing, true);
  if (code == kHecho) result = t.SpilledBytes();
  return code;
}

int Kept(OpenTriangulation3D& t, CDibujo<int>& drawing, std::string& result) {
  const int code = t.Link(drawing, false);
  if (code == kHecho) result = std::to_string(t.CantidadTetraedros());
  return code;
}

int Hull(OpenTriangulation3D& t, CDibujo<int>& drawing, std::string& result) {
  if (const int code = t.RunTetraedros(drawing); code != kHecho) return code;
  std::uint64_t sum = 0;
  const int code = t.RecorreTetraedros(drawing, true, [&sum](CTriangulacion3D::CCuatro const& four) {
    for (const std::int32_t n : four) sum = sum * 31 + static_cast<std::uint32_t>(n);
  });
  if (code == kHecho) result = std::to_string(sum);
  return code;
}

class SpaceWithoutMemory : public testing::TestWithParam<Road> {
 protected:
  void MeetEachRefusal(Refusal refusal) {
    const QuietApp app(2);
    CDibujo<int> drawing = test::DrawingOf(support::alongACurve(support::spaceFamily(SpaceFamily::Terrain, 1200, 3)));
    std::string expected, result;
    {
      OpenTriangulation3D t;
      ASSERT_EQ(GetParam().run(t, drawing, expected), kHecho);
      t.BorraTetraedrosEscritos();
    }
    int failures = 0;
    for (long nth = 1;; nth += 1 + nth / 8) {
      SCOPED_TRACE("request " + std::to_string(nth));
      OpenTriangulation3D t;
      int code = kThrown;
      failing_heap::RefuseAt(nth, refusal);
      try {
        code = GetParam().run(t, drawing, result);
      } catch (std::bad_alloc const&) {
        code = kThrown;
      }
      const bool fired = failing_heap::Stop() >= nth;
      if (code == kHecho) {
        EXPECT_EQ(result, expected) << "a failure that went unseen";
      } else {
        EXPECT_TRUE(fired);
        EXPECT_THAT(code, testing::AnyOf(kThrown, kFicheroInaccesible, kFicheroInconsistente));
        ++failures;
      }
      t.BorraTetraedrosEscritos();
      EXPECT_EQ(app.TemporaryFiles(), 0U);
      EXPECT_EQ(GetParam().run(t, drawing, result), kHecho) << "there is memory again";
      EXPECT_EQ(result, expected);
      if (HasFailure() || !fired) break;
    }
    EXPECT_GT(failures, 10);
  }
};

TEST_P(SpaceWithoutMemory, OneRefusedRequestEndsTheRunCleanly) { MeetEachRefusal(Refusal::Once); }

TEST_P(SpaceWithoutMemory, WithNoMoreMemoryFromSomeRequestOnTheRunEndsCleanly) { MeetEachRefusal(Refusal::ForGood); }

INSTANTIATE_TEST_SUITE_P(EveryRoad, SpaceWithoutMemory,
                         testing::Values(Road{"Whole", Whole}, Road{"Faces", Faces}, Road{"Kept", Kept},
                                         Road{"Hull", Hull}),
                         [](auto const& test) { return test.param.name; });

}  // namespace
}  // namespace Meseta47
