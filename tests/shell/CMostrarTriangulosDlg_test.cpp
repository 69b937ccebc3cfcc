#include "shell/CMostrarTriangulosDlg.h"

#include <gmock/gmock.h>

#include "platform/Recursos.h"
#include "support/DrivenDialog.h"

namespace {

using Meseta47::CMostrarTriangulosDlg;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kAccepted = std::intptr_t{orden::kAcepta};
constexpr auto kCancelled = std::intptr_t{orden::kCancela};

class ShowTriangles : public testing::Test {
 protected:
  double distance = 12.3456;
  int onOff = 1;
  Driven<CMostrarTriangulosDlg> dialog{distance, onOff};

  std::intptr_t AcceptedWith(wchar_t const* text) {
    dialog.steps = {[=](auto& d) { d.Type(18298, text); }, [](auto& d) { d.Press(orden::kAcepta); }};
    return dialog.DoModal();
  }
};

TEST_F(ShowTriangles, HoldsTheCallersVariables) {
  EXPECT_EQ(dialog.distancia, &distance);
  EXPECT_EQ(dialog.interruptor, &onOff);
  EXPECT_TRUE(dialog.textoDistancia.IsEmpty()) << "until it is shown";
}

TEST_F(ShowTriangles, ShowsTheDistanceWithThreeDecimalsAndTheSwitch) {
  dialog.steps = {[](auto& d) {
    EXPECT_EQ(d.Shown(18298), L"12.346");
    EXPECT_EQ(d.textoDistancia, L"12.346");
    *d.interruptor = 0;
    EXPECT_TRUE(d.UpdateData(true));
    EXPECT_EQ(*d.interruptor, 1) << "the check box was on, as the caller's value was";
  }};
  dialog.DoModal();
}

TEST_F(ShowTriangles, OkStoresTheDistanceTyped) {
  EXPECT_EQ(AcceptedWith(L"7.25"), kAccepted);
  EXPECT_EQ(distance, 7.25);
}

TEST_F(ShowTriangles, OkOfTheUntouchedTextStoresWhatItShows) {
  dialog.steps = {[](auto& d) { d.Press(orden::kAcepta); }};
  EXPECT_EQ(dialog.DoModal(), kAccepted);
  EXPECT_EQ(distance, 12.346);
}

TEST_F(ShowTriangles, AnEmptyDistanceIsZeroOnOk) {
  EXPECT_EQ(AcceptedWith(L""), kAccepted);
  EXPECT_EQ(distance, 0.0);
}

TEST_F(ShowTriangles, ATextThatBeginsWithANumberIsThatNumber) {
  EXPECT_EQ(AcceptedWith(L" -3.5 metres"), kAccepted);
  EXPECT_EQ(distance, -3.5);
}

TEST_F(ShowTriangles, ATextThatIsNoNumberIsZero) {
  EXPECT_EQ(AcceptedWith(L"metres"), kAccepted);
  EXPECT_EQ(distance, 0.0);
}

TEST_F(ShowTriangles, TheSwitchGoesIntoTheCallersIntegerOnOk) {
  dialog.steps = {[](auto& d) { d.Press(1004); }, [this](auto&) { EXPECT_EQ(onOff, 1) << "not before it is accepted"; },
                  [](auto& d) { d.Press(orden::kAcepta); }};
  EXPECT_EQ(dialog.DoModal(), kAccepted);
  EXPECT_EQ(onOff, 0);
}

TEST_F(ShowTriangles, CancelLeavesDistanceAndSwitchAsTheyWere) {
  dialog.steps = {[](auto& d) { d.Type(18298, L"99"); }, [](auto& d) { d.Press(1004); },
                  [](auto& d) { d.Press(orden::kCancela); }};
  EXPECT_EQ(dialog.DoModal(), kCancelled);
  EXPECT_EQ(distance, 12.3456);
  EXPECT_EQ(onOff, 1);
}

TEST_F(ShowTriangles, IsGivenTheModulesIcon) {
  HICON const icon = CargaIcono(AfxFindResourceHandle(104, recurso::kIcono), 104);
  ASSERT_NE(icon, nullptr);
  dialog.steps = {
      [&](auto& d) { EXPECT_EQ(d.SendMessageW(mensaje::kPonIcono, 0, 0), reinterpret_cast<std::intptr_t>(icon)); }};
  dialog.DoModal();
}

TEST_F(ShowTriangles, AsksForItsHelpByButtonMenuAndF1AndStaysOpen) {
  ListeningApp application;
  dialog.steps = {[](auto& d) { d.Press(9); }, [](auto& d) { d.Command(orden::kAyudaPrograma); },
                  [](auto& d) { EXPECT_EQ(d.SendMessageW(mensaje::kAyuda), 1); },
                  [&](auto& d) {
                    const std::pair asked(std::uintptr_t{143175}, 15U);
                    EXPECT_THAT(application.help, ElementsAre(asked, asked, asked));
                    d.Press(orden::kAcepta);
                  }};
  EXPECT_EQ(dialog.DoModal(), kAccepted);
}

class WithOwnHelp : public CMostrarTriangulosDlg {
 public:
  using CMostrarTriangulosDlg::CMostrarTriangulosDlg;
  int asked = 0;

 protected:
  void OnHelp() override { ++asked; }
};

TEST(ShowTrianglesDerived, F1AndTheButtonGoThroughTheVirtualOperation) {
  ListeningApp application;
  double distance = 1;
  int onOff = 0;
  Driven<WithOwnHelp> dialog(distance, onOff);
  dialog.steps = {[](auto& d) { d.SendMessageW(mensaje::kAyuda); }, [](auto& d) { d.Press(9); }};
  EXPECT_EQ(dialog.DoModal(), kCancelled);
  EXPECT_EQ(dialog.asked, 2);
  EXPECT_THAT(application.help, IsEmpty());
}

TEST(ShowTrianglesClass, HasInformationOfItsOwn) {
  double distance = 0;
  int onOff = 0;
  const CMostrarTriangulosDlg dialog(distance, onOff);
  EXPECT_STREQ(dialog.GetRuntimeClass()->m_lpszClassName, "CMostrarTriangulosDlg");
  EXPECT_TRUE(dialog.IsKindOf(CDialog::GetThisClass()));
}

}  // namespace
