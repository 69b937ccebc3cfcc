#include "platform/CDialog.h"

#include <gmock/gmock.h>
#include <limits>

#include "platform/CDataExchange.h"
#include "platform/Recursos.h"
#include "support/DrivenDialog.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A template of the library's with an edit box, a check box and three buttons.
constexpr unsigned kTemplate = 12103;
constexpr int kEdit = 18298;
constexpr int kCheck = 1004;

/// A dialog with one member of a kind on the edit box, and one on a control that the template lacks.
template <class TValue>
class Asking : public CDialog {
 public:
  explicit Asking(TValue start) : CDialog(kTemplate), value(start) {}
  TValue value;
  CString after = L"kept";
  int check = 0;

 protected:
  void DoDataExchange(CDataExchange* pDX) override {
    DDX_Text(pDX, 999, nowhere_);
    DDX_Text(pDX, kEdit, value);
    DDX_Check(pDX, kCheck, check);
  }

 private:
  CString nowhere_;
};

/// What a dialog shows for a value, and what becomes of the value when a text is typed in its place and accepted.
template <class TValue>
CString ShownFor(TValue value) {
  CString shown;
  Driven<Asking<TValue>> dialog(value);
  dialog.steps = {[&](auto& d) { shown = d.Shown(kEdit); }};
  EXPECT_EQ(dialog.DoModal(), std::intptr_t{orden::kCancela});
  return shown;
}

template <class TValue>
std::pair<bool, TValue> Accepted(TValue start, wchar_t const* text) {
  Driven<Asking<TValue>> dialog(start);
  dialog.steps = {[&](auto& d) { d.Type(kEdit, text); }, [](auto& d) { d.Press(orden::kAcepta); }};
  const bool accepted = dialog.DoModal() == std::intptr_t{orden::kAcepta};
  return {accepted, dialog.value};
}

TEST(ClassInformation, LeadsFromADialogToTheRoot) {
  const CDialog dialog(kTemplate);
  EXPECT_EQ(dialog.GetRuntimeClass(), CDialog::GetThisClass());
  EXPECT_STREQ(CDialog::GetThisClass()->m_lpszClassName, "CDialog");
  EXPECT_EQ(CDialog::GetThisClass()->m_pBaseClass, CWnd::GetThisClass());
  EXPECT_EQ(CWnd::GetThisClass()->m_pBaseClass, CCmdTarget::GetThisClass());
  EXPECT_EQ(CCmdTarget::GetThisClass()->m_pBaseClass, CObject::GetThisClass());
  EXPECT_EQ(CObject::GetThisClass()->m_pBaseClass, nullptr);
}

TEST(ClassInformation, KindIsTheClassAndItsBasesAndNothingElse) {
  const CDialog dialog(kTemplate);
  EXPECT_TRUE(dialog.IsKindOf(CDialog::GetThisClass()));
  EXPECT_TRUE(dialog.IsKindOf(CObject::GetThisClass()));
  EXPECT_FALSE(CWnd().IsKindOf(CDialog::GetThisClass()));
  EXPECT_FALSE(CWnd::GetThisClass()->IsDerivedFrom(CDialog::GetThisClass()));
}

TEST(ClassInformation, AClassWithoutItsOwnCountsAsItsBase) {
  EXPECT_STREQ(CWinApp().GetRuntimeClass()->m_lpszClassName, "CCmdTarget");
}

class Mapped : public CCmdTarget {
 public:
  int base = 0;

 protected:
  void OnOne() { base = 1; }
  void OnTwo() { base = 2; }
  static AFX_MSGMAP const* GetThisMessageMap() {
    static constexpr AFX_MSGMAP_ENTRY entries[] = {mapa::Orden<Mapped, &Mapped::OnOne>(1),
                                                   mapa::Orden<Mapped, &Mapped::OnTwo>(2)};
    static const AFX_MSGMAP map{CCmdTarget::GetThisMessageMap(), entries};
    return &map;
  }
  AFX_MSGMAP const* GetMessageMap() const override { return GetThisMessageMap(); }
};

class MoreMapped : public Mapped {
 public:
  int derived = 0;
  bool OnHelpInfo(HELPINFO* about) { return about == nullptr; }
  std::intptr_t OnOwn(std::uintptr_t first, std::intptr_t second) { return static_cast<std::intptr_t>(first) - second; }

 protected:
  void OnTwo() { derived = 2; }
  AFX_MSGMAP const* GetMessageMap() const override {
    static constexpr AFX_MSGMAP_ENTRY entries[] = {mapa::Orden<MoreMapped, &MoreMapped::OnTwo>(2),
                                                   mapa::Ayuda<MoreMapped, &MoreMapped::OnHelpInfo>(),
                                                   mapa::Mensaje<MoreMapped, &MoreMapped::OnOwn>(mensaje::kPropio + 3)};
    static const AFX_MSGMAP map{Mapped::GetThisMessageMap(), entries};
    return &map;
  }
};

TEST(MessageMap, TheMostDerivedEntryIsCalledAndOthersAreInherited) {
  MoreMapped target;
  EXPECT_TRUE(target.Despacha({mensaje::kOrden, 1, 0}));
  EXPECT_EQ(target.base, 1);
  EXPECT_TRUE(target.Despacha({mensaje::kOrden, 2, 0}));
  EXPECT_EQ(target.base, 1) << "the base's entry for 2 is hidden";
  EXPECT_EQ(target.derived, 2);
}

TEST(MessageMap, ACommandIsKnownByItsNumberWhateverTheControlDid) {
  Mapped target;
  EXPECT_TRUE(target.Despacha({mensaje::kOrden, (5U << 16) | 2U, 0}));
  EXPECT_EQ(target.base, 2);
}

TEST(MessageMap, MessagesTakeTheirArgumentsAndAnswer) {
  MoreMapped target;
  EXPECT_EQ(target.Despacha({mensaje::kPropio + 3, 9, 4}), 5);
  EXPECT_EQ(target.Despacha({mensaje::kAyuda, 0, 0}), 1);
}

TEST(MessageMap, WhatHasNoEntryIsLeftToTheSystem) {
  MoreMapped target;
  EXPECT_EQ(target.Despacha({mensaje::kOrden, 3, 0}), std::nullopt);
  EXPECT_EQ(target.Despacha({mensaje::kPropio, 2, 0}), std::nullopt);
}

TEST(CWnd, OneThatIsNotOnTheScreenAnswersWithNothing) {
  CWnd window;
  EXPECT_EQ(window.GetDlgItem(1), nullptr);
  EXPECT_EQ(window.GetWindowTextW(), L"");
  EXPECT_FALSE(window.IsWindowEnabled());
  EXPECT_FALSE(window.IsWindowVisible());
  EXPECT_FALSE(window.EnableWindow());
  EXPECT_FALSE(window.ShowWindow());
  EXPECT_EQ(window.SendMessageW(mensaje::kOrden, 1), 0);
  EXPECT_FALSE(window.PostMessageW(mensaje::kOrden, 1));
  window.CenterWindow();
  window.SetFocus();
  window.SetWindowTextW(L"lost");
  EXPECT_TRUE(window.UpdateData(false));
  EXPECT_EQ(window.GetWindowTextW(), L"");
}

TEST(CDialog, ATemplateThatNobodyHasCannotBeShown) { EXPECT_EQ(CDialog(4711).DoModal(), -1); }

TEST(CDialog, IsOnTheScreenOnlyWhileItIsShown) {
  Driven<CDialog> dialog(kTemplate);
  HWND during = nullptr;
  dialog.steps = {[&](auto& d) { during = d.m_hWnd; }};
  dialog.DoModal();
  EXPECT_NE(during, nullptr);
  EXPECT_EQ(dialog.m_hWnd, nullptr);
  EXPECT_EQ(dialog.GetDlgItem(kEdit), nullptr);
}

TEST(CDialog, CannotBeShownTwiceAtOnceButAgainAfterwards) {
  Driven<CDialog> dialog(kTemplate);
  std::intptr_t inner = 0;
  dialog.steps = {[&](auto& d) { inner = d.DoModal(); }, [](auto& d) { d.EndDialog(77); }};
  EXPECT_EQ(dialog.DoModal(), 77);
  EXPECT_EQ(inner, -1);
  EXPECT_EQ(dialog.DoModal(), 77);
  EXPECT_EQ(dialog.initialised, 2);
}

TEST(CDialog, TheButtonsEndItWithTheirAnswers) {
  Driven<CDialog> accepted(kTemplate);
  accepted.steps = {[](auto& d) { d.Press(orden::kAcepta); }};
  EXPECT_EQ(accepted.DoModal(), std::intptr_t{orden::kAcepta});
  Driven<CDialog> cancelled(kTemplate);
  cancelled.steps = {[](auto& d) { d.Press(orden::kCancela); }};
  EXPECT_EQ(cancelled.DoModal(), std::intptr_t{orden::kCancela});
}

TEST(CDialog, ItsTitleAndItsControlsCanBeReadAndChanged) {
  Driven<CDialog> dialog(kTemplate);
  dialog.steps = {[](auto& d) {
    EXPECT_EQ(d.GetWindowTextW(), L"Show triangles");
    d.SetWindowTextW(L"Otra \u03a9");
    EXPECT_EQ(d.GetWindowTextW(), L"Otra \u03a9");
    d.ShowWindow();  // a system may show a dialog only once it has nothing else to do
    CWnd& box = *d.GetDlgItem(kEdit);
    EXPECT_EQ(d.GetDlgItem(kEdit), &box) << "one window object a control";
    EXPECT_TRUE(box.IsWindowEnabled());
    EXPECT_TRUE(box.EnableWindow(false)) << "it answers how it was";
    EXPECT_FALSE(box.IsWindowEnabled());
    EXPECT_FALSE(box.EnableWindow());
    EXPECT_TRUE(box.ShowWindow(false));
    EXPECT_FALSE(box.IsWindowVisible());
    EXPECT_FALSE(box.ShowWindow());
    EXPECT_TRUE(box.IsWindowVisible());
    EXPECT_EQ(d.GetDlgItem(4711), nullptr);
  }};
  EXPECT_EQ(dialog.DoModal(), std::intptr_t{orden::kCancela});
}

TEST(CDialog, TheIconSetBeforeIsTheAnswerToTheNext) {
  Driven<CDialog> dialog(kTemplate);
  HICON const icon = CargaIcono(AfxFindResourceHandle(104, recurso::kIcono), 104);
  ASSERT_NE(icon, nullptr);
  dialog.steps = {[&](auto& d) {
    EXPECT_EQ(d.SendMessageW(mensaje::kPonIcono, 0, reinterpret_cast<std::intptr_t>(icon)), 0);
    EXPECT_EQ(d.SendMessageW(mensaje::kPonIcono, 0, 0), reinterpret_cast<std::intptr_t>(icon));
  }};
  dialog.DoModal();
}

TEST(DataExchange, RealNumbersAreShownWithAllTheirDigits) {
  EXPECT_EQ(ShownFor(0.1), L"0.1");
  EXPECT_EQ(ShownFor(4472135.955), L"4472135.955");
  EXPECT_EQ(ShownFor(-2147483.648), L"-2147483.648");
  EXPECT_EQ(ShownFor(1.0), L"1");
}

TEST(DataExchange, RealNumbersAreReadWithAPointAndWithoutRegardToBlanks) {
  EXPECT_EQ(Accepted(0.0, L"7.25"), std::pair(true, 7.25));
  EXPECT_EQ(Accepted(0.0, L"  -1e3\t"), std::pair(true, -1000.0));
  EXPECT_EQ(Accepted(0.0, L"+0.5"), std::pair(true, 0.5));
}

TEST(DataExchange, WhatIsNoNumberIsToldAndTheDialogStays) {
  for (wchar_t const* const text : {L"", L"seven", L"7,25", L"7 m", L"+-1", L"1e999", L"  "}) {
    ListeningApp application;
    EXPECT_EQ(Accepted(3.5, text), std::pair(false, 3.5)) << CString(text);
    EXPECT_THAT(application.boxes, ElementsAre(CString(L"Please enter a number."))) << CString(text);
  }
}

TEST(DataExchange, WholeNumbersAreNeitherNegativeNorTooGreat) {
  EXPECT_EQ(ShownFor(4294967295U), L"4294967295");
  EXPECT_EQ(Accepted(0U, L" 4294967295 "), std::pair(true, 4294967295U));
  for (wchar_t const* const text : {L"", L"-1", L"4294967296", L"1.5"}) {
    ListeningApp application;
    EXPECT_EQ(Accepted(7U, text), std::pair(false, 7U)) << CString(text);
    EXPECT_THAT(application.boxes, ElementsAre(CString(L"Please enter a positive integer."))) << CString(text);
  }
}

TEST(DataExchange, TextsGoBothWaysAsTheyAre) {
  EXPECT_EQ(ShownFor(CString(L"\u00d1and\u00fa \u6c34")), L"\u00d1and\u00fa \u6c34");
  EXPECT_EQ(Accepted(CString(L"a"), L" b "), std::pair(true, CString(L" b ")));
  EXPECT_EQ(Accepted(CString(L"a"), L""), std::pair(true, CString()));
}

TEST(DataExchange, AfterAFailureNothingMoreIsExchanged) {
  Driven<Asking<double>> dialog(3.5);
  dialog.steps = {[](auto& d) {
    d.Type(kEdit, L"x");
    d.Press(kCheck);
    EXPECT_FALSE(d.UpdateData(true));
    EXPECT_EQ(d.check, 0) << "the check box comes after the box that was refused";
    d.Type(kEdit, L"2");
    EXPECT_TRUE(d.UpdateData(true));
    EXPECT_EQ(d.check, 1);
  }};
  dialog.DoModal();
  EXPECT_EQ(dialog.value, 2.0);
}

TEST(DataExchange, ACheckBoxOfAValueThatIsNoneIsOffAndTheValueStays) {
  for (const int value : {-1, 3, 1000}) {
    Driven<Asking<double>> dialog(0.0);
    dialog.check = value;
    dialog.steps = {[&](auto& d) {
      EXPECT_EQ(d.check, value);
      EXPECT_TRUE(d.UpdateData(true));
      EXPECT_EQ(d.check, 0);
    }};
    dialog.DoModal();
  }
}

TEST(DataExchange, ACheckBoxTurnsWithEachPress) {
  Driven<Asking<double>> dialog(0.0);
  dialog.check = 1;
  dialog.steps = {[](auto& d) { d.Press(kCheck); },
                  [](auto& d) {
                    d.UpdateData(true);
                    EXPECT_EQ(d.check, 0);
                    d.Press(kCheck);
                  },
                  [](auto& d) { d.Press(orden::kAcepta); }};
  EXPECT_EQ(dialog.DoModal(), std::intptr_t{orden::kAcepta});
  EXPECT_EQ(dialog.check, 1);
}

TEST(Resources, AreFoundByNumberAndType) {
  EXPECT_NE(AfxFindResourceHandle(kTemplate, recurso::kDialogo), nullptr);
  EXPECT_NE(AfxFindResourceHandle(104, recurso::kIcono), nullptr);
  EXPECT_EQ(AfxFindResourceHandle(kTemplate, recurso::kIcono), nullptr);
  EXPECT_EQ(AfxFindResourceHandle(104, recurso::kDialogo), nullptr);
  EXPECT_EQ(AfxFindResourceHandle(4711, recurso::kDialogo), nullptr);
  EXPECT_EQ(CargaIcono(nullptr, 104), nullptr);
}

TEST(Resources, AModuleThatIsSetFirstMayLackThem) {
  HINSTANCE const ours = AfxFindResourceHandle(kTemplate, recurso::kDialogo);
  AfxSetResourceHandle(ours);
  EXPECT_EQ(AfxGetResourceHandle(), ours);
  EXPECT_EQ(AfxFindResourceHandle(kTemplate, recurso::kDialogo), ours);
  EXPECT_EQ(AfxFindResourceHandle(4711, recurso::kDialogo), nullptr);
  AfxSetResourceHandle(nullptr);
}

TEST(Help, AProgramWithoutAHelpFileHasNone) {
  CWinApp application;
  EXPECT_FALSE(application.HtmlHelp(1));
  ListeningApp listening;
  EXPECT_TRUE(AfxGetApp()->HtmlHelp(143175));
  EXPECT_THAT(listening.help, ElementsAre(std::pair(std::uintptr_t{143175}, 15U))) << "by its number, unless told";
  EXPECT_THAT(listening.boxes, IsEmpty());
}

}  // namespace
