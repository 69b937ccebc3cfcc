// That runs in space end as they did when the golden file was written: the cells, the file, the tree, the numbers.
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <set>

#include "support/PlanarRun.h"
#include "support/PlanarSizes.h"
#include "support/SpaceGolden.h"

namespace Meseta47 {
namespace {

using support::SpaceFamily;
using test::SpaceGoldenCase;

std::map<std::string, std::string> const& Golden() {
  static const auto lines = [] {
    std::map<std::string, std::string> read;
    std::ifstream file(URDIMBRE_SPACE_GOLDEN_DIR "/linked.txt");
    for (std::string line; std::getline(file, line);) {
      if (!line.starts_with('#')) read[line.substr(0, line.find(' '))] = line;
    }
    return read;
  }();
  return lines;
}

class GoldenSpaces : public testing::TestWithParam<SpaceFamily> {};

TEST_P(GoldenSpaces, AreLinkedAsTheyEverWere) {
  const test::QuietApp app;
  for (SpaceGoldenCase const& golden : test::SpaceGoldenCases()) {
    if (golden.family != GetParam() || (!test::kFullSize && golden.size > 5'000)) continue;
    const auto line = Golden().find(golden.Name());
    ASSERT_NE(line, Golden().end()) << golden << " is not in the golden file";
    EXPECT_EQ(GoldenLine(golden), line->second) << test::SpaceGoldenColumns();
  }
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

INSTANTIATE_TEST_SUITE_P(EveryFamily, GoldenSpaces, testing::ValuesIn(support::kSpaceFamilies),
                         [](testing::TestParamInfo<SpaceFamily> const& family) { return support::name(family.param); });

TEST(GoldenSpaceFile, HasALineForEachCaseAndNoOther) {
  std::set<std::string> cases, lines;
  for (SpaceGoldenCase const& golden : test::SpaceGoldenCases()) cases.insert(golden.Name());
  for (auto const& [name, line] : Golden()) lines.insert(name);
  EXPECT_EQ(lines, cases);
}

}  // namespace
}  // namespace Meseta47
