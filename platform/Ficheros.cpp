#include "platform/Ficheros.h"

#include "platform/CFile.h"
#include "platform/Sistema.h"

namespace {

bool Informa(int codigo, char const* accion, CString const& path, CString* error) {
  if (codigo != 0 && error != nullptr) {
    error->Format("cannot %s %s: %s", accion, path.Utf8().c_str(), sistema::TextoError(codigo).Utf8().c_str());
  }
  return codigo == 0;
}

}  // namespace

bool RenombraFichero(CString const& desde, CString const& hasta, CString* error) {
  return Informa(sistema::Renombra(desde, hasta), "put a new file in the place of", hasta, error);
}

bool BorraFichero(CString const& path, CString* error) { return Informa(sistema::Borra(path), "delete", path, error); }

bool CreaCarpeta(CString const& path, CString* error) {
  for (int corte = 1; corte < path.GetLength(); ++corte) {
    if (sistema::EsSeparador(path[corte])) {
      static_cast<void>(sistema::CreaCarpeta(path.Left(corte)));  // what matters is whether the last one comes to stand
    }
  }
  return Informa(sistema::CreaCarpeta(path), "make the folder", path, error);
}

bool CarpetaEscribible(CString const& path, CString* error) {
  CFile prueba;
  static_cast<void>(prueba.AbreTemporal(path, L"urdimbre"));
  return Informa(prueba.CodigoError(), "write in", path, error);
}
