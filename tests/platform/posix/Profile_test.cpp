#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <vector>

#include "platform/CWinApp.h"
#include "platform/Environment.h"
#include "platform/Inicializacion.h"
#include "support/ScratchFolder.h"

namespace {

class ProfileFolder : public testing::Test {
 protected:
  ProfileFolder() { application.SetRegistryKey(L"Maker"); }
  CWinApp application{L"tester"};
};

TEST_F(ProfileFolder, StandsBelowTheHomeFolderWhenNoSettingsFolderIsNamed) {
  const Environment home("HOME", "/home/someone");
  for (auto const& none : std::vector<std::optional<std::string>>{std::nullopt, "", "relative/folder"}) {
    const Environment unset("XDG_CONFIG_HOME", none);
    EXPECT_EQ(application.FicheroPerfil(), L"/home/someone/.config/Maker/tester.ini");
  }
}

TEST_F(ProfileFolder, WithoutAnyFolderKeepsNothingAndSaysSo) {
  const Environment home("HOME", std::nullopt);
  const Environment unset("XDG_CONFIG_HOME", std::nullopt);
  EXPECT_EQ(application.FicheroPerfil(), L"");
  EXPECT_FALSE(application.WriteProfileString(L"s", L"k", L"v"));
  EXPECT_EQ(application.GetProfileString(L"s", L"k", L"d"), L"d");
}

TEST(InitialisationFiles, ANewFileTakesTheOldOnesPermissions) {
  using std::filesystem::perms;
  const ScratchFolder folder;
  const CString file = folder.Path("a.ini");
  ASSERT_TRUE(WritePrivateProfileStringW(L"s", L"k", L"v", file));
  std::filesystem::permissions(file.Utf8(), perms::owner_read | perms::owner_write | perms::group_read);
  ASSERT_TRUE(WritePrivateProfileStringW(L"s", L"k", L"w", file));
  EXPECT_EQ(std::filesystem::status(file.Utf8()).permissions(),
            perms::owner_read | perms::owner_write | perms::group_read);
}

}  // namespace
