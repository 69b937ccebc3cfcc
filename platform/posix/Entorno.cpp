#include <atomic>
#include <chrono>
#include <cstdlib>
#include <sys/statvfs.h>
#include <unistd.h>

#include "platform/Ficheros.h"
#include "platform/Sistema.h"

namespace sistema {

CString Entorno(char const* nombre) { return std::getenv(nombre); }

CString CarpetaTemporal() {
  const CString elegida = Entorno("TMPDIR");
  return elegida.IsEmpty() ? CString(L"/tmp") : elegida;
}

CString CarpetaAjustes() {
  CString elegida = Entorno("XDG_CONFIG_HOME");
  if (!elegida.IsEmpty() && elegida[0] == kSeparador) {  // a relative one is to be taken for unset
    return elegida;
  }
  const CString casa = Entorno("HOME");
  return casa.IsEmpty() ? casa : casa + L"/.config";
}

unsigned NumeroAlAzar() {
  // Steps of an odd constant (2^32 over the golden ratio) visit every number before one comes back.
  static std::atomic<unsigned> siguiente{0};
  const auto reloj = std::chrono::steady_clock::now().time_since_epoch().count();
  const auto mezcla = static_cast<unsigned>(reloj) ^ static_cast<unsigned>(reloj >> 32);
  return (static_cast<unsigned>(::getpid()) * 0x85EBCA6Bu) ^ mezcla ^ siguiente.fetch_add(0x9E3779B9u);
}

}  // namespace sistema

long long EspacioLibre(CString const& path) {
  struct statvfs datos {};
  if (::statvfs(path.Utf8().c_str(), &datos) != 0) {
    return -1;
  }
  return static_cast<long long>(datos.f_bavail) * static_cast<long long>(datos.f_frsize);
}
