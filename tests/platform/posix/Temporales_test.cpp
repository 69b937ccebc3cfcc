#include "platform/Temporales.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include "platform/CFile.h"
#include "platform/CWinApp.h"
#include "platform/Environment.h"
#include "support/FaultGuard.h"
#include "support/ScratchFolder.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

CString TempPath() {
  wchar_t buffer[MAX_PATH];
  const auto length = GetTempPathW(MAX_PATH, buffer);
  EXPECT_GT(length, 0u);
  EXPECT_LT(length, MAX_PATH);
  EXPECT_EQ(static_cast<unsigned long>(CString(buffer).GetLength()), length);
  return buffer;
}

TEST(GetTempPath, IsTheApplicationsFolderThenTheEnvironmentsThenTheSystems) {
  const Environment set("TMPDIR", "/some/where");
  EXPECT_EQ(TempPath(), L"/some/where/");
  {
    CWinApp application;
    EXPECT_EQ(TempPath(), L"/some/where/");
    application.PonCarpetaTemporal(L"/else/where/");
    EXPECT_EQ(TempPath(), L"/else/where/");
  }
  const Environment empty("TMPDIR", "");
  EXPECT_EQ(TempPath(), L"/tmp/");
  const Environment unset("TMPDIR", std::nullopt);
  EXPECT_EQ(TempPath(), L"/tmp/");
}

TEST(GetTempPath, AnswersTheRoomNeededWhenThereIsTooLittle) {
  const Environment set("TMPDIR", "/abc");
  wchar_t buffer[8] = L"#";
  EXPECT_EQ(GetTempPathW(5, buffer), 6u);
  EXPECT_EQ(buffer[0], L'#');
  EXPECT_EQ(GetTempPathW(6, buffer), 5u);
  EXPECT_EQ(CString(buffer), L"/abc/");
  EXPECT_EQ(GetTempPathW(0, nullptr), 6u);
}

TEST(AbreTemporal, LeavesNoNameBehindWhileItIsOpen) {
  const ScratchFolder folder;
  CFile file;
  ASSERT_TRUE(file.AbreTemporal(folder.Path(), L"7MD"));
  EXPECT_EQ(folder.Files(), 0U);
  ASSERT_TRUE(file.Write("hello", 5) && file.Flush());
  CFile other(file.GetFilePath(), CFile::modeRead);
  char text[6] = {};
  EXPECT_EQ(other.Read(text, 5), 5U);
  EXPECT_STREQ(text, "hello");
  const CString path = file.GetFilePath();
  EXPECT_TRUE(file.Close());
  EXPECT_TRUE(other.Close());
  EXPECT_FALSE(Exists(path));
}

TEST(AbreTemporal, WhereFilesNeedANameItIsGivenUpAtOnce) {
  const ScratchFolder folder;
  FaultGuard guard;
  guard.RefuseOnce(EOperacion::Abre, 1);  // as a system without files that have none
  CFile file;
  ASSERT_TRUE(file.AbreTemporal(folder.Path(), L"7MD"));
  EXPECT_EQ(folder.Files(), 0U);
  ASSERT_TRUE(file.Write("hello", 5) && file.Flush());
  EXPECT_EQ(CFile(file.GetFilePath(), CFile::modeRead).GetLength(), 5U);
}

TEST(AbreTemporal, ANameThatMustStayGoesWithTheFileAndKilledOnesWithTheNext) {
  const ScratchFolder folder;
  PutBytes(folder.Path("7MD1.tmp"), "of a process that was killed");
  PutBytes(folder.Path("7MD2.tmp"), "and of another");
  FaultGuard guard;
  guard.RefuseOnce(EOperacion::Abre, 1).RefuseOnce(EOperacion::Borra, 3);  // both old ones, then the own name
  {
    CFile file;
    ASSERT_TRUE(file.AbreTemporal(folder.Path(), L"7MD"));
    EXPECT_EQ(file.GetFilePath(), folder.Path("7MD1.tmp"));
    EXPECT_THAT(folder.Names(), ElementsAre("7MD1.tmp"));
    struct stat facts {};
    ASSERT_EQ(::stat(folder.Path("7MD1.tmp").Utf8().c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, 0600U) << "a cloud may be confidential";
    guard.RefuseOnce(EOperacion::Abre, 1).RefuseOnce(EOperacion::Borra, 1);
    CFile second;
    ASSERT_TRUE(second.AbreTemporal(folder.Path(), L"7MD"));
    EXPECT_THAT(folder.Names(), ElementsAre("7MD1.tmp", "7MD2.tmp")) << "the first is alive";
  }
  EXPECT_THAT(folder.Names(), IsEmpty());
}

TEST(DeleteFile, AnOpenFileLivesOnWithoutItsName) {
  ScratchFolder folder;
  CFile file(folder.Path("a"), CFile::modeCreate | CFile::modeReadWrite);
  file.Write("x", 1);
  EXPECT_TRUE(DeleteFileW(folder.Path("a")));
  EXPECT_FALSE(Exists(folder.Path("a")));
  EXPECT_TRUE(file.Flush());
  EXPECT_EQ(file.GetLength(), 1u);
  EXPECT_TRUE(file.Close());
}

TEST(GetTempFileName, MakesAFileForThisUserAlone) {
  const ScratchFolder folder;
  wchar_t buffer[MAX_PATH];
  EXPECT_NE(GetTempFileNameW(folder.Path(), L"0MD", 0, buffer), 0u);
  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(CString(buffer).Utf8()).permissions(), perms::owner_read | perms::owner_write)
      << "a cloud may be confidential";
}

}  // namespace
