#include "support/RealClouds.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>

namespace Meseta47::support {
namespace {

namespace fs = std::filesystem;

TEST(RealClouds, OnlyFilesThatAreThereAreFound) {
  const fs::path folder = fs::path(testing::TempDir()) / "urdimbre_real_clouds_test";
  fs::create_directories(folder / "isprs");
  std::ofstream(folder / "isprs" / "one.las") << "x";
  EXPECT_EQ(fileIn(folder, "isprs/one.las"), folder / "isprs/one.las");
  EXPECT_EQ(fileIn(folder, "two.las"), std::nullopt);
  EXPECT_EQ(fileIn(folder, "isprs"), std::nullopt) << "a folder is not a cloud";
  EXPECT_EQ(fileIn(std::nullopt, "isprs/one.las"), std::nullopt);
  fs::remove_all(folder);
}

TEST(RealClouds, TheFolderIsLookedForWhereTheMessageSays) {
  const auto folder = realCloudFolder();
  if (!folder) GTEST_SKIP() << missingCloud("bcts_1.las");
  EXPECT_TRUE(realCloud("bcts_1.las")) << missingCloud("bcts_1.las");
}

TEST(RealClouds, TheMessageOfASkippedTestNamesTheCloudAndTheVariable) {
  EXPECT_THAT(missingCloud("x.las"), testing::AllOf(testing::HasSubstr("x.las"), testing::HasSubstr("URDIMBRE_DATA")));
}

}  // namespace
}  // namespace Meseta47::support
