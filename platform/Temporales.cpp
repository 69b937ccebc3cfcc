#include "platform/Temporales.h"

#include <cwchar>
#include <system_error>

#include "platform/CFile.h"
#include "platform/CWinApp.h"
#include "platform/Sistema.h"

namespace {

CString NombreNumerado(CString const& carpeta, CString const& prefijo, unsigned numero) {
  CString final;
  final.Format(L"%X.tmp", numero);
  return sistema::EnCarpeta(carpeta, prefijo + final);
}

void Copia(CString const& texto, wchar_t* destino) {
  std::wmemcpy(destino, texto.GetString(), static_cast<std::size_t>(texto.GetLength()) + 1);
}

}  // namespace

CString sistema::EnCarpeta(CString carpeta, CString const& nombre) {
  if (!carpeta.IsEmpty() && !EsSeparador(carpeta[carpeta.GetLength() - 1])) {
    carpeta += kSeparador;
  }
  return std::move(carpeta += nombre);
}

int sistema::UltimoSeparador(CString const& path) {
  int lugar = path.GetLength() - 1;
  while (lugar >= 0 && !EsSeparador(path[lugar])) {
    --lugar;
  }
  return lugar;
}

int sistema::AbreNumerado(std::function<CString(unsigned)> const& nombre, unsigned flags, CString& path,
                          Descriptor& fichero) {
  constexpr int kEnUso = static_cast<int>(std::errc::file_exists);
  constexpr unsigned kIntentos = 1000;  // at work at once in one place: more is no coincidence
  int codigo = kEnUso;
  unsigned numero = 0;
  while (codigo == kEnUso && numero < kIntentos) {
    path = nombre(++numero);
    BorraResto(path);
    codigo = Abre(path, flags | CFile::modeNuevo, fichero);
  }
  while (codigo == 0 && numero < kIntentos && BorraResto(nombre(++numero)) != EResto::Nada) {
  }
  return codigo;
}

int sistema::CreaTemporal(CString const& carpeta, CString const& prefijo, CString& path, unsigned& numero) {
  constexpr int kEnUso = static_cast<int>(std::errc::file_exists);
  // A number in use is a chance in thousands of millions: where this many are in a row, another try will not help.
  constexpr int kIntentos = 100;
  int codigo = kEnUso;
  for (int intento = 0; codigo == kEnUso && intento < kIntentos; ++intento) {
    numero = NumeroAlAzar() | 1u;
    path = NombreNumerado(carpeta, prefijo, numero);
    codigo = CreaExclusivo(path);
  }
  return codigo;
}

unsigned long GetTempPathW(unsigned long tamano, wchar_t* destino) {
  CWinApp const* const aplicacion = AfxGetApp();
  CString carpeta = aplicacion == nullptr ? CString() : aplicacion->CarpetaTemporal();
  carpeta = sistema::EnCarpeta(carpeta.IsEmpty() ? sistema::CarpetaTemporal() : carpeta, L"");
  const auto largo = static_cast<unsigned long>(carpeta.GetLength());
  if (largo >= tamano || destino == nullptr) {
    return largo + 1;
  }
  Copia(carpeta, destino);
  return largo;
}

unsigned GetTempFileNameW(wchar_t const* carpeta, wchar_t const* prefijo, unsigned unico, wchar_t* destino) {
  // The longest number has eight digits: with it the name must fit, so that whether it does is no matter of luck.
  const auto largo = static_cast<unsigned long>(NombreNumerado(carpeta, prefijo, 0xFFFFFFFF).GetLength());
  if (largo >= MAX_PATH || destino == nullptr) {
    return 0;
  }
  CString path;
  unsigned numero = unico;
  if (unico != 0) {
    path = NombreNumerado(carpeta, prefijo, unico);
  } else if (sistema::CreaTemporal(carpeta, prefijo, path, numero) != 0) {
    return 0;
  }
  Copia(path, destino);
  return numero;
}

bool DeleteFileW(wchar_t const* path) { return sistema::Borra(path) == 0; }
