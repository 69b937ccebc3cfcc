#include "classification/Persistencia.h"

#include "platform/CWinApp.h"
#include "platform/Inicializacion.h"

namespace Meseta47 {

namespace {

CString Texto(double valor) {
  CString texto;
  texto.Format(L"%lf", valor);
  return texto;
}

CString Texto(int valor) {
  CString texto;
  texto.Format(L"%d", valor);
  return texto;
}

/// A class is a byte: of a greater number its low 8 bits are kept.
void PonClase(CInfoClasificacion& campo, int clase) {
  campo = CInfoClasificacion(static_cast<unsigned char>(clase), campo.GetValor(), campo.GetTexto());
}

}  // namespace

CLectorPerfil::CLectorPerfil(CString const& laSeccion, CString const& elPrefijo)
    : seccion(laSeccion), prefijo(elPrefijo), aplicacion(AfxGetModuleState()->m_pCurrentWinApp) {}

void CLectorPerfil::operator()(wchar_t const* clave, double& campo) const {
  if (aplicacion == nullptr) return;
  campo = RealDe(aplicacion->GetProfileString(seccion, prefijo + clave, Texto(campo)));
}

void CLectorPerfil::operator()(wchar_t const* clave, int& campo) const {
  if (aplicacion != nullptr) campo = aplicacion->GetProfileInt(seccion, prefijo + clave, campo);
}

void CLectorPerfil::operator()(wchar_t const* clave, CInfoClasificacion& campo) const {
  int clase = campo.GetTipo();
  (*this)(clave, clase);
  PonClase(campo, clase);
}

CEscritorPerfil::CEscritorPerfil(CString const& laSeccion, CString const& elPrefijo)
    : seccion(laSeccion), prefijo(elPrefijo), aplicacion(AfxGetModuleState()->m_pCurrentWinApp) {}

void CEscritorPerfil::operator()(wchar_t const* clave, double campo) const {
  if (aplicacion != nullptr) aplicacion->WriteProfileString(seccion, prefijo + clave, Texto(campo));
}

void CEscritorPerfil::operator()(wchar_t const* clave, int campo) const {
  if (aplicacion != nullptr) aplicacion->WriteProfileInt(seccion, prefijo + clave, campo);
}

void CEscritorPerfil::operator()(wchar_t const* clave, CInfoClasificacion const& campo) const {
  (*this)(clave, static_cast<int>(campo.GetTipo()));
}

CString CLectorFichero::Valor(wchar_t const* clave) const {
  wchar_t valor[256];
  GetPrivateProfileStringW(seccion, clave, L"", valor, 256, fichero);
  return valor;
}

void CLectorFichero::operator()(wchar_t const* clave, double& campo) const {
  const CString valor = Valor(clave);
  if (!valor.IsEmpty()) campo = RealDe(valor);
}

void CLectorFichero::operator()(wchar_t const* clave, int& campo) const {
  const CString valor = Valor(clave);
  if (!valor.IsEmpty()) campo = EnteroDe(valor);
}

void CLectorFichero::operator()(wchar_t const* clave, CInfoClasificacion& campo) const {
  int clase = campo.GetTipo();
  (*this)(clave, clase);
  PonClase(campo, clase);
}

void CEscritorFichero::operator()(wchar_t const* clave, double campo) const {
  WritePrivateProfileStringW(seccion, clave, Texto(campo), fichero);
}

void CEscritorFichero::operator()(wchar_t const* clave, int campo) const {
  WritePrivateProfileStringW(seccion, clave, Texto(campo), fichero);
}

void CEscritorFichero::operator()(wchar_t const* clave, CInfoClasificacion const& campo) const {
  (*this)(clave, static_cast<int>(campo.GetTipo()));
}

}  // namespace Meseta47
