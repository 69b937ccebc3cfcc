#include "platform/CPantallaTexto.h"

#include <gmock/gmock.h>
#include <sstream>

#include "platform/CRecursosTexto.h"
#include "shell/CMostrarTriangulosDlg.h"
#include "support/DrivenDialog.h"

namespace {

using Meseta47::CMostrarTriangulosDlg;
using testing::HasSubstr;
using testing::Not;

constexpr auto kAccepted = std::intptr_t{orden::kAcepta};
constexpr auto kCancelled = std::intptr_t{orden::kCancela};

/// A user who types these lines, and what is written for him.
class TextScreen : public testing::Test {
 protected:
  double distance = 12.5;
  int onOff = 0;
  std::string screen;

  std::intptr_t Run(CDialog& dialog, std::string const& lines) {
    std::istringstream keys(lines);
    std::ostringstream written;
    const CPantallaTexto texts(keys, written);
    const std::intptr_t answer = dialog.DoModal();
    screen = written.str();
    return answer;
  }
  std::intptr_t Run(std::string const& lines) {
    CMostrarTriangulosDlg dialog(distance, onOff);
    return Run(dialog, lines);
  }
};

TEST_F(TextScreen, ShowsADialogRowByRow) {
  EXPECT_EQ(Run(""), kCancelled);
  EXPECT_EQ(screen,
            "Show triangles\n"
            "  Distance (m)  [18298: 12.500]\n"
            "  [ ] 1004 Edges within the distance only\n"
            "  <1 OK>  <2 Cancel>  <9 Help>\n"
            "> ");
}

TEST_F(TextScreen, TypesPressesAndAccepts) {
  EXPECT_EQ(Run("18298 = 7.25\n1004\nok\n"), kAccepted);
  EXPECT_EQ(distance, 7.25);
  EXPECT_EQ(onOff, 1);
  EXPECT_THAT(screen, HasSubstr("[18298: 7.25]"));
  EXPECT_THAT(screen, HasSubstr("[x] 1004"));
}

TEST_F(TextScreen, ButtonsArePressedByNumber) {
  EXPECT_EQ(Run("18298=1\n1\n"), kAccepted);
  EXPECT_EQ(distance, 1.0);
  EXPECT_EQ(Run("2\n"), kCancelled);
}

TEST_F(TextScreen, TheEndOfTheInputCancels) {
  EXPECT_EQ(Run("18298 = 99\n"), kCancelled);
  EXPECT_EQ(distance, 12.5);
}

TEST_F(TextScreen, F1AsksForHelpAndTheDialogStays) {
  ListeningApp application;
  EXPECT_EQ(Run("f1\n18298 = 3\nf1\nok\n"), kAccepted);
  EXPECT_EQ(application.help.size(), 2U) << "of the dialog, and of the box that has the focus";
}

TEST_F(TextScreen, WhatCannotBeDoneIsSaidAndChangesNothing) {
  for (char const* const line : {"4711 = 3", "4711", "1004 = 3", "18298", "hello", "12x = 3", "= 3"}) {
    SCOPED_TRACE(line);
    EXPECT_EQ(Run(std::string(line) + "\nok\n"), kAccepted);
    EXPECT_THAT(screen, HasSubstr("\"" + std::string(line) + "\" is not to be done here"));
    EXPECT_EQ(distance, 12.5);
  }
}

TEST_F(TextScreen, BlankLinesOnlyShowTheDialogAgain) {
  EXPECT_EQ(Run("\n  \ncancel\n"), kCancelled);
  EXPECT_THAT(screen, Not(HasSubstr("not to be done")));
}

class Unreachable : public CDialog {
 public:
  Unreachable() : CDialog(12103) {}

 protected:
  bool OnInitDialog() override {
    GetDlgItem(1004)->ShowWindow(false);
    GetDlgItem(18298)->EnableWindow(false);
    GetDlgItem(18298)->SetWindowTextW(L"7");
    return true;
  }
};

TEST_F(TextScreen, WhatIsHiddenOrTakesNothingIsOutOfReach) {
  Unreachable dialog;
  Run(dialog, "1004\n18298 = 3\ncancel\n");
  EXPECT_THAT(screen, HasSubstr("\"1004\" is not to be done here"));
  EXPECT_THAT(screen, HasSubstr("\"18298 = 3\" is not to be done here"));
  EXPECT_THAT(screen, Not(HasSubstr("1004 Edges")));
  EXPECT_THAT(screen, HasSubstr("(7)")) << "shown, but without the number by which one could type there";
}

class WillNotGo : public CDialog {
 public:
  WillNotGo() : CDialog(12103) {}
  int asked = 0;

 protected:
  void OnCancel() override { ++asked; }
};

TEST_F(TextScreen, ADialogThatWillNotBeCancelledGoesWhenNobodyIsLeft) {
  WillNotGo dialog;
  EXPECT_EQ(Run(dialog, "cancel\n"), kCancelled);
  EXPECT_EQ(dialog.asked, 2);
}

TEST_F(TextScreen, TheLastOneMadeIsInUse) {
  std::istringstream none;
  std::ostringstream unused;
  const CPantallaTexto outer(none, unused);
  EXPECT_EQ(Run("ok\n"), kAccepted);
  EXPECT_EQ(CPantallaTexto::Actual(), &outer);
  EXPECT_EQ(unused.str(), "");
}

TEST(NoScreen, ADialogIsCancelled) {
  ASSERT_EQ(CPantallaTexto::Actual(), nullptr);
  EXPECT_EQ(CDialog(12103).DoModal(), kCancelled);
}

TEST(ResourceScripts, AProgramsOwnComeBeforeTheLibrarys) {
  HINSTANCE const library = AfxFindResourceHandle(12103, recurso::kDialogo);
  {
    const CRecursosTexto own("12103 DIALOGEX 0, 0, 10, 10\nCAPTION \"Mine\"\nBEGIN\nEND\n");
    EXPECT_EQ(own.LineaMala(), 0U);
    EXPECT_EQ(AfxFindResourceHandle(12103, recurso::kDialogo), own.Modulo());
    AfxSetResourceHandle(library);
    EXPECT_EQ(AfxFindResourceHandle(12103, recurso::kDialogo), library) << "unless another one is set first";
    AfxSetResourceHandle(nullptr);
    EXPECT_EQ(AfxFindResourceHandle(104, recurso::kIcono), library) << "what it lacks the others have";
  }
  EXPECT_EQ(AfxFindResourceHandle(12103, recurso::kDialogo), library);
}

TEST(ResourceScripts, AModuleThatHasGoneHasNothing) {
  HINSTANCE gone = nullptr;
  {
    const CRecursosTexto own("7 ICON \"x.ico\"\n");
    gone = own.Modulo();
    EXPECT_NE(CargaIcono(gone, 7), nullptr);
  }
  AfxSetResourceHandle(gone);
  EXPECT_EQ(AfxFindResourceHandle(7, recurso::kIcono), nullptr);
  EXPECT_NE(AfxFindResourceHandle(104, recurso::kIcono), nullptr);
  AfxSetResourceHandle(nullptr);
}

TEST(ResourceScripts, EveryUsualControlIsUnderstood) {
  const CRecursosTexto own(
      "#include <windows.h>\n"
      "// a comment\n"
      "/* another, 99 ICON \"no\"\n of two lines */\n"
      "0x10 DIALOGEX 1, 2, 3, 4\n"
      "EXSTYLE WS_EX_APPWINDOW\n"
      "STYLE DS_SETFONT | WS_POPUP\n"
      "CAPTION \"\xC3\x91 \"\"quoted\"\"\"\n"
      "FONT 8, \"MS Shell Dlg\", 400, 0, 0x1\n"
      "BEGIN\n"
      "  LTEXT \"a\", -1, 1, 2, 3, 4\n"
      "  EDITTEXT 21, 5, 6, 7, 8, ES_READONLY | NOT WS_VISIBLE\n"
      "  AUTOCHECKBOX \"b\", 22, 1, 1, 1, 1, WS_DISABLED\n"
      "  GROUPBOX \"c\", 23, 1, 1, 1, 1\n"
      "  CONTROL \"d\", 24, \"Button\", BS_AUTOCHECKBOX | WS_TABSTOP, 9, 8, 7, 6\n"
      "  CONTROL \"e\", 25, \"Button\", BS_GROUPBOX, 9, 8, 7, 6\n"
      "  CONTROL \"f\", 26, \"Button\", WS_TABSTOP, 9, 8, 7, 6\n"
      "  CONTROL \"g\", 27, \"Edit\", ES_READONLY, 9, 8, 7, 6\n"
      "  CONTROL \"h\", 28, \"Static\", NOT WS_VISIBLE, 9, 8, 7, 6, WS_EX_RIGHT\n"
      "  DEFPUSHBUTTON \"i\", 1, 1, 1, 1, 1\n"
      "END\n"
      "104 ICON \"a.ico\"\n");
  ASSERT_EQ(own.LineaMala(), 0U);
  using EKind = CPlantillaControl::EClase;
  CPlantillaDialogo const& dialog = *own.Dialogo(16);
  EXPECT_EQ(dialog.titulo, L"\u00d1 \"quoted\"");
  ASSERT_EQ(dialog.controles.size(), 10U);
  const EKind kinds[] = {EKind::Texto, EKind::Edicion, EKind::Casilla, EKind::Marco, EKind::Casilla,
                         EKind::Marco, EKind::Boton,   EKind::Edicion, EKind::Texto, EKind::Boton};
  for (std::size_t i = 0; i < 10; ++i) EXPECT_EQ(dialog.controles[i].clase, kinds[i]) << i;
  EXPECT_EQ(dialog.controles[0].id, -1);
  EXPECT_EQ(dialog.controles[1].x, 5);
  EXPECT_EQ(dialog.controles[1].y, 6);
  EXPECT_TRUE(dialog.controles[1].soloLectura);
  EXPECT_FALSE(dialog.controles[1].visible);
  EXPECT_FALSE(dialog.controles[2].admite);
  EXPECT_EQ(dialog.controles[4].x, 9);
  EXPECT_TRUE(dialog.controles[7].soloLectura);
  EXPECT_FALSE(dialog.controles[8].visible);
  EXPECT_EQ(own.Icono(104)->fichero, L"a.ico");
  EXPECT_EQ(own.Icono(99), nullptr);
}

TEST(ResourceScripts, TheLineThatIsNotUnderstoodIsTold) {
  const std::pair<char const*, unsigned> scripts[] = {
      {"MENU 7\n", 1},
      {"7 ICON \"a.ico\"\n8 BITMAP \"b.bmp\"\n", 2},
      {"7 DIALOGEX 0, 0, 1\nBEGIN\nEND\n", 2},
      {"7 DIALOGEX 0, 0, 1, 1\nBEGIN\n  LTEXT \"a\", -1, 1, 2, 3, 4\n  SLIDER 9, 1, 1, 1, 1\nEND\n", 4},
      {"7 DIALOGEX 0, 0, 1, 1\nCAPTION \"open\nBEGIN\nEND\n", 2},
      {"7 DIALOGEX 0, 0, 1, 1\nBEGIN\n", 3},
  };
  for (auto const& [script, line] : scripts) {
    const CRecursosTexto resources(script);
    EXPECT_EQ(resources.LineaMala(), line) << script;
    EXPECT_EQ(resources.Dialogo(7), nullptr) << "half a dialog is none";
  }
  EXPECT_NE(CRecursosTexto(scripts[1].first).Icono(7), nullptr) << "what stands before is there";
}

}  // namespace
