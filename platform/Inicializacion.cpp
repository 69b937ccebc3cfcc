#include "platform/Inicializacion.h"

#include <algorithm>
#include <cwchar>
#include <mutex>
#include <system_error>

#include "platform/CFicheroIni.h"
#include "platform/CFicheroParcial.h"

namespace {

/// Two threads that change one file at a time would undo each other's change, and so would two processes: their lock is
/// that of the file's folder.
std::mutex& CerrojoEscritura() {
  static std::mutex cerrojo;
  return cerrojo;
}

unsigned long CopiaValor(CString const& valor, wchar_t* destino, unsigned long tamano) {
  const unsigned long largo = std::min(static_cast<unsigned long>(valor.GetLength()), tamano - 1);
  std::wmemcpy(destino, valor.GetString(), largo);
  destino[largo] = 0;
  return largo;
}

/// Each name with its zero and a last zero; cut so that both last zeros stay.
unsigned long CopiaLista(std::vector<CString> const& nombres, wchar_t* destino, unsigned long tamano) {
  std::wstring lista;
  for (CString const& nombre : nombres) {
    lista.append(nombre.GetString()).push_back(L'\0');
  }
  if (tamano < 2) {
    destino[0] = 0;
    return 0;
  }
  if (lista.size() > tamano - 1) {
    lista.resize(tamano - 2);
    lista.push_back(L'\0');
    std::wmemcpy(destino, lista.c_str(), lista.size() + 1);
    return tamano - 2;
  }
  std::wmemcpy(destino, lista.c_str(), lista.size() + 1);
  return static_cast<unsigned long>(lista.size());
}

bool EsNombre(wchar_t const* texto, wchar_t const* prohibidos) {
  std::wstring_view nombre(texto);
  const auto primero = nombre.find_first_not_of(L" \t");
  return primero != std::wstring_view::npos && nombre.find_first_of(prohibidos) == std::wstring_view::npos;
}

bool EsClave(wchar_t const* texto) {
  const wchar_t primero = texto[std::wcsspn(texto, L" \t")];
  return EsNombre(texto, L"=\r\n") && primero != L'[' && primero != L';' && primero != L'#';
}

}  // namespace

unsigned long GetPrivateProfileStringW(wchar_t const* seccion, wchar_t const* clave, wchar_t const* defecto,
                                       wchar_t* destino, unsigned long tamano, wchar_t const* fichero) {
  if (destino == nullptr || tamano == 0) {
    return 0;
  }
  CFicheroIni ini;
  ini.Lee(fichero);
  if (seccion == nullptr) {
    return CopiaLista(ini.Secciones(), destino, tamano);
  }
  if (clave == nullptr) {
    return CopiaLista(ini.Claves(seccion), destino, tamano);
  }
  CString valor;
  return CopiaValor(ini.Busca(seccion, clave, valor) ? valor : CString(defecto), destino, tamano);
}

bool WritePrivateProfileStringW(wchar_t const* seccion, wchar_t const* clave, wchar_t const* valor,
                                wchar_t const* fichero) {
  const bool bien = seccion != nullptr && fichero != nullptr && EsNombre(seccion, L"]\r\n") &&
                    (clave == nullptr || EsClave(clave)) &&
                    (valor == nullptr || std::wcspbrk(valor, L"\r\n") == nullptr);
  if (!bien) {
    return false;
  }
  const std::scoped_lock cerrojo(CerrojoEscritura());
  const CCerrojoCarpeta cerrojoDeTodos(CarpetaDe(DestinoFinal(fichero)));
  CFicheroIni ini;
  const int leido = ini.Lee(fichero);
  if (leido != 0 && leido != static_cast<int>(std::errc::no_such_file_or_directory)) {
    return false;  // what cannot be read must not be replaced
  }
  if (clave == nullptr) {
    ini.BorraSeccion(seccion);
  } else if (valor == nullptr) {
    ini.BorraClave(seccion, clave);
  } else {
    ini.Pon(seccion, clave, valor);
  }
  return ini.Escribe(fichero) == 0;
}
