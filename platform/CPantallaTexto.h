#pragma once

#include <iosfwd>

#include "platform/Exporta.h"

/// Where the system has no windows of its own: a screen and a keyboard made of lines of text, for the dialogs that are
/// shown while it lives. The last one made is the one in use. The streams must outlive it.
///
/// A dialog is written each time it waits for its user, a line for each row of controls: "[18298: 12.500]" is an edit
/// box with its number, "(12.500)" one that cannot be written in, "[x] 1004 Open" a check box, "<1 OK>" a button. It
/// understands "18298 = 7.25", which types a text, "1004", which presses a button or a check box, "ok", "cancel" and
/// "f1"; other lines are refused with a line that says so. The end of the input cancels.
///
/// Without one, a dialog takes the messages that are posted to it and is then cancelled: nobody is there.
class URDIMBRE_API CPantallaTexto {
 public:
  CPantallaTexto(std::istream& entrada, std::ostream& salida);
  CPantallaTexto(CPantallaTexto const&) = delete;
  CPantallaTexto& operator=(CPantallaTexto const&) = delete;
  ~CPantallaTexto();

  /// The one in use, or null.
  [[nodiscard]] static CPantallaTexto* Actual();

  [[nodiscard]] std::istream& Entrada() { return entrada_; }
  [[nodiscard]] std::ostream& Salida() { return salida_; }

 private:
  std::istream& entrada_;
  std::ostream& salida_;
  CPantallaTexto* anterior_;
};
