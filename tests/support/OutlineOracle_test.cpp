#include "support/OutlineOracle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Meseta47::support {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

const Point a{0, 0, 0}, b{10, 0, 0}, c{10, 10, 0}, d{0, 10, 0}, far{40, 5, 0};

/// The square a-b-c-d in two clockwise triangles, and one that reaches far out.
Mesh squareAndLongTriangle() { return {{a, b, c, d, far}, {}, {{1, 3, 2}, {1, 4, 3}, {2, 3, 5}}}; }

TEST(OutlineOracle, TheRimOfWhatStaysIsNoFault) {
  EXPECT_THAT(outlineFaults({{a, b, c, d, a}}, squareAndLongTriangle(), 200), IsEmpty());
  EXPECT_THAT(outlineFaults({{a, b, far, c, d, a}}, squareAndLongTriangle(), 10000), IsEmpty());
  EXPECT_THAT(outlineFaults({}, squareAndLongTriangle(), 199), IsEmpty()) << "the diagonal alone is too long";
}

TEST(OutlineOracle, EachFaultIsNamed) {
  const Mesh mesh = squareAndLongTriangle();
  EXPECT_THAT(outlineFaults({}, mesh, 200), HasSubstr("4 sides of the rim are missing"));
  EXPECT_THAT(outlineFaults({{a, b, c, a}}, mesh, 200), HasSubstr("no rim: (10, 10) - (0, 0)"));
  EXPECT_THAT(outlineFaults({{a, b, c, d}}, mesh, 200), HasSubstr("not closed"));
  EXPECT_THAT(outlineFaults({{a, d, c, b, a}}, mesh, 200), HasSubstr("no rim")) << "the wrong way round";
  EXPECT_THAT(outlineFaults({{a, b, c, d, a}, {a, b, c, d, a}}, mesh, 200), HasSubstr("ring 1"));
}

TEST(OutlineOracle, ARingThroughOnePositionTwiceIsAFault) {
  const Point e{20, 10, 0}, f{20, 20, 0}, g{10, 20, 0};
  const Mesh bowTie{{a, b, c, d, e, f, g}, {}, {{1, 3, 2}, {1, 4, 3}, {3, 6, 5}, {3, 7, 6}}};
  EXPECT_THAT(outlineFaults({{a, b, c, e, f, g, c, d, a}}, bowTie, 200), HasSubstr("meets a position twice"));
  EXPECT_THAT(outlineFaults({{a, b, c, d, a}, {c, e, f, g, c}}, bowTie, 200), IsEmpty());
}

TEST(OutlineOracle, TrianglesAtTheFrameNeverStay) {
  const Mesh mesh{{a, b, c}, {far}, {{1, 3, 2}, {1, 2, -1}}};
  EXPECT_EQ(withShortSides(mesh, 1000000).size(), 1U);
}

}  // namespace
}  // namespace Meseta47::support
