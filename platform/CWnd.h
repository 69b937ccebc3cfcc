#pragma once

#include <map>
#include <memory>

#include "platform/CCmdTarget.h"
#include "platform/CString.h"

class CDataExchange;
struct HWND__;  // the window system's
using HWND = HWND__*;

/// A window: a dialog, or one of its controls. Where there is none on the screen, its operations do nothing, and its
/// questions are answered with no, 0 or an empty text. Used by the thread that shows it.
class URDIMBRE_API CWnd : public CCmdTarget {
 public:
  CWnd() = default;
  explicit CWnd(HWND ventana) : m_hWnd(ventana) {}
  CWnd(CWnd const&) = delete;
  CWnd& operator=(CWnd const&) = delete;
  ~CWnd() override;

  [[nodiscard]] static CRuntimeClass const* GetThisClass();
  [[nodiscard]] CRuntimeClass const* GetRuntimeClass() const override;

  /// The control of a dialog with this number, or null. It is the dialog's, and good as long as the dialog is shown.
  [[nodiscard]] CWnd* GetDlgItem(int id);

  /// The text of an edit box, the label of a button, the title of a dialog.
  void SetWindowTextW(wchar_t const* texto);
  [[nodiscard]] CString GetWindowTextW() const;

  /// Whether a control takes anything from the user, and whether it is seen. The two changes answer how it was before.
  bool EnableWindow(bool admite = true);
  [[nodiscard]] bool IsWindowEnabled() const;
  bool ShowWindow(bool visible = true);
  [[nodiscard]] bool IsWindowVisible() const;

  /// Moves the window to the middle of its parent, or of the screen.
  void CenterWindow();
  /// The next key goes to this window.
  void SetFocus();

  /// Has a message dealt with at once, and returns the answer; or later, in the order of posting, once the window waits
  /// for its user. False when it cannot be posted.
  std::intptr_t SendMessageW(unsigned numero, std::uintptr_t primero = 0, std::intptr_t segundo = 0);
  bool PostMessageW(unsigned numero, std::uintptr_t primero = 0, std::intptr_t segundo = 0);

  /// Moves the members of a dialog into its controls (false), or what the controls hold into the members (true). False
  /// when a control holds what its member cannot: the user has been told, and the members up to that one are changed.
  bool UpdateData(bool recoge = true);

  /// What the window system calls with each message to a window of this class. The answer, or nothing when the message
  /// is left to the system.
  virtual std::optional<std::intptr_t> WindowProc(CMensaje const& m);

  HWND m_hWnd = nullptr;  ///< null while the window is not on the screen

 protected:
  /// The exchange of each member with its control, by the DDX_ functions; this one has none.
  virtual void DoDataExchange(CDataExchange* pDX);
  /// Forgets the window and its controls, once they have gone from the screen.
  void OlvidaVentana();

 private:
  std::map<int, std::unique_ptr<CWnd>> controles_;
};
