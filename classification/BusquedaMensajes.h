#pragma once

namespace Meseta47 {

/// Phases that searches announce, by the numbers of their messages.
inline constexpr unsigned kMensajeRegistra = 19020;
inline constexpr unsigned kMensajeRadio = 19026;
inline constexpr unsigned kMensajeBusca = 19045;
inline constexpr unsigned kMensajeClases = 39102;

}  // namespace Meseta47
