// The searches for noise as verbs: parameters, profiles, limits, and what becomes of a file.
#include <array>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "host/Failure.h"
#include "host/classify/AerialSearch.h"
#include "host/classify/Classify.h"
#include "host/classify/IsolatedSearch.h"
#include "host/classify/PeaksSearch.h"
#include "host/las/LasReader.h"
#include "host/las/LasWriter.h"
#include "tests/host/HostScenes.h"
#include "tests/platform/Environment.h"

using namespace Meseta47::host;
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
template <class Search>
struct Given : Search {
  explicit Given(std::string const& arguments) {
    CLI::App parser;
    this->addOptions(parser);
    parser.parse(arguments);
  }
};

template <class Search>
Json settled(std::string const& arguments, ProfilePlace const* profile = nullptr) {
  Given<Search> search(arguments);
  search.settle(profile);
  return search.parameters();
}

template <class Search>
bool kept(std::string const& arguments, ProfilePlace const& profile) {
  Given<Search> search(arguments);
  search.settle(&profile);
  return search.keep(profile);
}

/// What is said against the arguments on a file of so many units a metre.
template <class Search>
std::string refusal(std::string const& arguments, double units) {
  try {
    Given<Search> search(arguments);
    search.settle(nullptr);
    search.requireSense({units});
  } catch (UsageError const& error) {
    return error.what();
  } catch (CLI::ParseError const& error) {
    return error.what();
  }
  return {};
}

const ProfilePlace kPlace{L"classify noise", L"site."};

/// Flat ground, a point a metre with some roughness; one point hangs 40 m above it, one lies 9 m below, and one stands
/// 30 m off.
constexpr int kSide = 20, kPoints = kSide * kSide + 1, kHigh = 105, kLow = 283, kAlone = kSide * kSide;

std::string ground(Folder const& folder, unsigned format = 6) {
  LasWriterOptions options;
  options.pointFormat = format;
  LasWriter writer(folder.file("in.las"), options);
  for (int i = 0; i < kPoints; ++i) {
    LasPoint p = somePoint(i);
    p.x = i == kAlone ? 50'000 : 1000 * (i % kSide) + 17 * (i % 5);
    p.y = i == kAlone ? 9'000 : 1000 * (i / kSide) + 13 * (i % 7);
    p.z = i == kHigh ? 40'000 : i == kLow ? -9'000 : i * 37 % 50;
    p.classification = 2;
    writer.add(p);
  }
  writer.finish();
  return folder.file("in.las");
}

/// The places of the points that have the class afterwards, of those of class 2 before.
template <class Search>
std::vector<int> found(std::string const& arguments, unsigned wanted, ClassifyReport* told = nullptr) {
  const Folder folder;
  Session session(folder);
  ClassifyOptions options;
  options.cloud.inputs = {ground(folder)};
  options.output = folder.file("out.las");
  Given<Search> search(arguments);
  const ClassifyReport report = classify(options, search, session.app());
  if (told != nullptr) *told = report;
  std::vector<int> places;
  LasReader reader(options.output);
  std::vector<LasPoint> points;
  EXPECT_EQ(reader.readBatch(points), static_cast<std::size_t>(kPoints));
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (points[i].classification == wanted) places.push_back(static_cast<int>(i));
  }
  EXPECT_EQ(report.outcome.found, places.size());
  EXPECT_EQ(report.changes.total(), places.size());
  return places;
}

/// How many of a few points in hundredths a search finds.
template <class Search>
std::size_t foundOf(std::vector<std::array<int, 3>> const& places, std::string const& arguments) {
  const Folder folder;
  Session session(folder);
  LasWriterOptions hundredths;
  hundredths.scale = {0.01, 0.01, 0.01};
  LasWriter writer(folder.file("in.las"), hundredths);
  for (auto const& [x, y, z] : places) {
    LasPoint p = somePoint(0);
    p.x = x, p.y = y, p.z = z;
    p.classification = 2;
    writer.add(p);
  }
  writer.finish();
  ClassifyOptions options;
  options.cloud.inputs = {folder.file("in.las")};
  options.output = folder.file("out.las");
  Given<Search> search(arguments);
  return classify(options, search, session.app()).outcome.found;
}

}  // namespace

// 0.29 times 100 is 28.999999999999996 in binary.
TEST(PeaksSearch, AHeightIsNotCutBelowWhatWasMeant) {
  for (const int height : {29, 30}) {
    const std::vector<std::array<int, 3>> tent{{0, 0, 0}, {80, 3, 0}, {2, 90, 0}, {77, 95, 0}, {40, 45, height}};
    EXPECT_EQ(foundOf<PeaksSearch>(tent, "--height 0.29 --distance 0"), height == 30 ? 1U : 0U);
  }
}

TEST(IsolatedSearch, ADistanceIsNotCutBelowWhatWasMeant) {
  // The square of the distance from the first to the second is 840, below that of 29.
  const std::vector<std::array<int, 3>> pair{{0, 0, 0}, {26, 10, 8}, {9000, 100, 0}, {50, 7000, 0}};
  EXPECT_EQ(foundOf<IsolatedSearch>(pair, "--distance 0.29"), 2U);
  EXPECT_EQ(foundOf<IsolatedSearch>(pair, "--distance 0.28"), 4U);
}

TEST(IsolatedSearch, HasDefaultsAndTakesOptions) {
  EXPECT_EQ(settled<IsolatedSearch>(""), (Json{{"distance", 5.0}, {"neighbours", 1}, {"to", 7}}));
  EXPECT_EQ(settled<IsolatedSearch>("--distance 2.5 --neighbours 3 --to 255"),
            (Json{{"distance", 2.5}, {"neighbours", 3}, {"to", 255}}));
}

TEST(AerialSearch, HasDefaultsAndTakesOptions) {
  EXPECT_EQ(settled<AerialSearch>(""), (Json{{"radius", 5.0}, {"factor", 5.0}, {"to", 18}}));
  EXPECT_EQ(settled<AerialSearch>("--radius 2.5 --factor 0 --to 255"),
            (Json{{"radius", 2.5}, {"factor", 0.0}, {"to", 255}}));
}

TEST(AerialSearch, WhatLiesBelowIsLowNoiseUnlessAClassIsGiven) {
  EXPECT_EQ(settled<AerialSearch>("--factor -3"), (Json{{"radius", 5.0}, {"factor", -3.0}, {"to", 7}}));
  EXPECT_EQ(settled<AerialSearch>("--factor=-3 --to 18"), (Json{{"radius", 5.0}, {"factor", -3.0}, {"to", 18}}));
}

TEST(PeaksSearch, HasDefaultsAndTakesOptions) {
  EXPECT_EQ(settled<PeaksSearch>(""), (Json{{"distance", 3.0}, {"height", 1.0}, {"slope", 0.0}, {"to", 7}}));
  EXPECT_EQ(settled<PeaksSearch>("--distance 0 --height 2.5 --slope 1.5 --to 255"),
            (Json{{"distance", 0.0}, {"height", 2.5}, {"slope", 1.5}, {"to", 255}}));
}

TEST(NoiseSearches, ProfilesGiveBackWhatWasKept) {
  const Folder folder;
  const Session session(folder);
  EXPECT_TRUE(kept<IsolatedSearch>("--distance 2.25 --neighbours 4 --to 9", kPlace));
  EXPECT_EQ(settled<IsolatedSearch>("--to 8", &kPlace), (Json{{"distance", 2.25}, {"neighbours", 4}, {"to", 8}}));
  EXPECT_TRUE(kept<PeaksSearch>("--height 0.000001 --slope 3 --to 9", {L"classify peaks", L"site."}));
  const ProfilePlace peaks{L"classify peaks", L"site."};
  EXPECT_EQ(settled<PeaksSearch>("", &peaks),
            (Json{{"distance", 3.0}, {"height", 0.000001}, {"slope", 3.0}, {"to", 9}}));
}

TEST(AerialSearch, AProfileUsedTheOtherWayRoundGivesTheUsualClassOfThatWay) {
  const Folder folder;
  const Session session(folder);
  EXPECT_TRUE(kept<AerialSearch>("--radius 2 --factor 4", kPlace));
  EXPECT_EQ(settled<AerialSearch>("", &kPlace), (Json{{"radius", 2.0}, {"factor", 4.0}, {"to", 18}}));
  EXPECT_EQ(settled<AerialSearch>("--factor -4", &kPlace), (Json{{"radius", 2.0}, {"factor", -4.0}, {"to", 7}}));
  EXPECT_TRUE(kept<AerialSearch>("--to 30", kPlace));
  EXPECT_EQ(settled<AerialSearch>("--factor -4", &kPlace), (Json{{"radius", 2.0}, {"factor", -4.0}, {"to", 30}}));
}

TEST(NoiseSearches, AProfileThatCanNotBeWrittenIsNoticed) {
  const Folder folder;
  const Session session(folder);
  (void)folder.make("config", std::string("a file where the folder should be"));
  EXPECT_FALSE(kept<AerialSearch>("--radius 2", kPlace));
}

TEST(IsolatedSearch, ADistanceWhoseSquareDoesNotFitIsRefusedWithTheLargestThatDoes) {
  EXPECT_EQ(refusal<IsolatedSearch>("--distance 463.4", 100), "");
  EXPECT_THAT(refusal<IsolatedSearch>("--distance 463.41", 100),
              HasSubstr("--distance 463.41: give a length from 0 to 463.4, in units of the input"));
  EXPECT_THAT(refusal<IsolatedSearch>("--distance 50", 1000), HasSubstr("from 0 to 46.34"));
  EXPECT_THAT(refusal<IsolatedSearch>("--distance -1", 100), HasSubstr("--distance"));
}

TEST(NoiseSearches, LengthsMustFitTheScaledUnits) {
  EXPECT_EQ(refusal<AerialSearch>("--radius 2147483", 1000), "");
  EXPECT_THAT(refusal<AerialSearch>("--radius 2147484", 1000), HasSubstr("--radius"));
  EXPECT_EQ(refusal<PeaksSearch>("--distance 2147483 --height 2147483", 1000), "");
  EXPECT_THAT(refusal<PeaksSearch>("--distance 2147484", 1000), HasSubstr("--distance"));
  EXPECT_THAT(refusal<PeaksSearch>("--height 2147484", 1000), HasSubstr("--height"));
}

TEST(NoiseSearches, WhatMakesNoSenseIsRefused) {
  EXPECT_THAT(refusal<IsolatedSearch>("--neighbours 0", 1), HasSubstr("--neighbours"));
  EXPECT_THAT(refusal<IsolatedSearch>("--neighbours 1.5", 1), HasSubstr("--neighbours"));
  EXPECT_THAT(refusal<AerialSearch>("--factor nan", 1), HasSubstr("--factor"));
  EXPECT_THAT(refusal<AerialSearch>("--radius -2", 1), HasSubstr("--radius"));
  EXPECT_THAT(refusal<PeaksSearch>("--slope -2", 1), HasSubstr("--slope"));
  EXPECT_THAT(refusal<PeaksSearch>("--to 256", 1), HasSubstr("--to"));
}

TEST(PeaksSearch, NeedsNoRoomInTheTemporaryFolder) {
  EXPECT_EQ(PeaksSearch().temporaryBytes(1'000'000), 0U);
  EXPECT_GT(IsolatedSearch().temporaryBytes(1'000'000), 20'000'000U);
  EXPECT_GT(AerialSearch().temporaryBytes(1'000'000), 20'000'000U);
}

TEST(AerialSearch, FindsWhatHangsInTheAirOrLiesBelow) {
  EXPECT_EQ(found<AerialSearch>("", 18), std::vector{kHigh});
  EXPECT_EQ(found<AerialSearch>("--factor -5", 7), std::vector{kLow});
}

TEST(IsolatedSearch, FindsWhatHasNobodyNear) {
  ClassifyReport report;
  EXPECT_EQ(found<IsolatedSearch>("", 7, &report), (std::vector{kHigh, kLow, kAlone}));
  EXPECT_EQ(report.outcome.accepted, static_cast<std::uint64_t>(kPoints));
  EXPECT_TRUE(report.outcome.mesh.has_value());
  ASSERT_EQ(report.outcome.seconds.size(), 3U);
  EXPECT_EQ(report.outcome.seconds[2].first, "search");
}

TEST(PeaksSearch, FindsSpikesAndPits) {
  ClassifyReport report;
  EXPECT_EQ(found<PeaksSearch>("--height 5", 7, &report), (std::vector{kHigh, kLow}));
  EXPECT_EQ(report.outcome.seconds.size(), 2U) << "it has no pass over a file";
}
