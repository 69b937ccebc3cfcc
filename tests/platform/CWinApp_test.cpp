#include "platform/CWinApp.h"

#include <gmock/gmock.h>
#include <memory>
#include <vector>

#include "SystemNames.h"
#include "platform/Environment.h"
#include "support/FaultGuard.h"
#include "support/ScratchFolder.h"

namespace {

TEST(CWinApp, TheLastOneConstructedIsTheCurrentOne) {
  CWinApp* const before = AfxGetApp();
  {
    CWinApp first;
    EXPECT_EQ(AfxGetModuleState()->m_pCurrentWinApp, &first);
    {
      CWinApp second;
      EXPECT_EQ(AfxGetApp(), &second);
    }
    EXPECT_EQ(AfxGetApp(), &first);
  }
  EXPECT_EQ(AfxGetApp(), before);
}

TEST(CWinApp, GoingInAnyOrderLeavesTheLastThatIsStillThere) {
  CWinApp* const before = AfxGetApp();
  auto first = std::make_unique<CWinApp>();
  auto second = std::make_unique<CWinApp>();
  auto third = std::make_unique<CWinApp>();
  first.reset();
  EXPECT_EQ(AfxGetApp(), third.get());
  third.reset();
  EXPECT_EQ(AfxGetApp(), second.get());
  second.reset();
  EXPECT_EQ(AfxGetApp(), before);
}

struct Progress {
  virtual ~Progress() = default;
};
class Host : public CWinApp, public Progress {
 public:
  int DoMessageBox(wchar_t const* text, unsigned type, unsigned id) override {
    shown.Format(L"%s %u %u", text, type, id);
    return 7;
  }
  CString TextoMensaje(unsigned id) const override { return id == 900001 ? L"Filling" : CWinApp::TextoMensaje(id); }
  CString shown;
};
class Module : public CWinApp {
 public:
  CString TextoMensaje(unsigned id) const override { return id == 900002 ? L"Linking" : CWinApp::TextoMensaje(id); }
};

TEST(CWinApp, ItsOtherInterfacesAreReachedFromTheModule) {
  Host host;
  EXPECT_EQ(dynamic_cast<Progress*>(AfxGetModuleState()->m_pCurrentWinApp), &host);
  const CWinApp plain;
  EXPECT_EQ(dynamic_cast<Progress*>(AfxGetModuleState()->m_pCurrentWinApp), nullptr);
}

TEST(CWinApp, InitInstanceLetsTheProgramGoOn) {
  CWinApp application;
  CWinThread& thread = application;
  EXPECT_TRUE(thread.InitInstance());
  EXPECT_EQ(thread.ExitInstance(), 0);
}

TEST(CWinApp, AMessageGoesToTheCurrentApplication) {
  Host host;
  EXPECT_EQ(AfxMessageBox(L"careful", 3, 12105), 7);
  EXPECT_EQ(host.shown, L"careful 3 12105");
}

TEST(CWinApp, AMessageThatNobodyShowsIsAccepted) {
  const CWinApp plain;
  EXPECT_EQ(AfxMessageBox(L"dropped"), 1);
}

TEST(CWinApp, TextsAreLookedForInTheApplicationsThatWereReplaced) {
  const Module module;
  const Host host;
  EXPECT_EQ(AfxGetApp()->TextoMensaje(900001), L"Filling");
  EXPECT_EQ(AfxGetApp()->TextoMensaje(900002), L"Linking");
  EXPECT_EQ(AfxGetApp()->TextoMensaje(900003), L"");
}

TEST(CWinApp, SettingsAreThoseOfTheLastThatHasThem) {
  CWinApp first;
  CWinApp second;
  EXPECT_EQ(second.CarpetaTemporal(), L"");
  EXPECT_EQ(second.Procesadores(), 0u);
  first.PonCarpetaTemporal(L"/a");
  first.PonProcesadores(3);
  EXPECT_EQ(second.CarpetaTemporal(), L"/a");
  EXPECT_EQ(second.Procesadores(), 3u);
  second.PonCarpetaTemporal(L"/b");
  second.PonProcesadores(5);
  EXPECT_EQ(second.CarpetaTemporal(), L"/b");
  EXPECT_EQ(second.Procesadores(), 5u);
}

class Profile : public testing::Test {
 protected:
  Profile() { application.SetRegistryKey(L"Maker"); }
  ScratchFolder folder;
  Environment settings{kSettingsVariable, folder.Path("settings").Utf8()};
  CWinApp application{L"tester"};
};

TEST_F(Profile, IsAFileOfTheUsersSettings) {
  EXPECT_EQ(application.FicheroPerfil(), folder.Path("settings/Maker/tester.ini"));
  EXPECT_EQ(CWinApp(L"tester").FicheroPerfil(), folder.Path("settings/tester.ini"));
}

TEST_F(Profile, NamesCannotLeaveItsFolder) {
  CWinApp other(L"../x");
  other.SetRegistryKey(L"a/b");
  EXPECT_EQ(other.FicheroPerfil(), folder.Path("settings/a_b/.._x.ini"));
}

TEST_F(Profile, TextsAndNumbersComeBack) {
  EXPECT_TRUE(application.WriteProfileString(L"Picos", L"aAlturaMin", L"1.500000"));
  EXPECT_TRUE(application.WriteProfileInt(L"Picos", L"aTipo", -300));
  EXPECT_EQ(application.GetProfileString(L"Picos", L"aAlturaMin"), L"1.500000");
  EXPECT_EQ(application.GetProfileInt(L"Picos", L"aTipo", 2), -300);
  EXPECT_EQ(CWinApp(L"other").GetProfileInt(L"Picos", L"aTipo", 2), 2);
}

TEST_F(Profile, WhatIsAbsentGivesTheDefault) {
  EXPECT_EQ(application.GetProfileString(L"s", L"k"), L"");
  EXPECT_EQ(application.GetProfileString(L"s", L"k", L"d"), L"d");
  EXPECT_EQ(application.GetProfileInt(L"s", L"k", -5), -5);
  EXPECT_EQ(application.GetProfileString(nullptr, nullptr, L"d"), L"d");
}

TEST_F(Profile, AnEmptyValueIsAnEmptyTextAndNoNumber) {
  application.WriteProfileString(L"s", L"k", L"");
  EXPECT_EQ(application.GetProfileString(L"s", L"k", L"d"), L"");
  EXPECT_EQ(application.GetProfileInt(L"s", L"k", 9), 9);
}

TEST_F(Profile, AVeryLongTextComesBackWhole) {
  const CString text(std::wstring(100000, L'\u20ac'));
  EXPECT_TRUE(application.WriteProfileString(L"s", L"k", text));
  EXPECT_EQ(application.GetProfileString(L"s", L"k"), text);
}

TEST_F(Profile, ADiskThatRefusesIsReported) {
  FaultGuard guard;
  guard.Refuse(EOperacion::Escribe);
  EXPECT_FALSE(application.WriteProfileInt(L"s", L"k", 1));
  EXPECT_EQ(application.GetProfileInt(L"s", L"k", 0), 0);
}

TEST_F(Profile, ASettingsFolderThatCannotBeMadeIsReported) {
  PutBytes(folder.Path("settings"), "a file stands in the way");
  EXPECT_FALSE(application.WriteProfileInt(L"s", L"k", 1));
}

}  // namespace
