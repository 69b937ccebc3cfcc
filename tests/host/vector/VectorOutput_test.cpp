#include "host/vector/VectorOutput.h"

#include "host/Failure.h"
#include "platform/IVigilante.h"
#include "tests/host/vector/VectorScenes.h"

using namespace Meseta47::host;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

const ReferenceSystem kUtm = ReferenceSystem::fromUser("EPSG:25830");

class EveryFormat : public testing::TestWithParam<char const*> {
 protected:
  [[nodiscard]] std::string name() const { return folder.file(std::string("a.") + GetParam()); }

  Folder folder;
};

/// A disk that lets no file take its name, or takes so many bytes and no more.
class BadDisk : public IVigilante {
 public:
  BadDisk(bool renames, std::size_t room) : renames_(renames), room_(room), before_(PonVigilante(this)) {}
  ~BadDisk() override { PonVigilante(before_); }
  bool Permite(EOperacion operation, CString const&) override { return renames_ || operation != EOperacion::Renombra; }
  std::size_t Concede(EOperacion operation, CString const&, std::size_t bytes) override {
    if (operation != EOperacion::Escribe) return bytes;
    const std::size_t granted = std::min(room_, bytes);
    room_ -= granted;
    return granted;
  }

 private:
  bool renames_;
  std::size_t room_;
  IVigilante* before_;
};

void writeOne(std::string const& name, ReferenceSystem const& system = kUtm) {
  VectorOutput output(name, system, someLines());
  const std::array<double, 1> height{12.5};
  output.addLine(square(400000.25, 4000000.5, 10, 12.5), height, "contour");
  output.commit();
}

}  // namespace

TEST_P(EveryFormat, GivesPlacesHeightsAndSystemBack) {
  writeOne(name());
  const VectorContent content = readVectorFile(name(), {});
  ASSERT_EQ(content.entities.size(), 1U);
  EXPECT_EQ(content.entities[0].places, square(400000.25, 4000000.5, 10, 12.5));
  const bool holdsSystem = GetParam() != std::string("dxf");
  EXPECT_EQ(content.system.epsg(), holdsSystem ? 25830 : 0);
}

TEST_P(EveryFormat, HasNoSystemWhenNoneIsKnown) {
  writeOne(name(), ReferenceSystem());
  EXPECT_FALSE(readVectorFile(name(), {}).system.isKnown());
}

TEST_P(EveryFormat, LeavesNothingWithoutACommit) {
  const std::string kept = folder.make(std::string("a.") + GetParam(), std::string("precious"));
  {
    VectorOutput output(name(), kUtm, someLines());
    const std::array<double, 1> height{1};
    output.addLine(square(0, 0, 10, 1), height, "contour");
    output.finish();
  }
  EXPECT_THAT(folder.names(), ElementsAre(std::string("a.") + GetParam()));
  EXPECT_EQ(bytesOf(kept), Bytes({'p', 'r', 'e', 'c', 'i', 'o', 'u', 's'}));
}

TEST_P(EveryFormat, AFullDiskLeavesWhatWasThere) {
  (void)folder.make(std::string("a.") + GetParam(), std::string("precious"));
  const BadDisk disk(true, 100);
  EXPECT_THAT(errorOf([&] { writeOne(name()); }), HasSubstr(name() + ": cannot be written: No space left on device"))
      << "whichever of its files was refused";
  EXPECT_THAT(folder.names(), ElementsAre(std::string("a.") + GetParam()));
  EXPECT_EQ(bytesOf(name()).size(), 8U);
}

TEST_P(EveryFormat, ANameThatCannotBeTakenLeavesWhatWasThere) {
  (void)folder.make(std::string("a.") + GetParam(), std::string("precious"));
  const BadDisk disk(false, 10000000);
  EXPECT_THAT(errorOf([&] { writeOne(name()); }), HasSubstr(name() + ": cannot take its name"));
  EXPECT_THAT(folder.names(), ElementsAre(std::string("a.") + GetParam()));
  EXPECT_EQ(bytesOf(name()).size(), 8U);
}

TEST_P(EveryFormat, EqualLinesGiveEqualBytes) {
  writeOne(name());
  const Bytes first = bytesOf(name());
  writeOne(name());
  EXPECT_EQ(bytesOf(name()), first);
}

TEST_P(EveryFormat, WhatIsAddedGoesToTheDiskAsItComes) {
  const auto onDisk = [&] {
    std::uintmax_t bytes = 0;
    for (std::string const& file : folder.names()) bytes += std::filesystem::file_size(folder.file(file));
    return bytes;
  };
  VectorOutput output(name(), kUtm, someLines());
  const std::array<double, 1> height{1};
  Ring places;
  for (int i = 0; i < 1000; ++i) places.push_back({400000.0 + i, 4000000.0 + i % 7, 1});
  for (int i = 0; i < 400; ++i) output.addLine(places, height, "contour");
  const std::uintmax_t before = onDisk();
  output.commit();
  EXPECT_GT(onDisk(), 8'000'000U);
  EXPECT_GT(before, onDisk() / 2);
}

TEST_P(EveryFormat, ALinkKeepsPointingToTheFileThatIsReplaced) {
  const Folder elsewhere;
  const std::string target = elsewhere.make(std::string("real.") + GetParam(), std::string("old"));
  std::filesystem::create_symlink(target, name());
  writeOne(name());
  EXPECT_TRUE(std::filesystem::is_symlink(name()));
  EXPECT_THAT(folder.names(), ElementsAre(std::filesystem::path(name()).filename())) << "all files stand beside theirs";
  EXPECT_EQ(readVectorFile(target, {}).entities.size(), 1U);
}

TEST_P(EveryFormat, OfTwoAtOnceTheLastOneCommittedStaysWhole) {
  VectorOutput one(name(), kUtm, someLines()), two(name(), kUtm, someLines());
  const std::array<double, 1> values{1};
  for (int i = 0; i < 3; ++i) one.addLine(std::array<Place, 2>{{{0, 0, 1}, {10.0 + i, 0, 1}}}, values, "contour");
  two.addLine(std::array<Place, 2>{{{0, 0, 2}, {10, 0, 2}}}, values, "contour");
  one.finish();
  two.finish();
  two.commit();
  EXPECT_EQ(readVectorFile(name(), {}).entities.size(), 1U);
  one.commit();
  EXPECT_EQ(readVectorFile(name(), {}).entities.size(), 3U);
}

TEST_P(EveryFormat, PolygonsKeepTheirHoles) {
  {
    VectorOutput output(name(), kUtm, {"outline", true, 2, {{"AREA", false}, {"HOLES", true}}});
    const std::array<Ring, 2> rings{square(0, 0, 100, 1), square(10, 10, 20, 2)};
    const std::array<double, 2> values{9600, 1};
    output.addPolygon(rings, values, "outline");
    output.commit();
  }
  const VectorContent content = readVectorFile(name(), {});
  ASSERT_EQ(content.entities.size(), 2U);
  EXPECT_EQ(content.places, 10U);
  EXPECT_EQ(content.extent.max[2], 2);
  if (GetParam() == std::string("dxf")) {
    EXPECT_EQ(content.entities[0].code, "outline");
    EXPECT_EQ(content.entities[1].code, "outline_hole");
  }
}

INSTANTIATE_TEST_SUITE_P(Vector, EveryFormat, testing::ValuesIn(kVectorExtensions),
                         [](auto const& format) { return std::string(format.param); });

TEST(VectorOutput, AShapefileIsFiveFilesAndAnOldOnesIndexGoes) {
  const Folder folder;
  (void)folder.make("a.qix", std::string("an index of other lines"));
  (void)folder.make("a.prj", std::string("another system"));
  (void)folder.make("ab.prj", std::string("of another file"));
  writeOne(folder.file("a.shp"), ReferenceSystem());
  EXPECT_THAT(folder.names(), UnorderedElementsAre("a.shp", "a.shx", "a.dbf", "a.cpg", "ab.prj"));
  writeOne(folder.file("a.shp"));
  EXPECT_THAT(folder.names(), UnorderedElementsAre("a.shp", "a.shx", "a.dbf", "a.cpg", "a.prj", "ab.prj"));
}

TEST(VectorOutput, AJournalOfAnOldDatabaseIsNotPlayedIntoTheNewOne) {
  const Folder folder;
  (void)folder.make("a.gpkg-journal", std::string("old"));
  (void)folder.make("a.gpkg-wal", std::string("old"));
  writeOne(folder.file("a.gpkg"));
  EXPECT_THAT(folder.names(), ElementsAre("a.gpkg"));
}

TEST(VectorOutput, AShapefileWhoseLinkLeadsToAnotherNameIsRefused) {
  const Folder folder;
  std::filesystem::create_symlink("store", folder.file("a.shp"));
  EXPECT_THAT(errorOf([&] { VectorOutput::requireFormat(folder.file("a.shp")); }),
              AllOf(HasSubstr("a.shp: leads to "), HasSubstr("/store")));
  std::filesystem::create_symlink("store", folder.file("a.gpkg"));
  VectorOutput::requireFormat(folder.file("a.gpkg"));
}

TEST(VectorOutput, ADatabaseThatHoldsOtherLayersIsNotReplaced) {
  const Folder folder;
  const std::string name = folder.file("a.gpkg");
  VectorOutput::requireNoOtherLayers(name, "contour");
  writeOne(name);
  const std::string own = someLines().name;
  VectorOutput::requireNoOtherLayers(name, own);
  EXPECT_THAT(errorOf([&] { VectorOutput::requireNoOtherLayers(name, "another"); }),
              AllOf(HasSubstr("a.gpkg: holds the layer \"" + own + "\""), HasSubstr("--overwrite")));
  VectorOutput::requireNoOtherLayers(folder.make("b.gpkg", std::string("no database")), own);
  writeOne(folder.file("c.geojson"));
  VectorOutput::requireNoOtherLayers(folder.file("c.geojson"), "another");
}

TEST(VectorOutput, AnExtensionThatIsNoneIsAUsageErrorThatNamesThem) {
  for (char const* name : {"a.kml", "a", "a.gpkg.part"}) {
    try {
      VectorOutput::requireFormat(name);
      FAIL() << name;
    } catch (UsageError const& error) {
      EXPECT_THAT(error.what(), AllOf(HasSubstr(name), HasSubstr(".gpkg, .geojson, .fgb, .shp or .dxf")));
    }
  }
}

TEST(VectorOutput, AFolderThatIsMissingIsSaidAtOnce) {
  const Folder folder;
  EXPECT_THAT(errorOf([&] { const VectorOutput output(folder.file("no/a.shp"), kUtm, someLines()); }),
              AllOf(HasSubstr("no/a.shp"), HasSubstr("No such file or directory")));
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST(VectorOutput, GeoJsonRefusesASystemThatItCannotName) {
  const Folder folder;
  const ReferenceSystem own = ReferenceSystem::fromUser("+proj=tmerc +lon_0=1.234 +x_0=77 +ellps=intl +units=m");
  EXPECT_THAT(errorOf([&] { const VectorOutput output(folder.file("a.geojson"), own, someLines()); }),
              AllOf(HasSubstr("a.geojson"), HasSubstr("EPSG code"), HasSubstr("--a-srs")));
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST(VectorOutput, GeoJsonNamesThePlanOfASystemWithHeights) {
  const Folder folder;
  writeOne(folder.file("a.geojson"), ReferenceSystem::fromUser("EPSG:25830+5782"));
  EXPECT_EQ(readVectorFile(folder.file("a.geojson"), {}).system.epsg(), 25830);
}

/// The number behind a variable of a DXF's header.
std::string dxfVariable(std::string const& name, std::string const& variable) {
  std::ifstream file(name);
  std::string line;
  while (std::getline(file, line) && !line.starts_with(variable)) {
  }
  std::getline(file, line);
  std::getline(file, line);
  const std::size_t first = line.find_first_not_of(' ');
  return first == std::string::npos ? "" : line.substr(first, line.find_last_not_of(" \r") + 1 - first);
}

TEST(Dxf, SaysTheUnitOfItsSystem) {
  struct Case {
    char const* system;
    char const *unit, *metric;
  };
  const Folder folder;
  for (Case const& c : {Case{"EPSG:25830", "6", "1"}, Case{"EPSG:2994", "2", "0"}, Case{"EPSG:2264", "21", "0"},
                        Case{"EPSG:4326", "0", "0"}, Case{"", "0", "0"}}) {
    const std::string name = folder.file("a.dxf");
    writeOne(name, *c.system == 0 ? ReferenceSystem() : ReferenceSystem::fromUser(c.system));
    EXPECT_EQ(dxfVariable(name, "$INSUNITS"), c.unit) << c.system;
    EXPECT_EQ(dxfVariable(name, "$MEASUREMENT"), c.metric) << c.system;
    EXPECT_EQ(readVectorFile(name, {}).places, 5U) << "and can be read";
  }
}

TEST(Extensions, OfShapefilesStayInSmallLettersAsThoseOfTheirCompanions) {
  EXPECT_THROW(VectorOutput::requireFormat("A.SHP"), UsageError);
}

TEST(Extensions, MayBeWrittenInCapitals) {
  for (char const* const name : {"A.GPKG", "A.GEOJSON", "A.FGB", "A.DXF"}) {
    const Folder folder;
    writeOne(folder.file(name));
    EXPECT_EQ(readVectorFile(folder.file(name), {}).places, 5U) << name;
  }
}
