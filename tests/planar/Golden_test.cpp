// That runs end as they did when the golden file was written: to the byte, and to the count.
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <set>

#include "support/PlanarGolden.h"
#include "support/PlanarRun.h"
#include "support/PlanarSizes.h"

namespace Meseta47 {
namespace {

using support::Family;
using test::GoldenCase;

std::map<std::string, std::string> const& Golden() {
  static const auto lines = [] {
    std::map<std::string, std::string> read;
    std::ifstream file(URDIMBRE_GOLDEN_DIR "/linked.txt");
    for (std::string line; std::getline(file, line);) {
      if (!line.starts_with('#')) read[line.substr(0, line.find(' '))] = line;
    }
    return read;
  }();
  return lines;
}

class GoldenClouds : public testing::TestWithParam<Family> {};

TEST_P(GoldenClouds, AreLinkedAsTheyEverWere) {
  const test::QuietApp app;
  for (GoldenCase const& golden : test::GoldenCases()) {
    if (golden.feed.family != GetParam() || (!test::kFullSize && golden.feed.size > 5'000)) continue;
    const auto line = Golden().find(golden.Name());
    ASSERT_NE(line, Golden().end()) << golden << " is not in the golden file";
    EXPECT_EQ(GoldenLine(golden), line->second) << test::GoldenColumns();
  }
  EXPECT_EQ(app.TemporaryFiles(), 0U);
}

INSTANTIATE_TEST_SUITE_P(EveryFamily, GoldenClouds, testing::ValuesIn(support::kAllFamilies),
                         [](testing::TestParamInfo<Family> const& family) { return support::name(family.param); });

TEST(GoldenFile, HasALineForEachCaseAndNoOther) {
  std::set<std::string> cases, lines;
  for (GoldenCase const& golden : test::GoldenCases()) cases.insert(golden.Name());
  for (auto const& [name, line] : Golden()) lines.insert(name);
  EXPECT_EQ(lines, cases);
}

}  // namespace
}  // namespace Meseta47
