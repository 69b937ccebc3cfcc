#include "host/OutputCheck.h"

#include "tests/host/HostScenes.h"

using namespace Meseta47::host;
using testing::AllOf;
using testing::HasSubstr;

namespace {

namespace fs = std::filesystem;

std::string complaintOf(std::vector<std::string> const& outputs, std::vector<std::string> const& inputs) {
  return errorOf([&] { requireOutputs(outputs, inputs); });
}

}  // namespace

TEST(OutputCheck, NewFilesAndOthersThanTheInputsAreAdmitted) {
  const Folder folder;
  const std::string in = folder.make("in.gpkg", std::string("x")), old = folder.make("old.gpkg", std::string("x"));
  requireOutputs({folder.file("new.gpkg"), old, ""}, {in});
}

TEST(OutputCheck, AnInputUnderAnyOfItsNamesIsRefused) {
  const Folder folder;
  const std::string in = folder.make("in.gpkg", std::string("x"));
  fs::create_directory(folder.file("sub"));
  fs::create_hard_link(in, folder.file("hard.gpkg"));
  std::vector<std::string> names{"in.gpkg", "./in.gpkg", "sub/../in.gpkg", "hard.gpkg"};
  if (linked("in.gpkg", folder.file("link.gpkg")) && linked("link.gpkg", folder.file("far.gpkg"))) {
    names.insert(names.end(), {"link.gpkg", "far.gpkg"});
  }
  for (std::string const& name : names) {
    const std::string output = folder.path() + "/" + name;
    EXPECT_THAT(complaintOf({output}, {folder.file("other.las"), in}),
                AllOf(HasSubstr(output + ": would replace " + in), HasSubstr("reads"), HasSubstr("another name")))
        << name;
    EXPECT_THAT(complaintOf({in}, {output}), HasSubstr("reads")) << name;
  }
}

TEST(OutputCheck, WhatBelongsToAnInputOrAnOutputCountsToo) {
  if (!URDIMBRE_HAS_GDAL) GTEST_SKIP() << "files of several parts are GDAL's";
  const Folder folder;
  for (char const* name : {"in.shp", "in.shx", "in.dbf", "lone.dbf"}) {
    (void)folder.make(name, std::string("x"));
  }
  EXPECT_THAT(complaintOf({folder.file("lone.shp")}, {folder.file("lone.dbf")}), HasSubstr("reads"));
  fs::create_hard_link(folder.file("in.dbf"), folder.file("out.dbf"));
  EXPECT_THAT(complaintOf({folder.file("out.shp")}, {folder.file("in.shp")}),
              AllOf(HasSubstr("in.dbf, which belongs to "), HasSubstr("in.shp")));
  if (!linked("in.shx", folder.file("m.xml"))) GTEST_SKIP() << kNoLinks;
  EXPECT_THAT(complaintOf({folder.file("m.xml")}, {folder.file("in.shp")}), HasSubstr("which belongs to"));
}

TEST(OutputCheck, TwoOutputsAreNotOneFileEvenBeforeThereIsAny) {
  const Folder folder;
  if (linked("m.xml", folder.file("o.gpkg"))) {
    EXPECT_THAT(complaintOf({folder.file("m.xml"), folder.file("o.gpkg")}, {}), HasSubstr("writes too"));
  }
  EXPECT_THAT(complaintOf({folder.file("m.xml"), folder.path() + "/./m.xml"}, {}), HasSubstr("writes too"));
  requireOutputs({folder.file("m.xml"), folder.file("p.gpkg")}, {});
}

TEST(OutputCheck, FoldersAndDevicesAreRefusedBeforeAnyWork) {
  const Folder folder;
  EXPECT_THAT(complaintOf({folder.path()}, {}), HasSubstr("is a folder"));
  EXPECT_THAT(complaintOf({"/dev/full"}, {}), HasSubstr("not an ordinary file"));
  EXPECT_THAT(complaintOf({folder.file("no/a.ply")}, {}),
              AllOf(HasSubstr("no/a.ply: cannot be written"), HasSubstr("No such file or directory")));
  EXPECT_THAT(complaintOf({"/proc/a.ply"}, {}), HasSubstr("/proc/a.ply: cannot be written"));
  EXPECT_EQ(folder.names().size(), 0U);
}
