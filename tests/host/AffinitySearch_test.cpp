#include "host/classify/AffinitySearch.h"

#include <nlohmann/json.hpp>
#include <thread>

#include "host/Failure.h"
#include "host/classify/Classify.h"
#include "host/las/LasReader.h"
#include "host/las/LasWriter.h"
#include "tests/host/HostScenes.h"
#include "tests/platform/Environment.h"

using namespace Meseta47::host;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

using Json = nlohmann::ordered_json;

CommonOptions quiet() {
  CommonOptions options;
  options.quiet = true;
  return options;
}

/// A search that has read a command line.
struct Given : AffinitySearch {
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

Json parameters(int grow, Json const& barrier, Json const& height, Json const& intensity, Json const& side,
                Json const& slope, bool once) {
  return {{"grow", grow},
          {"barrier", barrier},
          {"height_difference", height},
          {"intensity_difference", intensity},
          {"side", side},
          {"slope", slope},
          {"once", once}};
}

/// A row of points a metre apart, in centimetres, that climbs by 29 cm a point; classes and intensities as told.
std::string row(Folder const& folder, std::vector<int> const& classes, std::vector<int> const& intensities = {}) {
  LasWriterOptions options;
  LasWriter writer(folder.file("in.las"), options);
  const auto add = [&](int x, int y, int z, int cls, int intensity) {
    LasPoint p = somePoint(0);
    p.x = x;
    p.y = y;
    p.z = z;
    p.classification = static_cast<std::uint8_t>(cls);
    p.intensity = static_cast<std::uint16_t>(intensity);
    writer.add(p);
  };
  for (std::size_t i = 0; i < classes.size(); ++i) {
    const int n = static_cast<int>(i);
    add(1000 * n, n % 3, 290 * n, classes[i], intensities.empty() ? n : intensities[i]);
  }
  add(-100'000, 90'000, 0, 1, 9'000);
  add(120'000, -91'000, 0, 1, 9'000);
  writer.finish();
  return folder.file("in.las");
}

std::vector<int> classesOf(std::string const& file, std::size_t count) {
  LasReader reader(file);
  std::vector<LasPoint> points;
  reader.readBatch(points, count);
  std::vector<int> classes;
  for (LasPoint const& p : points) classes.push_back(p.classification);
  return classes;
}

struct Outcome {
  ClassifyReport report;
  std::vector<int> classes;
};
Outcome grow(Folder const& folder, std::string const& in, std::string const& arguments, std::size_t count) {
  HostApp app(quiet());
  ClassifyOptions options;
  options.cloud.inputs = {in};
  options.output = folder.file("out.las");
  Given search(arguments);
  Outcome outcome{classify(options, search, app), {}};
  outcome.classes = classesOf(options.output, count);
  return outcome;
}

template <class Error>
std::string messageOf(std::function<void()> const& deed) {
  try {
    deed();
  } catch (Error const& error) {
    return error.what();
  }
  return "nothing was thrown";
}

const ProfilePlace kWood{L"classify affinity", L"wood."};

}  // namespace

TEST(AffinitySearch, WithoutALimitNothingWouldStopIt) {
  EXPECT_THAT(messageOf<UsageError>([] { settled("--grow 2 --barrier 6"); }),
              HasSubstr("nothing would stop the growth"));
}

TEST(AffinitySearch, WhatIsNotGivenLimitsNothing) {
  EXPECT_EQ(settled("--side 3"), parameters(2, nullptr, nullptr, nullptr, 3.0, nullptr, false));
}

TEST(AffinitySearch, OptionsAreTaken) {
  EXPECT_EQ(settled("--grow 200 --barrier 0 --height-difference 0.3 --intensity-difference 65535 --side 5 --slope 0.5 "
                    "--once"),
            parameters(200, 0, 0.3, 65535.0, 5.0, 0.5, true));
}

TEST(AffinitySearch, AProfileGivesBackWhatWasKeptAndLeavesOutWhatWasNot) {
  const Folder folder;
  const Environment settings(kSettingsVariable, folder.file("config"));
  const HostApp app(quiet());
  Given search("--grow 6 --height-difference 0.25 --once");
  search.settle(&kWood);
  EXPECT_TRUE(search.keep(kWood));
  EXPECT_EQ(settled("", &kWood), parameters(6, nullptr, 0.25, nullptr, nullptr, nullptr, true));
  EXPECT_EQ(settled("--barrier 9 --once=false", &kWood), parameters(6, 9, 0.25, nullptr, nullptr, nullptr, false));
}

TEST(AffinitySearch, LimitsAreInTheUnitsOfTheInputAndIncluded) {
  const Folder folder;
  const std::string in = row(folder, {2, 1, 1, 1});
  EXPECT_THAT(grow(folder, in, "--height-difference 0.29 --side 1.01", 4).classes, ElementsAre(2, 2, 2, 2));
  EXPECT_THAT(grow(folder, in, "--height-difference 0.28 --side 1.01", 4).classes, ElementsAre(2, 1, 1, 1));
  EXPECT_THAT(grow(folder, in, "--side 0.99", 4).classes, ElementsAre(2, 1, 1, 1));
  EXPECT_THAT(grow(folder, in, "--slope 0.3 --side 1.01", 4).classes, ElementsAre(2, 2, 2, 2));
  EXPECT_THAT(grow(folder, in, "--slope 0.28 --side 1.01", 4).classes, ElementsAre(2, 1, 1, 1));
}

TEST(AffinitySearch, ASlopeIsOneUpAndDown) {
  const Folder folder;
  const std::string in = row(folder, {1, 1, 2, 1});
  EXPECT_THAT(grow(folder, in, "--slope 0.3 --side 1.01", 4).classes, ElementsAre(2, 2, 2, 2));
}

TEST(AffinitySearch, ABarrierStopsIt) {
  const Folder folder;
  const std::string in = row(folder, {2, 1, 6, 1});
  EXPECT_THAT(grow(folder, in, "--side 1.01 --barrier 6", 4).classes, ElementsAre(2, 2, 6, 1));
  EXPECT_THAT(grow(folder, in, "--side 1.01", 4).classes, ElementsAre(2, 2, 2, 2));
}

TEST(AffinitySearch, IntensitiesLimitItWhereAskedFor) {
  const Folder folder;
  const std::string in = row(folder, {2, 1, 1, 1}, {100, 110, 121, 131});
  EXPECT_THAT(grow(folder, in, "--side 1.01 --intensity-difference 10", 4).classes, ElementsAre(2, 2, 1, 1));
}

TEST(AffinitySearch, IntensitiesThatAreAllOneAreRefused) {
  const Folder folder;
  LasWriterOptions options;
  {
    LasWriter writer(folder.file("in.las"), options);
    for (int i = 0; i < 9; ++i) {
      LasPoint p = somePoint(i);
      p.intensity = 77;
      writer.add(p);
    }
    writer.finish();
  }
  EXPECT_THAT(messageOf<Failure>([&] { grow(folder, folder.file("in.las"), "--intensity-difference 10", 9); }),
              HasSubstr("every point has the intensity 77"));
}

TEST(AffinitySearch, TheSummaryTellsTheRoundsAndWhetherThereWasAnythingToGrowFrom) {
  const Folder folder;
  const std::string in = row(folder, {2, 1, 1, 1});
  const Outcome found = grow(folder, in, "--side 1.01", 4);
  EXPECT_EQ(found.report.outcome.found, 3U);
  EXPECT_GE(found.report.outcome.details.at("rounds"), 1);
  EXPECT_THAT(found.report.outcome.notes, IsEmpty());
  EXPECT_EQ(grow(folder, in, "--side 1.01 --once", 4).report.outcome.details.at("rounds"), 1);
  EXPECT_THAT(grow(folder, in, "--side 1.01 --grow 9", 4).report.outcome.notes,
              ElementsAre(HasSubstr("no point has class 9, water")));
}

TEST(HostApp, RunsSideBySideLeaveTheBarToItsThreadAndTheirMessagesAreKept) {
  HostApp app(quiet());
  std::vector<std::thread> threads;
  for (int k = 0; k < 4; ++k) {
    threads.emplace_back([&app, k] {
      app.Fase(1, 19021);
      for (unsigned i = 0; i < 1000; ++i) EXPECT_EQ(app.Porcentaje(1, i, 1000, false), 1);
      CString text;
      text.Format(L"thread %d", k);
      app.Mensaje(1, &text, 1);
    });
  }
  for (std::thread& thread : threads) thread.join();
  testing::internal::CaptureStderr();
  app.showMessages();
  const std::string shown = testing::internal::GetCapturedStderr();
  for (int k = 0; k < 4; ++k) EXPECT_THAT(shown, HasSubstr("urdimbre: thread " + std::to_string(k) + "\n"));
}
