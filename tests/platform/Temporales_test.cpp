#include "platform/Temporales.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <mutex>
#include <set>
#include <sys/stat.h>
#include <thread>
#include <vector>

#include "platform/CFile.h"
#include "platform/CWinApp.h"
#include "platform/Environment.h"
#include "support/FaultGuard.h"
#include "support/ScratchFolder.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

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

TEST(GetTempFileName, MakesAnEmptyFileWithTheWholePrefix) {
  ScratchFolder folder;
  wchar_t buffer[MAX_PATH];
  EXPECT_NE(GetTempFileNameW(folder.Path(), L"123456MD", 0, buffer), 0u);
  const CString name(buffer);
  EXPECT_THAT(name.Utf8(), StartsWith(folder.Path("123456MD").Utf8()));
  EXPECT_THAT(name.Utf8(), EndsWith(".tmp"));
  EXPECT_TRUE(Exists(name));
  EXPECT_EQ(BytesOf(name), "");
  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(name.Utf8()).permissions(), perms::owner_read | perms::owner_write)
      << "a cloud may be confidential";
}

TEST(GetTempFileName, NamesAreNewInEveryThread) {
  ScratchFolder folder;
  std::mutex mutex;
  std::set<CString> names;
  {
    std::vector<std::jthread> threads;
    for (int t = 0; t < 4; ++t) {
      threads.emplace_back([&] {
        for (int i = 0; i < 250; ++i) {
          wchar_t buffer[MAX_PATH];
          EXPECT_NE(GetTempFileNameW(folder.Path(), L"0MD", 0, buffer), 0u);
          const std::scoped_lock lock(mutex);
          names.insert(buffer);
        }
      });
    }
  }
  EXPECT_EQ(names.size(), 1000u);
  EXPECT_EQ(folder.Files(), 1000u);
}

TEST(GetTempFileName, WithANumberOnlyFormsTheName) {
  ScratchFolder folder;
  wchar_t buffer[MAX_PATH];
  EXPECT_EQ(GetTempFileNameW(folder.Path(), L"7MD", 0xABCD, buffer), 0xABCDu);
  EXPECT_EQ(CString(buffer), folder.Path("7MDABCD.tmp"));
  EXPECT_EQ(folder.Files(), 0u);
}

TEST(GetTempFileName, AFolderThatTakesNoFilesIsAFailure) {
  ScratchFolder folder;
  PutBytes(folder.Path("file"), "");
  wchar_t buffer[MAX_PATH];
  EXPECT_EQ(GetTempFileNameW(folder.Path("none"), L"0MD", 0, buffer), 0u);
  EXPECT_EQ(GetTempFileNameW(folder.Path("file"), L"0MD", 0, buffer), 0u);
  EXPECT_EQ(GetTempFileNameW(L"/proc", L"0MD", 0, buffer), 0u);
  EXPECT_EQ(GetTempFileNameW(folder.Path(), L"0MD", 0, nullptr), 0u);
  FaultGuard guard;
  guard.Refuse(EOperacion::CreaTemporal);
  EXPECT_EQ(GetTempFileNameW(folder.Path(), L"0MD", 0, buffer), 0u);
  EXPECT_EQ(folder.Files(), 1u);
}

TEST(GetTempFileName, APathThatDoesNotFitIsAFailure) {
  wchar_t buffer[MAX_PATH];
  EXPECT_EQ(GetTempFileNameW(CString(std::wstring(250, L'a')), L"0MD", 1, buffer), 0u);
  EXPECT_EQ(GetTempFileNameW(CString(std::wstring(243, L'a')), L"0MD", 1, buffer), 1u)
      << "folder, separator, prefix, eight digits, four characters: 259";
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

TEST(AbreTemporal, AFolderThatTakesNoFilesIsAFailure) {
  const ScratchFolder folder;
  CFile file;
  EXPECT_FALSE(file.AbreTemporal(folder.Path("none"), L"7MD"));
  EXPECT_THAT(file.Error().Utf8(), HasSubstr("cannot write in"));
  EXPECT_FALSE(file.AbreTemporal(L"/proc", L"7MD"));
}

TEST(DeleteFile, DeletesFilesAndNothingElse) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), "x");
  EXPECT_TRUE(DeleteFileW(folder.Path("a")));
  EXPECT_FALSE(Exists(folder.Path("a")));
  EXPECT_FALSE(DeleteFileW(folder.Path("a")));
  EXPECT_FALSE(DeleteFileW(folder.Path()));
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

TEST(DeleteFile, ARefusalIsReported) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), "x");
  FaultGuard guard;
  guard.Refuse(EOperacion::Borra);
  EXPECT_FALSE(DeleteFileW(folder.Path("a")));
  EXPECT_TRUE(Exists(folder.Path("a")));
}

}  // namespace
