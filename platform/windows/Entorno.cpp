#include <atomic>
#include <chrono>
#include <string>

#include "platform/CFicheroParcial.h"
#include "platform/Ficheros.h"
#include "platform/Sistema.h"
#include "platform/windows/Win32.h"

namespace sistema {

CString Entorno(char const* nombre) {
  const CString ancho(nombre);
  std::wstring valor(256, L'\0');
  DWORD largo = ::GetEnvironmentVariableW(ancho, valor.data(), static_cast<DWORD>(valor.size()));
  while (largo > valor.size()) {  // that much room is needed, and the value may have grown since
    valor.resize(largo);
    largo = ::GetEnvironmentVariableW(ancho, valor.data(), static_cast<DWORD>(valor.size()));
  }
  valor.resize(largo);
  return valor;
}

CString CarpetaTemporal() {
  wchar_t carpeta[MAX_PATH + 1];
  const DWORD largo = ::GetTempPathW(static_cast<DWORD>(std::size(carpeta)), carpeta);
  return largo == 0 || largo >= std::size(carpeta) ? CString(L".") : CString(carpeta);
}

CString CarpetaAjustes() { return Entorno("APPDATA"); }

unsigned NumeroAlAzar() {
  // Steps of an odd constant (2^32 over the golden ratio) visit every number before one comes back.
  static std::atomic<unsigned> siguiente{0};
  const auto reloj = std::chrono::steady_clock::now().time_since_epoch().count();
  const auto mezcla = static_cast<unsigned>(reloj) ^ static_cast<unsigned>(reloj >> 32);
  return (static_cast<unsigned>(::GetCurrentProcessId()) * 0x85EBCA6Bu) ^ mezcla ^ siguiente.fetch_add(0x9E3779B9u);
}

}  // namespace sistema

long long EspacioLibre(CString const& path) {
  const win32::Ruta ruta(path);
  const DWORD atributos = ::GetFileAttributesW(ruta);
  if (atributos == INVALID_FILE_ATTRIBUTES) {
    return -1;
  }
  const bool carpeta = (atributos & FILE_ATTRIBUTE_DIRECTORY) != 0;
  ULARGE_INTEGER libres{};
  const BOOL bien = carpeta ? ::GetDiskFreeSpaceExW(ruta, &libres, nullptr, nullptr)
                            : ::GetDiskFreeSpaceExW(win32::Ruta(CarpetaDe(path)), &libres, nullptr, nullptr);
  return bien != 0 ? static_cast<long long>(libres.QuadPart) : -1;
}
