#include "platform/Temporales.h"

#include <gmock/gmock.h>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include "platform/CFile.h"
#include "support/FaultGuard.h"
#include "support/ScratchFolder.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

TEST(GetTempFileName, MakesAnEmptyFileWithTheWholePrefix) {
  ScratchFolder folder;
  wchar_t buffer[MAX_PATH];
  EXPECT_NE(GetTempFileNameW(folder.Path(), L"123456MD", 0, buffer), 0u);
  const CString name(buffer);
  EXPECT_THAT(name.Utf8(), StartsWith(folder.Path("123456MD").Utf8()));
  EXPECT_THAT(name.Utf8(), EndsWith(".tmp"));
  EXPECT_TRUE(Exists(name));
  EXPECT_EQ(BytesOf(name), "");
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

TEST(DeleteFile, ARefusalIsReported) {
  ScratchFolder folder;
  PutBytes(folder.Path("a"), "x");
  FaultGuard guard;
  guard.Refuse(EOperacion::Borra);
  EXPECT_FALSE(DeleteFileW(folder.Path("a")));
  EXPECT_TRUE(Exists(folder.Path("a")));
}

}  // namespace
