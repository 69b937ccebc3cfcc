#include "host/vector/ReferenceSystem.h"

#include "host/CommonSystem.h"
#include "host/Failure.h"
#include "tests/host/HostScenes.h"

using namespace Meseta47::host;
using testing::AllOf;
using testing::HasSubstr;

namespace {

/// Keys as they stand in a file: a head of four numbers, then four for each.
GeoKeys keysOf(std::vector<std::pair<std::uint16_t, std::uint16_t>> const& values) {
  GeoKeys keys;
  keys.directory = {1, 1, 0, static_cast<std::uint16_t>(values.size())};
  for (auto const& [key, value] : values) keys.directory.insert(keys.directory.end(), {key, 0, 1, value});
  return keys;
}

std::string labelOf(std::vector<std::pair<std::uint16_t, std::uint16_t>> const& values) {
  return ReferenceSystem::fromGeoKeys(keysOf(values), "tile.las").label();
}

ReferenceSystem epsg(std::string const& codes) { return ReferenceSystem::fromUser("EPSG:" + codes); }

/// The plan of a state in feet, told parameter by parameter under a name of its own, as programs write that do not know
/// its code.
GeoKeys ownKeys() {
  constexpr std::uint16_t kOwn = 32767, kDoubles = 34736, kText = 34737;
  GeoKeys keys = keysOf(
      {{1024, 1}, {2048, kOwn}, {2050, 6152}, {2054, 9102}, {3072, kOwn}, {3074, kOwn}, {3075, 8}, {3076, 9002}});
  keys.doubles = {43, 45.5, 41.75, -120.5, 1312335.958005249, 0};
  for (std::uint16_t i = 0; i < 6; ++i) {
    constexpr std::array<std::uint16_t, 6> kParameters{3078, 3079, 3085, 3084, 3086, 3087};
    keys.directory.insert(keys.directory.end(), {kParameters[i], kDoubles, 1, i});
  }
  keys.ascii = "Oregon_Lambert|";
  const std::array<std::uint16_t, 4> citation{1026, kText, 15, 0};
  keys.directory.insert(keys.directory.begin() + 8, citation.begin(), citation.end());
  keys.directory[3] = static_cast<std::uint16_t>(keys.directory.size() / 4 - 1);
  return keys;
}

}  // namespace

TEST(ReferenceSystem, NobodyToldIsUnknownAndInMetres) {
  const ReferenceSystem system;
  EXPECT_FALSE(system.isKnown());
  EXPECT_EQ(system.label(), "unknown");
  EXPECT_EQ(system.epsg(), 0);
  EXPECT_EQ(system.unit().metres, 1);
}

TEST(ReferenceSystem, IsReadFromTheCodeOfAProjectedSystem) {
  EXPECT_EQ(labelOf({{1024, 1}, {3072, 25830}}), "ETRS89 / UTM zone 30N (EPSG:25830)");
}

TEST(ReferenceSystem, IsReadFromACodeWithoutTheKeyOfItsKind) {
  EXPECT_EQ(labelOf({{3072, 2949}}), "NAD83(CSRS) / MTM zone 7 (EPSG:2949)");
  EXPECT_EQ(labelOf({{2048, 4258}}), "ETRS89 (EPSG:4258)");
}

TEST(ReferenceSystem, KeysMayEndInBlanks) {
  GeoKeys keys = keysOf({{1024, 1}, {3072, 25830}});
  keys.directory.insert(keys.directory.end(), 4, 0);
  ++keys.directory[3];
  EXPECT_EQ(ReferenceSystem::fromGeoKeys(keys, "tile.las").epsg(), 25830);
}

TEST(ReferenceSystem, HeightsOfWhichTheUnitAloneIsToldAreNoSystemOfHeights) {
  EXPECT_EQ(labelOf({{1024, 1}, {3072, 26917}, {3076, 9001}, {4099, 9001}}), "NAD83 / UTM zone 17N (EPSG:26917)");
}

TEST(ReferenceSystem, AVerticalCodeMakesACompoundSystem) {
  const ReferenceSystem system =
      ReferenceSystem::fromGeoKeys(keysOf({{1024, 1}, {3072, 25830}, {4096, 5782}}), "tile.las");
  EXPECT_TRUE(system.hasHeights());
  EXPECT_THAT(system.name(), AllOf(HasSubstr("UTM zone 30N"), HasSubstr("Alicante")));
  EXPECT_EQ(system.epsg(), 25830);
  EXPECT_EQ(system.inPlan().label(), "ETRS89 / UTM zone 30N (EPSG:25830)");
}

TEST(ReferenceSystem, OldCodesOfHeightsAndTheirUnitsAreUnderstood) {
  EXPECT_THAT(labelOf({{1024, 1}, {3072, 2903}, {4096, 5103}, {4099, 9003}}), HasSubstr("NAVD88 height (ftUS)"));
  EXPECT_THAT(labelOf({{1024, 1}, {3072, 26917}, {4096, 5103}}), HasSubstr("NAVD88 height"));
}

TEST(ReferenceSystem, KeysWithoutASystemLeaveItUnknown) {
  EXPECT_FALSE(ReferenceSystem::fromGeoKeys(keysOf({{1024, 1}, {1025, 1}}), "tile.las").isKnown());
  EXPECT_FALSE(ReferenceSystem::fromGeoKeys(GeoKeys(), "tile.las").isKnown());
}

TEST(ReferenceSystem, ACodeThatNobodyKnowsIsRefusedWithTheFileAndTheWayOut) {
  EXPECT_THAT(errorOf([] {
                (void)labelOf({{1024, 1}, {3072, 7}});
              }),
              AllOf(HasSubstr("tile.las: "), HasSubstr("--a-srs")));
  EXPECT_THAT(errorOf([] { (void)ReferenceSystem::fromWkt("PROJCS[\"cut", "tile.las"); }),
              AllOf(HasSubstr("tile.las: "), HasSubstr("--a-srs")));
}

TEST(ReferenceSystem, WhatAPersonWritesMayBeACodeOrTwoOrAText) {
  EXPECT_EQ(epsg("25830").name(), "ETRS89 / UTM zone 30N");
  EXPECT_TRUE(epsg("25830+5782").hasHeights());
  EXPECT_EQ(ReferenceSystem::fromUser("+proj=utm +zone=30 +ellps=GRS80 +units=m").unit().metres, 1);
  EXPECT_THROW((void)ReferenceSystem::fromUser("EPSG:1"), UsageError);
  EXPECT_THROW((void)ReferenceSystem::fromUser(""), UsageError);
  EXPECT_THROW((void)ReferenceSystem::fromUser("http://example.com/system"), UsageError);
}

TEST(ReferenceSystem, WhatHasNoPlanOrMoreThanACodeIsRefused) {
  const auto refusal = [](char const* text) -> std::string {
    try {
      return ReferenceSystem::fromUser(text).label();
    } catch (UsageError const& error) {
      return error.what();
    }
  };
  EXPECT_THAT(refusal("EPSG:5782"), HasSubstr("heights alone"));
  EXPECT_THAT(refusal("EPSG:4978"), HasSubstr("centre of the Earth"));
  EXPECT_THAT(refusal("EPSG:25830,EPSG:5782"), HasSubstr("names no reference system"));
  EXPECT_THAT(refusal("epsg:25830x"), HasSubstr("names no reference system"));
  EXPECT_EQ(ReferenceSystem::fromUser("epsg:25830+5782").epsg(), 25830);
}

TEST(ReferenceSystem, TellsItsUnit) {
  EXPECT_EQ(epsg("25830").unit().metres, 1);
  EXPECT_EQ(epsg("2994").unit().metres, 0.3048);
  EXPECT_NEAR(epsg("2903").unit().metres, 1200.0 / 3937, 1e-12);
  EXPECT_EQ(epsg("4258").unit().metres, 0);
  EXPECT_EQ(epsg("4258").unit().name, "degree");
}

TEST(ReferenceSystem, HeightsHaveTheirOwnUnitOrThatOfTheMap) {
  EXPECT_EQ(epsg("25830").heightUnit()->metres, 1);
  EXPECT_EQ(epsg("2994").heightUnit()->metres, 0.3048);
  EXPECT_EQ(epsg("2903+5703").heightUnit()->metres, 1) << "metres over feet";
  EXPECT_NEAR(epsg("2903+6360").heightUnit()->metres, 1200.0 / 3937, 1e-12);
  EXPECT_EQ(epsg("4979").heightUnit()->metres, 1) << "angles in plan, metres up";
  EXPECT_FALSE(epsg("4258").heightUnit());
  EXPECT_FALSE(ReferenceSystem().heightUnit());
  EXPECT_TRUE(epsg("4258").isGeographic());
  EXPECT_FALSE(epsg("25830").isGeographic());
}

TEST(ReferenceSystem, IsRecognisedUnderAnotherName) {
  const ReferenceSystem own = ReferenceSystem::fromGeoKeys(ownKeys(), "tile.las");
  EXPECT_EQ(own.name(), "Oregon_Lambert");
  EXPECT_EQ(own.epsg(), 2994);
  EXPECT_TRUE(ReferenceSystem::common(own, epsg("2994")).has_value());
}

TEST(ReferenceSystem, TheCommonOneOfTwoIsThatWhichSaysMore) {
  const ReferenceSystem unknown, plan = epsg("25830"), both = epsg("25830+5782"), others = epsg("25830+5621");
  EXPECT_EQ(ReferenceSystem::common(unknown, plan)->wkt(), plan.wkt());
  EXPECT_EQ(ReferenceSystem::common(plan, unknown)->wkt(), plan.wkt());
  EXPECT_EQ(ReferenceSystem::common(plan, both)->wkt(), both.wkt());
  EXPECT_EQ(ReferenceSystem::common(both, plan)->wkt(), both.wkt());
  EXPECT_FALSE(ReferenceSystem::common(both, others).has_value());
  EXPECT_FALSE(ReferenceSystem::common(plan, epsg("25829")).has_value());
  EXPECT_FALSE(ReferenceSystem::common(epsg("2994"), epsg("2992")).has_value());
}

TEST(CommonSystem, FilesOfDifferentSystemsAreRefusedWithBothNames) {
  CommonSystem common{ReferenceSystem()};
  common.meet(ReferenceSystem(), "a.txt");
  common.meet(epsg("25830"), "b.las");
  common.meet(epsg("25830"), "c.las");
  EXPECT_THAT(errorOf([&] { common.meet(epsg("25829"), "d.gpkg"); }),
              AllOf(HasSubstr("d.gpkg: "), HasSubstr("EPSG:25829"), HasSubstr("b.las"), HasSubstr("EPSG:25830")));
}

TEST(CommonSystem, AGivenOneStandsForWhatFilesSay) {
  CommonSystem common(epsg("25830"));
  common.meet(epsg("4326"), "a.geojson");
  EXPECT_EQ(common.system().epsg(), 25830);
}
