#pragma once

#include <vector>

#include "platform/CString.h"

/// An initialisation file as its lines, so that what it does not understand stays where it was. Internal: programs use
/// Inicializacion.h. One object is used by one thread at a time.
class CFicheroIni {
 public:
  /// Reads the file. 0, or the failure's number; a file that is not there is one.
  int Lee(CString const& path);

  /// Puts these lines in the file's place, in one step. 0, or the failure's number, and then the file is as it was.
  [[nodiscard]] int Escribe(CString const& path) const;

  [[nodiscard]] bool Busca(CString const& seccion, CString const& clave, CString& valor) const;
  [[nodiscard]] std::vector<CString> Secciones() const;
  [[nodiscard]] std::vector<CString> Claves(CString const& seccion) const;

  /// Sets a value, at the end of its section when the key is new and of the file when the section is.
  void Pon(CString const& seccion, CString const& clave, CString const& valor);
  void BorraClave(CString const& seccion, CString const& clave);
  void BorraSeccion(CString const& seccion);

 private:
  /// From the line after a section's head to its last line that is not blank; `hay` tells a missing section.
  struct Tramo {
    bool hay = false;
    std::size_t desde = 0;
    std::size_t hasta = 0;
  };
  [[nodiscard]] Tramo BuscaSeccion(CString const& seccion) const;
  [[nodiscard]] std::size_t BuscaClave(Tramo const& tramo, CString const& clave) const;

  std::vector<CString> lineas_;
};
