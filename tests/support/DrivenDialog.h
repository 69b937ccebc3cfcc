#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "platform/CDialog.h"
#include "platform/CWinApp.h"

/// A dialog that works itself: once it is on the screen it takes its steps, one by one, in turn with its messages. So
/// one test serves windows and the stand-ins for them. What has not been ended by its last step is cancelled.
template <class TDialog>
class Driven : public TDialog {
 public:
  using TDialog::TDialog;

  std::vector<std::function<void(Driven&)>> steps;
  int initialised = 0;

  void Type(int id, wchar_t const* text) { this->GetDlgItem(id)->SetWindowTextW(text); }
  [[nodiscard]] CString Shown(int id) { return this->GetDlgItem(id)->GetWindowTextW(); }
  void Press(int id) { this->GetDlgItem(id)->SendMessageW(mensaje::kPulsa); }
  void Command(unsigned id) { this->SendMessageW(mensaje::kOrden, id); }

  std::optional<std::intptr_t> WindowProc(CMensaje const& m) override {
    if (m.numero != mensaje::kPropio) return TDialog::WindowProc(m);
    if (m.primero < steps.size()) {
      steps[m.primero](*this);
      this->PostMessageW(mensaje::kPropio, m.primero + 1);
    } else {
      Command(orden::kCancela);
    }
    return 0;
  }

 protected:
  bool OnInitDialog() override {
    ++initialised;
    const bool answer = TDialog::OnInitDialog();
    this->PostMessageW(mensaje::kPropio);
    return answer;
  }
};

/// A program that keeps what it is asked to show.
class ListeningApp : public CWinApp {
 public:
  int DoMessageBox(wchar_t const* text, unsigned, unsigned) override {
    boxes.emplace_back(text);
    return 1;
  }
  bool HtmlHelp(std::uintptr_t place, unsigned command) override {
    help.emplace_back(place, command);
    return true;
  }
  std::vector<CString> boxes;
  std::vector<std::pair<std::uintptr_t, unsigned>> help;
};
