#pragma once

#include "platform/CWnd.h"

/// A modal dialog, made of a template in the resources of the program or of a module (AfxFindResourceHandle).
class URDIMBRE_API CDialog : public CWnd {
 public:
  /// `plantilla`: the number of the template. `padre`: the window that waits for it, or null.
  explicit CDialog(unsigned plantilla, CWnd* padre = nullptr) : padre_(padre), plantilla_(plantilla) {}
  ~CDialog() override;

  [[nodiscard]] static CRuntimeClass const* GetThisClass();
  [[nodiscard]] CRuntimeClass const* GetRuntimeClass() const override;

  /// Shows the dialog until it is ended, and returns what EndDialog() was given: orden::kAcepta or orden::kCancela
  /// unless a derived class has others. -1 when it cannot be shown: no module has the template, or the system refuses.
  virtual std::intptr_t DoModal();
  void EndDialog(std::intptr_t respuesta);

  std::optional<std::intptr_t> WindowProc(CMensaje const& m) override;

 protected:
  [[nodiscard]] static AFX_MSGMAP const* GetThisMessageMap();
  [[nodiscard]] AFX_MSGMAP const* GetMessageMap() const override;

  /// The controls are there, and not yet seen: this fills them from the members. True leaves the choice of the first
  /// control that takes keys to the system.
  virtual bool OnInitDialog();
  /// Reads the controls into the members and, when all are good, ends the dialog with orden::kAcepta.
  virtual void OnOK();
  /// Ends it with orden::kCancela; the members stay.
  virtual void OnCancel();

 private:
  CWnd* padre_;
  unsigned plantilla_;
};
