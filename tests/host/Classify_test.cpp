#include "host/classify/Classify.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <nlohmann/json.hpp>

#include "host/CloudOptions.h"
#include "host/Failure.h"
#include "host/las/LasReader.h"
#include "host/las/LasWriter.h"
#include "model/threads/Codigos.h"
#include "planar/CMedidasDeRun.h"
#include "tests/host/HostScenes.h"

using namespace Meseta47::host;
using Meseta47::CDataTriangulacion;
using Meseta47::CDibujo;
using Meseta47::CInfoClasificacion;
using Meseta47::kCancelado;
using Meseta47::kHecho;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

namespace {

constexpr int kPoints = 200;

/// Finds every third point, whatever their order, and triangulates nothing: what is left is the frame.
class StandIn : public CloudSearch {
 public:
  [[nodiscard]] char const* name() const override { return "standin"; }
  [[nodiscard]] char const* purpose() const override { return ""; }
  void addOptions(CLI::App&) override {}
  void settle(ProfilePlace const* profile) override { settled = profile == nullptr ? L"" : profile->prefix; }
  [[nodiscard]] bool keep(ProfilePlace const&) const override { return keeps; }
  void requireSense(CloudUnits const&) override {}
  [[nodiscard]] std::uint64_t temporaryBytes(std::uint64_t points) const override {
    return Meseta47::CMedidasDeRun::BytesDelFichero(points);
  }
  [[nodiscard]] unsigned char highestTarget() const override { return target; }
  [[nodiscard]] nlohmann::ordered_json parameters() const override { return {}; }
  int run(CDibujo<int>& drawing, CDataTriangulacion const&, bool, SearchOutcome& outcome) override {
    for (int i = 0; i < drawing[0].NPuntos(); ++i) {
      if (!finds(drawing[0].Punto(i).intensidad)) continue;
      drawing[0].SetClasificacion(CInfoClasificacion(target, 0.0, L""), i);
      ++outcome.found;
    }
    if (meanwhile) meanwhile();
    return code;
  }

  static bool finds(unsigned intensity) { return intensity % 3 == 0; }

  unsigned char target = 6;
  int code = kHecho;
  bool keeps = true;
  CString settled = L"never";
  std::function<void()> meanwhile;  // what another program does during the search
};

/// A file with records before the points, extra bytes, and records after the points.
std::string cloud(Folder const& folder, unsigned format) {
  LasWriterOptions options;
  options.pointFormat = format;
  options.extraBytes = 5;
  options.vlrs = {{"me", 7, "a record", {1, 2, 3}}};
  options.evlrs = {{"me", 8, "another", Bytes(100, 4)}};
  LasWriter writer(folder.file("in.las"), options);
  for (int i = 0; i < kPoints; ++i) writer.add(somePoint(i), Bytes{1, 2, 3, static_cast<std::uint8_t>(i), 5});
  writer.finish();
  return folder.file("in.las");
}

ClassifyOptions optionsFor(std::string const& input, std::string const& output) {
  ClassifyOptions options;
  options.cloud.inputs = {input};
  options.output = output;
  return options;
}

ClassifyReport run(ClassifyOptions const& options, CloudSearch& search) {
  CommonOptions quiet;
  quiet.quiet = true;
  HostApp app(quiet);
  return classify(options, search, app);
}

/// The bytes of a file with the class of every point that the search finds, and that a test wants, put in by hand.
template <class Wanted>
Bytes withClass(std::string const& file, unsigned char target, Wanted wanted) {
  Bytes bytes = bytesOf(file);
  const LasHeader header = LasReader(file).header();
  for (int i = 0; i < kPoints; ++i) {
    if (!StandIn::finds(somePoint(i).intensity) || !wanted(i)) continue;
    const std::size_t record = header.offsetToPoints + static_cast<std::size_t>(i) * header.recordLength;
    std::uint8_t& byte = bytes[record + (header.pointFormat >= 6 ? 16 : 15)];
    byte = static_cast<std::uint8_t>(header.pointFormat >= 6 ? target : (byte & 0xe0) | target);
  }
  return bytes;
}

bool everyPoint(int) { return true; }

std::string failureOf(ClassifyOptions const& options, CloudSearch& search) {
  try {
    run(options, search);
  } catch (Failure const& failure) {
    return failure.what();
  }
  return {};
}

std::string usageErrorOf(ClassifyOptions const& options, CloudSearch& search) {
  try {
    run(options, search);
  } catch (UsageError const& error) {
    return error.what();
  }
  return {};
}

}  // namespace

TEST(Classify, AnInputThatChangesWhileItIsSearchedIsNotWritten) {
  const Folder folder;
  const std::string in = cloud(folder, 1);
  StandIn search;
  search.meanwhile = [&] {
    std::filesystem::copy(in, folder.file("other.las"));  // as many points, and as many bytes
    std::filesystem::rename(folder.file("other.las"), in);
    std::filesystem::last_write_time(in, std::filesystem::last_write_time(in) + std::chrono::seconds(1));
  };
  const Bytes before = bytesOf(in);
  EXPECT_THAT(failureOf(optionsFor(in, in), search),
              testing::AllOf(HasSubstr("in.las: was changed while it was searched"), HasSubstr("run again")));
  EXPECT_EQ(bytesOf(in), before);
  EXPECT_THAT(folder.names(), ElementsAre("in.las"));
}

class ClassifyFormats : public testing::TestWithParam<unsigned> {};

TEST_P(ClassifyFormats, NothingButTheClassesOfThePointsFoundChanges) {
  const Folder folder;
  const std::string in = cloud(folder, GetParam());
  const Bytes before = bytesOf(in);
  const Bytes expected = withClass(in, 6, everyPoint);
  ASSERT_NE(before, expected);
  for (char const* order : {"hilbert", "file"}) {
    ClassifyOptions options = optionsFor(in, folder.file("out.las"));
    options.cloud.order = order;
    StandIn search;
    run(options, search);
    EXPECT_EQ(bytesOf(options.output), expected) << order;
    EXPECT_EQ(bytesOf(in), before);
  }
}

TEST_P(ClassifyFormats, TheReportCountsTheClassBytesThatDiffer) {
  const Folder folder;
  const std::string in = cloud(folder, GetParam());
  StandIn search;
  const ClassifyReport report = run(optionsFor(in, folder.file("out.las")), search);
  const Bytes before = bytesOf(in), after = bytesOf(folder.file("out.las"));
  ASSERT_EQ(before.size(), after.size());
  std::map<ClassChanges::Step, std::uint64_t> differing;
  const unsigned mask = GetParam() >= 6 ? 0xff : 0x1f;
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (before[i] == after[i]) continue;
    ++differing[{static_cast<std::uint8_t>(before[i] & mask), static_cast<std::uint8_t>(after[i] & mask)}];
  }
  EXPECT_EQ(report.changes.counts(), differing);
  EXPECT_EQ(report.pointsRead, kPoints);
}

INSTANTIATE_TEST_SUITE_P(AllFormats, ClassifyFormats, testing::Range(0U, kLasFormats));

TEST(Classify, PointsOutsideTheBoundsStayAsTheyAre) {
  const Folder folder;
  const std::string in = cloud(folder, 7);
  ClassifyOptions options = optionsFor(in, folder.file("out.las"));
  options.cloud.bounds = "50.995,-1000,99.995,1000";
  StandIn search;
  run(options, search);
  EXPECT_EQ(bytesOf(options.output), withClass(in, 6, [](int i) { return i >= 51 && i <= 100; }));
}

TEST(Classify, AClassAbove31IsRefusedInTheOldFormatsBeforeTheSearch) {
  const Folder folder;
  StandIn search;
  search.target = 32;
  search.code = kCancelado;  // which a search that is reached would answer
  EXPECT_THAT(errorOf([&] { run(optionsFor(cloud(folder, 5), folder.file("out.las")), search); }),
              HasSubstr("in.las: class 32 does not fit point format 5"));
  EXPECT_THAT(folder.names(), ElementsAre("in.las"));
}

TEST(Classify, AClassAbove31IsTakenInTheNewFormats) {
  const Folder folder;
  const std::string in = cloud(folder, 6);
  StandIn search;
  search.target = 200;
  run(optionsFor(in, folder.file("out.las")), search);
  EXPECT_EQ(bytesOf(folder.file("out.las")), withClass(in, 200, everyPoint));
}

TEST(Classify, ADryRunReportsTheSameAndWritesNothing) {
  const Folder folder;
  const std::string in = cloud(folder, 3);
  StandIn search;
  ClassifyOptions dry = optionsFor(in, folder.file("out.las"));
  dry.dryRun = true;
  const ClassifyReport told = run(dry, search);
  EXPECT_THAT(folder.names(), ElementsAre("in.las"));
  EXPECT_EQ(told.changes.counts(), run(optionsFor(in, folder.file("out.las")), search).changes.counts());
}

TEST(Classify, AFileCanBeClassifiedOntoItselfByAnotherOfItsNames) {
  const Folder folder;
  const std::string in = cloud(folder, 1);
  const Bytes expected = withClass(in, 6, everyPoint);
  if (!linked(in, folder.file("link.las"))) GTEST_SKIP() << kNoLinks;
  StandIn search;
  run(optionsFor(in, folder.file("link.las")), search);
  EXPECT_EQ(bytesOf(in), expected);
  EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link.las")));
}

TEST(Classify, ASecondHardLinkKeepsTheOldClasses) {
  const Folder folder;
  const std::string in = cloud(folder, 1);
  const Bytes before = bytesOf(in), expected = withClass(in, 6, everyPoint);
  std::filesystem::create_hard_link(in, folder.file("twin.las"));
  StandIn search;
  run(optionsFor(in, folder.file("twin.las")), search);
  EXPECT_EQ(bytesOf(in), before);
  EXPECT_EQ(bytesOf(folder.file("twin.las")), expected);
}

TEST(Classify, ACancelledSearchLeavesInputAndOutputAsTheyWere) {
  const Folder folder;
  const std::string in = cloud(folder, 1);
  const std::string out = folder.make("out.las", std::string("precious"));
  const Bytes before = bytesOf(in);
  StandIn search;
  search.code = kCancelado;
  EXPECT_THROW(run(optionsFor(in, out), search), Cancelled);
  EXPECT_EQ(bytesOf(in), before);
  EXPECT_EQ(bytesOf(out).size(), 8U);
  EXPECT_THAT(folder.names(), UnorderedElementsAre("in.las", "out.las"));
}

TEST(Classify, AFailedSearchLeavesNothing) {
  const Folder folder;
  StandIn search;
  search.code = Meseta47::kPocosPuntos;
  EXPECT_THAT(failureOf(optionsFor(cloud(folder, 1), folder.file("out.las")), search),
              HasSubstr("fewer than 3 points"));
  EXPECT_THAT(folder.names(), ElementsAre("in.las"));
}

TEST(Classify, TextHasNoClassBytesToChange) {
  const Folder folder;
  StandIn search;
  const std::string text = folder.make("cloud.txt", std::string("0 0 1\n9 0 2\n0 9 1\n"));
  EXPECT_THAT(failureOf(optionsFor(text, folder.file("out.las")), search), HasSubstr("cloud.txt: is text"));
}

TEST(Classify, TheOutputIsNamedAsALasFile) {
  const Folder folder;
  StandIn search;
  const std::string in = cloud(folder, 1);
  EXPECT_THAT(usageErrorOf(optionsFor(in, folder.file("out.ply")), search), HasSubstr("use .las"));
  EXPECT_THAT(usageErrorOf(optionsFor(in, ""), search), HasSubstr("give -o OUT.las or OUT.laz, or --dry-run"));
  run(optionsFor(in, folder.file("OUT.LAS")), search);
  EXPECT_THAT(folder.names(), UnorderedElementsAre("in.las", "OUT.LAS"));
}

TEST(Classify, AProfileIsReadUnderItsOwnPrefix) {
  const Folder folder;
  const std::string in = cloud(folder, 1);
  StandIn search;
  run(optionsFor(in, folder.file("out.las")), search);
  EXPECT_EQ(search.settled, CString(L""));
  ClassifyOptions options = optionsFor(in, folder.file("out.las"));
  options.profile = "pine_2";
  run(options, search);
  EXPECT_EQ(search.settled, CString(L"pine_2."));
}

TEST(Classify, AProfileThatCanNotBeKeptIsSaidAfterTheOutputIsWhole) {
  const Folder folder;
  const std::string in = cloud(folder, 1);
  ClassifyOptions options = optionsFor(in, folder.file("out.las"));
  options.profile = "pine";
  StandIn search;
  search.keeps = false;
  EXPECT_THAT(failureOf(options, search), HasSubstr("out.las was written, but the parameters could not be kept"));
  EXPECT_EQ(bytesOf(options.output), withClass(in, 6, everyPoint));
}

TEST(Classify, ADryRunKeepsNoProfile) {
  const Folder folder;
  ClassifyOptions options = optionsFor(cloud(folder, 1), "");
  options.dryRun = true;
  options.profile = "pine";
  StandIn search;
  search.keeps = false;
  EXPECT_EQ(failureOf(options, search), "");
}

TEST(Classify, AProfileNeedsAPlainName) {
  const Folder folder;
  ClassifyOptions options = optionsFor(cloud(folder, 1), folder.file("out.las"));
  options.profile = "a=b";
  StandIn search;
  EXPECT_THAT(usageErrorOf(options, search), HasSubstr("--profile a=b"));
}
