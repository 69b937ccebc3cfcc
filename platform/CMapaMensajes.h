#pragma once

#include <cstdint>
#include <span>

#include "platform/Exporta.h"

class CCmdTarget;
struct tagHELPINFO;  // the window system's
using HELPINFO = tagHELPINFO;

/// Messages of the window system that this layer sends or answers, under their numbers there.
namespace mensaje {
inline constexpr unsigned kAyuda = 0x53;     ///< F1: the second argument points to a HELPINFO, or is 0
inline constexpr unsigned kPonIcono = 0x80;  ///< the first argument is 0 for the small icon, the second its handle
inline constexpr unsigned kPulsa = 0xF5;     ///< to a button or check box: as if its user pressed it
inline constexpr unsigned kIniciaDialogo = 0x110;  ///< a dialog's controls are there, and not yet seen
inline constexpr unsigned kOrden = 0x111;          ///< a command: the first argument holds its number in 16 bits
inline constexpr unsigned kPropio = 0x8000;        ///< from here to 0xBFFF they are a program's own
}  // namespace mensaje

/// Commands that every dialog knows: the numbers of its buttons.
namespace orden {
inline constexpr unsigned kAcepta = 1;
inline constexpr unsigned kCancela = 2;
inline constexpr unsigned kAyuda = 9;
inline constexpr unsigned kAyudaPrograma = 0xE146;  ///< the same from a program's menu
}  // namespace orden

/// A message as the window system hands it over.
struct CMensaje {
  unsigned numero = 0;
  std::uintptr_t primero = 0;
  std::intptr_t segundo = 0;
};

/// An entry of a message map: for which message, and which command where the message is one, what is called.
struct AFX_MSGMAP_ENTRY {
  unsigned nMessage;
  unsigned nID;
  std::intptr_t (*pfn)(CCmdTarget& destino, CMensaje const& m);
};

/// The message map of a class: its own entries, and the map of its base where none of them fits.
struct AFX_MSGMAP {
  AFX_MSGMAP const* pBase;  ///< null at the root
  std::span<AFX_MSGMAP_ENTRY const> lpEntries;
};

/// Entries of message maps. A class names itself and its operation, which may be protected and is called through its
/// virtual slot: `mapa::Orden<CDialog, &CDialog::OnOK>(orden::kAcepta)`.
namespace mapa {

template <class TClase, void (TClase::*operacion)()>
[[nodiscard]] constexpr AFX_MSGMAP_ENTRY Orden(unsigned id) {
  return {mensaje::kOrden, id, [](CCmdTarget& destino, CMensaje const&) -> std::intptr_t {
            (static_cast<TClase&>(destino).*operacion)();
            return 1;
          }};
}

template <class TClase, bool (TClase::*operacion)(HELPINFO*)>
[[nodiscard]] constexpr AFX_MSGMAP_ENTRY Ayuda() {
  return {mensaje::kAyuda, 0, [](CCmdTarget& destino, CMensaje const& m) -> std::intptr_t {
            return (static_cast<TClase&>(destino).*operacion)(reinterpret_cast<HELPINFO*>(m.segundo)) ? 1 : 0;
          }};
}

template <class TClase, std::intptr_t (TClase::*operacion)(std::uintptr_t, std::intptr_t)>
[[nodiscard]] constexpr AFX_MSGMAP_ENTRY Mensaje(unsigned numero) {
  return {numero, 0, [](CCmdTarget& destino, CMensaje const& m) -> std::intptr_t {
            return (static_cast<TClase&>(destino).*operacion)(m.primero, m.segundo);
          }};
}

}  // namespace mapa
