#include "host/Inputs.h"

#include <filesystem>

#include "tests/host/HostScenes.h"

using namespace Meseta47::host;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

/// Names below a folder, with the separator that every system knows.
std::vector<std::string> expanded(Folder const& folder, std::vector<std::string> inputs) {
  for (std::string& input : inputs) input = folder.file(input);
  std::vector<std::string> found = expandInputs(inputs);
  for (std::string& name : found) {
    name = std::filesystem::path(name.substr(folder.path().size() + 1)).generic_string();
  }
  return found;
}

void fill(Folder const& folder) {
  std::filesystem::create_directories(folder.file("tiles/deeper"));
  std::filesystem::create_directories(folder.file("empty"));
  for (char const* name : {"tiles/b.laz", "tiles/a.LAS", "tiles/a10.laz", "tiles/.hidden.laz", "tiles/notes.txt",
                           "tiles/deeper/c.laz", "x[1].las"}) {
    static_cast<void>(folder.make(name, "x"));
  }
}

}  // namespace

TEST(Inputs, AFileStandsForItselfWhetherItIsThereOrNot) {
  const Folder folder;
  fill(folder);
  EXPECT_THAT(expanded(folder, {"tiles/b.laz", "none.las"}), ElementsAre("tiles/b.laz", "none.las"));
}

TEST(Inputs, AFolderStandsForTheCloudsInItByName) {
  const Folder folder;
  fill(folder);
  EXPECT_THAT(expanded(folder, {"tiles"}),
              ElementsAre("tiles/.hidden.laz", "tiles/a.LAS", "tiles/a10.laz", "tiles/b.laz"));
  EXPECT_THAT(errorOf([&] { expanded(folder, {"empty"}); }),
              HasSubstr("empty: is a folder without a .las or .laz file"));
}

TEST(Inputs, APatternStandsForWhatItMatchesByName) {
  const Folder folder;
  fill(folder);
  EXPECT_THAT(expanded(folder, {"tiles/*.laz"}), ElementsAre("tiles/a10.laz", "tiles/b.laz"));
  EXPECT_THAT(expanded(folder, {"tiles/?.*"}), ElementsAre("tiles/a.LAS", "tiles/b.laz"));
  EXPECT_THAT(expanded(folder, {"tiles/[!a-b]*"}), ElementsAre("tiles/notes.txt"));
  EXPECT_THAT(expanded(folder, {"tiles/*1[0-9]*z"}), ElementsAre("tiles/a10.laz"));
  EXPECT_THAT(expanded(folder, {"t*/d*/*"}), ElementsAre("tiles/deeper/c.laz"));
  EXPECT_THAT(errorOf([&] { expanded(folder, {"tiles/*.xyz"}); }), HasSubstr("*.xyz: no file matches"));
}

TEST(Inputs, AFileWhoseNameLooksLikeAPatternIsTakenAsItIs) {
  const Folder folder;
  fill(folder);
  EXPECT_THAT(expanded(folder, {"x[1].las"}), ElementsAre("x[1].las"));
}
