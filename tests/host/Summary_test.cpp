// What a verb tells in the end, to both of its readers.
#include "host/Summary.h"

#include <chrono>
#include <gmock/gmock.h>
#include <thread>

#include "support/MatchesPattern.h"

namespace Meseta47::host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Json = nlohmann::ordered_json;

void rest(int milliseconds) { std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds)); }

std::vector<std::string> keysOf(Json const& json) {
  std::vector<std::string> keys;
  for (auto const& [key, value] : json.items()) keys.push_back(key);
  return keys;
}

TEST(PhaseTimes, StandInTheOrderInWhichTheyFirstBegan) {
  PhaseTimes times;
  times.timed("read", [] {});
  times.timed("link", [&] { times.timed("write", [] {}); });
  times.timed("read", [] {});
  EXPECT_THAT(keysOf(times.toJson()), ElementsAre("read", "link", "write", "total"));
}

TEST(PhaseTimes, APhaseWithinAnotherCountsForItselfAlone) {
  PhaseTimes times;
  const int answer = times.timed("around", [&] {
    times.timed("within", [] { rest(60); });
    times.timed("within", [] { rest(60); });
    return 7;
  });
  const Json json = times.toJson();
  EXPECT_EQ(answer, 7);
  EXPECT_GE(json["within"].get<double>(), 0.12);
  EXPECT_LE(json["around"].get<double>() + json["within"].get<double>(), json["total"].get<double>());
}

TEST(PhaseTimes, APhaseThatThrowsIsCountedAndTheNextStandsOutsideIt) {
  PhaseTimes times;
  EXPECT_THROW(times.timed("first", []() -> int { throw 1; }), int);
  times.timed("second", [] { rest(40); });
  const Json json = times.toJson();
  EXPECT_GE(json["second"].get<double>(), 0.04);
  EXPECT_LE(json["first"].get<double>() + json["second"].get<double>(), json["total"].get<double>());
}

TEST(PhaseTimes, WhatOthersHaveMeasuredIsAdded) {
  PhaseTimes times;
  times.spent("fill", 1.5);
  times.spent("fill", 0.25);
  EXPECT_THAT(times.text(), MatchesPattern("fill 1\\.75, total [0-9.]+"));
}

/// What a summary of one run prints.
std::string printed(bool json, bool quiet) {
  CommonOptions options;
  options.json = json;
  options.quiet = true;  // no bar
  HostApp app(options);
  options.quiet = quiet;
  Summary summary;
  LoadedCloud cloud;
  cloud.pointsRead = 20'000;
  cloud.linePoints = 30;
  summary.read(cloud);
  summary.read(cloud);
  summary.headline("m.ply: 1,000 triangles");
  summary.points({{"points_accepted", 39'000, "accepted"}, {"refused", 3, "refused"}});
  summary.counts("rejected", {{"slope", 1'234, "by slope"}, {"max_side", 0, "by longest side"}});
  summary.resident("triangles", 50, 1'000);
  summary.seconds.spent("read", 2);
  testing::internal::CaptureStdout();
  summary.print(options, app);
  return testing::internal::GetCapturedStdout();
}

TEST(Summary, TellsPeopleALineAFact) {
  const std::string text = printed(false, false);
  EXPECT_THAT(text, testing::StartsWith("m.ply: 1,000 triangles\n"
                                        "lines      0 lines and sets of points with 60 points, 0 geometries without "
                                        "heights left out\n"
                                        "points     40,000 read, 39,000 accepted, 3 refused\n"
                                        "rejected   1,234 by slope, 0 by longest side\n"
                                        "resident   50 of 1,000 triangles at most at once (5.0 %)\n"
                                        "seconds    read 2.00, total "));
  EXPECT_THAT(text, HasSubstr("\nmemory     "));
}

TEST(Summary, TellsProgramsTheSameUnderKeys) {
  const Json json = Json::parse(printed(true, false));
  EXPECT_THAT(keysOf(json), ElementsAre("points_read", "lines", "line_points", "skipped_without_z", "system",
                                        "points_accepted", "refused", "rejected", "linked_triangles",
                                        "peak_live_triangles", "seconds", "peak_memory_bytes"));
  EXPECT_EQ(json["points_read"], 40'000);
  EXPECT_EQ(json["rejected"]["slope"], 1'234);
  EXPECT_EQ(json["seconds"]["read"], 2.0);
}

TEST(Summary, IsSilentWhenAskedToBeButForJson) {
  EXPECT_EQ(printed(false, true), "");
  EXPECT_NE(printed(true, true), "");
}

}  // namespace
}  // namespace Meseta47::host
