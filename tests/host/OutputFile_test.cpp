#include "host/OutputFile.h"

#include "platform/IVigilante.h"
#include "tests/host/HostScenes.h"

using namespace Meseta47::host;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// A disk that takes so many bytes and no more, and may refuse one kind of operation.
class FullDisk : public IVigilante {
 public:
  explicit FullDisk(std::size_t room) : room_(room), before_(PonVigilante(this)) {}
  FullDisk(std::size_t room, EOperacion refused) : FullDisk(room) { refused_ = static_cast<int>(refused); }
  ~FullDisk() override { PonVigilante(before_); }
  bool Permite(EOperacion operation, CString const&) override { return static_cast<int>(operation) != refused_; }
  std::size_t Concede(EOperacion operation, CString const&, std::size_t bytes) override {
    if (operation != EOperacion::Escribe) {
      return bytes;
    }
    const std::size_t granted = std::min(room_, bytes);
    room_ -= granted;
    return granted;
  }

 private:
  std::size_t room_;
  int refused_ = -1;
  IVigilante* before_;
};

std::string textOf(std::string const& path) {
  const Bytes bytes = bytesOf(path);
  return std::string(bytes.begin(), bytes.end());
}

}  // namespace

TEST(OutputFile, TakesItsNameOnlyWhenItIsCommitted) {
  const Folder folder;
  OutputFile file(folder.file("a.txt"));
  file.write("half");
  EXPECT_THAT(folder.names(), ElementsAre("a.txt.part"));
  file.commit();
  EXPECT_THAT(folder.names(), ElementsAre("a.txt"));
  EXPECT_EQ(textOf(folder.file("a.txt")), "half");
}

TEST(OutputFile, WithoutACommitNothingIsLeftAndWhatWasThereStays) {
  const Folder folder;
  const std::string name = folder.make("a.txt", std::string("precious"));
  { OutputFile(name).write("new"); }
  EXPECT_THAT(folder.names(), ElementsAre("a.txt"));
  EXPECT_EQ(textOf(name), "precious");
}

TEST(OutputFile, WritesOverAnEarlierPlace) {
  const Folder folder;
  OutputFile file(folder.file("a.txt"));
  file.write("....body");
  file.seek(0);
  file.write("head");
  file.commit();
  EXPECT_EQ(textOf(folder.file("a.txt")), "headbody");
}

TEST(OutputFile, ReadsBackAndTellsItsLength) {
  const Folder folder;
  OutputFile file(folder.file("a.txt"));
  file.write("0123456789");
  EXPECT_EQ(file.length(), 10U);
  file.seek(7);
  std::string text(5, '?');
  EXPECT_EQ(file.read(text.data(), 5), 3U);
  EXPECT_EQ(text, "789??");
  EXPECT_EQ(file.position(), 10U);
}

TEST(OutputFile, IsCutOffAndFilledUp) {
  const Folder folder;
  OutputFile file(folder.file("a.txt"));
  file.write("0123456789");
  file.resize(4);
  EXPECT_EQ(file.position(), 10U);
  file.resize(6);
  file.commit();
  EXPECT_EQ(textOf(folder.file("a.txt")), std::string("0123\0\0", 6));
}

TEST(OutputFile, WhatCannotBeReadBackOrCutLeavesNothing) {
  const Folder folder;
  for (const EOperacion refused : {EOperacion::Lee, EOperacion::Longitud, EOperacion::Trunca}) {
    const FullDisk disk(1000000, refused);
    EXPECT_THAT(errorOf([&] {
                  OutputFile file(folder.file("a.txt"));
                  char byte = 0;
                  (void)file.read(&byte, 1);
                  (void)file.length();
                  file.resize(5);
                }),
                AllOf(HasSubstr("a.txt: cannot be written"), HasSubstr("Input/output error")));
    EXPECT_THAT(folder.names(), IsEmpty());
  }
}

TEST(OutputFile, AFullDiskIsNamedAndLeavesWhatWasThere) {
  const Folder folder;
  const std::string name = folder.make("a.txt", std::string("precious"));
  const FullDisk disk(100000);
  const std::string error = errorOf([&] {
    OutputFile file(name);
    for (int i = 0; i < 1000; ++i) {
      file.write(std::string(1000, 'x'));
    }
    file.commit();
  });
  EXPECT_THAT(error, AllOf(HasSubstr("a.txt: cannot be written: No space left on device"), HasSubstr("free room")));
  EXPECT_THAT(folder.names(), ElementsAre("a.txt"));
  EXPECT_EQ(textOf(name), "precious");
}

TEST(OutputFile, ADiskThatFillsOnlyAtTheCloseIsNoticed) {
  const Folder folder;
  const FullDisk disk(3);
  EXPECT_THAT(errorOf([&] {
                OutputFile file(folder.file("a.txt"));
                file.write("four");
                file.commit();
              }),
              HasSubstr("No space left on device"));
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST(OutputFile, ANameThatCannotBeTakenLeavesWhatWasThere) {
  const Folder folder;
  const std::string name = folder.make("a.txt", std::string("precious"));
  const FullDisk disk(1000000, EOperacion::Renombra);
  EXPECT_THAT(errorOf([&] {
                OutputFile file(name);
                file.write("new");
                file.commit();
              }),
              HasSubstr("a.txt: cannot take its name"));
  EXPECT_THAT(folder.names(), ElementsAre("a.txt"));
  EXPECT_EQ(textOf(name), "precious");
}

TEST(OutputFile, AFolderThatIsMissingIsSaidAtOnce) {
  const Folder folder;
  EXPECT_THAT(errorOf([&] { OutputFile file(folder.file("no/a.txt")); }),
              AllOf(HasSubstr("no/a.txt: cannot be written: No such file or directory"), HasSubstr("folder")));
}

TEST(OutputFile, AFolderIsNoFileToWrite) {
  const Folder folder;
  EXPECT_THAT(errorOf([&] { OutputFile file(folder.path()); }), HasSubstr("is a folder"));
}

TEST(OutputFile, ADeviceIsNeverReplaced) {
  if (!std::filesystem::exists("/dev/null")) {
    GTEST_SKIP() << "this system has no /dev/null";
  }
  EXPECT_THAT(errorOf([&] { OutputFile file("/dev/null"); }), HasSubstr("/dev/null: is not an ordinary file"));
}

TEST(OutputFile, ALinkKeepsPointingToTheFileThatIsReplaced) {
  const Folder folder;
  const std::string target = folder.make("target.txt", std::string("old"));
  if (!linked(target, folder.file("link.txt"))) GTEST_SKIP() << kNoLinks;
  OutputFile file(folder.file("link.txt"));
  file.write("new");
  file.commit();
  EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link.txt")));
  EXPECT_EQ(textOf(target), "new");
}

TEST(OutputFile, TwoOfOneNameDoNotMeet) {
  const Folder folder;
  OutputFile one(folder.file("a.txt")), two(folder.file("a.txt"));
  one.write("one");
  two.write("two");
  two.commit();
  one.commit();
  EXPECT_EQ(textOf(folder.file("a.txt")), "one");
  EXPECT_THAT(folder.names(), ElementsAre("a.txt"));
}

TEST(OutputFile, ARingOfLinksIsSaid) {
  const Folder folder;
  if (!linked("b", folder.file("a")) || !linked("a", folder.file("b"))) GTEST_SKIP() << kNoLinks;
  EXPECT_THAT(errorOf([&] { OutputFile file(folder.file("a")); }),
              AllOf(HasSubstr("/a: cannot be written"), HasSubstr("symbolic links")));
}
