#include "host/classify/HighSearch.h"

#include <limits>
#include <nlohmann/json.hpp>

#include "host/Failure.h"
#include "host/classify/Classify.h"
#include "host/las/LasReader.h"
#include "host/las/LasWriter.h"
#include "tests/host/HostScenes.h"
#include "tests/platform/Environment.h"

using namespace Meseta47::host;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

using Json = nlohmann::ordered_json;

/// An application whose profile stands in a folder of its own.
class Session {
 public:
  explicit Session(Folder const& folder) : settings_(kSettingsVariable, folder.file("config")), app_(quiet()) {}

  HostApp& app() { return app_; }

 private:
  static CommonOptions quiet() {
    CommonOptions options;
    options.quiet = true;
    return options;
  }

  Environment settings_;
  HostApp app_;
};

/// A search that has read a command line.
struct Given : HighSearch {
  explicit Given(std::string const& arguments) {
    CLI::App parser;
    addOptions(parser);
    parser.parse(arguments);
  }
};

Json settled(std::string const& arguments, ProfilePlace const* profile = nullptr) {
  Given search(arguments);
  search.settle(profile);
  return search.parameters();
}

bool kept(std::string const& arguments, ProfilePlace const& profile) {
  Given search(arguments);
  search.settle(&profile);
  return search.keep(profile);
}

Json parameters(double distance, double height, int to, bool singlePass) {
  return {{"distance", distance}, {"height", height}, {"to", to}, {"single_pass", singlePass}};
}

const ProfilePlace kWood{L"classify high", L"wood."}, kTown{L"classify high", L"town."};

/// Flat ground, a point a metre, and on it a block of 4 m by 4 m, 10 m high. Classes run through all that formats 0 to
/// 5 hold, and are no 6.
constexpr int kSide = 20;

bool onTheBlock(int i) { return i % kSide / 4 == 2 && i / kSide / 4 == 1; }

LasPoint gridPoint(int i) {
  LasPoint p = somePoint(i);
  p.x = 1000 * (i % kSide);
  p.y = 1000 * (i / kSide);
  p.z = onTheBlock(i) ? 10000 : i % 7;
  if (p.classification == 6) p.classification = 1;
  return p;
}

std::string block(Folder const& folder, unsigned format) {
  LasWriterOptions options;
  options.pointFormat = format;
  options.extraBytes = 3;
  options.vlrs = {{"me", 7, "a record", {1, 2, 3}}};
  options.evlrs = {{"me", 8, "another", Bytes(100, 4)}};
  LasWriter writer(folder.file("in.las"), options);
  for (int i = 0; i < kSide * kSide; ++i) writer.add(gridPoint(i), Bytes{9, static_cast<std::uint8_t>(i), 7});
  writer.finish();
  return folder.file("in.las");
}

ClassifyOptions optionsFor(std::string const& input, std::string const& output) {
  ClassifyOptions options;
  options.cloud.inputs = {input};
  options.output = output;
  return options;
}

}  // namespace

TEST(HighSearch, WithoutOptionsAndProfileItHasTheDefaults) { EXPECT_EQ(settled(""), parameters(5, 5, 6, false)); }

TEST(HighSearch, OptionsAreTaken) {
  EXPECT_EQ(settled("--distance 2.5 --height 0 --to 255 --single-pass"), parameters(2.5, 0, 255, true));
}

TEST(HighSearch, AProfileGivesBackWhatWasKept) {
  const Folder folder;
  const Session session(folder);
  EXPECT_TRUE(kept("--distance 2.25 --height 0.000001 --to 5 --single-pass", kWood));
  EXPECT_EQ(settled("", &kWood), parameters(2.25, 0.000001, 5, true));
}

TEST(HighSearch, AnOptionGoesBeforeTheProfile) {
  const Folder folder;
  const Session session(folder);
  EXPECT_TRUE(kept("--distance 2 --height 3 --to 5 --single-pass", kWood));
  EXPECT_EQ(settled("--height 4 --single-pass=false", &kWood), parameters(2, 4, 5, false));
}

TEST(HighSearch, ProfilesStandSideBySide) {
  const Folder folder;
  const Session session(folder);
  EXPECT_TRUE(kept("--distance 2", kWood));
  EXPECT_TRUE(kept("--distance 3", kTown));
  EXPECT_EQ(settled("", &kWood), parameters(2, 5, 6, false));
  EXPECT_EQ(settled("", &kTown), parameters(3, 5, 6, false));
}

TEST(HighSearch, ValuesOfAProfileThatItHasNoOptionForAreKept) {
  const Folder folder;
  Session session(folder);
  session.app().WriteProfileInt(kWood.section, kWood.prefix + L"VecinosAislados", 9);
  EXPECT_TRUE(kept("--distance 2", kWood));
  EXPECT_EQ(session.app().GetProfileInt(kWood.section, kWood.prefix + L"VecinosAislados", 0), 9);
}

TEST(HighSearch, AProfileThatCanNotBeWrittenIsNoticed) {
  const Folder folder;
  const Session session(folder);
  (void)folder.make("config", std::string("a file where the folder should be"));
  EXPECT_FALSE(kept("--distance 2", kWood));
}

TEST(HighSearch, LengthsMustFitTheScaledUnits) {
  const auto errorAt = [](std::string const& arguments, double units) -> std::string {
    Given search(arguments);
    search.settle(nullptr);
    try {
      search.requireSense({units});
    } catch (UsageError const& error) {
      return error.what();
    }
    return {};
  };
  EXPECT_EQ(errorAt("--distance 2147483 --height 0", 1000), "");
  EXPECT_THAT(errorAt("--distance 2147484", 1000),
              HasSubstr("--distance 2.14748e+06: give a length from 0 to 2147483"));
  EXPECT_THAT(errorAt("--height 2147484", 1000), HasSubstr("--height"));
  EXPECT_EQ(errorAt("--distance 2147484", 100), "");
}

TEST(HighSearch, AProfileThatMakesNoSenseIsRefused) {
  const Folder folder;
  Session session(folder);
  session.app().WriteProfileString(kWood.section, kWood.prefix + L"AlturaMin", L"-3");
  HighSearch search;
  EXPECT_THROW(search.settle(&kWood), UsageError);
}

class HighSearchFormats : public testing::TestWithParam<unsigned> {};

TEST_P(HighSearchFormats, TheBlockTakesTheClassAndNotAnotherByteChanges) {
  const Folder folder;
  Session session(folder);
  const std::string in = block(folder, GetParam());
  Bytes expected = bytesOf(in);
  const LasHeader header = LasReader(in).header();
  std::map<ClassChanges::Step, std::uint64_t> changes;
  for (int i = 0; i < kSide * kSide; ++i) {
    if (!onTheBlock(i)) continue;
    const std::size_t record = header.offsetToPoints + static_cast<std::size_t>(i) * header.recordLength;
    std::uint8_t& byte = expected[record + (GetParam() >= 6 ? 16 : 15)];
    byte = static_cast<std::uint8_t>(GetParam() >= 6 ? 6 : (byte & 0xe0) | 6);
    ++changes[{gridPoint(i).classification, 6}];
  }
  HighSearch search;
  const ClassifyReport report = classify(optionsFor(in, folder.file("out.las")), search, session.app());
  EXPECT_EQ(bytesOf(folder.file("out.las")), expected);
  EXPECT_EQ(report.changes.counts(), changes);
  EXPECT_EQ(report.changes.total(), 16U);
}

INSTANTIATE_TEST_SUITE_P(AllFormats, HighSearchFormats, testing::Range(0U, kLasFormats));

TEST(HighSearch, AClassLeftOutIsNeitherSeenNorChanged) {
  const Folder folder;
  Session session(folder);
  const std::string in = block(folder, 1);
  ClassifyOptions options = optionsFor(in, folder.file("out.las"));
  for (int i = 0; i < kSide * kSide; ++i) {
    if (!onTheBlock(i)) continue;
    options.cloud.excludedClasses +=
        (options.cloud.excludedClasses.empty() ? "" : ",") + std::to_string(gridPoint(i).classification);
  }
  HighSearch search;
  const ClassifyReport report = classify(options, search, session.app());
  EXPECT_EQ(report.changes.total(), 0U);
  EXPECT_LE(report.outcome.accepted, static_cast<std::uint64_t>(kSide * kSide - 16));
  EXPECT_EQ(bytesOf(options.output), bytesOf(in));
}
