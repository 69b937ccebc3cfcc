#pragma once

#include <string_view>
#include <vector>

#include "platform/CString.h"
#include "platform/Recursos.h"

/// A control of a dialog template. Places are in dialog units, from the top left corner.
struct CPlantillaControl {
  enum class EClase { Texto, Edicion, Boton, Casilla, Marco };
  EClase clase = EClase::Texto;
  int id = -1;
  CString texto;
  int x = 0;
  int y = 0;
  bool visible = true;
  bool admite = true;
  bool soloLectura = false;
};

/// A dialog's template: its title, and its controls in the order of the tab key.
struct CPlantillaDialogo {
  unsigned id = 0;
  CString titulo;
  std::vector<CPlantillaControl> controles;
};

/// An icon, and the file that holds it.
struct CPlantillaIcono {
  unsigned id = 0;
  CString fichero;
};

/// Resources where the system has none in its programs: dialogs and icons as a resource script (.rc, in UTF-8) has
/// them, the one that is compiled for Windows. It is a module for AfxFindResourceHandle() from its construction to its
/// destruction; dialogs that it is to serve are shown in between.
///
/// Understood are ICON and DIALOGEX statements with the usual controls, their numbers in digits. A line of the
/// preprocessor is passed over.
class URDIMBRE_API CRecursosTexto {
 public:
  explicit CRecursosTexto(std::string_view guion);
  CRecursosTexto(CRecursosTexto const&) = delete;
  CRecursosTexto& operator=(CRecursosTexto const&) = delete;
  ~CRecursosTexto();

  /// The line of the script, from 1, that is not understood; 0 when all are. What stands before it is there.
  [[nodiscard]] unsigned LineaMala() const { return lineaMala_; }
  [[nodiscard]] HINSTANCE Modulo() const;
  /// Null for a module that is not one of these, or has gone.
  [[nodiscard]] static CRecursosTexto const* De(HINSTANCE modulo);
  /// All that there are, the last made first.
  [[nodiscard]] static std::vector<HINSTANCE> Modulos();

  /// Null when there is none of the number.
  [[nodiscard]] CPlantillaDialogo const* Dialogo(unsigned id) const;
  [[nodiscard]] CPlantillaIcono const* Icono(unsigned id) const;

 private:
  std::vector<CPlantillaDialogo> dialogos_;
  std::vector<CPlantillaIcono> iconos_;
  unsigned lineaMala_ = 0;
};
