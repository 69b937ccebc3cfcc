#pragma once

#include "platform/Exporta.h"

struct HINSTANCE__;  // the system's
using HINSTANCE = HINSTANCE__*;
struct HICON__;
using HICON = HICON__*;

/// Resources of modules: what a program and its libraries carry with them besides code, by number and type.
namespace recurso {
inline constexpr unsigned kDialogo = 5;
inline constexpr unsigned kIcono = 14;
}  // namespace recurso

/// The module that has a resource; null when none has. The one set by AfxSetResourceHandle() is asked first, then the
/// program, then the library itself, so that a program may bring its own in the place of the library's. Where resources
/// are scripts (CRecursosTexto), the order is from the last that was made to the first.
[[nodiscard]] URDIMBRE_API HINSTANCE AfxFindResourceHandle(unsigned id, unsigned tipo);

/// The module that is asked first; null, as at first, for none in particular.
[[nodiscard]] URDIMBRE_API HINSTANCE AfxGetResourceHandle();
URDIMBRE_API void AfxSetResourceHandle(HINSTANCE modulo);

/// An icon of a module, as mensaje::kPonIcono takes it; null when the module has none. It is the module's.
[[nodiscard]] URDIMBRE_API HICON CargaIcono(HINSTANCE modulo, unsigned id);
