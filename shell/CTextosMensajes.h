#pragma once

#include <map>

#include "platform/CString.h"
#include "platform/Exporta.h"

namespace Meseta47 {

/// The texts of message identifiers and of the codes that runs answer. One table, in English, that a host can replace
/// entry by entry. Texts with numbers in them are formats, and their replacements must take the same arguments. Not to
/// be changed while a run is on.
class URDIMBRE_API CTextosMensajes {
 public:
  CTextosMensajes();

  /// Empty for an identifier without a text.
  [[nodiscard]] CString Texto(unsigned id) const;
  /// Gives an identifier another text, or a first one.
  void Sustituye(unsigned id, CString const& texto) { textos[id] = texto; }

 private:
  std::map<unsigned, CString> textos;
};

}  // namespace Meseta47
