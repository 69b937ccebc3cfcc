#pragma once

#include "platform/CFile.h"
#include "platform/CString.h"

namespace Meseta47 {

/// A file in the making: it stands under its name with ".part" behind it until Confirma() gives it the name. One that
/// is destroyed before is deleted, and whatever had the name is as it was.
class CFicheroParcial {
 public:
  explicit CFicheroParcial(CString const& laRuta);
  CFicheroParcial(CFicheroParcial const&) = delete;
  CFicheroParcial& operator=(CFicheroParcial const&) = delete;
  ~CFicheroParcial();

  /// Whether it could be made.
  [[nodiscard]] bool EstaAbierto() const { return abierto; }
  [[nodiscard]] CFile& Fichero() { return fichero; }
  /// Closes and renames. False when the disk refuses, now or before.
  [[nodiscard]] bool Confirma();
  /// What went wrong, for a person; empty when nothing has.
  [[nodiscard]] CString Error() const { return error.IsEmpty() ? fichero.Error() : error; }

 private:
  CString ruta, provisional, error;
  CFile fichero;
  bool abierto = false, confirmado = false;
};

}  // namespace Meseta47
