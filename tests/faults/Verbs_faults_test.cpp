// Every verb of the program with a failure at the first, second, third ... operation of each kind, until none fires:
// one line that names a file and the cause, exit 1, what stood there before untouched, and nothing left behind.
#include <algorithm>
#include <cstdio>
#include <gmock/gmock.h>
#include <map>
#include <string>
#include <vector>

#include "faults/Refusals.h"
#include "host/Program.h"
#include "platform/Environment.h"
#include "support/MatchesPattern.h"
#include "support/ScratchFolder.h"
#include "support/WorkingFolder.h"

namespace Meseta47::host {
namespace {

using testing::AnyOf;
using testing::HasSubstr;

/// A run of the program: what it takes, and the files that it makes or replaces.
struct Verb {
  char const* name;
  std::vector<std::string> arguments;
  std::vector<std::string> outputs;

  friend void PrintTo(Verb const& verb, std::ostream* out) { *out << verb.name; }
};

struct Outcome {
  int code;
  std::string complaint;
};

/// Without what a build says of reference systems that it has no library for.
std::string WithoutWarnings(std::string const& told) {
  std::string kept;
  for (std::size_t at = 0, end = 0; at < told.size(); at = end) {
    end = std::min(told.find('\n', at), told.size() - 1) + 1;
    const std::string line = told.substr(at, end - at);
    if (line.find("its reference system is left out") == std::string::npos) kept += line;
  }
  return kept;
}

Outcome Urdimbre(std::vector<std::string> const& arguments) {
  std::vector<char const*> argv{"urdimbre", "--quiet", "--threads", "2", "--temp-dir", "tmp"};
  for (std::string const& argument : arguments) argv.push_back(argument.c_str());
  testing::internal::CaptureStderr();
  const int code = runProgram(static_cast<int>(argv.size()), argv.data());
  return {code, WithoutWarnings(testing::internal::GetCapturedStderr())};
}

using Files = std::map<std::string, std::string>;

Files FilesIn(std::filesystem::path const& folder) {
  Files files;
  for (auto const& entry : std::filesystem::recursive_directory_iterator(folder)) {
    const std::string name = entry.path().generic_string();
    if (entry.is_regular_file()) files[name] = BytesOf(CString::DesdeUtf8(name));
  }
  return files;
}

class Verbs : public testing::TestWithParam<Verb> {
 protected:
  Verbs() {
    std::filesystem::create_directory("tmp");
    std::filesystem::create_directory("home");
    for (auto const& preparation :
         std::vector<std::vector<std::string>>{{"generate", "in.las", "--points", "400", "--seed", "3"},
                                               {"generate", "more.las", "--points", "100", "--seed", "4"},
                                               {"tin", "in.las", "-o", "in.ply"},
                                               {"tin", "in.las", "-o", "in.urd"},
                                               {"tetra", "in.las", "-o", "in.vtu"}}) {
      EXPECT_EQ(Urdimbre(preparation).code, 0);
    }
    for (std::string const& output : GetParam().outputs) PutBytes(CString::DesdeUtf8(output), kEarlier);
    before = FilesIn(".");
    const Outcome clean = Urdimbre(GetParam().arguments);
    notHere = clean.code != 0 && clean.complaint.find("built without it") != std::string::npos;
    if (notHere) return;
    EXPECT_EQ(clean.code, 0) << clean.complaint;
    after = FilesIn(".");
    for (std::string const& output : GetParam().outputs) EXPECT_NE(after.at("./" + output), kEarlier);
  }

  void SetUp() override {
    if (notHere) GTEST_SKIP() << "this build has no library for it";
  }

  /// A run with one thing amiss, and a clean one behind it when it failed. Returns whether it met what was amiss.
  template <class Spoil, class Met>
  bool RunAmiss(EOperacion operation, Spoil spoil, Met met) {
    Restore();
    Outcome outcome{};
    bool fired = false;
    {
      FaultGuard guard;
      spoil(guard);
      outcome = Urdimbre(GetParam().arguments);
      fired = met(guard);
    }
    const bool mayLitter = operation == EOperacion::Borra;  // what cannot be deleted stays
    if (outcome.code == 0) {
      EXPECT_EQ(outcome.complaint, "");
      EXPECT_TRUE(mayLitter || FilesIn(".") == after) << "a failure that went unseen: " << Names();
      return fired;
    }
    EXPECT_TRUE(fired);
    EXPECT_EQ(outcome.code, 1);
    EXPECT_THAT(outcome.complaint, IsOneLineThatNamesFileAndCause());
    EXPECT_TRUE(mayLitter || IsAsBefore(operation)) << outcome.complaint << Names();
    ++failures;
    Restore();
    EXPECT_EQ(Urdimbre(GetParam().arguments).code, 0) << "the system is well again";
    EXPECT_TRUE(FilesIn(".") == after);
    return fired;
  }

  /// `RunAmiss` for the loops of Refusals.h.
  auto Amiss() {
    return [this](EOperacion operation, auto spoil, auto met) { return RunAmiss(operation, spoil, met); };
  }

  void Report(char const* how, int injected) {
    RecordProperty(how, injected);
    std::printf("%s: %s: %d faults injected, %d runs failed by them\n", GetParam().name, how, injected, failures);
  }

  ScratchFolder scratch;
  WorkingFolder here{scratch.Path()};
  Environment settings{kSettingsVariable, scratch.Path("home").Utf8()};
  Files before, after;
  int failures = 0;
  bool notHere = false;

 private:
  static constexpr char kEarlier[] = "of an earlier day";

  void Restore() const {
    const Files now = FilesIn(".");
    for (auto const& [name, bytes] : now) {
      if (!before.contains(name)) std::filesystem::remove(name);
    }
    for (auto const& [name, bytes] : before) {
      const auto found = now.find(name);
      if (found == now.end() || found->second != bytes) PutBytes(CString::DesdeUtf8(name), bytes);
    }
  }

  /// Of several outputs the first have their names when the next is refused its own; what more there is to fail has
  /// been done by then.
  bool IsAsBefore(EOperacion operation) const {
    Files now = FilesIn(".");
    if (operation == EOperacion::Renombra && GetParam().outputs.size() > 1) {
      for (std::string const& output : GetParam().outputs) {
        std::string& bytes = now["./" + output];
        if (bytes == after.at("./" + output)) bytes = kEarlier;
      }
    }
    return now == before;
  }

  static std::string Names() {
    std::string names = "there are";
    for (auto const& [name, bytes] : FilesIn(".")) names += " " + name + " (" + std::to_string(bytes.size()) + ")";
    return names;
  }

  static testing::Matcher<std::string> IsOneLineThatNamesFileAndCause() {
    return AllOf(MatchesPattern("urdimbre: [^\n]+\n"),
                 AnyOf(HasSubstr(" in."), HasSubstr(" out."), HasSubstr(" out_temp."), HasSubstr(" more."),
                       HasSubstr("tmp"), HasSubstr("--threads")),
                 AnyOf(HasSubstr("No space left"), HasSubstr("Permission denied"), HasSubstr("Input/output error"),
                       HasSubstr("memory, threads"), HasSubstr("memory or threads"), HasSubstr("threads or locks"),
                       HasSubstr("the disk refused")));
  }
};

TEST_P(Verbs, WhateverIsRefusedFromItsNthTimeOnEndsWithALineAndHarmsNothing) {
  const auto refuse = [](FaultGuard& guard, EOperacion operation, int nth) { guard.Refuse(operation, nth); };
  Report("refused for good", test::MeetEachRefusal("refused for good", refuse, Amiss()));
  EXPECT_GT(failures, 2);
}

TEST_P(Verbs, OneRefusalIsNotForgottenWhenWhatFollowsGoesWell) {
  const auto refuse = [](FaultGuard& guard, EOperacion operation, int nth) { guard.RefuseOnce(operation, nth); };
  Report("refused once", test::MeetEachRefusal("refused once", refuse, Amiss()));
  EXPECT_GT(failures, 2);
}

TEST_P(Verbs, ADiskThatFillsAnywhereIsToldOrHadRoomEnough) { Report("no space", test::FillTheDisk(failures, Amiss())); }

TEST_P(Verbs, ShortTransfersChangeNothing) {
  Report("short transfers", test::ShortenTransfers(Amiss()));
  EXPECT_EQ(failures, 0);
}

Verb Tin(char const* name, std::string const& output) { return {name, {"tin", "in.las", "-o", output}, {output}}; }

Verb Contour(char const* name, std::string const& output, std::vector<std::string> sides = {}) {
  sides.push_back(output);
  return {name, {"contour", "in.las", "--interval", "1", "-o", output}, sides};
}

INSTANTIATE_TEST_SUITE_P(
    All, Verbs,
    testing::Values(
        Tin("TinPly", "out.ply"), Tin("TinObj", "out.obj"), Tin("Tin2dm", "out.2dm"), Tin("TinLandXml", "out.xml"),
        Tin("TinNative", "out.urd"),
        Verb{"TinUpdate", {"tin", "in.las", "--update", "more.las", "-o", "out.ply"}, {"out.ply"}},
        Verb{"TinUpdateOfAModel", {"tin", "in.urd", "--update", "more.las", "-o", "out.ply"}, {"out.ply"}},
        Verb{"TinOutline", {"tin", "in.las", "-o", "out.ply", "--outline", "out.geojson"}, {"out.ply", "out.geojson"}},
        Contour("Contour", "out.geojson"), Contour("ContourGpkg", "out.gpkg"), Contour("ContourFgb", "out.fgb"),
        Contour("ContourDxf", "out.dxf"),
        Contour("ContourShp", "out.shp", {"out.shx", "out.dbf", "out.cpg", "out.prj"}),
        Verb{"ClassifyHigh", {"classify", "high", "in.las", "-o", "out.las"}, {"out.las"}},
        Verb{"ClassifyIsolated", {"classify", "isolated", "in.las", "-o", "out.las"}, {"out.las"}},
        Verb{"ClassifyAerial", {"classify", "aerial", "in.las", "-o", "out.las"}, {"out.las"}},
        Verb{"ClassifyPeaks", {"classify", "peaks", "in.las", "-o", "out.las"}, {"out.las"}},
        Verb{"ClassifyIntensity",
             {"classify", "intensity", "in.las", "-o", "out.las", "--when", "0:65535:2:6"},
             {"out.las"}},
        Verb{"ClassifyColour",
             {"classify", "colour", "in.las", "-o", "out.las", "--when", "128,128,128:255:2:6"},
             {"out.las"}},
        Verb{"ListIntensity", {"classify", "intensity", "in.las", "--list", "2"}, {}},
        Verb{"ClassifyJumps",
             {"classify", "jumps", "in.las", "-o", "out.las", "--difference", "10", "--to", "9"},
             {"out.las"}},
        Verb{"ClassifyAffinity", {"classify", "affinity", "in.las", "-o", "out.las", "--side", "4"}, {"out.las"}},
        Verb{"RenderCloud", {"render", "in.las", "-o", "out.png", "--size", "60"}, {"out.png"}},
        Verb{"RenderModel", {"render", "in.ply", "-o", "out.png", "--size", "60"}, {"out.png"}},
        Verb{"CheckPly", {"check", "in.ply"}, {}}, Verb{"CheckNative", {"check", "in.urd"}, {}},
        Verb{"CheckVtu", {"check", "in.vtu"}, {}}, Verb{"TetraVtu", {"tetra", "in.las", "-o", "out.vtu"}, {"out.vtu"}},
        Verb{"TetraMedit", {"tetra", "in.las", "-o", "out.mesh"}, {"out.mesh"}},
        Verb{"TetraGmsh", {"tetra", "in.las", "-o", "out.msh"}, {"out.msh"}},
        Verb{"TetraHull", {"tetra", "in.las", "-o", "out.ply"}, {"out.ply"}}, Verb{"Info", {"info", "in.las"}, {}},
        Verb{"Generate", {"generate", "out.las", "--points", "100"}, {"out.las"}}),
    [](testing::TestParamInfo<Verb> const& verb) { return verb.param.name; });

}  // namespace
}  // namespace Meseta47::host
