#include "support/BoxTree.h"

#include <gtest/gtest.h>
#include <set>
#include <utility>

#include "support/Random.h"

namespace Meseta47::support {
namespace {

std::vector<PlanBox> someBoxes(std::size_t n, std::int32_t reach, std::int32_t size) {
  Random random(n);
  std::vector<PlanBox> boxes;
  for (std::size_t i = 0; i < n; ++i) {
    const std::int64_t x = random.between(-reach, reach), y = random.between(-reach, reach);
    boxes.push_back({x, y, x + random.between(0, size), y + random.between(0, size)});
  }
  return boxes;
}

TEST(BoxTree, FindsEveryPairOnce) {
  for (const std::size_t n : {0U, 1U, 2U, 8U, 9U, 100U, 700U}) {
    const auto boxes = someBoxes(n, 1'000, 100);
    std::set<std::pair<std::size_t, std::size_t>> expected, found;
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        if (boxes[i].touches(boxes[j])) expected.emplace(j, i);
      }
    }
    std::size_t calls = 0;
    BoxTree(boxes).forEachPair([&](std::uint32_t i, std::uint32_t j) {
      ++calls;
      found.emplace(std::min(i, j), std::max(i, j));
    });
    EXPECT_EQ(found, expected) << n;
    EXPECT_EQ(calls, expected.size()) << n;
  }
}

TEST(BoxTree, FindsWhatTouchesABoxAndStopsWhenToldTo) {
  const auto boxes = someBoxes(500, 1'000, 200);
  const BoxTree tree(boxes);
  for (PlanBox const& box : someBoxes(50, 1'000, 10)) {
    std::set<std::size_t> expected, found;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
      if (boxes[i].touches(box)) expected.insert(i);
    }
    tree.forEachTouching(box, [&](std::uint32_t i) { return found.insert(i).second; });
    EXPECT_EQ(found, expected);
    std::size_t calls = 0;
    tree.forEachTouching(box, [&](std::uint32_t) { return ++calls < 2; });
    EXPECT_EQ(calls, std::min<std::size_t>(2, expected.size()));
  }
}

}  // namespace
}  // namespace Meseta47::support
