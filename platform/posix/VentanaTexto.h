#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "platform/CMapaMensajes.h"
#include "platform/CPantallaTexto.h"
#include "platform/CRecursosTexto.h"

class CDialog;

/// A window in memory: a dialog with its controls, or a control.
struct VentanaTexto {
  CPlantillaControl control;  // of a dialog: title, and whether it is seen
  int marca = 0;
  VentanaTexto* padre = nullptr;

  // Of dialogs alone.
  CDialog* dialogo = nullptr;
  std::vector<std::unique_ptr<VentanaTexto>> hijas;
  std::deque<CMensaje> cola;
  VentanaTexto* foco = nullptr;
  std::intptr_t iconos[2] = {};  // the small one and the big one
  std::intptr_t respuesta = 0;
  bool acabada = false;

  [[nodiscard]] VentanaTexto* Hija(int id) const;
  /// What a user's press on a button or check box does.
  void Pulsa(VentanaTexto& boton);
};

/// Shows a dialog and has one line of the user's carried out. False at the end of the input.
bool Atiende(CPantallaTexto& pantalla, VentanaTexto& dialogo);
