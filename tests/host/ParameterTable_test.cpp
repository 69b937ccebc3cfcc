#include "host/classify/ParameterTable.h"

#include <cmath>

#include "host/Failure.h"
#include "host/HostApp.h"
#include "host/NumberCheck.h"
#include "tests/host/HostScenes.h"
#include "tests/platform/Environment.h"

using namespace Meseta47::host;
using Meseta47::CInfoClasificacion;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Json = nlohmann::ordered_json;

namespace {

/// A row of every kind.
struct Sample {
  double side = 2.5, reach = 1, window = 25, factor = -1.5;
  std::optional<double> limit, ratio;
  int neighbours = 2, iterates = 1, band = 0;
  CInfoClasificacion to{6, 0.0, L""}, from{2, 0.0, L""};
  std::vector<std::string> when;
  ParameterTable table;

  Sample() {
    table.length({"--side", "Side", "A side"}, side);
    table.squaredLength({"--reach", "Reach", "A reach"}, reach);
    table.optionalLength({"--limit", "Limit", "A limit"}, limit);
    table.optionalNumber({"--ratio", "Ratio", "A ratio"}, ratio, anyNumber());
    table.metres(
        {.option = "--window", .key = "Window", .help = "A window", .json = "metres", .byDefault = "25 metres"}, window,
        250);
    table.number({"--factor", "Factor", "A factor"}, factor, anyNumber());
    table.whole({"--neighbours", "Neighbours", "How many"}, neighbours, 0, 100);
    table.target({"--to", "To", "A class"}, to);
    table.sought({"--from-class", "From", "Another"}, from);
    table.flag({"--single-pass", "Iterate", "Once"}, iterates, 0);
    table.choice({"--band", "Band", "A band"}, band, {"rough", "tight"});
    table.texts({"--when", "When", "Conditions"}, when);
  }

  void parse(std::string const& arguments) {
    CLI::App parser;
    table.addTo(parser);
    parser.parse(arguments);
  }
  Json settled(std::string const& arguments, ProfilePlace const* profile = nullptr) {
    parse(arguments);
    table.settle(profile);
    return table.json();
  }
  std::string senseError(CloudUnits const& units) {
    try {
      table.requireSense(units);
    } catch (UsageError const& error) {
      return error.what();
    }
    return {};
  }
};

Json defaults() {
  return {{"side", 2.5},     {"reach", 1.0},         {"limit", nullptr}, {"ratio", nullptr},
          {"metres", 25.0},  {"factor", -1.5},       {"neighbours", 2},  {"to", 6},
          {"from_class", 2}, {"single_pass", false}, {"band", "rough"},  {"when", Json::array()}};
}

constexpr char kEverything[] =
    "--side 3.25 --reach 0.1 --limit 7 --ratio -0.000001 --window 40 --factor 1e-3 --neighbours 9 --to 255 "
    "--from-class 0 --single-pass --band tight --when 1:2:3:4 --when 5:6:7:8";

Json everything() {
  return {{"side", 3.25},    {"reach", 0.1},        {"limit", 7.0},    {"ratio", -0.000001},
          {"metres", 40.0},  {"factor", 0.001},     {"neighbours", 9}, {"to", 255},
          {"from_class", 0}, {"single_pass", true}, {"band", "tight"}, {"when", {"1:2:3:4", "5:6:7:8"}}};
}

class Session {
 public:
  explicit Session(Folder const& folder) : settings_(kSettingsVariable, folder.file("config")), app_(CommonOptions{}) {}
  HostApp& app() { return app_; }

 private:
  Environment settings_;
  HostApp app_;
};

const ProfilePlace kMine{L"classify sample", L"mine."};

}  // namespace

TEST(ParameterTable, FieldsHoldTheDefaults) { EXPECT_EQ(Sample().settled(""), defaults()); }

TEST(ParameterTable, OptionsAreTaken) {
  Sample sample;
  EXPECT_EQ(sample.settled(kEverything), everything());
  EXPECT_EQ(sample.iterates, 0) << "a flag gives its field the value of its row";
  EXPECT_EQ(sample.table.highestTarget(), 255);
}

TEST(ParameterTable, OnlyClassesThatAreGivenMustFitTheFormat) {
  Sample sample;
  (void)sample.settled("--from-class 200");
  EXPECT_EQ(sample.table.highestTarget(), 6);
}

TEST(ParameterTable, HelpNamesTheDefaults) {
  CLI::App parser;
  Sample sample;
  sample.table.addTo(parser);
  const std::string help = parser.help();
  for (char const* text : {"A side (default: 2.5)", "A limit\n", "A window (default: 25 metres)", "(default: -1.5)",
                           "How many (default: 2)", "A class (default: 6, building)", "Once\n",
                           "A band (default: rough)", "--side FLOAT", "--when TEXT ..."}) {
    EXPECT_THAT(help, HasSubstr(text));
  }
}

TEST(ParameterTable, AProfileGivesBackWhatWasKept) {
  const Folder folder;
  const Session session(folder);
  Sample first;
  (void)first.settled(kEverything);
  EXPECT_TRUE(first.table.keep(kMine));
  EXPECT_EQ(Sample().settled("", &kMine), everything());
}

TEST(ParameterTable, WhatIsUnsetStaysSoInAProfile) {
  const Folder folder;
  const Session session(folder);
  Sample first;
  (void)first.settled("");
  EXPECT_TRUE(first.table.keep(kMine));
  EXPECT_EQ(Sample().settled("", &kMine), defaults());
}

TEST(ParameterTable, AnOptionGoesBeforeTheProfile) {
  const Folder folder;
  const Session session(folder);
  Sample first;
  (void)first.settled(kEverything);
  EXPECT_TRUE(first.table.keep(kMine));
  Json expected = everything();
  expected["side"] = 1.0;
  expected["single_pass"] = false;
  expected["when"] = {"9:9:9:9"};
  EXPECT_EQ(Sample().settled("--side 1 --single-pass=false --when 9:9:9:9", &kMine), expected);
}

TEST(ParameterTable, ItKnowsWhatWasSettledAndByWhom) {
  const Folder folder;
  Session session(folder);
  session.app().WriteProfileString(kMine.section, kMine.prefix + L"To", L"9");
  Sample sample;
  (void)sample.settled("--side 1", &kMine);
  EXPECT_TRUE(sample.table.isSettled("--side"));
  EXPECT_TRUE(sample.table.isSettled("--to"));
  EXPECT_FALSE(sample.table.isSettled("--reach"));
}

TEST(ParameterTable, NonsenseInAProfileIsRefusedByTheNameOfTheOption) {
  const Folder folder;
  Session session(folder);
  for (auto const& [key, value, option] :
       std::vector<std::tuple<CString, CString, char const*>>{{L"Side", L"-3", "--side"},
                                                              {L"Neighbours", L"2.5", "--neighbours"},
                                                              {L"To", L"256", "--to"},
                                                              {L"Factor", L"much", "--factor"},
                                                              {L"Band", L"narrow", "--band"}}) {
    session.app().WriteProfileString(kMine.section, kMine.prefix + key, value);
    try {
      (void)Sample().settled("", &kMine);
      FAIL() << option;
    } catch (UsageError const& error) {
      EXPECT_THAT(error.what(), HasSubstr(std::string(option) + ", from the profile"));
    }
    session.app().WriteProfileString(kMine.section, kMine.prefix + key, nullptr);
  }
}

TEST(ParameterTable, OptionsOutOfTheirLimitsAreRefused) {
  for (char const* arguments : {"--side -1", "--side nan", "--neighbours 101", "--neighbours 1.5", "--to 256",
                                "--to -1", "--band narrow", "--limit -1", "--side 1 --side 2"}) {
    EXPECT_THROW(Sample().parse(arguments), CLI::ParseError) << arguments;
  }
}

TEST(ParameterTable, LengthsMustFitTheScaledUnits) {
  const auto errorAt = [](std::string const& arguments, double aMetre) {
    Sample sample;
    (void)sample.settled(arguments);
    return sample.senseError({aMetre});
  };
  EXPECT_EQ(errorAt("--side 2147483", 1000), "");
  EXPECT_THAT(errorAt("--side 2147484", 1000), HasSubstr("--side 2.14748e+06: give a length from 0 to 2147483"));
  EXPECT_EQ(errorAt("--limit 2147483", 1000), "");
  EXPECT_THAT(errorAt("--limit 2147484", 1000), HasSubstr("--limit"));
}

TEST(ParameterTable, ALengthThatIsSquaredMustFitWithItsSquare) {
  const auto errorAt = [](std::string const& arguments, double aMetre) {
    Sample sample;
    (void)sample.settled(arguments);
    return sample.senseError({aMetre});
  };
  EXPECT_EQ(errorAt("--reach 46.34", 1000), "");
  EXPECT_THAT(errorAt("--reach 46.341", 1000), HasSubstr("--reach 46.341: give a length from 0 to 46.34,"));
}

TEST(ParameterTable, MetresAreGivenInUnitsOfTheInput) {
  CloudUnits feet;
  feet.metres = 0.3048;
  Sample sample;
  (void)sample.settled("--window 100");
  EXPECT_EQ(sample.senseError(feet), "");
  EXPECT_EQ(sample.window, 100 * 0.3048);
  Sample unset;
  (void)unset.settled("");
  EXPECT_EQ(unset.senseError(feet), "");
  EXPECT_EQ(unset.window, 25);
  (void)sample.settled("--window 821");
  EXPECT_THAT(sample.senseError(feet), HasSubstr("--window 821: give a length above 0 and up to 820"));
}
