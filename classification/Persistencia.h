#pragma once

#include "model/drawing/CInfoClasificacion.h"
#include "platform/CString.h"

class CWinApp;

namespace Meseta47 {

/// Where the fields of a parameter record come from or go to: each is called with a key and a field, key by key.

/// The profile of the current application, if there is one. Keys take a prefix.
class CLectorPerfil {
 public:
  CLectorPerfil(CString const& laSeccion, CString const& elPrefijo);
  void operator()(wchar_t const* clave, double& campo) const;
  void operator()(wchar_t const* clave, int& campo) const;
  void operator()(wchar_t const* clave, CInfoClasificacion& campo) const;

 private:
  CString const& seccion;
  CString const& prefijo;
  CWinApp const* aplicacion;
};

/// The same keys the other way: into the profile of the current application; without one, nowhere.
class CEscritorPerfil {
 public:
  CEscritorPerfil(CString const& laSeccion, CString const& elPrefijo);
  void operator()(wchar_t const* clave, double campo) const;
  void operator()(wchar_t const* clave, int campo) const;
  void operator()(wchar_t const* clave, CInfoClasificacion const& campo) const;

 private:
  CString const& seccion;
  CString const& prefijo;
  CWinApp* aplicacion;
};

/// A section of an initialisation file. Values are cut to 255 characters.
class CLectorFichero {
 public:
  CLectorFichero(CString const& elFichero, CString const& laSeccion) : fichero(elFichero), seccion(laSeccion) {}
  void operator()(wchar_t const* clave, double& campo) const;
  void operator()(wchar_t const* clave, int& campo) const;
  void operator()(wchar_t const* clave, CInfoClasificacion& campo) const;

 private:
  [[nodiscard]] CString Valor(wchar_t const* clave) const;

  CString const& fichero;
  CString const& seccion;
};

/// The same keys the other way: into the section of the file.
class CEscritorFichero {
 public:
  CEscritorFichero(CString const& elFichero, CString const& laSeccion) : fichero(elFichero), seccion(laSeccion) {}
  void operator()(wchar_t const* clave, double campo) const;
  void operator()(wchar_t const* clave, int campo) const;
  void operator()(wchar_t const* clave, CInfoClasificacion const& campo) const;

 private:
  CString const& fichero;
  CString const& seccion;
};

}  // namespace Meseta47
