#pragma once

#include "platform/CWnd.h"
#include "platform/Recursos.h"

namespace Meseta47 {

/// Gives a dialog its small icon, from the module that has it; where none has, the dialog goes without.
inline void PonIconoDialogo(CWnd& dialogo, unsigned id) {
  HICON const icono = CargaIcono(AfxFindResourceHandle(id, recurso::kIcono), id);
  dialogo.SendMessageW(mensaje::kPonIcono, 0, reinterpret_cast<std::intptr_t>(icono));
}

}  // namespace Meseta47
