#pragma once

#include "platform/CString.h"
#include "platform/CWnd.h"

/// One exchange between the members of a dialog and its controls. It lives as long as CWnd::UpdateData().
class URDIMBRE_API CDataExchange {
 public:
  CDataExchange(CWnd* dialogo, bool recoge) : m_bSaveAndValidate(recoge), m_pDlgWnd(dialogo) {}

  /// The control of a number, to be exchanged next; null when the dialog has none. Then, as after a failure, nothing is
  /// exchanged: a template may lack what a program has no use for.
  [[nodiscard]] CWnd* PrepareCtrl(int id);

  /// What the last control holds is refused: the focus goes there, and nothing more is exchanged.
  void Fail();
  [[nodiscard]] bool HaFallado() const { return fallo_; }

  bool m_bSaveAndValidate;  ///< true from the controls into the members
  CWnd* m_pDlgWnd;          ///< the dialog

 private:
  CWnd* ultimo_ = nullptr;
  bool fallo_ = false;
};

/// Exchange a member with the text of a control. Real numbers are shown with up to 15 digits, and read with a decimal
/// point whatever the locale. A text that is no such number, apart from blanks around it, or one that does not fit, is
/// told through AfxMessageBox() and fails the exchange, and the member keeps its value.
URDIMBRE_API void DDX_Text(CDataExchange* pDX, int id, CString& valor);
URDIMBRE_API void DDX_Text(CDataExchange* pDX, int id, double& valor);
URDIMBRE_API void DDX_Text(CDataExchange* pDX, int id, unsigned& valor);

/// Exchanges a member with a check box: 0 off, 1 on, 2 neither. Another value is shown as off, and stays until the box
/// is read.
URDIMBRE_API void DDX_Check(CDataExchange* pDX, int id, int& valor);
