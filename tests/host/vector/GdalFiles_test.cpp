#include "host/vector/GdalFiles.h"

#include <cpl_string.h>
#include <cpl_vsi.h>
#include <limits>

#include "tests/host/HostScenes.h"
#include "tests/support/FaultGuard.h"

using namespace Meseta47::host;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

/// An opening of a file as GDAL has it.
class Opened {
 public:
  Opened(GdalFiles const& files, std::string const& name, char const* access)
      : file_(VSIFOpenL(files.path(name).c_str(), access)) {}
  Opened(Opened const&) = delete;
  Opened& operator=(Opened const&) = delete;
  ~Opened() {
    if (file_ != nullptr) (void)VSIFCloseL(file_);
  }

  [[nodiscard]] bool isOpen() const { return file_ != nullptr; }
  bool write(std::string const& text) { return VSIFWriteL(text.data(), 1, text.size(), file_) == text.size(); }
  bool seek(vsi_l_offset place, int from = SEEK_SET) { return VSIFSeekL(file_, place, from) == 0; }
  bool truncate(vsi_l_offset bytes) { return VSIFTruncateL(file_, bytes) == 0; }
  [[nodiscard]] vsi_l_offset tell() { return VSIFTellL(file_); }
  [[nodiscard]] bool atEnd() { return VSIFEofL(file_) != 0; }
  [[nodiscard]] std::string read(std::size_t bytes = 1000) {
    std::string text(bytes, '?');
    text.resize(VSIFReadL(text.data(), 1, bytes, file_));
    return text;
  }

 private:
  VSILFILE* file_;
};

bool writes(GdalFiles const& files, std::string const& name, std::string const& text) {
  return Opened(files, name, "wb").write(text);
}

std::string contentOf(GdalFiles const& files, std::string const& name) { return Opened(files, name, "rb").read(); }

std::string textOf(std::string const& path) {
  const Bytes bytes = bytesOf(path);
  return {bytes.begin(), bytes.end()};
}

std::vector<std::string> listOf(GdalFiles const& files) {
  const CPLStringList found(VSIReadDir(files.path().c_str()));
  return {found.List(), found.List() + found.Count()};
}

class GdalFilesTest : public testing::Test {
 protected:
  Folder folder;
  GdalFiles files{folder.path()};
};

}  // namespace

TEST_F(GdalFilesTest, WhatIsWrittenIsAPartUntilItIsCommitted) {
  EXPECT_TRUE(writes(files, "a.txt", "main"));
  EXPECT_TRUE(writes(files, "a.idx", "side"));
  files.close();
  EXPECT_THAT(folder.names(), UnorderedElementsAre("a.txt.part", "a.idx.part"));
  files.commit("a.txt");
  EXPECT_THAT(folder.names(), UnorderedElementsAre("a.txt", "a.idx"));
  EXPECT_EQ(textOf(folder.file("a.txt")), "main");
  EXPECT_EQ(textOf(folder.file("a.idx")), "side");
}

TEST_F(GdalFilesTest, WithoutACommitNothingIsLeft) {
  {
    GdalFiles other(folder.path());
    EXPECT_TRUE(writes(other, "a.txt", "gone"));
    other.close();
  }
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(GdalFilesTest, TheNameThatIsToBeLastIsTakenLast) {
  for (char const* name : {"a", "b", "c"}) EXPECT_TRUE(writes(files, name, name));
  FaultGuard guard;
  guard.Refuse(EOperacion::Renombra, 3);
  EXPECT_THAT(errorOf([&] { files.commit("b"); }), HasSubstr("b: cannot take its name"));
  EXPECT_THAT(folder.names(), UnorderedElementsAre("a", "c"));
}

TEST_F(GdalFilesTest, ReadsBackWhatItWrote) {
  Opened file(files, "a", "w+b");
  EXPECT_TRUE(file.write("0123456789"));
  EXPECT_TRUE(file.seek(3));
  EXPECT_EQ(file.read(4), "3456");
  EXPECT_EQ(file.tell(), 7U);
  EXPECT_FALSE(file.atEnd());
  EXPECT_EQ(file.read(4), "789");
  EXPECT_TRUE(file.atEnd());
  EXPECT_TRUE(file.seek(0));
  EXPECT_FALSE(file.atEnd());
}

TEST_F(GdalFilesTest, WritesOverWhatStandsThere) {
  Opened file(files, "a", "w+b");
  EXPECT_TRUE(file.write("....body"));
  EXPECT_TRUE(file.seek(0));
  EXPECT_TRUE(file.write("head"));
  EXPECT_EQ(file.read(), "body");
}

TEST_F(GdalFilesTest, SeeksFromTheStartThePlaceAndTheEnd) {
  Opened file(files, "a", "w+b");
  EXPECT_TRUE(file.write("0123456789"));
  EXPECT_TRUE(file.seek(0, SEEK_END));
  EXPECT_EQ(file.tell(), 10U);
  EXPECT_TRUE(file.seek(static_cast<vsi_l_offset>(-4), SEEK_CUR));
  EXPECT_EQ(file.read(1), "6");
  EXPECT_TRUE(file.seek(1));
  EXPECT_TRUE(file.seek(1, SEEK_CUR));
  EXPECT_EQ(file.read(1), "2");
}

TEST_F(GdalFilesTest, WritingBeyondTheEndPutsZerosBetween) {
  Opened file(files, "a", "w+b");
  EXPECT_TRUE(file.write("a"));
  EXPECT_TRUE(file.seek(4));
  EXPECT_EQ(file.read(), "");
  EXPECT_TRUE(file.seek(4));
  EXPECT_TRUE(file.write("b"));
  EXPECT_EQ(contentOf(files, "a"), std::string("a\0\0\0b", 5));
}

TEST_F(GdalFilesTest, IsCutOffAndFilledUp) {
  Opened file(files, "a", "w+b");
  EXPECT_TRUE(file.write("0123456789"));
  EXPECT_TRUE(file.truncate(4));
  EXPECT_EQ(file.tell(), 10U);
  EXPECT_EQ(contentOf(files, "a"), "0123");
  EXPECT_TRUE(file.truncate(6));
  EXPECT_EQ(contentOf(files, "a"), std::string("0123\0\0", 6));
}

TEST_F(GdalFilesTest, TwoOpeningsHaveTheirOwnPlacesInOneFile) {
  Opened writer(files, "a", "w+b");
  EXPECT_TRUE(writer.write("01234"));
  Opened reader(files, "a", "rb");
  EXPECT_EQ(reader.read(2), "01");
  EXPECT_TRUE(writer.write("56789"));
  EXPECT_EQ(reader.read(), "23456789");
  EXPECT_EQ(writer.tell(), 10U);
}

TEST_F(GdalFilesTest, EachWayOfOpeningIsAsInC) {
  EXPECT_FALSE(Opened(files, "a", "rb").isOpen());
  EXPECT_FALSE(Opened(files, "a", "r+b").isOpen());
  files.check();
  EXPECT_TRUE(writes(files, "a", "first"));
  EXPECT_TRUE(Opened(files, "a", "r+b").write("F"));
  EXPECT_EQ(contentOf(files, "a"), "First");
  EXPECT_TRUE(Opened(files, "a", "ab").write("ly"));
  EXPECT_EQ(contentOf(files, "a"), "Firstly");
  EXPECT_TRUE(writes(files, "a", "new"));
  EXPECT_EQ(contentOf(files, "a"), "new");
}

TEST_F(GdalFilesTest, TellsWhatIsThere) {
  (void)folder.make("old.txt", std::string("not of this output"));
  EXPECT_TRUE(writes(files, "a", "12345"));
  VSIStatBufL status;
  ASSERT_EQ(VSIStatL(files.path("a").c_str(), &status), 0);
  EXPECT_EQ(status.st_size, 5);
  EXPECT_TRUE(VSI_ISREG(status.st_mode));
  ASSERT_EQ(VSIStatL(files.path().c_str(), &status), 0);
  EXPECT_TRUE(VSI_ISDIR(status.st_mode));
  EXPECT_NE(VSIStatL(files.path("old.txt").c_str(), &status), 0);
  EXPECT_THAT(listOf(files), ElementsAre("a"));
  EXPECT_TRUE(files.has("a"));
  EXPECT_FALSE(files.has("old.txt"));
}

TEST_F(GdalFilesTest, OutputsDoNotSeeEachOther) {
  GdalFiles other(folder.path());
  EXPECT_TRUE(writes(other, "b", "of another output"));
  EXPECT_THAT(listOf(files), IsEmpty());
  EXPECT_FALSE(Opened(files, "b", "rb").isOpen());
  VSIStatBufL status;
  EXPECT_NE(VSIStatL("/vsiurdimbre/0/b", &status), 0);
  EXPECT_NE(VSIStatL("/vsiurdimbre/", &status), 0);
  EXPECT_NE(VSIUnlink("/vsiurdimbre/0/b"), 0);
}

TEST_F(GdalFilesTest, ADeletedFileCanBeUsedUntilItIsClosed) {
  {
    Opened file(files, "a", "w+b");
    EXPECT_EQ(VSIUnlink(files.path("a").c_str()), 0);
    EXPECT_THAT(listOf(files), IsEmpty());
    EXPECT_TRUE(file.write("still"));
    EXPECT_TRUE(file.seek(0));
    EXPECT_EQ(file.read(), "still");
  }
  EXPECT_THAT(folder.names(), IsEmpty());
  EXPECT_NE(VSIUnlink(files.path("a").c_str()), 0);
  EXPECT_TRUE(writes(files, "a", "another"));
  EXPECT_EQ(contentOf(files, "a"), "another");
}

TEST_F(GdalFilesTest, OverADeletedFileThatIsStillOpenNoneIsMade) {
  {
    const Opened file(files, "a", "w+b");
    EXPECT_EQ(VSIUnlink(files.path("a").c_str()), 0);
    EXPECT_FALSE(writes(files, "a", "x"));
  }
  EXPECT_THAT(errorOf([&] { files.check(); }), HasSubstr("still being deleted"));
}

TEST_F(GdalFilesTest, TheFirstFailureIsKeptAndNothingMoreIsDone) {
  {
    FaultGuard guard;
    guard.RefuseOnce(EOperacion::Escribe, 1);
    Opened file(files, "a", "w+b");
    EXPECT_FALSE(file.write(std::string(100000, 'x')));
    EXPECT_FALSE(file.write("more"));
    EXPECT_FALSE(file.seek(0));
    EXPECT_EQ(file.read(), "");
    EXPECT_FALSE(file.truncate(0));
    EXPECT_TRUE(file.atEnd());
    EXPECT_FALSE(writes(files, "b", "x"));
    EXPECT_TRUE(Opened(files, "a", "rb").isOpen()) << "some writers do not ask whether it is";
    EXPECT_EQ(guard.Asked(EOperacion::Escribe), 1);
  }
  const auto isTheDisks = AllOf(HasSubstr("/a: cannot be written: No space left on device"), HasSubstr("removed"));
  EXPECT_THAT(errorOf([&] { files.check(); }), isTheDisks);
  EXPECT_THAT(errorOf([&] { files.close(); }), isTheDisks);
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(GdalFilesTest, AFileThatCannotBeMadeIsNamedWithTheCause) {
  GdalFiles nowhere(folder.file("no"));
  Opened file(nowhere, "a", "wb");
  EXPECT_TRUE(file.isOpen()) << "some writers do not ask whether it is";
  EXPECT_FALSE(file.write("x"));
  EXPECT_THAT(errorOf([&] { nowhere.check(); }), HasSubstr("no/a: cannot be written: No such file or directory"));
}

TEST_F(GdalFilesTest, WhatCannotBeReadBackIsAFailure) {
  Opened file(files, "a", "w+b");
  EXPECT_TRUE(file.write(std::string(100000, 'x')));
  FaultGuard guard;
  guard.Refuse(EOperacion::Lee);
  EXPECT_TRUE(file.seek(0));
  EXPECT_EQ(file.read(), "");
  EXPECT_THAT(errorOf([&] { files.check(); }), HasSubstr("a: cannot be written: Input/output error"));
}

TEST_F(GdalFilesTest, APlaceThatCannotBeReachedIsAFailure) {
  Opened file(files, "a", "w+b");
  EXPECT_TRUE(file.write(std::string(100000, 'x')));
  FaultGuard guard;
  guard.Refuse(EOperacion::Posiciona);
  EXPECT_TRUE(file.seek(5));
  EXPECT_EQ(file.read(), "");
  EXPECT_THAT(errorOf([&] { files.check(); }), HasSubstr("a: cannot be written: Input/output error"));
}

TEST_F(GdalFilesTest, APlaceThatNoFileReachesIsAFailure) {
  Opened file(files, "a", "w+b");
  EXPECT_TRUE(file.seek(std::numeric_limits<vsi_l_offset>::max()));
  EXPECT_FALSE(file.write("x"));
  EXPECT_THAT(errorOf([&] { files.check(); }), HasSubstr("a: cannot be written: File too large"));
}

TEST_F(GdalFilesTest, ALengthThatCannotBeHadOrSetIsAFailure) {
  for (const EOperacion refused : {EOperacion::Longitud, EOperacion::Trunca}) {
    GdalFiles output(folder.path());
    Opened file(output, "a", "w+b");
    FaultGuard guard;
    guard.Refuse(refused);
    EXPECT_FALSE(refused == EOperacion::Trunca ? file.truncate(10) : file.seek(0, SEEK_END));
    EXPECT_THAT(errorOf([&] { output.check(); }), HasSubstr("a: cannot be written: Input/output error"));
  }
}

TEST_F(GdalFilesTest, AnAbandonedOutputDoesNothingMore) {
  Opened file(files, "a", "w+b");
  files.abandon();
  EXPECT_FALSE(file.write("x"));
  files.check();
}
