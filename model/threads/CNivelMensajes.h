#pragma once

namespace Meseta47 {

/// How much of its progress an object tells. Any integer can be cast to it; an object keeps what it knows and takes the
/// rest for 0.
enum CNivelMensajes : int {
  MENSAJES_NINGUNO = 0,   ///< the object asks for no progress interface, and so cannot be cancelled
  MENSAJES_FASES = 1,     ///< phases, steps and faults
  MENSAJES_DETALLE = 2,   ///< also the steps of passes that are short as a rule
  MENSAJES_NORMALES = 3,  ///< what an object has from its construction
};

}  // namespace Meseta47
