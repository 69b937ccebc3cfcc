#include "platform/CWinApp.h"

#include <mutex>
#include <utility>

#include "platform/CFicheroIni.h"
#include "platform/Ficheros.h"
#include "platform/Inicializacion.h"
#include "platform/Sistema.h"
#include "platform/Ventanas.h"

CWinThread::~CWinThread() = default;

bool CWinThread::InitInstance() { return false; }

int CWinThread::ExitInstance() { return 0; }

namespace {

std::mutex& CerrojoAplicaciones() {
  static std::mutex cerrojo;
  return cerrojo;
}

/// A name as a single step of a path.
CString ComoNombre(CString const& texto) {
  CString nombre;
  for (int i = 0; i < texto.GetLength(); ++i) {
    nombre += sistema::EsSeparador(texto[i]) ? L'_' : texto[i];
  }
  return nombre;
}

}  // namespace

AFX_MODULE_STATE* AfxGetModuleState() {
  static AFX_MODULE_STATE estado;
  return &estado;
}

int AfxMessageBox(wchar_t const* texto, unsigned tipo, unsigned id) {
  CWinApp* const aplicacion = AfxGetApp();
  return aplicacion == nullptr ? 0 : aplicacion->DoMessageBox(texto, tipo, id);
}

CWinApp::CWinApp(CString const& nombre) : m_pszAppName(nombre) {
  const std::scoped_lock cerrojo(CerrojoAplicaciones());
  anterior_ = std::exchange(AfxGetModuleState()->m_pCurrentWinApp, this);
}

CWinApp::~CWinApp() {
  const std::scoped_lock cerrojo(CerrojoAplicaciones());
  CWinApp** eslabon = &AfxGetModuleState()->m_pCurrentWinApp;
  while (*eslabon != nullptr && *eslabon != this) {
    eslabon = &(*eslabon)->anterior_;
  }
  if (*eslabon == this) {
    *eslabon = anterior_;
  }
}

bool CWinApp::InitInstance() { return true; }

int CWinApp::DoMessageBox(wchar_t const*, unsigned, unsigned) { return 1; }

bool CWinApp::HtmlHelp(std::uintptr_t dato, unsigned orden) {
  return !m_pszHelpFilePath.IsEmpty() && sistema::AbreAyuda(m_pszHelpFilePath, dato, orden);
}

CString CWinApp::TextoMensaje(unsigned id) const {
  return anterior_ == nullptr ? CString() : anterior_->TextoMensaje(id);
}

CString CWinApp::CarpetaTemporal() const {
  return carpetaTemporal_.IsEmpty() && anterior_ != nullptr ? anterior_->CarpetaTemporal() : carpetaTemporal_;
}

unsigned CWinApp::Procesadores() const {
  return procesadores_ == 0 && anterior_ != nullptr ? anterior_->Procesadores() : procesadores_;
}

CString CWinApp::FicheroPerfil() const {
  CString path = sistema::CarpetaAjustes();
  if (path.IsEmpty()) {
    return path;
  }
  if (!clave_.IsEmpty()) {
    path = sistema::EnCarpeta(path, ComoNombre(clave_));
  }
  return sistema::EnCarpeta(path, ComoNombre(m_pszAppName) + L".ini");
}

CString CWinApp::GetProfileString(wchar_t const* seccion, wchar_t const* clave, wchar_t const* defecto) const {
  CFicheroIni fichero;
  CString valor;
  const bool hay = seccion != nullptr && clave != nullptr && fichero.Lee(FicheroPerfil()) == 0 &&
                   fichero.Busca(seccion, clave, valor);
  return hay ? valor : CString(defecto);
}

int CWinApp::GetProfileInt(wchar_t const* seccion, wchar_t const* clave, int defecto) const {
  const CString valor = GetProfileString(seccion, clave);
  return valor.IsEmpty() ? defecto : EnteroDe(valor);
}

bool CWinApp::WriteProfileString(wchar_t const* seccion, wchar_t const* clave, wchar_t const* valor) {
  const CString fichero = FicheroPerfil();
  return !fichero.IsEmpty() && CreaCarpeta(fichero.Left(sistema::UltimoSeparador(fichero))) &&
         WritePrivateProfileStringW(seccion, clave, valor, fichero);
}

bool CWinApp::WriteProfileInt(wchar_t const* seccion, wchar_t const* clave, int valor) {
  CString texto;
  texto.Format(L"%d", valor);
  return WriteProfileString(seccion, clave, texto);
}
