// Shows one of the library's dialogs as a program would, and then what came of it, in a box and on the standard output:
// show_dialog tetrahedron|triangles
#include <cstdio>
#include <cstring>
#include <windows.h>

#include "platform/CWinApp.h"
#include "shell/CInfoTetraedroDlg.h"
#include "shell/CMostrarTriangulosDlg.h"
#include "tetrahedral/CTetraedro.h"

namespace {

using namespace Meseta47;

void Show(CString const& text, wchar_t const* title) { ::MessageBoxW(::GetActiveWindow(), text, title, MB_OK); }

/// A program with a box in the place of its help.
class Program : public CWinApp {
 public:
  bool HtmlHelp(std::uintptr_t place, unsigned command) override {
    CString text;
    text.Format(L"Page %u by command %u", static_cast<unsigned>(place), command);
    Show(text, L"Help");
    return true;
  }
};

wchar_t const* Said(std::intptr_t answer) { return answer == orden::kAcepta ? L"OK" : L"Cancel"; }

void Tell(CString const& text) {
  std::puts(text.Utf8().c_str());
  Show(text, L"Outcome");
}

void ShowTetrahedron() {
  // One as wide as coordinates can be, with a corner of the frame.
  CCoor3D<int> points[] = {{-2147483647, -2147483647, -500, -3},
                           {2147483647, -2147483647, 1250375, 1},
                           {-2147483647, 2147483647, 2400125, 2},
                           {450123456, 448123456, 3478005, 3}};
  CTetraedro tetrahedron(&points[0], &points[1], &points[2], &points[3]);
  CInfoTetraedroDlg dialog(tetrahedron, 4294967295U, 1000);
  CString text;
  wchar_t const* const said = Said(dialog.DoModal());
  text.Format(L"%ls: x %.3f", said, dialog.x[0]);
  Tell(text);
}

void ShowTriangles() {
  double distance = 12.3456;
  int onOff = 0;
  CMostrarTriangulosDlg dialog(distance, onOff);
  CString text;
  wchar_t const* const said = Said(dialog.DoModal());
  text.Format(L"%ls: distance %.4f, switch %d", said, distance, onOff);
  Tell(text);
}

}  // namespace

int main(int count, char** words) {
  const Program program;
  if (count == 2 && std::strcmp(words[1], "tetrahedron") == 0) {
    ShowTetrahedron();
  } else if (count == 2 && std::strcmp(words[1], "triangles") == 0) {
    ShowTriangles();
  } else {
    return 2;
  }
  return 0;
}
