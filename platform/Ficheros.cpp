#include "platform/Ficheros.h"

#include "platform/CFicheroParcial.h"
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

CDatosFichero ExaminaFichero(CString const& path) { return sistema::Examina(path); }

bool SonElMismoFichero(CString const& uno, CString const& otro) {
  const auto mismo = [](CDatosFichero const& a, CDatosFichero const& b) {
    return a.clase == b.clase && a.disco == b.disco && a.numero == b.numero && a.numero != 0;
  };
  const CDatosFichero este = sistema::Examina(uno), aquel = sistema::Examina(otro);
  if (este.clase != CDatosFichero::Nada || aquel.clase != CDatosFichero::Nada) return mismo(este, aquel);
  const auto nombre = [](CString const& path) { return path.Mid(sistema::UltimoSeparador(path) + 1); };
  return sistema::SonElMismoNombre(nombre(uno), nombre(otro)) &&
         mismo(sistema::Examina(CarpetaDe(uno)), sistema::Examina(CarpetaDe(otro)));
}

std::vector<CString> NombresEnCarpeta(CString const& path) {
  return sistema::Nombres(path.IsEmpty() ? CString(L".") : path);
}
