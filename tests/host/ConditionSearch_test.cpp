// The verbs that look at colours and intensities: classify colour, intensity and jumps.
#include "host/classify/ConditionSearch.h"

#include "host/Failure.h"
#include "host/classify/Classify.h"
#include "host/classify/JumpSearch.h"
#include "host/classify/RiseList.h"
#include "host/las/LasReader.h"
#include "host/las/LasWriter.h"
#include "tests/host/HostScenes.h"

using namespace Meseta47::host;
using Meseta47::CCondicionHIntensidad;
using Meseta47::CCondicionHRGB;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

template <class Search>
struct Given : Search {
  explicit Given(std::string const& arguments) {
    CLI::App parser;
    this->addOptions(parser);
    parser.parse(arguments);
  }
};

template <class Search>
std::string usageErrorOf(std::string const& arguments, double unitsAMetre = 1000) {
  try {
    Given<Search> search(arguments);
    search.settle(nullptr);
    search.requireSense({unitsAMetre});
  } catch (UsageError const& error) {
    return error.what();
  }
  return {};
}

/// Flat ground, a point a metre, and two blocks on it of 4 m by 4 m, 10 m high: one green and dull, one red and bright.
constexpr int kSide = 20;

enum Where { kGround, kGreenBlock, kRedBlock };

Where where(int i) {
  const int column = i % kSide / 4, row = i / kSide / 4;
  if (row == 1 && column == 1) return kGreenBlock;
  return row == 3 && column == 3 ? kRedBlock : kGround;
}

LasPoint pointOf(int i) {
  LasPoint p;
  p.x = 1000 * (i % kSide);
  p.y = 1000 * (i / kSide);
  p.z = where(i) == kGround ? i % 7 : 10000;
  p.classification = 1;
  p.intensity = static_cast<std::uint16_t>(where(i) == kRedBlock ? 900 : 100 + i % 5);
  p.returnNumber = p.returns = 1;
  const auto channel = [](int eightBits) { return static_cast<std::uint16_t>(256 * eightBits + 77); };
  p.red = channel(where(i) == kRedBlock ? 200 : where(i) == kGreenBlock ? 30 : 100);
  p.green = channel(where(i) == kRedBlock ? 40 : where(i) == kGreenBlock ? 140 + i % 3 : 100);
  p.blue = channel(where(i) == kRedBlock ? 30 : where(i) == kGreenBlock ? 20 : 100);
  return p;
}

template <class Change>
std::string cloud(Folder const& folder, unsigned format, Change change) {
  LasWriterOptions options;
  options.pointFormat = format;
  LasWriter writer(folder.file("in.las"), options);
  for (int i = 0; i < kSide * kSide; ++i) {
    LasPoint p = pointOf(i);
    change(p);
    writer.add(p);
  }
  writer.finish();
  return folder.file("in.las");
}
std::string cloud(Folder const& folder, unsigned format = 3) {
  return cloud(folder, format, [](LasPoint&) {});
}

ClassifyReport run(CloudSearch& search, std::string const& input, std::string const& output,
                   std::string const& order = "hilbert") {
  CommonOptions quiet;
  quiet.quiet = true;
  HostApp app(quiet);
  ClassifyOptions options;
  options.cloud.inputs = {input};
  options.cloud.order = order;
  options.output = output;
  return classify(options, search, app);
}

template <class Search>
std::string failureOf(std::string const& arguments, std::string const& input, std::string const& output) {
  Given<Search> search(arguments);
  try {
    run(search, input, output);
  } catch (std::runtime_error const& error) {
    return error.what();
  }
  return {};
}

std::vector<int> classesOf(std::string const& file) {
  LasReader reader(file);
  std::vector<LasPoint> points;
  std::vector<int> classes;
  while (reader.readBatch(points) != 0) {
    for (LasPoint const& p : points) classes.push_back(p.classification);
  }
  return classes;
}

std::vector<int> expectedClasses(int green, int red) {
  std::vector<int> classes;
  for (int i = 0; i < kSide * kSide; ++i) {
    classes.push_back(where(i) == kGreenBlock ? green : where(i) == kRedBlock ? red : 1);
  }
  return classes;
}

}  // namespace

TEST(ColourSearch, EachConditionFindsItsBlockAndTheInsideOfIt) {
  const Folder folder;
  const std::string in = cloud(folder);
  for (char const* order : {"hilbert", "file"}) {  // colours go with their points
    Given<ColourSearch> search("--when 30,140,20:10:2:5 --when 200,40,30:10:2:6");
    run(search, in, folder.file("out.las"), order);
    EXPECT_EQ(classesOf(folder.file("out.las")), expectedClasses(5, 6)) << order;
  }
}

TEST(ColourSearch, ColoursThatAre8BitsIn16AreTakenAsTheyAre) {
  const Folder folder;
  const std::string in = cloud(folder, 3, [](LasPoint& p) {
    p.red >>= 8;
    p.green >>= 8;
    p.blue >>= 8;
  });
  Given<ColourSearch> search("--when 200,40,30:10:2:6");
  run(search, in, folder.file("out.las"));
  EXPECT_EQ(classesOf(folder.file("out.las")), expectedClasses(1, 6));
}

TEST(IntensitySearch, EachConditionFindsItsBlock) {
  const Folder folder;
  const std::string in = cloud(folder, 1);
  Given<IntensitySearch> search("--when 0:899:2:5 --when 900:65535:2:6");
  run(search, in, folder.file("out.las"));
  EXPECT_EQ(classesOf(folder.file("out.las")), expectedClasses(5, 6));
}

TEST(JumpSearch, TheBrightBlockIsOutlinedAndFilled) {
  const Folder folder;
  const std::string in = cloud(folder, 1);
  Given<JumpSearch> search("--difference 500 --to 11");
  run(search, in, folder.file("out.las"));
  EXPECT_EQ(classesOf(folder.file("out.las")), expectedClasses(1, 11));
}

TEST(ColourSearch, ACloudWithoutColoursIsRefused) {
  const Folder folder;
  constexpr char kWhen[] = "--when 1,2,3:4:5:6";
  EXPECT_THAT(failureOf<ColourSearch>(kWhen, cloud(folder, 1), folder.file("out.las")),
              HasSubstr("in.las: has no colours, or black alone"));
  const auto blacken = [](LasPoint& p) { p.red = p.green = p.blue = 0; };
  EXPECT_THAT(failureOf<ColourSearch>(kWhen, cloud(folder, 3, blacken), folder.file("out.las")),
              HasSubstr("colour the cloud first"));
  EXPECT_THAT(folder.names(), ElementsAre("in.las"));
}

TEST(IntensitySearch, ACloudOfOneIntensityIsRefusedByAllThatLookAtIt) {
  const Folder folder;
  const std::string in = cloud(folder, 1, [](LasPoint& p) { p.intensity = 7; });
  EXPECT_THAT(failureOf<IntensitySearch>("--when 0:9:1:5", in, folder.file("out.las")),
              HasSubstr("in.las: the intensity of every point is 7"));
  EXPECT_THAT(failureOf<JumpSearch>("--difference 3 --to 5", in, folder.file("out.las")),
              HasSubstr("nothing to tell points apart by"));
  EXPECT_THAT(folder.names(), ElementsAre("in.las"));
}

TEST(ColourSearch, AClassOfAnyConditionMustFitTheFormat) {
  const Folder folder;
  EXPECT_THAT(failureOf<ColourSearch>("--when 1,2,3:4:5:6 --when 4,5,6:7:8:32", cloud(folder), folder.file("out.las")),
              HasSubstr("class 32 does not fit point format 3"));
}

TEST(ColourSearch, ConditionsThatMakeNoSenseAreRefusedAsTheyWereGiven) {
  for (char const* when :
       {"1,2,3:4:5", "1,2,3:4:5:6:7", "1,2:4:5:6", "1,2,256:4:5:6", "1,2,x:4:5:6", "1,2,3:256:5:6", "1,2,3:-1:5:6",
        "1,2,3:4:-5:6", "1,2,3:4:tall:6", "1,2,3:4:5:256", "1,2,3:4:5:", "1,2,3.5:4:5:6"}) {
    EXPECT_THAT(usageErrorOf<ColourSearch>("--when " + std::string(when)),
                testing::AllOf(HasSubstr("--when " + std::string(when) + ": give R,G,B:TOLERANCE:HEIGHT:CLASS"),
                               HasSubstr("such as")));
  }
  for (char const* when : {"1:2:3", "2:1:5:6", "0:65536:5:6", "-1:9:5:6"}) {
    EXPECT_THAT(usageErrorOf<IntensitySearch>("--when " + std::string(when)), HasSubstr("give MIN:MAX:HEIGHT:CLASS"));
  }
  EXPECT_EQ(usageErrorOf<ColourSearch>("--when 0,0,0:0:0:0 --when 255,255,255:255:9.75:255"), "");
  EXPECT_EQ(usageErrorOf<IntensitySearch>("--when 0:65535:0:0 --when 7:7:1e3:255"), "");
}

TEST(ColourSearch, SomethingMustBeLookedFor) {
  EXPECT_THAT(usageErrorOf<ColourSearch>(""), HasSubstr("nothing to look for: give --when"));
  EXPECT_THAT(usageErrorOf<JumpSearch>("--to 5"), HasSubstr("--difference: give"));
  EXPECT_THAT(usageErrorOf<JumpSearch>("--difference 5"), HasSubstr("--to: give"));
  EXPECT_EQ(usageErrorOf<JumpSearch>("--difference -65535 --to 0"), "");
}

TEST(ColourSearch, MoreConditionsThanASearchTakesAreRefused) {
  std::string arguments;
  for (int i = 0; i < 128; ++i) arguments += " --when 1,2,3:4:5:6";
  EXPECT_EQ(usageErrorOf<ColourSearch>(arguments), "");
  EXPECT_THAT(usageErrorOf<ColourSearch>(arguments + " --when 1,2,3:4:5:6"),
              HasSubstr("129 conditions, and a search takes 128 at most"));
}

TEST(ColourSearch, HeightsMustFitTheScaledUnits) {
  EXPECT_EQ(usageErrorOf<ColourSearch>("--when 1,2,3:4:2147483:6"), "");
  EXPECT_THAT(usageErrorOf<ColourSearch>("--when 1,2,3:4:2147484:6"), HasSubstr("give heights from 0 to 2147483"));
  EXPECT_THAT(usageErrorOf<IntensitySearch>("--list 2147484"), HasSubstr("--list"));
}

TEST(ColourSearch, AHeightIsNotCutBelowWhatWasMeant) {
  // 0.29 in single precision lies below 0.29, and 28 hundredths would come of it: points 29 high would be found.
  const Folder folder;
  LasWriterOptions options;
  options.pointFormat = 3;
  options.scale = {0.01, 0.01, 0.01};
  for (const int height : {29, 30}) {
    LasWriter writer(folder.file("in.las"), options);
    for (auto const& [x, y, z] : std::vector<std::tuple<int, int, int>>{{0, 0, 0}, {4, 0, 0}, {2, 3, height}}) {
      LasPoint p;
      p.x = x, p.y = y, p.z = z;
      p.red = 25600;
      writer.add(p);
    }
    writer.finish();
    Given<ColourSearch> search("--when 100,0,0:9:0.29:6 --distance 0");
    EXPECT_EQ(run(search, folder.file("in.las"), folder.file("out.las")).changes.total(), height == 30 ? 1U : 0U);
  }
}

TEST(ColourSearch, AListTellsLooksAndHeightsAsConditionsAndWritesNothing) {
  const Folder folder;
  const std::string in = cloud(folder);
  Given<ColourSearch> search("--list 2");
  const ClassifyReport report = run(search, in, "");
  EXPECT_THAT(folder.names(), ElementsAre("in.las"));
  EXPECT_EQ(report.changes.total(), 0U);
  auto const& rises = report.outcome.details["rises"];
  ASSERT_GE(rises.size(), 2U);
  std::uint64_t told = 0;
  for (auto const& rise : rises) told += rise["times"].get<std::uint64_t>();
  EXPECT_EQ(told, report.outcome.details["rises_told"]);
  EXPECT_THAT(report.outcome.list, SizeIs(rises.size() + 1));
  EXPECT_THAT(report.outcome.list[0], HasSubstr("rises of more than 2"));
  const std::string both = rises.dump();
  EXPECT_THAT(both, HasSubstr("200,40,30:1:2")) << "a condition that takes them";
}

TEST(ColourSearch, AListHasNoOutput) {
  const Folder folder;
  EXPECT_THAT(failureOf<ColourSearch>("--list 2", cloud(folder), folder.file("out.las")), HasSubstr("leave out -o"));
  EXPECT_THAT(failureOf<ColourSearch>("--when 1,2,3:4:5:6", folder.file("in.las"), ""), HasSubstr("give -o"));
}

TEST(RiseList, KindsOfColoursComeWithTheConditionThatTakesThem) {
  SearchOutcome outcome;
  std::vector<CCondicionHRGB> rises(3, CCondicionHRGB(100, 40, 10, -1, 7, 1));
  rises.emplace_back(110, 44, 12, -1, 9.5F, 1);
  rises.emplace_back(200, 200, 200, -1, 3, 1);
  tellColours(rises, 2.5, outcome);
  EXPECT_EQ(outcome.details["rises_told"], 5);
  ASSERT_THAT(outcome.details["rises"], SizeIs(2));
  EXPECT_EQ(outcome.details["rises"][0]["times"], 4);
  EXPECT_EQ(outcome.details["rises"][0]["when"], "105,42,11:6:2.5");
  EXPECT_EQ(outcome.details["rises"][0]["lowest"], 7);
  EXPECT_EQ(outcome.details["rises"][0]["highest"], 9.5);
  EXPECT_EQ(outcome.details["rises"][1]["when"], "200,200,200:1:2.5");
}

TEST(RiseList, KindsOfIntensitiesAreToldByTheirLimits) {
  SearchOutcome outcome;
  tellIntensities({{10, 10, -1, 7}, {11, 11, -1, 8}, {1200, 1200, -1, 9}}, 2, outcome);
  ASSERT_THAT(outcome.details["rises"], SizeIs(2));
  EXPECT_EQ(outcome.details["rises"][0]["when"], "10:11:2");
  EXPECT_EQ(outcome.details["rises"][1]["when"], "1200:1200:2");
}

TEST(RiseList, NothingThatRisesIsTold) {
  SearchOutcome outcome;
  tellIntensities({}, 2, outcome);
  EXPECT_THAT(outcome.details["rises"], IsEmpty());
  EXPECT_THAT(outcome.list, ElementsAre(HasSubstr("0 rises of more than 2")));
}

TEST(RiseList, TheMostFrequentKindsStandFirstAndTheRestIsCounted) {
  SearchOutcome outcome;
  std::vector<CCondicionHRGB> rises;
  for (int kind = 0; kind < 30; ++kind) {
    for (int i = 0; i <= kind; ++i) {
      rises.emplace_back(static_cast<unsigned char>(kind % 8 * 32), static_cast<unsigned char>(kind / 8 * 32), 0, -1, 5,
                         1);
    }
  }
  tellColours(rises, 1, outcome);
  ASSERT_THAT(outcome.details["rises"], SizeIs(20));
  EXPECT_EQ(outcome.details["rises"][0]["times"], 30);
  EXPECT_EQ(outcome.details["rises"][19]["times"], 11);
  EXPECT_THAT(outcome.list.back(), HasSubstr("10 less frequent looks"));
}
