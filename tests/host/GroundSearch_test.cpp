#include "host/classify/GroundSearch.h"

#include <nlohmann/json.hpp>

#include "host/Failure.h"
#include "host/classify/Classify.h"
#include "host/las/LasReader.h"
#include "host/las/LasWriter.h"
#include "tests/host/HostScenes.h"
#include "tests/platform/Environment.h"

using namespace Meseta47::host;
using Json = nlohmann::ordered_json;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// A program whose settings lie in the folder of the test.
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
struct Given : GroundSearch {
  explicit Given(std::string const& arguments) {
    CLI::App parser;
    addOptions(parser);
    parser.parse(arguments);
  }
};

Json settled(std::string const& arguments, CloudUnits const& units = {}, ProfilePlace const* profile = nullptr) {
  Given search(arguments);
  search.settle(profile);
  search.requireSense(units);
  return search.parameters();
}

CloudUnits feet() {
  CloudUnits units;
  units.metres = units.heightMetres = 0.3048;
  return units;
}

const ProfilePlace kHills{L"classify ground", L"hills."};

/// A plain of a point a metre, a hut of 6 m by 6 m on it, and a pit.
constexpr int kSide = 40, kPit = 25 * kSide + 30;

bool onTheHut(int i) { return i % kSide / 6 == 2 && i / kSide / 6 == 2; }

LasPoint landPoint(int i) {
  LasPoint p = somePoint(i);
  p.x = 1000 * (i % kSide) + 137 * (i % 5);
  p.y = 1000 * (i / kSide) + 91 * (i % 7);
  p.z = i == kPit ? 90000 : onTheHut(i) ? 104000 : 100000 + i % 7;
  if (p.classification == 2 || p.classification == 7) p.classification = 1;
  if (onTheHut(i) && i % 2 == 0) p.classification = 2;  // as an earlier search may have left it
  return p;
}

std::string land(Folder const& folder, unsigned format) {
  LasWriterOptions options;
  options.pointFormat = format;
  options.extraBytes = 3;
  options.vlrs = {{"me", 7, "a record", {1, 2, 3}}};
  options.evlrs = {{"me", 8, "another", Bytes(100, 4)}};
  LasWriter writer(folder.file("in.las"), options);
  for (int i = 0; i < kSide * kSide; ++i) writer.add(landPoint(i), Bytes{9, static_cast<std::uint8_t>(i), 7});
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

TEST(GroundSearch, WithoutOptionsAndProfileItHasTheDefaults) {
  const Json defaults = settled("");
  EXPECT_EQ(defaults["to"], 2);
  EXPECT_EQ(defaults["low_noise"], 7);
  EXPECT_EQ(defaults["window_metres"], 25.0);
  EXPECT_EQ(defaults["slope"], 0.1);
  EXPECT_EQ(defaults["band"], "auto");
}

TEST(GroundSearch, TheWindowIsInUnitsOfTheInput) {
  EXPECT_EQ(settled("--window 100", feet())["window_metres"], 30.48);
  EXPECT_EQ(settled("", feet())["window_metres"], 25.0);
  EXPECT_EQ(settled("", feet())["unit_metres"], 0.3048);
}

TEST(GroundSearch, AProfileGivesBackWhatWasKept) {
  const Folder folder;
  const Session session(folder);
  Given search("--window 40 --slope 0.2 --band tight --to 22 --low-noise 23");
  search.settle(&kHills);
  search.requireSense({});
  EXPECT_TRUE(search.keep(kHills));
  EXPECT_EQ(settled("", {}, &kHills), search.parameters());
  EXPECT_EQ(settled("--band rough", {}, &kHills)["band"], "rough");
}

TEST(GroundSearch, WhatMakesNoSenseIsRefusedWithTheWayOut) {
  const auto errorOf = [](std::string const& arguments) -> std::string {
    try {
      settled(arguments);
    } catch (UsageError const& error) {
      return error.what();
    }
    return {};
  };
  EXPECT_THAT(errorOf("--window 0"), HasSubstr("--window 0: give a length above 0 and up to 250"));
  EXPECT_THAT(errorOf("--window 251"), HasSubstr("up to 250"));
  EXPECT_THAT(errorOf("--to 7"), HasSubstr("--to and --low-noise are both 7"));
  EXPECT_THROW(Given("--band narrow"), CLI::ValidationError);
}

class GroundSearchFormats : public testing::TestWithParam<unsigned> {};

TEST_P(GroundSearchFormats, TheClassesChangeAndNotAnotherByte) {
  const Folder folder;
  Session session(folder);
  const std::string in = land(folder, GetParam());
  Bytes expected = bytesOf(in);
  const LasHeader header = LasReader(in).header();
  for (int i = 0; i < kSide * kSide; ++i) {
    const std::size_t record = header.offsetToPoints + static_cast<std::size_t>(i) * header.recordLength;
    std::uint8_t& byte = expected[record + (GetParam() >= 6 ? 16 : 15)];
    const std::uint8_t before = landPoint(i).classification;
    const int now = i == kPit ? 7 : onTheHut(i) ? (before == 2 ? 1 : before) : 2;
    byte = static_cast<std::uint8_t>(GetParam() >= 6 ? now : (byte & 0xe0) | now);
  }
  GroundSearch search;
  const ClassifyReport report = classify(optionsFor(in, folder.file("out.las")), search, session.app());
  EXPECT_EQ(bytesOf(folder.file("out.las")), expected);
  EXPECT_EQ(report.outcome.found, static_cast<std::uint64_t>(kSide * kSide - 37));
  EXPECT_EQ(report.outcome.details["low_noise_found"], 1);
}

INSTANTIATE_TEST_SUITE_P(AllFormats, GroundSearchFormats, testing::Range(0U, kLasFormats));

constexpr char const* kNoSystems = "a build without GDAL knows no reference systems";

TEST(GroundSearch, AnUnknownUnitIsTakenForTheMetreAndTold) {
  const Folder folder;
  Session session(folder);
  ClassifyOptions options = optionsFor(land(folder, 1), "");
  options.dryRun = true;
  GroundSearch unknown, known;
  EXPECT_THAT(classify(options, unknown, session.app()).outcome.notes, Contains(HasSubstr("taken for the metre")));
  if (!URDIMBRE_HAS_GDAL) GTEST_SKIP() << kNoSystems;
  options.cloud.system = "EPSG:25830";
  EXPECT_THAT(classify(options, known, session.app()).outcome.notes, IsEmpty());
}

TEST(GroundSearch, ASystemInFeetScalesTheSearch) {
  if (!URDIMBRE_HAS_GDAL) GTEST_SKIP() << kNoSystems;
  const Folder folder;
  Session session(folder);
  ClassifyOptions options = optionsFor(land(folder, 1), "");
  options.dryRun = true;
  options.cloud.system = "EPSG:2994";  // Oregon Lambert, international feet
  GroundSearch search;
  const ClassifyReport report = classify(options, search, session.app());
  EXPECT_EQ(search.parameters()["unit_metres"], 0.3048);
  EXPECT_LT(report.outcome.details["cell_metres"], 1.01);
}

TEST(GroundSearch, DegreesAreRefusedByName) {
  if (!URDIMBRE_HAS_GDAL) GTEST_SKIP() << kNoSystems;
  const Folder folder;
  Session session(folder);
  ClassifyOptions options = optionsFor(land(folder, 1), folder.file("out.las"));
  options.cloud.system = "EPSG:4258";
  GroundSearch search;
  try {
    classify(options, search, session.app());
    FAIL() << "degrees were taken";
  } catch (Failure const& failure) {
    EXPECT_THAT(failure.what(), HasSubstr("in degrees"));
    EXPECT_THAT(failure.what(), HasSubstr("project it first"));
  }
  EXPECT_FALSE(std::filesystem::exists(folder.file("out.las")));
}

TEST(GroundSearch, TooSmallACloudIsTold) {
  const Folder folder;
  Session session(folder);
  LasWriter writer(folder.file("in.las"), {});
  for (int i = 0; i < 9; ++i) {
    LasPoint p = somePoint(i);
    p.x = 1000 * (i % 3), p.y = 1000 * (i / 3), p.z = 0;
    writer.add(p);
  }
  writer.finish();
  ClassifyOptions options = optionsFor(folder.file("in.las"), "");
  options.dryRun = true;
  GroundSearch search;
  EXPECT_THAT(classify(options, search, session.app()).outcome.notes, Contains(HasSubstr("too small in plan")));
}
